// A kernel that answers from messages made by hand. It stands in the place of the real one as long as it lives.
#pragma once

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "source/kernel/netlink.h"

namespace host {

using recorded_message = std::vector<char>;

// The bytes of a message that was put together.
recorded_message recorded(netlink_request message);

// What is asked: the type of a message, and the byte behind its head (a family of addresses, or a command).
struct question {
  int bus;
  uint16 type;
  uint8 what;

  auto operator<=>(const question&) const = default;
};

// The dump of links.
inline constexpr question kLinks{NETLINK_ROUTE, RTM_GETLINK, AF_UNSPEC};

struct recorded_answer {
  int error = 0;  // an errno in place of messages
  std::vector<recorded_message> messages = {};
  std::string words = {};  // that come with the errno
};

enum class disturbance {
  lost,         // ENOBUFS in place of the first datagram
  interrupted,  // the dump says, behind its first datagram, that what it dumps has changed
};

// The memory of a module as the ioctl gives it: one stretch.
struct ioctl_module {
  uint32 length = 0;  // that the kernel claims
  std::vector<uint8> memory;
};

class recorded_kernel {
 public:
  static constexpr uint16 kEthtoolFamily = 0x20;
  static constexpr uint32 kMonitorGroup = 6;
  static question ethtool(uint8 command);

  recorded_kernel();
  ~recorded_kernel();
  recorded_kernel(const recorded_kernel&) = delete;
  recorded_kernel& operator=(const recorded_kernel&) = delete;

  // One more message of the answer to a question. A dump of which nothing is recorded is empty; any other such question
  // is answered by EOPNOTSUPP.
  void tell(const question& asked, netlink_request message);
  void refuse(const question& asked, int error);
  void answer(const question& asked, std::function<recorded_answer(const nlmsghdr&)> by);
  void disturb(const question& asked, disturbance how, uint32 times = 1);
  void plug(const std::string& device, ioctl_module module) { modules_[device] = std::move(module); }

  // What the kernel publishes on a bus, and an error in the place of a datagram.
  void publish(int bus, netlink_request message);
  void fail_to_publish(int bus, int error);

  // What a command of ethtool by ioctl gives for a device.
  template <typename Command>
  void answer_by_ioctl(const std::string& device, const Command& recorded) {
    const auto* const bytes = reinterpret_cast<const char*>(&recorded);
    read_by_ioctl_[{device, recorded.cmd}].assign(bytes, bytes + sizeof recorded);
  }

  uint32 times_asked(const question& asked) const;
  uint32 ioctls() const { return ioctls_; }
  const std::vector<uint32>& groups(int bus) { return groups_[bus]; }  // that were subscribed to

  bool has_ethtool = true;
  lldp_answer lldp = {ENOENT};           // of lldpd, which is not running
  std::size_t longest = SIZE_MAX;        // every message is cut at this many bytes
  std::optional<uint32> claimed_length;  // that the second message of a datagram gives as its own

 private:
  friend class recorded_channel;
  friend class recorded_subscription;
  struct published {
    recorded_message message;
    int error = 0;
  };
  struct known {
    recorded_answer answer;
    std::function<recorded_answer(const nlmsghdr&)> by;
    std::deque<disturbance> disturbances;
  };

  recorded_answer answer_to(const question& asked, const nlmsghdr& request);
  static std::unique_ptr<kernel_channel> open(int bus);
  static lldp_answer answer_lldp();
  static std::unique_ptr<kernel_channel> subscribe(int bus, std::span<const uint32> groups);
  static int answer_ioctl(const std::string& device, void* command);

  kernel_io before_;
  std::map<question, known> known_;
  std::map<question, uint32> asked_;
  std::map<std::string, ioctl_module> modules_;
  std::map<std::pair<std::string, uint32>, std::vector<char>> read_by_ioctl_;
  uint32 ioctls_ = 0;
  std::map<int, std::deque<published>> published_;
  std::map<int, std::vector<uint32>> groups_;
};

}  // namespace host
