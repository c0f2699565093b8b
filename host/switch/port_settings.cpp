#include "switch/port_settings.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "platform/card_config.h"
#include "platform/interface_manager.h"
#include "platform/port_manager.h"

namespace host {
namespace {

struct speed_bit {
  uint8 bit;
  uint32 mbps;
};
constexpr speed_bit kSpeeds[] = {
    {CRDCFG_SPEED_10M, 10}, {CRDCFG_SPEED_100M, 100}, {CRDCFG_SPEED_1G, 1000}, {CRDCFG_SPEED_10G, 10000}};

}  // namespace

std::vector<uint16> every_vlan() {
  std::vector<uint16> vlans(4094);
  std::iota(vlans.begin(), vlans.end(), uint16{1});
  return vlans;
}

uint32 default_port_mode(if_index_type_t kind, uint32 layer) {
  constexpr if_index_type_t kFibreChannel[] = {IF_TYPE_FC, IF_TYPE_FCIP, IF_TYPE_SERVER, IF_TYPE_INBAND};
  if (layer != IF_LAYER_2) return 0;
  const bool is_fc = std::find(std::begin(kFibreChannel), std::end(kFibreChannel), kind) != std::end(kFibreChannel);
  return is_fc ? PM_PORT_MODE_AUTO : PM_PORT_MODE_ACCESS;
}

uint32 slowest_mbps(uint8 speeds) {
  const auto found = std::find_if(std::begin(kSpeeds), std::end(kSpeeds), [=](speed_bit s) { return s.bit & speeds; });
  return found == std::end(kSpeeds) ? 0 : found->mbps;
}

uint32 fastest_mbps(uint8 speeds) {
  const auto found =
      std::find_if(std::rbegin(kSpeeds), std::rend(kSpeeds), [=](speed_bit s) { return s.bit & speeds; });
  return found == std::rend(kSpeeds) ? 0 : found->mbps;
}

}  // namespace host
