/* The private-VLAN service's client library, opened by name. */
#ifndef PLATFORM_PRIVATE_VLAN_H
#define PLATFORM_PRIVATE_VLAN_H

#include "platform/bitset.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

#define PVLAN_LIBRARY "libpvlan.so"

enum { MTS_SAP_PVLAN = 168, MTS_OPC_PVLAN_GET_SWITCHPORT_INFO = 23808 };

/* A request about a port. */
typedef struct pvlan_get_switchport_info_req_t {
  if_index_t port;
} pvlan_get_switchport_info_req_t;

/* Private VLANs of a port, 0 where there is none. Wire format. */
typedef struct pvlan_switchport_info_t {
  be32 host_primary;
  be32 host_secondary;
  be32 mapping_primary;
  vlan_bitset_t mapping_secondary;
  vlan_bitset_t operational;
} pvlan_switchport_info_t;
static_assert(sizeof(pvlan_switchport_info_t) == 1044, "wire size");

/* "pvlan_build_get_switchport_info_req": a heap block that the caller frees, and its size. 0 is success. */
typedef int32 (*pvlan_build_get_switchport_info_req_fn)(pvlan_get_switchport_info_req_t* request, void** payload,
                                                        uint32* size);

/* "pvlan_parse_get_switchport_info_rsp": fills the caller's zeroed record. Not called for a rejection or without a
 * payload. Returns 0 or a system error. */
typedef int32 (*pvlan_parse_get_switchport_info_rsp_fn)(void* payload, uint32 size, pvlan_switchport_info_t* info);

#ifdef __cplusplus
}
#endif
#endif
