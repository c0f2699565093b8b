// The owners of counters, when they are asked to clear them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/clear_counters.h"
#include "support/recorded/octets.h"

namespace pmcli_test {

struct recorded_clear_counters {
  // What was cleared, in order: "OWNER INTERFACE", where OWNER is the function that was called and INTERFACE the name;
  // for the kernel device of a management port the name of the device stands behind it.
  std::vector<std::string> cleared;
  std::map<if_index_t, int32> clear_errors;  // what clearing an interface gives at any owner; without an entry: success
  std::vector<std::vector<if_index_t>> clear_requests;  // of pm_clear_port_counters()
  // Takes the place of its list of results, which has an entry for each interface; empty: a null list.
  std::optional<octets> clear_block;
  std::vector<if_index_t> channel_map;  // the answers of pcmap_get_next_port_channel(), one after the other
  std::vector<const paraminfo_t*> channel_clearings;  // of pm_cli_clear_ethernet_channel_counters()
};

}  // namespace pmcli_test
