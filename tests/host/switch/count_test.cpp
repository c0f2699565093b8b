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
  const counter reserved = 18'446'744'073'709'551'614U;
  EXPECT_TRUE(reserved.has_value());
  EXPECT_EQ(*reserved, 18'446'744'073'709'551'613U);
  EXPECT_EQ(*counter(18'446'744'073'709'551'615U), 18'446'744'073'709'551'615U) << "the largest value is a count";
}

TEST(Counter, WrapsASumWithoutForgettingIt) {
  EXPECT_EQ(counter(UINT64_MAX) + counter(3), counter(2));
  EXPECT_TRUE((counter(UINT64_MAX) + counter(UINT64_MAX)).has_value());
}

}  // namespace
}  // namespace host
