#include "service/services.h"

#include "messages/card_config_messages.h"
#include "messages/hardware_messages.h"
#include "messages/interface_manager_messages.h"
#include "messages/interface_values.h"
#include "messages/ip_messages.h"
#include "messages/port_channel_messages.h"
#include "messages/spanning_tree_messages.h"
#include "messages/statistics_messages.h"
#include "messages/table_messages.h"
#include "messages/vlan_messages.h"
#include "messages/vsan_messages.h"
#include "platform/misc_info.h"

namespace host {
namespace {

constexpr service kServices[] = {
    {MTS_SAP_PORT_MANAGER, "port-manager", serve_port_manager},
    {SAP_INTERFACE_MANAGER, "interface-manager", serve_interface_manager},
    {SAP_STATISTICS, "statistics", serve_statistics},
    {SAP_IP, "ip", serve_ip},
    {SAP_HARDWARE, "hardware", serve_hardware},
    {SAP_CARD_CONFIG, "card-config", serve_card_config},
    {SAP_PORT_CHANNEL, "port-channel", serve_port_channel},
    {SAP_SPANNING_TREE, "spanning-tree", serve_spanning_tree},
    {SAP_VSAN_MANAGER, "vsan-manager", serve_vsan_manager},
    {MTS_SAP_VLAN_MANAGER, "vlan-manager", serve_vlan_manager},
    {MTS_SAP_PVLAN, "private-vlans", serve_private_vlans},
    {SAP_SATELLITE_MANAGER, "satellite-manager", serve_satellite_manager},
    {SAP_INTERFACE_VALUES, "interface-values", serve_interface_values},
    {SAP_TABLES, "tables", serve_tables},
    {MTS_SAP_PORT_MISC_INFO, "line-card", serve_line_card, true, is_whole_line_card_answer},
};

}  // namespace

std::span<const service> all_services() { return kServices; }

}  // namespace host
