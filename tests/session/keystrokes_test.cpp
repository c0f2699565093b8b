// The shell at a terminal, key by key.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "session/program.h"

namespace session {
namespace {

constexpr char kCtrlC[] = "\x03";
constexpr char kCtrlD[] = "\x04";
constexpr char kUp[] = "\x1b[A";

struct Keystrokes : testing::Test {
  Keystrokes() {
    unsetenv("PAGER");
    unsetenv("LESS");
  }
  ~Keystrokes() override { std::filesystem::remove_all(state_directory()); }
};

// A variable of the environment, while it lives.
class variable {
 public:
  variable(const char* name, const std::string& value) : name_(name) {
    if (const char* const old = std::getenv(name)) before_ = old;
    setenv(name, value.c_str(), 1);
  }
  ~variable() { before_ ? setenv(name_, before_->c_str(), 1) : unsetenv(name_); }
  variable(const variable&) = delete;
  variable& operator=(const variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
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

TEST_F(AtThePrompt, TabListsTheChoicesWhenThereIsMoreThanOne) {
  screen.type("show \t");
  EXPECT_TRUE(screen.shows("history         interface\r\nkernel-map      module          panel ")) << screen.unread();
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
      screen.shows("  debounce      Link debounce times\r\n"
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

TEST_F(Keystrokes, TallOutputStopsAtTheEndOfAScreenWhereThereIsNoPager) {
  const variable path("PATH", "/nowhere");
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
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

TEST_F(Keystrokes, TypedUtf8ArrivesInEveryLocale) {
  for (const char* const locale : {"C.UTF-8", "C", "xx_XX.UTF-8", ""}) {
    const variable all("LC_ALL", locale);
    terminal screen({});
    ASSERT_TRUE(screen.shows_prompt()) << locale;
    screen.type("find \u00fcbung\u20ac\r");
    EXPECT_TRUE(screen.shows("'\u00fcbung\u20ac'")) << locale << screen.unread();
    ASSERT_TRUE(screen.shows_prompt()) << locale;
    screen.type("find \u00e4\u00fc\x7f\x7fzzz\r");
    EXPECT_TRUE(screen.shows("'zzz'")) << locale << ": a key deletes a character" << screen.unread();
  }
}

TEST_F(Keystrokes, MissingLineEditorIsReportedOnce) {
  std::filesystem::create_directories(state_directory());
  std::ofstream(state_directory() + "/libedit.so.2").close();
  const variable libraries("LD_LIBRARY_PATH", state_directory());
  terminal screen({});
  ASSERT_TRUE(
      screen.shows("pmsh: lines cannot be edited: libedit.so.2 cannot be loaded. Install the package libedit2.\r\n"))
      << screen.unread();
  screen.type("show transport | count\rshow transport | include sent\rexit\r");
  EXPECT_TRUE(screen.shows("\r\n5\r\n")) << screen.unread();
  EXPECT_EQ(screen.exit_code(), 0);
  EXPECT_EQ(screen.unread().find("libedit"), std::string::npos) << screen.unread();
}

std::string text_of(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A program that keeps the lines of its input and shows the first and their number until a key comes.
std::string pager_script() {
  const std::string file = state_directory() + "/pager";
  std::filesystem::create_directories(state_directory());
  std::ofstream(file) << "#!/bin/sh\ncat > " + state_directory() + "/paged\n" + "echo \"PAGER $(wc -l < " +
                             state_directory() + "/paged) $1 key?\"\nread key < /dev/tty\n";
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  return file;
}

std::size_t count_lines(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST_F(Keystrokes, PagerGetsWhatDoesNotFitAScreen) {
  const variable pager("PAGER", pager_script() + " option");
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface status\r");
  ASSERT_TRUE(screen.shows_prompt());
  EXPECT_FALSE(std::filesystem::exists(state_directory() + "/paged")) << "it fits";
  screen.type("show interface\r");
  ASSERT_TRUE(screen.shows(" option key?")) << screen.unread();
  const std::string text = text_of(state_directory() + "/paged");
  EXPECT_EQ(text, run_command("show interface").out);
  EXPECT_NE(screen.seen().find("PAGER " + std::to_string(count_lines(text))), std::string::npos) << screen.seen();
  screen.type("\r");
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show transport | count\r");
  EXPECT_TRUE(screen.shows("\r\n5\r\n")) << screen.unread();
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface | no-more\r");
  ASSERT_TRUE(screen.shows("Vethernet1 is up")) << screen.unread();
  EXPECT_EQ(screen.seen().find("PAGER"), std::string::npos);
}

TEST_F(Keystrokes, PagerThatLeavesEndsTheOutputWithoutAnError) {
  const variable pager("PAGER", "head -n 1");
  terminal screen({"--giant", "512"}, "");
  ASSERT_TRUE(screen.shows("# ")) << screen.unread();
  screen.type("show interface\r");
  ASSERT_TRUE(screen.shows("\x1b[J")) << screen.unread();
  ASSERT_TRUE(screen.shows("# ")) << screen.unread();
  EXPECT_EQ(screen.seen().find("pmsh:"), std::string::npos) << screen.seen();
  screen.type("exit\r");
  EXPECT_EQ(screen.exit_code(), 0);
}

TEST_F(Keystrokes, CtrlCIsForThePagerAndNotForTheShell) {
  const variable pager("PAGER",
                       "sh -c 'trap \"echo GOT; exit\" INT; cat > /dev/null; echo READY; while :; do sleep 0.1; done'");
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface\r");
  ASSERT_TRUE(screen.shows("READY\r\n")) << screen.unread();
  screen.type(kCtrlC);
  EXPECT_TRUE(screen.shows("GOT\r\n")) << screen.unread();
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("exit\r");
  EXPECT_EQ(screen.exit_code(), 0);
}

TEST_F(Keystrokes, EmptyPagerAndCatHaveNoPages) {
  for (const char* const none : {"", " ", "cat"}) {
    const variable pager("PAGER", none);
    terminal screen({});
    ASSERT_TRUE(screen.shows_prompt());
    screen.type("show interface\r");
    ASSERT_TRUE(screen.shows("Vethernet1 is up")) << screen.unread();
    EXPECT_EQ(screen.seen().find("--More--"), std::string::npos);
    EXPECT_TRUE(screen.shows_prompt());
  }
}

TEST_F(Keystrokes, PagerThatCannotStartIsReportedAndTheShellStops) {
  const variable pager("PAGER", "/no/such/pager -x");
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface\r");
  ASSERT_TRUE(screen.shows(
      "pmsh: the pager '/no/such/pager -x' cannot be started: No such file or directory. Check $PAGER.\r\n"))
      << screen.unread();
  ASSERT_TRUE(screen.shows("--More--")) << screen.unread();
  screen.type("q");
  EXPECT_TRUE(screen.shows_prompt());
}

TEST_F(Keystrokes, LengthOfTheTerminalHasNoOtherPager) {
  const variable pager("PAGER", pager_script());
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("terminal length 6\r");
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface\r");
  ASSERT_TRUE(screen.shows("--More--")) << screen.unread();
  screen.type("q");
  EXPECT_TRUE(screen.shows_prompt());
}

TEST_F(Keystrokes, LessIsThePagerWhereItIsInstalled) {
  if (run_program("/bin/sh", {"-c", "command -v less"}).exit_code != 0) GTEST_SKIP() << "less is not installed";
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show interface\r");
  ASSERT_TRUE(screen.shows("\x1b[J")) << screen.unread();
  ASSERT_TRUE(screen.shows("\r\n:")) << screen.unread();
  screen.type("G");
  ASSERT_TRUE(screen.shows("Vethernet1 is up")) << screen.unread();
  screen.type("q");
  ASSERT_TRUE(screen.shows_prompt()) << screen.unread();
  screen.type("exit\r");
  EXPECT_EQ(screen.exit_code(), 0);
}

std::string history_path() { return state_directory() + "/pmsh/history"; }

void write_history(const std::string& text) {
  std::filesystem::create_directories(state_directory() + "/pmsh");
  std::ofstream(history_path()) << text;
}

TEST_F(Keystrokes, ShellsThatAreKilledLoseNoLine) {
  terminal first({}), second({});
  ASSERT_TRUE(first.shows_prompt() && second.shows_prompt());
  first.type("show clock\r");
  ASSERT_TRUE(first.shows_prompt());
  second.type("show version\r");
  ASSERT_TRUE(second.shows_prompt());
  first.type("show clock | count\r");
  ASSERT_TRUE(first.shows_prompt());
  EXPECT_EQ(text_of(history_path()), "show clock\nshow version\nshow clock | count\n");
  first.signal(SIGHUP);
  second.signal(SIGTERM);
  EXPECT_EQ(first.exit_code(), 128 + SIGHUP);
  EXPECT_EQ(second.exit_code(), 128 + SIGTERM);
  EXPECT_EQ(text_of(history_path()), "show clock\nshow version\nshow clock | count\n");
}

TEST_F(AtThePrompt, SignalThatEndsTheShellRestoresTheTerminal) {
  EXPECT_FALSE(screen.is_cooked());
  screen.signal(SIGTERM);
  EXPECT_EQ(screen.exit_code(), 128 + SIGTERM);
  EXPECT_TRUE(screen.is_cooked());
}

TEST_F(AtThePrompt, HistoryIsShownWithTheLineThatShowsIt) {
  screen.type("show clock | count\r");
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show clock | count\r");
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show history\r");
  EXPECT_TRUE(screen.shows("\r\n    1  show clock | count\r\n    2  show history\r\nlab# ")) << screen.unread();
}

TEST_F(Keystrokes, HistoryIsShownToPrograms) {
  EXPECT_EQ(run_command("show history").out, "");
  write_history("show clock\nshow interface | include a\\b\n");
  EXPECT_EQ(run_command("show history").out, "    1  show clock\n    2  show interface | include a\\b\n");
  const std::string document = run_command("show history | json").out;
  EXPECT_NE(
      document.find("\"commands\":[\n{\"command\":\"show clock\"},\n{\"command\":\"show interface | include a\\\\b\"}"),
      std::string::npos)
      << document;
}

TEST_F(Keystrokes, LongHistoryIsShortenedWhenAShellStarts) {
  std::string lines;
  for (int i = 1; i <= 2500; ++i) lines += "line " + std::to_string(i) + "\n";
  write_history(lines);
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  EXPECT_EQ(text_of(history_path()), lines.substr(lines.find("line 1501\n")));
}

TEST_F(Keystrokes, HistoryInTheFormOfTheLineEditorIsRead) {
  write_history("_HiStOrY_V2_\nshow\\040clock\\040|\\040include\\040a\\134d\n");
  EXPECT_EQ(run_command("show history").out, "    1  show clock | include a\\d\n");
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  EXPECT_EQ(text_of(history_path()), "show clock | include a\\d\n");
}

TEST_F(Keystrokes, HistoryThatCannotBeWrittenIsReportedOnce) {
  std::filesystem::create_directories(history_path());
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show clock\r");
  ASSERT_TRUE(screen.shows("pmsh: the history is not kept: ")) << screen.unread();
  ASSERT_TRUE(screen.shows_prompt());
  screen.type("show version\r");
  ASSERT_TRUE(screen.shows_prompt());
  EXPECT_EQ(screen.seen().find("history"), std::string::npos) << screen.seen();
}

}  // namespace
}  // namespace session
