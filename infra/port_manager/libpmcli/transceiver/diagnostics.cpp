// Optical diagnostics: values in units, marks, and the tables of values.

#include "transceiver/diagnostics.h"

#include <cmath>
#include <cstdint>

#include "pmcli/command.h"
#include "pmcli/transceiver.h"

using namespace pmcli;

namespace pmcli {

namespace {

using diagnostics_t = mts_get_sfp_diag_info_t;

// The bits of a quantity in the flags of alarms and of warnings.
uint32 mark_of(const diagnostics_t& diagnostics, uint32 high_bit) {
  const uint32 low_bit = high_bit << 1;
  const uint32 alarms = diagnostics.alarm_flags, warnings = diagnostics.warn_flags;
  uint32 mark = kMarkNone;
  pm_set_alarm_warn_flag(&mark, (alarms & high_bit) != 0, (alarms & low_bit) != 0, (warnings & high_bit) != 0,
                         (warnings & low_bit) != 0);
  return mark;
}

}  // namespace

std::array<raw_quantity, kDiagnosticQuantities> quantities_of(const diagnostics_t& d) {
  const auto as_signed = [](be_int32 value) { return std::int64_t{static_cast<int32>(value)}; };
  const auto as_unsigned = [](be32 value) { return std::int64_t{static_cast<uint32>(value)}; };
  return {{
      {as_signed(d.temp),
       {as_signed(d.temp_hi_alarm), as_signed(d.temp_lo_alarm), as_signed(d.temp_hi_warn), as_signed(d.temp_lo_warn)},
       mark_of(d, 0x001)},
      {as_unsigned(d.volt),
       {as_unsigned(d.volt_hi_alarm), as_unsigned(d.volt_lo_alarm), as_unsigned(d.volt_hi_warn),
        as_unsigned(d.volt_lo_warn)},
       mark_of(d, 0x004)},
      {as_unsigned(d.curr),
       {as_unsigned(d.current_hi_alarm), as_unsigned(d.current_lo_alarm), as_unsigned(d.current_hi_warn),
        as_unsigned(d.current_lo_warn)},
       mark_of(d, 0x010)},
      {as_unsigned(d.tx_pwr),
       {as_unsigned(d.tx_pwr_hi_alarm), as_unsigned(d.tx_pwr_lo_alarm), as_unsigned(d.tx_pwr_hi_warn),
        as_unsigned(d.tx_pwr_lo_warn)},
       mark_of(d, 0x040)},
      {as_unsigned(d.rx_pwr),
       {as_unsigned(d.rx_pwr_hi_alarm), as_unsigned(d.rx_pwr_lo_alarm), as_unsigned(d.rx_pwr_hi_warn),
        as_unsigned(d.rx_pwr_lo_warn)},
       mark_of(d, 0x100)},
  }};
}

const char* mark_text(uint32 mark) {
  switch (mark) {
    case kMarkHighAlarm: return "++";
    case kMarkHighWarning: return "+";
    case kMarkLowWarning: return "-";
    case kMarkLowAlarm: return "--";
    default: return "";
  }
}

decimal_text::decimal_text(float value) {
  cmd_float_t parts;
  float2cmdfloat(&parts, value, kDecimals);
  // The sign of a value between -1 and 0 is not in its whole part.
  const char* const sign = value < 0 && parts.u.ti.whole == 0 ? "-" : "";
  std::snprintf(text, sizeof text, "%s%d.%0*d", sign, parts.u.ti.whole, parts.u.ti.nb_decimals, parts.u.ti.decimal);
}

namespace {

// ---- Units. The divisions are in single precision, which shows in the digits. -------------------------------------

float thousandth(std::int64_t raw) { return static_cast<float>(raw) / 1000.0F; }
float millionth(std::int64_t raw) { return static_cast<float>(raw) / 1000000.0F; }
// Microwatts as dBm; not of 0.
float decibels(std::int64_t raw) { return static_cast<float>(10.0 * std::log10(static_cast<double>(thousandth(raw)))); }

// ---- The table with thresholds ------------------------------------------------------------------------------------

struct decimal_cell {
  const char* format;
  tuple_id<CMD_TYPE_FLOAT> tuple;
};

struct mark_cell {
  const char* format;
  tuple_id<CMD_TYPE_ENUM> tuple;
};

// A row; of a power a cell without a value is "N/A".
struct row {
  float (*in_units)(std::int64_t raw);
  const char* absent_value;  // null: every value is shown
  decimal_cell value;
  mark_cell mark;
  std::array<decimal_cell, kDiagnosticThresholds> thresholds;
  const char* short_line;         // of the table without thresholds
  const char* short_absent_line;  // null: every value is shown
};

constexpr const char* kAbsentThresholds[kDiagnosticThresholds] = {"     N/A    ", "     N/A    ", "     N/A    ",
                                                                  "       N/A\n"};

// clang-format off
constexpr row kRows[kDiagnosticQuantities] = {
    {thousandth, nullptr,
     {"  Temperature  %6s C", tag::transceiver_temperature},
     {"  %2.2s", tag::transceiver_temperature_mark},
     {{{"   %6s C", tag::transceiver_temperature_high_alarm},
       {"    %6s C", tag::transceiver_temperature_low_alarm},
       {"    %6s C", tag::transceiver_temperature_high_warning},
       {"      %6s C\n", tag::transceiver_temperature_low_warning}}},
     "  Temperature  %6s C  %2.2s\n", nullptr},
    {millionth, nullptr,
     {"  Voltage      %6s V", tag::transceiver_voltage},
     {"  %2.2s", tag::transceiver_voltage_mark},
     {{{"   %6s V", tag::transceiver_voltage_high_alarm},
       {"    %6s V", tag::transceiver_voltage_low_alarm},
       {"    %6s V", tag::transceiver_voltage_high_warning},
       {"      %6s V\n", tag::transceiver_voltage_low_warning}}},
     "  Voltage      %6s V  %2.2s\n", nullptr},
    {thousandth, nullptr,
     {"  Current      %6s mA ", tag::transceiver_current},
     {" %2.2s", tag::transceiver_current_mark},
     {{{"  %6s mA", tag::transceiver_current_high_alarm},
       {"   %6s mA", tag::transceiver_current_low_alarm},
       {"   %6s mA", tag::transceiver_current_high_warning},
       {"     %6s mA\n", tag::transceiver_current_low_warning}}},
     "  Current      %6s mA  %2.2s\n", nullptr},
    {decibels, "  Tx Power        N/A    ",
     {"  Tx Power      %6s dBm", tag::transceiver_tx_power},
     {" %2.2s", tag::transceiver_tx_power_mark},
     {{{"  %6s dBm", tag::transceiver_tx_power_high_alarm},
       {"  %6s dBm", tag::transceiver_tx_power_low_alarm},
       {"  %6s dBm", tag::transceiver_tx_power_high_warning},
       {"    %6s dBm\n", tag::transceiver_tx_power_low_warning}}},
     "  Tx Power      %6s dBm %2.2s\n", "  Tx Power        N/A     %2.2s\n"},
    {decibels, "  Rx Power        N/A    ",
     {"  Rx Power      %6s dBm", tag::transceiver_rx_power},
     {" %2.2s", tag::transceiver_rx_power_mark},
     {{{"  %6s dBm", tag::transceiver_rx_power_high_alarm},
       {"  %6s dBm", tag::transceiver_rx_power_low_alarm},
       {"  %6s dBm", tag::transceiver_rx_power_high_warning},
       {"    %6s dBm\n", tag::transceiver_rx_power_low_warning}}},
     "  Rx Power      %6s dBm %2.2s\n", "  Rx Power        N/A     %2.2s\n"},
};
// clang-format on

constexpr const char* kLegend = "  Note: ++  high-alarm; +  high-warning; --  low-alarm; -  low-warning\n\n";

bool is_absent(const row& row, std::int64_t raw) { return row.absent_value != nullptr && raw == 0; }

template <typename Sink>
void print_row(const Sink& to, const row& row, const raw_quantity& quantity) {
  if (is_absent(row, quantity.value))
    to.text(row.absent_value);
  else
    to.decimal(row.value.format, row.value.tuple, row.in_units(quantity.value));
  to.mark(row.mark.format, row.mark.tuple, quantity.mark);
  for (std::size_t i = 0; i < row.thresholds.size(); ++i) {
    const decimal_cell& cell = row.thresholds[i];
    if (is_absent(row, quantity.thresholds[i]))
      to.text(kAbsentThresholds[i]);
    else
      to.decimal(cell.format, cell.tuple, row.in_units(quantity.thresholds[i]));
  }
}

template <typename Sink>
void print_details(const Sink& to, const diagnostics_t& diagnostics) {
  if (!is_calibrated(diagnostics)) return to.text(kInvalidCalibration);
  to.text(title_of(diagnostics, "           SFP Detail Diagnostics Information (internal calibration)\n",
                   "           SFP Detail Diagnostics Information (external calibration)\n"));
  to.text(kDiagnosticsRule);
  to.text("                                     Alarms                  Warnings\n");
  to.text("                                High        Low         High          Low\n");
  to.text(kDiagnosticsRule);
  const auto quantities = quantities_of(diagnostics);
  for (std::size_t i = 0; i < quantities.size(); ++i) print_row(to, kRows[i], quantities[i]);
  to.text(kDiagnosticsRule);
  to.text(kLegend);
}

void print_short_row(const row& row, const raw_quantity& quantity) {
  const char* const mark = mark_text(quantity.mark);
  if (is_absent(row, quantity.value))
    std::printf(row.short_absent_line, mark);
  else
    std::printf(row.short_line, decimal_text(row.in_units(quantity.value)).text, mark);
}

}  // namespace

}  // namespace pmcli

void pm_set_alarm_warn_flag(uint32* flag, boolean hi_alrm, boolean lo_alrm, boolean hi_warn, boolean lo_warn) {
  if (hi_alrm)
    *flag = kMarkHighAlarm;
  else if (lo_alrm)
    *flag = kMarkLowAlarm;
  else if (hi_warn)
    *flag = kMarkHighWarning;
  else
    *flag = lo_warn ? kMarkLowWarning : kMarkNone;
}

void pm_show_transceiver_sfp_details_info(cmd_rx_handle_t* rx_handle, mts_get_sfp_diag_info_t* diag_info,
                                          sfp_diag_info_ddm_tlvs_t*) {
  print_details(channel_sink{rx_handle}, *diag_info);
}

void pm_print_sfp_diag_detail_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t*, boolean) {
  print_details(plain_sink{}, *diag_info);
}

void pm_print_sfp_diag_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t*, boolean) {
  if (!is_calibrated(*diag_info)) return plain_sink{}.text(kInvalidCalibration);
  std::fputs(title_of(*diag_info, "           SFP Diagnostics Information (internal calibration)\n",
                      "           SFP Diagnostics Information (external calibration)\n"),
             stdout);
  std::fputs(kDiagnosticsRule, stdout);
  const auto quantities = quantities_of(*diag_info);
  for (std::size_t i = 0; i < quantities.size(); ++i) print_short_row(kRows[i], quantities[i]);
  std::fputs(kDiagnosticsRule, stdout);
  std::fputs(kLegend, stdout);
}
