/* Settings of ports: the configuration TLV, and the port manager's call that applies one to whole ranges. */
#ifndef PLATFORM_PORT_CONFIG_H
#define PLATFORM_PORT_CONFIG_H

#include "platform/if_index.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Types of setting. The numbers without a word are attributes whose meaning no text names. */
enum {
  PM_CFG_PORT_STATE = 1,
  PM_CFG_PORT_MODE = 2,
  PM_CFG_SPEED = 3,
  PM_CFG_TRUNKING_MODE = 4,
  PM_CFG_BEACON = 5,
  PM_CFG_NAME = 6,
  PM_CFG_RXBUFSIZE = 15,
  PM_CFG_DUPLEX = 17,
  PM_CFG_ENCAP = 22,
  PM_CFG_PROMISCUOUS = 23,
  PM_CFG_RX_BB_CREDIT = 25,
  PM_CFG_PERFORMANCE_BUFFERS = 28,
  PM_CFG_MTU = 29,
  PM_CFG_31 = 31,
  PM_CFG_36 = 36,
  PM_CFG_BB_CREDIT_EXTENDED = 37,
  PM_CFG_BB_CREDIT_MULTIPLIER = 41,
  PM_CFG_IGNORE = 42,
  PM_CFG_44 = 44,
  PM_CFG_SERVICE_STATE = 45,
  PM_CFG_BB_SCN = 48,
  PM_CFG_SWITCHPORT = 50,
  PM_CFG_MONITOR = 68,
  PM_CFG_PORT_DOWN_ON_LINK_FAILURE = 78,
  PM_CFG_84 = 84,
  PM_CFG_85 = 85
};

/* Head of a configuration TLV; cfg_length bytes of value follow, big-endian. Wire format. */
typedef struct pm_cfg_tlv_t {
  uint8 cfg_type;
  uint8 cfg_length; /* bytes of the value */
} pm_cfg_tlv_t;
static_assert(sizeof(pm_cfg_tlv_t) == 2, "wire size");

typedef uint32 pm_err_t;

/* Statuses of a port that reports treat apart. */
#define PM_ERR_MODE_E_OUTSIDE_FIRST_PORT 0x4029002EU /* mode E is allowed only on the first port of a group */
#define PM_ERR_TEXT_ONLY 0x402900F4U                 /* its text says all; the ranges are left out */

/* The result for one port. Wire format. */
typedef struct pm_port_cfg_status_t {
  be32 if_index;
  be32 status; /* pm_err_t; 0 is success */
} pm_port_cfg_status_t;
static_assert(sizeof(pm_port_cfg_status_t) == 8, "wire size");

/*
 * Applies one setting to all ports of `num_ranges` ranges, for the user and session given, with a time-out in seconds.
 * `value` are `cfg_length` big-endian bytes. On success returns 0 and stores the results, one for each port, as a heap
 * block that the caller frees, and their number. -1 is a transport failure with the reason in mts_errno_get(); every
 * other value is a system error. On failure *cfg_status is null.
 */
int32 pm_cmi_set_port_config(mts_q_handle_t q, const char* username, uint32 session_id, uint32 num_ranges,
                             const if_index_range_t* ranges, uint8 cfg_type, uint8 cfg_length, const void* value,
                             pm_port_cfg_status_t** cfg_status, uint32* num_ports, int32 timeout);

#ifdef __cplusplus
}
#endif
#endif
