// The ports that refused a setting, reported together by error.
#pragma once

#include <span>

#include "platform/paraminfo.h"
#include "platform/port_config.h"

namespace pmcli {

// Hands the failed ports to the shell, with a text that names them by error; nothing when none failed. Returns whether
// a port accepted the setting.
bool report_failures(paraminfo_t* param, std::span<const pm_port_cfg_status_t> results);

}  // namespace pmcli
