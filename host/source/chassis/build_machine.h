// From what a switch file says to the machine that it describes.
#pragma once

#include <string>

#include "source/chassis/schema.h"

namespace host {

// Tells the interfaces of the ranges apart, follows references and derives what the file leaves open. Throws
// yaml_file_error with the file's `path` and a line for what no switch can be.
machine build_machine(switch_draft draft, const std::string& path);

}  // namespace host
