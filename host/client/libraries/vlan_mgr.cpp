// libvlan_mgr.so: the VLAN manager's client library.
#include "client/library_functions.h"

extern "C" {

int32 vlan_get_vlan_info_build_mts(vdc_vlan_id_t* vlan, void** payload, uint32* size) {
  return host::build_vlan_question(vlan, payload, size);
}

int32 vlan_get_vlan_info_parse_reply(vlan_info_resp_t* info, void* payload, uint32 size) {
  return host::parse_vlan(info, payload, size);
}

int32 vlan_get_port_trunking_memb_build_mts(if_index_t* ports, uint32 count, void** payload, uint32* size) {
  return host::build_membership_question(ports, count, payload, size);
}

int32 vlan_get_port_trunking_memb_parse_reply(void* payload, uint32 size, trunk_port_memb_t** records, uint32* count) {
  return host::parse_memberships(payload, size, records, count);
}

}  // extern "C"
