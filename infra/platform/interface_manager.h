/* The interface manager: the layer and the VLANs of an interface. */
#ifndef PLATFORM_INTERFACE_MANAGER_H
#define PLATFORM_INTERFACE_MANAGER_H

#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { IF_LAYER_2 = 2, IF_LAYER_3 = 3 };

/* One question and its answer. The asker zeroes the record and names the interface. Wire format. */
typedef struct if_info_t {
  be32 ifindex;
  be32 ifod;
  be32 key2;
  be_int32 status; /* the interface manager's own check of the answer; 0 is good */
  be16 vdc_id;
  uint8 padding[6];
  union {
    be32 layer; /* answer to a layer-mode query: IF_LAYER_2 or another */
    struct {
      be16 reserved;
      be16 vlan_id; /* answer to a VLAN query */
    } vlan;
    uint8 bytes[520];
  } val;
} if_info_t;
static_assert(sizeof(if_info_t) == 544, "wire size");
static_assert(offsetof(if_info_t, val) == 24, "wire offset");
static_assert(offsetof(if_info_t, val.vlan.vlan_id) == 26, "wire offset");

/* Prepares the calling process for queries; the library passes 262, 0 and "clish". Returns 0 or a system error. */
int32 im_ext_sbcr_init(uint32 id, uint32 flags, const char* name);

/* Each fills the values and the status of `count` records. Returns 0 or a system error. */
int32 im_get_ifindex_layermode_list(if_info_t* records, uint32 count);
int32 im_get_ifindex_native_vlan_list(if_info_t* records, uint32 count);
int32 im_get_ifindex_access_vlan_list(if_info_t* records, uint32 count);

#ifdef __cplusplus
}
#endif
#endif
