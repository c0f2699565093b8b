// The transceivers of all ports, and the cabling test.

#include <fcntl.h>

#include <cstdio>
#include <cstdlib>

#include "interface/port_record.h"
#include "platform/uri.h"
#include "platform/vsh.h"
#include "pmcli/command.h"
#include "pmcli/selection.h"
#include "pmcli/transceiver.h"
#include "support/kind.h"
#include "support/listing.h"
#include "support/scope.h"

using namespace pmcli;

namespace {

using diagnostics_printer = void (*)(mts_get_sfp_diag_info_t*, sfp_diag_info_ddm_tlvs_t*, boolean);

// Each listing: what follows the identity, whether Ethernet ports have it, and what is done with the answer.
struct listing_kind {
  diagnostics_printer print;
  bool tells_ethernet;
  bool drops_answer;
};
constexpr listing_kind kPlain = {pm_print_sfp_diag_info, false, true};
constexpr listing_kind kDetails = {pm_print_sfp_diag_detail_info, true, true};
constexpr listing_kind kCalibrations = {pm_print_sfp_calibration_info, true, false};  // not dropped: intended

void show_port(paraminfo_t* param, const listing_kind& listing, if_index_t if_index) {
  const bool is_ethernet = kind_of(if_index) == IF_TYPE_ETHERNET;
  if (pm_cli_check_if_index_for_vsan_perm(param, if_index) != 0) return;
  const port_answer port = ask_port_record(param->q, if_index);
  if (port.record == nullptr || print_port_fcot_info(param->q, port.record.get(), is_ethernet) != 0) return;
  mts_get_sfp_diag_info_t diagnostics{};
  sfp_diag_info_ddm_tlvs_t further_values{};
  if (pm_get_sfp_diag_info_and_print_err(param->q, if_index, &diagnostics, &further_values) != 0) return;
  listing.print(&diagnostics, &further_values, listing.tells_ethernet && is_ethernet ? 1 : 0);
}

int32 show_kind(paraminfo_t* param, const listing_kind& listing, if_index_type_t kind) {
  if (param == nullptr) return 1;
  message answer(param->q);
  if (request_listing(kind, param->q, &answer) != 0) return 1;
  interface_listing(answer.ref()).for_each([&](if_index_t if_index) { show_port(param, listing, if_index); });
  if (!listing.drops_answer) {
    answer.leave();
    return 0;
  }
  if (answer.drop() == 0) return 0;
  vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(param->q));
  return -1;
}

// Where either of these is, the Ethernet ports are left to others.
bool has_port_multiplexer() {
  for (const char* const path : {"/tmp/fc_nport_mux", "/mnt/pss/fc_nport_mux"}) {
    if (const file_descriptor file(open(path, O_RDONLY | O_CLOEXEC)); file) return true;
  }
  return false;
}

}  // namespace

int32 pm_show_interface_transceiver_for_if_type(paraminfo_t* param, if_index_type_t if_type) {
  return show_kind(param, kPlain, if_type);
}

int32 pm_show_interface_tranceiver_details_for_if_type(paraminfo_t* param, if_index_type_t if_type) {
  return show_kind(param, kDetails, if_type);
}

int32 pm_show_interface_tranceiver_calibrations_for_if_type(paraminfo_t* param, if_index_type_t if_type) {
  return show_kind(param, kCalibrations, if_type);
}

int32 pm_show_interface_tranceiver(paraminfo_t* param) {
  pm_show_interface_transceiver_for_if_type(param, IF_TYPE_FC);
  if (!has_port_multiplexer()) pm_show_interface_transceiver_for_if_type(param, IF_TYPE_ETHERNET);
  return 0;
}

int32 pm_show_interface_tranceiver_details(paraminfo_t* param) {
  pm_show_interface_tranceiver_details_for_if_type(param, IF_TYPE_FC);
  pm_show_interface_tranceiver_details_for_if_type(param, IF_TYPE_ETHERNET);
  return 0;
}

int32 pm_show_interface_tranceiver_calibrations(paraminfo_t* param) {
  pm_show_interface_tranceiver_calibrations_for_if_type(param, IF_TYPE_FC);
  pm_show_interface_tranceiver_calibrations_for_if_type(param, IF_TYPE_ETHERNET);
  return 0;
}

int32 pm_cli_test_snake(paraminfo_t* pinfo) {
  if (pinfo == nullptr) return 1;
  char path[128] = "";
  const param_arg_t* const argument = pinfo->parameter_count > 0 ? pinfo->arg_list[0] : nullptr;
  if (argument != nullptr && argument->arg != nullptr &&
      uri_map_targetfs_path_get(static_cast<const char*>(argument->arg), path, sizeof path) != 0) {
    std::puts("Unknown URI scheme");
    return 1;
  }
  char command[128];  // a longer path is cut: intended
  std::snprintf(command, sizeof command, "/vexa/bin/test_snake %.106s", path);
  [[maybe_unused]] const int status = std::system(command);
  return 0;
}
