// Messages about the switch as a whole: its interfaces, what its source knows, and its events. Requests and answers are
// fields (messages/fields.h); those of an answer follow its head.
#pragma once

#include "platform/mts.h"

namespace host {

enum { SAP_SWITCH = 202 };

// What a command needs to be up to date.
enum class switch_part : uint8 { everything = 1, counters };

// What became of a request to follow the events of the switch.
enum class events_state : uint8 { open = 1, none, failed };

// A reason ("why") is a sentence without its full stop, empty when there is none. A flag before a comma is false when
// there is nothing to say: the fields after it are 0 or empty then. A clock is a flag: it is stopped, and a u64: the
// moment, in seconds since 1970, or the seconds that it is ahead of the machine's time.
//
// Opcode                         request                   answer
// clang-format off
enum switch_opcode : mts_opc_t {
  SWITCH_OPC_INTERFACES = 1,     // nothing                   numbers: every interface, ascending
  SWITCH_OPC_EXIST = 2,          // numbers: interfaces       flag each
  SWITCH_OPC_TOWARDS = 3,        // text: address, or empty   numbers: interfaces that packets to it take, ascending
  SWITCH_OPC_REFRESH = 4,        // u8: switch_part           text: why the source could not be read; clock
  SWITCH_OPC_FACTS = 5,          // nothing                   text: name; text: file; text, text: name and release of
                                 //                           its kernel; flag: has devices; flag: counts at refresh
  SWITCH_OPC_RATE_TIME = 6,      // nothing                   u64: nanoseconds that rates cover; 0: unknown
  SWITCH_OPC_USER = 7,           // text: name; empty: first  texts: every name; flag, text: the user's; flag,
                                 //                           numbers: the only VSANs that the user sees; flag: sees
                                 //                           counters; flag: may clear the in-band interface;
                                 //                           text: why the session may not be that user
  SWITCH_OPC_DEVICE = 8,         // text: name                flag: a device may have it
  SWITCH_OPC_MODULES = 9,        // nothing                   numbers: the modules, from 1
  SWITCH_OPC_DEVICES = 10,       // nothing                   flag, u32: how many; for each text: name, u32:
                                 //                           interface, text: why it has that
  SWITCH_OPC_BASELINES = 11,     // nothing                   flag, text: file; u32: errno of writing it
  SWITCH_OPC_TRAFFIC = 12,       // u32: interface            flag, u64: nanoseconds since 1970; u64: bytes and
                                 //                           packets in, then out, each; u32: cleared, in seconds
  SWITCH_OPC_OPEN_EVENTS = 13,   // nothing                   u8: events_state; u32: cursor; text: why not
  SWITCH_OPC_READ_EVENTS = 14,   // u32: cursor               text: why not; flag: some of the source were lost; u32:
                                 //                           changes by sessions that were lost; flag: more have
                                 //                           come; texts: the values of each (interface_values.h)
  SWITCH_OPC_CLOSE_EVENTS = 15,  // u32: cursor               nothing
  SWITCH_OPC_ADVANCE_CLOCK = 16, // u32: seconds              clock
};
// clang-format on

}  // namespace host
