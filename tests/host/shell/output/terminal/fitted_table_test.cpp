// Tables that fit the width of a terminal.
#include "shell/output/terminal/fitted_table.h"

#include <gtest/gtest.h>

namespace session {
namespace {

using host::fitted_column;
using host::table_rows;
using lines = std::vector<std::string>;

constexpr fitted_column kColumns[] = {{"Name", 1}, {"State", 2}, {"Count", 3, true}, {"Remark", 4, false, 8}};

const table_rows kRows = {{"a", "up", "7", "a long remark"}, {"bb", "down", "1234567", ""}};

TEST(FittedTable, WithoutALimitHasAllColumnsInFull) {
  EXPECT_EQ(host::fitted_lines(kColumns, kRows, 0), (lines{"Name  State    Count  Remark",         //
                                                           "a     up           7  a long remark",  //
                                                           "bb    down   1234567"}));
}

TEST(FittedTable, TakesExactlyTheWidthThatItNeeds) {
  EXPECT_TRUE(host::fits(kColumns, kRows, 35));
  EXPECT_FALSE(host::fits(kColumns, kRows, 34));
  EXPECT_TRUE(host::fits(kColumns, kRows, 0));
  EXPECT_EQ(host::fitted_lines(kColumns, kRows, 35)[1], "a     up           7  a long remark");
}

TEST(FittedTable, TextsThatMayBeCutAreCutFirst) {
  EXPECT_EQ(host::fitted_lines(kColumns, kRows, 34)[1], "a     up           7  a long re...");
  EXPECT_EQ(host::fitted_lines(kColumns, kRows, 30)[1], "a     up           7  a lon...") << "no shorter than 8";
}

TEST(FittedTable, ColumnsOfTheHighestRankAreLeftOutFirst) {
  EXPECT_EQ(host::fitted_lines(kColumns, kRows, 29), (lines{"Name  State    Count", "a     up           7",  //
                                                            "bb    down   1234567"}));
  EXPECT_EQ(host::fitted_lines(kColumns, kRows, 19), (lines{"Name  State", "a     up", "bb    down"}));
  EXPECT_EQ(host::fitted_lines(kColumns, kRows, 3), (lines{"Name", "a", "bb"})) << "the first is always there";
}

TEST(FittedTable, RoomThatIsLeftGoesToTheMoreImportantColumn) {
  constexpr fitted_column kTwo[] = {{"A", 3, false, 4}, {"B", 1}, {"C", 2, false, 4}};
  const table_rows row = {{"123456789", "x", "123456789"}};
  EXPECT_EQ(host::fitted_lines(kTwo, row, 15)[1], "1...  x  123...");
  EXPECT_EQ(host::fitted_lines(kTwo, row, 20)[1], "123...  x  123456789") << "5 of 7 are all that it needs";
}

TEST(FittedTable, ColumnsWithoutTextAreLeftOut) {
  EXPECT_EQ(host::fitted_lines(kColumns, {{"a", "", "7", ""}}, 0), (lines{"Name  Count", "a         7"}));
  EXPECT_EQ(host::fitted_lines(kColumns, {}, 0), lines{"Name"});
}

TEST(FittedLayout, FurtherRowsKeepTheColumnsOfTheFirstOnes) {
  const host::fitted_layout layout(kColumns, {{"a", "up", "7", "remark"}}, 0);
  EXPECT_EQ(layout.titles(), "Name  State  Count  Remark");
  EXPECT_EQ(layout.line({"bb", "down", "12", "b"}), "bb    down      12  b");
  EXPECT_EQ(layout.line({"long name", "up", "1", "a long remark"}), "long name  up         1  a l...")
      << "names are not cut";
}

TEST(FittedTable, WidthIsCountedInCharacters) {
  constexpr fitted_column kOne[] = {{"N", 1}, {"R", 2, false, 4}};
  const table_rows rows = {{"\u00fc", "\u00e4\u00f6\u00fc\u00e4\u00f6"}};
  EXPECT_TRUE(host::fits(kOne, rows, 8));
  EXPECT_EQ(host::fitted_lines(kOne, rows, 7)[1], "\u00fc  \u00e4...");
}

}  // namespace
}  // namespace session
