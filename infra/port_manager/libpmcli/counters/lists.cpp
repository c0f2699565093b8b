// Lines of long lists, one counter each.

#include <cstdio>

#include "counters/counter_list.h"
#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

void pmcli::print_nonzero_counter(cmd_rx_handle_t* rx, const char* label, counter_tuple_id tuple, uint64 value) {
  if (value == 0) return;
  char format[80];
  std::snprintf(format, sizeof format, "  %-35.35s%%20s\n", label);
  print_counter(rx, format, tuple, value);
}

void pmcli::print_numbered_counter(cmd_rx_handle_t* rx, int number, const char* label, counter_tuple_id tuple,
                                   uint64 value) {
  char format[80];
  std::snprintf(format, sizeof format, "  %2d. %34s = %%s\n", number, label);
  print_counter(rx, format, tuple, value);
}

void nzero_prt(cmd_rx_handle_t* rx_handle, const uint64* value, const char* desc, int tuple) {
  print_nonzero_counter(rx_handle, desc, counter_tuple_id(static_cast<uint32>(tuple)), *value);
}

void nzero_prt_uint32(cmd_rx_handle_t* rx_handle, const uint32* value, const char* desc, int tuple) {
  print_nonzero_counter(rx_handle, desc, counter_tuple_id(static_cast<uint32>(tuple)), *value);
}

void numlist_prt(cmd_rx_handle_t* rx_handle, const uint64* value, const char* desc, int ctr, int tuple) {
  print_numbered_counter(rx_handle, ctr, desc, counter_tuple_id(static_cast<uint32>(tuple)), *value);
}

void numlist_prt_uint32(cmd_rx_handle_t* rx_handle, const uint32* value, const char* desc, int ctr, int tuple) {
  print_numbered_counter(rx_handle, ctr, desc, counter_tuple_id(static_cast<uint32>(tuple)), *value);
}
