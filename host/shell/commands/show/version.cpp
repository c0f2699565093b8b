// "show version".
#include "shell/commands/group.h"
#include "shell/commands/show/own_channel.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

constexpr char kSimulated[] = "simulated switch";

int show_version(const invocation& run) {
  cmd_rx_handle_t* const rx = channel();
  const shell& session = run.session;
  cmd_prt(rx, "pmsh:      %s\n", text_tuple(kTagProgramVersion, PMCLI_VERSION));
  const switch_facts& about = session.about;
  if (!about.kernel_name.empty()) {
    cmd_prt(rx, "Platform:  %s %s\n", text_tuple(kTagPlatform, about.kernel_name.c_str()),
            text_tuple(kTagKernelRelease, about.kernel_release.c_str()));
  } else if (about.file.empty()) {
    cmd_prt(rx, "Platform:  %s %s\n", text_tuple(kTagPlatform, kSimulated),
            text_tuple(kTagSwitchName, about.name.c_str()));
  } else {
    cmd_prt(rx, "Platform:  %s %s from %s\n", text_tuple(kTagPlatform, kSimulated),
            text_tuple(kTagSwitchName, about.name.c_str()), text_tuple(kTagSwitchFile, about.file.c_str()));
  }
  cmd_prt(rx, "Library:   %s\n", text_tuple(kTagLibrary, session.library.file.c_str()));
  return kDone;
}

constexpr display kVersionShown = {kVersionDisplay, "version", "version"};

// clang-format off
constexpr command kVersionRows[] = {
    {"show version", "Versions, the platform and the command library", show_version, kVersionShown},
};
// clang-format on

constexpr word_help kVersionWords[] = {
    {"version", "Versions and the platform"},
};

}  // namespace

constexpr command_group kVersionCommands = {kVersionRows, kVersionWords};

}  // namespace host
