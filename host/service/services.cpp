#include "service/services.h"

#include <iterator>

#include "messages/card_config_messages.h"
#include "messages/hardware_messages.h"
#include "messages/interface_manager_messages.h"
#include "messages/interface_values.h"
#include "messages/ip_messages.h"
#include "messages/port_channel_messages.h"
#include "messages/port_manager_messages.h"
#include "messages/session_messages.h"
#include "messages/spanning_tree_messages.h"
#include "messages/statistics_messages.h"
#include "messages/switch_messages.h"
#include "messages/table_messages.h"
#include "messages/vlan_messages.h"
#include "messages/vsan_messages.h"
#include "platform/misc_info.h"
#include "platform/private_vlan.h"
#include "platform/vlan_manager.h"
#include "service/permissions.h"

namespace host {
namespace {

// ---- The requests of each service: those that it does not list are rejected.

constexpr auto kSession = request_effect::session;
constexpr auto kSettings = request_effect::settings;
constexpr auto kOther = request_effect::other;

constexpr known_request kOfPortManager[] = {
    {PM_OPC_PORT_CONFIG},
    {PM_OPC_TRANSCEIVER},
    {PM_OPC_LISTING},
    {PM_OPC_TRACKED_PORTS},
    {PM_OPC_ETH_STATISTICS, kOther, refuse_with_error, reads_statistics},
    {PM_OPC_CHANNEL_STATISTICS, kOther, refuse_with_error, reads_statistics},
    {PM_OPC_INTERFACE_COUNTERS},
    {PM_OPC_STARTUP_LISTING},
    {PM_OPC_CLEAR_COUNTERS, kOther, refuse_clear},
    {PM_OPC_CLEAR_MANAGEMENT, kOther, refuse_with_error},
    {PM_OPC_SET_CONFIG, kSettings, refuse_setting},
    {PM_OPC_DIAGNOSTICS},
    {PM_OPC_MODULE_RESOURCES},
    {PM_OPC_VERIFY},
    {PM_OPC_SUB_INTERFACES, kSettings, refuse_with_error},
    {PM_OPC_LOOPBACKS, kSettings, refuse_with_error},
};
constexpr known_request kOfInterfaceManager[] = {{IM_OPC_LAYER_MODE}, {IM_OPC_NATIVE_VLAN}, {IM_OPC_ACCESS_VLAN}};
constexpr known_request kOfStatistics[] = {
    {STATS_OPC_PORT},
    {STATS_OPC_PORT_SNMP},
    {STATS_OPC_LOOPBACK},
    {STATS_OPC_CLEAR_PORT, kOther, refuse_with_error},
    {STATS_OPC_CLEAR_LOOPBACK, kOther, refuse_with_error},
    {STATS_OPC_CLEAR_CHANNEL, kOther, refuse_with_error},
};
constexpr known_request kOfIp[] = {{IP_OPC_ADDRESSES}};
constexpr known_request kOfHardware[] = {
    {HARDWARE_OPC_CHASSIS},
    {HARDWARE_OPC_CARD},
    {HARDWARE_OPC_DEVICE_COUNTERS},
    {HARDWARE_OPC_DEVICE_NAMES},
    {HARDWARE_OPC_CLEAR_DEVICE, kOther, refuse_with_error},
};
constexpr known_request kOfCardConfig[] = {{CRDCFG_OPC_PORT_CAPABILITY}};
constexpr known_request kOfPortChannel[] = {
    {PC_OPC_MEMBERS},    {PC_OPC_MULTI_CHASSIS_STATUS}, {PC_OPC_NEXT}, {PC_OPC_LEAVE, kSettings, refuse_ranges},
    {PC_OPC_CHANNEL_OF},
};
constexpr known_request kOfSpanningTree[] = {{STP_OPC_EDGE, kSettings, refuse_ranges}, {STP_OPC_PORT_STATE}};
constexpr known_request kOfVsanManager[] = {{VSAN_OPC_TRUNK_MEMBERSHIP}};
constexpr known_request kOfVlanManager[] = {
    {MTS_OPC_VLAN_INFO}, {MTS_OPC_VLAN_TRUNKING_MEMBERSHIP}, {VLAN_OPC_ERRORED}, {VLAN_OPC_ALL}};
constexpr known_request kOfPrivateVlans[] = {{MTS_OPC_PVLAN_GET_SWITCHPORT_INFO}};
constexpr known_request kOfSatelliteManager[] = {{SAT_OPC_FABRIC_PORT}, {SAT_OPC_SLOT}, {SAT_OPC_DIAGNOSTICS}};
constexpr known_request kOfInterfaceValues[] = {{VALUES_OPC_INTERFACE}, {VALUES_OPC_SOURCE}, {VALUES_OPC_UNKNOWN}};
constexpr known_request kOfTables[] = {{TABLES_OPC_BEGIN}, {TABLES_OPC_GO_ON}, {TABLES_OPC_END}};

// What begins and ends in the session alone changes nothing for others. Only who may commit has a commit to confirm.
constexpr known_request kOfSession[] = {
    {SESSION_OPC_BEGIN_LINE, kSession},
    {SESSION_OPC_BEGIN_CHANGES, kSession},
    {SESSION_OPC_STEP, kSession},
    {SESSION_OPC_CHANGED_PORTS, kSession},
    {SESSION_OPC_UNDO, kSettings, refuse_session_change},
    {SESSION_OPC_NOTE_PORTS, kSession},
    {SESSION_OPC_PORT_RESULTS, kSession},
    {SESSION_OPC_DRY_RUN, kSession},
    {SESSION_OPC_CANDIDATE, kSession},
    {SESSION_OPC_CANDIDATE_CHANGES, kSession},
    {SESSION_OPC_COMMIT, kSettings, refuse_session_change},
    {SESSION_OPC_CONFIRM, kSettings, refuse_end_of_commit},
    {SESSION_OPC_ROLL_BACK, kSettings, refuse_end_of_commit},
    {SESSION_OPC_LEAVE, kSettings, refuse_with_error},
    {SESSION_OPC_RUNNING_CONFIG, kSession},
    {SESSION_OPC_COMMANDS, kSession},
    {SESSION_OPC_SAVE_STARTUP, kSettings, refuse_with_error},
    {SESSION_OPC_STATUS_TEXT, kSession},
    {SESSION_OPC_SESSIONS, kSession},
};
constexpr known_request kOfSwitch[] = {
    {SWITCH_OPC_INTERFACES},
    {SWITCH_OPC_EXIST},
    {SWITCH_OPC_TOWARDS},
    {SWITCH_OPC_REFRESH, kSession},
    {SWITCH_OPC_FACTS},
    {SWITCH_OPC_RATE_TIME},
    {SWITCH_OPC_USER},
    {SWITCH_OPC_DEVICE},
    {SWITCH_OPC_MODULES},
    {SWITCH_OPC_DEVICES},
    {SWITCH_OPC_BASELINES, kOther, refuse_with_error},
    {SWITCH_OPC_TRAFFIC},
    {SWITCH_OPC_OPEN_EVENTS, kSession},
    {SWITCH_OPC_READ_EVENTS, kSession},
    {SWITCH_OPC_CLOSE_EVENTS, kSession},
    {SWITCH_OPC_ADVANCE_CLOCK, kOther, refuse_with_error},
};
constexpr known_request kOfLineCard[] = {{MTS_OPC_PORT_MISC_INFO}};

template <service_function kServe, const auto& kKnown>
reply permitted(mts_opc_t opcode, std::span<const std::byte> request) {
  return serve_permitted(kKnown, kServe, opcode, request);
}

constexpr service kServices[] = {
    {MTS_SAP_PORT_MANAGER, "port-manager", permitted<serve_port_manager, kOfPortManager>},
    {SAP_INTERFACE_MANAGER, "interface-manager", permitted<serve_interface_manager, kOfInterfaceManager>},
    {SAP_STATISTICS, "statistics", permitted<serve_statistics, kOfStatistics>},
    {SAP_IP, "ip", permitted<serve_ip, kOfIp>},
    {SAP_HARDWARE, "hardware", permitted<serve_hardware, kOfHardware>},
    {SAP_CARD_CONFIG, "card-config", permitted<serve_card_config, kOfCardConfig>},
    {SAP_PORT_CHANNEL, "port-channel", permitted<serve_port_channel, kOfPortChannel>},
    {SAP_SPANNING_TREE, "spanning-tree", permitted<serve_spanning_tree, kOfSpanningTree>},
    {SAP_VSAN_MANAGER, "vsan-manager", permitted<serve_vsan_manager, kOfVsanManager>},
    {MTS_SAP_VLAN_MANAGER, "vlan-manager", permitted<serve_vlan_manager, kOfVlanManager>},
    {MTS_SAP_PVLAN, "private-vlans", permitted<serve_private_vlans, kOfPrivateVlans>},
    {SAP_SATELLITE_MANAGER, "satellite-manager", permitted<serve_satellite_manager, kOfSatelliteManager>},
    {SAP_INTERFACE_VALUES, "interface-values", permitted<serve_interface_values, kOfInterfaceValues>},
    {SAP_TABLES, "tables", permitted<serve_tables, kOfTables>, false, nullptr, nullptr, false},
    {SAP_SESSION, "session", permitted<serve_session, kOfSession>, false, nullptr, nullptr, false},
    {SAP_SWITCH, "switch", permitted<serve_switch, kOfSwitch>, false, nullptr, descriptors_of_switch, false},
    {MTS_SAP_PORT_MISC_INFO, "line-card", permitted<serve_line_card, kOfLineCard>, true, is_whole_line_card_answer},
};

// In the order of kServices.
constexpr std::span<const known_request> kKnownRequests[] = {
    kOfPortManager,     kOfInterfaceManager, kOfStatistics,  kOfIp,          kOfHardware,     kOfCardConfig,
    kOfPortChannel,     kOfSpanningTree,     kOfVsanManager, kOfVlanManager, kOfPrivateVlans, kOfSatelliteManager,
    kOfInterfaceValues, kOfTables,           kOfSession,     kOfSwitch,      kOfLineCard,
};
static_assert(std::size(kKnownRequests) == std::size(kServices));

}  // namespace

std::span<const known_request> requests_of(std::string_view service_name) {
  for (std::size_t i = 0; i < std::size(kServices); ++i)
    if (kServices[i].name == service_name) return kKnownRequests[i];
  return {};
}

std::span<const service> all_services() { return kServices; }

}  // namespace host
