// "watch events": changes of the switch, as its source publishes them and its sessions make them.
#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/printable.h"
#include "messages/calls/switch_events.h"
#include "shell/commands/group.h"
#include "shell/commands/show/table_display.h"
#include "shell/commands/watch/output.h"
#include "shell/library/command_queue.h"
#include "shell/library/parameters.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/interrupt.h"
#include "shell/session/line_output.h"
#include "shell/session/run.h"

namespace host {
namespace {

constexpr display kEventsShown = {.bit = kEventsDisplay, .name = "events", .list = "events", .is_table = true};

// ---- Texts ----------------------------------------------------------------------------------------------------------

// The address of an event: with its prefix when the event is about it.
std::string address_of(const shown_row& event) {
  const std::string address = event.text(property::ip_address);
  if (event.text(property::event_kind) != "address") return address;
  return fmt::format("{}/{}", address, event.text(property::prefix_length_bits));
}

// " by ann on pts/3"; nothing for an event that no session made.
std::string maker_of(const shown_row& event) {
  const std::string user = event.text(property::event_user), terminal = event.text(property::event_terminal);
  if (user.empty()) return {};
  return terminal.empty() ? fmt::format(" by {}", user) : fmt::format(" by {} on {}", user, terminal);
}

// "mtu: 1500 -> 9000", "192.0.2.9 added: reachable, 0200.0000.0009", "192.0.2.1/24 removed", "created"
std::string change_of(const shown_row& event) {
  std::string text;
  if (event.find(property::ip_address) != nullptr) text = address_of(event) + " ";
  const std::string change = event.text(property::change);
  text += change;
  const std::string before = event.text(property::old_value), now = event.text(property::new_value);
  const std::string kind = event.text(property::event_kind);
  if (kind == "counters" || kind == "interface") return text;
  const bool is_whole = change == "added" || change == "removed";
  if (!is_whole) return fmt::format("{}: {} -> {}", text, before.empty() ? "--" : before, now.empty() ? "--" : now);
  if (kind == "address") return text;  // the value is the address
  std::string value = before.empty() ? now : before;
  const std::string mac = event.text(property::mac);
  if (!mac.empty()) value += (value.empty() ? "" : ", ") + mac;
  return value.empty() ? text : fmt::format("{}: {}", text, value);
}

std::string line_of(std::string_view time, std::string_view kind, std::string_view subject, std::string_view change) {
  return fmt::format("{:<19}  {:<9}  {:<24}  {}", time, kind, subject, change);
}

// ---- The stream -----------------------------------------------------------------------------------------------------

enum class stream_end : uint8 { event, interrupted, reader_gone };

// Blocked outside of the waiting, Ctrl-C cannot come just before it and be lost.
stream_end wait_for(const std::vector<int>& descriptors) {
  std::vector<pollfd> waiting = {{STDOUT_FILENO, 0, 0}};
  for (const int it : descriptors) waiting.push_back({it, POLLIN, 0});
  sigset_t ctrl_c;
  sigset_t outside;
  sigemptyset(&ctrl_c);
  sigaddset(&ctrl_c, SIGINT);
  pthread_sigmask(SIG_BLOCK, &ctrl_c, &outside);
  int ready = 0;
  while (!was_interrupted() && ready <= 0) ready = ppoll(waiting.data(), waiting.size(), nullptr, &outside);
  pthread_sigmask(SIG_SETMASK, &outside, nullptr);
  if (was_interrupted()) return stream_end::interrupted;
  return waiting[0].revents != 0 ? stream_end::reader_gone : stream_end::event;
}

// The interfaces whose events the user asked for, or may see; everything without any.
struct event_filter {
  bool has_all = true;
  std::vector<if_index_t> interfaces;  // sorted

  bool shows(const shown_row& event) const {
    if (has_all) return true;
    const interface_value* const of = event.find(property::interface);
    return of != nullptr && std::binary_search(interfaces.begin(), interfaces.end(), of->number());
  }
};

class event_stream {
 public:
  event_stream(shell& session, const command_line& line, const output_settings& usual)
      : session_(session), line_(line), usual_(usual) {
    for (const pipe_stage& stage : line.pipes) filters_.add(stage);
  }

  // Returns an exit code.
  int run() {
    const interrupt_scope interrupts;
    const broken_pipe_scope pipes;
    const std::string& fault = refresh_model(session_);
    if (!fault.empty()) return refuse_line(session_, line_.written, fault, usual_.structured, kServiceFailed);
    std::optional<event_query> events;
    const int begun = refuse([&](command_output& output) { return begin(output, events); });
    const int result = begun == kDone ? follow(*events) : begun;
    write_rest();
    if (result == kInterrupted && usual_.to_terminal && !usual_.structured && !session_.is_interactive) put("\n");
    return error_ == 0 || was_interrupted() ? result : lose_output();
  }

 private:
  // Runs `what` with an output for errors, which is shown when it fails.
  template <typename What>
  int refuse(const What& what) {
    std::string text;
    const int code = with_output(text, what);
    if (code != kDone && usual_.structured) take_document(std::move(text));
    return code;
  }

  template <typename What>
  int with_output(std::string& text, const What& what) {
    line_filters none;
    output_settings settings = usual_;
    settings.to_terminal = settings.paged = settings.coloured = false;
    settings.sink = [&text](std::string_view part) { text += part; };
    command_output output(settings, none);
    const int code = output.report_failures(what(output));
    output.set_exit_code(code);
    output.finish();
    return code;
  }

  int begin(command_output& output, std::optional<event_query>& events) {
    if (const int code = choose(output); code != kDone) return code;
    events.emplace();
    if (events->state() == events_state::open) return kDone;
    if (events->state() == events_state::failed) return fail(output, *events);
    output.complain("this switch publishes no events. Start the shell with --kernel to watch those of this machine.");
    return kUsage;
  }

  // A service that failed is in the account of the command.
  static int fail(command_output& output, const event_query& events) {
    if (!events.reason().empty()) output.complain(events.reason() + ".");
    return kServiceFailed;
  }

  int choose(command_output& output) {
    if (line_.range.empty() && session_.user == nullptr) return kDone;
    const command_queue q;
    command_parameters parameters(session_.library, session_.user, q.handle, kNoDisplayId);
    selection chosen = line_.range.empty() ? select_every(parameters) : select_named(parameters, line_.range);
    if (!chosen.complaint.empty()) output.complain(chosen.complaint);
    shown_ = {false, std::move(chosen.interfaces)};
    std::sort(shown_.interfaces.begin(), shown_.interfaces.end());
    return chosen.code;
  }

  int follow(event_query& events) {
    const uint32 most = line_.number.value_or(std::numeric_limits<uint32>::max());
    if (!usual_.structured) take_line(line_of("Time", "Kind", "Interface", "Change"), line_role::title);
    for (uint32 count = 0;;) {
      write();
      if (error_ != 0) return kDone;
      const stream_end end = events.has_more() ? stream_end::event : wait_for(events.descriptors());
      if (end == stream_end::interrupted || was_interrupted()) return kInterrupted;
      if (end == stream_end::reader_gone) return kDone;
      const int code = refuse([&](command_output& output) { return events.read() ? kDone : fail(output, events); });
      if (code != kDone) return was_interrupted() ? int{kInterrupted} : code;
      if (events.has_lost())
        report_loss("the kernel published more than could be read: events were lost. What differs follows.");
      if (events.num_lost_changes() != 0)
        report_loss(fmt::format("{} changes by sessions came faster than they were read: they were lost.",
                                events.num_lost_changes()));
      for (const event_query::row& it : events.rows()) {
        if (!shown_.shows(shown_row(it))) continue;
        show(it);
        if (++count == most) return kDone;
      }
    }
  }

  void report_loss(std::string_view what) {
    std::string text;
    with_output(text, [&](command_output& output) {
      output.complain(what);
      return kDone;
    });
    if (usual_.structured) take_document(std::move(text));
  }

  void show(const event_query::row& event) {
    if (!usual_.structured) {
      const shown_row row(event);
      const interface_value* const at = row.find(property::event_time);
      const std::string time = at == nullptr ? std::string() : local_text(static_cast<std::time_t>(at->number()));
      return take_line(line_of(time, row.text(property::event_kind), subject_of(row), change_of(row) + maker_of(row)),
                       line_role::row);
    }
    std::string text;
    with_output(text, [&](command_output& output) {
      output.add_row(event);
      return kDone;
    });
    take_document(std::move(text));
  }

  // A document is one line. Ctrl-C may have cut it.
  void take_document(std::string text) {
    if (was_interrupted()) return;
    std::erase(text, '\n');
    take({.text = text});
  }

  void take_line(std::string_view written, line_role role) {
    std::string text;
    append_printable(text, written);
    take({.text = text, .role = role});
  }

  void take(const text_line& it) { filters_.take(it, gather_); }

  // The lines so far. Later ones are discarded once writing failed.
  void write() {
    if (error_ == 0) error_ = put(std::exchange(ready_, {}));
  }

  void write_rest() {
    filters_.finish(gather_);
    write();
  }

  int lose_output() {
    session_.is_leaving = session_.has_lost_output = true;
    return report_lost_output(error_);
  }

  shell& session_;
  const command_line& line_;
  const output_settings& usual_;
  line_filters filters_;
  event_filter shown_;
  std::string ready_;
  const line_taker gather_ = [this](const text_line& it) { ready_.append(it.text).append("\n"); };
  int error_ = 0;
};

int watch_events(shell& session, const command_line& line, const output_settings& usual) {
  const bool has_tables =
      std::any_of(line.pipes.begin(), line.pipes.end(), [](const pipe_stage& it) { return is_for_tables(it.kind); });
  if (!has_tables) return event_stream(session, line, usual).run();
  print_error("'| columns', '| sort' and '| rows' do not apply to events, which have no end. Remove them.");
  return kUsage;
}

// clang-format off
constexpr command kEventRows[] = {
    {"watch events", "Changes by the kernel and by sessions as they come", nullptr, kEventsShown, nullptr, kEveryMode, command_effect::none, watch_events},
    {"watch events count EVENTS", "The same, up to a number of events", nullptr, kEventsShown, nullptr, kEveryMode, command_effect::none, watch_events},
    {"watch events interface RANGE", "Changes of a range", nullptr, kEventsShown, nullptr, kEveryMode, command_effect::none, watch_events},
    {"watch events interface RANGE count EVENTS", "The same, up to a number of events", nullptr, kEventsShown, nullptr, kEveryMode, command_effect::none, watch_events},
};
// clang-format on

constexpr word_help kEventWords[] = {
    {"events", "Changes as they come"},
    {"count", "End after a number of events"},
};

}  // namespace

constexpr command_group kEventCommands = {kEventRows, kEventWords};

}  // namespace host
