// Devices that commands create and delete: dummies are loopbacks, VLAN devices on ports sub-interfaces.
//
// The number of a loopback is that of its device, so that a running configuration that is loaded again gives the device
// the same interface.
#pragma once

#include "source/kernel/links.h"

namespace host {

// Whether a command creates a device with this interface.
bool is_created_by_command(const kernel_link& link, if_index_t if_index);

// Create a dummy with a number, or a device for a VLAN of a parent; it is switched on, a VLAN only on a parent that is.
// Return 0, or the status with the kernel's own words (base/port_status.h); kPortStatusNoRight when the user lacks
// the right.
uint32 create_dummy(uint32 number);
uint32 create_vlan_device(const kernel_link& parent, uint16 vlan);

// The same, to delete a device.
uint32 delete_device(uint32 number);

}  // namespace host
