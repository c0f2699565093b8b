#include "source/kernel/ethtool_ioctl.h"

#include <linux/ethtool.h>

#include <cstring>

namespace host {
namespace {

// Asks with a command of ethtool; false when the device does not answer it.
template <typename Command>
bool ask(const std::string& device, uint32 number, Command& command) {
  command = {};
  command.cmd = number;
  return the_kernel_gate().ethtool_ioctl(device, &command) == 0;
}

void read_modes(kernel_link& link) {
  constexpr uint32 kUnknownSpeed = 0xFFFFFFFF, kUnknownOldSpeed = 0xFFFF;
  ethtool_cmd told;
  if (!ask(link.name, ETHTOOL_GSET, told)) return;
  const uint32 speed = ethtool_cmd_speed(&told);
  if (speed != 0 && speed != kUnknownSpeed && speed != kUnknownOldSpeed) link.speed_mbps = speed;
  if (told.duplex <= DUPLEX_FULL) link.is_full_duplex = told.duplex == DUPLEX_FULL;
  link.negotiates = told.autoneg != AUTONEG_DISABLE;
  link.supported = told.supported;
  link.advertised = told.advertising;
  link.partner = told.lp_advertising;
}

void read_pause(kernel_link& link) {
  ethtool_pauseparam told;
  if (!ask(link.name, ETHTOOL_GPAUSEPARAM, told)) return;
  link.pause = {.negotiates = told.autoneg != 0, .receives = told.rx_pause != 0, .sends = told.tx_pause != 0};
}

}  // namespace

void read_port_settings_by_ioctl(std::vector<kernel_link>& links) {
  for (kernel_link& link : links) {
    read_modes(link);
    if (is_physical(link)) read_pause(link);
  }
}

std::string driver_of(const std::string& device) {
  ethtool_drvinfo told;
  if (!ask(device, ETHTOOL_GDRVINFO, told)) return {};
  return {told.driver, strnlen(told.driver, sizeof told.driver)};
}

}  // namespace host
