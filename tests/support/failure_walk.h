// The failure walk: one scenario again and again, with the 1st, the 2nd, the 3rd ... call that can fail failing, until
// a run meets no failure. Each run must release all it took.
#pragma once

#include <functional>
#include <string>

#include "support/recording_platform.h"

namespace pmcli_test {

// One run of a walk, after the scenario. `platform.failed_call()` names the call that failed and is empty in the last
// run, in which nothing fails; `platform.text()` is what was printed.
struct walk_run {
  uint32 number;  // counts from 1
  const RecordingPlatform& platform;
};

// Programs a fresh platform and calls the library. It asserts nothing that does not hold in every run.
using walk_scenario = std::function<void(RecordingPlatform&)>;
using walk_observer = std::function<void(const walk_run&)>;

// Walks `scenario`. `result` is what a failing call returns: -1 is a transport failure, others are system errors. Gives
// the number of calls that failed; a scenario without a call that can fail, and one that does not come to an end, fail
// the test.
uint32 walk_failures(const walk_scenario& scenario, const walk_observer& observe = {}, int32 result = -1);

}  // namespace pmcli_test
