// The recording platform itself: what it records, and that it finds what a faulty library would do.
#include "support/recording_platform.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

namespace pmcli_test {
namespace {

TEST(RecordedOutput, HoldsChannelAndTerminalInOrder) {
  RecordingPlatform platform;

  std::printf("one ");
  cmd_prt(platform.output(), "two ");
  std::puts("three");
  cmd_prt(platform.output(), "four\n");

  EXPECT_EQ(platform.text(), "one two three\nfour\n");
  EXPECT_EQ(platform.terminal(), "one three\n");
}

TEST(RecordedOutput, EndsWithThePlatform) {
  std::FILE* const before = stdout;
  {
    RecordingPlatform platform;
    EXPECT_NE(stdout, before);
  }
  EXPECT_EQ(stdout, before);
}

TEST(RecordedTuples, AreReadByTheirTypeCode) {
  RecordingPlatform platform;
  const uint32 number = 0x00010002;
  const uint64 wide = 0x0000000100000002;
  const if_index_t port = ethernet(1, 2);
  const uint8 mac[] = {0x00, 0x1B, 0x54, 0xC2, 0x01, 0xFF};
  const uint8 address[] = {192, 0, 2, 1};
  cmd_float_t number_with_point{};
  number_with_point.fval = -0.05F;
  number_with_point.u.ti = {0, 5, 2};

  cmd_prt(platform.output(), "%s|", cmd_tuple(0x142A0001, &number));
  cmd_prt(platform.output(), "%s|", cmd_tuple(0x152A0002, &wide));
  cmd_prt(platform.output(), "%s|", cmd_tuple(0x222A0003, &number));
  cmd_prt(platform.output(), "%s|", cmd_tuple(0x0C2A0004, &port));
  cmd_prt(platform.output(), "%s|", cmd_tuple(0x0F2A0005, mac));
  cmd_prt(platform.output(), "%s|", cmd_tuple(0x1E2A0006, address));
  cmd_prt(platform.output(), "%s|", cmd_tuple(0x452A0007, &number_with_point));
  cmd_prt(platform.output(), "%s|", cmd_tuple(0x302A0008, "text"));
  cmd_prt(platform.output(), "%s|", cmd_tuple(0, "plain"));
  cmd_prt(platform.output(), "%s\n", cmd_tuple(0x142A0271, "port-channel3"));

  EXPECT_EQ(platform.text(),
            "65538|4294967298|0x10002|Ethernet1/2|001b.54c2.01ff|192.0.2.1|-0.05|text|plain|port-channel3\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x142A0001, 65538},
                                       {0x152A0002, 4294967298},
                                       {0x222A0003, 0x10002},
                                       {0x0C2A0004, ethernet(1, 2)},
                                       {0x0F2A0005, "001b.54c2.01ff"},
                                       {0x1E2A0006, "192.0.2.1"},
                                       {0x452A0007, "-0.05"},
                                       {0x302A0008, "text"},
                                       {0, "plain"},
                                       {0x142A0271, "port-channel3"}}));
}

TEST(RecordedTuples, OfOneEnumHaveTheTextOfTheTest) {
  RecordingPlatform platform;
  platform.enum_texts[0x01D9] = {{1, "up"}};
  const uint32 up = 1;
  const uint32 other = 3;

  cmd_prt(platform.output(), "%s %s", cmd_tuple(0x022A01D9, &up), cmd_tuple(0x022A01DA, &other));

  EXPECT_EQ(platform.text(), "up 3");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x022A01D9, 1}, {0x022A01DA, 3}}));
}

TEST(Placeholders, TakeWidthAndPrecision) {
  RecordingPlatform platform;

  cmd_prt(platform.output(), "[%6s]", cmd_tuple(0, "abc"));
  cmd_prt(platform.output(), "[%-6s]", cmd_tuple(0, "abc"));
  cmd_prt(platform.output(), "[%-4.4s]", cmd_tuple(0, "abcdef"));
  cmd_prt(platform.output(), "[%6.2s]", cmd_tuple(0, "abcdef"));

  EXPECT_EQ(platform.text(), "[   abc][abc   ][abcd][    ab]");
}

TEST(Placeholders, AreNotEveryPercentSign) {
  RecordingPlatform platform;

  cmd_prt(platform.output(), "UcastSupp %      McastSupp %d %% %5 %-");

  EXPECT_EQ(platform.text(), "UcastSupp %      McastSupp %d %% %5 %-");
}

TEST(Placeholders, MustBeAsManyAsBoundValues) {
  EXPECT_NONFATAL_FAILURE(
      {
        RecordingPlatform platform;
        cmd_prt(platform.output(), "%s");
      },
      "more placeholders than bound values");
  EXPECT_NONFATAL_FAILURE(
      {
        RecordingPlatform platform;
        cmd_prt(platform.output(), "text", cmd_tuple(0, "x"));
      },
      "0 placeholders for 1 bound values");
}

TEST(ShortRows, HaveShortNamesUntilTheNewline) {
  RecordingPlatform platform;
  const if_index_t port = ethernet(1, 2);
  const auto print = [&](const char* format) { cmd_prt(platform.output(), format, cmd_tuple(0x0C2A01D8, &port)); };

  print("%s ");
  cmd_print_short(platform.output());
  print("%s ");
  print("%s\n");
  print("%s\n");

  EXPECT_EQ(platform.text(), "Ethernet1/2 Eth1/2 Eth1/2\nEthernet1/2\n");
  EXPECT_EQ(platform.short_rows, 1U);
}

std::string name_of(if_index_t if_index) {
  char name[40];
  return sprintf_if_index(name, if_index);
}

std::string short_name_of(if_index_t if_index) {
  char name[40];
  snprintf_if_index_short(name, sizeof name, if_index);
  return name;
}

TEST(InterfaceIndexes, HaveNames) {
  RecordingPlatform platform;
  EXPECT_EQ(name_of(ethernet(1, 1)), "Ethernet1/1");
  EXPECT_EQ(name_of(ethernet(10, 48, IF_TYPE_ETHERNET_L3)), "Ethernet10/48");
  EXPECT_EQ(name_of(sub_interface(ethernet(1, 1, IF_TYPE_ETHERNET_L3), 4094)), "Ethernet1/1.4094");
  EXPECT_EQ(name_of(satellite(100, 1, 48)), "Ethernet100/1/48");
  EXPECT_EQ(name_of(port_channel(4095)), "port-channel4095");
  EXPECT_EQ(name_of(port_channel(3, IF_TYPE_PORT_CHANNEL, PC_SUBTYPE_XGFC)), "port-channel3");
  EXPECT_EQ(name_of(mgmt()), "mgmt0");
  EXPECT_EQ(name_of(loopback(0)), "loopback0");
  EXPECT_EQ(name_of(vethernet(1)), "Vethernet1");
  EXPECT_EQ(name_of(fibre_channel(2, 24)), "fc2/24");
  EXPECT_EQ(short_name_of(ethernet(1, 1)), "Eth1/1");
  EXPECT_EQ(short_name_of(port_channel(3)), "Po3");
}

TEST(InterfaceIndexes, HaveFields) {
  RecordingPlatform platform;
  uint32 slot = 99;
  uint32 port = 99;
  uint16 sub = 99;
  if_index_type_t type = 99;
  pc_subtype_t subtype = 99;

  EXPECT_EQ(if_index_get_slot(ethernet(3, 7), &slot), 0);
  EXPECT_EQ(if_index_get_port(ethernet(3, 7), &port), 0);
  EXPECT_EQ(if_index_get_sub_intf(sub_interface(port_channel(9), 12), &sub), 0);
  EXPECT_EQ(if_index_get_type(numbered(IF_TYPE_EXTERNAL, 1), &type), 0);
  EXPECT_EQ(if_index_port_channel_get_subtype(port_channel(9, IF_TYPE_PORT_CHANNEL, PC_SUBTYPE_XGFC), &subtype), 0);

  EXPECT_EQ(slot, 2U);
  EXPECT_EQ(port, 6U);
  EXPECT_EQ(sub, 12);
  EXPECT_EQ(type, 254);
  EXPECT_EQ(subtype, PC_SUBTYPE_XGFC);
}

TEST(InterfaceIndexes, HaveFieldsThatCanBeReplaced) {
  RecordingPlatform platform;
  if_index_t port = ethernet(3, 7);
  if_index_t unit_port = satellite(100, 1, 1);
  if_index_t channel = port_channel(9);
  if_index_t none = loopback(1);

  EXPECT_EQ(if_index_set_port(&port, 11), 0);
  EXPECT_EQ(if_index_set_sub_intf(&port, 4094), 0);
  EXPECT_EQ(if_index_set_port(&unit_port, 47), 0);
  EXPECT_EQ(if_index_set_channel_num(&channel, 300), 0);
  EXPECT_NE(if_index_set_port(&none, 11), 0);

  EXPECT_EQ(port, sub_interface(ethernet(3, 12), 4094));
  EXPECT_EQ(unit_port, satellite(100, 1, 48));
  EXPECT_EQ(channel, port_channel(300));
  EXPECT_EQ(none, loopback(1));
}

TEST(InterfaceIndexes, OfFibreChannelPortsAreBuilt) {
  RecordingPlatform platform;
  if_index_t port = loopback(1);

  EXPECT_NE(if_index_phy_fc_port_init(&port, 64, 0), 0);
  EXPECT_NE(if_index_phy_fc_port_init(&port, 0, 256), 0);
  EXPECT_EQ(port, loopback(1));
  EXPECT_EQ(if_index_phy_fc_port_init(&port, 2, 11), 0);
  EXPECT_EQ(port, fibre_channel(3, 12));
}

TEST(PortsOfARange, AreTakenOutOfTheirAnswer) {
  RecordingPlatform platform;
  platform.ports[ethernet(1, 1)] = {};
  platform.ports[ethernet(1, 2)] = {};
  platform.ports[ethernet(1, 9)] = {};
  mts_msg_ref_t answer{};
  uint32 count = 0;
  pm_port_info_t* ports = nullptr;

  ASSERT_EQ(pm_get_port_info_range(platform.q(), ethernet(1, 1), ethernet(1, 4), &answer), 0);
  ASSERT_EQ(pm_parse_get_port_info_range(&answer, &count, &ports), 0);

  ASSERT_EQ(count, 2U);
  EXPECT_EQ(ports[1].if_index, ethernet(1, 2));
  platform.release(ports);
  mts_drop(platform.q(), &answer);
}

TEST(InterfaceIndexes, WithoutAFieldFailAndStoreNothing) {
  RecordingPlatform platform;
  uint32 slot = 99;

  EXPECT_NE(if_index_get_slot(loopback(1), &slot), 0);

  EXPECT_EQ(slot, 99U);
}

TEST(InterfaceIndexes, TakeTheKindThatTheTestSays) {
  RecordingPlatform platform;
  platform.types[ethernet(1, 1)] = 77;
  if_index_type_t type = 0;

  EXPECT_EQ(if_index_get_type(ethernet(1, 1), &type), 0);

  EXPECT_EQ(type, 77);
}

mts_msg_ref_t send_to_nobody() {
  const mts_addr_t to{MTS_NODE_LOCAL, MTS_SAP_PORT_MANAGER};
  uint8 payload[] = {1};
  mts_msg_ref_t sent{};
  mts_send(RecordingPlatform::q(), &to, 1, payload, sizeof payload, &sent, 0, 0);
  return sent;
}

TEST(Accounting, FindsAMessageThatIsNotDropped) {
  EXPECT_NONFATAL_FAILURE(
      {
        RecordingPlatform platform;
        send_to_nobody();
      },
      "message 1, a request to access point 179, was not dropped");
}

TEST(Accounting, FindsAMessageThatIsDroppedTwice) {
  EXPECT_NONFATAL_FAILURE(
      {
        RecordingPlatform platform;
        mts_msg_ref_t sent = send_to_nobody();
        mts_drop(platform.q(), &sent);
        mts_drop(platform.q(), &sent);
      },
      "which was dropped before");
}

TEST(Accounting, LetsTheEmptyReferencePass) {
  RecordingPlatform platform;
  mts_msg_ref_t none{};
  EXPECT_EQ(mts_drop(platform.q(), &none), 0);
  EXPECT_EQ(mts_payload_get(&none), nullptr);
  EXPECT_EQ(mts_payload_size(&none), 0U);
  EXPECT_EQ(mts_is_reject(&none), 0U);
}

TEST(Accounting, FindsABlockThatIsNotFreed) {
  EXPECT_NONFATAL_FAILURE(
      {
        RecordingPlatform platform;
        platform.hand_over("12345", 5, "some service");
      },
      "block of 5 bytes from some service was not freed");
}

TEST(Accounting, FindsARangeRecordThatIsNotFreed) {
  EXPECT_NONFATAL_FAILURE(
      {
        RecordingPlatform platform;
        mrange_handle_t* const ranges = cmd_mrange_create(TOKEN_CONF_INTERFACES);
        cmd_mrange_range_add(ranges, ethernet(1, 1), ethernet(1, 1));
      },
      "from cmd_mrange_create was not freed");
}

TEST(Accounting, FindsAValueThatIsBoundButNotPrinted) {
  EXPECT_NONFATAL_FAILURE(
      {
        RecordingPlatform platform;
        cmd_tuple(0, "text");
      },
      "1 bound values were never printed");
}

TEST(Failing, NeedsAFunctionThatCanFail) {
  EXPECT_NONFATAL_FAILURE(
      {
        RecordingPlatform platform;
        platform.fail_with("mts_sned");
      },
      "knows no such function");
}

TEST(Failing, ATransportFailureHasAReason) {
  RecordingPlatform platform;
  platform.fail_with("pm_cmi_get_port_config");
  platform.mts_errno = 32;
  const if_index_range_t range{ethernet(1, 1), ethernet(1, 1)};
  uint32 count = 0;
  pm_port_info_t* records = nullptr;

  EXPECT_EQ(pm_cmi_get_port_config(platform.q(), 1, 1, &range, &count, &records, 60), -1);

  EXPECT_EQ(mts_errno_get(platform.q()), 32);
}

TEST(RangeRecords, AreRenderedAndHandedToTheShell) {
  RecordingPlatform platform;
  mrange_handle_t* const ranges = cmd_mrange_create(TOKEN_CONF_INTERFACES);
  cmd_mrange_range_add(ranges, ethernet(1, 1), ethernet(1, 1));
  cmd_mrange_range_add(ranges, ethernet(1, 3), ethernet(1, 4));
  char text[80];

  EXPECT_EQ(cmd_mrange_snprintf(text, sizeof text, ranges), 36);
  cmd_mrange_error_set(ranges);

  EXPECT_STREQ(text, "Ethernet1/1, Ethernet1/3-Ethernet1/4");
  ASSERT_EQ(platform.error_ranges.size(), 1U);
  EXPECT_EQ(platform.error_ranges[0].size(), 2U);
}

TEST(ChannelMembers, HaveTheFormOfTheChassis) {
  RecordingPlatform platform;
  platform.channel_members[port_channel(3)] = {ethernet(1, 1), ethernet(1, 2)};
  void* block = nullptr;

  ASSERT_EQ(get_port_channel_members(CHASSIS_10, port_channel(3), &block), 0);
  const auto* bytes = static_cast<const uint8*>(block);
  EXPECT_EQ(*reinterpret_cast<const be32*>(bytes + 18), 2U);
  EXPECT_EQ(*reinterpret_cast<const be32*>(bytes + 26 + 7), ethernet(1, 2));
  platform.release(block);

  ASSERT_EQ(get_port_channel_members(1, port_channel(3), &block), 0);
  bytes = static_cast<const uint8*>(block);
  EXPECT_EQ(*reinterpret_cast<const be32*>(bytes + 8), 2U);
  EXPECT_EQ(*reinterpret_cast<const be32*>(bytes + 32 + 8), ethernet(1, 2));
  platform.release(block);
}

}  // namespace
}  // namespace pmcli_test
