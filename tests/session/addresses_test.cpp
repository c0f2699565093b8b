// "show ip interface" and "show ipv6 interface" of a switch file: tables of rows.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;

outcome run_campus(const std::string& line) {
  return run_shell_on(shipped_switch("campus.yaml"), {"--clock", "1700000000", "-c", line});
}

TEST(Addresses, BriefHasARowForEach) {
  const outcome result = run_campus("show ip interface mgmt 0, ethernet 2/3-4 brief");
  EXPECT_EQ(result.out,
            "Interface    Address          State  Flags\n"
            "mgmt0        192.0.2.10/24    up     --\n"
            "Ethernet2/3  198.51.100.1/30  up     --\n"
            "Ethernet2/4  198.51.100.5/30  down   --\n");
  EXPECT_EQ(result.exit_code, 0);
}

TEST(Addresses, LongFormHasABlockForEachInterface) {
  EXPECT_EQ(run_campus("show ipv6 interface").out,
            "Ethernet2/3 is up, MTU 9216\n"
            "  Address 2001:db8:0:3::1/64\n"
            "    valid forever, preferred forever\n");
}

TEST(Addresses, InterfacesWithoutAddressesAreNone) {
  const outcome result = run_campus("show ip interface ethernet 1/1 brief");
  EXPECT_EQ(result.out, "There are no IPv4 addresses.\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(run_campus("show ip interface ethernet 1/1 | json").out, HasSubstr("\"addresses\":[],\"messages\":[],"));
}

TEST(Addresses, RecordsAreTyped) {
  rapidjson::Document document;
  document.Parse(run_campus("show ipv6 interface | json").out.c_str());
  ASSERT_FALSE(document.HasParseError());
  EXPECT_STREQ(document["display"].GetString(), "ip_addresses");
  ASSERT_EQ(document["addresses"].Size(), 1U);
  const auto& record = document["addresses"][0];
  EXPECT_STREQ(record["interface"].GetString(), "Ethernet2/3");
  EXPECT_STREQ(record["ip_address"].GetString(), "2001:db8:0:3::1");
  EXPECT_EQ(record["prefix_length_bits"].GetInt(), 64);
  EXPECT_STREQ(record["state"].GetString(), "up");
  EXPECT_EQ(record["mtu_bytes"].GetInt(), 9216);
  EXPECT_TRUE(record["valid_lifetime_seconds"].IsNull());
  EXPECT_TRUE(record["address_flags"].IsNull());
}

TEST(Addresses, PipesWorkOnRows) {
  EXPECT_EQ(run_campus("show ip interface mgmt 0, ethernet 2/3-4 brief | sort Address | columns Address,State").out,
            "Address          State\n"
            "192.0.2.10/24    up\n"
            "198.51.100.1/30  up\n"
            "198.51.100.5/30  down\n");
  EXPECT_EQ(run_campus("show ip interface ethernet 2/3-4 brief | count").out, "2\n");
  EXPECT_EQ(run_campus("show ip interface mgmt 0, ethernet 2/3-4 brief | rows down").out,
            "Interface    Address          State  Flags\n"
            "Ethernet2/4  198.51.100.5/30  down   --\n");
}

TEST(Addresses, AnInterfaceThatThereIsNotIsReported) {
  const outcome result = run_campus("show ip interface ethernet 9/99 brief");
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_THAT(result.err, HasSubstr("9/99"));
}

}  // namespace
}  // namespace session
