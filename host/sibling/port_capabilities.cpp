#include "sibling/port_capabilities.h"

#include "pmcli/interface.h"
#include "sibling/frame.h"

namespace {

void show_capabilities(const sibling::request& requested) {
  if (if_index_is_sub_intf(requested.if_index)) return;
  pm_cli_common_capability_t capability{};
  if (pm_cli_get_port_capability(requested.if_index, &capability) == 0)
    pm_cli_show_port_capabities(requested.rx, &capability);
}

}  // namespace

[[gnu::visibility("default")]] uint32 sibling_show_port_capabilities(paraminfo_t* param) {
  return sibling::run_handler(param, "capabilities", show_capabilities);
}
