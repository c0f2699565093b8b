// The members of a port-channel, and the ports linked by port tracking.

#include <algorithm>
#include <cstdio>
#include <utility>

#include "interface/port_record.h"
#include "platform/if_index.h"
#include "platform/port_channel.h"
#include "platform/port_manager.h"
#include "pmcli/interface.h"
#include "support/chassis.h"
#include "support/reader.h"
#include "support/scope.h"
#include "support/text.h"

using namespace pmcli;

namespace {

// Interface indexes taken from a service's list; never more than such a list may hold.
struct interface_list {
  if_index_t if_index[PORT_CHANNEL_MAX_MEMBERS];
  uint32 count = 0;

  const if_index_t* begin() const { return if_index; }
  const if_index_t* end() const { return if_index + count; }
};

// Offsets of a list's count and entries, in bytes; each entry begins with an interface index.
struct list_form {
  std::size_t count_offset;
  std::size_t entries_offset;
  std::size_t entry_size;
};

constexpr list_form kEthernetMembers = {18, 26, 7};
constexpr list_form kClassicMembers = {8, 32, 8};
constexpr list_form kTrackedPorts = {8, 12, 4};

constexpr std::size_t kTrackedPortsBytes = 12 + 4 * PORT_CHANNEL_MAX_MEMBERS;

// The bytes of a list of the most entries.
constexpr std::size_t longest(const list_form& form) {
  return form.entries_offset + form.entry_size * PORT_CHANNEL_MAX_MEMBERS;
}
static_assert(longest(kEthernetMembers) <= PORT_CHANNEL_MEMBERS_BYTES);
static_assert(longest(kClassicMembers) <= PORT_CHANNEL_MEMBERS_BYTES);
static_assert(longest(kTrackedPorts) <= kTrackedPortsBytes);

// Decodes a block that its provider pads to the full size of such a list.
interface_list decode_list(const void* block, std::size_t block_size, const list_form& form) {
  interface_list list;
  reader count_reader(block, block_size);
  count_reader.skip(form.count_offset);
  const uint32 count = std::min<uint32>(count_reader.u32(), PORT_CHANNEL_MAX_MEMBERS);

  reader entries(block, block_size);
  entries.skip(form.entries_offset);
  while (list.count < count) list.if_index[list.count++] = entries.sub(form.entry_size).u32();
  return list;
}

// The members in ascending order; none when the service fails.
interface_list ask_members(uint32 chassis_type, if_index_t if_index, const list_form& form) {
  void* response = nullptr;
  const int32 error = get_port_channel_members(chassis_type, if_index, &response);
  const heap_block<void> block(response);
  if (error != 0) return {};
  interface_list members = decode_list(response, PORT_CHANNEL_MEMBERS_BYTES, form);
  sort_ports_by_if_index(members.if_index, static_cast<int>(members.count));
  return members;
}

// The Ethernet-switch form: one line of short names, cut at 200 characters, its newline included.
void print_member_line(cmd_rx_handle_t* rx, const interface_list& members) {
  if (members.count == 0) return cmd_prt(rx, "  No members\n");
  char line[201] = "";
  for (const if_index_t member : members) {
    char name[50] = "";
    snprintf_if_index_short(name, sizeof name, member);
    if (line[0] != '\0') append_text(line, sizeof line, ", ");
    append_text(line, sizeof line, name);
  }
  append_text(line, sizeof line, "\n");
  cmd_prt(rx, "  Members in this channel: ");
  cmd_prt(rx, line);
}

// A numbered line of a member's full name.
struct member_line {
  member_line(int number, if_index_t member) {
    std::snprintf(text, sizeof text, "    Member[%d] : %s\n", number, interface_name(member).text);
  }
  char text[200];
};

}  // namespace

void sort_ports_by_if_index(if_index_t* port_list, int size) {
  if (size > 0) std::sort(port_list, port_list + size);
}

void print_eth_port_channel_members(cmd_rx_handle_t* rx_handle, if_index_t if_index) {
  const uint32 chassis_type = read_chassis_type();
  if (is_eth_switch_chassis(chassis_type))
    return print_member_line(rx_handle, ask_members(chassis_type, if_index, kEthernetMembers));

  const interface_list members = ask_members(chassis_type, if_index, kClassicMembers);
  if (members.count == 0) return cmd_prt(rx_handle, "    No members\n");
  int number = 0;
  for (const if_index_t member : members) cmd_prt(rx_handle, member_line(++number, member).text);
}

void print_port_channel_members(if_index_t if_index) {
  const uint32 chassis_type = read_chassis_type();
  // Fewer chassis than above take the Ethernet form here, which is intended.
  const bool is_ethernet_form = chassis_type == CHASSIS_10 || chassis_type == CHASSIS_11 || chassis_type == CHASSIS_17;
  const interface_list members =
      ask_members(chassis_type, if_index, is_ethernet_form ? kEthernetMembers : kClassicMembers);
  if (members.count == 0) std::puts("    No members");
  int number = 0;
  for (const if_index_t member : members) std::fputs(member_line(++number, member).text, stdout);
}

int32 pm_show_tracked_port_info(mts_q_handle_t q, if_index_t if_index) {
  if (is_eth_switch_chassis(read_chassis_type())) return 0;
  void* answer = nullptr;
  const int32 error = pm_cmi_get_tracked_port_if_list(q, if_index, &answer, kPortManagerTimeout);
  const heap_block<void> block(answer);
  if (error != 0) return 1;
  if (answer == nullptr) {
    std::puts("Error getting linked if index list.");
    return 0;
  }
  const interface_list linked = decode_list(answer, kTrackedPortsBytes, kTrackedPorts);
  if (linked.count != 0) std::printf("    Linked to %d port(s)\n", static_cast<int>(linked.count));
  for (const if_index_t port : linked) std::printf("      Port linked to interface %s\n", interface_name(port).text);
  return 0;
}
