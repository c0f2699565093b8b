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

enum { VLAN_NAME_BYTES = 33 };

/* Kinds of VLAN. */
enum {
  VLAN_TYPE_PRIMARY = 3,
  VLAN_TYPE_SECONDARY_ISOLATED = 4,
  VLAN_TYPE_SECONDARY_COMMUNITY = 5,
  VLAN_TYPE_INTERNAL_RESERVED = 6,
  VLAN_TYPE_PRIVATE = 7,
  VLAN_TYPE_INVALID = 8
};

/* Attributes of a VLAN. Wire format. */
typedef struct vlan_info_resp_t {
  vdc_vlan_id_t vdc_vlan;
  be32 vstate;
  be32 vtype; /* VLAN_TYPE_... */
  be32 oper;
  be32 mtu; /* bytes */
  be32 shut_state;
  char vlan_name[VLAN_NAME_BYTES]; /* not terminated when all are used */
} vlan_info_resp_t;
static_assert(sizeof(vlan_info_resp_t) == 57, "wire size");

enum { MTS_OPC_VLAN_INFO = 23556, MTS_OPC_VLAN_TRUNKING_MEMBERSHIP = 23562 };

/*
 * Functions of the client library. Builders store a heap block that the caller frees, and its size in bytes; the parser
 * of memberships stores a heap block of records that the caller frees, and their number; the parser of attributes fills
 * the caller's record. 0 is success. No parser is called for a rejection or without a payload.
 * "vlan_get_vlan_info_build_mts", "vlan_get_vlan_info_parse_reply",
 * "vlan_get_port_trunking_memb_build_mts", "vlan_get_port_trunking_memb_parse_reply".
 */
typedef int32 (*vlan_get_vlan_info_build_fn)(vdc_vlan_id_t* vlan, void** payload, uint32* size);
typedef int32 (*vlan_get_vlan_info_parse_fn)(vlan_info_resp_t* info, void* payload, uint32 size);
typedef int32 (*vlan_get_port_trunking_memb_build_fn)(if_index_t* ports, uint32 count, void** payload, uint32* size);
typedef int32 (*vlan_get_port_trunking_memb_parse_fn)(void* payload, uint32 size, trunk_port_memb_t** records,
                                                      uint32* count);

/* Stores the VLANs that an error disables on a trunk in the caller's record. Returns 0 or a system error. */
int32 vlan_get_errored_vlans(if_index_t if_index, vlan_bitset_t* vlans);

/*
 * The attributes of all existing VLANs, in the order of their ids: stores a heap block of records that the caller
 * frees, null when there are none, and their number. Returns 0 or a system error, and then stores nothing.
 */
int32 vlan_get_all_vlans(vlan_info_resp_t** records, uint32* count);

/* The VLAN manager's client library, opened by name. */
#define VLAN_MGR_LIBRARY "libvlan_mgr.so"

#ifdef __cplusplus
}
#endif
#endif
