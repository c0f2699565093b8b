// The client libraries that the command library opens by name, and the functions that it looks up.
#pragma once

#include <span>
#include <string_view>

namespace host {

struct client_library {
  const char* file;
  std::span<const char* const> functions;
};

std::span<const client_library> client_libraries();

// Null for any other file.
const client_library* find_client_library(std::string_view file);

}  // namespace host
