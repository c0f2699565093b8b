#include "source/kernel/own_file.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/replace_file.h"
#include "platform/types.h"
#include "source/kernel/baselines.h"

namespace host {

std::string read_own_file(const std::string& path, std::string& fault) {
  constexpr std::size_t kMostBytes = 8 << 20;
  const open_file file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW));
  struct stat found {};
  if (file.descriptor < 0 || fstat(file.descriptor, &found) != 0) {
    if (errno != ENOENT) fault = std::strerror(errno);
    return {};
  }
  if (!S_ISREG(found.st_mode) || found.st_uid != geteuid()) {
    fault = "it is not a regular file of this user";
    return {};
  }
  std::string text(std::min<std::size_t>(static_cast<std::size_t>(found.st_size), kMostBytes), '\0');
  std::size_t filled = 0;
  while (filled < text.size()) {
    const ssize_t size = ::read(file.descriptor, text.data() + filled, text.size() - filled);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) fault = std::strerror(errno);
    if (size <= 0) break;
    filled += static_cast<std::size_t>(size);
  }
  text.resize(filled);
  return text;
}

std::string_view take_until(char end, std::string_view& text) {
  const std::string_view part = text.substr(0, text.find(end));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

// The number of a namespace may return when the namespace is gone, its cookie does not; 0 from a kernel without one.
std::string line_of_namespace() {
  uint64 cookie = 0;
  socklen_t size = sizeof cookie;
  const open_file any(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  getsockopt(any.descriptor, SOL_SOCKET, SO_NETNS_COOKIE, &cookie, &size);
  return running_system() + " cookie " + std::to_string(cookie);
}

}  // namespace host
