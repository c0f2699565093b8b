#include "messages/calls/session.h"

#include <utility>

#include "base/port_status.h"
#include "client/request.h"

namespace host {
namespace {

call session_call(mts_opc_t opcode) { return {client_queue(), SAP_SESSION, opcode}; }

std::vector<std::byte> no_fields(field_reader&) { return {}; }

// Sends the fields that `write` appends, and returns what `read` makes of those of the answer.
template <typename Write, typename Read>
auto ask_session(mts_opc_t opcode, Write write, Read read) {
  return ask_fields(session_call(opcode), fields_of(write), read);
}

template <typename Read>
auto ask_session(mts_opc_t opcode, Read read) {
  return ask_fields(session_call(opcode), {}, read);
}

// Sends a request whose answer has no fields. False without an answer.
template <typename Write>
bool change_session(mts_opc_t opcode, Write write) {
  return ask_session(opcode, write, no_fields).has_value();
}

command_changes read_changes(field_reader& from) {
  command_changes made;
  made.before = from.texts<std::string>();
  made.after = from.texts<std::string>();
  return made;
}

answered_changes read_made(field_reader& from) {
  answered_changes made;
  made.applied = from.numbers();
  made.refused.resize(from.count(2 * sizeof(be32)));
  for (pm_port_cfg_status_t& it : made.refused) {
    it.if_index = from.u32();
    it.status = from.u32();
  }
  return made;
}

std::optional<answered_rollback> read_rollback(field_reader& from) {
  const bool is_done = from.flag();
  answered_rollback done;
  done.interfaces = from.numbers();
  done.num_refused = from.u32();
  return is_done ? std::optional(std::move(done)) : std::nullopt;
}

template <typename Read>
auto end_commit(mts_opc_t opcode, uint32 session, Read read)
    -> std::optional<end_of_commit<decltype(read(std::declval<field_reader&>()))>> {
  std::vector<std::byte> request;
  field_writer(request).u32(session);
  const fields_answer answer(answered_by_errors(session_call(opcode)), request);
  if (answer.error() == static_cast<syserr_t>(kPortStatusLookOnly)) return {{.is_refused = true}};
  note_reported(session_call(opcode), answer.error());
  if (answer.error() != 0) return std::nullopt;
  field_reader fields = answer.fields();
  auto done = read(fields);
  if (fields.is_complete()) return {{.is_refused = false, .done = std::move(done)}};
  answer.note_damage();
  return std::nullopt;
}

}  // namespace

std::optional<line_begin> session_begin_line() {
  return ask_session(SESSION_OPC_BEGIN_LINE, [](field_reader& from) {
    line_begin begun{read_rollback(from), std::nullopt};
    const bool is_waiting = from.flag();
    const uint32 seconds = from.u32();
    if (is_waiting) begun.seconds_to_confirm = seconds;
    return begun;
  });
}

void session_begin_changes(std::string_view command) {
  change_session(SESSION_OPC_BEGIN_CHANGES, [&](field_writer& to) { to.text(command); });
}

std::optional<session_step> session_step_at(uint32 place) {
  const auto found = ask_session(
      SESSION_OPC_STEP, [&](field_writer& to) { to.u32(place); },
      [&](field_reader& from) -> std::optional<session_step> {
        if (const uint32 num_steps = from.u32(); place >= num_steps) return std::nullopt;
        session_step step;
        step.command = from.text();
        step.at_sec = from.u32();
        step.changes.resize(from.count(3 * sizeof(be32)));
        for (auto& [if_index, made] : step.changes) {
          if_index = from.u32();
          made = read_changes(from);
        }
        return step;
      });
  return found ? *found : std::nullopt;
}

std::optional<last_steps> session_last_steps(uint32 count) {
  return ask_session(
      SESSION_OPC_CHANGED_PORTS, [&](field_writer& to) { to.u32(count); },
      [](field_reader& from) {
        last_steps last;
        last.num_steps = from.u32();
        last.interfaces = from.numbers();
        return last;
      });
}

std::optional<answered_changes> session_undo() { return ask_session(SESSION_OPC_UNDO, read_made); }

void session_note_ports(std::span<const if_index_range_t> ranges, bool absent_too) {
  std::vector<uint32> bounds;
  for (const if_index_range_t& it : ranges) bounds.insert(bounds.end(), {it.low, it.high});
  change_session(SESSION_OPC_NOTE_PORTS, [&](field_writer& to) {
    to.flag(absent_too);
    to.numbers(bounds);
  });
}

std::vector<noted_port> session_port_results() {
  return ask_session(SESSION_OPC_PORT_RESULTS,
                     [](field_reader& from) {
                       std::vector<noted_port> ports(from.count(3 * sizeof(be32) + 1));
                       for (noted_port& it : ports) {
                         it.if_index = from.u32();
                         it.is_same = from.flag();
                         it.made = read_changes(from);
                       }
                       return ports;
                     })
      .value_or(std::vector<noted_port>());
}

bool session_dry_run(bool begins) {
  return change_session(SESSION_OPC_DRY_RUN, [=](field_writer& to) { to.flag(begins); });
}

bool session_candidate(candidate_step step) {
  return change_session(SESSION_OPC_CANDIDATE, [=](field_writer& to) { to.u8(static_cast<uint8>(step)); });
}

std::optional<std::vector<candidate_change>> session_candidate_changes(bool with_commands) {
  return ask_session(
      SESSION_OPC_CANDIDATE_CHANGES, [=](field_writer& to) { to.flag(with_commands); },
      [](field_reader& from) {
        std::vector<candidate_change> changes(from.count(3 * sizeof(be32) + 3));
        for (candidate_change& it : changes) {
          it.if_index = from.u32();
          it.may_cut = from.flag();
          it.is_deleted = from.flag();
          it.is_created = from.flag();
          it.settings = read_changes(from);
        }
        return changes;
      });
}

std::optional<answered_commit> session_commit(std::string_view command, std::optional<uint32> seconds) {
  return ask_session(
      SESSION_OPC_COMMIT,
      [&](field_writer& to) {
        to.text(command);
        to.flag(seconds.has_value());
        to.u32(seconds.value_or(0));
      },
      [](field_reader& from) {
        answered_commit answer{read_made(from), {}};
        answer.fault = from.text();
        answer.session = from.u32();
        return answer;
      });
}

std::optional<end_of_commit<answered_confirmation>> session_confirm(uint32 session) {
  return end_commit(SESSION_OPC_CONFIRM, session, [](field_reader& from) {
    answered_confirmation answer;
    answer.end = static_cast<commit_end>(from.u8());
    answer.interfaces = from.numbers();
    answer.num_refused = from.u32();
    return answer;
  });
}

std::optional<end_of_commit<std::optional<answered_rollback>>> session_roll_back(uint32 session) {
  return end_commit(SESSION_OPC_ROLL_BACK, session, read_rollback);
}

std::optional<left_commit> session_leave() {
  return ask_session(SESSION_OPC_LEAVE, [](field_reader& from) {
    left_commit left;
    const bool is_kept = from.flag();
    const uint32 seconds = from.u32();
    if (is_kept) left.kept_seconds = seconds;
    left.rolled_back = read_rollback(from);
    return left;
  });
}

std::optional<std::string> session_running_config(std::span<const if_index_t> interfaces, bool is_whole) {
  return ask_session(
      SESSION_OPC_RUNNING_CONFIG,
      [&](field_writer& to) {
        to.numbers(interfaces);
        to.flag(is_whole);
      },
      [](field_reader& from) { return std::string(from.text()); });
}

std::optional<std::vector<command_list>> session_commands(std::span<const if_index_t> interfaces) {
  return ask_session(
      SESSION_OPC_COMMANDS, [&](field_writer& to) { to.numbers(interfaces); },
      [&](field_reader& from) {
        std::vector<command_list> commands(interfaces.size());
        for (command_list& it : commands) it = from.texts<std::string>();
        return commands;
      });
}

std::optional<std::vector<listed_session>> session_list() {
  return ask_session(SESSION_OPC_SESSIONS, [](field_reader& from) {
    std::vector<listed_session> sessions(from.count(6 * sizeof(be32) + 4));
    for (listed_session& it : sessions) {
      it.number = from.u32();
      it.is_own = from.flag();
      it.user = from.text();
      it.process = from.u32();
      it.has_ended = from.flag();
      it.terminal = from.text();
      it.since_sec = from.u32();
      it.has_candidate = from.flag();
      const bool is_waiting = from.flag();
      const uint32 seconds = from.u32();
      if (is_waiting) it.seconds_to_confirm = seconds;
    }
    return sessions;
  });
}

std::optional<std::string> session_status_text(uint32 status) {
  const auto found = ask_session(
      SESSION_OPC_STATUS_TEXT, [&](field_writer& to) { to.u32(status); },
      [](field_reader& from) {
        const bool has_text = from.flag();
        const std::string_view text = from.text();
        return has_text ? std::optional(std::string(text)) : std::nullopt;
      });
  return found ? *found : std::nullopt;
}

bool session_save_startup() {
  return change_session(SESSION_OPC_SAVE_STARTUP, [](field_writer&) {});
}

}  // namespace host
