// The results of settings: the ports that refused, and the exit code.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "messages/calls/command_account.h"
#include "platform/port_config.h"
#include "pmcli/displays.h"
#include "shell/output/document/document.h"
#include "shell/session/invocation.h"

namespace host {

// The document of setting commands.
inline constexpr display kSettingShown = {kSettingDisplay, {}, "settings"};

// The result of the command library when the user may not change settings.
inline constexpr int32 kForbiddenSetting = PM_CLI_NOT_PERMITTED;

// The reason of a setting that the user did not confirm.
inline constexpr char kUnconfirmed[] = "it may cut the user's own connection";

// The ports of a command as they were when it began. In the structured form it writes a record for each of them with
// the result of the setting. As text, a dry run lists the changes; refusals are always printed.
class ports_before {
 public:
  // The ports that the command may change.
  ports_before(const invocation& run, std::span<const if_index_t> ports);

  // Those of the interface mode.
  explicit ports_before(const invocation& run);

  // To be called after the command has run. `setting` is the command, `answers` are those of the services. A port
  // without an answer has refused if there is a reason, `unanswered`; otherwise its settings decide.
  void report(const std::string& setting, std::span<const pm_port_cfg_status_t> answers,
              const std::string& unanswered = {}) const;

 private:
  bool is_reported() const;

  const invocation& run_;
};

// The interfaces as they were when a command began that creates or deletes some. A dry run lists them.
class interfaces_before {
 public:
  explicit interfaces_before(const invocation& run);
  void report() const;

 private:
  const invocation& run_;
  std::optional<std::vector<if_index_t>> interfaces_;
};

// Why no service was asked for a setting: for ports_before::report(). Empty when one was.
std::string reason_of_silence(int32 worst, const setting_results& results);

// The exit code of a setting. `worst` is what the command library returned, 0 where it was not asked.
int exit_code_of(int32 worst, const setting_results& results);

// Prints which ports refused the command in `words`. Returns the exit code.
int report_refusals(const invocation& run, const std::string& words, std::span<pm_port_cfg_status_t> ports);

}  // namespace host
