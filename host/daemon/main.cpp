// pmshd: owns a switch and serves shells.
#include <fmt/format.h>

#include <csignal>
#include <exception>
#include <memory>
#include <utility>

#include "daemon/access.h"
#include "daemon/daemon.h"
#include "daemon/frame_log.h"
#include "daemon/listening_socket.h"
#include "daemon/log.h"
#include "daemon/options.h"
#include "service/services.h"
#include "settings/shared_source.h"
#include "source/chassis/chassis_source.h"
#include "source/kernel/kernel_source.h"
#include "source/open/open_switch.h"
#include "source/replay/capture_folder.h"
#include "store/stored_source.h"
#include "store/switch_store.h"
#include "switch/clock.h"
#include "switch/model.h"
#include "transport/socket_place.h"

namespace host {
namespace {

enum exit_code : int { kEnded = 0, kWrongOptions = 1, kFailed = 2 };

void report_store(std::string_view sentence) { log_line(log_level::warning, sentence); }

// Opens a simulated switch as if it were this moment.
opened_switch open_switch_at(uint32 moment_sec, const daemon_options& requested) {
  const clock_course course = clock_course_now();
  clock_set(moment_sec);
  opened_switch opened = open_switch(requested);
  clock_take_over(course);
  return opened;
}

// Gives a simulated switch the changes of earlier processes, and has its source store further ones. Its counters
// continue since its first start.
void continue_switch(const std::string& name, uint32 started_sec, const std::string& file,
                     const daemon_options& requested) {
  if (!is_switch_name(name))
    throw store_error(
        fmt::format("the switch has no name for its state: '{}'. Name it with --name, or start pmshd with "
                    "--stateless.",
                    name));
  std::signal(SIGXFSZ, SIG_IGN);  // a write above the limit of file sizes reports its error
  const std::string path = journal_path(name);
  auto store = std::make_unique<switch_store>(path, switch_identity{fingerprint_of(the_machine()), file, started_sec},
                                              requested.begins_new_state, report_store);
  if (store->started_sec() != started_sec) open_switch_at(store->started_sec(), requested);
  store->restore(the_machine());
  switch_store& kept = *store;
  set_source(std::make_unique<stored_source<chassis_source>>(std::move(store)));
  kept.begin(the_machine());
  log_line(log_level::info, fmt::format("stores changes in '{}'.", path));
}

// The switch is opened after the socket: a switch with a name of its own is not read for a second time.
int run(const daemon_options& requested) {
  const auto group = requested.group.empty() ? std::nullopt : std::optional(find_group(requested.group));
  if (requested.clock) clock_set(static_cast<std::time_t>(*requested.clock));
  const bool is_simulated = !requested.is_kernel && requested.replay_directory.empty();
  const auto started_sec = static_cast<uint32>(clock_now());
  const opened_switch opened = is_simulated ? open_switch_at(started_sec, requested) : open_switch(requested);
  if (!opened.warning.empty()) log_line(log_level::warning, opened.warning);
  set_switch_file(opened.file);
  const std::string name = requested.name.empty() ? the_machine().name : requested.name;
  if (!is_switch_name(name) && requested.socket.empty())
    throw socket_error(fmt::format("the switch has no name for a socket: '{}'. Name it with --name.", name));
  const listening_socket listening(name, requested.socket, group);
  if (is_simulated && !requested.is_stateless) continue_switch(name, started_sec, opened.file, requested);
  share_source();
  if (!requested.capture.empty()) begin_frame_capture(requested.capture);
  daemon serving(listening.descriptor(), name, PMCLI_VERSION, group);
  if (!requested.metrics.empty()) {
    const listen_address at = serving.serve_metrics(*read_listen_address(requested.metrics));
    log_line(log_level::info, fmt::format("gives metrics at http://{}/metrics.", text_of(at)));
  }
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
  } catch (const host::metrics_error& error) {
    return host::report(host::kFailed, error.what());
  } catch (const host::kernel_error& error) {
    return host::report(host::kFailed, error.what());
  } catch (const std::bad_alloc&) {
    return host::report(host::kFailed, "out of memory.");
  } catch (const std::exception& error) {
    return host::report(host::kWrongOptions, error.what());
  }
}
