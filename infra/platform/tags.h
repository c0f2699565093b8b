/*
 * The vocabulary of the output channel: a name for each tuple id that the displays bind, with the type of its values.
 * Names are for C++17 and later; the ids themselves are part of the contract with the programs that read them.
 *
 * A name is that of the value without its unit. The ids of the detailed view have no prefix; those of another display
 * have its name as a prefix, as in status_duplex. The schema of the host has the key and unit of each value.
 */
#ifndef PLATFORM_TAGS_H
#define PLATFORM_TAGS_H

#include "platform/cmd_channel.h"

#if defined(__cplusplus) && __cplusplus >= 201703L

#include <type_traits>

#if __cplusplus >= 202002L
#define PLATFORM_CONSTEVAL consteval
#else
#define PLATFORM_CONSTEVAL constexpr
#endif

namespace tag {

/* Not constexpr: an id that calls it does not compile. */
void tuple_id_is_of_another_type();

/* A tuple id whose values are of one type, a CMD_TYPE_... . */
template <uint32 Type>
struct tuple_id {
  explicit PLATFORM_CONSTEVAL tuple_id(uint32 tuple) : id(tuple) {
    if (tuple >> 24 != Type) tuple_id_is_of_another_type();
  }

  /* Bits 15..0. To no wider integer, which would be an id without type and component. */
  template <typename Integer, typename = std::enable_if_t<std::is_same_v<Integer, uint16>>>
  constexpr operator Integer() const {
    return static_cast<uint16>(id);
  }

  uint32 id;
};

/* The detailed view, and what other views share with it. */
/* clang-format takes this name for a keyword. */
// clang-format off
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> interface{0x0C2A01D8};
// clang-format on
inline constexpr tuple_id<CMD_TYPE_ENUM> state{0x022A01D9};
inline constexpr tuple_id<CMD_TYPE_ENUM> state_reason{0x022A01DB};
inline constexpr tuple_id<CMD_TYPE_STRING> description{0x302A01DC};
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> bound_interface{0x0C2A0239};
inline constexpr tuple_id<CMD_TYPE_UINT32> member_of{0x142A0271};
inline constexpr tuple_id<CMD_TYPE_STRING> multi_chassis_status{0x302A0272};
inline constexpr tuple_id<CMD_TYPE_STRING> hardware{0x302A0273};
inline constexpr tuple_id<CMD_TYPE_MAC> address{0x0F2A0274};
inline constexpr tuple_id<CMD_TYPE_MAC> burned_in_address{0x0F2A0275};
inline constexpr tuple_id<CMD_TYPE_IPV4> ip_address{0x1E2A0276};
inline constexpr tuple_id<CMD_TYPE_UINT32> prefix_length{0x142A0277};
inline constexpr tuple_id<CMD_TYPE_UINT32> mtu{0x142A0278};
inline constexpr tuple_id<CMD_TYPE_UINT32> bandwidth{0x142A0279};
inline constexpr tuple_id<CMD_TYPE_UINT32> delay{0x142A027B};
inline constexpr tuple_id<CMD_TYPE_STRING> reliability{0x302A027C};
inline constexpr tuple_id<CMD_TYPE_STRING> tx_load{0x302A027D};
inline constexpr tuple_id<CMD_TYPE_STRING> rx_load{0x302A027E};
inline constexpr tuple_id<CMD_TYPE_ENUM> duplex{0x022A0281};
inline constexpr tuple_id<CMD_TYPE_ENUM> speed{0x022A0282};
inline constexpr tuple_id<CMD_TYPE_ENUM> port_mode{0x022A0283};
inline constexpr tuple_id<CMD_TYPE_ENUM> rate_mode{0x022A0284};
inline constexpr tuple_id<CMD_TYPE_STRING> media_type{0x302A0287};
inline constexpr tuple_id<CMD_TYPE_ENUM> input_flow_control{0x022A0288};
inline constexpr tuple_id<CMD_TYPE_ENUM> output_flow_control{0x022A0289};
inline constexpr tuple_id<CMD_TYPE_ENUM> auto_mdix{0x022A028A};
inline constexpr tuple_id<CMD_TYPE_ENUM> switchport_monitor{0x022A028B};
inline constexpr tuple_id<CMD_TYPE_STRING> last_counters_cleared{0x302A0292};
inline constexpr tuple_id<CMD_TYPE_STRING> last_link_flapped{0x302A0293};
inline constexpr tuple_id<CMD_TYPE_UINT32> interface_resets{0x142A029C};

/* Traffic of the management port in its detailed view. */
inline constexpr tuple_id<CMD_TYPE_UINT64> management_input_packets{0x152A0250};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_input_bytes{0x152A0251};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_input_unicast_packets{0x152A0252};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_input_multicast_packets{0x152A0253};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_input_broadcast_packets{0x152A0254};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_input_rate_pps{0x152A0257};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_input_rate_bps{0x152A0258};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_output_packets{0x152A0259};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_output_bytes{0x152A025A};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_output_unicast_packets{0x152A025B};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_output_multicast_packets{0x152A025C};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_output_broadcast_packets{0x152A025D};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_output_rate_pps{0x152A0260};
inline constexpr tuple_id<CMD_TYPE_UINT64> management_output_rate_bps{0x152A0261};

/* Counters of a loopback in its detailed view. */
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_input_packets{0x152A023A};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_input_bytes{0x152A023B};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_input_multicast_packets{0x152A023C};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_input_compressed{0x152A023D};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_input_errors{0x152A023E};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_input_frame_errors{0x152A023F};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_input_overruns{0x152A0240};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_input_fifo_errors{0x152A0241};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_output_packets{0x152A0242};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_output_bytes{0x152A0243};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_output_underruns{0x152A0244};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_output_errors{0x152A0245};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_output_collisions{0x152A0246};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_output_fifo_errors{0x152A0247};
inline constexpr tuple_id<CMD_TYPE_UINT64> loopback_output_carrier_errors{0x152A0248};

/* The kernel's counters of a device: the management port, the in-band interface. */
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_input_packets{0x142A01E4};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_input_bytes{0x142A01E5};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_input_multicast_packets{0x142A01E6};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_input_compressed{0x142A01E7};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_input_errors{0x142A01E8};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_input_frame_errors{0x142A01E9};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_input_overruns{0x142A01EA};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_input_fifo_errors{0x142A01EB};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_output_packets{0x142A01EC};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_output_bytes{0x142A01ED};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_output_underruns{0x142A01EE};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_output_errors{0x142A01EF};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_output_collisions{0x142A01F0};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_output_fifo_errors{0x142A01F1};
inline constexpr tuple_id<CMD_TYPE_UINT32> kernel_output_carrier_errors{0x142A01F2};

/* The management port in the switchport-style view. */
inline constexpr tuple_id<CMD_TYPE_STRING> management_hardware{0x302A01DD};
inline constexpr tuple_id<CMD_TYPE_MAC> management_address{0x0F2A01DE};
inline constexpr tuple_id<CMD_TYPE_UINT32> management_mtu{0x142A01E1};
inline constexpr tuple_id<CMD_TYPE_ENUM> management_speed{0x022A01E2};
inline constexpr tuple_id<CMD_TYPE_ENUM> management_duplex{0x022A01E3};

/* Brief tables. */
inline constexpr tuple_id<CMD_TYPE_ENUM> brief_state_reason{0x022A01DA};
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> brief_interface{0x0C2A01F4};
inline constexpr tuple_id<CMD_TYPE_ENUM> brief_state{0x022A01F8};
inline constexpr tuple_id<CMD_TYPE_ENUM> brief_speed{0x022A01FA};
inline constexpr tuple_id<CMD_TYPE_STRING> brief_description{0x302A0339};
inline constexpr tuple_id<CMD_TYPE_IPV4> brief_ip_address{0x1E2A033C};
inline constexpr tuple_id<CMD_TYPE_UINT32> brief_mtu{0x142A033D};

/* The table of status. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> status_interface{0x0C2A0612};
inline constexpr tuple_id<CMD_TYPE_STRING> status_description{0x302A0613};
inline constexpr tuple_id<CMD_TYPE_ENUM> status_state{0x022A0614};
inline constexpr tuple_id<CMD_TYPE_STRING> status_vlan{0x302A0615};
inline constexpr tuple_id<CMD_TYPE_ENUM> status_duplex{0x022A0616};
inline constexpr tuple_id<CMD_TYPE_ENUM> status_speed{0x022A0617};
inline constexpr tuple_id<CMD_TYPE_STRING> status_type{0x302A0618};

/* The table of ports that are disabled by an error. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> error_status_interface{0x0C2A0619};
inline constexpr tuple_id<CMD_TYPE_STRING> error_status_description{0x302A061A};
inline constexpr tuple_id<CMD_TYPE_ENUM> error_status_state{0x022A061B};
inline constexpr tuple_id<CMD_TYPE_ENUM> error_status_state_reason{0x022A061D};

/* The table of descriptions. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> description_interface{0x0C2A0001};
inline constexpr tuple_id<CMD_TYPE_STRING> description_text{0x302A0006};

/* The table of MAC addresses. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> mac_interface{0x0C2A007B};
inline constexpr tuple_id<CMD_TYPE_MAC> mac_address{0x0F2A007C};
inline constexpr tuple_id<CMD_TYPE_MAC> mac_burned_in_address{0x0F2A007D};

/* The table of interface indexes. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> ifindex_interface{0x0C2A05E9};
inline constexpr tuple_id<CMD_TYPE_HEX32> ifindex_hex{0x222A05EA};
inline constexpr tuple_id<CMD_TYPE_UINT32> ifindex{0x142A05EB};

/* The table of debounce times. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> debounce_interface{0x0C2A05E6};
inline constexpr tuple_id<CMD_TYPE_STRING> debounce{0x302A05E7};
inline constexpr tuple_id<CMD_TYPE_UINT32> debounce_msec{0x142A05E8};

/* Capabilities. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> capability_interface{0x0C2A01FF};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_model{0x302A0200};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_media_type{0x302A0201};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_speeds{0x302A0202};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_duplex{0x302A0203};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_trunk_encapsulation{0x302A0204};
inline constexpr tuple_id<CMD_TYPE_ENUM> capability_channel{0x022A0205};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_broadcast_suppression{0x302A0206};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_flow_control{0x302A0207};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_rate_mode{0x302A0208};
inline constexpr tuple_id<CMD_TYPE_STRING> capability_qos_scheduling{0x302A020A};
inline constexpr tuple_id<CMD_TYPE_ENUM> capability_cos_rewrite{0x022A020B};
inline constexpr tuple_id<CMD_TYPE_ENUM> capability_tos_rewrite{0x022A020C};
inline constexpr tuple_id<CMD_TYPE_ENUM> capability_span{0x022A020E};
inline constexpr tuple_id<CMD_TYPE_ENUM> capability_udld{0x022A020F};
inline constexpr tuple_id<CMD_TYPE_ENUM> capability_mdix{0x022A0210};
inline constexpr tuple_id<CMD_TYPE_ENUM> capability_link_debounce{0x022A0211};
inline constexpr tuple_id<CMD_TYPE_ENUM> capability_link_debounce_time{0x022A0212};

/* The table of flow control. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> flow_control_interface{0x0C2A0602};
inline constexpr tuple_id<CMD_TYPE_ENUM> flow_control_admin_output{0x022A0603};
inline constexpr tuple_id<CMD_TYPE_ENUM> flow_control_oper_output{0x022A0604};
inline constexpr tuple_id<CMD_TYPE_ENUM> flow_control_admin_input{0x022A0605};
inline constexpr tuple_id<CMD_TYPE_ENUM> flow_control_oper_input{0x022A0606};
inline constexpr tuple_id<CMD_TYPE_UINT64> flow_control_input_pause_frames{0x152A0607};
inline constexpr tuple_id<CMD_TYPE_UINT64> flow_control_output_pause_frames{0x152A0608};

/* The tables of traffic. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> counters_interface{0x0C2A0696};
inline constexpr tuple_id<CMD_TYPE_UINT64> counters_input_bytes{0x152A0697};
inline constexpr tuple_id<CMD_TYPE_UINT64> counters_input_unicast_packets{0x152A0698};
inline constexpr tuple_id<CMD_TYPE_UINT64> counters_input_multicast_packets{0x152A0699};
inline constexpr tuple_id<CMD_TYPE_UINT64> counters_input_broadcast_packets{0x152A069A};
inline constexpr tuple_id<CMD_TYPE_UINT64> counters_output_bytes{0x152A069B};
inline constexpr tuple_id<CMD_TYPE_UINT64> counters_output_unicast_packets{0x152A069C};
inline constexpr tuple_id<CMD_TYPE_UINT64> counters_output_multicast_packets{0x152A069D};
inline constexpr tuple_id<CMD_TYPE_UINT64> counters_output_broadcast_packets{0x152A069E};

/* The table of rates. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> rates_interface{0x0C2A0217};
inline constexpr tuple_id<CMD_TYPE_UINT64> rates_input_mbytes_per_sec{0x152A0218};
inline constexpr tuple_id<CMD_TYPE_UINT64> rates_input_pps{0x152A0219};
inline constexpr tuple_id<CMD_TYPE_UINT64> rates_output_mbytes_per_sec{0x152A021A};
inline constexpr tuple_id<CMD_TYPE_UINT64> rates_output_pps{0x152A021B};

/* The tables of errors. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> error_counters_interface{0x0C2A05C2};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_alignment_errors{0x152A05C3};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_frame_check_errors{0x152A05C4};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_output_errors{0x152A05C5};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_input_errors{0x152A05C6};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_undersize_errors{0x152A05C7};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_output_discards{0x152A05C8};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_single_collisions{0x152A05C9};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_multiple_collisions{0x152A05CA};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_late_collisions{0x152A05CB};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_excessive_collisions{0x152A05CC};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_carrier_errors{0x152A05CD};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_runts{0x152A05CE};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_giants{0x152A05CF};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_sqe_test_errors{0x152A05D0};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_deferred{0x152A05D1};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_input_internal_mac_errors{0x152A05D2};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_output_internal_mac_errors{0x152A05D3};
inline constexpr tuple_id<CMD_TYPE_UINT64> error_counters_symbol_errors{0x152A05D4};

/* The table of trunk frames. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> trunk_counters_interface{0x0C2A05E2};
inline constexpr tuple_id<CMD_TYPE_UINT64> trunk_counters_output_packets{0x152A05E3};
inline constexpr tuple_id<CMD_TYPE_UINT64> trunk_counters_input_packets{0x152A05E4};
inline constexpr tuple_id<CMD_TYPE_UINT64> trunk_counters_wrong_encapsulation{0x152A05E5};

/* The table of storm control. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> storm_control_interface{0x0C2A05D6};
inline constexpr tuple_id<CMD_TYPE_STRING> storm_control_broadcast_level{0x302A05D7};
inline constexpr tuple_id<CMD_TYPE_STRING> storm_control_multicast_level{0x302A05D8};
inline constexpr tuple_id<CMD_TYPE_STRING> storm_control_unicast_level{0x302A05D9};
inline constexpr tuple_id<CMD_TYPE_UINT64> storm_control_suppressed_packets{0x152A05DA};

/* The list of counters that are not 0. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> nonzero_interface{0x0C2A0085};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_packets{0x152A00D0};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_bytes{0x152A00D1};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_no_buffer_errors{0x152A00D2};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_broadcast_packets{0x152A00D3};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_multicast_packets{0x152A00D4};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_unicast_packets{0x152A00D5};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_runt_errors{0x152A00D9};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_storm_suppressed_packets{0x152A00DB};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_errors{0x152A00DD};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_crc_errors{0x152A00DE};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_ecc_errors{0x152A00DF};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_overrun_errors{0x152A00E1};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_ignored_errors{0x152A00E2};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_watchdog_errors{0x152A00E3};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_broadcast_packets{0x152A00E4};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_multicast_packets{0x152A00E5};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_unicast_packets{0x152A00E6};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_pause_frames{0x152A00E7};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_dribble_errors{0x152A00E8};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_interface_down_drops{0x152A00E9};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_bad_ethertype_drops{0x152A00EA};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_bad_protocol_drops{0x152A00EB};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_packets{0x152A00EC};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_bytes{0x152A00ED};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_underrun_errors{0x152A00EE};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_errors{0x152A00F1};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_collision_errors{0x152A00F2};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_interface_resets{0x152A00F3};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_babble_errors{0x152A00F4};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_late_collision_errors{0x152A00F5};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_deferred_errors{0x152A00F6};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_lost_carrier_errors{0x152A00F7};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_no_carrier_errors{0x152A00F8};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_pause_frames{0x152A00F9};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_single_collision_errors{0x152A00FE};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_multi_collision_errors{0x152A00FF};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_excess_collision_errors{0x152A0100};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_jabber_errors{0x152A0101};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_discards{0x152A0102};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_bad_encapsulation_errors{0x152A0103};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_crc_errors{0x152A0104};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_jumbo_packets{0x152A0181};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_jumbo_packets{0x152A0192};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_short_frame_errors{0x152A01AE};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_symbol_errors{0x152A01B2};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_drops{0x152A01B3};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_sqe_test_errors{0x152A01B4};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_packets_0_to_64{0x152A01B5};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_packets_65_to_127{0x152A01B6};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_packets_128_to_255{0x152A01B7};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_packets_256_to_511{0x152A01B8};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_packets_512_to_1023{0x152A01B9};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_packets_1024_to_1518{0x152A01BA};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_packets_1519_to_1548{0x152A01BB};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_input_trunk_packets{0x152A01BC};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_packets_0_to_64{0x152A01BD};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_packets_65_to_127{0x152A01BE};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_packets_128_to_255{0x152A01BF};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_packets_256_to_511{0x152A01C0};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_packets_512_to_1023{0x152A01C1};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_packets_1024_to_1518{0x152A01C2};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_packets_1519_to_1548{0x152A01C3};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_trunk_packets{0x152A01C4};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_bpdu_lost{0x152A01C5};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_cos0_lost{0x152A01C6};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_cos1_lost{0x152A01C7};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_cos2_lost{0x152A01C8};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_cos3_lost{0x152A01C9};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_cos4_lost{0x152A01CA};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_cos5_lost{0x152A01CB};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_cos6_lost{0x152A01CC};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_output_cos7_lost{0x152A01CD};

/* The same by layer. */
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer2_unicast_packets{0x152A00BA};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer2_broadcast_packets{0x152A00BC};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer2_multicast_packets{0x152A00BE};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_unicast_packets{0x152A00C0};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_input_unicast_bytes{0x152A00C1};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_multicast_packets{0x152A00C2};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_input_multicast_bytes{0x152A00C3};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_broadcast_packets{0x152A00C4};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_output_unicast_packets{0x152A00C6};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_output_unicast_bytes{0x152A00C7};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_output_multicast_packets{0x152A00C8};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_output_multicast_bytes{0x152A00C9};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_input_routed_packets{0x152A00CC};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_input_routed_bytes{0x152A00CD};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_output_routed_packets{0x152A00CE};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_output_routed_bytes{0x152A00CF};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_average_input_bytes{0x152A0177};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_average_input_packets{0x152A0178};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_average_output_bytes{0x152A0179};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_layer3_average_output_packets{0x152A017A};

/* The same of the management port, as the port manager counts. */
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_input_packets{0x152A0086};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_input_bytes{0x152A0087};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_input_unicast_packets{0x152A0088};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_input_multicast_packets{0x152A0089};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_input_broadcast_packets{0x152A008A};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_input_bytes_per_sec{0x152A008B};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_input_packets_per_sec{0x152A008C};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_interval_input_packets{0x152A008D};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_interval_input_bytes{0x152A008E};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_output_packets{0x152A008F};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_output_bytes{0x152A0090};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_output_unicast_packets{0x152A0091};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_output_multicast_packets{0x152A0092};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_output_broadcast_packets{0x152A0093};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_output_bytes_per_sec{0x152A0094};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_output_packets_per_sec{0x152A0095};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_interval_output_packets{0x152A0096};
inline constexpr tuple_id<CMD_TYPE_UINT64> nonzero_vdc_interval_output_bytes{0x152A0097};

/* The same of a loopback. */
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_input_packets{0x142A00A7};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_input_bytes{0x142A00A8};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_input_multicast_packets{0x142A00A9};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_input_compressed{0x142A00AA};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_input_errors{0x142A00AB};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_input_frame_errors{0x142A00AC};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_overrun_errors{0x142A00AD};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_input_fifo_errors{0x142A00AE};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_output_packets{0x142A00AF};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_output_bytes{0x142A00B0};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_underrun_errors{0x142A00B1};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_output_errors{0x142A00B2};
inline constexpr tuple_id<CMD_TYPE_UINT32> nonzero_loopback_collision_errors{0x142A00B3};

/* The list of all counters: its first part, of 64 bits. */
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_input_packets{0x152A0439};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_output_packets{0x152A043A};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_input_unicast_packets{0x152A043B};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_input_multicast_packets{0x152A043C};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_input_broadcast_packets{0x152A043D};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_input_bytes{0x152A043E};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_output_trunk_packets{0x152A043F};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_output_unicast_packets{0x152A0440};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_output_multicast_packets{0x152A0441};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_output_broadcast_packets{0x152A0442};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_output_bytes{0x152A0443};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_packets_0_to_64{0x152A0444};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_packets_65_to_127{0x152A0445};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_packets_128_to_255{0x152A0446};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_packets_256_to_511{0x152A0447};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_packets_512_to_1023{0x152A0448};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_packets_1024_to_1518{0x152A0449};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_packets_1519_to_1548{0x152A044A};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_input_trunk_packets{0x152A044B};
inline constexpr tuple_id<CMD_TYPE_UINT64> high_capacity_input_drop_events{0x152A044C};

/* The list of all counters: its second part. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> all_interface{0x0C2A0408};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_giant_errors{0x152A044D};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_packets{0x152A046C};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_bytes{0x152A046D};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_no_buffer_errors{0x152A046E};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_broadcast_packets{0x152A046F};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_multicast_packets{0x152A0470};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_unicast_packets{0x152A0471};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_jumbo_packets{0x152A0472};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_runt_errors{0x152A0476};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_storm_suppressed_packets{0x152A0477};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_errors{0x152A0479};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_crc_errors{0x152A047A};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_ecc_errors{0x152A047B};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_overrun_errors{0x152A047D};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_ignored_errors{0x152A047E};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_watchdog_errors{0x152A047F};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_broadcast_packets{0x152A0480};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_multicast_packets{0x152A0481};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_unicast_packets{0x152A0482};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_jumbo_packets{0x152A0483};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_pause_frames{0x152A0484};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_dribble_errors{0x152A0485};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_interface_down_drops{0x152A0486};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_bad_ethertype_drops{0x152A0487};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_bad_protocol_drops{0x152A0488};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_packets{0x152A0489};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_bytes{0x152A048A};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_underrun_errors{0x152A048B};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_errors{0x152A048E};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_collision_errors{0x152A048F};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_interface_resets{0x152A0490};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_babble_errors{0x152A0491};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_late_collision_errors{0x152A0492};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_deferred_errors{0x152A0493};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_lost_carrier_errors{0x152A0494};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_no_carrier_errors{0x152A0495};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_pause_frames{0x152A0496};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_single_collision_errors{0x152A049B};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_multi_collision_errors{0x152A049C};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_excess_collision_errors{0x152A049D};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_jabber_errors{0x152A049E};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_short_frame_errors{0x152A049F};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_discards{0x152A04A0};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_bad_encapsulation_errors{0x152A04A1};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_crc_errors{0x152A04A2};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_symbol_errors{0x152A04A3};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_drops{0x152A04A4};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_sqe_test_errors{0x152A04A5};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_packets_0_to_64{0x152A04A6};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_packets_65_to_127{0x152A04A7};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_packets_128_to_255{0x152A04A8};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_packets_256_to_511{0x152A04A9};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_packets_512_to_1023{0x152A04AA};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_packets_1024_to_1518{0x152A04AB};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_packets_1519_to_1548{0x152A04AC};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_input_trunk_packets{0x152A04AD};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_packets_0_to_64{0x152A04AE};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_packets_65_to_127{0x152A04AF};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_packets_128_to_255{0x152A04B0};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_packets_256_to_511{0x152A04B1};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_packets_512_to_1023{0x152A04B2};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_packets_1024_to_1518{0x152A04B3};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_packets_1519_to_1548{0x152A04B4};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_trunk_packets{0x152A04B5};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_bpdu_lost{0x152A04B6};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_cos0_lost{0x152A04B7};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_cos1_lost{0x152A04B8};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_cos2_lost{0x152A04B9};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_cos3_lost{0x152A04BA};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_cos4_lost{0x152A04BB};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_cos5_lost{0x152A04BC};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_cos6_lost{0x152A04BD};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_output_cos7_lost{0x152A04BE};

/* The same of layer 3. */
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_input_unicast_packets{0x152A0458};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_input_unicast_bytes{0x152A0459};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_input_multicast_packets{0x152A045A};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_input_multicast_bytes{0x152A045B};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_output_unicast_packets{0x152A045E};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_output_unicast_bytes{0x152A045F};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_output_multicast_packets{0x152A0460};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_output_multicast_bytes{0x152A0461};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_input_routed_packets{0x152A0464};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_input_routed_bytes{0x152A0465};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_output_routed_packets{0x152A0466};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_output_routed_bytes{0x152A0467};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_average_input_bytes{0x152A0468};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_average_input_packets{0x152A0469};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_average_output_bytes{0x152A046A};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_layer3_average_output_packets{0x152A046B};

/* The same of the management port, as the port manager counts. */
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_input_packets{0x152A0409};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_input_bytes{0x152A040A};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_input_unicast_packets{0x152A040B};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_input_multicast_packets{0x152A040C};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_input_broadcast_packets{0x152A040D};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_input_bytes_per_sec{0x152A040E};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_input_packets_per_sec{0x152A040F};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_interval_input_packets{0x152A0410};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_interval_input_bytes{0x152A0411};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_output_packets{0x152A0412};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_output_bytes{0x152A0413};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_output_unicast_packets{0x152A0414};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_output_multicast_packets{0x152A0415};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_output_broadcast_packets{0x152A0416};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_output_bytes_per_sec{0x152A0417};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_output_packets_per_sec{0x152A0418};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_interval_output_packets{0x152A0419};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_vdc_interval_output_bytes{0x152A041A};

/* The same as the kernel counts; the list of counters that are not 0 has these ids, too. */
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_input_packets{0x142A041B};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_input_bytes{0x142A041C};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_input_multicast_packets{0x142A041D};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_input_compressed{0x142A041E};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_input_errors{0x142A041F};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_input_frame_errors{0x142A0420};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_input_overruns{0x142A0421};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_input_fifo_errors{0x142A0422};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_output_packets{0x142A0423};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_output_bytes{0x142A0424};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_output_underruns{0x142A0425};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_output_errors{0x142A0426};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_output_collisions{0x142A0427};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_output_fifo_errors{0x142A0428};
inline constexpr tuple_id<CMD_TYPE_UINT32> all_kernel_output_carrier_errors{0x142A0429};

/* The same of a loopback. */
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_input_packets{0x152A042A};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_input_bytes{0x152A042B};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_input_multicast_packets{0x152A042C};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_input_compressed{0x152A042D};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_input_errors{0x152A042E};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_input_frame_errors{0x152A042F};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_overrun_errors{0x152A0430};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_input_fifo_errors{0x152A0431};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_output_packets{0x152A0432};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_output_bytes{0x152A0433};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_underrun_errors{0x152A0434};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_output_errors{0x152A0435};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_collision_errors{0x152A0436};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_output_fifo_errors{0x152A0437};
inline constexpr tuple_id<CMD_TYPE_UINT64> all_loopback_lost_carrier_errors{0x152A0438};

/* Transceivers: identity, values, marks and thresholds. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> transceiver_interface{0x0C2A0007};
inline constexpr tuple_id<CMD_TYPE_STRING> transceiver_presence{0x302A0008};
inline constexpr tuple_id<CMD_TYPE_STRING> transceiver_vendor{0x302A0009};
inline constexpr tuple_id<CMD_TYPE_STRING> transceiver_part_number{0x302A000A};
inline constexpr tuple_id<CMD_TYPE_STRING> transceiver_revision{0x302A000B};
inline constexpr tuple_id<CMD_TYPE_STRING> transceiver_serial_number{0x302A000C};
inline constexpr tuple_id<CMD_TYPE_UINT32> transceiver_bit_rate{0x142A000D};
inline constexpr tuple_id<CMD_TYPE_UINT32> transceiver_length_9um{0x142A000E};
inline constexpr tuple_id<CMD_TYPE_UINT32> transceiver_length_50um{0x142A000F};
inline constexpr tuple_id<CMD_TYPE_UINT32> transceiver_length_62um{0x142A0010};
inline constexpr tuple_id<CMD_TYPE_STRING> transceiver_vendor_id{0x302A0011};
inline constexpr tuple_id<CMD_TYPE_UINT32> transceiver_extended_id{0x142A0012};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_temperature{0x452A0020};
inline constexpr tuple_id<CMD_TYPE_ENUM> transceiver_temperature_mark{0x022A0021};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_temperature_high_alarm{0x452A0022};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_temperature_low_alarm{0x452A0023};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_temperature_high_warning{0x452A0024};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_temperature_low_warning{0x452A0025};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_voltage{0x452A0026};
inline constexpr tuple_id<CMD_TYPE_ENUM> transceiver_voltage_mark{0x022A0027};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_voltage_high_alarm{0x452A0028};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_voltage_low_alarm{0x452A0029};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_voltage_high_warning{0x452A002A};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_voltage_low_warning{0x452A002B};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_current{0x452A002C};
inline constexpr tuple_id<CMD_TYPE_ENUM> transceiver_current_mark{0x022A002D};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_current_high_alarm{0x452A002E};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_current_low_alarm{0x452A002F};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_current_high_warning{0x452A0030};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_current_low_warning{0x452A0031};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_tx_power{0x452A0032};
inline constexpr tuple_id<CMD_TYPE_ENUM> transceiver_tx_power_mark{0x022A0033};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_tx_power_high_alarm{0x452A0034};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_tx_power_low_alarm{0x452A0035};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_tx_power_high_warning{0x452A0036};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_tx_power_low_warning{0x452A0037};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_rx_power{0x452A0038};
inline constexpr tuple_id<CMD_TYPE_ENUM> transceiver_rx_power_mark{0x022A0039};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_rx_power_high_alarm{0x452A003A};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_rx_power_low_alarm{0x452A003B};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_rx_power_high_warning{0x452A003C};
inline constexpr tuple_id<CMD_TYPE_FLOAT> transceiver_rx_power_low_warning{0x452A003D};

/* External calibration constants of transceivers. */
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_temperature_slope{0x142A003E};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_temperature_offset{0x142A003F};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_voltage_slope{0x142A0040};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_voltage_offset{0x142A0041};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_current_slope{0x142A0042};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_current_offset{0x142A0043};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_tx_power_slope{0x142A0044};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_tx_power_offset{0x142A0045};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_rx_power_4{0x142A0046};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_rx_power_3{0x142A0047};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_rx_power_2{0x142A0048};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_rx_power_1{0x142A0049};
inline constexpr tuple_id<CMD_TYPE_UINT32> calibration_rx_power_0{0x142A004A};

/* Trunks. */
inline constexpr tuple_id<CMD_TYPE_IF_INDEX> trunk_interface{0x0C2A0075};
inline constexpr tuple_id<CMD_TYPE_UINT32> trunk_native_vlan{0x142A0076};
inline constexpr tuple_id<CMD_TYPE_STRING> trunk_status{0x302A0077};
inline constexpr tuple_id<CMD_TYPE_STRING> trunk_port_channel{0x302A0078};
inline constexpr tuple_id<CMD_TYPE_STRING> trunk_allowed_vlans{0x302A0079};
inline constexpr tuple_id<CMD_TYPE_STRING> trunk_forwarding_vlans{0x302A007A};
inline constexpr tuple_id<CMD_TYPE_STRING> trunk_enabled_vlans{0x302A063B};
inline constexpr tuple_id<CMD_TYPE_STRING> trunk_errored_vlans{0x302A066F};

}  // namespace tag

#undef PLATFORM_CONSTEVAL

#endif

#endif
