#include "base/state_directory.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

namespace host {

std::string state_file(std::string_view name) {
  std::string file(name);
  std::replace(file.begin(), file.end(), '/', '_');
  const char* const state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && state[0] == '/') return fmt::format("{}/pmsh/{}", state, file);
  const char* const home = std::getenv("HOME");
  return home == nullptr || home[0] != '/' ? "" : fmt::format("{}/.local/state/pmsh/{}", home, file);
}

}  // namespace host
