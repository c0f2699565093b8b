// Questions to the kernel by netlink.
#pragma once

#include <libmnl/libmnl.h>

#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/types.h"

namespace host {

// Why the kernel could not be asked: one line.
struct kernel_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

using attribute_visitor = std::function<void(const nlattr&)>;

// Calls `visit` with each attribute behind a message's head of `offset` bytes, and within a nested attribute; as far as
// they are whole.
void for_each_attribute(const nlmsghdr& message, std::size_t offset, const attribute_visitor& visit);
void for_each_nested(const nlattr& nest, const attribute_visitor& visit);

// The number in an attribute; 0 in one that is too short.
template <typename Number>
Number attribute_number(const nlattr& attribute) {
  Number number{};
  if (mnl_attr_get_payload_len(&attribute) >= sizeof number)
    std::memcpy(&number, mnl_attr_get_payload(&attribute), sizeof number);
  return number;
}

// The kernel's words in an error message; none of an acknowledgement, of another message, or where it gave none.
std::string words_of(const nlmsghdr& message);

// A request under construction.
class netlink_request {
 public:
  // `room` is for the whole message; the caller sees to it that all fits in.
  netlink_request(uint16 type, uint16 flags, std::size_t room = kBytes) : bytes_(room) {
    head_ = mnl_nlmsg_put_header(bytes_.data());
    head_->nlmsg_type = type;
    head_->nlmsg_flags = static_cast<uint16>(NLM_F_REQUEST | flags);
  }

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

class netlink_socket {
 public:
  // `bus`: NETLINK_ROUTE or NETLINK_GENERIC. Throws kernel_error.
  explicit netlink_socket(int bus);

  // Sends and hands over each answer. A dump that was disturbed, or lost messages, is asked for again a few times; then
  // `restart` is called first. Returns 0 or an errno.
  int ask(netlink_request& request, const std::function<void(const nlmsghdr&)>& visit,
          const std::function<void()>& restart = {});

  // Why the kernel refused the last question, in its own words; empty when it gave none.
  const std::string& reason() const { return reason_; }

 private:
  struct closer {
    void operator()(mnl_socket* socket) const { mnl_socket_close(socket); }
  };

  int receive(uint32 sequence, const std::function<void(const nlmsghdr&)>& visit);

  std::unique_ptr<mnl_socket, closer> socket_;
  std::vector<char> buffer_;
  uint32 sequence_ = 0;
  std::string reason_;
};

}  // namespace host
