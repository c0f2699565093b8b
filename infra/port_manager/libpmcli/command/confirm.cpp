#include <cstring>

#include "platform/vsh.h"
#include "pmcli/command.h"

namespace {

constexpr int32 kMaxAnswerLength = 192;
constexpr size_t kAnswerBytes = 256;
static_assert(kAnswerBytes > kMaxAnswerLength);

}  // namespace

uint32 pm_verify_yn(const char* answer) {
  if (answer == nullptr || std::strlen(answer) != 1) return 0;
  return std::strchr("NYny", answer[0]) != nullptr ? 1 : 0;
}

uint32 pm_confirm_response(const char* prompt_string, paraminfo_t* param) {
  vsh_user_input_info_t question{
      .prompt = prompt_string,
      .default_input = "n",
      .notty_input = "y",
      .max_len = kMaxAnswerLength,
      .timeout_secs = 0,
      .verify_fn = pm_verify_yn,
      .pinfo = param,
      .debug_flag = 0,
      .single_char = 0,
      .echo_mode = 1,
      .bind_flag = 1,
      .display_status = 0,
  };
  char answer[kAnswerBytes] = {};
  if (vsh_util_user_input_get(&question, answer) != 0) return 0;
  return answer[0] == 'y' || answer[0] == 'Y' ? 1 : 0;
}
