// Long lists, one counter a line.

#include <cstdio>

#include "platform/cmd_channel.h"
#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

namespace {

void print_nonzero(cmd_rx_handle_t* rx, uint64 value, const char* label, int tuple) {
  if (value == 0) return;
  char format[80];
  std::snprintf(format, sizeof format, "  %-35.35s%%20s\n", label);
  print_counter(rx, format, static_cast<uint32>(tuple), value);
}

}  // namespace

void nzero_prt(cmd_rx_handle_t* rx_handle, const uint64* value, const char* desc, int tuple) {
  print_nonzero(rx_handle, *value, desc, tuple);
}

void nzero_prt_uint32(cmd_rx_handle_t* rx_handle, const uint32* value, const char* desc, int tuple) {
  print_nonzero(rx_handle, *value, desc, tuple);
}

// Prints nothing yet: the list comes with the counter displays.
void pm_cli_show_common_eth_counters_detailed(cmd_rx_handle_t*, pfstat_key_cntrs_t*, statscl_portcl_stats_msg_t*) {}

// Prints nothing yet: the list comes with the counter displays.
void pm_cli_show_loopback_counters_detailed_all(cmd_rx_handle_t*, ip_if_stats*, if_index_t) {}

// Prints nothing yet, but ends as it will: flushed. The views come with the counter displays.
int32 pm_cli_show_mgmt_counters(cmd_rx_handle_t* rx_handle, mts_q_handle_t, uint32, if_index_t) {
  cmd_prt_send(rx_handle);
  return 0;
}
