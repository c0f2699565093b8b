#include "messages/calls/diagnostic_marks.h"

#include <array>

namespace host {
namespace {

// The flags of a quantity: a bit for the upper limit, and the next one for the lower.
struct quantity_flags {
  std::string_view quantity;
  uint32 high;
};

constexpr quantity_flags kQuantities[] = {
    {"Temperature", 0x001}, {"Voltage", 0x004}, {"Current", 0x010}, {"Tx Power", 0x040}, {"Rx Power", 0x100}};

std::array<quantity_mark, std::size(kQuantities)> marks;
std::size_t num_marks = 0;
if_index_t port_with_lanes = 0;  // 0: none

// An alarm outweighs a warning, and the upper limit the lower one. 0: none.
uint32 mark_of(uint32 alarms, uint32 warnings, uint32 high) {
  if ((alarms & high) != 0) return 1;
  if ((alarms & high << 1) != 0) return 4;
  if ((warnings & high) != 0) return 2;
  return (warnings & high << 1) != 0 ? 3 : 0;
}

}  // namespace

void note_marks(const mts_get_sfp_diag_info_t& fetched) {
  forget_marks();
  for (const auto& [quantity, high] : kQuantities)
    if (const uint32 mark = mark_of(fetched.alarm_flags, fetched.warn_flags, high); mark != 0)
      marks[num_marks++] = {quantity, mark};
}

void forget_marks() {
  num_marks = 0;
  port_with_lanes = 0;
}

void note_lanes(if_index_t if_index) { port_with_lanes = if_index; }

bool has_noted_lanes(if_index_t if_index) { return if_index != 0 && port_with_lanes == if_index; }

std::span<const quantity_mark> noted_marks() { return std::span(marks).first(num_marks); }

}  // namespace host
