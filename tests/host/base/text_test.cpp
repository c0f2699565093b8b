// Texts and lists that every part of the host reads.
#include "base/text.h"

#include <gtest/gtest.h>

#include "base/vlan_set.h"

namespace host {
namespace {

TEST(ClosestWord, NeedsTheFewestEditsInAnyCase) {
  EXPECT_EQ(closest_word("shwo", {"switch", "show", "shut"}, 2), "show");
  EXPECT_EQ(closest_word("FULL", {"half", "full"}, 1), "full");
  EXPECT_EQ(closest_word("mtuu", {"mtu"}, 1), "mtu");
}

TEST(ClosestWord, IsEmptyWhenEveryWordIsTooFar) {
  EXPECT_EQ(closest_word("shwo", {"show"}, 1), "");
  EXPECT_EQ(closest_word("abc", {}, 3), "");
}

std::string spans_of(std::string_view list) {
  const auto spans = parse_vlans(list);
  if (!spans) return "none";
  std::string text;
  for (const vlan_span& span : *spans) text += std::to_string(span.first) + "-" + std::to_string(span.last) + " ";
  return text;
}

TEST(VlanSet, IsAListOfNumbersAndSpans) {
  EXPECT_EQ(spans_of("1-10,20,4094"), "1-10 20-20 4094-4094 ");
  for (const char* const wrong : {"", "0", "4095", "10-1", "1,", "1-", ",1", "a", "1 ,2"})
    EXPECT_EQ(spans_of(wrong), "none") << wrong;
}

TEST(VlanSet, HasAtMost64Items) {
  std::string list = "1";
  for (int id = 2; id <= 64; ++id) list += "," + std::to_string(id);
  EXPECT_NE(spans_of(list), "none");
  EXPECT_EQ(spans_of(list + ",65"), "none");
}

}  // namespace
}  // namespace host
