// The channel to the kernel: who sent a datagram, and the lengths of messages in it.
#include "source/kernel/netlink.h"

#include <gtest/gtest.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "host/source/kernel/kernel_recording.h"
#include "source/kernel/links.h"

namespace host {
namespace {

// ---- Datagrams of other processes -----------------------------------------------------------------------------------

constexpr uint32 kForgedDevice = 0x7FFFFFF0;

// Sends a link and the end of a dump, as the kernel would, to a port. Returns 0 or an errno.
int forge(uint32 port, uint32 sequence) {
  netlink_request link(RTM_NEWLINK, NLM_F_MULTI);
  link.extra<ifinfomsg>().ifi_index = static_cast<int>(kForgedDevice);
  mnl_attr_put_strz(&link.head(), IFLA_IFNAME, "forged");
  netlink_request done(NLMSG_DONE, NLM_F_MULTI);
  done.extra<int>() = 0;
  const int socket_number = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
  int error = socket_number < 0 ? errno : 0;
  for (netlink_request* const message : {&link, &done}) {
    message->head().nlmsg_seq = sequence;
    message->head().nlmsg_pid = port;
    sockaddr_nl to{};
    to.nl_family = AF_NETLINK;
    to.nl_pid = port;
    if (error == 0 && sendto(socket_number, &message->head(), message->head().nlmsg_len, 0,
                             reinterpret_cast<const sockaddr*>(&to), sizeof to) < 0)
      error = errno;
  }
  if (socket_number >= 0) close(socket_number);
  return error;
}

std::unique_ptr<kernel_channel> (*real_open)(int bus) = nullptr;
int forge_error = 0;

// A channel to the real kernel, into which another process sends before each request.
class attacked_channel : public kernel_channel {
 public:
  explicit attacked_channel(std::unique_ptr<kernel_channel> real) : real_(std::move(real)) {}
  uint32 port() const override { return real_->port(); }
  int send(const nlmsghdr& request) override {
    forge_error = forge(port(), request.nlmsg_seq);
    return real_->send(request);
  }
  ssize_t receive(std::span<char> to, int& error) override { return real_->receive(to, error); }

 private:
  std::unique_ptr<kernel_channel> real_;
};

std::unique_ptr<kernel_channel> open_attacked(int bus) { return std::make_unique<attacked_channel>(real_open(bus)); }

TEST(KernelChannel, DatagramsOfOtherProcessesAreDropped) {
  const kernel_io before = the_kernel_io();
  real_open = before.open;
  the_kernel_io().open = open_attacked;
  netlink_socket route(NETLINK_ROUTE);
  netlink_request request(RTM_GETLINK, NLM_F_DUMP);
  request.extra<ifinfomsg>().ifi_family = AF_UNSPEC;
  std::vector<std::string> names;
  const int error = route.ask(request, [&names](const nlmsghdr& message) {
    if (const auto link = decode_link(message)) names.push_back(link->name);
  });
  the_kernel_io() = before;
  if (forge_error == EPERM) GTEST_SKIP() << "this user may not send to the ports of other sockets";
  EXPECT_EQ(forge_error, 0);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(std::count(names.begin(), names.end(), "forged"), 0);
  EXPECT_EQ(std::count(names.begin(), names.end(), "lo"), 1);
}

// ---- Lengths of messages --------------------------------------------------------------------------------------------

class KernelLengths : public testing::Test {
 protected:
  KernelLengths() {
    kernel_.tell(kLinks, link(1, "first"));
    kernel_.tell(kLinks, link(2, "second"));
    kernel_.tell(kLinks, link(3, "third"));
  }
  static netlink_request link(int number, const char* name) {
    netlink_request message(RTM_NEWLINK, 0);
    message.extra<ifinfomsg>().ifi_index = number;
    mnl_attr_put_strz(&message.head(), IFLA_IFNAME, name);
    return message;
  }
  // The names of the links in a dump; `error` is that of the request.
  std::vector<std::string> names(int& error) {
    netlink_socket route(NETLINK_ROUTE);
    netlink_request request(RTM_GETLINK, NLM_F_DUMP);
    request.extra<ifinfomsg>().ifi_family = AF_UNSPEC;
    std::vector<std::string> found;
    error = route.ask(
        request,
        [&found](const nlmsghdr& message) {
          if (const auto link = decode_link(message)) found.push_back(link->name);
        },
        [&found] { found.clear(); });
    return found;
  }

  recorded_kernel kernel_;
};

// The recording puts two messages into a datagram: the second one claims these lengths.
TEST_F(KernelLengths, AMessageThatClaimsMoreThanItsDatagramIsAnError) {
  for (const uint32 length : {0x80000000U, 0x80000010U, 0xFFFFFFFFU, 0x7FFFFFFFU, 64U * 1024, 49U}) {
    kernel_.claimed_length = length;
    int error = 0;
    EXPECT_EQ(names(error), std::vector<std::string>{"first"}) << length;
    EXPECT_EQ(error, EBADMSG) << length;
  }
}

TEST_F(KernelLengths, AMessageShorterThanItsHeaderIsAnError) {
  for (const uint32 length : {0U, 1U, 15U}) {
    kernel_.claimed_length = length;
    int error = 0;
    EXPECT_EQ(names(error), std::vector<std::string>{"first"}) << length;
    EXPECT_EQ(error, EBADMSG) << length;
  }
}

TEST_F(KernelLengths, DevicesInADamagedAnswerAreAnError) {
  kernel_.claimed_length = 0x80000000;
  netlink_socket route(NETLINK_ROUTE);
  try {
    read_links(route);
    ADD_FAILURE() << "devices of a damaged answer";
  } catch (const kernel_error& error) {
    EXPECT_EQ(std::string(error.what()), "cannot read the devices of the kernel: Bad message");
  }
}

TEST_F(KernelLengths, LostAndInterruptedDumpsAreRepeated) {
  for (const disturbance how : {disturbance::lost, disturbance::interrupted}) {
    kernel_.disturb(kLinks, how, 2);
    int error = 0;
    EXPECT_EQ(names(error), (std::vector<std::string>{"first", "second", "third"}));
    EXPECT_EQ(error, 0);
  }
  EXPECT_EQ(kernel_.times_asked(kLinks), 6U);
}

}  // namespace
}  // namespace host
