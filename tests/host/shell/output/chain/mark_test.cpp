// Marks of lines without bound values.
#include "shell/output/chain/mark.h"

#include <gtest/gtest.h>

#include "host/shell/output/chain/seen_lines.h"
#include "messages/calls/diagnostic_marks.h"

namespace session {
namespace {

using host::line_mark;
using enum host::severity;

mts_get_sfp_diag_info_t with_flags(uint32 alarms, uint32 warnings) {
  mts_get_sfp_diag_info_t made{};
  made.alarm_flags = alarms;
  made.warn_flags = warnings;
  return made;
}

TEST(NotedMarks, AlarmsOutweighWarningsAndUpperLimitsLowerOnes) {
  host::note_marks(with_flags(0x001 | 0x008 | 0x100 | 0x200, 0x002 | 0x004 | 0x010 | 0x080));
  const std::vector<host::quantity_mark> noted(host::noted_marks().begin(), host::noted_marks().end());
  EXPECT_EQ(noted, (std::vector<host::quantity_mark>{
                       {"Temperature", 1}, {"Voltage", 4}, {"Current", 2}, {"Tx Power", 3}, {"Rx Power", 1}}));
  host::forget_marks();
  EXPECT_TRUE(host::noted_marks().empty());
}

// The marks of a line after an answer with these flags.
std::vector<line_mark> marks_of(const mts_get_sfp_diag_info_t& answer, const host::text_line& line) {
  host::note_marks(answer);
  seen_lines seen;
  host::marking_sink mark(seen);
  mark.take(line);
  host::forget_marks();
  return seen.lines[0].marks;
}

TEST(Mark, RowsHaveThatOfTheirQuantity) {
  const auto hot = with_flags(0x001, 0);
  EXPECT_EQ(marks_of(hot, {"  Temperature   76.00 C  ++    75.00 C"}), (std::vector<line_mark>{{25, 27, alarm}}));
  EXPECT_EQ(marks_of(hot, {"  Temperature   76.00 C  ++"}), (std::vector<line_mark>{{25, 27, alarm}}));
  EXPECT_EQ(marks_of(with_flags(0, 0x200), {"  Rx Power      -12.21 dBm  -"}),
            (std::vector<line_mark>{{28, 29, warning}}));
}

TEST(Mark, OtherLinesHaveNone) {
  const auto hot = with_flags(0x001, 0);
  for (const char* const text : {"  Voltage        3.50 V   ++    3.63 V", "  Note: ++  high-alarm; +  high-warning",
                                 "  Temperature   76.00 C", "Temperature ++", ""})
    EXPECT_EQ(marks_of(hot, {text}), std::vector<line_mark>{}) << text;
  EXPECT_EQ(marks_of(with_flags(0, 0), {"  Temperature   76.00 C  ++"}), std::vector<line_mark>{});
  EXPECT_EQ(marks_of(hot, {.text = "  Temperature   76.00 C  ++", .is_of_channel = true}), std::vector<line_mark>{});
}

}  // namespace
}  // namespace session
