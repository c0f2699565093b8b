// Results by port, as the steps of a macro return them.

#include <cstdio>
#include <span>

#include "platform/syserr.h"
#include "pmcli/config.h"
#include "support/text.h"

using namespace pmcli;

namespace {

void print_failure(const char* description, const pm_port_cfg_status_t& port) {
  const interface_name name(port.if_index);
  const char* const text = syserr2str(static_cast<syserr_t>(static_cast<uint32>(port.status)));
  if (text != nullptr)
    std::printf("%s failed for %s with %s\n", name.text, description, text);  // the name comes first: intended
  else
    std::printf("%s failed for %s\n", name.text, description);
}

}  // namespace

void print_cfg_status(const char* api_desc, pm_port_cfg_status_t* cfg_status, uint32 num_ports) {
  bool has_heading = false;
  for (const pm_port_cfg_status_t& port : std::span(cfg_status, cfg_status != nullptr ? num_ports : 0)) {
    if (port.status == 0U) continue;
    if (!has_heading) std::puts("Command failed for following interfaces:");
    has_heading = true;
    print_failure(api_desc, port);
  }
  std::putchar('\n');
}

void merge_cfg_status(pm_port_cfg_status_t* to_cfg_status, pm_port_cfg_status_t* from_cfg_status, uint32 num_ports) {
  if (to_cfg_status == nullptr || from_cfg_status == nullptr) return;
  for (uint32 i = 0; i < num_ports; ++i)
    if (to_cfg_status[i].status == 0U) to_cfg_status[i].status = from_cfg_status[i].status;
}
