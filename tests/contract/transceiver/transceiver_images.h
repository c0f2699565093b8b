// Images of transceivers with known fields.
#pragma once

#include <cstring>
#include <string>

#include "platform/misc_info.h"
#include "platform/transceiver.h"
#include "support/recording_platform.h"

namespace pmcli_test {

// A blank-padded field.
template <std::size_t Width>
void put(char (&field)[Width], const std::string& text) {
  std::memset(field, ' ', Width);
  std::memcpy(field, text.data(), std::min(Width, text.size()));
}

inline lc_fcot_info_t sfp_image() {
  lc_fcot_info_t image{};
  image.xcvrId = 3;
  image.xcvrExtdId = 4;
  image.brIn100Mhz = 103;
  put(image.VendorName, "LIGHTWORKS");
  put(image.VendorPN, "LW-10G-SR");
  put(image.VendorRev, "A1");
  put(image.VendorSN, "LW0123456789");
  return image;
}

inline lc_fcot_x2_info_t x2_image() {
  lc_fcot_x2_info_t image{};
  image.xcvr_type = 1;
  put(image.vendor_name, "WAVEMAKERS");
  put(image.vendor_pn, "WM-X2-LR");
  put(image.vendor_rev, "B");
  put(image.vendor_ser_no, "WM987");
  image.max_speed = 10000;
  return image;
}

inline pm_fcot_res_t sfp_record(uint8 type = FCOT_TYPE_SFP, uint8 supported = 1) {
  pm_fcot_res_t record;
  std::memset(&record, 0, sizeof record);
  record.is_fcot_supported = supported;
  record.fi.fcot_info = sfp_image();
  record.fcot_type = type;
  return record;
}

inline pm_fcot_res_t x2_record() {
  pm_fcot_res_t record;
  std::memset(&record, 0, sizeof record);
  record.is_fcot_supported = 1;
  record.fi.x2_fcot_info = x2_image();
  record.fcot_type = FCOT_TYPE_X2;
  return record;
}

// The answer of a line card about one port: entries as bytes.
inline octets misc_info(if_index_t if_index, const octets& entries, uint16 num_entries = 1, uint32 status = 0) {
  const auto put32 = [](octets* to, uint32 value) {
    for (const int shift : {24, 16, 8, 0}) to->push_back(static_cast<uint8>(value >> shift));
  };
  octets answer = {0, 1};
  put32(&answer, if_index);
  put32(&answer, status);
  answer.push_back(static_cast<uint8>(num_entries >> 8));
  answer.push_back(static_cast<uint8>(num_entries));
  answer.insert(answer.end(), entries.begin(), entries.end());
  return answer;
}

// An entry with the run-time state.
inline octets state_entry(const octets& state) {
  octets entry = {0, 1, 0, static_cast<uint8>(state.size())};
  entry.insert(entry.end(), state.begin(), state.end());
  return entry;
}

// Good, present, no loss, no fault, in sync, read, both checksums good, monitoring type 104.
inline const octets kGoodState = {0, 1, 0, 0, 1, 1, 1, 1, 104};

// The diagnostics of a healthy module, internally calibrated.
inline mts_get_sfp_diag_info_t healthy_diagnostics() {
  mts_get_sfp_diag_info_t diagnostics{};
  diagnostics.calib_type = 1;
  diagnostics.temp = 35250;
  diagnostics.temp_hi_alarm = 75000;
  diagnostics.temp_lo_alarm = -5000;
  diagnostics.temp_hi_warn = 70000;
  diagnostics.temp_lo_warn = 0;
  diagnostics.volt = 3300000;
  diagnostics.volt_hi_alarm = 3630000;
  diagnostics.volt_lo_alarm = 2970000;
  diagnostics.volt_hi_warn = 3465000;
  diagnostics.volt_lo_warn = 3135000;
  diagnostics.curr = 6500;
  diagnostics.current_hi_alarm = 12000;
  diagnostics.current_lo_alarm = 2000;
  diagnostics.current_hi_warn = 11500;
  diagnostics.current_lo_warn = 3000;
  diagnostics.tx_pwr = 1000;
  diagnostics.tx_pwr_hi_alarm = 10000;
  diagnostics.tx_pwr_lo_alarm = 100;
  diagnostics.tx_pwr_hi_warn = 1000;
  diagnostics.tx_pwr_lo_warn = 10;
  diagnostics.rx_pwr = 100;
  diagnostics.rx_pwr_hi_alarm = 10000;
  diagnostics.rx_pwr_lo_alarm = 10;
  diagnostics.rx_pwr_hi_warn = 1000;
  diagnostics.rx_pwr_lo_warn = 100;
  return diagnostics;
}

}  // namespace pmcli_test
