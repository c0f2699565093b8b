// The fields of the structured form.
//
// A key has one meaning and one unit in all displays, and the unit is part of the key. Rates are "..._bits_per_second",
// "..._bytes_per_second" or "..._packets_per_second".
#include <iterator>

#include "shell/output/schema/schema.h"

namespace host {
namespace {

using enum field_type;

// clang-format off
constexpr field kFields[] = {
    // Identity.
    {property::interface, "interface", full_name, "", "Interface", "Full name of the interface"},
    {property::device, "device", text, "", "Device", "Network device of the kernel"},
    {property::ifindex, "ifindex", integer, "", "Device index", "Index of the device in the kernel"},
    {property::device_type, "device_type", text, "", "Type", "What the device is, such as veth or vxlan 42 over eth1"},
    {property::parent_device, "parent_device", text, "", "Parent", "Device below"},
    {property::master_device, "master_device", text, "", "Master", "Bridge, bond or VRF that the device is a port of"},
    {property::interface_index, "interface_index", integer, "", "Interface index", "Index of the interface in the switch"},
    {property::interface_index_hex, "interface_index_hex", hexadecimal, "", "Interface index", "The same index in hexadecimal digits"},
    {property::description, "description", text, "", "Description", "Description that a user set"},
    {property::hardware, "hardware", text, "", "Hardware", "Hardware of the port"},
    {property::address, "address", mac, "", "Address", "Hardware address in use"},
    {property::burned_in_address, "burned_in_address", mac, "", "Burned-in address", "Hardware address that the hardware was made with"},
    {property::ip_address, "ip_address", ipv4, "", "IPv4 address", "First IPv4 address"},
    {property::prefix_length_bits, "prefix_length_bits", integer, "bits", "Prefix length", "Length of the prefix of the IPv4 address"},

    // State.
    {property::state, "state", enumeration, "", "State", "Operational state", enum_words::port_state},
    {property::state_reason, "state_reason", enumeration, "", "State reason", "Why the interface is not up", enum_words::state_reason},
    {property::last_link_flapped, "last_link_flapped", time, "", "Last link change", "When the link changed last"},
    {property::interface_resets, "interface_resets", integer, "resets", "Interface resets", "How often the interface was reset"},

    // Other interfaces.
    {property::member_of, "member_of", full_name, "", "Port-channel", "Port-channel that the interface is a member of"},
    {property::members, "members", interfaces, "", "Members", "Members of the port-channel"},
    {property::bound_interface, "bound_interface", full_name, "", "Bound interface", "Interface that a virtual interface is bound to"},
    {property::multi_chassis_status, "multi_chassis_status", text, "", "Multi-chassis status", "Status of a port-channel over several chassis"},
    {property::port_channel, "port_channel", full_name, "", "Port-channel", "Port-channel that the trunk is a member of"},

    // Settings.
    {property::vlan, "vlan", membership, "", "VLANs", "How the interface takes part in VLANs"},
    {property::encapsulation, "encapsulation", text, "", "Encapsulation", "Encapsulation of packets"},
    {property::encapsulation_vlan, "encapsulation_vlan", integer, "", "Encapsulation VLAN", "VLAN of a sub-interface"},
    {property::mtu_bytes, "mtu_bytes", integer, "bytes", "MTU", "Size of the largest packet"},
    {property::bandwidth_kbps, "bandwidth_kbps", integer, "kbit/s", "Bandwidth", "Nominal bandwidth"},
    {property::delay_usec, "delay_usec", integer, "us", "Delay", "Nominal delay"},
    {property::port_mode, "port_mode", enumeration, "", "Port mode", "Operational mode of the port", enum_words::port_mode},
    {property::duplex, "duplex", enumeration, "", "Duplex", "Operational duplex", enum_words::duplex},
    {property::speed_mbps, "speed_mbps", integer_or_auto, "Mbit/s", "Speed", "Operational speed; null while it is negotiated", enum_words::speed_mbps},
    {property::media_type, "media_type", text, "", "Media type", "Type of the medium"},
    {property::debounce, "debounce", text, "", "Debounce", "Whether link debounce is enabled"},
    {property::debounce_msec, "debounce_msec", integer, "ms", "Debounce time", "How long a link must be down before the port goes down"},
    {property::input_flow_control, "input_flow_control", enumeration, "", "Input flow control", "Operational flow control of received traffic", enum_words::flow_control},
    {property::output_flow_control, "output_flow_control", enumeration, "", "Output flow control", "Operational flow control of sent traffic", enum_words::flow_control},
    {property::admin_input_flow_control, "admin_input_flow_control", enumeration, "", "Configured input flow control", "Configured flow control of received traffic", enum_words::flow_control},
    {property::admin_output_flow_control, "admin_output_flow_control", enumeration, "", "Configured output flow control", "Configured flow control of sent traffic", enum_words::flow_control},
    {property::auto_mdix, "auto_mdix", enumeration, "", "Auto-MDIX", "Whether the port detects crossed cables", enum_words::on_off},
    {property::rate_mode, "rate_mode", enumeration, "", "Rate mode", "Whether bandwidth is dedicated or shared", enum_words::rate_mode},
    {property::switchport_monitor, "switchport_monitor", enumeration, "", "Monitor port", "Whether the port is the destination of a monitoring session", enum_words::on_off},
    {property::unicast_level_percent, "unicast_level_percent", decimal, "%", "Unicast level", "Storm control level of unicast traffic"},
    {property::multicast_level_percent, "multicast_level_percent", decimal, "%", "Multicast level", "Storm control level of multicast traffic"},
    {property::broadcast_level_percent, "broadcast_level_percent", decimal, "%", "Broadcast level", "Storm control level of broadcast traffic"},

    // Trunks.
    {property::native_vlan, "native_vlan", integer, "", "Native VLAN", "VLAN of untagged frames"},
    {property::trunk_status, "trunk_status", text, "", "Trunk status", "Whether the interface trunks"},
    {property::allowed_vlans, "allowed_vlans", vlans, "", "Allowed VLANs", "VLANs that the trunk carries"},
    {property::forwarding_vlans, "forwarding_vlans", vlans, "", "Forwarding VLANs", "VLANs in which spanning tree lets the trunk forward"},

    // Loads and rates.
    {property::reliability_per_255, "reliability_per_255", integer, "/255", "Reliability", "Reliability in parts of 255; 255 is without errors"},
    {property::tx_load_per_255, "tx_load_per_255", integer, "/255", "Transmit load", "Transmit load in parts of 255"},
    {property::rx_load_per_255, "rx_load_per_255", integer, "/255", "Receive load", "Receive load in parts of 255"},
    {property::load_interval_seconds, "load_interval_seconds", integer, "s", "Load interval", "Interval that the rates of this record are averaged over"},
    {property::input_bits_per_second, "input_bits_per_second", integer, "bit/s", "Input bit rate", "Received bits per second"},
    {property::input_bytes_per_second, "input_bytes_per_second", integer, "byte/s", "Input byte rate", "Received bytes per second"},
    {property::input_megabytes_per_second, "input_megabytes_per_second", integer, "Mbyte/s", "Input rate", "Received bytes per second in whole millions"},
    {property::input_packets_per_second, "input_packets_per_second", integer, "packet/s", "Input packet rate", "Received packets per second"},
    {property::output_bits_per_second, "output_bits_per_second", integer, "bit/s", "Output bit rate", "Sent bits per second"},
    {property::output_bytes_per_second, "output_bytes_per_second", integer, "byte/s", "Output byte rate", "Sent bytes per second"},
    {property::output_megabytes_per_second, "output_megabytes_per_second", integer, "Mbyte/s", "Output rate", "Sent bytes per second in whole millions"},
    {property::output_packets_per_second, "output_packets_per_second", integer, "packet/s", "Output packet rate", "Sent packets per second"},

    // Traffic.
    {property::last_counters_cleared, "last_counters_cleared", time, "", "Last clear", "When the counters were cleared"},
    {property::input_packets, "input_packets", integer, "packets", "Input packets", "Packets received"},
    {property::input_unicast_packets, "input_unicast_packets", integer, "packets", "Input unicasts", "Unicast packets received"},
    {property::input_multicast_packets, "input_multicast_packets", integer, "packets", "Input multicasts", "Multicast packets received"},
    {property::input_broadcast_packets, "input_broadcast_packets", integer, "packets", "Input broadcasts", "Broadcast packets received"},
    {property::input_jumbo_packets, "input_jumbo_packets", integer, "packets", "Input jumbo packets", "Packets received that are longer than 1548 bytes"},
    {property::input_bytes, "input_bytes", integer, "bytes", "Input bytes", "Bytes received"},
    {property::input_trunk_packets, "input_trunk_packets", integer, "packets", "Input trunk packets", "Packets received on a trunk"},
    {property::input_packets_0_to_64_bytes, "input_packets_0_to_64_bytes", integer, "packets", "Input packets of 0 to 64 bytes", "Packets received of this size"},
    {property::input_packets_65_to_127_bytes, "input_packets_65_to_127_bytes", integer, "packets", "Input packets of 65 to 127 bytes", "Packets received of this size"},
    {property::input_packets_128_to_255_bytes, "input_packets_128_to_255_bytes", integer, "packets", "Input packets of 128 to 255 bytes", "Packets received of this size"},
    {property::input_packets_256_to_511_bytes, "input_packets_256_to_511_bytes", integer, "packets", "Input packets of 256 to 511 bytes", "Packets received of this size"},
    {property::input_packets_512_to_1023_bytes, "input_packets_512_to_1023_bytes", integer, "packets", "Input packets of 512 to 1023 bytes", "Packets received of this size"},
    {property::input_packets_1024_to_1518_bytes, "input_packets_1024_to_1518_bytes", integer, "packets", "Input packets of 1024 to 1518 bytes", "Packets received of this size"},
    {property::input_packets_1519_to_1548_bytes, "input_packets_1519_to_1548_bytes", integer, "packets", "Input packets of 1519 to 1548 bytes", "Packets received of this size"},
    {property::output_packets, "output_packets", integer, "packets", "Output packets", "Packets sent"},
    {property::output_unicast_packets, "output_unicast_packets", integer, "packets", "Output unicasts", "Unicast packets sent"},
    {property::output_multicast_packets, "output_multicast_packets", integer, "packets", "Output multicasts", "Multicast packets sent"},
    {property::output_broadcast_packets, "output_broadcast_packets", integer, "packets", "Output broadcasts", "Broadcast packets sent"},
    {property::output_jumbo_packets, "output_jumbo_packets", integer, "packets", "Output jumbo packets", "Packets sent that are longer than 1548 bytes"},
    {property::output_bytes, "output_bytes", integer, "bytes", "Output bytes", "Bytes sent"},
    {property::output_trunk_packets, "output_trunk_packets", integer, "packets", "Output trunk packets", "Packets sent on a trunk"},
    {property::output_packets_0_to_64_bytes, "output_packets_0_to_64_bytes", integer, "packets", "Output packets of 0 to 64 bytes", "Packets sent of this size"},
    {property::output_packets_65_to_127_bytes, "output_packets_65_to_127_bytes", integer, "packets", "Output packets of 65 to 127 bytes", "Packets sent of this size"},
    {property::output_packets_128_to_255_bytes, "output_packets_128_to_255_bytes", integer, "packets", "Output packets of 128 to 255 bytes", "Packets sent of this size"},
    {property::output_packets_256_to_511_bytes, "output_packets_256_to_511_bytes", integer, "packets", "Output packets of 256 to 511 bytes", "Packets sent of this size"},
    {property::output_packets_512_to_1023_bytes, "output_packets_512_to_1023_bytes", integer, "packets", "Output packets of 512 to 1023 bytes", "Packets sent of this size"},
    {property::output_packets_1024_to_1518_bytes, "output_packets_1024_to_1518_bytes", integer, "packets", "Output packets of 1024 to 1518 bytes", "Packets sent of this size"},
    {property::output_packets_1519_to_1548_bytes, "output_packets_1519_to_1548_bytes", integer, "packets", "Output packets of 1519 to 1548 bytes", "Packets sent of this size"},
    {property::packets_0_to_64_bytes, "packets_0_to_64_bytes", integer, "packets", "Packets of 0 to 64 bytes", "Packets of this size, received and sent"},
    {property::packets_65_to_127_bytes, "packets_65_to_127_bytes", integer, "packets", "Packets of 65 to 127 bytes", "Packets of this size, received and sent"},
    {property::packets_128_to_255_bytes, "packets_128_to_255_bytes", integer, "packets", "Packets of 128 to 255 bytes", "Packets of this size, received and sent"},
    {property::packets_256_to_511_bytes, "packets_256_to_511_bytes", integer, "packets", "Packets of 256 to 511 bytes", "Packets of this size, received and sent"},
    {property::packets_512_to_1023_bytes, "packets_512_to_1023_bytes", integer, "packets", "Packets of 512 to 1023 bytes", "Packets of this size, received and sent"},
    {property::packets_1024_to_1518_bytes, "packets_1024_to_1518_bytes", integer, "packets", "Packets of 1024 to 1518 bytes", "Packets of this size, received and sent"},
    {property::packets_1519_to_1548_bytes, "packets_1519_to_1548_bytes", integer, "packets", "Packets of 1519 to 1548 bytes", "Packets of this size, received and sent"},
    {property::input_pause_frames, "input_pause_frames", integer, "frames", "Input pause frames", "Pause frames received"},
    {property::output_pause_frames, "output_pause_frames", integer, "frames", "Output pause frames", "Pause frames sent"},
    {property::interval_input_packets, "interval_input_packets", integer, "packets", "Input packets of the last interval", "Packets received within the last interval"},
    {property::interval_input_bytes, "interval_input_bytes", integer, "bytes", "Input bytes of the last interval", "Bytes received within the last interval"},
    {property::interval_output_packets, "interval_output_packets", integer, "packets", "Output packets of the last interval", "Packets sent within the last interval"},
    {property::interval_output_bytes, "interval_output_bytes", integer, "bytes", "Output bytes of the last interval", "Bytes sent within the last interval"},

    // Errors.
    {property::input_errors, "input_errors", integer, "packets", "Input errors", "Errors of received packets, all together"},
    {property::output_errors, "output_errors", integer, "packets", "Output errors", "Errors of sent packets, all together"},
    {property::input_discards, "input_discards", integer, "packets", "Input discards", "Received packets that were discarded"},
    {property::output_discards, "output_discards", integer, "packets", "Output discards", "Packets to be sent that were discarded"},
    {property::input_drop_events, "input_drop_events", integer, "packets", "Input drop events", "Received packets dropped for their ether type, their protocol, or an interface that is down"},
    {property::alignment_errors, "alignment_errors", integer, "packets", "Alignment errors", "Runts and jabbers"},
    {property::input_crc_errors, "input_crc_errors", integer, "packets", "Input CRC errors", "Received frames with a wrong checksum"},
    {property::output_crc_errors, "output_crc_errors", integer, "packets", "Output CRC errors", "Sent frames with a wrong checksum"},
    {property::runts, "runts", integer, "packets", "Runts", "Received frames that are too short and have a wrong checksum"},
    {property::giants, "giants", integer, "packets", "Giants", "Received frames that are too long"},
    {property::jabbers, "jabbers", integer, "packets", "Jabbers", "Received frames that are too long and have a wrong checksum"},
    {property::short_frames, "short_frames", integer, "frames", "Short frames", "Received frames that are too short"},
    {property::ecc_errors, "ecc_errors", integer, "events", "ECC errors", "Errors of the memory that holds received frames"},
    {property::ignored_errors, "ignored_errors", integer, "packets", "Ignored packets", "Received packets that no buffer was left for"},
    {property::no_buffer_errors, "no_buffer_errors", integer, "packets", "No buffer", "Received packets dropped because no buffer was free"},
    {property::input_overruns, "input_overruns", integer, "packets", "Input overruns", "Received packets lost because the receiver was too slow"},
    {property::output_underruns, "output_underruns", integer, "packets", "Output underruns", "Packets lost because the transmitter was not fed in time"},
    {property::input_fifo_errors, "input_fifo_errors", integer, "packets", "Input FIFO errors", "Received packets lost by a full queue"},
    {property::output_fifo_errors, "output_fifo_errors", integer, "packets", "Output FIFO errors", "Packets to be sent lost by a full queue"},
    {property::input_compressed, "input_compressed", integer, "packets", "Input compressed", "Compressed packets received"},
    {property::bad_ethertype_drops, "bad_ethertype_drops", integer, "packets", "Bad ether types", "Received packets dropped for their ether type"},
    {property::bad_protocol_drops, "bad_protocol_drops", integer, "packets", "Bad protocols", "Received packets dropped for their protocol"},
    {property::interface_down_drops, "interface_down_drops", integer, "packets", "Drops while down", "Received packets dropped while the interface was down"},
    {property::bad_encapsulation_errors, "bad_encapsulation_errors", integer, "packets", "Bad encapsulation", "Received packets with a wrong encapsulation"},
    {property::dribble_errors, "dribble_errors", integer, "packets", "Dribbles", "Received frames with odd bits at their end"},
    {property::watchdog_errors, "watchdog_errors", integer, "events", "Watchdog", "Expiries of the receive watchdog"},
    {property::symbol_errors, "symbol_errors", integer, "events", "Symbol errors", "Received symbols that are not valid"},
    {property::storm_suppressed_packets, "storm_suppressed_packets", integer, "packets", "Suppressed packets", "Packets discarded by storm control"},
    {property::collisions, "collisions", integer, "events", "Collisions", "Collisions, all together"},
    {property::single_collisions, "single_collisions", integer, "events", "Single collisions", "Frames sent after one collision"},
    {property::multiple_collisions, "multiple_collisions", integer, "events", "Multiple collisions", "Frames sent after several collisions"},
    {property::excessive_collisions, "excessive_collisions", integer, "events", "Excessive collisions", "Frames given up after too many collisions"},
    {property::late_collisions, "late_collisions", integer, "events", "Late collisions", "Collisions after the time for them"},
    {property::deferred, "deferred", integer, "packets", "Deferred", "Frames that waited for the medium"},
    {property::carrier_errors, "carrier_errors", integer, "packets", "Carrier errors", "Frames sent with the carrier lost or missing"},
    {property::lost_carrier_errors, "lost_carrier_errors", integer, "packets", "Lost carrier", "Frames whose carrier was lost while they were sent"},
    {property::no_carrier_errors, "no_carrier_errors", integer, "packets", "No carrier", "Frames sent without a carrier"},
    {property::babble_errors, "babble_errors", integer, "packets", "Babbles", "Frames sent that are too long"},
    {property::sqe_test_errors, "sqe_test_errors", integer, "events", "SQE test errors", "Failed tests of the collision signal"},
    {property::input_internal_mac_errors, "input_internal_mac_errors", integer, "packets", "Input internal MAC errors", "Received frames lost by the MAC itself"},
    {property::output_internal_mac_errors, "output_internal_mac_errors", integer, "packets", "Output internal MAC errors", "Sent frames lost by the MAC itself"},
    {property::output_bpdu_lost, "output_bpdu_lost", integer, "packets", "BPDUs lost", "Bridge protocol frames that were not sent"},
    {property::output_cos0_lost, "output_cos0_lost", integer, "packets", "Class 0 lost", "Packets of class of service 0 that were not sent"},
    {property::output_cos1_lost, "output_cos1_lost", integer, "packets", "Class 1 lost", "Packets of class of service 1 that were not sent"},
    {property::output_cos2_lost, "output_cos2_lost", integer, "packets", "Class 2 lost", "Packets of class of service 2 that were not sent"},
    {property::output_cos3_lost, "output_cos3_lost", integer, "packets", "Class 3 lost", "Packets of class of service 3 that were not sent"},
    {property::output_cos4_lost, "output_cos4_lost", integer, "packets", "Class 4 lost", "Packets of class of service 4 that were not sent"},
    {property::output_cos5_lost, "output_cos5_lost", integer, "packets", "Class 5 lost", "Packets of class of service 5 that were not sent"},
    {property::output_cos6_lost, "output_cos6_lost", integer, "packets", "Class 6 lost", "Packets of class of service 6 that were not sent"},
    {property::output_cos7_lost, "output_cos7_lost", integer, "packets", "Class 7 lost", "Packets of class of service 7 that were not sent"},

    // Counters of routed traffic.
    {property::layer3_input_routed_packets, "layer3_input_routed_packets", integer, "packets", "Routed packets received", "Packets received to be routed"},
    {property::layer3_input_routed_bytes, "layer3_input_routed_bytes", integer, "bytes", "Routed bytes received", "Bytes received to be routed"},
    {property::layer3_output_routed_packets, "layer3_output_routed_packets", integer, "packets", "Routed packets sent", "Packets sent after routing"},
    {property::layer3_output_routed_bytes, "layer3_output_routed_bytes", integer, "bytes", "Routed bytes sent", "Bytes sent after routing"},
    {property::layer3_input_unicast_packets, "layer3_input_unicast_packets", integer, "packets", "Layer 3 unicast packets received", "Packets received as layer 3 unicasts"},
    {property::layer3_input_unicast_bytes, "layer3_input_unicast_bytes", integer, "bytes", "Layer 3 unicast bytes received", "Bytes received as layer 3 unicasts"},
    {property::layer3_input_multicast_packets, "layer3_input_multicast_packets", integer, "packets", "Layer 3 multicast packets received", "Packets received as layer 3 multicasts"},
    {property::layer3_input_multicast_bytes, "layer3_input_multicast_bytes", integer, "bytes", "Layer 3 multicast bytes received", "Bytes received as layer 3 multicasts"},
    {property::layer3_output_unicast_packets, "layer3_output_unicast_packets", integer, "packets", "Layer 3 unicast packets sent", "Packets sent as layer 3 unicasts"},
    {property::layer3_output_unicast_bytes, "layer3_output_unicast_bytes", integer, "bytes", "Layer 3 unicast bytes sent", "Bytes sent as layer 3 unicasts"},
    {property::layer3_output_multicast_packets, "layer3_output_multicast_packets", integer, "packets", "Layer 3 multicast packets sent", "Packets sent as layer 3 multicasts"},
    {property::layer3_output_multicast_bytes, "layer3_output_multicast_bytes", integer, "bytes", "Layer 3 multicast bytes sent", "Bytes sent as layer 3 multicasts"},
    {property::layer3_average_input_packets, "layer3_average_input_packets_per_second", integer, "packet/s", "Average layer 3 packets received", "Layer 3 packets received per second on average"},
    {property::layer3_average_input_bytes, "layer3_average_input_bytes_per_second", integer, "byte/s", "Average layer 3 bytes received", "Layer 3 bytes received per second on average"},
    {property::layer3_average_output_packets, "layer3_average_output_packets_per_second", integer, "packet/s", "Average layer 3 packets sent", "Layer 3 packets sent per second on average"},
    {property::layer3_average_output_bytes, "layer3_average_output_bytes_per_second", integer, "byte/s", "Average layer 3 bytes sent", "Layer 3 bytes sent per second on average"},

    // Counters of the management port's device, as the kernel keeps them.
    {property::kernel_input_packets, "kernel_input_packets", integer, "packets", "Device: packets received", "Packets received, of the device"},
    {property::kernel_input_bytes, "kernel_input_bytes", integer, "bytes", "Device: bytes received", "Bytes received, of the device"},
    {property::kernel_input_multicast_packets, "kernel_input_multicast_packets", integer, "packets", "Device: multicasts received", "Multicast packets received, of the device"},
    {property::kernel_input_compressed, "kernel_input_compressed", integer, "packets", "Device: compressed received", "Compressed packets received, of the device"},
    {property::kernel_input_errors, "kernel_input_errors", integer, "packets", "Device: input errors", "Errors of received packets, of the device"},
    {property::kernel_input_frame_errors, "kernel_input_frame_errors", integer, "packets", "Device: frame errors", "Received frames with errors of alignment, of the device"},
    {property::kernel_input_overruns, "kernel_input_overruns", integer, "packets", "Device: input overruns", "Received packets that were dropped, of the device"},
    {property::kernel_input_fifo_errors, "kernel_input_fifo_errors", integer, "packets", "Device: input FIFO errors", "Received packets lost by a full queue, of the device"},
    {property::kernel_output_packets, "kernel_output_packets", integer, "packets", "Device: packets sent", "Packets sent, of the device"},
    {property::kernel_output_bytes, "kernel_output_bytes", integer, "bytes", "Device: bytes sent", "Bytes sent, of the device"},
    {property::kernel_output_underruns, "kernel_output_underruns", integer, "packets", "Device: output underruns", "Packets to be sent that were dropped, of the device"},
    {property::kernel_output_errors, "kernel_output_errors", integer, "packets", "Device: output errors", "Errors of sent packets, of the device"},
    {property::kernel_output_collisions, "kernel_output_collisions", integer, "events", "Device: collisions", "Collisions, of the device"},
    {property::kernel_output_fifo_errors, "kernel_output_fifo_errors", integer, "packets", "Device: output FIFO errors", "Packets to be sent lost by a full queue, of the device"},
    {property::kernel_output_carrier_errors, "kernel_output_carrier_errors", integer, "events", "Device: carrier errors", "Losses of the carrier, of the device"},

    // Capabilities.
    {property::model, "model", text, "", "Model", "Model of the port, its line card or its driver"},
    {property::speeds_mbps, "speeds_mbps", numbers, "Mbit/s", "Speeds", "Speeds that the port supports"},
    {property::duplex_modes, "duplex_modes", words, "", "Duplex modes", "Duplex modes that the port supports"},
    {property::trunk_encapsulation, "trunk_encapsulation", text, "", "Trunk encapsulation", "Encapsulation of trunks that the port supports"},
    {property::channel_capable, "channel_capable", enumeration, "", "Channel", "Whether the port can be a member of a port-channel", enum_words::yes_no},
    {property::broadcast_suppression, "broadcast_suppression", text, "", "Broadcast suppression", "How the port can suppress broadcasts"},
    {property::flow_control_modes, "flow_control_modes", text, "", "Flow control", "Flow control that the port supports, by direction"},
    {property::rate_modes, "rate_modes", words, "", "Rate modes", "Rate modes that the port supports"},
    {property::qos_scheduling, "qos_scheduling", text, "", "QoS scheduling", "Queues and thresholds, by direction"},
    {property::cos_rewrite, "cos_rewrite", enumeration, "", "CoS rewrite", "Whether the port can rewrite the class of service", enum_words::yes_no},
    {property::tos_rewrite, "tos_rewrite", enumeration, "", "ToS rewrite", "Whether the port can rewrite the type of service", enum_words::yes_no},
    {property::span, "span", enumeration, "", "SPAN", "Whether the port can be the destination of a monitoring session", enum_words::yes_no},
    {property::udld, "udld", enumeration, "", "UDLD", "Whether the port can detect unidirectional links", enum_words::yes_no},
    {property::link_debounce, "link_debounce", enumeration, "", "Link debounce", "Whether the port can debounce its link", enum_words::yes_no},
    {property::link_debounce_time, "link_debounce_time", enumeration, "", "Link debounce time", "Whether the port can set the time of debounce", enum_words::yes_no},
    {property::mdix, "mdix", enumeration, "", "MDIX", "Whether the port can detect crossed cables", enum_words::yes_no},

    // Transceivers.
    {property::presence, "presence", text, "", "Presence", "Whether a transceiver is there"},
    {property::vendor, "vendor", text, "", "Vendor", "Name of the vendor"},
    {property::part_number, "part_number", text, "", "Part number", "Part number of the vendor"},
    {property::revision, "revision", text, "", "Revision", "Revision of the part"},
    {property::serial_number, "serial_number", text, "", "Serial number", "Serial number of the vendor"},
    {property::bit_rate_mbps, "bit_rate_mbps", integer, "Mbit/s", "Bit rate", "Nominal bit rate"},
    {property::length_9um_km, "length_9um_km", integer, "km", "Length on 9 um fibre", "Longest link on single-mode fibre"},
    {property::length_50um_m, "length_50um_m", integer, "m", "Length on 50 um fibre", "Longest link on 50 um multi-mode fibre"},
    {property::length_62um_m, "length_62um_m", integer, "m", "Length on 62.5 um fibre", "Longest link on 62.5 um multi-mode fibre"},
    {property::vendor_id, "vendor_id", text, "", "Identifier", "Identifier of the type of transceiver"},
    {property::extended_id, "extended_id", integer, "", "Extended identifier", "Extended identifier of the type of transceiver"},
    {property::vendor_extended_id, "vendor_extended_id", integer, "", "Vendor's extended identifier", "Code of the vendor in the extended identity page"},
    {property::tx_fault, "tx_fault", enumeration, "", "Transmit fault", "Whether the transmitter reports a fault", enum_words::yes_no},
    {property::rx_loss, "rx_loss", enumeration, "", "Receive loss", "Whether the receiver has lost its signal", enum_words::yes_no},
    {property::in_sync, "in_sync", enumeration, "", "In sync", "Whether the receiver is in sync", enum_words::yes_no},
    {property::diagnostic_monitoring_type, "diagnostic_monitoring_type", integer, "", "Diagnostic monitoring type", "How the module monitors itself, in the bits of its identity page"},
    {property::base_checksum_ok, "base_checksum_ok", enumeration, "", "Base checksum", "Whether the checksum of the base identity is right", enum_words::yes_no},
    {property::extended_checksum_ok, "extended_checksum_ok", enumeration, "", "Extended checksum", "Whether the checksum of the extended identity is right", enum_words::yes_no},
    {property::temperature_c, "temperature_c", decimal, "C", "Temperature", "Temperature now"},
    {property::temperature_mark, "temperature_mark", enumeration, "", "Temperature mark", "Which limit the temperature is beyond", enum_words::mark},
    {property::temperature_high_alarm_c, "temperature_high_alarm_c", decimal, "C", "Temperature, high alarm", "Above it is an alarm"},
    {property::temperature_low_alarm_c, "temperature_low_alarm_c", decimal, "C", "Temperature, low alarm", "Below it is an alarm"},
    {property::temperature_high_warning_c, "temperature_high_warning_c", decimal, "C", "Temperature, high warning", "Above it is a warning"},
    {property::temperature_low_warning_c, "temperature_low_warning_c", decimal, "C", "Temperature, low warning", "Below it is a warning"},
    {property::voltage_v, "voltage_v", decimal, "V", "Supply voltage", "Supply voltage now"},
    {property::voltage_mark, "voltage_mark", enumeration, "", "Supply voltage mark", "Which limit the supply voltage is beyond", enum_words::mark},
    {property::voltage_high_alarm_v, "voltage_high_alarm_v", decimal, "V", "Supply voltage, high alarm", "Above it is an alarm"},
    {property::voltage_low_alarm_v, "voltage_low_alarm_v", decimal, "V", "Supply voltage, low alarm", "Below it is an alarm"},
    {property::voltage_high_warning_v, "voltage_high_warning_v", decimal, "V", "Supply voltage, high warning", "Above it is a warning"},
    {property::voltage_low_warning_v, "voltage_low_warning_v", decimal, "V", "Supply voltage, low warning", "Below it is a warning"},
    {property::current_ma, "current_ma", decimal, "mA", "Laser current", "Laser current now"},
    {property::current_mark, "current_mark", enumeration, "", "Laser current mark", "Which limit the laser current is beyond", enum_words::mark},
    {property::current_high_alarm_ma, "current_high_alarm_ma", decimal, "mA", "Laser current, high alarm", "Above it is an alarm"},
    {property::current_low_alarm_ma, "current_low_alarm_ma", decimal, "mA", "Laser current, low alarm", "Below it is an alarm"},
    {property::current_high_warning_ma, "current_high_warning_ma", decimal, "mA", "Laser current, high warning", "Above it is a warning"},
    {property::current_low_warning_ma, "current_low_warning_ma", decimal, "mA", "Laser current, low warning", "Below it is a warning"},
    {property::tx_power_dbm, "tx_power_dbm", decimal, "dBm", "Transmit power", "Transmit power now"},
    {property::tx_power_mark, "tx_power_mark", enumeration, "", "Transmit power mark", "Which limit the transmit power is beyond", enum_words::mark},
    {property::tx_power_high_alarm_dbm, "tx_power_high_alarm_dbm", decimal, "dBm", "Transmit power, high alarm", "Above it is an alarm"},
    {property::tx_power_low_alarm_dbm, "tx_power_low_alarm_dbm", decimal, "dBm", "Transmit power, low alarm", "Below it is an alarm"},
    {property::tx_power_high_warning_dbm, "tx_power_high_warning_dbm", decimal, "dBm", "Transmit power, high warning", "Above it is a warning"},
    {property::tx_power_low_warning_dbm, "tx_power_low_warning_dbm", decimal, "dBm", "Transmit power, low warning", "Below it is a warning"},
    {property::rx_power_dbm, "rx_power_dbm", decimal, "dBm", "Receive power", "Receive power now"},
    {property::rx_power_mark, "rx_power_mark", enumeration, "", "Receive power mark", "Which limit the receive power is beyond", enum_words::mark},
    {property::rx_power_high_alarm_dbm, "rx_power_high_alarm_dbm", decimal, "dBm", "Receive power, high alarm", "Above it is an alarm"},
    {property::rx_power_low_alarm_dbm, "rx_power_low_alarm_dbm", decimal, "dBm", "Receive power, low alarm", "Below it is an alarm"},
    {property::rx_power_high_warning_dbm, "rx_power_high_warning_dbm", decimal, "dBm", "Receive power, high warning", "Above it is a warning"},
    {property::rx_power_low_warning_dbm, "rx_power_low_warning_dbm", decimal, "dBm", "Receive power, low warning", "Below it is a warning"},
    {property::temperature_slope, "temperature_slope", integer, "", "Temperature slope", "Calibration slope, in 256ths"},
    {property::temperature_offset, "temperature_offset", integer, "", "Temperature offset", "Calibration offset, in units of the memory of the module"},
    {property::voltage_slope, "voltage_slope", integer, "", "Voltage slope", "Calibration slope, in 256ths"},
    {property::voltage_offset, "voltage_offset", integer, "", "Voltage offset", "Calibration offset, in units of the memory of the module"},
    {property::current_slope, "current_slope", integer, "", "Current slope", "Calibration slope, in 256ths"},
    {property::current_offset, "current_offset", integer, "", "Current offset", "Calibration offset, in units of the memory of the module"},
    {property::tx_power_slope, "tx_power_slope", integer, "", "Transmit power slope", "Calibration slope, in 256ths"},
    {property::tx_power_offset, "tx_power_offset", integer, "", "Transmit power offset", "Calibration offset, in units of the memory of the module"},
    {property::rx_power_4, "rx_power_4", integer, "", "Receive power, order 4", "Calibration coefficient of order 4"},
    {property::rx_power_3, "rx_power_3", integer, "", "Receive power, order 3", "Calibration coefficient of order 3"},
    {property::rx_power_2, "rx_power_2", integer, "", "Receive power, order 2", "Calibration coefficient of order 2"},
    {property::rx_power_1, "rx_power_1", integer, "", "Receive power, order 1", "Calibration coefficient of order 1"},
    {property::rx_power_0, "rx_power_0", integer, "", "Receive power, order 0", "Calibration coefficient of order 0"},

    // Messages of this process.
    {property::none, "sent", integer, "messages", "Messages sent", "Messages sent to services"},
    {property::none, "received", integer, "messages", "Messages received", "Messages received from services"},
    {property::none, "dropped", integer, "messages", "Messages released", "Received messages that were released"},
    {property::none, "dropped_twice", integer, "messages", "Messages released twice", "Messages that were released more than once"},
    {property::none, "never_dropped", integer, "messages", "Messages never released", "Received messages that were not released"},

    // The result of a setting of a port.
    {property::none, "status", integer, "", "Status", "Status with which the port refused the setting; 0 when it did not"},
    {property::none, "text", text, "", "Refusal", "Text of that status; null when the port did not refuse"},
    {property::none, "setting", text, "", "Setting", "Command that was to change the port"},
    {property::none, "result", text, "", "Result", "What became of it: \"applied\", \"unchanged\" or \"refused\""},
    {property::none, "reason", text, "", "Reason", "Why it was refused; null when it was not"},

    // Configuration.
    {property::none, "interface_range", text, "", "Interfaces", "Interfaces that the command is for; null for none"},
    {property::none, "command", text, "", "Command", "Command that makes the setting"},
    {property::none, "step", integer, "", "Step", "Which change it is, counted from the first of the session"},
    {property::none, "changed_at", time, "", "Time", "When the command ran, in UTC"},
    {property::none, "user", text, "", "User", "Who ran the command"},
    {property::none, "before", text, "", "Before", "Commands that made the settings before, separated by semicolons"},
    {property::none, "after", text, "", "After", "Commands that make the settings afterwards, separated by semicolons"},

    // The place of a port.
    {property::none, "unit", integer, "", "Unit", "Satellite unit of the port; null in the switch itself"},
    {property::none, "module", integer, "", "Module", "Module of the port"},

    // Resources of a module.
    {property::none, "level", text, "", "Level", "What the record is about: \"module\", \"port group\", \"buffer group\" or \"port\""},
    {property::none, "port", full_name, "", "Port", "Full name of the port"},
    {property::none, "port_group", integer, "", "Port group", "Number of the port group, or of the one that it is in"},
    {property::none, "buffer_group", integer, "", "Buffer group", "Number of the buffer group, or of the one that it is in"},
    {property::none, "bb_credits", integer, "credits", "Buffer credits", "Buffer-to-buffer credits of the port"},
    {property::none, "total_buffers", integer, "buffers", "Total buffers", "Buffers of the group"},
    {property::none, "available_buffers", integer, "buffers", "Available buffers", "Buffers that no port uses"},
    {property::none, "performance_buffers", integer, "buffers", "Performance buffers", "Performance buffers of the group or the port"},
    {property::none, "available_performance_buffers", integer, "buffers", "Available performance buffers", "Performance buffers that no port uses"},
    {property::none, "bandwidth_mbps", integer, "Mbit/s", "Bandwidth", "Bandwidth of the group or the port"},
    {property::none, "available_bandwidth_mbps", integer, "Mbit/s", "Available bandwidth", "Bandwidth that no port uses"},

    // A device of the kernel.
    {property::none, "name_reason", text, "", "Reason", "Why the device has the interface, such as \"default route\", \"stored\" or \"vlan of eth1\""},

    // The shell and what it runs on.
    {property::none, "program_version", text, "", "Version", "Version of the shell"},
    {property::none, "library", text, "", "Command library", "File that the command library was loaded from"},
    {property::none, "platform", text, "", "Platform", "\"simulated switch\", or \"Linux\" for the devices of the kernel"},
    {property::none, "switch_name", text, "", "Switch", "Name of the simulated switch; null over the kernel"},
    {property::none, "switch_file", text, "", "Switch file", "File that describes the simulated switch; null when there is none"},
    {property::none, "kernel_release", text, "", "Kernel release", "Release of the kernel; null for a simulated switch"},
    {property::none, "clock_time", time, "", "Clock", "Time of the shell's clock, in UTC"},
};
// clang-format on

static_assert(std::size(kFields) == kNumOwnRows);

constexpr bool has_property_order() {
  for (uint16 row = 0; row + 1 < kNumProperties; ++row)
    if (kFields[row].value != static_cast<property>(row + 1)) return false;
  return true;
}
static_assert(has_property_order());

constexpr bool every_key_is_one_field() {
  for (std::size_t row = 0; row < std::size(kFields); ++row)
    for (std::size_t other = 0; other < row; ++other)
      if (kFields[row].name == kFields[other].name) return false;
  return true;
}
static_assert(every_key_is_one_field());

}  // namespace

std::span<const field> own_fields() { return kFields; }

}  // namespace host
