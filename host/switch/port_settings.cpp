#include "switch/port_settings.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "platform/card_config.h"
#include "platform/interface_manager.h"
#include "platform/port_manager.h"

namespace host {
namespace {

constexpr known_speed kSpeeds[] = {{CRDCFG_SPEED_10M, 10}, {CRDCFG_SPEED_100M, 100}, {CRDCFG_SPEED_1G, 1000},
                                   {1U << 8, 2500},        {1U << 9, 5000},          {CRDCFG_SPEED_10G, 10'000},
                                   {1U << 10, 25'000},     {1U << 11, 40'000},       {1U << 12, 50'000},
                                   {1U << 13, 100'000},    {1U << 14, 200'000},      {1U << 15, 400'000}};

}  // namespace

const std::vector<uint16>& every_vlan() {
  static const std::vector<uint16> all = [] {
    std::vector<uint16> vlans(4094);
    std::iota(vlans.begin(), vlans.end(), uint16{1});
    return vlans;
  }();
  return all;
}

uint32 default_port_mode(if_index_type_t kind, uint32 layer) {
  constexpr if_index_type_t kFibreChannel[] = {IF_TYPE_FC, IF_TYPE_FCIP, IF_TYPE_SERVER, IF_TYPE_INBAND};
  if (layer != IF_LAYER_2) return 0;
  const bool is_fc = std::find(std::begin(kFibreChannel), std::end(kFibreChannel), kind) != std::end(kFibreChannel);
  return is_fc ? PM_PORT_MODE_AUTO : PM_PORT_MODE_ACCESS;
}

uint32 slowest_mbps(uint32 speeds) {
  const auto* const found =
      std::find_if(std::begin(kSpeeds), std::end(kSpeeds), [=](const known_speed& it) { return it.bit & speeds; });
  return found == std::end(kSpeeds) ? 0 : found->mbps;
}

uint32 fastest_mbps(uint32 speeds) {
  const auto found =
      std::find_if(std::rbegin(kSpeeds), std::rend(kSpeeds), [=](const known_speed& it) { return it.bit & speeds; });
  return found == std::rend(kSpeeds) ? 0 : found->mbps;
}

uint32 speed_bit(uint32 mbps) {
  const auto* const found =
      std::find_if(std::begin(kSpeeds), std::end(kSpeeds), [=](const known_speed& it) { return it.mbps == mbps; });
  return found == std::end(kSpeeds) ? 0 : found->bit;
}

std::span<const known_speed> known_speeds() { return kSpeeds; }

}  // namespace host
