// Trunks: a row for each port in the tables of trunks, and the VLAN lines of detailed views.

#include "platform/port_channel.h"
#include "pmcli/command.h"
#include "pmcli/vlan.h"
#include "support/id_set.h"
#include "support/print.h"
#include "support/scope.h"
#include "support/text.h"

using namespace pmcli;

namespace {

constexpr uint32 kWholeText = 8192, kShortText = 100;  // longest texts of VLANs

bool is_trunking(const pm_port_info_t& port) { return port.oper_port_mode == PM_PORT_MODE_TRUNK; }

// The text of a VLAN set, cut at `Longest` characters.
template <uint32 Longest>
struct vlan_text {
  explicit vlan_text(const vlan_bitset_t* vlans) { vlan_bitmap_string_or_none(text, Longest, vlans); }
  char text[Longest + 1] = {};
};

void print_name(cmd_rx_handle_t* rx, const pm_port_info_t& port) {
  print_if_index(rx, "%-10.10s ", tag::trunk_interface, port.if_index);
}

void print_native_vlan(cmd_rx_handle_t* rx, if_index_t if_index) {
  vlan_id_t vlan = 0;
  if (pm_cli_get_native_vlan(if_index, &vlan) == 0)
    print_u32(rx, "%-7.7s ", tag::trunk_native_vlan, vlan);
  else
    cmd_prt(rx, "--      ");
}

struct trunk_status {
  char text[24];
  char channel[12];
};

trunk_status status_of(const pm_port_info_t& port) {
  trunk_status status;
  port_channel_info_t info{};
  const bool is_member = get_port_channel_info(port.if_index, &info) == 0 && info.if_index != 0U;
  const char* const in_channel = is_trunking(port) ? "trnk-bndl" : "notrnk-bndl";
  const char* const alone = is_trunking(port) ? "trunking" : "not-trunking";
  copy_text(status.text, sizeof status.text, is_member ? in_channel : alone);
  copy_text(status.channel, sizeof status.channel, "--");
  if (is_member) snprintf_if_index_short(status.channel, sizeof status.channel, info.if_index);
  return status;
}

}  // namespace

void pm_cli_print_eth_trunk_brief(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info, mts_q_handle_t) {
  cmd_print_short(rx_handle);
  print_name(rx_handle, *port_info);
  print_native_vlan(rx_handle, port_info->if_index);
  const trunk_status status = status_of(*port_info);
  print_text(rx_handle, "%-13.13s ", tag::trunk_status, status.text);
  print_text(rx_handle, "%s\n", tag::trunk_port_channel, status.channel);
}

void pm_cli_print_eth_trunk_allowed_vlans(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                          mts_q_handle_t q) {
  trunk_port_memb_t membership{};
  {
    const service_library library(VLAN_MGR_LIBRARY, RTLD_LAZY);
    if (!library) return;
    if (pm_cli_get_vlan_memb_info(library.handle(), q, port_info->if_index, &membership) != 0) return;
  }
  const vlan_text<kWholeText> vlans(&membership.allowed_vlan_list);
  cmd_print_short(rx_handle);
  print_name(rx_handle, *port_info);
  print_text(rx_handle, "%s\n", tag::trunk_allowed_vlans, vlans.text);
}

void pm_cli_print_eth_trunk_errored_vlans(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                          const vlan_bitset_t* vlans) {
  const vlan_text<kWholeText> errored(vlans);
  cmd_print_short(rx_handle);
  print_name(rx_handle, *port_info);
  print_text(rx_handle, "%s\n", tag::trunk_errored_vlans, errored.text);
}

void pm_cli_print_eth_trunk_stp_forwarding(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                           mts_q_handle_t q) {
  vlan_bitset_t forwarding = empty_set();
  cmd_print_short(rx_handle);
  print_name(rx_handle, *port_info);
  if (pm_cli_get_stp_forwarding_info(port_info->if_index, q, &forwarding) == 0)
    print_text(rx_handle, "%s\n", tag::trunk_forwarding_vlans, vlan_text<kWholeText>(&forwarding).text);
  else
    print_text(rx_handle, "%s\n", tag::trunk_forwarding_vlans, "--");
}

// A long list is cut in this line: intended.
void print_vlan_memb_info(cmd_rx_handle_t* rx_handle, const trunk_port_memb_t* membership) {
  print_u32(rx_handle, "    Native Vlan: %s\n", tag::trunk_native_vlan, membership->native_trunk.vlan_id);
  print_text(rx_handle, "    Allowed Vlans: %s\n", tag::trunk_allowed_vlans,
             vlan_text<kShortText>(&membership->allowed_vlan_list).text);
}

void print_allowed_vlan_info(cmd_rx_handle_t* rx_handle, const trunk_port_memb_t* membership) {
  print_text(rx_handle, "  Trunking VLANs Enabled: %s\n", tag::trunk_enabled_vlans,
             vlan_text<kWholeText>(&membership->allowed_vlan_list).text);
}
