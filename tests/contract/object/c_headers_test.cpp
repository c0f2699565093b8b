#include "c_headers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "c_headers_both.h"
#include "platform/clear_counters.h"
#include "platform/eth_statistics.h"
#include "platform/paraminfo.h"
#include "platform/port_manager.h"
#include "pmcli/interface.h"

namespace pmcli_test {
namespace {

TEST(CHeaders, CReadsWhatCppWrites) {
  pm_port_info_t port{};
  port.if_index = 0x01020304;
  port.admin_rxbufsize = 9216;
  statscl_portcl_stats_msg_t stats{};
  stats.mac.errors.input_errors = 0x0102030405060708;

  EXPECT_EQ(c_reads_be32(&port), 0x01020304U);
  EXPECT_EQ(c_reads_be16(&port), 9216U);
  EXPECT_EQ(c_reads_be64(&stats), 0x0102030405060708U);
}

TEST(CHeaders, WireIntegersTravelMostSignificantByteFirst) {
  pm_port_info_t port{};
  port.if_index = 0x01020304;

  const auto* const bytes = reinterpret_cast<const uint8*>(&port);
  EXPECT_EQ(bytes[0], 1);
  EXPECT_EQ(bytes[3], 4);
}

using Bytes = std::vector<int>;

template <typename Member>
Bytes bytes_of(const Member& member) {
  const auto* const first = reinterpret_cast<const uint8*>(&member);
  return Bytes(first, first + sizeof member);
}

// The records that one source fills in both languages.
struct filled_records {
  pm_port_info_t port{};
  statscl_portcl_stats_msg_t stats{};
  pm_clear_status_t status{};
};

filled_records filled_by_c() {
  filled_records records;
  c_writes(&records.port, &records.stats, &records.status);
  return records;
}

filled_records filled_by_cpp() {
  filled_records records;
  fill_port_record(&records.port);
  fill_statistics(&records.stats);
  fill_clear_status(&records.status);
  return records;
}

TEST(CHeaders, SettersWriteTheMostSignificantByteFirstInBothLanguages) {
  for (const filled_records& records : {filled_by_c(), filled_by_cpp()}) {
    EXPECT_EQ(bytes_of(records.port.if_index), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(bytes_of(records.port.admin_rxbufsize), (Bytes{0x24, 0x01}));
    EXPECT_EQ(bytes_of(records.stats.mac.errors.input_errors), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(bytes_of(records.status.status), (Bytes{0xFF, 0xFF, 0xFF, 0xFE}));
  }
}

TEST(CHeaders, SettersWriteNothingElse) {
  filled_records records = filled_by_c();
  records.port.if_index = 0;
  records.port.admin_rxbufsize = 0;
  records.stats.mac.errors.input_errors = 0;
  records.status.status = 0;

  const auto is_zero = [](int byte) { return byte == 0; };
  const Bytes port = bytes_of(records.port), stats = bytes_of(records.stats), status = bytes_of(records.status);
  EXPECT_TRUE(std::all_of(port.begin(), port.end(), is_zero));
  EXPECT_TRUE(std::all_of(stats.begin(), stats.end(), is_zero));
  EXPECT_TRUE(std::all_of(status.begin(), status.end(), is_zero));
}

TEST(CHeaders, GettersReadWhatTheMembersHoldInBothLanguages) {
  filled_records records;
  records.port.if_index = 0xA1B2C3D4;
  records.port.admin_rxbufsize = 0xFFFE;
  records.stats.mac.errors.input_errors = 0xF1E2D3C4B5A69788;
  records.status.status = -1;

  EXPECT_EQ(c_reads_if_index(&records.port), 0xA1B2C3D4U);
  EXPECT_EQ(index_of(&records.port), 0xA1B2C3D4U);
  EXPECT_EQ(c_reads_mtu(&records.port), 0xFFFE);
  EXPECT_EQ(mtu_of(&records.port), 0xFFFE);
  EXPECT_EQ(c_reads_errors(&records.stats), 0xF1E2D3C4B5A69788U);
  EXPECT_EQ(errors_of(&records.stats), 0xF1E2D3C4B5A69788U);
  EXPECT_EQ(c_reads_status(&records.status), -1);
  EXPECT_EQ(status_of(&records.status), -1);
}

TEST(CHeaders, RecordsHaveOneSizeInBothLanguages) {
  EXPECT_EQ(c_size_of_port_record(), sizeof(pm_port_info_t));
  EXPECT_EQ(c_size_of_display_data(), sizeof(pm_cli_common_show_intf_data_t));
  EXPECT_EQ(c_size_of_parameter_block(), sizeof(paraminfo_t));
}

TEST(CHeaders, CCallsTheLibrary) {
  EXPECT_EQ(c_calls_the_library("y"), 1U);
  EXPECT_EQ(c_calls_the_library("x"), 0U);
  EXPECT_STREQ(c_port_mode(0x200), "IPS");
}

}  // namespace
}  // namespace pmcli_test
