// The texts of port attributes.
#include "pm/port_attributes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

namespace pmcli_test {
namespace {

using value_texts = std::map<uint32, std::string>;

std::string unknown(uint32 value) { return "Unknown(" + std::to_string(static_cast<int32>(value)) + ")"; }

// Values that lie beside, between and far from the known ones.
constexpr uint32 kProbes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 16, 50, 100, 200, 254, 255};

// Every known value has its text, every other one the fallback.
template <typename Value, typename Fallback>
void expect_vocabulary(const char* (*text_of)(Value), const value_texts& known, Fallback fallback) {
  for (const auto& [value, text] : known) EXPECT_EQ(text_of(static_cast<Value>(value)), text) << value;
  for (const uint32 probe : kProbes) {
    const auto found = known.find(probe);
    const std::string expected = found == known.end() ? fallback(probe) : found->second;
    EXPECT_EQ(text_of(static_cast<Value>(probe)), expected) << probe;
  }
}

TEST(PortMode, HasTheTextOfItsBit) {
  expect_vocabulary(port_mode_string,
                    {{0xFFFF, "ALL"},
                     {0xFFFB, "Not E"},
                     {0xFE3F, "Not FL"},
                     {0x60, "FX"},
                     {0x1, "auto"},
                     {0x2, "SD"},
                     {0x8000, "ST"},
                     {0x4, "E"},
                     {0x8, "TE"},
                     {0x10, "TL"},
                     {0x20, "F"},
                     {0x40, "FL"},
                     {0x80, "FL"},
                     {0x100, "FL"},
                     {0x200, "IPS"},
                     {0x400, "ISCSI"},
                     {0x80000, "FA"},
                     {0x4000, "NP"},
                     {0x100000, "trunk"},
                     {0x400000, "private-vlan host"},
                     {0x800000, "private-vlan promiscuous"},
                     {0x2000000, "fabric"},
                     {0x8000000, "TNP"},
                     {0x4000000, "TF"}},
                    unknown);
}

TEST(PortMode, OfEveryOtherBitOrCombinationIsUnknown) {
  for (const uint32 mode : {0x0U, 0x800U, 0x1000U, 0x2000U, 0x10000U, 0x20000U, 0x40000U, 0x200000U, 0x1000000U,
                            0x10000000U, 0x20000000U, 0x40000000U, 0x180000U, 0xC0U, 0x1FFFFU})
    EXPECT_EQ(port_mode_string(mode), unknown(mode)) << mode;
}

TEST(PortMode, OfAnAccessPortIsTheFibreChannelWord) {
  EXPECT_STREQ(port_mode_string(PM_PORT_MODE_ACCESS), "FA");
  for (uint32 bit = 0; bit < 32; ++bit) EXPECT_STRNE(port_mode_string(1U << bit), "access") << bit;
}

TEST(UnknownText, IsASignedNumberInTheClearedSharedBuffer) {
  std::memset(local_temp_string_buffer, 'x', sizeof local_temp_string_buffer);
  const char* const first = port_mode_string(0x80000001);

  EXPECT_EQ(first, local_temp_string_buffer);
  EXPECT_STREQ(first, "Unknown(-2147483647)");
  for (std::size_t i = std::strlen(first); i < sizeof local_temp_string_buffer; ++i)
    ASSERT_EQ(local_temp_string_buffer[i], '\0') << i;

  const char* const second = port_service_state_string(0xFFFFFFFF);
  EXPECT_EQ(second, first) << "the next unknown value takes the same buffer";
  EXPECT_STREQ(first, "Unknown(-1)");
  EXPECT_EQ(sizeof local_temp_string_buffer, 200U);
}

TEST(UnknownText, StaysUntilTheNext) {
  const char* const text = port_type_string(99);
  EXPECT_STREQ(port_type_string(1), "external");
  EXPECT_STREQ(port_encap_string(9), "unknown");
  EXPECT_STREQ(text, "Unknown(99)");
}

TEST(ServiceState, Texts) {
  expect_vocabulary(port_service_state_string, {{0, "in service"}, {1, "out of service"}}, unknown);
}

TEST(PortType, Texts) {
  expect_vocabulary(port_type_string, {{1, "external"}, {2, "internal"}, {3, "hidden"}}, unknown);
}

TEST(Switches, AreOnAndOff) {
  const value_texts on_off = {{1, "on"}, {2, "off"}};
  expect_vocabulary(port_beacon_mode_string, on_off, unknown);
  expect_vocabulary(port_bb_scn_cfg_string, on_off, unknown);
  expect_vocabulary(port_promiscuous_string, on_off, unknown);
  expect_vocabulary(port_auto_neg_string, on_off, unknown);
  expect_vocabulary(port_snmp_trap_string, on_off, unknown);
}

TEST(ReserveState, Texts) {
  expect_vocabulary(port_reserve_state_string, {{1, "reserved"}, {2, "unreserved"}}, unknown);
}

TEST(FlowControl, IsOffForEveryOtherValue) {
  const auto off = [](uint32) { return std::string("off"); };
  expect_vocabulary(port_flowctrl_mode_string, {{1, "on"}, {2, "on"}, {4, "desired"}, {8, "desired"}}, off);
  EXPECT_STREQ(port_flowctrl_mode_string(0xFFFF), "off");
  EXPECT_STREQ(port_flowctrl_mode_string(10), "off");
}

TEST(RateMode, Texts) {
  expect_vocabulary(port_rate_mode_string, {{1, "dedicated"}, {2, "shared"}, {3, "default"}}, unknown);
}

TEST(IgnoredErrors, Texts) {
  expect_vocabulary(port_ignore_param_string, {{1, "bit error on"}, {2, "bit error off"}}, unknown);
}

TEST(TrunkingMode, CountsFromOff) {
  expect_vocabulary(port_trunking_mode_string, {{1, "off"}, {2, "on"}, {3, "auto"}}, unknown);
}

TEST(Encapsulation, IsUnknownWithoutANumber) {
  const auto lower_case = [](uint32) { return std::string("unknown"); };
  expect_vocabulary(port_encap_string, {{1, "normal"}, {2, "eisl"}, {3, "internal"}}, lower_case);
}

TEST(TrackMode, IsEmptyForEveryOtherValue) {
  const auto empty = [](uint32) { return std::string(); };
  expect_vocabulary(port_track_mode_string, {{0, "operationally-bound"}, {1, "force_shut"}}, empty);
  EXPECT_STREQ(port_track_mode_string(0xFFFFFFFF), "");
}

TEST(DownOnLinkFailure, KnowsThreeAndFour) {
  expect_vocabulary(port_down_on_link_failure_string, {{3, "enabled"}, {4, "disabled"}}, unknown);
}

TEST(DelayedTrap, ThatIsEnabledShowsAPortMode) {
  const auto lower_case = [](uint32) { return std::string("unknown"); };
  expect_vocabulary(pm_delayed_trap_state_string, {{2, "FX"}, {1, "disabled"}}, lower_case);
}

// ---- Texts in the caller's buffer ----

// The text, after checking that it was written into the caller's buffer.
template <typename Value>
std::string written(char* (*write)(Value, char*), uint32 value) {
  char buffer[80];
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(write(static_cast<Value>(value), buffer), buffer);
  EXPECT_NE(std::memchr(buffer, '\0', sizeof buffer), nullptr);
  return buffer;
}

TEST(Credits, ShowTheModeThatTheirFlagSays) {
  EXPECT_EQ(written(port_bb_credit_string, 0), "default");
  EXPECT_EQ(written(port_bb_credit_string, 1), "1");
  EXPECT_EQ(written(port_bb_credit_string, 255), "255");
  EXPECT_EQ(written(port_bb_credit_string, 0x3FFFFFFF), "1073741823");
  EXPECT_EQ(written(port_bb_credit_string, 0x40000010), "16 (mode E)");
  EXPECT_EQ(written(port_bb_credit_string, 0x40000000), "0 (mode E)");
  EXPECT_EQ(written(port_bb_credit_string, 0x80000010), "16 (mode Fx)");
  EXPECT_EQ(written(port_bb_credit_string, 0x80000000), "0 (mode Fx)");
  EXPECT_EQ(written(port_bb_credit_string, 0xC0000010), "-2147483632 (mode E)");
}

TEST(CreditMultiplier, AllOnesIsTheDefault) {
  EXPECT_EQ(written(port_bb_credit_multiplier_string, 0xFFFFFFFF), "default");
  EXPECT_EQ(written(port_bb_credit_multiplier_string, 0), "0");
  EXPECT_EQ(written(port_bb_credit_multiplier_string, 12), "12");
  EXPECT_EQ(written(port_bb_credit_multiplier_string, 0x80000000), "-2147483648");
}

TEST(PerformanceBuffers, ZeroIsTheDefault) {
  EXPECT_EQ(written(port_bb_credit_performance_buf_string, 0), "default");
  EXPECT_EQ(written(port_bb_credit_performance_buf_string, 145), "145");
  EXPECT_EQ(written(port_bb_credit_performance_buf_string, 0xFFFFFFFF), "-1");
}

TEST(ExtendedCredits, DecodeNoFlags) {
  EXPECT_EQ(written(port_ec_bb_credit_string, 0), "default");
  EXPECT_EQ(written(port_ec_bb_credit_string, 3000), "3000");
  EXPECT_EQ(written(port_ec_bb_credit_string, 0x40000010), "1073741840");
  EXPECT_EQ(written(port_ec_bb_credit_string, 0x80000000), "-2147483648");
}

TEST(ReceiveBufferSize, IsItsNumber) {
  EXPECT_EQ(written(port_rxbufsize_string, 0), "0");
  EXPECT_EQ(written(port_rxbufsize_string, 2112), "2112");
  EXPECT_EQ(written(port_rxbufsize_string, 65535), "65535");
}

TEST(SpeedInGigabits, Texts) {
  const value_texts speeds = {{0, "auto"},
                              {1, "auto max 2"},
                              {2, "auto max 4"},
                              {10, "0.01"},
                              {100, "0.1"},
                              {1000, "1"},
                              {2000, "2"},
                              {4000, "4"},
                              {0xFFFFFFFF, "--"},
                              {999, "0"},
                              {3, "0"},
                              {1500, "1"},
                              {10000, "10"},
                              {40000, "40"},
                              {100000, "100"},
                              {0x7FFFFFFF, "2147483"},
                              {0x80000000, "-2147483"},
                              {0xFFFFFFFE, "0"}};
  for (const auto& [speed, text] : speeds) EXPECT_EQ(written(port_speed_string_gbps, speed), text) << speed;
}

TEST(PromiscuousMode, KeepsItsSpelling) {
  EXPECT_EQ(written(port_promiscuous_mode_string, 1), "promiscuos mode on");
  EXPECT_EQ(written(port_promiscuous_mode_string, 2), "promiscuos mode off");
  EXPECT_EQ(written(port_promiscuous_mode_string, 0), "promiscuos mode unknown");
  EXPECT_EQ(written(port_promiscuous_mode_string, 3), "promiscuos mode unknown");
}

TEST(AutoNegotiation, Texts) {
  EXPECT_EQ(written(port_auto_negotiate_string, 1), "auto-negotiate on");
  EXPECT_EQ(written(port_auto_negotiate_string, 2), "auto-negotiate off");
  EXPECT_EQ(written(port_auto_negotiate_string, 0), "auto-negotiate unknown");
  EXPECT_EQ(written(port_auto_negotiate_string, 0xFFFFFFFF), "auto-negotiate unknown");
}

}  // namespace
}  // namespace pmcli_test
