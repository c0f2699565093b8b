#include "service/statistics_records.h"

#include <algorithm>

#include "platform/interface_manager.h"
#include "platform/port_manager.h"

namespace host {
namespace {

uint32 low_32_bits(uint64 counter) { return static_cast<uint32>(counter); }

void fill_packet_flow(const interface& port, statscl_portcl_mac_pktflow_stats_t& flow) {
  const traffic_counters& in = port.stats.in;
  const traffic_counters& out = port.stats.out;
  flow.ingress_pkts = in.packets();
  flow.unicast_pkts = in.unicast_packets;
  flow.multicast_pkts = in.multicast_packets;
  flow.broadcast_pkts = in.broadcast_packets;
  flow.bytes_pkts = in.bytes;
  flow.pkt_rate_rx = port.stats.in_packets_per_second;
  flow.byte_rate_rx = port.stats.in_bytes_per_second;
  flow.egress_pkts = out.packets();
  flow.unicast_pkts_tx = out.unicast_packets;
  flow.multicast_pkts_tx = out.multicast_packets;
  flow.broadcast_pkts_tx = out.broadcast_packets;
  flow.bytes_tx = out.bytes;
  flow.pkt_rate_tx = port.stats.out_packets_per_second;
  flow.byte_rate_tx = port.stats.out_bytes_per_second;
  if (port.oper_mode != PM_PORT_MODE_TRUNK) return;
  flow.trunk_rx = in.packets();
  flow.trunk_tx = out.packets();
}

void fill_errors(const statistics& stats, statscl_portcl_mac_error_stats_t& errors) {
  errors.runt = stats.errors.runts;
  errors.crc = stats.errors.crc;
  errors.overrun = stats.errors.overruns;
  errors.underrun = stats.errors.underruns;
  errors.collision = stats.errors.collisions;
  errors.late_collision = stats.errors.late_collisions;
  errors.lost_carrier = stats.errors.lost_carrier;
  errors.no_carrier = stats.errors.no_carrier;
  errors.input_errors = stats.in.errors;
  errors.output_errors = stats.out.errors;
  errors.deferred = stats.errors.deferred;
  errors.jabber = stats.errors.jabber;
  errors.in_discard = stats.in.discards;
  errors.giants_rx = stats.errors.giants;
  errors.tx_dropped = stats.out.discards;
}

void fill_rate_ring(const statistics& stats, eth_intf_stats_rate_t& rate) {
  static_assert(std::tuple_size_v<decltype(stats.rate_ring)> == ETH_RATE_SAMPLES);
  std::transform(stats.rate_ring.begin(), stats.rate_ring.end(), rate.stats, [](const rate_sample& sample) {
    return eth_intf_rate_sample_t{sample.in_bytes, sample.out_bytes, sample.in_frames, sample.out_frames};
  });
  rate.index = stats.rate_index;
}

void fill_totals(const statistics& stats, eth_intf_if_data_t& data) {
  data.ifi_ibytes = stats.in.bytes;
  data.ifi_obytes = stats.out.bytes;
  data.ifi_ipackets = low_32_bits(stats.in.packets());
  data.ifi_opackets = low_32_bits(stats.out.packets());
  data.ifi_imcasts = low_32_bits(stats.in.multicast_packets);
  data.ifi_omcasts = low_32_bits(stats.out.multicast_packets);
  data.ifi_ibcasts = low_32_bits(stats.in.broadcast_packets);
  data.ifi_obcasts = low_32_bits(stats.out.broadcast_packets);
  data.ifi_ierrors = low_32_bits(stats.in.errors);
  data.ifi_oerrors = low_32_bits(stats.out.errors);
  data.ifi_collisions = low_32_bits(stats.errors.collisions);
  data.ifi_iqdrops = low_32_bits(stats.in.discards);
}

// What the records of the IP stack and of the management port have in common.
template <typename Record>
void fill_traffic(const statistics& stats, Record& record) {
  record.interval_start_time = stats.last_clear_sec;
  record.in_pkts = stats.in.packets();
  record.in_bytes = stats.in.bytes;
  record.in_pkts_ucast = stats.in.unicast_packets;
  record.in_pkts_mcast = stats.in.multicast_packets;
  record.in_pkts_bcast = stats.in.broadcast_packets;
  record.out_pkts = stats.out.packets();
  record.out_bytes = stats.out.bytes;
  record.out_pkts_ucast = stats.out.unicast_packets;
  record.out_pkts_mcast = stats.out.multicast_packets;
  record.out_pkts_bcast = stats.out.broadcast_packets;
}

}  // namespace

statscl_portcl_stats_msg_t port_statistics_record(const interface& port) {
  statscl_portcl_stats_msg_t record{};
  record.ifidx = port.if_index;
  record.last_clear = port.stats.last_clear_sec;
  fill_packet_flow(port, record.mac.pktflow);
  fill_errors(port.stats, record.mac.errors);
  record.mac.ctrl.rx_pause = port.stats.errors.pause_received;
  record.mac.ctrl.tx_pause = port.stats.errors.pause_sent;
  record.mac.ctrl.reset = port.resets;
  statscl_portcl_lu_layer_stats_t& looked_up = port.layer == IF_LAYER_2 ? record.lu.l2 : record.lu.l3;
  looked_up.ucast = port.stats.in.unicast_packets;
  looked_up.bcast = port.stats.in.broadcast_packets;
  looked_up.mcast = port.stats.in.multicast_packets;
  return record;
}

show_eth_intf_resp_t eth_statistics_record(const interface& port) {
  show_eth_intf_resp_t record{};
  record.isvalid = 1;
  record.if_mtu = port.mtu_bytes;
  fill_rate_ring(port.stats, record.rate);
  fill_totals(port.stats, record.if_data);
  std::copy(port.burned_in_mac.begin(), port.burned_in_mac.end(), record.macaddr);
  return record;
}

ip_if_stats ip_statistics_record(const interface& port) {
  const statistics& stats = port.stats;
  ip_if_stats record{};
  fill_traffic(stats, record);
  record.in_errors = stats.in.errors;
  record.in_frames = stats.errors.crc;
  record.in_overrun = stats.errors.overruns;
  record.out_underruns = stats.errors.underruns;
  record.out_errors = stats.out.errors;
  record.out_collisions = stats.errors.collisions;
  record.out_carrier_errors = stats.errors.lost_carrier + stats.errors.no_carrier;
  record.in_pkts_discard = stats.in.discards;
  record.out_pkts_discard = stats.out.discards;
  return record;
}

pm_if_stat interface_counters_record(const interface& port) {
  const statistics& stats = port.stats;
  pm_if_stat record{};
  fill_traffic(stats, record);
  record.in_bps = stats.in_bytes_per_second;
  record.out_bps = stats.out_bytes_per_second;
  record.in_pps = low_32_bits(stats.in_packets_per_second);
  record.out_pps = low_32_bits(stats.out_packets_per_second);
  return record;
}

}  // namespace host
