// "show sessions": who uses the switch.
#include <fmt/format.h>

#include <string>

#include "base/printable.h"
#include "messages/calls/session.h"
#include "shell/commands/group.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"
#include "shell/output/terminal/fitted_table.h"

namespace host {
namespace {

constexpr fitted_column kSessionColumns[] = {
    {"Session", 1}, {"User", 2, false, 8}, {"Terminal", 3}, {"Process", 5}, {"Since", 6}, {"Holds", 4},
};

std::string held(const listed_session& it, bool with_seconds) {
  std::string text = it.has_candidate ? "candidate" : "";
  if (!it.seconds_to_confirm) return text;
  if (!text.empty()) text += ", ";
  return text + (with_seconds ? fmt::format("commit for {} s", *it.seconds_to_confirm) : "commit");
}

void record_session(command_output& output, const listed_session& it) {
  const auto bind_number = [&output](uint16 tag, uint32 value) {
    output.bind({uint32{CMD_TYPE_UINT32} << 24 | tag, &value});
  };
  output.begin_interface({});
  bind_number(kTagSession, it.number);
  output.bind_text(kTagSessionUser, it.user);
  output.bind_text(kTagSessionTerminal, it.terminal);
  if (!it.has_ended) bind_number(kTagSessionProcess, it.process);
  output.bind_text(kTagSessionSince, utc_text(it.since_sec));
  output.bind_text(kTagSessionHolds, held(it, false));
  if (it.seconds_to_confirm) bind_number(kTagSessionSeconds, *it.seconds_to_confirm);
  output.end_interface();
}

std::vector<std::string> cells_of(const listed_session& it) {
  std::string user, terminal;
  append_printable(user, it.user);
  append_printable(terminal, it.terminal);
  return {fmt::format("{}{}", it.number, it.is_own ? "*" : ""),
          user,
          terminal,
          it.has_ended ? "ended" : std::to_string(it.process),
          utc_text(it.since_sec),
          held(it, true)};
}

int show_sessions(const invocation& run) {
  const auto sessions = session_list();
  if (!sessions) return kServiceFailed;
  table_rows rows;
  for (const listed_session& it : *sessions) {
    if (run.output.is_structured())
      record_session(run.output, it);
    else
      rows.push_back(cells_of(it));
  }
  if (rows.empty()) return kDone;
  const fitted_layout layout(kSessionColumns, rows, run.output.columns());
  run.output.line().set_title();
  run.output.text(layout.titles() + "\n");
  for (const auto& row : rows) run.output.text(layout.line(row) + "\n");
  return kDone;
}

constexpr display kSessionsShown = {kSessionsDisplay, {}, "sessions", false, false, "sessions"};

// clang-format off
constexpr command kSessionsRows[] = {
    {"show sessions", "Sessions with the switch; '*' marks this one", show_sessions, kSessionsShown},
};
// clang-format on

constexpr word_help kSessionsWords[] = {
    {"sessions", "Sessions with the switch"},
};

}  // namespace

constexpr command_group kSessionsCommands = {kSessionsRows, kSessionsWords};

}  // namespace host
