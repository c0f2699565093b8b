// "watch events": changes of the switch, as its source publishes them.
#include "switch/events.h"

#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "messages/interface_values.h"
#include "platform/if_index.h"
#include "shell/commands/group.h"
#include "shell/commands/watch/output.h"
#include "shell/library/command_queue.h"
#include "shell/library/parameters.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"
#include "shell/output/terminal/print_error.h"
#include "shell/output/terminal/printable.h"
#include "shell/session/interrupt.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr display kEventsShown = {.bit = kEventsDisplay, .name = "events", .list = "events", .is_table = true};

// ---- Texts ----------------------------------------------------------------------------------------------------------

constexpr std::string_view word_of(event_kind kind) {
  switch (kind) {
    case event_kind::link: return "link";
    case event_kind::address: return "address";
    case event_kind::neighbor: return "neighbor";
    case event_kind::module: return "module";
  }
  return {};
}

std::string text_of(const ip_address& address) {
  return address.is_ipv6 ? text_of_ipv6(address.bytes.data()) : text_of_ipv4(address.bytes.data());
}

std::string with_prefix(const ip_address& address) {
  return fmt::format("{}/{}", text_of(address), address.prefix_length);
}

// Empty for no value.
std::string text_of(const event_value& value) {
  if (const auto* const text = std::get_if<std::string>(&value)) return *text;
  if (const auto* const mac = std::get_if<mac_address>(&value)) return text_of_mac(mac->data());
  if (const auto* const address = std::get_if<ip_address>(&value)) return with_prefix(*address);
  return {};
}

std::string name_of(if_index_t if_index) {
  char name[64] = {};
  return if_index == 0 ? std::string() : sprintf_if_index(name, if_index);
}

// "Ethernet1/7 (eth0)"
std::string subject_of(const row_device& device) {
  const std::string name = name_of(device.if_index);
  if (name.empty()) return device.name;
  return device.name.empty() ? name : fmt::format("{} ({})", name, device.name);
}

// "mtu: 1500 -> 9000", "192.0.2.9 added: reachable, 0200.0000.0009", "192.0.2.1/24 removed"
std::string change_of(const switch_event& event) {
  std::string text;
  if (event.address)
    text = (event.kind == event_kind::address ? with_prefix(*event.address) : text_of(*event.address)) + " ";
  text += event.change;
  const std::string before = text_of(event.old_value), now = text_of(event.new_value);
  const bool is_whole = event.change == "added" || event.change == "removed";
  if (!is_whole) return fmt::format("{}: {} -> {}", text, before.empty() ? "--" : before, now.empty() ? "--" : now);
  if (event.kind == event_kind::address) return text;  // the value is the address
  std::string value = before.empty() ? now : before;
  if (event.mac) value += (value.empty() ? "" : ", ") + text_of_mac(event.mac->data());
  return value.empty() ? text : fmt::format("{}: {}", text, value);
}

std::string line_of(std::string_view time, std::string_view kind, std::string_view subject, std::string_view change) {
  return fmt::format("{:<19}  {:<8}  {:<24}  {}", time, kind, subject, change);
}

// ---- Records --------------------------------------------------------------------------------------------------------

void write_text(value_writer& to, property of, const std::string& text) {
  if (text.empty())
    to.absent(of, absence::none);
  else
    to.text(of, text);
}

void write_address(value_writer& to, const std::optional<ip_address>& address) {
  if (!address) return;
  if (address->is_ipv6)
    to.ipv6(property::ip_address, address->bytes);
  else
    to.ipv4(property::ip_address, address->bytes);
  to.number(property::prefix_length_bits, address->prefix_length);
}

std::vector<std::byte> values_of(const switch_event& event) {
  std::vector<std::byte> bytes;
  value_writer to(bytes);
  if (event.device.if_index != 0) to.interface(property::interface, event.device.if_index);
  write_text(to, property::device, event.device.name);
  if (event.device.number != 0) to.number(property::ifindex, event.device.number);
  write_address(to, event.address);
  if (event.mac) to.mac(property::mac, *event.mac);
  to.time(property::event_time, event.at_sec);
  to.text(property::event_kind, word_of(event.kind));
  to.text(property::change, event.change);
  write_text(to, property::old_value, text_of(event.old_value));
  write_text(to, property::new_value, text_of(event.new_value));
  return bytes;
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

  bool shows(const switch_event& event) const {
    return has_all || std::binary_search(interfaces.begin(), interfaces.end(), event.device.if_index);
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
    the_source().refresh(the_machine());
    std::unique_ptr<event_reader> events;
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

  int begin(command_output& output, std::unique_ptr<event_reader>& events) {
    if (const int code = choose(output); code != kDone) return code;
    try {
      events = the_source().open_events();
    } catch (const std::runtime_error& why) {
      output.complain(why.what() + std::string("."));
      return kServiceFailed;
    }
    if (events != nullptr) return kDone;
    output.complain("this switch publishes no events. Start the shell with --kernel to watch those of this machine.");
    return kUsage;
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

  int follow(event_reader& events) {
    const uint32 most = line_.number.value_or(std::numeric_limits<uint32>::max());
    if (!usual_.structured) take_line(line_of("Time", "Kind", "Interface", "Change"), line_role::title);
    std::vector<switch_event> read;
    for (uint32 count = 0;;) {
      write();
      if (error_ != 0) return kDone;
      const stream_end end = wait_for(events.descriptors());
      if (end == stream_end::interrupted) return kInterrupted;
      if (end == stream_end::reader_gone) return kDone;
      read.clear();
      try {
        if (!events.read(read)) report_loss();
      } catch (const std::runtime_error& why) {
        return refuse([&](command_output& output) {
          output.complain(why.what() + std::string("."));
          return kServiceFailed;
        });
      }
      for (const switch_event& it : read) {
        if (!shown_.shows(it)) continue;
        show(it);
        if (++count == most) return kDone;
      }
    }
  }

  void report_loss() {
    constexpr std::string_view kLost =
        "the kernel published more than could be read: events were lost. What differs follows.";
    std::string text;
    with_output(text, [&](command_output& output) {
      output.complain(kLost);
      return kDone;
    });
    if (usual_.structured) take_document(std::move(text));
  }

  void show(const switch_event& event) {
    if (!usual_.structured)
      return take_line(
          line_of(local_text(event.at_sec), word_of(event.kind), subject_of(event.device), change_of(event)),
          line_role::row);
    std::string text;
    with_output(text, [&](command_output& output) {
      const std::vector<std::byte> bytes = values_of(event);
      if (const auto values = read_values(bytes)) output.add_row(*values);
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
    {"watch events", "Changes of links, addresses and neighbors as they come", nullptr, kEventsShown, nullptr, kEveryMode, command_effect::none, watch_events},
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
