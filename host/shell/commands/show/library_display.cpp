#include "shell/commands/show/library_display.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "shell/library/views.h"
#include "switch/model.h"

namespace host {

void call_handler(const invocation& run, command_handler handler, paraminfo_t* block) {
  const uint32 result = handler(block);
  const std::string_view added = result == 0 ? std::string_view() : name_of_added_handler(handler);
  if (added.empty()) return;
  run.output.complain(fmt::format("{} failed: it returned {}.", added, result));
  run.output.note_failure();
}

bool has_named_module(const invocation& run) {
  const auto& words = run.line.what->syntax.words;
  if (std::none_of(words.begin(), words.end(), [](const syntax_word& word) { return word.text == "MODULE"; }))
    return true;
  std::vector<uint32> modules;
  for (const card& it : the_machine().cards) {
    if (it.slot + 1 == run.line.number) return true;
    modules.push_back(it.slot + 1);
  }
  run.output.complain(modules.empty() ? fmt::format("module {} does not exist.", run.line.module)
                                      : fmt::format("module {} does not exist; the modules of this switch are {}.",
                                                    run.line.module, fmt::join(modules, ", ")));
  return false;
}

}  // namespace host
