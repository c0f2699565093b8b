#include "support/recording_platform.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <algorithm>
#include <cstdlib>

#include "platform/vlan_manager.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

RecordingPlatform* living = nullptr;

// Functions that fail_with() knows.
constexpr std::string_view kFallible[] = {
    "calloc",
    "cmd_mrange_create",
    "cmd_paraminfo_to_rxhandle",
    "crdcfg_get_port_cap",
    "dlopen",
    "dlsym",
    "dstats_clear_counters",
    "get_card_module_info",
    "get_platform_info",
    "get_port_channel_info",
    "get_port_channel_members",
    "idxmap_node_by_if_index",
    "if_index_eth_port_channel_get_channel_num",
    "if_index_fcip_get_tunnel",
    "if_index_get_port",
    "if_index_get_slot",
    "if_index_get_sub_intf",
    "if_index_get_type",
    "if_index_next",
    "if_index_phy_eth_get_sub_intf",
    "if_index_phy_fc_get_port",
    "if_index_phy_fc_get_slot",
    "if_index_phy_fc_port_init",
    "if_index_port_channel_get_channel_num",
    "if_index_port_channel_get_subtype",
    "if_index_server_interface_get_sif_num",
    "if_index_set_channel_num",
    "if_index_set_port",
    "if_index_set_sif_num",
    "if_index_set_sub_intf",
    "if_index_set_tunnel",
    "im_ext_sbcr_init",
    "im_get_ifindex_access_vlan_list",
    "im_get_ifindex_layermode_list",
    "im_get_ifindex_native_vlan_list",
    "ioctl",
    "ip_clear_loopback_counters",
    "ip_get_loopback_counters",
    "ipconf_get_if_inet_addrs",
    "malloc",
    "mcecm_api_sdb_sh_int_po",
    "mts_drop",
    "mts_is_reject",
    "mts_payload_get",
    "mts_payload_size",
    "mts_recv",
    "mts_send",
    "pcmap_get_next_port_channel",
    "pdb_get_chassis_type",
    "pm_clear_interface_counters",
    "pm_clear_port_counters",
    "pm_cli_clear_ethernet_channel_counters",
    "pm_cli_config_loopback_interface",
    "pm_cli_config_sub_interface",
    "pm_cmi_get_fcot_info",
    "pm_cmi_get_port_config",
    "pm_cmi_get_tracked_port_if_list",
    "pm_cmi_set_port_config",
    "pm_get_clear_eth_stats",
    "pm_get_if_index_listing",
    "pm_get_interface_counters",
    "pm_get_module_resources",
    "pm_get_port_info_range",
    "pm_get_proc_net_dev_stats",
    "pm_get_sat_sfp_diag_info",
    "pm_get_sfp_diag_info",
    "pm_get_startup_if_index_listing",
    "pm_parse_get_port_info_range",
    "pm_port_channel_get_clear_eth_stats",
    "pvlan_build_get_switchport_info_req",
    "pvlan_parse_get_switchport_info_rsp",
    "realloc",
    "satmgr_get_fport_info",
    "satmgr_get_slot_info",
    "socket",
    "statcl_get_port_client_snmp_stats",
    "statcl_get_port_client_stats",
    "statscl_clear_port_client_stats",
    "stp_parse_get_port_state",
    "stp_send_get_port_state",
    "system",
    "uri_map_targetfs_path_get",
    "vlan_get_port_trunking_memb_build_mts",
    "vlan_get_port_trunking_memb_parse_reply",
    "vlan_get_vlan_info_build_mts",
    "vlan_get_vlan_info_parse_reply",
    "vsan_get_port_trunking_membership",
    "vsh_fc_intf_perm_check",
    "vsh_util_user_input_get",
};

ssize_t write_terminal(void*, const char* bytes, size_t size) {
  if (living != nullptr) living->add_text({bytes, size}, true);
  return static_cast<ssize_t>(size);
}

std::FILE* open_terminal() {
  cookie_io_functions_t functions{};
  functions.write = write_terminal;
  std::FILE* const stream = fopencookie(nullptr, "w", functions);
  if (stream == nullptr) std::abort();
  setvbuf(stream, nullptr, _IONBF, 0);  // library text and channel text keep their order
  return stream;
}

}  // namespace

RecordingPlatform* RecordingPlatform::active() { return living; }

RecordingPlatform& platform_for(const char* function) {
  if (living != nullptr) return *living;
  std::fprintf(stderr, "%s() was called while no RecordingPlatform lives\n", function);
  std::abort();
}

RecordingPlatform::RecordingPlatform() : state_(std::make_unique<state>()) {
  if (living != nullptr) {
    std::fprintf(stderr, "a second RecordingPlatform was made while one lives\n");
    std::abort();
  }
  libraries[STATCL_LIBRARY] = statistics_client();
  libraries[IP_STATS_LIBRARY] = ip_statistics_library();
  libraries[CRDCFG_LIBRARY] = card_config_library();
  libraries[VLAN_MGR_LIBRARY] = {};
  reset_runtime_params();
  living = this;
  std::fflush(stdout);
  state_->stdout_before = stdout;
  state_->stream = open_terminal();
  stdout = state_->stream;
}

RecordingPlatform::~RecordingPlatform() {
  stdout = state_->stdout_before;
  std::fclose(state_->stream);
  expect_all_released();
  if (!state_->tuples.empty()) ADD_FAILURE() << state_->tuples.size() << " bound values were never printed";
  living = nullptr;
}

cmd_rx_handle_t* RecordingPlatform::output() { return &state_->rx; }

paraminfo_t* RecordingPlatform::show_command(uint32 command_id, if_index_t if_index) {
  paraminfo_t& param = state_->params.emplace_back();
  param.q = q();
  param.command_id = command_id;
  param.username = "admin";
  param.prc_mode = 3;
  add_argument(&param, PARAM_TYPE_UINT32, &state_->argument_values.emplace_back(if_index));
  return &param;
}

param_arg_t* RecordingPlatform::add_argument(paraminfo_t* param, param_type_t type, void* arg) {
  param_arg_t& argument = state_->arguments.emplace_back();
  argument.type = type;
  argument.match_type = type;
  argument.arg = arg;
  param->arg_list[param->parameter_count++] = &argument;
  return &argument;
}

Tuples RecordingPlatform::tuples() const {
  Tuples all;
  for (const printed_piece& piece : pieces) all.insert(all.end(), piece.tuples.begin(), piece.tuples.end());
  return all;
}

void RecordingPlatform::clear_output() {
  text_.clear();
  terminal_.clear();
  pieces.clear();
  short_rows = sends = 0;
  failures.clear();
  mts_errors.clear();
}

void RecordingPlatform::add_text(std::string_view text, bool is_terminal) {
  text_ += text;
  if (is_terminal) terminal_ += text;
  if (text.find('\n') != std::string_view::npos) state_->is_short_row = false;
}

uint32 RecordingPlatform::count(std::string_view function) const {
  return static_cast<uint32>(std::count(calls.begin(), calls.end(), function));
}

void RecordingPlatform::fail_with(const std::string& function, int32 result) {
  if (std::find(std::begin(kFallible), std::end(kFallible), function) == std::end(kFallible))
    ADD_FAILURE() << "fail_with(\"" << function << "\"): the recording platform knows no such function that can fail";
  state_->forced_results[function] = result;
}

void RecordingPlatform::fail_call(uint32 nth, int32 result) {
  state_->failing_call = nth;
  state_->failing_result = result;
}

int32 RecordingPlatform::failure_of(const std::string& function) {
  calls.push_back(function);
  ++state_->fallible_calls;
  int32 result = 0;
  if (const auto forced = state_->forced_results.find(function); forced != state_->forced_results.end())
    result = forced->second;
  if (state_->fallible_calls == state_->failing_call) {
    failed_call_ = function;
    result = state_->failing_result;
  }
  if (result == -1) state_->last_mts_errno = mts_errno;
  return result;
}

std::vector<std::string> RecordingPlatform::unreleased() const {
  std::vector<std::string> found;
  for (std::size_t i = 0; i < state_->messages.size(); ++i)
    if (!state_->messages[i].is_dropped)
      found.push_back("message " + std::to_string(i + 1) + ", " + state_->messages[i].what + ", was not dropped");
  for (const open_library& library : state_->open_libraries)
    if (library.is_open) found.push_back("library " + library.name + " was not closed");
  for (std::size_t i = 0; i < state_->sockets.size(); ++i)
    if (state_->sockets[i].is_open) found.push_back("socket " + std::to_string(i + 1) + " was not closed");
  for (const auto& [address, block] : state_->blocks)
    found.push_back("block of " + std::to_string(block.size) + " bytes from " + block.label + " was not freed");
  return found;
}

void RecordingPlatform::expect_all_released() {
  for (const std::string& text : unreleased()) ADD_FAILURE() << text;
  for (message& left : state_->messages) left.is_dropped = true;
  for (open_library& left : state_->open_libraries) left.is_open = false;
  for (open_socket& left : state_->sockets) left.is_open = false;
  for (const auto& [address, block] : state_->blocks) std::free(address);
  state_->blocks.clear();
}

}  // namespace pmcli_test
