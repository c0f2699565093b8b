// What a device of the kernel is, in the words of those who made it.
#pragma once

#include <string>
#include <string_view>

#include "source/kernel/links.h"

namespace host {

// Whether IFLA_LINK is the device below: that of a veth device is the other end.
bool has_device_below(const kernel_link& link);

// "physical", "loopback", "veth", "vlan 10 of eth0", "vxlan 42 over eth1", "macvlan of eth0", "tap". `below` is the
// name of the device below, empty when there is none in this namespace.
std::string device_type(const kernel_link& link, std::string_view below);

}  // namespace host
