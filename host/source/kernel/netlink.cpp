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

#include "source/kernel/policy.h"

namespace host {
namespace {

constexpr int kMostTries = 4;
constexpr std::size_t kBufferBytes = 64 * 1024;  // the kernel puts 32 KiB of a dump into one answer

int visit_message(const nlmsghdr* message, void* visitor) {
  (*static_cast<const message_visitor*>(visitor))(*message);
  return MNL_CB_OK;
}

constexpr message_policy kExtackPolicy = {{NLMSGERR_ATTR_MSG, attribute_type::text, 1}};

// The complete messages at the start of a datagram. A length is compared as it is: as an int it may be negative.
std::span<const char> complete_messages(std::span<const char> datagram) {
  std::span<const char> left = datagram;
  while (left.size() >= sizeof(nlmsghdr)) {
    nlmsghdr head;
    std::memcpy(&head, left.data(), sizeof head);
    if (head.nlmsg_len < sizeof head || head.nlmsg_len > left.size()) break;
    left = left.subspan(std::min<std::size_t>(NLMSG_ALIGN(head.nlmsg_len), left.size()));
  }
  return datagram.first(datagram.size() - left.size());
}

// The first text among messages.
std::string words_among(std::span<const char> messages) {
  std::string words;
  visit_messages(messages, [&words](const nlmsghdr& message) {
    if (words.empty()) words = extack_message(message);
  });
  return words;
}

bool is_worth_another_try(int error) { return error == EINTR || error == ENOBUFS; }

// ---- The kernel itself ----------------------------------------------------------------------------------------------

class socket_channel : public kernel_channel {
 public:
  explicit socket_channel(mnl_socket* socket) : socket_(socket) {}
  uint32 port() const override { return mnl_socket_get_portid(socket_.get()); }
  int descriptor() const override { return mnl_socket_get_fd(socket_.get()); }
  int send(const nlmsghdr& request) override {
    return mnl_socket_sendto(socket_.get(), &request, request.nlmsg_len) < 0 ? errno : 0;
  }
  // Any process may send to the socket's port; only the kernel has the port 0.
  ssize_t receive(std::span<char> to, int& error) override {
    while (true) {
      sockaddr_nl sender{};
      iovec buffer{to.data(), to.size()};
      msghdr datagram{};
      datagram.msg_name = &sender;
      datagram.msg_namelen = sizeof sender;
      datagram.msg_iov = &buffer;
      datagram.msg_iovlen = 1;
      const ssize_t size = recvmsg(mnl_socket_get_fd(socket_.get()), &datagram, 0);
      error = size < 0 ? errno : 0;
      if (size >= 0 && (datagram.msg_namelen != sizeof sender || sender.nl_pid != 0)) continue;
      if (size < 0 || (datagram.msg_flags & MSG_TRUNC) == 0) return size;
      error = ENOSPC;
      return -1;
    }
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

// A group that the kernel does not have publishes nothing. A large buffer loses less: without the capability for it the
// kernel grants a part.
std::unique_ptr<kernel_channel> open_subscription(int bus, std::span<const uint32> groups) {
  constexpr int kReceiveBytes = 4 * 1024 * 1024;
  mnl_socket* const socket = mnl_socket_open2(bus, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (socket == nullptr) return nullptr;
  auto channel = std::make_unique<socket_channel>(socket);
  const int number = channel->descriptor();
  if (setsockopt(number, SOL_SOCKET, SO_RCVBUFFORCE, &kReceiveBytes, sizeof kReceiveBytes) != 0)
    setsockopt(number, SOL_SOCKET, SO_RCVBUF, &kReceiveBytes, sizeof kReceiveBytes);
  if (mnl_socket_bind(socket, 0, MNL_SOCKET_AUTOPID) < 0) return nullptr;
  for (const uint32 group : groups) {
    auto joined = static_cast<int>(group);
    mnl_socket_setsockopt(socket, NETLINK_ADD_MEMBERSHIP, &joined, sizeof joined);
  }
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

// The text follows the request, or its header where the rest is omitted.
std::string extack_message(const nlmsghdr& message) {
  const auto parsed = parse<nlmsgerr>(message, kExtackPolicy);
  if (!parsed || message.nlmsg_type != NLMSG_ERROR || parsed->head.error == 0 ||
      (message.nlmsg_flags & NLM_F_ACK_TLVS) == 0)
    return {};
  const uint32 request = parsed->head.msg.nlmsg_len;
  if ((message.nlmsg_flags & NLM_F_CAPPED) != 0 || request <= NLMSG_HDRLEN)
    return parsed->all.text(NLMSGERR_ATTR_MSG).value_or("");
  const std::span<const uint8> rest = payload_of(message).subspan(sizeof(nlmsgerr));
  const uint32 omitted = request - NLMSG_HDRLEN;
  if (rest.size() < omitted || rest.size() < NLMSG_ALIGN(omitted)) return {};
  return parse(rest.subspan(NLMSG_ALIGN(omitted)), kExtackPolicy).text(NLMSGERR_ATTR_MSG).value_or("");
}

void visit_messages(std::span<const char> datagram, const message_visitor& visit) {
  const std::span<const char> messages = complete_messages(datagram);
  int left = static_cast<int>(messages.size());
  for (const auto* at = reinterpret_cast<const nlmsghdr*>(messages.data()); mnl_nlmsg_ok(at, left);
       at = mnl_nlmsg_next(at, &left))
    visit(*at);
}

kernel_io& the_kernel_io() {
  static kernel_io gate = {open_socket, ask_by_ioctl, ask_lldpd, open_subscription};
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
    const std::span<const char> datagram(buffer_.get(), static_cast<std::size_t>(size));
    const std::span<const char> messages = complete_messages(datagram);
    const int status = mnl_cb_run(messages.data(), messages.size(), sequence, channel_->port(), visit_message,
                                  const_cast<message_visitor*>(&visit));
    if (status < 0) {
      if (errno == ESRCH || errno == EPROTO) continue;  // left over from an earlier question
      error = errno;
      reason_ = words_among(messages);
      return error;
    }
    if (status != MNL_CB_STOP && datagram.size() - messages.size() >= sizeof(nlmsghdr)) return EBADMSG;
    if (status == MNL_CB_STOP) return 0;
  }
}

}  // namespace host
