// Counting and finding the interfaces within a pair of interface indexes.

#include "pm/interface_ranges.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "platform/if_index.h"
#include "platform/platform_data.h"
#include "platform/syserr.h"
#include "support/id_set.h"
#include "support/interface_numbering.h"
#include "support/kind.h"
#include "support/lazily.h"

using namespace pmcli;

namespace {

int32 get_sub_interface(if_index_t if_index, uint32* number) {
  uint16 sub_interface = 0;
  const int32 error = if_index_phy_eth_get_sub_intf(if_index, &sub_interface);
  *number = sub_interface;
  return error;
}

constexpr interface_numbering kPorts = {lazily<if_index_get_port>, lazily<if_index_set_port>};
constexpr interface_numbering kSubInterfaces = {get_sub_interface, lazily<if_index_set_sub_intf>};
constexpr interface_numbering kChannels = {lazily<if_index_port_channel_get_channel_num>,
                                           lazily<if_index_set_channel_num>};
constexpr interface_numbering kEthChannels = {lazily<if_index_eth_port_channel_get_channel_num>,
                                              lazily<if_index_set_channel_num>};
constexpr interface_numbering kTunnels = {lazily<if_index_fcip_get_tunnel>, lazily<if_index_set_tunnel>};
constexpr interface_numbering kServers = {lazily<if_index_server_interface_get_sif_num>, lazily<if_index_set_sif_num>};

// The rule for ranges of a kind. Tunnels may be in any order, which is intended: the count wraps.
enum class range_rule { ports_of_slot, ports_or_sub_interfaces, ascending, any_order, single };

struct counted_kind {
  if_index_type_t type;
  range_rule rule;
  const interface_numbering* number;
};

constexpr counted_kind kKinds[] = {
    {IF_TYPE_FC, range_rule::ports_of_slot, &kPorts},
    {IF_TYPE_ETHERNET, range_rule::ports_or_sub_interfaces, &kPorts},
    {IF_TYPE_PORT_CHANNEL, range_rule::ascending, &kChannels},
    {IF_TYPE_MGMT, range_rule::single, nullptr},
    {IF_TYPE_FCIP, range_rule::any_order, &kTunnels},
    {IF_TYPE_ISCSI, range_rule::ports_of_slot, &kPorts},
    {IF_TYPE_GIG_ETHERNET, range_rule::ports_of_slot, &kPorts},
    {IF_TYPE_ETH_PORT_CHANNEL, range_rule::ascending, &kEthChannels},
    {IF_TYPE_ETHERNET_L3, range_rule::ports_or_sub_interfaces, &kPorts},
    {IF_TYPE_SERVER, range_rule::ascending, &kServers},
};

const counted_kind* find_kind(if_index_type_t type) {
  const auto found =
      std::find_if(std::begin(kKinds), std::end(kKinds), [type](const counted_kind& row) { return row.type == type; });
  return found != std::end(kKinds) ? found : nullptr;
}

uint32 read_slot_count() {
  constexpr uint32 kWhenUnknown = 9;
  constexpr uint32 kWhenNone = 13;
  platform_info_t info{};
  if (get_platform_info(&info) != 0) return kWhenUnknown;
  return info.num_slots != 0 ? info.num_slots : kWhenNone;
}

// Asked once for the life of the process.
uint32 slot_count() {
  static uint32 count = 0;  // 0: not asked yet
  if (count == 0) count = read_slot_count();
  return count;
}

bool are_in_one_slot(if_index_t low, if_index_t high) {
  uint32 low_slot = 0, high_slot = 0;
  if (if_index_get_slot(low, &low_slot) != 0 || if_index_get_slot(high, &high_slot) != 0) return false;
  return low_slot == high_slot && low_slot < slot_count();
}

// The interfaces of a range: numbers from `first` on. A single interface has no numbering.
struct measured_range {
  const interface_numbering* number = nullptr;
  uint32 first = 0;
  uint32 count = 0;
};

bool measure_numbers(const interface_numbering& number, if_index_t low, if_index_t high, bool in_order,
                     measured_range* range) {
  uint32 first = 0, last = 0;
  if (number.get(low, &first) != 0 || number.get(high, &last) != 0) return false;
  if (in_order && first > last) return false;
  *range = {&number, first, last - first + 1};
  return true;
}

bool measure(if_index_t low, if_index_t high, measured_range* range) {
  const counted_kind* const of_low = find_kind(kind_of(low));
  if (of_low == nullptr || of_low != find_kind(kind_of(high))) return false;
  switch (of_low->rule) {
    case range_rule::single: *range = {nullptr, 0, 1}; return true;
    case range_rule::any_order: return measure_numbers(*of_low->number, low, high, false, range);
    case range_rule::ascending: return low <= high && measure_numbers(*of_low->number, low, high, false, range);
    case range_rule::ports_of_slot:
      return are_in_one_slot(low, high) && measure_numbers(*of_low->number, low, high, true, range);
    case range_rule::ports_or_sub_interfaces:
      if (!are_in_one_slot(low, high) || !measure_numbers(*of_low->number, low, high, true, range)) return false;
      return range->count != 1 || measure_numbers(kSubInterfaces, low, high, true, range);
  }
  return false;  // no such rule
}

}  // namespace

const interface_numbering* pmcli::numbering_of(if_index_type_t kind) {
  const counted_kind* const found = find_kind(kind);
  return found != nullptr ? found->number : nullptr;
}

uint32 pm_get_num_ports_in_if_index_range(if_index_t if_index_low, if_index_t if_index_high,
                                          uint32* num_ports_in_range) {
  measured_range range;
  const bool is_range = measure(if_index_low, if_index_high, &range);
  *num_ports_in_range = is_range ? range.count : 0;
  return is_range ? 0 : PM_ERR_INVALID_RANGE;
}

uint32 pm_get_if_index_in_range(if_index_t if_index_low, if_index_t if_index_high, if_index_t* if_index,
                                uint32 position) {
  measured_range range;
  if (!measure(if_index_low, if_index_high, &range) || position >= range.count) return PM_ERR_INVALID_RANGE;
  if_index_t found = if_index_low;
  if (range.number != nullptr && range.number->set(&found, range.first + position) != 0) return PM_ERR_INVALID_RANGE;
  *if_index = found;
  return 0;
}

uint32 pm_create_vsan_bitset_from_pm_flexi_bitset(pm_flexi_bitset_t* flexi_bitset, vsan_bitset_t* vsan_bitset) {
  *vsan_bitset = empty_set();
  if (flexi_bitset == nullptr) return 0;
  std::memcpy(vsan_bitset->bits, flexi_bitset + 1, std::min<uint32>(flexi_bitset->num_bytes, BITSET_BYTES));
  return 0;
}
