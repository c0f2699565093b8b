// The interactive shell: line editing, history, help and completion by keys.
#include "shell/session/interactive.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <histedit.h>
#include <langinfo.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "base/printable.h"
#include "base/state_directory.h"
#include "base/text.h"
#include "shell/grammar/parser.h"
#include "shell/output/exit_codes.h"
#include "shell/output/terminal/print_error.h"
#include "shell/output/terminal/restore_terminal.h"
#include "shell/session/completion.h"
#include "shell/session/connection.h"
#include "shell/session/history.h"
#include "shell/session/modes.h"
#include "shell/session/run.h"
#include "transport/transport.h"

namespace host {
namespace {

// libedit is loaded when a user sits at the shell: one-shot commands start without it.
struct editing_library {
  decltype(&::el_init) el_init = nullptr;
  decltype(&::el_end) el_end = nullptr;
  decltype(&::el_set) el_set = nullptr;
  decltype(&::el_wset) el_wset = nullptr;
  decltype(&::el_gets) el_gets = nullptr;
  decltype(&::el_line) el_line = nullptr;
  decltype(&::el_insertstr) el_insertstr = nullptr;
  decltype(&::history_init) history_init = nullptr;
  decltype(&::history_end) history_end = nullptr;
  decltype(&::history) history = nullptr;

  bool load() {
    void* const library = dlopen("libedit.so.2", RTLD_LAZY);
    return library != nullptr && find(library, "el_init", el_init) && find(library, "el_end", el_end) &&
           find(library, "el_set", el_set) && find(library, "el_wset", el_wset) && find(library, "el_gets", el_gets) &&
           find(library, "el_line", el_line) && find(library, "el_insertstr", el_insertstr) &&
           find(library, "history_init", history_init) && find(library, "history_end", history_end) &&
           find(library, "history", history);
  }

 private:
  template <typename Function>
  static bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
  }
};

// One user, one terminal: libedit's callbacks carry no argument of ours.
struct {
  editing_library edit;
  shell* session = nullptr;
  std::string prompt;
  bool line_abandoned = false;
} editor;

char* shown_prompt(EditLine*) {
  editor.prompt = prompt_of(*editor.session);
  return editor.prompt.data();
}

// The line up to the cursor.
std::string begun_line(EditLine* line) {
  const LineInfo* const info = editor.edit.el_line(line);
  return {info->buffer, info->cursor};
}

interface_names names_for_typing() {
  editor.session->is_refreshed = false;
  return device_names(*editor.session);
}

unsigned char show_help(EditLine* line, wint_t) {
  const std::string begun = begun_line(line);
  const suggestions found = suggest(begun, editor.session->mode, names_for_typing());
  if (found.is_in_text) {
    editor.edit.el_insertstr(line, "?");
    return CC_REFRESH;
  }
  std::printf("?\n%s", help_text(found).c_str());
  std::fflush(stdout);
  return CC_REDISPLAY;
}

unsigned char complete_word(EditLine* line, wint_t) {
  const std::string begun = begun_line(line);
  const completion found = complete(suggest(begun, editor.session->mode, names_for_typing()));
  if (!found.addition.empty()) {
    editor.edit.el_insertstr(line, found.addition.c_str());
    return CC_REFRESH;
  }
  if (found.choices.empty()) return CC_REFRESH_BEEP;
  std::printf("\n%s", found.choices.c_str());
  std::fflush(stdout);
  return CC_REDISPLAY;
}

unsigned char abandon_line(EditLine*, wint_t) {
  editor.line_abandoned = true;
  std::fputs("^C", stdout);
  std::fflush(stdout);
  return CC_NEWLINE;
}

// The lines that the keys recall: those of the file when the shell starts, then its own.
struct line_history {
  line_history() : lines(editor.edit.history_init()), path(history_file()) {
    HistEvent event;
    editor.edit.history(lines, &event, H_SETSIZE, int{kHistoryLines});
    editor.edit.history(lines, &event, H_SETUNIQUE, 1);
    if (path.empty()) return;
    shorten_history(path);
    for (const std::string& line : read_history(path)) {
      last = line;
      editor.edit.history(lines, &event, H_ENTER, (line + "\n").c_str());
    }
  }
  ~line_history() { editor.edit.history_end(lines); }
  line_history(const line_history&) = delete;
  line_history& operator=(const line_history&) = delete;

  // Also in the file, at once: a shell that is killed loses no line.
  void add(const char* line) {
    HistEvent event;
    editor.edit.history(lines, &event, H_ENTER, line);
    std::string text(trim(line));
    if (text == last || path.empty()) return;
    last = std::move(text);
    const int error = append_to_history(path, last);
    if (error == 0 || std::exchange(has_reported, true)) return;
    print_error(fmt::format("the history is not kept: {}: {}.", path, std::strerror(error)));
  }

  History* lines;
  std::string path;
  std::string last;
  bool has_reported = false;
};

void bind_keys(EditLine* line) {
  const auto& set = editor.edit.el_set;
  set(line, EL_EDITOR, "emacs");
  const auto& add = editor.edit.el_wset;  // unlike the narrow call it keeps these constants and copies nothing
  add(line, EL_ADDFN, L"shell-help", L"Help for the next word", show_help);
  add(line, EL_ADDFN, L"shell-complete", L"Complete the word", complete_word);
  add(line, EL_ADDFN, L"shell-abandon", L"Abandon the line", abandon_line);
  set(line, EL_BIND, "?", "shell-help", nullptr);
  set(line, EL_BIND, "^I", "shell-complete", nullptr);
  set(line, EL_BIND, "^C", "shell-abandon", nullptr);
  set(line, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  set(line, EL_SETTY, "-d", "-isig", nullptr);  // Ctrl-C is a key while a line is edited
}

// Text at the prompt is UTF-8 also where the environment names no locale, or one that is not installed.
void set_character_set() {
  const char* const named = std::setlocale(LC_CTYPE, "");
  const bool is_ascii = named == nullptr || std::string_view(nl_langinfo(CODESET)) == "ANSI_X3.4-1968";
  if (is_ascii) std::setlocale(LC_CTYPE, "C.UTF-8");
}

void show_banner(const shell& session) {
  std::string name;
  append_printable(name, session.about.name);
  std::printf("pmsh on %s. Type '?' for the next word, 'help' for all commands.\n", name.c_str());
}

}  // namespace

int run_interactively(shell& session) {
  set_character_set();
  if (!editor.edit.load()) {
    print_error("lines cannot be edited: libedit.so.2 cannot be loaded. Install the package libedit2.");
    return run_input(session);
  }
  std::signal(SIGINT, SIG_IGN);
  restore_terminal_at_end();
  editor.session = &session;
  line_history history;
  EditLine* const line = editor.edit.el_init("pmsh", stdin, stdout, stderr);
  if (line == nullptr) {
    print_error("lines cannot be edited at this terminal.");
    return run_input(session);
  }
  editor.edit.el_set(line, EL_PROMPT, shown_prompt);
  editor.edit.el_set(line, EL_HIST, editor.edit.history, history.lines);
  bind_keys(line);
  show_banner(session);
  while (!session.is_leaving) {
    int length = 0;
    editor.line_abandoned = false;
    const char* const typed = editor.edit.el_gets(line, &length);
    if (typed == nullptr || length <= 0) {
      std::fputs("\n", stdout);
      break;
    }
    const std::string text(typed, static_cast<std::size_t>(length));
    if (editor.line_abandoned || trim(text).empty()) {
      if (editor.line_abandoned) std::fputs("\n", stdout);
      continue;
    }
    history.add(typed);
    renew_connection(session);
    if (!session.is_leaving && run_line(session, text) == kInterrupted)
      std::fputs("\n", stdout);  // the terminal shows ^C
  }
  editor.edit.el_end(line);
  return kDone;
}

}  // namespace host
