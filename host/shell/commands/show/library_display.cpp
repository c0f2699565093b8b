#include "shell/commands/show/library_display.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "messages/calls/switch_facts.h"
#include "shell/library/views.h"

namespace host {

void call_handler(const invocation& run, command_handler handler, paraminfo_t* block) {
  const uint32 result = handler(block);
  const std::string_view added = result == 0 ? std::string_view() : name_of_added_handler(handler);
  if (added.empty()) return;
  run.output.complain(fmt::format("{} failed: it returned {}.", added, result));
  run.output.note_failure();
}

int check_module(const invocation& run) {
  const auto& words = run.line.what->syntax.words;
  if (std::none_of(words.begin(), words.end(), [](const syntax_word& word) { return word.text == "MODULE"; }))
    return kDone;
  const auto modules = ask_modules();
  if (!modules) return kServiceFailed;
  if (std::find(modules->begin(), modules->end(), run.line.number) != modules->end()) return kDone;
  run.output.complain(modules->empty() ? fmt::format("module {} does not exist.", run.line.module)
                                       : fmt::format("module {} does not exist; the modules of this switch are {}.",
                                                     run.line.module, fmt::join(*modules, ", ")));
  return kNoSuchInterface;
}

}  // namespace host
