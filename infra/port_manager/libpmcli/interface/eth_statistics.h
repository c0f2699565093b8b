// Statistics of an interface, with its rates, from the service that owns it.
#pragma once

#include "platform/eth_statistics.h"
#include "platform/if_index.h"

namespace pmcli {

// From the port-channel service for the older family of channels, from the port manager for all others. False when they
// are unavailable.
inline bool fetch_eth_statistics(mts_q_handle_t q, if_index_t if_index, if_index_type_t type,
                                 show_eth_intf_resp_t* statistics) {
  const int32 error = type == IF_TYPE_PORT_CHANNEL ? pm_port_channel_get_clear_eth_stats(q, if_index, 1, statistics)
                                                   : pm_get_clear_eth_stats(q, if_index, if_index, 1, statistics);
  return error == 0;
}

}  // namespace pmcli
