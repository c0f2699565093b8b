#include "support/fresh_process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#ifdef PMCLI_COVERAGE
extern "C" void __gcov_dump();
#else
static void __gcov_dump() {}
#endif

namespace pmcli_test {

void in_fresh_process(const std::function<void()>& body) {
  std::fflush(nullptr);
  const pid_t child = fork();
  ASSERT_NE(child, -1) << "fork failed";
  if (child == 0) {
    body();
    std::fflush(nullptr);
    __gcov_dump();  // what ran here counts, too
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status)) << "the process ended by signal " << WTERMSIG(status);
  EXPECT_EQ(WEXITSTATUS(status), 0) << "the body failed in its own process, see above";
}

}  // namespace pmcli_test
