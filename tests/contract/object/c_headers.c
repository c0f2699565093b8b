/* The public headers and the platform headers, as a C program sees them. */
#include "c_headers.h"

#include "c_headers_both.h"
#include "platform/bitset.h"
#include "platform/card_config.h"
#include "platform/clear_counters.h"
#include "platform/cmd_channel.h"
#include "platform/eth_statistics.h"
#include "platform/if_index.h"
#include "platform/if_index_numbers.h"
#include "platform/interface_manager.h"
#include "platform/ip_config.h"
#include "platform/ip_statistics.h"
#include "platform/misc_info.h"
#include "platform/module_resources.h"
#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "platform/platform_data.h"
#include "platform/port_channel.h"
#include "platform/port_config.h"
#include "platform/port_manager.h"
#include "platform/private_vlan.h"
#include "platform/satellite.h"
#include "platform/spanning_tree.h"
#include "platform/startup_config.h"
#include "platform/syserr.h"
#include "platform/tags.h"
#include "platform/transceiver.h"
#include "platform/types.h"
#include "platform/uri.h"
#include "platform/vlan_manager.h"
#include "platform/vsan.h"
#include "platform/vsh.h"
#include "platform/wire.h"
#include "pm/interface_ranges.h"
#include "pm/port_attributes.h"
#include "pmcli/clear.h"
#include "pmcli/command.h"
#include "pmcli/config.h"
#include "pmcli/counters.h"
#include "pmcli/displays.h"
#include "pmcli/headers.h"
#include "pmcli/interface.h"
#include "pmcli/module.h"
#include "pmcli/selection.h"
#include "pmcli/transceiver.h"
#include "pmcli/vlan.h"

uint32 c_reads_be16(const void* bytes) { return be16_get(((const pm_port_info_t*)bytes)->admin_rxbufsize); }

uint32 c_reads_be32(const void* bytes) { return be32_get(((const pm_port_info_t*)bytes)->if_index); }

uint64 c_reads_be64(const void* bytes) {
  return be64_get(((const statscl_portcl_stats_msg_t*)bytes)->mac.errors.input_errors);
}

void c_writes(void* port, void* stats, void* status) {
  fill_port_record((pm_port_info_t*)port);
  fill_statistics((statscl_portcl_stats_msg_t*)stats);
  fill_clear_status((pm_clear_status_t*)status);
}

uint32 c_reads_if_index(const void* port) { return index_of((const pm_port_info_t*)port); }
uint16 c_reads_mtu(const void* port) { return mtu_of((const pm_port_info_t*)port); }
uint64 c_reads_errors(const void* stats) { return errors_of((const statscl_portcl_stats_msg_t*)stats); }
int32 c_reads_status(const void* status) { return status_of((const pm_clear_status_t*)status); }

size_t c_size_of_port_record(void) { return sizeof(pm_port_info_t); }
size_t c_size_of_display_data(void) { return sizeof(pm_cli_common_show_intf_data_t); }
size_t c_size_of_parameter_block(void) { return sizeof(paraminfo_t); }

uint32 c_calls_the_library(const char* answer) { return pm_verify_yn(answer); }
const char* c_port_mode(uint32 mode) { return port_mode_string(mode); }
