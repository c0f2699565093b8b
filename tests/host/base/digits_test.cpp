// Numbers and bytes in digits.
#include "base/digits.h"

#include <gtest/gtest.h>

#include <array>

namespace host {
namespace {

constexpr std::array<uint8, 6> kBytes = {0x02, 0x1c, 0x73, 0x40, 0x00, 0xff};

TEST(Digits, ANumberIsTheWholeTextAndFits) {
  uint8 number = 0;
  EXPECT_TRUE(read_number("255", number));
  EXPECT_EQ(number, 255);
  EXPECT_TRUE(read_number("fE", number, 16));
  EXPECT_EQ(number, 254);
  for (const char* const text : {"", "256", "-1", "+1", " 1", "1 ", "1x"})
    EXPECT_FALSE(read_number(text, number)) << text;
}

TEST(Digits, BytesHaveTwoDigitsEach) {
  EXPECT_EQ(hex_of(kBytes), "021c734000ff");
  EXPECT_EQ(hex_of(std::string_view("a\xff")), "61ff");
  std::array<uint8, 6> read{};
  EXPECT_TRUE(read_hex("021C734000ff", read));
  EXPECT_EQ(read, kBytes);
  for (const char* const text : {"", "021c734000f", "021c734000ff0", "021c734000fg", "021c7340 0ff", "021c7340-1ff"})
    EXPECT_FALSE(read_hex(text, read)) << text;
}

TEST(Digits, AHardwareAddressHasADotAfterEachTwoBytes) {
  std::string text = "at ";
  append_dotted_hex(text, kBytes);
  EXPECT_EQ(text, "at 021c.7340.00ff");
}

}  // namespace
}  // namespace host
