/* Ranges of interfaces: counting and finding those within a pair of indexes, and converting sets of VSANs. */
#ifndef PM_INTERFACE_RANGES_H
#define PM_INTERFACE_RANGES_H

#include "platform/bitset.h"
#include "platform/if_index.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * How many interfaces lie in low..high, both of one kind (and, for ports, of one slot). Returns 0, or 0x4029000A and a
 * count of 0. Tunnels are counted without an order check: a reversed range wraps.
 */
uint32 pm_get_num_ports_in_if_index_range(if_index_t if_index_low, if_index_t if_index_high,
                                          uint32* num_ports_in_range);

/* The interface at a position of the range, counted from 0. Returns 0, or 0x4029000A and stores nothing. */
uint32 pm_get_if_index_in_range(if_index_t if_index_low, if_index_t if_index_high, if_index_t* if_index,
                                uint32 position);

/* A set of VSANs of any size, as the port manager keeps it; bits as in vsan_bitset_t. Wire format. */
typedef struct pm_flexi_bitset_t {
  be32 num_bytes; /* bytes that follow */
} pm_flexi_bitset_t;

/* Each VSAN of the variable set into the fixed one, which is emptied first; ids above 4095 are dropped. Returns 0. */
uint32 pm_create_vsan_bitset_from_pm_flexi_bitset(pm_flexi_bitset_t* flexi_bitset, vsan_bitset_t* vsan_bitset);

#ifdef __cplusplus
}
#endif
#endif
