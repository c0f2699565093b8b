// A dump of the kernel that is read datagram by datagram, so that a dump of any length takes little memory.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "source/kernel/netlink.h"

namespace host {

class kernel_dump {
 public:
  // Sends the request. `what` is what the dump is of, for errors: "the addresses of the kernel". Throws kernel_error.
  kernel_dump(int bus, netlink_request request, std::string what);

  // Visits the messages of the next datagram. False when it was the last one. Throws kernel_error when the kernel
  // refuses, or its answer is cut.
  bool next(const message_visitor& visit);

  // Whether the kernel reports that what it dumps changed meanwhile.
  bool has_changed() const { return has_changed_; }

 private:
  [[noreturn]] void fail(const std::string& reason) const;
  bool read(std::span<const char> datagram, const message_visitor& visit);

  std::string what_;
  std::unique_ptr<kernel_channel> channel_;
  std::unique_ptr<char[]> buffer_;
  bool has_changed_ = false;
};

}  // namespace host
