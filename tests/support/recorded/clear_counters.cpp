// The owners of counters, when they are asked to clear them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/recording_state.h"

namespace pmcli_test {
namespace {

int32 programmed_error(const RecordingPlatform& platform, if_index_t if_index) {
  const auto error = platform.clear_errors.find(if_index);
  return error == platform.clear_errors.end() ? 0 : error->second;
}

octets result_list(const RecordingPlatform& platform, const std::vector<if_index_t>& if_indexes) {
  octets list = {static_cast<uint8>(std::min<std::size_t>(if_indexes.size(), 255))};
  for (std::size_t i = 0; i < list[0]; ++i) {
    const pm_clear_status_t entry{if_indexes[i], programmed_error(platform, if_indexes[i])};
    const auto* const bytes = reinterpret_cast<const uint8*>(&entry);
    list.insert(list.end(), bytes, bytes + sizeof entry);
  }
  return list;
}

}  // namespace

int32 clear_at(const char* owner, if_index_t if_index, const std::string& device) {
  RecordingPlatform& platform = platform_for(owner);
  const std::string name = interface_text(platform, if_index, false);
  platform.cleared.push_back(std::string(owner) + " " + name + (device.empty() ? "" : " " + device));
  if (const int32 error = platform.failure_of(owner); error != 0) return error;
  return programmed_error(platform, if_index);
}

int32 statscl_clear_port_client_stats(if_index_t if_index) {
  return clear_at("statscl_clear_port_client_stats", if_index);
}

int32 ip_clear_loopback_counters(uint32 zero, if_index_t if_index) {
  EXPECT_EQ(zero, 0U);
  return clear_at("ip_clear_loopback_counters", if_index) == 0 ? 1 : 0;
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 pm_clear_port_counters(mts_q_handle_t q, uint32 count, const if_index_t* if_indexes, uint32 clear,
                             uint8** status_list, uint32 wait) {
  RecordingPlatform& platform = platform_for("pm_clear_port_counters");
  EXPECT_EQ(q, RecordingPlatform::q());
  EXPECT_EQ(clear, 1U);
  EXPECT_EQ(wait, 1U);
  *status_list = nullptr;
  const auto& asked = platform.clear_requests.emplace_back(if_indexes, if_indexes + count);
  if (const int32 error = platform.failure_of("pm_clear_port_counters"); error != 0) return error;
  const octets list = platform.clear_block ? *platform.clear_block : result_list(platform, asked);
  if (!list.empty())
    *status_list = static_cast<uint8*>(platform.hand_over(list.data(), list.size(), "pm_clear_port_counters"));
  return 0;
}

int32 pm_clear_interface_counters(const char* device, if_index_t if_index, mts_q_handle_t q) {
  EXPECT_EQ(q, RecordingPlatform::q());
  return clear_at("pm_clear_interface_counters", if_index, device) == 0 ? 1 : 0;
}

int32 dstats_clear_counters(mts_q_handle_t q, if_index_t if_index, uint32 scope, uint32 clear, uint32 timeout) {
  EXPECT_EQ(q, RecordingPlatform::q());
  EXPECT_EQ(scope, 1U);
  EXPECT_EQ(clear, 1U);
  EXPECT_EQ(timeout, 5U);
  return clear_at("dstats_clear_counters", if_index);
}

// Whatever the test put into the map comes out, also what does not ascend.
int32 pcmap_get_next_port_channel(if_index_t current, if_index_t* next) {
  RecordingPlatform& platform = platform_for("pcmap_get_next_port_channel");
  if (const int32 error = platform.failure_of("pcmap_get_next_port_channel"); error != 0) return error;
  const auto& map = platform.channel_map;
  const auto found = current == 0 ? map.begin() : std::find(map.begin(), map.end(), current);
  const auto following = current == 0 || found == map.end() ? found : found + 1;
  if (following == map.end()) return PM_ERR_NO_SUCH_INTERFACE;
  *next = *following;
  return 0;
}

int32 pm_cli_clear_ethernet_channel_counters(paraminfo_t* param) {
  RecordingPlatform& platform = platform_for("pm_cli_clear_ethernet_channel_counters");
  platform.channel_clearings.push_back(param);
  return platform.failure_of("pm_cli_clear_ethernet_channel_counters");
}

}  // extern "C"
