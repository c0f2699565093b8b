/* The port-channel services: members of a channel, and its multi-chassis status. */
#ifndef PLATFORM_PORT_CHANNEL_H
#define PLATFORM_PORT_CHANNEL_H

#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The command library of port-channels, opened by name for its step of a configuration macro. */
#define PORT_CHANNEL_COMMANDS_LIBRARY "libethpcmcli.so"

/* A list of members has a head of 32 bytes and is padded with zeros to this many entries of 8 bytes. */
enum { PORT_CHANNEL_MAX_MEMBERS = 256, PORT_CHANNEL_MEMBERS_BYTES = 32 + 8 * PORT_CHANNEL_MAX_MEMBERS };

/*
 * The members of a channel. Returns 0 and stores a heap block of PORT_CHANNEL_MEMBERS_BYTES that the caller frees, all
 * of it big-endian and unaligned: Ethernet-switch chassis: count (32 bits) at byte 18, entries of 7 bytes from byte 26;
 *   others:                  count (32 bits) at byte 8, entries of 8 bytes from byte 32;
 * each entry beginning with the member's interface index (32 bits). Otherwise a system error.
 */
int32 get_port_channel_members(uint32 chassis_type, if_index_t if_index, void** response);

/* The channel of a member. Wire format. */
typedef struct port_channel_info_t {
  be32 if_index; /* the port-channel; 0 when the port is in none */
} port_channel_info_t;

/* Fills the caller's zeroed record. Returns 0 or a system error. */
int32 get_port_channel_info(if_index_t if_index, port_channel_info_t* info);

enum { MCEC_STATUS_BYTES = 256 };

/* The multi-chassis status of a channel as a text into the caller's zeroed buffer of MCEC_STATUS_BYTES; empty: none. */
int32 mcecm_api_sdb_sh_int_po(if_index_t if_index, char* status);

#ifdef __cplusplus
}
#endif
#endif
