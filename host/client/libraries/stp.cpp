// libstp.so: the spanning tree.
#include "client/library_functions.h"

extern "C" int32 stp_switchport_host_func(paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports) {
  return host::make_edge_ports(param, cfg_status, num_ports);
}
