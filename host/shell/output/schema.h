// The schema: what each tag means. One table gives a field its name in the structured form, its type there, the words
// of an enumerated value, and the displays that have the field. Command libraries of others add rows to it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace host {

// How a field stands in the structured form. All but the number types are JSON strings.
enum class field_type : uint8 {
  enumeration,        // the text of the value
  interface_name,     // full name
  mac,                // "xxxx.xxxx.xxxx"
  ipv4,               // dotted
  hexadecimal,        // an integer as "0x..."
  string,             // a text; also where the tuple's code says otherwise
  number,             // an integer
  number_or_auto,     // an integer; 0 is automatic and null here
  number_from_text,   // an integer that is bound as a text
  decimal,            // a number with a fraction
  decimal_from_text,  // one that is bound as a text
};

// Which texts the values of an enumerated field have.
enum class enum_words : uint8 {
  number,  // none: the number itself
  port_state,
  state_reason,
  state_reason_short,
  duplex,
  speed_mbps,
  port_mode,
  rate_mode,
  flow_control,
  on_off,
  yes_no,
  mark,
};

// A display, as a bit so that a field can belong to several.
enum display_bit : uint64 {
  kNoDisplay = 0,
  kDetailedDisplay = 1 << 0,
  kCapabilityDisplay = 1 << 1,
  kSwitchportDisplay = 1 << 2,
  kBriefDisplay = 1 << 3,
  kTransportDisplay = 1 << 4,
  kStatusDisplay = 1 << 5,
  kErrorStatusDisplay = 1 << 6,
  kDescriptionDisplay = 1 << 7,
  kMacAddressDisplay = 1 << 8,
  kIfIndexDisplay = 1 << 9,
  kDebounceDisplay = 1 << 10,
  kCountersDisplay = 1 << 11,
  kRatesDisplay = 1 << 12,
  kErrorCountersDisplay = 1 << 13,
  kTrunkCountersDisplay = 1 << 14,
  kStormControlDisplay = 1 << 15,
  kFlowControlDisplay = 1 << 16,
  kDetailedCountersDisplay = 1 << 17,
  kAllCountersDisplay = 1 << 18,
  kSettingDisplay = 1 << 19,
  kTransceiverDisplay = 1 << 20,
  kTransceiverDetailsDisplay = 1 << 21,
  kCalibrationDisplay = 1 << 22,
  kTrunkDisplay = 1 << 23,
  kAllowedVlansDisplay = 1 << 24,
  kForwardingVlansDisplay = 1 << 25,
};

enum : uint8 { kComponentOfLibrary = 0x2A };

struct field {
  uint16 tag;
  std::string_view name;  // several tags may share a name: they are one field
  field_type type;
  enum_words words = enum_words::number;
  uint64 displays = kNoDisplay;
  uint8 component = kComponentOfLibrary;  // of its tuple ids
  std::string_view unit = {};             // of a field of others
  std::string_view help = {};
};

// Tags of the shell's own displays; the library's end below.
enum : uint16 {
  kTagMessagesSent = 0x07F0,
  kTagMessagesReceived,
  kTagMessagesDropped,
  kTagMessagesDroppedTwice,
  kTagMessagesNeverDropped,
  kTagSettingInterface,
  kTagSettingStatus,
  kTagSettingText,
};

// All fields, in the order in which they stand in a record.
std::span<const field> schema();

// The field of a tuple id, or null.
const field* find_field(uint32 tuple_id);

// Adds a display with its fields, which may be those of other displays. Their texts must outlive the program's
// commands. Call it before the first command. Returns kNoDisplay and one line in `error` when a field contradicts
// another.
display_bit add_display(std::span<const field> fields, std::string& error);

}  // namespace host
