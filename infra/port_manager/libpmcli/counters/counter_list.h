// Long lists of counters as tables: a row is a label, a tuple id and the source of the value.
#pragma once

#include <algorithm>
#include <span>

#include "platform/cmd_channel.h"
#include "platform/types.h"
#include "support/print.h"

namespace pmcli {

template <typename Record>
struct counter_row {
  const char* label;
  counter_tuple_id tuple;
  uint64 (*value)(const Record& record);
};

// A member of a record as the value of a row.
template <auto Member, typename Record>
uint64 counter(const Record& record) {
  return record.*Member;
}

// Several values added up.
template <auto... Values, typename Record>
uint64 sum(const Record& record) {
  return (Values(record) + ...);
}

// "  LABEL   VALUE", for a value that is not 0.
void print_nonzero_counter(cmd_rx_handle_t* rx, const char* label, counter_tuple_id tuple, uint64 value);

// " NN. LABEL = VALUE".
void print_numbered_counter(cmd_rx_handle_t* rx, int number, const char* label, counter_tuple_id tuple, uint64 value);

template <typename Record>
bool any_nonzero(std::span<const counter_row<Record>> rows, const Record& record) {
  return std::any_of(rows.begin(), rows.end(), [&](const counter_row<Record>& row) { return row.value(record) != 0; });
}

template <typename Record>
void print_nonzero(cmd_rx_handle_t* rx, std::span<const counter_row<Record>> rows, const Record& record) {
  for (const counter_row<Record>& row : rows) print_nonzero_counter(rx, row.label, row.tuple, row.value(record));
}

// Numbers the lines from `number` on; returns the number that follows.
template <typename Record>
int print_numbered(cmd_rx_handle_t* rx, int number, std::span<const counter_row<Record>> rows, const Record& record) {
  for (const counter_row<Record>& row : rows)
    print_numbered_counter(rx, number++, row.label, row.tuple, row.value(record));
  return number;
}

}  // namespace pmcli
