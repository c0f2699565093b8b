// What the recording platform does with sockets, shell commands and requests to clear: recorded, accounted for.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cstring>

#include "support/matchers.h"
#include "support/recording_platform.h"

// As the library under test calls them.
extern "C" {
int __wrap_socket(int domain, int type, int protocol);
int __wrap_ioctl(int descriptor, unsigned long request, ...);
int __wrap_close(int descriptor);
int __wrap_system(const char* command);
}

namespace pmcli_test {
namespace {

using Events = std::vector<std::string>;

int open_socket() { return __wrap_socket(AF_INET, SOCK_DGRAM, 0); }

ifreq request_for(const char* device) {
  ifreq request;
  std::memset(&request, 0xFF, sizeof request);
  std::strcpy(request.ifr_name, device);
  return request;
}

TEST(RecordedKernel, AnswersRequestsForItsDevices) {
  RecordingPlatform platform;
  platform.kernel_interfaces["eth1"] = {.hardware_address = {1, 2, 3, 4, 5, 6}, .mtu_bytes = 1280, .is_up = false};
  const int socket = open_socket();
  ifreq request = request_for("eth1");
  ASSERT_EQ(__wrap_ioctl(socket, SIOCGIFHWADDR, &request), 0);
  EXPECT_EQ(std::memcmp(request.ifr_hwaddr.sa_data, "\1\2\3\4\5\6", 6), 0);
  ASSERT_EQ(__wrap_ioctl(socket, SIOCGIFFLAGS, &request), 0);
  EXPECT_EQ(request.ifr_flags & IFF_UP, 0);
  ASSERT_EQ(__wrap_ioctl(socket, SIOCGIFMTU, &request), 0);
  EXPECT_EQ(request.ifr_mtu, 1280);
  request = request_for("eth2");
  EXPECT_EQ(__wrap_ioctl(socket, SIOCGIFMTU, &request), -1);
  EXPECT_EQ(__wrap_close(socket), 0);
  EXPECT_EQ(platform.kernel_events, (Events{"socket 1", "SIOCGIFHWADDR eth1", "SIOCGIFFLAGS eth1", "SIOCGIFMTU eth1",
                                            "SIOCGIFMTU eth2", "close 1"}));
}

TEST(RecordedKernel, RequestsFailAsProgrammed) {
  RecordingPlatform platform;
  platform.kernel_interfaces["eth1"] = {.hardware_address = {1, 2, 3, 4, 5, 6}};
  platform.silent_requests = {"SIOCGIFMTU"};
  const int socket = open_socket();
  ifreq request = request_for("eth1");
  EXPECT_EQ(__wrap_ioctl(socket, SIOCGIFMTU, &request), -1);
  EXPECT_EQ(__wrap_ioctl(socket, SIOCGIFFLAGS, &request), 0);
  platform.fail_with("ioctl");
  EXPECT_EQ(__wrap_ioctl(socket, SIOCGIFFLAGS, &request), -1);
  platform.fail_with("socket");
  EXPECT_EQ(open_socket(), -1);
  __wrap_close(socket);
}

TEST(RecordedKernel, OpenSocketsAreReported) {
  RecordingPlatform platform;
  __wrap_close(open_socket());
  open_socket();
  EXPECT_EQ(platform.unreleased(), (Events{"socket 2 was not closed"}));
  EXPECT_NONFATAL_FAILURE(platform.expect_all_released(), "socket 2 was not closed");
  EXPECT_THAT(platform.unreleased(), IsEmpty());
}

TEST(RecordedKernel, ClosedSocketsAreNotUsed) {
  RecordingPlatform platform;
  const int socket = open_socket();
  __wrap_close(socket);
  ifreq request = request_for("eth1");
  EXPECT_NONFATAL_FAILURE(__wrap_close(socket), "which is not open");
  EXPECT_NONFATAL_FAILURE(__wrap_close(1), "which is not open");
  EXPECT_NONFATAL_FAILURE(__wrap_ioctl(socket, SIOCGIFMTU, &request), "which is not open");
}

TEST(RecordedKernel, UnterminatedNamesAreFound) {
  RecordingPlatform platform;
  const int socket = open_socket();
  ifreq request = request_for("eth1");
  std::memset(request.ifr_name, 'x', sizeof request.ifr_name);
  EXPECT_NONFATAL_FAILURE(__wrap_ioctl(socket, SIOCGIFMTU, &request), "is not terminated");
  __wrap_close(socket);
}

TEST(RecordedShell, CommandsAreRecordedAndNotRun) {
  RecordingPlatform platform;
  EXPECT_EQ(__wrap_system("exit 3"), 0);
  platform.fail_with("system", 256);
  EXPECT_EQ(__wrap_system("exit 0"), 256);
  EXPECT_EQ(platform.shell_commands, (Events{"exit 3", "exit 0"}));
}

TEST(RecordedClearing, GivesAResultForEachInterface) {
  RecordingPlatform platform;
  platform.clear_errors[ethernet(1, 2)] = 0x01020304;
  const if_index_t asked[] = {ethernet(1, 1), ethernet(1, 2)};
  uint8* list = nullptr;
  ASSERT_EQ(pm_clear_port_counters(RecordingPlatform::q(), 2, asked, 1, &list, 1), 0);
  EXPECT_EQ(platform.unreleased(), (Events{"block of 17 bytes from pm_clear_port_counters was not freed"}));
  pm_clear_status_t entries[2];
  ASSERT_EQ(list[0], 2);
  std::memcpy(entries, list + 1, sizeof entries);
  EXPECT_EQ(entries[0].if_index, asked[0]);
  EXPECT_EQ(entries[0].status, 0);
  EXPECT_EQ(entries[1].if_index, asked[1]);
  EXPECT_EQ(entries[1].status, 0x01020304);
  platform.release(list);
}

TEST(RecordedClearing, NextInterfaceStaysInItsKindAndPlace) {
  RecordingPlatform platform;
  if_index_t next = 0;
  EXPECT_EQ(if_index_next(vethernet(7), &next), 0);
  EXPECT_EQ(next, vethernet(8));
  EXPECT_EQ(if_index_next(satellite(100, 1, 2), &next), 0);
  EXPECT_EQ(next, satellite(100, 1, 3));
  EXPECT_NE(if_index_next(satellite(100, 1, 0x4000), &next), 0);
  EXPECT_NE(if_index_next(loopback(0x3FFFFFF), &next), 0);
  EXPECT_NE(if_index_next(ethernet(1, 1), &next), 0);
  EXPECT_EQ(next, satellite(100, 1, 3));
}

}  // namespace
}  // namespace pmcli_test
