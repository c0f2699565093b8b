// The satellite manager.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "platform/satellite.h"

namespace pmcli_test {

struct recorded_satellite {
  std::map<if_index_t, satmgr_fport_info_t> fabric_ports;    // identifiers of slots are 1000 times their number
  std::vector<std::pair<uint32, uint32>> satellite_queries;  // unit and slot of pm_get_sat_sfp_diag_info()
};

}  // namespace pmcli_test
