#include "settings/machine_changes.h"

#include <algorithm>
#include <utility>

#include "platform/interface_manager.h"
#include "platform/syserr.h"
#include "settings/settings.h"
#include "settings/settings_merge.h"
#include "switch/if_index_layout.h"
#include "switch/source.h"

namespace host {
namespace {

// A port that joined a channel meanwhile takes only settings that are not its channel's.
bool is_for_channel(const interface& port, const machine_changes::settings& change) {
  const bool has_joined = port.settings.channel != 0 && port.settings.channel != change.before.channel;
  if (!has_joined || change.after.channel != change.before.channel || the_source().hands_settings_to_members())
    return false;
  const auto settings = all_settings();
  return std::any_of(settings.begin(), settings.end(), [&](const setting& it) {
    return it.traits.of_channel && !is_equal(it, change.before, change.after);
  });
}

uint32 change(machine& of, if_index_t if_index, const machine_changes::settings& change) {
  interface* const port = of.find(if_index);
  if (port == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
  const port_settings requested = merged_settings(port->settings, change.before, change.after);
  if (requested == port->settings) return 0;
  if (port->refusal != 0) return port->refusal;
  if (port->is_locked) return PM_ERR_PORT_LOCKED;
  if (change.is_for_channel) return PM_ERR_PORT_IN_CHANNEL;
  note_change(*port);
  return apply_in_steps(*port, requested);
}

uint32 remove(machine& of, if_index_t if_index) {
  const interface* const found = of.find(if_index);
  if (found == nullptr) return 0;
  interface before = *found;
  const uint32 status = the_source().delete_interfaces(of, {&if_index, 1});
  if (std::as_const(of).find(if_index) == nullptr) note_deleted(std::move(before));
  return status;
}

// Why a sub-interface cannot be created of its port any more; 0: it can.
uint32 refusal_of_parent(const machine& of, if_index_t if_index) {
  if (if_index_is_sub_intf(if_index) == 0) return 0;
  const interface* const parent = of.find(parent_of(if_index));
  if (parent == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
  if (parent->settings.channel != 0) return PM_ERR_PORT_IN_CHANNEL;
  const bool is_switched = parent->settings.layer == IF_LAYER_2;
  return is_switched && !the_source().allows_sub_interfaces_of_switched_ports() ? PM_ERR_SUB_INTERFACE_ON_L2 : 0;
}

uint32 create(machine& of, const interface& requested) {
  const if_index_t if_index = requested.if_index;
  if (of.find(if_index) != nullptr) return change(of, if_index, {requested.at_start, requested.settings});
  if (const uint32 status = refusal_of_parent(of, if_index); status != 0) return status;
  if (const uint32 status = the_source().create_interfaces(of, {&if_index, 1}); status != 0) return status;
  interface& made = *of.find(if_index);
  const uint32 status = apply_in_steps(made, merged_settings(made.settings, requested.at_start, requested.settings));
  if (status == 0)
    note_created(if_index);
  else
    the_source().delete_interfaces(of, {&if_index, 1});
  return status;
}

uint32 restore(machine& of, const interface& deleted) {
  const if_index_t if_index = deleted.if_index;
  if (of.find(if_index) != nullptr) return 0;
  if (const uint32 status = refusal_of_parent(of, if_index); status != 0) return status;
  const uint32 status = the_source().restore_interface(of, deleted);
  if (status == 0) note_created(if_index);
  return status;
}

class result {
 public:
  // Later statuses of an interface count when the earlier ones are 0.
  void note(if_index_t if_index, uint32 status) {
    uint32& known = statuses_[if_index];
    if (known == 0) known = status;
  }
  bool has_refused(if_index_t if_index) const {
    const auto known = statuses_.find(if_index);
    return known != statuses_.end() && known->second != 0;
  }
  changes_made made() const {
    changes_made all;
    for (const auto& [if_index, status] : statuses_) {
      if (status == 0)
        all.applied.push_back(if_index);
      else
        all.refused.push_back({if_index, status});
    }
    return all;
  }

 private:
  std::map<if_index_t, uint32> statuses_;
};

}  // namespace

std::vector<if_index_t> machine_changes::ports() const {
  std::vector<if_index_t> all;
  for (const auto& [if_index, it] : changed) all.push_back(if_index);
  for (const auto* const interfaces : {&created, &restored, &deleted})
    for (const auto& [if_index, it] : *interfaces) all.push_back(if_index);
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

machine_changes changes_between(const machine& from, const machine& to) {
  machine_changes changes;
  for (const interface& it : to.interfaces) {
    const interface* const before = from.find(it.if_index);
    const bool is_new = before == nullptr || (it.is_created && !before->is_created);
    if (is_new)
      changes.created.emplace(it.if_index, it);
    else if (it.settings != before->settings)
      changes.changed.emplace(it.if_index, machine_changes::settings{before->settings, it.settings});
  }
  for (const interface& it : from.interfaces)
    if (to.find(it.if_index) == nullptr || changes.created.count(it.if_index) != 0)
      changes.deleted.emplace(it.if_index, it);
  return changes;
}

machine_changes rebased(const machine_changes& changes, const machine& now) {
  machine_changes left;
  const auto merge = [&](if_index_t if_index, const interface& port, const machine_changes::settings& change) {
    const port_settings after = merged_settings(port.settings, change.before, change.after);
    if (after == port.settings) return;
    left.changed.emplace(if_index, machine_changes::settings{port.settings, after, is_for_channel(port, change)});
  };
  for (const auto& [if_index, it] : changes.deleted)
    if (const interface* const port = now.find(if_index)) left.deleted.emplace(if_index, *port);
  for (const auto& [if_index, change] : changes.changed) {
    if (const interface* const port = now.find(if_index))
      merge(if_index, *port, change);
    else
      left.changed.emplace(if_index, change);
  }
  for (const auto& [if_index, it] : changes.created) {
    const interface* const port = changes.deleted.count(if_index) != 0 ? nullptr : now.find(if_index);
    if (port != nullptr)
      merge(if_index, *port, {it.at_start, it.settings});
    else
      left.created.emplace(if_index, it);
  }
  for (const auto& [if_index, it] : changes.restored)
    if (now.find(if_index) == nullptr || changes.deleted.count(if_index) != 0) left.restored.emplace(if_index, it);
  return left;
}

machine_changes reversed(const machine_changes& changes) {
  machine_changes back;
  for (const auto& [if_index, it] : changes.changed)
    back.changed.emplace(if_index, machine_changes::settings{it.after, it.before});
  back.deleted = changes.created;
  back.deleted.insert(changes.restored.begin(), changes.restored.end());
  back.restored = changes.deleted;
  return back;
}

// Sub-interfaces are deleted before their port changes, and created after it.
changes_made apply_changes(machine& of, const machine_changes& changes) {
  result results;
  for (const auto& [if_index, it] : changes.deleted) results.note(if_index, remove(of, if_index));
  for (const auto& [if_index, it] : changes.changed) results.note(if_index, change(of, if_index, it));
  for (const auto& [if_index, it] : changes.restored)
    if (!results.has_refused(if_index)) results.note(if_index, restore(of, it));
  for (const auto& [if_index, it] : changes.created) {
    if (results.has_refused(if_index)) continue;
    results.note(if_index, create(of, it));
    const auto before = changes.deleted.find(if_index);
    if (results.has_refused(if_index) && before != changes.deleted.end()) restore(of, before->second);
  }
  return results.made();
}

}  // namespace host
