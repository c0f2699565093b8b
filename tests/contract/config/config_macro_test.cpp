// Macros, the step of access mode, results by port, and TLVs taken apart.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "contract/config/config_commands.h"
#include "pmcli/config.h"
#include "support/failure_walk.h"
#include "support/matchers.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

const if_index_t kPort = ethernet(1, 1);

std::vector<std::string> steps_run;  // by the steps below, in order

int32 good_step(paraminfo_t*, pm_port_cfg_status_t** results, uint32* count) {
  steps_run.emplace_back("good");
  hand_over_results(*RecordingPlatform::active(), {{kPort, 0}}, results, count);
  return 0;
}

int32 partly_failing_step(paraminfo_t*, pm_port_cfg_status_t** results, uint32* count) {
  steps_run.emplace_back("partly");
  hand_over_results(
      *RecordingPlatform::active(),
      {{ethernet(1, 1), 0}, {ethernet(1, 2), 5}, {ethernet(1, 3), 0}, {ethernet(1, 4), 6}, {ethernet(1, 5), 0}},
      results, count);
  return 0;
}

int32 failing_step(paraminfo_t*, pm_port_cfg_status_t**, uint32*) {
  steps_run.emplace_back("failing");
  return 7;
}

class Macro : public testing::Test {
 protected:
  Macro() { steps_run.clear(); }

  int32 run(std::vector<_lib_api> steps) {
    config_command command(platform, kPort);
    return pm_cli_run_macro(command.param, steps.data(), static_cast<uint32>(steps.size()));
  }

  RecordingPlatform platform;
};

constexpr char kNoRange[] = "error: token id list does not contain CONF_INTF\n";

TEST_F(Macro, RunsItsStepsInOrderWithAnEmptyLineEach) {
  EXPECT_EQ(run({{"first", nullptr, {.function = good_step}}, {"second", nullptr, {.function = good_step}}}), 0);
  EXPECT_EQ(steps_run, (std::vector<std::string>{"good", "good"}));
  EXPECT_EQ(platform.text(), "\n\n");
}

TEST_F(Macro, NeedsAParameterBlockAndARangeByToken) {
  _lib_api step{"first", nullptr, {.function = good_step}};
  EXPECT_EQ(pm_cli_run_macro(nullptr, &step, 1), 1);
  config_command command(platform, kPort);
  command.range_argument->token_id = 3;
  EXPECT_EQ(pm_cli_run_macro(command.param, &step, 1), 1);
  EXPECT_EQ(platform.text(), kNoRange);
  command.param->ascii_gen = 1;
  EXPECT_EQ(pm_cli_run_macro(command.param, &step, 1), 0);
  EXPECT_EQ(platform.text(), kNoRange);
  EXPECT_THAT(steps_run, IsEmpty());
}

TEST_F(Macro, EndsAtALibraryThatIsMissing) {
  EXPECT_EQ(run({{"first", nullptr, {.function = good_step}},
                 {"second", "libnone.so", {.name = "step"}},
                 {"third", nullptr, {.function = good_step}}}),
            0);
  EXPECT_EQ(platform.text(), "\nerror: unable to open library libnone.so\nCommand not successful\n");
  EXPECT_EQ(steps_run, std::vector<std::string>{"good"});
}

TEST_F(Macro, EndsAtAStepThatItsLibraryLacks) {
  platform.libraries["libsteps.so"] = {};
  EXPECT_EQ(run({{"first", "libsteps.so", {.name = "step"}}, {"second", nullptr, {.function = good_step}}}), 0);
  EXPECT_EQ(platform.text(), "Command not successful\n");
  EXPECT_THAT(steps_run, IsEmpty());
  EXPECT_EQ(platform.loader_events.back(), "close libsteps.so");
}

TEST_F(Macro, GoesOnAfterAStepThatFails) {
  EXPECT_EQ(run({{"first", nullptr, {.function = partly_failing_step}},
                 {"second", nullptr, {.function = failing_step}},
                 {"third", nullptr, {.function = good_step}}}),
            0);
  EXPECT_EQ(steps_run, (std::vector<std::string>{"partly", "failing", "good"}));
  EXPECT_EQ(platform.text().substr(platform.text().find("\n\n") + 2), "Command not successful.\n\n\n");
}

TEST_F(Macro, ClosesTheLibraryOfAStep) {
  platform.libraries["libsteps.so"] = {{"step", good_step}};
  EXPECT_EQ(run({{"first", "libsteps.so", {.name = "step"}}}), 0);
  EXPECT_EQ(platform.loader_events,
            (std::vector<std::string>{"open libsteps.so lazy", "find step", "close libsteps.so"}));
  EXPECT_EQ(steps_run, std::vector<std::string>{"good"});
}

TEST_F(Macro, OfAHostPortHasThreeSteps) {
  platform.libraries["libethpcmcli.so"] = {{"pcm_switchport_host_func", good_step}};
  platform.libraries["libstp.so"] = {{"stp_switchport_host_func", partly_failing_step}};
  platform.syserr_texts[5] = "five";
  platform.syserr_texts[6] = std::nullopt;
  config_command command(platform, kPort);
  command.tokens({kSwitchport, 80});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.text(),
            " Warning: portfast should only be enabled on ports connected to a single\n"
            " host. Connecting hubs, concentrators, switches, bridges, etc... to this\n"
            " interface  when portfast is enabled, can cause temporary bridging loops.\n"
            " Use with CAUTION\n"
            "\n"
            "\n"
            "Command failed for following interfaces:\n"
            "Ethernet1/2 failed for setting stp port type to edge with five\n"
            "Ethernet1/4 failed for setting stp port type to edge\n"
            "\n");
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  EXPECT_EQ(platform.setting_requests[0].type, 2);
  EXPECT_EQ(platform.setting_requests[0].value, (octets{0, 8, 0, 0}));
}

TEST(MacroWalk, SurvivesEveryFailure) {
  walk_failures([](RecordingPlatform& walked) {
    walked.libraries["libethpcmcli.so"] = {{"pcm_switchport_host_func", good_step}};
    walked.libraries["libstp.so"] = {{"stp_switchport_host_func", partly_failing_step}};
    config_command command(walked, kPort);
    command.tokens({kSwitchport, 80});
    EXPECT_EQ(pm_cli_set_port_config(command.param) & ~1, 0);
  });
}

// ---- Access mode ---------------------------------------------------------------------------------------------------

struct access_step {
  explicit access_step(config_command& command)
      : result(pm_cli_set_eth_switchport_mode_access(command.param, &results, &count)) {}
  ~access_step() { RecordingPlatform::active()->release(results); }
  access_step(const access_step&) = delete;
  access_step& operator=(const access_step&) = delete;

  pm_port_cfg_status_t* results = nullptr;
  uint32 count = 0;
  int32 result;
};

TEST(AccessMode, IsSetForTheWholeRange) {
  RecordingPlatform platform;
  config_command command(platform, {{ethernet(1, 1), ethernet(1, 4)}, {ethernet(2, 1), ethernet(2, 1)}});
  const access_step step(command);
  EXPECT_EQ(step.result, 0);
  EXPECT_EQ(step.count, 2U);
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  const auto& request = platform.setting_requests[0];
  EXPECT_EQ(request.ranges, (std::vector<std::pair<if_index_t, if_index_t>>{{ethernet(1, 1), ethernet(1, 4)},
                                                                            {ethernet(2, 1), ethernet(2, 1)}}));
  EXPECT_EQ(request.username, "operator");
  EXPECT_EQ(request.session_id, 4711U);
  EXPECT_EQ(request.timeout, 60);
  EXPECT_EQ(request.type, 2);
  EXPECT_EQ(request.value, (octets{0, 8, 0, 0}));
}

TEST(AccessMode, IsNotForRestrictedUsers) {
  RecordingPlatform platform;
  platform.vsan_restricted = 1;
  config_command command(platform, kPort);
  EXPECT_EQ(access_step(command).result, -12);
  EXPECT_EQ(platform.text(), "error: port mode configuration not allowed\n");
  platform.vsan_restricted = 2;  // only 1 is restricted
  EXPECT_EQ(access_step(command).result, 0);
}

TEST(AccessMode, NeedsARangeByToken) {
  RecordingPlatform platform;
  config_command command(platform, kPort);
  command.range_argument->token_id = 1;
  EXPECT_EQ(access_step(command).result, 1);
  EXPECT_EQ(platform.text(), kNoRange);
}

TEST(AccessMode, PassesOverAbsentArguments) {
  RecordingPlatform platform;
  config_command command(platform, kPort);
  param_arg_t empty = *command.range_argument;
  empty.arg = nullptr;
  command.param->arg_list[0] = nullptr;
  command.param->arg_list[1] = &empty;
  command.param->parameter_count = 2;
  EXPECT_EQ(access_step(command).result, 1);
  EXPECT_EQ(platform.text(), kNoRange);

  platform.clear_output();
  command.param->arg_list[2] = command.range_argument;
  command.param->parameter_count = 3;
  EXPECT_EQ(access_step(command).result, 0);
  EXPECT_EQ(platform.setting_requests.size(), 1U);
  EXPECT_EQ(platform.text(), "");
}

TEST(AccessMode, LooksAtNoMoreArgumentsThanTheBlockHolds) {
  RecordingPlatform platform;
  config_command command(platform, kPort);
  param_arg_t other{};
  for (auto& argument : command.param->arg_list) argument = &other;
  command.param->parameter_count = 255;
  EXPECT_EQ(access_step(command).result, 1);
  EXPECT_EQ(platform.text(), kNoRange);
  command.param->arg_list[31] = command.range_argument;
  EXPECT_EQ(access_step(command).result, 0);
}

TEST(AccessMode, ReturnsWhatThePortManagerSays) {
  RecordingPlatform platform;
  platform.fail_with("pm_cmi_set_port_config", 0x40290007);
  config_command command(platform, kPort);
  EXPECT_EQ(access_step(command).result, 0x40290007);
  EXPECT_EQ(platform.text(), "");
}

TEST(AccessMode, SaysThatTheHeapIsExhausted) {
  std::vector<std::string> texts;
  walk_failures(
      [](RecordingPlatform& platform) {
        config_command command(platform, kPort);
        const access_step step(command);
        if (platform.failed_call() == "malloc") {
          EXPECT_EQ(step.result, 1);
        }
      },
      [&texts](const walk_run& at) {
        if (at.platform.failed_call() == "malloc") texts.push_back(at.platform.text());
      });
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_THAT(texts[0], HasSubstr("] for size 8\nerror: allocating memory for range list\n"));
  EXPECT_THAT(texts[1], HasSubstr("] for size 6\nerror: malloc failure - size(6)\n"));
}

// ---- Results by port -----------------------------------------------------------------------------------------------

std::vector<pm_port_cfg_status_t> results_of(const std::vector<uint32>& statuses) {
  std::vector<pm_port_cfg_status_t> results;
  for (const uint32 status : statuses) {
    pm_port_cfg_status_t result{};
    result.if_index = ethernet(1, static_cast<uint32>(results.size()) + 1);
    result.status = status;
    results.push_back(result);
  }
  return results;
}

TEST(Results, OfASuccessAreAnEmptyLine) {
  RecordingPlatform platform;
  auto results = results_of({0, 0});
  print_cfg_status("naming", results.data(), 2);
  print_cfg_status("naming", results.data(), 0);
  print_cfg_status("naming", nullptr, 9);
  EXPECT_EQ(platform.text(), "\n\n\n");
}

TEST(Results, KeepPercentSignsAsTheyAre) {
  RecordingPlatform platform;
  platform.syserr_texts[1] = "100%s";
  auto results = results_of({1});
  print_cfg_status("naming %d", results.data(), 1);
  EXPECT_EQ(platform.text(),
            "Command failed for following interfaces:\nEthernet1/1 failed for naming %d with 100%s\n\n");
}

TEST(Results, MergeSoThatTheFirstFailureWins) {
  auto to = results_of({0, 5, 0});
  auto from = results_of({7, 9, 0});
  merge_cfg_status(to.data(), from.data(), 3);
  EXPECT_EQ(to[0].status, 7U);
  EXPECT_EQ(to[1].status, 5U);
  EXPECT_EQ(to[2].status, 0U);
  merge_cfg_status(nullptr, from.data(), 3);
  merge_cfg_status(to.data(), nullptr, 3);
  EXPECT_EQ(to[0].status, 7U);
}

// ---- TLVs ----------------------------------------------------------------------------------------------------------

struct decoded {
  explicit decoded(octets bytes) {
    result = pm_decode_tlv(reinterpret_cast<pm_cfg_tlv_t*>(bytes.data()), &type, &length, &value);
  }
  uint32 result;
  uint8 type = 0xEE, length = 0xEE;
  pm_port_cfg_value_t value{};
};

TEST(Tlv, HasTheWidthOfItsType) {
  for (uint32 type = 0; type <= 255; ++type) {
    constexpr uint32 kBytes[] = {1, 4, 5, 11, 12, 13, 17, 22, 34, 35, 42, 44, 48, 83};
    constexpr uint32 kHalfWords[] = {7, 15, 52};
    constexpr uint32 kWords[] = {2, 3, 8, 14, 21, 23, 25, 27, 28, 29, 31, 32, 36, 37, 41, 45, 50, 54, 78, 80, 81};
    const auto is_in = [type](const auto& list) {
      return std::find(std::begin(list), std::end(list), type) != std::end(list);
    };
    const decoded tlv({static_cast<uint8>(type), 8, 1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(tlv.type, type);
    EXPECT_EQ(tlv.length, 8);
    if (is_in(kBytes)) {
      EXPECT_EQ(tlv.result, 0U) << type;
      EXPECT_EQ(tlv.value.beacon_mode, 1) << type;
    } else if (is_in(kHalfWords)) {
      EXPECT_EQ(tlv.result, 0U) << type;
      EXPECT_EQ(tlv.value.rxbufsize, 0x0102) << type;
    } else if (is_in(kWords)) {
      EXPECT_EQ(tlv.result, 0U) << type;
      EXPECT_EQ(tlv.value.port_mode, 0x01020304U) << type;
    } else if (type == 9) {
      EXPECT_EQ(tlv.result, 0U);
      EXPECT_EQ(tlv.value.words[0], 0x01020304U);
      EXPECT_EQ(tlv.value.words[1], 0x05060708U);
    } else if (type != 6) {
      EXPECT_EQ(tlv.result, 0x40290004U) << type;
    }
  }
}

TEST(Tlv, FillsTheWholeValue) {
  struct value_case {
    octets tlv;
    octets first;  // bytes of the value; the others are 0
  };
  const uint16 half_word = 0x0102;
  const uint32 word = 0x01020304;
  octets native_half_word(2), native_word(4);
  std::memcpy(native_half_word.data(), &half_word, 2);
  std::memcpy(native_word.data(), &word, 4);
  for (const value_case& it :
       {value_case{{1, 1, 7}, {7}}, value_case{{7, 2, 1, 2}, native_half_word},
        value_case{{2, 4, 1, 2, 3, 4}, native_word}, value_case{{6, 3, 'a', 'b', 'c'}, {'a', 'b', 'c'}}}) {
    octets tlv = it.tlv;
    uint8 type = 0, length = 0;
    pm_port_cfg_value_t value;
    std::memset(&value, 0xEE, sizeof value);
    EXPECT_EQ(pm_decode_tlv(reinterpret_cast<pm_cfg_tlv_t*>(tlv.data()), &type, &length, &value), 0U);
    octets expected = it.first;
    expected.resize(84);
    EXPECT_EQ(octets(value.bytes, value.bytes + 84), expected) << int{type};
  }
}

TEST(Tlv, OfANameIsTerminated) {
  octets bytes = {6, 3, 'a', 'b', 'c'};
  EXPECT_STREQ(decoded(bytes).value.port_name, "abc");
  bytes = octets(2 + 81, 'x');
  bytes[0] = 6;
  bytes[1] = 81;
  EXPECT_EQ(decoded(bytes).result, 0U);
  EXPECT_EQ(std::strlen(decoded(bytes).value.port_name), 80U);
}

TEST(Tlv, IsNotReadPastItsLength) {
  EXPECT_EQ(decoded({2, 0}).result, 0U);
  EXPECT_EQ(decoded({2, 0}).value.port_mode, 0U);
  EXPECT_EQ(decoded({2, 2, 0x12, 0x34}).value.port_mode, 0x12340000U);
  EXPECT_EQ(decoded({9, 5, 0, 0, 0, 1, 2}).value.words[1], 0x02000000U);
  EXPECT_STREQ(decoded({6, 0}).value.port_name, "");
  EXPECT_EQ(decoded({255, 0}).result, 0x40290004U);
}

TEST(Tlv, NeedsItsPointers) {
  uint8 type = 0, length = 0;
  pm_port_cfg_value_t value{};
  pm_cfg_tlv_t tlv{85, 0};
  EXPECT_EQ(pm_decode_tlv(nullptr, &type, &length, &value), 0x40290004U);
  EXPECT_EQ(pm_decode_tlv(&tlv, nullptr, &length, &value), 0x40290004U);
  EXPECT_EQ(pm_decode_tlv(&tlv, &type, nullptr, &value), 0x40290004U);
  EXPECT_EQ(pm_decode_tlv(&tlv, &type, &length, nullptr), 0x40290004U);
}

}  // namespace
}  // namespace pmcli_test
