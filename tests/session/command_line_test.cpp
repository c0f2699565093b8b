// Words, help, pipes and options, by arguments.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string error_of(const std::string& command) {
  const outcome result = run_command(command);
  EXPECT_EQ(result.exit_code, 1) << command;
  EXPECT_EQ(result.out, "") << command;
  return result.err;
}

rapidjson::Document parse_document(const outcome& result) {
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  EXPECT_FALSE(document.HasParseError()) << result.out;
  return document;
}

TEST(CommandLine, UnknownWordNamesTheOneThatWasMeant) {
  EXPECT_EQ(error_of("show interfce"),
            "pmsh: unknown word 'interfce': did you mean 'interface'? Type 'show ?' for the list.\n");
  EXPECT_EQ(error_of("xyzzy"), "pmsh: unknown word 'xyzzy'. Type '?' for the list.\n");
}

TEST(CommandLine, AmbiguousWordListsTheCandidates) {
  EXPECT_EQ(error_of("show interface s 1"),
            "pmsh: ambiguous word 's': server, sup-fc, status. Type one more letter.\n");
}

TEST(CommandLine, IncompleteCommandSaysHowToGoOn) {
  EXPECT_EQ(error_of("show"), "pmsh: incomplete command 'show'. Type 'show ?' for the list.\n");
  EXPECT_EQ(
      error_of("show interface ethernet"),
      "pmsh: a number is missing after 'show interface ethernet'. Type 'show interface ethernet ?' for the list.\n");
}

TEST(CommandLine, WordsBehindTheEndAreTooMuch) {
  EXPECT_EQ(error_of("exit now"), "pmsh: unexpected 'now' after 'exit'.\n");
}

TEST(CommandLine, ControlBytesOfATypedWordAreShownAsText) {
  EXPECT_EQ(error_of("\x1b[2Jshow"), "pmsh: unknown word '\\x1b[2Jshow'. Type '?' for the list.\n");
}

TEST(CommandLine, QuestionMarkListsTheTablesOfAFamily) {
  EXPECT_EQ(run_command("show ip ?").out,
            "  arp           IPv4 neighbors\n"
            "  interface     Interfaces: settings, state and traffic\n");
  EXPECT_EQ(run_command("show lldp ?").out, "  neighbors     Neighbors on the links\n");
  EXPECT_EQ(run_command("show mac ?").out, "  address-table  MAC addresses of bridges and ports\n");
  EXPECT_THAT(run_command("show interface ethernet 1/1 ?").out,
              HasSubstr("  hardware      Driver, queues, rings, FEC, EEE and offloads\n"));
  EXPECT_THAT(run_command("show interface counters ?").out,
              HasSubstr("  driver         Counters of drivers under their own names\n"));
}

TEST(CommandLine, QuestionMarkListsTheNextWordsWithTheirHelp) {
  EXPECT_EQ(run_command("show ?").out,
            "  changes         Changes of this session\n"
            "  clock           Clock of the switch\n"
            "  diff            Differences between the candidate and the switch\n"
            "  history         Lines entered at the prompt\n"
            "  interface       Interfaces: settings, state and traffic\n"
            "  ip              IPv4: addresses and neighbors\n"
            "  ipv6            IPv6: addresses and neighbors\n"
            "  kernel-map      Kernel device of each interface\n"
            "  lldp            Neighbors by LLDP\n"
            "  mac             MAC addresses\n"
            "  module          A module or its ports\n"
            "  panel           Front panels of the modules\n"
            "  running-config  Current settings\n"
            "  sessions        Sessions with the switch\n"
            "  spanning-tree   Spanning tree of bridge ports\n"
            "  startup-config  Stored settings\n"
            "  transceiver     Transceivers\n"
            "  transport       Messages between this shell and the services\n"
            "  version         Versions and the platform\n"
            "  vlan            VLANs\n");
}

TEST(CommandLine, QuestionMarkInAWordListsItsCompletions) {
  EXPECT_EQ(run_command("show in?").out, "  interface     Interfaces: settings, state and traffic\n");
}

TEST(CommandLine, QuestionMarkBehindAnInterfaceWordListsTheNumbersThatExist) {
  EXPECT_THAT(run_command("show interface ethernet 1/?").out, HasSubstr("1/1, 1/2, 1/3, 1/4, 1/5, 1/10\n"));
}

TEST(CommandLine, HelpNamesEveryCommand) {
  const outcome result = run_command("help");

  for (const char* const syntax : {"show interface [RANGE]", "show interface [RANGE] status module MODULE",
                                   "show transport", "help", "exit", "quit"})
    EXPECT_THAT(result.out, HasSubstr(std::string("  ") + syntax)) << syntax;
  EXPECT_EQ(result.exit_code, 0);
}

TEST(CommandLine, FindListsTheCommandsThatContainAWord) {
  const outcome result = run_command("find STORED");
  EXPECT_EQ(result.out, "  show startup-config         Stored settings as commands\n");
  EXPECT_EQ(result.exit_code, 0);
  const std::string settings = run_command("find MTU").out;
  EXPECT_THAT(settings, HasSubstr("  show interface [RANGE] brief"));
  EXPECT_THAT(settings, HasSubstr("  switchport mtu BYTES"));
  EXPECT_THAT(settings, Not(HasSubstr("show transport")));
  EXPECT_EQ(error_of("find xyzzy"), "pmsh: no command has 'xyzzy' in its words or its help.\n");
  EXPECT_EQ(error_of("find"), "pmsh: incomplete command 'find'. Type 'find ?' for the list.\n");
  EXPECT_EQ(run_command("find ?").out, "  WORD          Part of a command or of its help\n");
}

TEST(CommandLine, CommentsAreSkipped) {
  for (const char* const comment : {"# what?", "!", "  ! show | jsn", "#show transport | json"}) {
    const outcome result = run_command(comment);
    EXPECT_EQ(result.exit_code, 0) << comment;
    EXPECT_EQ(result.out + result.err, "") << comment;
  }
  EXPECT_EQ(run_shell({}, "! first\nshow interface ethernet 1/1 | include Desc\n").out, "  Description: Desk 1\n");
  EXPECT_THAT(run_command("?").out, HasSubstr("  show "));
}

TEST(CommandLine, DoRunsACommandInTheConfiguration) {
  const outcome result = run_shell({"-c", "configure", "-c", "interface ethernet 1/1", "-c",
                                    "do show interface ethernet 1/1 | include Desc", "-c", "shutdown", "-c",
                                    "do show interface ethernet 1/1 | include ^Eth", "-c", "end"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out.substr(0, 22), "  Description: Desk 1\n");
  EXPECT_THAT(result.out, HasSubstr("\nEthernet1/1 is down"));
}

TEST(Pipes, IncludeExcludeBeginAndCountAreChained) {
  EXPECT_EQ(run_command("show interface ethernet 1/1 | include duplex").out, "  full-duplex, 1000\n");
  EXPECT_EQ(run_command("show interface ethernet 1/1 | begin Auto-mdix").out,
            "  Auto-mdix is turned on\n  Switchport monitor is off \n");
  EXPECT_EQ(run_command("show interface ethernet 1/1 | begin Encaps | exclude \"mdix|monitor\" | count").out, "4\n");
  EXPECT_EQ(run_command("show interface ethernet 1/1 | inc DLY|no-more").out,
            "  MTU 1500 bytes, BW 1000000 Kbit, DLY 20 usec,\n");
}

TEST(Pipes, CountOfNothingIsZero) { EXPECT_EQ(run_command("show interface | include nowhere | count").out, "0\n"); }

TEST(Pipes, MistakesAreNamed) {
  EXPECT_THAT(error_of("show transport | includ ("), HasSubstr("bad expression '('"));
  EXPECT_THAT(error_of("show transport | include"), HasSubstr("needs an expression"));
  EXPECT_THAT(error_of("show transport | jsn"), HasSubstr("did you mean 'json'?"));
  EXPECT_THAT(run_command("show transport | count | json").err, HasSubstr("must be the first"));
}

TEST(Pipes, SectionKeepsTheIndentedLinesOfItsHeadings) {
  EXPECT_EQ(run_command("show interface ethernet 1/1-2 | section \"^Ethernet1/2 \" | include \"^Eth|Desc\"").out,
            "Ethernet1/2 is down (Administratively down)\n  Description: Desk 2\n");
  EXPECT_EQ(run_command("show interface ethernet 1/1-2 | section Desc | count").out, "0\n")
      << "indented lines begin none";
  EXPECT_EQ(run_command("show interface ethernet 1/1-2 | include ^Ethernet | section ^Ethernet1/1 | count").out, "1\n");
  EXPECT_THAT(error_of("show transport | section"), HasSubstr("'| section' needs an expression"));
}

struct SavedOutput : testing::Test {
  SavedOutput() { std::filesystem::create_directories(state_directory()); }
  ~SavedOutput() override { std::filesystem::remove_all(state_directory()); }

  static std::string text_of(const std::string& name) {
    std::ifstream file(name);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const std::string file = state_directory() + "/saved";
};

TEST_F(SavedOutput, FileHasWhatWouldBeShownInAnyOrder) {
  for (const char* const line :
       {"show interface ethernet 1/1 | include Desc | save ", "show interface ethernet 1/1 | save "}) {
    const std::string behind = std::string(line).find("include") == std::string::npos ? " | include Desc" : "";
    const outcome result = run_command(line + file + behind);
    EXPECT_EQ(result.out, "Written to '" + file + "'.\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(text_of(file), "  Description: Desk 1\n");
    std::filesystem::remove(file);
  }
  for (const char* const pipes : {" | json | save ", " | save "}) {
    const std::string behind = std::string(pipes).find("json") == std::string::npos ? " | json" : "";
    EXPECT_EQ(run_command("show transport" + std::string(pipes) + "'" + file + "'" + behind).out,
              "Written to '" + file + "'.\n");
    rapidjson::Document document;
    document.Parse(text_of(file).c_str());
    ASSERT_FALSE(document.HasParseError()) << text_of(file);
    EXPECT_STREQ(document["display"].GetString(), "transport");
    std::filesystem::remove(file);
  }
}

TEST_F(SavedOutput, ExitCodeIsThatOfTheCommand) {
  const outcome result = run_command("show interface ethernet 9/9 | save " + file);
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(result.out, "Written to '" + file + "'.\n");
  EXPECT_EQ(text_of(file), "");
}

TEST_F(SavedOutput, FaultsAreNamed) {
  EXPECT_EQ(error_of("show transport | save /nowhere/x"),
            "pmsh: cannot write '/nowhere/x': No such file or directory.\n");
  EXPECT_EQ(error_of("show transport | save -"), "pmsh: '| save' writes to a file: expected its name, not '-'.\n");
  EXPECT_EQ(error_of("show transport | save"),
            "pmsh: '| save' needs the name of a file, such as '| save ports.txt'.\n");
  EXPECT_EQ(error_of("show transport | save a b"), "pmsh: unexpected 'b' after '| save a'.\n");
  EXPECT_EQ(error_of("show transport | save a | save b"),
            "pmsh: '| save' is written twice: the output goes to one file.\n");
  const outcome watched = run_command("watch 1 show transport | save a");
  EXPECT_EQ(watched.exit_code, 1);
  EXPECT_EQ(watched.err, "pmsh: '| save' does not apply to 'watch'.\n");
  const outcome result = run_command("show transport | json | save /nowhere/x");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(parse_document(result)["exit_code"].GetInt(), 1);
}

TEST(Pipes, QuoteThatIsNotClosedIsAnError) {
  EXPECT_EQ(error_of("show transport | include \"sent"), "pmsh: the quote \" in '\"sent' is not closed.\n");
  EXPECT_EQ(error_of("show transport | exclude sent | begin don't | count"),
            "pmsh: the quote ' in 'don't | count' is not closed.\n");
  EXPECT_EQ(error_of("show transport | include \"sent\\\""), "pmsh: the quote \" in '\"sent\\\"' is not closed.\n");
  EXPECT_EQ(run_command("show transport | include \"don't|sent\" | count").out, "1\n");
  const outcome result = run_command("show transport | json | include \"sent");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pmsh: the quote \" in '\"sent' is not closed.\n");
  EXPECT_EQ(parse_document(result)["exit_code"].GetInt(), 1);
}

TEST(Options, SeveralCommandsRunAndTheFirstFailureIsTheExitCode) {
  const outcome result =
      run_shell({"-c", "show interface ethernet 9/9", "-c", "bad", "-c", "show interface ethernet 1/1"});

  EXPECT_EQ(result.exit_code, 4);
  EXPECT_THAT(result.out, StartsWith("Ethernet1/1 is up\n"));
}

TEST(Options, WordsBehindTheOptionsAreACommand) {
  EXPECT_EQ(run_shell({"show", "interface", "ethernet", "1/1", "|", "include", "Desc"}).out, "  Description: Desk 1\n");
  EXPECT_EQ(run_shell({"show interface ethernet 1/1 | include Desc"}).out, "  Description: Desk 1\n");
  EXPECT_EQ(run_shell({"--clock", "1800000000", "-c", "clock advance 1", "show", "clock"}).out,
            "2027-01-15T08:00:01Z\n");
  const outcome wrong = run_shell({"show", "interface", "--wrong"});
  EXPECT_EQ(wrong.exit_code, 1);
  EXPECT_EQ(wrong.err, "pmsh: unknown word '--wrong'. Type 'show interface ?' for the list.\n");
  for (const char* const option : {"--wrong", "-x", "--verson"}) {
    const outcome unknown = run_shell({option, "show", "clock"});
    EXPECT_EQ(unknown.exit_code, 1) << option;
    EXPECT_THAT(unknown.err, HasSubstr(option));
    EXPECT_EQ(unknown.out, "") << option;
  }
}

TEST(Options, CommandsAreReadFromStandardInputToo) {
  const outcome result = run_shell({}, "show interface ethernet 1/1 | include Desc\nexit\nshow interface\n");

  EXPECT_EQ(result.out, "  Description: Desk 1\n");
  EXPECT_EQ(result.exit_code, 0);
}

TEST(Options, WrongOptionsAreUsageErrors) {
  EXPECT_EQ(run_shell({"--wrong"}).exit_code, 1);
  EXPECT_EQ(run_shell({"--inject-fault", "port-manager=cut"}).exit_code, 1);
  const outcome result = run_shell({"--inject-fault", "nobody=lost", "-c", "help"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.err, HasSubstr("port-manager"));
}

TEST(Options, GiantIsASwitchOfThatManyPorts) {
  const outcome counted =
      run_program(PMSH_PROGRAM, {"--giant", "96", "-c", "show interface | include ^Ethernet | count"});
  EXPECT_EQ(counted.out, "96\n");
  EXPECT_EQ(counted.exit_code, 0);
  for (const char* const wrong : {"0", "10001", "-1", "many"})
    EXPECT_EQ(run_program(PMSH_PROGRAM, {"--giant", wrong, "-c", "help"}).exit_code, 1) << wrong;
  EXPECT_EQ(run_shell({"--giant", "96", "-c", "help"}).exit_code, 1) << "and a file";
}

TEST(Options, FaultsAreInjectedByTheFormerNameToo) {
  for (const char* const name : {"--inject-fault", "--provoke"}) {
    const outcome result = run_shell({name, "port-manager=reject", "-c", "show interface ethernet 1/1 status"});
    EXPECT_EQ(result.err, "pmsh: the service 'port-manager' refused a request.\n") << name;
    EXPECT_EQ(run_shell({name, "port-manager=cut"}).exit_code, 1) << name;
  }
  const std::string help = run_shell({"--help"}).out;
  EXPECT_THAT(help, HasSubstr("--inject-fault SERVICE=FAULT"));
  EXPECT_THAT(help, Not(HasSubstr("--provoke")));
}

TEST(Options, HelpAndVersionAreDone) {
  EXPECT_EQ(run_shell({"--version"}).exit_code, 0);
  const outcome result = run_shell({"--help"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.out, HasSubstr("first exit code that is not 0"));
}

TEST(Options, BadSwitchFileIsNamedWithItsLine) {
  const outcome missing = run_program(PMSH_PROGRAM, {"--switch", "/nowhere.yaml", "-c", "help"});
  EXPECT_EQ(missing.exit_code, 1);
  EXPECT_THAT(missing.err, StartsWith("pmsh: /nowhere.yaml: "));

  const std::string file = test_file("wrong.yaml");
  const outcome wrong = run_program(PMSH_PROGRAM, {"--switch", file, "-c", "help"});
  EXPECT_EQ(wrong.exit_code, 1);
  EXPECT_THAT(wrong.err, StartsWith("pmsh: " + file + ":5: "));
}

}  // namespace
}  // namespace session
