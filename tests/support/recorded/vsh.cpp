// The shell: questions to the user, what the user may do, reports of transport failures.
#include <cstdio>
#include <cstring>

#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

int32 vsh_util_user_input_get(vsh_user_input_info_t* question, char* answer) {
  RecordingPlatform& platform = platform_for("vsh_util_user_input_get");
  platform.questions.push_back({question->prompt, question->default_input, question->notty_input, answer, *question});
  if (const int32 error = platform.failure_of("vsh_util_user_input_get"); error != 0) return error;
  if (!platform.user_answer) return -1;
  const auto longest = static_cast<std::size_t>(question->max_len);
  const std::string text = platform.user_answer->substr(0, longest);
  std::memcpy(answer, text.c_str(), text.size() + 1);
  return 0;
}

uint32 vsh_is_user_vsan_restricted(const paraminfo_t*) {
  return platform_for("vsh_is_user_vsan_restricted").vsan_restricted;
}

void vsh_print_mts_error_message(int32 kind, int32 mts_errno) {
  platform_for("vsh_print_mts_error_message").mts_errors.emplace_back(kind, mts_errno);
  std::printf("<transport failure %d %d>\n", kind, mts_errno);
}

}  // extern "C"
