// Numbers with a decimal prefix.
#include "shell/output/terminal/short_number.h"

#include <gtest/gtest.h>

namespace session {
namespace {

using host::short_number;

TEST(ShortNumber, BelowAThousandIsExact) {
  EXPECT_EQ(short_number(0), "0");
  EXPECT_EQ(short_number(999), "999");
}

TEST(ShortNumber, HasThreeDigitsAndAPrefix) {
  EXPECT_EQ(short_number(1'840'000'000), "1.84G");
  EXPECT_EQ(short_number(25'540), "25.5k");
  EXPECT_EQ(short_number(255'000), "255k");
  EXPECT_EQ(short_number(3'120'400'000'000), "3.12T");
  EXPECT_EQ(short_number(18'446'744'073'709'551'615U), "18.4E");
}

TEST(ShortNumber, LeavesOutZerosAtTheEndOfAFraction) {
  EXPECT_EQ(short_number(1000), "1k");
  EXPECT_EQ(short_number(2'500'000'000), "2.5G");
  EXPECT_EQ(short_number(10'000'000'000), "10G");
  EXPECT_EQ(short_number(100'000'000), "100M");
}

TEST(ShortNumber, IsRounded) {
  EXPECT_EQ(short_number(1'835'000), "1.84M");
  EXPECT_EQ(short_number(1'834'999), "1.83M");
  EXPECT_EQ(short_number(9'995), "10k");
  EXPECT_EQ(short_number(99'950), "100k");
  EXPECT_EQ(short_number(999'499), "999k");
  EXPECT_EQ(short_number(999'500), "1M");
}

}  // namespace
}  // namespace session
