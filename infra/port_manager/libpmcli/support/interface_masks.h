// Families of the kinds of interface that a parameter's mask names.
#pragma once

#include "platform/paraminfo.h"
#include "pmcli/displays.h"

namespace pmcli {

inline constexpr interface_mask_t kMaskNotEnumerable = IF_MASK_UNLISTED_16 | IF_MASK_UNLISTED_24;
inline constexpr interface_mask_t kMaskWithSubInterfaces = IF_MASK_ETHERNET | IF_MASK_ETHERNET_L3;
inline constexpr interface_mask_t kMaskPermanent = IF_MASK_FC | IF_MASK_MGMT | IF_MASK_INBAND;  // never deleted

}  // namespace pmcli
