#include "messages/fields.h"

#include <gtest/gtest.h>

#include <string>

namespace host {
namespace {

using byte_list = std::vector<std::byte>;

byte_list bytes_of_text(std::string_view text) {
  byte_list all;
  for (const char it : text) all.push_back(static_cast<std::byte>(it));
  return all;
}

TEST(Fields, TravelBigEndianOneAfterTheOther) {
  byte_list message;
  field_writer to(message);
  to.u8(1);
  to.u32(2);
  to.u64(3);
  to.text("ab");

  EXPECT_EQ(message, bytes_of_text(std::string_view("\1\0\0\0\2\0\0\0\0\0\0\0\3\0\0\0\2ab", 19)));
}

TEST(Fields, AreReadAsTheyWereWritten) {
  byte_list message;
  field_writer to(message);
  to.texts(std::vector<std::string>{"no shutdown", ""});
  to.numbers(std::vector<uint32>{7, 0xFFFFFFFF});
  to.flag(true);

  field_reader from(message);
  EXPECT_EQ(from.texts<std::string>(), (std::vector<std::string>{"no shutdown", ""}));
  EXPECT_EQ(from.numbers(), (std::vector<uint32>{7, 0xFFFFFFFF}));
  EXPECT_TRUE(from.flag());
  EXPECT_TRUE(from.is_complete());
}

TEST(Fields, OfAMessageThatIsCutAnywhereAreMissed) {
  byte_list message;
  field_writer to(message);
  to.u64(1);
  to.texts(std::vector<std::string>{"a", "bc"});
  for (std::size_t size = 0; size < message.size(); ++size) {
    field_reader from(std::span(message).first(size));
    from.u64();
    from.texts<std::string>();
    EXPECT_TRUE(from.has_failed()) << size;
    EXPECT_FALSE(from.is_complete()) << size;
  }
}

TEST(Fields, ThatFollowAreNotComplete) {
  const byte_list message(5);
  field_reader from(message);
  from.u32();
  EXPECT_FALSE(from.has_failed());
  EXPECT_FALSE(from.is_complete());
}

TEST(Fields, ACountWithoutRoomForItsEntriesIsNotBelieved) {
  byte_list message;
  field_writer(message).u32(0x40000000);
  field_reader from(message);
  EXPECT_TRUE(from.numbers().empty());
  EXPECT_TRUE(from.has_failed());
}

TEST(Fields, AfterAFailureAreEmpty) {
  const byte_list message = bytes_of_text(std::string_view("\0\0\0\11abcdefgh", 12));
  field_reader from(message);
  EXPECT_EQ(from.text(), "");
  EXPECT_EQ(from.u8(), 0);
  EXPECT_TRUE(from.has_failed());
}

}  // namespace
}  // namespace host
