// libpvlan.so: the client library of private VLANs.
#include "client/library_functions.h"

extern "C" {

int32 pvlan_build_get_switchport_info_req(pvlan_get_switchport_info_req_t* request, void** payload, uint32* size) {
  return host::build_private_vlan_question(request, payload, size);
}

int32 pvlan_parse_get_switchport_info_rsp(void* payload, uint32 size, pvlan_switchport_info_t* info) {
  return host::parse_private_vlans(payload, size, info);
}

}  // extern "C"
