#include "settings/guardian.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "base/c_edge.h"
#include "switch/source.h"

namespace host {
namespace {

// Requests to the guardian: a byte, for kBegin followed by the seconds.
enum : char { kBegin = 'b', kConfirm = 'c', kRollBack = 'r' };

// Its answers: first kReady, at the end one of the others.
enum : char { kReady = 'g', kConfirmed = 'c', kRolledBack = 'r' };

struct message {
  char what;
  uint32 number;
};

bool send_message(int socket, message it) { return send(socket, &it, sizeof it, MSG_NOSIGNAL) == sizeof it; }

// False when the other end is gone.
bool receive_message(int socket, message& it) {
  ssize_t size = 0;
  while ((size = recv(socket, &it, sizeof it, 0)) < 0 && errno == EINTR) {
  }
  return size == sizeof it;
}

// ---- The process.

using clock = std::chrono::steady_clock;

// Closes all open files except one. Their descriptors stay in use, because objects of the shell may close them later
// and must not close another file.
void release_files_but(int kept, int nowhere) {
  std::vector<int> open_ones;
  if (DIR* const directory = opendir("/proc/self/fd"); directory != nullptr) {
    while (const dirent* const entry = readdir(directory)) open_ones.push_back(std::atoi(entry->d_name));
    std::erase(open_ones, dirfd(directory));
    closedir(directory);
  }
  for (const int descriptor : open_ones)
    if (descriptor > STDERR_FILENO && descriptor != kept) dup2(nowhere, descriptor);
}

// The process has its own session, keeps only its socket open, and survives the signals that end the shell.
void leave_shell(int socket) {
  setsid();
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP, SIGPIPE}) std::signal(signal, SIG_IGN);
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, descriptor);
  release_files_but(socket, nowhere);
}

// Nothing is rolled back while the devices cannot be read: a kernel that is out of memory may have some a little later.
uint32 roll_back_devices(const machine_changes& back) {
  constexpr uint32 kTries = 10;
  for (uint32 i = 0; i < kTries; ++i) {
    const bool is_done = no_throw(false, [&] {
      the_source().refresh(the_machine());
      return apply_changes(the_machine(), back).refused.empty();
    });
    if (is_done) return 0;
    poll(nullptr, 0, 100);
  }
  return no_throw<uint32>(1, [&] { return static_cast<uint32>(apply_changes(the_machine(), back).refused.size()); });
}

int milliseconds_until(const std::optional<clock::time_point>& deadline) {
  if (!deadline) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - clock::now()).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max()));
}

// True when the changes were confirmed, false when they must be rolled back.
bool wait_for_confirmation(int socket) {
  std::optional<clock::time_point> deadline;
  for (;;) {
    pollfd order{.fd = socket, .events = POLLIN, .revents = 0};
    const int ready = poll(&order, 1, milliseconds_until(deadline));
    if (ready < 0 && errno == EINTR) continue;
    message it{};
    if (ready <= 0 || !receive_message(socket, it) || it.what == kRollBack) return false;
    if (it.what == kConfirm) return true;
    if (it.what == kBegin) deadline = clock::now() + std::chrono::seconds(it.number);
  }
}

[[noreturn]] void guard(int socket, const machine_changes& back) {
  leave_shell(socket);
  send_message(socket, {kReady, 0});
  if (wait_for_confirmation(socket))
    send_message(socket, {kConfirmed, 0});
  else
    send_message(socket, {kRolledBack, roll_back_devices(back)});
  _exit(0);
}

}  // namespace

std::unique_ptr<guardian> guardian::start(const machine_changes& back, std::string& error) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) return error = std::strerror(errno), nullptr;
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    guard(ends[1], back);
  }
  const int fork_error = errno;
  close(ends[1]);
  if (child < 0) return close(ends[0]), error = std::strerror(fork_error), nullptr;
  std::unique_ptr<guardian> started(new guardian(ends[0], child));
  message ready{};
  if (receive_message(ends[0], ready) && ready.what == kReady) return started;
  error = "it ended at once";
  return nullptr;
}

guardian::~guardian() { roll_back(); }

void guardian::end() {
  close(std::exchange(socket_, -1));
  while (waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

void guardian::begin(uint32 seconds) { send_message(socket_, {kBegin, seconds}); }

bool guardian::has_ended() const {
  message answer{};
  return socket_ < 0 || recv(socket_, &answer, sizeof answer, MSG_PEEK | MSG_DONTWAIT) == sizeof answer;
}

// A guardian that ends without an answer was killed and no longer rolls back.
bool guardian::confirm() {
  if (socket_ < 0) return false;
  send_message(socket_, {kConfirm, 0});
  message answer{};
  const bool is_answered = receive_message(socket_, answer);
  if (is_answered) num_refused_ = answer.number;
  end();
  return !is_answered || answer.what == kConfirmed;
}

std::optional<uint32> guardian::roll_back() {
  if (socket_ < 0) return num_refused_;
  send_message(socket_, {kRollBack, 0});
  message answer{};
  if (receive_message(socket_, answer)) num_refused_ = answer.number;
  end();
  return num_refused_;
}

}  // namespace host
