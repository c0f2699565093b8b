// The network devices of the kernel that are interfaces of the switch.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/if_index.h"

namespace host {

// Each name of a device, also its alternative ones, and its interface, from the hardware service. None when the switch
// is not the kernel's, or when the service does not answer.
std::vector<std::pair<std::string, if_index_t>> ask_device_names();

// Makes the counters of a device start from 0. False when there is no such device, or the service does not answer.
bool ask_to_clear_device(std::string_view name);

}  // namespace host
