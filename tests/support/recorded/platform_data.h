// The machine: chassis, slots, cards.
#pragma once

#include <map>
#include <set>

#include "platform/platform_data.h"

namespace pmcli_test {

struct recorded_platform_data {
  uint32 chassis_type = CHASSIS_10;
  uint32 num_slots = 10;
  uint32 runtime_index = 0;  // entry of platform_runtime_param_array, which is zeroed but for this one: "eth1", "eth2"
  std::map<if_index_t, uint32> card_types;  // without an entry: 0
  std::set<uint32> tamber_lindo_cards;
  std::set<uint32> corvid_cards;
  std::set<uint32> resource_modules;  // keys of modules that share out resources
  uint32 vdc = 1;                     // the virtual device context
};

}  // namespace pmcli_test
