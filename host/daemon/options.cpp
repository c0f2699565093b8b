#include "daemon/options.h"

#include <CLI/CLI.hpp>

#include "daemon/metrics/listen_address.h"
#include "transport/socket_place.h"

namespace host {
namespace {

constexpr char kDaemonFooter[] =
    "Shells connect with 'pmsh --connect NAME'. The socket is /run/pmsh/NAME.sock for root, else\n"
    "$XDG_RUNTIME_DIR/pmsh/NAME.sock. SIGTERM and SIGINT end the program.\n"
    "\n"
    "Changes of a simulated switch are stored in $STATE_DIRECTORY/NAME.journal, else in\n"
    "$XDG_STATE_HOME/pmsh/switches/NAME.journal, before they are acknowledged.\n"
    "\n"
    "Exit codes:\n"
    "  0  ended by a signal\n"
    "  1  wrong option, switch file or stored state, or the name is in use\n"
    "  2  the switch cannot be read, --metrics cannot listen, or the daemon failed";

// The devices of the kernel keep their own state, and a capture has none.
void add_state_options(CLI::App& app, daemon_options& requested) {
  CLI::Option* const stateless =
      app.add_flag("--stateless", requested.is_stateless, "Forget all changes of a simulated switch at the end");
  app.add_flag("--new-state", requested.begins_new_state, "Move the stored changes aside and begin without them")
      ->excludes(stateless)
      ->excludes(app.get_option("--kernel"))
      ->excludes(app.get_option("--replay"));
}

std::string check_name(const std::string& text) {
  if (is_switch_name(text)) return {};
  return "'" + text + "' is not a name: expected up to 64 letters, digits, '-', '_' and '.'";
}

std::string check_metrics_address(const std::string& text) {
  if (read_listen_address(text)) return {};
  return "'" + text + "' is not an address: expected a port, or an IP address and a port, such as [::1]:9100";
}

}  // namespace

std::optional<daemon_options> read_daemon_options(int argc, char** argv, int& exit_code) {
  CLI::App app("Owns a switch and serves any number of shells.", "pmshd");
  daemon_options requested;
  add_switch_options(app, requested);
  app.add_option("--name", requested.name, "Name of the switch for --connect (default: its own)")
      ->type_name("NAME")
      ->check(check_name);
  app.add_option("--socket", requested.socket, "Path of the socket, in place of the usual one")->type_name("PATH");
  app.add_option("--group", requested.group, "Only members of this group may change the switch; others may only look")
      ->type_name("GROUP");
  add_state_options(app, requested);
  app.add_option("--metrics", requested.metrics,
                 "Serve metrics over HTTP, for Prometheus; a port alone is at 127.0.0.1")
      ->type_name("[ADDRESS:]PORT")
      ->check(check_metrics_address);
  app.add_option("--capture", requested.capture, "Store all requests and answers in a file, for 'pmsh --replay-frames'")
      ->type_name("FILE");
  app.set_version_flag("--version", "pmshd " PMCLI_VERSION);
  app.footer(kDaemonFooter);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    exit_code = app.exit(error) == 0 ? 0 : 1;
    return std::nullopt;
  }
  return requested;
}

}  // namespace host
