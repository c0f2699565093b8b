// The common detailed block.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

using port_data_t = pm_cli_common_show_intf_data_t;

void set(char* field, const std::string& text) { std::memcpy(field, text.c_str(), text.size() + 1); }

// A physical layer-2 port with everything that a port can have.
port_data_t physical_data() {
  port_data_t data{};
  set(data.hardware, "10/100/1000 Ethernet");
  set(data.type, "10Gbase-LR");
  set(data.encap, "ARPA");
  data.layer2 = 1;
  data.physical = 1;
  return data;
}

port_data_t everything() {
  port_data_t data = physical_data();
  data.inet_addr = ipv4_address(10, 1, 2, 3, 24);
  data.fcot_supported = 1;
  data.beacon_supported = 1;
  data.mdix_supported = 1;
  data.span_supported = 1;
  data.flowcontrol_supported = 1;
  data.reliability = 255;
  data.tx_load = 2;
  data.rx_load = 3;
  set(data.last_flapped, "1week(s) 0day(s)");
  set(data.last_cleared, "1w0d");
  return data;
}

// What of the block does not depend on the case at hand, for a block of `physical_data()` and `port_record()`.
constexpr char kFirstLine[] = "Ethernet1/1 is 1\n";
constexpr char kHardwareLine[] = "  Hardware: 10/100/1000 Ethernet, address: 0210.2030.4050 (bia 0210.2030.4050)\n";
constexpr char kMtuLine[] = "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n";
constexpr char kLoadLine[] = "     reliability 0/255, txload 0/255, rxload 0/255\n";
constexpr char kEncapsulationLine[] = "  Encapsulation ARPA\n";
constexpr char kModeLine[] = "  Port mode is 524288\n";
constexpr char kDuplexLine[] = "  11-duplex, 1000\n";

std::string shown(RecordingPlatform& platform, pm_port_info_t port, port_data_t data) {
  pm_cli_show_port_info(platform.output(), &port, &data);
  return platform.text();
}

// The block of an Ethernet port.
std::string block_of(pm_port_info_t port, const port_data_t& data) {
  RecordingPlatform platform;
  return shown(platform, named(kPort, port), data);
}

std::string plain_block() {
  return std::string(kFirstLine) + kHardwareLine + kMtuLine + kLoadLine + kEncapsulationLine + kModeLine + kDuplexLine;
}

TEST(PortBlock, PhysicalPortShowsEveryLineInItsOrder) {
  RecordingPlatform platform;
  platform.enum_texts[0x01D9][1] = "up";
  pm_port_info_t port = named(kPort, port_record());
  set_description(port, "uplink to core");

  EXPECT_EQ(shown(platform, port, everything()),
            "Ethernet1/1 is up\n"
            "  Hardware: 10/100/1000 Ethernet, address: 0210.2030.4050 (bia 0210.2030.4050)\n"
            "  Description: uplink to core\n"
            "  Internet Address is 10.1.2.3/24\n"
            "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
            "     reliability 255/255, txload 2/255, rxload 3/255\n"
            "  Encapsulation ARPA\n"
            "  Port mode is 524288\n"
            "  11-duplex, 1000, media type is 10Gbase-LR\n"
            "  Input flow-control is 8, output flow-control is 1\n"
            "  Auto-mdix is turned 1\n"
            "  Rate mode is 13\n"
            "  Switchport monitor is 15 \n"
            "  Last link flapped 1week(s) 0day(s)\n"
            "  Last clearing of \"show interface\" counters 1w0d\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, kPort},
                                       {0x022A01D9, 1},
                                       {0x302A0273, "10/100/1000 Ethernet"},
                                       {0x0F2A0274, kBurnedInMac},
                                       {0x0F2A0275, kBurnedInMac},
                                       {0x302A01DC, "uplink to core"},
                                       {0x1E2A0276, "10.1.2.3"},
                                       {0x142A0277, 24},
                                       {0x142A0278, 1500},
                                       {0x142A0279, 1000000},
                                       {0x142A027B, 200},
                                       {0x302A027C, "255"},
                                       {0x302A027D, "2"},
                                       {0x302A027E, "3"},
                                       {0x022A0283, 0x00080000},
                                       {0x022A0281, 11},
                                       {0x022A0282, 1000},
                                       {0x302A0287, "10Gbase-LR"},
                                       {0x022A0288, 8},
                                       {0x022A0289, 1},
                                       {0x022A028A, 1},
                                       {0x022A0284, 13},
                                       {0x022A028B, 15},
                                       {0x302A0293, "1week(s) 0day(s)"},
                                       {0x302A0292, "1w0d"}}));
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.sends, 0U);
}

TEST(PortBlock, EachValueIsAPieceOfItsLine) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kPort, port_record());
  set_description(port, "uplink");
  shown(platform, port, everything());

  const std::vector<std::string> printed = formats(platform);
  for (const char* const format : {"%s ",
                                   "is %s",
                                   ", address: %s",
                                   " (bia %s)",
                                   "  Description: %s\n",
                                   "  Internet Address is %s",
                                   "/%s\n",
                                   "  MTU %s bytes,",
                                   " BW %s Kbit,",
                                   " DLY %s usec,\n",
                                   "     reliability %s/255,",
                                   " txload %s/255,",
                                   " rxload %s/255\n",
                                   "  Port mode is %s\n",
                                   "  %s-duplex,",
                                   " %s",
                                   ", media type is %s\n",
                                   "  Input flow-control is %s,",
                                   " output flow-control is %s\n",
                                   "  Auto-mdix is turned %s\n",
                                   "  Rate mode is %s\n",
                                   "  Switchport monitor is %s \n",
                                   "  Last link flapped %s\n",
                                   "  Last clearing of \"show interface\" counters %s\n"}) {
    EXPECT_EQ(std::count(printed.begin(), printed.end(), format), 1) << format;
  }
}

TEST(PortBlock, PlainPortShowsTheLinesThatEveryPortHas) {
  EXPECT_EQ(block_of(port_record(), physical_data()), plain_block());
}

// Where each field stands on the wire, byte for byte.
TEST(PortBlock, RecordIsReadAtItsWireOffsets) {
  octets wire(328, 0);
  const auto put = [&wire](std::size_t offset, std::initializer_list<int> bytes) {
    for (const int byte : bytes) wire[offset++] = static_cast<uint8>(byte);
  };
  put(0, {0x68, 0x00, 0x10, 0x00});                      // if_index: kind 26, slot 0, port 1
  put(8, {'d', 'e', 's', 'c'});                          // port_name
  put(89, {0x00, 0x40, 0x00, 0x00});                     // admin_port_mode
  put(98, {0x00, 0x06});                                 // admin_port_flow_ctrl
  put(106, {0x23, 0xF0});                                // admin_rxbufsize: 9200
  put(131, {1, 2, 0x02, 0x11, 0x22, 0x33, 0x44, 0x55});  // port_wwn
  put(147, {0x00, 0x10, 0x00, 0x00});                    // oper_port_mode: trunk
  put(151, {0x00, 0x00, 0x27, 0x10});                    // oper_port_speed: 10000
  put(157, {2});                                         // oper_port_state
  put(158, {29});                                        // oper_state_reason
  put(209, {21});                                        // oper_port_duplex
  put(210, {22});                                        // admin_port_duplex
  put(226, {23});                                        // admin_port_rate_mode
  put(256, {0x00, 0x00, 0x00, 0x21});                    // admin_port_delay: 33
  put(260, {0x00, 0x98, 0x96, 0x80});                    // admin_port_bandwidth: 10000000
  put(276, {0x02, 0xC0, 0xFF, 0xEE, 0x00, 0x01});        // router_mac
  put(282, {0x00, 0x00, 0x0F, 0xFE});                    // admin_si_vlan_id: 4094
  put(286, {0x00, 0x01});                                // admin_mdix_mode
  put(288, {0x00, 0x00, 0x00, 0x18});                    // span_mode: 24
  pm_port_info_t port;
  ASSERT_EQ(sizeof port, wire.size());
  std::memcpy(&port, wire.data(), wire.size());
  port_data_t data = everything();
  data.last_flapped[0] = data.last_cleared[0] = '\0';

  RecordingPlatform platform;
  EXPECT_EQ(shown(platform, port, data),
            "Ethernet1/2 is 2 (29)\n"
            "  Hardware: 10/100/1000 Ethernet, address: 0211.2233.4455 (bia 0211.2233.4455)\n"
            "  Description: desc\n"
            "  Internet Address is 10.1.2.3/24\n"
            "  MTU 9200 bytes, BW 10000000 Kbit, DLY 330 usec,\n"
            "     reliability 255/255, txload 2/255, rxload 3/255\n"
            "  Encapsulation 802.1Q Virtual LAN, Vlan ID 4094\n"
            "  Port mode is 4194304\n"
            "  22-duplex, 10000, media type is 10Gbase-LR\n"
            "  Input flow-control is 2, output flow-control is 4\n"
            "  Auto-mdix is turned 1\n"
            "  Rate mode is 23\n"
            "  Switchport monitor is 24 \n");
  data.layer2 = 0;
  platform.clear_output();
  shown(platform, port, data);
  EXPECT_EQ(bound_to(platform, 0x0F2A0274), tuple_value("02c0.ffee.0001"));
}

// ---- Line by line --------------------------------------------------------------------------------------------------

TEST(PortBlock, ReasonIsShownUnlessThePortIsUp) {
  for (const uint8 state : {uint8{0}, uint8{2}, uint8{3}, uint8{255}}) {
    RecordingPlatform platform;
    pm_port_info_t port = named(kPort, port_record());
    port.oper_port_state = state;
    const std::string text = shown(platform, port, physical_data());
    EXPECT_EQ(text.substr(0, text.find('\n')), "Ethernet1/1 is " + std::to_string(state) + " (7)");
    EXPECT_EQ(bound_to(platform, 0x022A01DB), tuple_value(7));
  }
}

TEST(PortBlock, VirtualEthernetShowsWhatItIsBoundTo) {
  RecordingPlatform platform;
  pm_port_info_t port = named(vethernet(5), port_record());
  port.bound_ifindex = kPort;
  port_data_t data = physical_data();
  data.physical = 0;

  EXPECT_EQ(shown(platform, port, data), std::string("Vethernet5 is 1\n"
                                                     "    Bound Interface is Ethernet1/1 \n"
                                                     "  Hardware: 10/100/1000 Ethernet\n") +
                                             kMtuLine + kLoadLine + kEncapsulationLine + kModeLine);
  EXPECT_EQ(bound_to(platform, 0x0C2A0239), tuple_value(kPort));
}

TEST(PortBlock, UnboundVirtualEthernetShowsDashes) {
  RecordingPlatform platform;
  const std::string text = shown(platform, named(vethernet(5), port_record()), physical_data());

  EXPECT_THAT(text, HasSubstr("Vethernet5 is 1\n    Bound Interface is -- \n  Hardware: "));
  EXPECT_EQ(bound_to(platform, 0x0C2A0239), tuple_value("(not bound)"));
}

TEST(PortBlock, OtherKindsShowNoBoundInterface) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kPort, port_record());
  port.bound_ifindex = vethernet(5);

  EXPECT_EQ(shown(platform, port, physical_data()), plain_block());
}

TEST(PortBlock, MultiChassisStatusStandsUnderAPortChannel) {
  RecordingPlatform platform;
  platform.chassis_type = 12;
  platform.multi_chassis_status[kChannel] = "(both chassis: 100% up)";
  port_data_t data = physical_data();
  data.physical = 0;
  data.port_channel = 1;

  EXPECT_EQ(shown(platform, named(kChannel, port_record()), data), std::string("port-channel3 is 1\n"
                                                                               " (both chassis: 100% up)\n") +
                                                                       kHardwareLine + kMtuLine + kLoadLine +
                                                                       kEncapsulationLine + kModeLine + kDuplexLine +
                                                                       "    No members\n");
  EXPECT_EQ(bound_to(platform, 0x302A0272), tuple_value("(both chassis: 100% up)"));
}

TEST(PortBlock, EmptyMultiChassisStatusPrintsNothing) {
  RecordingPlatform platform;
  platform.multi_chassis_status[kChannel] = "";
  port_data_t data = physical_data();
  data.port_channel = 1;

  EXPECT_THAT(shown(platform, named(kChannel, port_record()), data), HasSubstr("port-channel3 is 1\n  Hardware: "));
}

TEST(PortBlock, OnlyAPortChannelIsAskedForItsMultiChassisStatus) {
  RecordingPlatform platform;
  platform.multi_chassis_status[kPort] = "status";
  shown(platform, named(kPort, port_record()), physical_data());

  EXPECT_EQ(platform.count("mcecm_api_sdb_sh_int_po"), 0U);
}

TEST(PortBlock, HardwareOfNeitherPortNorChannelHasNoAddress) {
  port_data_t data{};
  set(data.hardware, "Loopback");
  set(data.encap, "LOOPBACK");
  RecordingPlatform platform;

  EXPECT_EQ(shown(platform, named(loopback(0), port_record()), data), std::string("loopback0 is 1\n"
                                                                                  "  Hardware: Loopback\n") +
                                                                          kMtuLine + kLoadLine +
                                                                          "  Encapsulation LOOPBACK\n");
}

TEST(PortBlock, RoutedPortShowsItsRouterAddressBeforeTheBurnedInOne) {
  RecordingPlatform platform;
  port_data_t data = physical_data();
  data.layer2 = 0;

  EXPECT_EQ(shown(platform, named(kPort, port_record()), data),
            std::string(kFirstLine) +
                "  Hardware: 10/100/1000 Ethernet, address: 02aa.bbcc.ddee (bia 0210.2030.4050)\n" + kMtuLine +
                kLoadLine + kEncapsulationLine + kDuplexLine);
  EXPECT_EQ(bound_to(platform, 0x0F2A0274), tuple_value(kRouterMac));
  EXPECT_EQ(bound_to(platform, 0x0F2A0275), tuple_value(kBurnedInMac));
}

TEST(PortBlock, HardwareMayBeEmpty) {
  port_data_t data = physical_data();
  data.hardware[0] = '\0';

  EXPECT_THAT(block_of(port_record(), data), HasSubstr("\n  Hardware: , address: 0210.2030.4050 (bia "));
}

TEST(PortBlock, DescriptionOf81CharactersIsShownWhole) {
  pm_port_info_t port = port_record();
  set_description(port, std::string(81, 'd'));

  EXPECT_THAT(block_of(port, physical_data()),
              HasSubstr("\n  Description: " + std::string(81, 'd') + "\n  MTU 1500 bytes,"));
}

TEST(PortBlock, OnlyAddressesOfVersion4AreShown) {
  port_data_t data = physical_data();
  data.inet_addr = ipv6_address(64);
  EXPECT_EQ(block_of(port_record(), data), plain_block());
  data.inet_addr = ipv4_address(10, 1, 2, 3, 24);
  data.inet_addr.inet_addr.addr_type = INET_ADDR_TYPE_UNKNOWN;
  EXPECT_EQ(block_of(port_record(), data), plain_block());
  data.inet_addr.inet_addr.addr_type = INET_ADDR_TYPE_IPV4;
  EXPECT_THAT(block_of(port_record(), data), HasSubstr("  Internet Address is 10.1.2.3/24\n"));
}

TEST(PortBlock, DelayIsTenTimesTheRecordedOne) {
  pm_port_info_t port = port_record();
  port.admin_port_delay = 0;
  EXPECT_THAT(block_of(port, physical_data()), HasSubstr(" DLY 0 usec,\n"));
  port.admin_port_delay = 0x1999999A;  // 429496730, ten times which is 2^32 + 4
  EXPECT_THAT(block_of(port, physical_data()), HasSubstr(" DLY 4 usec,\n"));
}

TEST(PortBlock, LargestNumbersFit) {
  pm_port_info_t port = port_record();
  port.admin_rxbufsize = 0xFFFF;
  port.admin_port_bandwidth = 0xFFFFFFFF;
  port.oper_port_speed = 0xFFFFFFFF;
  port_data_t data = physical_data();
  data.reliability = data.tx_load = data.rx_load = 0xFFFF;
  const std::string text = block_of(port, data);

  EXPECT_THAT(text, HasSubstr("  MTU 65535 bytes, BW 4294967295 Kbit, DLY 200 usec,\n"));
  EXPECT_THAT(text, HasSubstr("     reliability 65535/255, txload 65535/255, rxload 65535/255\n"));
  EXPECT_THAT(text, HasSubstr("  11-duplex, 4294967295\n"));
}

TEST(PortBlock, TransmitLoadComesBeforeReceiveLoad) {
  port_data_t data = physical_data();
  data.reliability = 100;
  data.tx_load = 20;
  data.rx_load = 30;

  EXPECT_THAT(block_of(port_record(), data), HasSubstr("     reliability 100/255, txload 20/255, rxload 30/255\n"));
}

TEST(PortBlock, VlanOfASubInterfaceIsItsEncapsulation) {
  pm_port_info_t port = port_record();
  port.admin_si_vlan_id = 100;
  EXPECT_THAT(block_of(port, physical_data()), HasSubstr("  Encapsulation 802.1Q Virtual LAN, Vlan ID 100\n"));
  port.admin_si_vlan_id = 0xFFFFFFFF;
  EXPECT_THAT(block_of(port, physical_data()), HasSubstr("  Encapsulation 802.1Q Virtual LAN, Vlan ID 4294967295"));
}

TEST(PortBlock, EncapsulationIsPlainText) {
  RecordingPlatform platform;
  shown(platform, named(kPort, port_record()), physical_data());
  for (const bound_tuple& tuple : platform.tuples()) EXPECT_NE(tuple.value, tuple_value("ARPA"));
}

TEST(PortBlock, TrunkShowsItsConfiguredMode) {
  pm_port_info_t port = port_record();
  port.oper_port_mode = PM_PORT_MODE_TRUNK;
  EXPECT_THAT(block_of(port, physical_data()), HasSubstr("  Port mode is 524288\n"));
  port.admin_port_mode = 0x00800000;
  port.oper_port_mode = 0x00400000;
  EXPECT_THAT(block_of(port, physical_data()), HasSubstr("  Port mode is 4194304\n"));
}

TEST(PortBlock, DuplexIsTheOperationalOneWhileThePortIsUp) {
  pm_port_info_t port = port_record();
  EXPECT_THAT(block_of(port, physical_data()), HasSubstr("\n  11-duplex, 1000\n"));
  port.oper_port_state = PM_PORT_STATE_DOWN;
  EXPECT_THAT(block_of(port, physical_data()), HasSubstr("\n  12-duplex, 1000\n"));
}

TEST(PortBlock, DuplexOfAnIpsPortIsTheConfiguredOne) {
  EXPECT_THAT(block_of(port_record_in_mode(PM_PORT_MODE_IPS), physical_data()), HasSubstr("\n  12-duplex, 1000\n"));
  pm_port_info_t only_configured = port_record();
  only_configured.admin_port_mode = PM_PORT_MODE_IPS;
  EXPECT_THAT(block_of(only_configured, physical_data()), HasSubstr("\n  11-duplex, 1000\n"));
}

TEST(PortBlock, MediaTypeIsShownWhereATransceiverIsSupported) {
  port_data_t data = physical_data();
  data.fcot_supported = 1;
  EXPECT_EQ(block_of(port_record(), data), std::string(kFirstLine) + kHardwareLine + kMtuLine + kLoadLine +
                                               kEncapsulationLine + kModeLine +
                                               "  11-duplex, 1000, media type is 10Gbase-LR\n"
                                               "  Rate mode is 13\n");
}

TEST(PortBlock, EmptyMediaTypeIsShownEmpty) {
  port_data_t data = physical_data();
  data.fcot_supported = 1;
  data.type[0] = '\0';
  EXPECT_THAT(block_of(port_record(), data), HasSubstr("  11-duplex, 1000, media type is \n"));
}

TEST(PortBlock, FlowControlShowsTheBitsOfEachSide) {
  struct flow_case {
    uint16 configured;
    uint32 receive;
    uint32 send;
  };
  constexpr flow_case kCases[] = {{0, 0, 0}, {1, 0, 1}, {2, 2, 0}, {4, 0, 4}, {8, 8, 0}, {0xF, 10, 5}, {0xFFF0, 0, 0}};
  for (const flow_case& flow : kCases) {
    RecordingPlatform platform;
    pm_port_info_t port = named(kPort, port_record());
    port.admin_port_flow_ctrl = flow.configured;
    port_data_t data = physical_data();
    data.flowcontrol_supported = 1;
    EXPECT_EQ(shown(platform, port, data), plain_block() + "  Input flow-control is " + std::to_string(flow.receive) +
                                               ", output flow-control is " + std::to_string(flow.send) + "\n");
    EXPECT_EQ(bound_to(platform, 0x022A0288), tuple_value(flow.receive));
    EXPECT_EQ(bound_to(platform, 0x022A0289), tuple_value(flow.send));
  }
}

TEST(PortBlock, MdixIsOnOnlyForItsFirstMode) {
  port_data_t data = physical_data();
  data.mdix_supported = 1;
  for (const uint16 mode : {uint16{0}, uint16{1}, uint16{2}, uint16{0x100}, uint16{0xFFFF}}) {
    pm_port_info_t port = port_record();
    port.admin_mdix_mode = mode;
    EXPECT_EQ(block_of(port, data), plain_block() + "  Auto-mdix is turned " + (mode == 1 ? "1\n" : "0\n")) << mode;
  }
}

TEST(PortBlock, SwitchportMonitorHasABlankAtItsEnd) {
  port_data_t data = physical_data();
  data.span_supported = 1;
  pm_port_info_t port = port_record();
  port.span_mode = 0;
  EXPECT_EQ(block_of(port, data), plain_block() + "  Switchport monitor is 0 \n");
}

TEST(PortBlock, BeaconPrintsNothing) {
  port_data_t data = physical_data();
  data.beacon_supported = 1;
  EXPECT_EQ(block_of(port_record(), data), plain_block());
}

TEST(PortBlock, AnyValueOfAFlagButZeroIsTrue) {
  port_data_t data = everything();
  const std::string text = block_of(port_record(), data);
  for (boolean* const flag : {&data.layer2, &data.physical, &data.fcot_supported, &data.mdix_supported,
                              &data.span_supported, &data.flowcontrol_supported})
    *flag = 0x100;

  EXPECT_EQ(block_of(port_record(), data), text);
}

TEST(PortBlock, TimesAreShownWhenTheyAreKnown) {
  port_data_t data = physical_data();
  set(data.last_flapped, "never");
  EXPECT_EQ(block_of(port_record(), data), plain_block() + "  Last link flapped never\n");
  data.last_flapped[0] = '\0';
  set(data.last_cleared, "00:00:10");
  EXPECT_EQ(block_of(port_record(), data), plain_block() + "  Last clearing of \"show interface\" counters 00:00:10\n");
}

// ---- Sub-interfaces and port-channels ------------------------------------------------------------------------------

TEST(PortBlock, SubInterfaceEndsBeforeTheTimes) {
  RecordingPlatform platform;
  const if_index_t sub = sub_interface(kPort, 100);
  pm_port_info_t port = named(sub, port_record());
  port.admin_si_vlan_id = 100;
  port_data_t data = physical_data();
  data.sub_interface = 1;
  data.fcot_supported = 1;
  set(data.last_flapped, "never");
  set(data.last_cleared, "never");

  EXPECT_EQ(shown(platform, port, data), std::string("Ethernet1/1.100 is 1\n") + kHardwareLine + kMtuLine + kLoadLine +
                                             "  Encapsulation 802.1Q Virtual LAN, Vlan ID 100\n" + kModeLine);
}

TEST(PortBlock, SubInterfaceShowsWhatItsFlagsAllow) {
  port_data_t data = physical_data();
  data.sub_interface = data.flowcontrol_supported = data.mdix_supported = data.span_supported = 1;

  EXPECT_EQ(block_of(port_record(), data), std::string(kFirstLine) + kHardwareLine + kMtuLine + kLoadLine +
                                               kEncapsulationLine + kModeLine +
                                               "  Input flow-control is 8, output flow-control is 1\n"
                                               "  Auto-mdix is turned 1\n"
                                               "  Switchport monitor is 15 \n");
}

TEST(PortBlock, MembersOfAPortChannelStandBeforeTheTimes) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_10;
  platform.channel_members[kChannel] = {ethernet(1, 3), ethernet(1, 1), ethernet(1, 2)};
  port_data_t data = physical_data();
  set(data.hardware, "Port-Channel");
  data.physical = 0;
  data.port_channel = 1;
  data.span_supported = 1;
  set(data.last_flapped, "never");

  EXPECT_EQ(shown(platform, named(kChannel, down_port_record()), data),
            std::string("port-channel3 is 2 (7)\n"
                        "  Hardware: Port-Channel, address: 0210.2030.4050 (bia 0210.2030.4050)\n") +
                kMtuLine + kLoadLine + kEncapsulationLine + kModeLine +
                "  12-duplex, 1000\n"
                "  Switchport monitor is 15 \n"
                "  Members in this channel: Eth1/1, Eth1/2, Eth1/3\n"
                "  Last link flapped never\n");
}

TEST(PortBlock, SubInterfaceOfAPortChannelShowsNoMembers) {
  RecordingPlatform platform;
  const if_index_t sub = sub_interface(kChannel, 7);
  platform.channel_members[sub] = platform.channel_members[kChannel] = {ethernet(1, 3)};
  port_data_t data = physical_data();
  data.physical = 0;
  data.port_channel = data.sub_interface = 1;
  const std::string text = shown(platform, named(sub, port_record()), data);

  EXPECT_THAT(text, Not(HasSubstr("Members")));
  EXPECT_THAT(text, Not(HasSubstr("duplex")));
  EXPECT_EQ(platform.count("get_port_channel_members"), 0U);
}

// ---- Resets --------------------------------------------------------------------------------------------------------

TEST(ResetCounter, IsOneLine) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  port.reset_cntr = 0xFFFFFFFF;
  port_data_t data{};
  pm_cli_show_port_reset_cntr(platform.output(), &port, &data);

  EXPECT_EQ(platform.text(), "  4294967295 interface resets\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x142A029C, 0xFFFFFFFFU}}));
}

TEST(ResetCounter, NeedsThePortRecordOnly) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  pm_cli_show_port_reset_cntr(platform.output(), &port, nullptr);

  EXPECT_EQ(platform.text(), "  14 interface resets\n");
}

}  // namespace
}  // namespace pmcli_test
