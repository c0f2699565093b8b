// The request for the values of an interface, and its answer: the values, and the reasons for absent ones.
//
// One request carries all properties that a display has. Everything travels big-endian and packed.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "messages/property.h"
#include "platform/if_index.h"
#include "platform/wire.h"

namespace host {

enum { SAP_INTERFACE_VALUES = 198 };

// Opcode                request                                              answer
// VALUES_OPC_INTERFACE  values_request, a be16 for each property             a reply head, then value_head and bytes of
//                                                                            each value, in the order of the request
// VALUES_OPC_SOURCE     nothing                                              a reply head and source_answer
// VALUES_OPC_UNKNOWN    as VALUES_OPC_INTERFACE                              a reply head and unknown_answer
enum { VALUES_OPC_INTERFACE = 1, VALUES_OPC_SOURCE = 2, VALUES_OPC_UNKNOWN = 3 };

struct values_request {
  be32 if_index;
  uint8 only_absent;  // 1: the answer leaves out what is present
  uint8 reserved;
  be16 count;
};
static_assert(sizeof(values_request) == 8);

// The answer for all interfaces of a switch.
struct source_answer {
  uint8 knows_all;  // 1: no value is absent for another reason than absence::none
};
static_assert(sizeof(source_answer) == 1);

// A bit for each property, the lowest of each byte first: 1 when its value is absent for another reason than
// absence::none.
struct unknown_answer {
  uint8 bits[(kNumProperties + 7) / 8];

  void set(property of) { bits[number(of) / 8] |= static_cast<uint8>(1U << number(of) % 8); }
  bool has(property of) const { return (bits[number(of) / 8] >> number(of) % 8 & 1) != 0; }

 private:
  static constexpr std::size_t number(property of) { return static_cast<std::size_t>(of); }
};

// Why an interface has no value.
enum class absence : uint8 {
  none,           // there is none: no transceiver, no description
  not_supported,  // the source cannot supply it
  no_permission,  // the user may not read it
};

enum class value_kind : uint8 {
  absent,      // uint8: absence
  number,      // be64; also of an enumeration
  text,        // without a zero at its end
  decimal,     // text: the digits as they are shown
  mac,         // 6 bytes
  ipv4,        // 4 bytes, network order
  interface,   // be32
  interfaces,  // be32 each
  numbers,     // be32 each
  vlans,       // be16 each: first and last VLAN of each run, ascending
  membership,  // vlan_membership, then the allowed VLANs as above
  time,        // be32: seconds since 1970
  ipv6,        // 16 bytes, network order
  map,         // of names to numbers: for each a be64, the size of its name as be16, and the name
  lanes,       // lane_value each, from the first lane
};

struct value_head {
  be16 of;  // property
  value_kind kind;
  uint8 reserved;
  be16 size;  // bytes that follow
};
static_assert(sizeof(value_head) == 6);

enum class vlan_mode : uint8 { none, access, trunk, routed };

// Its word; empty for none.
std::string_view word_of(vlan_mode mode);

struct vlan_membership {
  vlan_mode mode;
  uint8 reserved;
  be16 access;  // 0: none
  be16 native;  // 0: none
};
static_assert(sizeof(vlan_membership) == 6);

// What is measured in a lane of a module. Texts are the digits that are shown, and not terminated when all of their
// bytes are used; a power without light is empty. Marks are those of optical diagnostics, 0 for none.
struct lane_value {
  char current_ma[8];
  char tx_power_dbm[8];
  char rx_power_dbm[8];
  uint8 current_mark;
  uint8 tx_power_mark;
  uint8 rx_power_mark;
  uint8 reserved;
};
static_assert(sizeof(lane_value) == 28);

// One value of an answer. `bytes` are the answer's own.
struct interface_value {
  property of = property::none;
  value_kind kind = value_kind::absent;
  std::span<const std::byte> bytes = {};

  // Each reads the value as its kind says; 0 or empty for another kind.
  absence why_absent() const;
  uint64 number() const;            // also of time and interface
  std::string_view text() const;    // also of decimal
  std::size_t num_entries() const;  // of lists: numbers, interfaces, bounds of runs
  uint32 entry(std::size_t index) const;
  vlan_membership membership() const;
  std::vector<lane_value> lanes() const;
  std::vector<std::pair<std::string_view, uint64>> map_entries() const;  // up to the first that is cut
};

// The values of an answer without its reply head; nothing when the bytes are not those of whole values.
std::optional<std::vector<interface_value>> read_values(std::span<const std::byte> bytes);

// The properties that a request asks for. A view of the request, which must outlive it.
class requested_properties {
 public:
  explicit requested_properties(std::span<const be16> numbers) : numbers_(numbers) {}

  std::size_t size() const { return numbers_.size(); }
  property operator[](std::size_t at) const { return static_cast<property>(uint16{numbers_[at]}); }

 private:
  std::span<const be16> numbers_;
};

// Nothing when the size of the request is not that of as many as it says, or one of them does not exist.
std::optional<requested_properties> read_properties(std::span<const std::byte> request);

// A request as it travels.
std::vector<std::byte> values_request_for(if_index_t if_index, std::span<const property> asked, bool only_absent);

// Appends values to an answer.
class value_writer {
 public:
  // `only_absent`: values that are present are left out.
  explicit value_writer(std::vector<std::byte>& to, bool only_absent = false) : to_(to), only_absent_(only_absent) {}

  // Writes no values: takes note of those that are unknown. `to` stays empty.
  value_writer(std::vector<std::byte>& to, unknown_answer& unknown) : to_(to), only_absent_(true), unknown_(&unknown) {}

  void absent(property of, absence why);
  void number(property of, uint64 value);
  void text(property of, std::string_view value);
  void decimal(property of, std::string_view digits);
  void mac(property of, std::span<const uint8, 6> bytes);
  void ipv4(property of, std::span<const uint8> bytes);  // the first four
  void ipv6(property of, std::span<const uint8, 16> bytes);
  void interface(property of, if_index_t value);
  void interfaces(property of, std::span<const if_index_t> values);
  void numbers(property of, std::span<const uint32> values);
  void vlans(property of, std::span<const uint16> ascending);
  void membership(property of, const vlan_membership& value, std::span<const uint16> allowed);
  void time(property of, uint32 seconds_since_1970);
  void lanes(property of, std::span<const lane_value> values);
  // At most 64 KiB of entries; further ones are left out.
  void map(property of, std::span<const std::pair<std::string, uint64>> entries);

  uint32 count() const { return count_; }

 private:
  std::byte* room_for(property of, value_kind kind, std::size_t size);
  void put(property of, value_kind kind, const void* bytes, std::size_t size);

  std::vector<std::byte>& to_;
  bool only_absent_;
  unknown_answer* unknown_ = nullptr;
  uint32 count_ = 0;
};

}  // namespace host
