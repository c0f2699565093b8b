#include "settings/change_journal.h"

#include <algorithm>
#include <utility>

#include "settings/settings_merge.h"
#include "switch/clock.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr std::size_t kMostPorts = 20'000;

change_journal journal;

bool is_changed(const machine& of, if_index_t if_index, const port_settings& before) {
  const interface* const port = of.find(if_index);
  return port != nullptr && port->settings != before;
}

std::size_t num_ports(const change_step& step) {
  return step.before.size() + step.created.size() + step.deleted.size();
}

// Removes unchanged ports from the last step, and the step when it is empty.
void drop_empty_step(const machine& of) {
  if (journal.steps.empty()) return;
  change_step& last = journal.steps.back();
  std::erase_if(last.before, [&](const auto& it) { return !is_changed(of, it.first, it.second); });
  std::erase_if(last.created, [&](if_index_t it) { return of.find(it) == nullptr; });
  std::erase_if(last.deleted, [&](const interface& it) { return of.find(it.if_index) != nullptr; });
  if (num_ports(last) == 0) {
    journal.steps.pop_back();
    if (!journal.steps.empty()) journal.num_ports -= num_ports(journal.steps.back());
  }
  journal.is_running = false;
}

void forget_oldest_steps() {
  if (!journal.steps.empty()) journal.num_ports += num_ports(journal.steps.back());
  while (journal.num_ports > kMostPorts && journal.steps.size() > 1) {
    journal.num_ports -= num_ports(journal.steps.front());
    journal.steps.pop_front();
  }
}

// The step of the running command; a change without a command begins its own step.
change_step& running_step() {
  if (!journal.is_running) begin_changes({});
  return journal.steps.back();
}

void add_result(changes_made& made, if_index_t if_index, uint32 status) {
  if (status == 0)
    made.applied.push_back(if_index);
  else
    made.refused.push_back({if_index, status});
}

void delete_created(const change_step& step, machine& of, changes_made& made) {
  if (step.created.empty()) return;
  const uint32 status = the_source().delete_interfaces(of, step.created);
  for (const if_index_t it : step.created) add_result(made, it, status);
}

void create_deleted(const change_step& step, machine& of, changes_made& made) {
  for (const interface& it : step.deleted) add_result(made, it.if_index, the_source().restore_interface(of, it));
}

void restore_settings(const change_step& step, machine& of, changes_made& made) {
  for (const auto& [if_index, before] : step.before) {
    interface* const port = of.find(if_index);
    if (port == nullptr) continue;  // created by the same command, and deleted by now
    add_result(made, if_index, apply_in_steps(*port, before));
  }
}

// Undoes the last step, and has `store` store that: with the status of a refusal nothing has changed.
template <typename Store>
changes_made undo_last_step(machine& of, Store store) {
  changes_made made;
  if (change_steps(of).empty()) return store(), made;
  const change_step step = journal.steps.back();  // a copy: undoing notes changes, too
  delete_created(step, of, made);
  create_deleted(step, of, made);
  restore_settings(step, of, made);
  if (const uint32 status = store(); status != 0) refuse_all(made, status);
  drop_empty_step(of);
  std::sort(made.applied.begin(), made.applied.end());
  std::sort(made.refused.begin(), made.refused.end(),
            [](const auto& one, const auto& other) { return one.if_index < other.if_index; });
  return made;
}

}  // namespace

std::vector<if_index_t> change_step::ports() const {
  std::vector<if_index_t> all = created;
  for (const auto& [if_index, settings] : before) all.push_back(if_index);
  for (const interface& it : deleted) all.push_back(it.if_index);
  std::sort(all.begin(), all.end());
  return all;
}

void swap_journal(change_journal& other) { std::swap(journal, other); }

void begin_changes(std::string_view command) {
  drop_empty_step(the_machine());
  forget_oldest_steps();
  change_step& step = journal.steps.emplace_back();
  step.command = command;
  step.at_sec = static_cast<uint32>(clock_now());
  journal.is_running = true;
}

void forget_changes() { journal = {}; }

void note_change(const interface& port) { running_step().before.emplace(port.if_index, port.settings); }

void note_created(if_index_t if_index) { running_step().created.push_back(if_index); }

void note_deleted(interface port) { running_step().deleted.push_back(std::move(port)); }

const std::deque<change_step>& change_steps(const machine& of) {
  drop_empty_step(of);
  return journal.steps;
}

std::vector<if_index_t> changed_ports(const machine& of, std::size_t num_steps) {
  const auto& steps = change_steps(of);
  std::vector<if_index_t> ports;
  for (std::size_t i = steps.size() - std::min(num_steps, steps.size()); i < steps.size(); ++i) {
    const std::vector<if_index_t> of_step = steps[i].ports();
    ports.insert(ports.end(), of_step.begin(), of_step.end());
  }
  std::sort(ports.begin(), ports.end());
  ports.erase(std::unique(ports.begin(), ports.end()), ports.end());
  return ports;
}

void refuse_all(changes_made& made, uint32 status) {
  for (const if_index_t it : std::exchange(made.applied, {})) made.refused.push_back({it, status});
}

changes_made take_change_back(machine& of) {
  return undo_last_step(of, [&of] { return the_source().store_changes(of); });
}

changes_made roll_back_change(machine& of, uint32 commit) {
  return undo_last_step(of, [&of, commit] { return the_source().store_rollback(of, commit), 0U; });
}

}  // namespace host
