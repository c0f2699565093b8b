/*
 * Ranges of interfaces: counting and finding those within a pair of indexes, and converting sets of VSANs.
 *
 * Outputs are the caller's and must not be null. Nothing is printed. The platform decodes indexes and reports, once in
 * the life of the process, how many slots there are.
 */
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
 * Stores the number of interfaces in low..high, bounds included. Both must be of one kind: 1, 2, 4, 5, 10, 11, 13, 22,
 * 26 or 30; ports also of one slot that exists, and in ascending order. A range of one port of kind 2 or 26 counts its
 * sub-interfaces. Management ports count 1. FCIP tunnels are counted without an order check: a reversed range wraps.
 * Returns 0, or 0x4029000A and a count of 0.
 */
uint32 pm_get_num_ports_in_if_index_range(if_index_t if_index_low, if_index_t if_index_high,
                                          uint32* num_ports_in_range);

/*
 * Stores the interface at a position, counted from 0, of a range as the function above counts it; it need not exist.
 * Returns 0, or 0x4029000A and stores nothing when there is no such range or position.
 */
uint32 pm_get_if_index_in_range(if_index_t if_index_low, if_index_t if_index_high, if_index_t* if_index,
                                uint32 position);

/* A set of VSANs of any size, as the port manager keeps it; bits as in vsan_bitset_t. Wire format. */
typedef struct pm_flexi_bitset_t {
  be32 num_bytes; /* bytes that follow */
} pm_flexi_bitset_t;

/*
 * Copies each VSAN of the variable set, whose `num_bytes` bytes must be readable, into the fixed one, which is emptied
 * first; both are in wire format. Ids above 4095 are dropped. A null variable set is empty. Returns 0.
 */
uint32 pm_create_vsan_bitset_from_pm_flexi_bitset(pm_flexi_bitset_t* flexi_bitset, vsan_bitset_t* vsan_bitset);

#ifdef __cplusplus
}
#endif
#endif
