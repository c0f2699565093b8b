#include "shell/session/modes.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace host {
namespace {

// Without an answer nothing is known to be lost.
bool has_lost_interfaces(const shell& session) {
  std::vector<if_index_t> ends;
  for (const vsh_intf_mono_range_t& it : session.configured.ranges)
    ends.insert(ends.end(), {it.lower_if_index, it.upper_if_index});
  if (ends.empty()) return false;
  const auto exist = ask_which_exist(ends);
  return exist && std::find(exist->begin(), exist->end(), false) != exist->end();
}

}  // namespace

std::string prompt_of(const shell& session) {
  std::string mode = session.mode == kExecMode ? "" : session.mode == kConfigureMode ? "config" : "config-if";
  if (session.edited && session.mode != kExecMode) mode += "-candidate";
  if (session.trying) mode += mode.empty() ? "dry-run" : "-dry-run";
  return mode.empty() ? fmt::format("{}# ", session.about.name) : fmt::format("{}({})# ", session.about.name, mode);
}

void leave_interfaces(shell& session) {
  session.configured = {};
  session.mode = kConfigureMode;
}

void leave_lost_interfaces(shell& session) {
  if (has_lost_interfaces(session)) leave_interfaces(session);
}

}  // namespace host
