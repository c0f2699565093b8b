// Settings that the command library does not make.
#pragma once

#include <cstddef>
#include <span>

#include "platform/mts.h"
#include "platform/port_config.h"

namespace host {

// Asks the port manager for a setting of all ports of the ranges: `type` is HOST_CFG_..., `value` as it says. On
// success (0) stores a heap block of results by port that the caller frees, or null without any, and their number.
// Otherwise returns a system error, -1 when the transport failed.
int32 set_host_setting(mts_q_handle_t q, std::span<const if_index_range_t> ranges, uint8 type,
                       std::span<const std::byte> value, pm_port_cfg_status_t** cfg_status, uint32* num_ports);

}  // namespace host
