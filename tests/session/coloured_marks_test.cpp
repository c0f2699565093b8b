// Marks of optical diagnostics in colour.
#include "shell/output/coloured_marks.h"

#include <gtest/gtest.h>

namespace session {
namespace {

using host::with_coloured_mark;

TEST(ColouredMark, AlarmsAreRedAndWarningsYellow) {
  EXPECT_EQ(with_coloured_mark("  Temperature   76.00 C  ++    75.00 C"),
            "  Temperature   76.00 C  \x1b[31m++\x1b[0m    75.00 C");
  EXPECT_EQ(with_coloured_mark("  Rx Power      -12.21 dBm --"), "  Rx Power      -12.21 dBm \x1b[31m--\x1b[0m");
  EXPECT_EQ(with_coloured_mark("  Voltage        3.50 V   +     3.63 V"),
            "  Voltage        3.50 V   \x1b[33m+\x1b[0m     3.63 V");
  EXPECT_EQ(with_coloured_mark("  Rx Power      -12.21 dBm  -"), "  Rx Power      -12.21 dBm  \x1b[33m-\x1b[0m");
}

TEST(ColouredMark, OtherLinesStay) {
  for (const char* const line : {"  Temperature   34.00 C        75.00 C     -5.00 C", "  Rx Power        N/A       ",
                                 "  Note: ++  high-alarm; +  high-warning; --  low-alarm; -  low-warning",
                                 "  ----------------------------------------", "", "  Current "})
    EXPECT_EQ(with_coloured_mark(line), line);
}

}  // namespace
}  // namespace session
