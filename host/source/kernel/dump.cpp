#include "source/kernel/dump.h"

#include <linux/netlink.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "source/kernel/policy.h"

namespace host {
namespace {

constexpr std::size_t kDatagramBytes = 64 * 1024;  // the kernel puts 32 KiB of a dump into one answer
constexpr uint32 kSequence = 1;

// The errno at the start of a message that ends a dump; 0 is none.
int error_of(const nlmsghdr& message) { return -record_of<int>(payload_of(message)); }

}  // namespace

kernel_dump::kernel_dump(int bus, netlink_request request, std::string what)
    : what_(std::move(what)),
      channel_(the_kernel_io().open(bus)),
      buffer_(std::make_unique_for_overwrite<char[]>(kDatagramBytes)) {
  if (channel_ == nullptr) fail(std::strerror(errno));
  request.head().nlmsg_seq = kSequence;
  if (const int error = channel_->send(request.head()); error != 0) fail(std::strerror(error));
}

void kernel_dump::fail(const std::string& reason) const { throw kernel_error(what_ + ": " + reason); }

bool kernel_dump::next(const message_visitor& visit) {
  while (true) {
    int error = 0;
    const ssize_t size = channel_->receive({buffer_.get(), kDatagramBytes}, error);
    if (size >= 0) return read({buffer_.get(), static_cast<std::size_t>(size)}, visit);
    if (error != EINTR) fail(std::strerror(error));
  }
}

bool kernel_dump::read(std::span<const char> datagram, const message_visitor& visit) {
  while (!datagram.empty()) {
    const auto& message = *reinterpret_cast<const nlmsghdr*>(datagram.data());
    if (datagram.size() < sizeof message || message.nlmsg_len < sizeof message || message.nlmsg_len > datagram.size())
      fail("the kernel's answer is cut");
    datagram = datagram.subspan(std::min<std::size_t>(NLMSG_ALIGN(message.nlmsg_len), datagram.size()));
    if (message.nlmsg_seq != kSequence || message.nlmsg_pid != channel_->port()) continue;  // of another request
    if ((message.nlmsg_flags & NLM_F_DUMP_INTR) != 0) has_changed_ = true;
    const bool is_end = message.nlmsg_type == NLMSG_DONE || message.nlmsg_type == NLMSG_ERROR;
    if (is_end && error_of(message) > 0) fail(std::strerror(error_of(message)));
    if (is_end) return false;
    if (message.nlmsg_type == NLMSG_OVERRUN) fail(std::strerror(ENOBUFS));
    if (message.nlmsg_type >= NLMSG_MIN_TYPE) visit(message);
  }
  return true;
}

}  // namespace host
