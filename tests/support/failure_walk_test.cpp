// The failure walk itself: it visits every call, and it finds a scenario that leaks.
#include "support/failure_walk.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace pmcli_test {
namespace {

TEST(FailureWalk, FailsEveryCallInItsTurn) {
  std::vector<std::string> failed;

  const uint32 count = walk_failures(
      [](RecordingPlatform&) {
        uint32 chassis = 0;
        platform_info_t info{};
        if (pdb_get_chassis_type(&chassis) == 0) get_platform_info(&info);
      },
      [&](const walk_run& run) { failed.push_back(run.platform.failed_call()); });

  EXPECT_EQ(count, 2U);
  EXPECT_EQ(failed, (std::vector<std::string>{"pdb_get_chassis_type", "get_platform_info", ""}));
}

TEST(FailureWalk, ShowsTheTextOfEachRun) {
  std::vector<std::string> texts;

  walk_failures(
      [](RecordingPlatform&) {
        uint32 chassis = 0;
        std::printf("%d", pdb_get_chassis_type(&chassis));
      },
      [&](const walk_run& run) { texts.push_back(run.platform.text()); }, PM_ERR_GENERAL);

  EXPECT_EQ(texts, (std::vector<std::string>{"1076428800", "0"})) << "0x40290000, then success";
}

TEST(FailureWalk, VisitsTheCallsBehindOnesThatAreMadeOnlyOnce) {
  std::vector<std::string> failed;
  int32 chassis_asked = -1;

  const uint32 count = walk_failures(
      [&](RecordingPlatform&) {
        uint32 value = 0;
        platform_info_t info{};
        if (chassis_asked < 0) chassis_asked = pdb_get_chassis_type(&value) == 0;
        get_platform_info(&info);
      },
      [&](const walk_run& run) { failed.push_back(run.platform.failed_call()); });

  EXPECT_EQ(count, 2U);
  EXPECT_EQ(failed, (std::vector<std::string>{"pdb_get_chassis_type", "", "get_platform_info"}));
}

// Keeps the list when the query after it fails.
void leak_after_a_failure(RecordingPlatform& platform) {
  platform.addresses[mgmt()] = {ipconf_if_inet_addr_info_t{}};
  ipconf_if_inet_addrs_t* list = nullptr;
  uint32 chassis = 0;
  if (ipconf_get_if_inet_addrs(platform.q(), mgmt(), &list) != 0) return;
  if (pdb_get_chassis_type(&chassis) != 0) return;
  platform.release(list);
}

TEST(FailureWalk, FindsAScenarioThatLeaks) {
  EXPECT_NONFATAL_FAILURE(walk_failures(leak_after_a_failure),
                          "block of 36 bytes from ipconf_get_if_inet_addrs was not freed");
  EXPECT_NONFATAL_FAILURE(walk_failures(leak_after_a_failure), "run 2, failing call: pdb_get_chassis_type");
}

TEST(FailureWalk, FindsAMessageThatIsLeft) {
  EXPECT_NONFATAL_FAILURE(walk_failures([](RecordingPlatform& platform) {
                            platform.listings[IF_TYPE_ETHERNET] = {0, 0, 0, 0};
                            mts_msg_ref_t listing{};
                            if (pm_get_if_index_listing(IF_TYPE_ETHERNET, platform.q(), &listing, 60) != 0) return;
                            if (mts_payload_get(&listing) != nullptr) mts_drop(platform.q(), &listing);
                          }),
                          "message 1, a listing, was not dropped");
}

TEST(FailureWalk, NeedsACallThatCanFail) {
  EXPECT_NONFATAL_FAILURE(walk_failures([](RecordingPlatform&) {}), "makes no call that can fail");
}

}  // namespace
}  // namespace pmcli_test
