// Which ports a user of some VSANs sees.
#include "base/vsan_access.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "host/messages/vsan_set.h"

namespace host {
namespace {

vsan_bitset_t set_of(std::initializer_list<uint16> vsans) { return vsan_set({vsans.begin(), vsans.size()}); }

TEST(VsanAccess, PortOfAVsanOfTheUserIsSeen) {
  const vsan_bitset_t user = set_of({10, 11, 4095});
  const vsan_bitset_t none = set_of({});

  EXPECT_TRUE(may_see_port(user, {10, false, none}));
  EXPECT_TRUE(may_see_port(user, {4095, false, none}));
  EXPECT_FALSE(may_see_port(user, {9, false, none}));
  EXPECT_FALSE(may_see_port(user, {12, false, none}));
  EXPECT_FALSE(may_see_port(user, {0, false, none}));
}

TEST(VsanAccess, TrunkIsSeenByAnyVsanThatItCarries) {
  const vsan_bitset_t user = set_of({10, 300});
  const vsan_bitset_t shared = set_of({1, 300});
  const vsan_bitset_t others = set_of({1, 299, 301});

  EXPECT_TRUE(may_see_port(user, {1, true, shared}));
  EXPECT_FALSE(may_see_port(user, {1, true, others}));
  EXPECT_TRUE(may_see_port(user, {10, true, others})) << "by its own VSAN";
}

TEST(VsanAccess, CarriedVsansOfAPortThatDoesNotTrunkDoNotCount) {
  EXPECT_FALSE(may_see_port(set_of({10}), {1, false, set_of({10})}));
}

// All that a user may see, but one.
vsan_bitset_t all_but(uint32 missing) {
  vsan_bitset_t set = set_of({});
  for (uint32 vsan = 1; vsan <= 4093; ++vsan)
    if (vsan != missing) bitset_set(&set, vsan);
  return set;
}

TEST(VsanAccess, UsersWithAllVsansAreNotRestricted) {
  EXPECT_FALSE(is_restricted_to(all_but(0)));
  EXPECT_TRUE(is_restricted_to(set_of({})));
  for (const uint32 missing : {1U, 2000U, 4093U}) EXPECT_TRUE(is_restricted_to(all_but(missing))) << missing;
}

TEST(VsanAccess, UserWithoutAVsanSeesNothing) {
  const vsan_bitset_t nobody = set_of({});
  EXPECT_FALSE(may_see_port(nobody, {1, false, set_of({})}));
  EXPECT_FALSE(may_see_port(nobody, {1, true, set_of({1, 2, 3})}));
}

TEST(VsanAccess, VsanBeyondTheSetIsNotSeen) {
  vsan_bitset_t all{};
  all.size = BITSET_BYTES;
  for (uint8& bits : all.bits) bits = 0xFF;
  EXPECT_TRUE(may_see_port(all, {4095, false, all}));
  EXPECT_FALSE(may_see_port(all, {4096, false, all}));
  EXPECT_FALSE(may_see_port(all, {0xFFFFFFFF, false, all}));
}

TEST(VsanAccess, TrunkingModes) {
  for (const uint32 mode : {0x8u /* TE */, 0x100000u /* trunk */, 0x4000000u /* TF */, 0x8000000u /* TNP */})
    EXPECT_TRUE(is_trunking_mode(mode)) << mode;
  for (const uint32 mode : {0u, 0x1u /* auto */, 0x4u /* E */, 0x20u /* F */, 0x4000u /* NP */, 0x80000u /* access */})
    EXPECT_FALSE(is_trunking_mode(mode)) << mode;
}

}  // namespace
}  // namespace host
