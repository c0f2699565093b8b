#include "shell/interrupt.h"

#include <csignal>

#include "transport/transport.h"

namespace host {
namespace {

volatile std::sig_atomic_t interrupted = 0;
struct sigaction action_outside {};

void interrupt_command(int) {
  interrupted = 1;
  transport_cancel(true);
}

}  // namespace

bool was_interrupted() { return interrupted != 0; }

// Without SA_RESTART: reading from the terminal ends, too.
interrupt_scope::interrupt_scope() {
  interrupted = 0;
  struct sigaction action {};
  action.sa_handler = interrupt_command;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &action_outside);
}

interrupt_scope::~interrupt_scope() {
  sigaction(SIGINT, &action_outside, nullptr);
  transport_cancel(false);
}

}  // namespace host
