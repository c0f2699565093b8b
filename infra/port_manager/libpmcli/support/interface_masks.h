// The bits of an interface parameter's mask: the kinds of interface that it accepts.
#pragma once

#include "platform/paraminfo.h"

namespace pmcli {

inline constexpr interface_mask_t MASK_FC = 0x1;  // names that begin with f
inline constexpr interface_mask_t MASK_ETHERNET = 0x2;
inline constexpr interface_mask_t MASK_ISCSI = 0x8;
inline constexpr interface_mask_t MASK_MGMT = 0x80;
inline constexpr interface_mask_t MASK_INBAND = 0x800;
inline constexpr interface_mask_t MASK_LOOPBACK = 0x4000;
inline constexpr interface_mask_t MASK_BAY = 0x40000;          // names that begin with b
inline constexpr interface_mask_t MASK_EXTERNAL_FC = 0x80000;  // names that begin with e
inline constexpr interface_mask_t MASK_ETHERNET_L3 = 0x800000;
inline constexpr interface_mask_t MASK_EXTERNAL = 0x2000000;
inline constexpr interface_mask_t MASK_SATELLITE = 0x10000000;

// Families of them.
inline constexpr interface_mask_t MASK_NOT_ENUMERABLE = 0x10000 | 0x1000000;
inline constexpr interface_mask_t MASK_WITH_SUB_INTERFACES = MASK_ETHERNET | MASK_ETHERNET_L3;
inline constexpr interface_mask_t MASK_PERMANENT = MASK_FC | MASK_MGMT | MASK_INBAND;  // never deleted

}  // namespace pmcli
