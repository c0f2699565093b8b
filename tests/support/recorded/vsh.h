// The shell: questions to the user, what the user may do, reports of transport failures.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/vsh.h"

namespace pmcli_test {

struct recorded_vsh {
  std::vector<std::pair<int32, int32>> mts_errors;  // kind and reason; printed as "<transport failure KIND REASON>\n"
  uint32 vsan_restricted = 0;                       // of vsh_is_user_vsan_restricted()
  std::optional<std::string> user_answer;           // without one vsh_util_user_input_get() fails
  struct question {
    std::string prompt, default_input, notty_input;
    std::string answer_before;  // what the answer buffer held
    vsh_user_input_info_t info;
  };
  std::vector<question> questions;
};

}  // namespace pmcli_test
