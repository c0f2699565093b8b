// Common parts of the messages of all services, in wire format: big-endian, packed.
#pragma once

#include "platform/if_index.h"
#include "platform/syserr.h"
#include "platform/wire.h"

namespace host {

// A request about one interface.
struct interface_request {
  be32 if_index;
};
static_assert(sizeof(interface_request) == 4);

// A request about a range of interfaces, bounds included.
struct range_request {
  be32 low;
  be32 high;
};
static_assert(sizeof(range_request) == 8);

// Begins every answer but the listing of interfaces; `count` records follow. An answer that reports an error has none.
struct reply_head {
  be_int32 status;  // syserr_t; 0 is success
  be32 count;
};
static_assert(sizeof(reply_head) == 8);

}  // namespace host
