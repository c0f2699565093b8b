#include "shell/session/state_directory.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
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

int make_directories_of(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    const std::string directory = path.substr(0, slash);
    struct stat found {};
    if (mkdir(directory.c_str(), 0700) == 0) continue;
    const int error = errno;
    if (stat(directory.c_str(), &found) != 0) return error;
  }
  return 0;
}

}  // namespace host
