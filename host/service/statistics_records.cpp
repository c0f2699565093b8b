#include "service/statistics_records.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "platform/interface_manager.h"
#include "platform/port_manager.h"

namespace host {
namespace {

using flow_stats = statscl_portcl_mac_pktflow_stats_t;
using error_stats = statscl_portcl_mac_error_stats_t;

// Members of the record in the order of the model's size classes.
constexpr be64 flow_stats::*kReceivedBySize[] = {
    &flow_stats::b64_rx,       &flow_stats::b65_127_rx,    &flow_stats::b128_255_rx,   &flow_stats::b256_511_rx,
    &flow_stats::b512_1023_rx, &flow_stats::b1024_1518_rx, &flow_stats::b1519_1548_rx, &flow_stats::jumbo_pkts};
constexpr be64 flow_stats::*kSentBySize[] = {
    &flow_stats::b64_tx,       &flow_stats::b65_127_tx,    &flow_stats::b128_255_tx,   &flow_stats::b256_511_tx,
    &flow_stats::b512_1023_tx, &flow_stats::b1024_1518_tx, &flow_stats::b1519_1548_tx, &flow_stats::jumbo_pkts_tx};
static_assert(std::size(kReceivedBySize) == std::tuple_size_v<size_classes>);
static_assert(std::size(kSentBySize) == std::tuple_size_v<size_classes>);

void fill_packet_flow(const interface& port, flow_stats& flow) {
  const traffic_counters& in = port.stats.in;
  const traffic_counters& out = port.stats.out;
  flow.ingress_pkts = in.packets.value_or(0);
  flow.unicast_pkts = in.unicast_packets.value_or(0);
  flow.multicast_pkts = in.multicast_packets.value_or(0);
  flow.broadcast_pkts = in.broadcast_packets.value_or(0);
  flow.bytes_pkts = in.bytes.value_or(0);
  flow.storm_supression = port.stats.errors.storm_suppressed.value_or(0);
  flow.pkt_rate_rx = port.stats.in_packets_per_second.value_or(0);
  flow.byte_rate_rx = port.stats.in_bytes_per_second.value_or(0);
  flow.egress_pkts = out.packets.value_or(0);
  flow.unicast_pkts_tx = out.unicast_packets.value_or(0);
  flow.multicast_pkts_tx = out.multicast_packets.value_or(0);
  flow.broadcast_pkts_tx = out.broadcast_packets.value_or(0);
  flow.bytes_tx = out.bytes.value_or(0);
  flow.pkt_rate_tx = port.stats.out_packets_per_second.value_or(0);
  flow.byte_rate_tx = port.stats.out_bytes_per_second.value_or(0);
  for (std::size_t i = 0; i < std::size(kReceivedBySize); ++i) {
    flow.*kReceivedBySize[i] = in.packets_by_size[i].value_or(0);
    flow.*kSentBySize[i] = out.packets_by_size[i].value_or(0);
  }
  flow.trunk_rx = in.trunk_packets.value_or(0);
  flow.trunk_tx = out.trunk_packets.value_or(0);
}

struct error_member {
  be64 error_stats::*member;
  host::counter error_counters::*counter;
};

constexpr error_member kErrorMembers[] = {
    {&error_stats::no_buffer, &error_counters::no_buffer},
    {&error_stats::runt, &error_counters::runts},
    {&error_stats::crc, &error_counters::crc},
    {&error_stats::ecc, &error_counters::ecc},
    {&error_stats::overrun, &error_counters::overruns},
    {&error_stats::underrun, &error_counters::underruns},
    {&error_stats::ignored, &error_counters::ignored},
    {&error_stats::bad_etype_drop, &error_counters::bad_ethertype},
    {&error_stats::bad_proto_drop, &error_counters::bad_protocol},
    {&error_stats::if_down_drop, &error_counters::dropped_while_down},
    {&error_stats::collision, &error_counters::collisions},
    {&error_stats::late_collision, &error_counters::late_collisions},
    {&error_stats::lost_carrier, &error_counters::lost_carrier},
    {&error_stats::no_carrier, &error_counters::no_carrier},
    {&error_stats::babble, &error_counters::babble},
    {&error_stats::watchdog, &error_counters::watchdog},
    {&error_stats::input_dribble, &error_counters::dribble},
    {&error_stats::deferred, &error_counters::deferred},
    {&error_stats::jabber, &error_counters::jabber},
    {&error_stats::shortframe, &error_counters::short_frames},
    {&error_stats::single_collision, &error_counters::single_collisions},
    {&error_stats::multi_collision, &error_counters::multiple_collisions},
    {&error_stats::excessive_collision, &error_counters::excessive_collisions},
    {&error_stats::bad_encap, &error_counters::bad_encapsulation},
    {&error_stats::crc_tx, &error_counters::crc_sent},
    {&error_stats::bpdu_outlost, &error_counters::bpdu_lost},
    {&error_stats::cos0_outlost, &error_counters::cos0_lost},
    {&error_stats::cos1_outlost, &error_counters::cos1_lost},
    {&error_stats::cos2_outlost, &error_counters::cos2_lost},
    {&error_stats::cos3_outlost, &error_counters::cos3_lost},
    {&error_stats::cos4_outlost, &error_counters::cos4_lost},
    {&error_stats::cos5_outlost, &error_counters::cos5_lost},
    {&error_stats::cos6_outlost, &error_counters::cos6_lost},
    {&error_stats::cos7_outlost, &error_counters::cos7_lost},
    {&error_stats::giants_rx, &error_counters::giants},
    {&error_stats::symbol_err, &error_counters::symbol},
    {&error_stats::deffered, &error_counters::deferred_long},
};

void fill_errors(const statistics& stats, error_stats& errors) {
  for (const auto& [member, counter] : kErrorMembers) errors.*member = (stats.errors.*counter).value_or(0);
  errors.input_errors = stats.in.errors.value_or(0);
  errors.output_errors = stats.out.errors.value_or(0);
  errors.in_discard = stats.in.discards.value_or(0);
  errors.tx_dropped = stats.out.discards.value_or(0);
}

void fill_rate_ring(const statistics& stats, eth_intf_stats_rate_t& rate) {
  static_assert(std::tuple_size_v<decltype(rate_samples::samples)> == ETH_RATE_SAMPLES);
  if (!stats.rate_ring) return;
  const auto& samples = stats.rate_ring->samples;
  std::transform(samples.begin(), samples.end(), rate.stats, [](const rate_sample& sample) {
    return eth_intf_rate_sample_t{sample.in_bytes, sample.out_bytes, sample.in_frames, sample.out_frames};
  });
  rate.index = stats.rate_ring->next;
}

void fill_totals(const statistics& stats, eth_intf_if_data_t& data) {
  data.ifi_ibytes = stats.in.bytes.value_or(0);
  data.ifi_obytes = stats.out.bytes.value_or(0);
  data.ifi_ipackets = in_32_bits(stats.in.packets);
  data.ifi_opackets = in_32_bits(stats.out.packets);
  data.ifi_imcasts = in_32_bits(stats.in.multicast_packets);
  data.ifi_omcasts = in_32_bits(stats.out.multicast_packets);
  data.ifi_ibcasts = in_32_bits(stats.in.broadcast_packets);
  data.ifi_obcasts = in_32_bits(stats.out.broadcast_packets);
  data.ifi_ierrors = in_32_bits(stats.in.errors);
  data.ifi_oerrors = in_32_bits(stats.out.errors);
  data.ifi_collisions = in_32_bits(stats.errors.collisions);
  data.ifi_iqdrops = in_32_bits(stats.in.discards);
  data.ifi_idowndrops = in_32_bits(stats.errors.dropped_while_down);
  data.ifi_badetype = in_32_bits(stats.errors.bad_ethertype);
  data.ifi_noproto = in_32_bits(stats.errors.bad_protocol);
}

// Common members of the records of the IP stack and of the management port.
template <typename Record>
void fill_traffic(const statistics& stats, Record& record) {
  record.interval_start_time = stats.last_clear_sec;
  record.interval = stats.counted_sec;
  record.in_pkts = stats.in.packets.value_or(0);
  record.in_bytes = stats.in.bytes.value_or(0);
  record.in_pkts_ucast = stats.in.unicast_packets.value_or(0);
  record.in_pkts_mcast = stats.in.multicast_packets.value_or(0);
  record.in_pkts_bcast = stats.in.broadcast_packets.value_or(0);
  record.out_pkts = stats.out.packets.value_or(0);
  record.out_bytes = stats.out.bytes.value_or(0);
  record.out_pkts_ucast = stats.out.unicast_packets.value_or(0);
  record.out_pkts_mcast = stats.out.multicast_packets.value_or(0);
  record.out_pkts_bcast = stats.out.broadcast_packets.value_or(0);
}

// The last minutes of the ring, the newest first.
void fill_history(const statistics& stats, pm_if_stat& record) {
  if (!stats.rate_ring) return;
  const auto& [samples, next] = *stats.rate_ring;
  const auto slots = static_cast<uint32>(samples.size());
  for (uint32 age = 0; age + 1 < slots; ++age) {
    const rate_sample& end = samples[(next + slots - 1 - age) % slots];
    const rate_sample& begin = samples[(next + slots - 2 - age) % slots];
    record.interval_in_bytes_prev[age] = end.in_bytes - begin.in_bytes;
    record.interval_out_bytes_prev[age] = end.out_bytes - begin.out_bytes;
    record.interval_in_pkts_prev[age] = end.in_frames - begin.in_frames;
    record.interval_out_pkts_prev[age] = end.out_frames - begin.out_frames;
    record.interval_secs_prev[age] = ETH_RATE_SAMPLE_SECONDS;
  }
  record.interval_in_bytes = record.interval_in_bytes_prev[0];
  record.interval_out_bytes = record.interval_out_bytes_prev[0];
  record.interval_in_pkts = record.interval_in_pkts_prev[0];
  record.interval_out_pkts = record.interval_out_pkts_prev[0];
}

}  // namespace

statscl_portcl_stats_msg_t port_statistics_record(const interface& port) {
  statscl_portcl_stats_msg_t record{};
  record.ifidx = port.if_index;
  record.last_clear = port.stats.last_clear_sec;
  fill_packet_flow(port, record.mac.pktflow);
  fill_errors(port.stats, record.mac.errors);
  record.mac.ctrl.rx_pause = port.stats.errors.pause_received.value_or(0);
  record.mac.ctrl.tx_pause = port.stats.errors.pause_sent.value_or(0);
  record.mac.ctrl.reset = port.resets.value_or(0);
  record.mac.ctrl.sqetest = port.stats.errors.sqe_test.value_or(0);
  statscl_portcl_lu_layer_stats_t& looked_up = port.settings.layer == IF_LAYER_2 ? record.lu.l2 : record.lu.l3;
  looked_up.ucast = port.stats.in.unicast_packets.value_or(0);
  looked_up.bcast = port.stats.in.broadcast_packets.value_or(0);
  looked_up.mcast = port.stats.in.multicast_packets.value_or(0);
  return record;
}

show_eth_intf_resp_t eth_statistics_record(const interface& port) {
  show_eth_intf_resp_t record{};
  record.isvalid = 1;
  record.if_mtu = port.settings.mtu_bytes.value_or(0);
  fill_rate_ring(port.stats, record.rate);
  fill_totals(port.stats, record.if_data);
  std::copy(port.burned_in_mac.begin(), port.burned_in_mac.end(), record.macaddr);
  return record;
}

ip_if_stats ip_statistics_record(const interface& port) {
  const statistics& stats = port.stats;
  ip_if_stats record{};
  fill_traffic(stats, record);
  record.in_compressed = stats.errors.compressed.value_or(0);
  record.in_errors = stats.in.errors.value_or(0);
  record.in_frames = stats.errors.crc.value_or(0);
  record.in_overrun = stats.errors.overruns.value_or(0);
  record.in_fifo = stats.errors.receive_fifo.value_or(0);
  record.out_underruns = stats.errors.underruns.value_or(0);
  record.out_errors = stats.out.errors.value_or(0);
  record.out_collisions = stats.errors.collisions.value_or(0);
  record.out_fifo = stats.errors.send_fifo.value_or(0);
  record.out_carrier_errors = stats.errors.lost_carrier.value_or(0) + stats.errors.no_carrier.value_or(0);
  record.in_pkts_discard = stats.in.discards.value_or(0);
  record.out_pkts_discard = stats.out.discards.value_or(0);
  record.unknown_proto_pkts = stats.errors.bad_protocol.value_or(0);
  return record;
}

pm_if_stat interface_counters_record(const interface& port) {
  const statistics& stats = port.stats;
  pm_if_stat record{};
  fill_traffic(stats, record);
  record.in_bps = stats.in_bytes_per_second.value_or(0);
  record.out_bps = stats.out_bytes_per_second.value_or(0);
  record.in_pps = in_32_bits(stats.in_packets_per_second);
  record.out_pps = in_32_bits(stats.out_packets_per_second);
  fill_history(stats, record);
  return record;
}

}  // namespace host
