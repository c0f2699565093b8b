// The port manager applies settings of ports to the model.
#pragma once

#include <span>

#include "settings/settings.h"
#include "transport/transport.h"

namespace host {

// Answers a setting_request with a pm_port_cfg_status_t for each port of its ranges; a range without any gives one for
// its low end. A request that is not what it says is rejected.
reply configure_ports(std::span<const std::byte> request);

// Whether a port of its kind has the setting, and has it itself: a member's may be its channel's; and the source makes
// it.
bool has_setting_of_its_own(const interface& port, const setting& of);

}  // namespace host
