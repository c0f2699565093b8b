// Which Fibre Channel ports a user sees: those in a VSAN of the user's set.
#pragma once

#include "platform/bitset.h"
#include "platform/types.h"

namespace host {

// The VSANs of which a user may see all.
enum : uint32 { kFirstVsan = 1, kLastVsan = 4093 };

// Whether the set lacks one of them.
bool is_restricted_to(const vsan_bitset_t& vsans);

// Whether ports of this mode (a PM_PORT_MODE_ bit) carry several VSANs.
bool is_trunking_mode(uint32 port_mode);

// What a port belongs to.
struct port_vsans {
  uint32 vsan;
  bool is_trunking;
  const vsan_bitset_t& carried;  // only for trunking ports
};

// A port is visible when the set contains its VSAN or, for a trunking port, any VSAN that it carries.
bool may_see_port(const vsan_bitset_t& user_vsans, const port_vsans& port);

}  // namespace host
