// Families of chassis with special displays.
#pragma once

#include "platform/platform_data.h"

namespace pmcli {

// The Ethernet-switch family.
constexpr bool is_eth_switch_chassis(uint32 chassis_type) {
  return chassis_type == CHASSIS_10 || chassis_type == CHASSIS_11 || chassis_type == CHASSIS_17 ||
         (chassis_type >= CHASSIS_19 && chassis_type <= CHASSIS_24);
}

// Where the statistics client keeps the counters of Ethernet ports: the Ethernet-switch family but chassis 17.
constexpr bool has_statistics_client(uint32 chassis_type) {
  return is_eth_switch_chassis(chassis_type) && chassis_type != CHASSIS_17;
}

// The chassis type, or CHASSIS_UNKNOWN when it cannot be read.
inline uint32 read_chassis_type() {
  uint32 type = CHASSIS_UNKNOWN;
  return pdb_get_chassis_type(&type) == 0 ? type : static_cast<uint32>(CHASSIS_UNKNOWN);
}

}  // namespace pmcli
