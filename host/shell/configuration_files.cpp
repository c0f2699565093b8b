// Settings in files: written, and read back as commands.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include "base/write_all.h"
#include "shell/commands.h"
#include "shell/interface_kinds.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/print_error.h"
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

// Whoever reads the file sees all of the text or what was there before. Returns an errno, 0 when it is written.
int write_file(const std::string& path, std::string_view text) {
  std::string made = path + ".XXXXXX";
  const int descriptor = mkostemp(made.data(), O_CLOEXEC);
  if (descriptor < 0) return errno;
  const mode_t mask = umask(0);
  umask(mask);
  int error = write_all(descriptor, text);
  if (error == 0 && (fchmod(descriptor, 0666 & ~mask) != 0 || fsync(descriptor) != 0)) error = errno;
  close(descriptor);
  if (error == 0 && std::rename(made.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) unlink(made.c_str());
  return error;
}

std::string startup_file(const shell& session) {
  return state_file(session.switch_name + "." + std::string(kStartupConfig));
}

// Closes what it did not get from the process.
struct input_file {
  explicit input_file(const std::string& path) : stream(path == "-" ? stdin : std::fopen(path.c_str(), "re")) {}
  ~input_file() {
    if (stream != nullptr && stream != stdin) std::fclose(stream);
    std::free(line);
  }
  input_file(const input_file&) = delete;
  input_file& operator=(const input_file&) = delete;

  bool next_line() { return getline(&line, &size, stream) >= 0; }

  std::FILE* stream;
  char* line = nullptr;
  std::size_t size = 0;
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
  if (is_startup) make_directories_of(path);
  if (const int error = write_file(path, configuration_text(run, chosen)); error != 0) {
    run.output.complain("cannot write '" + path + "': " + std::strerror(error) + ".");
    return kUsage;
  }
  if (is_startup) the_machine().save_startup();
  run.output.text("Written to " + path + ".\n");
  return kDone;
}

int run_file(shell& session, const std::string& name, bool keep_going) {
  const std::string path = name == kStartupConfig ? startup_file(session) : name;
  const std::string shown = name == "-" ? "standard input" : path;
  input_file file(path);
  if (file.stream == nullptr) {
    print_error("cannot read '" + shown + "': " + std::strerror(errno) + ".");
    return kUsage;
  }
  int result = kDone;
  session.is_in_file = true;
  for (uint32 number = 1; !session.is_leaving && file.next_line(); ++number) {
    const std::string_view text = trim(file.line);
    if (is_comment(text)) continue;
    const int code = run_line(session, text);
    if (result == kDone) result = code;
    if (code == kDone) continue;
    const std::string place = shown + ":" + std::to_string(number) + ": ";
    if (code == kInterrupted || !keep_going) {
      print_error(place + quoted(text) + " failed, and nothing behind it was run. Use --keep-going to go on.");
      break;
    }
    print_error(place + quoted(text) + " failed.");
  }
  session.is_in_file = false;
  return result;
}

}  // namespace host
