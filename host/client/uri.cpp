#include "platform/uri.h"

#include <cctype>
#include <cstring>
#include <string_view>

namespace {

constexpr std::string_view kSchemes[] = {"bootflash:", "volatile:", "file:"};
constexpr std::size_t kLongest = 100;

// Characters that need no quotes in a shell.
bool is_plain(std::string_view path) {
  for (const char letter : path) {
    const bool is_word = std::isalnum(static_cast<unsigned char>(letter)) != 0;
    if (!is_word && letter != '.' && letter != '_' && letter != '/' && letter != '-') return false;
  }
  return !path.empty() && path.size() <= kLongest;
}

}  // namespace

int32 uri_map_targetfs_path_get(const char* uri, char* path, uint32 size) {
  if (uri == nullptr || path == nullptr || size == 0) return -1;
  std::string_view left = uri;
  bool has_scheme = false;
  for (const std::string_view scheme : kSchemes) {
    if (!left.starts_with(scheme)) continue;
    left.remove_prefix(scheme.size());
    has_scheme = true;
    break;
  }
  const bool is_path = has_scheme || left.starts_with('/');
  if (!is_path || !is_plain(left) || left.size() >= size) return -1;
  std::memcpy(path, left.data(), left.size());
  path[left.size()] = '\0';
  return 0;
}
