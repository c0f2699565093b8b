// Alarms and warnings of the optical diagnostics that were fetched last, and whether their module has several lanes.
#pragma once

#include <span>
#include <string_view>

#include "platform/transceiver.h"

namespace host {

struct quantity_mark {
  std::string_view quantity;  // as tables name it, such as "Tx Power"
  uint32 mark;                // 1 high alarm, 2 high warning, 3 low warning, 4 low alarm

  bool operator==(const quantity_mark&) const = default;
};

// Replaces the marks by those of a record; then no lanes are noted.
void note_marks(const mts_get_sfp_diag_info_t& fetched);
void forget_marks();

// The module in a port has several lanes, whose values are property::lanes.
void note_lanes(if_index_t if_index);
bool has_noted_lanes(if_index_t if_index);

// Of the quantities that are outside of their limits.
std::span<const quantity_mark> noted_marks();

}  // namespace host
