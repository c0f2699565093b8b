// "show lldp neighbors".
#include <span>
#include <string>

#include "shell/commands/group.h"
#include "shell/commands/show/table_display.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

// clang-format off
constexpr table_column kLldpColumns[] = {
    {{"Interface", 1}, property::interface, 13},
    {{"Device", 4}, property::device, 8},
    {{"Chassis ID", 3}, property::chassis_id, 14},
    {{"System name", 1}, property::system_name, 15},
    {{"Port ID", 2}, property::remote_port_id, 14},
    {{"Port description", 6}, property::remote_port_description, 16},
    {{"TTL", 7, true}, property::ttl_seconds, 3},
    {{"Age", 8, true}, property::unchanged_seconds, 5},
    {{"Capabilities", 5}, property::enabled_capabilities, 14},
};
// clang-format on

constexpr char kLldpTable[] = "LLDP neighbors";
constexpr table_view kLldpNeighbors = {table_id::lldp_neighbors, kLldpTable, kLldpColumns};

int show_lldp_neighbors(const invocation& run) { return show_table(run, kLldpNeighbors); }

// "021c.7340.0202 (mac)"
std::string text_with_type(const shown_row& row, property of, property type) {
  const std::string text = row.text(of);
  return text.empty() ? text : text + " (" + row.text(type) + ")";
}

// "10,20-22", as the structured form has them.
std::string runs_text(const shown_row& row, property of) {
  const interface_value* const runs = row.find(of);
  std::string text;
  for (std::size_t i = 0; runs != nullptr && i + 1 < runs->num_entries(); i += 2) {
    const uint32 first = runs->entry(i), last = runs->entry(i + 1);
    text += (text.empty() ? "" : ",") + std::to_string(first);
    if (last != first) text += "-" + std::to_string(last);
  }
  return text;
}

std::string seconds_text(const shown_row& row, property of) {
  const std::string text = row.text(of);
  return text.empty() ? text : text + " seconds";
}

std::string neighbor_block(const shown_row& row) {
  std::string text = subject_of(row) + "\n";
  const auto add = [&text](const char* label, const std::string& value) {
    text.append("  ").append(label).append(value.empty() ? "--" : value) += '\n';
  };
  add("Chassis ID:           ", text_with_type(row, property::chassis_id, property::chassis_id_type));
  add("System name:          ", row.text(property::system_name));
  add("System description:   ", row.text(property::system_description));
  add("Management addresses: ", row.text(property::management_addresses));
  add("Capabilities:         ", row.text(property::system_capabilities));
  add("Enabled capabilities: ", row.text(property::enabled_capabilities));
  add("Port ID:              ", text_with_type(row, property::remote_port_id, property::remote_port_id_type));
  add("Port description:     ", row.text(property::remote_port_description));
  add("Port VLAN:            ", row.text(property::remote_port_vlan));
  add("VLANs:                ", runs_text(row, property::remote_vlans));
  add("Protocol:             ", row.text(property::protocol));
  add("TTL:                  ", seconds_text(row, property::ttl_seconds));
  add("Age:                  ", seconds_text(row, property::unchanged_seconds));
  return text;
}

int show_lldp_details(const invocation& run) {
  std::size_t count = 0;
  return read_table(run, table_id::lldp_neighbors, kLldpTable, [&](std::span<const table_query::row> rows) {
    if (run.output.is_structured()) return record_rows(run, rows);
    count += rows.size();
    if (count == 0) run.output.text("There are no " + std::string(kLldpTable) + ".\n");
    for (const table_query::row& it : rows)
      if (!run.output.is_discarding()) run.output.text(neighbor_block(shown_row(it)));
  });
}

constexpr display kLldpShown = {.bit = kLldpDisplay, .name = "lldp_neighbors", .list = "neighbors", .is_table = true};

// clang-format off
constexpr command kLldpRows[] = {
    {"show lldp neighbors [RANGE]", "Neighbors by LLDP, from lldpd", show_lldp_neighbors, kLldpShown},
    {"show lldp neighbors [RANGE] detail", "Neighbors by LLDP with all that they advertise", show_lldp_details, kLldpShown},
};
// clang-format on

constexpr word_help kLldpWords[] = {
    {"lldp", "Neighbors by LLDP"},
};

}  // namespace

constexpr command_group kLldpCommands = {kLldpRows, kLldpWords};

}  // namespace host
