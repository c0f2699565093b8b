// Settings in files: written, and read back as commands.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>

#include "shell/commands.h"
#include "shell/files.h"
#include "shell/interface_kinds.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/print_error.h"
#include "shell/prompts.h"
#include "shell/running_config.h"
#include "shell/selection.h"
#include "shell/shell.h"
#include "shell/state_directory.h"
#include "shell/words.h"

namespace host {
namespace {

constexpr uint32 kNoDisplayId = 0;
constexpr std::string_view kStartupConfig = "startup-config";

// The interfaces that were named, or all that the user may see.
selection select_configured(const invocation& run) {
  const command_queue q;
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  selection chosen = run.line.spans.empty() ? select_every(run.session, parameters)
                                            : select_named(run.session, parameters, run.line.spans);
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  return chosen;
}

std::string configuration_text(const invocation& run, const selection& chosen) {
  const bool is_whole = run.line.spans.empty();
  return running_config(the_machine(), chosen.interfaces,
                        is_whole ? std::span<const if_index_t>(the_machine().deleted) : std::span<const if_index_t>());
}

// A record for each command of each interface.
void record_commands(command_output& output, const selection& chosen) {
  for (const if_index_t if_index : chosen.interfaces) {
    const interface* const port = the_machine().find(if_index);
    char name[64];
    std::istringstream lines(port != nullptr ? settings_of(*port) : std::string());
    for (std::string line; std::getline(lines, line);) {
      output.begin_interface(sprintf_if_index(name, if_index));
      const std::string command(trim(line));
      output.bind({uint32{CMD_TYPE_STRING} << 24 | kTagCommand, command.c_str()});
      output.end_interface();
    }
  }
}

std::string startup_file(const shell& session) {
  return state_file(session.switch_name + "." + std::string(kStartupConfig));
}

// The lines of a file, which is read to its end first; those of standard input as they come.
class input_lines {
 public:
  // Without a text of its own: standard input.
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

bool is_comment(std::string_view text) { return text.empty() || text.front() == '!' || text.front() == '#'; }

}  // namespace

int show_running_config(const invocation& run) {
  const selection chosen = select_configured(run);
  if (chosen.code != kDone) return chosen.code;
  if (run.output.is_structured())
    record_commands(run.output, chosen);
  else
    run.output.text(configuration_text(run, chosen));
  return kDone;
}

int copy_running_config(const invocation& run) {
  const bool is_startup = run.line.argument.empty();
  const std::string path = is_startup ? startup_file(run.session) : run.line.argument;
  if (path.empty()) {
    run.output.complain("there is no place for the startup-config: neither XDG_STATE_HOME nor HOME is set.");
    return kUsage;
  }
  const selection chosen = select_configured(run);
  if (chosen.code != kDone) return chosen.code;
  if (path == "-") {
    run.output.text(configuration_text(run, chosen));
    return kDone;
  }
  if (!is_startup && is_regular_file(path) && !confirm("Replace " + quoted(path) + "? (y/n) [n] ")) {
    run.output.complain("nothing was written: " + quoted(path) + " exists. Start the shell with --yes to replace it.");
    return kUsage;
  }
  if (is_startup) make_directories_of(path);
  if (const int error = write_file(path, configuration_text(run, chosen)); error != 0) {
    const std::string reason = error == ENXIO ? "no process reads the pipe" : std::strerror(error);
    run.output.complain("cannot write '" + path + "': " + reason + ".");
    return kUsage;
  }
  if (is_startup) the_machine().save_startup();
  run.output.text("Written to " + path + ".\n");
  return kDone;
}

int run_file(shell& session, const std::string& name, bool keep_going) {
  const std::string path = name == kStartupConfig ? startup_file(session) : name;
  const std::string shown = name == "-" ? "standard input" : path;
  std::string error;
  auto text = name == "-" ? std::nullopt : read_file(path, error);
  if (!error.empty()) {
    print_error(error);
    return kUsage;
  }
  input_lines lines(std::move(text));
  int result = kDone;
  session.is_in_file = true;
  std::string_view line;
  for (uint32 number = 1; !session.is_leaving && lines.next(line); ++number) {
    line = trim(line);
    if (is_comment(line)) continue;
    const int code = run_line(session, line);
    if (result == kDone) result = code;
    if (code == kDone) continue;
    const std::string place = shown + ":" + std::to_string(number) + ": ";
    if (code == kInterrupted || !keep_going) {
      print_error(place + quoted(line) + " failed, and nothing behind it was run. Use --keep-going to go on.");
      break;
    }
    print_error(place + quoted(line) + " failed.");
  }
  session.is_in_file = false;
  return result;
}

}  // namespace host
