#include "shell/session/command_files.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "base/files.h"
#include "base/state_directory.h"
#include "base/text.h"
#include "shell/grammar/cut_line.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/interrupt.h"
#include "shell/session/modes.h"
#include "shell/session/run.h"

namespace host {
namespace {

constexpr uint32 kMostNestedFiles = 8;

// The lines of a file, which is read completely first; those of standard input as they arrive.
class input_lines {
 public:
  // Without a text: standard input.
  explicit input_lines(std::optional<std::string> text) : text_(std::move(text)) {}
  ~input_lines() { std::free(typed_); }
  input_lines(const input_lines&) = delete;
  input_lines& operator=(const input_lines&) = delete;

  bool next(std::string_view& line) {
    if (text_) return next_of_text(line);
    if (getline(&typed_, &size_, stdin) < 0) return false;
    line = typed_;
    return true;
  }

 private:
  bool next_of_text(std::string_view& line) {
    if (at_ >= text_->size()) return false;
    const std::size_t end = std::min(text_->find('\n', at_), text_->size());
    line = std::string_view(*text_).substr(at_, end - at_);
    at_ = end + 1;
    return true;
  }

  std::optional<std::string> text_;
  std::size_t at_ = 0;
  char* typed_ = nullptr;
  std::size_t size_ = 0;
};

// The name of a file in messages.
std::string shown_name(const std::string& path) { return path == "-" ? "standard input" : path; }

int run_lines(shell& session, input_lines& lines, const std::string& shown) {
  int result = kDone;
  std::string_view line;
  for (uint32 number = 1; !session.is_leaving && lines.next(line); ++number) {
    line = trim(line);
    if (line.empty() || is_comment(line)) continue;
    const int code = run_line(session, line);
    if (result == kDone) result = code;
    if (code == kDone) continue;
    if (code == kInterrupted || !session.keeps_going) {
      print_error(fmt::format("{}:{}: '{}' failed; the remaining lines were not run. Use --keep-going to continue.",
                              shown, number, line));
      break;
    }
    print_error(fmt::format("{}:{}: '{}' failed.", shown, number, line));
  }
  return result;
}

int run_file_at(shell& session, const std::string& path, bool is_startup) {
  const std::string shown = shown_name(path);
  if (session.num_files == kMostNestedFiles) {
    print_error(fmt::format("'{}' was not run: files may run each other 8 deep. Does one run itself?", shown));
    return kUsage;
  }
  command_text read = path == "-" ? command_text() : read_commands(path, is_startup);
  if (read.code != kDone) {
    if (read.code != kInterrupted) print_error(read.error);
    return read.code;
  }
  input_lines lines(std::move(read.text));
  ++session.num_files;
  const int code = run_lines(session, lines, shown);
  --session.num_files;
  return code;
}

// While it lives, the output of the session's commands and all errors are collected.
class collection {
 public:
  collection(shell& session, std::vector<copied_file::line>& lines) : session_(session), output_(session.output) {
    const auto add = [&lines](bool is_error) {
      return [&lines, is_error](std::string_view text) { lines.push_back({is_error, std::string(text)}); };
    };
    settings_.sink = add(false);
    session_.output = &settings_;
    errors_ = set_error_sink(add(true));
  }
  ~collection() {
    session_.output = output_;
    set_error_sink(std::move(errors_));
  }
  collection(const collection&) = delete;
  collection& operator=(const collection&) = delete;

 private:
  shell& session_;
  const output_settings* output_;
  output_settings settings_;
  error_taker errors_;
};

}  // namespace

std::string startup_file(const shell& session) {
  return state_file(fmt::format("{}.{}", session.about.name, kStartupConfig));
}

command_text read_commands(const std::string& path, bool is_startup) {
  if (path.empty()) return {std::nullopt, std::string(kNoPlaceForStartup), kUsage};
  if (is_startup && !exists(path))
    return {std::nullopt, "there is no startup-config yet. Type 'copy running-config startup-config' to store one.",
            kNoSuchInterface};
  command_text read;
  read.text = read_file(path, read.error, was_interrupted);
  if (!read.text) read.code = was_interrupted() ? kInterrupted : kUsage;
  return read;
}

int run_file(shell& session, const std::string& name) {
  const bool is_startup = name == kStartupConfig;
  return run_file_at(session, is_startup ? startup_file(session) : name, is_startup);
}

copied_file run_for_copy(shell& session, const std::string& name, bool is_collected) {
  const bool is_startup = name.empty();
  copied_file copied;
  copied.path = is_startup ? startup_file(session) : name;
  std::optional<collection> collecting;
  if (is_collected) collecting.emplace(session, copied.lines);
  const shell_mode mode = std::exchange(session.mode, kExecMode);
  const configured_interfaces configured = std::exchange(session.configured, {});
  copied.code = run_file_at(session, copied.path, is_startup);
  session.mode = mode;
  session.configured = configured;
  session.is_leaving = session.has_lost_output;
  if (session.edited && session.edited->num_files > session.num_files) end_candidate(session);
  if (session.trying && session.trying->num_files > session.num_files) leave_dry_run(session);
  leave_interfaces_lost_to_user(session);
  return copied;
}

int report(const copied_file& copied, command_output& output) {
  for (const auto& [is_error, text] : copied.lines) is_error ? output.complain(text) : output.text(text);
  if (copied.code == kDone) output.text(fmt::format("Applied {}.\n", shown_name(copied.path)));
  return copied.code;
}

}  // namespace host
