// The IP configuration.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/ip_config.h"
#include "support/recorded/octets.h"

namespace pmcli_test {

struct recorded_ip_config {
  std::map<if_index_t, std::vector<ipconf_if_inet_addr_info_t>> addresses;  // without an entry: a null list
  std::optional<octets> address_block;                                      // takes the place of `addresses`
  int32 address_result = 0;  // of ipconf_get_if_inet_addrs(), which hands its list over whatever this is
};

}  // namespace pmcli_test
