// Optical diagnostics in units, and the two ways in which tables of them are printed.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>

#include "platform/transceiver.h"
#include "support/print.h"

namespace pmcli {

enum : uint32 { kCalibrationInternal = 1, kCalibrationExternal = 2 };

// The marks of values.
enum : uint32 { kMarkHighAlarm = 1, kMarkHighWarning = 2, kMarkLowWarning = 3, kMarkLowAlarm = 4, kMarkNone = 5 };

enum { kDiagnosticQuantities = 5, kDiagnosticThresholds = 4 };

// A quantity as it was measured, and its thresholds: high alarm, low alarm, high warning, low warning.
struct raw_quantity {
  std::int64_t value;
  std::array<std::int64_t, kDiagnosticThresholds> thresholds;
  uint32 mark;
};

// Temperature, voltage, current, transmit and receive power.
std::array<raw_quantity, kDiagnosticQuantities> quantities_of(const mts_get_sfp_diag_info_t& diagnostics);

// The text of a mark.
const char* mark_text(uint32 mark);

// A number with two decimals as a text.
struct decimal_text {
  explicit decimal_text(float value);
  char text[24];
};

// Prints by the output channel, with tags.
struct channel_sink {
  cmd_rx_handle_t* rx;

  void text(const char* text) const { cmd_prt(rx, text); }
  void label(const char* format, const char* label) const { print_untagged(rx, format, label); }
  void decimal(const char* format, tuple_id<CMD_TYPE_FLOAT> tuple, float value) const {
    print_decimal(rx, format, tuple, value);
  }
  void count(const char* format, tuple_id<CMD_TYPE_UINT32> tuple, uint32 value) const {
    print_u32(rx, format, tuple, value);
  }
  void mark(const char* format, tuple_id<CMD_TYPE_ENUM> tuple, uint32 mark) const {
    print_enum(rx, format, tuple, mark);
  }
};

// Prints the same as plain text.
struct plain_sink {
  void text(const char* text) const { std::fputs(text, stdout); }
  void label(const char* format, const char* label) const { std::printf(format, label); }
  void decimal(const char* format, tuple_id<CMD_TYPE_FLOAT>, float value) const {
    std::printf(format, decimal_text(value).text);
  }
  void count(const char* format, tuple_id<CMD_TYPE_UINT32>, uint32 value) const {
    char digits[12];
    std::snprintf(digits, sizeof digits, "%u", value);
    std::printf(format, digits);
  }
  void mark(const char* format, tuple_id<CMD_TYPE_ENUM>, uint32 mark) const { std::printf(format, mark_text(mark)); }
};

inline constexpr const char* kDiagnosticsRule =
    "  ----------------------------------------------------------------------------\n";
inline constexpr const char* kInvalidCalibration = "    Invalid calibration\n\n";

// Whether values can be used.
inline bool is_calibrated(const mts_get_sfp_diag_info_t& diagnostics) {
  return diagnostics.calib_type == kCalibrationInternal || diagnostics.calib_type == kCalibrationExternal;
}

// One of two titles, by the kind of calibration.
inline const char* title_of(const mts_get_sfp_diag_info_t& diagnostics, const char* internal, const char* external) {
  return diagnostics.calib_type == kCalibrationInternal ? internal : external;
}

}  // namespace pmcli
