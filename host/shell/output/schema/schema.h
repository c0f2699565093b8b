// The schema: the fields of the structured form, and the values of the output channel that belong to them.
//
// Fields are one table in two parts: those of interfaces (messages/property_fields.h) and those of displays
// (fields.cpp). Bindings are another (bindings.cpp): which tuple id is which field, and in which displays. Command
// libraries of others add rows to both.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "messages/property_fields.h"
#include "platform/types.h"

namespace host {

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
  kKernelMapDisplay = 1 << 26,
  kRunningConfigDisplay = 1 << 27,
  kTextDisplay = 1 << 28,  // of commands whose output is sentences: messages only
  kChangesDisplay = 1 << 29,
  kOverviewDisplay = 1 << 30,
  kPanelDisplay = uint64{1} << 31,
  kModuleResourcesDisplay = uint64{1} << 32,
  kStartupConfigDisplay = uint64{1} << 33,
  kDiffDisplay = uint64{1} << 34,
  kVersionDisplay = uint64{1} << 35,
  kClockDisplay = uint64{1} << 36,
  kHistoryDisplay = uint64{1} << 37,
  kAddressesDisplay = uint64{1} << 38,
  kNeighborsDisplay = uint64{1} << 39,
  kMacTableDisplay = uint64{1} << 40,
  kSpanningTreeDisplay = uint64{1} << 41,
  kDriverCountersDisplay = uint64{1} << 42,
  kHardwareDisplay = uint64{1} << 43,
  kLldpDisplay = uint64{1} << 44,
  kViolationsDisplay = uint64{1} << 45,
  kEventsDisplay = uint64{1} << 46,
  kSessionsDisplay = uint64{1} << 47,
  kLastDisplay = kSessionsDisplay,
};

// Rows of the fields that are not about interfaces; those of interfaces have the numbers of their properties, less 1.
enum : uint16 {
  kRowSent = kNumProperties - 1,
  kRowReceived,
  kRowDropped,
  kRowDroppedTwice,
  kRowNeverDropped,
  kRowStatus,
  kRowText,
  kRowSetting,
  kRowResult,
  kRowReason,
  kRowInterfaceRange,
  kRowCommand,
  kRowStep,
  kRowChangedAt,
  kRowUser,
  kRowBefore,
  kRowAfter,
  kRowUnit,
  kRowModule,
  kRowLevel,
  kRowPort,
  kRowPortGroup,
  kRowBufferGroup,
  kRowBbCredits,
  kRowTotalBuffers,
  kRowAvailableBuffers,
  kRowPerformanceBuffers,
  kRowAvailablePerformanceBuffers,
  kRowBandwidth,
  kRowAvailableBandwidth,
  kRowNameReason,
  kRowProgramVersion,
  kRowLibrary,
  kRowPlatform,
  kRowSwitchName,
  kRowSwitchFile,
  kRowKernelRelease,
  kRowClockTime,
  kRowSession,
  kRowTerminal,
  kRowProcess,
  kRowSince,
  kRowHolds,
  kRowSecondsToConfirm,
  kNumOwnRows
};

// How the value of a tuple is bound.
enum class binding_form : uint8 {
  by_code,     // as its type code says
  as_text,     // as a text, regardless of its type code
  by_service,  // not at all: the value is that of the service, which averages or counts otherwise
};

struct binding {
  uint16 tag;
  uint16 row;  // of its field
  uint64 displays;
  binding_form form = binding_form::by_code;
  enum_words words = enum_words::of_field;  // as text
  uint8 component = 0x2A;                   // of its tuple id
};

// Tags of the shell's own displays; the library's end below.
enum : uint16 {
  kTagMessagesSent = 0x0800,
  kTagMessagesReceived,
  kTagMessagesDropped,
  kTagMessagesDroppedTwice,
  kTagMessagesNeverDropped,
  kTagSettingInterface,
  kTagSettingStatus,
  kTagSettingText,
  kTagCommandInterface,
  kTagCommand,
  kTagMapDevice,
  kTagMapInterface,
  kTagMapReason,
  kTagChangeStep,
  kTagChangedAt,
  kTagChangeUser,
  kTagChangeCommand,
  kTagChangeInterface,
  kTagChangeBefore,
  kTagChangeAfter,
  kTagRowInterface,
  kTagRowUnit,
  kTagRowModule,
  kTagCommandRange,
  kTagSettingCommand,
  kTagSettingBefore,
  kTagSettingAfter,
  kTagSettingResult,
  kTagSettingReason,
  kTagDiffInterface,
  kTagDiffBefore,
  kTagDiffAfter,
  kTagProgramVersion,
  kTagLibrary,
  kTagPlatform,
  kTagSwitchName,
  kTagSwitchFile,
  kTagKernelRelease,
  kTagClockTime,
  kTagSession,
  kTagSessionUser,
  kTagSessionTerminal,
  kTagSessionProcess,
  kTagSessionSince,
  kTagSessionHolds,
  kTagSessionSeconds,
};

// Tags of the resources of modules, below those.
enum : uint16 {
  kTagResourceLevel = 0x07E0,
  kTagResourcePort,
  kTagResourcePortGroup,
  kTagResourceBufferGroup,
  kTagResourceBbCredits,
  kTagResourceTotalBuffers,
  kTagResourceAvailableBuffers,
  kTagResourcePerformanceBuffers,
  kTagResourceAvailablePerformanceBuffers,
  kTagResourceBandwidth,
  kTagResourceAvailableBandwidth,
  kTagResourceRateMode,
};

// All fields, in the order of a record.
std::span<const field> all_fields();

// The binding of a tuple id, or null.
const binding* find_binding(uint32 tuple_id);

inline const field& field_of(const binding& bound) { return all_fields()[bound.row]; }

// The rows of the fields of a display, in their order.
std::vector<uint16> rows_of(display_bit shown);

// A field that another library adds, with the tuple id that its handlers bind. Texts outlive the program's commands.
struct added_field {
  uint32 tuple_id;
  field described;
};

// Adds a display with its fields, which may be those of other displays. Call it before the first command. Returns
// kNoDisplay and one line in `error` when a field contradicts another.
display_bit add_display(std::span<const added_field> fields, std::string& error);

// ---- For the tables.

inline constexpr std::size_t kNumTags = 0x900;
std::span<const field> display_fields();
std::span<const binding> own_bindings();

// The shell's own binding of a tag, or null.
const binding* find_own_binding(uint16 tag);
// The displays of each own row that have it without a tag.
uint64 displays_without_tag(uint16 row);

}  // namespace host
