// Text of others, made printable.
#include "base/printable.h"

#include <gtest/gtest.h>

namespace session {
namespace {

std::string printable(std::string_view text, std::string_view but = {}) {
  std::string result;
  host::append_printable(result, text, but);
  return result;
}

TEST(Printable, AsciiAndCharactersOfAllLengthsPass) {
  const char* const text = "plain ~ \xc3\xa9 \xe2\x82\xac \xf0\x9f\x94\x8c";
  EXPECT_EQ(printable(text), text);
}

TEST(Printable, ControlBytesOfBothRangesAreVisible) {
  EXPECT_EQ(printable(std::string_view("\0\x01\x1b\x7f", 4)), "\\x00\\x01\\x1b\\x7f");
  EXPECT_EQ(printable("\xc2\x80\xc2\x9f\xc2\xa0"), "\\xc2\\x80\\xc2\\x9f\xc2\xa0");
}

TEST(Printable, BytesAreFoundAtEveryPlaceOfATextOfAnyLength) {
  for (const auto& [byte, visible] :
       {std::pair("\x1f", "\\x1f"), {"\x7f", "\\x7f"}, {"\x80", "\\x80"}, {"\xff", "\\xff"}})
    for (std::size_t length = 1; length <= 20; ++length)
      for (std::size_t place = 0; place < length; ++place) {
        const std::string before(place, ' '), after(length - place - 1, '~');
        EXPECT_EQ(printable(before + byte + after), before + visible + after) << place << " of " << length;
      }
}

TEST(Printable, BytesThatAreNoUtf8AreVisible) {
  EXPECT_EQ(printable("\x80"), "\\x80");
  EXPECT_EQ(printable("\xc3("), "\\xc3(");
  EXPECT_EQ(printable("\xe2\x82"), "\\xe2\\x82");
  EXPECT_EQ(printable("\xc0\xaf"), "\\xc0\\xaf");                    // a longer form than needed
  EXPECT_EQ(printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");           // half of a pair
  EXPECT_EQ(printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");  // beyond the last character
}

TEST(Printable, ExceptionsPass) { EXPECT_EQ(printable("a\tb\n", "\t"), "a\tb\\x0a"); }

TEST(Printable, CharactersAreCountedAndCut) {
  EXPECT_EQ(host::count_characters("a\xc3\xa9\xe2\x82\xac"), 3U);
  EXPECT_EQ(host::first_characters("a\xc3\xa9\xe2\x82\xac", 2), "a\xc3\xa9");
  EXPECT_EQ(host::first_characters("ab", 0), "");
  EXPECT_EQ(host::first_characters("ab", 5), "ab");
}

}  // namespace
}  // namespace session
