// Which interface a device of the kernel is.
//
// Physical and veth devices are Ethernet ports, by the kernel's number: the device with number 7 is ethernet 1/7, that
// with 300 ethernet 2/44. VLAN devices on them are their sub-interfaces, bonds are port-channels, "lo" and dummies
// loopbacks, the device of the default route is the management port. Everything else, bridges too, is a virtual
// Ethernet interface. A number stays with its device as long as that lives.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "source/kernel/links.h"
#include "switch/source.h"

namespace host {

// What a user says of a device.
struct requested_interface {
  if_index_t if_index = 0;  // 0: the usual one
  bool is_routed = false;   // a port of the kind that is asked for its layer
};
using requested_interfaces = std::map<std::string, requested_interface>;

// Reads a map file: "DEVICE: INTERFACE" or "DEVICE: {interface: INTERFACE, routed: yes}". Throws yaml_file_error.
requested_interfaces read_map_file(const std::string& path);

// What devices were called before.
struct known_interface {
  if_index_t if_index = 0;  // of a port: as one that is not routed
  name_reason reason = name_reason::stored;
};
struct known_interfaces {
  std::map<uint32, known_interface> of_devices;  // by the kernel's number
  std::set<if_index_t> of_others;                // of devices that are gone
};

struct mapped_device {
  std::string device;
  uint32 number = 0;  // the kernel's
  if_index_t if_index = 0;
  bool is_bridge_port = false;
  name_reason reason = name_reason::device_index;
};

// Maps devices, sorted by number; `management` is the number of the management port's, or 0. A device that the user
// names nothing for has the interface that it had before; one that is new gets neither that of another device nor that
// of one that is gone. A device whose interface the user gives to another has none and is left out.
std::vector<mapped_device> map_devices(const std::vector<kernel_link>& links, uint32 management,
                                       const requested_interfaces& requested, const known_interfaces& known = {});

// Whether a device may have had this interface before: its kind has such interfaces, and what the device is does not
// decide it alone.
bool may_be_known_as(const kernel_link& link, if_index_t if_index);

// The interface as one that is not routed: under this index a port is stored, and taken.
if_index_t switched_index(if_index_t if_index);

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
