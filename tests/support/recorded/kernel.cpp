// What the library asks of the kernel and of the command interpreter, recorded: nothing reaches the real ones. The
// library's objects are linked so that their calls of the functions below arrive here; nobody else's do.
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdarg>
#include <cstring>

#include "support/recording_state.h"

namespace pmcli_test {
namespace {

// The number of an open socket, from 1; a failure of the test for every other descriptor.
std::size_t find_socket(RecordingPlatform& platform, int descriptor, const char* function) {
  const auto& sockets = platform.internals().sockets;
  const int number = descriptor - kFirstSocket;
  const bool is_known = number >= 1 && static_cast<std::size_t>(number) <= sockets.size();
  if (is_known && sockets[static_cast<std::size_t>(number) - 1].is_open) return static_cast<std::size_t>(number);
  ADD_FAILURE() << function << "() on descriptor " << descriptor << ", which is not open";
  return 0;
}

using kernel_interface = RecordingPlatform::kernel_interface;

void answer_hardware_address(const kernel_interface& device, ifreq* answer) {
  std::memset(&answer->ifr_hwaddr, 0xEE, sizeof answer->ifr_hwaddr);
  std::memcpy(answer->ifr_hwaddr.sa_data, device.hardware_address.data(), device.hardware_address.size());
}

void answer_flags(const kernel_interface& device, ifreq* answer) {
  answer->ifr_flags = static_cast<short>(IFF_BROADCAST | IFF_MULTICAST | (device.is_up ? IFF_UP : 0));
}

void answer_mtu(const kernel_interface& device, ifreq* answer) { answer->ifr_mtu = device.mtu_bytes; }

struct interface_request {
  unsigned long number;
  const char* name;
  void (*answer)(const kernel_interface& device, ifreq* answer);
};

constexpr interface_request kRequests[] = {
    {SIOCGIFHWADDR, "SIOCGIFHWADDR", answer_hardware_address},
    {SIOCGIFFLAGS, "SIOCGIFFLAGS", answer_flags},
    {SIOCGIFMTU, "SIOCGIFMTU", answer_mtu},
};

int answer_request(RecordingPlatform& platform, const interface_request& request, ifreq* answer) {
  const std::string device(answer->ifr_name, strnlen(answer->ifr_name, IFNAMSIZ));
  EXPECT_LT(device.size(), std::size_t{IFNAMSIZ}) << "the name in an interface request is not terminated";
  platform.kernel_events.push_back(request.name + std::string(" ") + device);
  const auto known = platform.kernel_interfaces.find(device);
  if (platform.failure_of("ioctl") != 0 || platform.silent_requests.contains(request.name) ||
      known == platform.kernel_interfaces.end())
    return -1;
  request.answer(known->second, answer);
  return 0;
}

}  // namespace
}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int __wrap_socket(int domain, int type, int protocol) {
  RecordingPlatform& platform = platform_for("socket");
  EXPECT_EQ(domain, AF_INET);
  EXPECT_EQ(type, SOCK_DGRAM);
  EXPECT_EQ(protocol, 0);
  if (platform.failure_of("socket") != 0) {
    platform.kernel_events.emplace_back("no socket");
    return -1;
  }
  auto& sockets = platform.internals().sockets;
  sockets.emplace_back();
  platform.kernel_events.push_back("socket " + std::to_string(sockets.size()));
  return kFirstSocket + static_cast<int>(sockets.size());
}

int __wrap_ioctl(int descriptor, unsigned long number, ...) {
  std::va_list arguments;
  va_start(arguments, number);
  auto* const answer = va_arg(arguments, ifreq*);
  va_end(arguments);
  RecordingPlatform& platform = platform_for("ioctl");
  if (find_socket(platform, descriptor, "ioctl") == 0) return -1;
  for (const interface_request& request : kRequests)
    if (request.number == number) return answer_request(platform, request, answer);
  ADD_FAILURE() << "ioctl() with the unknown request " << number;
  return -1;
}

int __wrap_open(const char* path, int, ...) {
  RecordingPlatform& platform = platform_for("open");
  if (!platform.files.contains(path)) return -1;
  auto& descriptors = platform.internals().sockets;
  descriptors.emplace_back();
  platform.kernel_events.push_back("open " + std::string(path));
  return kFirstSocket + static_cast<int>(descriptors.size());
}

int __wrap_close(int descriptor) {
  RecordingPlatform& platform = platform_for("close");
  const std::size_t number = find_socket(platform, descriptor, "close");
  if (number == 0) return -1;
  platform.internals().sockets[number - 1].is_open = false;
  platform.kernel_events.push_back("close " + std::to_string(number));
  return 0;
}

int __wrap_system(const char* command) {
  RecordingPlatform& platform = platform_for("system");
  platform.shell_commands.emplace_back(command);
  return platform.failure_of("system");
}

}  // extern "C"
