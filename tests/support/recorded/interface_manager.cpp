// The interface manager.
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

template <typename Value, typename Put>
int32 answer_each(const char* function, const std::map<if_index_t, Value>& values, Value otherwise, if_info_t* records,
                  uint32 count, Put put) {
  RecordingPlatform& platform = platform_for(function);
  if (const int32 error = platform.failure_of(function); error != 0) return error;
  for (uint32 i = 0; i < count; ++i) {
    const auto known = values.find(records[i].ifindex);
    put(records[i], known == values.end() ? otherwise : known->second);
    const auto status = platform.record_statuses.find(function);
    records[i].status = status == platform.record_statuses.end() ? platform.interface_manager_status : status->second;
  }
  return 0;
}

void put_layer(if_info_t& record, uint32 layer) { record.val.layer = layer; }

void put_vlan(if_info_t& record, uint16 vlan) { record.val.vlan.vlan_id = vlan; }

}  // namespace
}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 im_ext_sbcr_init(uint32 id, uint32 flags, const char* name) {
  RecordingPlatform& platform = platform_for("im_ext_sbcr_init");
  platform.interface_manager_starts.push_back(std::to_string(id) + " " + std::to_string(flags) + " " + name);
  return platform.failure_of("im_ext_sbcr_init");
}

int32 im_get_ifindex_layermode_list(if_info_t* records, uint32 count) {
  const char* const name = "im_get_ifindex_layermode_list";
  RecordingPlatform& platform = platform_for(name);
  for (uint32 i = 0; i < count; ++i) platform.layers_asked.push_back(records[i].ifindex);
  const int32 error = answer_each<uint32>(name, platform.layers, IF_LAYER_2, records, count, put_layer);
  for (uint32 i = 0; error == 0 && i < count; ++i)
    if (const auto known = platform.layer_statuses.find(records[i].ifindex); known != platform.layer_statuses.end())
      records[i].status = known->second;
  return error;
}

int32 im_get_ifindex_native_vlan_list(if_info_t* records, uint32 count) {
  const char* const name = "im_get_ifindex_native_vlan_list";
  return answer_each<uint16>(name, platform_for(name).native_vlans, 1, records, count, put_vlan);
}

int32 im_get_ifindex_access_vlan_list(if_info_t* records, uint32 count) {
  const char* const name = "im_get_ifindex_access_vlan_list";
  return answer_each<uint16>(name, platform_for(name).access_vlans, 1, records, count, put_vlan);
}

}  // extern "C"
