// "show ip interface" and "show ipv6 interface": the addresses of interfaces.
#include <string>

#include "shell/commands/group.h"
#include "shell/commands/show/table_display.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

std::string prefix_cell(const shown_row& row) {
  return row.text(property::ip_address) + "/" + row.text(property::prefix_length_bits);
}

// clang-format off
constexpr table_column kAddressColumns[] = {
    {{"Interface", 1}, property::interface, 13},
    {{"Device", 3}, property::device, 8},
    {{"Address", 1}, property::ip_address, 18, prefix_cell},
    {{"Scope", 4}, property::address_scope, 6},
    {{"State", 2}, property::state, 5},
    {{"Flags", 5, false, 9}, property::address_flags, 17},
};
// clang-format on

constexpr table_view kIpv4Addresses = {table_id::ipv4_addresses, "IPv4 addresses", kAddressColumns};
constexpr table_view kIpv6Addresses = {table_id::ipv6_addresses, "IPv6 addresses", kAddressColumns};

// Seconds, or for ever.
std::string lifetime_text(const shown_row& row, property of) {
  const interface_value* const seconds = row.find(of);
  return seconds == nullptr ? "forever" : std::to_string(seconds->number()) + " s";
}

// The interface of a row, or its device when that has none.
std::string subject_text(const shown_row& row) {
  const std::string interface = row.text(property::interface), device = row.text(property::device);
  if (interface.empty()) return device;
  return device.empty() ? interface : interface + " (" + device + ")";
}

void append_with(std::string& line, std::string_view before, const std::string& text) {
  if (!text.empty() && text != "--") line.append(before).append(text);
}

std::string address_text(const shown_row& row) {
  std::string line = "  Address " + prefix_cell(row);
  append_with(line, ", peer ", row.text(property::peer_address));
  append_with(line, ", scope ", row.text(property::address_scope));
  append_with(line, ", flags ", row.text(property::address_flags));
  append_with(line, ", label ", row.text(property::address_label));
  line += "\n    valid " + lifetime_text(row, property::valid_lifetime_seconds) + ", preferred " +
          lifetime_text(row, property::preferred_lifetime_seconds) + "\n";
  return line;
}

// A block for each interface; its addresses follow each other in the table.
int show_address_blocks(const invocation& run, const table_view& view) {
  std::string last;
  return read_table(run, view.table, view.what, [&](std::span<const table_query::row> rows) {
    for (const table_query::row& values : rows) {
      if (run.output.is_discarding()) return;
      const shown_row row(values);
      if (std::string subject = subject_text(row); subject != last) {
        std::string head = subject;
        append_with(head, " is ", row.text(property::state));
        append_with(head, ", MTU ", row.text(property::mtu_bytes));
        run.output.text(head + "\n");
        last = std::move(subject);
      }
      run.output.text(address_text(row));
    }
    if (rows.empty() && last.empty()) run.output.text("There are no " + std::string(view.what) + ".\n");
  });
}

int show_ip(const invocation& run) { return show_address_blocks(run, kIpv4Addresses); }
int show_ipv6(const invocation& run) { return show_address_blocks(run, kIpv6Addresses); }
int show_ip_brief(const invocation& run) { return show_table(run, kIpv4Addresses); }
int show_ipv6_brief(const invocation& run) { return show_table(run, kIpv6Addresses); }

constexpr display kAddressesShown = {
    .bit = kAddressesDisplay, .name = "ip_addresses", .list = "addresses", .is_table = true};

// clang-format off
constexpr command kAddressRows[] = {
    {"show ip interface [RANGE]", "IPv4 addresses with flags and lifetimes", show_ip, kAddressesShown},
    {"show ip interface [RANGE] brief", "One row per IPv4 address", show_ip_brief, kAddressesShown},
    {"show ipv6 interface [RANGE]", "IPv6 addresses with flags and lifetimes", show_ipv6, kAddressesShown},
    {"show ipv6 interface [RANGE] brief", "One row per IPv6 address", show_ipv6_brief, kAddressesShown},
};
// clang-format on

constexpr word_help kAddressWords[] = {
    {"ip", "IPv4: addresses and neighbors"},
    {"ipv6", "IPv6: addresses and neighbors"},
};

}  // namespace

constexpr command_group kAddressCommands = {kAddressRows, kAddressWords};

}  // namespace host
