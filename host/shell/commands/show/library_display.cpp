#include "shell/commands/show/library_display.h"

#include <algorithm>
#include <string>

#include "shell/library/views.h"
#include "switch/model.h"

namespace host {

void call_handler(const invocation& run, command_handler handler, paraminfo_t* block) {
  const uint32 result = handler(block);
  const std::string_view added = result == 0 ? std::string_view() : name_of_added_handler(handler);
  if (added.empty()) return;
  run.output.complain(std::string(added) + " failed: it returned " + std::to_string(result) + ".");
  run.output.note_failure();
}

bool has_named_module(const invocation& run) {
  const auto& words = run.line.what->syntax.words;
  if (std::none_of(words.begin(), words.end(), [](const syntax_word& word) { return word.text == "MODULE"; }))
    return true;
  std::string modules;
  for (const card& it : the_machine().cards) {
    if (it.slot + 1 == run.line.number) return true;
    modules.append(modules.empty() ? "" : ", ").append(std::to_string(it.slot + 1));
  }
  run.output.complain("module " + run.line.module + " does not exist" +
                      (modules.empty() ? "." : "; the modules of this switch are " + modules + "."));
  return false;
}

}  // namespace host
