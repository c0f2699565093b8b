// The state of a session: what its commands share.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "shell/grammar/command_line.h"
#include "shell/library/command_library.h"
#include "shell/library/interface_kinds.h"
#include "shell/output/exit_codes.h"
#include "shell/session/candidate.h"
#include "shell/session/dry_run.h"
#include "shell/session/unconfirmed_commit.h"
#include "switch/model.h"

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
  std::string switch_name;
  std::string switch_file;                  // empty: a generated switch, or the devices of the kernel
  const host::user* user = nullptr;         // null: all rights
  const output_settings* output = nullptr;  // of a program that embeds the shell; null: standard output
  bool is_interactive = false;
  std::optional<uint32> screen_lines;  // of "terminal length"; 0: output does not stop; none: as the terminal reports
  bool is_leaving = false;             // set by "exit"
  bool is_refreshed = false;           // the model has what its source knows since the line began
  bool has_lost_output = false;        // no output can be written any more
  bool keeps_going = false;            // files go on after a line that failed
  uint32 num_files = 0;                // whose lines are being run, each by a line of the one before; 0: a user types
  shell_mode mode = kExecMode;
  configured_interfaces configured;                 // what the settings of the interface mode are for
  std::unique_ptr<dry_run> trying;                  // null: commands change the machine
  std::unique_ptr<candidate> edited;                // null: settings change the machine
  std::unique_ptr<unconfirmed_commit> unconfirmed;  // null: no commit waits for its confirmation
};

}  // namespace host
