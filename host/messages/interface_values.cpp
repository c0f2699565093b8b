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
  while (!bytes.empty()) {
    if (bytes.size() < sizeof(value_head)) return std::nullopt;
    const auto head = read_at<value_head>(bytes, 0);
    bytes = bytes.subspan(sizeof head);
    if (head.size > bytes.size() || !is_size_of(head.kind, head.size)) return std::nullopt;
    values.push_back({static_cast<property>(uint16{head.of}), head.kind, bytes.first(head.size)});
    bytes = bytes.subspan(head.size);
  }
  return values;
}

std::optional<std::vector<property>> read_properties(std::span<const std::byte> request) {
  if (request.size() < sizeof(values_request)) return std::nullopt;
  const std::size_t count = read_at<values_request>(request, 0).count;
  if (request.size() != sizeof(values_request) + count * sizeof(be16)) return std::nullopt;
  std::vector<property> asked(count);
  for (std::size_t i = 0; i < count; ++i) {
    const uint16 number = read_at<be16>(request, sizeof(values_request) + i * sizeof(be16));
    if (number >= kNumProperties) return std::nullopt;
    asked[i] = static_cast<property>(number);
  }
  return asked;
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

void value_writer::append(const void* bytes, std::size_t size) {
  const auto* const first = static_cast<const std::byte*>(bytes);
  to_.insert(to_.end(), first, first + size);
}

void value_writer::head(property of, value_kind kind, std::size_t size) {
  const value_head head = {static_cast<uint16>(of), kind, 0, static_cast<uint16>(size)};
  append(&head, sizeof head);
  ++count_;
}

void value_writer::absent(property of, absence why) {
  head(of, value_kind::absent, 1);
  append(&why, 1);
}

void value_writer::number(property of, uint64 value) {
  const be64 number = value;
  head(of, value_kind::number, sizeof number);
  append(&number, sizeof number);
}

void value_writer::text(property of, std::string_view value) {
  value = value.substr(0, UINT16_MAX);
  head(of, value_kind::text, value.size());
  append(value.data(), value.size());
}

void value_writer::decimal(property of, std::string_view digits) {
  head(of, value_kind::decimal, digits.size());
  append(digits.data(), digits.size());
}

void value_writer::mac(property of, std::span<const uint8, 6> bytes) {
  head(of, value_kind::mac, bytes.size());
  append(bytes.data(), bytes.size());
}

void value_writer::ipv4(property of, std::span<const uint8> bytes) {
  head(of, value_kind::ipv4, 4);
  append(bytes.data(), 4);
}

void value_writer::ipv6(property of, std::span<const uint8, 16> bytes) {
  head(of, value_kind::ipv6, bytes.size());
  append(bytes.data(), bytes.size());
}

void value_writer::interface(property of, if_index_t value) {
  const be32 number = value;
  head(of, value_kind::interface, sizeof number);
  append(&number, sizeof number);
}

void value_writer::interfaces(property of, std::span<const if_index_t> values) {
  head(of, value_kind::interfaces, values.size() * sizeof(be32));
  for (const be32 number : values) append(&number, sizeof number);
}

void value_writer::numbers(property of, std::span<const uint32> values) {
  head(of, value_kind::numbers, values.size() * sizeof(be32));
  for (const be32 number : values) append(&number, sizeof number);
}

void value_writer::append_runs(std::span<const uint16> ascending) {
  for_each_run(ascending, [this](be16 first, be16 last) {
    append(&first, sizeof first);
    append(&last, sizeof last);
  });
}

void value_writer::vlans(property of, std::span<const uint16> ascending) {
  head(of, value_kind::vlans, runs_size(ascending));
  append_runs(ascending);
}

void value_writer::membership(property of, const vlan_membership& value, std::span<const uint16> allowed) {
  head(of, value_kind::membership, sizeof value + runs_size(allowed));
  append(&value, sizeof value);
  append_runs(allowed);
}

void value_writer::time(property of, uint32 seconds_since_1970) {
  const be32 number = seconds_since_1970;
  head(of, value_kind::time, sizeof number);
  append(&number, sizeof number);
}

void value_writer::lanes(property of, std::span<const lane_value> values) {
  head(of, value_kind::lanes, values.size_bytes());
  append(values.data(), values.size_bytes());
}

void value_writer::map(property of, std::span<const std::pair<std::string, uint64>> entries) {
  constexpr std::size_t kHead = sizeof(be64) + sizeof(be16);
  std::size_t size = 0, count = 0;
  for (; count < entries.size() && size + kHead + entries[count].first.size() <= UINT16_MAX; ++count)
    size += kHead + entries[count].first.size();
  head(of, value_kind::map, size);
  for (const auto& [name, number] : entries.first(count)) {
    const be64 value = number;
    const be16 length = static_cast<uint16>(name.size());
    append(&value, sizeof value);
    append(&length, sizeof length);
    append(name.data(), name.size());
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
