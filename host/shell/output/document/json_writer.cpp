#include "shell/output/document/json_writer.h"

#include <charconv>
#include <cmath>

#include "base/text.h"

namespace host {
namespace {

// Removes leading digits; false when there are none.
bool take_digits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && is_digit(text[count])) ++count;
  text.remove_prefix(count);
  return count > 0;
}

}  // namespace

void json_writer::new_line() {
  if (indent_ == 0) return;
  to_ += '\n';
  to_.append(std::size_t{depth_} * indent_, ' ');
}

void json_writer::before_value() {
  if (has_key_) {
    has_key_ = false;
    return;
  }
  if (!is_first_) to_ += ',';
  is_first_ = false;
  if (depth_ > 0) new_line();
}

void json_writer::begin(char bracket) {
  before_value();
  to_ += bracket;
  ++depth_;
  is_first_ = true;
}

void json_writer::end(char bracket) {
  --depth_;
  if (!is_first_) new_line();
  to_ += bracket;
  is_first_ = false;
}

void json_writer::key(std::string_view name) {
  before_value();
  append_quoted(name);
  to_ += indent_ == 0 ? ":" : ": ";
  has_key_ = true;
}

void json_writer::plain_key(std::string_view name) {
  before_value();
  to_ += '"';
  to_ += name;
  to_ += indent_ == 0 ? "\":" : "\": ";
  has_key_ = true;
}

void json_writer::token(std::string_view text) {
  before_value();
  to_ += text;
}

void json_writer::text(std::string_view value) {
  before_value();
  append_quoted(value);
}

void json_writer::signed_number(std::int64_t value) {
  char digits[24];
  token({digits, std::to_chars(digits, digits + sizeof digits, value).ptr});
}

void json_writer::unsigned_number(std::uint64_t value) {
  char digits[24];
  token({digits, std::to_chars(digits, digits + sizeof digits, value).ptr});
}

void json_writer::real(double value) {
  if (!std::isfinite(value)) return null();
  char digits[32];
  token({digits, std::to_chars(digits, digits + sizeof digits, value).ptr});
}

void json_writer::append_quoted(std::string_view text) {
  constexpr char kHexDigits[] = "0123456789abcdef";
  to_ += '"';
  std::size_t done = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte >= 0x20 && byte != 0x7F && byte != '"' && byte != '\\') continue;
    to_.append(text, done, i - done);
    done = i + 1;
    switch (byte) {
      case '"': to_ += "\\\""; break;
      case '\\': to_ += "\\\\"; break;
      case '\n': to_ += "\\n"; break;
      case '\t': to_ += "\\t"; break;
      default:
        to_ += "\\u00";
        to_ += kHexDigits[byte >> 4];
        to_ += kHexDigits[byte & 0xF];
    }
  }
  to_.append(text, done);
  to_ += '"';
}

bool is_json_number(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  const bool begins_with_zero = text.starts_with('0');
  const std::size_t before = text.size();
  if (!take_digits(text) || (begins_with_zero && before - text.size() > 1)) return false;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    if (!take_digits(text)) return false;
  }
  if (text.starts_with('e') || text.starts_with('E')) {
    text.remove_prefix(1);
    if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
    if (!take_digits(text)) return false;
  }
  return text.empty();
}

}  // namespace host
