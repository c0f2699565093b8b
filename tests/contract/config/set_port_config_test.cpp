// The commands that set one attribute of ports: what is sent for each, what is refused before anything is sent, and how
// the ports that refuse are reported.
#include <gtest/gtest.h>

#include <cstring>
#include <optional>

#include "contract/config/config_commands.h"
#include "pmcli/config.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kRoutedPort = ethernet(1, 1, IF_TYPE_ETHERNET_L3);
const if_index_t kPort2 = ethernet(1, 2, IF_TYPE_ETHERNET_L3);
const if_index_t kFibre = fibre_channel(1, 1);
const if_index_t kChannel = port_channel(3);
const if_index_t kSatellite = satellite(100, 1, 1);
const if_index_t kLoopback0 = loopback(0);

using AskedRanges = std::vector<std::pair<if_index_t, if_index_t>>;

// A word of a command: its token, and the 32-bit value behind it.
struct command_word {
  command_word(uint32 id) : token(id) {}
  command_word(uint32 id, uint32 number) : token(id), value(number) {}
  uint32 token;
  std::optional<uint32> value;
};

struct command_line {
  if_index_t port;
  bool is_no;
  std::vector<command_word> words;
};

int32 run(RecordingPlatform& platform, const command_line& line) {
  config_command command(platform, line.port);
  if (line.is_no) command.no();
  for (const command_word& word : line.words)
    word.value ? command.number(word.token, *word.value) : command.token(word.token);
  return pm_cli_set_port_config(command.param);
}

std::string described(const command_line& line) {
  std::string text = line.is_no ? "no" : "";
  for (const command_word& word : line.words) text += " " + std::to_string(word.token);
  return text;
}

struct sent_case {
  command_line line;
  uint8 type;
  octets value;
};

void expect_sent(const std::vector<sent_case>& cases) {
  for (const sent_case& it : cases) {
    SCOPED_TRACE(described(it.line));
    RecordingPlatform platform;
    EXPECT_EQ(run(platform, it.line), 0);
    EXPECT_EQ(platform.text(), "");
    ASSERT_EQ(platform.setting_requests.size(), 1U);
    const auto& request = platform.setting_requests[0];
    EXPECT_EQ(request.type, it.type);
    EXPECT_EQ(request.value, it.value);
    EXPECT_EQ(request.ranges, (AskedRanges{{it.line.port, it.line.port}}));
  }
}

struct refused_case {
  command_line line;
  const char* text;
  int32 result = 1;
};

void expect_refused(const std::vector<refused_case>& cases) {
  for (const refused_case& it : cases) {
    SCOPED_TRACE(described(it.line));
    RecordingPlatform platform;
    EXPECT_EQ(run(platform, it.line), it.result);
    EXPECT_EQ(platform.text(), it.text);
    EXPECT_THAT(platform.setting_requests, IsEmpty());
  }
}

octets word_bytes(uint32 value) {
  return {static_cast<uint8>(value >> 24), static_cast<uint8>(value >> 16), static_cast<uint8>(value >> 8),
          static_cast<uint8>(value)};
}

// ---- The request ---------------------------------------------------------------------------------------------------

TEST(PortSetting, GoesOnceForAllRangesWithUserSessionAndTimeout) {
  RecordingPlatform platform;
  config_command command(platform, {{kRoutedPort, kPort2}, {kFibre, kFibre}});
  command.token(3);
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  const auto& request = platform.setting_requests[0];
  EXPECT_EQ(request.q, RecordingPlatform::q());
  EXPECT_EQ(request.username, "operator");
  EXPECT_EQ(request.session_id, 4711U);
  EXPECT_EQ(request.timeout, 60);
  EXPECT_EQ(request.ranges, (AskedRanges{{kRoutedPort, kPort2}, {kFibre, kFibre}}));
}

TEST(PortSetting, NeedsAParameterBlock) { EXPECT_EQ(pm_cli_set_port_config(nullptr), 1); }

TEST(PortSetting, DoesNothingWhenOnlyTheTextIsAskedFor) {
  RecordingPlatform platform;
  config_command command(platform, kRoutedPort);
  command.token(3);
  command.param->ascii_gen = 1;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.text(), "");
  EXPECT_THAT(platform.setting_requests, IsEmpty());
}

TEST(PortSetting, NeedsARangeWhichItsTypeTells) {
  RecordingPlatform platform;
  config_command command(platform, kRoutedPort);
  command.token(3);
  command.range_argument->type = PARAM_TYPE_UINT32;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 1);
  EXPECT_EQ(platform.text(), "error: token id list does not contain interface range\n");
  command.range_argument->type = PARAM_TYPE_INTERFACES;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.setting_requests.size(), 1U);
}

TEST(PortSetting, PassesOverAbsentArguments) {
  RecordingPlatform platform;
  config_command command(platform, kRoutedPort);
  command.token(9);
  param_arg_t empty = *command.range_argument;
  empty.arg = nullptr;
  command.param->arg_list[3] = command.param->arg_list[1];
  command.param->arg_list[2] = command.range_argument;
  command.param->arg_list[1] = &empty;
  command.param->arg_list[0] = nullptr;
  command.param->parameter_count = 2;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 1);
  EXPECT_EQ(platform.text(), "error: token id list does not contain interface range\n");
  command.param->parameter_count = 4;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  EXPECT_EQ(platform.setting_requests[0].type, 31);
}

TEST(PortSetting, LooksAtNoMoreArgumentsThanTheBlockHolds) {
  RecordingPlatform platform;
  config_command command(platform, kRoutedPort);
  std::swap(command.param->arg_list[0], command.param->arg_list[31]);
  command.param->parameter_count = 255;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 1);
  EXPECT_EQ(platform.text(), "error: invalid configuration 0 on interface\n");
}

TEST(PortSetting, TakesTheKeywordFromTheRangeThatHasNoRangeToken) {
  RecordingPlatform platform;
  config_command command(platform, kRoutedPort);
  command.range_argument->token_id = 9;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  EXPECT_EQ(platform.setting_requests[0].type, 31);
}

TEST(PortSetting, CountsPlacesFromTheRangeWhereverTheKeywordStands) {
  RecordingPlatform platform;
  config_command command(platform, kFibre);
  command.range_argument->token_id = kSwitchport;
  command.tokens({5, 99});  // the sub-command is the second word behind the range
  EXPECT_EQ(pm_cli_set_port_config(command.param), 1);
  EXPECT_EQ(platform.text(), "error: invalid switchport config 16973826\n");
  command.param->arg_list[2]->token_id = 15;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  EXPECT_EQ(platform.setting_requests[0].type, 5);
}

TEST(PortSetting, TrustsNoMoreRangesThanTheRecordHolds) {
  RecordingPlatform platform;
  config_command command(platform, kRoutedPort);
  command.token(9);
  for (auto& range : command.ranges.range) range = {kRoutedPort, kRoutedPort};
  command.ranges.range_count = 0xFFFFFFFF;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  EXPECT_EQ(platform.setting_requests[0].ranges.size(), 64U);
}

TEST(PortSetting, SendsAnEmptyListAndCallsItRefused) {
  RecordingPlatform platform;
  config_command command(platform, std::vector<vsh_intf_mono_range_t>{});
  command.token(9);
  EXPECT_EQ(pm_cli_set_port_config(command.param), 1);
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  EXPECT_THAT(platform.setting_requests[0].ranges, IsEmpty());
  EXPECT_THAT(platform.failures, IsEmpty());
}

// ---- Keywords ------------------------------------------------------------------------------------------------------

TEST(Keyword, BecomesItsSetting) {
  expect_sent({
      {{kRoutedPort, false, {3}}, 1, {2}},
      {{kRoutedPort, true, {3}}, 1, {1}},
      {{kRoutedPort, true, {5}}, 45, {0, 0, 0, 0}},
      {{kRoutedPort, false, {5, 7}}, 45, {0, 0, 0, 1}},  // with a word behind it nothing is asked
      {{kRoutedPort, false, {9}}, 31, {0, 0, 0, 1}},
      {{kRoutedPort, true, {9}}, 31, {0, 0, 0, 2}},
      {{kRoutedPort, false, {127}}, 78, {0, 0, 0, 3}},
      {{kRoutedPort, true, {127}}, 78, {0, 0, 0, 4}},
      {{kRoutedPort, true, {127, 1}}, 78, {0, 0, 0, 4}},
      {{kRoutedPort, false, {kSwitchport}}, 50, {0, 0, 0, 2}},
      {{kRoutedPort, true, {kSwitchport}}, 50, {0, 0, 0, 3}},
      {{kChannel, false, {kSwitchport}}, 50, {0, 0, 0, 2}},
      {{kSatellite, false, {kSwitchport}}, 50, {0, 0, 0, 2}},
      {{mgmt(), true, {3}}, 1, {1}},      // the "no" form never asks
      {{mgmt(), false, {3, 7}}, 1, {2}},  // with a word behind it nothing is asked
  });
}

TEST(Keyword, IsRefusedWhenItIsNone) {
  expect_refused({
      {{kRoutedPort, false, {4}}, "error: invalid configuration 4 on interface\n"},
      {{kRoutedPort, false, {}}, "error: invalid configuration 0 on interface\n"},
      {{kLoopback0, false, {kSwitchport}}, "Error: command not supported on interface type\n"},
      {{kFibre, true, {kSwitchport}}, "Error: command not supported on interface type\n"},
      {{kRoutedPort, true, {127, 1, 2}}, "'no' option is not supported with this command\n"},
  });
}

TEST(Keyword, TellsTheDebuggerTheLinkFailureState) {
  RecordingPlatform platform;
  config_command command(platform, kRoutedPort);
  command.token(127);
  command.param->vsh_debug_flag = 1;
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.text(), "pm_cli_set_port_config: Debug - port dwon on link failure state enabled \n");
}

struct confirmation {
  if_index_t port;
  uint32 keyword;
  const char* warning;
  int32 refused_result;
};

TEST(Keyword, AsksBeforeItCuts) {
  for (const confirmation& it :
       {confirmation{mgmt(), 3, "Shutting down this interface will drop all telnet and SSH sessions.\n", 1},
        confirmation{kRoutedPort, 5,
                     "Putting an interface into out-of-service will cause its shared resource configuration to revert "
                     "to default\n",
                     0}}) {
    for (const char* answer : {"y", "n"}) {
      RecordingPlatform platform;
      platform.user_answer = answer;
      const bool is_yes = *answer == 'y';
      EXPECT_EQ(run(platform, {it.port, false, {it.keyword}}), is_yes ? 0 : it.refused_result);
      EXPECT_EQ(platform.text(), it.warning);
      ASSERT_EQ(platform.questions.size(), 1U);
      EXPECT_EQ(platform.questions[0].prompt, "Do you wish to continue(y/n)?");
      EXPECT_EQ(platform.setting_requests.size(), is_yes ? 1U : 0U);
    }
  }
}

TEST(Keyword, AsksNothingBeforeAnotherPortIsShutDown) {
  RecordingPlatform platform;
  EXPECT_EQ(run(platform, {kRoutedPort, false, {3}}), 0);
  EXPECT_THAT(platform.questions, IsEmpty());
}

// ---- Switchport sub-commands ---------------------------------------------------------------------------------------

TEST(Switchport, SubCommandsBecomeTheirSettings) {
  const auto line = [](std::vector<command_word> words, bool is_no = false, if_index_t port = kFibre) {
    words.insert(words.begin(), kSwitchport);
    return command_line{port, is_no, words};
  };
  expect_sent({
      {line({4, {1, 0x20}}), 2, {0, 0, 0, 0x20}},
      {line({4, 109, {7, 0x12345678}}), 2, {0x12, 0x34, 0x56, 0x78}},
      {line({4, 109, {7, 16}}, false, kChannel), 2, {0, 0, 0, 16}},
      {line({4, {1, 4}}, false, kChannel), 2, {0, 0, 0, 4}},
      {line({4, {1, 4}}, false, kSatellite), 2, {0, 0, 0, 4}},
      {line({4}, true), 2, {0x80, 0, 0, 0}},
      {line({4}, true, kRoutedPort), 2, {0, 8, 0, 0}},
      {line({15}), 5, {1}},
      {line({15}, true), 5, {2}},
      {line({129}), 84, {1}},
      {line({129}, true), 84, {2}},
      {line({16, 18}), 3, word_bytes(10)},
      {line({16, 19}), 3, word_bytes(100)},
      {line({16, 20}), 3, word_bytes(1000)},
      {line({16, 21}), 3, word_bytes(2000)},
      {line({16, 67}), 3, word_bytes(4000)},
      {line({16, 75}), 3, word_bytes(8000)},
      {line({16, 17}), 3, word_bytes(0)},
      {line({16, 17, 71, 72}), 3, word_bytes(1)},
      {line({16, 17, 71, 76}), 3, word_bytes(2)},
      {line({16, 17, 71, 5}), 3, word_bytes(0)},
      {line({16, 17, 71}), 3, word_bytes(0)},
      {line({16, 17, 72, 72}), 3, word_bytes(0)},
      {line({16, 75}, true), 3, word_bytes(0)},
      {line({22, 23}), 4, {2}},
      {line({22, 23, {1, 1}}), 4, {1}},
      {line({22, 23, {1, 3}}), 4, {3}},
      {line({29, {31, 12}}), 25, word_bytes(12)},
      {line({29, {31, 12}, 1, 47}), 25, word_bytes(0x8000000C)},
      {line({29, {31, 12}, 1, 48}), 25, word_bytes(0x4000000C)},
      {line({29, 30}), 25, word_bytes(0)},
      {line({29}), 25, word_bytes(0)},
      {line({29, {31, 12}}, true), 25, word_bytes(0)},
      {line({29, 99}, true), 25, word_bytes(0)},
      {line({29, 49, {1, 16}}), 28, word_bytes(16)},
      {line({29, 50, {1, 17}}), 28, word_bytes(17)},
      {line({29, 52, {1, 18}}), 28, word_bytes(18)},
      {line({29, 52}), 28, word_bytes(0xFFFFFFFF)},
      {line({29, 49, {1, 16}}, true), 28, word_bytes(0xFFFFFFFF)},
      {line({29, 53, {55, 300}}), 37, word_bytes(300)},
      {line({29, 53, 55, {1, 301}}), 37, word_bytes(301)},
      {line({29, 53}, true), 37, word_bytes(0)},
      {line({29, 64, {1, 5}}), 41, word_bytes(5)},
      {line({29, {64, 6}}), 41, word_bytes(6)},
      {line({29, 64}, true), 41, word_bytes(0)},
      {line({32}), 15, {0x08, 0x40}},
      {line({32, 9}), 15, {0x08, 0x40}},
      {line({32, 33}, true), 15, {0x08, 0x40}},
      {line({34, 35}), 22, {1}},
      {line({34, 36}), 22, {2}},
      {line({34, 37}), 22, {3}},
      {line({34}, true), 22, {1}},
      {line({39}), 29, word_bytes(1500)},
      {line({39, {40, 9216}}), 29, word_bytes(9216)},
      {line({39, {40, 9216}}, true), 29, word_bytes(1500)},
      {line({41}), 23, word_bytes(2)},
      {line({41, 42}), 23, word_bytes(1)},
      {line({41, 43}), 23, word_bytes(2)},
      {line({41}, true), 23, word_bytes(2)},
      {line({45}), 36, word_bytes(1)},
      {line({45}, true), 36, word_bytes(2)},
      {line({45}, false, kChannel), 36, word_bytes(1)},
      {line({56, 57}), 17, {3}},
      {line({56, 58}), 17, {1}},
      {line({56, 59}), 17, {2}},
      {line({56}, true), 17, {3}},
      {line({65, 66}), 42, {1}},
      {line({65, 66}, true), 42, {2}},
      {line({68, 69}), 44, {1}},
      {line({68, 70}), 44, {2}},
      {line({68, 71}), 44, {0}},
      {line({68}), 44, {0}},
      {line({68, 69}, true), 44, {3}},
      {line({73}), 48, {1}},
      {line({73}, true), 48, {2}},
      {line({123}), 68, word_bytes(1)},
      {line({123, 1}), 68, word_bytes(2)},
      {line({123, 1, 2}), 68, word_bytes(3)},
      {line({123, 1, 2, 3}, true), 68, word_bytes(0)},
      {line({134}), 85, {0}},
      {line({134}, true), 85, {0}},
  });
}

TEST(Switchport, RefusesWhatIsWrong) {
  const auto line = [](std::vector<command_word> words, bool is_no = false, if_index_t port = kFibre) {
    words.insert(words.begin(), kSwitchport);
    return command_line{port, is_no, words};
  };
  constexpr const char* kCredit = "error: invalid arguments for BB_credit\n";
  constexpr const char* kMore = "error: more arguments expected for mode\n";
  constexpr const char* kTrunk = "error: invalid arguments for trunk mode\n";
  expect_refused({
      {line({1}), "error: invalid switchport config 16973826\n"},
      {line({0}), "error: invalid switchport config 16973826\n"},
      {line({135}), "error: invalid switchport config 16973826\n"},
      {line({4}), kMore},
      {line({4, 109}), kMore},
      {line({4, 1}), kMore},
      {line({4, {1, 4}, 2, 3}), "error: invalid arguments for this mode\n"},
      {line({4, {1, 2}}, false, kChannel), "This mode not supported for port channels\n"},
      {line({4, {1, 0x8000}}, false, kChannel), "This mode not supported for port channels\n"},
      {line({4, {1, 16}}, false, kChannel), "This mode not supported for port channels\n"},
      {line({4, {1, 32}}, false, kChannel), "This mode not supported for port channels\n"},
      {line({4, {1, 64}}, false, kChannel), "This mode not supported for port channels\n"},
      {line({4, {1, 96}}, false, kChannel), "This mode not supported for port channels\n"},
      {line({4, {1, 0x02000000}}, false, kSatellite), "error: fabric mode not supported for interface type\n"},
      {line({4, 109, {1, 0x02000000}}, false, kSatellite), "error: fabric mode not supported for interface type\n"},
      {line({15}, false, kChannel), "Beacon mode not supported for port channels\n"},
      {line({15}, true, kChannel), "Beacon mode not supported for port channels\n"},
      {line({129}, false, kChannel), "Beacon mode not supported for port channels\n"},
      {line({73}, false, kChannel), "BBSCN mode not supported for port channels\n"},
      {line({16}), "error: invalid port speed - 0\n"},
      {line({16, 22}), "error: invalid port speed - 22\n"},
      {line({22}), kTrunk},
      {line({22, 24}), kTrunk},
      {line({22, 23, {1, 1}, 2}), kTrunk},
      {line({22, 23, {1, 0}}), "error: invalid trunk mode\n"},
      {line({22, 23, {1, 4}}), "error: invalid trunk mode\n"},
      {line({22, 23}, true), "'no' option is not supported with this command\n"},
      {line({22, 107}), "Command - switchport trunk encapsulation dot1q - is not implemented yet\n", 0},
      {line({29, {31, 1}, 2, 3, 4}), kCredit},
      {line({29, 31}), kCredit},
      {line({29, 53}), kCredit},
      {line({29, 53, {1, 300}}), kCredit},
      {line({29, 53, 55}), kCredit},
      {line({29, 64}), kCredit},
      {line({29, 99}), kCredit},
      {line({32, 33, 1}), "error: invalid arguments for receive buffer size\n"},
      {line({34, 35, 1}), "error: invalid arguments for encapsulation\n"},
      {line({34}), "error: invalid encapsulation\n"},
      {line({34, 38}), "error: invalid encapsulation\n"},
      {line({39, {40, 1}, 1}), "error: invalid arguments for mtu\n"},
      {line({41, 42, 1}), "error: invalid arguments for promiscuous mode\n"},
      {line({41, 44}), "error: invalid promiscuous mode\n"},
      {line({56}), "error: invalid port duplex - 0\n"},
      {line({56, 60}), "error: invalid port duplex - 60\n"},
      {line({65}), "error : invalid arguments to switchport ignore\n"},
      {line({65, 67}), "error: invalid bit error option  - 67\n"},
      {line({77}), "Command - switchport dot1q ethertype - is not implemented yet\n", 0},
      {line({80}, true), "The 'no' form of this command has no effect on the system\n"},
      {line({123}, false, kSatellite), "error: switchport monitor not supported for interface type\n"},
      {line({123}, true, kSatellite), "error: switchport monitor not supported for interface type\n"},
      {line({123, 1, 2, 3}), "error: invalid arguments for monitor\n"},
  });
}

TEST(Switchport, LetsARestrictedUserChangeNoMode) {
  for (const uint32 sub_command : {4U, 22U})
    for (const bool is_no : {false, true}) {
      RecordingPlatform platform;
      platform.vsan_restricted = 1;
      EXPECT_EQ(run(platform, {kFibre, is_no, {kSwitchport, sub_command}}), -12);
      EXPECT_EQ(platform.text(), "error: port mode configuration not allowed\n");
      EXPECT_THAT(platform.setting_requests, IsEmpty());
    }
}

TEST(Switchport, NamesHaveEightyCharactersAtMost) {
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{3}, std::size_t{80}, std::size_t{81}, std::size_t{10000}}) {
    RecordingPlatform platform;
    config_command command(platform, kFibre);
    std::string name = std::string("%s\x1b").substr(0, length) + std::string(length > 3 ? length - 3 : 0, 'x');
    command.tokens({kSwitchport, 2}).token_with(1, name.data());
    EXPECT_EQ(pm_cli_set_port_config(command.param), length > 80 ? 1 : 0);
    EXPECT_EQ(platform.text(), length > 80 ? "error: name too long. max size allowed is 80\n" : "");
    ASSERT_EQ(platform.setting_requests.size(), length > 80 ? 0U : 1U);
    if (length > 80) continue;
    octets expected(name.begin(), name.end());
    expected.resize(81);
    EXPECT_EQ(platform.setting_requests[0].type, 6);
    EXPECT_EQ(platform.setting_requests[0].value, expected);
  }
}

TEST(Switchport, NoNameIsTheEmptyName) {
  RecordingPlatform platform;
  config_command command(platform, kFibre);
  char name[] = "uplink";
  command.no().tokens({kSwitchport, 2}).token_with(1, name);
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  ASSERT_EQ(platform.setting_requests.size(), 1U);
  EXPECT_EQ(platform.setting_requests[0].value, octets(81));
}

TEST(Switchport, AnAbsentNameIsTheEmptyName) {
  for (const bool has_argument : {false, true}) {
    RecordingPlatform platform;
    config_command command(platform, kFibre);
    command.tokens({kSwitchport, 2});
    if (has_argument) command.token_with(1, nullptr);
    EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
    ASSERT_EQ(platform.setting_requests.size(), 1U);
    EXPECT_EQ(platform.setting_requests[0].type, 6);
    EXPECT_EQ(platform.setting_requests[0].value, octets(81));
  }
}

TEST(Switchport, ReceiveBuffersAreMultiplesOfFour) {
  for (const uint16 size : {uint16{2112}, uint16{256}, uint16{2110}, uint16{2111}}) {
    RecordingPlatform platform;
    config_command command(platform, kFibre);
    uint16 value = size;
    command.tokens({kSwitchport, 32}).token_with(33, &value);
    const bool is_good = size % 4 == 0;
    EXPECT_EQ(pm_cli_set_port_config(command.param), is_good ? 0 : 1);
    EXPECT_EQ(platform.text(), is_good ? "" : "error: invalid receive buffer size (not a multiple of 4)\n");
    ASSERT_EQ(platform.setting_requests.size(), is_good ? 1U : 0U);
    if (is_good) {
      EXPECT_EQ(platform.setting_requests[0].value, (octets{static_cast<uint8>(size >> 8), static_cast<uint8>(size)}));
    }
  }
}

// ---- The layer check -----------------------------------------------------------------------------------------------

TEST(LayerCheck, AsksForEveryInterfaceOfTheRange) {
  RecordingPlatform platform;
  config_command command(platform, {{kRoutedPort, ethernet(1, 3, IF_TYPE_ETHERNET_L3)}});
  command.tokens({kSwitchport, 15});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.interface_manager_starts, (std::vector<std::string>(3, "262 0 clish")));
  EXPECT_EQ(platform.count("im_get_ifindex_layermode_list"), 3U);
}

TEST(LayerCheck, StepsFromChannelToChannel) {
  RecordingPlatform platform;
  config_command command(platform, {{port_channel(3), port_channel(6)}});
  command.tokens({kSwitchport, 39});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.count("im_get_ifindex_layermode_list"), 4U);
  platform.fail_with("if_index_set_channel_num", -1);
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.count("im_get_ifindex_layermode_list"), 5U) << "what cannot be stepped is asked once";
}

TEST(LayerCheck, StepsFromVirtualInterfaceToVirtualInterface) {
  RecordingPlatform platform;
  config_command command(platform, {{vethernet(1), vethernet(3)}});
  command.tokens({kSwitchport, 39});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.layers_asked, (std::vector<if_index_t>{vethernet(1), vethernet(2), vethernet(3)}));
}

TEST(LayerCheck, StepsEachRangeByItsOwnKind) {
  const if_index_t switched = ethernet(2, 1);
  RecordingPlatform platform;
  config_command command(platform, {{kRoutedPort, kPort2},
                                    {port_channel(1), port_channel(3)},
                                    {switched, ethernet(2, 3)},
                                    {port_channel(7, IF_TYPE_PORT_CHANNEL), port_channel(8, IF_TYPE_PORT_CHANNEL)},
                                    {vethernet(4), vethernet(6)}});
  command.tokens({kSwitchport, 15});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.layers_asked,
            (std::vector<if_index_t>{kRoutedPort, kPort2, port_channel(1), port_channel(2), port_channel(3), switched,
                                     ethernet(2, 2), ethernet(2, 3), port_channel(7, IF_TYPE_PORT_CHANNEL),
                                     port_channel(8, IF_TYPE_PORT_CHANNEL), vethernet(4), vethernet(5), vethernet(6)}));
}

TEST(LayerCheck, EndsTheCommandAtAnyInterfaceOfALaterRange) {
  RecordingPlatform platform;
  platform.syserr_texts[0] = "good";
  platform.syserr_texts[0x41] = "bad";
  platform.layer_statuses[port_channel(3)] = 0x41;
  config_command command(platform, {{kRoutedPort, kPort2}, {port_channel(1), port_channel(3)}});
  command.tokens({kSwitchport, 15});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 1);
  char expected[200];
  std::snprintf(expected, sizeof expected,
                "layermode query on if_idx 0x%x failed: \nstatus: 0 - good\nif_info_status: 41 - bad\n",
                port_channel(3));
  EXPECT_EQ(platform.text(), expected);
  EXPECT_THAT(platform.setting_requests, IsEmpty());
}

TEST(LayerCheck, AsksForEveryInterfaceOfALongRange) {
  constexpr uint32 kLast = 70000;
  RecordingPlatform platform;
  config_command command(platform, {{vethernet(1), vethernet(kLast)}});
  command.tokens({kSwitchport, 39});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  ASSERT_EQ(platform.layers_asked.size(), kLast);
  EXPECT_EQ(platform.layers_asked.back(), vethernet(kLast));
}

// The recording platform has 256 ports in a module; the port after the last is the first again.
TEST(LayerCheck, DoesNotFollowAPlatformThatStepsBack) {
  RecordingPlatform platform;
  config_command command(platform, {{kRoutedPort, kRoutedPort}, {ethernet(1, 255), ethernet(2, 2)}});
  command.tokens({kSwitchport, 15});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_EQ(platform.layers_asked, (std::vector<if_index_t>{kRoutedPort, ethernet(1, 255), ethernet(1, 256)}));
}

TEST(LayerCheck, IsLeftOutWithNoAndForOtherKinds) {
  RecordingPlatform platform;
  EXPECT_EQ(run(platform, {kRoutedPort, true, {kSwitchport, 15}}), 0);
  EXPECT_EQ(run(platform, {kFibre, false, {kSwitchport, 15}}), 0);
  EXPECT_EQ(run(platform, {kRoutedPort, false, {kSwitchport}}), 0);
  EXPECT_THAT(platform.interface_manager_starts, IsEmpty());
}

TEST(LayerCheck, EndsTheCommandWhenAQueryFails) {
  RecordingPlatform platform;
  platform.syserr_texts[0] = "good";
  platform.syserr_texts[0x40] = "odd";
  platform.fail_with("im_get_ifindex_layermode_list", 0x40);
  EXPECT_EQ(run(platform, {kChannel, false, {kSwitchport, 68}}), 1);
  char expected[200];
  std::snprintf(expected, sizeof expected,
                "layermode query on if_idx 0x%x failed: \nstatus: 40 - odd\nif_info_status: 0 - good\n", kChannel);
  EXPECT_EQ(platform.text(), expected);
  EXPECT_THAT(platform.setting_requests, IsEmpty());
}

TEST(LayerCheck, EndsTheCommandWhenTheRecordIsBad) {
  RecordingPlatform platform;
  platform.syserr_texts[0] = "good";
  platform.syserr_texts[0x41] = "bad";
  platform.interface_manager_status = 0x41;
  EXPECT_EQ(run(platform, {kRoutedPort, false, {kSwitchport, 15}}), 1);
  char expected[200];
  std::snprintf(expected, sizeof expected,
                "layermode query on if_idx 0x%x failed: \nstatus: 0 - good\nif_info_status: 41 - bad\n", kRoutedPort);
  EXPECT_EQ(platform.text(), expected);
  EXPECT_THAT(platform.setting_requests, IsEmpty());
}

TEST(LayerCheck, EndsTheCommandWhenItCannotBegin) {
  RecordingPlatform platform;
  platform.syserr_texts[0x42] = "closed";
  platform.fail_with("im_ext_sbcr_init", 0x42);
  EXPECT_EQ(run(platform, {kRoutedPort, false, {kSwitchport, 15}}), 1);
  EXPECT_EQ(platform.text(), "im_ext_sbcr_init failed: 0x42 (closed)\n");
}

TEST(LayerCheck, DoesNotFollowARangeThatRunsBackwards) {
  RecordingPlatform platform;
  config_command command(platform, {{kPort2, kRoutedPort}});
  command.tokens({kSwitchport, 15});
  EXPECT_EQ(pm_cli_set_port_config(command.param), 0);
  EXPECT_LE(platform.count("im_get_ifindex_layermode_list"), 1U);
}

// ---- The management port -------------------------------------------------------------------------------------------

TEST(ManagementPort, SpeedAndDuplexOfCard40AreForTheConsole) {
  for (const uint32 sub_command : {16U, 56U})
    for (const char* terminal : {"/dev/ttyS0", "/dev/ttyS1", "/dev/pts/1", static_cast<const char*>(nullptr)}) {
      RecordingPlatform platform;
      platform.card_types[mgmt()] = 40;
      config_command command(platform, mgmt());
      command.tokens({kSwitchport, sub_command, sub_command == 16 ? 19U : 58U});
      command.param->vtyname = terminal;
      const bool is_console = terminal != nullptr && std::strncmp(terminal, "/dev/ttyS", 9) == 0;
      EXPECT_EQ(pm_cli_set_port_config(command.param), is_console ? 0 : 1);
      EXPECT_EQ(platform.text(), is_console ? "" : "mgmt0: (error) requested config change not allowed \n");
      EXPECT_EQ(platform.setting_requests.size(), is_console ? 1U : 0U);
    }
}

TEST(ManagementPort, GigabitDependsOnTheCard) {
  for (uint32 card = 0; card <= 30; ++card) {
    RecordingPlatform platform;
    platform.card_types[mgmt()] = card;
    platform.tamber_lindo_cards = {26};
    platform.corvid_cards = {29};
    const bool is_refused =
        (card >= 1 && card <= 9) || (card >= 11 && card <= 25) || card == 26 || card == 28 || card == 29;
    EXPECT_EQ(run(platform, {mgmt(), false, {kSwitchport, 16, 20}}), is_refused ? 1 : 0) << card;
    EXPECT_EQ(platform.text(), is_refused ? "mgmt0: (error) port speed 1G is not supported \n" : "") << card;
    EXPECT_EQ(platform.setting_requests.size(), is_refused ? 0U : 1U) << card;
  }
}

TEST(ManagementPort, GigabitNeedsToKnowTheCard) {
  RecordingPlatform platform;
  platform.fail_with("get_card_module_info", 5);
  EXPECT_EQ(run(platform, {mgmt(), false, {kSwitchport, 16, 20}}), 1);
  EXPECT_EQ(platform.text(), "error: failed to get module info while setting port speed \n");
  EXPECT_EQ(run(platform, {mgmt(), false, {kSwitchport, 16, 19}}), 0);
  EXPECT_EQ(run(platform, {kFibre, false, {kSwitchport, 16, 20}}), 0);
}

// ---- What the port manager answers ---------------------------------------------------------------------------------

TEST(SettingFailure, OfTheTransportIsToldByTheShell) {
  RecordingPlatform platform;
  platform.fail_with("pm_cmi_set_port_config", -1);
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 1);
  EXPECT_EQ(platform.mts_errors, (std::vector<std::pair<int32, int32>>{{2, 110}}));
  EXPECT_THAT(platform.failures, IsEmpty());
}

TEST(SettingFailure, OfTheServiceIsPrintedAsTextAndCode) {
  RecordingPlatform platform;
  platform.syserr_texts[0x40290007] = "busy";
  platform.fail_with("pm_cmi_set_port_config", 0x40290007);
  platform.results_in_spite_of_failure = {{kRoutedPort, 3}};
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 1);
  EXPECT_EQ(platform.text(), "error: busy\nerror: 0x40290007\n");
  EXPECT_THAT(platform.failures, IsEmpty());
}

TEST(SettingFailure, WithoutResultsIsNoSuccess) {
  RecordingPlatform platform;
  platform.null_results = 5;
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 1);
  EXPECT_EQ(platform.text(), "");
  EXPECT_THAT(platform.failures, IsEmpty());
}

TEST(SettingFailure, IsToldByErrorTheLastOpenedFirst) {
  RecordingPlatform platform;
  platform.syserr_texts[0x11] = "locked";
  platform.syserr_texts[0x12] = "too fast";
  const if_index_t p1 = ethernet(1, 1), p2 = ethernet(1, 2), p3 = ethernet(1, 3), p4 = ethernet(1, 4);
  platform.setting_results = {{p1, 0x11}, {p2, 0}, {p3, 0x12}, {p4, 0x11}};
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 0);
  EXPECT_EQ(platform.failures, (std::vector<std::string>{"Ethernet1/3: too fast\nEthernet1/1, Ethernet1/4: locked\n"}));
  ASSERT_EQ(platform.error_ranges.size(), 1U);
  ASSERT_EQ(platform.error_ranges[0].size(), 3U);
  EXPECT_EQ(platform.error_ranges[0][0].lower_if_index, p1);
  EXPECT_EQ(platform.error_ranges[0][1].lower_if_index, p3);
  EXPECT_EQ(platform.error_ranges[0][2].upper_if_index, p4);
  EXPECT_EQ(platform.sends, 0U);
}

TEST(SettingFailure, OfAllPortsIsAlsoTheResult) {
  RecordingPlatform platform;
  platform.syserr_texts[0x11] = "locked";
  platform.setting_results = {{ethernet(1, 1), 0x11}};
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 1);
  EXPECT_EQ(platform.failures, std::vector<std::string>{"Ethernet1/1: locked\n"});
}

TEST(SettingFailure, WhoseTextSaysAllHasNoRanges) {
  RecordingPlatform platform;
  platform.syserr_texts[0x402900F4] = "use the other command";
  platform.setting_results = {{ethernet(1, 1), 0x402900F4}};
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 1);
  EXPECT_EQ(platform.failures, std::vector<std::string>{"use the other command\n"});
}

TEST(SettingFailure, HasTwentyGroupsAndNoMore) {
  RecordingPlatform platform;
  std::vector<std::pair<if_index_t, uint32>> results;
  std::string expected;
  for (uint32 n = 1; n <= 25; ++n) {
    results.emplace_back(ethernet(1, n), n);
    platform.syserr_texts[static_cast<syserr_t>(n)] = "error " + std::to_string(n);
    if (n <= 20) expected = "Ethernet1/" + std::to_string(n) + ": error " + std::to_string(n) + "\n" + expected;
  }
  platform.setting_results = results;
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 1);
  EXPECT_EQ(platform.failures, std::vector<std::string>{expected});
  ASSERT_EQ(platform.error_ranges.size(), 1U);
  EXPECT_EQ(platform.error_ranges[0].size(), 25U);
}

TEST(SettingFailure, ModeEIsForTheFirstPortOfFour) {
  RecordingPlatform platform;
  platform.setting_results = {{fibre_channel(1, 3), 0x4029002E}, {fibre_channel(1, 6), 0x4029002E}};
  EXPECT_EQ(run(platform, {kFibre, false, {9}}), 1);
  EXPECT_EQ(platform.text(),
            "fc1/3: (error) mode E allowed only for interface fc1/1 in group fc1/1-4\n"
            "fc1/6: (error) mode E allowed only for interface fc1/5 in group fc1/5-8\n");
  ASSERT_EQ(platform.error_ranges.size(), 1U);
  EXPECT_EQ(platform.error_ranges[0].size(), 2U);
  EXPECT_EQ(platform.failures, std::vector<std::string>{""});
}

TEST(SettingFailure, ModeENamesTheGroupOfThePortsModule) {
  RecordingPlatform platform;
  platform.setting_results = {{fibre_channel(2, 8), 0x4029002E}};
  EXPECT_EQ(run(platform, {kFibre, false, {9}}), 1);
  EXPECT_EQ(platform.text(), "fc2/8: (error) mode E allowed only for interface fc2/5 in group fc2/5-8\n");
}

TEST(SettingFailure, ModeEOfAPortWhosePlaceCannotBeRead) {
  struct unreadable_case {
    const char* failing;
    const char* text;
  };
  for (const unreadable_case& it :
       {unreadable_case{"if_index_phy_fc_get_slot",
                        "fc2/7: (error) mode E allowed only for interface fc2/7 in group fc2/7-8\n"},
        unreadable_case{"if_index_phy_fc_get_port",
                        "fc2/7: (error) mode E allowed only for interface fc2/7 in group fc2/7-4\n"},
        unreadable_case{"if_index_phy_fc_port_init",
                        "fc2/7: (error) mode E allowed only for interface fc2/7 in group fc2/7-8\n"}}) {
    RecordingPlatform platform;
    platform.fail_with(it.failing, PM_ERR_GENERAL);
    platform.setting_results = {{fibre_channel(2, 7), 0x4029002E}};
    EXPECT_EQ(run(platform, {kFibre, false, {9}}), 1);
    EXPECT_EQ(platform.text(), it.text) << it.failing;
  }
}

TEST(SettingFailure, CutsTheRangesOfAGroupAtTwentyBytesEach) {
  RecordingPlatform platform;
  const if_index_t port = ethernet(1, 1);
  platform.names[port] = "a-name-of-thirty-characters---";
  platform.syserr_texts[0x11] = "locked";
  platform.setting_results = {{port, 0x11}};
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 1);
  EXPECT_EQ(platform.failures, std::vector<std::string>{"a-name-of-thirty-ch: locked\n"});
}

TEST(SettingFailure, WithoutAnOutputHandleIsStillAFailure) {
  RecordingPlatform platform;
  platform.fail_with("cmd_paraminfo_to_rxhandle");
  platform.setting_results = {{ethernet(1, 1), 0x11}};
  EXPECT_EQ(run(platform, {kRoutedPort, false, {9}}), 1);
  EXPECT_EQ(platform.text(), "cmd_paraminfo_to_rxhandle failed \n");
  EXPECT_THAT(platform.failures, IsEmpty());
}

TEST(PortSetting, SurvivesEveryFailure) {
  walk_failures([](RecordingPlatform& platform) {
    platform.user_answer = "y";
    platform.setting_results = {{ethernet(1, 1), 0x11}, {fibre_channel(1, 3), 0x4029002E}, {ethernet(1, 2), 0}};
    run(platform, {kRoutedPort, false, {kSwitchport, 15}});
    run(platform, {kRoutedPort, false, {5}});
    run(platform, {mgmt(), false, {kSwitchport, 16, 20}});
  });
}

TEST(PortSetting, SaysWhereTheHeapIsExhausted) {
  std::vector<std::string> texts;
  walk_failures(
      [](RecordingPlatform& platform) {
        run(platform, {kRoutedPort, false, {9}});
      },
      [&texts](const walk_run& at) {
        if (at.platform.failed_call() == "malloc") texts.push_back(at.platform.text());
      });
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_THAT(texts[0], HasSubstr("] for size 8\nerror: allocating memory for range list\n"));
  EXPECT_THAT(texts[0], StartsWith("(Error) Malloc Failure in "));
  EXPECT_THAT(texts[1], HasSubstr("] for size 6\nerror: malloc failure - size(6)\n"));
}

}  // namespace
}  // namespace pmcli_test
