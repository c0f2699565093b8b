// The port manager: records of ports, listings, tracked ports, creation of interfaces.
#include "support/recorded/answers.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

octets tracked_block(const std::vector<if_index_t>& tracked) {
  octets block(12 + 4 * 256);
  put_u32(block, 8, static_cast<uint32>(tracked.size()));
  for (std::size_t i = 0; i < tracked.size(); ++i) put_u32(block, 12 + 4 * i, tracked[i]);
  return block;
}

int32 answer_listing(const char* function, const std::map<if_index_type_t, octets>& listings, if_index_type_t type,
                     mts_msg_ref_t* answer) {
  RecordingPlatform& platform = platform_for(function);
  if (platform.failure_of(function) != 0) return -1;
  const auto listing = listings.find(type);
  if (listing == listings.end()) return -1;
  *answer = receive_message(platform, "a listing", {.payload = listing->second});
  return 0;
}

uint32 configure(const char* function, if_index_type_t type, mts_q_handle_t q, uint32 create, interface_mask_t mask,
                 const intf_range_t* ranges, uint32 timeout) {
  RecordingPlatform& platform = platform_for(function);
  platform.interface_configurations.push_back(
      {type, q, create, mask, {ranges->range, ranges->range + ranges->range_count}, timeout});
  return static_cast<uint32>(platform.failure_of(function));
}

}  // namespace
}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 pm_cmi_get_port_config(mts_q_handle_t q, uint32 version, uint32 instance, const if_index_range_t* range,
                             uint32* count, pm_port_info_t** records, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_cmi_get_port_config");
  platform.port_queries.push_back({q, version, instance, *range, timeout});
  *records = nullptr;
  if (const int32 error = platform.failure_of("pm_cmi_get_port_config"); error != 0) return error;
  if (platform.port_config) {
    *count = platform.port_config->count;
    if (platform.port_config->block) give(platform, "pm_cmi_get_port_config", *platform.port_config->block, records);
    return 0;
  }
  const auto [found, block] = records_in(platform.ports, *range);
  if (found == 0) return PM_ERR_NO_SUCH_INTERFACE;
  *count = found;
  give(platform, "pm_cmi_get_port_config", block, records);
  return 0;
}

int32 pm_cmi_get_tracked_port_if_list(mts_q_handle_t, if_index_t if_index, void** list, int32) {
  const RecordingPlatform& platform = platform_for("pm_cmi_get_tracked_port_if_list");
  return give_list("pm_cmi_get_tracked_port_if_list", platform.tracked_block, platform.tracked_ports, if_index, list,
                   tracked_block);
}

int32 pm_get_if_index_listing(if_index_type_t type, mts_q_handle_t q, mts_msg_ref_t* answer, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_get_if_index_listing");
  platform.listing_queries.push_back({type, q, timeout, std::nullopt});
  return answer_listing("pm_get_if_index_listing", platform.listings, type, answer);
}

int32 pm_get_startup_if_index_listing(const char* uri_prefix, if_index_type_t type, mts_q_handle_t q,
                                      mts_msg_ref_t* answer, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_get_startup_if_index_listing");
  platform.listing_queries.push_back({type, q, timeout, uri_prefix});
  return answer_listing("pm_get_startup_if_index_listing", platform.startup_listings, type, answer);
}

uint32 pm_get_mts_sap(if_index_t if_index) {
  const auto& saps = platform_for("pm_get_mts_sap").port_manager_saps;
  const auto known = saps.find(if_index);
  return known == saps.end() ? static_cast<uint32>(MTS_SAP_PORT_MANAGER) : known->second;
}

int32 pm_get_port_info_range(mts_q_handle_t q, if_index_t low, if_index_t high, mts_msg_ref_t* answer) {
  RecordingPlatform& platform = platform_for("pm_get_port_info_range");
  platform.port_ranges_asked.push_back({low, high});
  platform.permission_queues.push_back(q);
  if (const int32 error = platform.failure_of("pm_get_port_info_range"); error != 0) return error;
  *answer = receive_message(platform, "ports of a range", {.payload = records_in(platform.ports, {low, high}).second});
  return 0;
}

int32 pm_parse_get_port_info_range(const mts_msg_ref_t* answer, uint32* num_ports, pm_port_info_t** ports) {
  RecordingPlatform& platform = platform_for("pm_parse_get_port_info_range");
  *ports = nullptr;
  if (const int32 error = platform.failure_of("pm_parse_get_port_info_range"); error != 0) return error;
  const octets records = message_payload(answer);
  if (platform.port_range) {
    *num_ports = platform.port_range->count;
    if (platform.port_range->block) give(platform, "pm_parse_get_port_info_range", *platform.port_range->block, ports);
    return 0;
  }
  *num_ports = static_cast<uint32>(records.size() / sizeof(pm_port_info_t));
  if (*num_ports != 0) give(platform, "pm_parse_get_port_info_range", records, ports);
  return 0;
}

uint32 pm_cli_config_sub_interface(mts_q_handle_t q, uint32 create, interface_mask_t mask, const intf_range_t* ranges,
                                   uint32 timeout) {
  return configure("pm_cli_config_sub_interface", IF_TYPE_ETHERNET, q, create, mask, ranges, timeout);
}

uint32 pm_cli_config_loopback_interface(mts_q_handle_t q, uint32 create, interface_mask_t mask,
                                        const intf_range_t* ranges, uint32 timeout) {
  return configure("pm_cli_config_loopback_interface", IF_TYPE_LOOPBACK, q, create, mask, ranges, timeout);
}

}  // extern "C"
