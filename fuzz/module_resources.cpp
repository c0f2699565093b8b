// The tree of a module's resources.
#include "messages/port_manager_messages.h"
#include "platform/mts.h"
#include "pmcli/module.h"
#include "stage.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::take_over(MTS_SAP_PORT_MANAGER, false, host::PM_OPC_MODULE_RESOURCES);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  constexpr uint8 kSlot = 3;
  fuzz::answer_with(data, size, [](paraminfo_t* param) { pm_cli_show_mod_resources(param, kSlot); });
  return 0;
}
