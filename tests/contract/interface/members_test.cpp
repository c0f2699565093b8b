// Members of port-channels and tracked ports.
#include <gtest/gtest.h>

#include <algorithm>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const std::vector<if_index_t> kThreeMembers = {ethernet(1, 3), ethernet(1, 1), ethernet(1, 2)};

constexpr char kThreeInALine[] = "  Members in this channel: Eth1/1, Eth1/2, Eth1/3\n";
constexpr char kThreeNumbered[] =
    "    Member[1] : Ethernet1/1\n"
    "    Member[2] : Ethernet1/2\n"
    "    Member[3] : Ethernet1/3\n";

bool is_one_of(uint32 chassis, std::initializer_list<uint32> set) {
  return std::find(set.begin(), set.end(), chassis) != set.end();
}

// On the channel of a machine of this chassis type.
void set_up(RecordingPlatform& platform, uint32 chassis, const std::vector<if_index_t>& members) {
  platform.chassis_type = chassis;
  platform.channel_members[kChannel] = members;
}

// ---- Sorting -------------------------------------------------------------------------------------------------------

TEST(SortPorts, OrderIsAscending) {
  if_index_t ports[] = {5, 3, 9, 1, 1, 7};
  sort_ports_by_if_index(ports, 6);
  EXPECT_EQ(std::vector<if_index_t>(ports, ports + 6), (std::vector<if_index_t>{1, 1, 3, 5, 7, 9}));
}

TEST(SortPorts, IndexesAreUnsigned) {
  if_index_t ports[] = {0xFFFFFFFF, 0x80000000, 0x7FFFFFFF, 0};
  sort_ports_by_if_index(ports, 4);
  EXPECT_EQ(std::vector<if_index_t>(ports, ports + 4),
            (std::vector<if_index_t>{0, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF}));
}

TEST(SortPorts, OnlyTheCountedOnesMove) {
  if_index_t ports[] = {3, 2, 1};
  sort_ports_by_if_index(ports, 2);
  EXPECT_EQ(std::vector<if_index_t>(ports, ports + 3), (std::vector<if_index_t>{2, 3, 1}));
  sort_ports_by_if_index(ports, 1);
  EXPECT_EQ(ports[0], 2U);
}

TEST(SortPorts, SizeOfZeroOrLessDoesNothing) {
  if_index_t ports[] = {3, 2, 1};
  sort_ports_by_if_index(ports, 0);
  sort_ports_by_if_index(ports, -1);
  sort_ports_by_if_index(nullptr, 0);
  sort_ports_by_if_index(nullptr, -2147483647 - 1);
  EXPECT_EQ(std::vector<if_index_t>(ports, ports + 3), (std::vector<if_index_t>{3, 2, 1}));
}

// ---- Through the output channel ------------------------------------------------------------------------------------

TEST(ChannelMembers, EthernetSwitchesShowOneLineOfShortNames) {
  for (uint32 chassis = 0; chassis <= 40; ++chassis) {
    RecordingPlatform platform;
    set_up(platform, chassis, kThreeMembers);
    print_eth_port_channel_members(platform.output(), kChannel);
    const bool is_line = is_one_of(chassis, {10, 11, 17, 19, 20, 21, 22, 23, 24});
    EXPECT_EQ(platform.text(), is_line ? kThreeInALine : kThreeNumbered) << "chassis " << chassis;
    EXPECT_EQ(platform.terminal(), "");
    EXPECT_THAT(platform.tuples(), IsEmpty());
  }
}

TEST(ChannelMembers, LineIsAHeadAndOneText) {
  RecordingPlatform platform;
  set_up(platform, CHASSIS_10, kThreeMembers);
  print_eth_port_channel_members(platform.output(), kChannel);

  ASSERT_EQ(platform.pieces.size(), 2U);
  EXPECT_EQ(platform.pieces[0].text, "  Members in this channel: ");
  EXPECT_EQ(platform.pieces[1].text, "Eth1/1, Eth1/2, Eth1/3\n");
}

TEST(ChannelMembers, OneMemberStandsAlone) {
  RecordingPlatform platform;
  set_up(platform, CHASSIS_10, {ethernet(2, 7)});
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.text(), "  Members in this channel: Eth2/7\n");
}

TEST(ChannelMembers, NoMembersAreWordedByTheFamily) {
  for (const bool is_list : {false, true}) {
    for (const uint32 chassis : {10U, 12U}) {
      RecordingPlatform platform;
      platform.chassis_type = chassis;
      if (is_list) platform.channel_members[kChannel] = {};
      print_eth_port_channel_members(platform.output(), kChannel);
      EXPECT_EQ(platform.text(), chassis == 10 ? "  No members\n" : "    No members\n");
      EXPECT_EQ(platform.terminal(), "");
    }
  }
}

TEST(ChannelMembers, FailedQueryIsNoMembers) {
  for (const int32 result : {-1, 1, int32{PM_ERR_GENERAL}}) {
    for (const uint32 chassis : {24U, 25U}) {
      RecordingPlatform platform;
      set_up(platform, chassis, kThreeMembers);
      platform.fail_with("get_port_channel_members", result);
      print_eth_port_channel_members(platform.output(), kChannel);
      EXPECT_EQ(platform.text(), chassis == 24 ? "  No members\n" : "    No members\n");
    }
  }
}

TEST(ChannelMembers, UnreadableChassisCountsAsClassic) {
  RecordingPlatform platform;
  set_up(platform, CHASSIS_10, kThreeMembers);
  platform.fail_with("pdb_get_chassis_type", PM_ERR_GENERAL);
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.text(), kThreeNumbered);
}

// A channel whose members' short names, joined, have this length.
void join_to(RecordingPlatform& platform, std::size_t length) {
  std::vector<if_index_t> members;
  const std::size_t names[] = {45, 40, 40, 40, length - 165 - 8};
  for (uint32 i = 0; i < 5; ++i) {
    const if_index_t member = ethernet(1, i + 1);
    members.push_back(member);
    platform.short_names[member] = std::string(names[i], static_cast<char>('a' + i));
  }
  set_up(platform, CHASSIS_10, members);
}

std::string joined(std::size_t last_length) {
  return std::string(45, 'a') + ", " + std::string(40, 'b') + ", " + std::string(40, 'c') + ", " +
         std::string(40, 'd') + ", " + std::string(last_length, 'e');
}

TEST(ChannelMembers, LineIsCutAt200Characters) {
  struct length_case {
    std::size_t length;
    std::string text;
  };
  const length_case kCases[] = {
      {198, joined(25) + "\n"}, {199, joined(26) + "\n"},  // 200 with its end
      {200, joined(27)},                                   // no room for the end
      {201, joined(27)},        {213, joined(27)},
  };
  for (const length_case& expected : kCases) {
    RecordingPlatform platform;
    join_to(platform, expected.length);
    print_eth_port_channel_members(platform.output(), kChannel);
    EXPECT_EQ(platform.text(), "  Members in this channel: " + expected.text) << expected.length;
    EXPECT_LE(platform.pieces.back().text.size(), 200U);
  }
}

TEST(ChannelMembers, SeparatorIsCutToo) {
  RecordingPlatform platform;
  std::vector<if_index_t> members;
  for (uint32 i = 0; i < 5; ++i) {
    members.push_back(ethernet(1, i + 1));
    platform.short_names[members.back()] = std::string(i == 3 ? 43 : 49, static_cast<char>('a' + i));
  }
  platform.short_names[members[0]] = std::string(49, 'a');
  set_up(platform, CHASSIS_10, members);  // 3 x 49 + 43 + 3 x 2 = 196, then ", " and two more characters
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.pieces.back().text, std::string(49, 'a') + ", " + std::string(49, 'b') + ", " +
                                             std::string(49, 'c') + ", " + std::string(43, 'd') + ", ee");
  platform.clear_output();
  platform.short_names[members[3]] = std::string(46, 'd');  // 199: room for the comma only
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.pieces.back().text, std::string(49, 'a') + ", " + std::string(49, 'b') + ", " +
                                             std::string(49, 'c') + ", " + std::string(46, 'd') + ",");
}

TEST(ChannelMembers, NumbersCountFromOneInTheOrderOfTheIndex) {
  RecordingPlatform platform;
  std::vector<if_index_t> members;
  std::string expected;
  for (uint32 port = 12; port >= 1; --port) members.push_back(ethernet(3, port));
  for (uint32 port = 1; port <= 12; ++port)
    expected += "    Member[" + std::to_string(port) + "] : Ethernet3/" + std::to_string(port) + "\n";
  set_up(platform, CHASSIS_UNKNOWN, members);
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.text(), expected);
  EXPECT_EQ(platform.pieces.size(), 12U);
}

// ---- With plain printing -------------------------------------------------------------------------------------------

TEST(PlainMembers, AreNumberedOnEveryChassis) {
  for (uint32 chassis = 0; chassis <= 40; ++chassis) {
    RecordingPlatform platform;
    set_up(platform, chassis, kThreeMembers);
    print_port_channel_members(kChannel);
    // The newer Ethernet switches answer in a form that is not read here.
    const bool is_misread = chassis >= 19 && chassis <= 24;
    EXPECT_EQ(platform.text(), is_misread ? "    No members\n" : kThreeNumbered) << "chassis " << chassis;
    EXPECT_EQ(platform.terminal(), platform.text());
  }
}

TEST(PlainMembers, NewerEthernetSwitchesAreReadInTheClassicForm) {
  for (const uint32 chassis : {19U, 24U}) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    octets answer(PORT_CHANNEL_MEMBERS_BYTES);
    answer[11] = 1;  // count, classic form
    const be32 member(ethernet(2, 5));
    std::copy(std::begin(member.bytes), std::end(member.bytes), answer.begin() + 32);
    platform.member_block = answer;
    print_port_channel_members(kChannel);
    EXPECT_EQ(platform.text(), "    Member[1] : Ethernet2/5\n");
  }
}

TEST(PlainMembers, NoMembersAndAFailedQueryReadTheSame) {
  for (const uint32 chassis : {10U, 12U}) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    print_port_channel_members(kChannel);
    EXPECT_EQ(platform.terminal(), "    No members\n");
    platform.clear_output();
    platform.channel_members[kChannel] = kThreeMembers;
    platform.fail_with("get_port_channel_members", PM_ERR_GENERAL);
    print_port_channel_members(kChannel);
    EXPECT_EQ(platform.terminal(), "    No members\n");
  }
}

TEST(PlainMembers, UnreadableChassisCountsAsClassic) {
  RecordingPlatform platform;
  set_up(platform, CHASSIS_10, kThreeMembers);
  platform.fail_with("pdb_get_chassis_type", PM_ERR_GENERAL);
  print_port_channel_members(kChannel);
  EXPECT_EQ(platform.text(), kThreeNumbered);
}

// ---- Where entries stand -------------------------------------------------------------------------------------------

TEST(MemberAnswer, EthernetEntriesAreSevenBytesFrom26) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_11;
  octets answer(PORT_CHANNEL_MEMBERS_BYTES, 0xEE);
  const octets count = {0, 0, 0, 2};
  const octets first = {0x08, 0x10, 0x00, 0x00, 0x11, 0x22, 0x33};   // Ethernet2/1
  const octets second = {0x08, 0x00, 0x50, 0x00, 0x44, 0x55, 0x66};  // Ethernet1/6
  std::copy(count.begin(), count.end(), answer.begin() + 18);
  std::copy(first.begin(), first.end(), answer.begin() + 26);
  std::copy(second.begin(), second.end(), answer.begin() + 33);
  platform.member_block = answer;
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.text(), "  Members in this channel: Eth1/6, Eth2/1\n");
  platform.clear_output();
  print_port_channel_members(kChannel);
  EXPECT_EQ(platform.text(), "    Member[1] : Ethernet1/6\n    Member[2] : Ethernet2/1\n");
}

TEST(MemberAnswer, ClassicEntriesAreEightBytesFrom32) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_UNKNOWN;
  octets answer(PORT_CHANNEL_MEMBERS_BYTES, 0xEE);
  const octets count = {0, 0, 0, 2};
  const octets first = {0x08, 0x10, 0x00, 0x00, 0x11, 0x22, 0x33, 0x44};
  const octets second = {0x08, 0x00, 0x50, 0x00, 0x44, 0x55, 0x66, 0x77};
  std::copy(count.begin(), count.end(), answer.begin() + 8);
  std::copy(first.begin(), first.end(), answer.begin() + 32);
  std::copy(second.begin(), second.end(), answer.begin() + 40);
  platform.member_block = answer;
  print_eth_port_channel_members(platform.output(), kChannel);
  EXPECT_EQ(platform.text(), "    Member[1] : Ethernet1/6\n    Member[2] : Ethernet2/1\n");
}

// ---- Tracked ports -------------------------------------------------------------------------------------------------

TEST(TrackedPorts, AreNeverShownOnEthernetSwitches) {
  for (uint32 chassis = 0; chassis <= 40; ++chassis) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    platform.tracked_ports[kChannel] = {ethernet(1, 9), ethernet(1, 8)};
    EXPECT_EQ(pm_show_tracked_port_info(RecordingPlatform::q(), kChannel), 0);
    const bool is_silent = is_one_of(chassis, {10, 11, 17, 19, 20, 21, 22, 23, 24});
    EXPECT_EQ(platform.text(), is_silent ? ""
                                         : "    Linked to 2 port(s)\n"
                                           "      Port linked to interface Ethernet1/9\n"
                                           "      Port linked to interface Ethernet1/8\n")
        << "chassis " << chassis;
    EXPECT_EQ(platform.terminal(), platform.text());
    EXPECT_EQ(platform.count("pm_cmi_get_tracked_port_if_list"), is_silent ? 0U : 1U);
  }
}

TEST(TrackedPorts, UnreadableChassisIsNotAnEthernetSwitch) {
  RecordingPlatform platform;
  platform.fail_with("pdb_get_chassis_type", PM_ERR_GENERAL);
  platform.tracked_ports[kChannel] = {ethernet(1, 9)};
  EXPECT_EQ(pm_show_tracked_port_info(RecordingPlatform::q(), kChannel), 0);
  EXPECT_EQ(platform.text(),
            "    Linked to 1 port(s)\n"
            "      Port linked to interface Ethernet1/9\n");
}

TEST(TrackedPorts, FailedQueryReturnsOneInSilence) {
  for (const int32 result : {-1, 1, int32{PM_ERR_GENERAL}}) {
    RecordingPlatform platform;
    platform.chassis_type = CHASSIS_UNKNOWN;
    platform.tracked_ports[kChannel] = {ethernet(1, 9)};
    platform.fail_with("pm_cmi_get_tracked_port_if_list", result);
    EXPECT_EQ(pm_show_tracked_port_info(RecordingPlatform::q(), kChannel), 1);
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(TrackedPorts, MissingListIsAnError) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_UNKNOWN;
  EXPECT_EQ(pm_show_tracked_port_info(RecordingPlatform::q(), kChannel), 0);
  EXPECT_EQ(platform.text(), "Error getting linked if index list.\n");
}

TEST(TrackedPorts, EmptyListPrintsNothing) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_UNKNOWN;
  platform.tracked_ports[kChannel] = {};
  EXPECT_EQ(pm_show_tracked_port_info(RecordingPlatform::q(), kChannel), 0);
  EXPECT_EQ(platform.text(), "");
}

TEST(TrackedPorts, EntriesStandFromByteTwelve) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_UNKNOWN;
  octets list(12 + 4 * 256, 0xEE);
  const octets content = {0, 0, 0, 2, 0x08, 0x10, 0x00, 0x00, 0x08, 0x00, 0x50, 0x00};
  std::copy(content.begin(), content.end(), list.begin() + 8);
  platform.tracked_block = list;
  EXPECT_EQ(pm_show_tracked_port_info(RecordingPlatform::q(), kChannel), 0);
  EXPECT_EQ(platform.text(),
            "    Linked to 2 port(s)\n"
            "      Port linked to interface Ethernet2/1\n"
            "      Port linked to interface Ethernet1/6\n");
}

}  // namespace
}  // namespace pmcli_test
