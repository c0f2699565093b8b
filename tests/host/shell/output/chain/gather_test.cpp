// Lines from pieces.
#include "shell/output/chain/gather.h"

#include <gtest/gtest.h>

#include "host/shell/output/chain/seen_lines.h"

namespace session {
namespace {

TEST(Gather, MakesLinesOfPieces) {
  seen_lines seen;
  host::line_gatherer gather(seen);
  gather.text("one\ntw");
  gather.current() += "o";
  EXPECT_EQ(seen.texts(), texts{"one"});
  gather.text(" three\n\n");
  EXPECT_EQ(seen.texts(), (texts{"one", "two three", ""}));
}

TEST(Gather, AttributesBelongToOneLine) {
  seen_lines seen;
  host::line_gatherer gather(seen);
  gather.set_of_channel();
  gather.set_bound();
  gather.set_failed();
  gather.set_short_names();
  gather.add_mark({0, 2, host::severity::alarm});
  gather.text("++\nplain\n");
  EXPECT_FALSE(gather.has_short_names());
  EXPECT_EQ(seen.lines, (std::vector<seen_line>{{"++", {{0, 2, host::severity::alarm}}, true, true, true}, {"plain"}}));
}

TEST(Gather, BeginningThatIsShownIsNotShownAgain) {
  seen_lines seen;
  host::line_gatherer gather(seen);
  gather.text("Really? ");
  gather.flush();
  EXPECT_EQ(seen.parts, (std::vector<seen_line>{{"Really? "}}));
  EXPECT_EQ(seen.num_flushed, 1);
  gather.text("y\n");
  EXPECT_EQ(seen.texts(), texts{"y"});
}

TEST(Gather, BeginningThatIsNotTakenComesWithItsLine) {
  seen_lines seen;
  seen.takes_parts = false;
  host::line_gatherer gather(seen);
  gather.text("Really? ");
  gather.flush();
  gather.text("y\n");
  EXPECT_EQ(seen.texts(), texts{"Really? y"});
}

TEST(Gather, EndsTheLastLineAndTheChain) {
  seen_lines seen;
  host::line_gatherer gather(seen);
  gather.text("no newline");
  gather.end();
  EXPECT_EQ(seen.texts(), texts{"no newline"});
  EXPECT_EQ(seen.num_ended, 1);
}

TEST(Gather, BreaksALineWithoutEnd) {
  seen_lines seen;
  host::line_gatherer gather(seen);
  gather.text(std::string((1 << 20) + 1, 'x'));
  EXPECT_EQ(seen.lines.size(), 1U);
  gather.current() += std::string((1 << 20) + 1, 'y');
  gather.current() += "z";
  EXPECT_EQ(seen.lines.size(), 2U);
}

}  // namespace
}  // namespace session
