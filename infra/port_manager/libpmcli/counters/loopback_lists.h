// The list of a loopback's counters that are not 0.
#pragma once

#include "platform/cmd_channel.h"
#include "platform/ip_statistics.h"

namespace pmcli {

// Under the interface's name; prints nothing at all when every counter of the list is 0.
void print_loopback_nonzero(cmd_rx_handle_t* rx, const ip_if_stats& stats, if_index_t if_index);

}  // namespace pmcli
