// The functions of the C library that the shell defines itself.
#include "shell/platform/libc_calls.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "messages/calls/client_libraries.h"
#include "switch/clock.h"
#include "transport/failures.h"

namespace session {
namespace {

TEST(TimeOfTheShell, IsTheHostsClock) {
  host::clock_set(1800000000);
  std::time_t stored = 0;
  EXPECT_EQ(std::time(&stored), 1800000000);
  EXPECT_EQ(stored, 1800000000);
  host::clock_advance(60);
  EXPECT_EQ(std::time(nullptr), 1800000060);
  host::clock_follow_machine();
}

TEST(SystemOfTheShell, RecordsAndRunsNothing) {
  const std::string file = "ran-by-system." + std::to_string(getpid());
  host::system_commands().clear();
  EXPECT_EQ(std::system(("touch " + file).c_str()), 127 << 8);
  EXPECT_EQ(access(file.c_str(), F_OK), -1);
  EXPECT_EQ(host::system_commands(), std::vector<std::string>{"touch " + file});
  EXPECT_EQ(std::system(nullptr), 0);
}

TEST(SystemOfTheShell, KnowsTheRequestOfTheInbandDriver) {
  host::system_commands().clear();
  // 0 where the machine has the device, a failed command's status where it has none: never "not found".
  EXPECT_NE(std::system("echo > /proc/vexa/hw/inband/dicounts"), 127 << 8);
  EXPECT_EQ(host::system_commands().size(), 1U);
}

// The libraries lie beside those tests that open them by path; the loader does not find them by name here.
TEST(LoaderOfTheShell, NotesClientLibrariesThatAreMissing) {
  for (const host::client_library& library : host::client_libraries()) {
    host::forget_failures();
    EXPECT_EQ(dlopen(library.file, RTLD_LAZY), nullptr);
    const std::vector<host::failure> noted(host::noted_failures().begin(), host::noted_failures().end());
    EXPECT_EQ(noted, (std::vector<host::failure>{{library.file, host::fault::not_opened}}));
  }
}

TEST(LoaderOfTheShell, LeavesOtherLibrariesToTheirCallers) {
  host::forget_failures();
  EXPECT_EQ(dlopen("libof-another.so", RTLD_LAZY), nullptr);
  void* const process = dlopen(nullptr, RTLD_LAZY);
  EXPECT_NE(process, nullptr);
  dlclose(process);
  EXPECT_TRUE(host::noted_failures().empty());
}

}  // namespace
}  // namespace session
