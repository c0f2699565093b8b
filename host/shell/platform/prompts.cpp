// The functions of platform/vsh.h: questions to the user, and the shell's texts for transport failures.
#include "shell/platform/prompts.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <optional>
#include <string>

#include "base/c_edge.h"
#include "platform/mts.h"
#include "platform/vsh.h"
#include "shell/output/command_output.h"

namespace {

struct errno_text {
  int32 number;
  const char* text;
};

constexpr errno_text kReasons[] = {
    {0, "the answer was refused or damaged"},
    {MTS_ERRNO_INTERRUPTED, "the call was interrupted"},
    {ETIMEDOUT, "no answer in time"},
    {ECANCELED, "cancelled"},
    {ECONNREFUSED, "the service is not running"},
    {EHOSTUNREACH, "the service is not running"},
    {ENOENT, "the service is not running"},
};

const char* reason_of(int32 number) {
  const auto* const known = std::find_if(std::begin(kReasons), std::end(kReasons),
                                         [number](const errno_text& reason) { return reason.number == number; });
  return known == std::end(kReasons) ? std::strerror(number) : known->text;
}

// Reads a line from the user; false at the end of the input.
bool read_line(std::string& line) {
  line.clear();
  char character = 0;
  ssize_t size = 0;
  while ((size = read(STDIN_FILENO, &character, 1)) == 1 && character != '\n') line += character;
  return size == 1;
}

std::string ask(const vsh_user_input_info_t& question) {
  std::string answer;
  const std::string_view prompt = question.prompt == nullptr ? "" : question.prompt;
  do {
    [[maybe_unused]] const ssize_t shown = write(STDOUT_FILENO, prompt.data(), prompt.size());
    if (!read_line(answer) || answer.empty()) return question.default_input == nullptr ? "" : question.default_input;
  } while (question.verify_fn != nullptr && question.verify_fn(answer.c_str()) == 0);
  return answer;
}

bool is_yes_assumed = false;
bool is_anybody_there = true;

std::optional<std::map<std::string, std::string>> kept;  // answers by their prompt; none: each question is asked

std::string ask_once(const vsh_user_input_info_t& question) {
  if (!kept) return ask(question);
  const std::string prompt = question.prompt == nullptr ? "" : question.prompt;
  const auto known = kept->find(prompt);
  return known != kept->end() ? known->second : kept->emplace(prompt, ask(question)).first->second;
}

int32 answer_question(const vsh_user_input_info_t& question, char* answer) {
  host::command_output* const output = host::command_output::running();
  if (output != nullptr) output->flush();
  const auto quiet = output == nullptr ? std::nullopt : output->hold_progress();
  const bool has_terminal = is_anybody_there && isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
  const std::string assumed = question.notty_input == nullptr ? "" : question.notty_input;
  const std::string given = is_yes_assumed ? "y" : has_terminal ? ask_once(question) : assumed;
  const auto length = std::min(given.size(), static_cast<std::size_t>(question.max_len));
  std::memcpy(answer, given.data(), length);
  answer[length] = '\0';
  return 0;
}

}  // namespace

void host::assume_yes() { is_yes_assumed = true; }

void host::ask_nobody() { is_anybody_there = false; }

bool host::confirm(const std::string& question) {
  vsh_user_input_info_t asked{};
  asked.prompt = question.c_str();
  asked.default_input = "n";
  asked.notty_input = "y";
  char answer[9] = {};
  asked.max_len = sizeof answer - 1;
  return vsh_util_user_input_get(&asked, answer) == 0 && (answer[0] == 'y' || answer[0] == 'Y');
}

host::kept_answers::kept_answers() { kept.emplace(); }
host::kept_answers::~kept_answers() { kept.reset(); }

int32 vsh_util_user_input_get(vsh_user_input_info_t* question, char* answer) {
  if (question == nullptr || answer == nullptr || question->max_len < 0) return -1;
  return host::no_throw<int32>(-1, [&] { return answer_question(*question, answer); });
}

void vsh_print_mts_error_message(int32 kind, int32 mts_errno) {
  if (host::command_output* const output = host::command_output::running()) {
    output->note_failure();
    output->line().set_failed();
  }
  const char* const request = kind == VSH_MTS_ERROR_PORT_CONFIG ? "the port manager's record" : "the request";
  std::printf("error: no answer to %s: %s. Type 'show transport' for the messages so far.\n", request,
              reason_of(mts_errno));
}
