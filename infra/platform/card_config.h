/* Line-card configuration: the capabilities of a port. */
#ifndef PLATFORM_CARD_CONFIG_H
#define PLATFORM_CARD_CONFIG_H

#include "platform/if_index.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { CRDCFG_TEXT_BYTES = 32 };

/* Bits of the capabilities. */
enum { CRDCFG_SPEED_10M = 1, CRDCFG_SPEED_100M = 2, CRDCFG_SPEED_1G = 4, CRDCFG_SPEED_10G = 8, CRDCFG_SPEED_AUTO = 16 };
enum { CRDCFG_DUPLEX_FULL = 1, CRDCFG_DUPLEX_HALF = 2, CRDCFG_DUPLEX_AUTO = 4 };
enum { CRDCFG_FLOW_ON = 1, CRDCFG_FLOW_OFF = 2, CRDCFG_FLOW_DESIRED = 4 };
enum { CRDCFG_RATE_DEDICATED = 1, CRDCFG_RATE_SHARED = 2 };

/* Capabilities of one port, a byte each; not zero is yes. Wire format. */
typedef struct crdcfg_port_cap_t {
  uint8 reserved1[4];
  uint8 speed;
  uint8 duplex;
  uint8 trunk_encap;
  uint8 channel;
  uint8 suppression;
  uint8 rx_flowcontrol;
  uint8 tx_flowcontrol;
  uint8 cos_rewrite;
  uint8 tos_rewrite;
  uint8 span;
  uint8 udld;
  uint8 reserved2;
  uint8 link_debounce;
  uint8 link_debounce_time;
  uint8 fcot_capable;
  uint8 rate_mode;
  uint8 mdix;
  uint8 reserved3[2];
  uint8 rx_qos_priority;
  uint8 rx_qos_queue;
  uint8 rx_qos_threshold;
  uint8 tx_qos_priority;
  uint8 tx_qos_queue;
  uint8 tx_qos_threshold;
  char model[CRDCFG_TEXT_BYTES]; /* not terminated when all are used */
  char type[CRDCFG_TEXT_BYTES];  /* not terminated when all are used */
  uint8 reserved4[31];
} crdcfg_port_cap_t;
static_assert(sizeof(crdcfg_port_cap_t) == 124, "wire size");
static_assert(offsetof(crdcfg_port_cap_t, speed) == 4, "wire offset");
static_assert(offsetof(crdcfg_port_cap_t, link_debounce) == 16, "wire offset");
static_assert(offsetof(crdcfg_port_cap_t, mdix) == 20, "wire offset");
static_assert(offsetof(crdcfg_port_cap_t, rx_qos_priority) == 23, "wire offset");
static_assert(offsetof(crdcfg_port_cap_t, model) == 29, "wire offset");
static_assert(offsetof(crdcfg_port_cap_t, type) == 61, "wire offset");

/* The card-configuration library, opened by name. */
#define CRDCFG_LIBRARY "libcrdcfg.so"

/* "crdcfg_get_port_cap": fills the caller's zeroed response of `size` bytes for the port of the range. 0 is success. */
typedef syserr_t (*crdcfg_get_port_cap_fn)(const if_index_range_t* range, uint32 size, uint8* response);

#ifdef __cplusplus
}
#endif
#endif
