#include "shell/commands/watch/watch.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

#include "base/write_all.h"
#include "platform/if_index.h"
#include "shell/commands/group.h"
#include "shell/library/interface_kinds.h"
#include "shell/output/terminal/print_error.h"
#include "shell/output/terminal/printable.h"
#include "shell/session/interrupt.h"
#include "shell/session/run.h"
#include "switch/clock.h"
#include "switch/kernel_device.h"
#include "switch/live_statistics.h"
#include "switch/source.h"

namespace host {
namespace {

// ---- Counters

// Displays with the bytes and packets that an interface received and sent.
constexpr uint32 kCountingDisplays =
    kDetailedDisplay | kCountersDisplay | kDetailedCountersDisplay | kAllCountersDisplay;

// Devices count all the time; the traffic of a switch file grows by whole seconds of the clock.
bool is_counted_by_kernel(const interface& port) {
  return kind_of(port.if_index).type == IF_TYPE_MGMT &&
         kernel_counters(management_device(the_machine(), port.if_index)).has_value();
}

traffic_count count_of(const interface& port, double at_sec) {
  const statistics& stats = port.stats;
  return {at_sec,
          stats.in.bytes.value_or(0),
          stats.in.packets.value_or(0),
          stats.out.bytes.value_or(0),
          stats.out.packets.value_or(0),
          stats.last_clear_sec};
}

// The current counts of an interface, read again until they and the time are of the same second.
std::optional<traffic_count> count_now(interface& port) {
  double at_sec = 0;
  do {
    at_sec = static_cast<double>(clock_now());
    if (!refresh_statistics(port)) return std::nullopt;
    if (is_counted_by_kernel(port)) return count_of(port, clock_now_exactly());
  } while (static_cast<double>(clock_now()) != at_sec);
  return count_of(port, at_sec);
}

// The in-band interface is no part of the model: the library reads its device.
interface* counted_interface(if_index_t if_index) {
  return kind_of(if_index).type == IF_TYPE_INBAND ? nullptr : the_machine().find(if_index);
}

// ---- Time

// Moments at equal distances. Those that a slow reading misses are skipped.
class pace {
 public:
  explicit pace(uint32 seconds) : distance_(seconds) {}

  // Waits for the next. False: the reader of standard output is gone. Ctrl-C ends the wait.
  bool wait() {
    do next_ += distance_;
    while (next_ <= clock::now());
    // Blocked outside of the waiting, Ctrl-C cannot come just before it and be lost.
    sigset_t ctrl_c;
    sigset_t outside;
    sigemptyset(&ctrl_c);
    sigaddset(&ctrl_c, SIGINT);
    pthread_sigmask(SIG_BLOCK, &ctrl_c, &outside);
    const bool is_read = wait_with(outside);
    pthread_sigmask(SIG_SETMASK, &outside, nullptr);
    return is_read;
  }

 private:
  using clock = std::chrono::steady_clock;

  bool wait_with(const sigset_t& signals) const {
    while (!was_interrupted()) {
      const auto left = std::chrono::ceil<std::chrono::nanoseconds>(next_ - clock::now());
      if (left.count() <= 0) return true;
      const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
      const timespec timeout{static_cast<std::time_t>(seconds.count()), static_cast<long>((left - seconds).count())};
      pollfd reader{STDOUT_FILENO, 0, 0};
      if (ppoll(&reader, 1, &timeout, &signals) > 0) return false;
    }
    return true;
  }

  std::chrono::seconds distance_;
  clock::time_point next_ = clock::now();
};

// ---- Output

// While it lives, writing to a reader that is gone fails and ends nothing.
class broken_pipe_scope {
 public:
  broken_pipe_scope() { outside_ = std::signal(SIGPIPE, SIG_IGN); }
  ~broken_pipe_scope() { std::signal(SIGPIPE, outside_); }
  broken_pipe_scope(const broken_pipe_scope&) = delete;
  broken_pipe_scope& operator=(const broken_pipe_scope&) = delete;

 private:
  void (*outside_)(int) = SIG_DFL;
};

// While it lives, errors go to a sink.
class error_sink_scope {
 public:
  explicit error_sink_scope(error_taker sink) : outside_(set_error_sink(std::move(sink))) {}
  ~error_sink_scope() { set_error_sink(std::move(outside_)); }
  error_sink_scope(const error_sink_scope&) = delete;
  error_sink_scope& operator=(const error_sink_scope&) = delete;

 private:
  error_taker outside_;
};

// Returns 0, or the errno with which writing failed. Ctrl-C ends the waiting for a reader.
int put(std::string_view text) { return write_all(STDOUT_FILENO, text, was_interrupted); }

std::vector<std::string> lines_of(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  if (!text.empty()) lines.emplace_back(text);
  return lines;
}

// Characters that take a place on the screen: colours do not.
std::size_t width_of(std::string_view line) {
  std::size_t width = 0;
  for (std::size_t colour = line.find('\x1b'); colour != std::string_view::npos; colour = line.find('\x1b')) {
    width += count_characters(line.substr(0, colour));
    line.remove_prefix(std::min(line.find('m', colour), line.size() - 1) + 1);
  }
  return width + count_characters(line);
}

std::size_t rows_of(std::string_view line, screen_size size) {
  return std::max<std::size_t>(1, (width_of(line) + size.columns - 1) / size.columns);
}

std::size_t rows_of(const std::vector<std::string>& lines, screen_size size) {
  std::size_t rows = 0;
  for (const std::string& line : lines) rows += rows_of(line, size);
  return rows;
}

// The lines that fit; takes their rows from `room`.
void add_fitting(std::string& text, const std::vector<std::string>& lines, screen_size size, std::size_t room) {
  for (const std::string& line : lines) {
    const std::size_t rows = rows_of(line, size);
    if (rows > room) return;
    room -= rows;
    text.append("\n").append(line);
  }
}

std::string time_of_day() {
  const std::time_t now = clock_now();
  std::tm parts{};
  localtime_r(&now, &parts);
  char text[16];
  return {text, std::strftime(text, sizeof text, "%H:%M:%S", &parts)};
}

// Clears the screen, where the terminal can; others show one drawing below the other.
std::string_view begin_of_drawing() {
  const char* const terminal = std::getenv("TERM");
  const bool can_clear = terminal != nullptr && std::string_view(terminal) != "dumb";
  return can_clear ? "\x1b[H\x1b[J" : "\n";
}

// ---- Readings

// A running watch.
class watcher {
 public:
  watcher(shell& session, const command_line& line, const output_settings& usual)
      : session_(session), line_(line), usual_(usual) {}

  // Makes a reading and shows it. Returns 0, or the errno with which writing it failed.
  int show_reading() {
    check_commit();
    the_source().refresh(the_machine());
    refreshed_sec_ = clock_now_exactly();
    traffic_.begin_reading();
    ++readings_;
    return usual_.structured ? show_document() : is_drawn() ? show_screen() : show_text();
  }

  // How the command went.
  int result() const { return result_; }

  // True when the first reading was refused: what it is about may go away later, but has to be there at first, and the
  // display has to apply to a part of it.
  bool is_refused() const {
    const bool is_without_interfaces = result_ == kSomeInterfacesFailed && !has_shown_interface_;
    return readings_ == 1 &&
           (result_ == kUsage || result_ == kNoSuchInterface || result_ == kNotPermitted || is_without_interfaces);
  }

 private:
  bool is_drawn() const { return usual_.to_terminal && !usual_.structured; }

  // A drawing would replace what standard error says of a rollback at once: it is part of all that follow.
  void check_commit() {
    if (!is_drawn()) return check_confirmation(session_);
    const error_sink_scope errors([this](std::string_view error) { rollback_.emplace_back(error); });
    check_confirmation(session_);
  }

  // What the command shows.
  std::string run(line_filters& filters) {
    std::string text;
    output_settings settings = usual_;
    if (usual_.to_terminal) settings.columns = size_of(STDOUT_FILENO).columns;
    settings.to_terminal = false;
    settings.paged = false;
    settings.sinks_errors = is_drawn();
    if (!is_drawn()) settings.on_error = [this](std::string_view error) { report(error); };
    settings.sink = [&text](std::string_view part) { text += part; };
    settings.traffic = &traffic_;
    {
      command_output output(settings, filters);
      result_ = output.report_failures(run_handler({line_, session_, output}));
      output.set_exit_code(result_);
      output.finish();
      has_shown_interface_ = output.has_shown_interface();
    }
    if (result_ == kDone && !filters.fault().empty()) {
      result_ = kUsage;
      is_drawn() ? void(text = filters.fault()) : report(filters.fault());
    }
    reported_before_ = std::exchange(reported_, {});
    return text;
  }

  // An error that lasts is printed at the first of its readings.
  void report(std::string_view text) {
    const bool is_new = std::find(reported_before_.begin(), reported_before_.end(), text) == reported_before_.end();
    if (is_new) print_error(text);
    reported_.emplace_back(text);
  }

  // The document on a line, if the filters let it through.
  int show_document() {
    line_filters none;
    std::string document = run(none);
    if (was_interrupted()) return 0;
    std::erase(document, '\n');
    line_filters filters;
    add_filters(filters);
    std::string lines;
    const line_taker take = [&lines](const text_line& it) { lines.append(it.text).append("\n"); };
    filters.take({document}, take);
    filters.finish(take);
    return put(lines);
  }

  // A reading ends with an empty line.
  int show_text() {
    line_filters filters;
    add_filters(filters);
    std::string shown = run(filters);
    if (was_interrupted()) return 0;
    if (is_refused()) return put(shown);
    shown.insert(0, first_line(std::string::npos) + "\n");
    for (const std::string& line : rate_lines(traffic_.rows())) shown.append(line).append("\n");
    return put(shown + "\n");
  }

  // A command that is refused at the first reading reports as it does without a watch; later its error is drawn.
  int show_screen() {
    line_filters filters;
    add_filters(filters);
    std::vector<std::string> shown = lines_of(run(filters));
    if (was_interrupted()) return 0;
    if (is_refused()) {
      for (const std::string& line : shown) print_error(line);
      return 0;
    }
    shown.insert(shown.begin(), rollback_.begin(), rollback_.end());
    const screen_size size = size_of(STDOUT_FILENO);
    return put(std::string(begin_of_drawing()) +
               drawing(first_line(size.columns), shown, rate_lines(traffic_.rows()), size));
  }

  std::string first_line(std::size_t columns) const {
    std::string text;
    append_printable(text, "Every " + std::to_string(*line_.every) + " s: " + line_.text + "   " +
                               session_.switch_name + "   " + time_of_day());
    return std::string(first_characters(text, columns));
  }

  void add_filters(line_filters& filters) const {
    for (const pipe_stage& stage : line_.pipes) filters.add(stage);
  }

  std::optional<traffic_count> count(if_index_t if_index) const {
    const bool may_see = session_.user == nullptr || session_.user->sees_counters;
    if (!may_see || (usual_.shown.bit & kCountingDisplays) == 0) return std::nullopt;
    interface* const port = counted_interface(if_index);
    if (port == nullptr) return std::nullopt;
    if (!the_source().counts_at_refresh() || is_counted_by_kernel(*port)) return count_now(*port);
    return refresh_statistics(*port) ? std::optional(count_of(*port, refreshed_sec_)) : std::nullopt;
  }

  shell& session_;
  const command_line& line_;
  const output_settings& usual_;
  int result_ = kDone;
  bool has_shown_interface_ = false;
  std::vector<std::string> rollback_;  // what was said of a commit that was not confirmed
  std::vector<std::string> reported_;  // errors of the reading
  std::vector<std::string> reported_before_;
  uint64 readings_ = 0;
  double refreshed_sec_ = 0;
  traffic_readings traffic_{[this](if_index_t if_index) { return count(if_index); }};
};

}  // namespace

std::vector<std::string> rate_lines(const std::vector<traffic_readings::row>& rows) {
  constexpr int kNameWidth = 22, kRateWidth = 14;
  if (rows.empty()) return {};
  const auto padded = [](std::string_view text, int width) {
    char cell[64];
    std::snprintf(cell, sizeof cell, "%*.*s", width, static_cast<int>(text.size()), text.data());
    return std::string(cell);
  };
  std::string titles = padded("Interface", -kNameWidth);
  for (const rate_field& rate : kRateFields) titles += padded(rate.title, kRateWidth);
  std::vector<std::string> lines = {"", titles};
  for (const traffic_readings::row& row : rows) {
    char name[64];
    std::string line = padded(sprintf_if_index(name, row.if_index), -kNameWidth);
    for (const rate_field& rate : kRateFields) {
      char number[64] = "--";
      if (row.rates) std::snprintf(number, sizeof number, "%.1f", (*row.rates).*rate.value);
      line += padded(number, kRateWidth);
    }
    lines.push_back(line);
  }
  return lines;
}

std::string drawing(const std::string& first, const std::vector<std::string>& shown,
                    const std::vector<std::string>& rates, screen_size size) {
  const std::size_t room = size.rows - 1;
  const std::size_t left_by_display = room - std::min(room, rows_of(shown, size));
  const std::size_t for_rates = std::min(rows_of(rates, size), std::max(room / 2, left_by_display));
  std::string text = first;
  add_fitting(text, shown, size, room - for_rates);
  add_fitting(text, rates, size, for_rates);
  return text;
}

int watch(shell& session, const command_line& line, const output_settings& usual) {
  const interrupt_scope interrupts;
  const broken_pipe_scope pipes;
  the_source().refresh(the_machine());  // the first may leave what was read when the shell started
  watcher running(session, line, usual);
  pace readings(*line.every);
  while (!was_interrupted()) {
    if (const int error = running.show_reading(); error != 0 && !was_interrupted()) {
      session.is_leaving = session.has_lost_output = true;
      return report_lost_output(error);
    }
    if (running.is_refused()) return running.result();
    if (!readings.wait()) return kDone;
  }
  if (usual.to_terminal && !usual.structured) put("\n");
  return kInterrupted;
}

namespace {

// clang-format off
constexpr command kCommands[] = {
    {"watch INTERVAL COMMAND", "Repeat a show command until Ctrl-C, with the rates of the traffic that it counts", nullptr, kSentences, nullptr, kEveryMode, command_effect::none, watch},
};
// clang-format on

constexpr word_help kWords[] = {
    {"watch", "Repeat a show command"},
};

}  // namespace

constexpr command_group kWatchCommands = {kCommands, kWords};

}  // namespace host
