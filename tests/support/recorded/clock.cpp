// The clock of the library. The library's objects are linked so that their calls arrive here.
#include <ctime>

#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

time_t __wrap_time(time_t* stored) {
  const RecordingPlatform* const platform = RecordingPlatform::active();
  const time_t now = platform != nullptr && platform->now ? static_cast<time_t>(*platform->now) : std::time(nullptr);
  if (stored != nullptr) *stored = now;
  return now;
}

}  // extern "C"
