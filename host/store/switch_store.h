// What a simulated switch keeps when its process ends: settings of ports, created and deleted interfaces, cleared
// counters, the interfaces of its startup configuration.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/journal_file.h"
#include "store/stored_state.h"

namespace host {

// The path of the journal of a switch: $STATE_DIRECTORY/NAME.journal, else switches/NAME.journal in the user's state
// directory (base/state_directory.h). Throws store_error when there is no place for it.
std::string journal_path(std::string_view switch_name);

class switch_store {
 public:
  // Receives sentences for the log.
  using reporter = std::function<void(std::string_view)>;

  // Opens the journal of a switch, or begins one. Throws store_error: the journal is in use, damaged, of another
  // switch, or cannot be written.
  switch_store(std::string path, switch_identity identity, bool begins_anew, reporter report,
               const file_calls& calls = system_file_calls());

  // When the switch was started for the first time, since 1970.
  uint32 started_sec() const { return state_.identity.started_sec; }

  // Gives a machine, which is as its switch file describes it, the stored changes. To be called once. Throws
  // store_error.
  void restore(machine& to);

  // Reverts commits that waited for their confirmation when the last process ended, by the_source(), and writes the
  // journal again without what is outdated, as is done later when it has grown. To be called once, after restore(),
  // when the source stores its changes here.
  void begin(machine& of);

  // ---- What is going to change. The first note of an interface counts, until its change is stored.

  void note(interface before);
  void note_creation(const machine& of, if_index_t if_index);
  void note_deletion(const machine& of, if_index_t if_index);

  // ---- See switch_source

  uint32 store_changes(machine& of);
  uint32 store_waiting_commit(machine& of, uint32 commit);
  uint32 store_confirmation(machine& of, uint32 commit);
  void store_rollback(machine& of, uint32 commit);

 private:
  using notes = std::map<if_index_t, std::optional<interface>>;  // nothing: there was no such interface

  void load(const switch_identity& own);
  void compact(const switch_identity& own);
  void compact_large_journal();
  change_record changes_in(const machine& of) const;
  int append(const change_record& changes);
  uint32 store(machine& of, bool waits, std::optional<uint64> over);
  void put_back(machine& of);
  void forget_notes();
  void report_result(int error);

  journal_file file_;
  reporter report_;
  stored_state state_;  // as it was loaded
  uint64 next_sequence_ = 0;
  std::size_t large_bytes_ = 0;  // a journal of this size is written again
  std::vector<machine_changes> to_revert_;
  notes noted_;
  std::set<if_index_t> deleted_;                          // of those
  std::optional<std::vector<if_index_t>> listed_before_;  // machine::deleted before a deletion
  std::vector<if_index_t> startup_;                       // machine::startup as it is stored
  std::map<uint32, uint64> waiting_;                      // the records of commits, by their session
  // A rollback that could not be stored is stored with the next change.
  notes delayed_;
  std::vector<uint64> delayed_over_;
  bool is_failing_ = false;  // the last record could not be stored
};

}  // namespace host
