#include "messages/interface_values.h"

#include <algorithm>
#include <cstring>

namespace host {
namespace {

template <typename Record>
Record read_at(std::span<const std::byte> bytes, std::size_t offset) {
  Record record{};
  if (offset + sizeof record <= bytes.size()) std::memcpy(&record, bytes.data() + offset, sizeof record);
  return record;
}

// Bytes of an entry of a list; 0 for a kind that is none.
std::size_t entry_size(value_kind kind) {
  switch (kind) {
    case value_kind::interfaces:
    case value_kind::numbers: return sizeof(be32);
    case value_kind::vlans:
    case value_kind::membership: return sizeof(be16);
    default: return 0;
  }
}

std::size_t list_offset(value_kind kind) { return kind == value_kind::membership ? sizeof(vlan_membership) : 0; }

// Whether a value of this kind may have so many bytes.
bool is_size_of(value_kind kind, std::size_t size) {
  switch (kind) {
    case value_kind::absent: return size == 1;
    case value_kind::number: return size == sizeof(be64);
    case value_kind::mac: return size == 6;
    case value_kind::ipv6: return size == 16;
    case value_kind::ipv4:
    case value_kind::interface:
    case value_kind::time: return size == sizeof(be32);
    case value_kind::text:
    case value_kind::decimal:
    case value_kind::map: return true;
    case value_kind::interfaces:
    case value_kind::numbers: return size % sizeof(be32) == 0;
    case value_kind::lanes: return size % sizeof(lane_value) == 0;
    case value_kind::vlans: return size % (2 * sizeof(be16)) == 0;
    case value_kind::membership:
      return size >= sizeof(vlan_membership) && (size - sizeof(vlan_membership)) % (2 * sizeof(be16)) == 0;
  }
  return false;
}

template <typename Visit>
void for_each_run(std::span<const uint16> ascending, Visit visit) {
  for (std::size_t first = 0; first < ascending.size();) {
    std::size_t last = first;
    while (last + 1 < ascending.size() && ascending[last + 1] == ascending[last] + 1) ++last;
    visit(ascending[first], ascending[last]);
    first = last + 1;
  }
}

std::size_t runs_size(std::span<const uint16> ascending) {
  std::size_t size = 0;
  for_each_run(ascending, [&size](uint16, uint16) { size += 2 * sizeof(be16); });
  return size;
}

template <typename Wire, typename Value>
void write_each(std::byte* to, std::span<const Value> values) {
  for (const Wire number : values) {
    std::memcpy(to, &number, sizeof number);
    to += sizeof number;
  }
}

void write_runs(std::byte* to, std::span<const uint16> ascending) {
  for_each_run(ascending, [&to](be16 first, be16 last) {
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + sizeof first, &last, sizeof last);
    to += sizeof first + sizeof last;
  });
}

// False when the bytes are not those of whole values.
template <typename Visit>
bool read_each(std::span<const std::byte> bytes, const Visit& visit) {
  while (!bytes.empty()) {
    if (bytes.size() < sizeof(value_head)) return false;
    const auto head = read_at<value_head>(bytes, 0);
    bytes = bytes.subspan(sizeof head);
    const std::size_t size = head.size;
    if (size > bytes.size() || !is_size_of(head.kind, size)) return false;
    visit(interface_value{static_cast<property>(uint16{head.of}), head.kind, bytes.first(size)});
    bytes = bytes.subspan(size);
  }
  return true;
}

}  // namespace

absence interface_value::why_absent() const {
  return kind == value_kind::absent && !bytes.empty() ? static_cast<absence>(bytes[0]) : absence::none;
}

uint64 interface_value::number() const {
  if (kind == value_kind::number) return read_at<be64>(bytes, 0);
  const bool is_32_bits = kind == value_kind::interface || kind == value_kind::time;
  return is_32_bits ? uint32{read_at<be32>(bytes, 0)} : 0;
}

std::string_view interface_value::text() const {
  if (kind != value_kind::text && kind != value_kind::decimal) return {};
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::size_t interface_value::num_entries() const {
  const std::size_t size = entry_size(kind);
  return size == 0 ? 0 : (bytes.size() - list_offset(kind)) / size;
}

uint32 interface_value::entry(std::size_t index) const {
  const std::size_t size = entry_size(kind);
  const std::size_t offset = list_offset(kind) + index * size;
  if (size == sizeof(be32)) return read_at<be32>(bytes, offset);
  return size == sizeof(be16) ? uint16{read_at<be16>(bytes, offset)} : 0;
}

vlan_membership interface_value::membership() const {
  return kind == value_kind::membership ? read_at<vlan_membership>(bytes, 0) : vlan_membership{};
}

std::vector<lane_value> interface_value::lanes() const {
  std::vector<lane_value> values;
  if (kind != value_kind::lanes) return values;
  for (std::size_t at = 0; at < bytes.size(); at += sizeof(lane_value))
    values.push_back(read_at<lane_value>(bytes, at));
  return values;
}

std::vector<std::pair<std::string_view, uint64>> interface_value::map_entries() const {
  constexpr std::size_t kHead = sizeof(be64) + sizeof(be16);
  std::vector<std::pair<std::string_view, uint64>> entries;
  if (kind != value_kind::map) return entries;
  for (std::size_t at = 0; at + kHead <= bytes.size();) {
    const std::size_t size = uint16{read_at<be16>(bytes, at + sizeof(be64))};
    if (size > bytes.size() - at - kHead) break;
    const auto* const name = reinterpret_cast<const char*>(bytes.data()) + at + kHead;
    entries.emplace_back(std::string_view(name, size), read_at<be64>(bytes, at));
    at += kHead + size;
  }
  return entries;
}

std::optional<std::vector<interface_value>> read_values(std::span<const std::byte> bytes) {
  std::vector<interface_value> values;
  values.reserve(bytes.size() / (sizeof(value_head) + sizeof(be64)));
  const bool is_whole = read_each(bytes, [&values](const interface_value& value) { values.push_back(value); });
  return is_whole ? std::optional(std::move(values)) : std::nullopt;
}

std::optional<requested_properties> read_properties(std::span<const std::byte> request) {
  if (request.size() < sizeof(values_request)) return std::nullopt;
  const std::size_t count = read_at<values_request>(request, 0).count;
  if (request.size() != sizeof(values_request) + count * sizeof(be16)) return std::nullopt;
  const auto* const numbers = reinterpret_cast<const be16*>(request.data() + sizeof(values_request));
  if (!std::all_of(numbers, numbers + count, [](uint16 number) { return number < kNumProperties; }))
    return std::nullopt;
  return requested_properties({numbers, count});
}

std::vector<std::byte> values_request_for(if_index_t if_index, std::span<const property> asked, bool only_absent) {
  const values_request head = {if_index, only_absent, 0, static_cast<uint16>(asked.size())};
  std::vector<std::byte> request(sizeof head + asked.size() * sizeof(be16));
  std::memcpy(request.data(), &head, sizeof head);
  std::byte* at = request.data() + sizeof head;
  for (const property each : asked) {
    const be16 number = static_cast<uint16>(each);
    std::memcpy(at, &number, sizeof number);
    at += sizeof number;
  }
  return request;
}

// Appends the head of a value, and room for its bytes.
std::byte* value_writer::room_for(property of, value_kind kind, std::size_t size) {
  const value_head head = {static_cast<uint16>(of), kind, 0, static_cast<uint16>(size)};
  const std::size_t begin = to_.size();
  to_.resize(begin + sizeof head + size);
  std::memcpy(to_.data() + begin, &head, sizeof head);
  ++count_;
  return to_.data() + begin + sizeof head;
}

// A value that is present.
void value_writer::put(property of, value_kind kind, const void* bytes, std::size_t size) {
  if (!only_absent_ && size != 0)
    std::memcpy(room_for(of, kind, size), bytes, size);
  else if (!only_absent_)
    room_for(of, kind, size);
}

void value_writer::absent(property of, absence why) {
  if (unknown_ == nullptr)
    *room_for(of, value_kind::absent, 1) = std::byte(why);
  else if (why != absence::none)
    unknown_->set(of);
}

void value_writer::number(property of, uint64 value) {
  const be64 number = value;
  put(of, value_kind::number, &number, sizeof number);
}

void value_writer::text(property of, std::string_view value) {
  put(of, value_kind::text, value.data(), std::min<std::size_t>(value.size(), UINT16_MAX));
}

void value_writer::decimal(property of, std::string_view digits) {
  put(of, value_kind::decimal, digits.data(), digits.size());
}

void value_writer::mac(property of, std::span<const uint8, 6> bytes) {
  put(of, value_kind::mac, bytes.data(), bytes.size());
}

void value_writer::ipv4(property of, std::span<const uint8> bytes) { put(of, value_kind::ipv4, bytes.data(), 4); }

void value_writer::ipv6(property of, std::span<const uint8, 16> bytes) {
  put(of, value_kind::ipv6, bytes.data(), bytes.size());
}

void value_writer::interface(property of, if_index_t value) {
  const be32 number = value;
  put(of, value_kind::interface, &number, sizeof number);
}

void value_writer::interfaces(property of, std::span<const if_index_t> values) {
  if (only_absent_) return;
  write_each<be32>(room_for(of, value_kind::interfaces, values.size() * sizeof(be32)), values);
}

void value_writer::numbers(property of, std::span<const uint32> values) {
  if (only_absent_) return;
  write_each<be32>(room_for(of, value_kind::numbers, values.size() * sizeof(be32)), values);
}

void value_writer::vlans(property of, std::span<const uint16> ascending) {
  if (!only_absent_) write_runs(room_for(of, value_kind::vlans, runs_size(ascending)), ascending);
}

void value_writer::membership(property of, const vlan_membership& value, std::span<const uint16> allowed) {
  if (only_absent_) return;
  std::byte* const to = room_for(of, value_kind::membership, sizeof value + runs_size(allowed));
  std::memcpy(to, &value, sizeof value);
  write_runs(to + sizeof value, allowed);
}

void value_writer::time(property of, uint32 seconds_since_1970) {
  const be32 number = seconds_since_1970;
  put(of, value_kind::time, &number, sizeof number);
}

void value_writer::lanes(property of, std::span<const lane_value> values) {
  put(of, value_kind::lanes, values.data(), values.size_bytes());
}

void value_writer::map(property of, std::span<const std::pair<std::string, uint64>> entries) {
  constexpr std::size_t kHead = sizeof(be64) + sizeof(be16);
  if (only_absent_) return;
  std::size_t size = 0, count = 0;
  for (; count < entries.size() && size + kHead + entries[count].first.size() <= UINT16_MAX; ++count)
    size += kHead + entries[count].first.size();
  std::byte* to = room_for(of, value_kind::map, size);
  for (const auto& [name, number] : entries.first(count)) {
    const be64 value = number;
    const be16 length = static_cast<uint16>(name.size());
    std::memcpy(to, &value, sizeof value);
    std::memcpy(to + sizeof value, &length, sizeof length);
    std::memcpy(to + kHead, name.data(), name.size());
    to += kHead + name.size();
  }
}

std::string_view word_of(vlan_mode mode) {
  switch (mode) {
    case vlan_mode::none: return {};
    case vlan_mode::access: return "access";
    case vlan_mode::trunk: return "trunk";
    case vlan_mode::routed: return "routed";
  }
  return {};
}

}  // namespace host
