// Files that the user names: what happens to what was there.
#include "base/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

#include "base/write_all.h"
#include "host/transport/alarm_soon.h"

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

// While it lives, root has the rights of a user who owns nothing; others have their own.
class another_user {
 public:
  another_user() {
    if (geteuid() == 0) is_changed_ = seteuid(65534) == 0;
  }
  ~another_user() {
    if (is_changed_ && seteuid(0) != 0) std::abort();
  }
  another_user(const another_user&) = delete;
  another_user& operator=(const another_user&) = delete;

 private:
  bool is_changed_ = false;
};

struct outcome {
  bool was_mounted = false;
  std::string fault;
};

// Maps the user of this process to root of a new namespace.
bool become_root(uid_t user, gid_t group) {
  std::ofstream("/proc/self/setgroups") << "deny";
  std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
  std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
  return geteuid() == 0;
}

// Runs `check` in a process of its own, where a disk of 32 KiB is mounted on the directory. It returns what is wrong.
outcome on_small_disk(const std::string& directory, const std::function<const char*()>& check) {
  constexpr std::string_view kMounted = "mounted ";
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {};
  const uid_t user = geteuid();
  const gid_t group = getegid();
  const pid_t child = fork();
  if (child == 0) {
    const bool is_mounted = unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && become_root(user, group) &&
                            mount("none", directory.c_str(), "tmpfs", 0, "size=32k") == 0;
    if (is_mounted) write_all(ends[1], std::string(kMounted) + check());
    _exit(0);
  }
  close(ends[1]);
  std::string answer(256, '\0');
  const ssize_t size = read(ends[0], answer.data(), answer.size());
  close(ends[0]);
  waitpid(child, nullptr, 0);
  answer.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  if (!answer.starts_with(kMounted)) return {};
  return {true, answer.substr(kMounted.size())};
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

TEST_F(Files, ADirectoryThatMayNotBeWrittenKeepsItsFile) {
  make("old", "before\n");
  chmod(path("old").c_str(), 0666);
  chmod(directory_.c_str(), 0555);
  {
    const another_user user;
    EXPECT_EQ(write_file(path("old"), "after\n"), EACCES);
    EXPECT_EQ(write_file(path("new"), "text\n"), EACCES);
  }
  EXPECT_EQ(text_of(path("old")), "before\n");
  EXPECT_EQ(num_entries(), 1U);
}

TEST_F(Files, AFullDiskKeepsTheOldFile) {
  const outcome result = on_small_disk(directory_, [this] {
    make("old", "before\n");
    chmod(path("old").c_str(), 0600);
    if (write_file(path("old"), std::string(100'000, 'x')) != ENOSPC) return "writing does not fail";
    if (write_file(path("new"), std::string(100'000, 'x')) != ENOSPC) return "writing a new file does not fail";
    if (text_of(path("old")) != "before\n") return "the old file is changed";
    if (mode_of(path("old")) != 0600) return "the old file has another mode";
    if (num_entries() != 1) return "a part of the new file is left";
    return "";
  });
  if (!result.was_mounted) GTEST_SKIP() << "no file system can be mounted here";
  EXPECT_EQ(result.fault, "");
}

TEST_F(Files, AFileIsReadToItsEnd) {
  std::string text;
  for (int i = 0; i < 5'000; ++i) text += "! one line of two hundred thousand bytes\n";
  make("long", text + "last");
  std::string error;
  EXPECT_EQ(read_file(path("long"), error), text + "last");
  EXPECT_EQ(error, "");
}

TEST_F(Files, ALineMayHave64KiB) {
  const std::string longest(65'536, 'x');
  make("longest", "configure\n" + longest + "\n" + longest);
  std::string error;
  EXPECT_EQ(read_file(path("longest"), error), "configure\n" + longest + "\n" + longest);
  make("too-long", "configure\n" + longest + "\n" + longest + "x");
  EXPECT_FALSE(read_file(path("too-long"), error));
  EXPECT_EQ(error, path("too-long") + ":3: the line is longer than 65536 bytes.");
  make("too-long", "x" + longest + "\nend\n");
  EXPECT_FALSE(read_file(path("too-long"), error));
  EXPECT_EQ(error, path("too-long") + ":1: the line is longer than 65536 bytes.");
}

TEST_F(Files, AnEndlessFileIsRefusedAtItsFirstFault) {
  std::string error;
  EXPECT_FALSE(read_file("/dev/zero", error));
  EXPECT_EQ(error, "/dev/zero:1: the line contains a zero byte. Expected a text file with commands.");
}

TEST_F(Files, APipeThatNoProcessWritesToIsAnError) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  std::string error;
  EXPECT_FALSE(read_file(path("pipe"), error));
  EXPECT_EQ(error, "cannot read '" + path("pipe") + "': no process writes to the pipe.");
}

TEST_F(Files, APipeIsReadUntilItsWriterClosesIt) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  const int both = open(path("pipe").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(both, 0);
  const int kept = open(path("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);  // what is written is not lost
  ASSERT_GE(kept, 0);
  std::thread writer([both] {
    usleep(20'000);  // the reader waits
    EXPECT_EQ(write(both, "configure\n", 10), 10);
    usleep(20'000);
    EXPECT_EQ(write(both, "end\n", 4), 4);
    close(both);
  });
  std::string error;
  EXPECT_EQ(read_file(path("pipe"), error), "configure\nend\n");
  writer.join();
  close(kept);
  EXPECT_EQ(error, "");
}

// As a shell makes them for <(COMMAND).
TEST_F(Files, APipeWhoseWriterWroteNothingIsEmpty) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  close(ends[1]);
  std::string error;
  EXPECT_EQ(read_file("/dev/fd/" + std::to_string(ends[0]), error), "");
  EXPECT_EQ(error, "");
  close(ends[0]);
}

TEST_F(Files, WaitingForAWriterCanBeCancelled) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  const int both = open(path("pipe").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(both, 0);
  static volatile std::sig_atomic_t has_come = 0;
  const alarm_soon alarm([](int) { has_come = 1; });
  std::string error;
  EXPECT_FALSE(read_file(path("pipe"), error, [] { return has_come != 0; }));
  EXPECT_EQ(error, "cannot read '" + path("pipe") + "': Operation canceled.");
  close(both);
}

TEST_F(Files, AFileWithoutPermissionIsNamed) {
  make("closed", "configure\n");
  chmod(path("closed").c_str(), 0);
  chmod(directory_.c_str(), 0755);
  const another_user user;
  std::string error;
  EXPECT_FALSE(read_file(path("closed"), error));
  EXPECT_EQ(error, "cannot read '" + path("closed") + "': Permission denied.");
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
  EXPECT_EQ(error, path("zero") + ":3: the line contains a zero byte. Expected a text file with commands.");
}

}  // namespace
}  // namespace host
