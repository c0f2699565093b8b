// The fields and the names of interface indexes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "switch/if_index_layout.h"

namespace host {
namespace {

std::string name(if_index_t if_index) {
  std::array<char, 40> buffer;
  return sprintf_if_index(buffer.data(), if_index);
}

std::string short_name(if_index_t if_index) {
  std::array<char, 40> buffer;
  snprintf_if_index_short(buffer.data(), buffer.size(), if_index);
  return buffer.data();
}

struct named_index {
  if_index_t if_index;
  const char* name;
  const char* short_name;
};

TEST(InterfaceName, EveryKindHasItsNames) {
  const named_index kNames[] = {
      {ethernet_index(IF_TYPE_ETHERNET, 0, 0), "Ethernet1/1", "Eth1/1"},
      {ethernet_index(IF_TYPE_ETHERNET_L3, 1, 31), "Ethernet2/32", "Eth2/32"},
      {ethernet_index(IF_TYPE_ETHERNET_L3, 0, 0, 10), "Ethernet1/1.10", "Eth1/1.10"},
      {ethernet_index(IF_TYPE_ETHERNET, kMaxSlot, kMaxPort, kMaxSubInterface), "Ethernet64/256.4095", "Eth64/256.4095"},
      {satellite_index(101, 0, 0), "Ethernet101/1/1", "Eth101/1/1"},
      {satellite_index(255, 15, 0x3FFF), "Ethernet255/16/16384", "Eth255/16/16384"},
      {channel_index(IF_TYPE_ETH_PORT_CHANNEL, 12), "port-channel12", "Po12"},
      {channel_index(IF_TYPE_PORT_CHANNEL, 4095), "port-channel4095", "Po4095"},
      {channel_index(IF_TYPE_ETH_PORT_CHANNEL, 12, PC_SUBTYPE_ORDINARY, 5), "port-channel12.5", "Po12.5"},
      {channel_index(IF_TYPE_ETH_PORT_CHANNEL, 7, PC_SUBTYPE_XGFC), "port-channel7", "Po7"},
      {ethernet_index(IF_TYPE_MGMT, 0, 0), "mgmt0", "mgmt0"},
      {ethernet_index(IF_TYPE_MGMT, 0, 1), "mgmt1", "mgmt1"},
      {numbered_index(IF_TYPE_LOOPBACK, 3), "loopback3", "Lo3"},
      {numbered_index(IF_TYPE_LOOPBACK, 0), "loopback0", "Lo0"},
      {numbered_index(IF_TYPE_VETHERNET, 7), "Vethernet7", "Veth7"},
      {numbered_index(IF_TYPE_VETHERNET, kMaxNumber), "Vethernet67108863", "Veth67108863"},
      {ethernet_index(IF_TYPE_FC, 0, 0), "fc1/1", "fc1/1"},
      {numbered_index(IF_TYPE_FCIP, 5), "fcip5", "fcip5"},
      {ethernet_index(IF_TYPE_ISCSI, 0, 0), "iscsi1/1", "iscsi1/1"},
      {ethernet_index(IF_TYPE_GIG_ETHERNET, 0, 0), "GigabitEthernet1/1", "Gig1/1"},
      {numbered_index(IF_TYPE_SERVER, 3), "server3", "server3"},
      {numbered_index(IF_TYPE_INBAND, 0), "sup-fc0", "sup-fc0"},
      {ethernet_index(IF_TYPE_EXTERNAL, 0, 0), "external1/1", "external1/1"},
      {ethernet_index(IF_TYPE_FC, kMaxFcSlot, kMaxPort), "fc62/256", "fc62/256"},
      {named_fc_index(name_family::bay, 0), "bay1", "bay1"},
      {named_fc_index(name_family::bay, kMaxPort), "bay256", "bay256"},
      {named_fc_index(name_family::external, 9), "ext10", "ext10"},
  };
  for (const named_index& it : kNames) {
    EXPECT_EQ(name(it.if_index), it.name);
    EXPECT_EQ(short_name(it.if_index), it.short_name);
  }
}

TEST(InterfaceName, UnknownKindShowsTheIndex) {
  EXPECT_EQ(name(0), "if0x00000000");
  EXPECT_EQ(name(0xA00000FF), "if0xa00000ff");
  EXPECT_EQ(short_name(0xA00000FF), "if0xa00000ff");
}

TEST(InterfaceName, IsCutAsSnprintfCuts) {
  const if_index_t port = ethernet_index(IF_TYPE_ETHERNET, 0, 47);
  std::array<char, 8> buffer;
  buffer.fill('x');

  EXPECT_EQ(snprintf_if_index(buffer.data(), 8, port), 12);
  EXPECT_STREQ(buffer.data(), "Etherne");

  EXPECT_EQ(snprintf_if_index_short(buffer.data(), 7, port), 7);
  EXPECT_STREQ(buffer.data(), "Eth1/4");

  buffer.fill('x');
  EXPECT_EQ(snprintf_if_index(buffer.data(), 0, port), 12);
  EXPECT_EQ(buffer[0], 'x');
  EXPECT_EQ(snprintf_if_index(nullptr, 0, port), 12);
}

// What one interface answers to every getter; -1 is a refusal.
struct answers {
  int type, slot, port, sub, eth_sub, fc_slot, fc_port, pc_channel, pc_subtype, eth_channel, tunnel, server;
  bool operator==(const answers&) const = default;
};

template <class Value>
int ask(int32 (*getter)(if_index_t, Value*), if_index_t if_index) {
  Value value = 99;
  if (getter(if_index, &value) == 0) return static_cast<int>(value);
  EXPECT_EQ(value, 99) << "a refusing getter stores nothing";
  return -1;
}

answers ask_all(if_index_t it) {
  return {ask(if_index_get_type, it),
          ask(if_index_get_slot, it),
          ask(if_index_get_port, it),
          ask(if_index_get_sub_intf, it),
          ask(if_index_phy_eth_get_sub_intf, it),
          ask(if_index_phy_fc_get_slot, it),
          ask(if_index_phy_fc_get_port, it),
          ask(if_index_port_channel_get_channel_num, it),
          ask(if_index_port_channel_get_subtype, it),
          ask(if_index_eth_port_channel_get_channel_num, it),
          ask(if_index_fcip_get_tunnel, it),
          ask(if_index_server_interface_get_sif_num, it)};
}

TEST(InterfaceIndex, EveryKindAnswersForItsFieldsOnly) {
  const auto eth = ethernet_index(IF_TYPE_ETHERNET, 2, 47, 9);
  EXPECT_EQ(ask_all(eth), (answers{2, 2, 47, 9, 9, -1, -1, -1, -1, -1, -1, -1}));
  const auto routed = ethernet_index(IF_TYPE_ETHERNET_L3, 2, 47);
  EXPECT_EQ(ask_all(routed), (answers{26, 2, 47, 0, 0, -1, -1, -1, -1, -1, -1, -1}));
  const auto satellite = satellite_index(101, 3, 12);
  EXPECT_EQ(ask_all(satellite), (answers{31, 3, 12, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
  const auto fc = ethernet_index(IF_TYPE_FC, 3, 15);
  EXPECT_EQ(ask_all(fc), (answers{1, 3, 15, -1, -1, 3, 15, -1, -1, -1, -1, -1}));
  const auto older = channel_index(IF_TYPE_PORT_CHANNEL, 12);
  EXPECT_EQ(ask_all(older), (answers{4, -1, -1, 0, -1, -1, -1, 12, 2, -1, -1, -1}));
  const auto channel = channel_index(IF_TYPE_ETH_PORT_CHANNEL, 13, PC_SUBTYPE_XGFC, 7);
  EXPECT_EQ(ask_all(channel), (answers{22, -1, -1, 7, -1, -1, -1, -1, 1, 13, -1, -1}));
  EXPECT_EQ(ask_all(ethernet_index(IF_TYPE_MGMT, 0, 1)), (answers{5, 0, 1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
  EXPECT_EQ(ask_all(numbered_index(IF_TYPE_FCIP, 6)), (answers{10, -1, -1, -1, -1, -1, -1, -1, -1, -1, 6, -1}));
  EXPECT_EQ(ask_all(numbered_index(IF_TYPE_SERVER, 8)), (answers{30, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 8}));
  EXPECT_EQ(ask_all(numbered_index(IF_TYPE_LOOPBACK, 5)), (answers{20, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
  EXPECT_EQ(ask_all(ethernet_index(IF_TYPE_EXTERNAL, 4, 5)), (answers{254, 4, 5, -1, -1, -1, -1, -1, -1, -1, -1, -1}));
}

TEST(InterfaceIndex, PortsNamedByANumberStandOnTheFirstSlot) {
  const answers bay{1, 0, 9, -1, -1, 62, 9, -1, -1, -1, -1, -1};
  EXPECT_EQ(ask_all(named_fc_index(name_family::bay, 9)), bay);
  const answers external{1, 0, 9, -1, -1, 63, 9, -1, -1, -1, -1, -1};
  EXPECT_EQ(ask_all(named_fc_index(name_family::external, 9)), external);
}

TEST(InterfaceIndex, SettersReplaceOneNumber) {
  const auto changed = [](int32 (*setter)(if_index_t*, uint32), if_index_t if_index, uint32 number) {
    EXPECT_EQ(setter(&if_index, number), 0);
    return name(if_index);
  };
  EXPECT_EQ(changed(if_index_set_port, ethernet_index(IF_TYPE_ETHERNET_L3, 2, 4, 9), 47), "Ethernet3/48.9");
  EXPECT_EQ(changed(if_index_set_port, ethernet_index(IF_TYPE_FC, 1, 0), 255), "fc2/256");
  EXPECT_EQ(changed(if_index_set_port, named_fc_index(name_family::bay, 0), 13), "bay14");
  EXPECT_EQ(changed(if_index_set_port, named_fc_index(name_family::external, 7), 0), "ext1");
  EXPECT_EQ(changed(if_index_set_port, satellite_index(101, 1, 2), 299), "Ethernet101/2/300");
  EXPECT_EQ(changed(if_index_set_port, ethernet_index(IF_TYPE_MGMT, 0, 0), 1), "mgmt1");
  EXPECT_EQ(changed(if_index_set_sub_intf, ethernet_index(IF_TYPE_ETHERNET, 0, 4, 9), 4095), "Ethernet1/5.4095");
  EXPECT_EQ(changed(if_index_set_sub_intf, ethernet_index(IF_TYPE_ETHERNET, 0, 4, 9), 0), "Ethernet1/5");
  EXPECT_EQ(changed(if_index_set_sub_intf, channel_index(IF_TYPE_ETH_PORT_CHANNEL, 7), 3), "port-channel7.3");
  EXPECT_EQ(changed(if_index_set_channel_num, channel_index(IF_TYPE_ETH_PORT_CHANNEL, 7, PC_SUBTYPE_XGFC, 2), 4095),
            "port-channel4095.2");
  EXPECT_EQ(changed(if_index_set_channel_num, channel_index(IF_TYPE_PORT_CHANNEL, 7), 1), "port-channel1");
  EXPECT_EQ(changed(if_index_set_tunnel, numbered_index(IF_TYPE_FCIP, 5), kMaxNumber), "fcip67108863");
  EXPECT_EQ(changed(if_index_set_sif_num, numbered_index(IF_TYPE_SERVER, 5), 12), "server12");
}

TEST(InterfaceIndex, SettersKeepTheSubtype) {
  if_index_t channel = channel_index(IF_TYPE_PORT_CHANNEL, 7, PC_SUBTYPE_XGFC);
  ASSERT_EQ(if_index_set_channel_num(&channel, 8), 0);
  EXPECT_EQ(channel, channel_index(IF_TYPE_PORT_CHANNEL, 8, PC_SUBTYPE_XGFC));
}

TEST(InterfaceIndex, SettersRefuseWhatAnInterfaceDoesNotHave) {
  const auto refusal = [](int32 (*setter)(if_index_t*, uint32), if_index_t if_index, uint32 number) {
    const if_index_t before = if_index;
    const int32 error = setter(&if_index, number);
    EXPECT_EQ(if_index, before) << "a refusing setter changes nothing";
    return error;
  };
  const if_index_t port = ethernet_index(IF_TYPE_ETHERNET, 0, 4);
  const if_index_t tunnel = numbered_index(IF_TYPE_FCIP, 5);
  EXPECT_EQ(refusal(if_index_set_port, tunnel, 1), 0x40290003);
  EXPECT_EQ(refusal(if_index_set_sub_intf, satellite_index(101, 0, 0), 1), 0x40290003);
  EXPECT_EQ(refusal(if_index_set_channel_num, port, 1), 0x40290003);
  EXPECT_EQ(refusal(if_index_set_tunnel, numbered_index(IF_TYPE_SERVER, 5), 1), 0x40290003);
  EXPECT_EQ(refusal(if_index_set_sif_num, tunnel, 1), 0x40290003);
  EXPECT_EQ(refusal(if_index_set_port, 0, 1), 0x40290003);

  EXPECT_EQ(refusal(if_index_set_port, port, 256), 0x4029000A);
  EXPECT_EQ(refusal(if_index_set_sub_intf, port, 4096), 0x4029000A);
  EXPECT_EQ(refusal(if_index_set_channel_num, channel_index(IF_TYPE_PORT_CHANNEL, 1), 4096), 0x4029000A);
  EXPECT_EQ(refusal(if_index_set_tunnel, tunnel, kMaxNumber + 1), 0x4029000A);
}

TEST(InterfaceIndex, FibreChannelPortIsBuiltFromItsPlace) {
  const auto built = [](uint32 slot, uint32 port) {
    if_index_t if_index = ethernet_index(IF_TYPE_ETHERNET_L3, 2, 4, 9);
    EXPECT_EQ(if_index_phy_fc_port_init(&if_index, slot, port), 0);
    return name(if_index);
  };
  EXPECT_EQ(built(0, 0), "fc1/1");
  EXPECT_EQ(built(2, 15), "fc3/16");
  EXPECT_EQ(built(kMaxFcSlot, kMaxPort), "fc62/256");
}

TEST(InterfaceIndex, FibreChannelPortIsBuiltFromWhatItsGettersRead) {
  for (const if_index_t port : {ethernet_index(IF_TYPE_FC, 3, 15), named_fc_index(name_family::bay, 9),
                                named_fc_index(name_family::external, 0)}) {
    uint32 slot = 0, number = 0;
    if_index_t built = 0;
    ASSERT_EQ(if_index_phy_fc_get_slot(port, &slot), 0);
    ASSERT_EQ(if_index_phy_fc_get_port(port, &number), 0);
    ASSERT_EQ(if_index_phy_fc_port_init(&built, slot, number), 0);
    EXPECT_EQ(name(built), name(port));
  }
}

TEST(InterfaceIndex, FibreChannelPortWithoutAPlaceIsRefused) {
  const std::pair<uint32, uint32> kNowhere[] = {
      {kMaxSlot + 1, 0}, {0, kMaxPort + 1}, {kMaxSlot + 1, kMaxPort + 1}, {UINT32_MAX, UINT32_MAX}};
  for (const auto& [slot, port] : kNowhere) {
    if_index_t if_index = 4711;
    EXPECT_EQ(if_index_phy_fc_port_init(&if_index, slot, port), 0x4029000A) << slot << "/" << port;
    EXPECT_EQ(if_index, 4711u) << "a refusal changes nothing";
  }
  EXPECT_NE(if_index_phy_fc_port_init(nullptr, 0, 0), 0);
}

TEST(InterfaceIndex, InBandInterfaceOfTheActiveSupervisor) {
  EXPECT_EQ(name(if_index_inband_get_active_sup_priority_hi()), "sup-fc0");
}

TEST(InterfaceIndex, BayAndExternalPortsSortByTheirNumbers) {
  const auto bay = [](uint32 number) { return named_fc_index(name_family::bay, number - 1); };
  const auto external = [](uint32 number) { return named_fc_index(name_family::external, number - 1); };
  std::vector<if_index_t> ports = {external(2), bay(10), bay(9), external(1), bay(100), bay(9)};

  std::qsort(ports.data(), ports.size(), sizeof ports[0], compare_intf_bay_ext_aliases);

  EXPECT_EQ(ports, (std::vector<if_index_t>{bay(9), bay(9), bay(10), bay(100), external(1), external(2)}));
}

TEST(InterfaceIndex, ParentOfASubInterface) {
  EXPECT_EQ(parent_of(ethernet_index(IF_TYPE_ETHERNET_L3, 2, 4, 9)), ethernet_index(IF_TYPE_ETHERNET_L3, 2, 4));
  EXPECT_EQ(parent_of(channel_index(IF_TYPE_ETH_PORT_CHANNEL, 3, PC_SUBTYPE_ORDINARY, 9)),
            channel_index(IF_TYPE_ETH_PORT_CHANNEL, 3));
  EXPECT_EQ(parent_of(numbered_index(IF_TYPE_LOOPBACK, 9)), numbered_index(IF_TYPE_LOOPBACK, 9));
}

TEST(InterfaceIndex, UnknownKindRefusesEverything) {
  const answers refused{-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
  EXPECT_EQ(ask_all(0), refused);
  EXPECT_EQ(ask_all(0xA0000000), refused);
}

TEST(InterfaceIndex, OnlyANumberedSubInterfaceIsOne) {
  EXPECT_NE(if_index_is_sub_intf(ethernet_index(IF_TYPE_ETHERNET_L3, 0, 0, 1)), 0U);
  EXPECT_NE(if_index_is_sub_intf(channel_index(IF_TYPE_ETH_PORT_CHANNEL, 1, PC_SUBTYPE_ORDINARY, 4095)), 0U);
  EXPECT_EQ(if_index_is_sub_intf(ethernet_index(IF_TYPE_ETHERNET_L3, 0, 0)), 0U);
  EXPECT_EQ(if_index_is_sub_intf(numbered_index(IF_TYPE_LOOPBACK, 5)), 0U);
  EXPECT_EQ(if_index_is_sub_intf(satellite_index(101, 0, 4)), 0U);
}

TEST(InterfaceIndex, SortsInNaturalOrder) {
  const std::vector<if_index_t> in_order = {
      ethernet_index(IF_TYPE_ETHERNET, 0, 8),     ethernet_index(IF_TYPE_ETHERNET, 0, 8, 2),
      ethernet_index(IF_TYPE_ETHERNET, 0, 8, 10), ethernet_index(IF_TYPE_ETHERNET, 0, 9),
      ethernet_index(IF_TYPE_ETHERNET, 1, 0),     ethernet_index(IF_TYPE_ETHERNET, 9, 0),
  };
  EXPECT_TRUE(std::is_sorted(in_order.begin(), in_order.end()));
}

TEST(InterfaceIndex, NextHasTheNextNumberOfTheSameKindAndPlace) {
  const std::pair<if_index_t, if_index_t> kSteps[] = {
      {ethernet_index(IF_TYPE_ETHERNET, 2, 7), ethernet_index(IF_TYPE_ETHERNET, 2, 8)},
      {ethernet_index(IF_TYPE_ETHERNET_L3, 2, 7, 100), ethernet_index(IF_TYPE_ETHERNET_L3, 2, 7, 101)},
      {satellite_index(101, 3, 255), satellite_index(101, 3, 256)},
      {channel_index(IF_TYPE_ETH_PORT_CHANNEL, 9), channel_index(IF_TYPE_ETH_PORT_CHANNEL, 10)},
      {channel_index(IF_TYPE_PORT_CHANNEL, 9, PC_SUBTYPE_XGFC),
       channel_index(IF_TYPE_PORT_CHANNEL, 10, PC_SUBTYPE_XGFC)},
      {channel_index(IF_TYPE_ETH_PORT_CHANNEL, 9, PC_SUBTYPE_ORDINARY, 1),
       channel_index(IF_TYPE_ETH_PORT_CHANNEL, 9, PC_SUBTYPE_ORDINARY, 2)},
      {numbered_index(IF_TYPE_LOOPBACK, 0), numbered_index(IF_TYPE_LOOPBACK, 1)},
      {numbered_index(IF_TYPE_VETHERNET, 4095), numbered_index(IF_TYPE_VETHERNET, 4096)},
      {ethernet_index(IF_TYPE_MGMT, 0, 0), ethernet_index(IF_TYPE_MGMT, 0, 1)},
      {named_fc_index(name_family::bay, 0), named_fc_index(name_family::bay, 1)},
  };
  for (const auto& [from, to] : kSteps) {
    if_index_t next = 0;
    EXPECT_EQ(if_index_next(from, &next), 0) << name(from);
    EXPECT_EQ(next, to) << name(from);
  }
}

TEST(InterfaceIndex, NothingFollowsTheLastNumber) {
  for (const if_index_t last :
       {ethernet_index(IF_TYPE_ETHERNET, 2, kMaxPort), ethernet_index(IF_TYPE_ETHERNET_L3, 2, 7, kMaxSubInterface),
        satellite_index(101, 3, kMaxUnitPort), channel_index(IF_TYPE_ETH_PORT_CHANNEL, kMaxChannel),
        numbered_index(IF_TYPE_LOOPBACK, kMaxNumber), if_index_t{0}, if_index_t{0xF8000000}}) {
    if_index_t next = 4711;
    EXPECT_NE(if_index_next(last, &next), 0) << name(last);
    EXPECT_EQ(next, 4711u) << name(last);
  }
}

}  // namespace
}  // namespace host
