// Matchers of texts and lists: a failed test shows what was expected and all that came.
#pragma once

#include <gmock/gmock-more-matchers.h>

#include <string>

namespace pmcli_test {

using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// A text with this part when it is expected, without it when it is not.
inline testing::Matcher<std::string> HasSubstrOnlyIf(bool is_expected, const std::string& part) {
  if (is_expected) return HasSubstr(part);
  return Not(HasSubstr(part));
}

}  // namespace pmcli_test
