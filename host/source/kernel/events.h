// Changes of links, addresses, neighbors and modules, as the kernel publishes them.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

#include "source/kernel/device_map.h"
#include "source/kernel/ethtool.h"
#include "source/kernel/links.h"
#include "source/kernel/netlink.h"
#include "switch/events.h"

namespace host {

// An address of a device: with its prefix, unless it is that of a neighbor.
using address_key = std::tuple<uint32, bool, std::array<uint8, 16>, uint32>;
address_key key_of(const row_device& device, const ip_address& address);

// What is known of the devices.
struct known_devices {
  std::vector<kernel_link> links;  // sorted by number
  std::map<address_key, address_row> addresses;
  std::map<address_key, neighbor_row> neighbors;
  std::map<uint32, module_power> modules;  // by the device's number
};

// Reads everything by dumps. Throws kernel_error.
known_devices read_known_devices();

// Finds the events in messages: what differs from what was known before. Events have the number and the name of their
// device, and no time.
class event_finder {
 public:
  explicit event_finder(known_devices known) : known_(std::move(known)) {}

  // Take a message that the kernel published by NETLINK_ROUTE, and one of the ethtool family; others are ignored.
  void take_route(const nlmsghdr& message, std::vector<switch_event>& events);
  void take_ethtool(const nlmsghdr& message, std::vector<switch_event>& events);

  // Takes what was read again.
  void take_reading(known_devices now, std::vector<switch_event>& events);

  const std::vector<kernel_link>& links() const { return known_.links; }

 private:
  void take_link(const nlmsghdr& message, std::vector<switch_event>& events);
  void take_address(const nlmsghdr& message, std::vector<switch_event>& events);
  void take_neighbor(const nlmsghdr& message, std::vector<switch_event>& events);
  void remove_link(uint32 device, std::vector<switch_event>& events);

  known_devices known_;
};

// The interfaces of devices, sorted by number.
using interface_mapper = std::function<std::vector<mapped_device>(const std::vector<kernel_link>&)>;

using link_taker = std::function<void(const kernel_link&)>;

// `take` gets each link whose operational state changed. Null when the kernel cannot be asked to publish. Throws
// kernel_error.
std::unique_ptr<event_reader> open_kernel_events(interface_mapper map, link_taker take = {});

}  // namespace host
