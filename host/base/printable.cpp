#include "base/printable.h"

#include <algorithm>
#include <cstring>

#include "base/digits.h"
#include "platform/types.h"

namespace host {
namespace {

constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7F;

unsigned char byte_at(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

bool is_continuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Bytes of a UTF-8 sequence by its first byte; 0 for a byte that starts none.
std::size_t sequence_length(unsigned char first) {
  if (first < 0x80) return 1;
  if (first < 0xC2) return 0;
  if (first < 0xE0) return 2;
  if (first < 0xF0) return 3;
  return first < 0xF5 ? 4 : 0;
}

// True when the code point may not be encoded with so many bytes, or not at all, or is an upper control.
bool is_refused(uint32 code_point, std::size_t length) {
  constexpr uint32 kSmallest[] = {0, 0, 0xA0, 0x800, 0x10000};
  return code_point < kSmallest[length] || code_point > 0x10FFFF || (code_point >= 0xD800 && code_point <= 0xDFFF);
}

// Bytes of the printable character at the start of `text`; 0 when there is none.
std::size_t printable_length(std::string_view text) {
  const unsigned char first = byte_at(text, 0);
  const std::size_t length = sequence_length(first);
  if (length == 1) return first >= kFirstPrintable && first != kDelete ? 1 : 0;
  if (length == 0 || length > text.size()) return 0;
  uint32 code_point = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if (!is_continuation(byte_at(text, i))) return 0;
    code_point = code_point << 6 | (byte_at(text, i) & 0x3FU);
  }
  return is_refused(code_point, length) ? 0 : length;
}

// Eight bytes at once: whether none of them is 0x80 or above, below the first printable character, or the delete
// character. Subtracting it from each byte borrows from the next one only where a byte is smaller.
bool is_plain_word(const char* bytes) {
  constexpr uint64 kEach = 0x0101010101010101;
  constexpr uint64 kHighest = kEach << 7;
  uint64 word = 0;
  std::memcpy(&word, bytes, sizeof word);
  const uint64 is_delete = word ^ kEach * kDelete;
  return ((word | (word - kEach * kFirstPrintable) | (is_delete - kEach)) & kHighest) == 0;
}

void append_escape(std::string& to, unsigned char byte) {
  to += "\\x";
  append_hex(to, byte);
}

}  // namespace

bool is_plain_ascii(std::string_view text) {
  const char* at = text.data();
  std::size_t left = text.size();
  for (; left >= sizeof(uint64); at += sizeof(uint64), left -= sizeof(uint64))
    if (!is_plain_word(at)) return false;
  if (left != 0 && text.size() >= sizeof(uint64)) return is_plain_word(at + left - sizeof(uint64));
  return std::all_of(at, at + left, [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= kFirstPrintable && byte < kDelete;
  });
}

void append_printable(std::string& to, std::string_view text, std::string_view but) {
  if (is_plain_ascii(text)) {
    to += text;
    return;
  }
  while (!text.empty()) {
    std::size_t length = but.find(text[0]) != std::string_view::npos ? 1 : printable_length(text);
    if (length > 0) {
      to += text.substr(0, length);
    } else {
      append_escape(to, byte_at(text, 0));
      length = 1;
    }
    text.remove_prefix(length);
  }
}

std::size_t count_characters(std::string_view text) {
  if (is_plain_ascii(text)) return text.size();
  std::size_t count = 0;
  for (const char character : text) count += !is_continuation(static_cast<unsigned char>(character));
  return count;
}

std::string_view first_characters(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  while (end < text.size() && (count > 0 || is_continuation(byte_at(text, end)))) {
    if (!is_continuation(byte_at(text, end))) --count;
    ++end;
  }
  // The loop stops before the first character too many, after the continuation bytes of the last one.
  return text.substr(0, end);
}

}  // namespace host
