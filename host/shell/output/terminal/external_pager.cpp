#include "shell/output/terminal/external_pager.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "base/tokens.h"

namespace host {
namespace {

constexpr char kUsual[] = "less -FRX";

bool is_installed(std::string_view program) {
  const char* const path = std::getenv("PATH");
  std::string_view places = path == nullptr ? "" : path;
  while (!places.empty()) {
    const std::size_t end = std::min(places.find(':'), places.size());
    const std::string file = fmt::format("{}/{}", places.substr(0, end), program);
    if (access(file.c_str(), X_OK) == 0) return true;
    places.remove_prefix(std::min(end + 1, places.size()));
  }
  return false;
}

// The arguments of a command; a command that needs a shell is passed to one.
std::vector<std::string> arguments_of(const std::string& command) {
  if (command.find_first_of("|&;<>()$`\\\"'*?[#~=%\n") != std::string::npos) return {"/bin/sh", "-c", command};
  std::vector<std::string> words;
  for (const word_token& word : split_words(command)) words.emplace_back(word.text);
  return words;
}

// The environment, in which less has the usual options unless the user chose some.
std::vector<char*> environment_of_pager() {
  static char options[] = "LESS=FRX";
  std::vector<char*> variables;
  for (char** it = environ; *it != nullptr; ++it) variables.push_back(*it);
  if (std::getenv("LESS") == nullptr) variables.push_back(options);
  variables.push_back(nullptr);
  return variables;
}

int spawn(const std::string& command, int input, pid_t& child) {
  std::vector<std::string> words = arguments_of(command);
  if (words.empty()) return ENOENT;
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t usual, none;
  sigemptyset(&none);
  sigemptyset(&usual);
  for (const int number : {SIGINT, SIGPIPE}) sigaddset(&usual, number);
  posix_spawnattr_setsigdefault(&attributes, &usual);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  const int error =
      posix_spawnp(&child, arguments[0], &actions, &attributes, arguments.data(), environment_of_pager().data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

}  // namespace

pager_choice chosen_pager() {
  const char* const named = std::getenv("PAGER");
  if (named == nullptr) return {is_installed("less") ? kUsual : ""};
  const std::string command(trim(named));
  return {command, !command.empty() && command != "cat"};
}

int external_pager::start(const std::string& command) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return errno;
  has_terminal_ = tcgetattr(STDIN_FILENO, &terminal_) == 0;
  const int error = spawn(command, ends[0], child_);
  close(ends[0]);
  if (error != 0) {
    close(ends[1]);
    child_ = -1;
    return error;
  }
  text_ = ends[1];
  broken_pipe_ = std::signal(SIGPIPE, SIG_IGN);
  return 0;
}

void external_pager::finish() {
  if (!is_running()) return;
  struct sigaction ignored {
  }, outside{};
  ignored.sa_handler = SIG_IGN;
  sigaction(SIGINT, &ignored, &outside);
  close(text_);
  while (waitpid(child_, nullptr, 0) < 0 && errno == EINTR) continue;
  child_ = text_ = -1;
  if (has_terminal_) tcsetattr(STDIN_FILENO, TCSADRAIN, &terminal_);
  sigaction(SIGINT, &outside, nullptr);
  std::signal(SIGPIPE, broken_pipe_);
}

}  // namespace host
