// The members of a port-channel.
#include "messages/port_channel_messages.h"
#include "pmcli/interface.h"
#include "stage.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::take_over(host::SAP_PORT_CHANNEL, false, host::PC_OPC_MEMBERS);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  fuzz::answer_with(data, size, [](paraminfo_t* param) {
    print_eth_port_channel_members(cmd_paraminfo_to_rxhandle(param), fuzz::the_channel);
    print_port_channel_members(fuzz::the_channel);
  });
  return 0;
}
