#include "c_headers.h"

#include <gtest/gtest.h>

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
