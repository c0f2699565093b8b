// Which interface a device of the kernel is.
//
// Physical and veth devices are Ethernet ports, by the kernel's number: the device with number 7 is ethernet 1/7, that
// with 300 ethernet 2/44. VLAN devices on them are their sub-interfaces, bonds are port-channels, "lo" and dummies
// loopbacks, the device of the default route is the management port. Everything else, bridges too, is a virtual
// Ethernet interface. A number stays with its device as long as that lives.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "source/kernel/links.h"

namespace host {

// What a user says of a device.
struct wanted_interface {
  if_index_t if_index = 0;  // 0: the usual one
  bool is_routed = false;   // a port of the kind that is asked for its layer
};
using wanted_interfaces = std::map<std::string, wanted_interface>;

// Reads a map file: "DEVICE: INTERFACE" or "DEVICE: {interface: INTERFACE, routed: yes}". Throws yaml_file_error.
wanted_interfaces read_map_file(const std::string& path);

struct mapped_device {
  std::string device;
  uint32 number = 0;  // the kernel's
  if_index_t if_index = 0;
  bool is_bridge_port = false;
};

// Maps devices, sorted by number; `management` is the number of the management port's, or 0. A device whose interface
// is taken already has none and is left out.
std::vector<mapped_device> map_devices(const std::vector<kernel_link>& links, uint32 management,
                                       const wanted_interfaces& wanted);

// Calls `visit` with each mapped device and its link.
template <typename Visit>
void for_each_mapped(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped, Visit visit) {
  std::size_t place = 0;
  for (const mapped_device& it : mapped) {
    while (links[place].number != it.number) ++place;  // both are sorted by number
    visit(it, links[place]);
  }
}

}  // namespace host
