// What a watch draws on a screen.
#include <gtest/gtest.h>

#include "shell/commands/watch/drawing.h"
#include "shell/output/terminal/sparkline.h"
#include "switch/if_index_layout.h"

namespace session {
namespace {

constexpr char kTitles[] = "Interface                 In bytes/s  In packets/s   Out bytes/s Out packets/s";

using lines = std::vector<std::string>;

// What is drawn from an offset on.
std::string drawing(const std::string& first, const lines& shown, const lines& rates, host::screen_size size,
                    std::size_t offset = 0) {
  return host::drawing({first, shown, rates}, size, offset, "j/k scroll");
}

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
  EXPECT_EQ(drawing("first", {"a", "b", "c", "d", "e"}, {}, {4, 80}), "first\na\nb\n3 rows hidden: j/k scroll");
  EXPECT_EQ(drawing("first", {"a", "b", "c", "d", "e"}, {"", "rates"}, {7, 80}),
            "first\na\nb\nc\n\nrates\n2 rows hidden: j/k scroll");
}

TEST(Drawing, LongTableLeavesTheDisplayHalfOfTheScreen) {
  const lines four = {"1", "2", "3", "4"};
  EXPECT_EQ(drawing("first", {"a", "b", "c", "d"}, four, {6, 80}), "first\na\nb\n1\n2\n4 rows hidden: j/k scroll");
  EXPECT_EQ(drawing("first", {"a"}, four, {5, 80}), "first\na\n1\n2\n2 rows hidden: j/k scroll")
      << "and what a short display leaves";
}

TEST(Drawing, ScrollsTheDisplayAndThenTheTable) {
  const lines four = {"1", "2", "3", "4"};
  const lines shown = {"a", "b", "c", "d"};
  EXPECT_EQ(drawing("first", shown, four, {6, 80}, 1), "first\nb\nc\n1\n2\n4 rows hidden: j/k scroll");
  EXPECT_EQ(drawing("first", shown, four, {6, 80}, 3), "first\nc\nd\n2\n3\n4 rows hidden: j/k scroll");
  std::size_t offset = 100;
  EXPECT_EQ(host::drawing({"first", shown, four}, {6, 80}, offset), "first\nc\nd\n3\n4\n4 rows hidden");
  EXPECT_EQ(offset, 4U) << "the end";
  EXPECT_EQ(host::drawing({"first", shown, four}, {24, 80}, offset), "first\na\nb\nc\nd\n1\n2\n3\n4");
  EXPECT_EQ(offset, 0U) << "everything fits";
}

TEST(Drawing, LineThatIsWiderThanTheScreenTakesMoreRows) {
  EXPECT_EQ(drawing("first", {"12345678901", "b", "c"}, {}, {4, 10}), "first\n12345678901\n2 rows hid");
  EXPECT_EQ(drawing("first", {"1234567890", "b", "c"}, {}, {4, 10}), "first\n1234567890\nb\nc");
  EXPECT_EQ(drawing("first", {"12345678901", "b"}, {}, {3, 10}), "first\n3 rows hid") << "no part of a line";
}

TEST(Drawing, ColoursAndCharactersOfManyBytesTakeNoMoreRoom) {
  EXPECT_EQ(drawing("first", {"\x1b[31m1234567890\x1b[0m", "b"}, {}, {3, 10}), "first\n\x1b[31m1234567890\x1b[0m\nb");
  EXPECT_EQ(drawing("first", {"\u00fc\u00fc\u00fc", "b"}, {}, {3, 3}), "first\n\u00fc\u00fc\u00fc\nb");
}

TEST(Drawing, ScreenOfOneRowHasTheFirstLine) { EXPECT_EQ(drawing("first", {"a"}, {"rates"}, {1, 80}), "first"); }

TEST(Sparkline, BarsAreSharesOfTheGreatestValue) {
  const std::vector<double> values = {0, 1, 3.5, 7};
  EXPECT_EQ(host::sparkline(values, 10, true), "\u2581\u2582\u2585\u2588");
  EXPECT_EQ(host::sparkline(values, 10, false), "_.+#");
  EXPECT_EQ(host::sparkline(values, 2, false), "+#") << "the last ones, by the greatest of these";
  EXPECT_EQ(host::sparkline(std::vector<double>{0, 0}, 10, false), "__");
  EXPECT_EQ(host::sparkline({}, 10, false), "");
}

TEST(RateTable, HasTheRecentRatesOfEachInterfaceWhereThereIsRoom) {
  host::recent_rates recent;
  for (const double bytes : {0.0, 700.0, 300.0}) recent.add({{kLoopback3, host::traffic_rates{bytes, 1, bytes, 1}}});
  const std::vector<host::traffic_readings::row> rows = {{kLoopback3, host::traffic_rates{300, 1, 300, 1}}};
  EXPECT_EQ(host::rate_lines(rows, recent, 80, false),
            (lines{"", "Interface    In bytes/s  In packets/s   Out bytes/s Out packets/s  Recent",
                   "loopback3         300.0           1.0         300.0           1.0  _#="}));
  EXPECT_EQ(host::rate_lines(rows, recent, 100, true)[1], kTitles + std::string("  Recent"));
  EXPECT_EQ(host::rate_lines(rows, recent, 70, true)[1], kTitles) << "no room";
  recent.add({{kLoopback3, std::nullopt}});
  EXPECT_EQ(recent.of(kLoopback3), std::vector<double>()) << "the counters were cleared";
}

}  // namespace
}  // namespace session
