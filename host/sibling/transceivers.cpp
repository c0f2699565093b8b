#include "sibling/transceivers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "platform/syserr.h"
#include "pmcli/interface.h"
#include "pmcli/transceiver.h"
#include "sibling/frame.h"
#include "sibling/port_record.h"

namespace {

using sibling::request;

// The port manager's record, zero where its answer is shorter; none after the reason was printed.
std::optional<pm_fcot_res_t> transceiver_of(const request& requested) {
  constexpr int32 kTimeoutSec = 60;
  const if_index_range_t range{requested.if_index, requested.if_index};
  uint32 length = 0;
  pm_fcot_res_t* answer = nullptr;
  const syserr_t error = pm_cmi_get_fcot_info(requested.q, 1, 1, &range, &length, &answer, kTimeoutSec);
  if (error != 0 || answer == nullptr) {
    const char* const text = syserr2str(error);
    std::printf("error: %s\n", text != nullptr ? text : "no answer");
    std::free(answer);
    return std::nullopt;
  }
  pm_fcot_res_t record;
  std::memset(&record, 0, sizeof record);
  std::memcpy(&record, answer, std::min<std::size_t>(length, sizeof record));
  std::free(answer);
  return record;
}

// False when there is no module with values.
bool show_identity(const request& requested) {
  const sibling::port_record port(requested);
  if (!port) return false;
  pm_cli_common_capability_t capability{};
  pm_cli_get_port_capability(requested.if_index, &capability);
  auto record = transceiver_of(requested);
  if (!record) return false;
  pm_cli_show_port_transceiver(requested.rx, port.get(), &capability, &*record);
  return capability.fcot_capable != 0 && record->is_fcot_supported != 0;
}

bool is_of_satellite(if_index_t if_index) {
  if_index_type_t type = IF_TYPE_NONE;
  return if_index_get_type(if_index, &type) == 0 && type == IF_TYPE_SATELLITE;
}

using value_printer = void (*)(cmd_rx_handle_t*, mts_get_sfp_diag_info_t*, sfp_diag_info_ddm_tlvs_t*);

template <value_printer Print>
void show_transceiver(const request& requested) {
  if (if_index_is_sub_intf(requested.if_index) || !show_identity(requested)) return;
  mts_get_sfp_diag_info_t diagnostics{};
  sfp_diag_info_ddm_tlvs_t further{};
  const auto ask =
      is_of_satellite(requested.if_index) ? pm_get_sat_sfp_diag_info_and_print_err : pm_get_sfp_diag_info_and_print_err;
  if (ask(requested.q, requested.if_index, &diagnostics, &further) == 0) Print(requested.rx, &diagnostics, &further);
}

}  // namespace

[[gnu::visibility("default")]] uint32 sibling_show_transceiver(paraminfo_t* param) {
  return sibling::run_handler(param, "transceiver", show_transceiver<pm_show_transceiver_sfp_details_info>);
}

[[gnu::visibility("default")]] uint32 sibling_show_transceiver_calibration(paraminfo_t* param) {
  return sibling::run_handler(param, "calibration", show_transceiver<pm_show_transceiver_sfp_calibration_info>);
}
