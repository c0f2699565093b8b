// libethpcmcli.so: commands of port-channels.
#include "client/library_functions.h"

extern "C" int32 pcm_switchport_host_func(paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports) {
  return host::leave_channels(param, cfg_status, num_ports);
}
