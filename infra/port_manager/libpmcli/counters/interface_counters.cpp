// Rates of a port in brief, and the blocks of counters of one interface.

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "interface/eth_statistics.h"
#include "interface/management.h"
#include "platform/if_index.h"
#include "pmcli/counters.h"
#include "pmcli/interface.h"
#include "support/kind.h"
#include "support/print.h"
#include "support/text.h"

using namespace pmcli;

namespace {

// A line of at most 99 characters, built from fields. A field begins at its column, or where a longer one before it
// ends.
class column_line {
 public:
  void pad_to(std::size_t column) {
    while (length_ < column) text_[length_++] = ' ';
  }

  [[gnu::format(printf, 2, 3)]] void append(const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    const int added = std::vsnprintf(text_ + length_, sizeof text_ - length_, format, values);
    va_end(values);
    if (added > 0) length_ = std::min(length_ + static_cast<std::size_t>(added), sizeof text_ - 1);
  }

  const char* text() const { return text_; }

 private:
  char text_[100] = "";
  std::size_t length_ = 0;
};

// As printf takes it.
unsigned long long mega(uint64 value) { return value / 1'000'000; }

void print_rates(cmd_rx_handle_t* rx, if_index_t if_index, show_eth_intf_resp_t* statistics) {
  uint64 in_bits = 0, out_bits = 0, in_bytes = 0, out_bytes = 0;
  uint32 in_frames = 0, out_frames = 0;
  pm_cli_eth_intf_get_rate_stuff(statistics, &in_bits, &out_bits, &in_frames, &out_frames, &in_bytes, &out_bytes);

  column_line line;
  line.append("%s", interface_name(if_index).text);
  line.pad_to(23);
  line.append("%llu", mega(in_bits));
  line.pad_to(32);
  line.append("%u", in_frames);
  line.pad_to(50);
  line.append("%llu", mega(out_bits));
  line.pad_to(59);
  line.append("%u", out_frames);
  line.append("\n");
  print_untagged(rx, "%s", line.text());
}

void show_management(cmd_rx_handle_t* rx, if_index_t if_index) {
  print_if_index(rx, "%s\n", tag::interface, if_index);
  show_management_counters(rx, if_index);
}

}  // namespace

void pm_cli_show_eth_port_counters_brief(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, if_index_t if_index,
                                         vsh_user_mode_state_t user_mode) {
  const if_index_type_t type = kind_of(if_index);
  if (type != IF_TYPE_ETHERNET && type != IF_TYPE_PORT_CHANNEL && type != IF_TYPE_ETH_PORT_CHANNEL) return;
  if (user_mode == VSH_USER_MODE_RESTRICTED) {
    std::puts("    Counters not available");
    return;
  }
  show_eth_intf_resp_t statistics{};
  if (fetch_eth_statistics(q, if_index, type, &statistics)) print_rates(rx_handle, if_index, &statistics);
}

void pm_cli_show_eth_port_stats(cmd_rx_handle_t* rx_handle, show_eth_intf_resp_t* stats, if_index_t if_index) {
  print_if_index(rx_handle, "%s\n\n", tag::interface, if_index);
  pm_cli_eth_intf_stats_print(rx_handle, stats, 1);
}

void pm_cli_show_eth_port_counters(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, if_index_t if_index) {
  const if_index_type_t type = kind_of(if_index);
  if (type == IF_TYPE_MGMT) return show_management(rx_handle, if_index);
  if (type != IF_TYPE_ETHERNET && type != IF_TYPE_PORT_CHANNEL) return;
  show_eth_intf_resp_t statistics{};
  if (fetch_eth_statistics(q, if_index, type, &statistics)) {
    pm_cli_show_eth_port_stats(rx_handle, &statistics, if_index);
    return;
  }
  if (type == IF_TYPE_PORT_CHANNEL)
    std::puts("No counters available.");  // for a port nothing is printed, which is intended
}

void pm_cli_show_loopback_port_counters(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, if_index_t if_index) {
  ip_if_stats statistics{};
  pm_cli_get_loopback_counters(if_index, q, &statistics);  // a failed fetch shows zeros
  print_if_index(rx_handle, "%s\n", tag::interface, if_index);
  pm_cli_loopback_intf_stats_print(rx_handle, &statistics, 1);
}
