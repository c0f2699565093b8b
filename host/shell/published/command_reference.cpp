// docs/commands.md: the command reference, from the tables of commands, interfaces and pipes.
#include <string>

#include "shell/grammar/syntax.h"
#include "shell/output/pipes.h"
#include "shell/published/published.h"
#include "switch/interface_name.h"

namespace host {
namespace {

constexpr std::string_view kBeginning =
    "# Commands of pmsh\n"
    "\n"
    "This page is generated from the shell's tables: `pmsh --print-command-reference`.\n"
    "\n"
    "Words may be abbreviated as long as they are unique. TAB completes a word, `?` lists what may come next. Words "
    "in\n"
    "brackets are optional; words in capital letters are arguments.\n";

void heading(std::string& page, std::string_view text) { page.append("\n## ").append(text).append("\n\n"); }

void table_head(std::string& page, std::string_view left, std::string_view right) {
  page.append("| ").append(left).append(" | ").append(right).append(" |\n|---|---|\n");
}

// "|" separates cells, so one in a text is written as an entity.
void row(std::string& page, std::string_view left, std::string_view right) {
  page.append("| <code>");
  for (const char letter : left) page.append(letter == '|' ? "&#124;" : std::string(1, letter));
  page.append("</code> | ").append(right).append(" |\n");
}

// A section of the page: the commands whose first mode it is.
struct command_section {
  std::string_view title;
  bool (*has)(uint8 modes);
  std::string_view remark;
};

constexpr command_section kSections[] = {
    {"Commands", [](uint8 modes) { return (modes & kExecMode) != 0; },
     "The last column names the definition in [schema.json](schema.json) that the output of `| json` follows.\n"
     "Without a RANGE a command shows all interfaces that have its display and are visible to the user.\n"},
    {"In the configuration", [](uint8 modes) { return (modes & (kExecMode | kConfigureMode)) == kConfigureMode; },
     "The commands above can be typed here, too, except `configure`.\n"},
    {"Settings of the chosen interfaces", [](uint8 modes) { return modes == kInterfaceMode; },
     "They follow `interface RANGE` and apply to the whole range. Refusals are reported by error, with `| json` in a\n"
     "record for each port.\n"},
};

void add_commands(std::string& page) {
  for (const command_section& section : kSections) {
    heading(page, section.title);
    page += "| Command | Description | JSON |\n|---|---|---|\n";
    for (const command& entry : all_commands()) {
      if (!section.has(entry.modes)) continue;
      page.append("| `").append(entry.syntax.text).append("` | ").append(entry.help).append(" | ");
      if (!entry.shown.name.empty()) page.append("`").append(entry.shown.name).append("`");
      page += " |\n";
    }
    page.append("\n").append(section.remark);
  }
}

void add_arguments(std::string& page) {
  heading(page, "Arguments");
  table_head(page, "Argument", "Meaning");
  row(page, "RANGE",
      "Interfaces: `ethernet 1/1-4, 1/7`, `e1/1-4,6`, `ethernet1/1-ethernet1/4`, `all`, `\"e*1/[1-3]\"`; see below");
  row(page, "FILE", "Name of a file");
  row(page, "WORD", "Part of a command or of its help, in lower or upper case");
  row(page, "MAC", "MAC address: `0200.0000.0009`, `02:00:00:00:00:09`, `02-00-00-00-00-09` or `020000000009`");
  row(page, "TEXT", "Rest of the line; in quotes when it contains `|`");
  row(page, "COMMAND", "A command with its arguments; after `watch` a `show` command");
  for (const number_argument& number : kNumberArguments)
    row(page, number.name,
        std::string(number.help) + ", " + std::to_string(number.lowest) + " to " + std::to_string(number.highest));
}

void add_interfaces(std::string& page) {
  heading(page, "Interfaces");
  table_head(page, "Name", "Interface");
  for (const interface_word& word : kInterfaceWords) {
    std::string number = word.form == number_form::slot_port ? "SLOT/PORT" : "NUMBER";
    if (word.has_sub_interfaces) number += "[.SUB-INTERFACE]";
    if (names_one_interface(word)) number = "";
    row(page, std::string(word.word) + (number.empty() ? "" : " ") + number, word.help);
  }
  page += "\nA port of a satellite unit is written `ethernet UNIT/SLOT/PORT`.\n";
}

void add_ranges(std::string& page) {
  heading(page, "Ranges");
  page +=
      "A RANGE is a list of items with `,` between them; blanks may be between all parts.\n\n"
      "| Item | Interfaces |\n|---|---|\n"
      "| `ethernet 1/1` | one; a number without a word belongs to the word before, and may be its last part alone: "
      "`e1/1,6` |\n"
      "| `e1/1-4`, `e1/1-1/4`, `ethernet1/1-ethernet1/4` | those from the first to the last |\n"
      "| `all` | all that the user may see |\n"
      "| `\"e*1/[1-3]\"`, in either quotes | those whose name matches, as it is written (`ethernet 1/1`) or displayed "
      "(`Ethernet1/1`), in any case; `*` stands for any characters, `?` for one, `[1-3]` for one of these |\n"
      "\n`except` and another list after the items take interfaces away: `all except ethernet 1/1-4, mgmt 0`. An "
      "interface\nthat is named twice counts once. Displays skip what does not exist between the ends of a range; ends "
      "that do not exist\nare reported, the others are shown, and the exit code is 4. Commands that change interfaces "
      "refuse such a range.\n";
}

void add_pipes(std::string& page) {
  heading(page, "Pipes");
  page += "A command may end with any number of pipes; each works on the output of the previous one.\n\n";
  table_head(page, "Pipe", "Result");
  for (const pipe_word& word : kPipeWords)
    row(page, "| " + std::string(word.word) + std::string(syntax_of(word.argument)), word.help);
}

}  // namespace

std::string command_reference() {
  std::string page(kBeginning);
  add_commands(page);
  add_arguments(page);
  add_interfaces(page);
  add_ranges(page);
  add_pipes(page);
  return page;
}

}  // namespace host
