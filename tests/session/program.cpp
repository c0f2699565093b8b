#include "session/program.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>

namespace session {
namespace {

using clock = std::chrono::steady_clock;

constexpr int kPatienceMs = 600'000;  // only ends a wait for what never comes, on a machine however busy

std::vector<char*> argument_vector(const std::string& program, std::vector<std::string>& arguments) {
  arguments.insert(arguments.begin(), program);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::array<int, 2> make_pipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
  return ends;
}

int exit_code_of(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); }

// Reads both until their writers have closed them.
void read_all(int out, int err, outcome& result) {
  std::array<pollfd, 2> sources = {{{out, POLLIN, 0}, {err, POLLIN, 0}}};
  std::array<std::string*, 2> texts = {&result.out, &result.err};
  for (int open = 2; open > 0;) {
    poll(sources.data(), sources.size(), -1);
    for (std::size_t i = 0; i < sources.size(); ++i) {
      if (sources[i].fd < 0 || sources[i].revents == 0) continue;
      char part[4096];
      const ssize_t size = read(sources[i].fd, part, sizeof part);
      if (size > 0) {
        texts[i]->append(part, static_cast<std::size_t>(size));
      } else {
        sources[i].fd = -1;
        --open;
      }
    }
  }
}

// In a child: a program with the usual signals, also when the tests themselves ignore one, as under nohup.
[[noreturn]] void run_in_child(std::vector<char*>& arguments, const std::string& state) {
  signal(SIGHUP, SIG_DFL);
  setenv("XDG_STATE_HOME", state.c_str(), 1);
  execv(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

outcome run_program(const std::string& program, const std::vector<std::string>& arguments, const std::string& input) {
  std::vector<std::string> copies = arguments;
  std::vector<char*> pointers = argument_vector(program, copies);
  const auto in = make_pipe();
  const auto out = make_pipe();
  const auto err = make_pipe();
  const std::string state = state_directory();
  const pid_t child = fork();
  if (child == 0) {
    dup2(in[0], 0);
    dup2(out[1], 1);
    dup2(err[1], 2);
    run_in_child(pointers, state);
  }
  for (const int end : {in[0], out[1], err[1]}) close(end);
  if (write(in[1], input.data(), input.size()) != static_cast<ssize_t>(input.size())) std::abort();
  close(in[1]);
  outcome result;
  read_all(out[0], err[0], result);
  close(out[0]);
  close(err[0]);
  int status = 0;
  waitpid(child, &status, 0);
  result.exit_code = exit_code_of(status);
  return result;
}

std::string test_file(const std::string& name) { return std::string(PMSH_TEST_FILES) + "/" + name; }

std::string state_directory() { return std::string(PMSH_STATE_DIRECTORY) + "/" + std::to_string(getpid()); }

std::string shipped_switch(const std::string& name) { return std::string(PMSH_SWITCHES) + "/" + name; }

outcome run_shell_on(const std::string& switch_file, std::vector<std::string> arguments, const std::string& input) {
  arguments.insert(arguments.begin(), {"--switch", switch_file});
  return run_program(PMSH_PROGRAM, arguments, input);
}

outcome run_shell(std::vector<std::string> arguments, const std::string& input) {
  return run_shell_on(test_file("lab.yaml"), std::move(arguments), input);
}

outcome run_lines(const std::string& lines, std::vector<std::string> options) {
  return run_shell_on(test_file("configuration.yaml"), std::move(options), lines);
}

outcome run_command(const std::string& command) { return run_shell({"-c", command}); }

piped_shell::piped_shell(const std::string& switch_file, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"--switch", switch_file});
  std::vector<char*> pointers = argument_vector(PMSH_PROGRAM, arguments);
  const std::string state = state_directory();
  const auto out = make_pipe();
  child_ = fork();
  if (child_ == 0) {
    dup2(out[1], 1);
    run_in_child(pointers, state);
  }
  close(out[1]);
  out_ = out[0];
}

piped_shell::~piped_shell() {
  if (out_ >= 0) close(out_);
  if (child_ <= 0) return;
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
}

bool piped_shell::read_more(int milliseconds) {
  pollfd source{out_, POLLIN, 0};
  if (poll(&source, 1, std::max(0, milliseconds)) <= 0) return false;
  char part[4096];
  const ssize_t size = read(out_, part, sizeof part);
  if (size <= 0) return false;
  unread_.append(part, static_cast<std::size_t>(size));
  return true;
}

std::string piped_shell::line() {
  const auto deadline = clock::now() + std::chrono::milliseconds(kPatienceMs);
  while (unread_.find('\n') == std::string::npos) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - clock::now()).count();
    if (left <= 0 || !read_more(static_cast<int>(left))) return {};
  }
  const std::string found = unread_.substr(0, unread_.find('\n'));
  unread_.erase(0, found.size() + 1);
  return found;
}

std::string piped_shell::rest() {
  while (read_more(kPatienceMs)) continue;
  return unread_;
}

void piped_shell::interrupt() const { kill(child_, SIGINT); }

void piped_shell::stop_reading() {
  close(out_);
  out_ = -1;
}

int piped_shell::exit_code() {
  const auto deadline = clock::now() + std::chrono::milliseconds(kPatienceMs);
  int status = 0;
  for (; clock::now() < deadline; usleep(1000)) {
    if (waitpid(child_, &status, WNOHANG) != child_) continue;
    child_ = -1;
    return exit_code_of(status);
  }
  return -1;
}

terminal::terminal(std::vector<std::string> arguments, const std::string& switch_file) {
  if (!switch_file.empty()) arguments.insert(arguments.begin(), {"--switch", switch_file});
  std::vector<char*> pointers = argument_vector(PMSH_PROGRAM, arguments);
  winsize size{};
  size.ws_row = 24;
  size.ws_col = 80;
  const std::string state = state_directory();
  child_ = forkpty(&screen_, nullptr, nullptr, &size);
  if (child_ == 0) {
    setenv("TERM", "vt100", 1);
    run_in_child(pointers, state);
  }
}

terminal::~terminal() {
  close(screen_);  // hangs the terminal up: a shell that still runs ends
  if (child_ > 0) waitpid(child_, nullptr, 0);
}

void terminal::type(const std::string& keys) {
  if (write(screen_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) std::abort();
}

void terminal::signal(int number) const { kill(child_, number); }

bool terminal::is_cooked() const {
  termios modes{};
  return tcgetattr(screen_, &modes) == 0 && (modes.c_lflag & ICANON) != 0;
}

void terminal::resize(unsigned short rows, unsigned short columns) const {
  winsize size{};
  size.ws_row = rows;
  size.ws_col = columns;
  ioctl(screen_, TIOCSWINSZ, &size);
}

bool terminal::shows_prompt() {
  if (!shows("lab# ")) return false;
  const auto deadline = clock::now() + std::chrono::milliseconds(kPatienceMs);
  termios modes{};
  while (tcgetattr(screen_, &modes) == 0 && (modes.c_lflag & ICANON) != 0) {
    if (clock::now() > deadline) return false;
    usleep(1000);
  }
  return true;
}

bool terminal::read_more(int milliseconds) {
  pollfd source{screen_, POLLIN, 0};
  if (poll(&source, 1, milliseconds) <= 0) return false;
  char part[4096];
  const ssize_t size = read(screen_, part, sizeof part);
  if (size <= 0) return false;
  unread_.append(part, static_cast<std::size_t>(size));
  return true;
}

bool terminal::shows(const std::string& text) {
  const auto deadline = clock::now() + std::chrono::milliseconds(kPatienceMs);
  while (true) {
    if (const std::size_t at = unread_.find(text); at != std::string::npos) {
      seen_ = unread_.substr(0, at + text.size());
      unread_.erase(0, seen_.size());
      return true;
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - clock::now()).count();
    if (left <= 0 || !read_more(static_cast<int>(left))) return unread_.find(text) != std::string::npos;
  }
}

int terminal::exit_code() {
  const auto deadline = clock::now() + std::chrono::milliseconds(kPatienceMs);
  int status = 0;
  while (clock::now() < deadline) {
    read_more(20);
    if (waitpid(child_, &status, WNOHANG) == child_) {
      child_ = -1;
      return exit_code_of(status);
    }
  }
  return -1;
}

}  // namespace session
