#include "shell/library/command_library.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <fstream>

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

std::string loader_error() {
  const char* const text = dlerror();
  return text == nullptr ? "(null)" : text;
}

// Unlike the other handlers it returns a signed number.
decltype(&pm_cli_show_inband_port_config) the_inband_handler = nullptr;

uint32 show_inband(paraminfo_t* param) { return static_cast<uint32>(the_inband_handler(param)); }

// The functions of the command library. Throws library_error when one is missing.
class function_finder {
 public:
  explicit function_finder(const std::string& file) : library_(file) {}

  template <typename Function>
  void find(const char* name, Function& function) const {
    std::string error;
    function = reinterpret_cast<Function>(library_.find(name, error));
    if (function == nullptr) throw library_error(fmt::format("{} has no {}: {}", library_.file(), name, error));
  }

 private:
  loaded_library library_;
};

void find_clearing(const function_finder& library, command_library& found) {
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

void take_vocabulary(const function_finder& library) {
  vocabulary words{};
  library.find("port_mode_string", words.port_mode);
  library.find("port_rate_mode_string", words.rate_mode);
  library.find("port_flowctrl_mode_string", words.flow_control);
  library.find("port_state_reason_string", words.state_reason);
  set_vocabulary(words);
}

// Whether the segments of a library reach beyond the end of its file: the loader would map them, and accessing them
// would end the process. The loader reports all other faults of the file.
bool is_cut(const std::string& file) {
  std::ifstream in(file, std::ios::binary | std::ios::ate);
  const auto size = static_cast<uint64>(std::max<std::streamoff>(in.tellg(), 0));
  const auto read_at = [&in](uint64 offset, auto& record) {
    in.seekg(static_cast<std::streamoff>(offset));
    return bool{in.read(reinterpret_cast<char*>(&record), sizeof record)};
  };
  ElfW(Ehdr) header{};
  if (!read_at(0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return false;
  for (uint64 i = 0; i < header.e_phnum; ++i) {
    ElfW(Phdr) segment{};
    if (!read_at(header.e_phoff + i * sizeof segment, segment)) return true;
    if (segment.p_type == PT_LOAD && (segment.p_filesz > size || segment.p_offset > size - segment.p_filesz))
      return true;
  }
  return false;
}

}  // namespace

loaded_library::loaded_library(const std::string& file, binding when) : file_(file) {
  if (when == binding::at_once && is_cut(file)) throw library_error(fmt::format("{}: the file is cut off.", file));
  handle_ = dlopen(file.c_str(), (when == binding::lazy ? RTLD_LAZY : RTLD_NOW) | RTLD_LOCAL);
  if (handle_ == nullptr) throw library_error(fmt::format("cannot load the command library: {}", loader_error()));
}

void* loaded_library::find(const char* name, std::string& error) const {
  dlerror();
  void* const found = dlsym(handle_, name);
  if (found == nullptr) error = loader_error();
  return found;
}

command_library load_command_library(const std::string& file) {
  command_library found;
  found.file = file;
  const function_finder common(file);
  for (const named_handler& requested : kHandlers) common.find(requested.name, found.*requested.handler);
  common.find("pm_cli_show_inband_port_config", the_inband_handler);
  found.show_inband = show_inband;
  common.find("pm_cli_if_index_enum_func", found.enumerate);
  common.find("pm_cli_if_index_verification_func", found.verify);
  common.find("pm_cli_check_if_index_for_vsan_perm", found.check_vsans);
  common.find("pm_cli_subinterface_supported", found.applies_to_sub_interfaces);
  common.find("pm_cli_set_port_config", found.set_port_config);
  common.find("print_cfg_status", found.print_refusals);
  common.find("pm_show_interface_tranceiver", found.show_transceivers);
  common.find("pm_show_interface_tranceiver_details", found.show_transceivers_details);
  common.find("pm_show_interface_tranceiver_calibrations", found.show_transceivers_calibrations);
  common.find("pm_cli_show_mod_resources", found.show_module_resources);
  find_clearing(common, found);
  take_vocabulary(common);
  return found;
}

}  // namespace host
