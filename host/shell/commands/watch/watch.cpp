#include "shell/commands/watch/watch.h"

#include <fmt/format.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <utility>

#include "base/printable.h"
#include "messages/calls/switch_facts.h"
#include "platform/if_index.h"
#include "shell/commands/group.h"
#include "shell/commands/watch/drawing.h"
#include "shell/commands/watch/output.h"
#include "shell/output/terminal/locale.h"
#include "shell/output/terminal/print_error.h"
#include "shell/output/terminal/restore_terminal.h"
#include "shell/output/terminal/sparkline.h"
#include "shell/session/interrupt.h"
#include "shell/session/line_output.h"
#include "shell/session/run.h"
#include "shell/session/unconfirmed_commit.h"
#include "switch/clock.h"

namespace host {
namespace {

// ---- Counters

// Displays with the bytes and packets that an interface received and sent.
constexpr uint32 kCountingDisplays =
    kDetailedDisplay | kCountersDisplay | kDetailedCountersDisplay | kAllCountersDisplay;

// ---- Time

enum class wait_end : uint8 { moment, key, interrupted, reader_gone };

// Moments at equal distances. Those that a slow reading misses are skipped.
class pace {
 public:
  explicit pace(uint32 seconds) : distance_(seconds) {}

  // Waits for the next moment, or for a key when `keys` is a terminal; -1: none.
  wait_end wait(int keys) {
    while (is_over_ || next_ <= clock::now()) {
      next_ += distance_;
      is_over_ = false;
    }
    // Blocked outside of the waiting, Ctrl-C cannot come just before it and be lost.
    sigset_t ctrl_c;
    sigset_t outside;
    sigemptyset(&ctrl_c);
    sigaddset(&ctrl_c, SIGINT);
    pthread_sigmask(SIG_BLOCK, &ctrl_c, &outside);
    const wait_end end = wait_with(outside, keys);
    pthread_sigmask(SIG_SETMASK, &outside, nullptr);
    is_over_ = end == wait_end::moment;
    return end;
  }

 private:
  using clock = std::chrono::steady_clock;

  wait_end wait_with(const sigset_t& signals, int keys) const {
    while (!was_interrupted()) {
      const auto left = std::chrono::ceil<std::chrono::nanoseconds>(next_ - clock::now());
      if (left.count() <= 0) return wait_end::moment;
      const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
      const timespec timeout{static_cast<std::time_t>(seconds.count()), static_cast<long>((left - seconds).count())};
      std::array<pollfd, 2> events = {{{STDOUT_FILENO, 0, 0}, {keys, POLLIN, 0}}};
      if (ppoll(events.data(), events.size(), &timeout, &signals) <= 0) continue;
      return events[0].revents != 0 ? wait_end::reader_gone : wait_end::key;
    }
    return wait_end::interrupted;
  }

  std::chrono::seconds distance_;
  clock::time_point next_ = clock::now();
  bool is_over_ = true;  // the moment that was waited for
};

// ---- Keys

// While it lives, the terminal hands on each key at once and does not show it.
class key_scope {
 public:
  // There are none without a terminal, and for a process in the background.
  explicit key_scope(bool is_used) {
    if (!is_used || tcgetpgrp(STDIN_FILENO) != getpgrp() || tcgetattr(STDIN_FILENO, &outside_) != 0) return;
    restore_terminal_at_end();
    termios modes = outside_;
    modes.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    modes.c_cc[VMIN] = 1;
    modes.c_cc[VTIME] = 0;
    if (tcsetattr(STDIN_FILENO, TCSADRAIN, &modes) == 0) keys_ = STDIN_FILENO;
  }
  ~key_scope() {
    if (has_keys()) tcsetattr(STDIN_FILENO, TCSADRAIN, &outside_);
  }
  key_scope(const key_scope&) = delete;
  key_scope& operator=(const key_scope&) = delete;

  bool has_keys() const { return keys_ >= 0; }
  int descriptor() const { return keys_; }  // -1: none

  // What was typed; no keys come any more when that is nothing.
  std::string typed() {
    char keys[64];
    const ssize_t size = read(keys_, keys, sizeof keys);
    if (size > 0) return {keys, static_cast<std::size_t>(size)};
    if (size == 0 || errno != EINTR) is_at_end_ = true;
    return {};
  }
  bool is_at_end() const { return is_at_end_; }

 private:
  termios outside_{};
  int keys_ = -1;
  bool is_at_end_ = false;
};

struct scroll_key {
  std::string_view typed;
  int lines;  // down; negative: up
  int pages = 0;
};

constexpr std::string_view kHelp = "j/k scroll";
constexpr scroll_key kScrollKeys[] = {{"j", 1},          {"k", -1},         {"\x1b[B", 1}, {"\x1b[A", -1},
                                      {"\x1bOB", 1},     {"\x1bOA", -1},    {" ", 0, 1},   {"b", 0, -1},
                                      {"\x1b[6~", 0, 1}, {"\x1b[5~", 0, -1}};

// ---- Output

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

std::vector<std::string> lines_of(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  if (!text.empty()) lines.emplace_back(text);
  return lines;
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
  watcher(shell& session, const command_line& line, const output_settings& usual, bool has_keys)
      : session_(session), line_(line), usual_(usual), has_keys_(has_keys) {}

  // Makes a reading and shows it, unless the switch cannot be updated. Returns 0, or the errno with which writing it
  // failed.
  int show_reading() {
    check_commit();
    fault_ = refresh_for(line_.what);
    if (!fault_.empty()) return 0;
    traffic_.begin_reading();
    ++readings_;
    return usual_.structured ? show_document() : is_drawn() ? show_screen() : show_text();
  }

  // Draws the last reading again, scrolled by what was typed. Returns as show_reading().
  int scroll(std::string_view typed) {
    const std::size_t page = std::max<std::size_t>(1, size_of(STDOUT_FILENO).rows / 2);
    const std::size_t before = offset_;
    while (!typed.empty()) {
      const auto* const key = std::find_if(std::begin(kScrollKeys), std::end(kScrollKeys),
                                           [&](const scroll_key& it) { return typed.starts_with(it.typed); });
      const bool is_known = key != std::end(kScrollKeys);
      typed.remove_prefix(is_known ? key->typed.size() : 1);
      if (!is_known) continue;
      const auto lines = static_cast<std::size_t>(std::abs(key->lines)) + (key->pages != 0 ? page : 0);
      const bool is_down = key->lines > 0 || key->pages > 0;
      offset_ = is_down ? offset_ + lines : offset_ - std::min(offset_, lines);
    }
    return offset_ == before ? 0 : draw();
  }

  // Why the switch could not be updated: a sentence, else empty.
  const std::string& fault() const { return fault_; }

  // How the command went.
  int result() const { return result_; }

  // True when the first reading was refused: what it is about may go away later, but has to be there at first, and the
  // display has to apply to a part of it.
  bool is_refused() const {
    const bool is_about_interfaces = result_ == kSomeInterfacesFailed || result_ == kNoSuchInterface;
    return readings_ == 1 &&
           (result_ == kUsage || result_ == kNotPermitted || (is_about_interfaces && !has_shown_interface_));
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
    drawn_at_ = time_of_day();
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
    shown_ = std::move(shown);
    rates_ = traffic_.rows();
    recent_.add(rates_);
    drawn_at_ = time_of_day();
    return draw();
  }

  int draw() {
    const screen_size size = size_of(STDOUT_FILENO);
    const std::string first = first_line(size.columns);
    const std::vector<std::string> rates = rate_lines(rates_, recent_, size.columns, is_utf8_);
    return put(std::string(begin_of_drawing()) +
               drawing({first, shown_, rates}, size, offset_, has_keys_ ? kHelp : std::string_view()));
  }

  std::string first_line(std::size_t columns) const {
    std::string text;
    append_printable(text,
                     fmt::format("Every {} s: {}   {}   {}", *line_.every, line_.text, session_.about.name, drawn_at_));
    return std::string(first_characters(text, columns));
  }

  void add_filters(line_filters& filters) const {
    for (const pipe_stage& stage : line_.pipes) filters.add(stage);
  }

  std::optional<traffic_count> count(if_index_t if_index) const {
    const bool may_see = session_.user == nullptr || session_.user->sees_counters;
    if (!may_see || (usual_.shown.bit & kCountingDisplays) == 0) return std::nullopt;
    return ask_traffic(if_index);
  }

  shell& session_;
  const command_line& line_;
  const output_settings& usual_;
  const bool has_keys_;
  const bool is_utf8_ = has_utf8_locale();
  int result_ = kDone;
  bool has_shown_interface_ = false;
  std::vector<std::string> rollback_;  // what was said of a commit that was not confirmed
  std::vector<std::string> reported_;  // errors of the reading
  std::vector<std::string> reported_before_;
  uint64 readings_ = 0;
  std::string fault_;
  std::vector<std::string> shown_;  // what is drawn
  std::vector<traffic_readings::row> rates_;
  recent_rates recent_;
  std::string drawn_at_;
  std::size_t offset_ = 0;  // lines that are scrolled away
  traffic_readings traffic_{[this](if_index_t if_index) { return count(if_index); }};
};

}  // namespace

int watch(shell& session, const command_line& line, const output_settings& usual) {
  const interrupt_scope interrupts;
  const broken_pipe_scope pipes;
  const auto refuse = [&](const std::string& fault) {
    return refuse_line(session, line.written, fault, usual.structured, kServiceFailed);
  };
  // The first may leave what was read when the shell started.
  if (const std::string fault = refresh_for(line.what); !fault.empty()) return refuse(fault);
  key_scope keys(usual.to_terminal && !usual.structured);
  watcher running(session, line, usual, keys.has_keys());
  pace readings(*line.every);
  const auto fail = [&](int error) {
    session.is_leaving = session.has_lost_output = true;
    return report_lost_output(error);
  };
  while (!was_interrupted()) {
    if (const int error = running.show_reading(); error != 0 && !was_interrupted()) return fail(error);
    if (!running.fault().empty() && !was_interrupted()) return refuse(running.fault());
    if (running.is_refused()) return running.result();
    for (wait_end end = wait_end::key; end == wait_end::key;) {
      end = readings.wait(keys.is_at_end() ? -1 : keys.descriptor());
      if (end == wait_end::reader_gone) return kDone;
      if (end != wait_end::key) continue;
      if (const int error = running.scroll(keys.typed()); error != 0 && !was_interrupted()) return fail(error);
    }
  }
  if (usual.to_terminal && !usual.structured && !session.is_interactive) put("\n");
  return kInterrupted;
}

namespace {

// clang-format off
constexpr command kWatchRows[] = {
    {"watch INTERVAL COMMAND", "Repeat a show command, with rates of traffic", nullptr, kSentences, nullptr, kEveryMode, command_effect::none, watch},
};
// clang-format on

constexpr word_help kWatchWords[] = {
    {"watch", "Repeat a show command"},
};

}  // namespace

constexpr command_group kWatchCommands = {kWatchRows, kWatchWords};

}  // namespace host
