// Why a YAML file cannot be used.
#pragma once

#include <stdexcept>

namespace host {

// "FILE:LINE: reason", or "FILE: reason" when the fault has no line.
struct yaml_file_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace host
