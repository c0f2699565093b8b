// Measurements of the transceiver in a port, and their limits.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/types.h"

namespace host {

struct interface;

// High alarm, low alarm, high warning, low warning.
template <typename Number>
using optical_limits = std::array<Number, 4>;

// Constants of a module that is calibrated externally: slopes as 256ths, offsets in units of its page; the defaults
// are those of an exact module.
struct optical_constants {
  uint32 temperature_slope = 256, temperature_offset = 0;
  uint32 voltage_slope = 256, voltage_offset = 0;
  uint32 bias_slope = 256, bias_offset = 0;
  uint32 tx_slope = 256, tx_offset = 0;
  std::array<uint32, 5> rx = {0, 0, 0, 1, 0};  // polynomial, the highest order first

  bool operator==(const optical_constants&) const = default;
};

// What is measured in a lane of a module with several.
struct optical_lane {
  uint32 bias_ua = 0;
  uint32 tx_uw = 0;
  uint32 rx_uw = 0;

  bool operator==(const optical_lane&) const = default;
};

// Optical diagnostics of a module: its measurements at rest, and what changes them.
struct optical_diagnostics {
  uint32 calibration = 0;         // 0: the module has no diagnostics; 1 internal, 2 external
  bool is_silent = false;         // the module has diagnostics, but does not report them now
  bool is_measured = false;       // the values were measured: neither time nor load nor state changes them
  int32 temperature_mc = 34'000;  // thousandths of a degree Celsius
  int32 drift_mc = 2'500;         // change by the room temperature, up and down in six hours
  int32 load_drift_mc = 6'000;    // change by a full line
  uint32 voltage_uv = 3'295'000;
  uint32 bias_ua = 6'600;
  uint32 tx_uw = 590;
  uint32 rx_uw = 420;  // while there is a link
  optical_limits<int32> temperature_limits_mc = {75'000, -5'000, 70'000, 0};
  optical_limits<uint32> voltage_limits_uv = {3'630'000, 2'970'000, 3'465'000, 3'135'000};
  optical_limits<uint32> bias_limits_ua = {11'800, 4'000, 10'800, 5'000};
  optical_limits<uint32> tx_limits_uw = {1'479, 117, 741, 186};
  optical_limits<uint32> rx_limits_uw = {1'584, 25, 794, 63};
  optical_constants constants = {};
  std::vector<optical_lane> lanes = {};  // of a module with several; the values above are those of the first

  bool operator==(const optical_diagnostics&) const = default;
};

// A measurement, with a bit for each limit that is exceeded: two for each of temperature, voltage, bias, transmit and
// receive power, the high one first. Invalid limits of a real module (the high not above the low) are never exceeded.
struct optical_reading {
  int32 temperature_mc;
  uint32 voltage_uv;
  uint32 bias_ua;
  uint32 tx_uw;
  uint32 rx_uw;
  uint32 alarms;
  uint32 warnings;
};

// The mark of the quantity with this bit for its high limit: 1 high alarm, 2 high warning, 3 low warning, 4 low alarm,
// 0 none. An alarm outweighs a warning, and the upper limit the lower one.
uint32 mark_of_bits(uint32 alarms, uint32 warnings, uint32 high);

// The bits of the high limits.
enum : uint32 { kTemperatureHigh = 0x001, kVoltageHigh = 0x004, kBiasHigh = 0x010, kTxHigh = 0x040, kRxHigh = 0x100 };

// The limits that a lane exceeds: only those of bias, transmit and receive power.
struct lane_limits {
  uint32 alarms;
  uint32 warnings;
};
lane_limits exceeded_by(const optical_lane& lane, const optical_diagnostics& module);

// Values in units, with the two digits that displays show; the power is none without light.
std::string in_degrees(int32 millidegrees);
std::string in_volts(uint32 microvolts);
std::string in_milliamperes(uint32 microamperes);
std::string in_dbm(uint32 microwatts);

// Whether a module has diagnostics, by its identity page.
bool has_diagnostics(const std::vector<uint8>& page);

// The diagnostics of the module in a port; null when there is none, or when it has none or does not report them now.
const optical_diagnostics* reported_diagnostics(const interface& port);

// The measurements of a port's module at a time (seconds since 1970). It is warmer under load: update the port's
// statistics to that time first.
optical_reading read_optics(const interface& port, uint32 now_sec);

}  // namespace host
