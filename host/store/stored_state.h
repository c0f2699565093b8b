// The contents of a journal, put together from its records.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "settings/machine_changes.h"
#include "store/interface_image.h"

namespace host {

// The switch that a journal is of.
struct switch_identity {
  uint64 fingerprint = 0;   // of its hardware and interfaces
  std::string switch_file;  // for messages; empty: it has none
  uint32 started_sec = 0;   // when it was started for the first time, since 1970
};

// What of a switch file decides whether changes fit to it: the name, the modules, the interfaces and what they support.
// Settings, addresses and traffic may be edited.
uint64 fingerprint_of(const machine& of);

using image_map = std::map<if_index_t, interface_image>;

// A record of changes.
struct change_record {
  bool waits = false;          // they are those of a commit that waits for its confirmation
  std::vector<uint64> over{};  // records of commits that were confirmed, or that the changes revert
  std::vector<interface_image> images{};
  std::optional<std::vector<if_index_t>> startup{};  // machine::startup, when it was saved
};

// A commit without its end; an interface without an image is as in the switch file.
struct waiting_commit {
  uint64 sequence = 0;
  image_map before;
  image_map after;
};

struct stored_state {
  switch_identity identity;
  image_map images{};
  std::optional<std::vector<if_index_t>> startup{};
  std::vector<waiting_commit> waiting{};
};

// The payloads of records.
std::vector<std::byte> encode(const switch_identity& identity);
std::vector<std::byte> encode(const change_record& changes);

// Reads the payloads of a journal. Returns how many were understood: all of them, unless one is not what this program
// writes.
std::size_t read_state(std::span<const std::span<const std::byte>> payloads, stored_state& state);

// A journal of a state without waiting commits: its bytes, and its number of records.
struct journal_text {
  std::vector<std::byte> bytes;
  uint64 num_records = 0;
};
journal_text write_state(const stored_state& state);

// Makes the machine, which is as its switch file describes it, as the state says. Returns false when it is not the
// state of such a machine.
bool put_state(machine& to, const stored_state& state);

// The changes that a commit made to a machine, which is as its switch file describes it.
machine_changes changes_of_commit(const waiting_commit& commit, const machine& as_in_file);

}  // namespace host
