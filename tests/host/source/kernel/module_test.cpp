// Modules made of pages of their memory: identities, calibrations, pages that are short or lie.
#include "source/kernel/module.h"

#include <gtest/gtest.h>

#include <cstring>

#include "host/source/kernel/module_page.h"
#include "host/source/kernel/recorded_switch.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "switch/optics.h"

namespace host {
namespace {

constexpr module_place kFirst{0x50, 0, 0}, kSecond{0x51, 0, 0}, kUpper{0x50, 0, 128};

page_reader reader_of(const module_pages& pages) {
  return [&pages](const module_place& place) {
    const auto found = pages.find(place);
    return found == pages.end() ? std::vector<uint8>{} : found->second;
  };
}

transceiver module_of(const module_pages& pages) {
  auto module = read_module(reader_of(pages));
  if (!module) throw std::runtime_error("no module");
  read_module_diagnostics(reader_of(pages), *module);
  return *module;
}

module_pages sfp_pages() { return {{kFirst, sfp_identity()}, {kSecond, sfp_diagnostics_page()}}; }

// ---- Identity -------------------------------------------------------------------------------------------------------

TEST(KernelModule, ThePageOfAnSfpIsTheIdentity) {
  const transceiver module = module_of(sfp_pages());
  EXPECT_TRUE(module.supported);
  EXPECT_EQ(module.type, FCOT_TYPE_SFP);
  EXPECT_EQ(module.eeprom, sfp_identity());
  EXPECT_EQ(module.has_rx_loss, false);
  EXPECT_FALSE(module.has_tx_fault);
}

TEST(KernelModule, ThePageOfAQsfpIsPutInTheLayoutOfAnSfp) {
  const std::vector<uint8> page = module_of(qsfp_pages()).eeprom;
  ASSERT_EQ(page.size(), 128U);
  EXPECT_EQ(page[0], 0x0D);
  EXPECT_EQ(page[2], 0x0C);
  EXPECT_EQ(page[12], 103);
  EXPECT_EQ(page[16], 5) << "55 m in tens of metres";
  EXPECT_EQ(text_at(page, 20, 16), "WIDE LIGHT      ");
  EXPECT_EQ(text_at(page, 40, 16), "WL-40G-SR4      ");
  EXPECT_EQ(text_at(page, 56, 4), "D2  ");
  EXPECT_EQ(text_at(page, 68, 16), "WL000456        ");
  EXPECT_EQ(text_at(page, 84, 8), "250607  ");
  EXPECT_EQ(page[63], sum_of(page, 0, 63));
  EXPECT_EQ(page[95], sum_of(page, 64, 95));
}

TEST(KernelModule, AWrongSumOfAQsfpStaysWrong) {
  module_pages pages = qsfp_pages();
  pages[kUpper][40] ^= 1;
  const std::vector<uint8> page = module_of(pages).eeprom;
  EXPECT_NE(page[63], sum_of(page, 0, 63));
  EXPECT_EQ(page[95], sum_of(page, 64, 95));
}

TEST(KernelModule, NoPageOrABlankOneIsNoModule) {
  EXPECT_FALSE(read_module(reader_of({})));
  for (const uint8 byte : std::initializer_list<uint8>{0x00, 0xFF}) {
    const module_pages blank = {{kFirst, std::vector<uint8>(128, byte)}};
    EXPECT_FALSE(read_module(reader_of(blank))) << unsigned{byte};
  }
}

TEST(KernelModule, AModuleOfAnotherLayoutIsNotSupported) {
  for (const uint8 identifier : std::initializer_list<uint8>{0x06, 0x1A, 0x00}) {
    module_pages pages = sfp_pages();
    pages[kFirst][0] = identifier;
    const transceiver module = module_of(pages);
    EXPECT_FALSE(module.supported) << unsigned{identifier};
    EXPECT_TRUE(module.eeprom.empty());
    EXPECT_EQ(module.diagnostics.calibration, 0U);
  }
}

TEST(KernelModule, AQsfpWithoutItsUpperPageIsNotSupported) {
  for (const uint8 identifier : std::initializer_list<uint8>{0x0D, 0x18}) {
    module_pages pages = qsfp_pages();
    pages[kFirst][0] = identifier;
    pages.erase(kUpper);
    const transceiver module = module_of(pages);
    EXPECT_FALSE(module.supported) << unsigned{identifier};
    EXPECT_EQ(module.diagnostics.calibration, 0U);
  }
}

// ---- Diagnostics ----------------------------------------------------------------------------------------------------

TEST(KernelModule, WithoutDiagnosticsNothingIsRead) {
  module_pages pages = sfp_pages();
  pages[kFirst][92] = 0;
  int reads = 0;
  auto module = *read_module(reader_of(pages));
  read_module_diagnostics(
      [&reads](const module_place&) {
        ++reads;
        return std::vector<uint8>{};
      },
      module);
  EXPECT_EQ(reads, 0);
  EXPECT_EQ(module.diagnostics.calibration, 0U);
}

TEST(KernelModule, ValuesOfAnExternalCalibrationAreCalibrated) {
  module_pages pages = sfp_pages();
  pages[kFirst][92] = 0x58;
  std::vector<uint8>& page = pages[kSecond];
  const auto put_float = [&page](std::size_t at, float number) {
    uint32 bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    put_word(page, at, static_cast<uint16>(bits >> 16));
    put_word(page, at + 2, static_cast<uint16>(bits));
  };
  put_float(68, 2.0F);         // rx: 2 x + 1
  put_float(72, 1.0F);         //
  put_word(page, 76, 0x0200);  // bias: 2 x
  put_word(page, 80, 0x0080);  // tx: x / 2 + 10
  put_word(page, 82, 10);
  put_word(page, 84, 0x0180);  // temperature: 1.5 x + 1 C
  put_word(page, 86, 256);
  put_word(page, 88, 0x0100);  // voltage: x - 10 mV
  put_word(page, 90, 0xFF9C);
  put_word(page, 96, 0x1400);  // 20 C
  put_word(page, 98, 33100);
  put_word(page, 100, 1500);
  put_word(page, 102, 9980);
  put_word(page, 104, 2000);
  const optical_diagnostics reported = module_of(pages).diagnostics;
  EXPECT_EQ(reported.calibration, 2U);
  EXPECT_EQ(reported.temperature_mc, 31'000);
  EXPECT_EQ(reported.voltage_uv, 3'300'000U);
  EXPECT_EQ(reported.bias_ua, 6'000U);
  EXPECT_EQ(reported.tx_uw, 500U);
  EXPECT_EQ(reported.rx_uw, 400U);
  EXPECT_EQ(reported.temperature_limits_mc[1], -6'500) << "1.5 x -5 + 1 C";
  EXPECT_EQ(reported.constants.temperature_slope, 0x180U);
  EXPECT_EQ(reported.constants.temperature_offset, 256U);
  EXPECT_EQ(reported.constants.bias_slope, 0x200U);
  EXPECT_EQ(reported.constants.tx_offset, 10U);
  EXPECT_EQ(reported.constants.rx, (std::array<uint32, 5>{0, 0, 0, 2, 1}));
}

TEST(KernelModule, CalibrationsThatAreNoNumbersAreSafe) {
  for (const uint16 bits :
       std::initializer_list<uint16>{0x7FC0, 0x7F80, 0xFF80, 0x7F7F, 0xFF7F}) {  // not a number, infinite, the largest
    module_pages pages = sfp_pages();
    pages[kFirst][92] = 0x58;
    for (std::size_t at = 56; at < 96; at += 2) put_word(pages[kSecond], at, bits);
    const optical_diagnostics reported = module_of(pages).diagnostics;
    EXPECT_LE(reported.rx_uw, 6'554U);
    EXPECT_LE(reported.tx_uw, 6'554U);
    EXPECT_LE(reported.temperature_mc, 128'000);
  }
}

TEST(KernelModule, AnSfpThatIsNotReadyOrCutIsSilent) {
  module_pages not_ready = sfp_pages();
  not_ready[kSecond][110] = 0x01;
  EXPECT_TRUE(module_of(not_ready).diagnostics.is_silent);
  for (std::size_t length = 0; length < 128; ++length) {
    module_pages cut = sfp_pages();
    cut[kSecond].resize(length);
    const transceiver module = module_of(cut);
    EXPECT_EQ(module.diagnostics.calibration, 1U);
    EXPECT_EQ(module.diagnostics.is_silent, length < 106) << length;
    EXPECT_EQ(module.diagnostics.temperature_mc == 38'500, length >= 106) << length;
  }
}

TEST(KernelModule, PagesCutAtEachByteAreSafe) {
  for (std::size_t length = 0; length < 128; ++length) {
    for (const auto& [place, whole] : qsfp_pages()) {
      module_pages pages = qsfp_pages();
      pages[place].resize(length);
      pages[place].shrink_to_fit();
      const auto module = read_module(reader_of(pages));
      EXPECT_EQ(module.has_value(), place != kFirst || length > 0) << length;
    }
    module_pages pages = sfp_pages();
    pages[kFirst].resize(length);
    pages[kFirst].shrink_to_fit();
    if (length == 0) continue;
    EXPECT_EQ(module_of(pages).diagnostics.calibration, length > 92 ? 1U : 0U) << length;
  }
}

TEST(KernelModule, FaultsAndLossesAreThoseOfTheModule) {
  module_pages pages = sfp_pages();
  pages[kSecond][110] = 0x06;
  EXPECT_TRUE(module_of(pages).has_tx_fault);
  EXPECT_EQ(module_of(pages).has_rx_loss, true);
  module_pages lanes = qsfp_pages();
  lanes[kFirst][3] = 0x04;
  EXPECT_EQ(module_of(lanes).has_rx_loss, true);
  EXPECT_FALSE(module_of(lanes).has_tx_fault);
}

TEST(KernelModule, LanesOfAQsfpAreMeasuredEach) {
  const optical_diagnostics module = module_of(qsfp_pages()).diagnostics;
  EXPECT_EQ(module.lanes,
            (std::vector<optical_lane>{{7'000, 700, 600}, {7'200, 710, 610}, {7'400, 720, 620}, {7'600, 730, 630}}));
  EXPECT_TRUE(module_of(sfp_pages()).diagnostics.lanes.empty());
}

TEST(KernelModule, ALaneExceedsTheLimitsOfItsModule) {
  optical_diagnostics module;
  module.bias_limits_ua = {10'000, 1'000, 9'000, 2'000};
  module.tx_limits_uw = {900, 30, 800, 40};
  module.rx_limits_uw = {599, 10, 598, 20};
  struct example {
    optical_lane lane;
    uint32 bias, tx, rx;
  };
  const example examples[] = {
      {{9'000, 800, 598}, 0, 0, 0}, {{10'001, 901, 600}, 1, 1, 1}, {{9'001, 801, 599}, 2, 2, 2},
      {{1'999, 39, 19}, 3, 3, 3},   {{999, 29, 9}, 4, 4, 4},       {{5'000, 500, 0}, 0, 0, 4},
  };
  for (const example& it : examples) {
    const auto [alarms, warnings] = exceeded_by(it.lane, module);
    EXPECT_EQ(mark_of_bits(alarms, warnings, kBiasHigh), it.bias) << it.lane.bias_ua;
    EXPECT_EQ(mark_of_bits(alarms, warnings, kTxHigh), it.tx) << it.lane.tx_uw;
    EXPECT_EQ(mark_of_bits(alarms, warnings, kRxHigh), it.rx) << it.lane.rx_uw;
  }
}

// ---- CMIS -----------------------------------------------------------------------------------------------------------

constexpr module_place kCmisAbilitiesPage{0x50, 1, 128}, kCmisLimitsPage{0x50, 2, 128}, kCmisLanesPage{0x50, 0x11, 128};

void put_word_at(std::vector<uint8>& page, std::size_t at, unsigned word) {
  page[at] = static_cast<uint8>(word >> 8);
  page[at + 1] = static_cast<uint8>(word);
}

void put_words_at(std::vector<uint8>& page, std::size_t at, std::initializer_list<unsigned> words) {
  for (const unsigned word : words) {
    put_word_at(page, at, word);
    at += 2;
  }
}

void put_text_at(std::vector<uint8>& page, std::size_t at, const std::string& text) {
  std::copy(text.begin(), text.end(), page.begin() + static_cast<std::ptrdiff_t>(at));
}

// A QSFP-DD with four lanes of fibre, whose bias is in units of 4 uA. Pages are numbered from byte 128.
module_pages cmis_pages() {
  std::vector<uint8> lower(128), upper(128), abilities(128), limits(128), lanes(128);
  lower[0] = upper[0] = 0x18;
  lower[1] = 0x40;
  put_word_at(lower, 14, 0x2680);  // 38.5 C
  put_word_at(lower, 16, 33'000);  // 3.3 V
  lower[88] = 0x84;                // 8 lanes of the host, 4 of the fibre
  put_text_at(upper, 129 - 128, "EIGHT LANES     ");
  put_text_at(upper, 148 - 128, "EL-400G-DR4     ");
  put_text_at(upper, 164 - 128, "B1");
  put_text_at(upper, 166 - 128, "EL000789        ");
  put_text_at(upper, 182 - 128, "260102  ");
  upper[203 - 128] = 0x0C;
  upper[222 - 128] = sum_of(upper, 0, 94);
  abilities[160 - 128] = 0x0F;                                      // all monitors, bias times 2
  put_words_at(limits, 0, {0x4B00, 0xFB00, 0x4600, 0x0000});        // 75, -5, 70, 0 C
  put_words_at(limits, 8, {36'300, 29'700, 34'650, 31'350});        // V
  put_words_at(limits, 176 - 128, {20'000, 1'000, 15'000, 2'000});  // 2 mW, 100 uW, 1.5 mW, 200 uW sent
  put_words_at(limits, 184 - 128, {5'000, 500, 4'500, 1'000});      // 20, 2, 18, 4 mA
  put_words_at(limits, 192 - 128, {30'000, 100, 25'000, 200});      // 3 mW, 10 uW, 2.5 mW, 20 uW received
  put_words_at(lanes, 154 - 128, {10'000, 10'100, 10'200, 900, 9, 9, 9, 9});
  put_words_at(lanes, 170 - 128, {2'000, 2'100, 2'200, 5'001, 9, 9, 9, 9});
  put_words_at(lanes, 186 - 128, {8'000, 8'100, 8'200, 0, 9, 9, 9, 9});
  return {{kFirst, lower},
          {kUpper, upper},
          {kCmisAbilitiesPage, abilities},
          {kCmisLimitsPage, limits},
          {kCmisLanesPage, lanes}};
}

TEST(KernelModule, TheIdentityByCmisIsPutInTheLayoutOfAnSfp) {
  const transceiver module = module_of(cmis_pages());
  EXPECT_TRUE(module.supported);
  const std::vector<uint8>& page = module.eeprom;
  ASSERT_EQ(page.size(), 128U);
  EXPECT_EQ(page[0], 0x18);
  EXPECT_EQ(page[2], 0x0C);
  EXPECT_EQ(text_at(page, 20, 16), "EIGHT LANES     ");
  EXPECT_EQ(text_at(page, 40, 16), "EL-400G-DR4     ");
  EXPECT_EQ(text_at(page, 56, 4), "B1  ");
  EXPECT_EQ(text_at(page, 68, 16), "EL000789        ");
  EXPECT_EQ(text_at(page, 84, 8), "260102  ");
  EXPECT_EQ(page[63], sum_of(page, 0, 63));
  EXPECT_EQ(page[95], sum_of(page, 64, 95));
  module_pages wrong = cmis_pages();
  wrong[kUpper][222 - 128] ^= 1;
  const std::vector<uint8> other = module_of(wrong).eeprom;
  EXPECT_NE(other[63], sum_of(other, 0, 63));
}

TEST(KernelModule, DiagnosticsByCmisHaveLanes) {
  const transceiver module = module_of(cmis_pages());
  const optical_diagnostics& values = module.diagnostics;
  EXPECT_EQ(values.calibration, 1U);
  EXPECT_TRUE(values.is_measured);
  EXPECT_EQ(values.temperature_mc, 38'500);
  EXPECT_EQ(values.voltage_uv, 3'300'000U);
  EXPECT_EQ(values.lanes, (std::vector<optical_lane>{
                              {8'000, 1'000, 800}, {8'400, 1'010, 810}, {8'800, 1'020, 820}, {20'004, 90, 0}}));
  EXPECT_EQ(values.bias_ua, 8'000U) << "of the first lane";
  EXPECT_EQ(values.tx_uw, 1'000U);
  EXPECT_EQ(values.rx_uw, 800U);
  EXPECT_EQ(values.temperature_limits_mc, (optical_limits<int32>{75'000, -5'000, 70'000, 0}));
  EXPECT_EQ(values.voltage_limits_uv, (optical_limits<uint32>{3'630'000, 2'970'000, 3'465'000, 3'135'000}));
  EXPECT_EQ(values.bias_limits_ua, (optical_limits<uint32>{20'000, 2'000, 18'000, 4'000}));
  EXPECT_EQ(values.tx_limits_uw, (optical_limits<uint32>{2'000, 100, 1'500, 200}));
  EXPECT_EQ(values.rx_limits_uw, (optical_limits<uint32>{3'000, 10, 2'500, 20}));
  const auto [alarms, warnings] = exceeded_by(values.lanes[3], values);
  EXPECT_EQ(mark_of_bits(alarms, warnings, kBiasHigh), 1U);
  EXPECT_EQ(mark_of_bits(alarms, warnings, kTxHigh), 4U);
  EXPECT_EQ(mark_of_bits(alarms, warnings, kRxHigh), 4U);
  EXPECT_FALSE(module.has_tx_fault);
  EXPECT_EQ(module.has_rx_loss, false);
}

TEST(KernelModule, FaultsByCmisAreThoseOfItsLanes) {
  module_pages pages = cmis_pages();
  pages[kCmisLanesPage][135 - 128] = 0x08;
  pages[kCmisLanesPage][147 - 128] = 0x10;
  EXPECT_TRUE(module_of(pages).has_tx_fault);
  EXPECT_EQ(module_of(pages).has_rx_loss, false) << "the fifth lane is not used";
}

TEST(KernelModule, ByCmisWithoutPagesThereAreNoLanes) {
  module_pages pages = cmis_pages();
  pages[kFirst][2] = 0x80;
  const optical_diagnostics values = module_of(pages).diagnostics;
  EXPECT_EQ(values.temperature_mc, 38'500);
  EXPECT_TRUE(values.lanes.empty());
  EXPECT_EQ(values.tx_uw, 0U);
  EXPECT_EQ(values.tx_limits_uw, (optical_limits<uint32>{}));
  pages[kFirst][14] = pages[kFirst][15] = pages[kFirst][16] = pages[kFirst][17] = 0;
  EXPECT_EQ(module_of(pages).diagnostics.calibration, 0U) << "a cable";
}

TEST(KernelModule, PagesByCmisCutAtEachByteAreSafe) {
  for (const module_place& place : {kFirst, kUpper, kCmisAbilitiesPage, kCmisLimitsPage, kCmisLanesPage}) {
    for (std::size_t size = 0; size < 128; ++size) {
      module_pages pages = cmis_pages();
      pages[place].resize(size);
      const auto module = read_module(reader_of(pages));
      if (!module) continue;
      transceiver whole = *module;
      read_module_diagnostics(reader_of(pages), whole);
      EXPECT_LE(whole.diagnostics.lanes.size(), 8U);
    }
  }
}

TEST(KernelModule, AQsfpCableWithoutAMonitorHasNoDiagnostics) {
  module_pages pages = qsfp_pages();
  std::fill(pages[kFirst].begin() + 22, pages[kFirst].begin() + 58, uint8{0});
  EXPECT_EQ(module_of(pages).diagnostics.calibration, 0U);
}

TEST(KernelModule, AQsfpWithoutPagesHasNoLimitsAndPassesNone) {
  module_pages pages = qsfp_pages();
  pages[kFirst][2] = 0x04;
  interface port;
  port.module_in_port = module_of(pages);
  EXPECT_EQ(port.module_in_port->diagnostics.temperature_limits_mc, (optical_limits<int32>{}));
  EXPECT_EQ(read_optics(port, 0).alarms, 0U);
  EXPECT_EQ(read_optics(port, 0).warnings, 0U);
}

// What is measured is shown as it is: also of a port that is down, under load and at any time.
TEST(KernelModule, MeasuredValuesDoNotDrift) {
  interface port;
  port.module_in_port = module_of(sfp_pages());
  port.settings.admin_state = PM_PORT_STATE_DOWN;
  port.oper_state = PM_PORT_STATE_DOWN;
  port.oper_speed_mbps = 1000;
  port.stats.in_bytes_per_second = 125'000'000;
  for (const uint32 now : {0U, 5'400U, 10'800U}) {
    const optical_reading reading = read_optics(port, now);
    EXPECT_EQ(reading.temperature_mc, 38'500);
    EXPECT_EQ(reading.bias_ua, 6'000U);
    EXPECT_EQ(reading.tx_uw, 500U);
    EXPECT_EQ(reading.rx_uw, 400U);
  }
}

}  // namespace
}  // namespace host
