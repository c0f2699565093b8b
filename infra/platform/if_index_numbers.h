/*
 * Building interface indexes: what the library needs of a platform besides the services that every switch of the family
 * has. The other functions on interface indexes are in if_index.h.
 */
#ifndef PLATFORM_IF_INDEX_NUMBERS_H
#define PLATFORM_IF_INDEX_NUMBERS_H

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Builds the index of a Fibre-Channel port; slot and port count from 0. Returns 0, or a system error and leaves
 * *if_index alone when there is no such place.
 */
int32 if_index_phy_fc_port_init(if_index_t* if_index, uint32 slot, uint32 port);

/*
 * Each replaces one number of an index and keeps all others, whether the interface that it names then exists or not.
 * Returns 0, or a system error and changes nothing when the kind has no such number or the number is too large.
 */
int32 if_index_set_port(if_index_t* if_index, uint32 port);
int32 if_index_set_sub_intf(if_index_t* if_index, uint32 sub_interface);
int32 if_index_set_channel_num(if_index_t* if_index, uint32 channel); /* port-channels of both families */
int32 if_index_set_tunnel(if_index_t* if_index, uint32 tunnel);
int32 if_index_set_sif_num(if_index_t* if_index, uint32 number);

/*
 * The interface with the next number of the same kind and place, whether it exists or not; asked of loopbacks, virtual
 * Ethernet interfaces and ports of satellite units, whose numbers have no other function. Returns 0, or a system
 * error and stores nothing after the last number and for a kind without numbers.
 */
int32 if_index_next(if_index_t if_index, if_index_t* next);

#ifdef __cplusplus
}
#endif
#endif
