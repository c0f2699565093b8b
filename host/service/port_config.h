// The port manager applies settings of ports to the model.
#pragma once

#include <span>

#include "settings/settings.h"
#include "transport/transport.h"

namespace host {

// Answers a setting_request with a pm_port_cfg_status_t for each port of its ranges; a range without any gives one for
// its low end. A malformed request is rejected.
reply configure_ports(std::span<const std::byte> request);

}  // namespace host
