// The command libraries: loaded by name, their functions looked up by name, as any shell does.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "platform/port_config.h"
#include "platform/types.h"

namespace host {

using command_handler = uint32 (*)(paraminfo_t*);

// Interfaces as the enumeration callback hands them over: a heap block, null when there are none.
struct interface_list {
  uint32 length;
  if_index_t* list;
};

// What the shell calls. A display that the libraries do not have is null.
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
  int32 (*show_transceivers)(paraminfo_t*) = nullptr;
  int32 (*show_transceivers_details)(paraminfo_t*) = nullptr;
  int32 (*show_transceivers_calibrations)(paraminfo_t*) = nullptr;
  uint32 (*show_module_resources)(paraminfo_t*, uint8) = nullptr;

  // Headers of tables.
  command_handler common_header = nullptr;
  command_handler ethernet_header = nullptr;
  command_handler channel_header = nullptr;
  command_handler management_header = nullptr;
  command_handler loopback_header = nullptr;
  command_handler inband_header = nullptr;

  // Which interfaces exist (1: the list is filled), and whether the command may use them (0: yes).
  int32 (*enumerate)(paraminfo_t*, interface_list*) = nullptr;
  int32 (*verify)(interface_mask_t, paraminfo_t*) = nullptr;
  uint32 (*check_vsans)(paraminfo_t*, if_index_t) = nullptr;

  // One setting for the range in the first argument, by the tokens behind it (0: some port took it, or there was
  // nothing to do; -12: the user may not).
  int32 (*set_port_config)(paraminfo_t*) = nullptr;

  // Says which ports refused a setting, by its words.
  void (*print_refusals)(const char*, pm_port_cfg_status_t*, uint32) = nullptr;

  // Clearing counters: of what the first argument names, and all of a kind.
  int32 (*clear_ethernet)(paraminfo_t*) = nullptr;
  int32 (*clear_port_channels)(paraminfo_t*) = nullptr;
  int32 (*clear_others)(paraminfo_t*) = nullptr;
  void (*clear_loopbacks)(paraminfo_t*) = nullptr;
  void (*clear_all_ethernet)(mts_q_handle_t) = nullptr;
  void (*clear_all_loopbacks)(mts_q_handle_t) = nullptr;
  int32 (*clear_all_port_channels)(mts_q_handle_t) = nullptr;
  int32 (*clear_all_others)(paraminfo_t*) = nullptr;  // loopbacks and port-channels
  void (*clear_management)(if_index_t, mts_q_handle_t) = nullptr;
  void (*clear_inband)() = nullptr;
};

// Why a library cannot be used: one line.
struct library_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Loads the libraries from `directory` for the rest of the process, and takes the texts of port attributes from them.
// Throws library_error when one of them or a function is missing.
command_library load_command_libraries(const std::string& directory);

}  // namespace host
