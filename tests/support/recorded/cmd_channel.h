// What the library printed on the output channel and on the terminal.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/cmd_channel.h"
#include "platform/paraminfo.h"

namespace pmcli_test {

// A bound value: a number for the codes of 32 and 64 bits, else its text (MAC "0011.2233.4455", IPv4 "10.0.0.1", float
// "-3.05").
struct tuple_value {
  tuple_value(const char* text) : held(std::string(text)) {}
  tuple_value(std::string text) : held(std::move(text)) {}
  template <typename Number>
  requires std::is_integral_v<Number> || std::is_enum_v<Number> tuple_value(Number number)
      : held(static_cast<uint64>(number)) {}
  bool operator==(const tuple_value&) const = default;

  std::variant<uint64, std::string> held;
};

struct bound_tuple {
  uint32 id;
  tuple_value value;
  bool operator==(const bound_tuple&) const = default;
};
using Tuples = std::vector<bound_tuple>;
void PrintTo(const bound_tuple& tuple, std::ostream* out);

// What one cmd_prt() printed.
struct printed_piece {
  std::string format;
  std::string text;
  Tuples tuples;
  std::vector<std::string> values;  // of each tuple the whole text, neither padded nor cut
};

struct recorded_cmd_channel {
  std::vector<printed_piece> pieces;                             // one for each cmd_prt()
  uint32 short_rows = 0;                                         // calls of cmd_print_short()
  uint32 sends = 0;                                              // calls of cmd_prt_send()
  std::vector<std::string> failures;                             // texts of cmd_rsp_send_nok()
  std::vector<std::vector<vsh_intf_mono_range_t>> error_ranges;  // of cmd_mrange_error_set()
  std::map<uint32, std::map<uint32, std::string>> enum_texts;    // by tag and value; without one the number is shown
};

}  // namespace pmcli_test
