// Diagnostics with any numbers.
#include <algorithm>
#include <cstring>

#include "messages/port_manager_messages.h"
#include "pmcli/transceiver.h"
#include "stage.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::take_over(MTS_SAP_PORT_MANAGER, false, host::PM_OPC_DIAGNOSTICS);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  fuzz::answer_with(data, size, [=](paraminfo_t* param) {
    mts_get_sfp_diag_info_t diagnostics;
    sfp_diag_info_ddm_tlvs_t further;
    std::memset(&diagnostics, 0, sizeof diagnostics);
    std::memset(&further, 0, sizeof further);
    pm_get_sfp_diag_info_and_print_err(param->q, fuzz::the_port, &diagnostics, &further);

    std::memcpy(&diagnostics, data, std::min(size, sizeof diagnostics));
    cmd_rx_handle_t* const rx = cmd_paraminfo_to_rxhandle(param);
    pm_show_transceiver_sfp_details_info(rx, &diagnostics, &further);
    pm_show_transceiver_sfp_calibration_info(rx, &diagnostics, &further);
    pm_print_sfp_diag_info(&diagnostics, &further, 1);
    pm_print_sfp_diag_detail_info(&diagnostics, &further, 1);
    pm_print_sfp_calibration_info(&diagnostics, &further, 1);
  });
  return 0;
}
