/* How a line card's buffer credits and bandwidth are shared out: a tree of categories. Wire formats, unaligned. */
#ifndef PLATFORM_MODULE_RESOURCES_H
#define PLATFORM_MODULE_RESOURCES_H

#include "platform/mts.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
  PM_RESOURCE_MODULE = 1,
  PM_RESOURCE_GLOBAL_BUFFER_GROUP = 2,
  PM_RESOURCE_PORT_GROUP = 3,
  PM_RESOURCE_LOCAL_BUFFER_GROUP = 4,
  PM_RESOURCE_PORT = 5
};

/* Types of the values; each is a signed 32-bit number. */
enum {
  PM_RESOURCE_BB_CREDIT = 257,         /* of a port; total buffers of a group */
  PM_RESOURCE_BANDWIDTH = 259,         /* Mbit/s                              */
  PM_RESOURCE_RATE_MODE = 260,         /* 1 dedicated, 2 shared               */
  PM_RESOURCE_AVAILABLE_BUFFERS = 264, /* buffers */
  PM_RESOURCE_AVAILABLE_PERFORMANCE = 265,
  PM_RESOURCE_PERFORMANCE_BUFFERS = 266, /* buffers */
  PM_RESOURCE_AVAILABLE_BANDWIDTH = 267  /* Mbit/s  */
};

/* Head of the answer; the node of the module follows when err_status is 0. */
typedef struct pm_mod_resource_alloc_resp_payload_t {
  be32 err_status; /* not zero: the line card failed */
} pm_mod_resource_alloc_resp_payload_t;
static_assert(sizeof(pm_mod_resource_alloc_resp_payload_t) == 4, "wire size");

/* A category node: num_val_tlvs values follow, then num_sub_cat nodes one after the other. */
typedef struct pm_mod_resource_alloc_resp_data_t {
  struct {
    be32 category; /* PM_RESOURCE_... */
    be32 id;       /* module number from 0, group number, or interface index of the port */
  } cat;
  be16 num_val_tlvs;
  be16 num_sub_cat;
} pm_mod_resource_alloc_resp_data_t;
static_assert(sizeof(pm_mod_resource_alloc_resp_data_t) == 12, "wire size");

/* A value; `length` bytes follow. */
typedef struct pm_mod_resource_tlv_t {
  be16 type;
  be16 length;
} pm_mod_resource_tlv_t;
static_assert(sizeof(pm_mod_resource_tlv_t) == 4, "wire size");

/* Which category is asked for. Native. */
typedef struct pm_mod_resource_category_t {
  uint32 category;
  uint32 id;
} pm_mod_resource_category_t;

/*
 * Asks the port manager for the resource tree of a module: one category, all values (`types` 65535). On success returns
 * 0 and fills `answer`, which the caller drops; otherwise a system error.
 */
int32 pm_get_module_resources(mts_q_handle_t q, uint32 count, const pm_mod_resource_category_t* category, uint32 types,
                              uint32 module_key, mts_msg_ref_t* answer);

#ifdef __cplusplus
}
#endif
#endif
