// Requests to the kernel by netlink.
#pragma once

#include <libmnl/libmnl.h>
#include <sys/types.h>

#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/types.h"
#include "source/kernel/lldp.h"

namespace host {

// Why a request to the kernel failed: one line.
struct kernel_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The text of the kernel in an error message; empty for an acknowledgement, for another message, or without a text.
std::string extack_message(const nlmsghdr& message);

// A request under construction.
class netlink_request {
 public:
  // `room` is for the whole message; the caller ensures that everything fits.
  netlink_request(uint16 type, uint16 flags, std::size_t room = kBytes) : bytes_(room) {
    head_ = mnl_nlmsg_put_header(bytes_.data());
    head_->nlmsg_type = type;
    head_->nlmsg_flags = static_cast<uint16>(NLM_F_REQUEST | flags);
  }

  netlink_request(netlink_request&&) = default;  // the head stays where it is
  netlink_request& operator=(netlink_request&&) = default;

  template <typename Extra>
  Extra& extra() {
    return *static_cast<Extra*>(mnl_nlmsg_put_extra_header(head_, sizeof(Extra)));
  }
  nlmsghdr& head() { return *head_; }

 private:
  static constexpr std::size_t kBytes = 1024;

  std::vector<char> bytes_;
  nlmsghdr* head_;
};

// The channel of messages to and from the kernel.
class kernel_channel {
 public:
  virtual ~kernel_channel() = default;
  virtual uint32 port() const = 0;
  virtual int send(const nlmsghdr& request) = 0;                // 0 or an errno
  virtual ssize_t receive(std::span<char> to, int& error) = 0;  // bytes of a datagram; -1 with an errno
  virtual int descriptor() const { return -1; }                 // to wait for a datagram; -1: there is none
};

// Requests to the kernel, and to the daemon that speaks LLDP for it. Tests replace them with a recording.
struct kernel_io {
  std::unique_ptr<kernel_channel> (*open)(int bus);                // null with errno
  int (*ethtool_ioctl)(const std::string& device, void* command);  // 0 or an errno
  lldp_answer (*lldp_neighbors)();

  // A channel for what the kernel publishes to these groups, whose receive() does not wait: EAGAIN. Null with errno.
  // Without the function nothing is published.
  std::unique_ptr<kernel_channel> (*subscribe)(int bus, std::span<const uint32> groups) = nullptr;
};
kernel_io& the_kernel_io();

using message_visitor = std::function<void(const nlmsghdr&)>;

// Visits the complete messages at the start of a datagram.
void visit_messages(std::span<const char> datagram, const message_visitor& visit);

class netlink_socket {
 public:
  // `bus`: NETLINK_ROUTE or NETLINK_GENERIC. Throws kernel_error.
  explicit netlink_socket(int bus);

  // Sends a request and passes on each answer. A dump that was interrupted, or lost messages, is repeated a few times;
  // `restart` is called before each repetition. Returns 0 or an errno.
  int ask(netlink_request& request, const message_visitor& visit, const std::function<void()>& restart = {});

  // Why the kernel refused the last request, in the kernel's text; empty without one.
  const std::string& reason() const { return reason_; }

 private:
  int open();
  int receive(uint32 sequence, const message_visitor& visit);

  int bus_;
  std::unique_ptr<kernel_channel> channel_;
  std::unique_ptr<char[]> buffer_;  // not cleared, which saves time
  uint32 sequence_ = 0;
  std::string reason_;
};

}  // namespace host
