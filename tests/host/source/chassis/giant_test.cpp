// Switches of many ports that are made without a file.
#include "source/chassis/giant.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr std::time_t kNow = 1'700'000'000;

class Giant : public testing::TestWithParam<uint32> {
 protected:
  template <class Condition>
  uint32 count(Condition condition) const {
    return static_cast<uint32>(std::count_if(giant_.interfaces.begin(), giant_.interfaces.end(), condition));
  }
  static bool is_port(const interface& it) {
    const if_index_type_t type = decode_index(it.if_index).type;
    return type == IF_TYPE_ETHERNET || type == IF_TYPE_ETHERNET_L3;
  }

  machine giant_ = make_giant(GetParam(), kNow);
};

TEST_P(Giant, HasItsPortsAndTheManagementPort) {
  EXPECT_EQ(count(is_port), GetParam());
  EXPECT_NE(giant_.find(ethernet_index(IF_TYPE_MGMT, 0, 0)), nullptr);
  EXPECT_EQ(giant_.name, "giant-" + std::to_string(GetParam()));
  EXPECT_EQ(giant_.chassis_type, 10u);
}

TEST_P(Giant, InterfacesAreSortedAndNamedOnce) {
  const auto in_order = [](const interface& a, const interface& b) { return a.if_index >= b.if_index; };
  EXPECT_EQ(std::adjacent_find(giant_.interfaces.begin(), giant_.interfaces.end(), in_order), giant_.interfaces.end());

  std::set<std::string> names;
  std::set<mac_address> macs;
  for (const interface& it : giant_.interfaces) {
    char name[40];
    EXPECT_TRUE(names.insert(sprintf_if_index(name, it.if_index)).second) << name;
    EXPECT_TRUE(macs.insert(it.burned_in_mac).second) << name;
  }
}

TEST_P(Giant, PortsStandOnCardsOfTheSwitch) {
  std::set<uint32> slots;
  for (const card& it : giant_.cards) slots.insert(it.slot);
  for (const interface& it : giant_.interfaces) {
    if (!is_port(it)) continue;
    EXPECT_TRUE(slots.contains(decode_index(it.if_index).slot));
    EXPECT_LT(decode_index(it.if_index).slot, giant_.num_slots);
  }
}

TEST_P(Giant, MembersAndChannelsBelongTogether) {
  std::map<if_index_t, uint32> members;
  for (const interface& it : giant_.interfaces)
    if (it.settings.channel != 0) ++members[it.settings.channel];
  for (const auto& [channel, number] : members) {
    EXPECT_NE(giant_.find(channel), nullptr);
    EXPECT_EQ(number, 2u);
  }
  EXPECT_EQ(count([](const interface& it) { return decode_index(it.if_index).type == IF_TYPE_ETH_PORT_CHANNEL; }),
            members.size());
}

TEST_P(Giant, AddressesAreOfRoutedInterfacesAndDifferent) {
  std::set<std::array<uint8, 16>> seen;
  for (const interface& it : giant_.interfaces) {
    EXPECT_TRUE(it.addresses.empty() || it.settings.layer == 3) << it.if_index;
    for (const ip_address& address : it.addresses) EXPECT_TRUE(seen.insert(address.bytes).second);
  }
}

TEST_P(Giant, IsTheSameEveryTime) {
  const machine again = make_giant(GetParam(), kNow);
  ASSERT_EQ(again.interfaces.size(), giant_.interfaces.size());
  for (std::size_t i = 0; i < again.interfaces.size(); ++i) {
    const interface& a = again.interfaces[i];
    const interface& b = giant_.interfaces[i];
    EXPECT_EQ(a.if_index, b.if_index);
    EXPECT_EQ(a.settings.description, b.settings.description);
    EXPECT_EQ(a.state_reason, b.state_reason);
    EXPECT_EQ(a.link_change_sec, b.link_change_sec);
    EXPECT_EQ(a.stats.in.bytes, b.stats.in.bytes);
  }
}

TEST_P(Giant, StartsWithAllOfIt) { EXPECT_EQ(giant_.startup.size(), giant_.interfaces.size()); }

INSTANTIATE_TEST_SUITE_P(Sizes, Giant, testing::Values(1u, 2u, 3u, 64u, 512u, 2000u, 10'000u),
                         testing::PrintToStringParamName());

TEST(GiantSwitch, HasBothKindsAndSeveralStates) {
  const machine giant = make_giant(64, kNow);
  std::set<int> reasons;
  std::set<uint32> modes;
  std::map<int, uint32> kinds;
  for (const interface& it : giant.interfaces) {
    reasons.insert(it.state_reason);
    modes.insert(it.settings.admin_mode);
    ++kinds[decode_index(it.if_index).type];
  }
  EXPECT_EQ(kinds[IF_TYPE_ETHERNET], 48u);
  EXPECT_EQ(kinds[IF_TYPE_ETHERNET_L3], 16u);
  EXPECT_EQ(kinds[IF_TYPE_ETH_PORT_CHANNEL], 2u);
  EXPECT_EQ(kinds[IF_TYPE_MGMT], 1u);
  EXPECT_EQ(reasons, (std::set<int>{2 /* up */, 5 /* error-disabled */, 7 /* not connected */, 11 /* inactive */,
                                    12 /* administratively down */, 14 /* suspended */, 29 /* SFP absent */}));
  EXPECT_EQ(modes, (std::set<uint32>{0 /* routed */, 0x80000 /* access */, 0x100000 /* trunk */}));
}

TEST(GiantSwitch, StateAndReasonAgree) {
  for (const interface& it : make_giant(512, kNow).interfaces) {
    EXPECT_EQ(it.oper_state == 1, it.state_reason == 2);
    EXPECT_EQ(it.settings.admin_state == 2, it.state_reason == 12);
    EXPECT_EQ(it.stats.in_bytes_per_second.value_or(0) != 0,
              it.oper_state == 1 && decode_index(it.if_index).type != IF_TYPE_MGMT);
  }
}

TEST(GiantSwitch, HasNoMorePortsThanThereIsRoomFor) {
  EXPECT_EQ(make_giant(1'000'000, kNow).interfaces.size(), make_giant(10'000, kNow).interfaces.size());
  EXPECT_EQ(make_giant(0, kNow).interfaces.size(), 1u) << "the management port";
}

}  // namespace
}  // namespace host
