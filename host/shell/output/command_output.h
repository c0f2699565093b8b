// The output of one command, from the first byte to the last.
//
// While it lives, a stream of the host stands in for `stdout`: what the library prints with printf and puts, and what
// it prints on the output channel, pass through it in order. Line by line it is made safe for a terminal, and
// shown, filtered, paged, or turned into the structured form.
#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/output/account.h"
#include "shell/output/block_writer.h"
#include "shell/output/document.h"
#include "shell/output/pager.h"
#include "shell/output/pipes.h"
#include "shell/output/progress_line.h"
#include "shell/output/traffic_readings.h"

namespace host {

// Hears of a value of the interface that is being shown; 0: of none. A null `value`: nobody knows it.
using value_sink = std::function<void(if_index_t, const cmd_tuple_t&)>;

struct output_settings {
  int descriptor = 1;
  bool to_terminal = false;             // lines are shown as soon as they are complete
  bool paged = false;                   // stops at the end of each screen
  bool structured = false;              // as a document
  bool coloured = false;                // alarms and warnings of marked displays
  display shown{};                      // of the command; used by the structured form
  std::string_view command{};           // for the document
  bool (*is_cancelled)() = nullptr;     // further output is discarded once it returns true
  output_sink sink{};                   // takes the output in place of the descriptor
  bool sinks_errors = false;            // the errors, too
  value_sink on_value{};                // hears of each value that is bound
  traffic_readings* traffic = nullptr;  // learns which interfaces are shown; records get their rates
};

class command_output {
 public:
  // `filters` were made of the command's pipes and outlive this.
  command_output(const output_settings& settings, line_filters& filters);
  ~command_output();
  command_output(const command_output&) = delete;
  command_output& operator=(const command_output&) = delete;

  // The output of the running command; null when none runs.
  static command_output* running();

  // ---- Text, in the order in which it is printed.

  // The line that is being printed, after all that the library printed so far.
  std::string& line();
  // Ends the line. In the structured form a line that is not `bound` to a field of the record is a message.
  void end_line();
  // Binds a value; it is stored when the output is structured.
  void bind(const cmd_tuple_t& tuple);
  // Whether nobody knows the value of the interface that is being shown: it is "--", and null when it is bound so.
  bool is_unknown(const cmd_tuple_t& tuple) const;
  void bind_unknown(const cmd_tuple_t& tuple);
  // Plain text with any number of lines.
  void text(std::string_view text);

  // An error of the shell itself, one line: to standard error, into the document, or to the sink that wants them.
  void complain(std::string_view text);

  // The same, but not into the document.
  void print_complaint(std::string_view text);

  // A sentence for each service and client library that failed the command: to standard error, and into the document.
  // Returns the exit code: that of a service that failed when there is one and `result` is none. To be called when the
  // command has run.
  int report_failures(int result);

  // Ends the output, which then takes nothing more. Returns 0, or the errno with which writing it failed.
  int finish();

  // Shows what is printed so far, also when its line is not complete.
  void flush();

  // While the result lives, nothing of progress is shown: the user is asked something.
  std::optional<progress_line::pause> hold_progress();

  // ---- Interfaces.

  void begin_interface(std::string_view name, if_index_t if_index = 0);
  // Returns true when something failed since begin_interface().
  bool end_interface();
  void note_failure() { failed_ = true; }
  bool failed() const { return failed_; }

  bool is_structured() const { return document_.has_value(); }

  // True when nothing more will be shown: the command was cancelled, the user left the pager, or writing failed.
  bool is_discarding() const;

  // ---- For the channel.

  bool short_names = false;    // until the end of the line
  bool is_of_channel = false;  // the line, or its last part, was printed on the channel

 private:
  void take_printed() {
    if (__builtin_expect(has_printed_text(), 0)) std::fflush(stream_);
  }
  bool has_printed_text() const;
  bool is_perhaps_unknown(const field& meaning) const;
  void deliver(std::string_view line);
  void show(std::string_view line);
  void filter(std::string_view line);
  void show_ready_document();
  void record_failures();

  output_settings settings_;
  line_filters& filters_;
  account account_;
  block_writer writer_;
  std::optional<pager> pager_;
  std::optional<progress_line> progress_;
  std::optional<document> document_;
  std::FILE* stream_;
  std::FILE* real_stdout_;
  std::string line_;
  std::string safe_line_;
  if_index_t if_index_ = 0;
  bool interface_is_shown_ = false;  // a line of it came out of the filters
  bool line_is_bound_ = false;
  mutable std::vector<uint8> perhaps_unknown_;  // by the schema's rows
  bool failed_ = false;
  bool left_pager_ = false;
  bool is_finished_ = false;
};

}  // namespace host
