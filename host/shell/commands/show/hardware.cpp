// "show interface hardware": driver, queues, rings, error correction and offloads of devices.
#include <algorithm>
#include <string>

#include "shell/commands/group.h"
#include "shell/commands/show/table_display.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

std::string or_unknown(std::string text) { return text.empty() ? "--" : text; }

std::string value_text(const shown_row& row, property of) { return or_unknown(row.text(of)); }

// "4 of 8": what is used, and the most.
std::string amount_text(const shown_row& row, property used, property most) {
  if (row.find(used) == nullptr) return "--";
  return row.find(most) == nullptr ? row.text(used) : row.text(used) + " of " + row.text(most);
}

struct amount_line {
  const char* label;
  property used, most;
};
constexpr amount_line kAmounts[] = {
    {"Receive queues:    ", property::rx_queues, property::max_rx_queues},
    {"Transmit queues:   ", property::tx_queues, property::max_tx_queues},
    {"Combined queues:   ", property::combined_queues, property::max_combined_queues},
    {"Other queues:      ", property::other_queues, property::max_other_queues},
    {"Receive ring:      ", property::rx_ring_entries, property::max_rx_ring_entries},
    {"Transmit ring:     ", property::tx_ring_entries, property::max_tx_ring_entries},
};

struct value_line {
  const char* label;
  property of;
};
constexpr value_line kIdentity[] = {
    {"Driver:            ", property::driver},
    {"Driver version:    ", property::driver_version},
    {"Firmware:          ", property::firmware_version},
    {"Bus:               ", property::bus},
    {"Permanent address: ", property::permanent_address},
};
constexpr value_line kFeatures[] = {
    {"Configured FEC:    ", property::configured_fec},
    {"Active FEC:        ", property::active_fec},
    {"EEE enabled:       ", property::eee_enabled},
    {"EEE active:        ", property::eee_active},
};

// The names of offloads in lines of this many characters.
std::string offload_lines(const shown_row& row) {
  constexpr std::size_t kWidth = 100;
  const std::string words = row.text(property::offloads);
  if (row.find(property::offloads) == nullptr) return "  Offloads:          --\n";
  std::string text = "  Offloads:\n", line = "   ";
  for (std::size_t at = 0; at < words.size();) {
    const std::size_t end = std::min(words.find(',', at), words.size());
    if (line.size() + 1 + end - at > kWidth) {
      text += line + "\n";
      line = "   ";
    }
    line += " " + words.substr(at, end - at);
    at = end + 1;
  }
  return line.size() > 3 ? text + line + "\n" : text;
}

std::string block_of(const shown_row& row) {
  std::string text = subject_of(row) + "\n";
  const auto add = [&](const char* label, const std::string& value) {
    text.append("  ").append(label).append(value) += '\n';
  };
  for (const value_line& it : kIdentity) add(it.label, value_text(row, it.of));
  for (const amount_line& it : kAmounts) add(it.label, amount_text(row, it.used, it.most));
  for (const value_line& it : kFeatures) add(it.label, value_text(row, it.of));
  return text + offload_lines(row);
}

int show_hardware(const invocation& run) {
  return read_table(run, table_id::hardware, "hardware", [&](std::span<const table_query::row> rows) {
    if (run.output.is_structured()) return record_rows(run, rows);
    for (const table_query::row& it : rows)
      if (!run.output.is_discarding()) run.output.text(block_of(shown_row(it)));
  });
}

constexpr display kHardwareShown = {
    .bit = kHardwareDisplay, .name = "hardware", .list = "interfaces", .is_table = true};

// clang-format off
constexpr command kHardwareRows[] = {
    {"show interface [RANGE] hardware", "Driver, queues, rings, FEC, EEE and offloads", show_hardware, kHardwareShown},
};
// clang-format on

constexpr word_help kHardwareWords[] = {
    {"hardware", "Driver, queues, rings, FEC, EEE and offloads"},
};

}  // namespace

constexpr command_group kHardwareCommands = {kHardwareRows, kHardwareWords};

}  // namespace host
