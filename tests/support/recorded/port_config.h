// The port manager's settings of ports.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/port_config.h"
#include "support/recorded/octets.h"

namespace pmcli_test {

struct recorded_port_config {
  struct setting_request {  // of pm_cmi_set_port_config()
    mts_q_handle_t q;
    std::string username;
    uint32 session_id;
    std::vector<std::pair<if_index_t, if_index_t>> ranges;
    uint8 type;
    octets value;
    int32 timeout;
  };
  std::vector<setting_request> setting_requests;
  // Interfaces and statuses of the answer, in order; without it the low end of each range with 0.
  std::optional<std::vector<std::pair<if_index_t, uint32>>> setting_results;
  std::optional<uint32> null_results;  // answers with this count and no list
  std::optional<std::vector<std::pair<if_index_t, uint32>>> results_in_spite_of_failure;  // a failing call leaves these
};

}  // namespace pmcli_test
