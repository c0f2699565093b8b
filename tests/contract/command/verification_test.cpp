// Whether a command may use the interfaces that it names: the verification callback.
#include <gtest/gtest.h>

#include <algorithm>

#include "contract/command/interface_command.h"
#include "contract/sample_ports.h"
#include "pmcli/selection.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

constexpr interface_mask_t kVerifiedMask = 0x2;
constexpr interface_mask_t kRoutableMask = 0x800000;
constexpr interface_mask_t kLoopbackMask = 0x4000;
constexpr interface_mask_t kInbandMask = 0x800;

constexpr int32 kVerified = 0;
constexpr int32 kRefused = -10;
constexpr int32 kNotVerified = -1;
constexpr int32 kNotPermitted = -13;

constexpr uint32 kShow = 3;  // prc_mode of a show command
constexpr uint32 kConfigure = 1;

const if_index_t kInband = if_index_inband_get_active_sup_priority_hi();

// Answers every request with a status.
void answer(RecordingPlatform& platform, uint32 status) {
  platform.on_request = [status](const mts_request&) { return mts_reply{.payload = words({status})}; };
}

// A command that names these pairs.
struct command {
  command(RecordingPlatform& on, std::vector<vsh_intf_mono_range_t> pairs)
      : platform(on), ranges(std::make_unique<intf_range_t>(interface_ranges(pairs))) {
    param = interface_command(platform, 1, 0, ranges.get());
  }

  // A configuration command, in its positive or in its "no" form.
  command& conf(bool is_no = false) {
    param->prc_mode = kConfigure;
    param->arg_list[0]->token_id = TOKEN_CONF_INTERFACES;
    param->no_flag = is_no ? 1 : 0;
    return *this;
  }

  int32 verify(interface_mask_t mask) { return pm_cli_if_index_verification_func(mask, param); }

  RecordingPlatform& platform;
  std::unique_ptr<intf_range_t> ranges;
  paraminfo_t* param;
};

// Nobody was asked, and nothing was said.
void expect_silence(const RecordingPlatform& platform) {
  EXPECT_EQ(platform.text(), "");
  EXPECT_THAT(platform.requests, IsEmpty());
  EXPECT_THAT(platform.interface_configurations, IsEmpty());
}

// ---- What is settled without the port manager ----------------------------------------------------------------------

TEST(Verification, OfNoKindIsRefused) {
  RecordingPlatform platform;
  EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(0), kRefused);
  expect_silence(platform);
}

TEST(Verification, TwoKindsAreAllowedAtOnce) {
  for (const interface_mask_t mask :
       {interface_mask_t{0x10000}, interface_mask_t{0x1000000}, interface_mask_t{0x1010000}, interface_mask_t{0x10002},
        interface_mask_t{0x8000000001000801}}) {
    RecordingPlatform platform;
    EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(mask), kVerified);
    EXPECT_EQ(command(platform, {}).conf(true).verify(mask), kVerified);
    expect_silence(platform);
  }
}

TEST(Verification, ThreeKindsCannotBeDeleted) {
  for (const interface_mask_t mask : {0x1U, 0x80U, 0x800U, 0x3U, 0x4080U, 0x881U}) {
    RecordingPlatform platform;
    EXPECT_EQ(command(platform, {{kInband, kInband}}).conf(true).verify(mask), kRefused);
    expect_silence(platform);
  }
}

TEST(Verification, KindsThatCannotBeDeletedMayBeNamedByOtherCommands) {
  RecordingPlatform platform;
  answer(platform, 0);
  EXPECT_EQ(command(platform, {{mgmt(), mgmt()}}).conf().verify(0x80), kVerified);
  command no_form_of_another(platform, {{mgmt(), mgmt()}});
  no_form_of_another.param->no_flag = 1;
  EXPECT_EQ(no_form_of_another.verify(0x80), kVerified);
  EXPECT_EQ(platform.requests.size(), 2U);
}

TEST(Verification, DeletionIsRefusedBeforeTheRangesAreLookedFor) {
  RecordingPlatform platform;
  command without_ranges(platform, {});
  without_ranges.conf(true).param->arg_list[0]->type = PARAM_TYPE_CONF_INTERFACES;
  EXPECT_EQ(without_ranges.verify(0x1), kRefused);
  expect_silence(platform);
}

TEST(Verification, OnlyANoFlagOf1IsTheNoForm) {
  for (const uint8 flag : {uint8{2}, uint8{255}}) {
    RecordingPlatform platform;
    answer(platform, 0);
    command positive(platform, {{mgmt(), mgmt()}});
    positive.conf().param->no_flag = flag;
    EXPECT_EQ(positive.verify(0x80), kVerified);
    ASSERT_EQ(platform.requests.size(), 1U);
    EXPECT_EQ(platform.requests[0].payload, words({1, 0, 1, mgmt(), mgmt()}));
  }
}

constexpr char kNoInterfaces[] = "error: token id list does not contain SHOW_INTF\n";

TEST(Verification, CommandWithoutAnInterfaceParameterIsAnError) {
  RecordingPlatform platform;
  command other_type(platform, {{kPort, kPort}});
  other_type.param->arg_list[0]->type = PARAM_TYPE_CONF_INTERFACES;
  EXPECT_EQ(other_type.verify(kVerifiedMask), kNotVerified);
  EXPECT_EQ(platform.text(), kNoInterfaces);
  EXPECT_EQ(platform.terminal(), kNoInterfaces);

  platform.clear_output();
  command without_entry(platform, {{kPort, kPort}});
  without_entry.param->arg_list[0] = nullptr;
  EXPECT_EQ(without_entry.verify(kVerifiedMask), kNotVerified);
  EXPECT_EQ(platform.text(), kNoInterfaces);

  platform.clear_output();
  command without_value(platform, {{kPort, kPort}});
  without_value.param->arg_list[0]->arg = nullptr;
  EXPECT_EQ(without_value.verify(kVerifiedMask), kNotVerified);
  EXPECT_EQ(platform.text(), kNoInterfaces);

  platform.clear_output();
  command without_parameters(platform, {{kPort, kPort}});
  without_parameters.param->parameter_count = 0;
  EXPECT_EQ(without_parameters.verify(kVerifiedMask), kNotVerified);
  EXPECT_EQ(platform.text(), kNoInterfaces);
  EXPECT_THAT(platform.requests, IsEmpty());
}

TEST(Verification, InterfaceParameterMayStandAnywhere) {
  for (const uint8 position : {uint8{0}, uint8{1}, uint8{17}, uint8{31}}) {
    RecordingPlatform platform;
    answer(platform, 0);
    command named(platform, {{kPort, kPort}});
    std::swap(named.param->arg_list[0], named.param->arg_list[position]);
    named.param->parameter_count = 255;
    EXPECT_EQ(named.verify(kVerifiedMask), kVerified);
    ASSERT_EQ(platform.requests.size(), 1U);
    EXPECT_EQ(platform.requests[0].payload, words({0, 0, 1, kPort, kPort}));
  }
}

TEST(Verification, ParameterBehindTheCountIsNotThere) {
  RecordingPlatform platform;
  command named(platform, {{kPort, kPort}});
  std::swap(named.param->arg_list[0], named.param->arg_list[1]);
  EXPECT_EQ(named.verify(kVerifiedMask), kNotVerified);
  EXPECT_EQ(platform.text(), kNoInterfaces);
}

TEST(Verification, FirstOfTwoInterfaceParametersCounts) {
  RecordingPlatform platform;
  answer(platform, 0);
  command named(platform, {{kPort, kPort}});
  intf_range_t second = interface_ranges({{kRoutablePort, kRoutablePort}});
  platform.add_argument(named.param, PARAM_TYPE_INTERFACES, &second);
  EXPECT_EQ(named.verify(kVerifiedMask), kVerified);
  ASSERT_EQ(platform.requests.size(), 1U);
  EXPECT_EQ(platform.requests[0].payload, words({0, 0, 1, kPort, kPort}));
}

TEST(Verification, NeedsAParameterBlock) {
  RecordingPlatform platform;
  EXPECT_EQ(pm_cli_if_index_verification_func(kVerifiedMask, nullptr), kRefused);
  expect_silence(platform);
}

// ---- Deleting sub-interfaces ---------------------------------------------------------------------------------------

const if_index_t kSub = sub_interface(kPort, 1);

TEST(DeletionOfEthernetInterfaces, IsForSubInterfacesOnly) {
  const std::vector<std::vector<vsh_intf_mono_range_t>> kOthers = {
      {{kPort, kPort}},
      {{kSub, kPort}},
      {{kPort, kSub}},
      {{kSub, kSub}, {kPort, kPort}},
      {{kSub, kSub}, {kSub, kSub}, {kSub, kPort}},
      {{loopback(1), loopback(1)}},
  };
  for (const interface_mask_t mask : {kVerifiedMask, kRoutableMask, kVerifiedMask | kRoutableMask}) {
    for (const auto& pairs : kOthers) {
      RecordingPlatform platform;
      EXPECT_EQ(command(platform, pairs).conf(true).verify(mask), kRefused);
      expect_silence(platform);
    }
    RecordingPlatform platform;
    answer(platform, 5);
    EXPECT_EQ(command(platform, {{kSub, kSub}, {kSub, sub_interface(kPort, 9)}}).conf(true).verify(mask), kRefused);
    EXPECT_EQ(platform.requests.size(), 1U);
  }
}

TEST(DeletionOfEthernetInterfaces, UnreadableNumberIsNoSubInterface) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_sub_intf", PM_ERR_GENERAL);
  EXPECT_EQ(command(platform, {{kSub, kSub}}).conf(true).verify(kVerifiedMask), kRefused);
  expect_silence(platform);
}

TEST(DeletionOfEthernetInterfaces, OtherKindsAndFormsAreNotLookedAt) {
  RecordingPlatform platform;
  answer(platform, 0);
  EXPECT_EQ(command(platform, {{loopback(1), loopback(1)}}).conf(true).verify(kLoopbackMask), kVerified);
  EXPECT_EQ(command(platform, {{kPort, kPort}}).conf().verify(kVerifiedMask), kVerified);
  EXPECT_EQ(platform.count("if_index_get_sub_intf"), 0U);
}

// ---- The in-band interface -----------------------------------------------------------------------------------------

TEST(InbandVerification, WalksTheRangesInOrder) {
  const if_index_t other = numbered(IF_TYPE_INBAND, 5);
  struct inband_case {
    std::vector<vsh_intf_mono_range_t> pairs;
    int32 result;
  };
  const inband_case kCases[] = {
      {{}, kRefused},
      {{{kInband, kInband}}, kVerified},
      {{{other, other}, {kInband, kInband}}, kVerified},
      {{{kInband, kInband}, {kInband, other}}, kVerified},
      {{{kInband, kInband}, {other, other}}, kVerified},
      {{{other, other}}, kRefused},
      {{{kPort, kPort}}, kRefused},
      {{{kInband, other}}, kRefused},
      {{{kInband, other}, {kInband, kInband}}, kRefused},
      {{{other, other}, {other, kInband}, {kInband, kInband}}, kRefused},
  };
  for (const inband_case& inband : kCases) {
    for (const interface_mask_t mask : {kInbandMask, kInbandMask | kVerifiedMask}) {
      RecordingPlatform platform;
      EXPECT_EQ(command(platform, inband.pairs).verify(mask), inband.result);
      EXPECT_EQ(command(platform, inband.pairs).conf().verify(mask), inband.result);
      expect_silence(platform);
    }
  }
}

TEST(InbandVerification, SixtyFifthRangeIsNotLookedAt) {
  const if_index_t other = numbered(IF_TYPE_INBAND, 5);
  RecordingPlatform platform;
  command named(platform, std::vector<vsh_intf_mono_range_t>(64, {other, other}));
  named.ranges->range_count = 65;
  EXPECT_EQ(named.verify(kInbandMask), kRefused);
}

// ---- The request ---------------------------------------------------------------------------------------------------

mts_request only_request(const RecordingPlatform& platform) {
  EXPECT_EQ(platform.requests.size(), 1U);
  return platform.requests.empty() ? mts_request{} : platform.requests[0];
}

TEST(VerificationRequest, OfAShowCommand) {
  RecordingPlatform platform;
  answer(platform, 0);
  EXPECT_EQ(command(platform, {{0x01020304, 0x05060708}, {0xF1F2F3F4, 0xF5F6F7F8}}).verify(kVerifiedMask), kVerified);
  const mts_request request = only_request(platform);
  EXPECT_EQ(request.node, 0xFE000000U);
  EXPECT_EQ(request.sap, 179U);
  EXPECT_EQ(request.opcode, 330U);
  EXPECT_EQ(request.payload, (octets{0,    0,    0,    0,     //
                                     0,    0,    0,    0,     //
                                     0,    0,    0,    2,     //
                                     1,    2,    3,    4,     //
                                     5,    6,    7,    8,     //
                                     0xF1, 0xF2, 0xF3, 0xF4,  //
                                     0xF5, 0xF6, 0xF7, 0xF8}));
}

TEST(VerificationRequest, OfAConfigurationCommand) {
  RecordingPlatform platform;
  answer(platform, 0);
  EXPECT_EQ(command(platform, {{kPort, kRoutablePort}}).conf().verify(kVerifiedMask), kVerified);
  EXPECT_EQ(only_request(platform).payload, words({1, 0, 1, kPort, kRoutablePort}));
}

TEST(VerificationRequest, OfADeletion) {
  RecordingPlatform platform;
  answer(platform, 0);
  EXPECT_EQ(command(platform, {{loopback(1), loopback(9)}}).conf(true).verify(kLoopbackMask), kVerified);
  EXPECT_EQ(only_request(platform).payload, words({0, 1, 1, loopback(1), loopback(9)}));
}

TEST(VerificationRequest, NoFormOfACommandThatDoesNotCreateDeletesNothing) {
  RecordingPlatform platform;
  answer(platform, 0);
  command named(platform, {{kPort, kPort}});
  named.param->no_flag = 1;
  EXPECT_EQ(named.verify(kVerifiedMask), kVerified);
  EXPECT_EQ(only_request(platform).payload, words({0, 0, 1, kPort, kPort}));
}

TEST(VerificationRequest, TokenOfAConfigurationMayBeThatOfAnotherParameter) {
  RecordingPlatform platform;
  answer(platform, 0);
  command named(platform, {{kPort, kPort}});
  uint32 value = 0;
  platform.add_argument(named.param, PARAM_TYPE_UINT32, &value)->token_id = TOKEN_CONF_INTERFACES;
  EXPECT_EQ(named.verify(kVerifiedMask), kVerified);
  EXPECT_EQ(only_request(platform).payload, words({1, 0, 1, kPort, kPort}));
}

TEST(VerificationRequest, GoesToTheOwnerOfTheFirstInterface) {
  RecordingPlatform platform;
  answer(platform, 0);
  platform.port_manager_saps = {{kRoutablePort, 1234}, {kPort, 4321}};
  EXPECT_EQ(command(platform, {{kRoutablePort, kPort}, {kPort, kPort}}).verify(kRoutableMask), kVerified);
  EXPECT_EQ(only_request(platform).sap, 1234U);
}

TEST(VerificationRequest, OfAMoveGoesToThePortManagerItself) {
  RecordingPlatform platform;
  answer(platform, 0);
  platform.port_manager_saps = {{kPort, 1234}};
  command move(platform, {{kPort, kPort}});
  uint32 value = 0;
  platform.add_argument(move.param, PARAM_TYPE_UINT32, &value)->token_id = TOKEN_MOVE_INTERFACES;
  EXPECT_EQ(move.verify(kVerifiedMask), kVerified);
  EXPECT_EQ(only_request(platform).sap, 179U);
  EXPECT_EQ(only_request(platform).payload, words({0, 0, 1, kPort, kPort}));
}

// Whatever the unused pairs hold.
TEST(VerificationRequest, WithoutARangeGoesToTheOwnerOfIndex0) {
  for (const interface_mask_t mask : {kVerifiedMask, kRoutableMask, kLoopbackMask}) {
    for (const bool is_conf : {false, true}) {
      RecordingPlatform platform;
      answer(platform, 0);
      platform.port_manager_saps = {{0, 1234}, {kPort, 4321}};
      command empty(platform, {});
      empty.ranges->range[0] = {kPort, kPort};
      if (is_conf) empty.conf();
      EXPECT_EQ(empty.verify(mask), kVerified);
      const mts_request request = only_request(platform);
      EXPECT_EQ(request.node, 0xFE000000U);
      EXPECT_EQ(request.sap, 1234U);
      EXPECT_EQ(request.opcode, 330U);
      EXPECT_EQ(request.payload, words({is_conf ? 1U : 0U, 0, 0}));
    }
  }
}

TEST(VerificationRequest, OfAMoveWithoutARangeGoesToThePortManagerItself) {
  RecordingPlatform platform;
  answer(platform, 0);
  platform.port_manager_saps = {{0, 1234}};
  command move(platform, {});
  uint32 value = 0;
  platform.add_argument(move.param, PARAM_TYPE_UINT32, &value)->token_id = TOKEN_MOVE_INTERFACES;
  EXPECT_EQ(move.verify(kVerifiedMask), kVerified);
  EXPECT_EQ(only_request(platform).sap, 179U);
  EXPECT_EQ(only_request(platform).payload, words({0, 0, 0}));
}

TEST(VerificationRequest, HoldsAtMost64Ranges) {
  for (const uint32 count : {64U, 65U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    answer(platform, 0);
    command named(platform, std::vector<vsh_intf_mono_range_t>(64, {kPort, kRoutablePort}));
    named.ranges->range_count = count;
    EXPECT_EQ(named.verify(kVerifiedMask), kVerified);
    const octets payload = only_request(platform).payload;
    EXPECT_EQ(payload.size(), 12U + 64U * 8U);
    EXPECT_EQ(octets(payload.begin(), payload.begin() + 12), words({0, 0, 64}));
  }
}

// ---- The exchange --------------------------------------------------------------------------------------------------

void expect_no_option_but(const mts_recv_options_t& options, int32 timeout, mts_rr_token_t token) {
  EXPECT_EQ(options.version, 1U);
  EXPECT_EQ(options.timeout, timeout);
  EXPECT_EQ(options.rr_token, token);
  EXPECT_EQ(options.non_blocking, 0);
  EXPECT_EQ(options.explicit_log, 0);
  EXPECT_EQ(options.opcode, 0U);
  EXPECT_EQ(options.rr_token_list, nullptr);
  EXPECT_EQ(options.opcode_list, nullptr);
  EXPECT_EQ(options.reserved, 0U);
}

std::size_t place_of(const RecordingPlatform& platform, const char* call) {
  return static_cast<std::size_t>(std::find(platform.calls.begin(), platform.calls.end(), call) -
                                  platform.calls.begin());
}

TEST(VerificationExchange, SentMessageIsDroppedBeforeTheAnswerIsReceived) {
  RecordingPlatform platform;
  answer(platform, 0);
  EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(kVerifiedMask), kVerified);
  ASSERT_EQ(platform.receives.size(), 1U);
  expect_no_option_but(platform.receives[0], 60, 1);
  EXPECT_EQ(platform.drops, (std::vector<uint32>{1, 2}));
  EXPECT_LT(place_of(platform, "mts_send"), place_of(platform, "mts_drop"));
  EXPECT_LT(place_of(platform, "mts_drop"), place_of(platform, "mts_recv"));
}

TEST(VerificationExchange, InterruptedReceiveIsTakenUpAgain) {
  RecordingPlatform platform;
  platform.on_request = [](const mts_request&) { return mts_reply{.payload = words({0}), .interrupted_receives = 3}; };
  EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(kVerifiedMask), kVerified);
  EXPECT_EQ(platform.receives.size(), 4U);
}

TEST(VerificationExchange, RequestThatCannotBeAllocatedIsTold) {
  RecordingPlatform platform;
  platform.fail_with("malloc");
  EXPECT_EQ(command(platform, {{kPort, kPort}, {kPort, kPort}}).verify(kVerifiedMask), kNotVerified);
  EXPECT_EQ(platform.text(), "error: malloc failure - size(28)\n");
  EXPECT_THAT(platform.requests, IsEmpty());
}

TEST(VerificationExchange, RequestThatCannotBeSentIsTold) {
  RecordingPlatform platform;
  platform.fail_with("mts_send");
  EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(kVerifiedMask), kNotVerified);
  EXPECT_EQ(platform.text(), "error: in sending message\n");
  EXPECT_EQ(platform.terminal(), platform.text());
  EXPECT_THAT(platform.receives, IsEmpty());
}

TEST(VerificationExchange, AnswerThatDoesNotComeIsTold) {
  RecordingPlatform platform;
  EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(kVerifiedMask), kNotVerified);
  EXPECT_EQ(platform.text(), "<transport failure 1 110>\n");
  EXPECT_EQ(platform.drops, (std::vector<uint32>{1}));
}

// The first drop is that of the request, the second that of the answer.
TEST(VerificationExchange, MessageThatCannotBeDroppedIsTold) {
  for (const uint32 nth : {1U, 2U}) {
    RecordingPlatform platform;
    answer(platform, 0);
    command(platform, {{kPort, kPort}}).verify(kVerifiedMask);
    uint32 call = 0, drops = 0;
    while (drops < nth && call < platform.calls.size())
      if (platform.calls[call++] == "mts_drop") ++drops;
    ASSERT_EQ(drops, nth);
    platform.clear_output();
    platform.drops.clear();
    platform.receives.clear();
    platform.fail_call(static_cast<uint32>(platform.calls.size()) + call);
    EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(kVerifiedMask), kNotVerified);
    EXPECT_EQ(platform.failed_call(), "mts_drop");
    EXPECT_EQ(platform.text(), "error: in dropping message\n");
    EXPECT_EQ(platform.drops.size(), nth);
    EXPECT_EQ(platform.receives.size(), nth - 1);
  }
}

TEST(VerificationExchange, AnswerWithoutAStatusFailsSilently) {
  const mts_reply kReplies[] = {
      {.payload = {}},
      {.payload = {0}},
      {.payload = {0, 0, 0}},
      {.payload = words({0}), .rejected = true},
      {.payload = {}, .rejected = true},
      {.payload = words({0x4029003C}), .rejected = true},
  };
  for (const mts_reply& reply : kReplies) {
    RecordingPlatform platform;
    platform.on_request = [&reply](const mts_request&) { return reply; };
    EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(kVerifiedMask), kNotVerified);
    EXPECT_EQ(platform.text(), "");
    EXPECT_EQ(platform.drops, (std::vector<uint32>{1, 2}));
  }
}

TEST(VerificationExchange, AnswerMayBeLongerThanItsStatus) {
  RecordingPlatform platform;
  platform.on_request = [](const mts_request&) { return mts_reply{.payload = words({0, 0xFFFFFFFF})}; };
  EXPECT_EQ(command(platform, {{kPort, kPort}}).verify(kVerifiedMask), kVerified);
}

// ---- The status ----------------------------------------------------------------------------------------------------

struct status_case {
  uint32 status;
  int32 result;
  const char* text;
};

constexpr status_case kStatuses[] = {
    {0, kVerified, ""},
    {0x4029003C, kRefused, "Total number of Gigabit Ethernet sub-interfaces exceeds 1000\n"},
    {0x40290015, kRefused, "Gigabit Ethernet port belongs to a port-channel\nSub interface creation not allowed\n"},
    {0x402900EE, kRefused, "Sub-interface configuration not allowed on L2 port\n"},
    {0x402900F3, kRefused, "Sub-interface 4095 is internal and not user-configurable\n"},
    {0x40290003, kRefused, "This configuration is not allowed on the interface\n"},
    {0x40E30011, 0x40E30011, ""},
    {0x40290000, kRefused, ""},
    {0x40290037, kRefused, ""},
    {0x11, kRefused, ""},
    {1, kRefused, ""},
    {0xFFFFFFFF, kRefused, ""},
};

TEST(VerificationStatus, DecidesAndIsTold) {
  for (const status_case& expected : kStatuses) {
    for (const uint32 mode : {kShow, kConfigure}) {
      RecordingPlatform platform;
      answer(platform, expected.status);
      command named(platform, {{kPort, kPort}});
      named.param->prc_mode = mode;
      EXPECT_EQ(named.verify(kVerifiedMask), expected.result) << expected.status;
      EXPECT_EQ(platform.text(), expected.text);
      EXPECT_EQ(platform.terminal(), platform.text());
      EXPECT_THAT(platform.port_ranges_asked, IsEmpty());
      EXPECT_THAT(platform.interface_configurations, IsEmpty());
    }
  }
}

TEST(VerificationStatus, ConfigurationOfOtherKindsCreatesNothing) {
  for (const interface_mask_t mask : {0x1U, 0x8U, 0x80U, 0x10U, 0x100000U, 0x10000000U}) {
    for (const status_case& expected : kStatuses) {
      RecordingPlatform platform;
      answer(platform, expected.status);
      EXPECT_EQ(command(platform, {{kPort, kPort}}).conf().verify(mask), expected.result);
      EXPECT_EQ(platform.text(), expected.text);
      EXPECT_THAT(platform.interface_configurations, IsEmpty());
    }
  }
}

TEST(VerificationStatus, DecidesOfACommandWithoutARangeToo) {
  for (const status_case& expected : kStatuses) {
    for (const uint32 mode : {kShow, kConfigure}) {
      RecordingPlatform platform;
      answer(platform, expected.status);
      command empty(platform, {});
      empty.param->prc_mode = mode;
      EXPECT_EQ(empty.verify(kVerifiedMask), expected.result) << expected.status;
      EXPECT_EQ(platform.text(), expected.text);
      EXPECT_THAT(platform.port_ranges_asked, IsEmpty());
    }
  }
}

// ---- VSANs of the user ---------------------------------------------------------------------------------------------

const if_index_t kFibrePort = fibre_channel(1, 1);

void deny_everything(RecordingPlatform& platform) {
  platform.ports[kFibrePort] = port_record();
  platform.is_permitted = [](const vsh_fc_intf_perm_check_info_t&) -> boolean { return 0; };
}

TEST(VerificationOfVsans, ShowCommandIsNotSubjectedToThem) {
  RecordingPlatform platform;
  answer(platform, 0);
  deny_everything(platform);
  EXPECT_EQ(command(platform, {{kFibrePort, kFibrePort}}).verify(0x1), kVerified);
  EXPECT_THAT(platform.port_ranges_asked, IsEmpty());
}

TEST(VerificationOfVsans, EveryOtherCommandIs) {
  for (const uint32 mode : {0U, 1U, 2U, 4U, 0x103U}) {
    RecordingPlatform platform;
    answer(platform, 0);
    deny_everything(platform);
    command named(platform, {{kFibrePort, kFibrePort}});
    named.param->prc_mode = mode;
    EXPECT_EQ(named.verify(0x1), kNotPermitted);
    EXPECT_EQ(platform.text(), "");
    EXPECT_EQ(platform.count("vsh_fc_intf_perm_check"), 1U);
  }
}

TEST(VerificationOfVsans, FailureOfTheCheckIsTheResult) {
  RecordingPlatform platform;
  answer(platform, 0);
  platform.fail_with("pm_get_port_info_range");
  EXPECT_EQ(command(platform, {{kFibrePort, kFibrePort}}).conf().verify(0x1), kNotVerified);
  EXPECT_EQ(platform.text(), "error: getting port info range\n");
}

TEST(VerificationOfVsans, PermittedPortIsAllowed) {
  RecordingPlatform platform;
  answer(platform, 0);
  platform.ports[kFibrePort] = port_record();
  EXPECT_EQ(command(platform, {{kFibrePort, kFibrePort}}).conf().verify(0x1), kVerified);
  EXPECT_EQ(platform.count("vsh_fc_intf_perm_check"), 1U);
}

// ---- Creating and deleting -----------------------------------------------------------------------------------------

struct creation_case {
  interface_mask_t mask;
  bool is_no;
  uint32 status;
  int32 create;  // -1: nothing is created or deleted
};

constexpr creation_case kCreations[] = {
    {kVerifiedMask, false, 0x40290037, 1},
    {kVerifiedMask, false, 0, -1},
    {kVerifiedMask, false, 0x40290000, -1},
    {kVerifiedMask, true, 0, 0},
    {kVerifiedMask, true, 0x40290037, -1},
    {kVerifiedMask, true, 0x40290000, -1},
    {kRoutableMask, false, 0x40290037, 1},
    {kRoutableMask, false, 0, -1},
    {kRoutableMask, true, 0, 0},
    {kRoutableMask, true, 0x40290037, -1},
    {kLoopbackMask, false, 0x40290037, 1},
    {kLoopbackMask, false, 0, -1},
    {kLoopbackMask, false, 0x40290000, -1},
    {kLoopbackMask, true, 0x40290037, 0},  // both forms act on what does not exist, which is intended
    {kLoopbackMask, true, 0, -1},
    {kLoopbackMask, true, 0x40290000, -1},
};

TEST(VerificationCreates, WhatTheStatusCallsFor) {
  for (const creation_case& creation : kCreations) {
    const bool is_loopback = creation.mask == kLoopbackMask;
    const if_index_t named_interface = is_loopback ? loopback(5) : kSub;
    RecordingPlatform platform;
    answer(platform, creation.status);
    const int32 result =
        command(platform, {{named_interface, named_interface}}).conf(creation.is_no).verify(creation.mask);
    SCOPED_TRACE(testing::Message() << "mask " << creation.mask << ", no " << creation.is_no << ", status "
                                    << creation.status);
    if (creation.create == -1) {
      EXPECT_EQ(result, creation.status == 0 ? kVerified : kRefused);
      EXPECT_THAT(platform.interface_configurations, IsEmpty());
      continue;
    }
    EXPECT_EQ(result, kVerified);
    ASSERT_EQ(platform.interface_configurations.size(), 1U);
    const RecordingPlatform::interface_configuration& done = platform.interface_configurations[0];
    EXPECT_EQ(done.type, is_loopback ? IF_TYPE_LOOPBACK : IF_TYPE_ETHERNET);
    EXPECT_EQ(done.q, RecordingPlatform::q());
    EXPECT_EQ(done.create, static_cast<uint32>(creation.create));
    EXPECT_EQ(done.mask, creation.mask);
    ASSERT_EQ(done.ranges.size(), 1U);
    EXPECT_EQ(done.ranges[0].lower_if_index, named_interface);
    EXPECT_EQ(done.timeout, 120U);
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(VerificationCreates, NothingForShowCommands) {
  for (const interface_mask_t mask : {kVerifiedMask, kRoutableMask, kLoopbackMask}) {
    for (const uint8 no_flag : {uint8{0}, uint8{1}}) {
      for (const uint32 status : {0U, 0x40290037U}) {
        RecordingPlatform platform;
        answer(platform, status);
        command named(platform, {{kSub, kSub}});
        named.param->no_flag = no_flag;
        EXPECT_EQ(named.verify(mask), status == 0 ? kVerified : kRefused);
        EXPECT_THAT(platform.interface_configurations, IsEmpty());
      }
    }
  }
}

TEST(VerificationCreates, ResultBecomesTheStatus) {
  struct result_case {
    const char* call;
    interface_mask_t mask;
    if_index_t if_index;
  };
  const result_case kCalls[] = {{"pm_cli_config_sub_interface", kVerifiedMask, kSub},
                                {"pm_cli_config_sub_interface", kRoutableMask, kSub},
                                {"pm_cli_config_loopback_interface", kLoopbackMask, loopback(5)}};
  for (const result_case& call : kCalls) {
    for (const status_case& expected : kStatuses) {
      RecordingPlatform platform;
      answer(platform, 0x40290037);
      platform.fail_with(call.call, static_cast<int32>(expected.status));
      EXPECT_EQ(command(platform, {{call.if_index, call.if_index}}).conf().verify(call.mask), expected.result);
      EXPECT_EQ(platform.text(), expected.text);
      EXPECT_EQ(platform.count(call.call), 1U);
    }
  }
}

TEST(VerificationCreates, CreatedInterfacesAreSubjectedToTheVsansOfTheUser) {
  RecordingPlatform platform;
  answer(platform, 0x40290037);
  deny_everything(platform);
  EXPECT_EQ(command(platform, {{kFibrePort, kFibrePort}}).conf().verify(kLoopbackMask), kNotPermitted);
}

// ---- One range, for callers that need its status only --------------------------------------------------------------

syserr_t verify_range(if_index_t low, if_index_t high) {
  if_index_verify_info_t info{{low, high}, RecordingPlatform::q()};
  return pm_if_index_verify_cb(&info);
}

TEST(RangeVerification, ReturnsTheStatusAsItIs) {
  for (const uint32 status : {0U, 1U, 0x40290037U, 0x4029003CU, 0x40E30011U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    answer(platform, status);
    platform.port_manager_saps = {{kPort, 1234}, {kRoutablePort, 4321}};
    EXPECT_EQ(verify_range(kPort, kRoutablePort), static_cast<syserr_t>(status));
    const mts_request request = only_request(platform);
    EXPECT_EQ(request.node, 0xFE000000U);
    EXPECT_EQ(request.sap, 1234U);
    EXPECT_EQ(request.opcode, 330U);
    EXPECT_EQ(request.payload, words({0, 0, 1, kPort, kRoutablePort}));
    ASSERT_EQ(platform.receives.size(), 1U);
    expect_no_option_but(platform.receives[0], 60, 1);
    EXPECT_LT(place_of(platform, "mts_drop"), place_of(platform, "mts_recv"));
    EXPECT_EQ(platform.text(), "");
    EXPECT_THAT(platform.interface_configurations, IsEmpty());
    EXPECT_THAT(platform.port_ranges_asked, IsEmpty());
  }
}

TEST(RangeVerification, FailuresGiveMinusOne) {
  for (const char* const call : {"mts_send", "mts_recv", "mts_is_reject", "mts_payload_get", "mts_payload_size"}) {
    RecordingPlatform platform;
    answer(platform, 0);
    platform.fail_with(call);
    EXPECT_EQ(verify_range(kPort, kPort), -1) << call;
    EXPECT_EQ(platform.text(), "") << call;
  }
  RecordingPlatform platform;
  platform.fail_with("malloc");
  EXPECT_EQ(verify_range(kPort, kPort), -1);
  EXPECT_THAT(platform.requests, IsEmpty());
}

TEST(RangeVerification, ShortAndRejectedAnswersGiveMinusOne) {
  for (const mts_reply& reply : {mts_reply{}, mts_reply{.payload = {0, 0, 0}},
                                 mts_reply{.payload = words({0}), .rejected = true}, mts_reply{.receive_error = 32}}) {
    RecordingPlatform platform;
    platform.on_request = [&reply](const mts_request&) { return reply; };
    EXPECT_EQ(verify_range(kPort, kPort), -1);
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(RangeVerification, MessageThatCannotBeDroppedIsTold) {
  RecordingPlatform platform;
  answer(platform, 0);
  platform.fail_with("mts_drop");
  EXPECT_EQ(verify_range(kPort, kPort), -1);
  EXPECT_EQ(platform.text(), "error: in dropping message\n");
  EXPECT_THAT(platform.receives, IsEmpty());
}

TEST(RangeVerification, AnswerThatCannotBeDroppedIsTold) {
  RecordingPlatform platform;
  answer(platform, 0);
  verify_range(kPort, kPort);
  const auto calls = static_cast<uint32>(platform.calls.size());
  ASSERT_EQ(platform.calls.back(), "mts_drop");
  platform.fail_call(calls + calls);
  EXPECT_EQ(verify_range(kPort, kPort), -1);
  EXPECT_EQ(platform.failed_call(), "mts_drop");
  EXPECT_EQ(platform.text(), "error: in dropping message\n");
}

}  // namespace
}  // namespace pmcli_test
