#include "sibling/vlans.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

#include "platform/tags.h"
#include "platform/vlan_manager.h"
#include "pmcli/headers.h"
#include "pmcli/vlan.h"
#include "sibling/frame.h"
#include "sibling/port_record.h"

namespace {

struct kind_text {
  uint32 kind;
  const char* text;
};
constexpr kind_text kKinds[] = {{VLAN_TYPE_PRIMARY, "primary"},
                                {VLAN_TYPE_SECONDARY_ISOLATED, "isolated"},
                                {VLAN_TYPE_SECONDARY_COMMUNITY, "community"},
                                {VLAN_TYPE_INTERNAL_RESERVED, "internal"},
                                {VLAN_TYPE_PRIVATE, "private"}};

const char* text_of_kind(uint32 kind) {
  for (const kind_text& known : kKinds)
    if (known.kind == kind) return known.text;
  return "ordinary";
}

void show_row(cmd_rx_handle_t* rx, const vlan_info_resp_t& vlan) {
  constexpr uint32 kShut = 2;
  const uint32 id = vlan.vdc_vlan.vlan_id;
  char name[VLAN_NAME_BYTES + 1] = {};
  std::memcpy(name, vlan.vlan_name, VLAN_NAME_BYTES);
  cmd_prt(rx, "%-6.6s", cmd_tuple(SIBLING_VLAN_ID, &id));
  cmd_prt(rx, "%-34.34s", cmd_tuple(SIBLING_VLAN_NAME, name));
  cmd_prt(rx, "%-9.9s", cmd_tuple(SIBLING_VLAN_STATUS, vlan.shut_state == kShut ? "shut" : "active"));
  cmd_prt(rx, "%s\n", cmd_tuple(SIBLING_VLAN_KIND, text_of_kind(vlan.vtype)));
}

void show_vlans(cmd_rx_handle_t* rx) {
  vlan_info_resp_t* records = nullptr;
  uint32 count = 0;
  if (vlan_get_all_vlans(&records, &count) != 0) {
    std::puts("VLANs unknown");
    return;
  }
  cmd_prt(rx, "VLAN  Name                              Status   Kind\n");
  for (const vlan_info_resp_t& vlan : std::span(records, count)) show_row(rx, vlan);
  std::free(records);
}

void show_errored(const sibling::request& requested) {
  const sibling::port_record port(requested);
  if (!port || port.get()->oper_port_mode != PM_PORT_MODE_TRUNK) return;
  vlan_bitset_t errored{};
  if (vlan_get_errored_vlans(requested.if_index, &errored) == 0)
    pm_cli_print_eth_trunk_errored_vlans(requested.rx, port.get(), &errored);
}

}  // namespace

const pmsh_field_t sibling_errored_vlans_fields[] = {
    {"interface", tag::trunk_interface.id, PMSH_INTERFACE, nullptr, nullptr},
    {"errored_vlans", tag::trunk_errored_vlans.id, PMSH_VLANS, nullptr, "VLANs that an error keeps off the trunk"},
    {nullptr, 0, PMSH_TEXT, nullptr, nullptr},
};

[[gnu::visibility("default")]] uint32 sibling_show_vlans(paraminfo_t* param) {
  cmd_rx_handle_t* const rx = cmd_paraminfo_to_rxhandle(param);
  if (param == nullptr || rx == nullptr) return 0;
  show_vlans(rx);
  cmd_prt_send(rx);
  return 0;
}

[[gnu::visibility("default")]] uint32 sibling_show_errored_vlans_header(paraminfo_t* param) {
  return pm_cli_show_common_header(param);
}

[[gnu::visibility("default")]] uint32 sibling_show_errored_vlans(paraminfo_t* param) {
  return sibling::run_handler(param, "error-disabled VLANs", show_errored);
}
