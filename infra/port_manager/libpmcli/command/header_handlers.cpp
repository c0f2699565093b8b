// The header handlers: which header a command id prints, for each kind of table.

#include <cstddef>

#include "command/frame.h"
#include "command/table_headers.h"
#include "platform/if_index.h"
#include "pmcli/displays.h"
#include "pmcli/headers.h"
#include "support/command_ids.h"

using namespace pmcli;

namespace {

// Whether the header is also printed when the command's first interface is a sub-interface.
enum class sub_interfaces { with, without };

struct header {
  void (*print)(cmd_rx_handle_t* rx);
  sub_interfaces first_is_sub_interface;
};

constexpr auto kWith = sub_interfaces::with;
constexpr auto kWithout = sub_interfaces::without;

// A framed header that no other table shares.
template <const auto& Lines>
void print_framed(cmd_rx_handle_t* rx) {
  print_framed_header(rx, Lines);
}

constexpr char kErrorsFormat[] = "%-8.8s %11s %11s %11s %11s %11s %11s\n";
constexpr char kTrafficFormat[] = "%-8.8s %19s %17s %16s %16s\n";
constexpr char kVlansFormat[] = "%-11.11s%s\n";

constexpr header_line kErrors1[] = {
    {kErrorsFormat, {"Port", "Align-Err", "FCS-Err", "Xmit-Err", "Rcv-Err", "UnderSize", "OutDiscards"}}};
constexpr header_line kErrors2[] = {
    {kErrorsFormat, {"Port", "Single-Col", "Multi-Col", "Late-Col", "Exces-Col", "Carri-Sen", "Runts"}}};
constexpr header_line kErrors3[] = {
    {kErrorsFormat, {"Port", "Giants", "SQETest-Err", "Deferred-Tx", "IntMacTx-Er", "IntMacRx-Er", "Symbol-Err"}}};
constexpr header_line kReceived[] = {
    {kTrafficFormat, {"Port", "InOctets", "InUcastPkts", "InMcastPkts", "InBcastPkts"}}};
constexpr header_line kSent[] = {
    {kTrafficFormat, {"Port", "OutOctets", "OutUcastPkts", "OutMcastPkts", "OutBcastPkts"}}};
constexpr header_line kAllowedVlans[] = {{kVlansFormat, {"Port", "Vlans Allowed on Trunk"}}};
constexpr header_line kForwardingVlans[] = {{kVlansFormat, {"Port", "STP Forwarding"}}};
constexpr header_line kErroredVlans[] = {{kVlansFormat, {"Port", "Vlans Err-disabled on Trunk"}}};
constexpr header_line kDebounce[] = {{"Port          Debounce time   Value(ms)\n", {}}};
constexpr header_line kFlowControl[] = {
    {"Port       Send FlowControl  Receive FlowControl  RxPause TxPause\n", {}},
    {"           admin    oper     admin    oper\n", {}},
};
constexpr header_line kIfIndex[] = {{"Port             IFMIB Ifindex (hex)\n", {}}};

constexpr command_ids<header> kCommonHeaders[] = {
    {DISPLAY_STATUS, {pm_cli_print_status_header, kWith}},
    {DISPLAY_COUNTERS_BRIEF, {pm_cli_print_eth_port_counters_brief_header, kWithout}},
    {DISPLAY_ERRORS_FIRST, {print_framed<kErrors1>, kWithout}},
    {DISPLAY_STORM_CONTROL, {pm_cli_print_ethernet_storm_ctrl_header, kWithout}},
    {DISPLAY_DEBOUNCE, {print_framed<kDebounce>, kWithout}},
    {DISPLAY_FLOW_CONTROL, {print_framed<kFlowControl>, kWithout}},
    {DISPLAY_STATUS_ADMIN_DOWN, {pm_cli_print_status_header, kWith}},
    {DISPLAY_ERROR_DISABLED, {pm_cli_print_eth_err_disabled_status_header, kWith}},
    {DISPLAY_STATUS_INACTIVE, DISPLAY_STATUS_UP, {pm_cli_print_status_header, kWith}},
    {DISPLAY_STATUS_OF_MODULE_32, {pm_cli_print_status_header, kWith}},
    {DISPLAY_FLOW_CONTROL_OF_MODULE, DISPLAY_FLOW_CONTROL_OF_MODULE_35, {print_framed<kFlowControl>, kWithout}},
    {DISPLAY_MAC_ADDRESS, {pm_cli_print_eth_mac_address_header, kWithout}},
    {DISPLAY_TRUNK_STATUS_37, DISPLAY_TRUNK_STATUS, {pm_cli_print_trunk_brief_status_header, kWithout}},
    {DISPLAY_TRUNK_ALLOWED_VLANS, {print_framed<kAllowedVlans>, kWithout}},
    {DISPLAY_TRUNK_FORWARDING_VLANS, {print_framed<kForwardingVlans>, kWithout}},
    {DISPLAY_RECEIVED, DISPLAY_RECEIVED_46, {print_framed<kReceived>, kWithout}},
    {DISPLAY_SENT, DISPLAY_SENT_49, {print_framed<kSent>, kWithout}},
    {DISPLAY_ERRORS_FIRST_OF_MODULE, DISPLAY_ERRORS_FIRST_OF_MODULE_51, {print_framed<kErrors1>, kWithout}},
    {DISPLAY_ERRORS_SECOND, DISPLAY_ERRORS_SECOND_54, {print_framed<kErrors2>, kWithout}},
    {DISPLAY_ERRORS_THIRD, DISPLAY_ERRORS_THIRD_57, {print_framed<kErrors3>, kWithout}},
    {DISPLAY_ERROR_STATUS, {pm_cli_print_eth_err_disabled_status_header, kWith}},
    {DISPLAY_ERRORS_FIRST_67, DISPLAY_ERRORS_FIRST_69, {print_framed<kErrors1>, kWithout}},
    {DISPLAY_ERRORS_SECOND_70, DISPLAY_ERRORS_SECOND_72, {print_framed<kErrors2>, kWithout}},
    {DISPLAY_ERRORS_THIRD_73, DISPLAY_ERRORS_THIRD_75, {print_framed<kErrors3>, kWithout}},
    {DISPLAY_RECEIVED_76, DISPLAY_RECEIVED_78, {print_framed<kReceived>, kWithout}},
    {DISPLAY_SENT_79, DISPLAY_SENT_81, {print_framed<kSent>, kWithout}},
    {DISPLAY_STORM_CONTROL_83, DISPLAY_STORM_CONTROL_84, {pm_cli_print_ethernet_storm_ctrl_header, kWithout}},
    {DISPLAY_TRUNK_STATUS_85, {pm_cli_print_trunk_brief_status_header, kWithout}},
    {DISPLAY_TRUNK_ALLOWED_VLANS_86, {print_framed<kAllowedVlans>, kWithout}},
    {DISPLAY_TRUNK_FORWARDING_VLANS_87, {print_framed<kForwardingVlans>, kWithout}},
    {DISPLAY_TRUNK_STATUS_88, {pm_cli_print_trunk_brief_status_header, kWithout}},
    {DISPLAY_TRUNK_ALLOWED_VLANS_89, {print_framed<kAllowedVlans>, kWithout}},
    {DISPLAY_TRUNK_FORWARDING_VLANS_90, {print_framed<kForwardingVlans>, kWithout}},
    {DISPLAY_TRUNK_STATUS_91, {pm_cli_print_trunk_brief_status_header, kWithout}},
    {DISPLAY_TRUNK_ALLOWED_VLANS_92, {print_framed<kAllowedVlans>, kWithout}},
    {DISPLAY_TRUNK_FORWARDING_VLANS_93, {print_framed<kForwardingVlans>, kWithout}},
    {DISPLAY_TRUNK_STATUS_94, {pm_cli_print_trunk_brief_status_header, kWithout}},
    {DISPLAY_TRUNK_ALLOWED_VLANS_95, {print_framed<kAllowedVlans>, kWithout}},
    {DISPLAY_TRUNK_FORWARDING_VLANS_96, {print_framed<kForwardingVlans>, kWithout}},
    {DISPLAY_TRUNK_ERRORED_VLANS, DISPLAY_TRUNK_ERRORED_VLANS_100, {print_framed<kErroredVlans>, kWithout}},
    {DISPLAY_ERRORED_VLAN_STATUS,
     DISPLAY_ERRORED_VLAN_STATUS_102,
     {pm_cli_print_eth_errored_vlan_status_header, kWith}},
    {DISPLAY_IF_INDEX, {print_framed<kIfIndex>, kWith}},
};

constexpr command_ids<header> kEthHeaders[] = {
    {DISPLAY_BRIEF, {pm_cli_print_eth_brief_header, kWith}},
    {DISPLAY_COUNTERS_BRIEF, {pm_cli_print_eth_port_counters_brief_header, kWithout}},
    {DISPLAY_TRUNK_COUNTERS, {pm_cli_show_port_counters_trunk_header, kWithout}},
    {DISPLAY_ERROR_STATUS, {pm_cli_print_eth_err_disabled_status_header, kWith}},
};

constexpr command_ids<header> kChannelHeaders[] = {
    {DISPLAY_DESCRIPTION, {pm_cli_print_description_header, kWith}},
    {DISPLAY_BRIEF, {pm_pcm_cli_print_eth_brief_header, kWith}},
    {DISPLAY_COUNTERS_BRIEF, {pm_cli_print_eth_port_counters_brief_header, kWithout}},
    {DISPLAY_TRUNK_COUNTERS, {pm_cli_show_port_counters_trunk_header, kWithout}},
    {DISPLAY_ERRORED_VLAN_STATUS_102, {pm_cli_print_eth_errored_vlan_status_header, kWith}},
};

constexpr command_ids<header> kLoopbackHeaders[] = {
    {DISPLAY_DESCRIPTION, {pm_cli_print_description_header, kWith}},
    {DISPLAY_BRIEF, {pm_cli_print_loop_brief_header, kWith}},
};

constexpr command_ids<header> kMgmtHeaders[] = {
    {DISPLAY_DESCRIPTION, {pm_cli_print_description_header, kWith}},
    {DISPLAY_BRIEF, {pm_cli_print_mgmt_brief_header_for_lumar, kWith}},
};

// The first interface that the command names, or 0.
if_index_t first_interface(const paraminfo_t* param) {
  if (param->parameter_count == 0) return 0;
  const param_arg_t* const argument = find_argument(param, 0);
  if (argument == nullptr) return 0;
  return static_cast<const intf_range_t*>(argument->arg)->range[0].lower_if_index;
}

void show_header(paraminfo_t* param, const header& found) {
  cmd_rx_handle_t* const rx = obtain_output(param);
  if (rx == nullptr) return;
  const bool is_skipped = found.first_is_sub_interface == kWithout && if_index_is_sub_intf(first_interface(param)) != 0;
  if (found.print != nullptr && !is_skipped) found.print(rx);
  cmd_prt_send(rx);
}

template <std::size_t Rows>
uint32 show_header(paraminfo_t* param, const command_ids<header> (&rows)[Rows]) {
  if (param != nullptr) show_header(param, find_action(rows, param->command_id, header{nullptr, kWith}));
  return 0;
}

}  // namespace

uint32 pm_cli_show_common_header(paraminfo_t* param) { return show_header(param, kCommonHeaders); }

uint32 pm_cli_show_eth_header(paraminfo_t* param) { return show_header(param, kEthHeaders); }

uint32 pm_pcm_cli_show_header(paraminfo_t* param) { return show_header(param, kChannelHeaders); }

uint32 pm_cli_show_loopback_header(paraminfo_t* param) { return show_header(param, kLoopbackHeaders); }

uint32 pm_cli_show_mgmt_header(paraminfo_t* param) { return show_header(param, kMgmtHeaders); }

uint32 pm_cli_show_inband_header(paraminfo_t* param) {
  if (param != nullptr && param->command_id == DISPLAY_BRIEF) pm_cli_print_inband_brief_header();
  return 0;
}
