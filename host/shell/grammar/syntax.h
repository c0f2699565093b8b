// The table of commands: how each is written, what it is for, what runs. Parsing, help, completion and the command
// reference are derived from it.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "settings/settings.h"
#include "shell/output/document/document.h"
#include "switch/if_index_layout.h"

namespace host {

struct invocation;

// A number that a command takes, and its name in a syntax.
struct number_argument {
  std::string_view name;
  uint32 lowest, highest;
  std::string_view help;
  bool has_any_value = false;  // the command reports a number out of bounds, because nothing has it
};

inline constexpr number_argument kNumberArguments[] = {
    {"MODULE", 1, kMaxSlot + 1, "Number of a module", true},
    {"PORT", 0, kMaxPort, "Number of a management port"},
    {"SECONDS", 1, 4'000'000'000, "A time in seconds"},
    {"INTERVAL", 1, 86'400, "Seconds from one reading to the next"},
    {"BYTES", 1, 65535, "A size in bytes"},
    {"COUNT", 0, 65535, "A number of credits or buffers"},
    {"VLAN", 1, 4094, "Number of a VLAN"},
    {"CHANNEL", 1, kMaxChannel, "Number of a port-channel"},
    {"CHANGES", 1, 20'000, "How many changes"},
    {"SESSION", 1, 4'000'000'000, "Number of a session"},
    {"EVENTS", 1, 1'000'000, "How many events"},
    {"LINES", 0, 512, "Lines of a screen (0: no stops)"},
};

constexpr bool is_number_argument(std::string_view word) {
  for (const number_argument& known : kNumberArguments) {
    if (known.name == word) return true;
  }
  return false;
}

// How a word of a syntax is typed.
enum class syntax_kind : uint8 {
  literal,  // as it is written, such as "show"
  range,    // "RANGE": interfaces
  number,   // the name of a number: see kNumberArguments
  file,     // "FILE": any word
  word,     // "WORD": any word
  text,     // "TEXT": the rest of the line
  mac,      // "MAC": an address in any of its spellings
  vlans,    // "VLANS": a list such as "1-10,20"
  command,  // "COMMAND": another command follows
};

constexpr syntax_kind kind_of_syntax_word(std::string_view word) {
  if (word == "RANGE") return syntax_kind::range;
  if (word == "FILE") return syntax_kind::file;
  if (word == "WORD") return syntax_kind::word;
  if (word == "TEXT") return syntax_kind::text;
  if (word == "MAC") return syntax_kind::mac;
  if (word == "VLANS") return syntax_kind::vlans;
  if (word == "COMMAND") return syntax_kind::command;
  return is_number_argument(word) ? syntax_kind::number : syntax_kind::literal;
}

// One word of a syntax. Words in brackets are optional.
struct syntax_word {
  std::string_view text;
  syntax_kind kind = syntax_kind::literal;
  bool is_optional = false;
};

enum { kMaxSyntaxWords = 8 };

struct command_syntax {
  std::string_view text;
  std::array<syntax_word, kMaxSyntaxWords> words{};
  std::size_t num_words = 0;

  constexpr command_syntax() = default;
  consteval command_syntax(const char* written) : command_syntax(std::string_view(written)) {}

  // At most kMaxSyntaxWords words, with one blank between them.
  explicit constexpr command_syntax(std::string_view written) : text(written) {
    std::string_view left = text;
    while (!left.empty()) {
      std::string_view word = left.substr(0, left.find(' '));
      left.remove_prefix(word.size() < left.size() ? word.size() + 1 : word.size());
      const bool is_optional = word.front() == '[';
      if (is_optional) word = word.substr(1, word.size() - 2);
      words[num_words++] = {word, kind_of_syntax_word(word), is_optional};
    }
  }
};

// What a line is typed in: commands belong to some of these.
enum shell_mode : uint8 { kExecMode = 1, kConfigureMode = 2, kInterfaceMode = 4 };
enum : uint8 { kEveryMode = kExecMode | kConfigureMode | kInterfaceMode };

// What a command does beside showing something, for a session that runs it.
enum class command_effect : uint8 {
  none,
  settings,        // changes settings or interfaces of the switch, or of the candidate when there is one
  shows_settings,  // shows the changes of the session: those of the candidate when there is one
  dry_run,         // begins a dry run
  outside,         // changes more than settings, so that a dry run skips it
  writes_file,     // the same, when its argument is a file
  leaves,          // leaves the mode or the shell
};

struct command_line;
struct interface_view;
struct output_settings;
struct shell;

// A command: how it is written, what it is for, what runs.
struct command {
  command_syntax syntax;
  std::string_view help;
  int (*run)(const invocation&);  // returns an exit code; null: other commands run, one that follows or those of a file
  display shown{};                // of its structured form
  const interface_view* view = nullptr;  // of a display of interfaces by a library
  uint8 modes = kEveryMode;              // in which it can be typed
  command_effect effect = command_effect::none;

  // Of a command whose output has many parts: it shows them itself, as a session would show one. `other` is the command
  // that follows it, or the command itself. Returns an exit code.
  int (*run_other)(shell&, const command_line& other, const output_settings&) = nullptr;

  // Of the commands that make settings.
  const setting* sets = nullptr;
  const setting_form* form = nullptr;  // of that setting
  setting_tokens tokens{};             // for the command library
};

// The table, and the help of each word in it; empty for another word.
std::span<const command> all_commands();
std::string_view help_of_word(std::string_view word);

// Adds a command of another library after those that begin alike, and the help of a word. Their texts must outlive the
// shell. Call them before the first line is parsed.
void add_command(const command& added);
void add_word(std::string_view word, std::string_view help);

}  // namespace host
