// pmsh: the shell of a switch.
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <sstream>
#include <utility>

#include "base/files.h"
#include "base/program_directory.h"
#include "messages/calls/switch_facts.h"
#include "service/services.h"
#include "settings/session.h"
#include "shell/commands/added_commands.h"
#include "shell/library/command_library.h"
#include "shell/options.h"
#include "shell/output/document/account.h"
#include "shell/output/terminal/print_error.h"
#include "shell/platform/prompts.h"
#include "shell/session/command_files.h"
#include "shell/session/connection.h"
#include "shell/session/interactive.h"
#include "shell/session/run.h"
#include "shell/session/unconfirmed_commit.h"
#include "source/kernel/capture.h"
#include "source/kernel/kernel_source.h"
#include "source/open/open_switch.h"
#include "source/replay/capture_folder.h"
#include "source/yaml/yaml_file_error.h"
#include "switch/clock.h"
#include "switch/model.h"
#include "switch/source.h"
#include "transport/failures.h"
#include "transport/recorded_path.h"
#include "transport/socket_path.h"
#include "transport/transport.h"

namespace host {

namespace {

namespace fs = std::filesystem;

// Whether the session seems to begin with a command that shows counters only. It is a guess, because the libraries that
// may add commands are not loaded yet: if it is wrong, the command reads the rest.
bool begins_with_counters(const options& requested) {
  if (requested.commands.empty() || !requested.files.empty() || !requested.configuration.empty() ||
      requested.is_dry_run)
    return false;
  constexpr std::size_t kShortest = 3;  // of the word "counters"
  const std::string line = requested.commands.front().substr(0, requested.commands.front().find('|'));
  std::istringstream words(line);
  std::string word, last;
  while (words >> word) last = word;
  const auto begins = [&last](std::string_view whole) { return last.size() >= kShortest && whole.starts_with(last); };
  const bool follows_counters = line.find(" cou") != std::string::npos;
  return begins("counters") || (follows_counters && (begins("errors") || begins("brief")));
}

// Completes a capture. Returns the exit code of the session, or that of a write that failed.
int end_capture(capture* capturing, int code) {
  if (capturing == nullptr) return code;
  capturing->complete(the_machine(), the_source());
  const int error = capturing->finish();
  if (error == 0) return code;
  print_error(fmt::format("the capture is not complete: {}.", std::strerror(error)));
  return code == kDone ? int{kServiceFailed} : code;
}

bool inject_faults(const options& requested) {
  transport_limit_waits(requested.longest_wait_sec);
  for (const requested_fault& injected : requested.faults) {
    if (transport_inject_fault(injected.service, injected.what)) continue;
    std::vector<std::string_view> names;
    for (const service& known : all_services()) names.push_back(known.name);
    print_error(fmt::format("unknown service '{}' in --inject-fault. Expected one of {}.", injected.service,
                            fmt::join(names, ", ")));
    return false;
  }
  return true;
}

// Runs the commands of the --config file first; the session does not keep its mode.
int begin_with(const std::string& configuration, shell& session) {
  if (configuration.empty()) return kDone;
  const int code = run_file(session, configuration);
  session.mode = kExecMode;
  session.is_leaving = false;
  session.configured = {};
  end_candidate(session);
  leave_dry_run(session);
  return code;
}

// The directory of the libraries: relative to the program when it was built here, else where it was installed.
fs::path library_directory() {
  const fs::path built = (program_directory() / "../lib").lexically_normal();
  std::error_code error;
  return fs::exists(built / "libpmcli_common.so", error) ? built
                                                         : (program_directory() / PMCLI_LIBRARIES).lexically_normal();
}

// Runs files, commands or typed lines. Returns the first exit code that is not 0.
int run_session(const options& requested, shell& session) {
  int result = begin_with(requested.configuration, session);
  if (result != kDone && (result == kInterrupted || !requested.keep_going)) return result;
  for (const std::string& file : requested.files) {
    const int code = run_file(session, file);
    if (result == kDone) result = code;
    if (session.is_leaving || (code != kDone && !requested.keep_going)) return result;
  }
  if (requested.commands.empty() && requested.files.empty()) {
    session.is_interactive = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
    const int code = session.is_interactive ? run_interactively(session) : run_input(session);
    return result == kDone ? code : result;
  }
  for (const std::string& command : requested.commands) {
    const int code = run_line(session, command);
    if (result == kDone) result = code;
    if (code == kInterrupted || session.is_leaving) break;
  }
  return result;
}

int run_shell(const options& requested, shell& session) {
  transport_register(all_services());
  if (const int begun = begin_session(session, requested.user); begun != kDone) return begun;
  if (!inject_faults(requested)) return kUsage;
  session.library = load_libraries(library_directory(), requested.libraries);
  session.keeps_going = requested.keep_going;

  if (requested.is_dry_run && !begin_dry_run(session, begun_dry_run::kWholeSession)) {
    print_error("no dry run could begin: the session service does not answer.");
    return kServiceFailed;
  }
  if (requested.assume_yes) assume_yes();
  const int result = run_session(requested, session);
  end_candidate(session);
  const int code = end_unconfirmed_commit(session);
  return result == kDone ? code : result;
}

std::string terminal_name() {
  const char* const name = ttyname(STDIN_FILENO);
  return name == nullptr ? "" : name;
}

// While it lives, requests travel over a connection.
struct path_scope {
  explicit path_scope(request_path& path) { transport_use(&path); }
  ~path_scope() { transport_use(nullptr); }
  path_scope(const path_scope&) = delete;
  path_scope& operator=(const path_scope&) = delete;
};

void take_over_clock_of(const welcome& from) {
  take_over_clock({from.stopped_clock.has_value(), static_cast<std::int64_t>(from.stopped_clock.value_or(0))});
}

int run_connected(const options& requested, shell& session) {
  socket_path path(requested.connected_switch, {kProtocolVersion, PMCLI_VERSION, terminal_name()},
                   [&session](const welcome& from) {
                     session.has_new_connection = true;
                     take_over_clock_of(from);
                   });
  if (const std::string fault = path.connect(); !fault.empty()) {
    print_error(fault);
    return kServiceFailed;
  }
  const path_scope connected(path);
  session.has_new_connection = false;
  return run_shell(requested, session);
}

int run_recorded(const options& requested, shell& session) {
  recorded_path path(requested.recorded_frames, clock_take_machine_time);
  const path_scope recorded(path);
  take_over_clock_of(path.greeting());
  return run_shell(requested, session);
}

int run(const options& requested) {
  if (requested.published != nullptr) {
    load_libraries(library_directory(), requested.libraries);
    return print_text(requested.published());
  }
  if (requested.clock) clock_set(static_cast<std::time_t>(*requested.clock));
  shell session;
  if (!requested.connected_switch.empty()) return run_connected(requested, session);
  if (!requested.recorded_frames.empty()) return run_recorded(requested, session);
  std::unique_ptr<capture> capturing;
  if (!requested.capture_directory.empty())
    capturing = std::make_unique<capture>(requested.capture_directory, requested.is_anonymous);
  const opened_switch opened = open_switch(requested, capturing.get(), begins_with_counters(requested));
  if (!opened.warning.empty()) print_error(opened.warning);
  set_switch_file(opened.file);
  switch_session of_switch;
  const session_scope requests(of_switch);
  return end_capture(capturing.get(), run_shell(requested, session));
}

// Standard descriptors that are closed must not become those of other files: reading and writing them fail.
void hold_standard_descriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(descriptor, F_GETFD) < 0) open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

}  // namespace
}  // namespace host

int main(int argc, char** argv) {
  host::hold_standard_descriptors();
  int exit_code = host::kDone;
  const auto requested = host::read_options(argc, argv, exit_code);
  if (!requested) return exit_code;
  try {
    return host::run(*requested);
  } catch (const host::yaml_file_error& error) {
    host::print_error(error.what());
    return host::kUsage;
  } catch (const host::capture_folder_error& error) {
    for (const std::string& fault : error.faults) host::print_error(fault);
    return host::kUsage;
  } catch (const host::capture_error& error) {
    host::print_error(error.what());
    return host::kUsage;
  } catch (const host::frame_capture_error& error) {
    host::print_error(error.what());
    return host::kUsage;
  } catch (const host::kernel_error& error) {
    host::print_error(error.what());
    return host::kServiceFailed;
  } catch (const host::added_library_error& error) {
    host::print_error(error.what());
    return host::kUsage;
  } catch (const host::library_error& error) {
    host::print_error(error.what());
    return host::kServiceFailed;
  } catch (const std::exception& error) {
    host::print_error(error.what());
    return host::kServiceFailed;
  }
}
