// Which interfaces a command shows: ranges of every form, and whole switches.
#include <gtest/gtest.h>

#include "session/program.h"

namespace session {
namespace {

outcome run_on_giant(const std::string& command) {
  return run_program(PMSH_PROGRAM, {"--giant", "10000", "-c", command});
}

std::string names_of(const outcome& result) {
  std::string names;
  for (std::size_t at = 0; (at = result.out.find("{\"interface\":\"", at)) != std::string::npos; ++at) {
    const std::size_t start = at + std::string("{\"interface\":\"").size();
    names += result.out.substr(start, result.out.find('"', start) - start) + " ";
  }
  return names;
}

// Names that a range selects, in order.
std::string selected(const std::string& range) {
  return names_of(run_command("show interface " + range + " status | json"));
}

TEST(Selection, DuplicatesCountOnceWhereTheyAreNamedFirst) {
  EXPECT_EQ(selected("ethernet 1/2-4, ethernet 1/1-3"), "Ethernet1/2 Ethernet1/3 Ethernet1/4 Ethernet1/1 ");
  EXPECT_EQ(selected("ethernet 1/10, 1/10"), "Ethernet1/10 ");
  EXPECT_EQ(selected("ethernet 1/10, \"*1/1*\", ethernet 1/1-2"), "Ethernet1/10 Ethernet1/1 Ethernet1/2 ");
}

TEST(Selection, SpansMayRepeatTheWordAndNumbersMayBeLastParts) {
  const char kFour[] = "Ethernet1/1 Ethernet1/2 Ethernet1/3 Ethernet1/4 ";
  EXPECT_EQ(selected("ethernet1/1-ethernet1/4"), kFour);
  EXPECT_EQ(selected("e1/1-3,4"), kFour);
}

TEST(Selection, ExceptTakesInterfacesAway) {
  EXPECT_EQ(selected("ethernet 1/1-4 except 1/2, \"Ethernet1/3\""), "Ethernet1/1 Ethernet1/4 ");
  const outcome none = run_command("show interface ethernet 1/1-4 except all status");
  EXPECT_EQ(none.err, "pmsh: 'except' leaves no interface of the range.\n");
  EXPECT_EQ(none.exit_code, 4);
}

TEST(Selection, AllIsWhatACommandWithoutARangeShows) {
  for (const char* const table : {"status", "description"}) {
    const outcome all = run_command(std::string("show interface all ") + table);
    EXPECT_EQ(all.out, run_command(std::string("show interface ") + table).out) << table;
    EXPECT_EQ(all.err, "") << table;
    EXPECT_EQ(all.exit_code, 0) << table;
  }
}

TEST(Selection, PatternsMatchNames) {
  EXPECT_EQ(selected("\"e*1/[1-3]\""), "Ethernet1/1 Ethernet1/2 Ethernet1/3 ");
  EXPECT_EQ(selected("'ETHERNET 1/?'"), "Ethernet1/1 Ethernet1/2 Ethernet1/3 Ethernet1/4 Ethernet1/5 ");
  const outcome none = run_command("show interface \"x*\" status");
  EXPECT_EQ(none.err, "pmsh: no such interface: \"x*\". Type 'show interface ?' for the kinds.\n");
  EXPECT_EQ(none.exit_code, 4);
}

TEST(Selection, RangeSpansModulesAndKindsInNaturalOrder) {
  EXPECT_EQ(selected("ethernet 1/4-2/1"), "Ethernet1/4 Ethernet1/5 Ethernet1/10 Ethernet2/1 ");
}

TEST(Selection, SubInterfacesAreTakenByTheirNumberOnly) {
  EXPECT_EQ(selected("ethernet 2/1"), "Ethernet2/1 ");
  EXPECT_EQ(selected("ethernet 2/1.5"), "Ethernet2/1.5 ");
}

TEST(Selection, ReversedRangesAreUsageErrors) {
  for (const char* const range : {"ethernet 1/4-1", "ethernet 2/1-1/4", "port-channel 7-4"}) {
    const outcome result = run_command(std::string("show interface ") + range + " brief");
    EXPECT_EQ(result.exit_code, 1) << range;
    EXPECT_EQ(result.out, "") << range;
    EXPECT_NE(result.err.find("reversed range"), std::string::npos) << result.err;
  }
}

constexpr char kAbsentEnds[] = "no such interface: ethernet 1/9, port-channel 8, \"x*\", mgmt 1. The others are shown.";

TEST(Selection, AbsentEndsAreNamedAndTheRestIsShown) {
  const std::string range = "show interface ethernet 1/4-9, port-channel 8, \"x*\", vethernet 1, mgmt 1 status";
  const outcome text = run_command(range);
  EXPECT_EQ(text.out, run_command("show interface ethernet 1/4-5, vethernet 1 status").out);
  EXPECT_EQ(text.err, "pmsh: " + std::string(kAbsentEnds) + "\n");
  EXPECT_EQ(text.exit_code, 4);

  const outcome document = run_command(range + " | json");
  EXPECT_EQ(names_of(document), "Ethernet1/4 Ethernet1/5 Vethernet1 ");
  EXPECT_NE(
      document.out.find("no such interface: ethernet 1/9, port-channel 8, \\\"x*\\\", mgmt 1. The others are shown."),
      std::string::npos)
      << document.out;
  EXPECT_NE(document.out.find("\"exit_code\":4"), std::string::npos) << document.out;
}

TEST(Selection, EveryDisplayOfARangeShowsWhatExists) {
  for (const char* const line : {"show interface e1/1-9 overview", "show running-config interface e1/1-9"}) {
    const outcome result = run_command(line);
    EXPECT_NE(result.out, "") << line;
    EXPECT_EQ(result.err, "pmsh: no such interface: ethernet 1/9. The others are shown.\n");
    EXPECT_EQ(result.exit_code, 4) << line;
  }
}

TEST(Selection, RangeOfWhichNothingExistsIsAnError) {
  for (const char* const range : {"ethernet 1/6-9", "ethernet 1/6-9 except ethernet 1/1"}) {
    const outcome result = run_command(std::string("show interface ") + range + " brief");
    EXPECT_EQ(result.out, "") << range;
    EXPECT_EQ(result.err,
              "pmsh: no such interface: ethernet 1/6, ethernet 1/9. Type 'show interface ?' for the kinds.\n");
    EXPECT_EQ(result.exit_code, 4) << range;
  }
}

TEST(Selection, CommandsThatChangeInterfacesRefuseAbsentEnds) {
  const char kRefusal[] = "pmsh: no such interface: ethernet 1/9. Type 'show interface ?' for the kinds.\n";
  EXPECT_EQ(run_command("clear counters interface ethernet 1/1-9").err, kRefusal);
  const outcome configured = run_shell(
      {"-c", "configure", "-c", "interface ethernet 1/1-9", "-c", "shutdown", "-c", "show interface e1/1 brief"});
  EXPECT_EQ(configured.err.find(kRefusal), 0U) << configured.err;
  EXPECT_EQ(run_shell({"-c", "configure", "-c", "interface all except ethernet 1/9"}).err, kRefusal);
}

// An argument of the library holds 64 ranges.
TEST(Selection, MoreThan64RangesAreTaken) {
  std::string command = "show interface ethernet 1/1";
  for (int module = 2; module <= 75; ++module)
    command += "," + std::to_string(module % 37 + 1) + "/" + (module <= 38 ? "2-3" : "5");
  EXPECT_EQ(run_on_giant(command + " status | include ^Eth | count").out, "112\n");
}

TEST(Selection, AllPortsOfAGiantAreShown) {
  const outcome status = run_on_giant("show interface status | include ^Eth | count");
  EXPECT_EQ(status.out, "10000\n");
  EXPECT_EQ(status.exit_code, 0);
}

// Routed-capable ports, which have no row there, take the even slots.
TEST(Selection, BriefTableOfAGiantHasTheRowsOfItsKinds) {
  const outcome rows = run_on_giant("show interface brief | include ^Ethernet | count");
  const outcome indexes = run_on_giant("show interface ifindex | include ^Eth | count");
  EXPECT_EQ(rows.out, indexes.out);
  EXPECT_GT(std::stoi(rows.out), 4000);
  EXPECT_EQ(rows.exit_code, 0);
}

TEST(Selection, RangeOverManyModulesOfAGiant) {
  const outcome result = run_on_giant("show interface ethernet 1/1-10/20 status | json");
  const std::string names = names_of(result);
  EXPECT_EQ(names.find("Ethernet1/1 Ethernet1/2 "), 0U);
  EXPECT_EQ(names.substr(names.size() - std::string("Ethernet10/19 Ethernet10/20 ").size()),
            "Ethernet10/19 Ethernet10/20 ");
}

TEST(Selection, PortManagerThatDoesNotAnswerEndsTheCommand) {
  for (const char* const range : {"", "ethernet 1/1 ", "port-channel 7 "}) {
    const outcome result =
        run_shell({"--inject-fault", "port-manager=lost", "-c", "show interface " + std::string(range) + "status"});
    EXPECT_EQ(result.out.find("error: no answer to the request: "), 0U) << range << result.out;
    EXPECT_EQ(result.out.find('\n'), result.out.size() - 1) << result.out;
    EXPECT_EQ(result.exit_code, 2) << range;
  }
}

TEST(Selection, EveryMessageIsDropped) {
  const outcome result =
      run_shell_on(shipped_switch("storage.yaml"),
                   {"--user", "storage-a", "-c", "show interface fc 1/1-8, fcip 1, port-channel 1, ethernet 4/1 status",
                    "-c", "show interface status", "-c", "show transport"});
  EXPECT_NE(result.out.find("  dropped twice:                  0\n"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("  never dropped:                  0\n"), std::string::npos) << result.out;
}

}  // namespace
}  // namespace session
