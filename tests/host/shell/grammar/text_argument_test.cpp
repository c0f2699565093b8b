// Texts as arguments of commands: what is written reads as the same bytes.
#include "base/text_argument.h"

#include <gtest/gtest.h>

#include <random>

#include "base/printable.h"
#include "shell/grammar/parser.h"

namespace host {
namespace {

// The argument of a line with this text, as the shell reads it.
std::optional<std::string> read_back(const std::string& text) {
  const std::string line = "  description " + text_argument(text);
  if (line.find('\n') != std::string::npos) return std::nullopt;
  std::string error;
  const auto parsed = parse_command(line, error, kInterfaceMode);
  EXPECT_TRUE(parsed) << line << ": " << error;
  if (!parsed || !parsed->pipes.empty()) return std::nullopt;
  return parsed->free_text;
}

TEST(TextArgument, PlainTextsStayAsTheyAre) {
  for (const char* const text : {"Core uplink", "#1 (rack 7)", "a! b", "Z\u00fcrich", "100%", "--"})
    EXPECT_EQ(text_argument(text), text);
}

TEST(TextArgument, WhatCouldBeReadOtherwiseIsInDoubleQuotes) {
  EXPECT_EQ(text_argument("a | b"), "\"a | b\"");
  EXPECT_EQ(text_argument("Bob's"), "\"Bob's\"");
  EXPECT_EQ(text_argument("say \"x\""), R"("say \"x\"")");
  EXPECT_EQ(text_argument(" x\t"), R"(" x\t")");
  EXPECT_EQ(text_argument("C:\\"), R"("C:\\")");
  EXPECT_EQ(text_argument("x\n shutdown\ninterface mgmt 0"), R"("x\n shutdown\ninterface mgmt 0")");
  EXPECT_EQ(text_argument("\x1b[31m\x7f"), R"("\x1b[31m\x7f")");
  EXPECT_EQ(text_argument("?"), "\"?\"");
  EXPECT_EQ(text_argument("Z\xfcrich"), R"("Z\xfcrich")");
  EXPECT_EQ(text_argument("\u0085"), R"("\xc2\x85")");
  EXPECT_EQ(text_argument("'Z\u00fcrich'"), "\"'Z\u00fcrich'\"");
}

TEST(TextArgument, EveryByteReadsAsItself) {
  for (int byte = 1; byte < 256; ++byte) {
    const auto one = static_cast<char>(byte);
    for (const std::string& text : {std::string(1, one), std::string("a") + one + "b", one + std::string("x"),
                                    std::string("x") + one, std::string(3, one)})
      EXPECT_EQ(read_back(text), text) << byte;
  }
}

TEST(TextArgument, TextsOfHostileBytesReadAsThemselves) {
  constexpr std::string_view kHostile = "\"'|?!#\\ \t\n\r\x1b\x7f\x80\xffxn";
  std::mt19937 random(7);
  for (int i = 0; i < 2000; ++i) {
    std::string text(1 + random() % 254, ' ');
    for (char& byte : text) byte = kHostile[random() % kHostile.size()];
    EXPECT_EQ(read_back(text), text);
  }
}

TEST(TextArgument, OutputDoesNotChangeThem) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string written = text_argument(std::string("a") + static_cast<char>(byte) + "b");
    std::string shown;
    append_printable(shown, written);
    EXPECT_EQ(shown, written) << byte;
  }
}

TEST(TextArgument, QuotesThatDoNotEndAndWrongEscapesAreNamed) {
  const auto error_of = [](std::string_view written) {
    std::string error;
    EXPECT_FALSE(read_text_argument(written, error)) << written;
    return error;
  };
  EXPECT_EQ(error_of("\"open"), "the text that begins with \" has no \" at its end.");
  EXPECT_EQ(error_of("'open"), "the text that begins with ' has no ' at its end.");
  EXPECT_EQ(error_of(R"("a\q")"), R"('\q' is not an escape: expected one of \", \\, \n, \t, \r, \xHH.)");
  EXPECT_EQ(error_of(R"("a\x0g")"), R"('\x' is not an escape: expected one of \", \\, \n, \t, \r, \xHH.)");
  EXPECT_EQ(error_of(R"("a\x00")"), R"('\x' is not an escape: expected one of \", \\, \n, \t, \r, \xHH.)");
  EXPECT_EQ(error_of(R"("a" b)"), "unexpected ' b' after the text in quotes.");
}

TEST(TextArgument, SingleQuotesKeepWhatIsBetweenThem) {
  std::string error;
  EXPECT_EQ(read_text_argument(R"('a\n "b"')", error), R"(a\n "b")");
}

}  // namespace
}  // namespace host
