// Builds the machine that a switch file describes.
#pragma once

#include <string>

#include "source/chassis/schema.h"

namespace host {

// Expands ranges into interfaces, resolves references and derives omitted values. Throws yaml_file_error with the
// file's `path` and the line for a switch that is impossible.
machine build_machine(switch_draft draft, const std::string& path);

}  // namespace host
