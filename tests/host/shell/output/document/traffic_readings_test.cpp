// Rates between two readings, and which interfaces have them.
#include "shell/output/document/traffic_readings.h"

#include <gtest/gtest.h>

namespace session {
namespace {

using host::rates_between;
using host::traffic_count;
using host::traffic_readings;

constexpr traffic_count kBefore = {
    .at_sec = 100, .in_bytes = 1000, .in_packets = 10, .out_bytes = 500, .out_packets = 4};

// The same after so many seconds, when 3000 bytes in 30 packets came and 900 in 6 went.
traffic_count after(double seconds) {
  return {.at_sec = 100 + seconds, .in_bytes = 4000, .in_packets = 40, .out_bytes = 1400, .out_packets = 10};
}

TEST(Rates, AreTheDifferenceByTheTimeThatPassed) {
  const auto rates = rates_between(kBefore, after(2));
  ASSERT_TRUE(rates);
  EXPECT_DOUBLE_EQ(rates->in_bytes, 1500);
  EXPECT_DOUBLE_EQ(rates->in_packets, 15);
  EXPECT_DOUBLE_EQ(rates->out_bytes, 450);
  EXPECT_DOUBLE_EQ(rates->out_packets, 3);
}

TEST(Rates, PartsOfASecondCount) {
  EXPECT_DOUBLE_EQ(rates_between(kBefore, after(2.5))->in_bytes, 1200);
  EXPECT_DOUBLE_EQ(rates_between(kBefore, after(0.25))->out_packets, 24);
}

TEST(Rates, NothingCountedIsARateOf0) {
  traffic_count now = kBefore;
  now.at_sec += 1;
  const auto rates = rates_between(kBefore, now);
  ASSERT_TRUE(rates);
  EXPECT_DOUBLE_EQ(rates->in_bytes, 0);
  EXPECT_DOUBLE_EQ(rates->out_packets, 0);
}

TEST(Rates, AreAbsentWhenNoTimePassed) {
  EXPECT_FALSE(rates_between(kBefore, after(0)));
  EXPECT_FALSE(rates_between(kBefore, after(-1)));
}

TEST(Rates, AreAllAbsentWhenAnyCounterWentBackwards) {
  for (uint64 traffic_count::*const counter :
       {&traffic_count::in_bytes, &traffic_count::in_packets, &traffic_count::out_bytes, &traffic_count::out_packets}) {
    traffic_count now = after(2);
    now.*counter = kBefore.*counter - 1;
    EXPECT_FALSE(rates_between(kBefore, now));
    now.*counter = kBefore.*counter;
    EXPECT_TRUE(rates_between(kBefore, now));
  }
}

// Also when all of them have already passed what they were.
TEST(Rates, AreAbsentWhenTheCountersWereCleared) {
  traffic_count now = after(2);
  now.last_clear_sec = 101;
  EXPECT_FALSE(rates_between(kBefore, now));
}

TEST(Rates, CountersMayBeAsLargeAsTheyGet) {
  const traffic_count before = {.at_sec = 1, .in_bytes = 18446744073709551000U};
  const traffic_count now = {.at_sec = 2, .in_bytes = 18446744073709551615U};
  EXPECT_DOUBLE_EQ(rates_between(before, now)->in_bytes, 615);
}

// Interfaces that count 100 bytes a second, but for one that nobody counts.
struct Readings : testing::Test {
  static constexpr if_index_t kUncounted = 9;

  double now_sec = 50;
  int counted = 0;
  traffic_readings readings{[this](if_index_t if_index) -> std::optional<traffic_count> {
    ++counted;
    if (if_index == kUncounted) return std::nullopt;
    return traffic_count{.at_sec = now_sec, .in_bytes = static_cast<uint64>(now_sec * 100)};
  }};

  void next(double seconds) {
    now_sec += seconds;
    readings.begin_reading();
  }
};

TEST_F(Readings, FirstHasNoRates) {
  next(0);
  EXPECT_FALSE(readings.look_at(1, true));
  ASSERT_EQ(readings.rows().size(), 1U);
  EXPECT_FALSE(readings.rows()[0].rates);
}

TEST_F(Readings, LaterOnesHaveRatesSinceTheOneBefore) {
  for (const double seconds : {0.0, 2.0, 10.0}) {
    next(seconds);
    const auto rates = readings.look_at(1, true);
    ASSERT_EQ(rates.has_value(), seconds > 0);
    EXPECT_DOUBLE_EQ(rates.value_or(host::traffic_rates{.in_bytes = 100}).in_bytes, 100);
  }
}

TEST_F(Readings, InterfaceThatWasAwayHasNoRate) {
  next(0);
  readings.look_at(1, true);
  next(2);
  readings.look_at(2, true);
  next(2);
  EXPECT_FALSE(readings.look_at(1, true));
  EXPECT_TRUE(readings.look_at(2, true));
}

TEST_F(Readings, InterfaceIsReadOnceInAReading) {
  next(0);
  readings.look_at(1, true);
  next(2);
  const auto first = readings.look_at(1, true);
  now_sec += 7;
  const auto second = readings.look_at(1, true);
  ASSERT_TRUE(first && second);
  EXPECT_DOUBLE_EQ(first->in_bytes, second->in_bytes);
  EXPECT_EQ(counted, 2);
  EXPECT_EQ(readings.rows().size(), 1U);
}

TEST_F(Readings, RowsAreThoseThatAreShownAndCountedInTheirOrder) {
  next(0);
  readings.look_at(3, false);
  readings.look_at(2, true);
  readings.look_at(1, false);
  readings.look_at(kUncounted, true);
  readings.look_at(3, true);  // in a second table
  const auto rows = readings.rows();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].if_index, 3U);
  EXPECT_EQ(rows[1].if_index, 2U);
}

}  // namespace
}  // namespace session
