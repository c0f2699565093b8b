/* IP configuration: the addresses of an interface. */
#ifndef PLATFORM_IP_CONFIG_H
#define PLATFORM_IP_CONFIG_H

#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32 inet_addr_type_t;
enum { INET_ADDR_TYPE_UNKNOWN = 0, INET_ADDR_TYPE_IPV4 = 1, INET_ADDR_TYPE_IPV6 = 2 };

/* An address, in network order. Wire format. */
typedef struct inet_addr_t {
  be32 addr_type; /* inet_addr_type_t */
  union {
    uint8 ipv4_addr[4];
    uint8 ipv6_addr[16];
  } a;
} inet_addr_t;
static_assert(sizeof(inet_addr_t) == 20, "wire size");

/* One address of an interface. Wire format. */
typedef struct ipconf_if_inet_addr_info_t {
  be32 if_index;
  inet_addr_t inet_addr;
  be32 prefix_len; /* bits */
} ipconf_if_inet_addr_info_t;
static_assert(sizeof(ipconf_if_inet_addr_info_t) == 28, "wire size");

/* The addresses of an interface; num_inet_addrs entries follow the head. Wire format. */
typedef struct ipconf_if_inet_addrs_t {
  be32 status;
  be32 num_inet_addrs;
} ipconf_if_inet_addrs_t;
static_assert(sizeof(ipconf_if_inet_addrs_t) == 8, "wire size");

/*
 * Asks for the addresses of an interface. Returns 0 and stores a heap block that the caller frees and that holds the
 * entries its head counts; null is an empty list. Otherwise a system error.
 */
int32 ipconf_get_if_inet_addrs(mts_q_handle_t q, if_index_t if_index, ipconf_if_inet_addrs_t** list);

#ifdef __cplusplus
}
#endif
#endif
