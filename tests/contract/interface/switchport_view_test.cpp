// The switchport-style detailed view and its lines.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

std::string view_of(RecordingPlatform& platform, if_index_t if_index, pm_port_info_t port) {
  port.if_index = if_index;
  print_eth_port_info(platform.output(), RecordingPlatform::q(), &port);
  return platform.text();
}

// One packet in, two out.
show_eth_intf_resp_t some_traffic() {
  show_eth_intf_resp_t response{};
  response.if_data.ifi_ipackets = 1;
  response.if_data.ifi_opackets = 2;
  return response;
}

constexpr char kSomeTraffic[] =
    "    5 minutes input rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"
    "    5 minutes output rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"
    "    1 packets input, 0 bytes\n"
    "      0 multicast frames, 0 compressed\n"
    "      0 input errors, 0 frame, 0 overrun 0 fifo\n"
    "    2 packets output, 0 bytes, 0 underruns\n"
    "      0 output errors, 0 collisions, 0 fifo\n"
    "      0 carrier errors\n";

// ---- Which kinds ---------------------------------------------------------------------------------------------------

TEST(SwitchportView, KindsItDoesNotServeAreAnError) {
  struct kind_case {
    if_index_t if_index;
    const char* text;
  };
  const kind_case kCases[] = {
      {ethernet(1, 1, IF_TYPE_ETHERNET_L3), "error: invalid if index type(26)\n"},
      {vethernet(1), "error: invalid if index type(29)\n"},
      {satellite(100, 1, 1), "error: invalid if index type(31)\n"},
      {fibre_channel(1, 1), "error: invalid if index type(1)\n"},
      {numbered(IF_TYPE_INBAND, 0), "error: invalid if index type(32)\n"},
      {0, "error: invalid if index type(0)\n"},
  };
  for (const kind_case& kind : kCases) {
    RecordingPlatform platform;
    EXPECT_EQ(view_of(platform, kind.if_index, port_record()), kind.text);
    EXPECT_EQ(platform.terminal(), kind.text);
  }
}

TEST(SwitchportView, ChannelThatCarriesFibreChannelPrintsNothing) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  port.phy_port_layer = 1;
  EXPECT_EQ(view_of(platform, kOldChannel, port), "");
}

TEST(SwitchportView, OnlyTheOlderChannelsHaveALayerOfTheirOwn) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  port.phy_port_layer = 1;
  EXPECT_EQ(view_of(platform, kPort, port), "Ethernet1/1 is 1\n");
  platform.clear_output();
  EXPECT_THAT(view_of(platform, kChannel, port), HasSubstr("port-channel3 is 1\nport-channel3 is 1\n"));
  platform.clear_output();
  port.phy_port_layer = 2;
  EXPECT_THAT(view_of(platform, kOldChannel, port), HasSubstr("port-channel4 is 1\nport-channel4 is 1\n"));
}

TEST(SwitchportView, EthernetPortShowsItsStatusOnly) {
  RecordingPlatform platform;
  pm_port_info_t port = down_port_record();
  set_description(port, "uplink");
  port.is_part_of_bundle = 1;
  EXPECT_EQ(view_of(platform, kPort, port), "Ethernet1/1 is 2 (7)\n");
}

TEST(SwitchportView, LoopbackShowsItsStatusTwice) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  set_description(port, "router id");
  EXPECT_EQ(view_of(platform, loopback(0), port),
            "loopback0 is 1\n"
            "loopback0 is 1\n"
            "    Port description is router id\n");
}

TEST(SwitchportView, ManagementPortShowsItsStatusTwice) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = port_record();
  platform.kernel_interfaces["eth1"] = {.hardware_address = {0x02, 0, 0, 0x12, 0x34, 0x56}, .mtu_bytes = 1400};
  pm_port_info_t port = port_record();
  set_description(port, "console");
  EXPECT_EQ(view_of(platform, mgmt(), port),
            "mgmt0 is 1\n"
            "mgmt0 is 1\n"
            "    Port description is console\n"
            "    Hardware is GigabitEthernet\n"
            "    Address is 0200.0012.3456\n"
            "    MTU 1400 bytes Speed 1000 Mbps 11 Duplex\n");
}

// ---- Port-channels -------------------------------------------------------------------------------------------------

TEST(SwitchportView, PortChannelShowsEveryLineInItsOrder) {
  RecordingPlatform platform;
  platform.channel_members[kChannel] = {ethernet(1, 2), ethernet(1, 1)};
  pm_port_info_t port = port_record();
  set_description(port, "backbone");
  port.is_part_of_bundle = 1;
  port.bundle_if_index = port_channel(9);

  EXPECT_EQ(view_of(platform, kChannel, port), std::string("port-channel3 is 1\n"
                                                           "port-channel3 is 1\n"
                                                           "    Port description is backbone\n"
                                                           "    Belongs to port-channel9\n"
                                                           "    Hardware is GigabitEthernet, address is "
                                                           "0210.2030.4050\n"
                                                           "    MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec\n"
                                                           "    Port mode is 524288\n"
                                                           "    Speed is 1000\n"
                                                           "    Duplex mode is 11\n"
                                                           "    Receive flow-control is desired, Send flow-control "
                                                           "is on\n"
                                                           "  Members in this channel: Eth1/1, Eth1/2\n") +
                                                   kNoTraffic);
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, kChannel},
                                       {0x022A01D9, 1},
                                       {0x0C2A01D8, kChannel},
                                       {0x022A01D9, 1},
                                       {0x302A01DC, "backbone"},
                                       {0x142A0271, "port-channel9"},
                                       {0x0F2A0274, kBurnedInMac},
                                       {0x142A0278, 1500},
                                       {0x142A0279, 1000000},
                                       {0x142A027B, 200},
                                       {0x022A0283, 0x00080000},
                                       {0x022A0282, 1000},
                                       {0x022A0281, 11}}));
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.sends, 0U);
  EXPECT_EQ(platform.count("pm_get_clear_eth_stats"), 0U);
}

TEST(SwitchportView, OlderChannelReadsLikeTheNewerOne) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_UNKNOWN;
  platform.channel_members[kOldChannel] = {ethernet(1, 2)};

  EXPECT_EQ(view_of(platform, kOldChannel, down_port_record()),
            std::string("port-channel4 is 2 (7)\n"
                        "port-channel4 is 2 (7)\n"
                        "    Hardware is GigabitEthernet, address is 0210.2030.4050\n"
                        "    MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec\n"
                        "    Port mode is 524288\n"
                        "    Speed is 1000\n"
                        "    Duplex mode is 12\n"
                        "    Receive flow-control is desired, Send flow-control is on\n"
                        "    Member[1] : Ethernet1/2\n") +
                kNoTraffic);
}

TEST(SwitchportView, IpsChannelShowsTwoModesAndItsTraffic) {
  RecordingPlatform platform;
  platform.eth_stats[kChannel] = some_traffic();
  platform.channel_members[kChannel] = {ethernet(1, 2)};

  EXPECT_EQ(view_of(platform, kChannel, port_record_in_mode(PM_PORT_MODE_IPS)),
            std::string("port-channel3 is 1\n"
                        "port-channel3 is 1\n"
                        "    Hardware is GigabitEthernet, address is 0210.2030.4050\n"
                        "    MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec\n"
                        "    Port mode is IPS\n"
                        "    Port mode is 512\n"
                        "    Speed is 1000\n"
                        "    Duplex mode is 12\n"
                        "    Receive flow-control is desired, Send flow-control is on\n"
                        "  Members in this channel: Eth1/2\n") +
                kSomeTraffic);
}

TEST(SwitchportView, OlderIpsChannelAsksThePortChannelService) {
  RecordingPlatform platform;
  platform.channel_eth_stats[kOldChannel] = some_traffic();

  EXPECT_THAT(view_of(platform, kOldChannel, port_record_in_mode(PM_PORT_MODE_IPS)), HasSubstr(kSomeTraffic));
  EXPECT_EQ(platform.count("pm_port_channel_get_clear_eth_stats"), 1U);
  EXPECT_EQ(platform.count("pm_get_clear_eth_stats"), 0U);
}

TEST(SwitchportView, FailedFetchEndsTheViewOfAnIpsChannel) {
  for (const int32 result : {-1, int32{PM_ERR_GENERAL}}) {
    for (const if_index_t channel : {kChannel, kOldChannel}) {
      RecordingPlatform platform;
      platform.eth_stats[kChannel] = platform.channel_eth_stats[kOldChannel] = some_traffic();
      platform.fail_with(channel == kChannel ? "pm_get_clear_eth_stats" : "pm_port_channel_get_clear_eth_stats",
                         result);
      pm_port_info_t port = port_record_in_mode(PM_PORT_MODE_IPS);
      set_description(port, "storage");
      const std::string status = channel == kChannel ? "port-channel3 is 1\n" : "port-channel4 is 1\n";
      EXPECT_EQ(view_of(platform, channel, port), status + status + "    Port description is storage\n");
    }
  }
}

TEST(SwitchportView, TrunkShowsItsConfiguredMode) {
  RecordingPlatform platform;
  pm_port_info_t port = port_record();
  port.oper_port_mode = PM_PORT_MODE_TRUNK;
  view_of(platform, kChannel, port);
  EXPECT_EQ(bound_to(platform, 0x022A0283), tuple_value(PM_PORT_MODE_ACCESS));
}

TEST(SwitchportView, FlowControlOfSeveralBitsReadsAsOff) {
  struct flow_case {
    uint16 configured;
    const char* line;
  };
  constexpr flow_case kCases[] = {
      {0x0000, "    Receive flow-control is off, Send flow-control is off\n"},
      {0x0003, "    Receive flow-control is on, Send flow-control is on\n"},
      {0x000C, "    Receive flow-control is desired, Send flow-control is desired\n"},
      {0x000F, "    Receive flow-control is off, Send flow-control is off\n"},
      {0x0002, "    Receive flow-control is on, Send flow-control is off\n"},
      {0x0004, "    Receive flow-control is off, Send flow-control is desired\n"},
  };
  for (const flow_case& flow : kCases) {
    RecordingPlatform platform;
    pm_port_info_t port = port_record();
    port.admin_port_flow_ctrl = flow.configured;
    EXPECT_THAT(view_of(platform, kChannel, port), HasSubstr(flow.line)) << flow.configured;
  }
}

TEST(SwitchportView, SubInterfaceSkipsTheLinesOfItsChannel) {
  const if_index_t sub = sub_interface(kChannel, 7);
  RecordingPlatform platform;
  platform.channel_members[sub] = {ethernet(1, 2)};

  EXPECT_EQ(view_of(platform, sub, port_record()),
            std::string("port-channel3.7 is 1\n"
                        "port-channel3.7 is 1\n"
                        "    Hardware is GigabitEthernet, address is 0210.2030.4050\n"
                        "    MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec\n") +
                kNoTraffic);
  EXPECT_EQ(platform.count("get_port_channel_members"), 0U);
}

TEST(SwitchportView, UnreadableSubInterfaceNumberIsNone) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_sub_intf", PM_ERR_GENERAL);
  EXPECT_THAT(view_of(platform, kChannel, port_record()), HasSubstr("    Port mode is 524288\n    Speed is 1000\n"));
}

TEST(SwitchportView, ChannelOfTenGigabitFibreChannelShowsNoMembers) {
  const if_index_t channel = port_channel(5, IF_TYPE_ETH_PORT_CHANNEL, PC_SUBTYPE_XGFC);
  RecordingPlatform platform;
  platform.channel_members[channel] = {ethernet(1, 2)};
  const std::string text = view_of(platform, channel, port_record());

  EXPECT_THAT(text, HasSubstr("Send flow-control is on\n    5 minutes input rate 0 bits/sec"));
  EXPECT_EQ(platform.count("get_port_channel_members"), 0U);
}

// ---- The lines -----------------------------------------------------------------------------------------------------

TEST(StatusLine, ReasonIsShownUnlessThePortIsUp) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kPort, port_record());
  print_eth_port_status(platform.output(), &port);
  EXPECT_EQ(platform.text(), "Ethernet1/1 is 1\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, kPort}, {0x022A01D9, 1}}));

  platform.clear_output();
  port.oper_port_state = 0;
  port.oper_state_reason = 255;
  print_eth_port_status(platform.output(), &port);
  EXPECT_EQ(platform.text(), "Ethernet1/1 is 0 (255)\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, kPort}, {0x022A01D9, 0}, {0x022A01DB, 255}}));
}

TEST(StatusLine, BadRecordShowsItsErrorInstead) {
  RecordingPlatform platform;
  platform.syserr_texts[0x40290003] = "not allowed";
  pm_port_info_t port = named(kPort, port_record());
  port.status = 0x40290003;
  print_eth_port_status(platform.output(), &port);

  EXPECT_EQ(platform.text(), "Ethernet1/1     Error: 40290003:not allowed\n");
  EXPECT_EQ(platform.terminal(), "    Error: 40290003:not allowed\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, kPort}}));
}

TEST(StatusLine, ErrorIsInUpperCaseAndItsTextMayBeMissing) {
  RecordingPlatform platform;
  platform.syserr_texts[static_cast<syserr_t>(0xABCDEF01)] = std::nullopt;
  pm_port_info_t port = named(kPort, port_record());
  port.status = 0xABCDEF01;
  print_eth_port_status(platform.output(), &port);
  EXPECT_EQ(platform.terminal(), "    Error: ABCDEF01:\n");
}

TEST(SwitchportView, BadRecordEndsItsStatusLineOnly) {
  RecordingPlatform platform;
  platform.syserr_texts[0x40290003] = "not allowed";
  pm_port_info_t port = port_record();
  port.status = 0x40290003;
  set_description(port, "backbone");

  EXPECT_EQ(view_of(platform, kChannel, port),
            std::string("port-channel3     Error: 40290003:not allowed\n"
                        "port-channel3     Error: 40290003:not allowed\n"
                        "    Port description is backbone\n"
                        "    Hardware is GigabitEthernet, address is 0210.2030.4050\n"
                        "    MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec\n"
                        "    Port mode is 524288\n"
                        "    Speed is 1000\n"
                        "    Duplex mode is 11\n"
                        "    Receive flow-control is desired, Send flow-control is on\n"
                        "  No members\n") +
                kNoTraffic);
}

TEST(CommonLines, DescriptionAndChannelFollowTheStatus) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kPort, port_record());
  set_description(port, "uplink");
  port.is_part_of_bundle = 1;
  port.bundle_if_index = kChannel;
  print_eth_port_common_info(platform.output(), &port);

  EXPECT_EQ(platform.text(),
            "Ethernet1/1 is 1\n"
            "    Port description is uplink\n"
            "    Belongs to port-channel3\n");
  EXPECT_EQ(platform.tuples(),
            (Tuples{{0x0C2A01D8, kPort}, {0x022A01D9, 1}, {0x302A01DC, "uplink"}, {0x142A0271, "port-channel3"}}));
}

TEST(CommonLines, OnlyExactlyOneIsAMember) {
  for (const uint32 value : {0U, 2U, 0x100U, 0x01000000U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    pm_port_info_t port = named(kPort, port_record());
    port.is_part_of_bundle = value;
    port.bundle_if_index = kChannel;
    print_eth_port_common_info(platform.output(), &port);
    EXPECT_EQ(platform.text(), "Ethernet1/1 is 1\n") << value;
  }
}

TEST(CommonLines, DescriptionOf81CharactersIsShownWhole) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kPort, port_record());
  set_description(port, std::string(81, 'd'));
  print_eth_port_common_info(platform.output(), &port);
  EXPECT_EQ(platform.text(), "Ethernet1/1 is 1\n    Port description is " + std::string(81, 'd') + "\n");
}

TEST(MtuLine, SubInterfacesReadAlike) {
  for (const int is_subintf : {0, 1}) {
    RecordingPlatform platform;
    pm_port_info_t port = port_record();
    print_eth_mtu_bw_dly(platform.output(), &port, is_subintf);
    EXPECT_EQ(platform.text(), "    MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec\n");
    EXPECT_EQ(platform.tuples(), (Tuples{{0x142A0278, 1500}, {0x142A0279, 1000000}, {0x142A027B, 200}}));
    EXPECT_EQ(formats(platform), (std::vector<std::string>{"    MTU %s bytes,", " BW %s Kbit,", " DLY %s usec\n"}));
  }
}

TEST(LoopbackLines, AreNone) {
  RecordingPlatform platform;
  print_loopback_port_config(platform.output(), loopback(0));
  EXPECT_EQ(platform.text(), "");
}

}  // namespace
}  // namespace pmcli_test
