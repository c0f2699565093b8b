// Which interfaces a user may use who is restricted to some VSANs.
#include <gtest/gtest.h>

#include <algorithm>

#include "contract/command/interface_command.h"
#include "contract/sample_ports.h"
#include "pmcli/selection.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

constexpr uint32 kAllowed = 0;
constexpr uint32 kDenied = 0xFFFFFFF3;  // -13
constexpr uint32 kFailed = 0xFFFFFFFF;
constexpr uint32 kNotAllowed = 0x40290000;

using Pairs = std::vector<vsh_intf_mono_range_t>;
using Asked = std::vector<if_index_t>;

vsan_bitset_t vsans(const std::vector<uint32>& ids) {
  vsan_bitset_t set;
  bitset_clear_all(&set);
  for (const uint32 id : ids) bitset_set(&set, id);
  return set;
}

// The user of the tests: sees VSANs 10 and 20.
paraminfo_t* user_command(RecordingPlatform& platform, uint32 prc_mode = 1) {
  paraminfo_t* const param = platform.show_command(1, 0);
  param->prc_mode = prc_mode;
  param->vsan_mask = vsans({10, 20});
  return param;
}

void put_ports(RecordingPlatform& platform, const Asked& interfaces) {
  for (const if_index_t if_index : interfaces) platform.ports[if_index] = port_record();
}

// Denies one interface; gives the interfaces that were asked for.
std::shared_ptr<Asked> deny(RecordingPlatform& platform, if_index_t denied) {
  auto asked = std::make_shared<Asked>();
  platform.is_permitted = [=](const vsh_fc_intf_perm_check_info_t& info) -> boolean {
    asked->push_back(info.if_index);
    return info.if_index != denied;
  };
  return asked;
}

uint32 check(RecordingPlatform& platform, const Pairs& pairs) {
  intf_range_t ranges = interface_ranges(pairs);
  return pm_cli_check_user_vsan_perms(user_command(platform), &ranges);
}

uint32 check_one(RecordingPlatform& platform, if_index_t if_index) {
  return pm_cli_check_if_index_for_vsan_perm(user_command(platform), if_index);
}

const if_index_t kFc1 = fibre_channel(1, 1);
const if_index_t kFc2 = fibre_channel(1, 2);
const if_index_t kFc3 = fibre_channel(1, 3);
const if_index_t kFc9 = fibre_channel(1, 9);

// ---- Which interfaces are checked ----------------------------------------------------------------------------------

TEST(VsanPermission, ThreeKindsAreSubjectToIt) {
  for (uint32 type = 0; type <= 255; ++type) {
    const bool is_checked = type == 1 || type == 4 || type == 10;
    RecordingPlatform platform;
    platform.types[kFc1] = static_cast<if_index_type_t>(type);
    put_ports(platform, {kFc1});
    const auto asked = deny(platform, kFc1);
    EXPECT_EQ(check(platform, {{kFc1, kFc1}}), is_checked ? kDenied : kAllowed) << type;
    EXPECT_EQ(check_one(platform, kFc1), is_checked ? kNotAllowed : kAllowed) << type;
    EXPECT_EQ(asked->size(), is_checked ? 2U : 0U);
    EXPECT_EQ(platform.port_ranges_asked.size(), is_checked ? 2U : 0U);
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(VsanPermission, InterfaceWhoseKindCannotBeReadIsNotChecked) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_type", PM_ERR_GENERAL);
  EXPECT_EQ(check(platform, {{kFc1, kFc1}}), kAllowed);
  EXPECT_EQ(check_one(platform, kFc1), kAllowed);
  EXPECT_THAT(platform.port_ranges_asked, IsEmpty());
}

TEST(VsanPermission, LowEndOfAPairTellsItsKind) {
  RecordingPlatform platform;
  put_ports(platform, {kFc1, kPort});
  const auto asked = deny(platform, kFc1);
  EXPECT_EQ(check(platform, {{kPort, kFc1}}), kAllowed);
  EXPECT_THAT(*asked, IsEmpty());
  EXPECT_EQ(check(platform, {{kFc1, kPort}}), kDenied);
}

// ---- What the shell is asked ---------------------------------------------------------------------------------------

using permission_check = uint32 (*)(RecordingPlatform& platform, if_index_t if_index);

uint32 check_as_range(RecordingPlatform& platform, if_index_t if_index) {
  return check(platform, {{if_index, if_index}});
}

constexpr permission_check kChecks[] = {check_as_range, check_one};

TEST(VsanPermissionRequest, IsMadeOfThePortAndTheUser) {
  for (const permission_check check_port : kChecks) {
    RecordingPlatform platform;
    pm_port_info_t& port = platform.ports[kFc1] = port_record();
    port.oper_port_mode = 0x01020304;
    port.admin_port_mode = 0x05060708;
    port.port_vsan = 0x090A0B0C;
    port.cfg_port_vsan = 1;
    port.oper_port_vsan = 2;
    platform.port_vsans[kFc1] = vsans({1, 4095});
    uint32 requests = 0;
    platform.is_permitted = [&](const vsh_fc_intf_perm_check_info_t& info) -> boolean {
      ++requests;
      EXPECT_EQ(ids_of(*info.vsan_mask), "10,20");
      EXPECT_EQ(info.if_index, kFc1);
      EXPECT_EQ(info.oper_port_mode, 0x01020304U);
      EXPECT_EQ(info.admin_port_mode, 0x05060708U);
      EXPECT_EQ(info.port_vsan, 0x090A0B0CU);
      EXPECT_EQ(ids_of(*info.trunk_vsan_list), "1,4095");
      EXPECT_EQ(info.parse_cmd_mode, 1U);
      return 1;
    };
    EXPECT_EQ(check_port(platform, kFc1), kAllowed);
    EXPECT_EQ(requests, 1U);
    EXPECT_EQ(platform.permission_queues, (std::vector<mts_q_handle_t>(2, RecordingPlatform::q())));
    EXPECT_EQ(platform.drops, (std::vector<uint32>{1}));
    ASSERT_EQ(platform.port_ranges_asked.size(), 1U);
    EXPECT_EQ(platform.port_ranges_asked[0].low, kFc1);
    EXPECT_EQ(platform.port_ranges_asked[0].high, kFc1);
  }
}

TEST(VsanPermissionRequest, MaskIsTheOneOfTheParameterBlock) {
  RecordingPlatform platform;
  put_ports(platform, {kFc1});
  paraminfo_t* const param = user_command(platform, 7);
  platform.is_permitted = [=](const vsh_fc_intf_perm_check_info_t& info) -> boolean {
    return info.vsan_mask == &param->vsan_mask && info.parse_cmd_mode == 7;
  };
  EXPECT_EQ(pm_cli_check_if_index_for_vsan_perm(param, kFc1), kAllowed);
}

TEST(VsanPermissionRequest, UserWithoutAnyVsanIsAskedForAllTheSame) {
  for (const boolean is_permitted : {0U, 1U}) {
    RecordingPlatform platform;
    put_ports(platform, {kFc1});
    platform.is_permitted = [=](const vsh_fc_intf_perm_check_info_t& info) -> boolean {
      EXPECT_EQ(ids_of(*info.vsan_mask), "size 0: ");
      return is_permitted;
    };
    paraminfo_t* const param = user_command(platform);
    param->vsan_mask = {};
    intf_range_t ranges = interface_ranges({{kFc1, kFc1}});
    EXPECT_EQ(pm_cli_check_user_vsan_perms(param, &ranges), is_permitted != 0 ? kAllowed : kDenied);
    EXPECT_EQ(pm_cli_check_if_index_for_vsan_perm(param, kFc1), is_permitted != 0 ? kAllowed : kNotAllowed);
  }
}

// Whatever the port before it carries.
TEST(VsanPermissionRequest, PortWithoutAMembershipCarriesNoVsan) {
  RecordingPlatform platform;
  put_ports(platform, {kFc1, kFc2});
  platform.port_vsans[kFc1] = vsans({1, 2, 3});
  std::vector<std::string> carried;
  platform.is_permitted = [&](const vsh_fc_intf_perm_check_info_t& info) -> boolean {
    carried.push_back(ids_of(*info.trunk_vsan_list));
    return 1;
  };
  EXPECT_EQ(check(platform, {{kFc1, kFc2}}), kAllowed);
  EXPECT_EQ(check_one(platform, kFc2), kAllowed);
  EXPECT_EQ(carried, (std::vector<std::string>{"1,2,3", "", ""}));
}

TEST(VsanPermissionRequest, AnyAnswerButZeroAllows) {
  for (const boolean permitted : {1U, 2U, 0x100U, 0x80000000U}) {
    RecordingPlatform platform;
    put_ports(platform, {kFc1});
    platform.is_permitted = [=](const vsh_fc_intf_perm_check_info_t&) { return permitted; };
    EXPECT_EQ(check(platform, {{kFc1, kFc1}}), kAllowed);
    EXPECT_EQ(check_one(platform, kFc1), kAllowed);
  }
}

// ---- Ranges --------------------------------------------------------------------------------------------------------

TEST(VsanPermissionOfRanges, AllPortsOfAllPairsAreAskedForInOrder) {
  RecordingPlatform platform;
  put_ports(platform, {kFc1, kFc2, kFc3, kOldChannel, kPort});
  const auto asked = deny(platform, 0);
  EXPECT_EQ(check(platform, {{kFc2, kFc3}, {kPort, kPort}, {kOldChannel, kOldChannel}, {kFc1, kFc2}}), kAllowed);
  EXPECT_EQ(*asked, (Asked{kFc2, kFc3, kOldChannel, kFc1, kFc2}));
  ASSERT_EQ(platform.port_ranges_asked.size(), 3U);
  EXPECT_EQ(platform.port_ranges_asked[0].low, kFc2);
  EXPECT_EQ(platform.port_ranges_asked[0].high, kFc3);
  EXPECT_EQ(platform.drops, (std::vector<uint32>{1, 2, 3}));
}

TEST(VsanPermissionOfRanges, FirstDeniedPortEndsTheWalk) {
  struct denial_case {
    if_index_t denied;
    Asked asked;
  };
  const denial_case kDenials[] = {
      {kFc1, {kFc1}}, {kFc2, {kFc1, kFc2}}, {kFc3, {kFc1, kFc2, kFc3}}, {kFc9, {kFc1, kFc2, kFc3, kFc9}}};
  for (const denial_case& denial : kDenials) {
    RecordingPlatform platform;
    put_ports(platform, {kFc1, kFc2, kFc3, kFc9});
    const auto asked = deny(platform, denial.denied);
    EXPECT_EQ(check(platform, {{kFc1, kFc3}, {kFc9, kFc9}}), kDenied);
    EXPECT_EQ(*asked, denial.asked);
    EXPECT_EQ(platform.text(), "");
    EXPECT_EQ(platform.drops.size(), denial.denied == kFc9 ? 2U : 1U);
  }
}

TEST(VsanPermissionOfRanges, WithoutPairsAllIsAllowed) {
  RecordingPlatform platform;
  EXPECT_EQ(check(platform, {}), kAllowed);
  EXPECT_THAT(platform.calls, IsEmpty());
}

TEST(VsanPermissionOfRanges, MoreThan64PairsAreNotLookedAt) {
  for (const uint32 count : {65U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    put_ports(platform, {kFc1});
    const auto asked = deny(platform, 0);
    const auto ranges = std::make_unique<intf_range_t>(interface_ranges(Pairs(64, {kFc1, kFc1})));
    ranges->range_count = count;
    EXPECT_EQ(pm_cli_check_user_vsan_perms(user_command(platform), ranges.get()), kAllowed);
    EXPECT_EQ(asked->size(), 64U);
  }
}

TEST(VsanPermissionOfRanges, FailedRequestEndsTheWalk) {
  for (const int32 error : {-1, int32{PM_ERR_GENERAL}}) {
    RecordingPlatform platform;
    put_ports(platform, {kFc1});
    platform.fail_with("pm_get_port_info_range", error);
    EXPECT_EQ(check(platform, {{kFc1, kFc1}, {kFc1, kFc1}}), kFailed);
    EXPECT_EQ(platform.text(), "error: getting port info range\n");
    EXPECT_EQ(platform.terminal(), platform.text());
    EXPECT_EQ(platform.port_ranges_asked.size(), 1U);
    EXPECT_THAT(platform.drops, IsEmpty());
  }
}

TEST(VsanPermissionOfRanges, AnswerThatCannotBeParsedEndsTheWalk) {
  for (const int32 error : {-1, int32{PM_ERR_GENERAL}}) {
    RecordingPlatform platform;
    put_ports(platform, {kFc1});
    platform.fail_with("pm_parse_get_port_info_range", error);
    EXPECT_EQ(check(platform, {{kFc1, kFc1}, {kFc1, kFc1}}), kFailed);
    EXPECT_EQ(platform.text(), "error: parsing port info range\n");
    EXPECT_EQ(platform.terminal(), platform.text());
    EXPECT_EQ(platform.port_ranges_asked.size(), 1U);
    EXPECT_EQ(platform.drops, (std::vector<uint32>{1}));
    EXPECT_EQ(platform.count("vsh_fc_intf_perm_check"), 0U);
  }
}

TEST(VsanPermissionOfRanges, PairWithoutPortsIsAllowed) {
  RecordingPlatform platform;
  deny(platform, kFc1);
  EXPECT_EQ(check(platform, {{kFc1, kFc9}}), kAllowed);
  for (const uint32 count : {0U, 1U, 0xFFFFFFFFU}) {
    platform.port_range = {count, std::nullopt};
    EXPECT_EQ(check(platform, {{kFc1, kFc9}}), kAllowed);
  }
  platform.port_range = {0, octets(sizeof(pm_port_info_t))};
  EXPECT_EQ(check(platform, {{kFc1, kFc9}}), kAllowed);
  EXPECT_EQ(platform.count("vsh_fc_intf_perm_check"), 0U);
}

// ---- One interface -------------------------------------------------------------------------------------------------

TEST(VsanPermissionOfOne, ExactlyOnePortMustBeFound) {
  octets two(2 * sizeof(pm_port_info_t));
  for (const RecordingPlatform::port_config_answer& answer : std::vector<RecordingPlatform::port_config_answer>{
           {0, std::nullopt}, {1, std::nullopt}, {0xFFFFFFFF, std::nullopt}, {0, two}, {2, two}}) {
    RecordingPlatform platform;
    platform.port_range = answer;
    EXPECT_EQ(check_one(platform, kFc1), kNotAllowed);
    EXPECT_EQ(platform.count("vsh_fc_intf_perm_check"), 0U);
    EXPECT_EQ(platform.text(), "");
  }
  RecordingPlatform platform;
  platform.port_range = {1, two};
  EXPECT_EQ(check_one(platform, kFc1), kAllowed);
  EXPECT_EQ(platform.count("vsh_fc_intf_perm_check"), 1U);
}

TEST(VsanPermissionOfOne, FailedRequestIsTold) {
  RecordingPlatform platform;
  put_ports(platform, {kFc1});
  platform.fail_with("pm_get_port_info_range");
  EXPECT_EQ(check_one(platform, kFc1), kFailed);
  EXPECT_EQ(platform.text(), "error: getting port info range\n");
}

TEST(VsanPermissionOfOne, AnswerThatCannotBeParsedIsTold) {
  RecordingPlatform platform;
  put_ports(platform, {kFc1});
  platform.fail_with("pm_parse_get_port_info_range");
  EXPECT_EQ(check_one(platform, kFc1), kNotAllowed);
  EXPECT_EQ(platform.text(), "error: parsing port info range\n");
  EXPECT_EQ(platform.drops, (std::vector<uint32>{1}));
}

TEST(VsanPermission, IsAskedOnTheQueueOfTheCommand) {
  RecordingPlatform platform;
  put_ports(platform, {kFc1});
  paraminfo_t* const param = user_command(platform);
  param->q = 99;
  intf_range_t ranges = interface_ranges({{kFc1, kFc1}});
  pm_cli_check_user_vsan_perms(param, &ranges);
  pm_cli_check_if_index_for_vsan_perm(param, kFc1);
  EXPECT_EQ(platform.permission_queues, std::vector<mts_q_handle_t>(4, 99));
}

}  // namespace
}  // namespace pmcli_test
