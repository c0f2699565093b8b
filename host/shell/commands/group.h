// The commands of the shell: a group for each file, which has all of them: words, help, display, handler.
#pragma once

#include <span>
#include <string_view>

#include "shell/grammar/command_line.h"
#include "shell/output/document/document.h"
#include "shell/session/invocation.h"

namespace host {

// The help of a word of a syntax.
struct word_help {
  std::string_view word;
  std::string_view help;
};

struct command_group {
  std::span<const command> commands;
  std::span<const word_help> words;  // that no other group has; the others are in table.cpp
};

// In the order of the table.
extern const command_group kInterfaceCommands, kOverviewCommands, kCounterCommands, kDriverCounterCommands,
    kHardwareCommands, kTrunkCommands, kTransceiverCommands, kModuleCommands, kAddressCommands, kNeighborCommands,
    kLldpCommands, kSpanningTreeCommands, kPanelCommands, kKernelMapCommands, kWatchCommands, kEventCommands,
    kClearCommands, kClockCommands, kConfigurationCommands, kModeCommands, kChosenInterfaceCommands, kUndoCommands,
    kChangesCommands, kCandidateCommands, kTransportCommands, kSessionsCommands, kVersionCommands, kHistoryCommands,
    kTerminalCommands, kHelpCommands, kSettingGroup;
}  // namespace host
