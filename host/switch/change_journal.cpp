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

std::vector<if_index_t> take_changes_back(machine& of) {
  std::vector<if_index_t> changed;
  for (const auto& [if_index, before] : journal.before) {
    interface* const port = of.find(if_index);
    if (port == nullptr || static_cast<const port_settings&>(*port) == before) continue;
    put_back(*port, before);
    changed.push_back(if_index);
  }
  journal.before.clear();
  return changed;
}

}  // namespace host
