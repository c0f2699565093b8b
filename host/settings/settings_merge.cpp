#include "settings/settings_merge.h"

#include <utility>
#include <vector>

#include "platform/port_manager.h"
#include "settings/settings.h"
#include "switch/source.h"

namespace host {
namespace {

using set = port_settings;

// Copies the settings that a test names.
template <typename Test>
void copy_if(set& port, const set& requested, Test is_meant) {
  for (const setting& it : all_settings())
    if (is_meant(it)) copy_setting(it, requested, port);
}

// The settings on the way from those of a port to others, each on top of the one before. A port is switched off before
// anything else and switched on when all is done; it leaves a port-channel before it takes settings of its own, and
// takes over those of the one that it joins at once. What the kernel makes in one step is one here.
std::vector<set> steps_towards(const set& requested, const set& now) {
  std::vector<set> steps;
  set next = now;
  const auto end_step = [&] {
    if (next != (steps.empty() ? now : steps.back())) steps.push_back(next);
  };
  if (requested.admin_state != PM_PORT_STATE_UP) next.admin_state = requested.admin_state;
  end_step();
  if (requested.channel != now.channel) next.channel = 0;
  end_step();
  next.channel = requested.channel;
  if (requested.channel != 0 && requested.channel != now.channel)
    copy_if(next, requested, [](const setting& it) { return it.traits.of_channel; });
  end_step();
  for (const setting& first : all_settings()) {
    const kernel_step step = first.traits.step;
    if (step == kernel_step::none || step == kernel_step::state) continue;
    copy_if(next, requested, [step](const setting& it) { return it.traits.step == step; });
    end_step();
  }
  const uint8 state = std::exchange(next, requested).admin_state;
  next.admin_state = state;
  end_step();
  next = requested;
  end_step();
  return steps;
}

uint32 apply_step(interface& port, const set& requested) {
  const set before = std::exchange(port.settings, requested);
  const uint32 status = the_source().apply_settings(port, before);
  if (status != 0) port.settings = before;
  return status;
}

}  // namespace

port_settings merged_settings(port_settings now, const port_settings& from, const port_settings& to) {
  copy_if(now, to, [&](const setting& it) { return !is_equal(it, from, to); });
  if (from.is_edge != to.is_edge) now.is_edge = to.is_edge;
  return now;
}

uint32 apply_in_steps(interface& port, const port_settings& requested) {
  std::vector<set> before;  // each step that was made
  for (const set& next : steps_towards(requested, port.settings)) {
    const set now = port.settings;
    const uint32 status = apply_step(port, next);
    if (status == 0) {
      before.push_back(now);
      continue;
    }
    for (auto it = before.rbegin(); it != before.rend(); ++it) apply_step(port, *it);
    return status;
  }
  return 0;
}

}  // namespace host
