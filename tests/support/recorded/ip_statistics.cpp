// Counters of the management port and of the kernel's devices; of loopbacks, by a library opened by name.
#include <gtest/gtest.h>

#include "support/recorded/answers.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

int32 ip_get_loopback_counters(mts_q_handle_t q, if_index_t if_index, ip_if_stats* stats) {
  EXPECT_EQ(q, RecordingPlatform::q());
  const auto& entries = platform_for("ip_get_loopback_counters").loopback_stats;
  return answer_from("ip_get_loopback_counters", entries, if_index, stats) == 0 ? 1 : 0;
}

}  // namespace

library_symbols ip_statistics_library() {
  return {{"ip_get_loopback_counters", ip_get_loopback_counters},
          {"ip_clear_loopback_counters", ip_clear_loopback_counters}};
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 pm_get_interface_counters(if_index_t if_index, mts_q_handle_t, pm_if_stat* stats) {
  const auto& entries = platform_for("pm_get_interface_counters").interface_counters;
  return answer_from("pm_get_interface_counters", entries, if_index, stats) == 0 ? 1 : 0;
}

int32 pm_get_proc_net_dev_stats(const char* device, pm_proc_net_dev_stats_t* stats) {
  RecordingPlatform& platform = platform_for("pm_get_proc_net_dev_stats");
  platform.kernel_devices_asked.emplace_back(device);
  const auto& entries = platform.kernel_devices;
  return answer_from("pm_get_proc_net_dev_stats", entries, std::string(device), stats) == 0 ? 0 : -1;
}

}  // extern "C"
