// "show panel": the fronts of the modules.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

struct Panel : testing::Test {
  Panel() {
    setenv("LC_ALL", "C", 1);
    unsetenv("NO_COLOR");
  }
  ~Panel() override {
    unsetenv("LC_ALL");
    unsetenv("NO_COLOR");
    std::filesystem::remove_all(state_directory());
  }

  static outcome run(const std::string& command) {
    return run_shell_on(test_file("overview.yaml"), {"--clock", "1700000000", "-c", command});
  }
};

TEST_F(Panel, ShowsEachModuleWithAllItsPorts) {
  const outcome result = run("show panel");
  EXPECT_EQ(result.out,
            "Module 1: COPPER\n"
            "+---+---+---+---+---+---+ +---+\n"
            "| 1U| 3A|   |   |   |   | |   |\n"
            "| 2U| 4D|   |   |   |   | |14E|\n"
            "+---+---+---+---+---+---+ +---+\n"
            "Module 2: FIBRE\n"
            "+---+---+---+---+---+---+ +---+\n"
            "| 1U| 3U| 5U| 7U| 9U|11U| |13U|\n"
            "| 2U| 4U| 6U| 8U|10U|12U| |   |\n"
            "+---+---+---+---+---+---+ +---+\n"
            "Module 1 of unit 101\n"
            "+---+---+---+---+---+\n"
            "|   |   |   |   |   |\n"
            "|   |   |   |   |10U|\n"
            "+---+---+---+---+---+\n"
            "U up, D down, A administratively down, E error-disabled, ? not known\n");
  EXPECT_EQ(result.exit_code, 0);
}

TEST_F(Panel, PortsOfAllKindsAreOnTheFrontOfTheirModule) {
  EXPECT_EQ(run_command("show panel | begin 'Module 2' | exclude ^U").out,
            "Module 2: FIBRE\n"
            "+---+---+---+---+---+\n"
            "| 1U|   |   |   | 9U|\n"
            "|   |   |   |   |   |\n"
            "+---+---+---+---+---+\n");
}

TEST_F(Panel, HasBoxCharactersInAUtf8Locale) {
  setenv("LC_ALL", "C.UTF-8", 1);
  EXPECT_EQ(run("show panel | begin unit | exclude ^U").out,
            "Module 1 of unit 101\n"
            "┌───┬───┬───┬───┬───┐\n"
            "│   │   │   │   │   │\n"
            "│   │   │   │   │10U│\n"
            "└───┴───┴───┴───┴───┘\n");
}

TEST_F(Panel, DocumentHasARecordForEachPort) {
  rapidjson::Document document;
  const outcome result = run("show panel | json");
  document.Parse(result.out.c_str());
  EXPECT_STREQ(document["display"].GetString(), "panel");
  const auto& ports = document["ports"];
  ASSERT_EQ(ports.Size(), 19U);
  EXPECT_STREQ(ports[4]["interface"].GetString(), "Ethernet1/14");
  EXPECT_TRUE(ports[4]["unit"].IsNull());
  EXPECT_EQ(ports[4]["module"].GetUint(), 1U);
  EXPECT_STREQ(ports[4]["model"].GetString(), "COPPER");
  EXPECT_STREQ(ports[4]["state"].GetString(), "down");
  EXPECT_STREQ(ports[4]["state_reason"].GetString(), "Error disabled");
  EXPECT_EQ(ports[18]["unit"].GetUint(), 101U);
  EXPECT_EQ(ports[18]["module"].GetUint(), 1U);
  EXPECT_TRUE(ports[18]["state_reason"].IsNull());
  EXPECT_EQ(document["messages"].Size(), 0U);
}

TEST_F(Panel, ServiceThatFailsReturnsTwo) {
  const outcome result = run_shell({"--inject-fault", "interface-values=reject", "-c", "show panel"});
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "pmsh: the service 'interface-values' refused a request.\n");
  EXPECT_EQ(result.exit_code, 2);
}

TEST_F(Panel, ColoursShowTheStateAtATerminal) {
  terminal screen({"-c", "show panel"}, test_file("overview.yaml"));
  EXPECT_TRUE(
      screen.shows("| \x1b[32m1\x1b[0m | \x1b[2m3\x1b[0m |   |   |   |   | |   |\r\n"
                   "| \x1b[32m2\x1b[0m | \x1b[33m4\x1b[0m |   |   |   |   | |\x1b[31m14\x1b[0m |\r\n"))
      << screen.unread();
  EXPECT_TRUE(screen.shows("\x1b[32mup\x1b[0m  \x1b[33mdown\x1b[0m  ")) << screen.unread();
  EXPECT_EQ(screen.exit_code(), 0);
}

TEST_F(Panel, WithoutColoursATerminalShowsLetters) {
  setenv("NO_COLOR", "1", 1);
  terminal screen({"-c", "show panel"}, test_file("overview.yaml"));
  EXPECT_TRUE(screen.shows("| 2U| 4D|   |   |   |   | |14E|\r\n")) << screen.unread();
  EXPECT_EQ(screen.exit_code(), 0);
}

}  // namespace
}  // namespace session
