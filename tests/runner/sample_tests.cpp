// Tests that end in every way in which a test can end, for the test of the runner. Their order matters: others follow
// those that end the process.
#include <gtest/gtest.h>

#include <cstdlib>

TEST(Sample, Passes) { SUCCEED(); }

TEST(Sample, Fails) { EXPECT_EQ(1 + 1, 3) << "for the runner to show"; }

TEST(Sample, Crashes) { std::abort(); }

TEST(Sample, PassesAfterACrash) { SUCCEED(); }

TEST(Sample, Exits) { std::exit(0); }

TEST(Sample, PassesAfterAnExit) { SUCCEED(); }

TEST(Sample, IsSkipped) { GTEST_SKIP() << "this machine has no antenna"; }

TEST(Sample, DISABLED_IsNotRun) { FAIL(); }

TEST(SampleAtExit, Passes) { SUCCEED(); }

// As a leak that is found when the process ends.
TEST(SampleAtExit, FailsTheProcess) {
  std::atexit([] { std::_Exit(23); });
}

TEST(SampleAtExit, PassesToo) { SUCCEED(); }
