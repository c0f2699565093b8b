// The data of one interface, by kind of interface.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

using port_data_t = pm_cli_common_show_intf_data_t;

// Every field but the address, for a comparison that reads well when it fails.
std::string summary(const port_data_t& data) {
  std::ostringstream text;
  text << "hardware=" << data.hardware << " type=" << data.type << " encap=" << data.encap << " layer2=" << data.layer2
       << " sub=" << data.sub_interface << " fcot=" << data.fcot_supported << " channel=" << data.port_channel
       << " physical=" << data.physical << " beacon=" << data.beacon_supported << " mdix=" << data.mdix_supported
       << " span=" << data.span_supported << " flow=" << data.flowcontrol_supported << " loads=" << data.reliability
       << ',' << data.rx_load << ',' << data.tx_load << " cleared=" << data.last_cleared
       << " flapped=" << data.last_flapped;
  return text.str();
}

// Starts from a record full of rubbish.
port_data_t data_of(if_index_t if_index) {
  port_data_t data;
  std::memset(&data, 0xA5, sizeof data);
  pm_cli_get_port_data(if_index, RecordingPlatform::q(), &data);
  return data;
}

bool has_no_address(const port_data_t& data) {
  return data.inet_addr.inet_addr.addr_type == 0U && data.inet_addr.prefix_len == 0U && data.inet_addr.if_index == 0U;
}

// A transceiver response of this length with this value in byte 8.
octets transceiver_response(std::size_t length, uint8 supported) {
  octets response(length);
  if (length > 8) response[8] = supported;
  return response;
}

TEST(PortData, EthernetPortHasWhatItsCardAndItsTransceiverSay) {
  RecordingPlatform platform;
  platform.capabilities[kPort] = port_capabilities("10Gbase-LR");
  platform.capabilities[kPort].mdix = 1;
  platform.transceiver_block = transceiver_response(267, 1);

  EXPECT_EQ(summary(data_of(kPort)),
            "hardware=10/100/1000 Ethernet type=10Gbase-LR encap=ARPA layer2=1 sub=0 fcot=1 channel=0 physical=1 "
            "beacon=1 mdix=1 span=1 flow=1 loads=0,0,0 cleared= flapped=");
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.loader_events,
            (std::vector<std::string>{"open libcrdcfg.so lazy", "find crdcfg_get_port_cap", "close libcrdcfg.so"}));
}

TEST(PortData, TransceiverIsAskedForThisPortOnly) {
  RecordingPlatform platform;
  platform.transceiver_block = transceiver_response(267, 1);
  data_of(kPort);

  expect_one_query(platform, kPort);
}

TEST(PortData, EthernetPortWithoutCapabilitiesHasNoHardwareNorMediaType) {
  RecordingPlatform platform;

  EXPECT_EQ(summary(data_of(kPort)),
            "hardware= type= encap=ARPA layer2=1 sub=0 fcot=0 channel=0 physical=1 beacon=1 mdix=0 span=1 flow=1 "
            "loads=0,0,0 cleared= flapped=");
  EXPECT_EQ(platform.text(), "crdcfg_get_port_cap failed with <system error 40290037>\n");
}

TEST(PortData, MissingCardConfigurationLibraryIsSilent) {
  RecordingPlatform platform;
  platform.libraries.erase(CRDCFG_LIBRARY);

  EXPECT_EQ(std::string(data_of(kPort).hardware), "");
  EXPECT_EQ(platform.text(), "");
}

TEST(PortData, HardwareListsTheSpeeds) {
  struct speed_case {
    uint8 bits;
    const char* hardware;
  };
  constexpr speed_case kCases[] = {
      {0, " Ethernet"},
      {1, "10 Ethernet"},
      {2, "100 Ethernet"},
      {4, "1000 Ethernet"},
      {8, "10000 Ethernet"},
      {3, "10/100 Ethernet"},
      {12, "1000/10000 Ethernet"},
      {15, "10/100/1000/10000 Ethernet"},
      {16, " Ethernet"},  // auto is not listed
      {31, "10/100/1000/10000 Ethernet"},
  };
  for (const speed_case& speed : kCases) {
    RecordingPlatform platform;
    platform.capabilities[kPort] = port_capabilities("SFP", speed.bits);
    EXPECT_EQ(std::string(data_of(kPort).hardware), speed.hardware) << "speed bits " << int{speed.bits};
  }
}

TEST(PortData, SatellitePortIsAlwaysLayer2) {
  RecordingPlatform platform;
  const if_index_t port = satellite(100, 1, 1);
  platform.capabilities[port] = port_capabilities("SFP", 4);
  platform.layers[port] = IF_LAYER_3;

  EXPECT_EQ(summary(data_of(port)),
            "hardware=1000 Ethernet type=SFP encap=ARPA layer2=1 sub=0 fcot=0 channel=0 physical=1 beacon=1 mdix=0 "
            "span=1 flow=1 loads=0,0,0 cleared= flapped=");
  EXPECT_THAT(platform.interface_manager_starts, IsEmpty());
}

TEST(PortData, PortsOfKind2AreNotAskedForTheirLayer) {
  RecordingPlatform platform;
  platform.layers[kPort] = IF_LAYER_3;

  EXPECT_EQ(data_of(kPort).layer2, 1U);
  EXPECT_EQ(platform.count("im_get_ifindex_layermode_list"), 0U);
}

TEST(PortData, LayerOfKind26IsThatOfTheInterfaceManager) {
  struct layer_case {
    uint32 layer;
    boolean layer2;
  };
  constexpr layer_case kCases[] = {{2, 1}, {3, 0}, {0, 0}, {1, 0}, {0x02000000, 0}, {0x20002, 0}};
  for (const layer_case& expected : kCases) {
    RecordingPlatform platform;
    platform.capabilities[kRoutablePort] = port_capabilities("SFP", 4);
    platform.layers[kRoutablePort] = expected.layer;
    EXPECT_EQ(data_of(kRoutablePort).layer2, expected.layer2) << "layer word " << expected.layer;
    EXPECT_EQ(platform.interface_manager_starts, (std::vector<std::string>{"262 0 clish"}));
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(PortData, LayerThatCannotBeAskedIsNotLayer2) {
  RecordingPlatform platform;
  platform.capabilities[kRoutablePort] = port_capabilities("SFP", 4);
  platform.fail_with("im_ext_sbcr_init", 0x1A2B);

  EXPECT_EQ(summary(data_of(kRoutablePort)),
            "hardware=1000 Ethernet type=SFP encap=ARPA layer2=0 sub=0 fcot=0 channel=0 physical=1 beacon=1 mdix=0 "
            "span=1 flow=1 loads=0,0,0 cleared= flapped=");
  EXPECT_EQ(platform.terminal(), "im_ext_sbcr_init failed: 0x1a2b (<system error 1A2B>)\n");
  EXPECT_EQ(platform.count("im_get_ifindex_layermode_list"), 0U);
}

TEST(PortData, BadStatusOfTheLayerIsPrintedAndTheLayerStillRead) {
  RecordingPlatform platform;
  platform.capabilities[kRoutablePort] = port_capabilities("SFP", 4);
  platform.interface_manager_status = 0x77;

  EXPECT_EQ(data_of(kRoutablePort).layer2, 1U);
  EXPECT_THAT(platform.terminal(), HasSubstr("if_info_status: 0x77\n"));
}

TEST(PortData, SubInterfaceHasNoneOfThePortsFeatures) {
  const if_index_t sub = sub_interface(kPort, 100);
  RecordingPlatform platform;
  platform.capabilities[sub] = port_capabilities("SFP", 7);
  platform.capabilities[sub].mdix = 1;
  platform.transceiver_block = transceiver_response(267, 1);

  EXPECT_EQ(summary(data_of(sub)),
            "hardware=10/100/1000 Ethernet type=SFP encap=ARPA layer2=1 sub=1 fcot=1 channel=0 physical=1 beacon=0 "
            "mdix=0 span=0 flow=0 loads=0,0,0 cleared= flapped=");
}

TEST(PortData, ManagementPortIsPhysicalAndNothingElse) {
  RecordingPlatform platform;

  EXPECT_EQ(summary(data_of(mgmt())),
            "hardware=GigabitEthernet type= encap=ARPA layer2=0 sub=0 fcot=0 channel=0 physical=1 beacon=0 mdix=0 "
            "span=0 flow=0 loads=0,0,0 cleared= flapped=");
  EXPECT_THAT(platform.loader_events, IsEmpty());
  EXPECT_THAT(platform.port_queries, IsEmpty());
}

TEST(PortData, ManagementPortOfChassis17IsPlainEthernet) {
  for (uint32 chassis = 0; chassis <= 30; ++chassis) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    EXPECT_EQ(std::string(data_of(mgmt()).hardware), chassis == 17 ? "Ethernet" : "GigabitEthernet") << chassis;
  }
}

TEST(PortData, ManagementPortOfAnUnreadableChassisIsGigabit) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_17;
  platform.fail_with("pdb_get_chassis_type", PM_ERR_GENERAL);

  EXPECT_EQ(std::string(data_of(mgmt()).hardware), "GigabitEthernet");
}

TEST(PortData, LoopbackHasNoFlagAtAll) {
  RecordingPlatform platform;

  EXPECT_EQ(summary(data_of(loopback(0))),
            "hardware=Loopback type= encap=LOOPBACK layer2=0 sub=0 fcot=0 channel=0 physical=0 beacon=0 mdix=0 "
            "span=0 flow=0 loads=0,0,0 cleared= flapped=");
}

TEST(PortData, PortChannelAsksForItsLayerOnly) {
  RecordingPlatform platform;
  platform.transceiver_block = transceiver_response(267, 1);
  platform.capabilities[kChannel] = port_capabilities("SFP", 7);

  EXPECT_EQ(summary(data_of(kChannel)),
            "hardware=Port-Channel type= encap=ARPA layer2=1 sub=0 fcot=0 channel=1 physical=0 beacon=1 mdix=0 "
            "span=1 flow=1 loads=0,0,0 cleared= flapped=");
  EXPECT_THAT(platform.port_queries, IsEmpty());
  EXPECT_THAT(platform.loader_events, IsEmpty());
}

TEST(PortData, RoutedPortChannelIsNotLayer2) {
  RecordingPlatform platform;
  platform.layers[kChannel] = IF_LAYER_3;

  EXPECT_EQ(data_of(kChannel).layer2, 0U);
}

TEST(PortData, PortChannelWithoutAnAnswerIsNotLayer2) {
  RecordingPlatform platform;
  platform.fail_with("im_get_ifindex_layermode_list", 0x55);

  EXPECT_EQ(data_of(kChannel).layer2, 0U);
}

TEST(PortData, SubInterfaceOfAPortChannelKeepsSpanOnly) {
  RecordingPlatform platform;
  const if_index_t sub = sub_interface(kChannel, 7);
  platform.layers[sub] = IF_LAYER_3;

  EXPECT_EQ(summary(data_of(sub)),
            "hardware=Port-Channel type= encap=ARPA layer2=0 sub=1 fcot=0 channel=1 physical=0 beacon=0 mdix=0 "
            "span=1 flow=0 loads=0,0,0 cleared= flapped=");
}

TEST(PortData, VirtualEthernetIsLayer2) {
  RecordingPlatform platform;

  EXPECT_EQ(summary(data_of(vethernet(5))),
            "hardware=VEthernet type= encap=ARPA layer2=1 sub=0 fcot=0 channel=0 physical=0 beacon=0 mdix=0 span=0 "
            "flow=0 loads=0,0,0 cleared= flapped=");
  EXPECT_THAT(platform.interface_manager_starts, IsEmpty());
}

TEST(PortData, OtherKindsAreUnknownHardware) {
  const if_index_t others[] = {
      port_channel(1, IF_TYPE_PORT_CHANNEL),
      fibre_channel(1, 1),
      numbered(IF_TYPE_INBAND, 0),
      ethernet(1, 1, IF_TYPE_GIG_ETHERNET),
      0,
  };
  for (const if_index_t other : others) {
    RecordingPlatform platform;
    EXPECT_EQ(summary(data_of(other)),
              "hardware=-- type= encap=-- layer2=0 sub=0 fcot=0 channel=0 physical=0 beacon=0 mdix=0 span=0 flow=0 "
              "loads=0,0,0 cleared= flapped=")
        << "index " << other;
  }
}

TEST(PortData, KindThatCannotBeReadIsUnknownHardware) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_type", PM_ERR_GENERAL);

  EXPECT_EQ(std::string(data_of(kPort).hardware), "--");
}

TEST(PortData, FirstAddressIsTheShownOneForEveryKind) {
  const if_index_t kinds[] = {kPort,       kRoutablePort, satellite(100, 1, 1), mgmt(),
                              loopback(0), kChannel,      vethernet(1),         port_channel(1, IF_TYPE_PORT_CHANNEL)};
  for (const if_index_t if_index : kinds) {
    RecordingPlatform platform;
    platform.addresses[if_index] = {ipv4_address(10, 1, 2, 3, 24), ipv4_address(192, 0, 2, 9, 30)};
    const port_data_t data = data_of(if_index);
    EXPECT_EQ(data.inet_addr.inet_addr.addr_type, 1U);
    EXPECT_EQ(data.inet_addr.inet_addr.a.ipv4_addr[0], 10);
    EXPECT_EQ(data.inet_addr.inet_addr.a.ipv4_addr[3], 3);
    EXPECT_EQ(data.inet_addr.prefix_len, 24U);
  }
}

TEST(PortData, FirstAddressMayBeOfVersion6) {
  RecordingPlatform platform;
  platform.addresses[kPort] = {ipv6_address(64), ipv4_address(10, 1, 2, 3, 24)};

  EXPECT_EQ(data_of(kPort).inet_addr.inet_addr.addr_type, 2U);
}

TEST(PortData, InterfaceWithoutAnAddressHasNone) {
  RecordingPlatform null_list;
  EXPECT_TRUE(has_no_address(data_of(loopback(0))));
  null_list.addresses[loopback(1)] = {};
  EXPECT_TRUE(has_no_address(data_of(loopback(1))));
}

TEST(PortData, FailedAddressQueryIsSilent) {
  RecordingPlatform platform;
  platform.addresses[loopback(0)] = {ipv4_address(10, 1, 2, 3, 24)};
  platform.fail_with("ipconf_get_if_inet_addrs", PM_ERR_GENERAL);

  EXPECT_TRUE(has_no_address(data_of(loopback(0))));
  EXPECT_EQ(platform.text(), "");
}

TEST(PortData, FailedTransceiverQueryIsSilent) {
  for (const int32 result : {-1, int32{PM_ERR_GENERAL}}) {
    RecordingPlatform platform;
    platform.capabilities[kPort] = port_capabilities("SFP", 4);
    platform.transceiver_block = transceiver_response(267, 1);
    platform.fail_with("pm_cmi_get_fcot_info", result);
    EXPECT_EQ(data_of(kPort).fcot_supported, 0U);
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(PortData, AnyValueButZeroMeansATransceiverIsSupported) {
  for (const uint8 supported : {uint8{0}, uint8{1}, uint8{2}, uint8{0x80}, uint8{0xFF}}) {
    RecordingPlatform platform;
    platform.transceiver_block = transceiver_response(9, supported);
    EXPECT_EQ(data_of(kPort).fcot_supported != 0, supported != 0) << int{supported};
  }
}

// ---- The layer query -----------------------------------------------------------------------------------------------

struct layer_answer {
  if_info_t record;
  syserr_t result;
};

layer_answer ask_layer(if_index_t if_index) {
  layer_answer answer;
  std::memset(&answer.record, 0xA5, sizeof answer.record);
  answer.result = pm_cli_get_layer(if_index, RecordingPlatform::q(), &answer.record);
  return answer;
}

TEST(LayerQuery, AnswerIsInTheRecord) {
  RecordingPlatform platform;
  platform.layers[kChannel] = IF_LAYER_3;
  const layer_answer answer = ask_layer(kChannel);

  EXPECT_EQ(answer.result, 0);
  EXPECT_EQ(answer.record.ifindex, kChannel);
  EXPECT_EQ(answer.record.val.layer, 3U);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.interface_manager_starts, (std::vector<std::string>{"262 0 clish"}));
}

TEST(LayerQuery, FailedStartIsPrintedAndReturned) {
  RecordingPlatform platform;
  platform.fail_with("im_ext_sbcr_init", static_cast<int32>(0xC0DE0001));

  EXPECT_EQ(ask_layer(kChannel).result, static_cast<int32>(0xC0DE0001));
  EXPECT_EQ(platform.terminal(), "im_ext_sbcr_init failed: 0xc0de0001 (<system error C0DE0001>)\n");
}

TEST(LayerQuery, FailedCallIsPrintedAndReturnedAndLeavesAClearedRecord) {
  RecordingPlatform platform;
  platform.fail_with("im_get_ifindex_layermode_list", 0x40290003);
  const layer_answer answer = ask_layer(0x04001000);

  EXPECT_EQ(answer.result, 0x40290003);
  EXPECT_EQ(platform.terminal(),
            "im_get_ifindex_layermode_list failed for 0x4001000 \n"
            "status: 0x40290003 - <system error 40290003>\n"
            "if_info_status: 0x0\n");
  if_info_t cleared{};
  std::memset(&cleared, 0, sizeof cleared);
  cleared.ifindex = 0x04001000;
  EXPECT_EQ(std::memcmp(&answer.record, &cleared, sizeof cleared), 0);
}

TEST(LayerQuery, BadStatusIsPrintedButNotReturned) {
  RecordingPlatform platform;
  platform.interface_manager_status = static_cast<int32>(0x80000009);
  platform.syserr_texts[0] = "SUCCESS";
  const layer_answer answer = ask_layer(0x58003000);

  EXPECT_EQ(answer.result, 0);
  EXPECT_EQ(answer.record.val.layer, 2U);
  EXPECT_EQ(platform.terminal(),
            "im_get_ifindex_layermode_list failed for 0x58003000 \n"
            "status: 0x0 - SUCCESS\n"
            "if_info_status: 0x80000009\n");
}

TEST(LayerQuery, CodeWithoutATextPrintsAnEmptyOne) {
  RecordingPlatform platform;
  platform.fail_with("im_ext_sbcr_init", 5);
  platform.syserr_texts[5] = std::nullopt;
  ask_layer(kChannel);

  EXPECT_EQ(platform.terminal(), "im_ext_sbcr_init failed: 0x5 ()\n");
}

}  // namespace
}  // namespace pmcli_test
