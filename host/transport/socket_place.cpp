#include "transport/socket_place.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace host {
namespace {

constexpr std::string_view kEnding = ".sock";
constexpr char kDirectoryOfRoot[] = "/run/pmsh";
constexpr std::size_t kMaxNameLength = 64;

bool is_of_name(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '-' || character == '_' || character == '.';
}

}  // namespace

bool is_switch_name(std::string_view text) {
  return !text.empty() && text.size() <= kMaxNameLength && text.front() != '.' &&
         std::all_of(text.begin(), text.end(), is_of_name);
}

std::string own_socket_directory() {
  if (geteuid() == 0) return kDirectoryOfRoot;
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  return runtime == nullptr || runtime[0] != '/' ? "" : fmt::format("{}/pmsh", runtime);
}

std::vector<std::string> socket_directories() {
  std::vector<std::string> found;
  if (std::string own = own_socket_directory(); !own.empty()) found.push_back(std::move(own));
  if (found.empty() || found.front() != kDirectoryOfRoot) found.emplace_back(kDirectoryOfRoot);
  return found;
}

std::string socket_in(const std::string& directory, std::string_view switch_name) {
  return fmt::format("{}/{}{}", directory, switch_name, kEnding);
}

std::vector<std::string> known_switches() {
  std::vector<std::string> names;
  for (const std::string& directory : socket_directories()) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
      const std::string file = entry.path().filename().string();
      if (!file.ends_with(kEnding) || !entry.is_socket(error)) continue;
      names.push_back(file.substr(0, file.size() - kEnding.size()));
    }
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

bool make_address(const std::string& path, sockaddr_un& address) {
  address = {};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return true;
}

}  // namespace host
