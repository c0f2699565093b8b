// What devices had counted when they were cleared, and the file that keeps it.
#include "source/kernel/baselines.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

namespace host {
namespace {

constexpr std::array<uint8, 6> kMac = {2, 0, 0, 0, 0xAB, 7};
constexpr std::array<uint8, 6> kOtherMac = {2, 0, 0, 0, 0xAB, 8};

device_counters counters(uint64 bytes, uint64 packets) {
  device_counters it;
  it.rx_bytes = bytes;
  it.rx_packets = packets;
  it.tx_compressed = 3;
  return it;
}

// A word for each counter that not every device has.
std::string words_of_driver(const std::string& word) {
  std::string words;
  for (std::size_t i = 0; i < kDriverCounters; ++i) words += word;
  return words;
}

class Baselines : public testing::Test {
 protected:
  ~Baselines() override { std::remove(path_.c_str()); }

  // As another process would read the file.
  counter_baselines read_again() const {
    counter_baselines other;
    other.keep_in(path_);
    other.read();
    return other;
  }
  std::string text() const {
    std::ostringstream all;
    all << std::ifstream(path_).rdbuf();
    return all.str();
  }

  const std::string path_ = testing::TempDir() + "baselines-" + std::to_string(getpid());
};

TEST_F(Baselines, AnotherProcessTakesTheSameOff) {
  counter_baselines mine;
  mine.keep_in(path_);
  mine.put(7, {kMac, 1'800'000'000, counters(18'446'744'073'709'551'615U, 4)});
  mine.put(9, {kOtherMac, 5, counters(0, 0)});
  ASSERT_EQ(mine.write(), 0);
  const counter_baselines other = read_again();
  const counter_baseline* const found = other.find(7, kMac, counters(18'446'744'073'709'551'615U, 5));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->cleared_sec, 1'800'000'000U);
  EXPECT_EQ(found->counted, counters(18'446'744'073'709'551'615U, 4));
  EXPECT_NE(other.find(9, kOtherMac, counters(1, 1)), nullptr);
  EXPECT_EQ(other.find(8, kMac, counters(1, 1)), nullptr);
}

TEST_F(Baselines, WhatADriverTellsIsKeptToo) {
  counter_baseline baseline{kMac, 5, counters(100, 4)};
  baseline.reported[kDriverSymbolErrors] = 0;
  baseline.reported[kDriverSentBySize + 7] = 18'446'744'073'709'551'615U;
  counter_baselines mine;
  mine.keep_in(path_);
  mine.put(7, baseline);
  ASSERT_EQ(mine.write(), 0);
  const counter_baselines other = read_again();
  const counter_baseline* const found = other.find(7, kMac, counters(100, 4));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->reported[kDriverSymbolErrors], 0U);
  EXPECT_EQ(found->reported[kDriverFcsErrors], std::nullopt);
  EXPECT_EQ(found->reported[kDriverSentBySize + 7], 18'446'744'073'709'551'615U);
}

TEST_F(Baselines, ADeviceThatWasMadeAnewHasNone) {
  counter_baselines mine;
  mine.put(7, {kMac, 5, counters(100, 4)});
  EXPECT_NE(mine.find(7, kMac, counters(100, 4)), nullptr);
  EXPECT_EQ(mine.find(7, kMac, counters(100, 3)), nullptr);
  EXPECT_EQ(mine.find(7, kOtherMac, counters(100, 4)), nullptr);
}

TEST_F(Baselines, WithoutAPathTheyStayHere) {
  counter_baselines mine;
  mine.put(7, {kMac, 5, counters(100, 4)});
  EXPECT_EQ(mine.write(), 0);
  mine.read();
  EXPECT_NE(mine.find(7, kMac, counters(100, 4)), nullptr);
}

TEST_F(Baselines, WhatIsNotWrittenYetIsNotReadOver) {
  counter_baselines mine;
  mine.keep_in(path_);
  mine.put(7, {kMac, 5, counters(100, 4)});
  mine.read();
  EXPECT_NE(mine.find(7, kMac, counters(100, 4)), nullptr);
}

TEST_F(Baselines, AFileThatCannotBeWrittenIsSaid) {
  counter_baselines mine;
  mine.keep_in("/nowhere/baselines");
  mine.put(7, {kMac, 5, counters(100, 4)});
  EXPECT_EQ(mine.write(), ENOENT);
  EXPECT_NE(mine.find(7, kMac, counters(100, 4)), nullptr);
}

TEST_F(Baselines, OfAnotherBootOrNamespaceAreNoneHere) {
  counter_baselines mine;
  mine.keep_in(path_);
  mine.put(7, {kMac, 5, counters(100, 4)});
  ASSERT_EQ(mine.write(), 0);
  std::string other_boot = text();
  other_boot[std::string("boot ").size()] ^= 1;
  std::ofstream(path_) << other_boot;
  EXPECT_EQ(read_again().find(7, kMac, counters(100, 4)), nullptr);
}

TEST_F(Baselines, DamagedLinesAreLeftOut) {
  counter_baselines mine;
  mine.keep_in(path_);
  mine.put(7, {kMac, 5, counters(100, 4)});
  ASSERT_EQ(mine.write(), 0);
  const std::string whole = text();
  const std::string head = whole.substr(0, whole.find('\n') + 1);
  for (std::size_t length = head.size(); length + 2 < whole.size(); ++length) {
    std::ofstream(path_) << whole.substr(0, length);
    EXPECT_EQ(read_again().find(7, kMac, counters(100, 4)), nullptr) << length;
  }
  const std::string zeros = " 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0";
  std::ofstream(path_) << head << "7 02000000ab07" << zeros << words_of_driver(" 1x") << "\n";
  EXPECT_EQ(read_again().find(7, kMac, counters(100, 4)), nullptr);
  std::ofstream(path_) << head << "7 02zz0000ab07" << zeros << words_of_driver(" -") << "\n\nnonsense\n"
                       << whole.substr(head.size());
  EXPECT_NE(read_again().find(7, kMac, counters(100, 4)), nullptr);
}

TEST_F(Baselines, AMissingFileIsNone) { EXPECT_EQ(read_again().find(7, kMac, counters(1, 1)), nullptr); }

}  // namespace
}  // namespace host
