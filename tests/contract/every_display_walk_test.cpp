// Every exported function that displays something or runs a command, with each of its calls failing in turn: nothing
// leaks, and it ends. A function or a command id that is not walked fails a test.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "contract/command/interface_command.h"
#include "contract/config/config_commands.h"
#include "contract/whole_switch.h"
#include "pmcli/clear.h"
#include "pmcli/config.h"
#include "pmcli/counters.h"
#include "pmcli/headers.h"
#include "pmcli/interface.h"
#include "pmcli/module.h"
#include "pmcli/selection.h"
#include "pmcli/transceiver.h"
#include "pmcli/vlan.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

// What functions are called with: a switch that answers, and records of one of its interfaces.
struct scene {
  scene(RecordingPlatform& recorder, const shown_kind& shown) : platform(recorder), if_index(shown.if_index) {
    prepare(platform, shown);
    platform.listings[IF_TYPE_ETHERNET] = listing_of({if_index});
    platform.resource_modules = {0x301};
    platform.resources = words({0, PM_RESOURCE_MODULE, 2, 0});
    platform.user_answer = "y";
    port = named(if_index, platform.ports[if_index]);
    statistics.ifidx = if_index;
    statistics.mac.pktflow.unicast_pkts = 5;
    management.in_pkts = 5;
    capability.fcot_capable = 1;
    membership = pmcli_test::membership(if_index, 1, {1, 10});
  }
  ~scene() {
    platform.release(interfaces.list);
    platform.release(results);
  }
  scene(const scene&) = delete;
  scene& operator=(const scene&) = delete;

  // A show command for the interface.
  paraminfo_t* show(uint32 command) {
    const shown_kind shown{.name = "", .handler = nullptr, .if_index = if_index};
    return display_command(platform, shown, command, arguments);
  }
  // A command over a range that is the interface alone.
  paraminfo_t* over_range(uint32 command, interface_mask_t mask = IF_MASK_ETHERNET) {
    return interface_command(platform, command, mask, &ranges);
  }
  // "switchport mode access" for the interface.
  paraminfo_t* configure() {
    return setting.token(TOKEN_SWITCHPORT).number(TOKEN_SWITCHPORT_MODE, PM_PORT_MODE_ACCESS).param;
  }

  RecordingPlatform& platform;
  if_index_t if_index;
  cmd_rx_handle_t* rx = platform.output();
  mts_q_handle_t q = RecordingPlatform::q();
  display_arguments arguments;
  intf_range_t ranges = interface_ranges({{if_index, if_index}});
  config_command setting{platform, if_index};

  pm_port_info_t port;
  pm_cli_common_show_intf_data_t data{};
  pm_cli_common_capability_t capability{};
  statscl_portcl_stats_msg_t statistics{};
  show_eth_intf_resp_t response{};
  pm_if_stat management{};
  pm_proc_net_dev_stats_t device{};
  ip_if_stats loopback{};
  pfstat_key_cntrs_t forwarding{};
  pm_cli_common_error_stat_t errors{};
  pm_cli_common_trunk_stat_t trunk{};
  pm_fcot_res_t transceiver = sfp_record();
  lc_fcot_info_t sfp = sfp_image();
  lc_fcot_x2_info_t x2 = x2_image();
  mts_get_sfp_diag_info_t diagnostics = healthy_diagnostics();
  mts_get_sfp_diag_info_t no_diagnostics{};
  sfp_diag_info_ddm_tlvs_t further{};
  trunk_port_memb_t membership;
  vlan_bitset_t errored = vlans({10});
  pm_mod_resource_alloc_resp_data_t node{};
  uint32 node_bytes = 0;
  uint64 number = 5;
  uint32 short_number = 5;
  char device_name[5] = "eth1";
  pm_port_cfg_status_t refused{.if_index = kPort, .status = 5};

  if_index_list_t interfaces{};  // what functions hand over
  pm_port_cfg_status_t* results = nullptr;
  uint32 num_results = 0;
};

pm_mod_resource_alloc_resp_data_t* node_of(scene& at, uint32 category) {
  at.node.cat.category = category;
  return &at.node;
}

int32 refusing_step(paraminfo_t*, pm_port_cfg_status_t** results, uint32* count) {
  const pm_port_cfg_status_t refused{.if_index = kPort, .status = 5};
  *results = static_cast<pm_port_cfg_status_t*>(
      RecordingPlatform::active()->hand_over(&refused, sizeof refused, "results of a step"));
  *count = 1;
  return 0;
}

constexpr uint32 kLastCommand = kLastDisplay + 4;  // ids without a display, too

struct walked_function {
  const char* name;
  const shown_kind* shown;
  uint32 last_command;  // 0: takes no command id
  bool prints;          // when nothing fails; of one that takes a command id, under one of them
  void (*call)(scene& at, uint32 command);
};

walked_function entry(const char* name, const shown_kind& shown, uint32 last_command, bool prints,
                      void (*call)(scene& at, uint32 command)) {
  return {name, &shown, last_command, prints, call};
}

// A function with its arguments as a list in parentheses.
#define SHOWS(kind, function, arguments) \
  entry(#function, kind, 0, true, []([[maybe_unused]] scene& at, uint32) { function arguments; })
#define SHOWS_BY_ID(kind, function, arguments) \
  entry(#function, kind, kLastCommand, true, [](scene& at, uint32 command) { function arguments; })
// One that prints only when it has something to report, or never.
#define RUNS(kind, function, arguments) \
  entry(#function, kind, 0, false, []([[maybe_unused]] scene& at, uint32) { function arguments; })
// A show handler: 0 is its result whatever failed.
#define HANDLES(kind, function)              \
  entry(#function, kind, kLastCommand, true, \
        [](scene& at, uint32 command) { EXPECT_EQ(static_cast<uint32>(function(at.show(command))), 0U); })

// Only the management port's own views report that it has no record.
void show_management_port(scene& at, uint32 command) {
  const bool is_own_view = command == DISPLAY_DETAIL || command == DISPLAY_BRIEF;
  const uint32 result = pm_cli_show_mgmt_port_config(at.show(command));
  EXPECT_EQ(result, is_own_view && at.platform.failed_call() == "pm_cmi_get_port_config" ? 1U : 0U);
}

const walked_function kWalked[] = {
    // Show handlers and header handlers.
    HANDLES(kAccessPort, pm_cli_show_eth_port_config),
    HANDLES(kTrunk, pm_cli_show_eth_port_config),
    HANDLES(kRouted, pm_cli_show_eth_port_config),
    HANDLES(kSubInterface, pm_cli_show_eth_port_config),
    HANDLES(kEthernetChannel, pm_cli_show_eth_port_config),
    HANDLES(kVethernet, pm_cli_show_eth_port_config),
    HANDLES(kSatellitePort, pm_cli_show_sat_eth_port_config),
    HANDLES(kLoopback, pm_cli_show_loopback_config),
    HANDLES(kInband, pm_cli_show_inband_port_config),
    HANDLES(kRouted, pm_cli_show_eth_stat_info),
    {"pm_cli_show_mgmt_port_config", &kManagement, kLastCommand, true, show_management_port},
    SHOWS_BY_ID(kAccessPort, pm_cli_show_common_header, (at.over_range(command))),
    SHOWS_BY_ID(kAccessPort, pm_cli_show_eth_header, (at.over_range(command))),
    SHOWS_BY_ID(kEthernetChannel, pm_pcm_cli_show_header, (at.over_range(command))),
    SHOWS_BY_ID(kLoopback, pm_cli_show_loopback_header, (at.over_range(command))),
    SHOWS_BY_ID(kManagement, pm_cli_show_mgmt_header, (at.over_range(command))),
    SHOWS_BY_ID(kInband, pm_cli_show_inband_header, (at.over_range(command))),
    SHOWS_BY_ID(kTrunk, pm_cli_show_eth_port_info, (at.rx, at.q, command, at.if_index)),
    SHOWS_BY_ID(kManagement, pm_cli_show_mgmt_info, (at.rx, at.q, command, at.if_index)),
    SHOWS_BY_ID(kManagement, pm_cli_show_mgmt_counters, (at.rx, at.q, command, at.if_index)),
    SHOWS_BY_ID(kLoopback, pm_cli_show_loopback_port_info, (at.rx, at.q, command, at.if_index)),
    SHOWS_BY_ID(kInband, pm_cli_show_inband_port_info, (at.rx, at.q, command)),

    // Headers of tables.
    SHOWS(kAccessPort, pm_cli_print_description_header, (at.rx)),
    SHOWS(kAccessPort, pm_cli_print_eth_brief_header, (at.rx)),
    SHOWS(kAccessPort, pm_cli_print_eth_err_disabled_status_header, (at.rx)),
    SHOWS(kAccessPort, pm_cli_print_eth_errored_vlan_status_header, (at.rx)),
    SHOWS(kAccessPort, pm_cli_print_eth_mac_address_header, (at.rx)),
    SHOWS(kAccessPort, pm_cli_print_eth_port_counters_brief_header, (at.rx)),
    SHOWS(kAccessPort, pm_cli_print_ethernet_storm_ctrl_header, (at.rx)),
    SHOWS(kInband, pm_cli_print_inband_brief_header, ()),
    SHOWS(kLoopback, pm_cli_print_loop_brief_header, (at.rx)),
    SHOWS(kManagement, pm_cli_print_mgmt_brief_header_for_lumar, (at.rx)),
    SHOWS(kAccessPort, pm_cli_print_status_header, (at.rx)),
    SHOWS(kTrunk, pm_cli_print_trunk_brief_status_header, (at.rx)),
    SHOWS(kTrunk, pm_cli_show_port_counters_trunk_header, (at.rx)),
    SHOWS(kEthernetChannel, pm_pcm_cli_print_eth_brief_header, (at.rx)),
    SHOWS(kAccessPort, pm_print_module_resources_header, ()),

    // Interfaces: views, rows, lines.
    SHOWS(kRouted, pm_cli_show_port_info, (at.rx, &at.port, &at.data)),
    SHOWS(kAccessPort, pm_cli_show_port_reset_cntr, (at.rx, &at.port, &at.data)),
    SHOWS(kAccessPort, pm_cli_show_port_capabities, (at.rx, &at.capability)),
    SHOWS(kEthernetChannel, print_eth_port_info, (at.rx, at.q, &at.port)),
    SHOWS(kAccessPort, print_eth_port_info_brief, (at.rx, &at.port, at.q)),
    SHOWS(kRouted, print_eth_port_status_line, (at.rx, &at.port, at.q)),
    SHOWS(kAccessPort, print_eth_port_err_status_line, (at.rx, &at.port, at.q)),
    SHOWS(kAccessPort, print_eth_port_description, (at.rx, &at.port)),
    SHOWS(kAccessPort, print_eth_port_mac_address, (at.rx, &at.port)),
    SHOWS(kAccessPort, print_port_ifindex, (at.rx, &at.port)),
    SHOWS(kAccessPort, print_port_debounce, (at.rx, &at.port)),
    SHOWS(kAccessPort, print_eth_port_status, (at.rx, &at.port)),
    SHOWS(kAccessPort, print_eth_port_common_info, (at.rx, &at.port)),
    SHOWS(kAccessPort, print_eth_mtu_bw_dly, (at.rx, &at.port, 0)),
    SHOWS(kEthernetChannel, print_eth_port_channel_members, (at.rx, at.if_index)),
    SHOWS(kEthernetChannel, print_port_channel_members, (at.if_index)),
    RUNS(kAccessPort, pm_show_tracked_port_info, (at.q, at.if_index)),
    SHOWS(kManagement, print_mgmt_info_brief, (at.rx, at.q, &at.port)),
    SHOWS(kManagement, print_mgmt_port_config,
          (at.rx, 1, at.q, at.if_index, nullptr, nullptr, nullptr, at.device_name)),
    SHOWS(kManagement, pm_cli_show_mgmt_vdc_counters, (at.rx, &at.management)),
    SHOWS(kLoopback, print_loop_intf_brief, (at.rx, &at.port)),
    RUNS(kLoopback, print_loopback_port_config, (at.rx, at.if_index)),
    SHOWS(kInband, print_inband_port_status, (0)),
    SHOWS(kInband, pm_cli_print_inband_brief_info, ()),
    SHOWS(kInband, print_inband_port_config, ()),
    RUNS(kInband, print_inband_port_description, ()),

    // Traffic and counters.
    SHOWS(kRouted, pm_show_eth_stat_info, (at.rx, at.q, 1, at.if_index)),
    SHOWS(kRouted, print_eth_stat_info, (at.rx, at.q, &at.port)),
    SHOWS(kAccessPort, pm_cli_eth_intf_stats_print, (at.rx, &at.response, 1)),
    SHOWS(kAccessPort, pm_eth_intf_hwinfo_print, (&at.response)),
    SHOWS(kAccessPort, pm_cli_eth_intf_prefix_print, (&at.response)),
    SHOWS(kLoopback, pm_cli_loopback_intf_stats_print, (at.rx, &at.loopback, 0)),
    SHOWS(kManagement, print_eth_port_counters, (at.rx, &at.device)),
    SHOWS(kAccessPort, nzero_prt, (at.rx, &at.number, "Frames", 0x152A0001)),
    SHOWS(kAccessPort, nzero_prt_uint32, (at.rx, &at.short_number, "Frames", 0x142A0001)),
    SHOWS(kAccessPort, numlist_prt, (at.rx, &at.number, "Frames", 1, 0x152A0001)),
    SHOWS(kAccessPort, numlist_prt_uint32, (at.rx, &at.short_number, "Frames", 1, 0x142A0001)),
    SHOWS(kAccessPort, pm_cli_show_common_eth_counters_detailed, (at.rx, &at.forwarding, &at.statistics)),
    RUNS(kAccessPort, pm_cli_show_L3_eth_counters_detailed, (at.rx, &at.forwarding)),
    SHOWS(kAccessPort, pm_cli_show_eth_counters_detailed_all, (at.rx, &at.forwarding, &at.statistics)),
    SHOWS(kAccessPort, pm_cli_show_eth_L3_counters_detailed_all, (at.rx, 1, &at.forwarding)),
    SHOWS(kManagement, pm_cli_mgmt_counters_detailed, (at.rx, &at.management, &at.device, at.if_index)),
    SHOWS(kManagement, pm_cli_mgmt_counters_detailed_all, (at.rx, &at.management, &at.device, at.if_index)),
    SHOWS(kLoopback, pm_cli_show_loopback_counters_detailed_all, (at.rx, &at.loopback, at.if_index)),
    SHOWS(kAccessPort, pm_cli_show_port_1st_counters_errors_table, (at.rx, at.if_index, &at.errors)),
    SHOWS(kAccessPort, pm_cli_show_port_2nd_counters_errors_table, (at.rx, at.if_index, &at.errors)),
    SHOWS(kAccessPort, pm_cli_show_port_3rd_counters_errors_table, (at.rx, at.if_index, &at.errors)),
    SHOWS(kTrunk, pm_cli_show_port_counters_trunk, (at.rx, &at.trunk, at.if_index)),
    SHOWS(kAccessPort, pm_cli_show_eth_port_stats_rx, (at.rx, &at.statistics)),
    SHOWS(kAccessPort, pm_cli_show_eth_port_stats_tx, (at.rx, &at.statistics)),
    SHOWS(kManagement, pm_cli_show_mgmt_stats_rx, (at.rx, at.if_index, &at.management)),
    SHOWS(kManagement, pm_cli_show_mgmt_stats_tx, (at.rx, at.if_index, &at.management)),
    SHOWS(kLoopback, pm_cli_show_loopback_stats_rx, (at.rx, at.if_index, &at.loopback)),
    SHOWS(kLoopback, pm_cli_show_loopback_stats_tx, (at.rx, at.if_index, &at.loopback)),
    SHOWS(kAccessPort, pm_cli_show_port_flow_ctrl, (at.rx, &at.port, &at.statistics)),
    SHOWS(kAccessPort, pm_cli_show_port_storm_ctrl_counters, (at.rx, &at.port, &at.statistics)),
    SHOWS(kAccessPort, pm_cli_show_common_counters_brief, (at.rx, &at.statistics)),
    SHOWS(kAccessPort, pm_cli_show_eth_port_counters_brief, (at.rx, at.q, at.if_index, 0)),
    SHOWS(kAccessPort, pm_cli_show_eth_port_counters, (at.rx, at.q, at.if_index)),
    SHOWS(kManagement, pm_cli_show_eth_port_counters, (at.rx, at.q, at.if_index)),
    SHOWS(kAccessPort, pm_cli_show_eth_port_stats, (at.rx, &at.response, at.if_index)),
    SHOWS(kLoopback, pm_cli_show_loopback_port_counters, (at.rx, at.q, at.if_index)),

    // Transceivers.
    SHOWS(kAccessPort, print_port_fcot_info, (at.q, &at.port, 1)),
    SHOWS(kAccessPort, print_transceiver_info, (reinterpret_cast<uint8*>(&at.sfp), 1, 1)),
    SHOWS(kAccessPort, print_x2_transceiver_info, (reinterpret_cast<uint8*>(&at.x2), 1, 1)),
    SHOWS(kAccessPort, pm_cli_show_port_transceiver, (at.rx, &at.port, &at.capability, &at.transceiver)),
    RUNS(kAccessPort, pm_get_sfp_diag_info_and_print_err, (at.q, at.if_index, &at.no_diagnostics, &at.further)),
    RUNS(kSatellitePort, pm_get_sat_sfp_diag_info_and_print_err, (at.q, at.if_index, &at.no_diagnostics, &at.further)),
    SHOWS(kAccessPort, pm_show_transceiver_sfp_details_info, (at.rx, &at.diagnostics, &at.further)),
    SHOWS(kAccessPort, pm_show_transceiver_sfp_calibration_info, (at.rx, &at.diagnostics, &at.further)),
    SHOWS(kAccessPort, pm_print_sfp_diag_info, (&at.diagnostics, &at.further, 1)),
    SHOWS(kAccessPort, pm_print_sfp_calibration_info, (&at.diagnostics, &at.further, 1)),
    SHOWS(kAccessPort, pm_print_sfp_diag_detail_info, (&at.diagnostics, &at.further, 1)),
    SHOWS(kAccessPort, pm_show_interface_tranceiver, (at.show(0))),
    SHOWS(kAccessPort, pm_show_interface_tranceiver_details, (at.show(0))),
    SHOWS(kAccessPort, pm_show_interface_tranceiver_calibrations, (at.show(0)); at.platform.drop_messages()),
    SHOWS(kAccessPort, pm_show_interface_transceiver_for_if_type, (at.show(0), IF_TYPE_ETHERNET)),
    SHOWS(kAccessPort, pm_show_interface_tranceiver_details_for_if_type, (at.show(0), IF_TYPE_ETHERNET)),
    SHOWS(kAccessPort, pm_show_interface_tranceiver_calibrations_for_if_type,
          (at.show(0), IF_TYPE_ETHERNET); at.platform.drop_messages()),
    RUNS(kAccessPort, pm_cli_test_snake, (at.show(0))),

    // VLANs and modules.
    SHOWS(kTrunk, pm_cli_print_eth_trunk_allowed_vlans, (at.rx, &at.port, at.q)),
    SHOWS(kTrunk, pm_cli_print_eth_trunk_brief, (at.rx, &at.port, at.q)),
    SHOWS(kTrunk, pm_cli_print_eth_trunk_errored_vlans, (at.rx, &at.port, &at.errored)),
    SHOWS(kTrunk, pm_cli_print_eth_trunk_stp_forwarding, (at.rx, &at.port, at.q)),
    SHOWS(kTrunk, print_allowed_vlan_info, (at.rx, &at.membership)),
    SHOWS(kTrunk, print_vlan_memb_info, (at.rx, &at.membership)),
    SHOWS(kAccessPort, pm_cli_show_mod_resources, (at.show(0), 3)),
    RUNS(kAccessPort, pm_cli_show_global_buf_group_resources, (node_of(at, PM_RESOURCE_GLOBAL_BUFFER_GROUP), &at.node_bytes)),
    SHOWS(kAccessPort, pm_cli_show_port_group_resources, (node_of(at, PM_RESOURCE_PORT_GROUP), &at.node_bytes)),
    SHOWS(kAccessPort, pm_cli_show_local_buf_group_resources, (node_of(at, PM_RESOURCE_LOCAL_BUFFER_GROUP), &at.node_bytes)),
    SHOWS(kAccessPort, pm_cli_show_port_resources, (node_of(at, PM_RESOURCE_PORT), &at.node_bytes)),

    // Commands that select, clear and configure.
    RUNS(kAccessPort, pm_cli_if_index_enum_func, (at.over_range(0), &at.interfaces)),
    RUNS(kAccessPort, pm_cli_if_index_verification_func, (IF_MASK_ETHERNET, at.over_range(0))),
    RUNS(kAccessPort, pm_cli_check_if_index_for_vsan_perm, (at.show(0), fibre_channel(1, 1))),
    RUNS(kAccessPort, pm_cli_check_to_add_in_if_index_listing, (at.if_index, at.over_range(0, IF_MASK_FC))),
    RUNS(kAccessPort, pm_cli_check_user_vsan_perms, (at.show(0), &at.ranges)),
    RUNS(kAccessPort, pm_cli_clear_all_counters, (at.show(0))),
    RUNS(kAccessPort, pm_cli_clear_counters, (at.over_range(0))),
    RUNS(kEthernetChannel, pm_cli_clear_port_channel_counters, (at.over_range(0))),
    RUNS(kAccessPort, pm_cli_eth_clear_counters, (at.over_range(0))),
    RUNS(kLoopback, pm_cli_loopback_clear_counters, (at.over_range(0))),
    RUNS(kAccessPort, pm_confirm_response, ("Continue?", at.show(0))),
    RUNS(kAccessPort, pm_cli_set_port_config, (at.configure())),
    RUNS(kAccessPort, pm_cli_set_eth_switchport_mode_access, (at.configure(), &at.results, &at.num_results)),
    {"pm_cli_run_macro", &kAccessPort, 0, true,
     [](scene& at, uint32) {
       _lib_api step{"access mode", nullptr, {.function = refusing_step}};
       pm_cli_run_macro(at.configure(), &step, 1);
     }},
    SHOWS(kAccessPort, print_cfg_status, ("access mode", &at.refused, 1)),
};

#undef SHOWS
#undef SHOWS_BY_ID
#undef RUNS
#undef HANDLES

// Walks the calls of one function under one command id, if it makes any. What it prints when nothing fails.
std::string walk(const walked_function& walked, uint32 command) {
  SCOPED_TRACE(std::string(walked.name) + " of " + walked.shown->name + ", id " + std::to_string(command));
  const walk_scenario scenario = [&](RecordingPlatform& platform) {
    scene at(platform, *walked.shown);
    walked.call(at, command);
  };
  std::string text;
  bool makes_calls = false;
  {
    RecordingPlatform platform;
    scenario(platform);
    text = platform.text();
    makes_calls = !platform.calls.empty();
  }
  if (makes_calls) walk_failures(scenario);
  return text;
}

void walk_all(bool by_id) {
  for (const walked_function& walked : kWalked) {
    if ((walked.last_command != 0) != by_id) continue;
    bool prints = false;
    for (uint32 command = 0; command <= walked.last_command; ++command) prints |= !walk(walked, command).empty();
    EXPECT_TRUE(prints || !walked.prints) << walked.name << " of " << walked.shown->name << " prints nothing";
  }
}

TEST(FailureWalk, EveryIdOfEveryHandlerReleasesWhatItTook) { walk_all(true); }
TEST(FailureWalk, EveryDisplayReleasesWhatItTook) { walk_all(false); }

// ---- Nothing is left out ------------------------------------------------------------------------------------------

std::string content_of(const std::filesystem::path& file) {
  std::ifstream stream(file);
  EXPECT_TRUE(stream) << file << " cannot be read";
  return {std::istreambuf_iterator<char>(stream), {}};
}

const std::filesystem::path kLibrary = PMCLI_LIBRARY_SOURCE;  // infra/port_manager

// The public headers, without their comments.
std::string declarations() {
  std::string text;
  for (const auto& folder : {kLibrary / "libpmcli/include/pmcli", kLibrary / "pm"})
    for (const auto& file : std::filesystem::directory_iterator(folder))
      if (file.path().extension() == ".h") text += content_of(file.path());
  for (std::size_t at = 0; (at = text.find("/*", at)) != std::string::npos;)
    text.erase(at, text.find("*/", at) + 2 - at);
  return text;
}

constexpr const char* kHandles[] = {"cmd_rx_handle_t*", "paraminfo_t*", "paraminfo_type*"};

// Shows, prints, or takes an output handle or a command.
bool is_display(const std::string& name, const std::string& declared) {
  if (name.find("show") != std::string::npos || name.find("print") != std::string::npos) return true;
  const std::size_t at = declared.find(" " + name + "(");
  if (at == std::string::npos) return false;  // a table, or returns a pointer
  const std::string parameters = declared.substr(at, declared.find(')', at) - at);
  return std::any_of(std::begin(kHandles), std::end(kHandles),
                     [&](const char* type) { return parameters.find(type) != std::string::npos; });
}

TEST(FailureWalk, LeavesNoDisplayOut) {
  const std::string declared = declarations();
  std::istringstream exported(content_of(kLibrary / "libpmcli/exports.txt"));
  std::set<std::string> displays;
  for (std::string name; exported >> name;)
    if (is_display(name, declared)) displays.insert(name);
  std::set<std::string> walked;
  for (const walked_function& function : kWalked) walked.insert(function.name);
  std::vector<std::string> left_out;
  std::set_difference(displays.begin(), displays.end(), walked.begin(), walked.end(), std::back_inserter(left_out));
  EXPECT_THAT(left_out, IsEmpty()) << "exported, and not in kWalked";
  EXPECT_GT(displays.size(), 100U);
}

TEST(FailureWalk, LeavesNoCommandIdOut) {
  const std::string header = declarations();
  uint32 largest = 0;
  for (std::size_t at = 0; (at = header.find(" DISPLAY_", at)) != std::string::npos; ++at) {
    const std::size_t equals = header.find(" = ", at), end = header.find_first_of(",}\n", at);
    if (equals < end) largest = std::max(largest, static_cast<uint32>(std::stoul(header.substr(equals + 3))));
  }
  EXPECT_EQ(largest, kLastDisplay) << "the largest id of pmcli/displays.h";
}

}  // namespace
}  // namespace pmcli_test
