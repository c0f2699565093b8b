#include "support/failure_walk.h"

#include <gtest/gtest.h>

#include <map>

namespace pmcli_test {
namespace {

constexpr uint32 kMostRuns = 10'000;

// A walk on its way.
struct walk {
  const walk_scenario& scenario;
  const walk_observer& observe;
  int32 result;
  uint32 failed = 0;                                // runs in which a call failed
  std::map<std::string, uint32> failed_calls = {};  // how often by name
  std::vector<std::string> calls = {};              // of the last run

  // One run with the nth call failing. Whether there was such a call.
  bool run_failing(uint32 nth) {
    RecordingPlatform platform;
    platform.fail_call(nth, result);
    scenario(platform);
    const std::string& failed_call = platform.failed_call();
    SCOPED_TRACE("failure walk, run " + std::to_string(failed + 1) + ", failing call: " + failed_call);
    platform.expect_all_released();
    if (observe) observe({failed + 1, platform});
    calls = platform.calls;
    if (failed_call.empty()) return false;
    ++failed;
    ++failed_calls[failed_call];
    return true;
  }
};

}  // namespace

uint32 walk_failures(const walk_scenario& scenario, const walk_observer& observe, int32 result) {
  walk on_way{scenario, observe, result};
  while (on_way.failed < kMostRuns && on_way.run_failing(on_way.failed + 1)) continue;
  if (on_way.failed == kMostRuns) ADD_FAILURE() << "the scenario did not end after " << kMostRuns << " failing calls";

  // What is asked only once in the life of the process moves the calls behind it up; those had no turn yet.
  std::map<std::string, uint32> seen;
  const std::vector<std::string> calls = on_way.calls;
  for (uint32 nth = 1; nth <= calls.size(); ++nth)
    if (++seen[calls[nth - 1]] > on_way.failed_calls[calls[nth - 1]]) on_way.run_failing(nth);

  if (on_way.failed == 0) ADD_FAILURE() << "the scenario makes no call that can fail";
  return on_way.failed;
}

}  // namespace pmcli_test
