// The output channel: the print functions of platform/cmd_channel.h.
#include <algorithm>
#include <array>
#include <cstdarg>
#include <optional>
#include <string_view>

#include "base/c_edge.h"
#include "base/printable.h"
#include "base/text.h"
#include "platform/cmd_channel.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"

// One command runs at a time, and this is its handle.
struct cmd_rx_handle_t {};

namespace host {
namespace {

cmd_rx_handle_t the_handle;

// More than one cmd_prt() may bind.
constexpr std::size_t kTupleSlots = 32;

// A placeholder: "%", optional "-", digits, optional "." and digits, "s".
struct placeholder {
  bool left = false;
  std::size_t width = 0;
  std::size_t precision = std::string_view::npos;  // npos: no cut
  std::size_t length = 0;                          // of its text in the format; 0: none
};

std::size_t read_digits(const char*& at) {
  constexpr std::size_t kLargest = 100'000;
  std::size_t number = 0;
  for (; is_digit(*at); ++at) {
    if (number < kLargest) number = number * 10 + static_cast<std::size_t>(*at - '0');
  }
  return number;
}

// `text` points to a "%".
placeholder read_placeholder(const char* text) {
  placeholder found;
  const char* at = text + 1;
  found.left = *at == '-';
  if (found.left) ++at;
  found.width = read_digits(at);
  if (*at == '.' && is_digit(at[1])) {
    ++at;
    found.precision = read_digits(at);
  }
  if (*at == 's') found.length = static_cast<std::size_t>(at + 1 - text);
  return found;
}

// Cuts and pads the cell that starts at `start` of the line.
void fit_cell(std::string& line, std::size_t start, const placeholder& cell) {
  if (cell.width == 0 && cell.precision == std::string_view::npos) return;
  const std::string_view text = std::string_view(line).substr(start);
  std::size_t characters = count_characters(text);
  if (characters > cell.precision) {
    line.resize(start + first_characters(text, cell.precision).size());
    characters = cell.precision;
  }
  if (characters >= cell.width) return;
  const std::size_t missing = cell.width - characters;
  line.insert(cell.left ? line.size() : start, missing, ' ');
}

// An untagged text printed by a bare %s may be a complete line. Its newline ends the line; other newlines are escaped
// like every byte that is not printable.
bool print_whole_line(line_gatherer& line, const placeholder& cell, const cmd_tuple_t* tuple) {
  if (tuple == nullptr || tuple->id != 0 || tuple->value == nullptr || cell.length != 2) return false;
  const std::string_view text = static_cast<const char*>(tuple->value);
  if (!text.ends_with('\n')) return false;
  append_printable(line.current(), text.substr(0, text.size() - 1));
  line.end_line();
  return true;
}

// Marks the text of the cell that starts at `start`, without the blanks that it is padded with.
void add_mark(line_gatherer& line, std::size_t start, severity what) {
  const std::string& text = line.current();
  const std::size_t begin = text.find_first_not_of(' ', start);
  if (begin != std::string::npos) line.add_mark({begin, text.find_last_not_of(' ') + 1, what});
}

void print_cell(command_output& output, line_gatherer& gathered, const placeholder& cell, const cmd_tuple_t* tuple) {
  if (print_whole_line(gathered, cell, tuple)) return;
  std::string& line = gathered.current();
  const std::size_t start = line.size();
  std::optional<severity> mark;
  if (tuple != nullptr && output.is_unknown(*tuple)) {
    line += "--";
    output.bind_unknown(*tuple);
  } else if (tuple != nullptr) {
    append_tuple_text(line, *tuple, gathered.has_short_names(), cell.precision);
    output.bind(*tuple);
    if (output.has_marks()) mark = severity_of_mark(*tuple);
  }
  fit_cell(line, start, cell);
  if (output.needs_cells()) gathered.add_cell({start, line.size(), tuple == nullptr ? 0 : tuple->id});
  if (mark) add_mark(gathered, start, *mark);
}

void print(command_output& output, const char* format, std::va_list tuples) {
  line_gatherer& line = output.line();  // after earlier text
  while (*format != '\0') {
    line.set_of_channel();
    const char* literal_end = format;
    while (*literal_end != '\0' && *literal_end != '%' && *literal_end != '\n') ++literal_end;
    line.current().append(format, literal_end);
    format = literal_end;
    if (*format == '\0') return;
    if (*format == '\n') {
      line.end_line();
      ++format;
      continue;
    }
    const placeholder cell = read_placeholder(format);
    if (cell.length > 0)
      print_cell(output, line, cell, va_arg(tuples, const cmd_tuple_t*));
    else
      line.current() += '%';
    format += std::max<std::size_t>(cell.length, 1);
  }
}

command_output* output_of(const cmd_rx_handle_t* handle) {
  return handle == &the_handle ? command_output::running() : nullptr;
}

// Prints; a failure to print is a failure of the command.
template <typename Print>
void print_or_note_failure(command_output& output, Print print_all) {
  const bool is_printed = no_throw(false, [&] {
    print_all();
    return true;
  });
  if (!is_printed) output.note_failure();
}

}  // namespace
}  // namespace host

using host::command_output;

cmd_rx_handle_t* cmd_paraminfo_to_rxhandle(paraminfo_t* param) {
  return param == nullptr || command_output::running() == nullptr ? nullptr : &host::the_handle;
}

cmd_tuple_t* cmd_tuple(uint32 tuple_value, const void* value) {
  static std::array<cmd_tuple_t, host::kTupleSlots> slots;
  static std::size_t next = 0;
  cmd_tuple_t& slot = slots[next++ % slots.size()];
  slot = {tuple_value, value};
  return &slot;
}

void cmd_prt(cmd_rx_handle_t* rx_handle, const char* format, ...) {
  command_output* const output = host::output_of(rx_handle);
  if (output == nullptr || format == nullptr) return;
  std::va_list tuples;
  va_start(tuples, format);
  host::print_or_note_failure(*output, [&] { host::print(*output, format, tuples); });
  va_end(tuples);
}

void cmd_print_short(cmd_rx_handle_t* rx_handle) {
  if (command_output* const output = host::output_of(rx_handle)) output->line().set_short_names();
}

// Lines are shown by the command's output; only text in the library's own buffer is flushed here.
void cmd_prt_send(cmd_rx_handle_t* rx_handle) {
  if (command_output* const output = host::output_of(rx_handle))
    host::print_or_note_failure(*output, [output] { output->line(); });
}

void cmd_rsp_send_nok(cmd_rx_handle_t* rx_handle, uint32, const char* text) {
  command_output* const output = host::output_of(rx_handle);
  if (output == nullptr) return;
  output->note_failure();
  if (text == nullptr) return;
  host::print_or_note_failure(*output, [&] {
    output->line().set_failed();
    output->text(text);
  });
}
