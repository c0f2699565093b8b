// The port manager's transceivers and their diagnostics.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "support/recorded/answers.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

// A client may fill a record in part: it comes zeroed.
template <typename Record>
void expect_zeroed(const Record& record) {
  const auto* const bytes = reinterpret_cast<const uint8*>(&record);
  EXPECT_TRUE(std::all_of(bytes, bytes + sizeof record, [](uint8 byte) { return byte == 0; }));
}

}  // namespace
}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 pm_cmi_get_fcot_info(mts_q_handle_t q, uint32 version, uint32 instance, const if_index_range_t* range,
                           uint32* length, pm_fcot_res_t** response, int32 timeout) {
  RecordingPlatform& platform = platform_for("pm_cmi_get_fcot_info");
  platform.port_queries.push_back({q, version, instance, *range, timeout});
  *response = nullptr;
  if (const int32 error = platform.failure_of("pm_cmi_get_fcot_info"); error != 0) return error;
  const octets block =
      platform.transceiver_block ? *platform.transceiver_block : records_in(platform.transceivers, *range).second;
  if (block.empty() && !platform.transceiver_block) return PM_ERR_NO_SUCH_INTERFACE;
  *length = platform.transceiver_length.value_or(static_cast<uint32>(block.size()));
  if (!block.empty()) give(platform, "pm_cmi_get_fcot_info", block, response);
  return 0;
}

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
  return answer_from("pm_get_sfp_diag_info", platform.diagnostics, if_index, diag_info, PM_ERR_SFP_NO_DIAGNOSTICS);
}

}  // extern "C"
