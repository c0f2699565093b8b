// The layer and the access VLAN of a port, as the interface manager knows them.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "pmcli/vlan.h"

namespace pmcli_test {
namespace {

constexpr vlan_id_t kUntouched = 0xA5A5A5A5;

// Port-channel 3 is 0x5a003000.
struct layer_answer {
  syserr_t result;
  if_info_t layer;
  vlan_id_t vlan = kUntouched;
};

layer_answer ask() {
  layer_answer answer;
  std::memset(&answer.layer, 0xFF, sizeof answer.layer);
  answer.result = pm_cli_get_layer_mode_access_vlan(kChannel, RecordingPlatform::q(), &answer.layer, &answer.vlan);
  return answer;
}

TEST(LayerAndAccessVlan, OfALayer2Port) {
  RecordingPlatform platform;
  platform.access_vlans[kChannel] = 0x0FFE;
  const layer_answer answer = ask();
  EXPECT_EQ(answer.result, 0);
  EXPECT_EQ(answer.vlan, 0x0FFEU);
  EXPECT_EQ(answer.layer.ifindex, kChannel);
  EXPECT_EQ(answer.layer.val.layer, 2U);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.interface_manager_starts, (std::vector<std::string>{"262 0 clish"}));
  EXPECT_EQ(platform.count("im_get_ifindex_layermode_list"), 1U);
  EXPECT_EQ(platform.count("im_get_ifindex_access_vlan_list"), 1U);
  EXPECT_EQ(platform.count("im_get_ifindex_native_vlan_list"), 0U);
}

TEST(LayerAndAccessVlan, RecordIsZeroedBeforeTheQuestion) {
  RecordingPlatform platform;
  const layer_answer answer = ask();
  if_info_t expected{};
  std::memset(&expected, 0, sizeof expected);
  expected.ifindex = kChannel;
  expected.val.layer = 2;
  EXPECT_EQ(std::memcmp(&answer.layer, &expected, sizeof expected), 0);
}

TEST(LayerAndAccessVlan, OtherLayersHaveNoAccessVlan) {
  for (const uint32 layer : {0U, 1U, 3U, 0x20000U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    platform.layers[kChannel] = layer;
    const layer_answer answer = ask();
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.layer.val.layer, layer);
    EXPECT_EQ(answer.vlan, kUntouched);
    EXPECT_EQ(platform.count("im_get_ifindex_access_vlan_list"), 0U);
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(LayerAndAccessVlan, InterfaceManagerThatCannotBePreparedIsTold) {
  RecordingPlatform platform;
  platform.syserr_texts[0x40290001] = "not 100% ready";
  platform.fail_with("im_ext_sbcr_init", 0x40290001);
  const layer_answer answer = ask();
  EXPECT_EQ(answer.result, 0x40290001);
  EXPECT_EQ(answer.vlan, kUntouched);
  EXPECT_EQ(platform.text(), "im_ext_sbcr_init failed: 0x40290001 (not 100% ready)\n");
  EXPECT_EQ(platform.terminal(), platform.text());
  EXPECT_EQ(platform.count("im_get_ifindex_layermode_list"), 0U);
}

TEST(LayerAndAccessVlan, FailedLayerQueryIsTold) {
  for (const int32 error : {-1, 0x40290001}) {
    RecordingPlatform platform;
    platform.syserr_texts[error] = "busy";
    platform.fail_with("im_get_ifindex_layermode_list", error);
    const layer_answer answer = ask();
    EXPECT_EQ(answer.result, error);
    EXPECT_EQ(answer.vlan, kUntouched);
    EXPECT_EQ(platform.text(), std::string("layermode query on if_idx 0x5a003000 failed: \nstatus: ") +
                                   (error == -1 ? "0xffffffff" : "0x40290001") + " - busy\nif_info_status: 0x0\n");
    EXPECT_EQ(platform.terminal(), platform.text());
    EXPECT_EQ(platform.count("im_get_ifindex_access_vlan_list"), 0U);
  }
}

// The result of the call is returned, which is 0 here.
TEST(LayerAndAccessVlan, RejectedLayerRecordIsToldAndReturns0) {
  RecordingPlatform platform;
  platform.syserr_texts[0] = "success";
  platform.interface_manager_status = 0x40BE0007;
  const layer_answer answer = ask();
  EXPECT_EQ(answer.result, 0);
  EXPECT_EQ(answer.vlan, kUntouched);
  EXPECT_EQ(platform.text(),
            "layermode query on if_idx 0x5a003000 failed: \nstatus: 0x0 - success\nif_info_status: 0x40be0007\n");
  EXPECT_EQ(platform.count("im_get_ifindex_access_vlan_list"), 0U);
}

TEST(LayerAndAccessVlan, FailedVlanQueryIsTold) {
  RecordingPlatform platform;
  platform.syserr_texts[0x40290001] = "busy";
  platform.fail_with("im_get_ifindex_access_vlan_list", 0x40290001);
  const layer_answer answer = ask();
  EXPECT_EQ(answer.result, 0x40290001);
  EXPECT_EQ(answer.vlan, kUntouched);
  EXPECT_EQ(answer.layer.val.layer, 2U);
  EXPECT_EQ(platform.text(),
            "im_get_ifindex_access_vlan_list failed for 0x5a003000 \nstatus: 0x40290001 - busy\n"
            "if_info_status: 0x0\n");
  EXPECT_EQ(platform.terminal(), platform.text());
}

TEST(LayerAndAccessVlan, RejectedVlanRecordIsToldAndReturns0) {
  RecordingPlatform platform;
  platform.syserr_texts[0] = "success";
  platform.record_statuses["im_get_ifindex_access_vlan_list"] = -5;
  const layer_answer answer = ask();
  EXPECT_EQ(answer.result, 0);
  EXPECT_EQ(answer.vlan, kUntouched);
  EXPECT_EQ(answer.layer.val.layer, 2U);
  EXPECT_EQ(answer.layer.status, 0);
  EXPECT_EQ(platform.text(),
            "im_get_ifindex_access_vlan_list failed for 0x5a003000 \nstatus: 0x0 - success\n"
            "if_info_status: 0xfffffffb\n");
}

TEST(LayerAndAccessVlan, ErrorWithoutATextPrintsAnEmptyOne) {
  RecordingPlatform platform;
  platform.syserr_texts[7] = std::nullopt;
  platform.fail_with("im_ext_sbcr_init", 7);
  EXPECT_EQ(ask().result, 7);
  EXPECT_EQ(platform.text(), "im_ext_sbcr_init failed: 0x7 ()\n");
}

}  // namespace
}  // namespace pmcli_test
