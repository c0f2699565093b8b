// The views of a loopback.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/both_forms.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kLoopback = loopback(4);

constexpr char kNotSupported[] = "Option not supported\n";

// A hundred packets of which forty are bad: 255 - 40 * 255 / 100.
ip_if_stats lossy_counters() {
  ip_if_stats stats{};
  stats.in_pkts = 60;
  stats.out_pkts = 40;
  stats.in_errors = 30;
  stats.out_errors = 10;
  return stats;
}

std::string loopback_block(uint32 reliability) {
  return "loopback4 is 1\n"
         "  Hardware: Loopback\n"
         "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
         "     reliability " +
         std::to_string(reliability) +
         "/255, txload 1/255, rxload 1/255\n"
         "  Encapsulation LOOPBACK\n";
}

constexpr char kLossyLines[] =
    "    60 packets input 0 bytes\n"
    "    0 multicast frames 0 compressed\n"
    "    30 input errors 0 frame 0 overrun 0 fifo\n"
    "    40 packets output 0 bytes 0 underruns\n"
    "    10 output errors 0 collisions 0 fifo\n"
    "    0 out_carrier_errors\n";

constexpr char kNoLines[] =
    "    0 packets input 0 bytes\n"
    "    0 multicast frames 0 compressed\n"
    "    0 input errors 0 frame 0 overrun 0 fifo\n"
    "    0 packets output 0 bytes 0 underruns\n"
    "    0 output errors 0 collisions 0 fifo\n"
    "    0 out_carrier_errors\n";

std::string loopback_view(RecordingPlatform& platform, uint32 command) {
  pm_cli_show_loopback_port_info(platform.output(), RecordingPlatform::q(), command, kLoopback);
  EXPECT_EQ(platform.sends, 0U);
  return platform.text();
}

TEST(LoopbackView, DetailIsTheBlockWithReliabilityAndTheCounters) {
  RecordingPlatform platform;
  platform.ports[kLoopback] = port_record();
  platform.loopback_stats[kLoopback] = lossy_counters();
  EXPECT_EQ(loopback_view(platform, 1), loopback_block(153) + kLossyLines);
  EXPECT_EQ(platform.terminal(), "");
}

TEST(LoopbackView, DetailGoesOnWithoutCounters) {
  RecordingPlatform platform;
  platform.ports[kLoopback] = port_record();
  EXPECT_EQ(loopback_view(platform, 1), loopback_block(255) + kNoLines);
  platform.clear_output();
  platform.libraries.erase(IP_STATS_LIBRARY);
  EXPECT_EQ(loopback_view(platform, 1),
            "error: unable to open library libip_stats.so\n" + loopback_block(255) + kNoLines);
}

TEST(LoopbackView, DetailShowsWhatAFailedFetchLeft) {
  RecordingPlatform platform;
  platform.ports[kLoopback] = port_record();
  platform.libraries[IP_STATS_LIBRARY] = {
      {"ip_get_loopback_counters", +[](mts_q_handle_t, if_index_t, ip_if_stats* stats) -> int32 {
         *stats = lossy_counters();
         return 0;
       }}};
  EXPECT_EQ(loopback_view(platform, 1), loopback_block(153) + kLossyLines);
}

TEST(LoopbackView, RecordIsNeededByEveryId) {
  for (uint32 command = 0; command <= 120; ++command) {
    RecordingPlatform platform;
    platform.loopback_stats[kLoopback] = lossy_counters();
    EXPECT_EQ(loopback_view(platform, command), "error: <system error 40290037>\n");
    EXPECT_THAT(platform.loader_events, IsEmpty());
    platform.clear_output();
    platform.fail_with("pm_cmi_get_port_config");
    EXPECT_EQ(loopback_view(platform, command), "<transport failure 2 110>\n");
  }
}

TEST(LoopbackView, OtherIdsAreNotSupported) {
  for (uint32 command = 0; command <= 120; ++command) {
    RecordingPlatform platform;
    platform.ports[kLoopback] = port_record();
    const bool is_served =
        command == 1 || command == 2 || command == 4 || command == 5 || command == 24 || command == 26 || command == 28;
    EXPECT_EQ(loopback_view(platform, command) == kNotSupported, !is_served) << command;
    EXPECT_EQ(platform.port_queries.size(), 1U);
  }
}

// ---- Rows ----------------------------------------------------------------------------------------------------------

std::string shown_of(const pm_port_info_t& record, uint32 command) {
  RecordingPlatform platform;
  platform.ports[kLoopback] = record;
  return loopback_view(platform, command);
}

pm_port_info_t record_in(uint8 state, uint8 reason) {
  pm_port_info_t port = port_record();
  port.oper_port_state = state;
  port.oper_state_reason = reason;
  return port;
}

constexpr char kRowUp[] = "Lo4            --                 1        routed    11      1000    --         \n";
constexpr char kRowDown[] = "Lo4            --                 2        routed    11      0       --         \n";

TEST(LoopbackRows, StatusRowIsFilteredByReasonOrState) {
  struct filter_case {
    uint32 command;
    uint8 state;
    uint8 reason;
    bool is_shown;
  };
  constexpr filter_case kCases[] = {
      {2, 2, 7, true},   {2, 1, 0, true},                         // every loopback
      {24, 2, 12, true}, {24, 1, 12, true},  {24, 2, 11, false},  // administratively down
      {26, 2, 11, true}, {26, 1, 11, true},  {26, 2, 12, false},  // inactive
      {28, 1, 12, true}, {28, 2, 12, false}, {28, 3, 0, false},   // up
  };
  for (const filter_case& shown : kCases) {
    const pm_port_info_t record = record_in(shown.state, shown.reason);
    const char* const row = shown.state == 1 ? kRowUp : shown.state == 2 ? kRowDown : "";
    EXPECT_EQ(shown_of(record, shown.command), shown.is_shown ? row : "") << shown.command;
  }
}

TEST(LoopbackRows, DescriptionRow) {
  pm_port_info_t record = port_record();
  set_description(record, "router id");
  EXPECT_EQ(shown_of(record, 4), "loopback4                router id\n");
}

// ---- The brief row -------------------------------------------------------------------------------------------------

TEST(LoopbackBriefRow, RowWithADescription) {
  pm_port_info_t record = port_record();
  set_description(record, "router id 100% of the time");
  RecordingPlatform platform;
  platform.ports[kLoopback] = record;
  EXPECT_EQ(loopback_view(platform, 5), "loopback4     1          router id 100% of the time\n");
  expect_both_forms_agree(platform, {0x0C2A01F4, 0x022A01F8, 0x302A0339});
  EXPECT_EQ(platform.short_rows, 0U);
}

TEST(LoopbackBriefRow, RowWithoutADescription) {
  RecordingPlatform platform;
  platform.ports[kLoopback] = down_port_record();
  EXPECT_EQ(loopback_view(platform, 5), "loopback4     2          --\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01F4, kLoopback}, {0x022A01F8, 2}}));
}

TEST(LoopbackBriefRow, IsMadeOfARecordAlone) {
  RecordingPlatform platform;
  pm_port_info_t record = named(kLoopback, port_record());
  set_description(record, "identity");
  print_loop_intf_brief(platform.output(), &record);
  EXPECT_EQ(platform.text(), "loopback4     1          identity\n");
}

TEST(LoopbackBriefRow, CellsAreCutAndADescriptionEndsWithItsField) {
  pm_port_info_t record = port_record();
  set_description(record, std::string(sizeof record.port_name, 'd'));
  RecordingPlatform platform;
  platform.names[kLoopback] = "loopback1234567";
  platform.enum_texts[0x01F8][1] = "not present";
  platform.ports[kLoopback] = record;
  EXPECT_EQ(loopback_view(platform, 5), "loopback12345 not presen " + std::string(81, 'd') + "\n");
}

TEST(LoopbackView, EveryFailureIsContracted) {
  std::map<std::string, std::string> texts;
  walk_failures(
      [](RecordingPlatform& platform) {
        platform.ports[kLoopback] = port_record();
        platform.loopback_stats[kLoopback] = lossy_counters();
        loopback_view(platform, 1);
      },
      [&](const walk_run& run) { texts[run.platform.failed_call()] = run.platform.text(); });
  EXPECT_EQ(texts[""], loopback_block(153) + kLossyLines);
  EXPECT_EQ(texts["pm_cmi_get_port_config"], "<transport failure 2 110>\n");
  EXPECT_EQ(texts["dlopen"], "error: unable to open library libip_stats.so\n" + loopback_block(255) + kNoLines);
  EXPECT_EQ(texts["dlsym"],
            "error: undefined symbol in dlsym for ip_get_loopback_counters\n" + loopback_block(255) + kNoLines);
  EXPECT_EQ(texts["ip_get_loopback_counters"], loopback_block(255) + kNoLines);
}

}  // namespace
}  // namespace pmcli_test
