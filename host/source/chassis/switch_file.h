// A switch from a YAML file.
#pragma once

#include <ctime>
#include <string>

#include "source/yaml/yaml_document.h"
#include "source/yaml/yaml_file_error.h"
#include "switch/clock.h"
#include "switch/model.h"

namespace host {

// Reads a switch file. Throws yaml_file_error for a file that is missing, is not YAML, or describes an impossible
// switch: unknown keys, wrong types, values out of range, interfaces named twice, references to interfaces that do not
// exist. `now` (seconds since 1970) is the time from which durations such as "2d4h" in the file count back.
machine load_switch_file(const std::string& path, std::time_t now = clock_now());

// The same for a document that was read from a file.
machine read_switch_document(const yaml_document& document, const std::string& path, std::time_t now);

}  // namespace host
