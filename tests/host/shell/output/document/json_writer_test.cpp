// The JSON writer: commas, escapes, numbers as they were written.
#include "shell/output/document/json_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace host {
namespace {

template <typename Write>
std::string written(Write write, unsigned indent = 0) {
  std::string text;
  json_writer json(text, indent);
  write(json);
  return text;
}

TEST(JsonWriter, MembersAndEntriesAreSeparated) {
  EXPECT_EQ(written([](json_writer& json) {
              json.begin_object();
              json.key("none");
              json.null();
              json.key("list");
              json.begin_array();
              json.number(1);
              json.begin_object();
              json.end_object();
              json.text("x");
              json.end_array();
              json.key("last");
              json.boolean(true);
              json.end_object();
            }),
            R"({"none":null,"list":[1,{},"x"],"last":true})");
}

TEST(JsonWriter, IndentedMembersHaveALineEach) {
  EXPECT_EQ(written(
                [](json_writer& json) {
                  json.begin_object();
                  json.key("a");
                  json.begin_array();
                  json.end_array();
                  json.key("b");
                  json.begin_array();
                  json.number(1);
                  json.number(2);
                  json.end_array();
                  json.end_object();
                },
                2),
            "{\n  \"a\": [],\n  \"b\": [\n    1,\n    2\n  ]\n}");
}

TEST(JsonWriter, APlainKeyIsWrittenAsAnyOther) {
  EXPECT_EQ(written([](json_writer& json) {
              json.begin_object();
              json.plain_key("a_1");
              json.number(1);
              json.plain_key("b");
              json.null();
              json.end_object();
            }),
            R"({"a_1":1,"b":null})");
}

TEST(JsonWriter, QuotesBackslashesAndControlBytesAreEscaped) {
  const std::string_view text("\"C:\\x\"\n\t\x01\x1B\x7F\0end", 15);
  EXPECT_EQ(written([&](json_writer& json) { json.text(text); }), R"("\"C:\\x\"\n\t\u0001\u001b\u007f\u0000end")");
}

TEST(JsonWriter, OtherCharactersStayAsTheyAre) {
  EXPECT_EQ(written([](json_writer& json) { json.text("Z\u00fcrich \u2192 \U0001F600 </b>"); }),
            "\"Z\u00fcrich \u2192 \U0001F600 </b>\"");
}

TEST(JsonWriter, NumbersHaveAllTheirDigits) {
  EXPECT_EQ(written([](json_writer& json) { json.number(std::numeric_limits<std::uint64_t>::max()); }),
            "18446744073709551615");
  EXPECT_EQ(written([](json_writer& json) { json.number(std::numeric_limits<std::int64_t>::min()); }),
            "-9223372036854775808");
}

TEST(JsonWriter, ADecimalIsWrittenAsItIsShown) {
  EXPECT_EQ(written([](json_writer& json) { json.digits("2.97"); }), "2.97");
  EXPECT_EQ(written([](json_writer& json) { json.real(2.97); }), "2.97");
  EXPECT_EQ(written([](json_writer& json) { json.real(std::nan("")); }), "null");
  EXPECT_EQ(written([](json_writer& json) { json.real(HUGE_VAL); }), "null");
}

TEST(JsonWriter, KnowsTheSyntaxOfNumbers) {
  for (const char* const good : {"0", "-0", "12", "-2.97", "0.5", "1e9", "1E-3", "2.5e+10"})
    EXPECT_TRUE(is_json_number(good)) << good;
  for (const char* const bad :
       {"", "-", "+1", ".5", "5.", "01", "-01", "1e", "1e+", "0x10", "1 ", " 1", "inf", "nan", "--"})
    EXPECT_FALSE(is_json_number(bad)) << bad;
}

}  // namespace
}  // namespace host
