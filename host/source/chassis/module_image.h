// The identity pages of modules: of the usual media, and read from files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/if_index.h"
#include "platform/types.h"

namespace host {

// The page of a module of a medium with the given serial number: the 128 bytes of an SFP's A0h page, or the 256 of
// an X2's. Empty for a medium that has none.
std::vector<uint8> module_image(std::string_view medium, if_index_t port);

// The bytes of a file: hexadecimal digits with blanks between and "#" comments when its name ends in ".hex", else as
// they are. Throws std::runtime_error with a reason.
std::vector<uint8> read_image(const std::string& path);

}  // namespace host
