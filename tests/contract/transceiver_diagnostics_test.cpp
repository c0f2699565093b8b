// Optical diagnostics: conversions, marks, and the tables with and without tags.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "contract/transceiver_images.h"
#include "pmcli/transceiver.h"
#include "support/both_forms.h"

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
  EXPECT_TRUE(platform.tuples().empty());
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
const reason_case kReasons[] = {
    {0x40290041, "    Digital diagnostics feature not supported in SFP\n\n"},
    {0x4029000B, ""},
    {0x4029002A, ""},
    {0x40290042, "   SFP diagnostics information not available\n\n"},
    {0x40290043, "    Error reading from SFP\n\n"},
    {0x40290000, "    unknown error 0x40290000\n\n"},
    {-1, "    unknown error 0xffffffff\n\n"},
};

TEST(DiagnosticsQuery, SaysWhyThereAreNone) {
  for (const reason_case& reason : kReasons) {
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
    EXPECT_TRUE(platform.satellite_queries.empty());
  }
  for (const reason_case& reason : kReasons) {
    RecordingPlatform platform;
    platform.fabric_ports[port] = {101, 3};
    platform.fail_with("pm_get_sat_sfp_diag_info", reason.code);
    EXPECT_EQ(pm_get_sat_sfp_diag_info_and_print_err(RecordingPlatform::q(), port, &diagnostics, &further),
              reason.code);
    EXPECT_EQ(platform.text(), reason.text);
  }
}

}  // namespace
}  // namespace pmcli_test
