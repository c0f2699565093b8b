#include "source/kernel/ethtool_ioctl.h"

#include <linux/ethtool.h>

#include <cstring>

namespace host {
namespace {

// Sends a command of ethtool; false when the device does not support it.
template <typename Command>
bool ask(const std::string& device, uint32 number, Command& command) {
  command = {};
  command.cmd = number;
  return the_kernel_io().ethtool_ioctl(device, &command) == 0;
}

void read_modes(kernel_link& link) {
  constexpr uint32 kUnknownSpeed = 0xFFFFFFFF, kUnknownOldSpeed = 0xFFFF;
  ethtool_cmd answer;
  if (!ask(link.name, ETHTOOL_GSET, answer)) return;
  const uint32 speed = ethtool_cmd_speed(&answer);
  if (speed != 0 && speed != kUnknownSpeed && speed != kUnknownOldSpeed) link.speed_mbps = speed;
  if (answer.duplex <= DUPLEX_FULL) link.is_full_duplex = answer.duplex == DUPLEX_FULL;
  link.negotiates = answer.autoneg != AUTONEG_DISABLE;
  link.supported = answer.supported;
  link.advertised = answer.advertising;
  link.partner = answer.lp_advertising;
}

void read_pause(kernel_link& link) {
  ethtool_pauseparam answer;
  if (!ask(link.name, ETHTOOL_GPAUSEPARAM, answer)) return;
  link.pause = {.negotiates = answer.autoneg != 0, .receives = answer.rx_pause != 0, .sends = answer.tx_pause != 0};
}

}  // namespace

void read_port_settings_by_ioctl(std::vector<kernel_link>& links) {
  for (kernel_link& link : links) {
    read_modes(link);
    if (is_physical(link)) read_pause(link);
  }
}

std::string driver_of(const std::string& device) {
  ethtool_drvinfo answer;
  if (!ask(device, ETHTOOL_GDRVINFO, answer)) return {};
  return {answer.driver, strnlen(answer.driver, sizeof answer.driver)};
}

}  // namespace host
