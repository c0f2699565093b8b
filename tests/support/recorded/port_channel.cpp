// The port-channel service and the multi-chassis service.
#include <algorithm>
#include <cstring>

#include "support/recorded/answers.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

bool is_ethernet_chassis(uint32 chassis) {
  return chassis == 10 || chassis == 11 || chassis == 17 || (chassis >= 19 && chassis <= 24);
}

octets member_block(uint32 chassis, const std::vector<if_index_t>& members) {
  const bool is_ethernet = is_ethernet_chassis(chassis);
  octets block(PORT_CHANNEL_MEMBERS_BYTES);
  put_u32(block, is_ethernet ? 18 : 8, static_cast<uint32>(members.size()));
  std::size_t entry = is_ethernet ? 26 : 32;
  for (const if_index_t member : members) {
    put_u32(block, entry, member);
    entry += is_ethernet ? 7 : 8;
  }
  return block;
}

}  // namespace
}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 get_port_channel_members(uint32 chassis_type, if_index_t if_index, void** response) {
  const RecordingPlatform& platform = platform_for("get_port_channel_members");
  return give_list("get_port_channel_members", platform.member_block, platform.channel_members, if_index, response,
                   [=](const std::vector<if_index_t>& members) { return member_block(chassis_type, members); });
}

int32 get_port_channel_info(if_index_t if_index, port_channel_info_t* info) {
  RecordingPlatform& platform = platform_for("get_port_channel_info");
  if (const int32 error = platform.failure_of("get_port_channel_info"); error != 0) return error;
  const auto found = platform.channel_of.find(if_index);
  info->if_index = found == platform.channel_of.end() ? 0 : found->second;
  return 0;
}

int32 mcecm_api_sdb_sh_int_po(if_index_t if_index, char* status) {
  RecordingPlatform& platform = platform_for("mcecm_api_sdb_sh_int_po");
  if (const int32 error = platform.failure_of("mcecm_api_sdb_sh_int_po"); error != 0) return error;
  const std::string& text = platform.multi_chassis_status[if_index];
  std::memcpy(status, text.data(), std::min<std::size_t>(text.size(), MCEC_STATUS_BYTES));
  return 0;
}

}  // extern "C"
