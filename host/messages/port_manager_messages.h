// Messages of the port manager.
#pragma once

#include "messages/messages.h"
#include "platform/bitset.h"
#include "platform/clear_counters.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"

namespace host {

// clang-format off
// Opcode                             request                  records of the answer
enum port_manager_opcode : mts_opc_t {
  PM_OPC_PORT_CONFIG = 301,        // range_request            pm_port_info_t, one for each interface of the range
  PM_OPC_TRANSCEIVER = 302,        // range_request            pm_fcot_res_t, one for each interface of the range
  PM_OPC_LISTING = 303,            // listing_request          no head: pm_if_index_listing_res_payload_t, be32 each
  PM_OPC_TRACKED_PORTS = 304,      // interface_request        be32, an interface index each
  PM_OPC_ETH_STATISTICS = 305,     // eth_statistics_request   show_eth_intf_resp_t of the first; none for a clear
  PM_OPC_CHANNEL_STATISTICS = 306, // the same, for a port-channel
  PM_OPC_INTERFACE_COUNTERS = 307, // interface_request        pm_if_stat
  PM_OPC_STARTUP_LISTING = 308,    // listing_request          as PM_OPC_LISTING
  PM_OPC_CLEAR_COUNTERS = 309,     // clear_request            no head: count byte, pm_clear_status_t each
  PM_OPC_CLEAR_MANAGEMENT = 310,   // interface_request        none
  PM_OPC_SET_CONFIG = 311,         // setting_request          pm_port_cfg_status_t each
  PM_OPC_DIAGNOSTICS = 312,        // interface_request        sfp_diagnostics
  PM_OPC_MODULE_RESOURCES = 313,   // module_request           no head: as platform/module_resources.h
  PM_OPC_VERIFY = 330,             // verification             no head: pm_cli_if_index_verify_res_payload_t
  PM_OPC_SUB_INTERFACES = 331,     // verification             none
  PM_OPC_LOOPBACKS = 332,          // verification             none
};
// clang-format on

// A verification is a pm_cli_if_index_verify_req_payload_t and as many pm_port_range_t as it says. A request to
// configure sub-interfaces or loopbacks sets exactly one of `is_create` and `is_delete`.

struct listing_request {
  be32 if_index_type;  // IF_TYPE_NONE lists every interface
};
static_assert(sizeof(listing_request) == 4);

// A clear of a range of ports or channels leaves their sub-interfaces alone; one that begins with a sub-interface
// clears these.
struct eth_statistics_request {
  range_request range;
  be32 get;  // 1 reads, 0 clears
};
static_assert(sizeof(eth_statistics_request) == 12);

// `count` interface indexes follow, no more than the byte of the answer can count.
struct clear_request {
  be32 count;
};
static_assert(sizeof(clear_request) == 4);

// cfg_length bytes of value follow, then `num_ranges` range_requests.
struct setting_request {
  be32 num_ranges;
  uint8 cfg_type;  // PM_CFG_... or HOST_CFG_..., see settings/table.h
  be16 cfg_length;
};
static_assert(sizeof(setting_request) == 7);

struct sfp_diagnostics {
  mts_get_sfp_diag_info_t values;
  sfp_diag_info_ddm_tlvs_t further;
  uint8 has_lanes;  // 1: the module has several (property::lanes)
  uint8 reserved[3];
};
static_assert(sizeof(sfp_diagnostics) == 172 + 260 + 4);

// The resources of the module in a slot, from 0.
struct module_request {
  be32 slot;
};
static_assert(sizeof(module_request) == 4);

enum { kMaxClearedAtOnce = 255 };

}  // namespace host
