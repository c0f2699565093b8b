// The listing of the interfaces of a kind.
#include "messages/port_manager_messages.h"
#include "platform/mts.h"
#include "pmcli/transceiver.h"
#include "stage.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::take_over(MTS_SAP_PORT_MANAGER, false, host::PM_OPC_LISTING);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  constexpr std::size_t kFew = 256;  // each interface is asked for by several messages
  fuzz::answer_with(data, size < kFew ? size : kFew, [](paraminfo_t* param) {
    pm_show_interface_tranceiver_details_for_if_type(param, IF_TYPE_ETHERNET);
  });
  return 0;
}
