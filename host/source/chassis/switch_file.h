// A switch from a YAML file.
#pragma once

#include <ctime>
#include <stdexcept>
#include <string>

#include "switch/clock.h"
#include "switch/model.h"

namespace host {

// Why a switch file cannot be used: "FILE:LINE: reason", or "FILE: reason" when no line is to blame.
struct switch_file_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Reads a switch file. Throws switch_file_error for a file that is missing, is not YAML, or says what no switch can be:
// unknown keys, wrong types, values out of range, interfaces named twice, references to interfaces that do not exist.
// `now` (seconds since 1970) is the moment to which times such as "2d4h" in the file look back.
machine load_switch_file(const std::string& path, std::time_t now = clock_now());

}  // namespace host
