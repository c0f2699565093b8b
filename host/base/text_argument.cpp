#include "base/text_argument.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>

#include "base/printable.h"
#include "base/text.h"
#include "base/tokens.h"

namespace host {
namespace {

// Bytes with an escape of one letter; all others that are not printable are \xHH.
struct escaped_byte {
  char byte;
  char letter;
};
constexpr escaped_byte kEscapes[] = {{'"', '"'}, {'\\', '\\'}, {'\n', 'n'}, {'\t', 't'}, {'\r', 'r'}};

std::string escapes() {
  std::string text;
  for (const escaped_byte& known : kEscapes) text += std::string("\\") + known.letter + ", ";
  return text + "\\xHH";
}

// Appends the byte of an escape, which begins after its backslash; returns how many characters it has, 0 when it is
// none.
std::size_t read_escape(std::string_view escape, std::string& to) {
  if (escape.empty()) return 0;
  const auto* const known = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                         [&](const escaped_byte& it) { return it.letter == escape.front(); });
  if (known != std::end(kEscapes)) {
    to += known->byte;
    return 1;
  }
  constexpr std::size_t kLength = 3;  // of "xHH"
  unsigned byte = 0;
  const char* const end = escape.data() + kLength;
  if (escape.front() != 'x' || escape.size() < kLength) return 0;
  const auto read = std::from_chars(escape.data() + 1, end, byte, 16);
  if (read.ec != std::errc{} || read.ptr != end || byte == 0) return 0;
  to += static_cast<char>(byte);
  return kLength;
}

}  // namespace

std::string text_argument(std::string_view text) {
  std::string shown;
  append_printable(shown, text);
  const bool is_plain = !text.empty() && shown == text && text.find_first_of("|\"'?\\") == std::string_view::npos &&
                        trim(text).size() == text.size();
  if (is_plain) return std::string(text);
  std::string written = "\"";
  for (const char byte : text) {
    const auto* const escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                            [byte](const escaped_byte& known) { return known.byte == byte; });
    if (escape != std::end(kEscapes)) {
      written += '\\';
      written += escape->letter;
    } else {
      written += byte;
    }
  }
  written += '"';
  shown.clear();  // the escapes of what is not printable are \xHH
  append_printable(shown, written);
  return shown;
}

std::optional<std::string> read_text_argument(std::string_view written, std::string& error) {
  const char quote = written.empty() ? '\0' : written.front();
  if (quote != '"' && quote != '\'') return std::string(written);
  if (quote == '\'') {
    if (written.size() >= 2 && written.back() == quote) return std::string(unquote(written));
    error = "the text that begins with ' has no ' at its end.";
    return std::nullopt;
  }
  std::string text;
  for (std::size_t i = 1; i < written.size(); ++i) {
    if (written[i] == '"') {
      if (i + 1 == written.size()) return text;
      error = fmt::format("unexpected '{}' after the text in quotes.", written.substr(i + 1));
      return std::nullopt;
    }
    if (written[i] != '\\') {
      text += written[i];
      continue;
    }
    const std::string_view escape = written.substr(i + 1);
    const std::size_t length = read_escape(escape, text);
    if (length == 0) {
      error = fmt::format("'\\{}' is not an escape: expected one of {}.", escape.substr(0, 1), escapes());
      return std::nullopt;
    }
    i += length;
  }
  error = "the text that begins with \" has no \" at its end.";
  return std::nullopt;
}

}  // namespace host
