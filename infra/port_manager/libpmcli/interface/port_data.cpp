// The data of one interface that its port record does not hold: hardware, media, encapsulation, layer, address.

#include <cstdio>
#include <cstring>

#include "interface/ip_address.h"
#include "platform/card_config.h"
#include "platform/if_index.h"
#include "pmcli/interface.h"
#include "support/chassis.h"
#include "support/interface_manager.h"
#include "support/kind.h"
#include "support/lazily.h"
#include "support/text.h"
#include "transceiver/transceiver_record.h"

using namespace pmcli;

namespace {

void set_texts(pm_cli_common_show_intf_data_t* data, const char* hardware, const char* encapsulation) {
  copy_text(data->hardware, sizeof data->hardware, hardware);
  copy_text(data->encap, sizeof data->encap, encapsulation);
}

// Whether a transceiver can be present: not zero in the response's support byte.
boolean ask_transceiver_support(if_index_t if_index, mts_q_handle_t q) {
  pm_fcot_res_t transceiver;
  return ask_transceiver(q, if_index, &transceiver) == 0 ? transceiver.is_fcot_supported : 0;
}

// Speeds and media type of the line card; both stay empty when it does not answer.
void fill_capabilities(pm_cli_common_show_intf_data_t* data, if_index_t if_index) {
  pm_cli_common_capability_t capability{};
  if (pm_cli_get_port_capability(if_index, &capability) != 0) return;
  char speeds[40];
  pm_cli_build_speed_string(speeds, sizeof speeds, "/", capability.speed & CRDCFG_SPEED_10M,
                            capability.speed & CRDCFG_SPEED_100M, capability.speed & CRDCFG_SPEED_1G,
                            capability.speed & CRDCFG_SPEED_10G, 0);
  std::snprintf(data->hardware, sizeof data->hardware, "%s Ethernet", speeds);
  copy_text(data->type, sizeof data->type, terminate(capability.type).text);
  data->mdix_supported = capability.mdix;
}

boolean is_layer2(if_index_t if_index, mts_q_handle_t q) {
  if_info_t answer;
  if (pm_cli_get_layer(if_index, q, &answer) != 0) return 0;
  return answer.val.layer == IF_LAYER_2 ? 1 : 0;
}

void fill_ethernet(pm_cli_common_show_intf_data_t* data, if_index_t if_index, mts_q_handle_t q) {
  data->fcot_supported = ask_transceiver_support(if_index, q);
  fill_capabilities(data, if_index);
  copy_text(data->encap, sizeof data->encap, "ARPA");
  data->physical = 1;
  data->sub_interface = if_index_is_sub_intf(if_index);
  const boolean is_port = data->sub_interface == 0 ? 1 : 0;
  data->span_supported = is_port;
  data->beacon_supported = is_port;
  data->flowcontrol_supported = is_port;
  if (!is_port) data->mdix_supported = 0;
}

void fill_management(pm_cli_common_show_intf_data_t* data) {
  set_texts(data, read_chassis_type() == CHASSIS_17 ? "Ethernet" : "GigabitEthernet", "ARPA");
  data->physical = 1;
}

void fill_port_channel(pm_cli_common_show_intf_data_t* data, if_index_t if_index, mts_q_handle_t q) {
  set_texts(data, "Port-Channel", "ARPA");
  data->port_channel = 1;
  data->span_supported = 1;
  data->sub_interface = if_index_is_sub_intf(if_index);
  const boolean is_channel = data->sub_interface == 0 ? 1 : 0;
  data->flowcontrol_supported = is_channel;
  data->beacon_supported = is_channel;
  data->layer2 = is_layer2(if_index, q);
}

}  // namespace

syserr_t pm_cli_get_layer(if_index_t if_index, mts_q_handle_t, if_info_t* if_info) {
  constexpr interface_query kLayerMode = {
      lazily<im_get_ifindex_layermode_list>,
      "im_get_ifindex_layermode_list failed for 0x%x \nstatus: 0x%x - %s\nif_info_status: 0x%x\n"};
  syserr_t error = prepare_interface_manager();
  if (error != 0) return error;
  ask_interface_manager(kLayerMode, if_index, if_info, &error);
  return error;
}

void pm_cli_get_port_data(if_index_t if_index, mts_q_handle_t mts_q, pm_cli_common_show_intf_data_t* port_data) {
  std::memset(port_data, 0, sizeof *port_data);
  switch (kind_of(if_index)) {
    case IF_TYPE_ETHERNET:
    case IF_TYPE_SATELLITE:
      fill_ethernet(port_data, if_index, mts_q);
      port_data->layer2 = 1;
      break;
    case IF_TYPE_ETHERNET_L3:
      fill_ethernet(port_data, if_index, mts_q);
      port_data->layer2 = is_layer2(if_index, mts_q);
      break;
    case IF_TYPE_MGMT: fill_management(port_data); break;
    case IF_TYPE_LOOPBACK: set_texts(port_data, "Loopback", "LOOPBACK"); break;
    case IF_TYPE_ETH_PORT_CHANNEL: fill_port_channel(port_data, if_index, mts_q); break;
    case IF_TYPE_VETHERNET:
      set_texts(port_data, "VEthernet", "ARPA");
      port_data->layer2 = 1;
      break;
    default: set_texts(port_data, "--", "--"); break;
  }
  if (const auto address = ask_first_address(mts_q, if_index)) port_data->inet_addr = *address;
}
