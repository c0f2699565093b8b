#include "source/kernel/module.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "platform/transceiver.h"
#include "switch/optics.h"

namespace host {
namespace {

constexpr module_place kIdentity = {0x50, 0, 0};
constexpr module_place kSfpDiagnostics = {0x51, 0, 0};
constexpr module_place kQsfpIdentity = {0x50, 0, 128};
constexpr module_place kQsfpLimits = {0x50, 3, 128};
constexpr module_place kCmisAbilities = {0x50, 1, 128};
constexpr module_place kCmisLimits = {0x50, 2, 128};
constexpr module_place kCmisLanes = {0x50, 0x11, 128};

enum class page_layout { none, sfp, qsfp, cmis };

// By the first byte of the memory.
page_layout layout_of(uint8 identifier) {
  switch (identifier) {
    case 0x01:  // GBIC
    case 0x02:  // soldered in
    case 0x03:  // SFP, SFP+, SFP28
    case 0x0B:  // DWDM SFP
      return page_layout::sfp;
    case 0x0C:  // QSFP
    case 0x0D:  // QSFP+
    case 0x11:  // QSFP28
      return page_layout::qsfp;
    case 0x18:  // QSFP-DD
    case 0x19:  // OSFP
    case 0x1B:  // DSFP
    case 0x1E:  // QSFP+ by CMIS
    case 0x1F:  // SFP-DD by CMIS
      return page_layout::cmis;
    default: return page_layout::none;
  }
}

// Reading an empty cage yields the same byte everywhere.
bool is_blank(const std::vector<uint8>& page) {
  const auto is_first = [&page](uint8 byte) { return byte == page.front(); };
  return page.empty() ||
         ((page.front() == 0 || page.front() == 0xFF) && std::all_of(page.begin(), page.end(), is_first));
}

uint8 byte_at(const std::vector<uint8>& page, std::size_t at) { return at < page.size() ? page[at] : uint8{0}; }

// A big-endian number of two bytes; the page has a byte after `at`.
uint16 word_at(const std::vector<uint8>& page, std::size_t at) {
  return static_cast<uint16>(byte_at(page, at) << 8 | byte_at(page, at + 1));
}

uint8 sum(const std::vector<uint8>& page, std::size_t from, std::size_t until) {
  uint8 all = 0;
  for (std::size_t at = from; at < until; ++at) all = static_cast<uint8>(all + byte_at(page, at));
  return all;
}

// ---- The identity of a QSFP in the layout of an SFP -----------------------------------------------------------------

// Common fields: offset in the QSFP's page, offset in the SFP's page, bytes.
struct moved_field {
  std::size_t from;
  std::size_t to;
  std::size_t size;
};
constexpr moved_field kMovedFields[] = {
    {0, 0, 1},     // identifier
    {2, 2, 1},     // connector
    {11, 11, 1},   // encoding
    {12, 12, 1},   // nominal rate, 100 Mbit/s
    {14, 14, 1},   // 9/125 um, km
    {18, 18, 1},   // copper, m
    {20, 20, 16},  // vendor
    {37, 37, 3},   // its OUI
    {40, 40, 16},  // part number
    {56, 56, 2},   // revision
    {68, 68, 16},  // serial number
    {84, 84, 8},   // date
};
constexpr std::size_t kRevisionAt = 56, kRevisionBytes = 4;
constexpr std::size_t kLength50At = 16, kLength625At = 17;  // 10 m in an SFP's page, 1 m in a QSFP's
constexpr std::size_t kBaseSumAt = 63, kExtendedSumAt = 95;
constexpr std::size_t kSfpDiagnosticsType = 92;
constexpr uint8 kInternalDiagnostics = 0x60;

// A checksum of the new page that is valid if that of the old page is.
uint8 moved_sum(const std::vector<uint8>& old_page, const std::vector<uint8>& new_page, std::size_t from,
                std::size_t until) {
  const bool is_right = sum(old_page, from, until) == byte_at(old_page, until);
  return static_cast<uint8>(sum(new_page, from, until) + (is_right ? 0 : 1));
}

std::vector<uint8> sfp_page_of(const std::vector<uint8>& qsfp, bool has_diagnostics) {
  std::vector<uint8> page(kModulePageBytes);
  if (qsfp.empty()) return {};
  std::fill_n(page.begin() + kRevisionAt, kRevisionBytes, uint8{' '});
  for (const moved_field& field : kMovedFields)
    for (std::size_t i = 0; i < field.size; ++i) page[field.to + i] = byte_at(qsfp, field.from + i);
  page[kLength50At] = static_cast<uint8>(byte_at(qsfp, kLength50At) / 10);
  page[kLength625At] = static_cast<uint8>(byte_at(qsfp, kLength625At) / 10);
  page[kSfpDiagnosticsType] = has_diagnostics ? kInternalDiagnostics : uint8{0};
  page[kBaseSumAt] = moved_sum(qsfp, page, 0, kBaseSumAt);
  page[kExtendedSumAt] = moved_sum(qsfp, page, 64, kExtendedSumAt);
  return page;
}

// ---- The identity of a module by CMIS -------------------------------------------------------------------------------

constexpr moved_field kCmisFields[] = {
    {0, 0, 1},     // identifier
    {75, 2, 1},    // connector
    {1, 20, 16},   // vendor
    {17, 37, 3},   // its OUI
    {20, 40, 16},  // part number
    {36, 56, 2},   // revision
    {38, 68, 16},  // serial number
    {54, 84, 8},   // date
};
constexpr std::size_t kCmisSumAt = 94;

// One sum is over the whole identity.
std::vector<uint8> sfp_page_of_cmis(const std::vector<uint8>& upper, bool has_diagnostics) {
  if (upper.empty()) return {};
  std::vector<uint8> page(kModulePageBytes);
  std::fill_n(page.begin() + kRevisionAt, kRevisionBytes, uint8{' '});
  for (const moved_field& field : kCmisFields)
    for (std::size_t i = 0; i < field.size; ++i) page[field.to + i] = byte_at(upper, field.from + i);
  page[kSfpDiagnosticsType] = has_diagnostics ? kInternalDiagnostics : uint8{0};
  const uint8 fault = sum(upper, 0, kCmisSumAt) == byte_at(upper, kCmisSumAt) ? 0 : 1;
  page[kBaseSumAt] = static_cast<uint8>(sum(page, 0, kBaseSumAt) + fault);
  page[kExtendedSumAt] = static_cast<uint8>(sum(page, 64, kExtendedSumAt) + fault);
  return page;
}

// ---- Quantities -----------------------------------------------------------------------------------------------------

// Raw numbers are in 256ths of a degree, 100 uV, 2 uA, 0.1 uW.
int32 millidegrees(double raw) { return static_cast<int32>(std::lround(raw * 1000 / 256)); }
uint32 microvolts(double raw) { return static_cast<uint32>(std::lround(raw * 100)); }
uint32 microamperes(double raw) { return static_cast<uint32>(std::lround(raw * 2)); }
uint32 microwatts(double raw) { return static_cast<uint32>(std::lround(raw / 10)); }

// A raw number by calibration, within what its two bytes can hold.
using calibrated = std::function<double(uint16)>;

double within(double value, double low, double high) { return std::isnan(value) ? low : std::clamp(value, low, high); }
double plain_signed(uint16 raw) { return static_cast<std::int16_t>(raw); }
double plain_unsigned(uint16 raw) { return raw; }

struct calibrations {
  calibrated temperature = plain_signed;
  calibrated voltage = plain_unsigned, bias = plain_unsigned, tx = plain_unsigned, rx = plain_unsigned;
};

constexpr double kMostRaw = UINT16_MAX;

// Slope, then offset.
calibrated linear(const std::vector<uint8>& page, std::size_t at, double (*plain)(uint16), double low, double high) {
  const double slope = word_at(page, at) / 256.0;
  const double offset = plain_signed(word_at(page, at + 2));
  return [=](uint16 raw) { return within(slope * plain(raw) + offset, low, high); };
}

float float_at(const std::vector<uint8>& page, std::size_t at) {
  return std::bit_cast<float>(static_cast<uint32>(word_at(page, at)) << 16 | word_at(page, at + 2));
}

constexpr std::size_t kRxCoefficientsAt = 56, kTxSlopeAt = 80, kBiasSlopeAt = 76, kTemperatureSlopeAt = 84,
                      kVoltageSlopeAt = 88;

calibrations external_calibrations(const std::vector<uint8>& page) {
  calibrations made;
  made.temperature = linear(page, kTemperatureSlopeAt, plain_signed, INT16_MIN, INT16_MAX);
  made.voltage = linear(page, kVoltageSlopeAt, plain_unsigned, 0, kMostRaw);
  made.bias = linear(page, kBiasSlopeAt, plain_unsigned, 0, kMostRaw);
  made.tx = linear(page, kTxSlopeAt, plain_unsigned, 0, kMostRaw);
  std::array<double, 5> coefficients{};
  for (std::size_t i = 0; i < coefficients.size(); ++i) coefficients[i] = float_at(page, kRxCoefficientsAt + i * 4);
  made.rx = [=](uint16 raw) {
    double value = 0;
    for (const double coefficient : coefficients) value = value * raw + coefficient;
    return within(value, 0, kMostRaw);
  };
  return made;
}

optical_constants constants_of(const std::vector<uint8>& page) {
  optical_constants made;
  made.temperature_slope = word_at(page, kTemperatureSlopeAt);
  made.temperature_offset = word_at(page, kTemperatureSlopeAt + 2);
  made.voltage_slope = word_at(page, kVoltageSlopeAt);
  made.voltage_offset = word_at(page, kVoltageSlopeAt + 2);
  made.bias_slope = word_at(page, kBiasSlopeAt);
  made.bias_offset = word_at(page, kBiasSlopeAt + 2);
  made.tx_slope = word_at(page, kTxSlopeAt);
  made.tx_offset = word_at(page, kTxSlopeAt + 2);
  for (std::size_t i = 0; i < made.rx.size(); ++i)
    made.rx[i] = static_cast<uint32>(std::lround(within(float_at(page, kRxCoefficientsAt + i * 4), 0, INT32_MAX)));
  return made;
}

// The offsets of the quantities.
struct quantity_places {
  std::size_t temperature, voltage, bias, tx, rx;
};
constexpr quantity_places kSfpValues = {96, 98, 100, 102, 104};
constexpr quantity_places kSfpLimits = {0, 8, 16, 24, 32};
constexpr quantity_places kQsfpValues = {22, 26, 42, 50, 34};    // of the lower half
constexpr quantity_places kQsfpLimitsOf3 = {0, 16, 56, 64, 48};  // of page 3
constexpr std::size_t kSfpValuesEnd = 106, kQsfpValuesEnd = 58;
constexpr std::size_t kQsfpLanes = 4, kMostCmisLanes = 8;

// The first lane is at the offsets, each other one behind the one before.
std::vector<optical_lane> lanes_at(const std::vector<uint8>& page, std::size_t count, std::size_t bias, std::size_t tx,
                                   std::size_t rx, uint32 bias_factor) {
  std::vector<optical_lane> lanes;
  for (std::size_t at = 0; at < count * 2; at += 2)
    lanes.push_back({microamperes(word_at(page, bias + at)) * bias_factor, microwatts(word_at(page, tx + at)),
                     microwatts(word_at(page, rx + at))});
  return lanes;
}

void take_values(const std::vector<uint8>& page, const quantity_places& at, const calibrations& by,
                 optical_diagnostics& to) {
  to.temperature_mc = millidegrees(by.temperature(word_at(page, at.temperature)));
  to.voltage_uv = microvolts(by.voltage(word_at(page, at.voltage)));
  to.bias_ua = microamperes(by.bias(word_at(page, at.bias)));
  to.tx_uw = microwatts(by.tx(word_at(page, at.tx)));
  to.rx_uw = microwatts(by.rx(word_at(page, at.rx)));
}

// Both pages have the limits in the order of the model.
template <typename Number>
void take_limits_of(const std::vector<uint8>& page, std::size_t at, const calibrated& by, Number (*in_units)(double),
                    optical_limits<Number>& to) {
  for (std::size_t i = 0; i < to.size(); ++i) to[i] = in_units(by(word_at(page, at + i * 2)));
}

void take_limits(const std::vector<uint8>& page, const quantity_places& at, const calibrations& by,
                 optical_diagnostics& to) {
  take_limits_of(page, at.temperature, by.temperature, millidegrees, to.temperature_limits_mc);
  take_limits_of(page, at.voltage, by.voltage, microvolts, to.voltage_limits_uv);
  take_limits_of(page, at.bias, by.bias, microamperes, to.bias_limits_ua);
  take_limits_of(page, at.tx, by.tx, microwatts, to.tx_limits_uw);
  take_limits_of(page, at.rx, by.rx, microwatts, to.rx_limits_uw);
}

void read_sfp_diagnostics(const page_reader& read, transceiver& module) {
  constexpr uint8 kInternal = 0x20, kExternal = 0x10, kHasToBeSwitchedTo = 0x04;
  constexpr std::size_t kStatus = 110;
  constexpr uint8 kTxFault = 0x04, kRxLoss = 0x02, kNotReady = 0x01;
  const uint8 type = byte_at(module.eeprom, kSfpDiagnosticsType);
  optical_diagnostics& to = module.diagnostics;
  if (!has_diagnostics(module.eeprom) || (type & (kInternal | kExternal)) == 0) return;
  to.calibration = (type & kInternal) != 0 ? 1 : 2;
  to.is_measured = true;
  const std::vector<uint8> page = (type & kHasToBeSwitchedTo) == 0 ? read(kSfpDiagnostics) : std::vector<uint8>{};
  to.is_silent = page.size() < kSfpValuesEnd || (byte_at(page, kStatus) & kNotReady) != 0;
  if (to.is_silent) return;
  calibrations by;
  if (to.calibration == 2) {
    by = external_calibrations(page);
    to.constants = constants_of(page);
  }
  take_values(page, kSfpValues, by, to);
  take_limits(page, kSfpLimits, by, to);
  if (page.size() <= kStatus) return;
  module.has_tx_fault = (page[kStatus] & kTxFault) != 0;
  module.has_rx_loss = (page[kStatus] & kRxLoss) != 0;
}

// Whether the lower half has any measurement: cables without a monitor have none.
bool has_qsfp_values(const std::vector<uint8>& lower) {
  return word_at(lower, kQsfpValues.temperature) != 0 || word_at(lower, kQsfpValues.voltage) != 0;
}

void read_qsfp_diagnostics(const page_reader& read, transceiver& module) {
  constexpr std::size_t kStatus = 2, kLosses = 3, kFaults = 4;
  constexpr uint8 kHasNoPages = 0x04, kNotReady = 0x01, kReceivers = 0x0F, kTransmitters = 0x0F;
  if (byte_at(module.eeprom, kSfpDiagnosticsType) == 0) return;
  optical_diagnostics& to = module.diagnostics;
  to.calibration = 1;
  to.is_measured = true;
  const std::vector<uint8> lower = read(kIdentity);
  to.is_silent = lower.size() < kQsfpValuesEnd || (lower[kStatus] & kNotReady) != 0;
  if (to.is_silent) return;
  take_values(lower, kQsfpValues, {}, to);
  to.lanes = lanes_at(lower, kQsfpLanes, kQsfpValues.bias, kQsfpValues.tx, kQsfpValues.rx, 1);
  module.has_rx_loss = (lower[kLosses] & kReceivers) != 0;
  module.has_tx_fault = (lower[kFaults] & kTransmitters) != 0;
  const bool has_limits = (lower[kStatus] & kHasNoPages) == 0;
  take_limits(has_limits ? read(kQsfpLimits) : std::vector<uint8>{}, kQsfpLimitsOf3, {}, to);
}

// ---- Diagnostics by CMIS --------------------------------------------------------------------------------------------

// Offsets in the lower half, and in upper pages from their first byte.
constexpr std::size_t kCmisRevision = 2, kCmisTemperature = 14, kCmisVoltage = 16, kCmisLaneCounts = 88;
constexpr std::size_t kCmisMonitors = 160 - 128, kCmisTxFaults = 135 - 128, kCmisRxLosses = 147 - 128;
constexpr std::size_t kCmisLaneTx = 154 - 128, kCmisLaneBias = 170 - 128, kCmisLaneRx = 186 - 128;
constexpr std::size_t kCmisLanesEnd = 202 - 128;
constexpr quantity_places kCmisLimitPlaces = {0, 8, 184 - 128, 176 - 128, 192 - 128};

bool has_cmis_values(const std::vector<uint8>& lower) {
  return word_at(lower, kCmisTemperature) != 0 || word_at(lower, kCmisVoltage) != 0;
}

bool has_cmis_pages(const std::vector<uint8>& lower) { return (byte_at(lower, kCmisRevision) & 0x80) == 0; }

// Media lanes of the first application.
std::size_t cmis_lane_count(const std::vector<uint8>& lower) {
  const std::size_t count = byte_at(lower, kCmisLaneCounts) & 0x0FU;
  return count >= 1 && count <= kMostCmisLanes ? count : kMostCmisLanes;
}

// The unit of bias is 2 uA times a power of 2.
uint32 cmis_bias_factor(const std::vector<uint8>& abilities) {
  const uint32 power = byte_at(abilities, kCmisMonitors) >> 3 & 3U;
  return power < 3 ? 1U << power : 1U;
}

void take_cmis_lanes(const page_reader& read, const std::vector<uint8>& lower, transceiver& module) {
  const std::vector<uint8> page = read(kCmisLanes);
  if (page.size() < kCmisLanesEnd) return;
  const uint32 factor = cmis_bias_factor(read(kCmisAbilities));
  const std::size_t count = cmis_lane_count(lower);
  const auto mask = static_cast<uint8>((1U << count) - 1);
  optical_diagnostics& to = module.diagnostics;
  to.lanes = lanes_at(page, count, kCmisLaneBias, kCmisLaneTx, kCmisLaneRx, factor);
  to.bias_ua = to.lanes.front().bias_ua;
  to.tx_uw = to.lanes.front().tx_uw;
  to.rx_uw = to.lanes.front().rx_uw;
  if (count == 1) to.lanes.clear();
  module.has_tx_fault = (page[kCmisTxFaults] & mask) != 0;
  module.has_rx_loss = (page[kCmisRxLosses] & mask) != 0;
  take_limits(read(kCmisLimits), kCmisLimitPlaces, {}, to);
  for (uint32& limit : to.bias_limits_ua) limit *= factor;
}

void read_cmis_diagnostics(const page_reader& read, transceiver& module) {
  if (byte_at(module.eeprom, kSfpDiagnosticsType) == 0) return;
  optical_diagnostics& to = module.diagnostics;
  to.calibration = 1;
  to.is_measured = true;
  const std::vector<uint8> lower = read(kIdentity);
  to.is_silent = lower.size() < kModulePageBytes;
  if (to.is_silent) return;
  take_limits({}, kCmisLimitPlaces, {}, to);
  to.temperature_mc = millidegrees(plain_signed(word_at(lower, kCmisTemperature)));
  to.voltage_uv = microvolts(word_at(lower, kCmisVoltage));
  to.bias_ua = to.tx_uw = to.rx_uw = 0;
  if (has_cmis_pages(lower)) take_cmis_lanes(read, lower, module);
}

}  // namespace

std::optional<transceiver> read_module(const page_reader& read) {
  std::vector<uint8> page = read(kIdentity);
  if (is_blank(page)) return std::nullopt;
  transceiver module;
  module.type = FCOT_TYPE_SFP;
  switch (layout_of(page.front())) {
    case page_layout::sfp: module.eeprom = std::move(page); break;
    case page_layout::qsfp: module.eeprom = sfp_page_of(read(kQsfpIdentity), has_qsfp_values(page)); break;
    case page_layout::cmis: module.eeprom = sfp_page_of_cmis(read(kQsfpIdentity), has_cmis_values(page)); break;
    case page_layout::none: break;
  }
  module.supported = !module.eeprom.empty();
  if (!module.supported) module.type = 0;
  return module;
}

void read_module_diagnostics(const page_reader& read, transceiver& module) {
  if (module.eeprom.empty()) return;
  const page_layout layout = layout_of(module.eeprom.front());
  if (layout == page_layout::sfp) read_sfp_diagnostics(read, module);
  if (layout == page_layout::qsfp) read_qsfp_diagnostics(read, module);
  if (layout == page_layout::cmis) read_cmis_diagnostics(read, module);
}

}  // namespace host
