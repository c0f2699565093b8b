// The rows of trunk tables, and the VLAN lines of detailed views.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "pmcli/vlan.h"
#include "support/both_forms.h"
#include "support/matchers.h"
#include "support/vlan_libraries.h"

namespace pmcli_test {
namespace {

class TrunkTableRow : public testing::Test {
 protected:
  TrunkTableRow() { install_vlan_libraries(platform); }

  using row = void (*)(cmd_rx_handle_t*, const pm_port_info_t*, mts_q_handle_t);
  std::string show(row print, uint32 mode = PM_PORT_MODE_TRUNK) {
    platform.clear_output();
    platform.short_rows = 0;
    pm_port_info_t port = named(kPort, port_record());
    port.oper_port_mode = mode;
    print(platform.output(), &port, RecordingPlatform::q());
    return platform.text();
  }

  RecordingPlatform platform;
};

// ---- Status -------------------------------------------------------------------------------------------------------

TEST_F(TrunkTableRow, StatusFollowsModeAndChannel) {
  platform.native_vlans[kPort] = 99;
  EXPECT_EQ(show(pm_cli_print_eth_trunk_brief), "Eth1/1     99      trunking      --\n");
  EXPECT_EQ(platform.tuples(),
            (Tuples{{0x0C2A0075, kPort}, {0x142A0076, 99}, {0x302A0077, "trunking"}, {0x302A0078, "--"}}));
  EXPECT_EQ(platform.short_rows, 1U);
  EXPECT_EQ(show(pm_cli_print_eth_trunk_brief, PM_PORT_MODE_ACCESS), "Eth1/1     99      not-trunking  --\n");
  platform.channel_of[kPort] = port_channel(5);
  EXPECT_EQ(show(pm_cli_print_eth_trunk_brief), "Eth1/1     99      trnk-bndl     Po5\n");
  EXPECT_EQ(show(pm_cli_print_eth_trunk_brief, PM_PORT_MODE_ACCESS), "Eth1/1     99      notrnk-bndl   Po5\n");
}

TEST_F(TrunkTableRow, StatusWithoutAnAnswerIsThatOfAPortAlone) {
  platform.channel_of[kPort] = port_channel(5);
  platform.fail_with("get_port_channel_info", 5);
  EXPECT_EQ(show(pm_cli_print_eth_trunk_brief), "Eth1/1     1       trunking      --\n");
}

TEST_F(TrunkTableRow, ANativeVlanThatIsNotKnownIsDashes) {
  platform.fail_with("im_get_ifindex_native_vlan_list", 5);
  EXPECT_THAT(show(pm_cli_print_eth_trunk_brief), EndsWith("--      trunking      --\n"));
  for (const bound_tuple& tuple : platform.tuples()) EXPECT_NE(tuple.id, 0x142A0076U);
}

TEST_F(TrunkTableRow, LongNamesOfChannelsAreCut) {
  platform.channel_of[kPort] = port_channel(5);
  platform.short_names[port_channel(5)] = "port-channel-number-5";
  EXPECT_EQ(show(pm_cli_print_eth_trunk_brief), "Eth1/1     1       trnk-bndl     port-channe\n");
  EXPECT_EQ(platform.tuples().back(), (bound_tuple{0x302A0078, "port-channe"}));
  platform.short_names[port_channel(5)] = "elevenchars";
  EXPECT_EQ(show(pm_cli_print_eth_trunk_brief), "Eth1/1     1       trnk-bndl     elevenchars\n");
}

// ---- VLANs --------------------------------------------------------------------------------------------------------

TEST_F(TrunkTableRow, AllowedVlans) {
  answers_of_vlans.memberships = {membership(kPort, 1, {1, 10, 11, 12, 4094})};
  EXPECT_EQ(show(pm_cli_print_eth_trunk_allowed_vlans), "Eth1/1     1,10-12,4094\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0075, kPort}, {0x302A0079, "1,10-12,4094"}}));
  EXPECT_EQ(platform.short_rows, 1U);
  answers_of_vlans.memberships = {membership(kPort, 1, {})};
  EXPECT_EQ(show(pm_cli_print_eth_trunk_allowed_vlans), "Eth1/1     none\n");
}

TEST_F(TrunkTableRow, AllowedVlansThatAreNotKnownHaveNoRow) {
  platform.fail_with("vlan_get_port_trunking_memb_parse_reply", -1);
  EXPECT_EQ(show(pm_cli_print_eth_trunk_allowed_vlans), "");
  platform.libraries.erase(VLAN_MGR_LIBRARY);
  EXPECT_EQ(show(pm_cli_print_eth_trunk_allowed_vlans), "");
  EXPECT_EQ(platform.short_rows, 0U);
}

TEST_F(TrunkTableRow, ForwardingVlans) {
  answers_of_vlans.forwarding.resize(1);
  answers_of_vlans.forwarding[0].forwarding = vlans({1, 2, 3});
  EXPECT_EQ(show(pm_cli_print_eth_trunk_stp_forwarding), "Eth1/1     1-3\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0075, kPort}, {0x302A007A, "1-3"}}));
  answers_of_vlans.forwarding[0].forwarding = vlans({});
  EXPECT_EQ(show(pm_cli_print_eth_trunk_stp_forwarding), "Eth1/1     none\n");
  platform.fail_with("stp_parse_get_port_state", -1);
  EXPECT_EQ(show(pm_cli_print_eth_trunk_stp_forwarding), "Eth1/1     --\n");
}

TEST_F(TrunkTableRow, ErrorDisabledVlans) {
  const pm_port_info_t port = named(kPort, port_record());
  const vlan_bitset_t errored = vlans({7, 9});
  pm_cli_print_eth_trunk_errored_vlans(platform.output(), &port, &errored);
  EXPECT_EQ(platform.text(), "Eth1/1     7,9\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0075, kPort}, {0x302A066F, "7,9"}}));
  platform.clear_output();
  pm_cli_print_eth_trunk_errored_vlans(platform.output(), &port, nullptr);
  EXPECT_EQ(platform.text(), "Eth1/1     none\n");
}

// ---- Sets of every size -------------------------------------------------------------------------------------------

vlan_bitset_t all_odd() {
  vlan_bitset_t set = vlans({});
  for (uint32 id = 1; id < 4096; id += 2) bitset_set(&set, id);
  return set;
}

// The ids one by one, cut.
std::string odd_text(std::size_t longest) {
  std::string text;
  for (uint32 id = 1; id < 4096; id += 2) text += (text.empty() ? "" : ",") + std::to_string(id);
  return text.substr(0, longest);
}

TEST(VlanLines, AreCutAtTheirBounds) {
  RecordingPlatform platform;
  trunk_port_memb_t record{};
  record.allowed_vlan_list = all_odd();
  record.native_trunk.vlan_id = 4094;
  print_vlan_memb_info(platform.output(), &record);
  EXPECT_EQ(platform.text(), "    Native Vlan: 4094\n    Allowed Vlans: " + odd_text(100) + "\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x142A0076, 4094}, {0x302A0079, odd_text(100)}}));
  platform.clear_output();
  print_allowed_vlan_info(platform.output(), &record);
  EXPECT_EQ(platform.text(), "  Trunking VLANs Enabled: " + odd_text(8192) + "\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x302A063B, odd_text(8192)}}));
}

struct size_case {
  uint32 size;
  const char* text;
};

TEST(VlanLines, TheSizeOfASetIsBelievedUpToItsBytes) {
  const size_case kCases[] = {{0, "none"}, {1, "0-7"}, {512, "0-4095"}, {4096, "0-4095"}, {0xFFFFFFFF, "0-4095"}};
  for (const size_case& it : kCases) {
    RecordingPlatform platform;
    trunk_port_memb_t record{};
    record.allowed_vlan_list.size = it.size;
    std::memset(record.allowed_vlan_list.bits, 0xFF, sizeof record.allowed_vlan_list.bits);
    print_allowed_vlan_info(platform.output(), &record);
    EXPECT_EQ(platform.text(), std::string("  Trunking VLANs Enabled: ") + it.text + "\n") << it.size;
  }
}

}  // namespace
}  // namespace pmcli_test
