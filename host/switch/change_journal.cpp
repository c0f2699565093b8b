#include "switch/change_journal.h"

#include <algorithm>
#include <map>
#include <utility>

#include "switch/link.h"
#include "switch/source.h"

namespace host {
namespace {

struct {
  bool is_new_command = true;
  std::map<if_index_t, port_settings> before;
  std::vector<if_index_t> created;
  std::vector<interface> deleted;
} journal;

void forget_earlier_commands() {
  if (!journal.is_new_command) return;
  journal = {};
  journal.is_new_command = false;
}

// The link changes like any other, at this moment.
void put_back(interface& port, const port_settings& before) {
  const port_settings::link link{before.oper_state, before.state_reason};
  const port_settings::link now{port.oper_state, port.state_reason};
  static_cast<port_settings&>(port) = before;
  port.oper_state = now.state;
  port.state_reason = now.reason;
  set_link(port, link.state, link.reason);
}

void add_result(changes_back& made, if_index_t if_index, uint32 status) {
  if (status == 0)
    made.restored.push_back(if_index);
  else
    made.refused.push_back({if_index, status});
}

void delete_created(machine& of, changes_back& made) {
  std::vector<if_index_t> created = journal.created;
  std::erase_if(created, [&of](if_index_t it) { return of.find(it) == nullptr; });
  if (created.empty()) return;
  const uint32 status = the_source().delete_interfaces(of, created);
  for (const if_index_t it : created) add_result(made, it, status);
}

void create_deleted(machine& of, changes_back& made) {
  for (const interface& it : journal.deleted)
    if (of.find(it.if_index) == nullptr) add_result(made, it.if_index, the_source().restore_interface(of, it));
}

}  // namespace

void begin_changes() { journal.is_new_command = true; }

void note_change(const interface& port) {
  forget_earlier_commands();
  journal.before.emplace(port.if_index, port);
}

void note_created(if_index_t if_index) {
  forget_earlier_commands();
  journal.created.push_back(if_index);
}

void note_deleted(interface port) {
  forget_earlier_commands();
  journal.deleted.push_back(std::move(port));
}

std::vector<if_index_t> changed_ports() {
  std::vector<if_index_t> ports = journal.created;
  for (const auto& [if_index, before] : journal.before) ports.push_back(if_index);
  for (const interface& it : journal.deleted) ports.push_back(it.if_index);
  std::sort(ports.begin(), ports.end());
  return ports;
}

changes_back take_changes_back(machine& of) {
  changes_back made;
  delete_created(of, made);
  create_deleted(of, made);
  for (const auto& [if_index, before] : journal.before) {
    interface* const port = of.find(if_index);
    if (port == nullptr || static_cast<const port_settings&>(*port) == before) continue;
    const port_settings now = *port;
    put_back(*port, before);
    const uint32 status = the_source().apply_settings(*port, now);
    if (status != 0) put_back(*port, now);
    add_result(made, if_index, status);
  }
  journal = {};
  std::sort(made.restored.begin(), made.restored.end());
  std::sort(made.refused.begin(), made.refused.end(),
            [](const auto& one, const auto& other) { return one.if_index < other.if_index; });
  return made;
}

}  // namespace host
