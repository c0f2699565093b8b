// Settings of the terminal.
#include "shell/commands/group.h"

namespace host {
namespace {

int set_screen_lines(const invocation& run) {
  run.session.screen_lines = run.line.number;
  return kDone;
}

// clang-format off
constexpr command kTerminalRows[] = {
    {"terminal length LINES", "Lines per screen in this session; 0: unlimited", set_screen_lines, kSentences},
};
// clang-format on

constexpr word_help kTerminalWords[] = {
    {"length", "Lines per screen"},
};

}  // namespace

constexpr command_group kTerminalCommands = {kTerminalRows, kTerminalWords};

}  // namespace host
