// Statistics records of every kind, filled from the model's counters.
#pragma once

#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "switch/model.h"

namespace host {

statscl_portcl_stats_msg_t port_statistics_record(const interface& port);
show_eth_intf_resp_t eth_statistics_record(const interface& port);
ip_if_stats ip_statistics_record(const interface& port);
pm_if_stat interface_counters_record(const interface& port);

}  // namespace host
