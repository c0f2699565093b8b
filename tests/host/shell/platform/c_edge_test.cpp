// What C calls of the shell while memory runs out: a failure by its contract, and no exception.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "host/shell/output/captured_command.h"
#include "platform/bitset.h"
#include "platform/cmd_channel.h"
#include "platform/vsh.h"
#include "shell/platform/libc_calls.h"
#include "support/allocations.h"
#include "switch/if_index_layout.h"

namespace session {
namespace {

using pmcli_test::failing_allocation;

// Longer than what a text holds without memory of its own.
constexpr char kLongText[] = "a text that is too long to be kept without memory of its own";

// Prints while each allocation in turn fails, until none does. The command must know each time.
template <typename Print>
void expect_failures(Print print) {
  std::size_t failures = 0;
  for (std::size_t spared = 0;; ++spared) {
    captured_command command;
    bool has_failed = false;
    {
      const failing_allocation memory(spared);
      print(command);
      has_failed = memory.has_failed();
    }
    EXPECT_EQ(command.output().failed(), has_failed) << spared;
    if (!has_failed) break;
    ++failures;
  }
  EXPECT_NE(failures, 0U);
}

TEST(OutOfMemory, TextOfTheChannelThatIsLostIsAFailure) {
  expect_failures(
      [](captured_command& command) { cmd_prt(command.channel(), "%s\n", cmd_tuple(0x302A0273, kLongText)); });
}

TEST(OutOfMemory, PrintedTextThatIsLostIsAFailure) {
  expect_failures([](captured_command&) {
    std::printf("%s\n", kLongText);
    std::fflush(stdout);
  });
  expect_failures([](captured_command& command) {
    std::printf("%s\n", kLongText);
    cmd_prt_send(command.channel());
  });
}

TEST(OutOfMemory, AResponseIsAFailureInAnyCase) {
  captured_command command;
  {
    const failing_allocation memory(0);
    cmd_rsp_send_nok(command.channel(), 0, kLongText);
    EXPECT_TRUE(memory.has_failed());
  }
  EXPECT_TRUE(command.output().failed());
}

TEST(OutOfMemory, RangesAreLeftOutAndTheCommandFails) {
  captured_command command;
  const if_index_t port = host::ethernet_index(IF_TYPE_ETHERNET, 0, 0);
  mrange_handle_t* none = nullptr;
  {
    const failing_allocation memory(0);
    none = cmd_mrange_create(0x0D030001);
  }
  EXPECT_EQ(none, nullptr);
  mrange_handle_t* const ranges = cmd_mrange_create(0x0D030001);
  {
    const failing_allocation memory(0);
    cmd_mrange_range_add(ranges, port, port);
    EXPECT_TRUE(memory.has_failed());
  }
  EXPECT_EQ(ranges->len, 0);
  EXPECT_TRUE(command.output().failed());
  cmd_mrange_range_add(ranges, port, port);
  EXPECT_EQ(ranges->len, 1);
  char text[64] = "what was there before";
  {
    const failing_allocation memory(0);
    EXPECT_EQ(cmd_mrange_snprintf(text, sizeof text, ranges), -1);
    EXPECT_TRUE(memory.has_failed());
  }
  EXPECT_STREQ(text, "");
  {
    const failing_allocation memory(0);
    cmd_mrange_error_set(ranges);
    EXPECT_FALSE(memory.has_failed()) << "handing over needs none";
  }
}

TEST(OutOfMemory, ASetIsRenderedAsNothing) {
  vlan_bitset_t set;
  bitset_clear_all(&set);
  for (uint32 id = 1; id < 100; id += 2) bitset_set(&set, id);
  char text[BITSET_TEXT_BYTES] = "what was there before";
  const failing_allocation memory(0);
  EXPECT_EQ(bitset_sprintf(text, sizeof text, &set), 0U);
  EXPECT_STREQ(text, "");
}

TEST(OutOfMemory, NoQuestionIsAnswered) {
  vsh_user_input_info_t question{};
  question.notty_input = kLongText;
  question.max_len = 8;
  char answer[9] = "none";
  const failing_allocation memory(0);
  EXPECT_EQ(vsh_util_user_input_get(&question, answer), -1);
  EXPECT_STREQ(answer, "none");
}

TEST(OutOfMemory, NoCommandIsRecorded) {
  const std::size_t before = host::system_commands().size();
  {
    const failing_allocation memory(0);
    EXPECT_EQ(std::system(kLongText), -1);
  }
  EXPECT_EQ(host::system_commands().size(), before);
}

}  // namespace
}  // namespace session
