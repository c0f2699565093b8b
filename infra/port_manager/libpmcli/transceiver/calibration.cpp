// The external calibration constants of a transceiver.

#include "pmcli/transceiver.h"
#include "transceiver/diagnostics.h"

using namespace pmcli;

namespace {

using diagnostics_t = mts_get_sfp_diag_info_t;
using constant = be32 diagnostics_t::*;

struct linear_row {
  const char* label;
  constant slope, offset;
  tuple_id<CMD_TYPE_UINT32> slope_tuple, offset_tuple;
};

struct polynomial_row {
  const char* label;
  constant coefficient;
  tuple_id<CMD_TYPE_UINT32> tuple;
};

constexpr linear_row kLinear[] = {
    {"Temperature", &diagnostics_t::calib_temp_slope, &diagnostics_t::calib_temp_offset,
     tag::calibration_temperature_slope, tag::calibration_temperature_offset},
    {"Voltage", &diagnostics_t::calib_volt_slope, &diagnostics_t::calib_volt_offset, tag::calibration_voltage_slope,
     tag::calibration_voltage_offset},
    {"Current", &diagnostics_t::calib_current_slope, &diagnostics_t::calib_current_offset,
     tag::calibration_current_slope, tag::calibration_current_offset},
    {"Tx Power", &diagnostics_t::calib_tx_pwr_slope, &diagnostics_t::calib_tx_pwr_offset,
     tag::calibration_tx_power_slope, tag::calibration_tx_power_offset},
};
constexpr polynomial_row kPolynomial[] = {
    {"Rx Power (4)", &diagnostics_t::calib_rx_pwr_4, tag::calibration_rx_power_4},
    {"Rx Power (3)", &diagnostics_t::calib_rx_pwr_3, tag::calibration_rx_power_3},
    {"Rx Power (2)", &diagnostics_t::calib_rx_pwr_2, tag::calibration_rx_power_2},
    {"Rx Power (1)", &diagnostics_t::calib_rx_pwr_1, tag::calibration_rx_power_1},
    {"Rx Power (0)", &diagnostics_t::calib_rx_pwr_0, tag::calibration_rx_power_0},
};

constexpr const char* kLabel = "  %-16.16s";

template <typename Sink>
void print_constants(const Sink& to, const diagnostics_t& diagnostics) {
  to.text("                         Slope      Offset\n");
  to.text(kDiagnosticsRule);
  for (const linear_row& row : kLinear) {
    to.label(kLabel, row.label);
    to.count("%12s", row.slope_tuple, diagnostics.*row.slope);
    to.count("%12s\n", row.offset_tuple, diagnostics.*row.offset);
  }
  for (const polynomial_row& row : kPolynomial) {
    to.label(kLabel, row.label);
    to.count("%12s\n", row.tuple, diagnostics.*row.coefficient);
  }
}

template <typename Sink>
void print_calibration(const Sink& to, const diagnostics_t& diagnostics) {
  if (!is_calibrated(diagnostics)) return to.text(kInvalidCalibration);
  to.text(title_of(diagnostics, "           SFP Calibration Information (internal calibration)\n",
                   "           SFP Calibration Information (external calibration)\n"));
  to.text(kDiagnosticsRule);
  if (diagnostics.calib_type == kCalibrationInternal)
    to.text("  No external calibration constants\n");
  else
    print_constants(to, diagnostics);
  to.text(kDiagnosticsRule);
  to.text("\n");
}

}  // namespace

void pm_print_sfp_calibration_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t*, boolean) {
  print_calibration(plain_sink{}, *diag_info);
}

void pm_show_transceiver_sfp_calibration_info(cmd_rx_handle_t* rx_handle, mts_get_sfp_diag_info_t* diag_info,
                                              sfp_diag_info_ddm_tlvs_t*) {
  print_calibration(channel_sink{rx_handle}, *diag_info);
}
