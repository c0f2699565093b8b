// What a switch keeps for each of its sessions: the changes that can be undone, a dry run, a candidate, a commit that
// waits for its confirmation.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <typeindex>
#include <utility>
#include <vector>

#include "platform/types.h"
#include "settings/candidate.h"
#include "settings/change_journal.h"
#include "settings/command_view.h"
#include "settings/guardian.h"
#include "settings/machine_changes.h"
#include "settings/trial.h"

namespace host {

// What a rollback did.
struct rollback {
  std::vector<if_index_t> interfaces;  // of the commit
  std::size_t num_refused = 0;         // of them
};

// A commit, and why it could not be made; empty: it was.
struct commit_result {
  changes_made made;
  std::string fault;
};

// Who has a session.
struct session_owner {
  std::string user_name;  // of the system; empty: the user has none
  uint32 user = 0;        // its number
  uint32 process = 0;
  std::string terminal;  // such as "pts/3"; empty: none, or not reported yet
  uint32 since_sec = 0;  // since 1970, by the clock of the switch

  bool operator==(const session_owner&) const = default;
};

// What the owner of a switch allows a session.
struct session_rights {
  bool may_change = true;       // the switch
  bool may_be_any_user = true;  // of the switch
};

// The name of its user, or the number of one without.
std::string shown_name(const session_owner& owner);

// The name of a user of the system; empty: it has none.
std::string name_of_user(uint32 user);

// The name of a terminal from the path of its device.
std::string name_of_terminal(std::string_view device);

// A session with the switch: a shell, or a client of a switch that many shells share.
class switch_session {
 public:
  // Of this process, until another owner is set.
  switch_session();

  // Rolls back a commit that waits for its confirmation.
  ~switch_session();
  switch_session(const switch_session&) = delete;
  switch_session& operator=(const switch_session&) = delete;

  // Of this process, from 1; no other session has or had it.
  uint32 number() const { return number_; }

  const session_owner& owner();
  void set_owner(session_owner owner);

  // Whether another process has it, or had it.
  bool is_of_client() const { return is_of_client_; }

  // The process that had it has ended, and with it all but a commit that waits for its confirmation.
  void abandon();
  bool is_abandoned() const { return is_abandoned_; }

  // All, until others are set.
  const session_rights& rights() const { return rights_; }
  void set_rights(const session_rights& rights) { rights_ = rights; }

  // The switch as its running command sees it.
  command_view& view() { return view_; }

  // ---- Dry run: until its end, requests are for a copy of the machine. A second one within it has no effect.

  void begin_dry_run();
  void end_dry_run();

  // ---- Candidate

  bool has_candidate() const { return candidate_ != nullptr; }
  void begin_candidate();  // no effect when there is one
  void end_candidate();

  // Until it is left, requests are for the candidate. No effect without one.
  void enter_candidate();
  void leave_candidate();

  // What a commit would change; nothing without a candidate. In the candidate and outside of it.
  machine_changes candidate_changes() const;

  // An interface of the candidate; null without one. Not to be called in the candidate.
  const interface* find_in_candidate(if_index_t if_index) const;

  // Begins the candidate again as a copy of the machine.
  void discard_candidate();

  // Commits the candidate for the command of this text: outside of it, and when no commit waits. With `seconds` the
  // commit waits that long for its confirmation; with the kernel's devices a process is started that rolls back.
  commit_result commit(std::string_view command, std::optional<uint32> seconds);

  // ---- A commit that waits for its confirmation

  // The seconds left; nothing when none waits.
  std::optional<uint32> seconds_to_confirm() const;

  // When they are over, by the clock of the switch. Only while a commit waits.
  uint32 deadline_sec() const { return unconfirmed_->deadline_sec; }

  // Its interfaces, sorted; none when none waits.
  std::span<const if_index_t> unconfirmed_interfaces() const;

  // Rolls back a commit whose time is over, and keeps what was done. False when there is none.
  bool end_overdue_commit();

  // What end_overdue_commit() did since the last call.
  std::optional<rollback> take_overdue_rollback() { return std::exchange(overdue_rollback_, std::nullopt); }

  // Keeps the commit that waits, and returns its interfaces. Nothing when its time was over: `rolled_back` has what was
  // done then.
  std::optional<std::vector<if_index_t>> confirm(std::optional<rollback>& rolled_back);

  // Rolls back the commit that waits. Returns what is done; nothing when none waited.
  std::optional<rollback> roll_back();

  // ---- What services keep for this session

  // The object of this type, which is made when it is first requested, and ends with the session.
  template <typename Kept>
  Kept& kept() {
    std::shared_ptr<void>& place = kept_[std::type_index(typeid(Kept))];
    if (place == nullptr) place = std::make_shared<Kept>();
    return *static_cast<Kept*>(place.get());
  }

  // ---- The ports of a command as they were before it

  using noted_ports = std::map<if_index_t, std::optional<port_settings>>;  // no settings: there was no such interface
  noted_ports noted;

 private:
  friend class session_scope;
  class switch_scope;

  struct unconfirmed_commit {
    std::vector<if_index_t> interfaces;     // that it changed, sorted
    uint32 deadline_sec = 0;                // by the clock of the switch
    std::unique_ptr<guardian> keeper = {};  // of the kernel's devices; null: their state ends with the process
  };

  // Its requests begin and end: the trials run, and the journal is the one of the session.
  void enter();
  void leave();

  void begin_waiting(unconfirmed_commit commit);
  std::unique_ptr<unconfirmed_commit> end_waiting();

  std::map<std::type_index, std::shared_ptr<void>> kept_;
  uint32 number_;
  uint32 since_sec_;
  std::optional<session_owner> owner_;  // none: this process, which was not asked for yet
  bool is_of_client_ = false;
  bool is_abandoned_ = false;
  session_rights rights_;
  command_view view_;
  change_journal journal_;
  std::optional<trial_state> dry_run_;
  std::unique_ptr<candidate> candidate_;
  bool is_for_candidate_ = false;
  std::unique_ptr<unconfirmed_commit> unconfirmed_;
  std::optional<rollback> overdue_rollback_;
  std::optional<trial> in_dry_run_;
  std::optional<trial> in_candidate_;
};

// The session that requests are of: that of the running scope, without one the session of the process.
switch_session& the_session();

// Every session, the oldest first.
std::span<switch_session* const> living_sessions();

// Those with a commit that waits for its confirmation.
std::span<switch_session* const> waiting_sessions();

// The session whose commit that waits forbids that the_session() changes an interface; null: none does. A session whose
// own commit waits changes nothing.
switch_session* holder_of(if_index_t if_index);

// The session with this number, if its process has ended; otherwise null.
switch_session* find_abandoned_session(uint32 number);

// When the time of the first commit that waits is over, by the clock of the switch.
std::optional<uint32> earliest_deadline();

// While it lives, requests are those of a session: services use its state. The end of the scope restores the previous
// one.
class session_scope {
 public:
  // The session outlives the scope.
  explicit session_scope(switch_session& session);
  ~session_scope();
  session_scope(const session_scope&) = delete;
  session_scope& operator=(const session_scope&) = delete;

 private:
  switch_session& session_;
  switch_session* outer_;
};

}  // namespace host
