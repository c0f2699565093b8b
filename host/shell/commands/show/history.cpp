// "show history": the lines that users entered at the prompt.
#include "shell/session/history.h"

#include <fmt/format.h>

#include "shell/commands/group.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"

namespace host {
namespace {

int show_history(const invocation& run) {
  std::size_t number = 0;
  for (const std::string& line : read_history(history_file())) {
    if (run.output.is_discarding()) break;
    if (!run.output.is_structured()) {
      run.output.text(fmt::format("{:5}  {}\n", ++number, line));
      continue;
    }
    run.output.begin_interface({});
    run.output.bind_text(kTagCommand, line);
    run.output.end_interface();
  }
  return kDone;
}

constexpr display kHistoryShown = {kHistoryDisplay, {}, "history", false, false, "commands"};

// clang-format off
constexpr command kHistoryRows[] = {
    {"show history", "Lines entered at the prompt", show_history, kHistoryShown},
};
// clang-format on

constexpr word_help kHistoryWords[] = {
    {"history", "Lines entered at the prompt"},
};

}  // namespace

constexpr command_group kHistoryCommands = {kHistoryRows, kHistoryWords};

}  // namespace host
