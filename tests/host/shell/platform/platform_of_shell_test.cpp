// What else the platform expects of a shell: sets, failed ranges, prompts, error texts; and listings.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "host/shell/output/captured_command.h"
#include "platform/bitset.h"
#include "platform/cmd_channel.h"
#include "platform/startup_config.h"
#include "platform/vsan.h"
#include "platform/vsh.h"
#include "shell/library/listing.h"
#include "switch/if_index_layout.h"

namespace session {
namespace {

std::string text_of(const vlan_bitset_t& set, uint32 size = BITSET_TEXT_BYTES) {
  std::string buffer(BITSET_TEXT_BYTES, 'x');
  const uint32 length = bitset_sprintf(buffer.data(), size, &set);
  EXPECT_EQ(length, std::strlen(buffer.c_str()));
  return buffer.c_str();
}

vlan_bitset_t set_of(std::initializer_list<uint32> ids) {
  vlan_bitset_t set;
  bitset_clear_all(&set);
  for (const uint32 id : ids) bitset_set(&set, id);
  return set;
}

TEST(BitSet, LaysIdsOutFromTheHighestBit) {
  const vlan_bitset_t set = set_of({0, 9, 4095});

  EXPECT_EQ(uint32{set.size}, 512U);
  EXPECT_EQ(set.bits[0], 0x80);
  EXPECT_EQ(set.bits[1], 0x40);
  EXPECT_EQ(set.bits[511], 0x01);
  EXPECT_EQ(bitset_is_set(&set, 9), 1U);
  EXPECT_EQ(bitset_is_set(&set, 8), 0U);
}

TEST(BitSet, IdsAboveTheLastAreIgnored) {
  const vlan_bitset_t set = set_of({4096, 100000});
  EXPECT_EQ(text_of(set), "");
  EXPECT_EQ(bitset_is_set(&set, 4096), 0U);
}

TEST(BitSet, IsRenderedAsIdsAndRanges) {
  EXPECT_EQ(text_of(set_of({})), "");
  EXPECT_EQ(text_of(set_of({1})), "1");
  EXPECT_EQ(text_of(set_of({1, 10, 11, 12, 20, 21, 4095})), "1,10-12,20-21,4095");
  EXPECT_EQ(text_of(set_of({4094, 4095})), "4094-4095");
}

TEST(BitSet, TextIsCutAndTerminated) { EXPECT_EQ(text_of(set_of({1, 10, 11}), 5), "1,10"); }

TEST(FailedRanges, AreRenderedWithNames) {
  mrange_handle_t* const ranges = cmd_mrange_create(0x0D030001);
  ASSERT_NE(ranges, nullptr);
  EXPECT_EQ(ranges->tid, 0x0D030001);
  const if_index_t first = host::ethernet_index(IF_TYPE_ETHERNET, 0, 0);
  const if_index_t fourth = host::ethernet_index(IF_TYPE_ETHERNET, 0, 3);
  cmd_mrange_range_add(ranges, first, first);
  cmd_mrange_range_add(ranges, first, fourth);
  char text[64];
  EXPECT_EQ(cmd_mrange_snprintf(text, sizeof text, ranges), 26);
  EXPECT_STREQ(text, "Ethernet1/1, Ethernet1/1-4");
  EXPECT_EQ(cmd_mrange_snprintf(text, 9, ranges), 26);
  EXPECT_STREQ(text, "Ethernet");
  EXPECT_EQ(ranges->len, 2);
  cmd_mrange_free(ranges);
}

TEST(FailedRanges, PortsThatFollowEachOtherAreOneRange) {
  mrange_handle_t* const ranges = cmd_mrange_create(0x0D030001);
  for (const uint32 port : {0U, 1U, 2U, 5U, 4U})
    cmd_mrange_range_add(ranges, host::ethernet_index(IF_TYPE_ETHERNET, 0, port),
                         host::ethernet_index(IF_TYPE_ETHERNET, 0, port));
  cmd_mrange_range_add(ranges, host::ethernet_index(IF_TYPE_ETHERNET, 1, 5),
                       host::ethernet_index(IF_TYPE_ETHERNET, 1, 5));
  char text[64];
  cmd_mrange_snprintf(text, sizeof text, ranges);
  EXPECT_STREQ(text, "Ethernet1/1-3, Ethernet1/6, Ethernet1/5, Ethernet2/6");
  cmd_mrange_free(ranges);
}

TEST(FailedRanges, BelongToTheShellOnceTheyAreMarked) {
  captured_command command;
  cmd_mrange_error_set(cmd_mrange_create(0x0D030001));
  EXPECT_EQ(command.finish(), "");  // a leak would be reported at the end of the program
}

TEST(Prompt, WithoutATerminalTheAssumedAnswerIsGiven) {
  vsh_user_input_info_t question{};
  question.prompt = "Really? ";
  question.default_input = "n";
  question.notty_input = "y";
  question.max_len = 4;
  char answer[5] = "";
  EXPECT_EQ(vsh_util_user_input_get(&question, answer), 0);
  EXPECT_STREQ(answer, "y");
}

TEST(TransportError, IsALineThatCountsAsAFailure) {
  captured_command command;
  command.output().begin_interface("Ethernet1/1");
  vsh_print_mts_error_message(VSH_MTS_ERROR_PORT_CONFIG, ETIMEDOUT);
  EXPECT_TRUE(command.output().end_interface());
  EXPECT_EQ(command.finish(),
            "error: no answer to the port manager's record: no answer in time. "
            "Type 'show transport' for the messages so far.\n");
}

TEST(StartupConfig, CommandsAreAboutTheRunningOne) {
  const paraminfo_t block{};
  EXPECT_EQ(acfg_pinfo_cfg_type_get(&block), uint32{ACFG_RUNNING});
  EXPECT_STRNE(acfg_pinfo_startup_cfg_uri_prefix_get(&block), nullptr);
}

TEST(VsanPermission, FollowsTheVsansOfUserAndPort) {
  constexpr pm_port_mode_t kF = 0x20;
  constexpr pm_port_mode_t kTe = 0x8;
  const vsan_bitset_t user = set_of({10, 11});
  const vsan_bitset_t carried = set_of({11, 20});
  const auto allowed = [&](pm_port_mode_t oper_mode, uint32 port_vsan) {
    vsh_fc_intf_perm_check_info_t question{};
    question.vsan_mask = &user;
    question.oper_port_mode = oper_mode;
    question.port_vsan = port_vsan;
    question.trunk_vsan_list = &carried;
    return vsh_fc_intf_perm_check(&question);
  };
  EXPECT_EQ(allowed(kF, 10), 1U);
  EXPECT_EQ(allowed(kF, 20), 0U);
  EXPECT_EQ(allowed(kTe, 20), 1U) << "by what it carries";
}

TEST(VsanPermission, QuestionWithoutItsSetsIsRefused) {
  const vsh_fc_intf_perm_check_info_t nothing{};
  EXPECT_EQ(vsh_fc_intf_perm_check(&nothing), 0U);
  EXPECT_EQ(vsh_fc_intf_perm_check(nullptr), 0U);
}

std::vector<if_index_t> decode(std::initializer_list<unsigned char> bytes) {
  const std::vector<unsigned char> copy(bytes);
  return host::decode_listing(std::as_bytes(std::span(copy)));
}

TEST(Listing, CountIsBelievedOnlyAsFarAsTheBytesReach) {
  EXPECT_EQ(decode({0, 0, 0, 2, 0x1A, 0, 0, 1, 0x1A, 0, 0, 2}), (std::vector<if_index_t>{0x1A000001, 0x1A000002}));
  EXPECT_EQ(decode({0, 0, 0, 1, 0x1A, 0, 0, 1, 0x1A, 0, 0, 2}), (std::vector<if_index_t>{0x1A000001}));
  EXPECT_EQ(decode({0xFF, 0xFF, 0xFF, 0xFF, 0x1A, 0, 0, 1, 0x1A, 0}), (std::vector<if_index_t>{0x1A000001}));
  EXPECT_EQ(decode({0, 0, 0}), std::vector<if_index_t>{});
  EXPECT_EQ(decode({}), std::vector<if_index_t>{});
}

}  // namespace
}  // namespace session
