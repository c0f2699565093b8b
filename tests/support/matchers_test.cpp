// The matchers themselves: what they accept, what they refuse, and what a failure shows.
#include "support/matchers.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace pmcli_test {
namespace {

TEST(Matchers, APartIsExpectedOrNot) {
  EXPECT_THAT("Eth1/1 up", HasSubstrOnlyIf(true, "up"));
  EXPECT_THAT("Eth1/1 up", HasSubstrOnlyIf(false, "down"));
  EXPECT_THAT("Eth1/1 up", Not(HasSubstrOnlyIf(true, "down")));
  EXPECT_THAT("Eth1/1 up", Not(HasSubstrOnlyIf(false, "up")));
}

TEST(Matchers, AFailureShowsThePartAndTheText) {
  static const std::string text = "Eth1/1 up";
  EXPECT_NONFATAL_FAILURE(EXPECT_THAT(text, HasSubstrOnlyIf(true, "down")), "has substring \"down\"");
  EXPECT_NONFATAL_FAILURE(EXPECT_THAT(text, HasSubstrOnlyIf(true, "down")), "Actual: \"Eth1/1 up\"");
  EXPECT_NONFATAL_FAILURE(EXPECT_THAT(text, HasSubstrOnlyIf(false, "up")), "has no substring \"up\"");
}

TEST(Matchers, IdsOfASet) {
  vlan_bitset_t set{};
  EXPECT_EQ(ids_of(set), "size 0: ");
  set.size = 512;
  EXPECT_EQ(ids_of(set), "");
  set.bits[0] = 0x81;
  set.bits[1] = 0x40;
  set.bits[511] = 0x01;
  EXPECT_EQ(ids_of(set), "0,7,9,4095");
}

}  // namespace
}  // namespace pmcli_test
