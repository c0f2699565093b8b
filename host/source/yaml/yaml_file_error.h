// Why a YAML file cannot be used.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/types.h"

namespace host {

// "FILE:LINE: reason", or "FILE: reason" when the fault has no line.
struct yaml_file_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Throws it for a line.
[[noreturn]] void fail_at(const std::string& path, uint32 line, const std::string& reason);

}  // namespace host
