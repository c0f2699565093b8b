// Lines of counters as tables: each piece of a line shows one member of a record.
#pragma once

#include <cstddef>

#include "platform/wire.h"
#include "support/print.h"

namespace pmcli {

template <typename Record, typename Counter>
struct counter_piece {
  const char* format;
  Counter Record::*counter;
  counter_tuple_id tuple;
};

template <typename Record, typename Counter, std::size_t Pieces>
void print_counters(cmd_rx_handle_t* rx, const counter_piece<Record, Counter> (&pieces)[Pieces], const Record& record) {
  for (const counter_piece<Record, Counter>& piece : pieces)
    print_counter(rx, piece.format, piece.tuple, record.*piece.counter);
}

}  // namespace pmcli
