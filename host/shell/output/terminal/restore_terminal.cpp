#include "shell/output/terminal/restore_terminal.h"

#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace host {
namespace {

termios terminal_before{};

void restore_terminal_and_end(int number) {
  std::signal(SIGTTOU, SIG_IGN);  // in the background, too
  tcsetattr(STDIN_FILENO, TCSANOW, &terminal_before);
  std::signal(number, SIG_DFL);
  std::raise(number);
}

}  // namespace

void restore_terminal_at_end() {
  static const bool is_terminal = tcgetattr(STDIN_FILENO, &terminal_before) == 0;
  static bool is_set = false;
  if (!is_terminal || is_set) return;
  is_set = true;
  for (const int number : {SIGHUP, SIGTERM}) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action.sa_handler = restore_terminal_and_end;
    action.sa_flags = static_cast<int>(SA_NODEFER | SA_RESETHAND);
    sigaction(number, &action, nullptr);
  }
}

}  // namespace host
