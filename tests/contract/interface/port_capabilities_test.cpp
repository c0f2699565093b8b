// What a port can do: the record, its sources, its display, and the two text builders.
#include <gtest/gtest.h>

#include <cstring>

#include "pmcli/interface.h"
#include "support/both_forms.h"
#include "support/failure_walk.h"
#include "support/recording_platform.h"

namespace pmcli_test {
namespace {

template <std::size_t Size>
void put_text(char (&field)[Size], const char* text) {
  std::strncpy(field, text, Size);
}

// A response in which every byte has its own value.
crdcfg_port_cap_t distinct_response() {
  crdcfg_port_cap_t response;
  for (std::size_t i = 0; i < sizeof response; ++i)
    reinterpret_cast<uint8*>(&response)[i] = static_cast<uint8>(100 + i);
  std::memset(response.model, 0, sizeof response.model);
  std::memset(response.type, 0, sizeof response.type);
  put_text(response.model, "LC-48T-2");
  put_text(response.type, "10/100/1000");
  return response;
}

pm_cli_common_capability_t garbage() {
  pm_cli_common_capability_t capability;
  std::memset(&capability, 0xA5, sizeof capability);
  return capability;
}

TEST(PortCapability, IsFilledFromTheLineCardConfiguration) {
  RecordingPlatform platform;
  platform.capabilities[ethernet(2, 3)] = distinct_response();
  pm_cli_common_capability_t capability{};

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(2, 3), &capability), 0);

  EXPECT_EQ(capability.if_index, ethernet(2, 3));
  EXPECT_STREQ(capability.model, "LC-48T-2");
  EXPECT_STREQ(capability.type, "10/100/1000");
  EXPECT_EQ(capability.speed, 104);
  EXPECT_EQ(capability.duplex, 105);
  EXPECT_EQ(capability.trunk_encap, 106);
  EXPECT_EQ(capability.channel, 1U) << "any byte but 0 is yes";
  EXPECT_EQ(capability.suppression, 108U);
  EXPECT_EQ(capability.rx_flowcontrol, 109);
  EXPECT_EQ(capability.tx_flowcontrol, 110);
  EXPECT_EQ(capability.cos_rewrite, 111U);
  EXPECT_EQ(capability.tos_rewrite, 112U);
  EXPECT_EQ(capability.span, 113U);
  EXPECT_EQ(capability.udld, 114U);
  EXPECT_EQ(capability.link_debounce, 116U);
  EXPECT_EQ(capability.link_debounce_time, 117);
  EXPECT_EQ(capability.fcot_capable, 118U);
  EXPECT_EQ(capability.rate_mode, 119);
  EXPECT_EQ(capability.mdix, 120U);
  EXPECT_EQ(capability.rx_QOS_priority, 123);
  EXPECT_EQ(capability.rx_QOS_queue, 124);
  EXPECT_EQ(capability.rx_QOS_threshold, 125);
  EXPECT_EQ(capability.tx_QOS_priority, 126);
  EXPECT_EQ(capability.tx_QOS_queue, 127);
  EXPECT_EQ(capability.tx_QOS_threshold, 128);
  EXPECT_EQ(capability.QOS_scheduling, 1U) << "always";
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.loader_events,
            (std::vector<std::string>{"open libcrdcfg.so lazy", "find crdcfg_get_port_cap", "close libcrdcfg.so"}));
}

TEST(PortCapability, KeepsThirtyOneCharactersOfATextThatIsNotTerminated) {
  RecordingPlatform platform;
  crdcfg_port_cap_t response = distinct_response();
  std::memset(response.model, 'M', sizeof response.model);
  std::memset(response.type, 'T', sizeof response.type);
  platform.capabilities[ethernet(1, 1)] = response;
  pm_cli_common_capability_t capability = garbage();

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), 0);

  EXPECT_EQ(std::string(capability.model, 32), std::string(31, 'M') + '\0');
  EXPECT_EQ(std::string(capability.type, 32), std::string(31, 'T') + '\0');
}

TEST(PortCapability, WithoutChannelIsNo) {
  RecordingPlatform platform;
  crdcfg_port_cap_t response = distinct_response();
  response.channel = 0;
  platform.capabilities[ethernet(1, 1)] = response;
  pm_cli_common_capability_t capability = garbage();

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), 0);

  EXPECT_EQ(capability.channel, 0U);
}

TEST(PortCapability, LeavesPortGroupsToTheCaller) {
  RecordingPlatform platform;
  platform.capabilities[ethernet(1, 1)] = distinct_response();
  pm_cli_common_capability_t capability = garbage();

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), 0);

  EXPECT_EQ(capability.port_group_capable, 0xA5A5A5A5U);
  EXPECT_EQ(capability.port_group, 0xA5);
  EXPECT_EQ(capability.ASIC, 0xA5);
}

void expect_untouched(const pm_cli_common_capability_t& capability) {
  const pm_cli_common_capability_t before = garbage();
  EXPECT_EQ(std::memcmp(&capability, &before, sizeof before), 0) << "the record was changed";
}

TEST(PortCapability, FailsSilentlyWithoutTheLibrary) {
  RecordingPlatform platform;
  platform.libraries.erase("libcrdcfg.so");
  pm_cli_common_capability_t capability = garbage();

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), -1);

  EXPECT_EQ(platform.text(), "");
  expect_untouched(capability);
}

TEST(PortCapability, ReportsAMissingFunction) {
  RecordingPlatform platform;
  platform.libraries["libcrdcfg.so"] = {};
  pm_cli_common_capability_t capability = garbage();

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), -1);

  EXPECT_EQ(platform.terminal(), "couldn't get crdcfg_get_port_cap()\n");
  expect_untouched(capability);
}

TEST(PortCapability, ReportsAFunctionThatIsNull) {
  RecordingPlatform platform;
  platform.libraries["libcrdcfg.so"]["crdcfg_get_port_cap"] = nullptr;
  pm_cli_common_capability_t capability = garbage();

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), -1);

  EXPECT_EQ(platform.terminal(), "couldn't get crdcfg_get_port_cap()\n");
}

TEST(PortCapability, IsNotMistakenByAnEarlierLoaderError) {
  RecordingPlatform platform;
  platform.earlier_loader_error = "something else";
  platform.capabilities[ethernet(1, 1)] = distinct_response();
  pm_cli_common_capability_t capability{};

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), 0);
}

TEST(PortCapability, ReportsTheFailureOfTheLineCardConfiguration) {
  RecordingPlatform platform;
  platform.fail_with("crdcfg_get_port_cap", 0x40330001);
  platform.syserr_texts[0x40330001] = "no such card, 100%s";
  pm_cli_common_capability_t capability = garbage();

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), -1);

  EXPECT_EQ(platform.terminal(), "crdcfg_get_port_cap failed with no such card, 100%s\n");
  expect_untouched(capability);
}

TEST(PortCapability, ReportsAnErrorWithoutAText) {
  RecordingPlatform platform;
  platform.fail_with("crdcfg_get_port_cap", 5);
  platform.syserr_texts[5] = std::nullopt;
  pm_cli_common_capability_t capability = garbage();

  EXPECT_EQ(pm_cli_get_port_capability(ethernet(1, 1), &capability), -1);

  EXPECT_EQ(platform.terminal(), "crdcfg_get_port_cap failed with \n");
}

TEST(PortCapability, FailsWithMinusOneAtEveryStep) {
  const uint32 failed = walk_failures(
      [](RecordingPlatform& platform) {
        platform.capabilities[ethernet(1, 1)] = distinct_response();
        pm_cli_common_capability_t capability = garbage();
        const syserr_t result = pm_cli_get_port_capability(ethernet(1, 1), &capability);
        EXPECT_EQ(result, platform.failed_call().empty() ? 0 : -1);
        if (result != 0) expect_untouched(capability);
      },
      [](const walk_run& run) {
        const std::map<std::string, std::string> texts = {
            {"", ""},
            {"dlopen", ""},
            {"dlsym", "couldn't get crdcfg_get_port_cap()\n"},
            {"crdcfg_get_port_cap", "crdcfg_get_port_cap failed with <system error FFFFFFFF>\n"}};
        EXPECT_EQ(run.platform.text(), texts.at(run.platform.failed_call()));
      });
  EXPECT_EQ(failed, 3U) << "open, find, call";
}

TEST(ManagementCapability, IsFixed) {
  pm_cli_common_capability_t capability;
  std::memset(&capability, 0, sizeof capability);
  capability.suppression = 9;
  capability.QOS_scheduling = 9;
  capability.fcot_capable = 9;
  capability.port_group_capable = 9;

  EXPECT_EQ(pm_cli_get_mgmt_capability(mgmt(), &capability), 0);

  EXPECT_EQ(capability.if_index, mgmt());
  EXPECT_STREQ(capability.model, "--");
  EXPECT_STREQ(capability.type, "--");
  EXPECT_EQ(capability.speed, 23);
  EXPECT_EQ(capability.duplex, 7);
  EXPECT_EQ(capability.trunk_encap, 1);
  EXPECT_EQ(capability.channel, 0U);
  EXPECT_EQ(capability.suppression, 0U);
  EXPECT_EQ(capability.rx_flowcontrol, 0);
  EXPECT_EQ(capability.tx_flowcontrol, 0);
  EXPECT_EQ(capability.rate_mode, 0);
  EXPECT_EQ(capability.cos_rewrite, 1U);
  EXPECT_EQ(capability.tos_rewrite, 1U);
  EXPECT_EQ(capability.QOS_scheduling, 0U);
  EXPECT_EQ(capability.span, 1U);
  EXPECT_EQ(capability.udld, 1U);
  EXPECT_EQ(capability.link_debounce, 0U);
  EXPECT_EQ(capability.link_debounce_time, 0);
  EXPECT_EQ(capability.mdix, 0U);
  EXPECT_EQ(capability.fcot_capable, 0U);
  EXPECT_EQ(capability.port_group_capable, 0U);
}

TEST(ManagementCapability, LeavesQueuesAndGroupsToTheCaller) {
  pm_cli_common_capability_t capability = garbage();

  pm_cli_get_mgmt_capability(mgmt(), &capability);

  EXPECT_EQ(capability.rx_QOS_queue, 0xA5);
  EXPECT_EQ(capability.tx_QOS_threshold, 0xA5);
  EXPECT_EQ(capability.port_group, 0xA5);
  EXPECT_EQ(capability.ASIC, 0xA5);
}

// ---- Text builders ----

// The text built into `size` bytes of a buffer whose other bytes stay as they were.
template <typename Build>
std::string built(int size, Build build) {
  char text[64];
  std::memset(text, 'x', sizeof text);
  build(text, size);
  for (std::size_t i = static_cast<std::size_t>(size); i < sizeof text; ++i) EXPECT_EQ(text[i], 'x') << "byte " << i;
  EXPECT_NE(std::memchr(text, '\0', static_cast<std::size_t>(size)), nullptr) << "not terminated";
  return text;
}

std::string speeds(int size, const char* delimiter, bool ten, bool hundred, bool gig, bool ten_gig, bool automatic) {
  return built(size, [&](char* text, int room) {
    char delim[8];
    std::strcpy(delim, delimiter);
    pm_cli_build_speed_string(text, room, delim, ten, hundred, gig, ten_gig, automatic);
  });
}

TEST(SpeedList, NamesTheSetSpeedsInOrder) {
  EXPECT_EQ(speeds(55, ",", true, true, true, true, true), "10,100,1000,10000,auto");
  EXPECT_EQ(speeds(55, "/", true, true, true, false, false), "10/100/1000");
  EXPECT_EQ(speeds(55, ",", false, true, false, true, false), "100,10000");
  EXPECT_EQ(speeds(55, ", ", false, false, true, false, true), "1000, auto");
  EXPECT_EQ(speeds(55, ",", false, false, false, false, true), "auto");
  EXPECT_EQ(speeds(55, ",", false, false, false, false, false), "");
}

TEST(SpeedList, StaysInItsBuffer) {
  EXPECT_EQ(speeds(7, ",", true, true, true, true, true), "10,100");
  EXPECT_EQ(speeds(8, ",", true, true, true, true, true), "10,100,");
  EXPECT_EQ(speeds(2, ",", true, true, true, true, true), "1");
  EXPECT_EQ(speeds(1, ",", true, true, true, true, true), "");
}

TEST(SpeedList, WithoutRoomWritesNothing) {
  char delimiter[] = ",";
  for (const int size : {0, -1}) {
    char text[] = "xxxx";
    pm_cli_build_speed_string(text, size, delimiter, 1, 1, 1, 1, 1);
    EXPECT_STREQ(text, "xxxx") << size;
  }
}

TEST(SpeedList, TakesAnyValueButZeroAsSet) {
  char delimiter[] = ",";
  char text[55];
  pm_cli_build_speed_string(text, sizeof text, delimiter, 0x80, 0, 0xFF000000, 0, 2);
  EXPECT_STREQ(text, "10,1000,auto");
}

std::string flags(int size, bool off, bool on, bool desired) {
  return built(size, [&](char* text, int room) { pm_cli_build_flowctrl_flags(text, room, off, on, desired); });
}

TEST(FlowControlFlags, AreJoinedInOrder) {
  EXPECT_EQ(flags(32, true, false, false), "off");
  EXPECT_EQ(flags(32, false, true, false), "on");
  EXPECT_EQ(flags(32, false, false, true), "desired");
  EXPECT_EQ(flags(32, true, true, false), "off/on");
  EXPECT_EQ(flags(32, true, false, true), "off/desired");
  EXPECT_EQ(flags(32, false, true, true), "on/desired");
  EXPECT_EQ(flags(32, true, true, true), "off/on/desired");
  EXPECT_EQ(flags(32, false, false, false), "none");
}

TEST(FlowControlFlags, StayInTheirBuffer) {
  EXPECT_EQ(flags(6, true, true, true), "off/o");
  EXPECT_EQ(flags(3, false, false, false), "no");
  EXPECT_EQ(flags(1, true, true, true), "");
}

TEST(FlowControlFlags, WithoutRoomWriteNothing) {
  for (const int size : {0, -1}) {
    char text[] = "xxxx";
    pm_cli_build_flowctrl_flags(text, size, 1, 1, 1);
    EXPECT_STREQ(text, "xxxx") << size;
  }
}

// ---- The display ----

pm_cli_common_capability_t module_port() {
  pm_cli_common_capability_t capability{};
  capability.if_index = ethernet(1, 1);
  put_text(capability.model, "LC-48T");
  put_text(capability.type, "1000BASE-T");
  capability.speed = 1 | 2 | 4;
  capability.duplex = 1 | 2 | 4;
  capability.trunk_encap = 1;
  capability.channel = 1;
  capability.suppression = 1;
  capability.rx_flowcontrol = 1 | 2;
  capability.tx_flowcontrol = 4;
  capability.rate_mode = 1 | 2;
  capability.cos_rewrite = 1;
  capability.tos_rewrite = 0;
  capability.QOS_scheduling = 1;
  capability.rx_QOS_priority = 9;
  capability.rx_QOS_queue = 2;
  capability.rx_QOS_threshold = 4;
  capability.tx_QOS_priority = 1;
  capability.tx_QOS_queue = 3;
  capability.tx_QOS_threshold = 5;
  capability.span = 1;
  capability.udld = 1;
  capability.link_debounce = 1;
  capability.link_debounce_time = 7;
  capability.mdix = 1;
  capability.fcot_capable = 1;
  return capability;
}

const std::vector<uint32> kYesNoTags = {0x0205, 0x020B, 0x020C, 0x020E, 0x020F, 0x0210, 0x0211, 0x0212};

void show_capabilities(RecordingPlatform& platform, pm_cli_common_capability_t capability) {
  for (const uint32 tag : kYesNoTags) platform.enum_texts[tag] = {{0, "no"}, {1, "yes"}};
  pm_cli_show_port_capabities(platform.output(), &capability);
}

TEST(CapabilityDisplay, ListsEveryItem) {
  RecordingPlatform platform;

  show_capabilities(platform, module_port());

  EXPECT_EQ(platform.text(),
            "Ethernet1/1\n"
            "  Model:                 LC-48T\n"
            "  Type (SFP capable):    1000BASE-T\n"
            "  Speed:                 10,100,1000\n"
            "  Duplex:                half/full/auto\n"
            "  Trunk encap. type:     802.1Q\n"
            "  Channel:               yes\n"
            "  Broadcast suppression: percentage(0-100)\n"
            "  Flowcontrol:           rx-(off/on),tx-(desired)\n"
            "  Rate mode:             dedicated/shared\n"
            "  QOS scheduling:        rx-(2q4t),tx-(1p3q5t)\n"
            "  CoS rewrite:           yes\n"
            "  ToS rewrite:           no\n"
            "  SPAN:                  yes\n"
            "  UDLD:                  yes\n"
            "  Link Debounce:         yes\n"
            "  Link Debounce Time:    yes\n"
            "  MDIX:                  yes\n"
            "\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01FF, ethernet(1, 1)},
                                       {0x302A0200, "LC-48T"},
                                       {0x302A0201, "1000BASE-T"},
                                       {0x302A0202, "10,100,1000"},
                                       {0x302A0203, "half/full/auto"},
                                       {0x302A0204, "802.1Q"},
                                       {0x022A0205, 1},
                                       {0x302A0206, "percentage(0-100)"},
                                       {0x302A0207, "rx-(off/on),tx-(desired)"},
                                       {0x302A0208, "dedicated/shared"},
                                       {0x302A020A, "rx-(2q4t),tx-(1p3q5t)"},
                                       {0x022A020B, 1},
                                       {0x022A020C, 0},
                                       {0x022A020E, 1},
                                       {0x022A020F, 1},
                                       {0x022A0211, 1},
                                       {0x022A0212, 1},
                                       {0x022A0210, 1}}));
  EXPECT_EQ(platform.terminal(), "");
  expect_values_in_text(platform);
}

TEST(CapabilityDisplay, OfTheManagementPortHasNeitherQueuesNorTransceiver) {
  RecordingPlatform platform;
  pm_cli_common_capability_t capability{};
  pm_cli_get_mgmt_capability(mgmt(), &capability);

  show_capabilities(platform, capability);

  EXPECT_EQ(platform.text(),
            "mgmt0\n"
            "  Model:                 --\n"
            "  Type (Non SFP):        --\n"
            "  Speed:                 10,100,1000,auto\n"
            "  Duplex:                half/full/auto\n"
            "  Trunk encap. type:     802.1Q\n"
            "  Channel:               no\n"
            "  Broadcast suppression: percentage(0-100)\n"
            "  Flowcontrol:           rx-(none),tx-(none)\n"
            "  Rate mode:             none\n"
            "  QOS scheduling:        rx-(none),tx-(none)\n"
            "  CoS rewrite:           yes\n"
            "  ToS rewrite:           yes\n"
            "  SPAN:                  yes\n"
            "  UDLD:                  yes\n"
            "  Link Debounce:         no\n"
            "  Link Debounce Time:    no\n"
            "  MDIX:                  no\n"
            "\n");
}

TEST(CapabilityDisplay, ShowsDashesForEmptyTextsAndNothingForNoDuplex) {
  RecordingPlatform platform;
  pm_cli_common_capability_t capability{};
  capability.if_index = ethernet(4, 48);

  show_capabilities(platform, capability);

  const Tuples shown = platform.tuples();
  ASSERT_EQ(shown.size(), 18U);
  EXPECT_EQ(shown[0], (bound_tuple{0x0C2A01FF, ethernet(4, 48)}));
  EXPECT_EQ(shown[1], (bound_tuple{0x302A0200, "--"}));
  EXPECT_EQ(shown[2], (bound_tuple{0x302A0201, "--"}));
  EXPECT_EQ(shown[3], (bound_tuple{0x302A0202, ""}));
  EXPECT_EQ(shown[4], (bound_tuple{0x302A0203, ""}));
  EXPECT_EQ(shown[9], (bound_tuple{0x302A0208, "none"}));
  EXPECT_EQ(shown[16], (bound_tuple{0x022A0212, 0}));
}

// The value that is bound to a tuple id when one member is set.
template <typename Member>
tuple_value shown_value(uint32 tuple, Member pm_cli_common_capability_t::*member, Member value) {
  RecordingPlatform platform;
  pm_cli_common_capability_t capability = module_port();
  capability.*member = value;
  show_capabilities(platform, capability);
  for (const bound_tuple& bound : platform.tuples())
    if (bound.id == tuple) return bound.value;
  return "not bound";
}

TEST(CapabilityDisplay, JoinsDuplexInTheOrderHalfFullAuto) {
  const auto duplex = [](uint8 bits) { return shown_value(0x302A0203, &pm_cli_common_capability_t::duplex, bits); };
  EXPECT_EQ(duplex(1), "full");
  EXPECT_EQ(duplex(2), "half");
  EXPECT_EQ(duplex(4), "auto");
  EXPECT_EQ(duplex(1 | 2), "half/full");
  EXPECT_EQ(duplex(1 | 4), "full/auto");
  EXPECT_EQ(duplex(2 | 4), "half/auto");
}

TEST(CapabilityDisplay, JoinsRateModes) {
  const auto rate_mode = [](uint8 bits) {
    return shown_value(0x302A0208, &pm_cli_common_capability_t::rate_mode, bits);
  };
  EXPECT_EQ(rate_mode(1), "dedicated");
  EXPECT_EQ(rate_mode(2), "shared");
  EXPECT_EQ(rate_mode(4), "none");
}

TEST(CapabilityDisplay, KnowsEverySpeedBit) {
  const auto speed = [](uint8 bits) { return shown_value(0x302A0202, &pm_cli_common_capability_t::speed, bits); };
  EXPECT_EQ(speed(1), "10");
  EXPECT_EQ(speed(2), "100");
  EXPECT_EQ(speed(4), "1000");
  EXPECT_EQ(speed(8), "10000");
  EXPECT_EQ(speed(16), "auto");
  EXPECT_EQ(speed(31), "10,100,1000,10000,auto");
  EXPECT_EQ(speed(0xE0), "");
}

TEST(CapabilityDisplay, NeverTakesATextForAFormat) {
  RecordingPlatform platform;
  pm_cli_common_capability_t capability = module_port();
  put_text(capability.model, "50%s%n");

  show_capabilities(platform, capability);

  EXPECT_EQ(platform.tuples()[1], (bound_tuple{0x302A0200, "50%s%n"}));
}

TEST(CapabilityDisplay, ShowsDebounceTimeAsYesOrNo) {
  const auto time = [](uint8 value) {
    return shown_value(0x022A0212, &pm_cli_common_capability_t::link_debounce_time, value);
  };
  EXPECT_EQ(time(0), 0);
  EXPECT_EQ(time(1), 1);
  EXPECT_EQ(time(200), 1);
}

TEST(CapabilityDisplay, ShowsTheLargestQueueCountsWhole) {
  RecordingPlatform platform;
  pm_cli_common_capability_t capability = module_port();
  capability.rx_QOS_queue = capability.rx_QOS_threshold = 255;
  capability.tx_QOS_priority = capability.tx_QOS_queue = capability.tx_QOS_threshold = 255;
  capability.rx_flowcontrol = capability.tx_flowcontrol = 7;

  show_capabilities(platform, capability);

  EXPECT_EQ(platform.tuples()[8], (bound_tuple{0x302A0207, "rx-(off/on/desired),tx-(off/on/desired)"}));
  EXPECT_EQ(platform.tuples()[10], (bound_tuple{0x302A020A, "rx-(255q255t),tx-(255p255q255t)"}));
}

}  // namespace
}  // namespace pmcli_test
