// Sets of VLANs with any size in their head.
#include <algorithm>
#include <cstring>

#include "messages/vlan_messages.h"
#include "pmcli/command.h"
#include "pmcli/vlan.h"
#include "stage.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::take_over(MTS_SAP_VLAN_MANAGER, false, MTS_OPC_VLAN_TRUNKING_MEMBERSHIP);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  fuzz::answer_with(data, size, [=](paraminfo_t* param) {
    trunk_port_memb_t membership;
    std::memset(&membership, 0, sizeof membership);
    std::memcpy(&membership, data, std::min(size, sizeof membership));
    cmd_rx_handle_t* const rx = cmd_paraminfo_to_rxhandle(param);
    print_vlan_memb_info(rx, &membership);
    print_allowed_vlan_info(rx, &membership);
    const pm_port_info_t port = fuzz::port_record();
    pm_cli_print_eth_trunk_errored_vlans(rx, &port, &membership.allowed_vlan_list);
  });
  return 0;
}
