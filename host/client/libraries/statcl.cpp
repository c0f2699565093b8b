// libstatcl.so: the statistics client.
#include "client/library_functions.h"

extern "C" {

int32 statcl_get_port_client_stats(if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  return host::get_port_statistics(if_index, stats);
}

int32 statcl_get_port_client_snmp_stats(if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  return host::get_port_snmp_statistics(if_index, stats);
}

int32 statscl_clear_port_client_stats(if_index_t if_index) { return host::clear_port_statistics(if_index); }

}  // extern "C"
