/* System error codes and their texts. */
#ifndef PLATFORM_SYSERR_H
#define PLATFORM_SYSERR_H

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The port manager's codes, from its services and its client library. */
enum {
  PM_ERR_GENERAL = 0x40290000, /* general failure */
  PM_ERR_NOT_ALLOWED_ON_INTERFACE = 0x40290003,
  PM_ERR_UNKNOWN_TLV = 0x40290004,
  PM_ERR_INVALID_RANGE = 0x4029000A,   /* the two ends do not span a range of ports */
  PM_ERR_PORT_IN_CHANNEL = 0x40290015, /* the port belongs to a port-channel */
  PM_ERR_SPEED_NOT_SUPPORTED = 0x40290020,
  PM_ERR_VALUE_OUT_OF_RANGE = 0x40290021,
  PM_ERR_PORT_LOCKED = 0x40290022,
  PM_ERR_NO_TRANSCEIVER = 0x4029002A, /* nothing is plugged into the port */
  PM_ERR_NO_SUCH_INTERFACE = 0x40290037,
  PM_ERR_TOO_MANY_SUB_INTERFACES = 0x4029003C,
  PM_ERR_SUB_INTERFACE_ON_L2 = 0x402900EE,    /* sub-interfaces need a routed port */
  PM_ERR_SUB_INTERFACE_INTERNAL = 0x402900F3, /* number 4095 is not for users */
  PM_ERR_PASSED_THROUGH = 0x40E30011          /* a status that verification hands on as it is */
};

/* The text of a system error code. Returns a constant text owned by the platform, or null for a code without one. */
const char* syserr2str(syserr_t error);

#ifdef __cplusplus
}
#endif
#endif
