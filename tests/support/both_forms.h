// Both forms agree: what a display binds to tuples stands in its text.
#pragma once

#include <vector>

#include "support/recording_platform.h"

namespace pmcli_test {

// Every bound value stands, whole, in the text of the piece that bound it, in the order in which it was bound. A value
// that its column cuts off fails the test, so give each field a value that fits.
void expect_values_in_text(const RecordingPlatform& platform);

// These fields are bound once each, and no two of them to the same value, so that none can stand in for another.
void expect_distinct_fields(const RecordingPlatform& platform, const std::vector<uint32>& tuple_ids);

// Both of the above, for all of the bound fields of a display: `tuple_ids` are exactly the ids it binds, in order.
void expect_both_forms_agree(const RecordingPlatform& platform, const std::vector<uint32>& tuple_ids);

}  // namespace pmcli_test
