// The IP address of an interface.
#pragma once

#include <optional>

#include "platform/ip_config.h"

namespace pmcli {

// The first address, of either family; none when the interface has none or the service fails.
std::optional<ipconf_if_inet_addr_info_t> ask_first_address(mts_q_handle_t q, if_index_t if_index);

}  // namespace pmcli
