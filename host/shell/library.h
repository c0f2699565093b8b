// The command libraries: loaded by name, their functions looked up by name, as any shell does.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/paraminfo.h"
#include "platform/types.h"
#include "pmcli/clear.h"
#include "pmcli/command.h"
#include "pmcli/config.h"
#include "pmcli/module.h"
#include "pmcli/selection.h"
#include "pmcli/transceiver.h"

namespace host {

using command_handler = uint32 (*)(paraminfo_t*);

// What the shell calls; the contracts are in the library's public headers. A display that the libraries do not have is
// null.
struct command_library {
  // Rows and blocks, by kind of interface.
  command_handler show_ethernet = nullptr;
  command_handler show_satellite = nullptr;
  command_handler show_management = nullptr;
  command_handler show_loopback = nullptr;
  command_handler show_inband = nullptr;
  command_handler show_statistics = nullptr;

  // The same, of the sibling library.
  command_handler show_port_capabilities = nullptr;
  command_handler show_computed = nullptr;  // the detailed block with what is computed from statistics
  command_handler show_rates = nullptr;
  command_handler show_storm_control = nullptr;
  command_handler show_all_counters = nullptr;

  command_handler show_transceiver = nullptr;              // with tags: identity and diagnostics
  command_handler show_transceiver_calibration = nullptr;  // with tags: identity and calibration constants
  command_handler show_vlans = nullptr;
  command_handler show_errored_vlans = nullptr;

  // Displays that are about no interface of the command.
  decltype(&pm_show_interface_tranceiver) show_transceivers = nullptr;
  decltype(&pm_show_interface_tranceiver_details) show_transceivers_details = nullptr;
  decltype(&pm_show_interface_tranceiver_calibrations) show_transceivers_calibrations = nullptr;
  decltype(&pm_cli_show_mod_resources) show_module_resources = nullptr;

  // Headers of tables.
  command_handler common_header = nullptr;
  command_handler ethernet_header = nullptr;
  command_handler channel_header = nullptr;
  command_handler management_header = nullptr;
  command_handler loopback_header = nullptr;
  command_handler inband_header = nullptr;

  // Which interfaces exist, and whether the command may use them.
  decltype(&pm_cli_if_index_enum_func) enumerate = nullptr;
  decltype(&pm_cli_if_index_verification_func) verify = nullptr;
  decltype(&pm_cli_check_if_index_for_vsan_perm) check_vsans = nullptr;

  // One setting for the ranges in the first argument, and the ports that refused it.
  decltype(&pm_cli_set_port_config) set_port_config = nullptr;
  decltype(&print_cfg_status) print_refusals = nullptr;

  // Clearing counters: of what the first argument names, and all of a kind.
  decltype(&pm_cli_eth_clear_counters) clear_ethernet = nullptr;
  decltype(&pm_cli_clear_port_channel_counters) clear_port_channels = nullptr;
  decltype(&pm_cli_clear_counters) clear_others = nullptr;
  decltype(&pm_cli_loopback_clear_counters) clear_loopbacks = nullptr;
  decltype(&pm_cli_clear_all_eth_counters) clear_all_ethernet = nullptr;
  decltype(&pm_cli_clear_all_loopback_counters) clear_all_loopbacks = nullptr;
  decltype(&pm_clear_all_port_channel_counters) clear_all_port_channels = nullptr;
  decltype(&pm_cli_clear_all_counters) clear_all_others = nullptr;  // loopbacks and port-channels
  decltype(&pm_cli_mgmt_clear_counters) clear_management = nullptr;
  decltype(&pm_cli_inband_clear_counters) clear_inband = nullptr;
};

// Why a library cannot be used: one line.
struct library_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Loads the libraries from `directory` for the rest of the process, and takes the texts of port attributes from them.
// Throws library_error when one of them or a function is missing.
command_library load_command_libraries(const std::string& directory);

}  // namespace host
