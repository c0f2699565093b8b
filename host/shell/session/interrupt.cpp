#include "shell/session/interrupt.h"

#include <unistd.h>

#include <csignal>
#include <ctime>
#include <string_view>

#include "shell/output/exit_codes.h"
#include "transport/transport.h"

namespace host {
namespace {

volatile std::sig_atomic_t interrupted = 0;
struct sigaction action_outside {};
int num_scopes = 0;
timespec interrupted_at{};

// Whether the command still runs more than a second after it was interrupted, by when one that can end has ended.
bool is_stuck() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec - interrupted_at.tv_sec > 1;
}

// The code of a command library cannot be stopped, only left.
void leave_stuck_command() {
  constexpr std::string_view kText = "\npmsh: the command does not end, so the shell does.\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kText.data(), kText.size());
  _exit(kInterrupted);
}

void interrupt_command(int) {
  if (interrupted != 0 && is_stuck()) leave_stuck_command();
  if (interrupted == 0) clock_gettime(CLOCK_MONOTONIC, &interrupted_at);
  interrupted = 1;
  transport_cancel(true);
}

}  // namespace

bool was_interrupted() { return interrupted != 0; }

// Without SA_RESTART: reading from the terminal ends, too.
interrupt_scope::interrupt_scope() {
  if (num_scopes++ > 0) return;
  interrupted = 0;
  struct sigaction action {};
  action.sa_handler = interrupt_command;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &action_outside);
}

interrupt_scope::~interrupt_scope() {
  if (--num_scopes > 0) return;
  sigaction(SIGINT, &action_outside, nullptr);
  transport_cancel(false);
}

}  // namespace host
