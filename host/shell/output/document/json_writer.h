// Writes JSON, value by value, at the end of a text.
//
// Commas follow from the order of the calls; the caller pairs begins and ends, and gives each member of an object a
// key. Out of memory throws std::bad_alloc; the text then ends with a complete token.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace host {

class json_writer {
 public:
  // `indent`: blanks for each level; 0 writes all on one line.
  explicit json_writer(std::string& to, unsigned indent = 0) : to_(to), indent_(indent) {}

  void begin_object() { begin('{'); }
  void end_object() { end('}'); }
  void begin_array() { begin('['); }
  void end_array() { end(']'); }

  void key(std::string_view name);
  // A key of letters, digits and underscores: nothing in it needs an escape.
  void plain_key(std::string_view name);

  void null() { token("null"); }
  void boolean(bool value) { token(value ? "true" : "false"); }
  template <std::integral Number>
  void number(Number value) {
    if constexpr (std::signed_integral<Number>)
      signed_number(value);
    else
      unsigned_number(value);
  }
  // The shortest digits that read as this number; not finite: null.
  void real(double value);
  // Digits as they are: a number in the syntax of JSON.
  void digits(std::string_view text) { token(text); }
  // UTF-8. Control characters, quotes and backslashes are escaped.
  void text(std::string_view value);

 private:
  void begin(char bracket);
  void end(char bracket);
  void token(std::string_view text);
  void signed_number(std::int64_t value);
  void unsigned_number(std::uint64_t value);
  void before_value();
  void new_line();
  void append_quoted(std::string_view text);

  std::string& to_;
  unsigned indent_;
  unsigned depth_ = 0;
  bool is_first_ = true;  // the innermost object or array is empty
  bool has_key_ = false;  // the next value belongs to it
};

// A number in the syntax of JSON, as digits() takes it: "-2.97", "0", "1e9"; not "+1", ".5", "01".
bool is_json_number(std::string_view text);

}  // namespace host
