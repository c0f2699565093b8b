// What a watch draws on a screen.
#include <gtest/gtest.h>

#include "shell/commands/watch/watch.h"
#include "switch/if_index_layout.h"

namespace session {
namespace {

using host::drawing;

constexpr char kTitles[] = "Interface                 In bytes/s  In packets/s   Out bytes/s Out packets/s";

using lines = std::vector<std::string>;

const if_index_t kLoopback3 = host::numbered_index(IF_TYPE_LOOPBACK, 3);

TEST(RateTable, HasARowForEachInterface) {
  EXPECT_EQ(host::rate_lines({{kLoopback3, host::traffic_rates{1250000, 1000, 0.5, 12500000000}}}),
            (lines{"", kTitles, "loopback3                  1250000.0        1000.0           0.5 12500000000.0"}));
}

TEST(RateTable, AbsentRatesAreDashes) {
  EXPECT_EQ(host::rate_lines({{kLoopback3, std::nullopt}}),
            (lines{"", kTitles, "loopback3                         --            --            --            --"}));
}

TEST(RateTable, IsLeftOutWhenNothingIsCounted) { EXPECT_EQ(host::rate_lines({}), lines{}); }

TEST(Drawing, HasTheDisplayAndTheTableBelowIt) {
  EXPECT_EQ(drawing("first", {"a", "b"}, {"", "rates"}, {24, 80}), "first\na\nb\n\nrates");
  EXPECT_EQ(drawing("first", {}, {}, {24, 80}), "first");
}

TEST(Drawing, LongDisplayIsCutAndLeavesTheTableItsRows) {
  EXPECT_EQ(drawing("first", {"a", "b", "c", "d", "e"}, {}, {4, 80}), "first\na\nb\nc");
  EXPECT_EQ(drawing("first", {"a", "b", "c", "d", "e"}, {"", "rates"}, {6, 80}), "first\na\nb\nc\n\nrates");
}

TEST(Drawing, LongTableLeavesTheDisplayHalfOfTheScreen) {
  const lines four = {"1", "2", "3", "4"};
  EXPECT_EQ(drawing("first", {"a", "b", "c", "d"}, four, {5, 80}), "first\na\nb\n1\n2");
  EXPECT_EQ(drawing("first", {"a"}, four, {4, 80}), "first\na\n1\n2") << "and what a short display leaves";
}

TEST(Drawing, LineThatIsWiderThanTheScreenTakesMoreRows) {
  EXPECT_EQ(drawing("first", {"12345678901", "b", "c"}, {}, {4, 10}), "first\n12345678901\nb");
  EXPECT_EQ(drawing("first", {"1234567890", "b", "c"}, {}, {4, 10}), "first\n1234567890\nb\nc");
  EXPECT_EQ(drawing("first", {"12345678901"}, {}, {2, 10}), "first") << "no part of a line";
}

TEST(Drawing, ColoursAndCharactersOfManyBytesTakeNoMoreRoom) {
  EXPECT_EQ(drawing("first", {"\x1b[31m1234567890\x1b[0m", "b"}, {}, {3, 10}), "first\n\x1b[31m1234567890\x1b[0m\nb");
  EXPECT_EQ(drawing("first", {"\u00fc\u00fc\u00fc", "b"}, {}, {3, 3}), "first\n\u00fc\u00fc\u00fc\nb");
}

TEST(Drawing, ScreenOfOneRowHasTheFirstLine) { EXPECT_EQ(drawing("first", {"a"}, {"rates"}, {1, 80}), "first"); }

}  // namespace
}  // namespace session
