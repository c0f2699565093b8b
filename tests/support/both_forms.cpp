#include "support/both_forms.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pmcli_test {
namespace {

void expect_in_order(const printed_piece& piece) {
  std::size_t from = 0;
  for (std::size_t i = 0; i < piece.values.size(); ++i) {
    const std::size_t at = piece.text.find(piece.values[i], from);
    if (piece.values[i].empty() || at == std::string::npos) {
      ADD_FAILURE() << testing::PrintToString(piece.tuples[i]) << ", shown as \"" << piece.values[i]
                    << "\", is not in the text \"" << piece.text << "\"";
      return;
    }
    from = at + piece.values[i].size();
  }
}

}  // namespace

void expect_values_in_text(const RecordingPlatform& platform) {
  for (const printed_piece& piece : platform.pieces) expect_in_order(piece);
}

void expect_distinct_fields(const RecordingPlatform& platform, const std::vector<uint32>& tuple_ids) {
  Tuples seen;
  for (const bound_tuple& tuple : platform.tuples()) {
    if (std::find(tuple_ids.begin(), tuple_ids.end(), tuple.id) == tuple_ids.end()) continue;
    for (const bound_tuple& earlier : seen) {
      if (earlier.id == tuple.id || earlier.value == tuple.value)
        ADD_FAILURE() << testing::PrintToString(tuple) << " is bound beside " << testing::PrintToString(earlier);
    }
    seen.push_back(tuple);
  }
  for (const uint32 id : tuple_ids) {
    const bool is_bound =
        std::any_of(seen.begin(), seen.end(), [&](const bound_tuple& tuple) { return tuple.id == id; });
    if (!is_bound) ADD_FAILURE() << testing::PrintToString(bound_tuple{id, "..."}) << " is not bound";
  }
}

void expect_both_forms_agree(const RecordingPlatform& platform, const std::vector<uint32>& tuple_ids) {
  std::vector<uint32> bound;
  for (const bound_tuple& tuple : platform.tuples()) bound.push_back(tuple.id);
  EXPECT_EQ(bound, tuple_ids);
  expect_values_in_text(platform);
  expect_distinct_fields(platform, tuple_ids);
}

}  // namespace pmcli_test
