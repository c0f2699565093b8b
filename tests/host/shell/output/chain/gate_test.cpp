// What passes until a command is cancelled.
#include "shell/output/chain/gate.h"

#include <gtest/gtest.h>

#include "host/shell/output/chain/seen_lines.h"

namespace session {
namespace {

bool is_cancelled = false;

TEST(Gate, IsShutOnceTheCommandIsCancelled) {
  is_cancelled = false;
  seen_lines seen;
  host::gate_sink gate([] { return is_cancelled; }, nullptr, seen);
  gate.take({"before"});
  is_cancelled = true;
  gate.take({"after"});
  EXPECT_FALSE(gate.take_part({"af"}));
  gate.flush();
  gate.end();
  EXPECT_EQ(seen.texts(), texts{"before"});
  EXPECT_EQ(seen.parts.size(), 0U);
  EXPECT_EQ(seen.num_flushed, 1);
  EXPECT_EQ(seen.num_ended, 1);
}

}  // namespace
}  // namespace session
