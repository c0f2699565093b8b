// Lines through pipes.
#include "shell/output/chain/filter.h"

#include <gtest/gtest.h>

#include "host/shell/output/chain/seen_lines.h"

namespace session {
namespace {

TEST(Filter, PassesWhatItsPipesPass) {
  seen_lines seen;
  host::line_filters filters;
  filters.add({host::pipe_kind::include, "up"});
  host::filtering_sink filter(filters, seen);
  filter.take({"is down"});
  EXPECT_FALSE(filter.has_passed());
  filter.take({"is up"});
  EXPECT_TRUE(filter.has_passed());
  filter.forget();
  EXPECT_FALSE(filter.has_passed());
  EXPECT_EQ(seen.texts(), texts{"is up"});
}

TEST(Filter, GivesWhatPipesHeldBackAtTheEnd) {
  seen_lines seen;
  host::line_filters filters;
  filters.add({host::pipe_kind::count, ""});
  host::filtering_sink filter(filters, seen);
  filter.take({"one"});
  filter.take({"two"});
  EXPECT_EQ(seen.lines.size(), 0U);
  filter.end();
  EXPECT_EQ(seen.texts(), texts{"2"});
  EXPECT_EQ(seen.num_ended, 1);
}

TEST(Filter, BeginningsPassOnlyWithoutPipes) {
  seen_lines seen;
  host::line_filters none;
  EXPECT_TRUE(host::filtering_sink(none, seen).take_part({"Really? "}));
  host::line_filters some;
  some.add({host::pipe_kind::exclude, "x"});
  EXPECT_FALSE(host::filtering_sink(some, seen).take_part({"Really? "}));
  EXPECT_EQ(seen.parts.size(), 1U);
}

}  // namespace
}  // namespace session
