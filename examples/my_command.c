/*
 * A command of one's own: "show interface [RANGE] access-vlan", as text and with "| json".
 *
 *   cc -shared -fPIC $(pkg-config --cflags pmcli) my_command.c -o my_command.so
 *   pmsh --library ./my_command.so -c "show interface ethernet 1/1-4 access-vlan"
 */
#include "platform/interface_manager.h"
#include "pmcli/displays.h"
#include "pmsh/commands.h"

/* Tuple ids: that of tag::trunk_interface in platform/tags.h, and one of our own; components from 0x80 are free. */
enum { NAME = 0x0C2A0075, ACCESS_VLAN = 0x14800001 };

uint32 show_access_vlan(paraminfo_t* param) {
  cmd_rx_handle_t* rx = cmd_paraminfo_to_rxhandle(param);
  if_index_t port = *(if_index_t*)param->arg_list[0]->arg;
  if_info_t info = {0};
  be32_set(&info.ifindex, port);
  if (im_get_ifindex_access_vlan_list(&info, 1) != 0) return 1;
  uint32 vlan = be16_get(info.val.vlan.vlan_id);
  cmd_prt(rx, "%-16s %s\n", cmd_tuple(NAME, &port), cmd_tuple(ACCESS_VLAN, &vlan));
  cmd_prt_send(rx);
  return 0;
}

static const pmsh_field_t kFields[] = {{"interface", NAME, PMSH_INTERFACE, 0, 0},
                                       {"access_vlan", ACCESS_VLAN, PMSH_NUMBER, 0, "VLAN of untagged frames"},
                                       {0}};
static const pmsh_word_t kWords[] = {{"access-vlan", "The VLAN of untagged frames"}, {0}};

const pmsh_command_t pmsh_commands[] = {{.words = "show interface [RANGE] access-vlan",
                                         .help = "The VLAN of untagged frames",
                                         .handler = "show_access_vlan",
                                         .kinds = IF_MASK_ETHERNET,
                                         .display = "access_vlan",
                                         .fields = kFields,
                                         .word_helps = kWords},
                                        {0}};
