// The small utilities that many displays share.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "pmcli/command.h"
#include "support/failure_walk.h"
#include "support/heap.h"
#include "support/recording_platform.h"
#include "support/text.h"

namespace pmcli_test {
namespace {

// ---- Receiving ----

struct sent_request {
  mts_msg_ref_t message{};
  mts_recv_options_t options{};
};

sent_request send_request() {
  sent_request sent;
  const mts_addr_t to{MTS_NODE_LOCAL, MTS_SAP_VLAN_MANAGER};
  uint8 payload[] = {1, 2, 3};
  EXPECT_EQ(mts_send(RecordingPlatform::q(), &to, 5, payload, sizeof payload, &sent.message, 0, 0), 0);
  sent.options.version = 1;
  sent.options.timeout = 60;
  sent.options.rr_token = mts_rr_token_get(&sent.message);
  return sent;
}

TEST(InterruptedReceive, IsTakenUpUntilTheAnswerComes) {
  RecordingPlatform platform;
  platform.on_request = [](const mts_request&) { return mts_reply{.payload = {42}, .interrupted_receives = 1000}; };
  sent_request sent = send_request();
  mts_msg_ref_t got{};

  EXPECT_EQ(pm_mts_recv_with_eintr(platform.q(), &got, &sent.options), 0);

  EXPECT_EQ(platform.receives.size(), 1001U);
  EXPECT_EQ(platform.receives.back().rr_token, sent.options.rr_token);
  ASSERT_EQ(mts_payload_size(&got), 1U);
  EXPECT_EQ(*static_cast<const uint8*>(mts_payload_get(&got)), 42);
  mts_drop(platform.q(), &got);
  mts_drop(platform.q(), &sent.message);
}

TEST(InterruptedReceive, AnyOtherFailureReturnsAtOnce) {
  RecordingPlatform platform;
  platform.on_request = [](const mts_request&) { return mts_reply{.receive_error = 104}; };
  sent_request sent = send_request();
  mts_msg_ref_t got{};

  EXPECT_EQ(pm_mts_recv_with_eintr(platform.q(), &got, &sent.options), -1);

  EXPECT_EQ(platform.receives.size(), 1U);
  EXPECT_EQ(mts_errno_get(platform.q()), 104);
  mts_drop(platform.q(), &sent.message);
}

TEST(InterruptedReceive, ReturnsTheLastFailureAfterInterruptions) {
  RecordingPlatform platform;
  platform.on_request = [](const mts_request&) { return mts_reply{.receive_error = 110, .interrupted_receives = 3}; };
  sent_request sent = send_request();
  mts_msg_ref_t got{};

  EXPECT_EQ(pm_mts_recv_with_eintr(platform.q(), &got, &sent.options), -1);

  EXPECT_EQ(platform.receives.size(), 4U);
  mts_drop(platform.q(), &sent.message);
}

// ---- Libraries opened by name ----

int32 provider() { return 4711; }

TEST(LibraryFunction, IsFoundAndLeavesTheLibraryToTheCaller) {
  RecordingPlatform platform;
  platform.libraries["libexample.so"]["provider"] = provider;
  void* handle = nullptr;

  const pm_library_function_t function = pm_get_function_from_library("libexample.so", "provider", &handle);

  ASSERT_NE(function, nullptr);
  EXPECT_EQ(reinterpret_cast<int32 (*)()>(function)(), 4711);
  EXPECT_NE(handle, nullptr);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.loader_events, (std::vector<std::string>{"open libexample.so lazy", "find provider"}));
  EXPECT_EQ(platform.unreleased(), (std::vector<std::string>{"library libexample.so was not closed"}));
  platform.close(handle);
}

TEST(LibraryFunction, ThatIsMissingLeavesTheLibraryOpen) {
  RecordingPlatform platform;
  platform.libraries["libexample.so"] = {};
  void* handle = nullptr;

  EXPECT_EQ(pm_get_function_from_library("libexample.so", "provider", &handle), nullptr);

  EXPECT_NE(handle, nullptr);
  EXPECT_EQ(platform.text(), "");
  platform.close(handle);
}

TEST(LibraryFunction, ReportsALibraryThatCannotBeOpened) {
  RecordingPlatform platform;
  int untouched = 0;
  void* handle = &untouched;

  EXPECT_EQ(pm_get_function_from_library("libabsent.so", "provider", &handle), nullptr);

  EXPECT_EQ(platform.terminal(), "error: unable to open library libabsent.so\n");
  EXPECT_EQ(handle, &untouched);
}

// ---- Questions ----

TEST(YesOrNo, TakesExactlyOneOfFourCharacters) {
  for (const char* accepted : {"N", "Y", "n", "y"}) EXPECT_EQ(pm_verify_yn(accepted), 1U) << accepted;
  for (const char* refused : {"", "yes", "no", "yn", "y ", " y", "x", "1", "\n"})
    EXPECT_EQ(pm_verify_yn(refused), 0U) << refused;
  EXPECT_EQ(pm_verify_yn(nullptr), 0U);
}

TEST(Confirmation, AsksWithNoAsDefaultAndYesWithoutATerminal) {
  RecordingPlatform platform;
  platform.user_answer = "n";
  paraminfo_t* const param = platform.show_command(1, ethernet(1, 1));

  EXPECT_EQ(pm_confirm_response("Continue (y/n)?  [n] ", param), 0U);

  ASSERT_EQ(platform.questions.size(), 1U);
  const RecordingPlatform::question& asked = platform.questions[0];
  EXPECT_EQ(asked.prompt, "Continue (y/n)?  [n] ");
  EXPECT_EQ(asked.default_input, "n");
  EXPECT_EQ(asked.notty_input, "y");
  EXPECT_EQ(asked.answer_before, "");
  EXPECT_EQ(asked.info.max_len, 192);
  EXPECT_EQ(asked.info.timeout_secs, 0);
  EXPECT_EQ(asked.info.verify_fn, pm_verify_yn);
  EXPECT_EQ(asked.info.pinfo, param);
  EXPECT_EQ(asked.info.debug_flag, 0U);
  EXPECT_EQ(asked.info.single_char, 0U);
  EXPECT_EQ(asked.info.echo_mode, 1U);
  EXPECT_EQ(asked.info.bind_flag, 1U);
  EXPECT_EQ(asked.info.display_status, 0U);
  EXPECT_EQ(platform.text(), "");
}

uint32 confirmed(const std::string& answer) {
  RecordingPlatform platform;
  platform.user_answer = answer;
  return pm_confirm_response("?", platform.show_command(1, ethernet(1, 1)));
}

TEST(Confirmation, IsYesWhenTheAnswerBeginsWithY) {
  EXPECT_EQ(confirmed("y"), 1U);
  EXPECT_EQ(confirmed("Y"), 1U);
  EXPECT_EQ(confirmed("yonder"), 1U);
  EXPECT_EQ(confirmed("n"), 0U);
  EXPECT_EQ(confirmed("N"), 0U);
  EXPECT_EQ(confirmed(""), 0U);
  EXPECT_EQ(confirmed(" y"), 0U);
}

TEST(Confirmation, TakesTheLongestAnswer) { EXPECT_EQ(confirmed(std::string(192, 'y')), 1U); }

TEST(Confirmation, IsNoWhenNothingCouldBeRead) {
  RecordingPlatform platform;
  platform.user_answer = "y";
  platform.fail_with("vsh_util_user_input_get");

  EXPECT_EQ(pm_confirm_response("?", platform.show_command(1, ethernet(1, 1))), 0U);
}

// ---- VLANs as text ----

TEST(VlanText, IsTheNumberOrNone) {
  EXPECT_STREQ(vlan_string_or_none(0), "none");
  EXPECT_STREQ(vlan_string_or_none(1), "1");
  EXPECT_STREQ(vlan_string_or_none(4094), "4094");
  EXPECT_STREQ(vlan_string_or_none(0xFFFFFFFF), "4294967295");
}

TEST(VlanText, LivesInOneBuffer) {
  const char* const first = vlan_string_or_none(100);
  const char* const second = vlan_string_or_none(0);
  EXPECT_EQ(first, second);
  EXPECT_STREQ(first, "none");
}

vlan_bitset_t vlan_set(std::initializer_list<uint32> ids) {
  vlan_bitset_t set;
  bitset_clear_all(&set);
  for (const uint32 id : ids) bitset_set(&set, id);
  return set;
}

std::string vlan_set_text(const vlan_bitset_t* set) {
  char text[8192];
  std::memset(text, 'x', sizeof text);
  EXPECT_EQ(vlan_bitmap_string_or_none(text, sizeof text, set), text);
  return text;
}

TEST(VlanSetText, ShowsIdsAndRanges) {
  const vlan_bitset_t one = vlan_set({1});
  const vlan_bitset_t mixed = vlan_set({1, 10, 11, 12, 4094, 4095});
  EXPECT_EQ(vlan_set_text(&one), "1");
  EXPECT_EQ(vlan_set_text(&mixed), "1,10-12,4094-4095");
}

TEST(VlanSetText, IsNoneWhenThereIsNoVlan) {
  const vlan_bitset_t empty = vlan_set({});
  EXPECT_EQ(vlan_set_text(&empty), "none");
  EXPECT_EQ(vlan_set_text(nullptr), "none");
}

TEST(VlanSetText, BelievesTheSizeOnlyAsFarAsASetReaches) {
  vlan_bitset_t set = vlan_set({1, 7, 8, 4095});
  set.size = 1;
  EXPECT_EQ(vlan_set_text(&set), "1,7");
  set.size = 0;
  EXPECT_EQ(vlan_set_text(&set), "none");
  set.size = 0xFFFFFFFF;
  EXPECT_EQ(vlan_set_text(&set), "1,7-8,4095");
}

TEST(VlanSetText, IsCopiedAsStrncpyDoes) {
  const vlan_bitset_t set = vlan_set({100, 200});
  char text[12];

  std::memset(text, 'x', sizeof text);
  vlan_bitmap_string_or_none(text, 10, &set);
  EXPECT_EQ(std::string(text, sizeof text), std::string("100,200\0\0\0xx", 12)) << "the rest is filled with zeros";

  std::memset(text, 'x', sizeof text);
  vlan_bitmap_string_or_none(text, 7, &set);
  EXPECT_EQ(std::string(text, sizeof text), "100,200xxxxx") << "a text that fills the room is not terminated";

  std::memset(text, 'x', sizeof text);
  vlan_bitmap_string_or_none(text, 5, &set);
  EXPECT_EQ(std::string(text, sizeof text), "100,2xxxxxxx");

  std::memset(text, 'x', sizeof text);
  EXPECT_EQ(vlan_bitmap_string_or_none(text, 0, &set), text);
  EXPECT_EQ(std::string(text, sizeof text), "xxxxxxxxxxxx");
}

TEST(VlanSetText, HoldsEveryOtherVlan) {
  vlan_bitset_t set = vlan_set({});
  for (uint32 id = 1; id < 4096; id += 2) bitset_set(&set, id);
  std::vector<char> text(20481);

  vlan_bitmap_string_or_none(text.data(), 20480, &set);

  const std::string shown = text.data();
  EXPECT_EQ(shown.substr(0, 12), "1,3,5,7,9,11");
  EXPECT_EQ(shown.substr(shown.size() - 14), "4091,4093,4095");
}

// ---- Bytes, masks, floats ----

std::string dumped(const octets& bytes) {
  RecordingPlatform platform;
  dump_data(bytes.data(), static_cast<uint32>(bytes.size()));
  EXPECT_EQ(platform.text(), platform.terminal());
  return platform.text();
}

TEST(DumpedBytes, AreUpperCaseWithABlankAfterEach) {
  EXPECT_EQ(dumped({0x01, 0xAB, 0x00}), "0X1 0XAB 0X0 \n");
  EXPECT_EQ(dumped({}), "\n");
}

TEST(DumpedBytes, WithoutDataAreOneNewline) {
  RecordingPlatform platform;
  dump_data(nullptr, 8);
  EXPECT_EQ(platform.text(), "\n");
}

TEST(DumpedBytes, HaveANewlineAfterEach65536th) {
  const std::string text = dumped(octets(65537));
  ASSERT_EQ(text.size(), 65537U * 4 + 1);
  EXPECT_EQ(text.substr(65534U * 4), "0X0 0X0\n0X0 \n");
}

TEST(HeapFailure, NamesTheFileWithoutItsFolders) {
  RecordingPlatform platform;
  pmcli::report_malloc_failure(12, "/a/b/clear.cpp", 2392);
  pmcli::report_malloc_failure(13, "clear.cpp", 7);
  EXPECT_EQ(platform.text(),
            "(Error) Malloc Failure in clear.cpp[2392] for size 12\n"
            "(Error) Malloc Failure in clear.cpp[7] for size 13\n");
}

TEST(CopiedText, NeedsRoomForItsEnd) {
  char to[] = "before";
  pmcli::copy_text(to, 0, "after");
  EXPECT_STREQ(to, "before");
  pmcli::copy_text(to, 1, "after");
  EXPECT_STREQ(to, "");
}

TEST(MaskLength, CountsTheLeadingOnes) {
  EXPECT_EQ(ipmask_to_len(0), 0U);
  EXPECT_EQ(ipmask_to_len(0x7FFFFFFF), 0U);
  EXPECT_EQ(ipmask_to_len(0x80000000), 1U);
  EXPECT_EQ(ipmask_to_len(0xFFFF00FF), 16U);
  EXPECT_EQ(ipmask_to_len(0xFFFFFF00), 24U);
  EXPECT_EQ(ipmask_to_len(0xFFFFFFFE), 31U);
  EXPECT_EQ(ipmask_to_len(0xFFFFFFFF), 32U);
}

struct float_digits {
  int32 whole;
  int32 decimal;
  int32 nb_decimals;
  bool operator==(const float_digits&) const = default;
};
void PrintTo(const float_digits& digits, std::ostream* out) {
  *out << digits.whole << " . " << digits.decimal << " (" << digits.nb_decimals << ")";
}

float_digits digits_of(float value, uint8 precision) {
  cmd_float_t made;
  std::memset(&made, 0xA5, sizeof made);
  float2cmdfloat(&made, value, precision);
  EXPECT_EQ(made.encoding, 0);
  EXPECT_EQ(std::memcmp(&made.fval, &value, sizeof value), 0) << "the value itself is kept";
  return {made.u.ti.whole, made.u.ti.decimal, made.u.ti.nb_decimals};
}

TEST(StructuredFloat, SplitsTheValueAtThePoint) {
  EXPECT_EQ(digits_of(3.25F, 2), (float_digits{3, 25, 2}));
  EXPECT_EQ(digits_of(3.0625F, 2), (float_digits{3, 6, 2}));
  EXPECT_EQ(digits_of(3.0F, 2), (float_digits{3, 0, 2}));
  EXPECT_EQ(digits_of(0.0F, 2), (float_digits{0, 0, 2}));
  EXPECT_EQ(digits_of(7.9F, 1), (float_digits{7, 9, 1}));
}

TEST(StructuredFloat, TruncatesTowardZeroWithPositiveDigits) {
  EXPECT_EQ(digits_of(-12.75F, 2), (float_digits{-12, 75, 2}));
  EXPECT_EQ(digits_of(-12.75F, 1), (float_digits{-12, 7, 1}));
  EXPECT_EQ(digits_of(-0.5F, 2), (float_digits{0, 50, 2}));
}

TEST(StructuredFloat, WithoutPrecisionHasNoDigits) { EXPECT_EQ(digits_of(7.9F, 0), (float_digits{7, 0, 0})); }

TEST(StructuredFloat, MultipliesInSinglePrecision) {
  // 0.29F is a little less than 0.29; its product with 100 rounds to 29 in single precision, and would be cut to 28 in
  // double.
  EXPECT_EQ(digits_of(0.29F, 2), (float_digits{0, 29, 2}));
}

TEST(StructuredFloat, HasAtMostNineDigits) {
  EXPECT_EQ(digits_of(0.5F, 9), (float_digits{0, 500000000, 9}));
  EXPECT_EQ(digits_of(0.5F, 200), (float_digits{0, 500000000, 9}));
}

TEST(StructuredFloat, OutOfRangeHasZeroDigits) {
  EXPECT_EQ(digits_of(1e10F, 2), (float_digits{0, 0, 2}));
  EXPECT_EQ(digits_of(-1e10F, 2), (float_digits{0, 0, 2}));
  EXPECT_EQ(digits_of(3e7F, 2), (float_digits{30000000, 0, 2})) << "only the product is out of range";
  EXPECT_EQ(digits_of(2147483648.0F, 0), (float_digits{0, 0, 0}));
  EXPECT_EQ(digits_of(-2147483648.0F, 0), (float_digits{std::numeric_limits<int32>::min(), 0, 0}));
  EXPECT_EQ(digits_of(std::numeric_limits<float>::infinity(), 2), (float_digits{0, 0, 2}));
  EXPECT_EQ(digits_of(std::nanf(""), 2), (float_digits{0, 0, 2}));
}

}  // namespace
}  // namespace pmcli_test
