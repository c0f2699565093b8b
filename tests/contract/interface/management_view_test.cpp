// The views of the management port, and what the kernel says of its device.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/both_forms.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

using Events = std::vector<std::string>;

constexpr char kStatsFailed[] = "error: pm_get_interface_counters failed\n";
constexpr char kNoConfig[] = "Cannot get interface config.\n";

pm_if_stat some_counters() {
  pm_if_stat stats{};
  stats.in_pkts = 61;
  stats.in_bytes = 62;
  stats.in_bps = 100;
  stats.in_pkts_ucast = 63;
  stats.in_pkts_mcast = 64;
  stats.in_pkts_bcast = 65;
  stats.out_pkts = 71;
  stats.out_bytes = 72;
  stats.out_bps = 200;
  stats.out_pkts_ucast = 73;
  stats.out_pkts_mcast = 74;
  stats.out_pkts_bcast = 75;
  stats.in_pps = 81;
  stats.out_pps = 82;
  return stats;
}

constexpr char kCounters[] =
    "  1 minute input rate 800 bits/sec, 81 packets/sec\n"
    "  1 minute output rate 1600 bits/sec, 82 packets/sec\n"
    "  Rx\n"
    "    61 input packets 63 unicast packets 64 multicast packets\n"
    "    65 broadcast packets 62 bytes\n"
    "  Tx\n"
    "    71 output packets 73 unicast packets 74 multicast packets\n"
    "    75 broadcast packets 72 bytes\n";

constexpr char kNoManagementCounters[] =
    "  1 minute input rate 0 bits/sec, 0 packets/sec\n"
    "  1 minute output rate 0 bits/sec, 0 packets/sec\n"
    "  Rx\n"
    "    0 input packets 0 unicast packets 0 multicast packets\n"
    "    0 broadcast packets 0 bytes\n"
    "  Tx\n"
    "    0 output packets 0 unicast packets 0 multicast packets\n"
    "    0 broadcast packets 0 bytes\n";

std::string management_block(uint32 reliability, const std::string& address = "") {
  return "mgmt0 is 1\n"
         "  Hardware: GigabitEthernet, address: 02aa.bbcc.ddee (bia 0210.2030.4050)\n" +
         address +
         "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
         "     reliability " +
         std::to_string(reliability) +
         "/255, txload 1/255, rxload 1/255\n"
         "  Encapsulation ARPA\n"
         "  11-duplex, 1000\n";
}

// Two hundred packets of which twenty are bad: 255 - 20 * 255 / 200.
pm_proc_net_dev_stats_t lossy_device() {
  pm_proc_net_dev_stats_t stats{};
  stats.rx_packets = stats.tx_packets = 100;
  stats.rx_errors = 15;
  stats.tx_errors = 5;
  return stats;
}
constexpr uint32 kLossyReliability = 230;

void program_management(RecordingPlatform& platform) {
  platform.ports[mgmt()] = port_record();
  platform.interface_counters[mgmt()] = some_counters();
  platform.kernel_devices["eth1"] = lossy_device();
}

int32 show(RecordingPlatform& platform, uint32 command) {
  return pm_cli_show_mgmt_info(platform.output(), RecordingPlatform::q(), command, mgmt());
}

// ---- Rates and counters --------------------------------------------------------------------------------------------

TEST(ManagementRates, ShowRatesThenBothDirections) {
  RecordingPlatform platform;
  pm_if_stat stats = some_counters();
  pm_cli_show_mgmt_vdc_counters(platform.output(), &stats);
  EXPECT_EQ(platform.text(), kCounters);
  EXPECT_EQ(platform.tuples(), (Tuples{{0x152A0258, 800},
                                       {0x152A0257, 81},
                                       {0x152A0261, 1600},
                                       {0x152A0260, 82},
                                       {0x152A0250, 61},
                                       {0x152A0252, 63},
                                       {0x152A0253, 64},
                                       {0x152A0254, 65},
                                       {0x152A0251, 62},
                                       {0x152A0259, 71},
                                       {0x152A025B, 73},
                                       {0x152A025C, 74},
                                       {0x152A025D, 75},
                                       {0x152A025A, 72}}));
  expect_values_in_text(platform);
}

TEST(ManagementRates, BitsWrapAndPacketsAreUnsigned) {
  RecordingPlatform platform;
  pm_if_stat stats{};
  stats.in_bps = (uint64{1} << 61) + 1;
  stats.in_pps = 0xFFFFFFFF;
  pm_cli_show_mgmt_vdc_counters(platform.output(), &stats);
  EXPECT_THAT(platform.text(), StartsWith("  1 minute input rate 8 bits/sec, 4294967295 packets/sec\n"));
}

TEST(ManagementRates, NothingIsShownWithoutARecord) {
  RecordingPlatform platform;
  pm_cli_show_mgmt_vdc_counters(platform.output(), nullptr);
  EXPECT_THAT(platform.pieces, IsEmpty());
}

// ---- The view by command id ----------------------------------------------------------------------------------------

TEST(ManagementView, DetailIsTheBlockWithReliabilityAndTheCounters) {
  RecordingPlatform platform;
  program_management(platform);
  EXPECT_EQ(show(platform, 1), 0);
  EXPECT_EQ(platform.text(), management_block(kLossyReliability) + kCounters);
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.sends, 1U);
  EXPECT_EQ(platform.kernel_devices_asked, (Events{"eth1"}));
}

TEST(ManagementView, DetailGoesOnWithoutItsProviders) {
  RecordingPlatform platform;
  program_management(platform);
  platform.interface_counters.clear();
  platform.kernel_devices.clear();
  EXPECT_EQ(show(platform, 1), 0);
  EXPECT_EQ(platform.text(), kStatsFailed + management_block(255) + kNoManagementCounters);
  EXPECT_EQ(platform.terminal(), kStatsFailed);
}

TEST(ManagementView, DetailAndBriefNeedTheRecord) {
  for (const uint32 command : {1U, 5U, 2U}) {
    RecordingPlatform platform;
    EXPECT_EQ(show(platform, command), 1);
    EXPECT_EQ(platform.text(), "error: <system error 40290037>\n");
    EXPECT_EQ(platform.sends, 1U);
    platform.clear_output();
    platform.fail_with("pm_cmi_get_port_config");
    EXPECT_EQ(show(platform, command), 1);
    EXPECT_EQ(platform.text(), "<transport failure 2 110>\n");
    EXPECT_EQ(platform.sends, 1U);
  }
}

TEST(ManagementView, OtherIdsFlushOnly) {
  for (uint32 command = 0; command <= 120; ++command) {
    if (command == 1 || command == 5) continue;
    RecordingPlatform platform;
    program_management(platform);
    EXPECT_EQ(show(platform, command), 0);
    EXPECT_EQ(platform.text(), "") << command;
    EXPECT_EQ(platform.sends, 1U);
  }
}

TEST(ManagementView, EveryFailureIsContracted) {
  const walk_scenario scenario = [](RecordingPlatform& platform) {
    program_management(platform);
    platform.addresses[mgmt()] = {ipv4_address(10, 1, 2, 3, 24)};
    show(platform, 1);
  };
  const std::string address = "  Internet Address is 10.1.2.3/24\n";
  uint32 failed = 0;
  walk_failures(scenario, [&](const walk_run& run) {
    const std::string& call = run.platform.failed_call();
    const std::string& text = run.platform.text();
    EXPECT_EQ(run.platform.sends, 1U);
    if (call.empty()) {
      EXPECT_EQ(text, management_block(kLossyReliability, address) + kCounters);
      return;
    }
    ++failed;
    if (call == "pm_cmi_get_port_config") {
      EXPECT_EQ(text, "<transport failure 2 110>\n");
    } else if (call == "pm_get_interface_counters") {
      EXPECT_EQ(text, kStatsFailed + management_block(kLossyReliability, address) + kNoManagementCounters);
    } else if (call == "pm_get_proc_net_dev_stats") {
      EXPECT_EQ(text, management_block(255, address) + kCounters);
    } else if (call == "ipconf_get_if_inet_addrs") {
      EXPECT_EQ(text, management_block(kLossyReliability) + kCounters);
    }
  });
  EXPECT_GE(failed, 4U);
}

// ---- The brief row -------------------------------------------------------------------------------------------------

std::string brief_row(RecordingPlatform& platform, const pm_port_info_t& record) {
  pm_port_info_t port = named(mgmt(), record);
  print_mgmt_info_brief(platform.output(), RecordingPlatform::q(), &port);
  return platform.text();
}

TEST(ManagementBriefRow, ShowsEveryCell) {
  RecordingPlatform platform;
  platform.addresses[mgmt()] = {ipv4_address(10, 1, 2, 3, 24), ipv4_address(10, 9, 9, 9, 24)};
  EXPECT_EQ(brief_row(platform, port_record()),
            "mgmt0  --           1      10.1.2.3                                1000     1500\n");
  EXPECT_EQ(
      platform.tuples(),
      (Tuples{
          {0x0C2A01F4, mgmt()}, {0x022A01F8, 1}, {0x1E2A033C, "10.1.2.3"}, {0x022A01FA, 1000}, {0x142A033D, 1500}}));
  expect_values_in_text(platform);
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.short_rows, 0U);
}

TEST(ManagementBriefRow, AbsentValuesShowDashes) {
  RecordingPlatform platform;
  EXPECT_EQ(brief_row(platform, pm_port_info_t{}),
            "mgmt0  --           0      --                                      --       --\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01F4, mgmt()}, {0x022A01F8, 0}}));
}

TEST(ManagementBriefRow, OnlyAFirstAddressOfVersionFourIsShown) {
  RecordingPlatform platform;
  platform.addresses[mgmt()] = {ipv6_address(64), ipv4_address(10, 1, 2, 3, 24)};
  EXPECT_EQ(brief_row(platform, port_record()),
            "mgmt0  --           1      --                                      1000     1500\n");
  platform.clear_output();
  platform.addresses[mgmt()] = {};
  EXPECT_EQ(brief_row(platform, port_record()),
            "mgmt0  --           1      --                                      1000     1500\n");
}

TEST(ManagementBriefRow, CellsAreCut) {
  RecordingPlatform platform;
  platform.names[mgmt()] = "management-port";
  platform.enum_texts[0x01F8][1] = "not present";
  platform.enum_texts[0x01FA][1000] = "one gigabit";
  EXPECT_EQ(brief_row(platform, port_record()),
            "manage --           not pr --                                      one giga 1500\n");
}

TEST(ManagementBriefRow, IsTheViewsBriefDisplay) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = port_record();
  EXPECT_EQ(show(platform, 5), 0);
  EXPECT_EQ(platform.text(), "mgmt0  --           1      --                                      1000     1500\n");
  EXPECT_EQ(platform.sends, 1U);
}

// ---- What the kernel says: printed ---------------------------------------------------------------------------------

const RecordingPlatform::kernel_interface kDevice = {
    .hardware_address = {0x02, 0x00, 0xFF, 0x12, 0x34, 0x56}, .mtu_bytes = 1400, .is_up = true};

const Events kWholeQuery = {"socket 1", "SIOCGIFHWADDR eth7", "SIOCGIFFLAGS eth7", "SIOCGIFMTU eth7", "close 1"};

void print_config(RecordingPlatform& platform, const char* device = "eth7") {
  std::string name = device;
  print_mgmt_port_config(platform.output(), 1, RecordingPlatform::q(), mgmt(), nullptr, nullptr, nullptr, name.data());
}

TEST(ManagementConfig, OfAPortThatIsUp) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = port_record();
  platform.kernel_interfaces["eth7"] = kDevice;
  print_config(platform);
  EXPECT_EQ(platform.text(),
            "    Hardware is GigabitEthernet\n"
            "    Address is 0200.ff12.3456\n"
            "    MTU 1400 bytes Speed 1000 Mbps 11 Duplex\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x302A01DD, "GigabitEthernet"},
                                       {0x0F2A01DE, "0200.ff12.3456"},
                                       {0x142A01E1, 1400},
                                       {0x022A01E2, 1000},
                                       {0x022A01E3, 11}}));
  expect_values_in_text(platform);
  EXPECT_EQ(platform.kernel_events, kWholeQuery);
  EXPECT_EQ(platform.terminal(), "");
}

TEST(ManagementConfig, OfAPortThatIsDown) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = down_port_record();
  platform.kernel_interfaces["eth7"] = kDevice;
  print_config(platform);
  EXPECT_EQ(platform.text(),
            "    Hardware is GigabitEthernet\n"
            "    Address is 0200.ff12.3456\n"
            "    MTU 1400 bytes\n");
}

TEST(ManagementConfig, OfAPortInAnotherStateHasNoMtu) {
  for (const uint8 state : {uint8{0}, uint8{3}, uint8{255}}) {
    RecordingPlatform platform;
    platform.ports[mgmt()] = port_record();
    platform.ports[mgmt()].oper_port_state = state;
    platform.kernel_interfaces["eth7"] = kDevice;
    print_config(platform);
    EXPECT_EQ(platform.text(),
              "    Hardware is GigabitEthernet\n"
              "    Address is 0200.ff12.3456\n");
    EXPECT_EQ(platform.kernel_events, kWholeQuery);
  }
}

TEST(ManagementConfig, GigabitBeginsAtAThousand) {
  for (const uint32 speed : {0U, 100U, 999U}) {
    RecordingPlatform platform;
    platform.ports[mgmt()] = port_record();
    platform.ports[mgmt()].oper_port_speed = speed;
    platform.kernel_interfaces["eth7"] = kDevice;
    print_config(platform);
    EXPECT_THAT(platform.text(), StartsWith("    Hardware is Ethernet\n")) << speed;
  }
}

TEST(ManagementConfig, WithoutARecordShowsHardwareAndAddress) {
  for (const int32 error : {-1, int32{PM_ERR_GENERAL}}) {
    RecordingPlatform platform;
    platform.fail_with("pm_cmi_get_port_config", error);
    platform.kernel_interfaces["eth7"] = kDevice;
    print_config(platform);
    EXPECT_EQ(platform.text(),
              "    Hardware is Ethernet\n"
              "    Address is 0200.ff12.3456\n");
  }
}

TEST(ManagementConfig, UnknownDeviceIsToldAndItsSocketClosed) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = port_record();
  print_config(platform);
  EXPECT_EQ(platform.text(), kNoConfig);
  EXPECT_EQ(platform.terminal(), kNoConfig);
  EXPECT_EQ(platform.kernel_events, (Events{"socket 1", "SIOCGIFHWADDR eth7", "close 1"}));
  EXPECT_EQ(platform.count("pm_cmi_get_port_config"), 0U);
}

// A device may vanish between two requests.
TEST(ManagementConfig, LaterRequestsFailToo) {
  const std::map<std::string, Events> kLater = {
      {"SIOCGIFFLAGS", {"socket 1", "SIOCGIFHWADDR eth7", "SIOCGIFFLAGS eth7", "close 1"}},
      {"SIOCGIFMTU", kWholeQuery},
  };
  for (const auto& [request, asked] : kLater) {
    RecordingPlatform platform;
    platform.ports[mgmt()] = port_record();
    platform.kernel_interfaces["eth7"] = kDevice;
    platform.silent_requests = {request};
    print_config(platform);
    EXPECT_EQ(platform.text(), std::string("    Hardware is GigabitEthernet\n"
                                           "    Address is 0200.ff12.3456\n") +
                                   kNoConfig);
    EXPECT_EQ(platform.kernel_events, asked);
  }
}

TEST(ManagementConfig, MissingSocketIsTold) {
  RecordingPlatform platform;
  platform.fail_with("socket");
  print_config(platform);
  EXPECT_EQ(platform.text(), kNoConfig);
  EXPECT_EQ(platform.kernel_events, (Events{"no socket"}));
}

TEST(ManagementConfig, LongNamesAreCutToTheKernelsLength) {
  RecordingPlatform platform;
  print_config(platform, "a-device-with-a-long-name");
  EXPECT_EQ(platform.kernel_events.at(1), "SIOCGIFHWADDR a-device-with-a");
  platform.clear_output();
  print_mgmt_port_config(platform.output(), 1, RecordingPlatform::q(), mgmt(), nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(platform.text(), kNoConfig);
}

// ---- What the kernel says: stored ----------------------------------------------------------------------------------

struct stored_config {
  char address[8] = "before!";
  int speed = -5;
  int mtu = -6;
};

stored_config store_config(RecordingPlatform& platform) {
  stored_config stored;
  char device[] = "eth7";
  print_mgmt_port_config(platform.output(), 0, RecordingPlatform::q(), mgmt(), stored.address, &stored.speed,
                         &stored.mtu, device);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(std::string(stored.address + 4), "re!") << "no more than four bytes are written";
  return stored;
}

TEST(StoredManagementConfig, IsFilledInSilence) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = port_record();
  platform.kernel_interfaces["eth7"] = kDevice;
  const stored_config stored = store_config(platform);
  EXPECT_STREQ(stored.address, "--");
  EXPECT_EQ(stored.speed, 1000);
  EXPECT_EQ(stored.mtu, 1400);
  EXPECT_EQ(platform.kernel_events, kWholeQuery);
}

TEST(StoredManagementConfig, WithoutARecordTheSpeedIsAHundred) {
  RecordingPlatform platform;
  platform.kernel_interfaces["eth7"] = kDevice;
  const stored_config stored = store_config(platform);
  EXPECT_EQ(stored.speed, 100);
  EXPECT_EQ(stored.mtu, 1400);
}

TEST(StoredManagementConfig, FailuresKeepWhatIsNotKnown) {
  for (const char* const request : {"SIOCGIFHWADDR", "SIOCGIFFLAGS", "SIOCGIFMTU"}) {
    RecordingPlatform platform;
    platform.ports[mgmt()] = port_record();
    platform.kernel_interfaces["eth7"] = kDevice;
    platform.silent_requests = {request};
    const stored_config stored = store_config(platform);
    EXPECT_STREQ(stored.address, "--");
    EXPECT_EQ(stored.speed, -5);
    EXPECT_EQ(stored.mtu, -6);
    EXPECT_EQ(platform.kernel_events.back(), "close 1");
  }
}

TEST(StoredManagementConfig, WithoutASocketNothingIsStored) {
  RecordingPlatform platform;
  platform.fail_with("socket");
  stored_config stored;
  char device[] = "eth7";
  print_mgmt_port_config(platform.output(), 0, RecordingPlatform::q(), mgmt(), stored.address, &stored.speed,
                         &stored.mtu, device);
  EXPECT_STREQ(stored.address, "before!");
  EXPECT_EQ(stored.speed, -5);
  EXPECT_EQ(platform.text(), "");
}

TEST(StoredManagementConfig, EachPlaceMayBeMissing) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = port_record();
  platform.kernel_interfaces["eth7"] = kDevice;
  char device[] = "eth7";
  print_mgmt_port_config(platform.output(), 0, RecordingPlatform::q(), mgmt(), nullptr, nullptr, nullptr, device);
  EXPECT_EQ(platform.kernel_events, kWholeQuery);
  EXPECT_EQ(platform.text(), "");
}

TEST(ManagementConfig, EveryFailureReleasesSocketAndRecord) {
  for (const boolean is_printed : {0U, 1U}) {
    const uint32 failed = walk_failures([=](RecordingPlatform& platform) {
      platform.ports[mgmt()] = port_record();
      platform.kernel_interfaces["eth7"] = kDevice;
      char device[] = "eth7";
      char address[4];
      int speed = 0;
      int mtu = 0;
      print_mgmt_port_config(platform.output(), is_printed, RecordingPlatform::q(), mgmt(), address, &speed, &mtu,
                             device);
    });
    EXPECT_EQ(failed, 5U);  // socket, three requests, the record
  }
}

}  // namespace
}  // namespace pmcli_test
