#include "settings/session.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "base/c_edge.h"
#include "base/port_status.h"
#include "settings/change_feed.h"
#include "switch/clock.h"
#include "switch/source.h"

namespace host {
namespace {

// Null: that of the process.
switch_session* running_session = nullptr;

// Null: it was not asked for, or has ended.
switch_session* process_session = nullptr;

switch_session& session_of_process() {
  static switch_session session;
  process_session = &session;
  return session;
}

std::vector<switch_session*>& every_session() {
  static std::vector<switch_session*> all;
  return all;
}

std::vector<switch_session*>& every_waiting_session() {
  static std::vector<switch_session*> all;
  return all;
}

uint32 next_number() {
  static uint32 last = 0;
  return ++last;
}

session_owner owner_of_process(uint32 since_sec) {
  const char* const terminal = ttyname(STDIN_FILENO);
  return {name_of_user(getuid()), getuid(), static_cast<uint32>(getpid()),
          terminal != nullptr ? name_of_terminal(terminal) : std::string(), since_sec};
}

}  // namespace

std::string name_of_user(uint32 user) {
  char buffer[4096];
  passwd entry{};
  passwd* found = nullptr;
  return getpwuid_r(user, &entry, buffer, sizeof buffer, &found) == 0 && found != nullptr ? entry.pw_name : "";
}

std::string shown_name(const session_owner& owner) {
  return owner.user_name.empty() ? std::to_string(owner.user) : owner.user_name;
}

std::string name_of_terminal(std::string_view device) {
  constexpr std::string_view kFolder = "/dev/";
  return std::string(device.starts_with(kFolder) ? device.substr(kFolder.size()) : device);
}

std::span<switch_session* const> living_sessions() { return every_session(); }

std::span<switch_session* const> waiting_sessions() { return every_waiting_session(); }

switch_session* holder_of(if_index_t if_index) {
  const auto& waiting = every_waiting_session();
  if (waiting.empty()) return nullptr;
  const switch_session* const own = &the_session();
  const auto found = std::find_if(waiting.begin(), waiting.end(), [=](const switch_session* it) {
    const auto held = it->unconfirmed_interfaces();
    return it == own || std::binary_search(held.begin(), held.end(), if_index);
  });
  return found == waiting.end() ? nullptr : *found;
}

switch_session* find_abandoned_session(uint32 number) {
  const auto& all = every_session();
  const auto found = std::find_if(all.begin(), all.end(), [number](const switch_session* it) {
    return it->number() == number && it->is_abandoned();
  });
  return found == all.end() ? nullptr : *found;
}

std::optional<uint32> earliest_deadline() {
  std::optional<uint32> earliest;
  for (const switch_session* const it : every_waiting_session())
    if (const uint32 deadline = it->deadline_sec(); !earliest || deadline < *earliest) earliest = deadline;
  return earliest;
}

switch_session::switch_session() : number_(next_number()), since_sec_(static_cast<uint32>(clock_now())) {
  every_session().push_back(this);
  every_waiting_session();  // lives longer than the session of the process
}

const session_owner& switch_session::owner() {
  if (!owner_) owner_ = owner_of_process(since_sec_);
  return *owner_;
}

void switch_session::set_owner(session_owner owner) {
  owner_ = std::move(owner);
  is_of_client_ = true;
}

switch_session& the_session() { return running_session != nullptr ? *running_session : session_of_process(); }

session_scope::session_scope(switch_session& session)
    : session_(session), outer_(std::exchange(running_session, &session)) {
  session_.enter();
}

session_scope::~session_scope() {
  session_.leave();
  running_session = outer_;
}

void switch_session::enter() {
  swap_journal(journal_);
  if (dry_run_) in_dry_run_.emplace(*dry_run_);
  if (is_for_candidate_) in_candidate_.emplace(candidate_->state());
}

void switch_session::leave() {
  in_candidate_.reset();
  in_dry_run_.reset();
  swap_journal(journal_);
}

// While it lives, requests are of a session, and for the switch itself: no dry run and no candidate takes them.
class switch_session::switch_scope {
 public:
  explicit switch_scope(switch_session& of)
      : of_(of),
        suspended_(running_session != nullptr ? running_session : process_session),
        outer_(std::exchange(running_session, &of)) {
    if (suspended_ != nullptr) suspended_->leave();
    swap_journal(of_.journal_);
  }
  ~switch_scope() {
    swap_journal(of_.journal_);
    if (suspended_ != nullptr) suspended_->enter();
    running_session = outer_;
  }
  switch_scope(const switch_scope&) = delete;
  switch_scope& operator=(const switch_scope&) = delete;

 private:
  switch_session& of_;
  switch_session* suspended_;
  switch_session* outer_;
};

switch_session::~switch_session() {
  if (unconfirmed_) no_throw(0, [this] { return roll_back(), 0; });
  if (unconfirmed_) end_waiting();
  if (process_session == this) process_session = nullptr;
  std::erase(every_session(), this);
}

void switch_session::abandon() {
  end_candidate();
  end_dry_run();
  view_.end();
  noted.clear();
  kept_.clear();
  is_abandoned_ = true;
}

void switch_session::begin_dry_run() {
  if (dry_run_) return;
  dry_run_.emplace(trial_state{the_machine(), {}});
  in_dry_run_.emplace(*dry_run_);
}

void switch_session::end_dry_run() {
  in_dry_run_.reset();
  dry_run_.reset();
}

void switch_session::begin_candidate() {
  if (!candidate_) candidate_ = std::make_unique<candidate>();
}

void switch_session::end_candidate() {
  leave_candidate();
  candidate_.reset();
}

void switch_session::enter_candidate() {
  if (!candidate_ || is_for_candidate_) return;
  in_candidate_.emplace(candidate_->state());
  is_for_candidate_ = true;
}

void switch_session::leave_candidate() {
  is_for_candidate_ = false;
  in_candidate_.reset();
}

machine_changes switch_session::candidate_changes() const {
  if (!candidate_) return {};
  return is_for_candidate_ ? candidate_->changes_in_trial() : candidate_->changes();
}

const interface* switch_session::find_in_candidate(if_index_t if_index) const {
  return candidate_ ? candidate_->find(if_index) : nullptr;
}

void switch_session::discard_candidate() {
  if (candidate_) candidate_->begin_again();
}

namespace {

changes_made refuse_all(const machine_changes& changes, uint32 status) {
  changes_made refused;
  for (const if_index_t it : changes.ports()) refused.refused.push_back({it, status});
  return refused;
}

// The changes of interfaces that no commit of another session holds.
machine_changes free_changes(machine_changes changes) {
  const auto is_held = [](const auto& it) { return holder_of(it.first) != nullptr; };
  std::erase_if(changes.changed, is_held);
  for (auto* const interfaces : {&changes.created, &changes.restored, &changes.deleted})
    std::erase_if(*interfaces, is_held);
  return changes;
}

}  // namespace

commit_result switch_session::commit(std::string_view command, std::optional<uint32> seconds) {
  if (!candidate_) return {};
  const machine_changes changes = candidate_->changes();
  if (unconfirmed_) return {refuse_all(changes, status_of_text("a commit of this session waits for 'confirm'")), {}};
  commit_result result;
  std::unique_ptr<guardian> keeper;
  if (seconds && !changes.is_empty() && the_source().devices()) {
    keeper = guardian::start(reversed(free_changes(changes)), result.fault);
    if (!keeper) return result;
  }
  std::optional<machine> before_commit;
  if (seconds) before_commit = the_machine();
  begin_changes(command);
  result.made = apply_changes(the_machine(), changes);
  const uint32 status =
      seconds ? the_source().store_waiting_commit(the_machine(), number_) : the_source().store_changes(the_machine());
  if (status != 0) refuse_all(result.made, status);
  if (seconds && !result.made.applied.empty()) {
    if (keeper) keeper->begin(*seconds);
    begin_waiting({result.made.applied, static_cast<uint32>(clock_now()) + *seconds, std::move(keeper)});
  }
  candidate_->begin_again(changes, result.made);
  if (unconfirmed_ && before_commit) candidate_->keep_before_commit(std::move(*before_commit));
  return result;
}

void switch_session::begin_waiting(unconfirmed_commit commit) {
  every_waiting_session().push_back(this);
  unconfirmed_ = std::make_unique<unconfirmed_commit>(std::move(commit));
}

std::unique_ptr<switch_session::unconfirmed_commit> switch_session::end_waiting() {
  std::erase(every_waiting_session(), this);
  return std::exchange(unconfirmed_, nullptr);
}

std::optional<uint32> switch_session::seconds_to_confirm() const {
  if (!unconfirmed_) return std::nullopt;
  const auto now = static_cast<uint32>(clock_now());
  return unconfirmed_->deadline_sec > now ? unconfirmed_->deadline_sec - now : 0;
}

std::span<const if_index_t> switch_session::unconfirmed_interfaces() const {
  return unconfirmed_ ? std::span<const if_index_t>(unconfirmed_->interfaces) : std::span<const if_index_t>();
}

bool switch_session::end_overdue_commit() {
  if (!unconfirmed_) return false;
  const bool is_over = seconds_to_confirm() == 0U;
  if (!is_over && !(unconfirmed_->keeper && unconfirmed_->keeper->has_ended())) return false;
  overdue_rollback_ = roll_back();
  return true;
}

std::optional<std::vector<if_index_t>> switch_session::confirm(std::optional<rollback>& rolled_back) {
  if (!unconfirmed_) {
    rolled_back = take_overdue_rollback();
    return std::nullopt;
  }
  if (unconfirmed_->keeper && !unconfirmed_->keeper->confirm()) {
    rolled_back = roll_back();
    return std::nullopt;
  }
  return end_waiting()->interfaces;
}

// The guardian does it, or the journal when there is none. Devices that cannot be read now are read by later requests.
std::optional<rollback> switch_session::roll_back() {
  if (!unconfirmed_) return take_overdue_rollback();
  const switch_scope of_switch(*this);
  keep_views(nullptr);
  const std::unique_ptr<unconfirmed_commit> commit = end_waiting();
  const changes_elsewhere by_keeper(commit->interfaces);
  const std::optional<uint32> refused = commit->keeper ? commit->keeper->roll_back() : std::nullopt;
  no_throw(0, [] { return the_source().refresh(the_machine()), 0; });
  if (refused) by_keeper.publish();
  rollback done{commit->interfaces, refused ? *refused : roll_back_change(the_machine(), number_).refused.size()};
  if (candidate_) candidate_->compare_again();
  return done;
}

}  // namespace host
