#include "shell/library.h"

#include <dlfcn.h>

#include "shell/output/rendering.h"

namespace host {
namespace {

struct named_handler {
  const char* name;
  command_handler command_library::*handler;
};

constexpr named_handler kHandlers[] = {
    {"pm_cli_show_eth_port_config", &command_library::show_ethernet},
    {"pm_cli_show_sat_eth_port_config", &command_library::show_satellite},
    {"pm_cli_show_mgmt_port_config", &command_library::show_management},
    {"pm_cli_show_loopback_config", &command_library::show_loopback},
    {"pm_cli_show_eth_stat_info", &command_library::show_statistics},
    {"pm_cli_show_common_header", &command_library::common_header},
    {"pm_cli_show_eth_header", &command_library::ethernet_header},
    {"pm_pcm_cli_show_header", &command_library::channel_header},
    {"pm_cli_show_mgmt_header", &command_library::management_header},
    {"pm_cli_show_loopback_header", &command_library::loopback_header},
    {"pm_cli_show_inband_header", &command_library::inband_header},
};

constexpr named_handler kSiblingHandlers[] = {
    {"sibling_show_port_capabilities", &command_library::show_port_capabilities},
    {"sibling_show_detailed", &command_library::show_computed},
    {"sibling_show_rates", &command_library::show_rates},
    {"sibling_show_storm_control", &command_library::show_storm_control},
    {"sibling_show_all_counters", &command_library::show_all_counters},
    {"sibling_show_transceiver", &command_library::show_transceiver},
    {"sibling_show_transceiver_calibration", &command_library::show_transceiver_calibration},
    {"sibling_show_vlans", &command_library::show_vlans},
    {"sibling_show_errored_vlans", &command_library::show_errored_vlans},
};

std::string loader_error() {
  const char* const text = dlerror();
  return text == nullptr ? "(null)" : text;
}

// Unlike the other handlers it returns a signed number.
decltype(&pm_cli_show_inband_port_config) the_inband_handler = nullptr;

uint32 show_inband(paraminfo_t* param) { return static_cast<uint32>(the_inband_handler(param)); }

class loaded_library {
 public:
  loaded_library(const std::string& directory, const char* name) : name_(name) {
    library_ = dlopen((directory + "/" + name).c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (library_ == nullptr) throw library_error("cannot load the command library: " + loader_error());
  }

  template <typename Function>
  void find(const char* name, Function& function) const {
    dlerror();
    function = reinterpret_cast<Function>(dlsym(library_, name));
    if (function == nullptr) throw library_error(std::string(name_) + " has no " + name + ": " + loader_error());
  }

 private:
  const char* name_;
  void* library_;
};

void find_clearing(const loaded_library& library, command_library& found) {
  library.find("pm_cli_eth_clear_counters", found.clear_ethernet);
  library.find("pm_cli_clear_port_channel_counters", found.clear_port_channels);
  library.find("pm_cli_clear_counters", found.clear_others);
  library.find("pm_cli_loopback_clear_counters", found.clear_loopbacks);
  library.find("pm_cli_clear_all_eth_counters", found.clear_all_ethernet);
  library.find("pm_cli_clear_all_loopback_counters", found.clear_all_loopbacks);
  library.find("pm_clear_all_port_channel_counters", found.clear_all_port_channels);
  library.find("pm_cli_clear_all_counters", found.clear_all_others);
  library.find("pm_cli_mgmt_clear_counters", found.clear_management);
  library.find("pm_cli_inband_clear_counters", found.clear_inband);
}

void take_vocabulary(const loaded_library& library) {
  vocabulary words{};
  library.find("port_mode_string", words.port_mode);
  library.find("port_rate_mode_string", words.rate_mode);
  library.find("port_flowctrl_mode_string", words.flow_control);
  library.find("port_state_reason_string", words.state_reason);
  set_vocabulary(words);
}

}  // namespace

command_library load_command_libraries(const std::string& directory) {
  command_library found;
  const loaded_library common(directory, "libpmcli_common.so");
  for (const named_handler& wanted : kHandlers) common.find(wanted.name, found.*wanted.handler);
  common.find("pm_cli_show_inband_port_config", the_inband_handler);
  found.show_inband = show_inband;
  common.find("pm_cli_if_index_enum_func", found.enumerate);
  common.find("pm_cli_if_index_verification_func", found.verify);
  common.find("pm_cli_check_if_index_for_vsan_perm", found.check_vsans);
  common.find("pm_cli_set_port_config", found.set_port_config);
  common.find("print_cfg_status", found.print_refusals);
  common.find("pm_show_interface_tranceiver", found.show_transceivers);
  common.find("pm_show_interface_tranceiver_details", found.show_transceivers_details);
  common.find("pm_show_interface_tranceiver_calibrations", found.show_transceivers_calibrations);
  common.find("pm_cli_show_mod_resources", found.show_module_resources);
  find_clearing(common, found);
  take_vocabulary(common);

  const loaded_library sibling(directory, "libpmcli_sibling.so");
  for (const named_handler& wanted : kSiblingHandlers) sibling.find(wanted.name, found.*wanted.handler);
  return found;
}

}  // namespace host
