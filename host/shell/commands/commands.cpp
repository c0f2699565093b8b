// The small commands of the shell itself.
#include <sys/utsname.h>

#include <algorithm>

#include "base/text.h"
#include "platform/cmd_channel.h"
#include "shell/commands/handlers.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"
#include "shell/session/shell.h"
#include "switch/clock.h"
#include "switch/source.h"
#include "transport/transport.h"

namespace host {
namespace {

struct account_line {
  const char* format;
  uint16 tag;
  uint64 transport_account::*count;
};

constexpr account_line kAccountLines[] = {
    {"Messages sent:           %10s\n", kTagMessagesSent, &transport_account::sent},
    {"Messages received:       %10s\n", kTagMessagesReceived, &transport_account::received},
    {"Messages dropped:        %10s\n", kTagMessagesDropped, &transport_account::dropped},
    {"  dropped twice:         %10s\n", kTagMessagesDroppedTwice, &transport_account::dropped_twice},
    {"  never dropped:         %10s\n", kTagMessagesNeverDropped, &transport_account::never_dropped},
};

// The channel's handle is asked of a parameter block, also by the shell's own displays.
cmd_rx_handle_t* channel() {
  paraminfo_t block{};
  return cmd_paraminfo_to_rxhandle(&block);
}

constexpr char kSimulated[] = "simulated switch";

const cmd_tuple_t* text_tuple(uint16 tag, const char* text) {
  return cmd_tuple(static_cast<uint32>(CMD_TYPE_STRING) << 24 | 0x2A0000 | tag, text);
}

std::string padded(std::string_view text, std::size_t width) {
  std::string cell(text);
  cell.resize(std::max(width, text.size() + 1), ' ');
  return cell;
}

constexpr std::size_t kHelpWidth = 28;

// The chosen commands with their help, a line for each. Returns false when there is none.
template <typename IsChosen>
bool list_commands(const invocation& run, IsChosen is_chosen) {
  std::size_t width = 0;
  for (const command& entry : all_commands())
    if (is_chosen(entry)) width = std::max({width, kHelpWidth, entry.syntax.text.size() + 2});
  for (const command& entry : all_commands())
    if (is_chosen(entry)) run.output.text("  " + padded(entry.syntax.text, width) + std::string(entry.help) + "\n");
  return width > 0;
}

}  // namespace

int advance_clock(const invocation& run) {
  clock_advance(*run.line.number);
  return kDone;
}

int show_transport(const invocation&) {
  const transport_account account = transport_accounts();
  cmd_rx_handle_t* const rx = channel();
  for (const account_line& line : kAccountLines) {
    const uint64 count = account.*line.count;
    cmd_prt(rx, line.format, cmd_tuple(static_cast<uint32>(CMD_TYPE_UINT64) << 24 | line.tag, &count));
  }
  return kDone;
}

int show_version(const invocation& run) {
  cmd_rx_handle_t* const rx = channel();
  const shell& session = run.session;
  cmd_prt(rx, "pmsh:      %s\n", text_tuple(kTagProgramVersion, PMCLI_VERSION));
  if (the_source().devices()) {
    utsname kernel{};
    uname(&kernel);
    cmd_prt(rx, "Platform:  %s %s\n", text_tuple(kTagPlatform, kernel.sysname),
            text_tuple(kTagKernelRelease, kernel.release));
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

int show_clock(const invocation&) {
  cmd_prt(channel(), "%s\n", text_tuple(kTagClockTime, utc_text(clock_now()).c_str()));
  return kDone;
}

int help(const invocation& run) {
  list_commands(run, [&run](const command& entry) { return (entry.modes & run.session.mode) != 0; });
  run.output.text(
      "\n"
      "Words may be abbreviated. TAB completes a word, ? lists what may come next.\n"
      "A RANGE looks like 'ethernet 1/1-4, 1/7', 'all except mgmt 0' or '\"e*1/[1-3]\"'. Output goes through any "
      "number of\n");
  for (const pipe_word& word : kPipeWords) {
    const std::string written = "| " + std::string(word.word) + std::string(syntax_of(word.argument));
    run.output.text("  " + padded(written, kHelpWidth) + std::string(word.help) + "\n");
  }
  return kDone;
}

int find_commands(const invocation& run) {
  const std::string& part = run.line.search_word;
  const bool is_found = list_commands(run, [&part](const command& entry) {
    return contains_ignoring_case(entry.syntax.text, part) || contains_ignoring_case(entry.help, part);
  });
  if (is_found) return kDone;
  run.output.complain("no command has " + quoted(part) + " in its words or its help.");
  return kUsage;
}

int set_screen_lines(const invocation& run) {
  run.session.screen_lines = run.line.number;
  return kDone;
}

int leave(const invocation& run) {
  if (!may_leave_candidate(run.session)) return kUsage;
  run.session.is_leaving = true;
  return kDone;
}

}  // namespace host
