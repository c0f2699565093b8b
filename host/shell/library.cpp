#include "shell/library.h"

#include <dlfcn.h>

#include "shell/output/rendering.h"

namespace host {
namespace {

constexpr char kLibraryName[] = "libpmcli_common.so";

std::string loader_error() {
  const char* const text = dlerror();
  return text == nullptr ? "(null)" : text;
}

template <typename Function>
void find_function(void* library, const char* name, Function& function) {
  dlerror();
  function = reinterpret_cast<Function>(dlsym(library, name));
  if (function == nullptr) throw library_error(std::string(kLibraryName) + " has no " + name + ": " + loader_error());
}

}  // namespace

command_library load_command_library(const std::string& directory) {
  const std::string path = directory + "/" + kLibraryName;
  void* const library = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
  if (library == nullptr) throw library_error("cannot load the command library: " + loader_error());

  command_library found;
  find_function(library, "pm_cli_show_eth_port_config", found.show_ethernet);
  find_function(library, "pm_cli_show_sat_eth_port_config", found.show_satellite);
  find_function(library, "pm_cli_show_mgmt_port_config", found.show_management);
  find_function(library, "pm_cli_show_loopback_config", found.show_loopback);
  find_function(library, "pm_cli_show_eth_stat_info", found.show_statistics);

  vocabulary words{};
  find_function(library, "port_mode_string", words.port_mode);
  find_function(library, "port_rate_mode_string", words.rate_mode);
  find_function(library, "port_flowctrl_mode_string", words.flow_control);
  find_function(library, "port_state_reason_string", words.state_reason);
  set_vocabulary(words);
  return found;
}

}  // namespace host
