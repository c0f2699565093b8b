// Files of commands that a session runs, and the files that it writes.
#include <fcntl.h>
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

const std::string kSwitch = test_file("configuration.yaml");

// The settings that the switch file has.
const std::string kMembers = "interface ethernet 1/11-12\n  channel-group 7\n";

class ConfigurationFiles : public testing::Test {
 protected:
  ConfigurationFiles() {
    char name[] = "/tmp/pmsh-configuration-XXXXXX";
    directory_ = mkdtemp(name);
  }
  ~ConfigurationFiles() override {
    fs::remove_all(directory_);
    fs::remove_all(state_directory());
  }

  std::string path(const std::string& name) const { return directory_ + "/" + name; }

  // Writes a file; returns its path.
  std::string make(const std::string& name, const std::string& text) const {
    std::ofstream(path(name)) << text;
    return path(name);
  }

  static std::string text_of(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  }

  static outcome run(const std::string& lines, std::vector<std::string> options = {}) {
    return run_shell_on(kSwitch, std::move(options), lines);
  }

  std::string directory_;
};

using CopyToRunningConfig = ConfigurationFiles;

TEST_F(CopyToRunningConfig, TheLinesOfAFileAreRun) {
  const std::string file = make("site.cfg", "! a comment\nconfigure\ninterface ethernet 1/1\n  shutdown\nend\n");
  const outcome result = run("copy " + file + " running-config\nshow running-config\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "Applied " + file + ".\n! Settings of lab\nconfigure\ninterface ethernet 1/1\n  shutdown\n" +
                            kMembers + "end\n");
}

TEST_F(CopyToRunningConfig, SettingsThatTheFileDoesNotNameStay) {
  const std::string file = make("site.cfg", "configure\ninterface ethernet 1/2\nshutdown\n");
  const outcome result = run("configure\ninterface ethernet 1/1\nshutdown\nend\ncopy " + file +
                             " running-config\nshow running-config interface ethernet 1/1-2\n");
  EXPECT_EQ(result.out,
            "Applied " + file + ".\n! Settings of lab\nconfigure\ninterface ethernet 1/1-2\n  shutdown\nend\n");
}

TEST_F(CopyToRunningConfig, WhatTheLinesPrintComesBeforeTheResult) {
  const std::string file = make("show.cfg",
                                "show interface ethernet 1/1 description | include Eth\nshow interface "
                                "ethernet 1/2 description | include Eth\n");
  const std::string lines = run("show interface ethernet 1/1-2 description | include Eth\n").out;
  EXPECT_NE(lines, "");
  EXPECT_EQ(run("copy " + file + " running-config\n").out, lines + "Applied " + file + ".\n");
  EXPECT_EQ(run("copy " + file + " running-config | include 1/2\n").out, lines.substr(lines.find('\n') + 1));
  EXPECT_EQ(run("copy " + file + " running-config | count\n").out, "3\n");
}

TEST_F(CopyToRunningConfig, StandardInputIsAFileToo) {
  const outcome result = run("show running-config | count\n", {"-c", "copy - running-config"});
  EXPECT_EQ(result.out, "5\nApplied standard input.\n");
}

TEST_F(CopyToRunningConfig, TheSessionKeepsItsMode) {
  const std::string file = make("site.cfg", "configure\ninterface ethernet 1/2\nshutdown\n");
  const outcome result =
      run("configure\ninterface ethernet 1/1\ncopy " + file +
          " running-config\nswitchport mtu 9000\nend\nshow running-config interface ethernet 1/1-2\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "Applied " + file +
                            ".\n! Settings of lab\nconfigure\ninterface ethernet 1/1\n  switchport mtu 9000\n"
                            "interface ethernet 1/2\n  shutdown\nend\n");
}

TEST_F(CopyToRunningConfig, AModeWhoseInterfaceIsDeletedIsLeft) {
  const std::string file = make("site.cfg", "configure\nno interface loopback 7\n");
  const outcome result = run("configure\ninterface loopback 7\ncopy " + file + " running-config\nshutdown\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pmsh: 'shutdown' is a setting of interfaces. Type 'interface RANGE' first.\n");
}

TEST_F(CopyToRunningConfig, ExitEndsTheFileAndNotTheSession) {
  const std::string file = make("site.cfg", "configure\nexit\nexit\nno such command\n");
  const outcome result = run("copy " + file + " running-config\nshow running-config | count\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "Applied " + file + ".\n5\n");
}

TEST_F(CopyToRunningConfig, TheFirstFailureEndsIt) {
  const std::string file = make("site.cfg", "configure\ninterface ethernet 1/1\nswitchport mtu 99999\nshutdown\n");
  const std::string first = "pmsh: expected a number from 1 to 65535 for BYTES, not '99999'.\npmsh: " + file +
                            ":3: 'switchport mtu 99999' failed";
  const outcome ended = run("copy " + file + " running-config\nshow running-config interface ethernet 1/1\n");
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_EQ(ended.err, first + "; the remaining lines were not run. Use --keep-going to continue.\n");
  EXPECT_EQ(ended.out, "! Settings of lab\nconfigure\nend\n");
  const outcome result =
      run("copy " + file + " running-config\nshow running-config interface ethernet 1/1\n", {"--keep-going"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, first + ".\n");
  EXPECT_EQ(result.out, "! Settings of lab\nconfigure\ninterface ethernet 1/1\n  shutdown\nend\n");
}

TEST_F(CopyToRunningConfig, TheStructuredFormIsOneDocument) {
  const std::string file = make(
      "site.cfg", "show interface ethernet 1/1 description | include Eth\nshow transport | json\nconfigure\nno such\n");
  const outcome result = run("copy " + file + " running-config | json\n");
  EXPECT_EQ(result.exit_code, 1);
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  ASSERT_FALSE(document.HasParseError()) << result.out;
  EXPECT_STREQ(document["display"].GetString(), "text");
  EXPECT_EQ(document["command"].GetString(), "copy " + file + " running-config");
  EXPECT_EQ(document["exit_code"].GetInt(), 1);
  const auto messages = document["messages"].GetArray();
  ASSERT_GE(messages.Size(), 4U);
  EXPECT_THAT(std::string(messages[0]["text"].GetString()), StartsWith("Ethernet1/1 ")) << result.out;
  EXPECT_STREQ(messages[0]["severity"].GetString(), "info");
  const auto& last = messages[messages.Size() - 1];
  EXPECT_STREQ(last["severity"].GetString(), "error");
  EXPECT_EQ(last["text"].GetString(),
            file + ":4: 'no such' failed; the remaining lines were not run. Use --keep-going to continue.");
  const auto& reason = messages[messages.Size() - 2];
  EXPECT_STREQ(reason["severity"].GetString(), "error");
  EXPECT_EQ(result.err,
            "pmsh: " + std::string(reason["text"].GetString()) + "\npmsh: " + last["text"].GetString() + "\n");
}

TEST_F(CopyToRunningConfig, FilesMayRunOtherFiles) {
  const std::string inner = make("inner.cfg", "configure\ninterface ethernet 1/1\nshutdown\n");
  const std::string outer =
      make("outer.cfg", "configure\ninterface ethernet 1/2\ncopy " + inner + " running-config\nshutdown\n");
  const outcome result = run("copy " + outer + " running-config\nshow running-config interface ethernet 1/1-2\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "Applied " + inner + ".\nApplied " + outer +
                            ".\n! Settings of lab\nconfigure\ninterface ethernet 1/1-2\n  shutdown\nend\n");
}

// The file of the first command is the first of eight.
TEST_F(CopyToRunningConfig, FilesAreNestedEightDeep) {
  for (int i = 1; i < 9; ++i) make(std::to_string(i), "copy " + path(std::to_string(i + 1)) + " running-config\n");
  make("9", "show running-config | count\n");
  const outcome result = run("copy " + path("2") + " running-config\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "");
  const outcome too_deep = run("copy " + path("1") + " running-config\n");
  EXPECT_EQ(too_deep.exit_code, 1);
  EXPECT_EQ(too_deep.out, "");
  EXPECT_THAT(too_deep.err, StartsWith("pmsh: '" + path("9") +
                                       "' was not run: files may run each other 8 deep. Does one run itself?\npmsh: " +
                                       path("8") + ":1: 'copy " + path("9") + " running-config' failed; "));
}

TEST_F(CopyToRunningConfig, AFileThatRunsItselfEnds) {
  const std::string file = path("circle");
  make("circle", "show running-config | count\ncopy " + file + " running-config\n");
  const outcome result = run("copy " + file + " running-config\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "5\n5\n5\n5\n5\n5\n5\n5\n");
  EXPECT_THAT(result.err, StartsWith("pmsh: '" + file + "' was not run: "));
  EXPECT_EQ(run_shell_on(kSwitch, {"-f", file}).out, result.out) << "that of -f is one of them";
}

TEST_F(CopyToRunningConfig, NothingOfAFileWithAFaultIsApplied) {
  const std::string begin = "configure\ninterface ethernet 1/1\nshutdown\n";
  const std::string zero = make("zero", begin + std::string("switchport \0mtu 9000\n", 21));
  const std::string longer = make("longer", begin + "description " + std::string(70'000, 'x') + "\n");
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  const struct {
    std::string file, error;
  } cases[] = {
      {path("none"), "cannot read '" + path("none") + "': No such file or directory."},
      {directory_, "cannot read '" + directory_ + "': Is a directory."},
      {path("pipe"), "cannot read '" + path("pipe") + "': no process writes to the pipe."},
      {zero, zero + ":4: the line contains a zero byte. Expected a text file with commands."},
      {longer, longer + ":4: the line is longer than 65536 bytes."},
  };
  for (const auto& it : cases) {
    const outcome result = run("copy " + it.file + " running-config\nshow running-config interface ethernet 1/1\n");
    EXPECT_EQ(result.exit_code, 1) << it.file;
    EXPECT_EQ(result.err, "pmsh: " + it.error + "\n");
    EXPECT_EQ(result.out, "! Settings of lab\nconfigure\nend\n") << it.file;
    const outcome structured = run("copy " + it.file + " running-config | json\n");
    EXPECT_EQ(structured.err, "pmsh: " + it.error + "\n");
    EXPECT_THAT(structured.out, HasSubstr("\"severity\":\"error\",\"text\":\"" + it.error + "\""));
  }
}

TEST_F(CopyToRunningConfig, TheStartupConfigIsApplied) {
  const outcome none = run("copy startup-config running-config\n");
  EXPECT_EQ(none.exit_code, 4);
  EXPECT_EQ(none.err,
            "pmsh: there is no startup-config yet. Type 'copy running-config startup-config' to store one.\n");
  EXPECT_EQ(run("configure\ninterface ethernet 1/1\nshutdown\nend\ncopy running-config startup-config\n").exit_code, 0);
  const outcome result = run("copy startup-config running-config\nshow running-config interface ethernet 1/1\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "Applied " + state_directory() +
                            "/pmsh/lab.startup-config.\n! Settings of lab\nconfigure\ninterface ethernet 1/1\n"
                            "  shutdown\nend\n");
}

using StartupConfig = ConfigurationFiles;

TEST_F(StartupConfig, IsShownAsItWasStored) {
  const outcome stored = run("configure\ninterface ethernet 1/1-2\nshutdown\ndescription \"a | b\"\nend\nwrite\n");
  EXPECT_EQ(stored.out, "Written to '" + state_directory() + "/pmsh/lab.startup-config'.\n");
  const outcome result = run("show startup-config\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out,
            "! Settings of lab\nconfigure\ninterface ethernet 1/1-2\n  description \"a | b\"\n  shutdown\n" + kMembers +
                "end\n");
  EXPECT_EQ(run("show startup-config | include shut\n").out, "  shutdown\n");
}

TEST_F(StartupConfig, HasTheCommandsByRangeInTheStructuredForm) {
  run("configure\ninterface ethernet 1/1-2, ethernet 1/4\nshutdown\ndescription lab\nend\nwrite\n");
  const outcome result = run("show startup-config | json\n");
  const std::size_t list = result.out.find("\"commands\":[");
  ASSERT_NE(list, std::string::npos) << result.out;
  EXPECT_THAT(result.out, HasSubstr("\"display\":\"startup_config\""));
  EXPECT_EQ(result.out.substr(list),
            "\"commands\":[\n"
            "{\"interface_range\":\"ethernet 1/1-2\",\"command\":\"description lab\"},\n"
            "{\"interface_range\":\"ethernet 1/1-2\",\"command\":\"shutdown\"},\n"
            "{\"interface_range\":\"ethernet 1/4\",\"command\":\"description lab\"},\n"
            "{\"interface_range\":\"ethernet 1/4\",\"command\":\"shutdown\"},\n"
            "{\"interface_range\":\"ethernet 1/11-12\",\"command\":\"channel-group 7\"}\n"
            "],\"messages\":[],\"exit_code\":0}\n");
}

// A file that a person wrote: abbreviations, modes, lines that are no commands.
TEST_F(StartupConfig, CommandsOutsideOfInterfacesHaveNoRange) {
  fs::create_directories(state_directory() + "/pmsh");
  std::ofstream(state_directory() + "/pmsh/lab.startup-config")
      << "# mine\nconf t\nno interface loopback 7\nint e1/1, e1/3\nshut\nnonsense \x1b[31m\nexit\nundo\nend\nwrite";
  const outcome result = run("show startup-config | json\n");
  EXPECT_EQ(result.out.substr(result.out.find("\"commands\"")),
            "\"commands\":[\n"
            "{\"interface_range\":null,\"command\":\"no interface loopback 7\"},\n"
            "{\"interface_range\":\"e1/1, e1/3\",\"command\":\"shut\"},\n"
            "{\"interface_range\":\"e1/1, e1/3\",\"command\":\"nonsense \\u001b[31m\"},\n"
            "{\"interface_range\":null,\"command\":\"undo\"},\n"
            "{\"interface_range\":null,\"command\":\"write\"}\n"
            "],\"messages\":[],\"exit_code\":0}\n");
  const outcome text = run("show startup-config\n");
  EXPECT_THAT(text.out, HasSubstr("\nnonsense \\x1b[31m\n"));
  EXPECT_THAT(text.out, EndsWith("end\nwrite\n"));
}

TEST_F(StartupConfig, ThatWasNotStoredIsReported) {
  const std::string error = "there is no startup-config yet. Type 'copy running-config startup-config' to store one.";
  const outcome result = run("show startup-config\n");
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "pmsh: " + error + "\n");
  const outcome structured = run("show startup-config | json\n");
  EXPECT_EQ(structured.exit_code, 4);
  EXPECT_EQ(structured.out.substr(structured.out.find("\"commands\"")),
            "\"commands\":[],\"messages\":[\n{\"interface\":null,\"severity\":\"error\",\"text\":\"" + error +
                "\"}\n],\"exit_code\":4}\n");
  EXPECT_EQ(run("", {"--config", "startup-config"}).err, "pmsh: " + error + "\n");
}

TEST_F(StartupConfig, ThatCannotBeReadIsReported) {
  const std::string file = state_directory() + "/pmsh/lab.startup-config";
  fs::create_directories(file);
  const outcome result = run("show startup-config\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pmsh: cannot read '" + file + "': Is a directory.\n");
}

TEST_F(StartupConfig, AStateDirectoryThatIsAFileIsNamed) {
  fs::create_directories(state_directory());
  std::ofstream(state_directory() + "/pmsh") << "not a directory";
  const outcome result = run("write\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pmsh: cannot write '" + state_directory() + "/pmsh/lab.startup-config': Not a directory.\n");
  EXPECT_EQ(text_of(state_directory() + "/pmsh"), "not a directory");
}

TEST_F(StartupConfig, APathWithANewlineStaysOnItsLine) {
  const outcome result = run_program(
      "/usr/bin/env", {"XDG_STATE_HOME=" + path("of\nuser"), PMSH_PROGRAM, "--switch", kSwitch, "-c", "write"});
  EXPECT_EQ(result.out, "Written to '" + path("of\\x0auser/pmsh/lab.startup-config") + "'.\n");
  EXPECT_EQ(result.exit_code, 0) << result.err;
}

// The directory of another user, who lets no one write there.
TEST_F(StartupConfig, AStateDirectoryThatMayNotBeWrittenIsNamed) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can be another user";
  ASSERT_EQ(chmod(directory_.c_str(), 0755), 0);
  const outcome result = run_program(
      "/usr/bin/setpriv", {"--reuid=65534", "--clear-groups", "/usr/bin/env", "XDG_STATE_HOME=" + path("state"),
                           PMSH_PROGRAM, "--switch", kSwitch, "-c", "write"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pmsh: cannot write '" + path("state/pmsh/lab.startup-config") + "': Permission denied.\n");
  EXPECT_TRUE(fs::is_empty(directory_));
}

using WrittenSettings = ConfigurationFiles;

TEST_F(WrittenSettings, HostileTargetsAreNamed) {
  fs::create_symlink("b", path("a"));
  fs::create_symlink("a", path("b"));
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  const struct {
    std::string file, reason;
  } cases[] = {
      {path("a"), "Too many levels of symbolic links"},
      {path("none/settings"), "No such file or directory"},
      {path("pipe"), "no process reads the pipe"},
      {"/dev/full", "No space left on device"},
      {directory_, "Is a directory"},
  };
  for (const auto& it : cases) {
    const outcome result = run("copy running-config " + it.file + "\n");
    EXPECT_EQ(result.exit_code, 1) << it.file;
    EXPECT_EQ(result.out, "") << it.file;
    EXPECT_EQ(result.err, "pmsh: cannot write '" + it.file + "': " + it.reason + ".\n");
  }
}

class WrittenAtThePrompt : public ConfigurationFiles {
 protected:
  // The settings of the switch, as its file has them.
  const std::string settings_ = "! Settings of lab\nconfigure\n" + kMembers + "end\n";
};

TEST_F(WrittenAtThePrompt, AnExistingFileIsReplacedWhenTheUserAgrees) {
  const std::string file = make("settings", "before\n");
  terminal shell({}, kSwitch);
  ASSERT_TRUE(shell.shows_prompt()) << shell.unread();
  for (const char* const answer : {"n\r", "\r"}) {
    shell.type("copy running-config " + file + "\r");
    ASSERT_TRUE(shell.shows("Replace '" + file + "'? (y/n) [n] ")) << shell.unread();
    shell.type(answer);
    ASSERT_TRUE(shell.shows("nothing was written: '" + file + "' exists.")) << shell.unread();
    ASSERT_TRUE(shell.shows_prompt());
    EXPECT_EQ(text_of(file), "before\n");
  }
  shell.type("copy running-config " + file + "\r");
  ASSERT_TRUE(shell.shows("Replace '" + file + "'? (y/n) [n] ")) << shell.unread();
  shell.type("y\r");
  ASSERT_TRUE(shell.shows("Written to '" + file)) << shell.unread();
  EXPECT_EQ(text_of(file), settings_);
}

TEST_F(WrittenAtThePrompt, AFileThatIsMissingIsNotAskedFor) {
  terminal shell({}, kSwitch);
  ASSERT_TRUE(shell.shows_prompt()) << shell.unread();
  shell.type("copy running-config " + path("new") + "\r");
  ASSERT_TRUE(shell.shows("Written to ")) << shell.unread();
  EXPECT_THAT(shell.seen(), Not(HasSubstr("Replace")));
  EXPECT_EQ(text_of(path("new")), settings_);
}

TEST_F(WrittenAtThePrompt, YesReplacesAFileWithoutAQuestion) {
  const std::string file = make("settings", "before\n");
  terminal shell({"--yes"}, kSwitch);
  ASSERT_TRUE(shell.shows_prompt()) << shell.unread();
  shell.type("copy running-config " + file + "\r");
  ASSERT_TRUE(shell.shows("Written to '" + file)) << shell.unread();
  EXPECT_THAT(shell.seen(), Not(HasSubstr("Replace")));
  EXPECT_EQ(text_of(file), settings_);
}

// The pipe has a writer, which writes no more.
TEST_F(WrittenAtThePrompt, WaitingForAPipeEndsWithCtrlC) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  const int both = open(path("pipe").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(both, 0);
  ASSERT_EQ(write(both, "! begun\n", 8), 8);
  terminal shell({}, kSwitch);
  ASSERT_TRUE(shell.shows_prompt()) << shell.unread();
  shell.type("copy " + path("pipe") + " running-config\r");
  ASSERT_TRUE(shell.shows("running-config\r\n")) << shell.unread();
  for (int unread = 1; unread != 0; usleep(1000)) ASSERT_EQ(ioctl(both, FIONREAD, &unread), 0);
  shell.type("\x03");
  ASSERT_TRUE(shell.shows_prompt()) << shell.unread();
  shell.type("show running-config | count\r");
  ASSERT_TRUE(shell.shows("5\r\n")) << shell.unread();
  close(both);
}

}  // namespace
}  // namespace session
