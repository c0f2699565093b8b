// Records of a journal: every place where it may end, and every damaged byte.
#include "store/record.h"

#include <gtest/gtest.h>

#include <string_view>

#include "base/crc.h"

namespace host {
namespace {

using journal_bytes = std::vector<std::byte>;

std::span<const std::byte> bytes_of(std::string_view text) { return std::as_bytes(std::span(text)); }

constexpr std::string_view kFirstPayload = "the switch", kSecondPayload = "", kLastPayload = "a change of a port";

// Three records; the middle one has no payload.
journal_bytes three_records() {
  journal_bytes all;
  append_record(all, 0, bytes_of(kFirstPayload));
  append_record(all, 1, bytes_of(kSecondPayload));
  append_record(all, 2, bytes_of(kLastPayload));
  return all;
}

constexpr std::size_t kSecondAt = 24 + kFirstPayload.size();
constexpr std::size_t kLastAt = kSecondAt + 24 + kSecondPayload.size();
constexpr std::size_t kRecordsEnd = kLastAt + 24 + kLastPayload.size();

std::size_t place_of_record(std::size_t byte) { return byte < kSecondAt ? 0 : byte < kLastAt ? 1 : 2; }
constexpr std::size_t kPlaces[] = {0, kSecondAt, kLastAt};

// The value that the catalogue of parametrised CRC algorithms gives for CRC-64/XZ.
TEST(Checksum, HasTheValueOfTheStandard) {
  EXPECT_EQ(crc64_of(bytes_of("123456789")), 0x995DC9BBDF1939FAU);
  EXPECT_EQ(crc64_of(bytes_of("")), 0U);
  EXPECT_EQ(crc64_of(bytes_of("456789"), crc64_of(bytes_of("123"))), crc64_of(bytes_of("123456789")));
}

TEST(Records, BeginWithABigEndianHead) {
  const journal_bytes all = three_records();
  ASSERT_EQ(all.size(), kRecordsEnd);
  const std::string_view text(reinterpret_cast<const char*>(all.data()), all.size());
  EXPECT_EQ(text.substr(0, 16), std::string_view("pmsR\0\0\0\x0A\0\0\0\0\0\0\0\0", 16));
  EXPECT_EQ(text.substr(24, kFirstPayload.size()), kFirstPayload);
  EXPECT_EQ(text.substr(kLastAt, 16), std::string_view("pmsR\0\0\0\x12\0\0\0\0\0\0\0\x02", 16));
}

TEST(Records, AreReadInTheirOrder) {
  const journal_bytes all = three_records();
  const record_list read = read_records(all);
  EXPECT_FALSE(read.fault);
  EXPECT_EQ(read.size_bytes, kRecordsEnd);
  ASSERT_EQ(read.payloads.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    const std::string_view expected[] = {kFirstPayload, kSecondPayload, kLastPayload};
    const std::string_view payload(reinterpret_cast<const char*>(read.payloads[i].data()), read.payloads[i].size());
    EXPECT_EQ(payload, expected[i]);
  }
}

TEST(Records, NothingIsAnEmptyList) {
  const record_list read = read_records({});
  EXPECT_FALSE(read.fault);
  EXPECT_TRUE(read.payloads.empty());
}

TEST(Records, ThatEndAtAnyByteKeepThoseBefore) {
  const journal_bytes all = three_records();
  for (std::size_t size = 1; size < all.size(); ++size) {
    const record_list read = read_records(std::span(all).first(size));
    const std::size_t whole = place_of_record(size);
    const bool is_between = size == kPlaces[whole];
    ASSERT_EQ(read.payloads.size(), whole) << size;
    EXPECT_EQ(read.size_bytes, kPlaces[whole]) << size;
    ASSERT_EQ(read.fault.has_value(), !is_between) << size;
    if (is_between) continue;
    EXPECT_TRUE(read.fault->is_at_end) << size;
    EXPECT_EQ(read.fault->at_byte, kPlaces[whole]) << size;
    const bool is_in_head = size - kPlaces[whole] < 24;
    EXPECT_EQ(read.fault->what, is_in_head ? "it ends within the head of a record" : "it ends within a record") << size;
  }
}

// A damaged record is at the end only if no whole one follows: changes that were acknowledged would be lost in silence.
TEST(Records, WithADamagedByteEndBeforeIt) {
  for (std::size_t byte = 0; byte < kRecordsEnd; ++byte) {
    for (const int bits : {0x01, 0x80, 0xFF}) {
      journal_bytes all = three_records();
      all[byte] ^= static_cast<std::byte>(bits);
      const record_list read = read_records(all);
      const std::size_t place = place_of_record(byte);
      ASSERT_EQ(read.payloads.size(), place) << byte;
      ASSERT_TRUE(read.fault) << byte;
      EXPECT_EQ(read.fault->at_byte, kPlaces[place]) << byte;
      EXPECT_EQ(read.fault->is_at_end, place == 2) << byte;
    }
  }
}

TEST(Records, OneThatIsMissingIsReported) {
  const journal_bytes all = three_records();
  journal_bytes without(all.begin(), all.begin() + kSecondAt);
  without.insert(without.end(), all.begin() + kLastAt, all.end());
  const record_list read = read_records(without);
  EXPECT_EQ(read.payloads.size(), 1U);
  ASSERT_TRUE(read.fault);
  EXPECT_EQ(read.fault->what, "a record is missing");
  EXPECT_EQ(read.fault->at_byte, kSecondAt);
  EXPECT_FALSE(read.fault->is_at_end);
}

// As a file system may leave a file whose size it wrote before the data.
TEST(Records, ZerosAtTheEndAreNoRecord) {
  journal_bytes all = three_records();
  all.resize(all.size() + 100);
  const record_list read = read_records(all);
  EXPECT_EQ(read.payloads.size(), 3U);
  ASSERT_TRUE(read.fault);
  EXPECT_EQ(read.fault->at_byte, kRecordsEnd);
  EXPECT_EQ(read.fault->what, "no record begins there");
  EXPECT_TRUE(read.fault->is_at_end);
}

}  // namespace
}  // namespace host
