#include "shell/output/command_output.h"

#include <stdio_ext.h>

#include "base/c_edge.h"
#include "base/printable.h"
#include "messages/calls/diagnostic_marks.h"
#include "shell/output/exit_codes.h"
#include "shell/output/rendering.h"
#include "shell/output/terminal/print_error.h"

namespace host {
namespace {

command_output* the_running_output = nullptr;

// Lost text is a failure of the command. The stream stays usable for later commands.
ssize_t write_printed(void*, const char* data, std::size_t size) {
  if (the_running_output == nullptr) return static_cast<ssize_t>(size);
  const bool is_taken = no_throw(false, [&] {
    the_running_output->text({data, size});
    return true;
  });
  if (!is_taken) the_running_output->note_failure();
  return static_cast<ssize_t>(size);
}

// The stream that replaces stdout; made once.
std::FILE* output_stream() {
  static std::FILE* const stream = [] {
    std::FILE* const made = fopencookie(nullptr, "w", {nullptr, write_printed, nullptr, nullptr});
    if (made != nullptr) setvbuf(made, nullptr, _IOFBF, 8192);
    return made;
  }();
  return stream;
}

}  // namespace

command_output::command_output(const output_settings& settings, line_filters& filters)
    : settings_(settings),
      answers_(settings.shown.has_values ? properties_of(settings.shown) : std::vector<property>(),
               settings.hides_traffic),
      write_(block_writer(settings.descriptor, settings.sink, settings.is_cancelled), settings.to_terminal),
      stream_(output_stream()),
      real_stdout_(stdout) {
  wire_chain(filters);
  std::fflush(stdout);
  if (stream_ != nullptr) stdout = stream_;
  the_running_output = this;
}

// Colours have no width: they come after the pager.
void command_output::wire_chain(line_filters& filters) {
  line_sink* next = &write_;
  if (settings_.coloured && has_marks()) next = &colour_.emplace(*next);
  if (settings_.paged) next = &page_.emplace(settings_.descriptor, settings_.lines, *next);
  if (page_ && !settings_.pager.empty())
    page_->use(settings_.pager, write_, [this] {
      if (progress_) progress_->silence();
    });
  if (settings_.to_terminal) progress_.emplace(settings_.descriptor);
  next = &gate_.emplace(settings_.is_cancelled, progress_ ? &*progress_ : nullptr, *next);
  next = &filter_.emplace(filters, *next);
  if (filters.need_tables() && !settings_.structured) next = &table_.emplace(*next);
  if (settings_.structured)
    next = &record_.emplace(document_.emplace(settings_.shown, settings_.command),
                            settings_.shown.has_values || settings_.shown.repeats, *next);
  next = &sanitise_.emplace(*next);
  forget_marks();
  if (colour_) next = &mark_.emplace(*next);
  gather_.emplace(*next);
}

command_output::~command_output() { finish(); }

int command_output::finish() {
  if (is_finished_) return write_.error();
  is_finished_ = true;
  end_line_begun();
  stdout = real_stdout_;
  if (at_end_ != nullptr) at_end_();
  the_running_output = nullptr;
  if (record_) record_->set_exit_code(exit_code_);
  gather_->end();
  progress_.reset();
  for (const std::string& text : late_complaints_) print_error(text);
  return write_.error();
}

command_output* command_output::running() { return the_running_output; }

bool command_output::has_printed_text() const { return stream_ != nullptr && __fpending(stream_) > 0; }

void command_output::end_line_begun() {
  if (!line().current().empty()) gather_->end_line();
}

void command_output::bind(const cmd_tuple_t& tuple) {
  if (settings_.on_value) settings_.on_value(if_index_, tuple);
  if (document_ && document_->bind(tuple)) gather_->set_bound();
}

bool command_output::is_unknown(const cmd_tuple_t& tuple) {
  const bool is_asked = !document_ || settings_.on_value;  // a document asks for all values at once
  const binding* const bound = is_asked ? find_binding(tuple.id) : nullptr;
  return bound != nullptr && answers_.is_unknown(field_of(*bound).value);
}

void command_output::bind_unknown(const cmd_tuple_t& tuple) {
  if (settings_.on_value) settings_.on_value(if_index_, {tuple.id, nullptr});
  if (document_ && document_->bind_unknown(tuple)) gather_->set_bound();
}

void command_output::complain(std::string_view text, std::string_view interface_name) {
  if (document_) document_->add_message(text, importance::error, interface_name);
  print_complaint(text);
}

void command_output::print_complaint(std::string_view text) {
  if (page_ && page_->is_in_program() && !is_finished_) return void(late_complaints_.emplace_back(text));
  flush();
  if (settings_.on_error) return settings_.on_error(text);
  if (!settings_.sinks_errors || document_) return print_error(text);
  std::string safe;
  append_printable(safe, text);
  gate_->take({safe});
}

void command_output::flush() { line().flush(); }

std::optional<progress_line::pause> command_output::hold_progress() { return gate_->hold_progress(); }

void command_output::begin_interface(std::string_view name, if_index_t if_index) {
  end_line_begun();
  failed_ = false;
  has_shown_interface_ = true;
  record_failures();
  filter_->forget();
  if (record_) record_->forget();
  if_index_ = if_index;
  answers_.begin(if_index);
  if (document_) document_->begin_record(name);
}

bool command_output::end_interface() {
  end_line_begun();
  failed_ = failed();
  record_failures();
  std::optional<traffic_rates> rates;
  if (settings_.traffic != nullptr && !failed_) rates = settings_.traffic->look_at(if_index_, filter_->has_passed());
  if (document_) {
    fill_record();
    document_->end_record(settings_.traffic != nullptr ? &rates : nullptr);
    record_->hand_on();
  }
  return failed_;
}

void command_output::add_row(std::span<const interface_value> values) {
  if (!document_) return;
  document_->add_row(values);
  record_->hand_on();
}

// Values that no line bound come from the service of values, if it answered all requests for the interface.
void command_output::fill_record() {
  if (!settings_.shown.has_values || if_index_ == 0 || is_discarding()) return;
  if (failed_) return document_->fill_failed();
  if (!document_->has_bound_record()) return;
  if (const auto values = answers_.values()) return document_->fill(*values);
  document_->fill_failed();
  failed_ = true;
  record_failures();
}

// Those of an interface belong to its record.
void command_output::record_failures() {
  account_.take_new([this](std::string_view sentence) {
    if (document_ && !document_->add_message(sentence, importance::error)) failed_ = true;
  });
}

int command_output::report_failures(int result) {
  record_failures();
  account_.take_all([this](std::string_view sentence) { print_complaint(sentence); });
  if (account_.has_lost_switch()) return kServiceFailed;
  if (account_.has_missing_right()) return kNotPermitted;
  return result == kDone && !account_.is_empty() ? int{kServiceFailed} : result;
}

bool command_output::is_discarding() const {
  return (page_ && page_->has_left()) || write_.error() != 0 || gate_->is_shut();
}

}  // namespace host
