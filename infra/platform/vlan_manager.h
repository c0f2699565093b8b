/* The VLAN manager: VLAN ids, and the trunking membership of a port. */
#ifndef PLATFORM_VLAN_MANAGER_H
#define PLATFORM_VLAN_MANAGER_H

#include "platform/bitset.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A VLAN id, 0 is none. */
typedef uint32 vlan_id_t;

/* A VLAN of a virtual device context. Wire format. */
typedef struct vdc_vlan_id_t {
  be16 vdc_id;
  be16 vlan_id;
} vdc_vlan_id_t;

/* Trunking membership of a port. Wire format. */
typedef struct trunk_port_memb_t {
  be32 port; /* interface index */
  vdc_vlan_id_t native_trunk;
  vlan_bitset_t allowed_vlan_list;
  uint8 reserved[526];
} trunk_port_memb_t;
static_assert(sizeof(trunk_port_memb_t) == 1050, "wire size");
static_assert(offsetof(trunk_port_memb_t, allowed_vlan_list) == 8, "wire offset");
static_assert(offsetof(trunk_port_memb_t, reserved) == 524, "wire offset");

/* The VLAN manager's client library, opened by name. */
#define VLAN_MGR_LIBRARY "libvlan_mgr.so"

#ifdef __cplusplus
}
#endif
#endif
