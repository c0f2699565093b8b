// The port-channel service and the multi-chassis service.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/port_channel.h"
#include "support/recorded/octets.h"

namespace pmcli_test {

struct recorded_port_channel {
  std::map<if_index_t, std::vector<if_index_t>> channel_members;  // without an entry: a null list
  std::optional<octets> member_block;                             // takes the place of `channel_members`, byte for byte
  std::map<if_index_t, if_index_t> channel_of;                    // of members; without an entry in none
  std::map<if_index_t, std::string> multi_chassis_status;         // without an entry: empty
};

}  // namespace pmcli_test
