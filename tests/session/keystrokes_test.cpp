// The shell at a terminal, key by key.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "session/program.h"

namespace session {
namespace {

constexpr char kCtrlC[] = "\x03";
constexpr char kCtrlD[] = "\x04";
constexpr char kUp[] = "\x1b[A";

struct Keystrokes : testing::Test {
  ~Keystrokes() override { std::filesystem::remove_all(state_directory()); }
};

struct AtThePrompt : Keystrokes {
  void SetUp() override { ASSERT_TRUE(screen.shows_prompt()) << screen.unread(); }

  terminal screen{{}};
};

TEST_F(AtThePrompt, CommandIsTypedAndAnswered) {
  screen.type("show interface ethernet 1/1 | include Desc\r");
  EXPECT_TRUE(screen.shows("  Description: Desk 1\r\n")) << screen.unread();
  EXPECT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("exit\r");
  EXPECT_EQ(screen.exit_code(), 0);
}

TEST_F(AtThePrompt, EndOfInputLeavesTheShell) {
  screen.type(kCtrlD);
  EXPECT_EQ(screen.exit_code(), 0);
}

TEST_F(AtThePrompt, TabCompletesAWordInItsMiddle) {
  screen.type("sh\tin\teth\t1/10?");
  EXPECT_TRUE(screen.shows("lab# show interface ethernet 1/10")) << screen.unread();
  screen.type("\r");
  EXPECT_TRUE(screen.shows("Ethernet1/10 is up\r\n")) << screen.unread();
}

TEST_F(AtThePrompt, TabCompletesTheNumbersOfInterfacesThatExist) {
  screen.type("show interface ethernet 1/1\t");
  EXPECT_TRUE(screen.shows("1/1   1/10\r\n")) << screen.unread();
  screen.type("0\r");
  EXPECT_TRUE(screen.shows("Ethernet1/10 is up\r\n")) << screen.unread();
}

TEST_F(AtThePrompt, TabAfterADashCompletesTheNumbersThatFollow) {
  screen.type("show interface e1/3-\t");
  EXPECT_TRUE(screen.shows("4   5   10\r\n")) << screen.unread();
  screen.type("1\t status\r");
  EXPECT_TRUE(screen.shows("Eth1/10 ")) << screen.unread();
  screen.type("show interface ethernet1/10-\t?");
  EXPECT_TRUE(screen.shows("lab# show interface ethernet1/10-2/1")) << screen.unread();
}

TEST_F(AtThePrompt, KindsThatTheSwitchDoesNotHaveAreNotOffered) {
  screen.type("show interface ethernet 1/1, ?");
  EXPECT_TRUE(
      screen.shows("  ethernet      Ethernet port\r\n"
                   "  port-channel  Port-channel\r\n"
                   "  mgmt          Management port\r\n"
                   "  loopback      Loopback interface\r\n"
                   "  vethernet     Virtual Ethernet\r\n"
                   "  fc            Fibre-Channel port\r\n"
                   "  all           All interfaces\r\n"))
      << screen.unread();
}

TEST_F(Keystrokes, KindsThatTheCommandCreatesAreOffered) {
  const std::string file = std::string(testing::TempDir()) + "/one_port_of_management.yaml";
  std::ofstream(file) << "switch: {name: lab}\ninterfaces:\n  - {range: mgmt 0}\n";
  EXPECT_EQ(run_shell_on(file, {"-c", "show interface l?"}).out, "");
  EXPECT_EQ(run_shell_on(file, {"-c", "configure", "-c", "interface l?", "-c", "no interface l?"}).out,
            "  loopback      Loopback interface\n");
  EXPECT_EQ(run_shell_on(file, {"-c", "configure", "-c", "interface mgmt 0, ?"}).out,
            "  mgmt          Management port\n"
            "  loopback      Loopback interface\n"
            "  all           All interfaces\n"
            "  NUMBER        Management port: 0\n"
            "  \"PATTERN\"     Names like \"e*1/[1-3]\": * ? and [...] stand for characters\n");
}

TEST_F(AtThePrompt, TabListsTheChoicesWhenThereIsMoreThanOne) {
  screen.type("show \t");
  EXPECT_TRUE(screen.shows("interface       kernel-map\r\nmodule          panel ")) << screen.unread();
  EXPECT_TRUE(screen.shows("lab# show ")) << screen.unread();
}

TEST_F(AtThePrompt, QuestionMarkHelpsInTheMiddleOfAWordAndKeepsTheLine) {
  screen.type("show transp?");
  EXPECT_TRUE(screen.shows("  transport     Messages between this shell and the services\r\n")) << screen.unread();
  EXPECT_TRUE(screen.shows("lab# show transp")) << screen.unread();
  screen.type("\r");
  EXPECT_TRUE(screen.shows("Messages sent:")) << screen.unread();
}

TEST_F(AtThePrompt, TabCompletesTheWordsBehindARange) {
  screen.type("sh\tint\tethernet 1/1 stat\tmod\t1?");
  EXPECT_TRUE(screen.shows("lab# show interface ethernet 1/1 status module 1")) << screen.unread();
  screen.type("\r");
  EXPECT_TRUE(screen.shows("Eth1/1         Desk 1             up")) << screen.unread();
}

TEST_F(AtThePrompt, QuestionMarkBehindARangeListsTheTables) {
  screen.type("show interface ethernet 1/1 de?");
  EXPECT_TRUE(
      screen.shows("  debounce      How long a link must be down to count\r\n"
                   "  description   Descriptions\r\n"))
      << screen.unread();
  EXPECT_TRUE(screen.shows("lab# show interface ethernet 1/1 de")) << screen.unread();
  screen.type("s\r");
  EXPECT_TRUE(screen.shows("Ethernet1/1              Desk 1\r\n")) << screen.unread();
}

TEST_F(AtThePrompt, TabNamesTheTablesThatBeginAlike) {
  screen.type("show interface de\t");
  EXPECT_TRUE(screen.shows("debounce     description  detailed\r\n")) << screen.unread();
}

TEST_F(AtThePrompt, QuestionMarkInAnExpressionIsAnOrdinarySign) {
  screen.type("show interface ethernet 1/1 | include Desx?k\r");
  EXPECT_TRUE(screen.shows("  Description: Desk 1\r\n")) << screen.unread();
}

TEST_F(AtThePrompt, CtrlCAbandonsTheLine) {
  screen.type("show interface");
  screen.type(kCtrlC);
  EXPECT_TRUE(screen.shows("^C")) << screen.unread();
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("show transport\r");
  EXPECT_TRUE(screen.shows("Messages sent:                    0\r\n")) << screen.unread();
}

// The block of the port is shown; the statistics behind it do not come.
constexpr char kLastLineOfTheBlock[] = "  Switchport monitor is off \r\n";

TEST_F(Keystrokes, CtrlCEndsACommandThatWaitsAndNotTheShell) {
  terminal screen({"--provoke", "statistics=silent"});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface ethernet 1/1, 1/2\r");
  ASSERT_TRUE(screen.shows(kLastLineOfTheBlock)) << screen.unread();
  screen.type(kCtrlC);
  ASSERT_TRUE(screen.shows("lab# ")) << screen.unread();
  screen.type("show transport\r");
  EXPECT_TRUE(screen.shows("  dropped twice:                  0\r\n")) << screen.unread();
  EXPECT_TRUE(screen.shows("  never dropped:                  0\r\n")) << screen.unread();
  screen.type("exit\r");
  EXPECT_EQ(screen.exit_code(), 0);
}

TEST_F(Keystrokes, NothingIsShownAfterCtrlC) {
  terminal screen({"--provoke", "statistics=silent"});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface ethernet 1/1, 1/2\r");
  ASSERT_TRUE(screen.shows(kLastLineOfTheBlock)) << screen.unread();
  screen.type(kCtrlC);
  ASSERT_TRUE(screen.shows("lab# ")) << screen.unread();
  EXPECT_EQ(screen.seen().find("stats unavailable"), std::string::npos) << screen.seen();
  EXPECT_EQ(screen.seen().find("Ethernet1/2"), std::string::npos) << screen.seen();
}

TEST_F(Keystrokes, CtrlCEndsAOneShotCommandWith130) {
  terminal screen({"--provoke", "statistics=silent", "-c", "show interface ethernet 1/1", "-c", "help"});
  ASSERT_TRUE(screen.shows(kLastLineOfTheBlock)) << screen.unread();
  screen.type(kCtrlC);
  EXPECT_EQ(screen.exit_code(), 130);
  EXPECT_EQ(screen.unread().find("stats unavailable"), std::string::npos) << screen.unread();
  EXPECT_EQ(screen.unread().find("All commands"), std::string::npos) << screen.unread();
}

TEST_F(AtThePrompt, TallOutputStopsAtTheEndOfAScreen) {
  screen.type("show interface\r");
  ASSERT_TRUE(screen.shows("--More--")) << screen.unread();
  screen.type(" ");
  ASSERT_TRUE(screen.shows("--More--")) << screen.unread();
  screen.type("q");
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("show interface | no-more\r");
  EXPECT_TRUE(screen.shows("Vethernet1 is up")) << screen.unread();
  EXPECT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("exit\r");
  EXPECT_EQ(screen.exit_code(), 0);
}

TEST_F(AtThePrompt, LengthOfTheTerminalIsThatOfTheSession) {
  screen.type("terminal length 0\r");
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("show interface\r");
  ASSERT_TRUE(screen.shows("Vethernet1 is up")) << screen.unread();
  EXPECT_EQ(screen.seen().find("--More--"), std::string::npos);
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("terminal length 6\r");
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("show interface ethernet 1/1\r");
  ASSERT_TRUE(screen.shows("--More--")) << screen.unread();
  screen.type("q");
  EXPECT_TRUE(screen.shows_prompt()) << screen.unread();
}

TEST_F(Keystrokes, BannerNamesTheSwitch) {
  terminal screen({});
  ASSERT_TRUE(screen.shows("pmsh on lab. Type '?' for the next word, 'help' for all commands.\r\n")) << screen.unread();
  EXPECT_TRUE(screen.shows("lab# ")) << screen.unread();
}

TEST_F(Keystrokes, CommandOfTheProgramHasNoBanner) {
  terminal screen({"-c", "show clock"});
  EXPECT_EQ(screen.exit_code(), 0);
  EXPECT_EQ(screen.unread().find("pmsh on"), std::string::npos) << screen.unread();
}

TEST_F(AtThePrompt, TableThatFitsTheScreenDoesNotStop) {
  screen.type("show interface status\r");
  ASSERT_TRUE(screen.shows("Veth1 ")) << screen.unread();
  ASSERT_TRUE(screen.shows("lab# ")) << screen.unread();
  EXPECT_EQ(screen.seen().find("--More--"), std::string::npos);
}

TEST_F(AtThePrompt, ShortOutputDoesNotStop) {
  screen.type("show interface ethernet 1/1\r");
  ASSERT_TRUE(screen.shows("  Switchport monitor is off \r\nlab# ")) << screen.unread();
}

TEST_F(Keystrokes, HistoryIsKeptBetweenSessions) {
  {
    terminal screen({});
    ASSERT_TRUE(screen.shows_prompt());
    screen.type("show interface ethernet 1/2 | include Desc\r");
    ASSERT_TRUE(screen.shows("Desk 2\r\n")) << screen.unread();
    ASSERT_TRUE(screen.shows_prompt());
    screen.type(kCtrlD);
    ASSERT_EQ(screen.exit_code(), 0);
  }
  EXPECT_TRUE(std::filesystem::exists(state_directory() + "/pmsh/history"));
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type(std::string(kUp) + "\r");
  EXPECT_TRUE(screen.shows("Desk 2\r\n")) << screen.unread();
}

}  // namespace
}  // namespace session
