// Files that the user names: what happens to what was there.
#include "shell/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace host {
namespace {

namespace fs = std::filesystem;

std::string text_of(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

mode_t mode_of(const std::string& path) {
  struct stat found {};
  EXPECT_EQ(stat(path.c_str(), &found), 0) << path;
  return found.st_mode & 07777;
}

class Files : public testing::Test {
 protected:
  Files() {
    char name[] = "/tmp/pmsh-files-XXXXXX";
    directory_ = mkdtemp(name);
  }
  ~Files() override { fs::remove_all(directory_); }

  std::string path(const std::string& name) const { return directory_ + "/" + name; }

  void make(const std::string& name, const std::string& text) const { std::ofstream(path(name)) << text; }

  std::size_t num_entries() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory_), fs::directory_iterator()));
  }

  std::string directory_;
};

TEST_F(Files, ANewFileHasTheModeThatTheMaskLeaves) {
  const mode_t before = umask(027);
  EXPECT_EQ(write_file(path("new"), "text\n"), 0);
  umask(before);
  EXPECT_EQ(text_of(path("new")), "text\n");
  EXPECT_EQ(mode_of(path("new")), 0640U);
  EXPECT_EQ(num_entries(), 1U);
}

TEST_F(Files, AnExistingFileKeepsItsModeAndOwner) {
  make("old", "before\n");
  chmod(path("old").c_str(), 0600);
  const bool is_root = geteuid() == 0;
  if (is_root) ASSERT_EQ(chown(path("old").c_str(), 12, 34), 0);
  EXPECT_EQ(write_file(path("old"), "after\n"), 0);
  EXPECT_EQ(text_of(path("old")), "after\n");
  EXPECT_EQ(mode_of(path("old")), 0600U);
  struct stat found {};
  ASSERT_EQ(stat(path("old").c_str(), &found), 0);
  EXPECT_EQ(found.st_uid, is_root ? 12 : geteuid());
  EXPECT_EQ(found.st_gid, is_root ? 34 : getegid());
}

TEST_F(Files, LinksAreFollowed) {
  make("target", "before\n");
  fs::create_symlink("target", path("relative"));
  fs::create_symlink(path("relative"), path("absolute"));
  EXPECT_EQ(write_file(path("absolute"), "after\n"), 0);
  EXPECT_TRUE(fs::is_symlink(path("absolute")));
  EXPECT_TRUE(fs::is_symlink(path("relative")));
  EXPECT_EQ(text_of(path("target")), "after\n");
}

TEST_F(Files, ALinkToNothingGetsItsTarget) {
  fs::create_symlink("missing", path("link"));
  EXPECT_EQ(write_file(path("link"), "text\n"), 0);
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_EQ(text_of(path("missing")), "text\n");
}

TEST_F(Files, LinksInACircleAreAnError) {
  fs::create_symlink("b", path("a"));
  fs::create_symlink("a", path("b"));
  EXPECT_EQ(write_file(path("a"), "text\n"), ELOOP);
  std::string error;
  EXPECT_FALSE(read_file(path("a"), error));
  EXPECT_EQ(error, "cannot read '" + path("a") + "': Too many levels of symbolic links.");
}

TEST_F(Files, WhatIsNoRegularFileIsWrittenTo) {
  EXPECT_EQ(write_file("/dev/null", "text\n"), 0);
  struct stat found {};
  ASSERT_EQ(stat("/dev/null", &found), 0);
  EXPECT_TRUE(S_ISCHR(found.st_mode));
  EXPECT_EQ(write_file("/dev/full", "text\n"), ENOSPC);
  EXPECT_EQ(write_file(directory_, "text\n"), EISDIR);
}

TEST_F(Files, APipeIsWrittenToAndNotReplaced) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(write_file(path("pipe"), "text\n"), ENXIO) << "no process reads it";
  const int reader = open(path("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  EXPECT_EQ(write_file(path("pipe"), "text\n"), 0);
  char text[16] = {};
  EXPECT_EQ(read(reader, text, sizeof text), 5);
  EXPECT_STREQ(text, "text\n");
  close(reader);
}

TEST_F(Files, ADirectoryThatIsMissingIsAnError) {
  EXPECT_EQ(write_file(path("none/file"), "text\n"), ENOENT);
  EXPECT_EQ(num_entries(), 0U);
}

TEST_F(Files, AFileIsReadToItsEnd) {
  const std::string text(200'000, 'x');
  make("long", text + "\nlast");
  std::string error;
  EXPECT_EQ(read_file(path("long"), error), text + "\nlast");
  EXPECT_EQ(error, "");
}

TEST_F(Files, WhatCannotBeReadIsNamed) {
  std::string error;
  EXPECT_FALSE(read_file(directory_, error));
  EXPECT_EQ(error, "cannot read '" + directory_ + "': Is a directory.");
  EXPECT_FALSE(read_file(path("none"), error));
  EXPECT_EQ(error, "cannot read '" + path("none") + "': No such file or directory.");
  EXPECT_FALSE(read_file("/proc/self/mem", error));
  EXPECT_EQ(error, "cannot read '/proc/self/mem': Input/output error.");
}

TEST_F(Files, AZeroByteIsNamedWithItsLine) {
  make("zero", std::string("configure\nend\n\0interface\n", 25));
  std::string error;
  EXPECT_FALSE(read_file(path("zero"), error));
  EXPECT_EQ(error, path("zero") + ":3: a byte that is zero. This is no file of commands.");
}

}  // namespace
}  // namespace host
