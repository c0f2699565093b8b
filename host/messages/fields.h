// Requests and answers that are sequences of fields: numbers, texts and lists, big-endian, one after the other.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "platform/if_index.h"
#include "platform/wire.h"

namespace host {

// Appends fields to a message.
class field_writer {
 public:
  explicit field_writer(std::vector<std::byte>& to) : to_(to) {}

  void u8(uint8 value) { put(&value, sizeof value); }
  void u32(uint32 value) {
    const be32 field = value;
    put(&field, sizeof field);
  }
  void u64(uint64 value) {
    const be64 field = value;
    put(&field, sizeof field);
  }
  void flag(bool value) { u8(value ? 1 : 0); }

  // Its size, then its bytes.
  void text(std::string_view value) {
    u32(static_cast<uint32>(value.size()));
    put(value.data(), value.size());
  }

  // Their number, then each.
  template <typename Texts>
  void texts(const Texts& values) {
    u32(static_cast<uint32>(values.size()));
    for (const std::string_view it : values) text(it);
  }
  void numbers(std::span<const uint32> values) {
    u32(static_cast<uint32>(values.size()));
    for (const uint32 it : values) u32(it);
  }

 private:
  void put(const void* bytes, std::size_t size) {
    const std::size_t at = to_.size();
    to_.resize(at + size);
    if (size != 0) std::memcpy(to_.data() + at, bytes, size);
  }

  std::vector<std::byte>& to_;
};

// The message of the fields that `write` appends to a field_writer.
template <typename Write>
std::vector<std::byte> fields_of(Write write) {
  std::vector<std::byte> message;
  field_writer to(message);
  write(to);
  return message;
}

// Takes fields from the front of a message. The first that is not there fails the reader: from then on all are 0 or
// empty. Texts are views of the message.
class field_reader {
 public:
  explicit field_reader(std::span<const std::byte> message) : left_(message) {}

  uint8 u8() { return take<uint8>(); }
  uint32 u32() { return take<be32>(); }
  uint64 u64() { return take<be64>(); }
  bool flag() { return u8() != 0; }

  std::string_view text() {
    const uint32 size = u32();
    if (size > left_.size()) return fail(), std::string_view();
    const std::string_view value(reinterpret_cast<const char*>(left_.data()), size);
    left_ = left_.subspan(size);
    return value;
  }

  // The number of entries of a list, each of at least so many bytes: a number that the message has no room for fails.
  uint32 count(std::size_t least_bytes) {
    const uint32 number = u32();
    if (number <= left_.size() / least_bytes) return number;
    fail();
    return 0;
  }

  template <typename Text>
  std::vector<Text> texts() {
    std::vector<Text> values(count(sizeof(be32)));
    for (Text& it : values) it = Text(text());
    return values;
  }
  std::vector<uint32> numbers() {
    std::vector<uint32> values(count(sizeof(be32)));
    for (uint32& it : values) it = u32();
    return values;
  }

  bool has_failed() const { return has_failed_; }

  // Whether every field was there, and nothing follows them.
  bool is_complete() const { return !has_failed_ && left_.empty(); }

 private:
  template <typename Field>
  Field take() {
    Field value{};
    if (left_.size() < sizeof value) return fail(), Field{};
    std::memcpy(&value, left_.data(), sizeof value);
    left_ = left_.subspan(sizeof value);
    return value;
  }

  void fail() {
    has_failed_ = true;
    left_ = {};
  }

  std::span<const std::byte> left_;
  bool has_failed_ = false;
};

}  // namespace host
