// A setting on its way to the port manager.
#pragma once

#include <span>

#include "config/setting.h"
#include "platform/paraminfo.h"
#include "platform/port_config.h"
#include "platform/vsh.h"
#include "support/scope.h"

namespace pmcli {

inline bool is_vsan_restricted(const paraminfo_t* param) { return vsh_is_user_vsan_restricted(param) == 1; }

// The TLV of a setting, followed by its value. Null after the exhausted heap was reported.
heap_block<pm_cfg_tlv_t> make_tlv(const port_setting& setting);

// Sends the setting to the port manager, for the user and the session of the command; results as of
// pm_cmi_set_port_config().
int32 apply(paraminfo_t* param, std::span<const if_index_range_t> ranges, const pm_cfg_tlv_t& tlv,
            pm_port_cfg_status_t** cfg_status, uint32* num_ports);

}  // namespace pmcli
