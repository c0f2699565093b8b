#include "source/kernel/identify.h"

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <map>

namespace host {
namespace {

// A port blinks while a process waits in the kernel's call: one child for each port.
std::map<uint32, pid_t> children;

// A call that fails returns immediately.
constexpr int kRefusalMs = 100;

// Blinks until it is killed, or reports by the pipe why it cannot. In its own process group, so Ctrl-C does not reach
// it.
[[noreturn]] void blink(const std::string& device, int result) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  setpgid(0, 0);
  ifreq request{};
  ethtool_value until_interrupted{.cmd = ETHTOOL_PHYS_ID, .data = 0};
  device.copy(request.ifr_name, sizeof request.ifr_name - 1);
  request.ifr_data = reinterpret_cast<char*>(&until_interrupted);
  const int control = socket(AF_INET, SOCK_DGRAM, 0);
  const int error = control < 0 || ioctl(control, SIOCETHTOOL, &request) < 0 ? errno : 0;
  [[maybe_unused]] const ssize_t written = write(result, &error, sizeof error);
  _exit(0);
}

void end(pid_t child) {
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

// The child's error; 0 while it blinks.
int error_of(int result) {
  pollfd wait{.fd = result, .events = POLLIN, .revents = 0};
  int error = 0;
  if (poll(&wait, 1, kRefusalMs) == 1 && read(result, &error, sizeof error) != sizeof error) return EIO;
  return error;
}

}  // namespace

int start_identifying(uint32 number, const std::string& device) {
  if (is_identifying(number)) return 0;
  int ends[2];
  if (pipe(ends) != 0) return errno;
  const pid_t child = fork();
  if (child == 0) blink(device, ends[1]);
  const int fork_error = child < 0 ? errno : 0;
  close(ends[1]);
  const int error = child < 0 ? fork_error : error_of(ends[0]);
  close(ends[0]);
  if (child > 0 && error != 0) end(child);
  if (error == 0) children[number] = child;
  return error;
}

void stop_identifying(uint32 number) {
  const auto found = children.find(number);
  if (found == children.end()) return;
  end(found->second);
  children.erase(found);
}

bool is_identifying(uint32 number) { return children.contains(number); }

}  // namespace host
