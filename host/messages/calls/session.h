// The session with the switch, from the session service: its changes, its dry run, its candidate, its commit that waits
// for a confirmation. Each call is a request on client_queue(). Without an answer, or with a damaged one, the failure
// is noted (transport/failures.h) and the result is as described.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/command_changes.h"
#include "messages/session_messages.h"
#include "platform/if_index.h"
#include "platform/port_config.h"

namespace host {

// Interfaces that took a change, and those that refused it with a status.
struct answered_changes {
  std::vector<if_index_t> applied;
  std::vector<pm_port_cfg_status_t> refused;
};

struct answered_rollback {
  std::vector<if_index_t> interfaces;
  uint32 num_refused = 0;
};

// ---- Lines

struct line_begin {
  std::optional<answered_rollback> rolled_back;  // a commit was not confirmed in time
  std::optional<uint32> seconds_to_confirm;      // of a commit that waits
};

// A line begins. Nothing without an answer.
std::optional<line_begin> session_begin_line();

// A command begins that may change settings.
void session_begin_changes(std::string_view command);

// ---- Changes that can be undone

struct session_step {
  std::string command;
  uint32 at_sec = 0;  // since 1970
  std::vector<std::pair<if_index_t, command_changes>> changes;
};

// The step at a place, the oldest at 0; nothing after the last one, and without an answer.
std::optional<session_step> session_step_at(uint32 place);

struct last_steps {
  uint32 num_steps = 0;                // of the session
  std::vector<if_index_t> interfaces;  // that the last ones changed, sorted
};
std::optional<last_steps> session_last_steps(uint32 count);

// Undoes the last step. Nothing without an answer.
std::optional<answered_changes> session_undo();

// ---- The ports of a command

// Notes the ports of some ranges as they are; with `absent_too` also which of them do not exist.
void session_note_ports(std::span<const if_index_range_t> ranges, bool absent_too);

struct noted_port {
  if_index_t if_index;
  bool is_same;  // as when it was noted
  command_changes made;
};
std::vector<noted_port> session_port_results();

// ---- Dry run and candidate. False without an answer.

bool session_dry_run(bool begins);
bool session_candidate(candidate_step step);

struct candidate_change {
  if_index_t if_index;
  bool may_cut;  // its link
  bool is_deleted;
  bool is_created;
  command_changes settings;

  auto operator<=>(const candidate_change&) const = default;
};

// What a commit would change, by interface; the commands only if they are needed. Nothing without an answer.
std::optional<std::vector<candidate_change>> session_candidate_changes(bool with_commands);

// ---- Commits

struct answered_commit {
  answered_changes made;
  std::string fault;   // why nothing could be committed; empty: it was
  uint32 session = 0;  // its number
};

// Commits the candidate; with `seconds` the commit waits that long for its confirmation. Nothing without an answer.
std::optional<answered_commit> session_commit(std::string_view command, std::optional<uint32> seconds);

constexpr uint32 kOwnSession = 0;  // in the place of a session's number

struct answered_confirmation {
  commit_end end = commit_end::none_waits;
  std::vector<if_index_t> interfaces;
  uint32 num_refused = 0;  // of the rollback
};

// What came of ending the commit of a session. A user without the right to end it is refused, which is no failure.
template <typename Done>
struct end_of_commit {
  bool is_refused = false;
  Done done = {};
};
std::optional<end_of_commit<answered_confirmation>> session_confirm(uint32 session = kOwnSession);

// Rolls back the commit that waits; `done` is empty when none did.
std::optional<end_of_commit<std::optional<answered_rollback>>> session_roll_back(uint32 session = kOwnSession);

// The shell ends, and with it its commit that waits, unless the switch keeps that.
struct left_commit {
  std::optional<uint32> kept_seconds;  // in which it is to be confirmed
  std::optional<answered_rollback> rolled_back;
};
std::optional<left_commit> session_leave();

// ---- Settings as commands

// The running configuration of some interfaces, or of the whole switch, which has these.
std::optional<std::string> session_running_config(std::span<const if_index_t> interfaces, bool is_whole);

// The commands of the settings of each interface.
std::optional<std::vector<command_list>> session_commands(std::span<const if_index_t> interfaces);

// The settings were stored as those with which the switch starts.
bool session_save_startup();

// ---- The sessions of the switch

struct listed_session {
  uint32 number = 0;
  bool is_own = false;
  std::string user;  // a number when the user has no name
  uint32 process = 0;
  bool has_ended = false;  // the process; a commit that waits is left
  std::string terminal;    // empty: none
  uint32 since_sec = 0;    // since 1970
  bool has_candidate = false;
  std::optional<uint32> seconds_to_confirm;  // of a commit that waits

  bool operator==(const listed_session&) const = default;
};

// The oldest first. Nothing without an answer.
std::optional<std::vector<listed_session>> session_list();

// ---- Statuses

// The text that the services have for a status of a port (base/port_status.h); nothing when it has none.
std::optional<std::string> session_status_text(uint32 status);

}  // namespace host
