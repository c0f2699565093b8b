#include "switch/change_journal.h"

#include <map>

#include "switch/link.h"

namespace host {
namespace {

struct {
  bool is_new_command = true;
  std::map<if_index_t, port_settings> before;
} journal;

// The link changes like any other, at this moment.
void put_back(interface& port, const port_settings& before) {
  const port_settings::link link{before.oper_state, before.state_reason};
  const port_settings::link now{port.oper_state, port.state_reason};
  static_cast<port_settings&>(port) = before;
  port.oper_state = now.state;
  port.state_reason = now.reason;
  set_link(port, link.state, link.reason);
}

}  // namespace

void begin_changes() { journal.is_new_command = true; }

void note_change(const interface& port) {
  if (journal.is_new_command) journal.before.clear();
  journal.is_new_command = false;
  journal.before.emplace(port.if_index, port);
}

void forget_changes(if_index_t if_index) { journal.before.erase(if_index); }

std::vector<if_index_t> changed_ports() {
  std::vector<if_index_t> ports;
  for (const auto& [if_index, before] : journal.before) ports.push_back(if_index);
  return ports;
}

changes_back take_changes_back(machine& of) {
  changes_back made;
  for (const auto& [if_index, before] : journal.before) {
    interface* const port = of.find(if_index);
    if (port == nullptr || static_cast<const port_settings&>(*port) == before) continue;
    const port_settings now = *port;
    put_back(*port, before);
    const uint32 status = of.settle == nullptr ? 0 : of.settle(*port, now);
    if (status == 0) {
      made.restored.push_back(if_index);
      continue;
    }
    put_back(*port, now);
    made.refused.push_back({if_index, status});
  }
  journal.before.clear();
  return made;
}

}  // namespace host
