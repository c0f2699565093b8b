// The layout of an interface index: the kind in the highest bits, then fields that sort in natural order.
//
//   Ethernet, Fibre Channel, IP storage, management:  kind 6 | slot 6 | port 8 | sub-interface 12
//   satellite port:                                   kind 6 | unit 8 | slot 4 | port 14
//   port-channel of either family:                    kind 6 | subtype 2 | channel 12 | sub-interface 12
//   loopback, tunnel, virtual Ethernet, server, ...:  kind 6 | number 26
//
// Kinds are if_index_type_t values; 254 is stored as 63. Slots and ports count from 0, as names count from 1; satellite
// units count as they are named (100 and up). Loopbacks, tunnels, channels and the management port are named by the
// number that is stored; the management port's number is in the port field.
//
// Fibre Channel ports into the chassis ("bay1") or out of it ("ext1") are named by a number alone. They belong to the
// first slot; their stored slots 62 and 63 give the family, so that each family is one run of indexes:
// fc1/1 ... fc62/256, bay1 ... bay256, ext1 ... ext256. if_index_phy_fc_get_slot() reports the stored slot,
// from which if_index_phy_fc_port_init() builds a port of the same family.
#pragma once

#include "platform/if_index.h"

namespace host {

if_index_t ethernet_index(if_index_type_t type, uint32 slot, uint32 port, uint32 sub_interface = 0);
if_index_t satellite_index(uint32 unit, uint32 slot, uint32 port);
if_index_t channel_index(if_index_type_t type, uint32 channel, pc_subtype_t subtype = PC_SUBTYPE_ORDINARY,
                         uint32 sub_interface = 0);
if_index_t numbered_index(if_index_type_t type, uint32 number);

// The names of Fibre Channel ports; every other interface has the usual names of its kind.
enum class name_family : uint8 { usual, bay, external };

// A bay or external port; ports count from 0.
if_index_t named_fc_index(name_family family, uint32 port);

// The port or channel of a sub-interface; any other interface is its own.
if_index_t parent_of(if_index_t if_index);

// The largest values that the layout holds.
enum {
  kMaxSlot = 63,
  kMaxFcSlot = 61,
  kMaxPort = 255,
  kMaxSubInterface = 4095,
  kMaxChannel = 4095,
  kMaxNumber = 0x3FFFFFF,
  kMaxUnit = 255,
  kMaxUnitSlot = 15,
  kMaxUnitPort = 0x3FFF
};

// Which of the four layouts a kind has.
enum class index_shape : uint8 { none, slot_port, satellite, channel, number };

// A decoded index, as it is stored. Fields that the layout does not have are 0.
struct index_fields {
  if_index_type_t type = IF_TYPE_NONE;
  index_shape shape = index_shape::none;  // none for a kind that does not exist
  name_family family = name_family::usual;
  uint32 unit = 0;
  uint32 slot = 0;
  uint32 port = 0;
  uint32 number = 0;  // channel, loopback, tunnel, ...
  uint32 sub_interface = 0;
  pc_subtype_t subtype = 0;
};
index_fields decode_index(if_index_t if_index);

// The first index of a kind; all its indexes are below the first of the next kind.
if_index_t first_index_of(if_index_type_t type);
if_index_t last_index_of(if_index_type_t type);

}  // namespace host
