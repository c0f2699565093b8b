// What became of settings: which ports refused, and the exit code.
#pragma once

#include <span>
#include <string>

#include "client/command_account.h"
#include "platform/port_config.h"
#include "pmcli/displays.h"
#include "shell/commands.h"

namespace host {

// What the command library returns when the user may not make settings.
inline constexpr int32 kForbiddenSetting = PM_CLI_NOT_PERMITTED;

// In the structured form: a record for each port that refused.
void record_refusals(command_output& output, std::span<const pm_port_cfg_status_t> ports);

// The exit code of a setting. `worst` is what the command library returned, 0 where it was not asked.
int exit_code_of(int32 worst, const setting_results& results);

// Says which of the ports refused what `words` name, as text or as records. Returns the exit code.
int report_refusals(const invocation& run, const std::string& words, std::span<pm_port_cfg_status_t> ports);

}  // namespace host
