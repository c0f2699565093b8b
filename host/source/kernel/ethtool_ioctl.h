// Data of a device that ethtool reports by ioctl: on kernels without its netlink family, and data that this family does
// not report.
#pragma once

#include <string>
#include <vector>

#include "source/kernel/links.h"

namespace host {

// Speed, duplex, negotiation and modes of all links, and pause where there is hardware; a request for each device. The
// modes are those that 32 bits have.
void read_port_settings_by_ioctl(std::vector<kernel_link>& links);

// The name of a device's driver; empty when the kernel does not report it.
std::string driver_of(const std::string& device);

}  // namespace host
