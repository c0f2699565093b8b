/* The integer vocabulary of the switch: fixed widths, the same on every machine. */
#ifndef PLATFORM_TYPES_H
#define PLATFORM_TYPES_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

typedef uint8_t uint8;
typedef uint16_t uint16;
typedef uint32_t uint32;
typedef uint64_t uint64;
typedef int32_t int32;

/* A truth value of 32 bits, in records and in parameters. Not zero is true, unless a contract says "exactly 1". */
typedef uint32 boolean;

/* System error code; 0 is success. The port manager's codes have the form 0x4029xxxx. Text by syserr2str(). */
typedef int32 syserr_t;

/* Interface index: which interface, as one 32-bit number (see if_index.h). */
typedef uint32 if_index_t;

/* Handle of the transport queue of a running command (see mts.h). */
typedef int32 mts_q_handle_t;

#endif
