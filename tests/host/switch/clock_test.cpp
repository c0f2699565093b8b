// The host's clock.
#include "switch/clock.h"

#include <gtest/gtest.h>

namespace host {
namespace {

class Clock : public testing::Test {
 protected:
  ~Clock() override { clock_follow_machine(); }
};

TEST_F(Clock, ShowsTheTimeOfTheMachine) {
  const std::time_t before = std::time(nullptr);
  const std::time_t shown = clock_now();
  EXPECT_GE(shown, before - 1);
  EXPECT_LE(shown, std::time(nullptr) + 1);
}

TEST_F(Clock, StandsStillWhereItWasSet) {
  clock_set(1'700'000'000);
  EXPECT_EQ(clock_now(), 1'700'000'000);

  clock_advance(90);
  EXPECT_EQ(clock_now(), 1'700'000'090);

  clock_advance(-100);
  EXPECT_EQ(clock_now(), 1'699'999'990);
}

TEST_F(Clock, RunsAheadWhenItWasNotSet) {
  clock_advance(100'000);
  EXPECT_GE(clock_now(), std::time(nullptr) + 99'999);
  EXPECT_LE(clock_now(), std::time(nullptr) + 100'001);
}

TEST_F(Clock, IsToldWithItsFraction) {
  const auto before = static_cast<double>(clock_now());
  const double shown = clock_now_exactly();
  EXPECT_GE(shown, before);
  EXPECT_LT(shown, static_cast<double>(clock_now()) + 1);

  clock_set(1'700'000'000);
  EXPECT_EQ(clock_now_exactly(), 1'700'000'000);
  clock_advance(90);
  EXPECT_EQ(clock_now_exactly(), 1'700'000'090);
}

TEST_F(Clock, HasTheMachineTimeOfARecording) {
  clock_take_machine_time(1'600'000'000'250'000'000);
  EXPECT_EQ(clock_now(), 1'600'000'000);
  EXPECT_EQ(clock_now_exactly(), 1'600'000'000.25);
  clock_take_over({false, 90});
  EXPECT_EQ(clock_now(), 1'600'000'090);
  clock_take_over({true, 5});
  EXPECT_EQ(clock_now(), 5);
  clock_follow_machine();
  EXPECT_GE(clock_now(), std::time(nullptr) - 1);
}

TEST_F(Clock, IsTakenOverFromAnotherOne) {
  clock_set(1'700'000'000);
  const clock_course stopped = clock_course_now();
  clock_follow_machine();
  clock_advance(100'000);
  const clock_course ahead = clock_course_now();

  clock_take_over(stopped);
  EXPECT_EQ(clock_now(), 1'700'000'000);
  clock_take_over(ahead);
  EXPECT_FALSE(clock_is_stopped());
  EXPECT_GE(clock_now(), std::time(nullptr) + 99'999);
}

TEST_F(Clock, GoesBackToTheTimeOfTheMachine) {
  clock_set(5);
  clock_follow_machine();
  EXPECT_GE(clock_now(), std::time(nullptr) - 1);
}

}  // namespace
}  // namespace host
