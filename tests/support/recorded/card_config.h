// The card configuration.
#pragma once

#include <map>

#include "platform/card_config.h"

namespace pmcli_test {

struct recorded_card_config {
  std::map<if_index_t, crdcfg_port_cap_t> capabilities;
};

}  // namespace pmcli_test
