#include "shell/options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <sstream>
#include <string_view>

#include "base/text.h"
#include "shell/output/exit_codes.h"
#include "shell/output/terminal/print_error.h"
#include "shell/published/published.h"

namespace host {
namespace {

using kind = injected_fault::kind;

struct fault_word {
  std::string_view word;
  kind what;
  bool takes_number;
};

constexpr fault_word kFaults[] = {
    {"lost", kind::lost, false}, {"reject", kind::reject, false},      {"silent", kind::silent, false},
    {"cut", kind::cut, true},    {"interrupt", kind::interrupt, true},
};

constexpr char kFooter[] =
    "The words after the options are one command, which runs as with -c. Without a command the shell reads commands "
    "from\n"
    "the terminal or from standard input.\n"
    "With several -c all of them run; the first exit code that is not 0 is the program's. Files run before them; a "
    "file\n"
    "ends with the first command that fails.\n"
    "\n"
    "Exit codes:\n"
    "  0  done\n"
    "  1  wrong command, option or switch file\n"
    "  2  a service failed, or the command library is missing\n"
    "  3  some interfaces failed\n"
    "  4  no such interface, module or startup-config\n"
    "  5  not permitted\n"
    "  130  interrupted with Ctrl-C";

std::string check_fault(const std::string& text) {
  const std::size_t sign = text.find('=');
  if (sign != std::string::npos && sign > 0 && parse_fault(text.substr(sign + 1))) return {};
  return fmt::format("'{}' is not SERVICE=lost, reject, silent, cut:N or interrupt:N", text);
}

// A hidden option that prints a text of the published documents.
void add_printer(CLI::App& app, const char* name, std::string (*text)(), options& requested) {
  app.add_flag_callback(name, [text, &requested] { requested.published = text; })->group("");
}

void add_options(CLI::App& app, options& requested, std::vector<std::string>& faults,
                 std::vector<std::string>& renamed) {
  app.add_option("-c,--command", requested.commands, "Run a command and exit; may be repeated")
      ->type_name("COMMAND")
      ->allow_extra_args(false);
  app.add_option("-f,--file", requested.files, "Run the commands of a file and exit; '-' is standard input")
      ->type_name("FILE")
      ->allow_extra_args(false);
  app.add_flag("--keep-going", requested.keep_going, "Continue a file after a failed command");
  app.add_flag("--dry-run", requested.is_dry_run, "Show what the commands would change, without changing anything");
  app.add_flag("-y,--yes", requested.assume_yes, "Answer every question with yes");
  app.add_option("--config", requested.configuration, "Start with the settings of a file or of 'startup-config'")
      ->type_name("FILE");
  CLI::Option* const connection =
      app.add_option("--connect", requested.connected_switch, "Use the switch of a running pmshd, by name or socket");
  connection->type_name("NAME|PATH");
  CLI::Option* const recorded =
      app.add_option("--replay-frames", requested.recorded_frames, "Use the answers that 'pmshd --capture' stored");
  recorded->type_name("FILE")->excludes(connection);
  add_switch_options(app, requested);
  for (CLI::Option* const other : {connection, recorded})
    for (const char* const opened : {"--switch", "--hardware-defaults", "--giant", "--kernel", "--replay", "--clock"})
      other->excludes(app.get_option(opened));
  CLI::Option* const capturing =
      app.add_option("--capture", requested.capture_directory, "Store the answers of the kernel in a new directory");
  capturing->type_name("DIR")->needs(app.get_option("--kernel"));
  app.add_flag("--anonymous", requested.is_anonymous, "Replace names, addresses and serial numbers in the capture")
      ->needs(capturing);
  app.add_option("--user", requested.user, "User of the switch (default: the own name with --connect, else the first)")
      ->type_name("NAME");
  app.add_option("--inject-fault", faults, "Make a service fail: lost, reject, silent, cut:N or interrupt:N")
      ->type_name("SERVICE=FAULT")
      ->allow_extra_args(false)
      ->check(check_fault);
  app.add_option("--provoke", renamed, "The former name of --inject-fault")
      ->allow_extra_args(false)
      ->check(check_fault)
      ->group("");
  app.add_option("--wait", requested.longest_wait_sec, "Longest wait for a service")->type_name("SECONDS");
  app.add_option("--library", requested.libraries, "Load the commands of a library; may be repeated")
      ->type_name("FILE")
      ->allow_extra_args(false);
  add_printer(app, "--print-command-reference", command_reference, requested);
  add_printer(app, "--print-json-schema", json_schema, requested);
  app.prefix_command();
  app.set_version_flag("--version", "pmsh " PMCLI_VERSION);
  app.footer(kFooter);
}

// The words after the options are one command.
void take_command(const std::vector<std::string>& words, options& requested) {
  if (words.empty()) return;
  if (words.front().starts_with('-')) throw CLI::ExtrasError("pmsh", {words.front()});
  requested.commands.push_back(join({words.begin(), words.end()}, " "));
}

}  // namespace

std::optional<injected_fault> parse_fault(const std::string& text) {
  const std::size_t colon = text.find(':');
  const std::string word = text.substr(0, colon);
  for (const fault_word& known : kFaults) {
    if (known.word != word || known.takes_number != (colon != std::string::npos)) continue;
    injected_fault found{known.what};
    if (!known.takes_number) return found;
    const char* const digits = text.data() + colon + 1;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(digits, end, found.number);
    if (read.ec == std::errc{} && read.ptr == end) return found;
  }
  return std::nullopt;
}

std::optional<options> read_options(int argc, char** argv, int& exit_code) {
  CLI::App app("A switch shell: shows and configures the interfaces of a switch.", "pmsh");
  options requested;
  std::vector<std::string> faults, renamed;
  add_options(app, requested, faults, renamed);
  try {
    app.parse(argc, argv);
    take_command(app.remaining(), requested);
  } catch (const CLI::ParseError& error) {
    std::ostringstream asked_for;  // help, the version
    exit_code = app.exit(error, asked_for) == 0 ? print_text(asked_for.str()) : int{kUsage};
    return std::nullopt;
  }
  faults.insert(faults.end(), renamed.begin(), renamed.end());
  for (const std::string& text : faults) {
    const std::size_t sign = text.find('=');
    requested.faults.push_back({text.substr(0, sign), *parse_fault(text.substr(sign + 1))});
  }
  return requested;
}

}  // namespace host
