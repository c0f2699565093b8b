// Settings besides those of the command library.
#pragma once

#include <cstddef>
#include <span>

#include "platform/if_index.h"
#include "platform/mts.h"

namespace host {

// Asks the port manager for a setting of all ports of the ranges: `type` is of settings/table.h, `value` has its bytes
// (settings/wire.h). The results are in the account of the queue (messages/calls/command_account.h). Returns 0, or
// a system error, -1 when the transport failed.
int32 set_host_setting(mts_q_handle_t q, std::span<const if_index_range_t> ranges, uint8 type,
                       std::span<const std::byte> value);

}  // namespace host
