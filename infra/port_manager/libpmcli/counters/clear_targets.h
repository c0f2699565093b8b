// The interfaces of a clear command: those of its ranges, or all of a kind.
#pragma once

#include <optional>
#include <span>

#include "platform/if_index.h"
#include "platform/paraminfo.h"
#include "pm/interface_ranges.h"
#include "support/listing.h"

namespace pmcli {

// No range is believed to hold more.
inline constexpr uint32 kMostInterfaces = 65536;

// The ranges among the command's arguments; none after that was printed.
std::optional<std::span<const vsh_intf_mono_range_t>> find_ranges(const paraminfo_t* param);

// How many interfaces a range holds; 0 when they cannot be counted, and when they are too many to be believed.
uint32 count_interfaces(const vsh_intf_mono_range_t& range);

// Whether the interfaces of a range are stepped through by their number, for they cannot be counted.
bool is_stepped(const vsh_intf_mono_range_t& range);

// Moves on to the next interface of such a range; false at its end.
bool step(const vsh_intf_mono_range_t& range, if_index_t* if_index);

// Calls `clear` for each interface of a range of any kind.
template <typename Clear>
void for_each_interface(const vsh_intf_mono_range_t& range, Clear clear) {
  if (is_stepped(range)) {
    if_index_t if_index = range.lower_if_index;
    uint32 steps = 0;
    do clear(if_index);
    while (++steps < kMostInterfaces && step(range, &if_index));
    return;
  }
  const uint32 count = count_interfaces(range);
  for (uint32 position = 0; position < count; ++position) {
    if_index_t if_index = 0;
    if (pm_get_if_index_in_range(range.lower_if_index, range.upper_if_index, &if_index, position) == 0) clear(if_index);
  }
}

}  // namespace pmcli
