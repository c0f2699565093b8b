// Output that cannot be written.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "session/program.h"

namespace session {
namespace {

// The shell on the switch of these tests, with its standard output where a shell's redirection puts it.
outcome run_shell_to(const std::string& redirection, std::vector<std::string> arguments) {
  std::vector<std::string> all{"-c", "exec \"$0\" \"$@\" " + redirection, PMSH_PROGRAM, "--switch",
                               test_file("lab.yaml")};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return run_program("/bin/sh", all);
}

class FullDisk : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(FullDisk, IsNamed) {
  const outcome result = run_shell_to(">/dev/full", GetParam());

  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err, "pmsh: the output cannot be written: No space left on device.\n");
}

TEST_P(FullDisk, IsLikeAClosedOutput) {
  const outcome result = run_shell_to(">&-", GetParam());

  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err, "pmsh: the output cannot be written: Bad file descriptor.\n");
}

using arguments = std::vector<std::string>;
INSTANTIATE_TEST_SUITE_P(Outputs, FullDisk,
                         testing::Values(arguments{"-c", "show interface"},
                                         arguments{"-c", "show interface brief | json"},
                                         arguments{"-c", "watch 1 show interface brief"},
                                         arguments{"-c", "show interface ?"}, arguments{"-c", "show running-config"},
                                         arguments{"--print-json-schema"}, arguments{"--version"},
                                         arguments{"--help"}));

TEST(LostOutput, EndsTheCommandsThatFollow) {
  const outcome result = run_shell_to(">/dev/full", {"-c", "show interface", "-c", "nonsense"});

  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err, "pmsh: the output cannot be written: No space left on device.\n");
}

// The output is longer than a pipe holds, so that the reader has left before it ends.
TEST(LostOutput, OfAReaderThatLeavesIsQuiet) {
  const outcome result = run_program(
      "/bin/sh", {"-c", "trap '' PIPE; { \"$0\" --giant 300 -c 'show interface' -c nonsense; echo $? >&2; } | head -1",
                  PMSH_PROGRAM});

  EXPECT_EQ(result.out, "mgmt0 is up\n");
  EXPECT_EQ(result.err, "0\n");
}

// The writer's end does not block, and its reader begins late.
TEST(LostOutput, OfAFullPipeIsWaitedFor) {
  const std::string script =
      "import os, subprocess, sys\n"
      "reader, writer = os.pipe()\n"
      "os.set_blocking(writer, False)\n"
      "shell = subprocess.Popen(sys.argv[1:], stdout=writer)\n"
      "os.close(writer)\n"
      "while open(f'/proc/{shell.pid}/stat').read().rsplit(')', 1)[1].split()[0] == 'R': pass\n"
      "size = 0\n"
      "while part := os.read(reader, 4096): size += len(part)\n"
      "print(shell.wait(), size)\n";
  const arguments shell{PMSH_PROGRAM, "--giant", "300", "-c", "show interface"};
  const outcome whole = run_program(shell[0], {shell.begin() + 1, shell.end()});
  arguments python{"-c", script};
  python.insert(python.end(), shell.begin(), shell.end());

  const outcome result = run_program("/usr/bin/python3", python);

  EXPECT_GT(whole.out.size(), 65536U);
  EXPECT_EQ(result.out, "0 " + std::to_string(whole.out.size()) + "\n");
}

}  // namespace
}  // namespace session
