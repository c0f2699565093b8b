/* VLANs: those of the switch, and those that an error disables on trunks. */
#ifndef SIBLING_VLANS_H
#define SIBLING_VLANS_H

#include "platform/paraminfo.h"
#include "platform/types.h"
#include "pmsh/commands.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Tuple ids of a row. */
enum {
  SIBLING_VLAN_ID = 0x142B0001,
  SIBLING_VLAN_NAME = 0x302B0002,
  SIBLING_VLAN_STATUS = 0x302B0003,
  SIBLING_VLAN_KIND = 0x302B0004
};

/* Show handler: a row for each VLAN that the VLAN manager knows, on the command's queue. Returns 0. */
uint32 sibling_show_vlans(paraminfo_t* param);

/*
 * Show handler: `arg` of argument 0 points to the if_index_t of an interface; a row with the VLANs that an error
 * disables on it when it is a trunk. Returns 0.
 */
uint32 sibling_show_errored_vlans(paraminfo_t* param);

/* Its header, with command id 97. Returns 0. */
uint32 sibling_show_errored_vlans_header(paraminfo_t* param);

/* The fields of that row. */
extern const pmsh_field_t sibling_errored_vlans_fields[];

#ifdef __cplusplus
}
#endif
#endif
