// Figures derived from statistics: reliability, loads, elapsed times, five-minute rates.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <ctime>

#include "pmcli/interface.h"

namespace {

constexpr uint32 kMinute = 60;
constexpr uint32 kHour = 60 * kMinute;
constexpr uint32 kDay = 24 * kHour;
constexpr uint32 kWeek = 7 * kDay;

constexpr uint16 kFullScale = 255;
constexpr uint32 kRateSteps = 5;
constexpr uint32 kRateSeconds = kRateSteps * ETH_RATE_SAMPLE_SECONDS;

// On the 0..255 scale, in the width of the counters, where products wrap.
template <typename Count>
uint16 reliability(Count packets, Count errors) {
  if (packets == 0) return kFullScale;
  return static_cast<uint16>(kFullScale - errors * kFullScale / packets);
}

// On the 1..255 scale. The quotient loses its high bits first and is clamped then.
uint16 load(uint64 bytes_per_second, uint32 bandwidth_kbps) {
  if (bandwidth_kbps == 0) return 1;
  constexpr uint64 kScaledBits = 8 * kFullScale;
  const auto quotient = static_cast<uint16>(bytes_per_second * kScaledBits / (uint64{bandwidth_kbps} * 1000));
  return std::clamp<uint16>(quotient, 1, kFullScale);
}

struct week_units {
  const char* weeks;
  const char* days;
};

// The texts differ on purpose.
constexpr week_units kSinceCleared{"w", "d"};
constexpr week_units kSinceFlapped{"week(s) ", "day(s)"};

// The time that passed since a moment, in seconds since 1970; 0 is never.
template <std::size_t Size>
void format_elapsed(char (&text)[Size], uint32 moment, const week_units& units) {
  const uint32 elapsed = static_cast<uint32>(std::time(nullptr)) - moment;
  if (moment == 0)
    std::snprintf(text, Size, "never");
  else if (elapsed > kWeek)
    std::snprintf(text, Size, "%u%s%u%s", elapsed / kWeek, units.weeks, elapsed % kWeek / kDay, units.days);
  else if (elapsed <= kDay)
    std::snprintf(text, Size, "%2.2u:%2.2u:%2.2u", elapsed / kHour, elapsed % kHour / kMinute, elapsed % kMinute);
  else
    std::snprintf(text, Size, "%dd%2.2uh", static_cast<int>(elapsed / kDay), elapsed % kDay / kHour);
}

void set_idle_loads(pm_cli_common_show_intf_data_t* port_data) {
  port_data->tx_load = 1;
  port_data->rx_load = 1;
}

}  // namespace

void pm_cli_calc_eth_reliability_loads(statscl_portcl_stats_msg_t* stats, pm_port_info_t* port_info,
                                       pm_cli_common_show_intf_data_t* port_data) {
  if (stats == nullptr || port_info == nullptr || port_data == nullptr) return;
  const statscl_portcl_mac_pktflow_stats_t& flow = stats->mac.pktflow;
  const statscl_portcl_mac_error_stats_t& errors = stats->mac.errors;
  port_data->reliability = reliability<uint64>(flow.ingress_pkts + flow.egress_pkts,  //
                                               errors.input_errors + errors.output_errors);
  port_data->rx_load = load(flow.byte_rate_rx, port_info->admin_port_bandwidth);
  port_data->tx_load = load(flow.byte_rate_tx, port_info->admin_port_bandwidth);
  format_elapsed(port_data->last_cleared, stats->last_clear, kSinceCleared);
  format_elapsed(port_data->last_flapped, port_info->link_status_last_change_sec, kSinceFlapped);
}

void pm_cli_calc_mgmt_reliability_loads(pm_proc_net_dev_stats_t* mgmt_stats,
                                        pm_cli_common_show_intf_data_t* port_data) {
  if (mgmt_stats == nullptr || port_data == nullptr) return;
  port_data->reliability = reliability<uint32>(mgmt_stats->rx_packets + mgmt_stats->tx_packets,
                                               mgmt_stats->rx_errors + mgmt_stats->tx_errors);
  set_idle_loads(port_data);
}

void pm_cli_calc_ip_reliability_loads(ip_if_stats* ip_stats, pm_cli_common_show_intf_data_t* port_data) {
  if (ip_stats == nullptr || port_data == nullptr) return;
  port_data->reliability =
      reliability<uint64>(ip_stats->in_pkts + ip_stats->out_pkts, ip_stats->in_errors + ip_stats->out_errors);
  set_idle_loads(port_data);
}

void pm_cli_eth_intf_get_rate_stuff(show_eth_intf_resp_t* stats, uint64* in_rate, uint64* out_rate,
                                    uint32* in_frame_rate, uint32* out_frame_rate, uint64* in_rate_B,
                                    uint64* out_rate_B) {
  if (stats == nullptr) return;
  // The five steps between the two samples add up to one difference, each in the width of its counter.
  const eth_intf_stats_rate_t& ring = stats->rate;
  const uint32 newest = ring.index - 1;
  const eth_intf_rate_sample_t& now = ring.stats[newest % ETH_RATE_SAMPLES];
  const eth_intf_rate_sample_t& then = ring.stats[(newest - kRateSteps) % ETH_RATE_SAMPLES];

  *in_rate_B = (now.in_bytes - then.in_bytes) / kRateSeconds;
  *out_rate_B = (now.out_bytes - then.out_bytes) / kRateSeconds;
  *in_rate = *in_rate_B * 8;
  *out_rate = *out_rate_B * 8;
  *in_frame_rate = (now.in_frames - then.in_frames) / kRateSeconds;
  *out_frame_rate = (now.out_frames - then.out_frames) / kRateSeconds;
}
