// The port manager's transceivers and their diagnostics.
#pragma once

#include <map>
#include <optional>

#include "platform/transceiver.h"
#include "support/recorded/octets.h"

namespace pmcli_test {

struct recorded_transceiver {
  std::map<if_index_t, pm_fcot_res_t> transceivers;
  std::optional<octets> transceiver_block;                    // takes the place of `transceivers`
  std::optional<uint32> transceiver_length;                   // takes the place of the block's length
  std::map<if_index_t, mts_get_sfp_diag_info_t> diagnostics;  // without an entry: PM_ERR_SFP_NO_DIAGNOSTICS
};

}  // namespace pmcli_test
