// The output of one command, from the first byte to the last.
//
// While it lives, a stream of the host replaces `stdout`: text that the library prints with printf and puts, and on the
// output channel, passes through it in order. It wires the chain that the lines pass (output/chain):
// they are gathered, made safe for a terminal, recorded in the document or filtered, paged, coloured and written.
#pragma once

#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/output/chain/colour.h"
#include "shell/output/chain/filter.h"
#include "shell/output/chain/gate.h"
#include "shell/output/chain/gather.h"
#include "shell/output/chain/mark.h"
#include "shell/output/chain/page.h"
#include "shell/output/chain/record.h"
#include "shell/output/chain/sanitise.h"
#include "shell/output/chain/table.h"
#include "shell/output/chain/write.h"
#include "shell/output/document/account.h"
#include "shell/output/document/document.h"
#include "shell/output/document/interface_answers.h"
#include "shell/output/document/traffic_readings.h"
#include "shell/output/terminal/progress_line.h"

namespace host {

// Takes a value of the interface that is being shown; 0: of none. A null `value` is not known.
using value_sink = std::function<void(if_index_t, const cmd_tuple_t&)>;

struct output_settings {
  int descriptor = 1;
  bool to_terminal = false;             // lines are shown as soon as they are complete
  bool paged = false;                   // stops at the end of each screen
  std::size_t lines = 0;                // of a screen; 0: as the terminal reports
  std::string pager{};                  // program that shows what does not fit a screen; empty: none
  bool structured = false;              // as a document
  bool coloured = false;                // alarms and warnings of marked displays
  std::size_t columns = 0;              // of the terminal that shows it; 0: lines of any width
  display shown{};                      // of the command; used by the structured form
  std::string_view command{};           // for the document
  bool (*is_cancelled)() = nullptr;     // further output is discarded once it returns true
  output_sink sink{};                   // takes the output in place of the descriptor
  bool sinks_errors = false;            // the errors, too
  output_sink on_error{};               // takes the errors in place of standard error
  value_sink on_value{};                // takes each value that is bound
  bool hides_traffic = false;           // the user may not see counters and rates
  traffic_readings* traffic = nullptr;  // notes which interfaces are shown; records get their rates
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
  line_gatherer& line() {
    take_printed();
    return *gather_;
  }
  // Binds a value; it is stored when the output is structured.
  void bind(const cmd_tuple_t& tuple);

  // Binds a text to a tag of the shell itself.
  void bind_text(uint16 tag, const std::string& text) { bind({uint32{CMD_TYPE_STRING} << 24 | tag, text.c_str()}); }
  // Whether the value of the current interface is unknown: it shows as "--", and bind_unknown() leaves null.
  bool is_unknown(const cmd_tuple_t& tuple);
  void bind_unknown(const cmd_tuple_t& tuple);
  // Plain text with any number of lines.
  void text(std::string_view text) { gather_->text(text); }

  // An error of the shell itself, one line: to standard error and into the document, or to the sink that takes errors.
  // `interface_name` is what it is about in the document; empty: no interface, or that of the record.
  void complain(std::string_view text, std::string_view interface_name = {});

  // The exit code of the command, for the document.
  void set_exit_code(int code) { exit_code_ = code; }

  // The number of records with each result, for the document.
  void set_summary(const result_summary& summary) {
    if (document_) document_->set_summary(summary);
  }

  // The same as complain(), but without the document.
  void print_complaint(std::string_view text);

  // A sentence for each service and client library that failed the command: to standard error, and into the document.
  // Returns the exit code: that of a failed service, if any, when `result` is kDone. To be called after the
  // command has run.
  int report_failures(int result);

  // Ends the output. Returns 0, or the errno with which writing failed.
  int finish();

  // Shows the text so far, including an incomplete line.
  void flush();

  // While the result lives, the progress line is hidden: the user is asked a question.
  std::optional<progress_line::pause> hold_progress();

  // ---- Interfaces.

  void begin_interface(std::string_view name, if_index_t if_index = 0);
  // Returns true when something failed since begin_interface().
  bool end_interface();
  void note_failure() { failed_ = true; }

  // To be called when the command has ended; one function is kept.
  void at_end(void (*function)()) { at_end_ = function; }
  // A row of a display that is a table, for the document.
  void add_row(std::span<const interface_value> values);

  // All values of the display, of the interface that was begun; nothing when the service failed, which is noted. They
  // are valid until the next call.
  std::optional<std::vector<interface_value>> values() { return answers_.values(); }
  // Whether an interface was begun.
  bool has_shown_interface() const { return has_shown_interface_; }
  bool failed() const { return failed_ || account_.has_new() || (record_ && record_->has_lost()); }

  bool is_structured() const { return document_.has_value(); }

  // Whether marks of lines are shown in colour.
  bool has_colours() const { return colour_.has_value(); }

  // Of the terminal that shows the output; 0: lines may have any width.
  std::size_t columns() const { return settings_.columns; }

  // Whether pipes ask for the cells of lines.
  bool needs_cells() const { return table_.has_value(); }

  // Whether values of the display can mark alarms and warnings.
  bool has_marks() const { return settings_.shown.has_marks; }

  // True when nothing more will be shown: the command was cancelled, the user left the pager, or writing failed.
  bool is_discarding() const;

 private:
  void take_printed() {
    if (__builtin_expect(has_printed_text(), 0)) std::fflush(stream_);
  }
  bool has_printed_text() const;
  void fill_record();
  void wire_chain(line_filters& filters);
  void end_line_begun();
  void record_failures();

  output_settings settings_;
  account account_;
  std::optional<progress_line> progress_;
  std::optional<document> document_;
  interface_answers answers_;

  // The chain, from its end.
  writing_sink write_;
  std::optional<colouring_sink> colour_;
  std::optional<paging_sink> page_;
  std::optional<gate_sink> gate_;
  std::optional<filtering_sink> filter_;
  std::optional<table_sink> table_;
  std::optional<recording_sink> record_;
  std::optional<sanitising_sink> sanitise_;
  std::optional<marking_sink> mark_;
  std::optional<line_gatherer> gather_;

  std::FILE* stream_;
  std::FILE* real_stdout_;
  if_index_t if_index_ = 0;
  bool failed_ = false;
  bool has_shown_interface_ = false;
  int exit_code_ = 0;
  std::vector<std::string> late_complaints_;  // for after the pager
  bool is_finished_ = false;
  void (*at_end_)() = nullptr;
};

}  // namespace host
