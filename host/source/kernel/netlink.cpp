#include "source/kernel/netlink.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

namespace host {
namespace {

constexpr int kMostTries = 4;
constexpr std::size_t kBufferBytes = 256 * 1024;  // the kernel fills messages of a dump as far as there is room

struct visit_data {
  const std::function<void(const nlmsghdr&)>* visit;
};

int visit_message(const nlmsghdr* message, void* data) {
  (*static_cast<visit_data*>(data)->visit)(*message);
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

// The words of the first message that has some.
std::string words_among(const char* messages, std::size_t size) {
  int left = static_cast<int>(size);
  for (const auto* at = reinterpret_cast<const nlmsghdr*>(messages); mnl_nlmsg_ok(at, left);
       at = mnl_nlmsg_next(at, &left))
    if (std::string words = words_of(*at); !words.empty()) return words;
  return {};
}

bool is_worth_another_try(int error) { return error == EINTR || error == ENOBUFS; }

}  // namespace

std::string words_of(const nlmsghdr& message) {
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

netlink_socket::netlink_socket(int bus) : socket_(mnl_socket_open2(bus, SOCK_CLOEXEC)), buffer_(kBufferBytes) {
  if (socket_ == nullptr || mnl_socket_bind(socket_.get(), 0, MNL_SOCKET_AUTOPID) < 0)
    throw kernel_error(std::string("the kernel cannot be asked by netlink: ") + std::strerror(errno));
  // Older kernels have no words for errors.
  int on = 1;
  mnl_socket_setsockopt(socket_.get(), NETLINK_EXT_ACK, &on, sizeof on);
  mnl_socket_setsockopt(socket_.get(), NETLINK_CAP_ACK, &on, sizeof on);
}

int netlink_socket::ask(netlink_request& request, const std::function<void(const nlmsghdr&)>& visit,
                        const std::function<void()>& restart) {
  int error = 0;
  reason_.clear();
  for (int tries = 0; tries < kMostTries; ++tries) {
    request.head().nlmsg_seq = ++sequence_;
    if (mnl_socket_sendto(socket_.get(), &request.head(), request.head().nlmsg_len) < 0) return errno;
    error = receive(sequence_, visit);
    if (!is_worth_another_try(error)) return error;
    if (restart) restart();
  }
  return error;
}

int netlink_socket::receive(uint32 sequence, const std::function<void(const nlmsghdr&)>& visit) {
  visit_data data{&visit};
  while (true) {
    const ssize_t size = mnl_socket_recvfrom(socket_.get(), buffer_.data(), buffer_.size());
    if (size < 0) {
      if (errno == EINTR) continue;  // a signal, not a dump that was disturbed
      return errno;
    }
    const int status = mnl_cb_run(buffer_.data(), static_cast<std::size_t>(size), sequence,
                                  mnl_socket_get_portid(socket_.get()), visit_message, &data);
    if (status < 0) {
      if (errno == ESRCH || errno == EPROTO) continue;  // left over from an earlier question
      const int error = errno;
      reason_ = words_among(buffer_.data(), static_cast<std::size_t>(size));
      return error;
    }
    if (status == MNL_CB_STOP) return 0;
  }
}

}  // namespace host
