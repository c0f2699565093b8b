#include "shell/state_directory.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

namespace host {

std::string state_file(std::string_view name) {
  std::string file(name);
  std::replace(file.begin(), file.end(), '/', '_');
  const char* const state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && state[0] == '/') return std::string(state) + "/pmsh/" + file;
  const char* const home = std::getenv("HOME");
  return home == nullptr || home[0] != '/' ? "" : std::string(home) + "/.local/state/pmsh/" + file;
}

void make_directories_of(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
    mkdir(path.substr(0, slash).c_str(), 0700);
}

}  // namespace host
