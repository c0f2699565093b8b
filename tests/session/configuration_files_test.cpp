// Files of commands that a session runs, and the files that it writes.
#include <gtest/gtest.h>
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
  const std::string first = "pmsh: '99999' is no BYTES: it takes a number from 1 to 65535.\npmsh: " + file +
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
  EXPECT_TRUE(std::string(messages[0]["text"].GetString()).starts_with("Ethernet1/1 ")) << result.out;
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
  EXPECT_TRUE(too_deep.err.starts_with("pmsh: '" + path("9") +
                                       "' was not run: files may run each other 8 deep. Does one run itself?\npmsh: " +
                                       path("8") + ":1: 'copy " + path("9") + " running-config' failed; "))
      << too_deep.err;
}

TEST_F(CopyToRunningConfig, AFileThatRunsItselfEnds) {
  const std::string file = path("circle");
  make("circle", "show running-config | count\ncopy " + file + " running-config\n");
  const outcome result = run("copy " + file + " running-config\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "5\n5\n5\n5\n5\n5\n5\n5\n");
  EXPECT_TRUE(result.err.starts_with("pmsh: '" + file + "' was not run: ")) << result.err;
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
    EXPECT_NE(structured.out.find("\"severity\":\"error\",\"text\":\"" + it.error + "\""), std::string::npos)
        << structured.out;
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

}  // namespace
}  // namespace session
