// Sessions with one switch: their owners, and the list of them.
#include "settings/session.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>

#include "host/switch/stopped_clock.h"

namespace host {
namespace {

constexpr std::time_t kSessionsBegin = 1800000000;

TEST(Sessions, OneWithoutAnOwnerIsOfThisProcess) {
  const stopped_clock clock(kSessionsBegin);
  switch_session session;
  clock_advance(5);
  const session_owner& owner = session.owner();
  EXPECT_EQ(owner.user, getuid());
  EXPECT_EQ(owner.user_name, name_of_user(getuid()));
  EXPECT_EQ(owner.process, static_cast<uint32>(getpid()));
  EXPECT_EQ(owner.since_sec, kSessionsBegin);
}

TEST(Sessions, TheOwnerThatIsSetIsReported) {
  switch_session session;
  const session_owner ann = {"ann", 1001, 4711, "pts/3", kSessionsBegin};
  session.set_owner(ann);
  EXPECT_EQ(session.owner(), ann);
}

TEST(Sessions, RootHasAName) {
  EXPECT_EQ(name_of_user(0), "root");
  EXPECT_EQ(name_of_user(4000000000), "");
}

TEST(Sessions, ATerminalIsNamedWithoutItsFolder) {
  EXPECT_EQ(name_of_terminal("/dev/pts/3"), "pts/3");
  EXPECT_EQ(name_of_terminal("/dev/tty1"), "tty1");
  EXPECT_EQ(name_of_terminal("/tmp/tty"), "/tmp/tty");
  EXPECT_EQ(name_of_terminal(""), "");
}

TEST(Sessions, AreListedWhileTheyLive) {
  const std::size_t others = living_sessions().size();
  switch_session first;
  std::optional<switch_session> second(std::in_place);
  switch_session third;
  ASSERT_EQ(living_sessions().size(), others + 3);
  EXPECT_EQ(living_sessions()[others], &first);
  EXPECT_EQ(living_sessions()[others + 1], &*second);
  EXPECT_EQ(second->number(), first.number() + 1);
  EXPECT_EQ(third.number(), first.number() + 2);

  second.reset();
  ASSERT_EQ(living_sessions().size(), others + 2);
  EXPECT_EQ(living_sessions()[others + 1], &third);
  const switch_session fourth;
  EXPECT_EQ(fourth.number(), first.number() + 3);
}

}  // namespace
}  // namespace host
