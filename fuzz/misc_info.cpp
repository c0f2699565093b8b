// The run-time state of a transceiver, as a line card answers.
#include "platform/misc_info.h"

#include "pmcli/transceiver.h"
#include "stage.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::take_over(MTS_SAP_PORT_MISC_INFO, true, MTS_OPC_PORT_MISC_INFO);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  fuzz::answer_with(data, size, [](paraminfo_t* param) {
    pm_port_info_t port = fuzz::port_record();
    print_port_fcot_info(param->q, &port, true);
  });
  return 0;
}
