// Services that fail, in every way, and what the shell says and returns.
#include <gtest/gtest.h>

#include <filesystem>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

namespace fs = std::filesystem;

constexpr char kOnePort[] = "show interface ethernet 1/1";

class PortManagerFails : public testing::TestWithParam<const char*> {};

TEST_P(PortManagerFails, CommandSaysSoAndReturnsTwo) {
  const outcome result =
      run_shell({"--wait", "1", "--inject-fault", std::string("port-manager=") + GetParam(), "-c", kOnePort});

  EXPECT_EQ(result.out.find("error: "), 0U) << result.out;
  EXPECT_EQ(result.out.find("Ethernet1/1"), std::string::npos);
  EXPECT_EQ(result.exit_code, 2);
}

INSTANTIATE_TEST_SUITE_P(Ways, PortManagerFails,
                         testing::Values("lost", "reject", "silent", "cut:0", "cut:3", "cut:9"));

TEST(Failures, InterruptedWaitsAreTakenUpAgain) {
  const outcome result = run_shell({"--inject-fault", "port-manager=interrupt:3", "-c", kOnePort});

  EXPECT_EQ(result.out.find("Ethernet1/1 is up\n"), 0U);
  EXPECT_EQ(result.exit_code, 0);
}

TEST(Failures, ServiceThatFailsForSomeInterfacesReturnsThree) {
  const outcome result =
      run_shell({"--inject-fault", "card-config=lost", "-c", "show interface ethernet 1/1, vethernet 1"});

  EXPECT_EQ(result.out.find("crdcfg_get_port_cap failed with "), 0U);
  EXPECT_NE(result.out.find("Vethernet1 is up\n"), std::string::npos);
  EXPECT_EQ(result.exit_code, 3);
}

// Messages of one command, as "show transport" accounts for them afterwards.
struct account {
  uint64_t sent, received, dropped, twice, never;
};

account account_after(std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"-c", "show transport | json"});
  const std::string out = run_shell(arguments).out;
  rapidjson::Document document;
  document.Parse(out.c_str() + out.rfind("{\"schema_version\""));
  const auto& counts = document["transport"];
  return {counts["sent"].GetUint64(), counts["received"].GetUint64(), counts["dropped"].GetUint64(),
          counts["dropped_twice"].GetUint64(), counts["never_dropped"].GetUint64()};
}

// A missing answer about addresses reads like no address in the text.
TEST(Failures, OfWhichTheTextSaysNothingAreNamed) {
  const char* const command = "show interface ethernet 1/1, loopback 0 brief";
  const outcome some = run_shell({"--inject-fault", "ip=lost", "-c", command});
  EXPECT_EQ(some.exit_code, 3);
  EXPECT_EQ(some.err, "pmsh: the service 'ip' is not running.\n");

  const outcome all = run_shell({"--inject-fault", "ip=reject", "-c", "show interface ethernet 1/1 brief"});
  EXPECT_EQ(all.exit_code, 2);
  EXPECT_EQ(all.err, "pmsh: the service 'ip' refused a request.\n");

  const outcome document = run_shell({"--inject-fault", "ip=cut:3", "-c", std::string(command) + " | json"});
  EXPECT_EQ(document.exit_code, 3);
  EXPECT_EQ(document.err, "pmsh: the service 'ip' answered with less than it promised.\n");
  EXPECT_NE(document.out.find("{\"interface\":\"Ethernet1/1\",\"severity\":\"error\",\"text\":\"the service 'ip' "
                              "answered with less than it promised.\"}"),
            std::string::npos)
      << document.out;
}

TEST(Accounts, EveryMessageIsDroppedOnceAfterShowInterface) {
  const account messages = account_after({"-c", "show interface"});

  EXPECT_GT(messages.sent, 20U);
  EXPECT_EQ(messages.received, messages.sent);
  EXPECT_EQ(messages.dropped, messages.sent + messages.received);
  EXPECT_EQ(messages.twice, 0U);
  EXPECT_EQ(messages.never, 0U);
}

class AccountsOfFailures : public testing::TestWithParam<const char*> {};

TEST_P(AccountsOfFailures, AreBalanced) {
  const account messages = account_after({"--wait", "1", "--inject-fault", GetParam(), "-c", kOnePort});

  EXPECT_EQ(messages.dropped, messages.sent + messages.received);
  EXPECT_EQ(messages.twice, 0U);
  EXPECT_EQ(messages.never, 0U);
}

INSTANTIATE_TEST_SUITE_P(Ways, AccountsOfFailures,
                         testing::Values("port-manager=reject", "port-manager=silent", "port-manager=cut:2",
                                         "interface-manager=reject", "statistics=reject", "statistics=cut:7",
                                         "card-config=reject", "card-config=silent", "ip=cut:1", "port-channel=lost"));

// The program and its libraries in a directory of their own, less one library.
class InstalledWithout {
 public:
  explicit InstalledWithout(const std::string& library) : root_(fs::path(state_directory()) / ("without-" + library)) {
    const fs::path program = PMSH_PROGRAM;
    fs::remove_all(root_);
    fs::create_directories(root_ / "bin");
    fs::create_directories(root_ / "lib");
    fs::copy_file(program, root_ / "bin/pmsh");
    for (const fs::path& entry : fs::directory_iterator(program.parent_path().parent_path() / "lib")) {
      if (entry.extension() == ".so" && entry.filename() != library)
        fs::copy_file(entry, root_ / "lib" / entry.filename());
    }
  }
  ~InstalledWithout() { fs::remove_all(state_directory()); }

  outcome run(const std::string& command) const {
    return run_program((root_ / "bin/pmsh").string(), {"--switch", test_file("lab.yaml"), "-c", command});
  }

  void copy(const std::string& library, const std::string& as) const {
    fs::copy_file(root_ / "lib" / library, root_ / "lib" / as);
  }

 private:
  fs::path root_;
};

TEST(RemovedLibrary, OfTheStatisticsLeavesTheRestOfTheDisplay) {
  const outcome result = InstalledWithout("libstatcl.so").run(kOnePort);

  EXPECT_NE(result.out.find("Ethernet1/1 is up\n"), std::string::npos);
  EXPECT_NE(result.out.find("stats unavailable\n"), std::string::npos);
  EXPECT_EQ(result.err, "pmsh: the library 'libstatcl.so' cannot be opened.\n");
  EXPECT_EQ(result.exit_code, 2);
}

TEST(RemovedLibrary, OfTheStatisticsLeavesCountersAndSaysWhich) {
  const InstalledWithout installed("libstatcl.so");
  for (const char* const command : {"clear counters ethernet", "clear counters"}) {
    const outcome result = installed.run(command);
    EXPECT_EQ(result.out, "") << command;
    EXPECT_EQ(result.err,
              "pmsh: counters of ethernet 1/1-5, ethernet 1/10, ethernet 2/1, ethernet 2/1.5, vethernet 1 were not "
              "cleared: libstatcl.so cannot be opened.\n"
              "pmsh: the library 'libstatcl.so' cannot be opened.\n")
        << command;
    EXPECT_EQ(result.exit_code, 2) << command;
  }
  const outcome range = installed.run("clear counters interface ethernet 1/1, loopback 0");
  EXPECT_EQ(range.err,
            "pmsh: counters of ethernet 1/1 were not cleared: libstatcl.so cannot be opened.\n"
            "pmsh: the library 'libstatcl.so' cannot be opened.\n");
  EXPECT_EQ(range.exit_code, 2);
}

TEST(RemovedLibrary, OfTheIpStatisticsLeavesCountersAndSaysWhich) {
  const InstalledWithout installed("libip_stats.so");
  for (const char* const command :
       {"clear counters loopback", "clear counters", "clear counters interface loopback 0, ethernet 1/1"}) {
    const outcome result = installed.run(command);
    EXPECT_EQ(result.out, "") << command;
    EXPECT_EQ(result.err,
              "pmsh: counters of loopback 0 were not cleared: libip_stats.so cannot be opened.\n"
              "pmsh: the library 'libip_stats.so' cannot be opened.\n")
        << command;
    EXPECT_EQ(result.exit_code, 2) << command;
  }
}

TEST(ReplacedLibrary, WithoutTheFunctionLeavesCountersAndSaysWhich) {
  const InstalledWithout installed("libip_stats.so");
  installed.copy("libpvlan.so", "libip_stats.so");
  const outcome result = installed.run("clear counters interface loopback 0");
  EXPECT_EQ(result.out.find("error: "), 0U) << result.out;
  EXPECT_EQ(result.err,
            "pmsh: counters of loopback 0 were not cleared: libip_stats.so has no function "
            "ip_clear_loopback_counters.\n"
            "pmsh: the library 'libip_stats.so' has no function ip_get_loopback_counters.\n");
  EXPECT_EQ(result.exit_code, 2);
}

TEST(RemovedLibrary, OfTheCommandsIsAClearError) {
  const outcome result = InstalledWithout("libpmcli_common.so").run(kOnePort);

  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err.find("pmsh: cannot load the command library: "), 0U) << result.err;
  EXPECT_NE(result.err.find("libpmcli_common.so"), std::string::npos) << result.err;
  EXPECT_EQ(result.exit_code, 2);
}

TEST(MovedProgram, FindsItsLibrariesWhereItLies) {
  const outcome result = InstalledWithout("nothing").run(kOnePort);

  EXPECT_EQ(result.out.find("Ethernet1/1 is up\n"), 0U) << result.err;
  EXPECT_EQ(result.exit_code, 0);
}

}  // namespace
}  // namespace session
