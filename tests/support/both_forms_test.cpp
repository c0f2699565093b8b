// The check that both forms agree, itself: it passes what agrees and finds what does not.
#include "support/both_forms.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace pmcli_test {
namespace {

void print_text(RecordingPlatform& platform, const char* format, uint32 tuple, const char* text) {
  cmd_prt(platform.output(), format, cmd_tuple(tuple, text));
}

TEST(BothForms, AgreeWhenEveryValueIsShown) {
  RecordingPlatform platform;
  print_text(platform, "%-6.6s", 0x302A0001, "first");
  print_text(platform, "%s\n", 0x302A0002, "second");
  expect_both_forms_agree(platform, {0x302A0001, 0x302A0002});
}

TEST(BothForms, DisagreeWhenAColumnCutsAValue) {
  RecordingPlatform platform;
  print_text(platform, "%-4.4s", 0x302A0001, "first");
  EXPECT_NONFATAL_FAILURE(expect_values_in_text(platform), "shown as \"first\", is not in the text \"firs\"");
}

TEST(BothForms, DisagreeWhenTwoFieldsHoldOneValue) {
  RecordingPlatform platform;
  print_text(platform, "%s", 0x302A0001, "same");
  print_text(platform, "%s", 0x302A0002, "same");
  EXPECT_NONFATAL_FAILURE(expect_distinct_fields(platform, {0x302A0001, 0x302A0002}), "is bound beside");
}

TEST(BothForms, DisagreeWhenAFieldIsMissing) {
  RecordingPlatform platform;
  print_text(platform, "%s", 0x302A0001, "first");
  EXPECT_NONFATAL_FAILURE(expect_distinct_fields(platform, {0x302A0001, 0x302A0002}), "is not bound");
}

}  // namespace
}  // namespace pmcli_test
