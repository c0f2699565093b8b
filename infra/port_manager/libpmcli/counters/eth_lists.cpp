// The lists of an Ethernet port's counters, and of the layer-3 counters after them.

#include "counters/counter_list.h"
#include "platform/if_index.h"
#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

namespace {

using port_stats = statscl_portcl_stats_msg_t;
using flow_t = statscl_portcl_mac_pktflow_stats_t;
using errors_t = statscl_portcl_mac_error_stats_t;
using ctrl_t = statscl_portcl_mac_ctrl_stats_t;
using layer_t = statscl_portcl_lu_layer_stats_t;

// The records with the values of the rows.
template <auto Member>
uint64 flow(const port_stats& stats) {
  return stats.mac.pktflow.*Member;
}

template <auto Member>
uint64 error(const port_stats& stats) {
  return stats.mac.errors.*Member;
}

template <auto Member>
uint64 ctrl(const port_stats& stats) {
  return stats.mac.ctrl.*Member;
}

template <auto Member>
uint64 l2(const port_stats& stats) {
  return stats.lu.l2.*Member;
}

template <auto Member>
uint64 l3(const port_stats& stats) {
  return stats.lu.l3.*Member;
}

template <auto Member>
uint64 l3(const pfstat_key_cntrs_t& stats) {
  return stats.cntrs.l3_cntrs.*Member;
}

// "Output Errors:" appears twice, "SQETest" has no colon: both are intended.
constexpr counter_row<port_stats> kNonzero[] = {
    {"Rx Packets:", tag::nonzero_input_packets, flow<&flow_t::ingress_pkts>},
    {"Rx Unicast Packets:", tag::nonzero_input_unicast_packets, flow<&flow_t::unicast_pkts>},
    {"Rx Multicast Packets:", tag::nonzero_input_multicast_packets, flow<&flow_t::multicast_pkts>},
    {"Rx Broadcast Packets:", tag::nonzero_input_broadcast_packets, flow<&flow_t::broadcast_pkts>},
    {"Rx Jumbo Packets:", tag::nonzero_input_jumbo_packets, flow<&flow_t::jumbo_pkts>},
    {"Rx Bytes:", tag::nonzero_input_bytes, flow<&flow_t::bytes_pkts>},
    {"Rx Storm Suppression:", tag::nonzero_storm_suppressed_packets, flow<&flow_t::storm_supression>},
    {"Rx Packets from 0 to 64 bytes:", tag::nonzero_input_packets_0_to_64, flow<&flow_t::b64_rx>},
    {"Rx Packets from 65 to 127 bytes:", tag::nonzero_input_packets_65_to_127, flow<&flow_t::b65_127_rx>},
    {"Rx Packets from 128 to 255 bytes:", tag::nonzero_input_packets_128_to_255, flow<&flow_t::b128_255_rx>},
    {"Rx Packets from 256 to 511 bytes:", tag::nonzero_input_packets_256_to_511, flow<&flow_t::b256_511_rx>},
    {"Rx Packets from 512 to 1023 bytes:", tag::nonzero_input_packets_512_to_1023, flow<&flow_t::b512_1023_rx>},
    {"Rx Packets from 1024 to 1518 bytes:", tag::nonzero_input_packets_1024_to_1518, flow<&flow_t::b1024_1518_rx>},
    {"Rx Packets from 1519 to 1548 bytes:", tag::nonzero_input_packets_1519_to_1548, flow<&flow_t::b1519_1548_rx>},
    {"Rx Trunk Packets:", tag::nonzero_input_trunk_packets, flow<&flow_t::trunk_rx>},
    {"Tx Packets:", tag::nonzero_output_packets, flow<&flow_t::egress_pkts>},
    {"Tx Unicast Packets:", tag::nonzero_output_unicast_packets, flow<&flow_t::unicast_pkts_tx>},
    {"Tx Multicast Packets:", tag::nonzero_output_multicast_packets, flow<&flow_t::multicast_pkts_tx>},
    {"Tx Broadcast Packets:", tag::nonzero_output_broadcast_packets, flow<&flow_t::broadcast_pkts_tx>},
    {"Tx Jumbo Packets:", tag::nonzero_output_jumbo_packets, flow<&flow_t::jumbo_pkts_tx>},
    {"Tx Bytes:", tag::nonzero_output_bytes, flow<&flow_t::bytes_tx>},
    {"Tx Packets from 0 to 64 bytes:", tag::nonzero_output_packets_0_to_64, flow<&flow_t::b64_tx>},
    {"Tx Packets from 65 to 127 bytes:", tag::nonzero_output_packets_65_to_127, flow<&flow_t::b65_127_tx>},
    {"Tx Packets from 128 to 255 bytes:", tag::nonzero_output_packets_128_to_255, flow<&flow_t::b128_255_tx>},
    {"Tx Packets from 256 to 511 bytes:", tag::nonzero_output_packets_256_to_511, flow<&flow_t::b256_511_tx>},
    {"Tx Packets from 512 to 1023 bytes:", tag::nonzero_output_packets_512_to_1023, flow<&flow_t::b512_1023_tx>},
    {"Tx Packets from 1024 to 1518 bytes:", tag::nonzero_output_packets_1024_to_1518, flow<&flow_t::b1024_1518_tx>},
    {"Tx Packets from 1519 to 1548 bytes:", tag::nonzero_output_packets_1519_to_1548, flow<&flow_t::b1519_1548_tx>},
    {"Tx Trunk Packets:", tag::nonzero_output_trunk_packets, flow<&flow_t::trunk_tx>},
    {"No Buffer Errors:", tag::nonzero_no_buffer_errors, error<&errors_t::no_buffer>},
    {"Runt Errors:", tag::nonzero_runt_errors, error<&errors_t::runt>},
    {"Input CRC Errors:", tag::nonzero_input_crc_errors, error<&errors_t::crc>},
    {"ECC Errors:", tag::nonzero_ecc_errors, error<&errors_t::ecc>},
    {"Overrun Errors:", tag::nonzero_overrun_errors, error<&errors_t::overrun>},
    {"Underrun Errors:", tag::nonzero_underrun_errors, error<&errors_t::underrun>},
    {"Ignored Errors:", tag::nonzero_ignored_errors, error<&errors_t::ignored>},
    {"Bad Etype Drop Errors:", tag::nonzero_bad_ethertype_drops, error<&errors_t::bad_etype_drop>},
    {"Bad Proto Drop Errors:", tag::nonzero_bad_protocol_drops, error<&errors_t::bad_proto_drop>},
    {"If Down Drop Errors:", tag::nonzero_interface_down_drops, error<&errors_t::if_down_drop>},
    {"Collision Errors:", tag::nonzero_collision_errors, error<&errors_t::collision>},
    {"Late Collision Errors:", tag::nonzero_late_collision_errors, error<&errors_t::late_collision>},
    {"Lost Carrier Errors:", tag::nonzero_lost_carrier_errors, error<&errors_t::lost_carrier>},
    {"No Carrier Errors:", tag::nonzero_no_carrier_errors, error<&errors_t::no_carrier>},
    {"Babble Errors:", tag::nonzero_babble_errors, error<&errors_t::babble>},
    {"Watchdog Errors:", tag::nonzero_watchdog_errors, error<&errors_t::watchdog>},
    {"Dribble Errors:", tag::nonzero_dribble_errors, error<&errors_t::input_dribble>},
    {"Input Errors:", tag::nonzero_input_errors, error<&errors_t::input_errors>},
    {"Output Errors:", tag::nonzero_output_errors, error<&errors_t::output_errors>},
    {"Deferred Errors:", tag::nonzero_deferred_errors, error<&errors_t::deferred>},
    {"Jabber Errors:", tag::nonzero_jabber_errors, error<&errors_t::jabber>},
    {"Short Frame Errors:", tag::nonzero_short_frame_errors, error<&errors_t::shortframe>},
    {"Single Collision Errors:", tag::nonzero_single_collision_errors, error<&errors_t::single_collision>},
    {"Multi-Collision Errors:", tag::nonzero_multi_collision_errors, error<&errors_t::multi_collision>},
    {"Excess Collision Errors:", tag::nonzero_excess_collision_errors, error<&errors_t::excessive_collision>},
    {"Input Discard Errors:", tag::nonzero_input_discards, error<&errors_t::in_discard>},
    {"Bad Encapsulation Errors:", tag::nonzero_bad_encapsulation_errors, error<&errors_t::bad_encap>},
    {"Output Errors:", tag::nonzero_output_crc_errors, error<&errors_t::crc_tx>},
    {"Symbol Errors:", tag::nonzero_symbol_errors, error<&errors_t::symbol_err>},
    {"Output Dropped Errors:", tag::nonzero_output_drops, error<&errors_t::tx_dropped>},
    {"Output BPDU Lost:", tag::nonzero_output_bpdu_lost, error<&errors_t::bpdu_outlost>},
    {"Output COS0 Lost:", tag::nonzero_output_cos0_lost, error<&errors_t::cos0_outlost>},
    {"Output COS1 Lost:", tag::nonzero_output_cos1_lost, error<&errors_t::cos1_outlost>},
    {"Output COS2 Lost:", tag::nonzero_output_cos2_lost, error<&errors_t::cos2_outlost>},
    {"Output COS3 Lost:", tag::nonzero_output_cos3_lost, error<&errors_t::cos3_outlost>},
    {"Output COS4 Lost:", tag::nonzero_output_cos4_lost, error<&errors_t::cos4_outlost>},
    {"Output COS5 Lost:", tag::nonzero_output_cos5_lost, error<&errors_t::cos5_outlost>},
    {"Output COS6 Lost:", tag::nonzero_output_cos6_lost, error<&errors_t::cos6_outlost>},
    {"Output COS7 Lost:", tag::nonzero_output_cos7_lost, error<&errors_t::cos7_outlost>},
    {"Rx Pause:", tag::nonzero_input_pause_frames, ctrl<&ctrl_t::rx_pause>},
    {"Tx Pause:", tag::nonzero_output_pause_frames, ctrl<&ctrl_t::tx_pause>},
    {"Resets:", tag::nonzero_interface_resets, ctrl<&ctrl_t::reset>},
    {"SQETest", tag::nonzero_sqe_test_errors, ctrl<&ctrl_t::sqetest>},
    {"Layer 2 Unicast:", tag::nonzero_layer2_unicast_packets, l2<&layer_t::ucast>},
    {"Layer 2 Multicast:", tag::nonzero_layer2_multicast_packets, l2<&layer_t::mcast>},
    {"Layer 2 Broadcast:", tag::nonzero_layer2_broadcast_packets, l2<&layer_t::bcast>},
    {"Layer 3 Unicast:", tag::nonzero_layer3_unicast_packets, l3<&layer_t::ucast>},
    {"Layer 3 Multicast:", tag::nonzero_layer3_multicast_packets, l3<&layer_t::mcast>},
    {"Layer 3 Broadcast:", tag::nonzero_layer3_broadcast_packets, l3<&layer_t::bcast>},
};

// Some ids are also in the list above, which is intended.
constexpr counter_row<pfstat_key_cntrs_t> kNonzeroL3[] = {
    {"Layer 3 Routed Input Packets", tag::nonzero_layer3_input_routed_packets,
     l3<&pfstat_l3_cntrs_t::l3_routed_pkts_in>},
    {"Layer 3 Routed Input Bytes", tag::nonzero_layer3_input_routed_bytes, l3<&pfstat_l3_cntrs_t::l3_routed_bytes_in>},
    {"Layer 3 Routed Output Packets", tag::nonzero_layer3_output_routed_packets,
     l3<&pfstat_l3_cntrs_t::l3_routed_pkts_out>},
    {"Layer 3 Routed Output Bytes", tag::nonzero_layer3_output_routed_bytes,
     l3<&pfstat_l3_cntrs_t::l3_routed_bytes_out>},
    {"Layer 3 Unicast Input Packets", tag::nonzero_layer3_unicast_packets, l3<&pfstat_l3_cntrs_t::l3_ucast_pkts_in>},
    {"Layer 3 Unicast Input Bytes", tag::nonzero_layer3_input_unicast_bytes, l3<&pfstat_l3_cntrs_t::l3_ucast_bytes_in>},
    {"Layer 3 Multicast Input Packets", tag::nonzero_layer3_multicast_packets,
     l3<&pfstat_l3_cntrs_t::l3_mcast_pkts_in>},
    {"Layer 3 Multicast Input Bytes", tag::nonzero_layer3_input_multicast_bytes,
     l3<&pfstat_l3_cntrs_t::l3_mcast_bytes_in>},
    {"Layer 3 Unicast Output Packets", tag::nonzero_layer3_output_unicast_packets,
     l3<&pfstat_l3_cntrs_t::l3_ucast_pkts_out>},
    {"Layer 3 Unicast Output Bytes", tag::nonzero_layer3_output_unicast_bytes,
     l3<&pfstat_l3_cntrs_t::l3_ucast_bytes_out>},
    {"Layer 3 Multicast Output Packets", tag::nonzero_layer3_output_multicast_packets,
     l3<&pfstat_l3_cntrs_t::l3_mcast_pkts_out>},
    {"Layer 3 Multicast Output Bytes", tag::nonzero_layer3_output_multicast_bytes,
     l3<&pfstat_l3_cntrs_t::l3_mcast_bytes_out>},
    {"InLayer3AveragePackets", tag::nonzero_layer3_average_input_packets,
     l3<&pfstat_l3_cntrs_t::l3_average_input_packets>},
    {"InLayer3AverageOctets", tag::nonzero_layer3_average_input_bytes, l3<&pfstat_l3_cntrs_t::l3_average_input_bytes>},
    {"OutLayer3AveragePackets", tag::nonzero_layer3_average_output_packets,
     l3<&pfstat_l3_cntrs_t::l3_average_output_packets>},
    {"OutLayer3AverageOctets", tag::nonzero_layer3_average_output_bytes,
     l3<&pfstat_l3_cntrs_t::l3_average_output_bytes>},
};

// "txHCTotalPks" and the mixed capitals are intended.
constexpr counter_row<port_stats> kHighCapacity[] = {
    {"rxHCTotalPkts", tag::high_capacity_input_packets, flow<&flow_t::ingress_pkts>},
    {"txHCTotalPks", tag::high_capacity_output_packets, flow<&flow_t::egress_pkts>},
    {"rxHCUnicastPkts", tag::high_capacity_input_unicast_packets, flow<&flow_t::unicast_pkts>},
    {"txHCUnicastPkts", tag::high_capacity_output_unicast_packets, flow<&flow_t::unicast_pkts_tx>},
    {"rxHCMulticastPkts", tag::high_capacity_input_multicast_packets, flow<&flow_t::multicast_pkts>},
    {"txHCMulticastPkts", tag::high_capacity_output_multicast_packets, flow<&flow_t::multicast_pkts_tx>},
    {"rxHCBroadcastPkts", tag::high_capacity_input_broadcast_packets, flow<&flow_t::broadcast_pkts>},
    {"txHCBroadcastPkts", tag::high_capacity_output_broadcast_packets, flow<&flow_t::broadcast_pkts_tx>},
    {"rxHCOctets", tag::high_capacity_input_bytes, flow<&flow_t::bytes_pkts>},
    {"txHCOctets", tag::high_capacity_output_bytes, flow<&flow_t::bytes_tx>},
    {"rxTxHCPkts64Octets", tag::high_capacity_packets_0_to_64, sum<flow<&flow_t::b64_rx>, flow<&flow_t::b64_tx>>},
    {"rxTxHCpkts65to127Octets", tag::high_capacity_packets_65_to_127,
     sum<flow<&flow_t::b65_127_rx>, flow<&flow_t::b65_127_tx>>},
    {"rxTxHCpkts128to255Octets", tag::high_capacity_packets_128_to_255,
     sum<flow<&flow_t::b128_255_rx>, flow<&flow_t::b128_255_tx>>},
    {"rxTxHCpkts256to511Octets", tag::high_capacity_packets_256_to_511,
     sum<flow<&flow_t::b256_511_rx>, flow<&flow_t::b256_511_tx>>},
    {"rxTxHCpkts512to1023Octets", tag::high_capacity_packets_512_to_1023,
     sum<flow<&flow_t::b512_1023_rx>, flow<&flow_t::b512_1023_tx>>},
    {"rxTxHCpkts1024to1518Octets", tag::high_capacity_packets_1024_to_1518,
     sum<flow<&flow_t::b1024_1518_rx>, flow<&flow_t::b1024_1518_tx>>},
    {"rxTxHCpkts1519to1548Octets", tag::high_capacity_packets_1519_to_1548,
     sum<flow<&flow_t::b1519_1548_rx>, flow<&flow_t::b1519_1548_tx>>},
    {"rxHCTrunkFrames", tag::high_capacity_input_trunk_packets, flow<&flow_t::trunk_rx>},
    {"txHCTrunkFrames", tag::high_capacity_output_trunk_packets, flow<&flow_t::trunk_tx>},
    {"rxHCDropEvents", tag::high_capacity_input_drop_events,
     sum<error<&errors_t::bad_etype_drop>, error<&errors_t::bad_proto_drop>, error<&errors_t::if_down_drop>>},
};

// "txErrors" shows crc_tx, "InUnknownProtos" bad_proto_drop: both are intended.
constexpr counter_row<port_stats> kAll[] = {
    {"InPackets", tag::all_input_packets, flow<&flow_t::ingress_pkts>},
    {"InOctets", tag::all_input_bytes, flow<&flow_t::bytes_pkts>},
    {"InUcastPkts", tag::all_input_unicast_packets, flow<&flow_t::unicast_pkts>},
    {"InMcastPkts", tag::all_input_multicast_packets, flow<&flow_t::multicast_pkts>},
    {"InBcastPkts", tag::all_input_broadcast_packets, flow<&flow_t::broadcast_pkts>},
    {"InJumboPkts", tag::all_input_jumbo_packets, flow<&flow_t::jumbo_pkts>},
    {"StormSuppressPkts", tag::all_storm_suppressed_packets, flow<&flow_t::storm_supression>},
    {"OutPackets", tag::all_output_packets, flow<&flow_t::egress_pkts>},
    {"OutOctets", tag::all_output_bytes, flow<&flow_t::bytes_tx>},
    {"OutUcastPkts", tag::all_output_unicast_packets, flow<&flow_t::unicast_pkts_tx>},
    {"OutMcastPkts", tag::all_output_multicast_packets, flow<&flow_t::multicast_pkts_tx>},
    {"OutBcastPkts", tag::all_output_broadcast_packets, flow<&flow_t::broadcast_pkts_tx>},
    {"OutJumboPkts", tag::all_output_jumbo_packets, flow<&flow_t::jumbo_pkts_tx>},
    {"rxHCPkts64Octets", tag::all_input_packets_0_to_64, flow<&flow_t::b64_rx>},
    {"rxHCPkts65to127Octets", tag::all_input_packets_65_to_127, flow<&flow_t::b65_127_rx>},
    {"rxHCPkts128to255Octets", tag::all_input_packets_128_to_255, flow<&flow_t::b128_255_rx>},
    {"rxHCPkts256to511Octets", tag::all_input_packets_256_to_511, flow<&flow_t::b256_511_rx>},
    {"rxHCpkts512to1023Octets", tag::all_input_packets_512_to_1023, flow<&flow_t::b512_1023_rx>},
    {"rxHCpkts1024to1518Octets", tag::all_input_packets_1024_to_1518, flow<&flow_t::b1024_1518_rx>},
    {"rxHCpkts1519to1548Octets", tag::all_input_packets_1519_to_1548, flow<&flow_t::b1519_1548_rx>},
    {"txHCPkts64Octets", tag::all_output_packets_0_to_64, flow<&flow_t::b64_tx>},
    {"txHCPkts65to127Octets", tag::all_output_packets_65_to_127, flow<&flow_t::b65_127_tx>},
    {"txHCPkts128to255Octets", tag::all_output_packets_128_to_255, flow<&flow_t::b128_255_tx>},
    {"txHCPkts256to511Octets", tag::all_output_packets_256_to_511, flow<&flow_t::b256_511_tx>},
    {"txHCpkts512to1023Octets", tag::all_output_packets_512_to_1023, flow<&flow_t::b512_1023_tx>},
    {"txHCpkts1024to1518Octets", tag::all_output_packets_1024_to_1518, flow<&flow_t::b1024_1518_tx>},
    {"txHCpkts1519to1548Octets", tag::all_output_packets_1519_to_1548, flow<&flow_t::b1519_1548_tx>},
    {"ShortFrames", tag::all_short_frame_errors, error<&errors_t::shortframe>},
    {"Collisions", tag::all_collision_errors, error<&errors_t::collision>},
    {"SingleCol", tag::all_single_collision_errors, error<&errors_t::single_collision>},
    {"MultiCol", tag::all_multi_collision_errors, error<&errors_t::multi_collision>},
    {"LateCol", tag::all_late_collision_errors, error<&errors_t::late_collision>},
    {"ExcessiveCol", tag::all_excess_collision_errors, error<&errors_t::excessive_collision>},
    {"LostCarrier", tag::all_lost_carrier_errors, error<&errors_t::lost_carrier>},
    {"NoCarrier", tag::all_no_carrier_errors, error<&errors_t::no_carrier>},
    {"Runts", tag::all_runt_errors, error<&errors_t::runt>},
    {"Giants", tag::all_giant_errors, error<&errors_t::giants_rx>},
    {"InErrors", tag::all_input_errors, error<&errors_t::input_errors>},
    {"OutErrors", tag::all_output_errors, error<&errors_t::output_errors>},
    {"InputDiscards", tag::all_input_discards, error<&errors_t::in_discard>},
    {"BadEtypeDrops", tag::all_bad_ethertype_drops, error<&errors_t::bad_etype_drop>},
    {"IfDownDrops", tag::all_interface_down_drops, error<&errors_t::if_down_drop>},
    {"InUnknownProtos", tag::all_bad_protocol_drops, error<&errors_t::bad_proto_drop>},
    {"txErrors", tag::all_output_crc_errors, error<&errors_t::crc_tx>},
    {"rxCRC", tag::all_input_crc_errors, error<&errors_t::crc>},
    {"Symbol", tag::all_symbol_errors, error<&errors_t::symbol_err>},
    {"txDropped", tag::all_output_drops, error<&errors_t::tx_dropped>},
    {"TrunkFramesTx", tag::all_output_trunk_packets, flow<&flow_t::trunk_tx>},
    {"TrunkFramesRx", tag::all_input_trunk_packets, flow<&flow_t::trunk_rx>},
    {"WrongEncap", tag::all_bad_encapsulation_errors, error<&errors_t::bad_encap>},
    {"Babbles", tag::all_babble_errors, error<&errors_t::babble>},
    {"Watchdogs", tag::all_watchdog_errors, error<&errors_t::watchdog>},
    {"ECC", tag::all_ecc_errors, error<&errors_t::ecc>},
    {"Overruns", tag::all_overrun_errors, error<&errors_t::overrun>},
    {"Underruns", tag::all_underrun_errors, error<&errors_t::underrun>},
    {"Dribbles", tag::all_dribble_errors, error<&errors_t::input_dribble>},
    {"Deferred", tag::all_deferred_errors, error<&errors_t::deferred>},
    {"Jabbers", tag::all_jabber_errors, error<&errors_t::jabber>},
    {"NoBuffer", tag::all_no_buffer_errors, error<&errors_t::no_buffer>},
    {"Ignored", tag::all_ignored_errors, error<&errors_t::ignored>},
    {"bpduOutLost", tag::all_output_bpdu_lost, error<&errors_t::bpdu_outlost>},
    {"cos0OutLost", tag::all_output_cos0_lost, error<&errors_t::cos0_outlost>},
    {"cos1OutLost", tag::all_output_cos1_lost, error<&errors_t::cos1_outlost>},
    {"cos2OutLost", tag::all_output_cos2_lost, error<&errors_t::cos2_outlost>},
    {"cos3OutLost", tag::all_output_cos3_lost, error<&errors_t::cos3_outlost>},
    {"cos4OutLost", tag::all_output_cos4_lost, error<&errors_t::cos4_outlost>},
    {"cos5OutLost", tag::all_output_cos5_lost, error<&errors_t::cos5_outlost>},
    {"cos6OutLost", tag::all_output_cos6_lost, error<&errors_t::cos6_outlost>},
    {"cos7OutLost", tag::all_output_cos7_lost, error<&errors_t::cos7_outlost>},
    {"RxPause", tag::all_input_pause_frames, ctrl<&ctrl_t::rx_pause>},
    {"TxPause", tag::all_output_pause_frames, ctrl<&ctrl_t::tx_pause>},
    {"Resets", tag::all_interface_resets, ctrl<&ctrl_t::reset>},
    {"SQETest", tag::all_sqe_test_errors, ctrl<&ctrl_t::sqetest>},
};

constexpr counter_row<pfstat_key_cntrs_t> kAllL3[] = {
    {"InLayer3Routed", tag::all_layer3_input_routed_packets, l3<&pfstat_l3_cntrs_t::l3_routed_pkts_in>},
    {"InLayer3RoutedOctets", tag::all_layer3_input_routed_bytes, l3<&pfstat_l3_cntrs_t::l3_routed_bytes_in>},
    {"OutLayer3Routed", tag::all_layer3_output_routed_packets, l3<&pfstat_l3_cntrs_t::l3_routed_pkts_out>},
    {"OutLayer3RoutedOctets", tag::all_layer3_output_routed_bytes, l3<&pfstat_l3_cntrs_t::l3_routed_bytes_out>},
    {"OutLayer3Unicast", tag::all_layer3_output_unicast_packets, l3<&pfstat_l3_cntrs_t::l3_ucast_pkts_out>},
    {"OutLayer3UnicastOctets", tag::all_layer3_output_unicast_bytes, l3<&pfstat_l3_cntrs_t::l3_ucast_bytes_out>},
    {"OutLayer3Multicast", tag::all_layer3_output_multicast_packets, l3<&pfstat_l3_cntrs_t::l3_mcast_pkts_out>},
    {"OutLayer3MulticastOctets", tag::all_layer3_output_multicast_bytes, l3<&pfstat_l3_cntrs_t::l3_mcast_bytes_out>},
    {"InLayer3Unicast", tag::all_layer3_input_unicast_packets, l3<&pfstat_l3_cntrs_t::l3_ucast_pkts_in>},
    {"InLayer3UnicastOctets", tag::all_layer3_input_unicast_bytes, l3<&pfstat_l3_cntrs_t::l3_ucast_bytes_in>},
    {"InLayer3Multicast", tag::all_layer3_input_multicast_packets, l3<&pfstat_l3_cntrs_t::l3_mcast_pkts_in>},
    {"InLayer3MulticastOctets", tag::all_layer3_input_multicast_bytes, l3<&pfstat_l3_cntrs_t::l3_mcast_bytes_in>},
    {"InLayer3AverageOctets", tag::all_layer3_average_input_bytes, l3<&pfstat_l3_cntrs_t::l3_average_input_bytes>},
    {"InLayer3AveragePackets", tag::all_layer3_average_input_packets, l3<&pfstat_l3_cntrs_t::l3_average_input_packets>},
    {"OutLayer3AverageOctets", tag::all_layer3_average_output_bytes, l3<&pfstat_l3_cntrs_t::l3_average_output_bytes>},
    {"OutLayer3AveragePackets", tag::all_layer3_average_output_packets,
     l3<&pfstat_l3_cntrs_t::l3_average_output_packets>},
};

// The layers of the counters, by the key of forwarding statistics.
enum key_flags : uint32 { kLayer2Only = 1, kLayer3 = 2, kBothLayers = 3 };

// Whether there are layer-3 counters that are not 0.
bool shows_layer3(pfstat_key_cntrs_t* pfstats) {
  if (pfstats == nullptr) return false;
  const uint32 flags = pfstats->key.key_flags;
  return (flags == kLayer3 || flags == kBothLayers) && pm_cli_is_nonzero_pfstats(pfstats);
}

// Layer-3 counters follow a list for every key except the one of layer 2 only; this is not the test above.
bool follows_layer3(const pfstat_key_cntrs_t* pfstats) {
  return pfstats != nullptr && pfstats->key.key_flags != kLayer2Only;
}

}  // namespace

boolean pm_cli_is_nonzero_pfstats(pfstat_key_cntrs_t* pfstats) {
  if (pfstats == nullptr) return 0;
  return any_nonzero<pfstat_key_cntrs_t>(kNonzeroL3, *pfstats) ? 1 : 0;
}

void pm_cli_show_L3_eth_counters_detailed(cmd_rx_handle_t* rx_handle, pfstat_key_cntrs_t* pfstats) {
  if (rx_handle != nullptr && pfstats != nullptr) print_nonzero<pfstat_key_cntrs_t>(rx_handle, kNonzeroL3, *pfstats);
}

void pm_cli_show_common_eth_counters_detailed(cmd_rx_handle_t* rx_handle, pfstat_key_cntrs_t* pfstats,
                                              statscl_portcl_stats_msg_t* stats) {
  if (rx_handle == nullptr || stats == nullptr) return;
  const bool is_sub_interface = if_index_is_sub_intf(stats->ifidx) != 0;
  const bool shows_port = !is_sub_interface && any_nonzero<port_stats>(kNonzero, *stats);
  if (!shows_port && !shows_layer3(pfstats)) return;

  print_if_index(rx_handle, "%s\n", tag::nonzero_interface, stats->ifidx);
  if (!is_sub_interface) print_nonzero<port_stats>(rx_handle, kNonzero, *stats);
  if (follows_layer3(pfstats)) pm_cli_show_L3_eth_counters_detailed(rx_handle, pfstats);
  cmd_prt(rx_handle, "\n");
}

void pm_cli_show_eth_L3_counters_detailed_all(cmd_rx_handle_t* rx_handle, int linecount, pfstat_key_cntrs_t* pfstats) {
  if (rx_handle != nullptr && pfstats != nullptr)
    print_numbered<pfstat_key_cntrs_t>(rx_handle, linecount, kAllL3, *pfstats);
}

void pm_cli_show_eth_counters_detailed_all(cmd_rx_handle_t* rx_handle, pfstat_key_cntrs_t* pfstats,
                                           statscl_portcl_stats_msg_t* stats) {
  if (rx_handle == nullptr || stats == nullptr) return;
  if (pfstats != nullptr && if_index_is_sub_intf(stats->ifidx)) {
    print_if_index(rx_handle, "%s\n  All Sub-Interface Port counters:\n", tag::all_interface, stats->ifidx);
    pm_cli_show_eth_L3_counters_detailed_all(rx_handle, 0, pfstats);
    cmd_prt(rx_handle, "\n");
    return;
  }
  print_if_index(rx_handle, "%s\n  64 bit counters:\n", tag::all_interface, stats->ifidx);
  print_numbered<port_stats>(rx_handle, 0, kHighCapacity, *stats);
  cmd_prt(rx_handle, "\n  All Port Counters:\n");
  const int next = print_numbered<port_stats>(rx_handle, 0, kAll, *stats);
  if (follows_layer3(pfstats)) pm_cli_show_eth_L3_counters_detailed_all(rx_handle, next, pfstats);
  cmd_prt(rx_handle, "\n");
}
