// What a command id selects: lists of ids, each with its action.
#pragma once

#include <cstddef>

#include "platform/types.h"

namespace pmcli {

// A command id, or consecutive ones, and their action.
template <typename Action>
struct command_ids {
  constexpr command_ids(uint32 id, Action does) : command_ids(id, id, does) {}
  constexpr command_ids(uint32 from, uint32 to, Action does) : first(from), last(to), action(does) {}

  uint32 first;
  uint32 last;
  Action action;
};

// The action of the row that holds the id, or the default.
template <typename Action, std::size_t Rows>
constexpr Action find_action(const command_ids<Action> (&rows)[Rows], uint32 command, Action fallback) {
  for (const command_ids<Action>& row : rows)
    if (command >= row.first && command <= row.last) return row.action;
  return fallback;
}

struct command_id_range {
  uint32 first;
  uint32 last;
};

template <std::size_t Ranges>
constexpr bool holds(const command_id_range (&ranges)[Ranges], uint32 command) {
  for (const command_id_range& range : ranges)
    if (command >= range.first && command <= range.last) return true;
  return false;
}

}  // namespace pmcli
