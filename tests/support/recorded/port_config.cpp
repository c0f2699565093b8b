// The port manager's settings of ports.
#include <span>

#include "support/recording_state.h"

namespace pmcli_test {
namespace {

// What the port manager answers when the test says nothing else: every range's first port accepts.
std::vector<std::pair<if_index_t, uint32>> all_accept(std::span<const if_index_range_t> ranges) {
  std::vector<std::pair<if_index_t, uint32>> results;
  for (const if_index_range_t& range : ranges) results.emplace_back(range.low, 0);
  return results;
}

}  // namespace

void hand_over_results(RecordingPlatform& platform, const std::vector<std::pair<if_index_t, uint32>>& results,
                       pm_port_cfg_status_t** block, uint32* count) {
  std::vector<pm_port_cfg_status_t> records;
  for (const auto& [if_index, status] : results) {
    pm_port_cfg_status_t record{};
    record.if_index = if_index;
    record.status = status;
    records.push_back(record);
  }
  *count = static_cast<uint32>(records.size());
  *block = static_cast<pm_port_cfg_status_t*>(
      platform.hand_over(records.data(), records.size() * sizeof(pm_port_cfg_status_t), "results by port"));
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 pm_cmi_set_port_config(mts_q_handle_t q, const char* username, uint32 session_id, uint32 num_ranges,
                             const if_index_range_t* ranges, uint8 cfg_type, uint8 cfg_length, const void* value,
                             pm_port_cfg_status_t** cfg_status, uint32* num_ports, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_cmi_set_port_config");
  const std::span named(ranges, num_ranges);
  const auto* const bytes = static_cast<const uint8*>(value);
  RecordingPlatform::setting_request request{q,      username, session_id, {}, cfg_type, {bytes, bytes + cfg_length},
                                             timeout};
  for (const if_index_range_t& range : named) request.ranges.push_back({range.low, range.high});
  platform.setting_requests.push_back(request);
  *cfg_status = nullptr;
  if (platform.results_in_spite_of_failure)
    hand_over_results(platform, *platform.results_in_spite_of_failure, cfg_status, num_ports);
  if (const int32 error = platform.failure_of("pm_cmi_set_port_config"); error != 0) return error;
  if (platform.null_results) {
    *num_ports = *platform.null_results;
    return 0;
  }
  hand_over_results(platform, platform.setting_results.value_or(all_accept(named)), cfg_status, num_ports);
  return 0;
}

}  // extern "C"
