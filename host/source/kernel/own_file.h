// Files of this user that are valid for one boot and network namespace.
#pragma once

#include <string>
#include <string_view>

namespace host {

// The text of a regular file of this user, up to 8 MiB; empty when there is none. `fault` is why it cannot be read.
std::string read_own_file(const std::string& path, std::string& fault);

// Removes and returns the text up to the next `end`, which is removed, too.
std::string_view take_until(char end, std::string_view& text);

// The boot and the network namespace, which is recognised by its cookie: the first line of such a file.
std::string line_of_namespace();

}  // namespace host
