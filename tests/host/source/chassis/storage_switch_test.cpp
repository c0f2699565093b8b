// The storage director that comes with the project: it loads, and it has what a reader is promised.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "base/vsan_access.h"
#include "host/messages/vsan_set.h"
#include "platform/port_manager.h"
#include "source/chassis/switch_file.h"
#include "switch/if_index_layout.h"
#include "switch/interface_range.h"

namespace host {
namespace {

class StorageSwitch : public testing::Test {
 protected:
  const interface& named(std::string_view text) const {
    std::vector<if_index_t> existing;
    for (const interface& it : storage_.interfaces) existing.push_back(it.if_index);
    std::vector<interface_span> spans;
    EXPECT_FALSE(parse_interface_range(text, spans)) << text;
    std::vector<if_index_t> found;
    append_matching(spans.at(0), existing, found);
    EXPECT_EQ(found.size(), 1u) << text;
    return *storage_.find(found.at(0));
  }

  std::map<int, int> count_by_kind() const {
    std::map<int, int> kinds;
    for (const interface& it : storage_.interfaces) ++kinds[decode_index(it.if_index).type];
    return kinds;
  }

  const machine storage_ = load_switch_file(PMCLI_SWITCHES "/storage.yaml", 1'700'000'000);
};

TEST_F(StorageSwitch, IsNoneOfTheEthernetFamily) {
  EXPECT_EQ(storage_.name, "storage-dir-1");
  EXPECT_EQ(storage_.chassis_type, 5u);
  EXPECT_EQ(storage_.num_slots, 9u);
}

TEST_F(StorageSwitch, HasEveryKindOfStorageInterface) {
  std::map<int, int> kinds = count_by_kind();
  EXPECT_EQ(kinds[IF_TYPE_FC], 24 + 24 + 13 + 4);
  EXPECT_EQ(kinds[IF_TYPE_PORT_CHANNEL], 3);
  EXPECT_EQ(kinds[IF_TYPE_ETH_PORT_CHANNEL], 2);
  EXPECT_EQ(kinds[IF_TYPE_FCIP], 3);
  EXPECT_EQ(kinds[IF_TYPE_ISCSI], 2);
  EXPECT_EQ(kinds[IF_TYPE_SERVER], 5);
  EXPECT_EQ(kinds[IF_TYPE_INBAND], 1);
  EXPECT_EQ(kinds[IF_TYPE_EXTERNAL], 1);
  EXPECT_EQ(kinds[IF_TYPE_MGMT], 1);
  EXPECT_NE(storage_.find(if_index_inband_get_active_sup_priority_hi()), nullptr);
}

TEST_F(StorageSwitch, FibreChannelPortsAreOfThreeFamiliesOnTwoModules) {
  std::map<name_family, int> families;
  std::set<uint32> slots;
  for (const interface& it : storage_.interfaces) {
    const index_fields fields = decode_index(it.if_index);
    if (fields.type != IF_TYPE_FC) continue;
    ++families[fields.family];
    if (fields.family == name_family::usual) slots.insert(fields.slot);
  }
  EXPECT_EQ(families[name_family::usual], 48);
  EXPECT_EQ(families[name_family::bay], 13);
  EXPECT_EQ(families[name_family::external], 4);
  EXPECT_EQ(slots, (std::set<uint32>{0, 1}));
}

TEST_F(StorageSwitch, PortChannelsAreOfBothSubtypesInBothFamilies) {
  std::set<std::pair<int, int>> seen;
  for (const interface& it : storage_.interfaces) {
    const index_fields fields = decode_index(it.if_index);
    if (fields.shape == index_shape::channel) seen.insert({fields.type, fields.subtype});
  }
  EXPECT_EQ(seen, (std::set<std::pair<int, int>>{{4, 1}, {4, 2}, {22, 1}, {22, 2}}));
}

TEST_F(StorageSwitch, ModesSpeedsAndReasonsOfFibreChannel) {
  std::set<uint32> modes, speeds;
  std::set<int> reasons;
  for (const interface& it : storage_.interfaces) {
    if (decode_index(it.if_index).type != IF_TYPE_FC) continue;
    modes.insert(*it.oper_mode);
    speeds.insert(*it.oper_speed_mbps);
    reasons.insert(it.state_reason);
  }
  for (const uint32 mode : {0x1u /* auto */, 0x2u /* SD */, 0x4u /* E */, 0x8u /* TE */, 0x20u /* F */, 0x40u /* FL */,
                            0x4000u /* NP */, 0x8000000u /* TNP */})
    EXPECT_TRUE(modes.contains(mode)) << mode;
  for (const uint32 mbps : {2000u, 4000u, 8000u}) EXPECT_TRUE(speeds.contains(mbps)) << mbps;
  for (const int reason :
       {2 /* up */, 5 /* error-disabled */, 7 /* not connected */, 9 /* not participating */, 10 /* initialising */,
        12 /* admin down */, 17 /* isolated */, 29 /* SFP absent */, 65 /* invalid logins */, 99 /* SFP error */})
    EXPECT_TRUE(reasons.contains(reason)) << reason;
}

TEST_F(StorageSwitch, PortWithoutAModeIsAuto) { EXPECT_EQ(named("fc 2/16").settings.admin_mode, 0x1u); }

TEST_F(StorageSwitch, TrunkListsAreRead) {
  EXPECT_EQ(named("fc 1/21").trunk_vsans, (std::vector<uint16>{1, 10, 11, 12, 20}));
  EXPECT_EQ(named("fcip 2").trunk_vsans, (std::vector<uint16>{12, 20}));
  EXPECT_TRUE(named("fc 1/1").trunk_vsans.empty());
}

TEST_F(StorageSwitch, UsersSeeTheirVsans) {
  ASSERT_EQ(storage_.users.size(), 3u);
  const user* const admin = storage_.find_user("admin");
  const user* const storage_a = storage_.find_user("storage-a");
  const user* const guest = storage_.find_user("guest");
  ASSERT_TRUE(admin != nullptr && storage_a != nullptr && guest != nullptr);
  EXPECT_EQ(storage_.find_user("nobody"), nullptr);

  EXPECT_FALSE(admin->vsans);
  EXPECT_TRUE(admin->may_clear_inband);
  EXPECT_EQ(storage_a->vsans, (std::vector<uint16>{10, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
  EXPECT_FALSE(storage_a->may_clear_inband);
  EXPECT_TRUE(storage_a->sees_counters);
  ASSERT_TRUE(guest->vsans);
  EXPECT_TRUE(guest->vsans->empty());
  EXPECT_FALSE(guest->sees_counters);
}

TEST_F(StorageSwitch, RestrictedUserSeesSomePortsOfEveryTestedKind) {
  const vsan_bitset_t mine = vsan_set(*storage_.find_user("storage-a")->vsans);
  const auto sees = [&](std::string_view text) {
    const interface& it = named(text);
    return may_see_port(mine, {it.vsan, is_trunking_mode(*it.oper_mode), vsan_set(it.trunk_vsans)});
  };
  EXPECT_TRUE(sees("fc 1/1"));
  EXPECT_FALSE(sees("fc 1/9"));
  EXPECT_TRUE(sees("fc 1/21")) << "trunk with VSAN 10";
  EXPECT_TRUE(sees("fc 2/9")) << "trunk with VSAN 15";
  EXPECT_FALSE(sees("fc 2/10")) << "trunk of VSANs 20 to 29";
  EXPECT_TRUE(sees("port-channel 2"));
  EXPECT_FALSE(sees("port-channel 3"));
  EXPECT_TRUE(sees("fcip 2")) << "trunk with VSAN 12";
  EXPECT_FALSE(sees("fcip 7"));
  EXPECT_TRUE(sees("bay 1"));
  EXPECT_FALSE(sees("bay 11"));
  EXPECT_FALSE(sees("ext 10"));
}

TEST_F(StorageSwitch, LoadedInterfacesAreTheStartupConfiguration) {
  ASSERT_EQ(storage_.startup.size(), storage_.interfaces.size());
  for (std::size_t i = 0; i < storage_.startup.size(); ++i)
    EXPECT_EQ(storage_.startup[i], storage_.interfaces[i].if_index);
}

TEST_F(StorageSwitch, PortsNamedByANumberHaveTheirOwnHardwareAddresses) {
  std::set<mac_address> macs;
  for (const std::string_view text : {"fc 1/1", "fc 2/1", "bay 1", "bay 2", "ext 1", "ext 2", "mgmt 0"})
    EXPECT_TRUE(macs.insert(named(text).burned_in_mac).second) << text;
}

}  // namespace
}  // namespace host
