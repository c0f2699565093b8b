#include "source/kernel/netlink.h"

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

namespace host {
namespace {

constexpr int kMostTries = 4;
constexpr std::size_t kBufferBytes = 64 * 1024;  // the kernel puts 32 KiB of a dump into one answer

int visit_message(const nlmsghdr* message, void* visitor) {
  (*static_cast<const message_visitor*>(visitor))(*message);
  return MNL_CB_OK;
}

void visit_all(const char* at, std::size_t left, const attribute_visitor& visit) {
  while (left >= sizeof(nlattr)) {
    const auto* const attribute = reinterpret_cast<const nlattr*>(at);
    if (!mnl_attr_ok(attribute, static_cast<int>(left))) return;
    visit(*attribute);
    const std::size_t size = std::min<std::size_t>(MNL_ALIGN(attribute->nla_len), left);
    at += size;
    left -= size;
  }
}

// The first text among the messages.
std::string words_among(const char* messages, std::size_t size) {
  int left = static_cast<int>(size);
  for (const auto* at = reinterpret_cast<const nlmsghdr*>(messages); mnl_nlmsg_ok(at, left);
       at = mnl_nlmsg_next(at, &left))
    if (std::string words = extack_message(*at); !words.empty()) return words;
  return {};
}

bool is_worth_another_try(int error) { return error == EINTR || error == ENOBUFS; }

// ---- The kernel itself ----------------------------------------------------------------------------------------------

class socket_channel : public kernel_channel {
 public:
  explicit socket_channel(mnl_socket* socket) : socket_(socket) {}
  uint32 port() const override { return mnl_socket_get_portid(socket_.get()); }
  int send(const nlmsghdr& request) override {
    return mnl_socket_sendto(socket_.get(), &request, request.nlmsg_len) < 0 ? errno : 0;
  }
  ssize_t receive(std::span<char> to, int& error) override {
    const ssize_t size = mnl_socket_recvfrom(socket_.get(), to.data(), to.size());
    error = errno;
    return size;
  }

 private:
  struct closer {
    void operator()(mnl_socket* socket) const { mnl_socket_close(socket); }
  };
  std::unique_ptr<mnl_socket, closer> socket_;
};

std::unique_ptr<kernel_channel> open_socket(int bus) {
  mnl_socket* const socket = mnl_socket_open2(bus, SOCK_CLOEXEC);
  if (socket == nullptr) return nullptr;
  auto channel = std::make_unique<socket_channel>(socket);
  if (mnl_socket_bind(socket, 0, MNL_SOCKET_AUTOPID) < 0) return nullptr;
  // Older kernels give no texts for errors.
  int on = 1;
  mnl_socket_setsockopt(socket, NETLINK_EXT_ACK, &on, sizeof on);
  mnl_socket_setsockopt(socket, NETLINK_CAP_ACK, &on, sizeof on);
  return channel;
}

int ask_by_ioctl(const std::string& device, void* command) {
  ifreq request{};
  if (device.size() >= sizeof request.ifr_name) return ENODEV;
  std::memcpy(request.ifr_name, device.data(), device.size());
  request.ifr_data = static_cast<char*>(command);
  const int socket_number = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (socket_number < 0) return errno;
  const int error = ioctl(socket_number, SIOCETHTOOL, &request) < 0 ? errno : 0;
  close(socket_number);
  return error;
}

}  // namespace

std::string extack_message(const nlmsghdr& message) {
  const auto* const error = static_cast<const nlmsgerr*>(mnl_nlmsg_get_payload(&message));
  const bool is_error = message.nlmsg_type == NLMSG_ERROR && mnl_nlmsg_get_payload_len(&message) >= sizeof *error;
  if (!is_error || error->error == 0 || (message.nlmsg_flags & NLM_F_ACK_TLVS) == 0) return {};
  const bool is_whole_request = (message.nlmsg_flags & NLM_F_CAPPED) == 0;
  const std::size_t request =
      is_whole_request ? error->msg.nlmsg_len - std::min(error->msg.nlmsg_len, NLMSG_HDRLEN + 0U) : 0;
  std::string words;
  for_each_attribute(message, sizeof *error + request, [&words](const nlattr& attribute) {
    if (mnl_attr_get_type(&attribute) != NLMSGERR_ATTR_MSG) return;
    const auto* const text = static_cast<const char*>(mnl_attr_get_payload(&attribute));
    words.assign(text, strnlen(text, mnl_attr_get_payload_len(&attribute)));
  });
  return words;
}

void for_each_attribute(const nlmsghdr& message, std::size_t offset, const attribute_visitor& visit) {
  const std::size_t size = mnl_nlmsg_get_payload_len(&message);
  const std::size_t head = MNL_ALIGN(offset);
  if (size < head) return;
  visit_all(static_cast<const char*>(mnl_nlmsg_get_payload(&message)) + head, size - head, visit);
}

void for_each_nested(const nlattr& nest, const attribute_visitor& visit) {
  visit_all(static_cast<const char*>(mnl_attr_get_payload(&nest)), mnl_attr_get_payload_len(&nest), visit);
}

std::string text_of(const nlattr& attribute) {
  const auto* const text = static_cast<const char*>(mnl_attr_get_payload(&attribute));
  return {text, strnlen(text, mnl_attr_get_payload_len(&attribute))};
}

std::span<const uint8> bytes_of(const nlattr& attribute) {
  return {static_cast<const uint8*>(mnl_attr_get_payload(&attribute)), mnl_attr_get_payload_len(&attribute)};
}

kernel_io& the_kernel_io() {
  static kernel_io gate = {open_socket, ask_by_ioctl};
  return gate;
}

netlink_socket::netlink_socket(int bus) : bus_(bus), buffer_(std::make_unique_for_overwrite<char[]>(kBufferBytes)) {
  if (const int error = open(); error != 0)
    throw kernel_error(std::string("cannot open a netlink socket: ") + std::strerror(error));
}

int netlink_socket::open() {
  channel_.reset();
  channel_ = the_kernel_io().open(bus_);
  return channel_ == nullptr ? errno : 0;
}

// Retry on a new socket: the kernel refuses a second dump on one that still has a dump in progress.
int netlink_socket::ask(netlink_request& request, const message_visitor& visit, const std::function<void()>& restart) {
  int error = 0;
  reason_.clear();
  for (int tries = 0; tries < kMostTries; ++tries) {
    if (tries != 0 && (error = open()) != 0) return error;
    request.head().nlmsg_seq = ++sequence_;
    error = channel_->send(request.head());
    if (error == 0) error = receive(sequence_, visit);
    if (!is_worth_another_try(error)) return error;
    if (restart) restart();
  }
  return error;
}

int netlink_socket::receive(uint32 sequence, const message_visitor& visit) {
  while (true) {
    int error = 0;
    const ssize_t size = channel_->receive({buffer_.get(), kBufferBytes}, error);
    if (size < 0) {
      if (error == EINTR) continue;  // a signal, not an interrupted dump
      return error;
    }
    const int status = mnl_cb_run(buffer_.get(), static_cast<std::size_t>(size), sequence, channel_->port(),
                                  visit_message, const_cast<message_visitor*>(&visit));
    if (status < 0) {
      if (errno == ESRCH || errno == EPROTO) continue;  // left over from an earlier question
      error = errno;
      reason_ = words_among(buffer_.get(), static_cast<std::size_t>(size));
      return error;
    }
    if (status == MNL_CB_STOP) return 0;
  }
}

}  // namespace host
