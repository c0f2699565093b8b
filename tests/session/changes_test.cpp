// Changes of a session: listed, and taken back step by step.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kMoment[] = "1800000000";  // 2027-01-15 08:00 UTC

outcome run_at_moment(const std::string& lines) {
  return run_shell_on(test_file("configuration.yaml"), {"--clock", kMoment}, lines);
}

TEST(Changes, AreListedWithWhatWasBefore) {
  const outcome result = run_at_moment(
      "configure\ninterface ethernet 1/1-2\nswitchport mtu 9000\nclock advance 90\n"
      "interface ethernet 1/1\nswitchport mtu 4000\ndescription \"a | b\"\nshow changes\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "1  2027-01-15T08:00:00Z  operator  switchport mtu 9000\n"
            "     ethernet 1/1-2\n"
            "     + switchport mtu 9000\n"
            "2  2027-01-15T08:01:30Z  operator  switchport mtu 4000\n"
            "     ethernet 1/1\n"
            "     - switchport mtu 9000\n"
            "     + switchport mtu 4000\n"
            "3  2027-01-15T08:01:30Z  operator  description \"a | b\"\n"
            "     ethernet 1/1\n"
            "     + description \"a | b\"\n");
}

TEST(Changes, AreTakenBackTheLastOneFirst) {
  const std::string show = "show running-config interface ethernet 1/1\n";
  const outcome result =
      run_at_moment("configure\ninterface ethernet 1/1\nswitchport mtu 9000\nswitchport mtu 4000\nshutdown\nundo\n" +
                    show + "undo 2\n" + show);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, HasSubstr("  switchport mtu 4000\nend\n"));
  EXPECT_EQ(result.out.substr(result.out.rfind("configure")), "configure\nend\n");
}

TEST(Changes, ACommandThatIsRefusedOrChangesNothingIsNone) {
  const outcome result = run_at_moment(
      "configure\ninterface ethernet 1/1\nswitchport mtu 9000\nswitchport mtu 9000\nend\n"
      "configure\ninterface ethernet 1/9\nshutdown\nshow changes\nundo\nshow changes\n");
  EXPECT_THAT(result.out, HasSubstr("1  2027-01-15T08:00:00Z  operator  switchport mtu 9000\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("\n2  ")));
  EXPECT_THAT(result.out, HasSubstr("Undone for ethernet 1/1.\nNothing was changed in this session.\n"));
}

TEST(Changes, MoreThanThereAreAreRefusedAsAWhole) {
  const outcome result =
      run_at_moment("configure\ninterface ethernet 1/1\nswitchport mtu 9000\nundo 2\nundo 0\nshow changes\n");
  EXPECT_THAT(result.err, HasSubstr("pmsh: cannot undo 2 changes: this session has 1. 'show changes' lists them.\n"));
  EXPECT_THAT(result.out, HasSubstr("switchport mtu 9000"));
  EXPECT_EQ(run_at_moment("configure\nundo\n").err, "pmsh: there is no change to undo.\n");
}

TEST(Changes, HaveARecordForEachInterface) {
  const outcome result = run_at_moment(
      "configure\ninterface ethernet 1/1-2\nswitchport mtu 9000\ninterface loopback 77\nshow changes | json\n");
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  ASSERT_FALSE(document.HasParseError()) << result.out;
  ASSERT_EQ(document["changes"].Size(), 3U);
  EXPECT_STREQ(document["changes"][1]["interface"].GetString(), "Ethernet1/2");
  EXPECT_EQ(document["changes"][1]["step"].GetUint(), 1U);
  EXPECT_STREQ(document["changes"][1]["changed_at"].GetString(), "2027-01-15T08:00:00Z");
  EXPECT_STREQ(document["changes"][1]["command"].GetString(), "switchport mtu 9000");
  EXPECT_TRUE(document["changes"][1]["before"].IsNull());
  EXPECT_STREQ(document["changes"][1]["after"].GetString(), "switchport mtu 9000");
  EXPECT_STREQ(document["changes"][2]["interface"].GetString(), "loopback77");
}

}  // namespace
}  // namespace session
