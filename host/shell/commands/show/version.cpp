// "show version".
#include "shell/commands/group.h"
#include "shell/commands/show/own_channel.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr char kSimulated[] = "simulated switch";

int show_version(const invocation& run) {
  cmd_rx_handle_t* const rx = channel();
  const shell& session = run.session;
  cmd_prt(rx, "pmsh:      %s\n", text_tuple(kTagProgramVersion, PMCLI_VERSION));
  if (const auto kernel = the_source().system()) {
    cmd_prt(rx, "Platform:  %s %s\n", text_tuple(kTagPlatform, kernel->name.c_str()),
            text_tuple(kTagKernelRelease, kernel->release.c_str()));
  } else if (session.switch_file.empty()) {
    cmd_prt(rx, "Platform:  %s %s\n", text_tuple(kTagPlatform, kSimulated),
            text_tuple(kTagSwitchName, session.switch_name.c_str()));
  } else {
    cmd_prt(rx, "Platform:  %s %s from %s\n", text_tuple(kTagPlatform, kSimulated),
            text_tuple(kTagSwitchName, session.switch_name.c_str()),
            text_tuple(kTagSwitchFile, session.switch_file.c_str()));
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
