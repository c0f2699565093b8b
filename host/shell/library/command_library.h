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

// The functions of the command library that the shell calls; their contracts are in its public headers.
struct command_library {
  std::string file;  // from which it was loaded

  // Rows and blocks, by kind of interface.
  command_handler show_ethernet = nullptr;
  command_handler show_satellite = nullptr;
  command_handler show_management = nullptr;
  command_handler show_loopback = nullptr;
  command_handler show_inband = nullptr;
  command_handler show_statistics = nullptr;

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

  // Whether a display applies to sub-interfaces.
  decltype(&pm_cli_subinterface_supported) applies_to_sub_interfaces = nullptr;

  // One setting for the ranges in the first argument, and the ports that refused it.
  decltype(&pm_cli_set_port_config) set_port_config = nullptr;
  decltype(&print_cfg_status) print_refusals = nullptr;

  // Clearing counters: of the interfaces in the first argument, and of all of a kind.
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

// A shared object that stays loaded for the rest of the process.
class loaded_library {
 public:
  // Functions that the library calls are looked up at the first call, or `at_once`. Throws library_error when the file
  // cannot be loaded.
  enum class binding { lazy, at_once };
  explicit loaded_library(const std::string& file, binding when = binding::lazy);

  // The address of a function or an object; null when there is none, with the reason in `error`.
  void* find(const char* name, std::string& error) const;

  const std::string& file() const { return file_; }

 private:
  std::string file_;
  void* handle_ = nullptr;
};

// Loads the command library, and takes the texts of port attributes from it. Throws library_error when it or one of its
// functions is missing.
command_library load_command_library(const std::string& file);

}  // namespace host
