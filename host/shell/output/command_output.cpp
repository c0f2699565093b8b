#include "shell/output/command_output.h"

#include <stdio_ext.h>

#include <algorithm>
#include <iterator>

#include "base/c_edge.h"
#include "shell/exit_codes.h"
#include "shell/output/coloured_marks.h"
#include "shell/output/failed_ranges.h"
#include "shell/output/printable.h"
#include "shell/output/rendering.h"
#include "shell/print_error.h"
#include "switch/source.h"

namespace host {
namespace {

command_output* the_running_output = nullptr;

// Text that is lost is a failure of the command. The stream itself goes on: it also serves the commands that follow.
ssize_t write_printed(void*, const char* data, std::size_t size) {
  if (the_running_output == nullptr) return static_cast<ssize_t>(size);
  const bool is_taken = no_throw(false, [&] {
    the_running_output->text({data, size});
    return true;
  });
  if (!is_taken) the_running_output->note_failure();
  return static_cast<ssize_t>(size);
}

// The stream that stands in for stdout; made once.
std::FILE* stand_in() {
  static std::FILE* const stream = [] {
    std::FILE* const made = fopencookie(nullptr, "w", {nullptr, write_printed, nullptr, nullptr});
    if (made != nullptr) setvbuf(made, nullptr, _IOFBF, 8192);
    return made;
  }();
  return stream;
}

// A longer one is broken: a handler that prints without end must not fill the memory.
constexpr std::size_t kLongestLine = 1 << 20;

}  // namespace

command_output::command_output(const output_settings& settings, line_filters& filters)
    : settings_(settings),
      filters_(filters),
      writer_(settings.descriptor, settings.sink, settings.is_cancelled),
      stream_(stand_in()),
      real_stdout_(stdout) {
  if (settings.paged) pager_.emplace(settings.descriptor);
  if (settings.to_terminal) progress_.emplace(settings.descriptor);
  if (settings.structured) document_.emplace(settings.shown, settings.command);
  std::fflush(stdout);
  if (stream_ != nullptr) stdout = stream_;
  the_running_output = this;
}

command_output::~command_output() { finish(); }

int command_output::finish() {
  if (is_finished_) return writer_.error();
  is_finished_ = true;
  take_printed();
  if (!line_.empty()) end_line();
  stdout = real_stdout_;
  release_failed_ranges();
  the_running_output = nullptr;
  if (document_) {
    document_->end();
    show_ready_document();
  }
  filters_.finish([this](std::string_view line) { show(line); });
  progress_.reset();
  writer_.flush();
  return writer_.error();
}

command_output* command_output::running() { return the_running_output; }

bool command_output::has_printed_text() const { return stream_ != nullptr && __fpending(stream_) > 0; }

std::string& command_output::line() {
  take_printed();
  if (line_.size() > kLongestLine) end_line();
  return line_;
}

void command_output::end_line() {
  deliver(line_);
  line_.clear();
  line_is_bound_ = false;
  short_names = false;
  is_of_channel = false;
}

void command_output::bind(const cmd_tuple_t& tuple) {
  if (settings_.on_value) settings_.on_value(if_index_, tuple);
  if (document_ && document_->bind(tuple)) line_is_bound_ = true;
}

bool command_output::is_unknown(const cmd_tuple_t& tuple) const {
  if (if_index_ == 0 || the_source().knows_all_fields()) return false;
  const field* const meaning = find_field(tuple.id);
  return meaning != nullptr && is_perhaps_unknown(*meaning) && the_source().is_unknown(if_index_, meaning->name);
}

// Asked once for each field: most are always known.
bool command_output::is_perhaps_unknown(const field& meaning) const {
  enum : uint8 { kNotAsked, kKnown, kPerhapsUnknown };
  perhaps_unknown_.resize(schema().size(), kNotAsked);
  uint8& answer = perhaps_unknown_[static_cast<std::size_t>(&meaning - schema().data())];
  if (answer == kNotAsked) answer = the_source().is_unknown(0, meaning.name) ? kPerhapsUnknown : kKnown;
  return answer == kPerhapsUnknown;
}

void command_output::bind_unknown(const cmd_tuple_t& tuple) {
  if (settings_.on_value) settings_.on_value(if_index_, {tuple.id, nullptr});
  if (document_ && document_->bind_unknown(tuple)) line_is_bound_ = true;
}

void command_output::text(std::string_view text) {
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    line_ += text.substr(0, end);
    end_line();
    text.remove_prefix(end + 1);
  }
  line_ += text;
  if (line_.size() > kLongestLine) end_line();
}

// A complete line, without its newline.
void command_output::deliver(std::string_view line) {
  if (is_discarding()) return;
  if (!is_plain_ascii(line)) {
    safe_line_.clear();
    append_printable(safe_line_, line, "\t");
    line = safe_line_;
  }
  if (!document_) return filter(line);
  if (line_is_bound_ || line.find_first_not_of(" \t") == std::string_view::npos) return;
  const bool is_decoration = settings_.shown.has_marks && is_of_channel;
  if (!is_decoration && !document_->add_message(line)) failed_ = true;
}

void command_output::filter(std::string_view line) {
  if (!filters_.empty() && !filters_.pass(line)) return;
  interface_is_shown_ = true;
  show(line);
}

void command_output::show(std::string_view line) {
  if (is_discarding()) return;
  const auto quiet = hold_progress();
  if (pager_ && !pager_->make_room(line)) {
    left_pager_ = true;
    return;
  }
  if (settings_.coloured && settings_.shown.has_marks)
    writer_.line(with_coloured_mark(line));
  else
    writer_.line(line);
  if (settings_.to_terminal) writer_.flush();
}

void command_output::show_ready_document() {
  std::string_view text = document_->ready();
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    filter(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  document_->ready().erase(0, document_->ready().size() - text.size());
}

void command_output::complain(std::string_view text) {
  if (document_) {
    document_->add_message(text);
    return;
  }
  print_complaint(text);
}

void command_output::print_complaint(std::string_view text) {
  flush();
  if (!settings_.sinks_errors || document_) return print_error(text);
  safe_line_.clear();
  append_printable(safe_line_, text);
  show(safe_line_);
}

void command_output::flush() {
  take_printed();
  const auto quiet = hold_progress();
  if (!line_.empty() && !document_ && filters_.empty() && !is_discarding()) {
    safe_line_.clear();
    append_printable(safe_line_, line_, "\t");
    writer_.text(safe_line_);
    line_.clear();
  }
  writer_.flush();
}

std::optional<progress_line::pause> command_output::hold_progress() {
  return progress_ ? std::optional<progress_line::pause>(std::in_place, *progress_) : std::nullopt;
}

void command_output::begin_interface(std::string_view name, if_index_t if_index) {
  take_printed();
  if (!line_.empty()) end_line();
  failed_ = false;
  record_failures();
  interface_is_shown_ = false;
  if_index_ = if_index;
  if (document_) document_->begin_record(name);
}

bool command_output::end_interface() {
  take_printed();
  if (!line_.empty()) end_line();
  if (account_.has_new()) failed_ = true;
  record_failures();
  std::optional<traffic_rates> rates;
  if (settings_.traffic != nullptr && !failed_) rates = settings_.traffic->look_at(if_index_, interface_is_shown_);
  if (document_) {
    document_->end_record(settings_.traffic != nullptr ? &rates : nullptr);
    show_ready_document();
  }
  return failed_;
}

// Those of an interface belong to its record.
void command_output::record_failures() {
  account_.take_new([this](std::string_view sentence) {
    if (document_ && !document_->add_message(sentence)) failed_ = true;
  });
}

int command_output::report_failures(int result) {
  record_failures();
  account_.take_all([this](std::string_view sentence) { print_complaint(sentence); });
  return result == kDone && !account_.is_empty() ? int{kServiceFailed} : result;
}

bool command_output::is_discarding() const {
  return left_pager_ || writer_.error() != 0 || (settings_.is_cancelled != nullptr && settings_.is_cancelled());
}

}  // namespace host
