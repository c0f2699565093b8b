// The clock of the switch.
#include "switch/clock.h"

#include "messages/calls/switch_facts.h"
#include "shell/commands/group.h"
#include "shell/commands/show/own_channel.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/session/run.h"

namespace host {
namespace {

int show_clock(const invocation&) {
  cmd_prt(channel(), "%s\n", text_tuple(kTagClockTime, utc_text(clock_now()).c_str()));
  return kDone;
}

int advance_clock(const invocation& run) {
  const auto clock = ask_to_advance_clock(*run.line.number);
  if (!clock) return kServiceFailed;
  take_over_clock(*clock);
  return kDone;
}

constexpr display kClockShown = {kClockDisplay, "clock", "clock"};

// clang-format off
constexpr command kClockRows[] = {
    {"show clock", "Time of the switch's clock, in UTC", show_clock, kClockShown},
    {"clock advance SECONDS", "Advance the switch's clock and the simulated traffic", advance_clock, kSentences, nullptr, kEveryMode, command_effect::outside},
};
// clang-format on

constexpr word_help kClockWords[] = {
    {"advance", "Advance the clock"},
    {"clock", "Clock of the switch"},
};

}  // namespace

constexpr command_group kClockCommands = {kClockRows, kClockWords};

}  // namespace host
