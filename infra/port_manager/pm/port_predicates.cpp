// Predicates on kinds of interface and their attributes.

#include "platform/if_index.h"
#include "platform/transceiver.h"
#include "pm/port_attributes.h"

namespace {

bool is_channel(if_index_type_t type) { return type == IF_TYPE_PORT_CHANNEL || type == IF_TYPE_ETH_PORT_CHANNEL; }

// True when the kind can be read.
bool read_type(if_index_t if_index, if_index_type_t* type) {
  *type = IF_TYPE_NONE;
  return if_index_get_type(if_index, type) == 0;
}

// The kind as the lookup left it, whatever its result; IF_TYPE_NONE when it stored nothing.
if_index_type_t unchecked_type(if_index_t if_index) {
  if_index_type_t type;
  read_type(if_index, &type);
  return type;
}

// Kinds without modes: Ethernet-class, management, IP storage.
constexpr uint32 kKindsWithoutModes = 1U << IF_TYPE_ETHERNET | 1U << IF_TYPE_MGMT | 1U << IF_TYPE_ISCSI;
static_assert(kKindsWithoutModes == 0x824);

// Vendor's codes of DWDM modules.
enum { kFirstDwdmCode = 9, kLastDwdmCode = 40 };

}  // namespace

bool pm_is_xgfc_interface(if_index_t if_index) {
  if_index_type_t type;
  if (!read_type(if_index, &type) || !is_channel(type)) return false;
  pc_subtype_t subtype = 0;
  return if_index_port_channel_get_subtype(if_index, &subtype) == 0 && subtype == PC_SUBTYPE_XGFC;
}

bool pm_is_bundle_port_type(if_index_t if_index) {
  if_index_type_t type;
  return read_type(if_index, &type) && is_channel(type) && !pm_is_xgfc_interface(if_index);
}

bool pm_is_fcsif_port_type(if_index_t if_index) {
  if_index_type_t type;
  return read_type(if_index, &type) && type == IF_TYPE_SERVER;
}

bool pm_is_port_mode_supported(if_index_type_t type) {
  return type > IF_TYPE_ISCSI || (kKindsWithoutModes & 1U << type) == 0;
}

bool pm_is_trunk_mode_supported(if_index_type_t type) { return pm_is_port_mode_supported(type); }

bool pm_is_port_speed_supported(if_index_type_t type) { return type != IF_TYPE_ETHERNET && type != IF_TYPE_ISCSI; }

bool pm_is_duplex_mode_supported(if_index_type_t type) { return type == IF_TYPE_MGMT; }

// Of the channels only the older family is asked whether it carries 10-gigabit Fibre Channel; the other has the
// attribute always, which is intended. So it is below.
bool pm_is_beacon_mode_supported(if_index_t if_index) {
  switch (unchecked_type(if_index)) {
    case IF_TYPE_MGMT:
    case IF_TYPE_FCIP:
    case IF_TYPE_ISCSI: return false;
    case IF_TYPE_PORT_CHANNEL: return pm_is_xgfc_interface(if_index);
    default: return true;
  }
}

bool pm_is_bbcredit_supported(if_index_t if_index) {
  switch (unchecked_type(if_index)) {
    case IF_TYPE_MGMT:
    case IF_TYPE_FCIP:
    case IF_TYPE_ISCSI:
    case IF_TYPE_SERVER:
    case IF_TYPE_EXTERNAL: return false;
    case IF_TYPE_PORT_CHANNEL: return pm_is_xgfc_interface(if_index);
    default: return true;
  }
}

bool pm_is_transceiver_supported(if_index_t if_index) {
  const if_index_type_t type = unchecked_type(if_index);
  return type == IF_TYPE_FC || type == IF_TYPE_ETHERNET || type == IF_TYPE_ETHERNET_L3;
}

bool pm_is_x2_dwdm(lc_fcot_x2_info_t* x2) {
  if (x2 == nullptr || x2->xg_eth_code[0] != 0) return false;  // 10-gigabit Ethernet is no DWDM module
  const uint8 code = x2->extnd_vendor_specific[X2_EXTENDED_CODE];
  return code >= kFirstDwdmCode && code <= kLastDwdmCode;
}

int32 pm_map_snmp_error_code(int32 ret_val) { return ret_val; }
