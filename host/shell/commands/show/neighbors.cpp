// "show ip arp", "show ipv6 neighbors" and "show mac address-table".
#include <algorithm>
#include <span>

#include "shell/commands/group.h"
#include "shell/commands/show/table_display.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

// clang-format off
constexpr table_column kNeighborColumns[] = {
    {{"Address", 1}, property::ip_address, 15},
    {{"MAC address", 1}, property::mac, 14},
    {{"Interface", 2}, property::interface, 13},
    {{"Device", 4}, property::device, 8},
    {{"State", 3}, property::neighbor_state, 10},
    {{"Age", 5, true}, property::age_seconds, 5},
    {{"Flags", 6}, property::neighbor_flags, 6},
};

constexpr table_column kMacTableColumns[] = {
    {{"VLAN", 3, true}, property::vlan_id, 4},
    {{"MAC address", 1}, property::mac, 14},
    {{"Type", 4}, property::entry_type, 9},
    {{"Port", 2}, property::interface, 13},
    {{"Device", 2}, property::device, 8},
    {{"Bridge", 5}, property::bridge, 8},
    {{"Age", 7, true}, property::age_seconds, 5},
    {{"Flags", 8}, property::entry_flags, 6},
    {{"Remote", 6}, property::remote_address, 15},
};
// clang-format on

constexpr table_view kIpv4Neighbors = {table_id::ipv4_neighbors, "IPv4 neighbors", kNeighborColumns};
constexpr table_view kIpv6Neighbors = {table_id::ipv6_neighbors, "IPv6 neighbors", kNeighborColumns};
constexpr table_view kMacAddresses = {table_id::mac_addresses, "MAC addresses", kMacTableColumns};

int show_arp(const invocation& run) { return show_table(run, kIpv4Neighbors); }
int show_ipv6_neighbors(const invocation& run) { return show_table(run, kIpv6Neighbors); }
int show_mac_table(const invocation& run) { return show_table(run, kMacAddresses); }

int show_mac_table_of_vlan(const invocation& run) {
  return show_table(run, kMacAddresses, [vlan = *run.line.number](const shown_row& row) {
    const interface_value* const value = row.find(property::vlan_id);
    return value != nullptr && value->number() == vlan;
  });
}

int show_mac_table_of_address(const invocation& run) {
  return show_table(run, kMacAddresses, [mac = *run.line.mac](const shown_row& row) {
    const interface_value* const value = row.find(property::mac);
    return value != nullptr && std::ranges::equal(value->bytes, std::as_bytes(std::span(mac)));
  });
}

constexpr display kNeighborsShown = {
    .bit = kNeighborsDisplay, .name = "neighbors", .list = "neighbors", .is_table = true};
constexpr display kMacTableShown = {
    .bit = kMacTableDisplay, .name = "mac_address_table", .list = "mac_addresses", .is_table = true};

// clang-format off
constexpr command kNeighborRows[] = {
    {"show ip arp [RANGE]", "IPv4 neighbors with hardware address and state", show_arp, kNeighborsShown},
    {"show ipv6 neighbors [RANGE]", "IPv6 neighbors with hardware address and state", show_ipv6_neighbors, kNeighborsShown},
    {"show mac address-table", "MAC addresses of bridges and ports", show_mac_table, kMacTableShown},
    {"show mac address-table address MAC", "Entries of a MAC address", show_mac_table_of_address, kMacTableShown},
    {"show mac address-table interface RANGE", "MAC addresses of a range", show_mac_table, kMacTableShown},
    {"show mac address-table vlan VLAN", "MAC addresses of a VLAN", show_mac_table_of_vlan, kMacTableShown},
};
// clang-format on

constexpr word_help kNeighborWords[] = {
    {"arp", "IPv4 neighbors"},
    {"mac", "MAC addresses"},
    {"address", "Entries of a MAC address"},
    {"address-table", "MAC addresses of bridges and ports"},
};

}  // namespace

constexpr command_group kNeighborCommands = {kNeighborRows, kNeighborWords};

}  // namespace host
