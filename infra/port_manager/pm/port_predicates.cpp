#include "pm/port_attributes.h"

namespace {

bool is_port_channel_kind(if_index_t if_index) {
  if_index_type_t type = IF_TYPE_NONE;
  if (if_index_get_type(if_index, &type) != 0) return false;
  return type == IF_TYPE_PORT_CHANNEL || type == IF_TYPE_ETH_PORT_CHANNEL;
}

}  // namespace

bool pm_is_xgfc_interface(if_index_t if_index) {
  if (!is_port_channel_kind(if_index)) return false;
  pc_subtype_t subtype = 0;
  return if_index_port_channel_get_subtype(if_index, &subtype) == 0 && subtype == PC_SUBTYPE_XGFC;
}

bool pm_is_bundle_port_type(if_index_t if_index) {
  return is_port_channel_kind(if_index) && !pm_is_xgfc_interface(if_index);
}
