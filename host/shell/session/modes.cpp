#include "shell/session/modes.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "switch/model.h"

namespace host {
namespace {

bool has_lost_interfaces(const shell& session) {
  const auto is_lost = [](const vsh_intf_mono_range_t& range) {
    return std::as_const(the_machine()).find(range.lower_if_index) == nullptr ||
           std::as_const(the_machine()).find(range.upper_if_index) == nullptr;
  };
  return std::any_of(session.configured.ranges.begin(), session.configured.ranges.end(), is_lost);
}

}  // namespace

std::string prompt_of(const shell& session) {
  std::string mode = session.mode == kExecMode ? "" : session.mode == kConfigureMode ? "config" : "config-if";
  if (session.edited && session.mode != kExecMode) mode += "-candidate";
  if (session.trying) mode += mode.empty() ? "dry-run" : "-dry-run";
  return mode.empty() ? fmt::format("{}# ", session.switch_name) : fmt::format("{}({})# ", session.switch_name, mode);
}

void leave_interfaces(shell& session) {
  session.configured = {};
  session.mode = kConfigureMode;
}

void leave_lost_interfaces(shell& session) {
  if (has_lost_interfaces(session)) leave_interfaces(session);
}

}  // namespace host
