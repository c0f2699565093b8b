#include "switch/optics.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "platform/port_manager.h"
#include "switch/model.h"

namespace host {
namespace {

constexpr uint32 kDriftPeriodSec = 6 * 3600;

// The load of both directions together, 0 to 1.
double load_of(const interface& port) {
  const double line_bytes = static_cast<double>(port.oper_speed_mbps.value_or(0)) * 125'000 * 2;
  const uint64 used = port.stats.in_bytes_per_second.value_or(0) + port.stats.out_bytes_per_second.value_or(0);
  return line_bytes > 0 ? std::min(1.0, static_cast<double>(used) / line_bytes) : 0;
}

int32 temperature_of(const interface& port, const optical_diagnostics& module, uint32 now_sec) {
  const double angle = 2 * std::numbers::pi * (now_sec % kDriftPeriodSec) / kDriftPeriodSec;
  return module.temperature_mc + static_cast<int32>(module.drift_mc * std::sin(angle)) +
         static_cast<int32>(module.load_drift_mc * load_of(port));
}

// The bits of one quantity: high is 1, low is 2.
template <typename Number, typename Reading>
void compare(Number value, const optical_limits<Number>& limits, uint32 shift, Reading& reading) {
  const auto bits = [value](Number high, Number low) {
    return high <= low ? 0U : (value > high ? 1U : 0U) | (value < low ? 2U : 0U);
  };
  reading.alarms |= bits(limits[0], limits[1]) << shift;
  reading.warnings |= bits(limits[2], limits[3]) << shift;
}

// Computed as the command library does, in single precision and without rounding.
std::string with_two_digits(float value) {
  const float product = value * 100;
  const auto hundredths = static_cast<int32>(product);
  return fmt::format("{}{}.{:02}", hundredths < 0 ? "-" : "", std::abs(hundredths) / 100, std::abs(hundredths) % 100);
}

}  // namespace

bool has_diagnostics(const std::vector<uint8>& page) {
  constexpr std::size_t kMonitoringType = 92;
  constexpr uint8 kImplemented = 0x40;
  return page.size() > kMonitoringType && (page[kMonitoringType] & kImplemented) != 0;
}

const optical_diagnostics* reported_diagnostics(const interface& port) {
  if (!port.module_in_port || port.module_in_port->is_initializing) return nullptr;
  const optical_diagnostics& module = port.module_in_port->diagnostics;
  return module.calibration == 0 || module.is_silent ? nullptr : &module;
}

optical_reading read_optics(const interface& port, uint32 now_sec) {
  const optical_diagnostics& module = port.module_in_port->diagnostics;
  const bool is_lit = module.is_measured || port.settings.admin_state == PM_PORT_STATE_UP;
  const bool has_link = module.is_measured || port.oper_state == PM_PORT_STATE_UP;
  optical_reading reading{
      .temperature_mc = module.is_measured ? module.temperature_mc : temperature_of(port, module, now_sec),
      .voltage_uv = module.voltage_uv,
      .bias_ua = is_lit ? module.bias_ua : 0,
      .tx_uw = is_lit ? module.tx_uw : 0,
      .rx_uw = has_link ? module.rx_uw : 0,
      .alarms = 0,
      .warnings = 0};
  compare(reading.temperature_mc, module.temperature_limits_mc, 0, reading);
  compare(reading.voltage_uv, module.voltage_limits_uv, 2, reading);
  compare(reading.bias_ua, module.bias_limits_ua, 4, reading);
  compare(reading.tx_uw, module.tx_limits_uw, 6, reading);
  compare(reading.rx_uw, module.rx_limits_uw, 8, reading);
  return reading;
}

uint32 mark_of_bits(uint32 alarms, uint32 warnings, uint32 high) {
  if ((alarms & high) != 0) return 1;
  if ((alarms & high << 1) != 0) return 4;
  if ((warnings & high) != 0) return 2;
  return (warnings & high << 1) != 0 ? 3 : 0;
}

lane_limits exceeded_by(const optical_lane& lane, const optical_diagnostics& module) {
  lane_limits exceeded{};
  compare(lane.bias_ua, module.bias_limits_ua, 4, exceeded);
  compare(lane.tx_uw, module.tx_limits_uw, 6, exceeded);
  compare(lane.rx_uw, module.rx_limits_uw, 8, exceeded);
  return exceeded;
}

std::string in_degrees(int32 millidegrees) { return with_two_digits(static_cast<float>(millidegrees) / 1000.0F); }
std::string in_volts(uint32 microvolts) { return with_two_digits(static_cast<float>(microvolts) / 1000000.0F); }
std::string in_milliamperes(uint32 microamperes) { return with_two_digits(static_cast<float>(microamperes) / 1000.0F); }
std::string in_dbm(uint32 microwatts) {
  if (microwatts == 0) return {};
  const float milliwatts = static_cast<float>(microwatts) / 1000.0F;
  return with_two_digits(static_cast<float>(10.0 * std::log10(static_cast<double>(milliwatts))));
}

}  // namespace host
