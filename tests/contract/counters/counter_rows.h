// Lists of counters as the contract words them: label, tuple id, and where in the wire record the counter lies.
#pragma once

#include <cstring>
#include <initializer_list>
#include <span>
#include <string>

#include "support/recording_platform.h"

namespace pmcli_test {

// A big-endian counter: bytes from the start of its record, and its width in bytes; 0 is none.
struct wire_counter {
  std::size_t offset = 0;
  std::size_t width = 8;
};

// A line shows one counter, or a sum of up to three.
struct counter_line {
  const char* label;
  uint32 tuple;
  wire_counter counters[3];
  std::size_t num_counters;

  constexpr counter_line(const char* text, uint32 id, std::initializer_list<wire_counter> sources)
      : label(text), tuple(id), counters{}, num_counters(sources.size()) {
    std::size_t i = 0;
    for (const wire_counter& source : sources) counters[i++] = source;
  }

  std::span<const wire_counter> sources() const { return {counters, num_counters}; }
};

template <typename Record>
void put_counter(Record& record, const wire_counter& counter, uint64 value) {
  auto* const bytes = reinterpret_cast<uint8*>(&record) + counter.offset;
  for (std::size_t i = counter.width; i-- > 0; value >>= 8) bytes[i] = static_cast<uint8>(value);
}

// A value that no other counter of the record has, and that fits its width.
inline uint64 value_at(const wire_counter& counter) {
  return (counter.width == 8 ? 1'000'000'000'000 : 3'000'000'000) + counter.offset;
}

inline uint64 value_of(const counter_line& line) {
  uint64 sum = 0;
  for (const wire_counter& counter : line.sources()) sum += value_at(counter);
  return sum;
}

// Gives every counter of these lines its value.
template <typename Record>
void fill(Record& record, std::span<const counter_line> lines) {
  for (const counter_line& line : lines)
    for (const wire_counter& counter : line.sources()) put_counter(record, counter, value_at(counter));
}

inline std::string right_aligned(std::string text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

// "  LABEL (35 columns, cut)VALUE (20 columns, right)".
inline std::string nonzero_line(std::string label, uint64 value) {
  label.resize(35, ' ');
  return "  " + label + right_aligned(std::to_string(value), 20) + "\n";
}

// "  NN. LABEL (34 columns, right) = VALUE".
inline std::string numbered_line(int number, const std::string& label, uint64 value) {
  return "  " + right_aligned(std::to_string(number), 2) + ". " + right_aligned(label, 34) + " = " +
         std::to_string(value) + "\n";
}

inline std::string nonzero_lines(std::span<const counter_line> lines) {
  std::string text;
  for (const counter_line& line : lines) text += nonzero_line(line.label, value_of(line));
  return text;
}

inline std::string numbered_lines(int number, std::span<const counter_line> lines) {
  std::string text;
  for (const counter_line& line : lines) text += numbered_line(number++, line.label, value_of(line));
  return text;
}

// What these lines bind.
inline void append_tuples(Tuples& tuples, std::span<const counter_line> lines) {
  for (const counter_line& line : lines) tuples.push_back({line.tuple, value_of(line)});
}

}  // namespace pmcli_test
