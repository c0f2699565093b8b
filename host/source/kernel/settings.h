// Settings of ports over the kernel: state, description, MTU, speed, duplex, flow control, VLANs of bridges, membership
// of bonds, port identification.
#pragma once

#include <string>
#include <vector>

#include "platform/types.h"
#include "source/kernel/netlink.h"
#include "switch/port_settings.h"

namespace host {

// The device of a port that is being set.
struct setting_target {
  uint32 number = 0;  // the kernel's
  std::string name;
  bool is_bridge_port = false;
  uint32 bond = 0;  // number of the bond that the port is to join; 0 is none
};

// Applies the settings of a port to its device; `before` has the previous ones. Returns 0, or the status with the
// kernel's own message (base/port_status.h) when it refuses; kPortStatusNoRight when the user lacks the right. Settings
// applied before a refusal are reverted.
uint32 apply_to_device(const setting_target& target, const port_settings& requested, const port_settings& before);

// The status with which apply_to_device() refuses without a request to the kernel; else 0.
uint32 check_device(const setting_target& target, const port_settings& requested, const port_settings& before);

// Whether there are devices that have a setting (PM_CFG_... or HOST_CFG_...).
bool makes_kernel_setting(uint8 type);

// Requests a change of a link. Returns 0, or a status as apply_to_device() does.
uint32 send_link_request(netlink_request& request);

// The requests that change the VLANs of a bridge port: new ones are added before old ones are removed, so the port
// always has its untagged VLAN.
std::vector<netlink_request> bridge_vlan_requests(uint32 number, const port_settings& requested,
                                                  const port_settings& before);

}  // namespace host
