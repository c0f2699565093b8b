#include "pmhost/pmhost.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "messages/calls/switch_facts.h"
#include "service/services.h"
#include "settings/session.h"
#include "shell/commands/added_commands.h"
#include "shell/library/command_queue.h"
#include "shell/library/parameters.h"
#include "shell/library/selection.h"
#include "shell/library/views.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/print_error.h"
#include "shell/platform/prompts.h"
#include "shell/session/run.h"
#include "source/chassis/chassis_source.h"
#include "source/chassis/switch_file.h"
#include "switch/interface_name.h"
#include "switch/interface_range.h"
#include "switch/model.h"
#include "switch/range_text.h"
#include "switch/source.h"
#include "transport/transport.h"

namespace fs = std::filesystem;

// The one that is open.
struct pmhost_t {
  host::switch_session of_switch;
  host::session_scope requests{of_switch};
  host::shell session;
  host::command_queue queue;
  host::output_settings output;
};

struct pmhost_command_t {
  pmhost_command_t(pmhost_t* of, uint32 id)
      : host(of), command_id(id), parameters(of->session.library, of->session.user, queue.handle, id) {}

  pmhost_t* host;
  uint32 command_id;
  host::command_queue queue;
  host::command_parameters parameters;
  std::vector<if_index_t> interfaces;
  std::vector<vsh_intf_mono_range_t> ranges;
  interface_mask_t mask = 0;  // of all kinds
};

namespace {

pmhost_t* the_open_host = nullptr;

void store_error(char** error, const char* text) {
  if (error != nullptr) *error = strdup(text);
}

// Calls `work`; an exception becomes `failed` and a text.
template <typename Result, typename Work>
Result guarded(char** error, Result failed, Work work) noexcept {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    store_error(error, "out of memory");
  } catch (const std::exception& caught) {
    store_error(error, caught.what());
  } catch (...) {
    store_error(error, "unknown failure");
  }
  return failed;
}

// The same for a command: the text goes to the callback for errors.
template <typename Work>
int guarded_command(Work work) noexcept {
  char* error = nullptr;
  const int code = guarded(&error, int{host::kServiceFailed}, work);
  if (error != nullptr) guarded(nullptr, 0, [error] { return host::print_error(error), 0; });
  std::free(error);
  return code;
}

// ---- Places ----

// The directory of this library and of the others.
fs::path library_directory() {
  Dl_info found{};
  if (dladdr(reinterpret_cast<void*>(&pmhost_open), &found) == 0 || found.dli_fname == nullptr) return ".";
  return fs::absolute(found.dli_fname).parent_path();
}

std::string find_switch_file(const std::string& name) {
  std::error_code error;
  if (name.find('/') != std::string::npos || fs::exists(name, error)) return name;
  for (const char* const place : {PMCLI_SWITCHES, PMCLI_INSTALLED_SWITCHES}) {
    const fs::path file = library_directory() / place / name;
    if (fs::exists(file, error)) return fs::weakly_canonical(file, error).string();
  }
  return name;
}

// The command library opens the client libraries by name. It finds those in this library's directory when they are
// already loaded. Throws when one is missing: a library cannot see which command asks for it.
void load_client_libraries(const fs::path& directory) {
  std::error_code error;
  for (const char* const name : {PMCLI_CLIENT_LIBRARIES}) {
    const std::string file = std::string("lib") + name + ".so";
    const fs::path own = directory / "pmcli" / file;
    if (dlopen((fs::exists(own, error) ? own : directory / file).c_str(), RTLD_LAZY | RTLD_LOCAL) != nullptr) continue;
    const char* const reason = dlerror();
    throw std::runtime_error("cannot load a client library: " + std::string(reason == nullptr ? file.c_str() : reason));
  }
}

// Once for the process: libraries and the commands that they add stay.
const host::command_library& loaded_libraries() {
  static std::optional<host::command_library> library;
  static std::string failure;  // earlier additions stay, too: there is no second attempt
  if (!failure.empty()) throw std::runtime_error(failure);
  try {
    const fs::path directory = library_directory();
    if (!library) {
      load_client_libraries(directory);
      library = host::load_libraries(directory, {});
    }
    return *library;
  } catch (const std::exception& error) {
    failure = error.what();
    throw;
  }
}

// ---- Output ----

// While it lives, `stdout` is the program's: a callback may print.
class program_output {
 public:
  program_output() : of_command_(stdout) { stdout = of_program; }
  ~program_output() { stdout = of_command_; }
  program_output(const program_output&) = delete;
  program_output& operator=(const program_output&) = delete;

  inline static std::FILE* of_program = stdout;

 private:
  std::FILE* of_command_;
};

void report_value(const pmhost_output_t& to, if_index_t if_index, const cmd_tuple_t& tuple) {
  const host::binding* const bound = host::find_binding(tuple.id);
  const std::string key(bound == nullptr ? std::string_view() : host::field_of(*bound).name);
  std::string text;
  if (tuple.value != nullptr) host::append_tuple_text(text, tuple, false, std::string::npos);
  const pmhost_value_t value{if_index, tuple.id, bound == nullptr ? nullptr : key.c_str(),
                             tuple.value == nullptr ? nullptr : text.c_str(), tuple.value};
  const program_output printing;
  to.value(to.context, &value);
}

host::output_settings settings_for(const pmhost_output_t& requested) {
  host::output_settings settings;
  settings.structured = requested.form == PMHOST_JSON;
  if (requested.write != nullptr)
    settings.sink = [requested](std::string_view text) {
      const program_output printing;
      requested.write(requested.context, text.data(), text.size());
    };
  if (requested.value != nullptr)
    settings.on_value = [requested](if_index_t if_index, const cmd_tuple_t& tuple) {
      report_value(requested, if_index, tuple);
    };
  return settings;
}

void print_error_line(std::string_view text) {
  const std::string line = std::string(text) + '\n';
  std::fputs(line.c_str(), stderr);
}

void set_output(pmhost_t& host, const pmhost_output_t& requested) {
  host.output = settings_for(requested);
  if (requested.error == nullptr) {
    host::set_error_sink(print_error_line);
    return;
  }
  host::set_error_sink([requested](std::string_view text) {
    const program_output printing;
    requested.error(requested.context, std::string(text).c_str());
  });
}

// ---- Commands ----

std::string choose_interfaces(pmhost_command_t& command, const char* text) {
  host::interface_range range;
  if (const auto error = host::parse_interface_range(text, range)) return error->message;
  const host::selection chosen = host::select_named(command.parameters, range);
  if (chosen.code != host::kDone) return chosen.complaint.empty() ? "the interfaces were refused" : chosen.complaint;
  command.interfaces = chosen.interfaces;
  for (const auto& [first, last] : host::runs_of(chosen.interfaces)) {
    command.mask |= host::kind_of(first).mask;
    command.ranges.push_back({first, last});
  }
  if (command.ranges.size() > PARAM_MAX_RANGES)
    return "a parameter block holds " + std::to_string(PARAM_MAX_RANGES) + " ranges; these are more";
  return {};
}

// The display of the shell's command with this id.
const host::display* display_of(uint32 command_id) {
  for (const host::command& known : host::all_commands())
    if (known.view != nullptr && known.view->own.handler == nullptr && known.view->id == command_id)
      return &known.shown;
  return nullptr;
}

// Runs `work` with the output of a command.
template <typename Work>
int run_with_output(pmhost_command_t& command, Work work) {
  host::output_settings settings = command.host->output;
  const host::display* const shown = display_of(command.command_id);
  const std::string text = "display " + std::to_string(command.command_id);
  settings.shown = shown != nullptr ? *shown : host::kSentences;
  settings.command = text;
  host::line_filters filters;
  host::command_output output(settings, filters);
  const int code = output.report_failures(work(output));
  output.set_exit_code(code);
  return code;
}

// What the session knows of its switch, and the first user.
void begin_session(host::shell& session) {
  auto about = host::ask_switch_facts();
  auto answer = host::ask_user({});
  if (!about || !answer) throw std::runtime_error("the service of the switch did not answer");
  session.about = std::move(*about);
  if (answer->user) session.user = std::make_shared<const host::session_user>(std::move(*answer->user));
}

paraminfo_t* block_of_ranges(pmhost_command_t& command) {
  return command.parameters.for_ranges(command.mask, command.ranges);
}

}  // namespace

// ---- The functions of pmhost.h ----

pmhost_t* pmhost_open(const char* switch_file, char** error) {
  return guarded(error, static_cast<pmhost_t*>(nullptr), [&]() -> pmhost_t* {
    if (the_open_host != nullptr) throw std::runtime_error("a host is open already; close it first");
    if (switch_file == nullptr) throw std::runtime_error("no switch file is given");
    const host::command_library& library = loaded_libraries();
    const std::string file = find_switch_file(switch_file);
    host::the_machine() = host::load_switch_file(file);
    host::set_source(std::make_unique<host::chassis_source>());
    host::set_switch_file(file);
    host::transport_register(host::all_services());
    host::ask_nobody();
    auto opened = std::make_unique<pmhost_t>();
    opened->session.library = library;
    begin_session(opened->session);
    opened->session.output = &opened->output;
    program_output::of_program = stdout;
    host::set_error_sink(print_error_line);
    return the_open_host = opened.release();
  });
}

void pmhost_close(pmhost_t* host) {
  if (host == nullptr) return;
  delete host;
  the_open_host = nullptr;
  guarded(nullptr, 0, [] {
    host::set_error_sink({});
    host::the_machine() = {};
    host::set_source();
    host::set_switch_file({});
    return 0;
  });
}

mts_q_handle_t pmhost_queue(pmhost_t* host) { return host->queue.handle; }

void pmhost_set_output(pmhost_t* host, const pmhost_output_t* output) {
  guarded_command([&] {
    set_output(*host, output == nullptr ? pmhost_output_t{} : *output);
    return host::kDone;
  });
}

int pmhost_run(pmhost_t* host, const char* line) {
  return guarded_command([&] { return host::run_line(host->session, line == nullptr ? "" : line); });
}

pmhost_command_t* pmhost_command(pmhost_t* host, uint32 command_id, const char* interfaces, char** error) {
  return guarded(error, static_cast<pmhost_command_t*>(nullptr), [&] {
    auto command = std::make_unique<pmhost_command_t>(host, command_id);
    const bool names_some = interfaces != nullptr && interfaces[0] != '\0';
    const std::string fault = names_some ? choose_interfaces(*command, interfaces) : std::string();
    if (!fault.empty()) throw std::runtime_error(fault);
    command->parameters.set_command_id(command_id);
    return command.release();
  });
}

void pmhost_end(pmhost_command_t* command) { delete command; }

size_t pmhost_interfaces(const pmhost_command_t* command, const if_index_t** interfaces) {
  if (interfaces != nullptr) *interfaces = command->interfaces.data();
  return command->interfaces.size();
}

paraminfo_t* pmhost_block(pmhost_command_t* command) { return block_of_ranges(*command); }

int pmhost_show(pmhost_command_t* command, pmhost_handler_t handler) {
  return guarded_command([&] {
    return run_with_output(*command, [&](host::command_output& output) {
      std::size_t failed = 0;
      for (const if_index_t if_index : command->interfaces) {
        char name[64];
        output.begin_interface(sprintf_if_index(name, if_index), if_index);
        handler(command->parameters.for_interface(host::kind_of(if_index).mask, if_index));
        failed += output.end_interface();
      }
      if (failed == 0) return int{host::kDone};
      return int{failed == command->interfaces.size() ? host::kServiceFailed : host::kSomeInterfacesFailed};
    });
  });
}

int pmhost_call(pmhost_command_t* command, pmhost_handler_t handler) {
  return guarded_command([&] {
    return run_with_output(*command, [&](host::command_output& output) {
      handler(block_of_ranges(*command));
      output.flush();
      return int{output.failed() ? host::kServiceFailed : host::kDone};
    });
  });
}
