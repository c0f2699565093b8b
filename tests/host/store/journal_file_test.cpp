// The file of a journal: what it refuses to open, and what it holds when the disk fails.
#include "store/journal_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "host/store/failing_calls.h"
#include "host/store/temporary_folder.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::span<const std::byte> octets_in(std::string_view text) { return std::as_bytes(std::span(text)); }

std::string text_in(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class JournalFile : public testing::Test {
 protected:
  ~JournalFile() override { the_failing_calls().reset(); }

  // The sentence with which it is not opened; empty: it is.
  std::string refusal() const {
    try {
      const journal_file opened(path_);
      return {};
    } catch (const store_error& error) {
      return error.what();
    }
  }

  temporary_folder folder_;
  std::string path_ = folder_.file("lab.journal");
};

TEST_F(JournalFile, IsNotThereAtFirst) {
  journal_file journal(path_);
  EXPECT_FALSE(journal.exists());
  EXPECT_EQ(journal.replace(octets_in("one")), 0);
  EXPECT_TRUE(journal.exists());
  EXPECT_EQ(journal.append(octets_in(" two")), 0);
  EXPECT_EQ(text_in(path_), "one two");
  EXPECT_EQ(journal.read().size(), 7U);
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(JournalFile, IsReplacedAsAWhole) {
  journal_file journal(path_);
  EXPECT_EQ(journal.replace(octets_in("one two three")), 0);
  EXPECT_EQ(journal.replace(octets_in("four")), 0);
  EXPECT_EQ(journal.append(octets_in(" five")), 0);
  EXPECT_EQ(text_in(path_), "four five");
  EXPECT_FALSE(fs::exists(path_ + ".new"));
}

TEST_F(JournalFile, IsContinuedWhereItIsCut) {
  std::ofstream(path_) << "one two torn";
  journal_file journal(path_);
  journal.cut(7);
  EXPECT_EQ(journal.append(octets_in("!")), 0);
  EXPECT_EQ(text_in(path_), "one two!");
}

TEST_F(JournalFile, HasOneOwner) {
  const journal_file first(path_);
  EXPECT_THAT(refusal(), HasSubstr("another pmshd uses the state in '" + path_ + "': it holds '" + path_ + ".lock'."));
}

TEST_F(JournalFile, IsReleasedAtItsEnd) {
  { const journal_file first(path_); }
  EXPECT_EQ(refusal(), "");
}

TEST_F(JournalFile, FoldersAreMade) {
  path_ = folder_.file("some/folders/lab.journal");
  EXPECT_EQ(refusal(), "");
  EXPECT_TRUE(fs::is_directory(folder_.file("some/folders")));
}

TEST_F(JournalFile, AFolderThatIsNoneIsReported) {
  std::ofstream(folder_.file("some")) << "a file";
  path_ = folder_.file("some/lab.journal");
  EXPECT_EQ(refusal(),
            "cannot open '" + path_ + ".lock': Not a directory. Correct it, or start pmshd with --stateless.");
}

TEST_F(JournalFile, AFolderThatCannotBeMadeIsReported) {
  path_ = "/proc/none/lab.journal";
  EXPECT_EQ(refusal(), "cannot make the folder of '" + path_ +
                           "': No such file or directory. Correct it, or start pmshd with --stateless.");
}

TEST_F(JournalFile, OnlyARegularFileIsOne) {
  const std::string refused = "'" + path_ + "' is not a regular file. Remove it, or start pmshd with --stateless.";
  std::ofstream(folder_.file("other")) << "of another program";
  ASSERT_EQ(symlink(folder_.file("other").c_str(), path_.c_str()), 0);
  EXPECT_EQ(refusal(), refused);
  EXPECT_EQ(text_in(folder_.file("other")), "of another program");
  fs::remove(path_);
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(refusal(), refused) << "and it does not wait for a writer";
  fs::remove(path_);
  fs::create_directory(path_);
  EXPECT_EQ(refusal(), refused);
}

TEST_F(JournalFile, OnlyARegularFileIsItsLock) {
  ASSERT_EQ(symlink("elsewhere", (path_ + ".lock").c_str()), 0);
  EXPECT_THAT(refusal(), HasSubstr(".lock' is not a regular file."));
  EXPECT_FALSE(fs::exists(folder_.file("elsewhere")));
}

TEST_F(JournalFile, AnOldOneIsMovedAside) {
  for (const std::string text : {"first", "second"}) {
    std::ofstream(path_) << text;
    const journal_file journal(path_, true);
    EXPECT_FALSE(journal.exists());
    EXPECT_EQ(text_in(journal.moved_to()), text);
  }
  EXPECT_EQ(text_in(path_ + ".1"), "first");
  EXPECT_EQ(text_in(path_ + ".2"), "second");
  const journal_file without(path_, true);
  EXPECT_EQ(without.moved_to(), "");
}

// Whichever call fails, once or from then on: what was acknowledged is there, what was refused is not, and the next
// record is stored when the disk works again.
TEST_F(JournalFile, FailsWithoutHarmAtEachCall) {
  for (const int error : {ENOSPC, EIO}) {
    for (const bool for_ever : {false, true}) {
      bool has_failed = true;
      for (int at = 1; has_failed; ++at) {
        SCOPED_TRACE(testing::Message() << "call " << at << ", error " << error << (for_ever ? " for ever" : ""));
        fs::remove(path_);
        journal_file journal(path_, false, file_calls_that_fail());
        ASSERT_EQ(journal.replace(octets_in("begin")), 0);
        ASSERT_EQ(journal.append(octets_in(" kept")), 0);
        the_failing_calls().fail(at, error, for_ever);
        const int result = journal.append(octets_in(" refused"));
        has_failed = result != 0;
        ASSERT_LT(at, 10);
        const std::string expected = has_failed ? "begin kept" : "begin kept refused";
        EXPECT_TRUE(!has_failed || result == error);
        the_failing_calls().reset();
        EXPECT_EQ(journal.append(octets_in(" later")), 0);
        EXPECT_EQ(text_in(path_), expected + " later");
      }
    }
  }
}

// A second write of the same place would succeed although the disk does not have it.
TEST_F(JournalFile, AfterAFailedSynchronisationANewFileIsWritten) {
  journal_file journal(path_, false, file_calls_that_fail());
  ASSERT_EQ(journal.replace(octets_in("begin")), 0);
  struct stat before {
  }, after{};
  ASSERT_EQ(stat(path_.c_str(), &before), 0);
  the_failing_calls().fail(2, EIO);
  ASSERT_EQ(journal.append(octets_in(" refused")), EIO);
  EXPECT_EQ(text_in(path_), "begin");
  ASSERT_EQ(journal.append(octets_in(" later")), 0);
  ASSERT_EQ(stat(path_.c_str(), &after), 0);
  EXPECT_NE(before.st_ino, after.st_ino);
  EXPECT_EQ(text_in(path_), "begin later");
}

TEST_F(JournalFile, ThatCannotBeReplacedIsKept) {
  journal_file journal(path_);
  ASSERT_EQ(journal.replace(octets_in("begin")), 0);
  fs::create_directory(path_ + ".new");
  EXPECT_NE(journal.replace(octets_in("other")), 0);
  EXPECT_EQ(journal.append(octets_in(" later")), 0);
  EXPECT_EQ(text_in(path_), "begin later");
}

}  // namespace
}  // namespace host
