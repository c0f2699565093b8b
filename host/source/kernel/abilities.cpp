#include "source/kernel/abilities.h"

#include <linux/ethtool.h>

#include <algorithm>
#include <cstdint>

#include "platform/card_config.h"
#include "platform/port_manager.h"

namespace host {
namespace {

// ---- Link modes -----------------------------------------------------------------------------------------------------

// A run of bits for modes of one speed and duplex. Speeds that no port of a switch has (20 and 56 Gbit/s)
// are not among known_speeds().
struct mode_run {
  uint32 first;
  uint32 last;
  uint32 mbps;
  uint8 duplex;  // CRDCFG_DUPLEX_*
};
constexpr uint8 kHalf = CRDCFG_DUPLEX_HALF, kFull = CRDCFG_DUPLEX_FULL;
constexpr mode_run kModeRuns[] = {
    {ETHTOOL_LINK_MODE_10baseT_Half_BIT, ETHTOOL_LINK_MODE_10baseT_Half_BIT, 10, kHalf},
    {ETHTOOL_LINK_MODE_10baseT_Full_BIT, ETHTOOL_LINK_MODE_10baseT_Full_BIT, 10, kFull},
    {ETHTOOL_LINK_MODE_100baseT_Half_BIT, ETHTOOL_LINK_MODE_100baseT_Half_BIT, 100, kHalf},
    {ETHTOOL_LINK_MODE_100baseT_Full_BIT, ETHTOOL_LINK_MODE_100baseT_Full_BIT, 100, kFull},
    {ETHTOOL_LINK_MODE_1000baseT_Half_BIT, ETHTOOL_LINK_MODE_1000baseT_Half_BIT, 1000, kHalf},
    {ETHTOOL_LINK_MODE_1000baseT_Full_BIT, ETHTOOL_LINK_MODE_1000baseT_Full_BIT, 1000, kFull},
    {ETHTOOL_LINK_MODE_10000baseT_Full_BIT, ETHTOOL_LINK_MODE_10000baseT_Full_BIT, 10'000, kFull},
    {ETHTOOL_LINK_MODE_2500baseX_Full_BIT, ETHTOOL_LINK_MODE_2500baseX_Full_BIT, 2500, kFull},
    {ETHTOOL_LINK_MODE_1000baseKX_Full_BIT, ETHTOOL_LINK_MODE_1000baseKX_Full_BIT, 1000, kFull},
    {ETHTOOL_LINK_MODE_10000baseKX4_Full_BIT, ETHTOOL_LINK_MODE_10000baseR_FEC_BIT, 10'000, kFull},
    {ETHTOOL_LINK_MODE_20000baseMLD2_Full_BIT, ETHTOOL_LINK_MODE_20000baseKR2_Full_BIT, 20'000, kFull},
    {ETHTOOL_LINK_MODE_40000baseKR4_Full_BIT, ETHTOOL_LINK_MODE_40000baseLR4_Full_BIT, 40'000, kFull},
    {ETHTOOL_LINK_MODE_56000baseKR4_Full_BIT, ETHTOOL_LINK_MODE_56000baseLR4_Full_BIT, 56'000, kFull},
    {ETHTOOL_LINK_MODE_25000baseCR_Full_BIT, ETHTOOL_LINK_MODE_25000baseSR_Full_BIT, 25'000, kFull},
    {ETHTOOL_LINK_MODE_50000baseCR2_Full_BIT, ETHTOOL_LINK_MODE_50000baseKR2_Full_BIT, 50'000, kFull},
    {ETHTOOL_LINK_MODE_100000baseKR4_Full_BIT, ETHTOOL_LINK_MODE_100000baseLR4_ER4_Full_BIT, 100'000, kFull},
    {ETHTOOL_LINK_MODE_50000baseSR2_Full_BIT, ETHTOOL_LINK_MODE_50000baseSR2_Full_BIT, 50'000, kFull},
    {ETHTOOL_LINK_MODE_1000baseX_Full_BIT, ETHTOOL_LINK_MODE_1000baseX_Full_BIT, 1000, kFull},
    {ETHTOOL_LINK_MODE_10000baseCR_Full_BIT, ETHTOOL_LINK_MODE_10000baseER_Full_BIT, 10'000, kFull},
    {ETHTOOL_LINK_MODE_2500baseT_Full_BIT, ETHTOOL_LINK_MODE_2500baseT_Full_BIT, 2500, kFull},
    {ETHTOOL_LINK_MODE_5000baseT_Full_BIT, ETHTOOL_LINK_MODE_5000baseT_Full_BIT, 5000, kFull},
    {ETHTOOL_LINK_MODE_50000baseKR_Full_BIT, ETHTOOL_LINK_MODE_50000baseDR_Full_BIT, 50'000, kFull},
    {ETHTOOL_LINK_MODE_100000baseKR2_Full_BIT, ETHTOOL_LINK_MODE_100000baseDR2_Full_BIT, 100'000, kFull},
    {ETHTOOL_LINK_MODE_200000baseKR4_Full_BIT, ETHTOOL_LINK_MODE_200000baseCR4_Full_BIT, 200'000, kFull},
    {ETHTOOL_LINK_MODE_100baseT1_Full_BIT, ETHTOOL_LINK_MODE_100baseT1_Full_BIT, 100, kFull},
    {ETHTOOL_LINK_MODE_1000baseT1_Full_BIT, ETHTOOL_LINK_MODE_1000baseT1_Full_BIT, 1000, kFull},
    {ETHTOOL_LINK_MODE_400000baseKR8_Full_BIT, ETHTOOL_LINK_MODE_400000baseCR8_Full_BIT, 400'000, kFull},
    {ETHTOOL_LINK_MODE_100000baseKR_Full_BIT, ETHTOOL_LINK_MODE_100000baseDR_Full_BIT, 100'000, kFull},
    {ETHTOOL_LINK_MODE_200000baseKR2_Full_BIT, ETHTOOL_LINK_MODE_200000baseCR2_Full_BIT, 200'000, kFull},
    {ETHTOOL_LINK_MODE_400000baseKR4_Full_BIT, ETHTOOL_LINK_MODE_400000baseCR4_Full_BIT, 400'000, kFull},
    {ETHTOOL_LINK_MODE_100baseFX_Half_BIT, ETHTOOL_LINK_MODE_100baseFX_Half_BIT, 100, kHalf},
    {ETHTOOL_LINK_MODE_100baseFX_Full_BIT, ETHTOOL_LINK_MODE_100baseFX_Full_BIT, 100, kFull},
    {ETHTOOL_LINK_MODE_10baseT1L_Full_BIT, ETHTOOL_LINK_MODE_10baseT1L_Full_BIT, 10, kFull},
};

uint8 flow_capability(bool can, bool can_negotiate) {
  if (!can) return 0;
  return static_cast<uint8>(CRDCFG_FLOW_OFF | CRDCFG_FLOW_ON | (can_negotiate ? CRDCFG_FLOW_DESIRED : 0));
}

void set_capabilities(const link_modes& supported, port_capabilities& port) {
  if (supported.none()) return;
  port.speeds = 0;
  port.duplexes = uint8{0};
  const bool negotiates = supported[ETHTOOL_LINK_MODE_Autoneg_BIT];
  if (negotiates) {
    *port.speeds |= CRDCFG_SPEED_AUTO;
    *port.duplexes |= CRDCFG_DUPLEX_AUTO;
  }
  for (const mode_run& run : kModeRuns)
    for (uint32 bit = run.first; bit <= run.last; ++bit) {
      if (!supported[bit]) continue;
      *port.speeds |= speed_bit(run.mbps);
      *port.duplexes |= run.duplex;
    }
  const bool pauses = supported[ETHTOOL_LINK_MODE_Pause_BIT];
  port.rx_flow_control = flow_capability(pauses, negotiates);
  port.tx_flow_control = flow_capability(pauses || supported[ETHTOOL_LINK_MODE_Asym_Pause_BIT], negotiates);
  port.transceiver = supported[ETHTOOL_LINK_MODE_FIBRE_BIT];
}

// Without negotiation the setting is the current speed, unknown without a link. A device without modes has a current
// speed, but no setting: without a link, when displays show the setting, it has none.
void set_speed(const kernel_link& link, interface& port) {
  if (link.supported.none() && port.oper_state != PM_PORT_STATE_UP) {
    port.oper_speed_mbps.reset();
    port.oper_duplex.reset();
  }
  if (!link.negotiates || *link.negotiates || link.supported.none()) return;
  port.settings.admin_speed_mbps = link.speed_mbps.value_or(0);
  if (link.is_full_duplex)
    port.settings.admin_duplex = *link.is_full_duplex ? uint8{PM_PORT_DUPLEX_FULL} : uint8{PM_PORT_DUPLEX_HALF};
}

// ---- Flow control ---------------------------------------------------------------------------------------------------

struct pause_directions {
  bool receives = false;
  bool sends = false;
};

// `how`: PM_FLOW_CTRL_ON or PM_FLOW_CTRL_DESIRED.
uint16 flow_control(const pause_directions& directions, int how) {
  const int sides = (directions.receives ? PM_FLOW_CTRL_RECEIVE : 0) | (directions.sends ? PM_FLOW_CTRL_SEND : 0);
  return static_cast<uint16>(sides & how);
}

// The result of the negotiation from what both sides advertised: symmetric when both can, else one direction.
pause_directions negotiated(const link_modes& ours, const link_modes& theirs) {
  const bool we_pause = ours[ETHTOOL_LINK_MODE_Pause_BIT], they_pause = theirs[ETHTOOL_LINK_MODE_Pause_BIT];
  if (we_pause && they_pause) return {.receives = true, .sends = true};
  if (!ours[ETHTOOL_LINK_MODE_Asym_Pause_BIT] || !theirs[ETHTOOL_LINK_MODE_Asym_Pause_BIT]) return {};
  return {.receives = we_pause, .sends = they_pause};
}

// A port that negotiates works as both sides agreed; with a partner that is not reported it does not pause.
void set_flow_control(const kernel_link& link, interface& port) {
  if (!link.pause) return;
  const pause_directions set = {link.pause->receives, link.pause->sends};
  port.settings.admin_flow_control = flow_control(set, link.pause->negotiates ? PM_FLOW_CTRL_DESIRED : PM_FLOW_CTRL_ON);
  port.oper_flow_control = uint16{0};
  if (port.oper_state != PM_PORT_STATE_UP) return;
  port.oper_flow_control =
      flow_control(link.pause->negotiates ? negotiated(link.advertised, link.partner) : set, PM_FLOW_CTRL_ON);
}

// Limited to the 16 bits of a port's MTU. A device without an upper limit has 0.
void set_mtu_limits(const kernel_link& link, port_capabilities& port) {
  port.mtu = {link.lowest_mtu_bytes, UINT16_MAX};
  if (link.highest_mtu_bytes != 0) port.mtu.highest = std::min<uint32>(link.highest_mtu_bytes, UINT16_MAX);
}

}  // namespace

void set_abilities(const kernel_link& link, interface& port) {
  set_mtu_limits(link, port.capabilities);
  set_capabilities(link.supported, port.capabilities);
  set_speed(link, port);
  set_flow_control(link, port);
}

}  // namespace host
