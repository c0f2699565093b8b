// The interface range of a configuration command, found by its token.
#pragma once

#include "platform/paraminfo.h"

namespace pmcli {

// The first range with the token of configured interfaces; null after that was printed. Its type is not looked at,
// unlike in the handler of single settings.
const intf_range_t* find_conf_ranges(const paraminfo_t* param);

}  // namespace pmcli
