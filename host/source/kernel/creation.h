// Devices that commands create and delete: dummies are loopbacks, VLAN devices on ports sub-interfaces.
//
// A loopback has the number of its device, so loading a running configuration again gives the device the same
// interface.
#pragma once

#include "source/kernel/links.h"

namespace host {

// Whether a command creates a device with this interface.
bool is_created_by_command(const kernel_link& link, if_index_t if_index);

// Create a dummy with a number, or a device for a VLAN of a parent, and switch it on (a VLAN only if its parent is on).
// Return 0, or the status with the kernel's own message (base/port_status.h); kPortStatusNoRight when the user lacks
// the right.
uint32 create_dummy(uint32 number);
uint32 create_vlan_device(const kernel_link& parent, uint16 vlan);

// The same, to delete a device.
uint32 delete_device(uint32 number);

}  // namespace host
