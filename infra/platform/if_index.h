/* Interface indexes: the kinds of interface, the fields of an index, and its names. */
#ifndef PLATFORM_IF_INDEX_H
#define PLATFORM_IF_INDEX_H

#include "platform/if_index_numbers.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The kind of an interface. */
typedef uint8 if_index_type_t;
enum {
  IF_TYPE_NONE = 0,
  IF_TYPE_FC = 1,           /* Fibre-Channel port                                           */
  IF_TYPE_ETHERNET = 2,     /* Ethernet-class port, always layer 2                          */
  IF_TYPE_PORT_CHANNEL = 4, /* port-channel of the older family                             */
  IF_TYPE_MGMT = 5,         /* management port                                              */
  IF_TYPE_FCIP = 10,        /* Fibre-Channel tunnel over IP                                 */
  IF_TYPE_ISCSI = 11,       /* IP storage port                                              */
  IF_TYPE_GIG_ETHERNET = 13,
  IF_TYPE_LOOPBACK = 20,
  IF_TYPE_ETH_PORT_CHANNEL = 22, /* Ethernet port-channel                                        */
  IF_TYPE_ETHERNET_L3 = 26,      /* Ethernet port whose layer is asked of the interface manager  */
  IF_TYPE_VETHERNET = 29,        /* virtual Ethernet interface                                   */
  IF_TYPE_SERVER = 30,           /* server (Fibre-Channel SIF) interface                         */
  IF_TYPE_SATELLITE = 31,        /* Ethernet-class port of a satellite unit, always layer 2      */
  IF_TYPE_INBAND = 32,           /* the supervisor's internal Fibre-Channel attachment           */
  IF_TYPE_EXTERNAL = 254
};

/* Subtype of a port-channel. */
typedef uint8 pc_subtype_t;
enum { PC_SUBTYPE_XGFC = 1, PC_SUBTYPE_ORDINARY = 2 };

/* A range of interfaces, bounds included; native, as client functions take it. */
typedef struct if_index_range_t {
  if_index_t low;
  if_index_t high;
} if_index_range_t;

/*
 * The fields of an index. Each returns 0 and stores the field, or returns a non-zero system error and stores nothing
 * when the interface has no such field. Slots and ports count from 0; a sub-interface number of 0 is no sub-interface.
 */
int32 if_index_get_type(if_index_t if_index, if_index_type_t* type);
int32 if_index_get_slot(if_index_t if_index, uint32* slot);
int32 if_index_get_port(if_index_t if_index, uint32* port);
int32 if_index_get_sub_intf(if_index_t if_index, uint16* sub_interface);
int32 if_index_phy_eth_get_sub_intf(if_index_t if_index, uint16* sub_interface);
int32 if_index_phy_fc_get_slot(if_index_t if_index, uint32* slot);
int32 if_index_phy_fc_get_port(if_index_t if_index, uint32* port);
int32 if_index_port_channel_get_channel_num(if_index_t if_index, uint32* channel);
int32 if_index_port_channel_get_subtype(if_index_t if_index, pc_subtype_t* subtype);
int32 if_index_eth_port_channel_get_channel_num(if_index_t if_index, uint32* channel);
int32 if_index_fcip_get_tunnel(if_index_t if_index, uint32* tunnel);
int32 if_index_server_interface_get_sif_num(if_index_t if_index, uint32* number);

/* Not zero when the index names a sub-interface. */
boolean if_index_is_sub_intf(if_index_t if_index);

/*
 * Names such as "Ethernet1/1", "port-channel12" or "mgmt0"; short ones such as "Eth1/1" or "Po12". At most 39
 * characters. sprintf_if_index() returns `buffer` (40 bytes or more); the others have the semantics of snprintf.
 */
char* sprintf_if_index(char* buffer, if_index_t if_index);
int snprintf_if_index(char* buffer, uint32 size, if_index_t if_index);
int snprintf_if_index_short(char* buffer, uint32 size, if_index_t if_index);

/* The in-band interface of the active supervisor. */
if_index_t if_index_inband_get_active_sup_priority_hi(void);

/* Orders two if_index_t whose names begin with b or e, for qsort. */
int compare_intf_bay_ext_aliases(const void* left, const void* right);

/* The node of the line card that carries an interface. Returns 0 or a system error. */
int32 idxmap_node_by_if_index(if_index_t if_index, uint32* node);

#ifdef __cplusplus
}
#endif
#endif
