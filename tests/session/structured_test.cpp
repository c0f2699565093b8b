// "| json": one typed document for each command.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <set>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::EndsWith;

rapidjson::Document parse(const outcome& result) {
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  EXPECT_FALSE(document.HasParseError()) << result.out;
  return document;
}

rapidjson::Document run_json(const std::string& command) { return parse(run_command(command + " | json")); }

std::set<std::string> keys_of(const rapidjson::Value& object) {
  std::set<std::string> keys;
  for (const auto& member : object.GetObject()) keys.insert(member.name.GetString());
  return keys;
}

const std::set<std::string> kEnvelope = {"schema_version", "display",  "command",  "time",
                                         "interfaces",     "messages", "exit_code"};

TEST(Structured, EnvelopeHasTheSameShapeForNoneOneAndMany) {
  for (const char* const range : {"ethernet 9/9", "ethernet 1/1", "ethernet 1/1-5"}) {
    const auto document = run_json(std::string("show interface ") + range);
    EXPECT_EQ(keys_of(document), kEnvelope) << range;
    EXPECT_TRUE(document["interfaces"].IsArray());
    EXPECT_TRUE(document["messages"].IsArray());
    EXPECT_EQ(document["schema_version"].GetInt(), 2);
    EXPECT_EQ(document["command"].GetString(), std::string("show interface ") + range);
  }
}

TEST(Structured, TimeIsIso8601InUtc) {
  const auto document = run_json("show interface ethernet 1/1");
  const std::string time = document["time"].GetString();

  EXPECT_EQ(time.size(), std::string("2026-01-31T23:59:59Z").size());
  EXPECT_EQ(time[10], 'T');
  EXPECT_EQ(time.back(), 'Z');
}

TEST(Structured, NumbersAreNumbersWithTheirUnitInTheKey) {
  const auto document = run_json("show interface ethernet 1/1");
  const auto& port = document["interfaces"][0];

  EXPECT_STREQ(port["interface"].GetString(), "Ethernet1/1");
  EXPECT_STREQ(port["state"].GetString(), "up");
  EXPECT_STREQ(port["description"].GetString(), "Desk 1");
  EXPECT_STREQ(port["hardware"].GetString(), "10/100/1000 Ethernet");
  EXPECT_STREQ(port["burned_in_address"].GetString(), "0200.0000.0011");
  EXPECT_EQ(port["mtu_bytes"].GetUint(), 1500U);
  EXPECT_EQ(port["bandwidth_kbps"].GetUint(), 1000000U);
  EXPECT_EQ(port["delay_usec"].GetUint(), 20U);
  EXPECT_EQ(port["speed_mbps"].GetUint(), 1000U);
  EXPECT_EQ(port["reliability_per_255"].GetUint(), 255U);  // which the text of this view does not compute
  EXPECT_STREQ(port["duplex"].GetString(), "full");
  EXPECT_STREQ(port["port_mode"].GetString(), "FA");
  EXPECT_STREQ(port["admin_input_flow_control"].GetString(), "desired");
  EXPECT_STREQ(port["admin_output_flow_control"].GetString(), "off");
  EXPECT_STREQ(port["auto_mdix"].GetString(), "on");
  EXPECT_STREQ(port["switchport_monitor"].GetString(), "off");
}

TEST(Structured, AbsentValuesAreNullAndNeverZero) {
  const auto document = run_json("show interface ethernet 1/2");
  const auto& port = document["interfaces"][0];

  for (const char* const key : {"ip_address", "prefix_length_bits", "bound_interface", "members", "device",
                                "last_link_flapped", "kernel_input_packets", "speed_mbps"})
    EXPECT_TRUE(port[key].IsNull()) << key;
  EXPECT_STREQ(port["state_reason"].GetString(), "Administratively down");
}

TEST(Structured, EveryRecordOfADisplayHasTheSameFields) {
  const auto document = run_json("show interface");
  const auto records = document["interfaces"].GetArray();

  ASSERT_GT(records.Size(), 8U);
  const std::set<std::string> keys = keys_of(records[0]);
  for (const auto& record : records) EXPECT_EQ(keys_of(record), keys);
}

TEST(Structured, AddressesAndBoundInterfacesAreTexts) {
  const auto document = run_json("show interface ethernet 2/1, vethernet 1");

  EXPECT_STREQ(document["interfaces"][0]["ip_address"].GetString(), "192.0.2.1");
  EXPECT_EQ(document["interfaces"][0]["prefix_length_bits"].GetUint(), 30U);
  EXPECT_STREQ(document["interfaces"][1]["bound_interface"].GetString(), "Ethernet1/1");
}

TEST(Structured, WhatTheTextShowsWithoutATagIsInTheRecord) {
  const auto document = run_json("show interface port-channel 7");
  const auto& channel = document["interfaces"][0];

  EXPECT_STREQ(channel["encapsulation"].GetString(), "ARPA");
  ASSERT_EQ(channel["members"].Size(), 2U);
  EXPECT_STREQ(channel["members"][0].GetString(), "Ethernet1/4");
  EXPECT_STREQ(channel["members"][1].GetString(), "Ethernet1/5");
  EXPECT_EQ(document["messages"].Size(), 0U);
}

TEST(Structured, TextOfOthersKeepsItsValueWithoutRawControlBytes) {
  const outcome result = run_command("show interface ethernet 1/3 | json");
  const auto document = parse(result);

  // What JSON can escape keeps its value; the upper control and DEL are written visibly.
  EXPECT_STREQ(document["interfaces"][0]["description"].GetString(), "\x1b[31mred\n\tend\\x7f\\xc2\\x9b");
  for (const char byte : result.out) EXPECT_TRUE(byte == '\n' || (byte >= ' ' && byte <= '~')) << int{byte};
}

TEST(Structured, ErrorsOfTheShellAreMessagesWithoutAnInterface) {
  const outcome result = run_command("show interface ethernet 9/9 | json");
  const auto document = parse(result);

  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(document["interfaces"].Size(), 0U);
  ASSERT_EQ(document["messages"].Size(), 1U);
  EXPECT_TRUE(document["messages"][0]["interface"].IsNull());
  EXPECT_STREQ(document["messages"][0]["text"].GetString(),
               "no such interface: ethernet 9/9. Type 'show interface ?' for the kinds.");
}

TEST(Structured, FailuresOfServicesAreMessagesToo) {
  const auto document =
      parse(run_shell({"--inject-fault", "statistics=lost", "-c", "show interface ethernet 1/1 | json"}));

  EXPECT_STREQ(document["interfaces"][0]["state"].GetString(), "up");
  bool told = false;
  for (const auto& message : document["messages"].GetArray())
    told |= message["text"].GetString() == std::string("stats unavailable");
  EXPECT_TRUE(told);
}

TEST(Structured, AccountsAreNumbersInASectionOfTheirOwn) {
  const auto document = run_json("show transport");

  EXPECT_STREQ(document["display"].GetString(), "transport");
  // What the switch is, its user, and the refresh for the command: a request and an answer each.
  constexpr std::pair<const char*, unsigned> kAccount[] = {
      {"sent", 3}, {"received", 3}, {"dropped", 6}, {"dropped_twice", 0}, {"never_dropped", 0}};
  for (const auto& [key, count] : kAccount) EXPECT_EQ(document["transport"][key].GetUint64(), count) << key;
}

TEST(Structured, VersionAndPlatformAreTextInBothForms) {
  const auto document = run_json("show version");
  const auto& version = document["version"];
  const std::string file = test_file("lab.yaml");
  const std::string library = version["library"].GetString();

  EXPECT_STREQ(document["display"].GetString(), "version");
  EXPECT_STREQ(version["platform"].GetString(), "simulated switch");
  EXPECT_STREQ(version["switch_name"].GetString(), "lab");
  EXPECT_EQ(version["switch_file"].GetString(), file);
  EXPECT_TRUE(version["kernel_release"].IsNull());
  EXPECT_THAT(library, EndsWith("/libpmcli_common.so"));
  EXPECT_EQ(document["messages"].Size(), 0U);
  EXPECT_EQ(run_shell({"--version"}).out, std::string("pmsh ") + version["program_version"].GetString() + "\n");
  EXPECT_EQ(run_command("show version").out, std::string("pmsh:      ") + version["program_version"].GetString() +
                                                 "\nPlatform:  simulated switch lab from " + file +
                                                 "\nLibrary:   " + library + "\n");
}

TEST(Structured, GeneratedSwitchHasNoFile) {
  const auto document = parse(run_program(PMSH_PROGRAM, {"--giant", "2", "-c", "show version | json"}));
  EXPECT_TRUE(document["version"]["switch_file"].IsNull());
  EXPECT_STREQ(document["version"]["platform"].GetString(), "simulated switch");
}

TEST(Structured, ClockIsThatOfTheShell) {
  const std::vector<std::string> stopped = {"--clock", "1800000000", "-c", "clock advance 61", "-c"};
  const auto shown = [&stopped](const char* line) {
    std::vector<std::string> arguments = stopped;
    arguments.emplace_back(line);
    return run_shell(arguments);
  };
  EXPECT_EQ(shown("show clock").out, "2027-01-15T08:01:01Z\n");
  EXPECT_STREQ(parse(shown("show clock | json"))["clock"]["clock_time"].GetString(), "2027-01-15T08:01:01Z");
}

TEST(Structured, FiltersBehindItWorkOnTheLinesOfTheDocument) {
  EXPECT_EQ(run_command("show interface ethernet 1/1-3 | json | include Ethernet1/[12].*Desk | count").out, "2\n");
}

}  // namespace
}  // namespace session
