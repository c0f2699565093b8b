// Cyclic redundancy checks of the known text.
#include "base/crc.h"

#include <gtest/gtest.h>

#include <string_view>

namespace host {
namespace {

std::span<const std::byte> bytes_of(std::string_view text) { return std::as_bytes(std::span(text)); }

TEST(Crc32, IsThatOfTheStandard) {
  EXPECT_EQ(crc32_of(bytes_of("")), 0U);
  EXPECT_EQ(crc32_of(bytes_of("123456789")), 0xCBF43926U);
  EXPECT_EQ(crc32_of(bytes_of("56789"), crc32_of(bytes_of("1234"))), 0xCBF43926U);
}

}  // namespace
}  // namespace host
