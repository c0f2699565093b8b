/* Satellite units (fabric extenders): which unit carries a port, and the diagnostics of its transceivers. */
#ifndef PLATFORM_SATELLITE_H
#define PLATFORM_SATELLITE_H

#include "platform/if_index.h"
#include "platform/transceiver.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The fabric port of an interface, from the satellite manager. */
typedef struct satmgr_fport_info_t {
  be32 sat_id; /* identifier of the unit */
  be32 slot;   /* slot of the unit, from 1 */
} satmgr_fport_info_t;

/* The slot of a unit. */
typedef struct satmgr_slot_info_t {
  be32 slot_id; /* identifier of the slot for diagnostics */
} satmgr_slot_info_t;

/* Each fills the caller's zeroed record. Returns 0 or a system error. */
int32 satmgr_get_fport_info(mts_q_handle_t q, if_index_t if_index, satmgr_fport_info_t* info);
int32 satmgr_get_slot_info(mts_q_handle_t q, const satmgr_fport_info_t* fport, satmgr_slot_info_t* info);

/* Diagnostics of a satellite port's transceiver into the caller's zeroed records; results as pm_get_sfp_diag_info(). */
int32 pm_get_sat_sfp_diag_info(mts_q_handle_t q, uint32 sat_id, uint32 slot_id, if_index_t if_index,
                               mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);

#ifdef __cplusplus
}
#endif
#endif
