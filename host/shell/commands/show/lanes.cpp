#include "shell/commands/show/lanes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "messages/calls/diagnostic_marks.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"

namespace host {
namespace {

constexpr char kLaneRule[] = "  ----------------------------------------------------------------------------\n";

std::string_view digits_in(std::span<const char> bytes) { return {bytes.data(), strnlen(bytes.data(), bytes.size())}; }

// "  7.00 mA  ++", as wide as the library's cells.
std::string measured_text(std::span<const char> digits, std::string_view unit, uint32 mark) {
  const std::string_view number = digits_in(digits);
  if (number.empty()) return fmt::format("{:>10} {:<2}", "N/A   ", mark_text(mark));
  return fmt::format("{:>6} {:<3} {:<2}", number, unit, mark_text(mark));
}

std::string lane_line(std::size_t number, const lane_value& lane) {
  std::string line =
      fmt::format("  {:<4}   {}   {}   {}", number, measured_text(lane.current_ma, "mA", lane.current_mark),
                  measured_text(lane.tx_power_dbm, "dBm", lane.tx_power_mark),
                  measured_text(lane.rx_power_dbm, "dBm", lane.rx_power_mark));
  line.resize(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

}  // namespace

void show_lanes(const invocation& run, if_index_t if_index) {
  if (!has_noted_lanes(if_index)) return;  // most modules have one: no request is sent for them
  const auto values = run.output.values();
  if (!values) return;
  const auto found =
      std::find_if(values->begin(), values->end(), [](const interface_value& it) { return it.of == property::lanes; });
  if (found == values->end()) return;
  const std::vector<lane_value> lanes = found->lanes();
  run.output.text("           Lane Diagnostics Information\n");
  run.output.text(kLaneRule);
  run.output.text("  Lane   Current         Tx Power        Rx Power\n");
  run.output.text(kLaneRule);
  for (std::size_t i = 0; i < lanes.size(); ++i) run.output.text(lane_line(i + 1, lanes[i]));
  run.output.text(kLaneRule);
  run.output.text("\n");
}

}  // namespace host
