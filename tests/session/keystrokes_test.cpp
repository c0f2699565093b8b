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

std::string file_text(const std::string& path) {
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
  const std::string text = file_text(state_directory() + "/paged");
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
  EXPECT_EQ(file_text(history_path()), "show clock\nshow version\nshow clock | count\n");
  first.signal(SIGHUP);
  second.signal(SIGTERM);
  EXPECT_EQ(first.exit_code(), 128 + SIGHUP);
  EXPECT_EQ(second.exit_code(), 128 + SIGTERM);
  EXPECT_EQ(file_text(history_path()), "show clock\nshow version\nshow clock | count\n");
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
  EXPECT_EQ(file_text(history_path()), lines.substr(lines.find("line 1501\n")));
}

TEST_F(Keystrokes, HistoryInTheFormOfTheLineEditorIsRead) {
  write_history("_HiStOrY_V2_\nshow\\040clock\\040|\\040include\\040a\\134d\n");
  EXPECT_EQ(run_command("show history").out, "    1  show clock | include a\\d\n");
  terminal screen({});
  ASSERT_TRUE(screen.shows_prompt());
  EXPECT_EQ(file_text(history_path()), "show clock | include a\\d\n");
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
