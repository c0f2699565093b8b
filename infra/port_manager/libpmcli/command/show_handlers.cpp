// The show handlers of each kind of interface.

#include <cstdio>
#include <optional>

#include "command/frame.h"
#include "counters/loopback_lists.h"
#include "interface/port_record.h"
#include "platform/if_index.h"
#include "platform/vlan_manager.h"
#include "pmcli/command.h"
#include "pmcli/counters.h"
#include "pmcli/displays.h"
#include "pmcli/interface.h"
#include "pmcli/vlan.h"
#include "support/chassis.h"
#include "support/command_ids.h"
#include "support/scope.h"
#include "support/text.h"

using namespace pmcli;

namespace {

enum class eth_action { info, nothing, counters_brief, of_module, of_vlans };

constexpr command_ids<eth_action> kEthActions[] = {
    {DISPLAY_COUNTERS_BRIEF, eth_action::counters_brief},
    {DISPLAY_STATUS_OF_MODULE, eth_action::of_module},
    {DISPLAY_STATUS_OF_MODULE_32, eth_action::of_module},
    {DISPLAY_TRUNK_DETAIL_OF_MODULE, eth_action::of_module},
    {DISPLAY_TRUNK_DETAIL_OF_MODULE_33, eth_action::of_module},
    {DISPLAY_TRUNK_DETAIL_OF_VLANS, eth_action::of_vlans},
    {DISPLAY_FLOW_CONTROL_OF_MODULE, DISPLAY_FLOW_CONTROL_OF_MODULE_35, eth_action::of_module},
    {DISPLAY_NOTHING_OF_MODULE_42, DISPLAY_NOTHING_OF_MODULE_43, eth_action::of_module},
    {DISPLAY_ERRORS_FIRST_OF_MODULE, DISPLAY_ERRORS_FIRST_OF_MODULE_51, eth_action::of_module},
    {DISPLAY_NOTHING_8, eth_action::nothing},
    {DISPLAY_NOTHING_14, DISPLAY_NOTHING_15, eth_action::nothing},
    {DISPLAY_NOTHING_82, eth_action::nothing},
    {DISPLAY_NOTHING_105, DISPLAY_NOTHING_106, eth_action::nothing},
};

enum class mgmt_action { ethernet, info, counters, nothing };

constexpr command_ids<mgmt_action> kMgmtActions[] = {
    {DISPLAY_DETAIL, mgmt_action::info},
    {DISPLAY_BRIEF, mgmt_action::info},
    {DISPLAY_COUNTERS, mgmt_action::counters},
    {DISPLAY_ERRORS_FIRST, mgmt_action::counters},
    {DISPLAY_RECEIVED, mgmt_action::counters},
    {DISPLAY_SENT, mgmt_action::counters},
    {DISPLAY_ERRORS_SECOND, mgmt_action::counters},
    {DISPLAY_ERRORS_THIRD, mgmt_action::counters},
    {DISPLAY_COUNTERS_NONZERO, mgmt_action::counters},
    {DISPLAY_COUNTERS_ALL, mgmt_action::counters},
    {6, mgmt_action::nothing},
    {8, 11, mgmt_action::nothing},
    {14, mgmt_action::nothing},
    {19, 20, mgmt_action::nothing},
    {22, 23, mgmt_action::nothing},
    {27, mgmt_action::nothing},
    {29, 35, mgmt_action::nothing},
    {38, 40, mgmt_action::nothing},
    {42, 43, mgmt_action::nothing},
    {45, 46, mgmt_action::nothing},
    {48, 51, mgmt_action::nothing},
    {53, 54, mgmt_action::nothing},
    {56, 57, mgmt_action::nothing},
    {62, 102, mgmt_action::nothing},
    {104, mgmt_action::nothing},
};

enum class loopback_action { info, nothing, not_available, counters_brief, counters_nonzero, counters_all };

constexpr command_ids<loopback_action> kLoopbackActions[] = {
    {DISPLAY_COUNTERS, loopback_action::not_available},
    {DISPLAY_UNSUPPORTED_61, loopback_action::not_available},
    {DISPLAY_COUNTERS_BRIEF, loopback_action::counters_brief},
    {DISPLAY_COUNTERS_NONZERO, loopback_action::counters_nonzero},
    {DISPLAY_COUNTERS_ALL, loopback_action::counters_all},
    {6, loopback_action::nothing},
    {8, 10, loopback_action::nothing},
    {13, 14, loopback_action::nothing},
    {18, 19, loopback_action::nothing},
    {22, 23, loopback_action::nothing},
    {25, loopback_action::nothing},
    {27, loopback_action::nothing},
    {29, 36, loopback_action::nothing},
    {38, 40, loopback_action::nothing},
    {42, 57, loopback_action::nothing},
    {62, 102, loopback_action::nothing},
    {104, 106, loopback_action::nothing},
};

constexpr command_id_range kNotForSubInterfaces[] = {{3, 3},   {6, 10},  {13, 15}, {18, 20}, {22, 23}, {29, 31},
                                                     {33, 36}, {38, 40}, {42, 57}, {61, 61}, {64, 84}, {105, 106}};

// A running command on one interface.
struct shown_interface {
  paraminfo_t* param;
  if_index_t if_index;
  cmd_rx_handle_t* rx;

  mts_q_handle_t q() const { return param->q; }
  uint32 command() const { return param->command_id; }
};

// The interface of a per-interface command.
std::optional<if_index_t> named_interface(const paraminfo_t* param) {
  const param_arg_t* const argument = find_argument(param, 0);
  if (argument == nullptr) return std::nullopt;
  return argument_value<if_index_t>(*argument);
}

void show_info(const shown_interface& shown) {
  pm_cli_show_eth_port_info(shown.rx, shown.q(), shown.command(), shown.if_index);
}

// Whether the port sits in the module that argument 1 names; modules count from 1, slots from 0.
bool in_named_module(const shown_interface& shown) {
  const param_arg_t* const argument = find_argument(shown.param, 1);
  if (argument == nullptr || argument->type != PARAM_TYPE_UINT32) return false;
  uint32 slot = 0;
  if (if_index_get_slot(shown.if_index, &slot) != 0) return false;
  return slot + 1 == argument_value<uint32>(*argument);
}

// Trunking membership of the port; nothing is printed when it is unavailable.
std::optional<trunk_port_memb_t> find_membership(const shown_interface& shown) {
  const service_library vlan_manager(VLAN_MGR_LIBRARY, RTLD_LAZY);
  if (!vlan_manager) return std::nullopt;
  trunk_port_memb_t membership{};
  if (pm_cli_get_vlan_memb_info(vlan_manager.handle(), shown.q(), shown.if_index, &membership) != 0)
    return std::nullopt;
  return membership;
}

// Whether the port's native VLAN is in the list that argument 1 names.
bool in_named_vlans(const shown_interface& shown) {
  const param_arg_t* const argument = find_argument(shown.param, 1);
  if (argument == nullptr || argument->type != PARAM_TYPE_INT_RANGES) return false;
  const std::optional<trunk_port_memb_t> membership = find_membership(shown);
  if (!membership) return false;
  const auto* const vlans = static_cast<const vsh_int_multi_range_t*>(argument->arg);
  const uint32 native = membership->native_trunk.vlan_id;
  for (uint32 i = 0; i < vlans->range_count && i < PARAM_MAX_RANGES; ++i)
    if (native >= vlans->range[i].lower_int && native <= vlans->range[i].upper_int) return true;
  return false;
}

void show_eth(const shown_interface& shown) {
  switch (find_action(kEthActions, shown.command(), eth_action::info)) {
    case eth_action::info: return show_info(shown);
    case eth_action::nothing: return;
    case eth_action::counters_brief:
      return pm_cli_show_eth_port_counters_brief(shown.rx, shown.q(), shown.if_index, shown.param->user_mode_state);
    case eth_action::of_module:
      if (in_named_module(shown)) show_info(shown);
      return;
    case eth_action::of_vlans:
      if (in_named_vlans(shown)) show_info(shown);
      return;
  }
}

uint32 show_mgmt(const shown_interface& shown) {
  switch (find_action(kMgmtActions, shown.command(), mgmt_action::ethernet)) {
    case mgmt_action::ethernet: return pm_cli_show_eth_port_config(shown.param);
    case mgmt_action::info:
      return static_cast<uint32>(pm_cli_show_mgmt_info(shown.rx, shown.q(), shown.command(), shown.if_index));
    case mgmt_action::counters:
      return static_cast<uint32>(pm_cli_show_mgmt_counters(shown.rx, shown.q(), shown.command(), shown.if_index));
    case mgmt_action::nothing: break;
  }
  return 0;
}

void show_loopback_nonzero(const shown_interface& shown) {
  ip_if_stats stats{};
  pm_cli_get_loopback_counters(shown.if_index, shown.q(), &stats);  // a failed fetch leaves zeros: nothing to show
  print_loopback_nonzero(shown.rx, stats, shown.if_index);
}

// The block fetches its own counters, so an unreachable provider is reported twice, which is intended.
void show_loopback_brief(const shown_interface& shown) {
  ip_if_stats stats{};
  pm_cli_get_loopback_counters(shown.if_index, shown.q(), &stats);
  pm_cli_show_loopback_port_counters(shown.rx, shown.q(), shown.if_index);
}

void show_loopback_all(const shown_interface& shown) {
  ip_if_stats stats{};
  pm_cli_get_loopback_counters(shown.if_index, shown.q(), &stats);  // a failed fetch shows zeros
  pm_cli_show_loopback_counters_detailed_all(shown.rx, &stats, shown.if_index);
}

void show_loopback(const shown_interface& shown) {
  switch (find_action(kLoopbackActions, shown.command(), loopback_action::info)) {
    case loopback_action::info:
      return pm_cli_show_loopback_port_info(shown.rx, shown.q(), shown.command(), shown.if_index);
    case loopback_action::nothing: return;
    case loopback_action::not_available:
      std::printf("This information is not available for %s\n", interface_name(shown.if_index).text);
      return;
    case loopback_action::counters_brief: return show_loopback_brief(shown);
    case loopback_action::counters_nonzero: return show_loopback_nonzero(shown);
    case loopback_action::counters_all: return show_loopback_all(shown);
  }
}

// The kinds of interface whose traffic lines the Ethernet-switch family declines.
constexpr interface_mask_t kDeclinedMasks[] = {IF_MASK_PORT_CHANNEL, IF_MASK_ETH_PORT_CHANNEL, IF_MASK_VETHERNET};

bool is_declined(uint32 chassis_type, interface_mask_t mask) {
  if (!is_eth_switch_chassis(chassis_type)) return false;
  for (const interface_mask_t declined : kDeclinedMasks)
    if (mask == declined) return true;
  return false;
}

}  // namespace

int32 pm_cli_subinterface_supported(uint32 command_id) { return holds(kNotForSubInterfaces, command_id) ? 0 : 1; }

uint32 pm_cli_show_eth_port_config(paraminfo_t* param) {
  if (param == nullptr || refused_on_standby(param)) return 0;
  const std::optional<if_index_t> if_index = named_interface(param);
  if (!if_index) return 0;
  if (if_index_is_sub_intf(*if_index) && pm_cli_subinterface_supported(param->command_id) == 0) return 0;
  cmd_rx_handle_t* const rx = obtain_output(param);
  if (rx == nullptr) return 0;
  show_eth({param, *if_index, rx});
  cmd_prt_send(rx);
  return 0;
}

uint32 pm_cli_show_sat_eth_port_config(paraminfo_t* param) {
  pm_cli_show_eth_port_config(param);
  return 0;
}

uint32 pm_cli_show_mgmt_port_config(paraminfo_t* param) {
  if (param == nullptr || refused_on_standby(param)) return 0;
  const std::optional<if_index_t> if_index = named_interface(param);
  if (!if_index) return 0;
  cmd_rx_handle_t* const rx = obtain_output(param);
  if (rx == nullptr) return 0;
  return show_mgmt({param, *if_index, rx});  // the displays flush; a display of nothing does not
}

uint32 pm_cli_show_loopback_config(paraminfo_t* param) {
  if (param == nullptr || refused_on_standby(param)) return 0;
  const std::optional<if_index_t> if_index = named_interface(param);
  if (!if_index) return 0;
  cmd_rx_handle_t* const rx = obtain_output(param);
  if (rx == nullptr) return 0;
  show_loopback({param, *if_index, rx});
  cmd_prt_send(rx);
  return 0;
}

uint32 pm_cli_show_eth_stat_info(paraminfo_t* param) {
  if (param == nullptr) return 0;
  const uint32 chassis_type = read_chassis_type();
  const param_arg_t* const argument = find_argument(param, 0);
  if (argument == nullptr) return 0;
  cmd_rx_handle_t* const rx = obtain_output(param);
  if (rx == nullptr) return 0;
  if (param->command_id != DISPLAY_DETAIL || is_declined(chassis_type, argument->interface_mask)) return 0;
  pm_show_eth_stat_info(rx, param->q, 1, argument_value<if_index_t>(*argument));
  return 0;
}

void pm_show_eth_stat_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, int32 option, if_index_t if_index) {
  const heap_block<pm_port_info_t> record = fetch_port_record(q, if_index);
  if (record == nullptr) return;
  if (option != 1) {
    std::puts("Option not supported");
    return;
  }
  print_eth_stat_info(rx_handle, q, record.get());
}
