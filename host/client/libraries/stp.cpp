// libstp.so: the spanning tree.
#include "client/library_functions.h"

extern "C" {

int32 stp_switchport_host_func(paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports) {
  return host::make_edge_ports(param, cfg_status, num_ports);
}

int32 stp_send_get_port_state(mts_q_handle_t q, uint32, uint32 count, if_index_t* ports, mts_msg_ref_t* sent) {
  return host::send_forwarding_question(q, count, ports, sent);
}

int32 stp_parse_get_port_state(mts_msg_ref_t* got, stp_port_state_t** ports, uint32* count) {
  return host::parse_forwarding(got, ports, count);
}

}  // extern "C"
