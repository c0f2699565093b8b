// Lines that leave.
#include "shell/output/chain/write.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace session {
namespace {

using texts = std::vector<std::string>;

TEST(Write, GathersLinesUntilItIsFlushed) {
  texts blocks;
  host::writing_sink write(host::block_writer(-1, [&](std::string_view it) { blocks.emplace_back(it); }), false);
  write.take({"one"});
  EXPECT_TRUE(write.take_part({"tw"}));
  EXPECT_EQ(blocks, texts{});
  write.flush();
  write.take({"o"});
  write.end();
  EXPECT_EQ(blocks, (texts{"one\ntw", "o\n"}));
}

TEST(Write, AtATerminalEachLineLeavesAtOnce) {
  texts blocks;
  host::writing_sink write(host::block_writer(-1, [&](std::string_view it) { blocks.emplace_back(it); }), true);
  write.take({"one"});
  write.take({"two"});
  EXPECT_EQ(blocks, (texts{"one\n", "two\n"}));
}

TEST(Write, KnowsWhyItFailed) {
  host::writing_sink write(host::block_writer(-1), false);
  EXPECT_EQ(write.error(), 0);
  write.take({"lost"});
  write.end();
  EXPECT_EQ(write.error(), EBADF);
}

}  // namespace
}  // namespace session
