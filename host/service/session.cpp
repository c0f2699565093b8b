// The session service: changes, dry run, candidate and commits of the session that asks (settings/session.h).
#include "settings/session.h"

#include <algorithm>
#include <map>
#include <string>

#include "base/port_status.h"
#include "messages/session_messages.h"
#include "service/answers.h"
#include "service/services.h"
#include "settings/running_config.h"
#include "settings/setting_differences.h"
#include "settings/settings.h"
#include "switch/range_text.h"

namespace host {
namespace {

reply answer_nothing() {
  return answer_fields([](field_writer&) {});
}

void write_interfaces(field_writer& to, std::span<const if_index_t> interfaces) { to.numbers(interfaces); }

void write_difference(field_writer& to, const command_changes& made) {
  to.texts(made.before);
  to.texts(made.after);
}

void write_made(field_writer& to, const changes_made& made) {
  write_interfaces(to, made.applied);
  to.u32(static_cast<uint32>(made.refused.size()));
  for (const auto& [if_index, status] : made.refused) {
    to.u32(if_index);
    to.u32(status);
  }
}

void write_rollback(field_writer& to, const std::optional<rollback>& done) {
  to.flag(done.has_value());
  write_interfaces(to, done ? std::span<const if_index_t>(done->interfaces) : std::span<const if_index_t>());
  to.u32(done ? static_cast<uint32>(done->num_refused) : 0);
}

std::string itself(if_index_t if_index) { return "interface " + range_text({&if_index, 1}); }

// ---- Lines

reply begin_line(field_reader&) {
  the_session().end_overdue_commit();
  const std::optional<rollback> rolled_back = the_session().take_overdue_rollback();
  const std::optional<uint32> seconds = the_session().seconds_to_confirm();
  return answer_fields([&](field_writer& to) {
    write_rollback(to, rolled_back);
    to.flag(seconds.has_value());
    to.u32(seconds.value_or(0));
  });
}

reply begin_command(field_reader& request) {
  const std::string_view command = request.text();
  if (!request.is_complete()) return reject();
  begin_changes(command);
  return answer_nothing();
}

// ---- Steps

// The settings of a port after a step: those before a later step, or the current ones.
command_list commands_after(const std::deque<change_step>& steps, std::size_t at, const interface& port) {
  for (std::size_t later = at + 1; later < steps.size(); ++later)
    if (const auto found = steps[later].before.find(port.if_index); found != steps[later].before.end())
      return commands_with(port, found->second);
  return commands_of(port);
}

// The port that a step changed, as it is now or was when a later step deleted it.
const interface* port_of(const std::deque<change_step>& steps, std::size_t at, const machine& of, if_index_t if_index) {
  for (std::size_t later = at + 1; later < steps.size(); ++later)
    for (const interface& deleted : steps[later].deleted)
      if (deleted.if_index == if_index) return &deleted;
  return of.find(if_index);
}

std::map<if_index_t, command_changes> differences(const std::deque<change_step>& steps, std::size_t at,
                                                  const machine& of) {
  const change_step& step = steps[at];
  std::map<if_index_t, command_changes> found;
  for (const auto& [if_index, settings] : step.before)
    if (const interface* const port = port_of(steps, at, of, if_index); port != nullptr)
      found[if_index] = difference_between(commands_with(*port, settings), commands_after(steps, at, *port));
  for (const if_index_t it : step.created) found[it] = {{}, {itself(it)}};
  for (const interface& it : step.deleted) found[it.if_index] = {{itself(it.if_index)}, {}};
  return found;
}

reply answer_step(field_reader& request) {
  const uint32 place = request.u32();
  if (!request.is_complete()) return reject();
  const auto& steps = change_steps(the_machine());
  return answer_fields([&](field_writer& to) {
    to.u32(static_cast<uint32>(steps.size()));
    if (place >= steps.size()) return;
    to.text(steps[place].command);
    to.u32(steps[place].at_sec);
    const auto found = differences(steps, place, the_machine());
    to.u32(static_cast<uint32>(found.size()));
    for (const auto& [if_index, made] : found) {
      to.u32(if_index);
      write_difference(to, made);
    }
  });
}

reply answer_changed_ports(field_reader& request) {
  const uint32 count = request.u32();
  if (!request.is_complete()) return reject();
  const auto num_steps = static_cast<uint32>(change_steps(the_machine()).size());
  return answer_fields([&](field_writer& to) {
    to.u32(num_steps);
    write_interfaces(to, changed_ports(the_machine(), count));
  });
}

reply undo_step(field_reader&) {
  const changes_made made = take_change_back(the_machine());
  return answer_fields([&](field_writer& to) { write_made(to, made); });
}

// ---- Ports of a command

void note_port(if_index_t if_index) {
  const interface* const port = std::as_const(the_machine()).find(if_index);
  the_session().noted.emplace(if_index, port == nullptr ? std::nullopt : std::optional(port->settings));
}

reply note_ports(field_reader& request) {
  const bool absent_too = request.flag();
  const std::vector<uint32> bounds = request.numbers();
  if (!request.is_complete() || bounds.size() % 2 != 0) return reject();
  the_session().noted.clear();
  for (std::size_t i = 0; i < bounds.size(); i += 2) {
    const if_index_t low = bounds[i], high = bounds[i + 1];
    if (absent_too && low == high) note_port(low);
    for (const interface& it : the_machine().interfaces)
      if (low <= it.if_index && it.if_index <= high) note_port(it.if_index);
  }
  return answer_nothing();
}

// `before` is empty for an interface that did not exist.
command_changes changes_of(if_index_t if_index, const std::optional<port_settings>& before, const interface* port) {
  if (before && port != nullptr) return change_of(*port, *before);
  command_changes made;
  if (before)
    made.before = {itself(if_index)};
  else if (port != nullptr)
    made.after = {itself(if_index)};
  return made;
}

reply answer_port_results(field_reader&) {
  const auto& noted = the_session().noted;
  return answer_fields([&](field_writer& to) {
    to.u32(static_cast<uint32>(noted.size()));
    for (const auto& [if_index, before] : noted) {
      const interface* const port = std::as_const(the_machine()).find(if_index);
      to.u32(if_index);
      to.flag(port != nullptr ? before == port->settings : !before);
      write_difference(to, changes_of(if_index, before, port));
    }
  });
}

// ---- Dry run and candidate

reply run_dry(field_reader& request) {
  const bool begins = request.flag();
  if (!request.is_complete()) return reject();
  begins ? the_session().begin_dry_run() : the_session().end_dry_run();
  return answer_nothing();
}

reply step_candidate(field_reader& request) {
  const auto step = static_cast<candidate_step>(request.u8());
  if (!request.is_complete()) return reject();
  switch (step) {
    case candidate_step::begin: the_session().begin_candidate(); break;
    case candidate_step::enter: the_session().enter_candidate(); break;
    case candidate_step::leave: the_session().leave_candidate(); break;
    case candidate_step::discard: the_session().discard_candidate(); break;
    case candidate_step::end: the_session().end_candidate(); break;
    default: return reject_opcode();
  }
  return answer_nothing();
}

// Whether a value is the one of the "no" form.
bool is_off(const setting& of, const port_settings& settings) {
  const auto value = of.get(settings);
  return std::any_of(of.forms.begin(), of.forms.end(), [&](const setting_form& it) {
    return it.kind == form_kind::off && value == setting_value(it.value);
  });
}

bool can_cut(const machine_changes::settings& change) {
  for (const setting& it : all_settings()) {
    if (it.traits.cuts == may_cut::never || is_equal(it, change.before, change.after)) continue;
    if (it.traits.cuts == may_cut::always || !is_off(it, change.after)) return true;
  }
  return false;
}

struct shown_change {
  bool may_cut = false;
  bool is_deleted = false;
  bool is_created = false;
  command_changes settings;
};

std::map<if_index_t, shown_change> shown_changes(const machine_changes& changes, bool with_commands) {
  std::map<if_index_t, shown_change> shown;
  for (const auto& [if_index, change] : changes.changed) {
    const interface* port = std::as_const(the_machine()).find(if_index);
    if (port == nullptr) port = the_session().find_in_candidate(if_index);
    if (with_commands && port == nullptr) continue;  // there is nothing to write them for
    shown_change& it = shown[if_index];
    it.may_cut = can_cut(change);
    if (with_commands)
      it.settings = difference_between(commands_with(*port, change.before), commands_with(*port, change.after));
  }
  for (const auto& [if_index, it] : changes.deleted) shown[if_index].is_deleted = shown[if_index].may_cut = true;
  for (const auto& [if_index, it] : changes.created) {
    shown[if_index].is_created = true;
    if (with_commands) shown[if_index].settings = difference_between(commands_with(it, it.at_start), commands_of(it));
  }
  return shown;
}

reply answer_candidate_changes(field_reader& request) {
  const bool with_commands = request.flag();
  if (!request.is_complete()) return reject();
  const auto shown = shown_changes(the_session().candidate_changes(), with_commands);
  return answer_fields([&](field_writer& to) {
    to.u32(static_cast<uint32>(shown.size()));
    for (const auto& [if_index, change] : shown) {
      to.u32(if_index);
      to.flag(change.may_cut);
      to.flag(change.is_deleted);
      to.flag(change.is_created);
      write_difference(to, change.settings);
    }
  });
}

// ---- Commits

reply commit_changes(field_reader& request) {
  const std::string_view command = request.text();
  const bool is_to_be_confirmed = request.flag();
  const uint32 seconds = request.u32();
  if (!request.is_complete() || seconds > kLongestConfirmationSec) return reject();
  const commit_result result =
      the_session().commit(command, is_to_be_confirmed ? std::optional(seconds) : std::nullopt);
  return answer_fields([&](field_writer& to) {
    write_made(to, result.made);
    to.text(result.fault);
    to.u32(the_session().number());
  });
}

// The session whose commit a request ends; null when it is not that of the request and its process has not ended.
switch_session* session_to_end(uint32 number) { return number == 0 ? &the_session() : find_abandoned_session(number); }

reply confirm(field_reader& request) {
  const uint32 number = request.u32();
  if (!request.is_complete()) return reject();
  switch_session* const of = session_to_end(number);
  if (of != nullptr)
    if (const uint32 status = the_source().store_confirmation(the_machine(), of->number()); status != 0)
      return answer_error(static_cast<syserr_t>(status));
  std::optional<rollback> rolled_back;
  const auto kept = of != nullptr ? of->confirm(rolled_back) : std::nullopt;
  const commit_end end = kept ? commit_end::kept : rolled_back ? commit_end::rolled_back : commit_end::none_waits;
  return answer_fields([&](field_writer& to) {
    to.u8(static_cast<uint8>(end));
    write_interfaces(to, kept ? *kept : rolled_back ? rolled_back->interfaces : std::vector<if_index_t>());
    to.u32(rolled_back ? static_cast<uint32>(rolled_back->num_refused) : 0);
  });
}

reply roll_back(field_reader& request) {
  const uint32 number = request.u32();
  if (!request.is_complete()) return reject();
  switch_session* const of = session_to_end(number);
  const std::optional<rollback> done = of != nullptr ? of->roll_back() : std::nullopt;
  return answer_fields([&](field_writer& to) { write_rollback(to, done); });
}

// The switch of a shell of the same process ends with it.
reply leave(field_reader&) {
  const std::optional<uint32> seconds =
      the_session().is_of_client() ? the_session().seconds_to_confirm() : std::nullopt;
  const std::optional<rollback> done = seconds ? std::nullopt : the_session().roll_back();
  return answer_fields([&](field_writer& to) {
    to.flag(seconds.has_value());
    to.u32(seconds.value_or(0));
    write_rollback(to, done);
  });
}

// ---- Settings as commands

reply answer_running_config(field_reader& request) {
  const std::vector<if_index_t> interfaces = request.numbers();
  const bool is_whole = request.flag();
  if (!request.is_complete()) return reject();
  const machine& of = the_machine();
  const std::span<const if_index_t> deleted = of.deleted;
  const std::string text = running_config(of, interfaces, is_whole ? deleted : std::span<const if_index_t>());
  return answer_fields([&](field_writer& to) { to.text(text); });
}

reply answer_commands(field_reader& request) {
  const std::vector<if_index_t> interfaces = request.numbers();
  if (!request.is_complete()) return reject();
  return answer_fields([&](field_writer& to) {
    for (const if_index_t it : interfaces) {
      const interface* const port = std::as_const(the_machine()).find(it);
      to.texts(port != nullptr ? commands_of(*port) : command_list());
    }
  });
}

reply save_startup(field_reader&) {
  the_machine().save_startup();
  return answer_nothing();
}

reply answer_status_text(field_reader& request) {
  const uint32 status = request.u32();
  if (!request.is_complete()) return reject();
  const char* const text = text_of_port_status(status);
  return answer_fields([&](field_writer& to) {
    to.flag(text != nullptr);
    to.text(text != nullptr ? text : "");
  });
}

// ---- The sessions of the switch

void write_session(field_writer& to, switch_session& it) {
  const session_owner& owner = it.owner();
  const std::optional<uint32> seconds = it.seconds_to_confirm();
  to.u32(it.number());
  to.flag(&it == &the_session());
  to.text(shown_name(owner));
  to.u32(owner.process);
  to.flag(it.is_abandoned());
  to.text(owner.terminal);
  to.u32(owner.since_sec);
  to.flag(it.has_candidate());
  to.flag(seconds.has_value());
  to.u32(seconds.value_or(0));
}

reply answer_sessions(field_reader&) {
  const auto sessions = living_sessions();
  return answer_fields([&](field_writer& to) {
    to.u32(static_cast<uint32>(sessions.size()));
    for (switch_session* const it : sessions) write_session(to, *it);
  });
}

// ---- Dispatch

struct session_request {
  mts_opc_t opcode;
  bool is_empty;  // it has no fields
  reply (*serve)(field_reader& request);
};

constexpr session_request kSessionRequests[] = {
    {SESSION_OPC_BEGIN_LINE, true, begin_line},
    {SESSION_OPC_BEGIN_CHANGES, false, begin_command},
    {SESSION_OPC_STEP, false, answer_step},
    {SESSION_OPC_CHANGED_PORTS, false, answer_changed_ports},
    {SESSION_OPC_UNDO, true, undo_step},
    {SESSION_OPC_NOTE_PORTS, false, note_ports},
    {SESSION_OPC_PORT_RESULTS, true, answer_port_results},
    {SESSION_OPC_DRY_RUN, false, run_dry},
    {SESSION_OPC_CANDIDATE, false, step_candidate},
    {SESSION_OPC_CANDIDATE_CHANGES, false, answer_candidate_changes},
    {SESSION_OPC_COMMIT, false, commit_changes},
    {SESSION_OPC_CONFIRM, false, confirm},
    {SESSION_OPC_ROLL_BACK, false, roll_back},
    {SESSION_OPC_LEAVE, true, leave},
    {SESSION_OPC_RUNNING_CONFIG, false, answer_running_config},
    {SESSION_OPC_COMMANDS, false, answer_commands},
    {SESSION_OPC_SAVE_STARTUP, true, save_startup},
    {SESSION_OPC_STATUS_TEXT, false, answer_status_text},
    {SESSION_OPC_SESSIONS, true, answer_sessions},
};

}  // namespace

reply serve_session(mts_opc_t opcode, std::span<const std::byte> request) {
  const auto* const known = std::find_if(std::begin(kSessionRequests), std::end(kSessionRequests),
                                         [opcode](const session_request& it) { return it.opcode == opcode; });
  if (known == std::end(kSessionRequests) || (known->is_empty && !request.empty())) return reject();
  field_reader fields(request);
  return known->serve(fields);
}

}  // namespace host
