// The card configuration, a library opened by name.
#include <gtest/gtest.h>

#include "support/recorded/answers.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

syserr_t crdcfg_get_port_cap(const if_index_range_t* range, uint32 size, uint8* response) {
  EXPECT_EQ(range->low, range->high);
  EXPECT_EQ(size, sizeof(crdcfg_port_cap_t));
  const auto& entries = platform_for("crdcfg_get_port_cap").capabilities;
  return answer_from("crdcfg_get_port_cap", entries, range->low, reinterpret_cast<crdcfg_port_cap_t*>(response));
}

}  // namespace

library_symbols card_config_library() { return {{"crdcfg_get_port_cap", crdcfg_get_port_cap}}; }

}  // namespace pmcli_test
