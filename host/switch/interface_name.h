// Names of interfaces as people write them: a word and a number, and the spans between two of them.
#pragma once

#include <array>
#include <compare>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "switch/if_index_layout.h"

namespace host {

enum class number_form : uint8 { slot_port, number };

// A word that names interfaces. The interfaces that exist decide which of its kinds a number means.
struct interface_word {
  std::string_view word;  // lower case
  uint8 shortest;         // characters that an abbreviation needs
  number_form form;
  bool has_sub_interfaces;
  uint32 lowest, highest;                // of number_form::number; when both are 0 the number may be left out
  std::array<if_index_type_t, 3> kinds;  // filled up with IF_TYPE_NONE
  std::string_view help;
  name_family family = name_family::usual;
};

// clang-format off
inline constexpr interface_word kInterfaceWords[] = {
    {"ethernet",        1, number_form::slot_port, true,  0, 0,           {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3,
                                                                           IF_TYPE_SATELLITE},    "Ethernet port"},
    {"port-channel",    1, number_form::number,   true,  1, kMaxChannel, {IF_TYPE_ETH_PORT_CHANNEL,
                                                                           IF_TYPE_PORT_CHANNEL}, "Port-channel"},
    {"mgmt",            1, number_form::number,   false, 0, kMaxPort,    {IF_TYPE_MGMT},         "Management port"},
    {"loopback",        1, number_form::number,   false, 0, kMaxNumber,  {IF_TYPE_LOOPBACK},     "Loopback interface"},
    {"vethernet",       1, number_form::number,   false, 0, kMaxNumber,  {IF_TYPE_VETHERNET},    "Virtual Ethernet"},
    {"fc",              1, number_form::slot_port, false, 0, 0,           {IF_TYPE_FC},           "Fibre Channel port"},
    {"fcip",            1, number_form::number,   false, 0, kMaxNumber,  {IF_TYPE_FCIP},         "FC tunnel over IP"},
    {"iscsi",           1, number_form::slot_port, false, 0, 0,           {IF_TYPE_ISCSI},        "IP storage port"},
    {"gigabitethernet", 1, number_form::slot_port, true,  0, 0,           {IF_TYPE_GIG_ETHERNET}, "Gigabit port"},
    {"server",          1, number_form::number,   false, 0, kMaxNumber,  {IF_TYPE_SERVER},       "Server interface"},
    {"sup-fc",          1, number_form::number,   false, 0, kMaxNumber,  {IF_TYPE_INBAND},       "In-band interface"},
    {"in-band",         2, number_form::number,   false, 0, 0,           {IF_TYPE_INBAND},       "In-band interface"},
    {"bay",             1, number_form::number,   false, 1, kMaxPort + 1, {IF_TYPE_FC}, "Fibre Channel port to a bay",
                                                                           name_family::bay},
    {"ext",             2, number_form::number,   false, 1, kMaxPort + 1, {IF_TYPE_FC}, "External Fibre Channel port",
                                                                           name_family::external},
    {"external",        4, number_form::slot_port, false, 0, 0,           {IF_TYPE_EXTERNAL},     "External port"},
};
// clang-format on

// The number of an interface as it is named: slots and ports count from 1. What a name does not have is 0.
struct interface_number {
  name_family family = name_family::usual;
  uint32 unit = 0;
  uint32 slot = 0;
  uint32 port = 0;  // or the number of an interface with number_form::number
  uint32 sub_interface = 0;

  auto operator<=>(const interface_number&) const = default;
};

struct interface_span {
  const interface_word* word = nullptr;
  interface_number low;
  interface_number high;  // bounds included
};

// What is wrong with a name or a range.
enum class range_fault : uint8 {
  unknown_word,
  ambiguous_word,
  missing_word,
  missing_number,
  bad_number,
  reversed,
  too_wide,  // over ports or slots that have no simple order
  empty,
  other_word,  // the ends of a span have different words
  open_quote,
  trailing_text
};

// Whether the word names one interface only, whose number may be left out.
bool names_one_interface(const interface_word& word);

// The word that `text` names or abbreviates, or null with the reason (unknown or ambiguous) in `fault`.
const interface_word* parse_interface_word(std::string_view text, range_fault& fault);

// A number of this word as it is written: "ethernet 1/9.10".
std::string interface_text(const interface_word& word, const interface_number& number);

// The index of a number in one kind, and back. The number must fit the kind.
if_index_t index_of(if_index_type_t type, const interface_number& number, pc_subtype_t subtype = PC_SUBTYPE_ORDINARY);
interface_number number_of(if_index_t if_index);

// The word of a kind, or of a family of its names; null for one that does not exist.
const interface_word* word_of(if_index_type_t type, name_family family = name_family::usual);

// Whether the two ends of a span are interfaces that exist.
struct span_ends {
  bool low_exists = false;
  bool high_exists = false;
};

// Appends in natural order the interfaces of a span. `existing` is sorted by index. A span without sub-interface
// numbers takes no sub-interfaces.
span_ends append_matching(const interface_span& span, std::span<const if_index_t> existing,
                          std::vector<if_index_t>& matches);

}  // namespace host
