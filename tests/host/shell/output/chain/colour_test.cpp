// Marks in colour.
#include "shell/output/chain/colour.h"

#include <gtest/gtest.h>

#include "host/shell/output/chain/seen_lines.h"

namespace session {
namespace {

using host::line_mark;
using enum host::severity;

std::string coloured(const char* text, std::vector<line_mark> marks) {
  seen_lines seen;
  host::colouring_sink colour(seen);
  colour.take({text, marks});
  EXPECT_EQ(seen.lines[0].marks, std::vector<line_mark>{});
  return seen.lines[0].text;
}

TEST(Colour, AlarmsAreRedAndWarningsYellow) {
  EXPECT_EQ(coloured("  Temperature   76.00 C  ++    75.00 C", {{25, 27, alarm}}),
            "  Temperature   76.00 C  \x1b[31m++\x1b[0m    75.00 C");
  EXPECT_EQ(coloured("  Rx Power      -12.21 dBm  -", {{28, 29, warning}}),
            "  Rx Power      -12.21 dBm  \x1b[33m-\x1b[0m");
  EXPECT_EQ(coloured("++ -", {{0, 2, alarm}, {3, 4, warning}}), "\x1b[31m++\x1b[0m \x1b[33m-\x1b[0m");
}

TEST(Colour, WhatIsAsItShouldBeIsGreenAndWhatIsSwitchedOffFaint) {
  EXPECT_EQ(coloured("| 1 | 2 |", {{2, 3, normal}, {6, 7, off}}), "| \x1b[32m1\x1b[0m | \x1b[2m2\x1b[0m |");
}

TEST(Colour, LineHasRoomForTheMarksOfAFrontPanel) {
  host::line_marks marks;
  for (std::size_t i = 0; i < 48; ++i) marks.add({i, i + 1, normal});
  EXPECT_EQ(std::span<const line_mark>(marks).size(), 48U);
}

TEST(Colour, OtherLinesStay) {
  EXPECT_EQ(coloured("  Note: ++  high-alarm; +  high-warning", {}), "  Note: ++  high-alarm; +  high-warning");
}

}  // namespace
}  // namespace session
