// Marks in colour.
#include "shell/output/chain/colour.h"

#include <gtest/gtest.h>

#include "session/chain/seen_lines.h"

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

TEST(Colour, OtherLinesStay) {
  EXPECT_EQ(coloured("  Note: ++  high-alarm; +  high-warning", {}), "  Note: ++  high-alarm; +  high-warning");
}

}  // namespace
}  // namespace session
