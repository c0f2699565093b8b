// The in-band interface, which the kernel knows as eth2.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "pmcli/command.h"
#include "pmcli/interface.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

using Events = std::vector<std::string>;

const Events kStatusQuery = {"socket 1", "SIOCGIFFLAGS eth2", "close 1"};
constexpr char kConfig[] =
    "    Hardware is Fibre Channel\n"
    "    Speed is 1 Gbps\n";
constexpr char kBriefUp[] = "sup-fc0                  up                                1";
constexpr char kNoCounters[] = "No counters available.\n";
constexpr char kTraffic[] =
    "    91 packets input, 0 bytes\n"
    "    0 multicast frames, 0 compressed\n"
    "    0 input errors, 0 frame, 0 overrun, 0 fifo\n"
    "    92 packets output, 0 bytes\n"
    "    0 underrun, 0 output errors, 0 collisions\n"
    "    0 fifo, 0 carrier errors\n";

void program(RecordingPlatform& platform, bool is_up = true) {
  platform.kernel_interfaces["eth2"] = {.hardware_address = {2, 0, 0, 0, 0, 1}, .is_up = is_up};
  platform.kernel_devices["eth2"].rx_packets = 91;
  platform.kernel_devices["eth2"].tx_packets = 92;
}

// ---- Status --------------------------------------------------------------------------------------------------------

TEST(InbandStatus, SaysWhetherTheDeviceIsUp) {
  for (const bool is_up : {true, false}) {
    RecordingPlatform platform;
    program(platform, is_up);
    print_inband_port_status(0);
    EXPECT_EQ(platform.text(), is_up ? "sup-fc0 is up\n" : "sup-fc0 is down\n");
    EXPECT_EQ(platform.terminal(), platform.text());
    EXPECT_EQ(platform.kernel_events, kStatusQuery);
  }
}

TEST(InbandStatus, BriefRowHasNoEnd) {
  for (const int mode : {1, 2, -1}) {
    RecordingPlatform platform;
    program(platform);
    print_inband_port_status(mode);
    EXPECT_EQ(platform.text(), kBriefUp);
    EXPECT_EQ(platform.text().rfind("up"), 25U);
    EXPECT_EQ(platform.text().rfind('1'), 59U);
    EXPECT_EQ(platform.terminal(), platform.text());
  }
}

TEST(InbandStatus, BriefRowOfADeviceThatIsDown) {
  RecordingPlatform platform;
  program(platform, false);
  pm_cli_print_inband_brief_info();
  EXPECT_EQ(platform.text(), "sup-fc0                  down                              1");
}

TEST(InbandStatus, NothingIsShownWithoutADevice) {
  for (const int mode : {0, 1}) {
    RecordingPlatform platform;
    print_inband_port_status(mode);
    EXPECT_EQ(platform.text(), "");
    EXPECT_EQ(platform.kernel_events, kStatusQuery);
  }
}

TEST(InbandStatus, NothingIsShownWithoutASocket) {
  RecordingPlatform platform;
  program(platform);
  platform.fail_with("socket");
  print_inband_port_status(0);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.kernel_events, (Events{"no socket"}));
}

TEST(InbandPrinters, FixedTexts) {
  RecordingPlatform platform;
  print_inband_port_config();
  print_inband_port_description();
  EXPECT_EQ(platform.text(), kConfig);
  EXPECT_EQ(platform.terminal(), kConfig);
}

// ---- The view by command id ----------------------------------------------------------------------------------------

std::string view(RecordingPlatform& platform, uint32 command) {
  pm_cli_show_inband_port_info(platform.output(), RecordingPlatform::q(), command);
  EXPECT_EQ(platform.sends, 0U);
  return platform.text();
}

TEST(InbandView, EachId) {
  const std::map<uint32, std::string> kTexts = {
      {1, std::string("sup-fc0 is up\n") + kConfig + kTraffic}, {2, "sup-fc0 is up\n"}, {4, ""}, {5, kBriefUp}};
  for (uint32 command = 0; command <= 120; ++command) {
    RecordingPlatform platform;
    program(platform);
    const auto text = kTexts.find(command);
    EXPECT_EQ(view(platform, command), text != kTexts.end() ? text->second : "Option not supported\n") << command;
  }
}

TEST(InbandView, CountersGoThroughTheChannel) {
  RecordingPlatform platform;
  program(platform);
  view(platform, 1);
  EXPECT_EQ(platform.terminal(), std::string("sup-fc0 is up\n") + kConfig);
  EXPECT_EQ(bound_to(platform, 0x142A01E4), tuple_value(91));
  EXPECT_EQ(platform.kernel_devices_asked, (Events{"eth2"}));
}

TEST(InbandView, MissingCountersAreTold) {
  RecordingPlatform platform;
  EXPECT_EQ(view(platform, 1), std::string(kConfig) + kNoCounters);
  EXPECT_EQ(platform.terminal(), platform.text());
}

// ---- The handler ---------------------------------------------------------------------------------------------------

const if_index_t kInband = numbered(IF_TYPE_INBAND, 0);

TEST(InbandHandler, EachIdIsFlushedOnce) {
  const std::string detail = std::string("sup-fc0 is up\n") + kConfig + kTraffic;
  const std::string counters = std::string("sup-fc0\n") + kTraffic;
  const std::map<uint32, std::string> kTexts = {{2, "sup-fc0 is up\n"}, {3, counters}, {4, ""},  {5, kBriefUp}, {7, ""},
                                                {59, counters},         {105, ""},     {106, ""}};
  for (uint32 command = 0; command <= 120; ++command) {
    RecordingPlatform platform;
    program(platform);
    EXPECT_EQ(pm_cli_show_inband_port_config(platform.show_command(command, kInband)), 0);
    const auto text = kTexts.find(command);
    EXPECT_EQ(platform.text(), text != kTexts.end() ? text->second : detail) << command;
    EXPECT_EQ(platform.sends, 1U);
    EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 1U);
    EXPECT_EQ(platform.count("pm_cmi_get_port_config"), 0U);
  }
}

TEST(InbandHandler, MissingCountersAreToldUnderTheName) {
  RecordingPlatform platform;
  pm_cli_show_inband_port_config(platform.show_command(59, kInband));
  EXPECT_EQ(platform.text(), std::string("sup-fc0\n") + kNoCounters);
}

TEST(InbandHandler, StandbySupervisorRefuses) {
  RecordingPlatform platform;
  program(platform);
  paraminfo_t* const param = platform.show_command(1, kInband);
  param->sup_state = SYSMGR_SUPSTATE_STANDBY;
  EXPECT_EQ(pm_cli_show_inband_port_config(param), 0);
  EXPECT_EQ(platform.text(), "This command is not enabled on Standby SUP.\n");
  EXPECT_EQ(platform.sends, 0U);
  EXPECT_THAT(platform.calls, IsEmpty());
}

TEST(InbandHandler, MissingHandleIsTold) {
  RecordingPlatform platform;
  platform.fail_with("cmd_paraminfo_to_rxhandle");
  EXPECT_EQ(pm_cli_show_inband_port_config(platform.show_command(1, kInband)), 0);
  EXPECT_EQ(platform.text(), "cmd_paraminfo_to_rxhandle failed \n");
  EXPECT_EQ(platform.sends, 0U);
}

TEST(InbandHandler, NullParameterBlockReturnsZero) {
  RecordingPlatform platform;
  EXPECT_EQ(pm_cli_show_inband_port_config(nullptr), 0);
  EXPECT_EQ(platform.text(), "");
}

TEST(InbandHandler, EveryFailureIsContracted) {
  std::map<std::string, std::string> texts;
  walk_failures(
      [](RecordingPlatform& platform) {
        program(platform);
        EXPECT_EQ(pm_cli_show_inband_port_config(platform.show_command(1, kInband)), 0);
      },
      [&](const walk_run& run) {
        texts[run.platform.failed_call()] = run.platform.text();
        EXPECT_EQ(run.platform.sends, run.platform.failed_call() == "cmd_paraminfo_to_rxhandle" ? 0U : 1U);
      });
  EXPECT_EQ(texts, (std::map<std::string, std::string>{
                       {"", std::string("sup-fc0 is up\n") + kConfig + kTraffic},
                       {"cmd_paraminfo_to_rxhandle", "cmd_paraminfo_to_rxhandle failed \n"},
                       {"socket", std::string(kConfig) + kTraffic},
                       {"ioctl", std::string(kConfig) + kTraffic},
                       {"pm_get_proc_net_dev_stats", std::string("sup-fc0 is up\n") + kConfig + kNoCounters},
                   }));
}

}  // namespace
}  // namespace pmcli_test
