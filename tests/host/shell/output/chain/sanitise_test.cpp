// Lines made safe.
#include "shell/output/chain/sanitise.h"

#include <gtest/gtest.h>

#include "host/shell/output/chain/seen_lines.h"

namespace session {
namespace {

TEST(Sanitise, WritesControlBytesVisiblyAndLeavesTabs) {
  seen_lines seen;
  host::sanitising_sink sanitise(seen);
  sanitise.take({"plain"});
  sanitise.take({"a\tb\x1b[31m\xc3\xa9\xff"});
  EXPECT_EQ(seen.texts(), (texts{"plain", "a\tb\\x1b[31m\xc3\xa9\\xff"}));
}

TEST(Sanitise, MarksStayWithTheirText) {
  seen_lines seen;
  host::sanitising_sink sanitise(seen);
  const host::line_mark marks[] = {{1, 3, host::severity::alarm}, {4, 5, host::severity::warning}};
  sanitise.take({"\x01++\x02-", marks});
  EXPECT_EQ(
      seen.lines,
      (std::vector<seen_line>{{"\\x01++\\x02-", {{4, 6, host::severity::alarm}, {10, 11, host::severity::warning}}}}));
}

TEST(Sanitise, BeginningsOfLinesToo) {
  seen_lines seen;
  host::sanitising_sink sanitise(seen);
  EXPECT_TRUE(sanitise.take_part({"\x07"}));
  EXPECT_EQ(seen.parts, (std::vector<seen_line>{{"\\x07"}}));
}

}  // namespace
}  // namespace session
