// "watch" of the real shell: documents on lines in a pipe, drawings at a terminal.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "session/json.h"
#include "session/program.h"
#include "shell/grammar/syntax.h"

namespace session {
namespace {

constexpr char kCtrlC[] = "\x03";
constexpr char kMoment[] = "1800000000";  // 2027-01-15 08:00 UTC

rapidjson::Document parse(const std::string& text) {
  rapidjson::Document document;
  document.Parse(text.c_str());
  EXPECT_FALSE(document.HasParseError()) << text;
  return document;
}

// A watch on the switch of counters, at a clock that runs or stands.
piped_shell running(const std::string& command) { return {test_file("counters.yaml"), {"-c", command}}; }
piped_shell standing(const std::string& command) {
  return {test_file("counters.yaml"), {"--clock", kMoment, "-c", command}};
}

outcome run_watch(const std::string& command, std::vector<std::string> options = {}) {
  options.insert(options.end(), {"-c", command});
  return run_shell_on(test_file("counters.yaml"), options);
}

// 1000 packets of 1250 bytes come and 2000 of 1000 go in each second of this port.
TEST(WatchInAPipe, WritesADocumentWithRatesOnALineForEachReading) {
  piped_shell shell = running("watch 1 show interface ethernet 2/1 counters | json");
  const rapidjson::Document first = parse(shell.line());
  EXPECT_STREQ(first["command"].GetString(), "show interface ethernet 2/1 counters");
  EXPECT_TRUE(first["interfaces"][0]["rates"].IsNull());

  uint64_t bytes_before = first["interfaces"][0]["input_bytes"].GetUint64();
  for (int i = 0; i < 2; ++i) {
    const rapidjson::Document reading = parse(shell.line());
    const auto& record = reading["interfaces"][0];
    EXPECT_GT(record["input_bytes"].GetUint64(), bytes_before);
    bytes_before = record["input_bytes"].GetUint64();
    EXPECT_DOUBLE_EQ(record["rates"]["input_bytes_per_second"].GetDouble(), 1250000);
    EXPECT_DOUBLE_EQ(record["rates"]["input_packets_per_second"].GetDouble(), 1000);
    EXPECT_DOUBLE_EQ(record["rates"]["output_bytes_per_second"].GetDouble(), 2000000);
    EXPECT_DOUBLE_EQ(record["rates"]["output_packets_per_second"].GetDouble(), 2000);
  }
  shell.interrupt();
  EXPECT_EQ(shell.exit_code(), 130);
}

TEST(WatchInAPipe, ClockThatStandsHasNoRates) {
  piped_shell shell = standing("watch 1 show interface ethernet 2/1 counters | json");
  for (int i = 0; i < 2; ++i) {
    const rapidjson::Document reading = parse(shell.line());
    EXPECT_STREQ(reading["time"].GetString(), "2027-01-15T08:00:00Z");
    EXPECT_TRUE(reading["interfaces"][0]["rates"].IsNull());
  }
  shell.interrupt();
  EXPECT_EQ(shell.exit_code(), 130);
}

// The commands of a commit that waits some seconds for its confirmation, and of a watch.
std::vector<std::string> watched_commit(const std::string& seconds, const std::string& pipe) {
  return {"-c", "configure candidate",
          "-c", "interface ethernet 2/1",
          "-c", "description new",
          "-c", "commit confirmed " + seconds,
          "-c", "watch 1 show running-config interface ethernet 2/1" + pipe};
}

TEST(WatchOfACommit, RollsItBackWhenItsTimeIsOver) {
  piped_shell shell(test_file("counters.yaml"), watched_commit("1", " | json"));
  EXPECT_TRUE(shell.line().starts_with("Committed for "));
  bool is_rolled_back = false;
  for (int i = 0; i < 5 && !is_rolled_back; ++i) {
    const std::string reading = shell.line();
    ASSERT_TRUE(reading.starts_with("{")) << reading;
    is_rolled_back = reading.find("description new") == std::string::npos;
  }
  EXPECT_TRUE(is_rolled_back);
  shell.interrupt();
  EXPECT_EQ(shell.exit_code(), 130);
}

TEST(WatchOfACandidate, ShowsTheChangesThatItHolds) {
  piped_shell shell(test_file("counters.yaml"),
                    {"--clock", kMoment, "-c", "configure candidate", "-c", "interface ethernet 2/1", "-c",
                     "description new", "-c", "watch 1 show changes | json"});
  const rapidjson::Document reading = parse(shell.line());
  ASSERT_EQ(reading["changes"].Size(), 1U);
  EXPECT_STREQ(reading["changes"][0]["command"].GetString(), "description new");
  shell.interrupt();
  EXPECT_EQ(shell.exit_code(), 130);
}

TEST(WatchInAPipe, GoesOnWithTheInterfacesOfARangeThatExist) {
  piped_shell shell = standing("watch 1 show interface ethernet 2/1-4 counters | json");
  for (int i = 0; i < 2; ++i) {
    const rapidjson::Document reading = parse(shell.line());
    EXPECT_EQ(reading["interfaces"].Size(), 2U);
    EXPECT_EQ(reading["exit_code"].GetInt(), 4);
    ASSERT_EQ(reading["messages"].Size(), 1U);
    EXPECT_STREQ(reading["messages"][0]["text"].GetString(), "no such interface: ethernet 2/4. The others are shown.");
  }
  shell.interrupt();
  EXPECT_EQ(shell.exit_code(), 130);
}

// On a busy machine the time of a commit may be over before the watch begins: then it gets more.
TEST(WatchOfACommit, DrawingsShowThatItWasRolledBack) {
  for (const char* const seconds : {"1", "4", "16", "64"}) {
    terminal shell(watched_commit(seconds, ""), test_file("counters.yaml"));
    ASSERT_TRUE(shell.shows("Every 1 s: ")) << shell.unread();
    if (shell.seen().find("it was rolled back") < shell.seen().find("Every 1 s: ")) continue;
    for (int i = 0; i < 2; ++i)
      ASSERT_TRUE(shell.shows("the commit was not confirmed in time: it was rolled back for ethernet 2/1."))
          << shell.unread();
    shell.type(kCtrlC);
    EXPECT_EQ(shell.exit_code(), 130);
    return;
  }
  FAIL() << "no watch began within the time of its commit";
}

TEST(WatchInAPipe, LinesOfTheDisplayBelongToItsRates) {
  piped_shell shell = running("watch 1 show interface ethernet 2/1 detailed | json");
  ASSERT_NE(shell.line(), "");
  const rapidjson::Document reading = parse(shell.line());
  EXPECT_DOUBLE_EQ(reading["interfaces"][0]["rates"]["input_bytes_per_second"].GetDouble(), 1250000);
}

TEST(WatchInAPipe, DisplaysWithoutCountersHaveNoRates) {
  piped_shell shell = running("watch 1 show interface ethernet 2/1 brief | json");
  ASSERT_NE(shell.line(), "");
  const rapidjson::Document reading = parse(shell.line());
  EXPECT_TRUE(reading["interfaces"][0]["rates"].IsNull());
}

TEST(WatchInAPipe, DisplayOfTheProcessHasNoRecordsAndNoRates) {
  piped_shell shell = standing("watch 1 show transport | json");
  const rapidjson::Document reading = parse(shell.line());
  EXPECT_EQ(reading["transport"]["sent"].GetUint64(), 4U) << "the switch, the user, and two refreshes";
}

TEST(WatchInAPipe, UserWhoMayNotSeeCountersSeesNoRates) {
  piped_shell shell(test_file("counters.yaml"),
                    {"--user", "guest", "-c", "watch 1 show interface ethernet 2/1 counters | json"});
  ASSERT_NE(shell.line(), "");
  EXPECT_TRUE(parse(shell.line())["interfaces"][0]["rates"].IsNull());
}

TEST(WatchInAPipe, InterfaceWhoseDisplayFailedHasNoRates) {
  piped_shell shell(test_file("counters.yaml"), {"--inject-fault", "statistics=reject", "-c",
                                                 "watch 1 show interface ethernet 2/1 counters | json"});
  ASSERT_NE(shell.line(), "");
  const rapidjson::Document reading = parse(shell.line());
  EXPECT_TRUE(reading["interfaces"][0]["rates"].IsNull());
  EXPECT_STREQ(reading["messages"][0]["text"].GetString(), "stats unavailable");
}

// Each reading has its own failures, and no others.
TEST(WatchInAPipe, EachReadingNamesTheServiceThatFails) {
  piped_shell shell(test_file("counters.yaml"), {"--inject-fault", "statistics=reject", "-c",
                                                 "watch 1 show interface ethernet 2/1 counters | json"});
  for (int i = 0; i < 2; ++i) {
    const rapidjson::Document reading = parse(shell.line());
    ASSERT_EQ(reading["messages"].Size(), 3U) << i;  // each of the two tables says so, too
    EXPECT_STREQ(reading["messages"][2]["interface"].GetString(), "Ethernet2/1");
    EXPECT_STREQ(reading["messages"][2]["text"].GetString(), "the service 'statistics' refused a request.");
    EXPECT_EQ(reading["exit_code"].GetInt(), 2) << i;
  }
}

TEST(WatchInAPipe, EndsQuietlyWhenNobodyReadsAnyMore) {
  piped_shell shell = running("watch 1 show interface brief | json");
  EXPECT_NE(shell.line(), "");
  shell.stop_reading();
  EXPECT_EQ(shell.exit_code(), 0);
}

TEST(WatchInAPipe, ReaderWhoLeavesIsNoticedBeforeTheNextReading) {
  piped_shell shell = running("watch 86400 show interface brief | json");
  EXPECT_NE(shell.line(), "");
  shell.stop_reading();
  EXPECT_EQ(shell.exit_code(), 0);
}

TEST(WatchInAPipe, CtrlCEndsALongPauseAndTheCommandsBehindItDoNotRun) {
  piped_shell shell(test_file("counters.yaml"), {"-c", "watch 86400 show interface brief | json", "-c", "help"});
  EXPECT_NE(shell.line(), "");
  shell.interrupt();
  EXPECT_EQ(shell.exit_code(), 130);
  EXPECT_EQ(shell.rest(), "");
}

TEST(WatchInAPipe, FiltersWorkOnTheLineOfEachReading) {
  piped_shell counted = standing("watch 1 show interface brief | json | include Ethernet2/1 | count");
  EXPECT_EQ(counted.line(), "1");
  EXPECT_EQ(counted.line(), "1");
  piped_shell excluded = standing("watch 1 show interface brief | json | exclude Ethernet2/1 | count");
  EXPECT_EQ(excluded.line(), "0");
  EXPECT_EQ(excluded.line(), "0");
  piped_shell included = standing("watch 1 show interface brief | json | include Ethernet2/1");
  EXPECT_TRUE(parse(included.line())["interfaces"].IsArray());
}

// ---- Events ----

// Those of a kernel are tested by tests/kernel_events.py.
TEST(WatchEvents, SimulatedSwitchPublishesNone) {
  constexpr char kSentence[] =
      "this switch publishes no events. Start the shell with --kernel to watch those of this machine.";
  const outcome text = run("watch events");
  EXPECT_EQ(text.out, "");
  EXPECT_EQ(text.err, std::string("pmsh: ") + kSentence + "\n");
  EXPECT_EQ(text.exit_code, 1);
  const outcome structured = run("watch events interface ethernet 2/1 count 3 | json");
  const rapidjson::Document document = parse(structured.out);
  EXPECT_EQ(std::count(structured.out.begin(), structured.out.end(), '\n'), 1) << structured.out;
  EXPECT_STREQ(document["display"].GetString(), "events");
  EXPECT_EQ(document["events"].Size(), 0U);
  ASSERT_EQ(document["messages"].Size(), 1U);
  EXPECT_STREQ(document["messages"][0]["text"].GetString(), kSentence);
  EXPECT_EQ(document["exit_code"].GetInt(), 1);
  EXPECT_EQ(structured.exit_code, 1);
}

TEST(WatchEvents, RangeThatDoesNotExistIsRefused) {
  const outcome result = run("watch events interface ethernet 9/9");
  EXPECT_EQ(result.err, "pmsh: no such interface: ethernet 9/9. Type 'show interface ?' for the kinds.\n");
  EXPECT_EQ(result.exit_code, 4);
}

TEST(WatchEvents, PipesThatNeedTheWholeOutputAreRefused) {
  EXPECT_EQ(run("watch events | sort Kind").err,
            "pmsh: '| columns', '| sort' and '| rows' do not apply to events, which have no end. Remove them.\n");
  EXPECT_EQ(run("watch events | save events").err, "pmsh: '| save' does not apply to 'watch'.\n");
}

TEST(WatchInAPipe, CommandThatIsRefusedEndsTheWatch) {
  const outcome missing = run_watch("watch 1 show interface ethernet 9/9 counters | json");
  EXPECT_EQ(missing.exit_code, 4);
  const rapidjson::Document document = parse(missing.out);
  EXPECT_EQ(document["interfaces"].Size(), 0U);
  EXPECT_EQ(document["messages"].Size(), 1U);
  EXPECT_EQ(document["exit_code"].GetInt(), 4);
  EXPECT_NE(run_watch("watch 1 show interface | include (").err.find("bad expression '('"), std::string::npos);
}

TEST(WatchInAPipe, DisplayThatAppliesToNothingEndsTheWatch) {
  for (const std::string pipe : {"", " | json"}) {
    const outcome result =
        run_shell_on(test_file("tables.yaml"), {"-c", "watch 1 show interface ethernet 2/1 brief" + pipe});
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_EQ(result.err, "pmsh: Ethernet2/1: 'show interface brief' does not apply to this kind of interface.\n");
    if (pipe.empty()) {
      EXPECT_EQ(result.out, "");
      continue;
    }
    const rapidjson::Document document = parse(result.out);
    EXPECT_EQ(document["interfaces"].Size(), 0U);
    EXPECT_EQ(document["messages"].Size(), 1U);
    EXPECT_EQ(document["exit_code"].GetInt(), 3);
  }
}

// The documents of all readings have the sentence; standard error is for people.
TEST(WatchInAPipe, ErrorThatLastsIsPrintedOnce) {
  const std::string pmsh = std::string(PMSH_PROGRAM) + " --switch " + test_file("tables.yaml");
  const outcome result = run_program(
      "/bin/sh", {"-c", pmsh + " -c 'watch 1 show interface ethernet 2/1, ethernet 1/1 brief | json' | head -n 2"});
  EXPECT_EQ(result.err, "pmsh: Ethernet2/1: 'show interface brief' does not apply to this kind of interface.\n");
  const std::size_t end = result.out.find('\n');
  ASSERT_NE(end, std::string::npos);
  for (const std::string& line : {result.out.substr(0, end), result.out.substr(end + 1)}) {
    const rapidjson::Document document = parse(line);
    EXPECT_EQ(document["interfaces"].Size(), 1U);
    EXPECT_EQ(document["messages"].Size(), 1U);
    EXPECT_EQ(document["exit_code"].GetInt(), 3);
  }
}

TEST(WatchInAPipe, MistakeOfALineThatAsksForDocumentsIsOneDocument) {
  for (const char* const line :
       {"watch | json", "watch 0 show transport | json", "watch 1 show nothing | json", "watch 1 clear counters | json",
        "watch 1 | json", "watch 1 show interface | json | jsn", "watch 1 show interface | count | json",
        "watch 1 show interface | json | include (", "watch 1 show interface ethernet 1/4-1 brief | json"}) {
    const outcome result = run_watch(line);
    EXPECT_EQ(result.exit_code, 1) << line;
    const rapidjson::Document document = parse(result.out);
    ASSERT_TRUE(document.IsObject()) << line;
    EXPECT_EQ(document["messages"].Size(), 1U) << line;
    EXPECT_EQ(document["exit_code"].GetInt(), 1) << line;
    EXPECT_EQ(result.err, std::string("pmsh: ") + document["messages"][0]["text"].GetString() + "\n");
  }
}

TEST(WatchInAPipe, MistakesAreUsageErrors) {
  for (const char* const line : {"watch show transport", "watch 0 show transport", "watch 1 clear counters",
                                 "watch 1 watch 1 show transport", "watch 1"}) {
    const outcome result = run_watch(line);
    EXPECT_EQ(result.exit_code, 1) << line;
    EXPECT_EQ(result.out, "") << line;
    EXPECT_EQ(result.err.find("pmsh: "), 0U) << line;
  }
}

// Every reading begins with a line of its own and ends with an empty one.
TEST(WatchInAPipe, WritesTextUnlessJsonIsRequested) {
  piped_shell shell(test_file("counters.yaml"),
                    {"--clock", kMoment, "-c", "watch 1 show interface ethernet 2/1 counters | columns Port,InOctets"});
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(shell.line().starts_with("Every 1 s: show interface ethernet 2/1 counters   counters   ")) << i;
    EXPECT_EQ(shell.line(), "");
    const std::string rule = shell.line();
    EXPECT_EQ(rule, std::string(rule.size(), '-'));
    EXPECT_TRUE(shell.line().starts_with("Port    ")) << i;
    EXPECT_EQ(shell.line(), rule);
    EXPECT_TRUE(shell.line().starts_with("Eth2/1  ")) << i;
    EXPECT_EQ(shell.line(), "");
    EXPECT_TRUE(shell.line().starts_with("Interface                 In bytes/s")) << i;
    EXPECT_TRUE(shell.line().starts_with("Ethernet2/1 ")) << i;
    EXPECT_EQ(shell.line(), "");
  }
  shell.interrupt();
  EXPECT_EQ(shell.exit_code(), 130);
}

TEST(WatchInAPipe, PipesThatDoNotApplyEndTheWatch) {
  const outcome result = run_watch("watch 1 show interface ethernet 2/1 counters | sort Colour");
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(result.err.starts_with("pmsh: unknown column 'Colour'. The columns are Port, InOctets, ")) << result.err;
  EXPECT_EQ(result.exit_code, 1);
}

struct WatchAtATerminal : testing::Test {
  WatchAtATerminal() {
    setenv("TZ", "UTC0", 1);
    setenv("LC_ALL", "C", 1);
  }
  ~WatchAtATerminal() override { std::filesystem::remove_all(state_directory()); }
};

constexpr char kClear[] = "\x1b[H\x1b[J";
constexpr char kTitles[] = "Interface      In bytes/s  In packets/s   Out bytes/s Out packets/s  Recent";

TEST_F(WatchAtATerminal, DrawsTheDisplayAndItsRates) {
  terminal screen({"-c", "watch 1 show interface ethernet 2/1 counters | include Eth"}, test_file("counters.yaml"));
  const std::string titles = std::string("\r\n\r\n") + kTitles + "\r\nEthernet2/1";
  ASSERT_TRUE(screen.shows(kClear)) << screen.unread();
  ASSERT_TRUE(screen.shows("Every 1 s: show interface ethernet 2/1 counters   counters   ")) << screen.unread();
  EXPECT_TRUE(screen.shows(titles + "            --            --            --            --")) << screen.unread();
  ASSERT_TRUE(screen.shows(kClear)) << screen.unread();
  EXPECT_TRUE(screen.shows(titles + "     1250000.0        1000.0     2000000.0        2000.0  #")) << screen.unread();
  screen.type(kCtrlC);
  EXPECT_EQ(screen.exit_code(), 130);
}

TEST_F(WatchAtATerminal, FirstLineHasTheTimeOfTheClock) {
  terminal screen({"--clock", kMoment, "-c", "watch 60 show interface ethernet 1/1 description"});
  EXPECT_TRUE(screen.shows("Every 60 s: show interface ethernet 1/1 description   lab   08:00:00\r\n"))
      << screen.unread();
  EXPECT_TRUE(screen.shows("Ethernet1/1              Desk 1")) << screen.unread();
}

TEST_F(WatchAtATerminal, OnlyInterfacesThatTheFiltersLeaveHaveRates) {
  terminal screen({"--clock", kMoment, "-c", "watch 1 show interface counters | include Eth1/1"},
                  test_file("counters.yaml"));
  ASSERT_TRUE(screen.shows(kTitles)) << screen.unread();
  ASSERT_TRUE(screen.shows(kClear)) << screen.unread();
  EXPECT_NE(screen.seen().find("Ethernet1/1 "), std::string::npos) << screen.seen();
  EXPECT_EQ(screen.seen().find("Ethernet2/1"), std::string::npos) << screen.seen();
}

TEST_F(WatchAtATerminal, DisplayWithoutCountersHasNoTable) {
  terminal screen({"--clock", kMoment, "-c", "watch 1 show interface status"}, test_file("counters.yaml"));
  ASSERT_TRUE(screen.shows(kClear)) << screen.unread();
  ASSERT_TRUE(screen.shows(kClear)) << screen.unread();
  EXPECT_NE(screen.seen().find("Eth2/1 "), std::string::npos) << screen.seen();
  EXPECT_EQ(screen.seen().find("bytes/s"), std::string::npos) << screen.seen();
}

// Rows of what is drawn between two clearings.
std::size_t rows_of_a_drawing(terminal& screen) {
  EXPECT_TRUE(screen.shows(kClear)) << screen.unread();
  const std::string drawn = screen.seen();
  std::size_t rows = 1;
  for (const char letter : drawn) rows += letter == '\n';
  return rows;
}

TEST_F(WatchAtATerminal, DrawingIsCutToTheScreenAndFollowsItsSize) {
  terminal screen({"--clock", kMoment, "-c", "watch 1 show interface"});
  ASSERT_TRUE(screen.shows(kClear)) << screen.unread();
  EXPECT_EQ(rows_of_a_drawing(screen), 24U);
  EXPECT_EQ(screen.seen().find("--More--"), std::string::npos);
  screen.resize(10, 80);
  rows_of_a_drawing(screen);  // may have been drawn before
  EXPECT_EQ(rows_of_a_drawing(screen), 10U);
}

TEST_F(WatchAtATerminal, KeysScrollADrawingThatIsTooTall) {
  terminal screen({"--clock", kMoment, "-c", "watch 60 show interface ethernet 1/1-3"});
  ASSERT_TRUE(screen.shows("\r\nEthernet1/1 is up\r\n")) << screen.unread();
  ASSERT_TRUE(screen.shows(" rows hidden: j/k scroll")) << screen.unread();
  screen.type("j");
  ASSERT_TRUE(screen.shows(kClear)) << screen.unread();
  ASSERT_TRUE(screen.shows(" rows hidden: j/k scroll")) << screen.unread();
  EXPECT_EQ(screen.seen().find("Ethernet1/1 is up"), std::string::npos) << screen.seen();
  screen.type("\x1b[A");
  ASSERT_TRUE(screen.shows("\r\nEthernet1/1 is up\r\n")) << screen.unread();
  EXPECT_EQ(screen.seen().find("Ethernet1/3 is up"), std::string::npos) << screen.seen();
  screen.type("  ");
  ASSERT_TRUE(screen.shows("\r\nEthernet1/3 is up\r\n")) << screen.unread();
  screen.type(kCtrlC);
  EXPECT_EQ(screen.exit_code(), 130);
  EXPECT_TRUE(screen.is_cooked());
}

TEST_F(WatchAtATerminal, SignalThatEndsItRestoresTheTerminal) {
  terminal screen({"--clock", kMoment, "-c", "watch 60 show clock"});
  ASSERT_TRUE(screen.shows("Every 60 s: ")) << screen.unread();
  EXPECT_FALSE(screen.is_cooked());
  screen.signal(SIGTERM);
  EXPECT_EQ(screen.exit_code(), 128 + SIGTERM);
  EXPECT_TRUE(screen.is_cooked());
}

TEST_F(WatchAtATerminal, CommandWithoutAStructuredFormIsDrawnToo) {
  terminal screen({"--clock", kMoment, "-c", "watch 1 show vlan"});
  EXPECT_TRUE(screen.shows("Every 1 s: show vlan   lab   08:00:00\r\n")) << screen.unread();
  EXPECT_TRUE(screen.shows(kClear)) << screen.unread();
}

TEST_F(WatchAtATerminal, JsonIsADocumentOnALine) {
  terminal screen({"--clock", kMoment, "-c", "watch 1 show transport | json"});
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(screen.shows("\"never_dropped\":0},\"exit_code\":0}\r\n")) << screen.unread();
    EXPECT_EQ(screen.seen().find('\n'), screen.seen().size() - 1) << screen.seen();
    EXPECT_EQ(screen.seen().find("{\"schema_version\":2,\"display\":\"transport\",\"command\":\"show transport\""), 0U)
        << screen.seen();
  }
}

TEST_F(WatchAtATerminal, CommandThatIsRefusedIsToldAndNothingIsDrawn) {
  terminal screen({"-c", "watch 1 show interface ethernet 9/9"});
  EXPECT_TRUE(screen.shows("pmsh: no such interface: ethernet 9/9")) << screen.unread();
  EXPECT_EQ(screen.seen().find(kClear), std::string::npos) << screen.seen();
  EXPECT_EQ(screen.exit_code(), 4);
}

TEST_F(WatchAtATerminal, DisplayThatAppliesToNothingIsRefusedForEachInterface) {
  terminal screen({"-c", "watch 1 show interface ethernet 2/1, ethernet 2/1.5 brief"}, test_file("tables.yaml"));
  EXPECT_TRUE(screen.shows("pmsh: Ethernet2/1: 'show interface brief' does not apply")) << screen.unread();
  EXPECT_TRUE(screen.shows("pmsh: Ethernet2/1.5: 'show interface brief' does not apply")) << screen.unread();
  EXPECT_EQ(screen.exit_code(), 3);
  EXPECT_EQ(screen.seen().find(kClear), std::string::npos) << screen.seen();
}

TEST_F(WatchAtATerminal, CtrlCEndsTheWatchAndNotTheShell) {
  terminal screen({"--clock", kMoment});
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("wat\t2 sh\ttransp?");
  ASSERT_TRUE(screen.shows("lab# watch 2 show transp")) << screen.unread();
  screen.type("\r");
  ASSERT_TRUE(screen.shows("Every 2 s: show transport   lab   08:00:00\r\n")) << screen.unread();
  ASSERT_TRUE(screen.shows("  never dropped:                  0")) << screen.unread();
  screen.type(kCtrlC);
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  EXPECT_EQ(screen.seen(), "\r\nlab# ");
  screen.type("show transport | include sent\r");
  // What the switch is, its user, a refresh before the watch, one for its reading, and one for this line.
  EXPECT_TRUE(screen.shows("Messages sent:                    5\r\n")) << screen.unread();
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("exit\r");
  EXPECT_EQ(screen.exit_code(), 0);
}

TEST_F(WatchAtATerminal, QuestionMarkHelpsBehindIt) {
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("watch ?");
  EXPECT_TRUE(screen.shows("  INTERVAL      Seconds from one reading to the next, 1 to 86400\r\n")) << screen.unread();
  screen.type("2 show interface ethernet 1/1 de?");
  EXPECT_TRUE(screen.shows("  debounce      Link debounce times\r\n")) << screen.unread();
}

}  // namespace
}  // namespace session
