// Counters that may be unknown.
#include "switch/count.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(Counter, IsUnknownUntilItHasAValue) {
  counter made;
  EXPECT_FALSE(made.has_value());
  EXPECT_EQ(made.value_or(7), 7U);

  made = 0;
  EXPECT_TRUE(made.has_value());
  EXPECT_EQ(*made, 0U);
  EXPECT_EQ(made.value_or(7), 0U);
}

TEST(Counter, IsForgottenByNullopt) {
  counter known = 12;
  known = std::nullopt;
  EXPECT_EQ(known, counter());
}

TEST(Counter, IsEqualToTheSameValueOnly) {
  EXPECT_EQ(counter(5), counter(5));
  EXPECT_NE(counter(5), counter(6));
  EXPECT_NE(counter(0), counter());
}

TEST(Counter, AddsWhatIsKnown) {
  counter sum = 40;
  sum += 2;
  EXPECT_EQ(sum, counter(42));
  EXPECT_EQ(counter(1) + counter(2), counter(3));
}

TEST(Counter, IsUnknownAsASumWithTheUnknown) {
  EXPECT_EQ(counter(1) + counter(), counter());
  EXPECT_EQ(counter() + counter(1), counter());
  EXPECT_EQ(counter() + counter(), counter());
}

TEST(Counter, StoresTheReservedValueAsTheOneBelow) {
  const counter largest = UINT64_MAX;
  EXPECT_TRUE(largest.has_value());
  EXPECT_EQ(*largest, 18'446'744'073'709'551'614U);
}

TEST(Counter, WrapsASumWithoutForgettingIt) {
  EXPECT_EQ(counter(UINT64_MAX - 1) + counter(3), counter(1));
  EXPECT_TRUE((counter(UINT64_MAX - 1) + counter(1)).has_value());
}

}  // namespace
}  // namespace host
