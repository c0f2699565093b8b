#include "source/kernel/settings.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/if_bridge.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "base/port_status.h"
#include "platform/port_manager.h"
#include "settings/settings.h"
#include "source/kernel/ethtool.h"
#include "source/kernel/identify.h"

namespace host {
namespace {

uint32 status_of(int error, const std::string& reason) {
  if (error == 0) return 0;
  if (!reason.empty()) return status_of_text(reason);
  if (error == EPERM || error == EACCES) return kPortStatusNoRight;
  return status_of_text(std::strerror(error));
}

// ---- Links ----------------------------------------------------------------------------------------------------------

netlink_request link_request(uint32 number, uint32 flags = 0, uint32 changed_flags = 0) {
  netlink_request request(RTM_NEWLINK, NLM_F_ACK);
  auto& head = request.extra<ifinfomsg>();
  head.ifi_family = AF_UNSPEC;
  head.ifi_index = static_cast<int>(number);
  head.ifi_flags = flags;
  head.ifi_change = changed_flags;
  return request;
}

uint32 set_state(const setting_target& target, const port_settings& requested, const port_settings&) {
  const bool is_up = requested.admin_state == PM_PORT_STATE_UP;
  netlink_request request = link_request(target.number, is_up ? uint32{IFF_UP} : 0, IFF_UP);
  return send_link_request(request);
}

uint32 set_alias(const setting_target& target, const port_settings& requested, const port_settings&) {
  netlink_request request = link_request(target.number);
  mnl_attr_put(&request.head(), IFLA_IFALIAS, requested.description.size(), requested.description.data());
  return send_link_request(request);
}

uint32 set_mtu(const setting_target& target, const port_settings& requested, const port_settings&) {
  netlink_request request = link_request(target.number);
  mnl_attr_put_u32(&request.head(), IFLA_MTU, requested.mtu_bytes.value_or(0));
  return send_link_request(request);
}

uint32 set_bond(const setting_target& target, const port_settings&, const port_settings&) {
  netlink_request request = link_request(target.number);
  mnl_attr_put_u32(&request.head(), IFLA_MASTER, target.bond);
  return send_link_request(request);
}

// ---- VLANs of a port of a bridge ------------------------------------------------------------------------------------

struct port_vlan {
  uint16 id;
  uint16 flags;  // BRIDGE_VLAN_INFO_*
};

std::vector<port_vlan> vlans_of(const port_settings& settings) {
  constexpr uint16 kUntagged = BRIDGE_VLAN_INFO_PVID | BRIDGE_VLAN_INFO_UNTAGGED;
  if (settings.admin_mode != PM_PORT_MODE_TRUNK && settings.access_vlan.value_or(0) == 0) return {};
  if (settings.admin_mode != PM_PORT_MODE_TRUNK) return {{*settings.access_vlan, kUntagged}};
  std::vector<port_vlan> vlans;
  for (const uint16 id : settings.allowed_vlans)
    vlans.push_back({id, id == settings.native_vlan ? kUntagged : uint16{0}});
  return vlans;
}

// Consecutive VLANs with the same flags are sent as the two ends of a range.
void put_vlans(nlmsghdr& message, const std::vector<port_vlan>& vlans) {
  const auto put = [&message](const port_vlan& vlan, int mark) {
    const bridge_vlan_info info{static_cast<uint16>(vlan.flags | mark), vlan.id};
    mnl_attr_put(&message, IFLA_BRIDGE_VLAN_INFO, sizeof info, &info);
  };
  for (std::size_t first = 0; first < vlans.size();) {
    std::size_t last = first;
    while (last + 1 < vlans.size() && vlans[last + 1].id == vlans[last].id + 1 &&
           vlans[last + 1].flags == vlans[last].flags)
      ++last;
    if (first != last) put(vlans[first], BRIDGE_VLAN_INFO_RANGE_BEGIN);
    put(vlans[last], first != last ? BRIDGE_VLAN_INFO_RANGE_END : 0);
    first = last + 1;
  }
}

netlink_request vlan_request(uint32 number, uint16 type, const std::vector<port_vlan>& vlans) {
  constexpr std::size_t kRoom = 1024 + 4096 * 8;  // an attribute for each VLAN
  netlink_request request(type, NLM_F_ACK, kRoom);
  auto& head = request.extra<ifinfomsg>();
  head.ifi_family = AF_BRIDGE;
  head.ifi_index = static_cast<int>(number);
  nlattr* const spec = mnl_attr_nest_start(&request.head(), IFLA_AF_SPEC);
  put_vlans(request.head(), vlans);
  mnl_attr_nest_end(&request.head(), spec);
  return request;
}

bool is_native_missing(const port_settings& settings) {
  return settings.admin_mode == PM_PORT_MODE_TRUNK &&
         !std::binary_search(settings.allowed_vlans.begin(), settings.allowed_vlans.end(),
                             settings.native_vlan.value_or(0));
}

void take_back_vlans(const setting_target& target, const port_settings& requested, const port_settings& before) {
  for (netlink_request& request : bridge_vlan_requests(target.number, before, requested)) send_link_request(request);
}

uint32 refuses_vlans(const setting_target& target, const port_settings& requested, const port_settings& before) {
  if (!target.is_bridge_port) return status_of_text("the device is not a port of a bridge");
  const bool is_known = requested.admin_mode == PM_PORT_MODE_ACCESS || requested.admin_mode == PM_PORT_MODE_TRUNK;
  if (!is_known) return status_of_text("the kernel has access and trunk ports only");
  if (requested.native_vlan != before.native_vlan && is_native_missing(requested))
    return status_of_text("the trunk does not carry the native VLAN");
  return 0;
}

uint32 set_vlans(const setting_target& target, const port_settings& requested, const port_settings& before) {
  std::vector<netlink_request> requests = bridge_vlan_requests(target.number, requested, before);
  for (std::size_t i = 0; i < requests.size(); ++i) {
    const uint32 status = send_link_request(requests[i]);
    if (status != 0) take_back_vlans(target, requested, before);
    if (status != 0) return status;
  }
  return 0;
}

// ---- What ethtool sets ----------------------------------------------------------------------------------------------

// Sends a request to set something of a device; `put` adds the attributes after the head.
template <typename Put>
uint32 send_ethtool(const setting_target& target, uint8 command, uint16 head, Put put) {
  ethtool_socket ethtool;
  netlink_request request = ethtool.request(command, NLM_F_ACK);
  put_ethtool_head(request, head, target.number, 0);
  put(request.head());
  const int error = ethtool.ask(request, [](const nlmsghdr&) {});
  return status_of(error == ENOENT ? EOPNOTSUPP : error, ethtool.reason());  // a kernel without the family
}

// Both ends negotiate when neither speed nor duplex is set.
uint32 set_speed(const setting_target& target, const port_settings& requested, const port_settings&) {
  const bool is_auto_duplex = requested.admin_duplex == PM_PORT_DUPLEX_AUTO;
  const bool is_auto = requested.admin_speed_mbps == 0 && is_auto_duplex;
  return send_ethtool(target, ETHTOOL_MSG_LINKMODES_SET, ETHTOOL_A_LINKMODES_HEADER, [&](nlmsghdr& message) {
    mnl_attr_put_u8(&message, ETHTOOL_A_LINKMODES_AUTONEG, is_auto ? AUTONEG_ENABLE : AUTONEG_DISABLE);
    if (requested.admin_speed_mbps != 0)
      mnl_attr_put_u32(&message, ETHTOOL_A_LINKMODES_SPEED, requested.admin_speed_mbps);
    if (!is_auto_duplex)
      mnl_attr_put_u8(&message, ETHTOOL_A_LINKMODES_DUPLEX,
                      requested.admin_duplex == PM_PORT_DUPLEX_FULL ? DUPLEX_FULL : DUPLEX_HALF);
  });
}

uint32 set_flow_control(const setting_target& target, const port_settings& requested, const port_settings&) {
  const uint16 bits = requested.admin_flow_control.value_or(0);
  return send_ethtool(target, ETHTOOL_MSG_PAUSE_SET, ETHTOOL_A_PAUSE_HEADER, [bits](nlmsghdr& message) {
    mnl_attr_put_u8(&message, ETHTOOL_A_PAUSE_AUTONEG, (bits & PM_FLOW_CTRL_DESIRED) != 0 ? 1 : 0);
    mnl_attr_put_u8(&message, ETHTOOL_A_PAUSE_RX, (bits & PM_FLOW_CTRL_RECEIVE) != 0 ? 1 : 0);
    mnl_attr_put_u8(&message, ETHTOOL_A_PAUSE_TX, (bits & PM_FLOW_CTRL_SEND) != 0 ? 1 : 0);
  });
}

uint32 set_beacon(const setting_target& target, const port_settings& requested, const port_settings&) {
  if (!requested.beacon_on) {
    stop_identifying(target.number);
    return 0;
  }
  return status_of(start_identifying(target.number, target.name), {});
}

// ---- The steps ------------------------------------------------------------------------------------------------------

struct step {
  kernel_step made;
  bool (*is_due)(const port_settings& requested);
  uint32 (*make)(const setting_target& target, const port_settings& requested, const port_settings& before);
  void (*take_back)(const setting_target& target, const port_settings& requested, const port_settings& before);
};

// Reverts a step by applying its opposite.
template <uint32 (*Make)(const setting_target&, const port_settings&, const port_settings&)>
void reverse(const setting_target& target, const port_settings& requested, const port_settings& before) {
  Make(target, before, requested);
}

// An MTU of more than 16 bits is unknown.
void take_back_mtu(const setting_target& target, const port_settings& requested, const port_settings& before) {
  if (before.mtu_bytes) set_mtu(target, before, requested);
}

bool is_switched_on(const port_settings& requested) { return requested.admin_state == PM_PORT_STATE_UP; }
bool is_switched_off(const port_settings& requested) { return !is_switched_on(requested); }
bool is_always(const port_settings&) { return true; }

// In this order: a device is switched off before other steps, and switched on after them.
constexpr step kSteps[] = {
    {kernel_step::state, is_switched_off, set_state, reverse<set_state>},
    {kernel_step::alias, is_always, set_alias, reverse<set_alias>},
    {kernel_step::mtu, is_always, set_mtu, take_back_mtu},
    {kernel_step::speed, is_always, set_speed, reverse<set_speed>},
    {kernel_step::flow_control, is_always, set_flow_control, reverse<set_flow_control>},
    {kernel_step::vlans, is_always, set_vlans, take_back_vlans},
    {kernel_step::beacon, is_always, set_beacon, reverse<set_beacon>},
    {kernel_step::state, is_switched_on, set_state, reverse<set_state>},
};

bool is_needed(kernel_step made, const port_settings& requested, const port_settings& before) {
  for (const setting& it : all_settings())
    if (it.traits.step == made && !is_equal(it, requested, before)) return true;
  return false;
}

// Whether a setting changed that no step applies.
bool is_beyond_the_kernel(const port_settings& requested, const port_settings& before) {
  return requested.is_edge != before.is_edge || is_needed(kernel_step::none, requested, before);
}

}  // namespace

uint32 send_link_request(netlink_request& request) {
  try {
    netlink_socket route(NETLINK_ROUTE);
    const int error = route.ask(request, [](const nlmsghdr&) {});
    return status_of(error, route.reason());
  } catch (const kernel_error& error) {
    return status_of_text(error.what());
  }
}

std::vector<netlink_request> bridge_vlan_requests(uint32 number, const port_settings& requested,
                                                  const port_settings& before) {
  const std::vector<port_vlan> vlans = vlans_of(requested);
  const auto is_requested = [&](const port_vlan& it) {
    return std::any_of(vlans.begin(), vlans.end(), [&](const port_vlan& kept) { return kept.id == it.id; });
  };
  std::vector<port_vlan> gone = vlans_of(before);
  gone.erase(std::remove_if(gone.begin(), gone.end(), is_requested), gone.end());
  for (port_vlan& it : gone) it.flags = 0;
  std::vector<netlink_request> requests;
  if (!vlans.empty()) requests.push_back(vlan_request(number, RTM_SETLINK, vlans));
  if (!gone.empty()) requests.push_back(vlan_request(number, RTM_DELLINK, gone));
  return requests;
}

bool makes_kernel_setting(uint8 type) {
  const setting* const found = find_setting(type);
  return found != nullptr && found->traits.step != kernel_step::none;
}

uint32 check_device(const setting_target& target, const port_settings& requested, const port_settings& before) {
  if (requested.channel != before.channel) return 0;
  if (is_beyond_the_kernel(requested, before)) return status_of_text("the kernel has no such setting");
  return is_needed(kernel_step::vlans, requested, before) ? refuses_vlans(target, requested, before) : 0;
}

uint32 apply_to_device(const setting_target& target, const port_settings& requested, const port_settings& before) {
  if (const uint32 status = check_device(target, requested, before); status != 0) return status;
  // A bond passes its settings to its members itself.
  if (requested.channel != before.channel) return set_bond(target, requested, before);
  std::vector<const step*> made;
  for (const step& it : kSteps) {
    if (!it.is_due(requested) || !is_needed(it.made, requested, before)) continue;
    if (const uint32 status = it.make(target, requested, before); status != 0) {
      std::for_each(made.rbegin(), made.rend(), [&](const step* done) { done->take_back(target, requested, before); });
      return status;
    }
    made.push_back(&it);
  }
  return 0;
}

}  // namespace host
