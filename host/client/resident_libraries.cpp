#include "client/resident_libraries.h"

#include <dlfcn.h>

#include "platform/card_config.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/port_channel.h"
#include "platform/private_vlan.h"
#include "platform/spanning_tree.h"
#include "platform/vlan_manager.h"

namespace host {

void keep_libraries_resident(const std::string& directory) {
  // A library that is loaded is found again by its name alone. The handles are kept until the process ends.
  for (const char* const name : {STATCL_LIBRARY, IP_STATS_LIBRARY, CRDCFG_LIBRARY, VLAN_MGR_LIBRARY,
                                 PORT_CHANNEL_COMMANDS_LIBRARY, STP_LIBRARY, PVLAN_LIBRARY})
    dlopen((directory + "/" + name).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
}

}  // namespace host
