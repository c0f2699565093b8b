#include "shell/output/terminal/pager.h"

#include <fmt/format.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/printable.h"
#include "transport/cancellation.h"

namespace host {
namespace {

void put(int terminal, std::string_view text) {
  [[maybe_unused]] const ssize_t written = write(terminal, text.data(), text.size());
}

// Of a terminal that does not report its size.
std::size_t usual_columns() {
  const char* const text = std::getenv("COLUMNS");
  std::size_t columns = 0;
  if (text != nullptr) std::from_chars(text, text + std::strlen(text), columns);
  return columns == 0 ? 80 : columns;
}

}  // namespace

screen_size size_of(int terminal) {
  winsize size{};
  if (ioctl(terminal, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0) return {24, usual_columns()};
  return {size.ws_row, size.ws_col};
}

int ask_for_key(int screen, int keys, std::string_view question) {
  termios saved{};
  if (tcgetattr(keys, &saved) != 0) return put(screen, question), -1;
  termios raw = saved;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  raw.c_cc[VMIN] = 1;
  raw.c_cc[VTIME] = 0;
  // Blocked outside of the waiting, Ctrl-C cannot come just before it and be lost.
  sigset_t ctrl_c;
  sigset_t outside;
  sigemptyset(&ctrl_c);
  sigaddset(&ctrl_c, SIGINT);
  pthread_sigmask(SIG_BLOCK, &ctrl_c, &outside);
  tcsetattr(keys, TCSADRAIN, &raw);  // first: a key that follows the question at once is not shown
  put(screen, question);
  pollfd waiting{keys, POLLIN, 0};
  int ready = 0;
  do ready = ppoll(&waiting, 1, nullptr, &outside);
  while (ready < 0 && errno == EINTR && !waits_are_cancelled());
  unsigned char key = 0;
  const ssize_t size = ready > 0 ? read(keys, &key, 1) : -1;
  tcsetattr(keys, TCSADRAIN, &saved);
  pthread_sigmask(SIG_SETMASK, &outside, nullptr);
  return size == 1 ? key : -1;
}

std::size_t pager::rows_of(std::string_view line) const {
  const std::size_t columns = size_of(terminal_).columns;
  return std::max<std::size_t>(1, (count_characters(line) + columns - 1) / columns);
}

std::size_t pager::rows_of_screen() const { return lines_ != 0 ? lines_ : size_of(terminal_).rows; }

bool pager::make_room(std::string_view line) {
  if (!has_room(line) && !ask()) return false;
  rows_used_ += rows_of(line);
  return true;
}

void pager::erase() {
  if (rows_used_ > 0) put(terminal_, fmt::format("\x1b[{}A\r\x1b[J", rows_used_));
  rows_used_ = 0;
}

// Blank shows the next screen, Return the next line, q ends the output.
bool pager::ask() {
  int key = 0;
  std::string_view question = "--More--";
  do {
    key = ask_for_key(terminal_, STDIN_FILENO, question);
    question = {};
  } while (key >= 0 && std::string_view(" \r\nqQ").find(static_cast<char>(key)) == std::string_view::npos);
  put(terminal_, key < 0 ? "\r        \r^C" : "\r        \r");
  if (key == ' ') rows_used_ = 0;
  if (key == '\n' || key == '\r') rows_used_ -= 1;
  return key >= 0 && key != 'q' && key != 'Q';
}

}  // namespace host
