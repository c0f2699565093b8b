// The socket at which the daemon accepts shells.
#pragma once

#include <sys/types.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace host {

// Why there is no socket: one sentence with the next step.
struct socket_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class listening_socket {
 public:
  // The socket that systemd passes; else one at `path`; else, if `path` is empty, at the usual place of the switch with
  // this name. The socket that a killed daemon left is replaced, that of a living one is an error. With `group` its
  // members may connect. Throws socket_error.
  listening_socket(const std::string& switch_name, const std::string& path, std::optional<gid_t> group);

  // Removes a socket that this object made, unless another one has replaced it.
  ~listening_socket();
  listening_socket(const listening_socket&) = delete;
  listening_socket& operator=(const listening_socket&) = delete;

  int descriptor() const { return descriptor_; }
  const std::string& path() const { return path_; }  // empty: systemd made it

 private:
  bool take_from_systemd();
  void make_at(const std::string& switch_name, const std::string& path, std::optional<gid_t> group);

  int descriptor_ = -1;
  std::string path_;
  dev_t device_ = 0;
  ino_t inode_ = 0;
};

}  // namespace host
