// Optical diagnostics: conversions, marks, and the tables with and without tags.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "contract/transceiver/transceiver_images.h"
#include "pmcli/transceiver.h"
#include "support/both_forms.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

constexpr char kRule[] = "  ----------------------------------------------------------------------------\n";
constexpr char kLegend[] = "  Note: ++  high-alarm; +  high-warning; --  low-alarm; -  low-warning\n\n";
constexpr char kHeadings[] =
    "                                     Alarms                  Warnings\n"
    "                                High        Low         High          Low\n";

using diagnostics_t = mts_get_sfp_diag_info_t;

std::string details(diagnostics_t diagnostics) {
  RecordingPlatform platform;
  sfp_diag_info_ddm_tlvs_t further{};
  pm_print_sfp_diag_detail_info(&diagnostics, &further, 1);
  EXPECT_EQ(platform.terminal(), platform.text());
  return platform.text();
}

std::string in_short(diagnostics_t diagnostics) {
  RecordingPlatform platform;
  sfp_diag_info_ddm_tlvs_t further{};
  pm_print_sfp_diag_info(&diagnostics, &further, 0);
  return platform.text();
}

// The line of a text that begins so.
std::string line_of(const std::string& text, const std::string& beginning) {
  const std::size_t at = text.find(beginning);
  return at == std::string::npos ? "" : text.substr(at, text.find('\n', at) - at);
}

// ---- Marks --------------------------------------------------------------------------------------------------------

TEST(Mark, TakesTheFirstThatHolds) {
  for (uint32 bits = 0; bits < 16; ++bits) {
    const bool high_alarm = (bits & 1) != 0, low_alarm = (bits & 2) != 0;
    const bool high_warning = (bits & 4) != 0, low_warning = (bits & 8) != 0;
    const uint32 expected = high_alarm ? 1U : low_alarm ? 4U : high_warning ? 2U : low_warning ? 3U : 5U;
    uint32 mark = 99;
    // Whatever is not 0 is yes.
    pm_set_alarm_warn_flag(&mark, high_alarm ? 0x40 : 0, low_alarm ? 2 : 0, high_warning ? 1 : 0, low_warning ? 8 : 0);
    EXPECT_EQ(mark, expected) << bits;
  }
}

// ---- The table with thresholds ------------------------------------------------------------------------------------

TEST(DetailTable, ShowsEveryThreshold) {
  EXPECT_EQ(details(healthy_diagnostics()),
            std::string("           SFP Detail Diagnostics Information (internal calibration)\n") + kRule + kHeadings +
                kRule +
                "  Temperature   35.25 C        75.00 C     -5.00 C     70.00 C        0.00 C\n"
                "  Voltage        3.30 V         3.63 V      2.97 V      3.46 V        3.13 V\n"
                "  Current        6.50 mA       12.00 mA     2.00 mA    11.50 mA       3.00 mA\n"
                "  Tx Power        0.00 dBm      10.00 dBm  -10.00 dBm    0.00 dBm    -20.00 dBm\n"
                "  Rx Power      -10.00 dBm      10.00 dBm  -20.00 dBm    0.00 dBm    -10.00 dBm\n" +
                kRule + kLegend);
}

TEST(DetailTable, NamesItsCalibration) {
  diagnostics_t diagnostics = healthy_diagnostics();
  diagnostics.calib_type = 2;
  EXPECT_EQ(line_of(details(diagnostics), "           SFP"),
            "           SFP Detail Diagnostics Information (external calibration)");
  for (const uint32 type : {0U, 3U, 0xFFFFFFFFU}) {
    diagnostics.calib_type = type;
    EXPECT_EQ(details(diagnostics), "    Invalid calibration\n\n");
    EXPECT_EQ(in_short(diagnostics), "    Invalid calibration\n\n");
  }
}

struct mark_case {
  uint32 alarms, warnings;
  const char* row;
  const char* line;
};

TEST(DetailTable, EachQuantityHasItsBits) {
  const mark_case kCases[] = {
      {0x001, 0, "  Temperature", "  Temperature   35.25 C  ++"},
      {0x002, 0, "  Temperature", "  Temperature   35.25 C  --"},
      {0, 0x001, "  Temperature", "  Temperature   35.25 C   +"},
      {0, 0x002, "  Temperature", "  Temperature   35.25 C   -"},
      {0x001, 0x001, "  Temperature", "  Temperature   35.25 C  ++"},
      {0x004, 0, "  Voltage", "  Voltage        3.30 V  ++"},
      {0, 0x008, "  Voltage", "  Voltage        3.30 V   -"},
      {0x010, 0, "  Current", "  Current        6.50 mA  ++"},
      {0x020, 0x010, "  Current", "  Current        6.50 mA  --"},
      {0x040, 0, "  Tx Power", "  Tx Power        0.00 dBm ++"},
      {0, 0x080, "  Tx Power", "  Tx Power        0.00 dBm  -"},
      {0x200, 0x100, "  Rx Power", "  Rx Power      -10.00 dBm --"},
      {0, 0x100, "  Rx Power", "  Rx Power      -10.00 dBm  +"},
  };
  for (const mark_case& it : kCases) {
    diagnostics_t diagnostics = healthy_diagnostics();
    diagnostics.alarm_flags = it.alarms;
    diagnostics.warn_flags = it.warnings;
    EXPECT_EQ(line_of(details(diagnostics), it.row).substr(0, std::string(it.line).size()), it.line)
        << it.alarms << " " << it.warnings;
    for (const char* const other : {"  Temperature", "  Voltage", "  Current", "  Tx Power", "  Rx Power"}) {
      if (std::string(other) == it.row) continue;
      EXPECT_EQ(line_of(details(diagnostics), other), line_of(details(healthy_diagnostics()), other));
    }
  }
}

// By the four bits of a quantity: high alarm, low alarm, high warning, low warning, from the lowest up.
constexpr uint32 kMarks[16] = {5, 1, 4, 1, 2, 1, 4, 1, 3, 1, 4, 1, 2, 1, 4, 1};
constexpr uint32 kMarkTuples[] = {0x022A0021, 0x022A0027, 0x022A002D, 0x022A0033, 0x022A0039};

Tuples marks_of(diagnostics_t diagnostics) {
  RecordingPlatform platform;
  pm_show_transceiver_sfp_details_info(platform.output(), &diagnostics, nullptr);
  Tuples marks;
  for (const bound_tuple& tuple : platform.tuples())
    if (tuple.id >> 24 == CMD_TYPE_ENUM) marks.push_back(tuple);
  return marks;
}

// Bits of other quantities, and those that belong to none, change nothing.
TEST(DetailTable, EveryCombinationOfFlagsHasItsMark) {
  for (uint32 quantity = 0; quantity < 5; ++quantity) {
    const uint32 own_bits = 3U << 2 * quantity;
    for (uint32 flags = 0; flags < 16; ++flags) {
      for (const uint32 others : {0U, ~own_bits}) {
        diagnostics_t diagnostics = healthy_diagnostics();
        diagnostics.alarm_flags = others | (flags & 3) << 2 * quantity;
        diagnostics.warn_flags = others | flags >> 2 << 2 * quantity;
        Tuples expected;
        for (uint32 row = 0; row < 5; ++row)
          expected.push_back({kMarkTuples[row], row == quantity ? kMarks[flags] : others == 0 ? 5U : 1U});
        EXPECT_EQ(marks_of(diagnostics), expected) << "quantity " << quantity << ", flags " << flags;
      }
    }
  }
}

TEST(DetailTable, PowersWithoutValuesAreNotAvailableCellByCell) {
  diagnostics_t diagnostics = healthy_diagnostics();
  diagnostics.rx_pwr = 0;
  EXPECT_EQ(line_of(details(diagnostics), "  Rx Power"),
            "  Rx Power        N/A          10.00 dBm  -20.00 dBm    0.00 dBm    -10.00 dBm");
  diagnostics.rx_pwr_hi_alarm = diagnostics.rx_pwr_lo_alarm = diagnostics.rx_pwr_hi_warn = diagnostics.rx_pwr_lo_warn =
      0;
  EXPECT_EQ(line_of(details(diagnostics), "  Rx Power"),
            "  Rx Power        N/A            N/A         N/A         N/A           N/A");
  diagnostics.tx_pwr_lo_warn = 0;
  EXPECT_EQ(line_of(details(diagnostics), "  Tx Power"),
            "  Tx Power        0.00 dBm      10.00 dBm  -10.00 dBm    0.00 dBm       N/A");
}

struct number_case {
  int32 raw;
  const char* cell;  // six columns
};

// Single precision shows: 0.53 is held as a little less, and truncated.
TEST(DetailTable, TemperaturesAreTruncatedInSinglePrecision) {
  const number_case kCases[] = {{0, "  0.00"},     {-5000, " -5.00"}, {-500, " -0.50"},   {-10, " -0.01"},
                                {530, "  0.52"},   {1, "  0.00"},     {999, "  0.99"},    {-999, " -0.99"},
                                {25125, " 25.12"}, {99990, " 99.99"}, {127996, "127.99"}, {-128000, "-128.00"}};
  for (const number_case& it : kCases) {
    diagnostics_t diagnostics = healthy_diagnostics();
    diagnostics.temp = it.raw;
    EXPECT_EQ(line_of(in_short(diagnostics), "  Temperature"), std::string("  Temperature  ") + it.cell + " C    ")
        << it.raw;
  }
}

struct power_case {
  uint32 raw;  // microwatts
  const char* cell;
};

TEST(DetailTable, PowersAreInDecibels) {
  const power_case kCases[] = {{1000, "  0.00"}, {100, "-10.00"}, {900, " -0.45"},     {1, "-30.00"},
                               {2000, "  3.01"}, {500, " -3.01"}, {6553500, " 38.16"}, {0xFFFFFFFF, " 66.32"}};
  for (const power_case& it : kCases) {
    diagnostics_t diagnostics = healthy_diagnostics();
    diagnostics.tx_pwr = it.raw;
    EXPECT_EQ(line_of(in_short(diagnostics), "  Tx Power"), std::string("  Tx Power      ") + it.cell + " dBm   ")
        << it.raw;
  }
}

TEST(DetailTable, TheLargestNumbersFit) {
  diagnostics_t diagnostics = healthy_diagnostics();
  diagnostics.volt = 0xFFFFFFFF;
  diagnostics.curr = 0xFFFFFFFF;
  const std::string text = in_short(diagnostics);
  EXPECT_EQ(line_of(text, "  Voltage"), "  Voltage      4294.96 V    ");
  EXPECT_EQ(line_of(text, "  Current"), "  Current      4294967.36 mA    ");
}

// Every number at its largest, or at -1 where it has a sign; every flag set.
diagnostics_t all_ones(uint32 calibration) {
  diagnostics_t diagnostics;
  std::memset(&diagnostics, 0xFF, sizeof diagnostics);
  diagnostics.calib_type = calibration;
  return diagnostics;
}

TEST(DetailTable, RecordOfOnesIsShownInWhole) {
  EXPECT_EQ(details(all_ones(2)),
            std::string("           SFP Detail Diagnostics Information (external calibration)\n") + kRule + kHeadings +
                kRule +
                "  Temperature   -0.00 C  ++    -0.00 C     -0.00 C     -0.00 C       -0.00 C\n"
                "  Voltage      4294.96 V  ++   4294.96 V    4294.96 V    4294.96 V      4294.96 V\n"
                "  Current      4294967.36 mA  ++  4294967.36 mA   4294967.36 mA   4294967.36 mA     4294967.36 mA\n"
                "  Tx Power       66.32 dBm ++   66.32 dBm   66.32 dBm   66.32 dBm     66.32 dBm\n"
                "  Rx Power       66.32 dBm ++   66.32 dBm   66.32 dBm   66.32 dBm     66.32 dBm\n" +
                kRule + kLegend);
  EXPECT_EQ(details(all_ones(0xFFFFFFFF)), "    Invalid calibration\n\n");
}

TEST(DetailTable, RecordOfZeroesHasNoPower) {
  diagnostics_t diagnostics{};
  diagnostics.calib_type = 1;
  EXPECT_EQ(details(diagnostics),
            std::string("           SFP Detail Diagnostics Information (internal calibration)\n") + kRule + kHeadings +
                kRule +
                "  Temperature    0.00 C         0.00 C      0.00 C      0.00 C        0.00 C\n"
                "  Voltage        0.00 V         0.00 V      0.00 V      0.00 V        0.00 V\n"
                "  Current        0.00 mA        0.00 mA     0.00 mA     0.00 mA       0.00 mA\n"
                "  Tx Power        N/A            N/A         N/A         N/A           N/A\n"
                "  Rx Power        N/A            N/A         N/A         N/A           N/A\n" +
                kRule + kLegend);
}

TEST(DetailTable, ThresholdsHaveTheirSign) {
  diagnostics_t diagnostics = healthy_diagnostics();
  diagnostics.temp_hi_alarm = -500;
  diagnostics.temp_lo_alarm = -999;
  diagnostics.temp_hi_warn = -2147483647 - 1;
  diagnostics.temp_lo_warn = -1000;
  diagnostics.rx_pwr_lo_warn = 900;
  const std::string text = details(diagnostics);
  EXPECT_EQ(line_of(text, "  Temperature"),
            "  Temperature   35.25 C        -0.50 C     -0.99 C    -2147483.68 C       -1.00 C");
  EXPECT_EQ(line_of(text, "  Rx Power"),
            "  Rx Power      -10.00 dBm      10.00 dBm  -20.00 dBm    0.00 dBm     -0.45 dBm");
}

// Neither the port, nor the status of the record, nor the further values, nor the kind of port show.
TEST(DetailTable, OnlyTheNumbersShow) {
  const diagnostics_t healthy = healthy_diagnostics();
  diagnostics_t odd = healthy;
  odd.if_index = 0xFFFFFFFF;
  odd.status = -1;
  sfp_diag_info_ddm_tlvs_t noise;
  std::memset(&noise, 0xFF, sizeof noise);
  for (const auto print : {pm_print_sfp_diag_info, pm_print_sfp_diag_detail_info, pm_print_sfp_calibration_info}) {
    RecordingPlatform platform;
    diagnostics_t plain = healthy;
    print(&plain, nullptr, 0);
    const std::string expected = platform.text();
    EXPECT_NE(expected, "");
    for (const boolean eth : {0U, 1U, 0x100U}) {
      platform.clear_output();
      print(&odd, &noise, eth);
      EXPECT_EQ(platform.text(), expected);
    }
  }
}

// ---- With tags ----------------------------------------------------------------------------------------------------

TEST(TaggedDetails, BindWhatTheTextShows) {
  diagnostics_t diagnostics = healthy_diagnostics();
  diagnostics.alarm_flags = 0x001 | 0x020;
  diagnostics.warn_flags = 0x100;
  const std::string plain = details(diagnostics);
  RecordingPlatform platform;
  for (const uint32 tag : {0x21U, 0x27U, 0x2DU, 0x33U, 0x39U})
    platform.enum_texts[tag] = {{1, "++"}, {2, "+"}, {3, "-"}, {4, "--"}, {5, ""}};
  sfp_diag_info_ddm_tlvs_t further{};
  pm_show_transceiver_sfp_details_info(platform.output(), &diagnostics, &further);
  EXPECT_EQ(platform.text(), plain) << "both forms are one table";
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.tuples(),
            (Tuples{{0x452A0020, "35.25"},  {0x022A0021, 1},        {0x452A0022, "75.00"}, {0x452A0023, "-5.00"},
                    {0x452A0024, "70.00"},  {0x452A0025, "0.00"},   {0x452A0026, "3.30"},  {0x022A0027, 5},
                    {0x452A0028, "3.63"},   {0x452A0029, "2.97"},   {0x452A002A, "3.46"},  {0x452A002B, "3.13"},
                    {0x452A002C, "6.50"},   {0x022A002D, 4},        {0x452A002E, "12.00"}, {0x452A002F, "2.00"},
                    {0x452A0030, "11.50"},  {0x452A0031, "3.00"},   {0x452A0032, "0.00"},  {0x022A0033, 5},
                    {0x452A0034, "10.00"},  {0x452A0035, "-10.00"}, {0x452A0036, "0.00"},  {0x452A0037, "-20.00"},
                    {0x452A0038, "-10.00"}, {0x022A0039, 2},        {0x452A003A, "10.00"}, {0x452A003B, "-20.00"},
                    {0x452A003C, "0.00"},   {0x452A003D, "-10.00"}}));
}

// A module in which no two cells share a value.
diagnostics_t distinct_diagnostics() {
  diagnostics_t diagnostics{};
  diagnostics.calib_type = 2;
  diagnostics.alarm_flags = 0x001 | 0x080;                 // temperature high, transmit power low
  diagnostics.warn_flags = 0x001 | 0x002 | 0x004 | 0x020;  // voltage high, current low; the alarm hides the first two
  diagnostics.temp = 11000;
  diagnostics.temp_hi_alarm = 12000;
  diagnostics.temp_lo_alarm = 13000;
  diagnostics.temp_hi_warn = 14000;
  diagnostics.temp_lo_warn = 15000;
  diagnostics.volt = 21000000;
  diagnostics.volt_hi_alarm = 22000000;
  diagnostics.volt_lo_alarm = 23000000;
  diagnostics.volt_hi_warn = 24000000;
  diagnostics.volt_lo_warn = 25000000;
  diagnostics.curr = 31000;
  diagnostics.current_hi_alarm = 32000;
  diagnostics.current_lo_alarm = 33000;
  diagnostics.current_hi_warn = 34000;
  diagnostics.current_lo_warn = 35000;
  diagnostics.tx_pwr = 10;
  diagnostics.tx_pwr_hi_alarm = 100;
  diagnostics.tx_pwr_lo_alarm = 1000;
  diagnostics.tx_pwr_hi_warn = 10000;
  diagnostics.tx_pwr_lo_warn = 100000;
  diagnostics.rx_pwr = 1;
  diagnostics.rx_pwr_hi_alarm = 2000;
  diagnostics.rx_pwr_lo_alarm = 500;
  diagnostics.rx_pwr_hi_warn = 1000000;
  diagnostics.rx_pwr_lo_warn = 20000;
  return diagnostics;
}

TEST(BothForms, DetailsOfATransceiver) {
  RecordingPlatform platform;
  diagnostics_t diagnostics = distinct_diagnostics();
  pm_show_transceiver_sfp_details_info(platform.output(), &diagnostics, nullptr);
  EXPECT_EQ(platform.text(), std::string("           SFP Detail Diagnostics Information (external calibration)\n") +
                                 kRule + kHeadings + kRule +
                                 "  Temperature   11.00 C   1    12.00 C     13.00 C     14.00 C       15.00 C\n"
                                 "  Voltage       21.00 V   2    22.00 V     23.00 V     24.00 V       25.00 V\n"
                                 "  Current       31.00 mA   3   32.00 mA    33.00 mA    34.00 mA      35.00 mA\n"
                                 "  Tx Power      -20.00 dBm  4  -10.00 dBm    0.00 dBm   10.00 dBm     20.00 dBm\n"
                                 "  Rx Power      -30.00 dBm  5    3.01 dBm   -3.01 dBm   30.00 dBm     13.01 dBm\n" +
                                 kRule + kLegend);
  expect_both_forms_agree(
      platform, {0x452A0020, 0x022A0021, 0x452A0022, 0x452A0023, 0x452A0024, 0x452A0025, 0x452A0026, 0x022A0027,
                 0x452A0028, 0x452A0029, 0x452A002A, 0x452A002B, 0x452A002C, 0x022A002D, 0x452A002E, 0x452A002F,
                 0x452A0030, 0x452A0031, 0x452A0032, 0x022A0033, 0x452A0034, 0x452A0035, 0x452A0036, 0x452A0037,
                 0x452A0038, 0x022A0039, 0x452A003A, 0x452A003B, 0x452A003C, 0x452A003D});
}

TEST(TaggedDetails, CellsThatAreNotAvailableBindNothing) {
  RecordingPlatform platform;
  diagnostics_t diagnostics = healthy_diagnostics();
  diagnostics.tx_pwr = diagnostics.tx_pwr_lo_warn = 0;
  pm_show_transceiver_sfp_details_info(platform.output(), &diagnostics, nullptr);
  for (const bound_tuple& tuple : platform.tuples()) {
    EXPECT_NE(tuple.id, 0x452A0032U);
    EXPECT_NE(tuple.id, 0x452A0037U);
  }
  EXPECT_EQ(platform.tuples().size(), 28U);
}

TEST(TaggedDetails, WithoutCalibrationSayOnlyThat) {
  RecordingPlatform platform;
  diagnostics_t diagnostics{};
  pm_show_transceiver_sfp_details_info(platform.output(), &diagnostics, nullptr);
  pm_show_transceiver_sfp_calibration_info(platform.output(), &diagnostics, nullptr);
  EXPECT_EQ(platform.text(), "    Invalid calibration\n\n    Invalid calibration\n\n");
  EXPECT_THAT(platform.tuples(), IsEmpty());
}

// ---- In short -----------------------------------------------------------------------------------------------------

TEST(ShortTable, ShowsValuesAndMarks) {
  diagnostics_t diagnostics = healthy_diagnostics();
  diagnostics.alarm_flags = 0x001;
  diagnostics.warn_flags = 0x080;
  diagnostics.rx_pwr = 0;
  EXPECT_EQ(in_short(diagnostics), std::string("           SFP Diagnostics Information (internal calibration)\n") +
                                       kRule +
                                       "  Temperature   35.25 C  ++\n"
                                       "  Voltage        3.30 V    \n"
                                       "  Current        6.50 mA    \n"
                                       "  Tx Power        0.00 dBm  -\n"
                                       "  Rx Power        N/A       \n" +
                                       kRule + kLegend);
}

// ---- Calibration --------------------------------------------------------------------------------------------------

diagnostics_t external_constants() {
  diagnostics_t diagnostics = healthy_diagnostics();
  diagnostics.calib_type = 2;
  diagnostics.calib_temp_slope = 256;
  diagnostics.calib_temp_offset = 4294967295U;
  diagnostics.calib_volt_slope = 1;
  diagnostics.calib_volt_offset = 2;
  diagnostics.calib_current_slope = 3;
  diagnostics.calib_current_offset = 4;
  diagnostics.calib_tx_pwr_slope = 5;
  diagnostics.calib_tx_pwr_offset = 6;
  diagnostics.calib_rx_pwr_4 = 7;
  diagnostics.calib_rx_pwr_3 = 8;
  diagnostics.calib_rx_pwr_2 = 9;
  diagnostics.calib_rx_pwr_1 = 10;
  diagnostics.calib_rx_pwr_0 = 11;
  return diagnostics;
}

std::string calibration(diagnostics_t diagnostics) {
  RecordingPlatform platform;
  pm_print_sfp_calibration_info(&diagnostics, nullptr, 0);
  return platform.text();
}

const std::string kExternalConstants = std::string("           SFP Calibration Information (external calibration)\n") +
                                       kRule + "                         Slope      Offset\n" + kRule +
                                       "  Temperature              256  4294967295\n"
                                       "  Voltage                    1           2\n"
                                       "  Current                    3           4\n"
                                       "  Tx Power                   5           6\n"
                                       "  Rx Power (4)               7\n"
                                       "  Rx Power (3)               8\n"
                                       "  Rx Power (2)               9\n"
                                       "  Rx Power (1)              10\n"
                                       "  Rx Power (0)              11\n" +
                                       kRule + "\n";

TEST(CalibrationTable, ShowsExternalConstants) { EXPECT_EQ(calibration(external_constants()), kExternalConstants); }

TEST(CalibrationTable, InternalCalibrationHasNone) {
  EXPECT_EQ(calibration(healthy_diagnostics()),
            std::string("           SFP Calibration Information (internal calibration)\n") + kRule +
                "  No external calibration constants\n" + kRule + "\n");
}

TEST(CalibrationTable, TheLargestConstantsFit) {
  const std::string text = calibration(all_ones(2));
  EXPECT_EQ(line_of(text, "  Current"), "  Current           4294967295  4294967295");
  EXPECT_EQ(line_of(text, "  Rx Power (0)"), "  Rx Power (0)      4294967295");
  EXPECT_EQ(calibration(all_ones(0)), "    Invalid calibration\n\n");
  EXPECT_EQ(calibration(all_ones(3)), "    Invalid calibration\n\n");
}

// Without constants nothing is bound either.
TEST(CalibrationTable, InternalCalibrationBindsNothing) {
  const std::string plain = calibration(all_ones(1));
  RecordingPlatform platform;
  diagnostics_t diagnostics = all_ones(1);
  pm_show_transceiver_sfp_calibration_info(platform.output(), &diagnostics, nullptr);
  EXPECT_EQ(platform.text(), plain);
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_THAT(platform.tuples(), IsEmpty());
}

TEST(CalibrationTable, BindsItsConstants) {
  RecordingPlatform platform;
  diagnostics_t diagnostics = external_constants();
  pm_show_transceiver_sfp_calibration_info(platform.output(), &diagnostics, nullptr);
  EXPECT_EQ(platform.text(), kExternalConstants);
  Tuples numbers;
  for (const bound_tuple& tuple : platform.tuples())
    if (tuple.id != 0) numbers.push_back(tuple);
  EXPECT_EQ(numbers, (Tuples{{0x142A003E, 256},
                             {0x142A003F, 4294967295U},
                             {0x142A0040, 1},
                             {0x142A0041, 2},
                             {0x142A0042, 3},
                             {0x142A0043, 4},
                             {0x142A0044, 5},
                             {0x142A0045, 6},
                             {0x142A0046, 7},
                             {0x142A0047, 8},
                             {0x142A0048, 9},
                             {0x142A0049, 10},
                             {0x142A004A, 11}}));
}

// ---- Fetching -----------------------------------------------------------------------------------------------------

struct reason_case {
  int32 code;
  const char* text;
};
const reason_case kRejections[] = {
    {0x40290041, "    Digital diagnostics feature not supported in SFP\n\n"},
    {0x4029000B, ""},
    {0x4029002A, ""},
    {0x40290042, "   SFP diagnostics information not available\n\n"},
    {0x40290043, "    Error reading from SFP\n\n"},
    {0x40290000, "    unknown error 0x40290000\n\n"},
    {-1, "    unknown error 0xffffffff\n\n"},
};

TEST(DiagnosticsQuery, SaysWhyThereAreNone) {
  for (const reason_case& reason : kRejections) {
    RecordingPlatform platform;
    platform.fail_with("pm_get_sfp_diag_info", reason.code);
    diagnostics_t diagnostics{};
    sfp_diag_info_ddm_tlvs_t further{};
    EXPECT_EQ(pm_get_sfp_diag_info_and_print_err(RecordingPlatform::q(), kPort, &diagnostics, &further), reason.code);
    EXPECT_EQ(platform.text(), reason.text);
  }
}

TEST(DiagnosticsQuery, HandsThemOver) {
  RecordingPlatform platform;
  platform.diagnostics[kPort] = healthy_diagnostics();
  diagnostics_t diagnostics{};
  sfp_diag_info_ddm_tlvs_t further{};
  EXPECT_EQ(pm_get_sfp_diag_info_and_print_err(RecordingPlatform::q(), kPort, &diagnostics, &further), 0);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(diagnostics.volt, 3300000U);
}

TEST(SatelliteDiagnostics, AskForTheUnitAndItsSlot) {
  RecordingPlatform platform;
  const if_index_t port = satellite(101, 1, 2);
  platform.fabric_ports[port] = {101, 3};
  platform.diagnostics[port] = healthy_diagnostics();
  diagnostics_t diagnostics{};
  sfp_diag_info_ddm_tlvs_t further{};
  EXPECT_EQ(pm_get_sat_sfp_diag_info_and_print_err(RecordingPlatform::q(), port, &diagnostics, &further), 0);
  EXPECT_EQ(platform.satellite_queries, (std::vector<std::pair<uint32, uint32>>{{101, 3000}}));
  EXPECT_EQ(diagnostics.temp, 35250);
}

TEST(SatelliteDiagnostics, SayWhyThereAreNone) {
  const if_index_t port = satellite(101, 1, 2);
  diagnostics_t diagnostics{};
  sfp_diag_info_ddm_tlvs_t further{};
  for (const char* const function : {"satmgr_get_fport_info", "satmgr_get_slot_info"}) {
    RecordingPlatform platform;
    platform.fabric_ports[port] = {101, 3};
    platform.fail_with(function, 7);
    EXPECT_EQ(pm_get_sat_sfp_diag_info_and_print_err(RecordingPlatform::q(), port, &diagnostics, &further), -1);
    EXPECT_EQ(platform.text(), "error getting FEX fabric interface information\n");
    EXPECT_THAT(platform.satellite_queries, IsEmpty());
  }
  for (const reason_case& reason : kRejections) {
    RecordingPlatform platform;
    platform.fabric_ports[port] = {101, 3};
    platform.fail_with("pm_get_sat_sfp_diag_info", reason.code);
    EXPECT_EQ(pm_get_sat_sfp_diag_info_and_print_err(RecordingPlatform::q(), port, &diagnostics, &further),
              reason.code);
    EXPECT_EQ(platform.text(), reason.text);
  }
}

// What a satellite's query prints when this call is the one that fails; "" is the run in which none does.
TEST(SatelliteDiagnostics, EveryCallMayFail) {
  const if_index_t port = satellite(101, 1, 2);
  std::map<std::string, std::string> texts;
  const auto ask = [=](RecordingPlatform& platform) {
    platform.fabric_ports[port] = {101, 3};
    platform.diagnostics[port] = healthy_diagnostics();
    diagnostics_t diagnostics{};
    sfp_diag_info_ddm_tlvs_t further{};
    pm_get_sat_sfp_diag_info_and_print_err(RecordingPlatform::q(), port, &diagnostics, &further);
  };
  EXPECT_EQ(walk_failures(ask, [&](const walk_run& run) { texts[run.platform.failed_call()] = run.platform.text(); }),
            3U);
  EXPECT_EQ(texts, (std::map<std::string, std::string>{
                       {"", ""},
                       {"satmgr_get_fport_info", "error getting FEX fabric interface information\n"},
                       {"satmgr_get_slot_info", "error getting FEX fabric interface information\n"},
                       {"pm_get_sat_sfp_diag_info", "    unknown error 0xffffffff\n\n"}}));
}

}  // namespace
}  // namespace pmcli_test
