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

#include "service/services.h"
#include "settings/settings.h"
#include "shell/commands/added_commands.h"
#include "shell/library/command_library.h"
#include "shell/options.h"
#include "shell/output/terminal/print_error.h"
#include "shell/platform/prompts.h"
#include "shell/session/command_files.h"
#include "shell/session/interactive.h"
#include "shell/session/run.h"
#include "shell/session/state_directory.h"
#include "source/chassis/chassis_source.h"
#include "source/chassis/giant.h"
#include "source/chassis/switch_file.h"
#include "source/kernel/baselines.h"
#include "source/kernel/capture.h"
#include "source/kernel/kernel_source.h"
#include "source/replay/capture_folder.h"
#include "source/replay/replay_source.h"
#include "source/yaml/yaml_file_error.h"
#include "switch/clock.h"
#include "switch/model.h"
#include "switch/source.h"
#include "transport/transport.h"

namespace host {

namespace {

namespace fs = std::filesystem;

fs::path program_directory() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error).parent_path();
}

// The demonstration switch: in the source tree when the program was built there, else relative to the program.
std::string demonstration_switch() {
  std::error_code error;
  for (const char* const place : {PMCLI_SWITCHES, "../switches", "../share/pmcli/switches"}) {
    const fs::path file = program_directory() / place / "campus.yaml";
    if (fs::exists(file, error)) return fs::weakly_canonical(file, error).string();
  }
  return "campus.yaml";
}

// The file of cleared counters; empty: only for the session.
std::string cleared_counters_file(const options& requested) {
  return requested.has_session_counters ? "" : state_file("cleared-counters." + kernel_namespace());
}

// The file of the interfaces of devices; empty: none.
std::string interface_names_file() {
  const std::string file = state_file("interface-names." + kernel_namespace());
  make_directories_of(file);  // the source reports a file that it cannot write
  return file;
}

// The file of the list of devices; empty: none.
std::string device_list_file() { return state_file("device-list." + kernel_namespace()); }

std::unique_ptr<kernel_source> make_kernel_source(const options& requested, capture* capturing) {
  auto interfaces = requested.map_file.empty() ? requested_interfaces{} : read_map_file(requested.map_file);
  const std::string counters = cleared_counters_file(requested), names = interface_names_file();
  if (capturing != nullptr)
    return std::make_unique<capturing_source>(*capturing, std::move(interfaces), counters, names);
  return std::make_unique<kernel_source>(std::move(interfaces), counters, names, device_list_file());
}

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

machine read_kernel(kernel_source& kernel, const options& requested) {
  if (begins_with_counters(requested))
    if (auto counted = kernel.read_counters()) return std::move(*counted);
  return kernel.read();
}

// The clock stops at the moment of the capture, unless the user has stopped it.
void open_replay(const options& requested) {
  auto replay = std::make_unique<replay_source>(read_capture_folder(requested.replay_directory));
  if (!requested.clock) clock_set(replay->clock());
  the_machine() = replay->read();
  set_source(std::move(replay));
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

// Sets the switch and its source. Returns the switch file; empty: none was read.
std::string open_switch(const options& requested, capture* capturing) {
  if (!requested.replay_directory.empty()) {
    open_replay(requested);
    return {};
  }
  if (requested.is_kernel) {
    auto kernel = make_kernel_source(requested, capturing);
    the_machine() = read_kernel(*kernel, requested);
    if (!kernel->names_fault().empty()) print_error(kernel->names_fault());
    set_source(std::move(kernel));
    return {};
  }
  std::string file = requested.switch_file;
  if (file.empty() && requested.giant_ports == 0) file = demonstration_switch();
  the_machine() = file.empty() ? make_giant(requested.giant_ports) : load_switch_file(file);
  if (requested.has_defaults) set_to_defaults(the_machine());
  set_source(std::make_unique<chassis_source>());
  return file;
}

// Chooses the user of the session: the one with this name, or else the first. False when there is no such user.
bool choose_user(const std::string& name, shell& session) {
  const std::vector<user>& users = the_machine().users;
  if (name.empty()) {
    session.user = users.empty() ? nullptr : &users.front();
    return true;
  }
  session.user = the_machine().find_user(name);
  if (session.user != nullptr) return true;
  std::vector<std::string_view> names;
  for (const user& known : users) names.push_back(known.name);
  print_error(names.empty()
                  ? fmt::format("unknown user '{}' in --user. This switch has no users.", name)
                  : fmt::format("unknown user '{}' in --user. Expected one of {}.", name, fmt::join(names, ", ")));
  return false;
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

int run(const options& requested) {
  if (requested.published != nullptr) {
    load_libraries(library_directory(), requested.libraries);
    return print_text(requested.published());
  }
  if (requested.clock) clock_set(static_cast<std::time_t>(*requested.clock));
  shell session;
  std::unique_ptr<capture> capturing;
  if (!requested.capture_directory.empty())
    capturing = std::make_unique<capture>(requested.capture_directory, requested.is_anonymous);
  session.switch_file = open_switch(requested, capturing.get());
  transport_register(all_services());
  if (!inject_faults(requested)) return kUsage;
  if (!choose_user(requested.user, session)) return kUsage;
  session.library = load_libraries(library_directory(), requested.libraries);
  session.switch_name = the_machine().name;
  session.keeps_going = requested.keep_going;

  if (requested.is_dry_run) session.trying = std::make_unique<dry_run>(dry_run::kWholeSession);
  if (requested.assume_yes) assume_yes();
  const int result = run_session(requested, session);
  end_candidate(session);
  const int code = end_unconfirmed_commit(session);
  return end_capture(capturing.get(), result == kDone ? code : result);
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
