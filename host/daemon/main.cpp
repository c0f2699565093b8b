// pmshd: owns a switch and serves shells.
#include <fmt/format.h>

#include <exception>

#include "daemon/access.h"
#include "daemon/daemon.h"
#include "daemon/listening_socket.h"
#include "daemon/log.h"
#include "daemon/options.h"
#include "service/services.h"
#include "settings/shared_source.h"
#include "source/kernel/kernel_source.h"
#include "source/open/open_switch.h"
#include "source/replay/capture_folder.h"
#include "switch/clock.h"
#include "switch/model.h"
#include "transport/socket_place.h"

namespace host {
namespace {

enum exit_code : int { kEnded = 0, kWrongOptions = 1, kFailed = 2 };

// The switch is opened after the socket: a switch with a name of its own is not read for a second time.
int run(const daemon_options& requested) {
  const auto group = requested.group.empty() ? std::nullopt : std::optional(find_group(requested.group));
  if (requested.clock) clock_set(static_cast<std::time_t>(*requested.clock));
  const opened_switch opened = open_switch(requested);
  if (!opened.warning.empty()) log_line(log_level::warning, opened.warning);
  set_switch_file(opened.file);
  share_source();
  const std::string name = requested.name.empty() ? the_machine().name : requested.name;
  if (!is_switch_name(name) && requested.socket.empty())
    throw socket_error(fmt::format("the switch has no name for a socket: '{}'. Name it with --name.", name));
  const listening_socket listening(name, requested.socket, group);
  daemon serving(listening.descriptor(), name, PMCLI_VERSION, group);
  log_line(log_level::info, fmt::format("serves the switch '{}' at {}.", name,
                                        listening.path().empty() ? "the socket of systemd" : listening.path()));
  serving.run();
  return kEnded;
}

int report(exit_code code, std::string_view fault) {
  log_line(log_level::error, fault);
  return code;
}

}  // namespace
}  // namespace host

int main(int argc, char** argv) {
  int exit_code = 0;
  const auto requested = host::read_daemon_options(argc, argv, exit_code);
  if (!requested) return exit_code;
  try {
    return host::run(*requested);
  } catch (const host::capture_folder_error& error) {
    for (const std::string& fault : error.faults) host::log_line(host::log_level::error, fault);
    return host::kWrongOptions;
  } catch (const host::kernel_error& error) {
    return host::report(host::kFailed, error.what());
  } catch (const std::bad_alloc&) {
    return host::report(host::kFailed, "out of memory.");
  } catch (const std::exception& error) {
    return host::report(host::kWrongOptions, error.what());
  }
}
