// The state of a session: what its commands share.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "messages/calls/switch_facts.h"
#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "shell/grammar/command_line.h"
#include "shell/library/command_library.h"
#include "shell/library/interface_kinds.h"
#include "shell/output/exit_codes.h"
#include "shell/session/candidate.h"
#include "shell/session/dry_run.h"

namespace host {

// The interfaces of the interface mode, as the library takes them: ranges in the order in which the user named them,
// each of one kind, and the masks of their kinds.
struct configured_interfaces {
  interface_mask_t mask = 0;
  std::vector<vsh_intf_mono_range_t> ranges;
};

struct output_settings;

struct shell {
  command_library library;
  switch_facts about;                        // the switch
  std::shared_ptr<const session_user> user;  // null: all rights
  const output_settings* output = nullptr;   // of a program that embeds the shell; null: standard output
  bool is_interactive = false;
  std::optional<uint32> screen_lines;  // of "terminal length"; 0: output does not stop; none: as the terminal reports
  std::string requested_user;          // empty: the first
  bool has_new_connection = false;     // with the switch, since the last line
  bool is_leaving = false;             // set by "exit"
  bool is_refreshed = false;           // the switch was updated since the line began, or could not be
  std::string refresh_fault;           // why it could not: a sentence
  bool has_lost_output = false;        // no output can be written any more
  bool keeps_going = false;            // files go on after a line that failed
  uint32 num_files = 0;                // whose lines are being run, each by a line of the one before; 0: a user types
  shell_mode mode = kExecMode;
  configured_interfaces configured;          // what the settings of the interface mode are for
  std::optional<begun_dry_run> trying;       // none: commands change the switch
  std::optional<begun_candidate> edited;     // none: settings change the switch
  bool is_on_candidate = false;              // the running command is for the candidate
  std::optional<uint32> seconds_to_confirm;  // when the line began; none: no commit waits for its confirmation
  uint32 committed_in = 0;                   // the number that the switch gave to the session of that commit

  // Whether what the running command changes remains without effect on the switch.
  bool is_trial() const { return trying || is_on_candidate; }
};

}  // namespace host
