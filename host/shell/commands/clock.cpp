// The clock of the shell.
#include "switch/clock.h"

#include "shell/commands/group.h"
#include "shell/commands/show/own_channel.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

int show_clock(const invocation&) {
  cmd_prt(channel(), "%s\n", text_tuple(kTagClockTime, utc_text(clock_now()).c_str()));
  return kDone;
}

int advance_clock(const invocation& run) {
  clock_advance(*run.line.number);
  return kDone;
}

constexpr display kClockShown = {kClockDisplay, "clock", "clock"};

// clang-format off
constexpr command kClockRows[] = {
    {"show clock", "Time of the shell's clock, in UTC", show_clock, kClockShown},
    {"clock advance SECONDS", "Advance the shell's clock and the simulated traffic", advance_clock, kSentences, nullptr, kEveryMode, command_effect::outside},
};
// clang-format on

constexpr word_help kClockWords[] = {
    {"advance", "Advance the clock"},
    {"clock", "Clock of this shell"},
};

}  // namespace

constexpr command_group kClockCommands = {kClockRows, kClockWords};

}  // namespace host
