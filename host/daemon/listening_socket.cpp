#include "daemon/listening_socket.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <systemd/sd-daemon.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "transport/socket_place.h"

namespace host {
namespace {

// The lock that daemons hold while they look at a socket and replace it.
class directory_lock {
 public:
  explicit directory_lock(const std::string& directory)
      : descriptor_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor_ < 0)
      throw socket_error(
          fmt::format("cannot open the directory '{}' of the socket: {}.", directory, std::strerror(errno)));
    while (flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) continue;
  }
  ~directory_lock() { close(descriptor_); }
  directory_lock(const directory_lock&) = delete;
  directory_lock& operator=(const directory_lock&) = delete;

 private:
  int descriptor_;
};

// The permissions of a file that is made in this scope.
class mask_scope {
 public:
  explicit mask_scope(mode_t mask) : before_(umask(mask)) {}
  ~mask_scope() { umask(before_); }
  mask_scope(const mask_scope&) = delete;
  mask_scope& operator=(const mask_scope&) = delete;

 private:
  mode_t before_;
};

std::string directory_of(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// Everyone may look for switches of root; a user's own are hidden.
void make_own_directory(const std::string& directory) {
  const mode_t mode = geteuid() == 0 ? 0755 : 0700;
  const mask_scope exact(0);
  if (mkdir(directory.c_str(), mode) != 0 && errno != EEXIST)
    throw socket_error(fmt::format("cannot make the directory '{}': {}. Name a socket with --socket.", directory,
                                   std::strerror(errno)));
  struct stat found {};
  if (lstat(directory.c_str(), &found) != 0 || !S_ISDIR(found.st_mode) || found.st_uid != geteuid() ||
      (found.st_mode & 022) != 0)
    throw socket_error(fmt::format(
        "'{}' is not a directory that only this user can write to. Correct it, or name a socket with --socket.",
        directory));
}

// Members of the group find the sockets in it; the runtime directory of the user above it may hide it all the same.
void open_directory(const std::string& directory, gid_t group) {
  if (chown(directory.c_str(), static_cast<uid_t>(-1), group) != 0 || chmod(directory.c_str(), 0750) != 0)
    throw socket_error(fmt::format("cannot open the directory '{}' to the group: {}. Choose a group of this user.",
                                   directory, std::strerror(errno)));
}

std::string usual_path(const std::string& switch_name, std::optional<gid_t> group) {
  const std::string directory = own_socket_directory();
  if (directory.empty()) throw socket_error("XDG_RUNTIME_DIR is not set. Name a socket with --socket.");
  make_own_directory(directory);
  if (group && geteuid() != 0) open_directory(directory, *group);
  return socket_in(directory, switch_name);
}

enum class at_path { nothing, left_over, living, other_file };

at_path look_at(const std::string& path, const sockaddr_un& address) {
  struct stat found {};
  if (lstat(path.c_str(), &found) != 0) return at_path::nothing;
  if (!S_ISSOCK(found.st_mode)) return at_path::other_file;
  const int probe = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (probe < 0) return at_path::living;
  const bool is_refused =
      connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 && errno == ECONNREFUSED;
  close(probe);
  return is_refused ? at_path::left_over : at_path::living;
}

}  // namespace

listening_socket::listening_socket(const std::string& switch_name, const std::string& path,
                                   std::optional<gid_t> group) {
  if (take_from_systemd()) return;
  try {
    make_at(switch_name, path.empty() ? usual_path(switch_name, group) : path, group);
  } catch (...) {
    if (descriptor_ >= 0) close(descriptor_);
    throw;
  }
}

bool listening_socket::take_from_systemd() {
  const int count = sd_listen_fds(1);
  if (count == 0) return false;
  if (count != 1 || sd_is_socket_unix(SD_LISTEN_FDS_START, SOCK_SEQPACKET, 1, nullptr, 0) <= 0)
    throw socket_error(
        "systemd passes what is not one socket of packets. Use one ListenSequentialPacket= in the socket unit.");
  descriptor_ = SD_LISTEN_FDS_START;
  fcntl(descriptor_, F_SETFL, fcntl(descriptor_, F_GETFL) | O_NONBLOCK);
  return true;
}

void listening_socket::make_at(const std::string& switch_name, const std::string& path, std::optional<gid_t> group) {
  sockaddr_un address{};
  if (!make_address(path, address))
    throw socket_error(fmt::format("the path '{}' is too long for a socket: expected up to {} characters.", path,
                                   sizeof address.sun_path - 1));
  const auto fail = [&path](int error) {
    return socket_error(fmt::format("cannot listen at '{}': {}.", path, std::strerror(error)));
  };
  const directory_lock lock(directory_of(path));
  switch (look_at(path, address)) {
    case at_path::nothing: break;
    case at_path::left_over: unlink(path.c_str()); break;
    case at_path::other_file: throw socket_error(fmt::format("'{}' is a file and not a socket. Choose another.", path));
    case at_path::living:
      throw socket_error(
          fmt::format("the switch '{}' is running already, at '{}'. Connect to it, or choose another name with --name.",
                      switch_name, path));
  }
  descriptor_ = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (descriptor_ < 0) throw fail(errno);
  {
    const mask_scope permissions(geteuid() == 0 ? 0117 : 0177);
    if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) throw fail(errno);
  }
  if (group && (lchown(path.c_str(), static_cast<uid_t>(-1), *group) != 0 || chmod(path.c_str(), 0660) != 0)) {
    const int error = errno;
    unlink(path.c_str());
    throw socket_error(fmt::format("cannot open the socket '{}' to the group: {}. Choose a group of this user.", path,
                                   std::strerror(error)));
  }
  if (listen(descriptor_, SOMAXCONN) != 0) throw fail(errno);
  struct stat made {};
  if (lstat(path.c_str(), &made) != 0) throw fail(errno);
  path_ = path;
  device_ = made.st_dev;
  inode_ = made.st_ino;
}

// Removed first: whoever starts meanwhile finds either a living socket or none.
listening_socket::~listening_socket() {
  struct stat found {};
  if (!path_.empty() && lstat(path_.c_str(), &found) == 0 && found.st_dev == device_ && found.st_ino == inode_)
    unlink(path_.c_str());
  close(descriptor_);
}

}  // namespace host
