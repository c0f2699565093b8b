#include "command/table_headers.h"

#include <cstdio>

#include "pmcli/headers.h"

using namespace pmcli;

namespace {

constexpr std::size_t kLineBytes = 90;

// Rules of 80 and of 79 dashes. From the second character on there is no empty line before them.
constexpr char kRule[] =
    "\n"
    "--------------------------------------------------------------------------------\n";
constexpr char kShortRule[] =
    "\n"
    "-------------------------------------------------------------------------------\n";
static_assert(sizeof kRule == 1 + 80 + 2 && sizeof kShortRule == 1 + 79 + 2);

void print_lines(cmd_rx_handle_t* rx, std::span<const header_line> lines) {
  for (const auto& [format, labels] : lines) {
    char line[kLineBytes];
    std::snprintf(line, sizeof line, format, labels[0], labels[1], labels[2], labels[3], labels[4], labels[5],
                  labels[6], labels[7]);
    cmd_prt(rx, line);
  }
}

constexpr header_line kEthBrief[] = {
    {"%-25.25s%-11.11s%-18.18s%-9.9s%-6.6s%s\n", {"Interface", "Status", "IP Address", "Speed", "MTU", "Port"}},
    {"%-25.25s%-11.11s%-18.18s%-9.9s%-6.6s%s\n", {"", "", "", "", "", "Channel"}},
};

// The seventh field is 7 characters wide in the first line and 8 in the second, which is intended.
constexpr header_line kChannelBrief[] = {
    {"%-13.13s%-6.6s%-5.5s%-7.7s%-8.8s%-26.26s%-7.7s%s\n",
     {"Port-channel", "VLAN", "Type", "Mode", "Status", "Reason", "Speed", "Protocol"}},
    {"%-13.13s%-6.6s%-5.5s%-7.7s%-8.8s%-26.26s%-8.8s%s\n", {"Interface", "", "", "", "", "", "", ""}},
};

constexpr header_line kErrDisabledStatus[] = {{"%-11.11s%-19.19s%-9.9s%s\n", {"Port", "Name", "Status", "Reason"}}};

constexpr header_line kErroredVlanStatus[] = {
    {"%-11.11s%-19.19s%-11.11s%s\n", {"Port", "Name", "Err-Vlans", "Status"}}};

constexpr header_line kTrunkCounters[] = {
    {"%-13.13s%16s%16s%16s\n", {"Port", "TrunkFramesTx", "TrunkFramesRx", "WrongEncap"}}};

constexpr header_line kMgmtBrief[] = {
    {"%-7.7s%-13.13s%-7.7s%-40.40s%-9.9s%s\n", {"Port", "VRF", "Status", "IP Address", "Speed", "MTU"}}};

constexpr header_line kLoopbackBrief[] = {{"%-14.14s%-11.11s%s\n", {"Interface", "Status", "Description"}}};

constexpr header_line kStatus[] = {
    {"%-15.15s%-19.19s%-9.9s%-10.10s%-8.8s%-8.8s%s\n", {"Port", "Name", "Status", "Vlan", "Duplex", "Speed", "Type"}}};

constexpr header_line kMacAddress[] = {{"%-27.27s%-16.16s%s\n", {"Interface", "Mac-Address", "Burn-in Mac-Address"}}};

constexpr header_line kStormControl[] = {{"%-11.11s%-17.17s%-17.17s%-17.17s%s\n",
                                          {"Port", "UcastSupp %", "McastSupp %", "BcastSupp %", "TotalSuppDiscards"}}};

constexpr header_line kTrunkStatus[] = {
    {"%-11.11s%-8.8s%-14.14s%s\n", {"Port", "Native", "Status", "Port"}},
    {"%-11.11s%-8.8s%-14.14s%s\n", {"", "Vlan", "", "Channel"}},
};

constexpr header_line kCountersBrief[] = {
    {"Interface              Input (rate is 1 min avg)  Output (rate is 1 min avg)\n", {}},
    {"                       -------------------------  -----------------------------\n", {}},
    {"                       Rate     Total             Rate     Total\n", {}},
    {"                       MB/s     Frames            MB/s     Frames\n", {}},
};

constexpr header_line kDescription[] = {{"%-25.25s%-55.55s\n", {"Interface", "Description"}}};

}  // namespace

void pmcli::print_framed_header(cmd_rx_handle_t* rx, std::span<const header_line> lines) {
  cmd_prt(rx, kRule);
  print_lines(rx, lines);
  cmd_prt(rx, kRule + 1);
}

void pmcli::print_short_header(cmd_rx_handle_t* rx, std::span<const header_line> lines) {
  cmd_prt(rx, kShortRule);
  print_lines(rx, lines);
  cmd_prt(rx, kShortRule + 1);
}

void pm_cli_print_eth_brief_header(cmd_rx_handle_t* rx_handle) { print_framed_header(rx_handle, kEthBrief); }

void pm_pcm_cli_print_eth_brief_header(cmd_rx_handle_t* rx_handle) { print_framed_header(rx_handle, kChannelBrief); }

void pm_cli_print_eth_err_disabled_status_header(cmd_rx_handle_t* rx_handle) {
  print_framed_header(rx_handle, kErrDisabledStatus);
}

void pm_cli_print_eth_errored_vlan_status_header(cmd_rx_handle_t* rx_handle) {
  print_framed_header(rx_handle, kErroredVlanStatus);
}

void pm_cli_show_port_counters_trunk_header(cmd_rx_handle_t* rx_handle) {
  print_framed_header(rx_handle, kTrunkCounters);
}

void pm_cli_print_mgmt_brief_header_for_lumar(cmd_rx_handle_t* rx_handle) {
  print_framed_header(rx_handle, kMgmtBrief);
}

void pm_cli_print_loop_brief_header(cmd_rx_handle_t* rx_handle) { print_framed_header(rx_handle, kLoopbackBrief); }

void pm_cli_print_status_header(cmd_rx_handle_t* rx_handle) { print_framed_header(rx_handle, kStatus); }

void pm_cli_print_eth_mac_address_header(cmd_rx_handle_t* rx_handle) { print_framed_header(rx_handle, kMacAddress); }

void pm_cli_print_ethernet_storm_ctrl_header(cmd_rx_handle_t* rx_handle) {
  print_framed_header(rx_handle, kStormControl);
}

void pm_cli_print_trunk_brief_status_header(cmd_rx_handle_t* rx_handle) {
  print_framed_header(rx_handle, kTrunkStatus);
}

void pm_cli_print_eth_port_counters_brief_header(cmd_rx_handle_t* rx_handle) {
  print_short_header(rx_handle, kCountersBrief);
}

// Flushes by itself, which is intended.
void pm_cli_print_description_header(cmd_rx_handle_t* rx_handle) {
  print_short_header(rx_handle, kDescription);
  cmd_prt_send(rx_handle);
}

// On the terminal, not through the output channel.
void pm_cli_print_inband_brief_header(void) {
  std::fputs(kShortRule + 1, stdout);
  std::puts("Interface                Status                            Speed");
  std::puts("                                                           (Gbps)");
  std::fputs(kShortRule + 1, stdout);
}
