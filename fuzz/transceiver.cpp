// Images of transceivers, of any length.
#include "pmcli/transceiver.h"

#include <algorithm>
#include <cstring>

#include "messages/port_manager_messages.h"
#include "pmcli/interface.h"
#include "stage.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::take_over(MTS_SAP_PORT_MANAGER, false, host::PM_OPC_TRANSCEIVER);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  fuzz::answer_with(data, size, [=](paraminfo_t* param) {
    pm_port_info_t port = fuzz::port_record();
    print_port_fcot_info(param->q, &port, true);  // an answer with these bytes

    pm_fcot_res_t record;
    std::memset(&record, 0, sizeof record);
    std::memcpy(&record, data, std::min(size, sizeof record));
    pm_cli_common_capability_t capability{};
    capability.fcot_capable = 1;
    pm_cli_show_port_transceiver(cmd_paraminfo_to_rxhandle(param), &port, &capability, &record);
    print_transceiver_info(reinterpret_cast<uint8*>(&record.fi), true, true);
    print_x2_transceiver_info(reinterpret_cast<uint8*>(&record.fi), true, true);
    pm_get_x2_fcot_type(&record.fi.x2_fcot_info);
  });
  return 0;
}
