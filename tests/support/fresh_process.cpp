#include "support/fresh_process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

// Of a build that counts what runs; null in others.
extern "C" [[gnu::weak]] void __gcov_dump();

namespace pmcli_test {

void in_fresh_process(const std::function<void()>& body) {
  std::fflush(nullptr);
  const pid_t child = fork();
  ASSERT_NE(child, -1) << "fork failed";
  if (child == 0) {
    body();
    std::fflush(nullptr);
    if (__gcov_dump != nullptr) __gcov_dump();
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status)) << "the process ended by signal " << WTERMSIG(status);
  EXPECT_EQ(WEXITSTATUS(status), 0) << "the body failed in its own process, see above";
}

}  // namespace pmcli_test
