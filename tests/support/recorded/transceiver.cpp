// Transceivers, satellites, port-channels of members, module resources, names of files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "platform/module_resources.h"
#include "platform/platform_data.h"
#include "platform/port_channel.h"
#include "platform/satellite.h"
#include "platform/uri.h"
#include "support/recording_state.h"

using pmcli_test::platform_for;
using pmcli_test::RecordingPlatform;

namespace {

template <typename Record>
int32 fill(RecordingPlatform& platform, const char* function, const std::map<if_index_t, Record>& records,
           if_index_t if_index, int32 unknown, Record* to) {
  if (const int32 error = platform.failure_of(function); error != 0) return error;
  const auto found = records.find(if_index);
  if (found == records.end()) return unknown;
  *to = found->second;
  return 0;
}

// A client may fill a record in part: it comes zeroed.
template <typename Record>
void expect_zeroed(const Record& record) {
  const auto* const bytes = reinterpret_cast<const uint8*>(&record);
  EXPECT_TRUE(std::all_of(bytes, bytes + sizeof record, [](uint8 byte) { return byte == 0; }));
}

}  // namespace

extern "C" {

const char* pm_get_sfp_tarno_gbic_type(uint8 code, int32) { return code == 0 ? "none" : "gbic code"; }
const char* pm_get_x2_sfp_tarno_xenpak_type(uint8 code, int32) { return code == 0 ? "none" : "xenpak code"; }

void print_sfp_fc_transmitter(uint8* sfp_sprom) {
  std::printf("    <transmitter of an SFP with id %d>\n", sfp_sprom[0]);
}
void print_x2_sfp_fc_info(uint8* sfp_sprom) { std::printf("    <transmitter of an X2 with id %d>\n", sfp_sprom[0]); }

int32 pm_get_sfp_diag_info(mts_q_handle_t q, if_index_t if_index, mts_get_sfp_diag_info_t* diag_info,
                           sfp_diag_info_ddm_tlvs_t* sfp_ddm_info) {
  RecordingPlatform& platform = platform_for("pm_get_sfp_diag_info");
  EXPECT_EQ(q, RecordingPlatform::q());
  expect_zeroed(*diag_info);
  expect_zeroed(*sfp_ddm_info);
  return fill(platform, "pm_get_sfp_diag_info", platform.diagnostics, if_index, PM_ERR_SFP_NO_DIAGNOSTICS, diag_info);
}

int32 satmgr_get_fport_info(mts_q_handle_t, if_index_t if_index, satmgr_fport_info_t* info) {
  RecordingPlatform& platform = platform_for("satmgr_get_fport_info");
  return fill(platform, "satmgr_get_fport_info", platform.fabric_ports, if_index, PM_ERR_NO_SUCH_INTERFACE, info);
}

int32 satmgr_get_slot_info(mts_q_handle_t, const satmgr_fport_info_t* fport, satmgr_slot_info_t* info) {
  if (const int32 error = platform_for("satmgr_get_slot_info").failure_of("satmgr_get_slot_info"); error != 0)
    return error;
  info->slot_id = fport->slot * 1000;
  return 0;
}

int32 pm_get_sat_sfp_diag_info(mts_q_handle_t, uint32 sat_id, uint32 slot_id, if_index_t if_index,
                               mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t*) {
  RecordingPlatform& platform = platform_for("pm_get_sat_sfp_diag_info");
  platform.satellite_queries.push_back({sat_id, slot_id});
  return fill(platform, "pm_get_sat_sfp_diag_info", platform.diagnostics, if_index, PM_ERR_SFP_NO_DIAGNOSTICS,
              diag_info);
}

int32 get_port_channel_info(if_index_t if_index, port_channel_info_t* info) {
  RecordingPlatform& platform = platform_for("get_port_channel_info");
  if (const int32 error = platform.failure_of("get_port_channel_info"); error != 0) return error;
  const auto found = platform.channel_of.find(if_index);
  info->if_index = found == platform.channel_of.end() ? 0 : found->second;
  return 0;
}

uint32 sysmgr_vdc_get(void) { return platform_for("sysmgr_vdc_get").vdc; }

boolean pdb_is_module_tamber(uint32 module_key) {
  return platform_for("pdb_is_module_tamber").resource_modules.count(module_key) != 0 ? 4 : 0;
}

int32 pm_get_module_resources(mts_q_handle_t q, uint32 count, const pm_mod_resource_category_t* category, uint32 types,
                              uint32 module_key, mts_msg_ref_t* answer) {
  RecordingPlatform& platform = platform_for("pm_get_module_resources");
  platform.resource_queries.push_back({q, count, category->category, category->id, types, module_key});
  if (const int32 error = platform.failure_of("pm_get_module_resources"); error != 0) return error;
  *answer = pmcli_test::receive_message(platform, "the resources of a module", {platform.resources});
  return 0;
}

int32 uri_map_targetfs_path_get(const char* uri, char* path, uint32 size) {
  RecordingPlatform& platform = platform_for("uri_map_targetfs_path_get");
  if (const int32 error = platform.failure_of("uri_map_targetfs_path_get"); error != 0) return error;
  const auto found = platform.paths.find(uri);
  if (found == platform.paths.end()) return 1;
  std::snprintf(path, size, "%s", found->second.c_str());
  return 0;
}

}  // extern "C"
