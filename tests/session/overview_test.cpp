// "show interface overview": one row for each interface, as wide as the terminal.
#include <gtest/gtest.h>

#include <filesystem>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

constexpr char kSome[] = "show interface ethernet 1/1-2, ethernet 1/4, port-channel 7, loopback 0 overview";

outcome run_overview(const std::string& command) {
  return run_shell_on(test_file("overview.yaml"), {"--clock", "1700000000", "-c", command});
}

outcome run_counters(const std::string& command, const char* user = "operator") {
  return run_shell_on(test_file("counters.yaml"), {"--clock", "1700000000", "--user", user, "-c", command});
}

// ---- Rows ----

TEST(Overview, WithoutATerminalHasEveryColumnInFull) {
  const outcome result = run_command(kSome);

  EXPECT_EQ(
      result.out,
      "Interface      State  Reason                 VLAN    Speed    In bit/s  Out bit/s  Errors  Channel         "
      "   Description\n"
      "Ethernet1/1    up                            1       1G full         0          0       0                  "
      "   Desk 1\n"
      "Ethernet1/2    down   Administratively down  1       auto            0          0       0                  "
      "   Desk 2\n"
      "Ethernet1/4    up                            1       1G full         0          0       0  Po7\n"
      "port-channel7  up                            1       1G full         0          0       0  2: Eth1/4, "
      "Eth1/5  Pair\n"
      "loopback0      up                            routed  full                               0                  "
      "   Identity\n");
  EXPECT_EQ(result.exit_code, 0);
}

std::vector<std::string> first_words(const std::string& text) {
  std::vector<std::string> words;
  for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1)
    words.push_back(text.substr(begin, text.find_first_of(" \n", begin) - begin));
  return words;
}

TEST(Overview, HasEveryKindInNaturalOrder) {
  EXPECT_EQ(first_words(run_command("show interface overview").out),
            (std::vector<std::string>{"Interface", "mgmt0", "Ethernet1/1", "Ethernet1/2", "Ethernet1/3", "Ethernet1/4",
                                      "Ethernet1/5", "Ethernet1/10", "Ethernet2/1", "Ethernet2/1.5", "port-channel7",
                                      "loopback0", "Vethernet1", "fc2/9"}));
}

TEST(Overview, FibreChannelPortHasNoVlan) {
  const outcome text = run_command("show interface fc 2/9 overview");
  EXPECT_EQ(text.out.substr(0, text.out.find("Speed")), "Interface  State  VLAN  ");
  EXPECT_NE(text.out.find("\nfc2/9      up     --    "), std::string::npos) << text.out;

  rapidjson::Document document;
  document.Parse(run_command("show interface fc 2/9 overview | json").out.c_str());
  ASSERT_FALSE(document.HasParseError());
  const auto& record = document["interfaces"][0];
  EXPECT_TRUE(record["vlan"].IsNull());
  EXPECT_FALSE(record["absent"].HasMember("vlan")) << "there is none";
}

TEST(Overview, InBandInterfaceHasNoRow) {
  EXPECT_EQ(run_counters("show interface overview | include sup-fc").out, "");
  const outcome named = run_counters("show interface in-band, ethernet 2/2 overview");
  EXPECT_EQ(first_words(named.out), (std::vector<std::string>{"Interface", "Ethernet2/2"}));
  EXPECT_EQ(named.err, "pmsh: sup-fc0 is not in the overview.\n");
  EXPECT_EQ(named.exit_code, 3);
}

TEST(Overview, RatesAreInBitsPerSecond) {
  EXPECT_EQ(run_counters("show interface ethernet 2/1 overview").out,
            "Interface    State  VLAN   Speed  In bit/s  Out bit/s  Errors\n"
            "Ethernet2/1  up     trunk  full        10M        16M       0\n");
}

TEST(Overview, ErrorsAreThoseOfBothDirectionsIn64Bits) {
  EXPECT_EQ(run_overview("show interface ethernet 1/1-2 overview").out,
            "Interface    State  VLAN  Speed  In bit/s  Out bit/s                Errors\n"
            "Ethernet1/1  up     1     full          0          0      9007203549708289\n"
            "Ethernet1/2  up     1     full          0          0  18446744073709551615\n")
      << "a sum that has no more room stays at the largest";
}

TEST(Overview, DescriptionOfOthersIsMadeVisible) {
  EXPECT_EQ(run_command("show interface ethernet 1/3 overview").out,
            "Interface    State  VLAN  Speed    In bit/s  Out bit/s  Errors  Description\n"
            "Ethernet1/3  up     1     1G full         0          0       0  "
            "\\x1b[31mred\\x0a\\x09end\\x7f\\xc2\\x9b\n");
}

TEST(Overview, PipesTakeItsRows) {
  EXPECT_EQ(run_command("show interface overview | include ^loop | count").out, "1\n");
}

TEST(Overview, UserWithoutCountersSeesDashes) {
  EXPECT_EQ(run_counters("show interface ethernet 2/1 overview", "guest").out,
            "Interface    State  VLAN   Speed  In bit/s  Out bit/s  Errors\n"
            "Ethernet2/1  up     trunk  full         --         --      --\n");
}

// ---- The structured form ----

rapidjson::Document document_of(const outcome& result) {
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  return document;
}

TEST(OverviewDocument, HasExactNumbers) {
  const auto document = document_of(run_overview("show interface ethernet 1/1 overview | json"));
  const auto& port = document["interfaces"][0];
  EXPECT_STREQ(document["display"].GetString(), "overview");
  EXPECT_STREQ(port["interface"].GetString(), "Ethernet1/1");
  EXPECT_EQ(port["input_errors"].GetUint64(), 9007199254740993U);
  EXPECT_EQ(port["output_errors"].GetUint64(), 4294967296U);
  EXPECT_EQ(document["messages"].Size(), 0U);
}

TEST(OverviewDocument, NamesMembersAndChannelInFull) {
  const auto document = document_of(run_command("show interface ethernet 1/4, port-channel 7 overview | json"));
  EXPECT_STREQ(document["interfaces"][0]["member_of"].GetString(), "port-channel7");
  const auto& members = document["interfaces"][1]["members"];
  ASSERT_EQ(members.Size(), 2U);
  EXPECT_STREQ(members[0].GetString(), "Ethernet1/4");
  EXPECT_STREQ(members[1].GetString(), "Ethernet1/5");
}

TEST(OverviewDocument, UserWithoutCountersHasNoPermission) {
  const auto document = document_of(run_counters("show interface ethernet 2/1 overview | json", "guest"));
  const auto& port = document["interfaces"][0];
  for (const char* const field : {"input_bits_per_second", "output_bits_per_second", "input_errors", "output_errors"}) {
    EXPECT_TRUE(port[field].IsNull()) << field;
    EXPECT_STREQ(port["absent"][field].GetString(), "no permission");
  }
  EXPECT_STREQ(port["state"].GetString(), "up");
}

// ---- Faults ----

class ValuesFail : public testing::TestWithParam<const char*> {};

TEST_P(ValuesFail, CommandSaysSoAndReturnsTwo) {
  const std::vector<std::string> options = {"--wait", "1", "--inject-fault",
                                            std::string("interface-values=") + GetParam()};
  for (const bool is_structured : {false, true}) {
    std::vector<std::string> arguments = options;
    const std::string form = is_structured ? " | json" : "";
    arguments.insert(arguments.end(), {"-c", "show interface ethernet 1/1 overview" + form});
    const outcome result = run_shell(arguments);
    EXPECT_EQ(result.err.find("pmsh: the service 'interface-values' "), 0U) << result.err;
    EXPECT_EQ(result.exit_code, 2);
    if (is_structured)
      EXPECT_STREQ(document_of(result)["interfaces"][0]["absent"]["state"].GetString(), "service failed");
    else
      EXPECT_EQ(result.out, "");
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, ValuesFail, testing::Values("lost", "reject", "silent", "cut:3", "cut:14"));

TEST(Overview, ListingThatFailsReturnsTwo) {
  const outcome result = run_shell({"--inject-fault", "port-manager=lost", "-c", "show interface overview"});
  EXPECT_EQ(result.err, "pmsh: the service 'port-manager' is not running.\n");
  EXPECT_EQ(result.exit_code, 2);
}

// ---- At a terminal ----

struct OverviewAtATerminal : testing::Test {
  ~OverviewAtATerminal() override { std::filesystem::remove_all(state_directory()); }

  void show(unsigned short columns, const char* command = kSome) {
    ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
    screen.resize(24, columns);
    screen.type(std::string(command) + "\r");
  }

  terminal screen{{}};
};

TEST_F(OverviewAtATerminal, WatchDrawsItAgainForANewWidth) {
  show(80, "watch 1 show interface ethernet 1/2 overview");
  EXPECT_TRUE(screen.shows("Eth1/2     down   Administratively ...  1     auto          0          0       0"))
      << screen.unread();
  screen.resize(24, 60);
  EXPECT_TRUE(screen.shows("Eth1/2     down   1     auto          0          0       0")) << screen.unread();
  screen.type("\x03");
  EXPECT_TRUE(screen.shows_prompt()) << screen.unread();
}

}  // namespace
}  // namespace session
