#include "store/switch_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "base/port_status.h"
#include "base/state_directory.h"
#include "store/record.h"

namespace host {
namespace {

constexpr std::size_t kSmallBytes = 4 * 1024 * 1024;  // a smaller journal is not written again while the switch runs
constexpr std::size_t kGrowth = 4;

constexpr char kBeginAnew[] = "start pmshd with --new-state, which moves the file aside and begins anew.";

store_error damaged(const std::string& path, std::size_t at_byte, std::string_view what) {
  return store_error(fmt::format("the state in '{}' is damaged at byte {}: {}. Restore the file from a copy, or {}",
                                 path, at_byte, what, kBeginAnew));
}

store_error of_another_switch(const std::string& path, const std::string& switch_file) {
  return store_error(fmt::format(
      "the state in '{}' is of a switch with other modules or interfaces, from '{}'. Start pmshd with that switch, "
      "choose another name with --name, or {}",
      path, switch_file.empty() ? "--giant" : switch_file, kBeginAnew));
}

bool is_changed(const std::optional<interface>& before, const interface* now) {
  if (!before || now == nullptr) return before.has_value() != (now != nullptr);
  interface same = *before;
  same.stats = now->stats;  // they count all the time
  return same != *now || before->stats.is_cleared_here != now->stats.is_cleared_here ||
         before->stats.last_clear_sec != now->stats.last_clear_sec;
}

}  // namespace

std::string journal_path(std::string_view switch_name) {
  std::string folder;
  if (const char* const given = std::getenv("STATE_DIRECTORY"); given != nullptr && given[0] == '/')
    folder = std::string(given, std::strcspn(given, ":"));
  else
    folder = state_file("switches");
  if (!folder.empty()) return fmt::format("{}/{}.journal", folder, switch_name);
  throw store_error(
      "there is no folder for the state of the switch. Set STATE_DIRECTORY, XDG_STATE_HOME or HOME, or start pmshd "
      "with "
      "--stateless.");
}

// ---- The journal ----------------------------------------------------------------------------------------------------

switch_store::switch_store(std::string path, switch_identity identity, bool begins_anew, reporter report,
                           const file_calls& calls)
    : file_(std::move(path), begins_anew, calls), report_(std::move(report)) {
  if (!file_.moved_to().empty()) report_(fmt::format("the old state is in '{}'.", file_.moved_to()));
  if (!file_.exists())
    if (const int error = file_.replace(write_state({.identity = identity}).bytes); error != 0)
      throw store_error(
          fmt::format("cannot store the state of the switch in '{}': {}. Correct it, or start pmshd with "
                      "--stateless.",
                      file_.path(), std::strerror(error)));
  load(identity);
}

void switch_store::load(const switch_identity& own) {
  const std::string& path = file_.path();
  const std::vector<std::byte> bytes = file_.read();
  const record_list records = read_records(bytes);
  if (records.fault && !records.fault->is_at_end) throw damaged(path, records.fault->at_byte, records.fault->what);
  if (records.payloads.empty()) throw damaged(path, 0, "it does not begin with a whole record");
  if (const std::size_t known = read_state(records.payloads, state_); known < records.payloads.size()) {
    const auto at_byte =
        static_cast<std::size_t>(records.payloads[known].data() - bytes.data()) - sizeof(record_head_t);
    throw damaged(path, at_byte, "this version of pmshd does not know the record");
  }
  if (state_.identity.fingerprint != own.fingerprint) throw of_another_switch(path, state_.identity.switch_file);
  if (records.fault) {
    report_(fmt::format("the last change in '{}' was not stored completely, at byte {}: {}. It is dropped.", path,
                        records.fault->at_byte, records.fault->what));
    file_.cut(records.size_bytes);
  }
  next_sequence_ = records.payloads.size();
}

void switch_store::restore(machine& to) {
  for (const waiting_commit& it : state_.waiting) to_revert_.push_back(changes_of_commit(it, to));
  if (!put_state(to, state_)) throw of_another_switch(file_.path(), state_.identity.switch_file);
  startup_ = to.startup;
}

void switch_store::begin(machine& of) {
  const switch_identity own = state_.identity;
  for (auto it = to_revert_.rbegin(); it != to_revert_.rend(); ++it) {
    const changes_made made = apply_changes(of, rebased(reversed(*it), of));
    report_(fmt::format("a commit of {} interfaces that was not confirmed is rolled back; {} of them refused.",
                        it->ports().size(), made.refused.size()));
  }
  forget_changes();
  if (!to_revert_.empty()) {
    for (const waiting_commit& it : state_.waiting) delayed_over_.push_back(it.sequence);
    store_rollback(of, 0);
    to_revert_.clear();
    load(own);
  }
  compact(own);
  state_ = {.identity = own};
  large_bytes_ = std::max(kSmallBytes, kGrowth * file_.size_bytes());
}

void switch_store::compact(const switch_identity& own) {
  if (!state_.waiting.empty()) return;
  const journal_text text = write_state(state_);
  if (text.bytes == file_.read()) return;
  if (const int error = file_.replace(text.bytes); error != 0)
    report_(fmt::format("cannot write '{}' again without outdated changes: {}. It is kept as it is.", file_.path(),
                        std::strerror(error)));
  load(own);
}

// Whether this succeeds or not, the changes are stored.
void switch_store::compact_large_journal() {
  if (file_.size_bytes() < large_bytes_ || !waiting_.empty()) return;
  const switch_identity own = state_.identity;
  try {
    load(own);
    compact(own);
  } catch (const store_error& error) {
    report_(error.what());
  }
  state_ = {.identity = own};
  large_bytes_ = std::max(kSmallBytes, kGrowth * file_.size_bytes());
}

// ---- Notes ----------------------------------------------------------------------------------------------------------

void switch_store::note(interface before) {
  const if_index_t if_index = before.if_index;
  noted_.try_emplace(if_index, std::move(before));
}

void switch_store::note_creation(const machine& of, if_index_t if_index) {
  if (!listed_before_) listed_before_ = of.deleted;
  noted_.try_emplace(if_index);
}

void switch_store::note_deletion(const machine& of, if_index_t if_index) {
  if (!listed_before_) listed_before_ = of.deleted;
  deleted_.insert(if_index);
  for (const interface& it : of.interfaces)
    if (it.if_index == if_index || std::find(it.tracked.begin(), it.tracked.end(), if_index) != it.tracked.end())
      note(it);
}

void switch_store::forget_notes() {
  noted_.clear();
  deleted_.clear();
  listed_before_.reset();
}

// Gives the machine what was noted.
void switch_store::put_back(machine& of) {
  for (const auto& [if_index, before] : noted_)
    if (!before) of.remove(if_index);
  for (auto& [if_index, before] : noted_) {
    if (!before) continue;
    if (interface* const port = of.find(if_index))
      *port = std::move(*before);
    else
      of.add(std::move(*before));
  }
  if (listed_before_) of.deleted = std::move(*listed_before_);
  of.startup = startup_;
  forget_notes();
}

// ---- Records --------------------------------------------------------------------------------------------------------

change_record switch_store::changes_in(const machine& of) const {
  notes all = delayed_;
  all.insert(noted_.begin(), noted_.end());
  change_record changes;
  for (const auto& [if_index, before] : all) {
    if (!is_changed(before, of.find(if_index))) continue;
    interface_image image = image_of(of, if_index, before ? &*before : nullptr);
    image.was_deleted = image.was_deleted || deleted_.contains(if_index);
    changes.images.push_back(std::move(image));
  }
  if (of.startup != startup_) changes.startup = of.startup;
  return changes;
}

int switch_store::append(const change_record& changes) {
  std::vector<std::byte> bytes;
  append_record(bytes, next_sequence_, encode(changes));
  const int error = file_.append(bytes);
  if (error == 0) ++next_sequence_;
  report_result(error);
  return error;
}

// The log has one sentence when storing fails, and one when it works again.
void switch_store::report_result(int error) {
  if (error != 0 && !is_failing_)
    report_(fmt::format("cannot store changes in '{}': {}. They are refused.", file_.path(), std::strerror(error)));
  if (error == 0 && is_failing_) report_(fmt::format("changes are stored in '{}' again.", file_.path()));
  is_failing_ = error != 0;
}

uint32 switch_store::store(machine& of, bool waits, std::optional<uint64> over) {
  change_record changes = changes_in(of);
  changes.waits = waits;
  changes.over = delayed_over_;
  if (over) changes.over.push_back(*over);
  if (!changes.images.empty() || !changes.over.empty() || changes.startup)
    if (const int error = append(changes); error != 0) {
      put_back(of);
      return status_of_text(fmt::format("cannot store the change in '{}': {}", file_.path(), std::strerror(error)));
    }
  startup_ = of.startup;
  forget_notes();
  delayed_.clear();
  delayed_over_.clear();
  compact_large_journal();
  return 0;
}

uint32 switch_store::store_changes(machine& of) {
  return noted_.empty() && of.startup == startup_ ? 0 : store(of, false, {});
}

uint32 switch_store::store_waiting_commit(machine& of, uint32 commit) {
  const uint64 sequence = next_sequence_;
  const uint32 status = store(of, true, {});
  if (next_sequence_ != sequence) waiting_.insert_or_assign(commit, sequence);
  return status;
}

uint32 switch_store::store_confirmation(machine& of, uint32 commit) {
  const auto found = waiting_.find(commit);
  if (found == waiting_.end()) return store_changes(of);
  const uint32 status = store(of, false, found->second);
  if (status == 0) waiting_.erase(found);
  return status;
}

void switch_store::store_rollback(machine& of, uint32 commit) {
  if (const auto found = waiting_.find(commit); found != waiting_.end()) {
    delayed_over_.push_back(found->second);
    waiting_.erase(found);
  }
  delayed_.insert(noted_.begin(), noted_.end());
  forget_notes();
  store(of, false, {});
}

}  // namespace host
