// The grammar table, walked: every command, every abbreviation, every place for help.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "shell/grammar/parser.h"
#include "shell/grammar/pipe_stages.h"
#include "shell/grammar/suggester.h"
#include "shell/library/views.h"
#include "shell/session/completion.h"

namespace session {
namespace {

using host::command;
using host::parse_command;
using host::suggest;
using host::suggestions;
using host::syntax_kind;

// A line of a command: all its words, and an interface where a range may stand.
std::string line_of(const command& what, bool with_optional) {
  std::string line;
  for (std::size_t i = 0; i < what.syntax.num_words; ++i) {
    const host::syntax_word& word = what.syntax.words[i];
    if (word.is_optional && !with_optional) continue;
    if (!line.empty()) line += ' ';
    line += word.kind == syntax_kind::range    ? "ethernet 1/1-4, 1/7"
            : word.kind == syntax_kind::number ? "7"
            : word.kind == syntax_kind::file   ? "lab/site.cfg"
            : word.kind == syntax_kind::text   ? "some words"
            : word.kind == syntax_kind::mac    ? "02:00:5e:00:0a:b9"
            : word.kind == syntax_kind::vlans  ? "1-10,20"
                                               : std::string(word.text);
  }
  return line;
}

// Behind such a command another one follows.
bool stands_in_front(const command& what) {
  return what.syntax.words[what.syntax.num_words - 1].kind == syntax_kind::command;
}

// A mode in which a command may be typed.
host::shell_mode mode_of(const command& what) {
  for (const host::shell_mode mode : {host::kExecMode, host::kConfigureMode}) {
    if ((what.modes & mode) != 0) return mode;
  }
  return host::kInterfaceMode;
}

const command* command_of(const std::string& line, host::shell_mode mode = host::kExecMode) {
  std::string error;
  const auto parsed = parse_command(line, error, mode);
  EXPECT_TRUE(parsed) << line << ": " << error;
  return parsed ? parsed->what : nullptr;
}

std::string error_of(const std::string& line) {
  std::string error;
  EXPECT_FALSE(parse_command(line, error)) << line;
  return error;
}

bool suggests(const std::string& line, std::string_view word, host::shell_mode mode = host::kExecMode) {
  const auto found = suggest(line, mode).words;
  return std::any_of(found.begin(), found.end(), [word](const auto& choice) { return choice.word == word; });
}

TEST(Grammar, EveryCommandIsReadAsItIsWritten) {
  for (const command& what : host::all_commands()) {
    if (stands_in_front(what)) continue;
    EXPECT_EQ(command_of(line_of(what, true), mode_of(what)), &what);
    EXPECT_EQ(command_of(line_of(what, false), mode_of(what)), &what);
  }
}

TEST(Grammar, EveryUniqueAbbreviationIsReadAndEveryOtherIsCalledAmbiguous) {
  for (const command& what : host::all_commands()) {
    std::string in_front;
    for (std::size_t i = 0; i < what.syntax.num_words; ++i) {
      if (what.syntax.words[i].kind != syntax_kind::literal) break;
      const std::string word(what.syntax.words[i].text);
      for (std::size_t length = 1; length <= word.size(); ++length) {
        const std::string begun = in_front + word.substr(0, length);
        const bool is_unique =
            suggest(begun, mode_of(what)).words.size() == 1 || suggests(begun, word.substr(0, length), mode_of(what));
        std::string error;
        parse_command(begun, error, mode_of(what));
        EXPECT_EQ(error.find("ambiguous") == std::string::npos, is_unique) << begun << ": " << error;
      }
      in_front += word + " ";
    }
  }
}

TEST(Grammar, HelpNamesEachWordWhereItMayStandAndInItsMiddle) {
  for (const command& what : host::all_commands()) {
    std::string in_front;
    for (std::size_t i = 0; i < what.syntax.num_words; ++i) {
      const host::syntax_word& word = what.syntax.words[i];
      if (word.kind == syntax_kind::command) break;
      if (word.kind != syntax_kind::literal && word.kind != syntax_kind::range) {
        const auto hints = suggest(in_front, mode_of(what)).hints;
        EXPECT_TRUE(std::any_of(hints.begin(), hints.end(), [&](const auto& hint) { return hint.word == word.text; }));
        in_front += "7 ";
        continue;
      }
      const std::string name = word.kind == syntax_kind::range ? "ethernet" : std::string(word.text);
      for (std::size_t length = 0; length <= name.size(); ++length)
        EXPECT_TRUE(suggests(in_front + name.substr(0, length), name, mode_of(what)))
            << in_front << name.substr(0, length);
      in_front += name + (word.kind == syntax_kind::range ? " 1/1 " : " ");
    }
  }
}

// What TAB adds to a begun word: its rest, as soon as no other word begins alike.
TEST(Grammar, TabCompletesEachWordFromItsMiddle) {
  for (const command& what : host::all_commands()) {
    std::string in_front;
    for (std::size_t i = 0; i < what.syntax.num_words; ++i) {
      const host::syntax_word& word = what.syntax.words[i];
      if (word.is_optional) continue;
      if (word.kind == syntax_kind::range || word.kind == syntax_kind::file || word.kind == syntax_kind::word ||
          word.kind == syntax_kind::text || word.kind == syntax_kind::mac || word.kind == syntax_kind::vlans ||
          word.kind == syntax_kind::command)
        break;
      const std::string name(word.kind == syntax_kind::number ? "7" : word.text);
      for (std::size_t length = 1; length < name.size(); ++length) {
        const std::string begun = in_front + name.substr(0, length);
        if (suggest(begun, mode_of(what)).words.size() > 1) continue;
        EXPECT_EQ(host::complete(suggest(begun, mode_of(what))).addition, name.substr(length) + " ") << begun;
      }
      in_front += name + " ";
    }
  }
}

TEST(Grammar, EveryDisplayOfInterfacesHasAViewAndADocument) {
  std::size_t num_views = 0;
  for (const command& what : host::all_commands()) {
    const bool shows_interfaces = what.shown.has_values && what.syntax.text.starts_with("show interface [RANGE] ");
    if (shows_interfaces && what.view == nullptr) EXPECT_EQ(what.syntax.text, "show interface [RANGE] overview");
    if (what.view == nullptr) continue;
    ++num_views;
    EXPECT_FALSE(what.view->kinds.empty()) << what.syntax.text;
    EXPECT_FALSE(what.shown.name.empty()) << what.syntax.text;
  }
  EXPECT_GE(num_views, 33U);
}

TEST(Grammar, EveryWordHasItsHelp) {
  for (const command& what : host::all_commands())
    for (std::size_t i = 0; i < what.syntax.num_words; ++i) {
      const host::syntax_word& word = what.syntax.words[i];
      if (word.kind == host::syntax_kind::literal) EXPECT_NE(host::help_of_word(word.text), "") << word.text;
    }
}

TEST(Grammar, CommandsBelongToModes) {
  EXPECT_EQ(error_of("shutdown"),
            "'shutdown' is a setting of interfaces. Type 'configure' and then 'interface RANGE' first.");
  EXPECT_EQ(error_of("interface ethernet 1/1"), "'interface' belongs to the configuration. Type 'configure' first.");
  EXPECT_NE(command_of("show transport", host::kInterfaceMode), nullptr);
  std::string error;
  EXPECT_FALSE(parse_command("configure", error, host::kInterfaceMode));
  EXPECT_FALSE(parse_command("no shutdown", error, host::kConfigureMode));
  EXPECT_EQ(error, "'no shutdown' is a setting of interfaces. Type 'interface RANGE' first.");
}

TEST(Grammar, TheRestOfALineIsAText) {
  const auto text_of = [](const std::string& line) {
    std::string error;
    const auto parsed = parse_command(line, error, host::kInterfaceMode);
    return parsed ? parsed->free_text : "error: " + error;
  };
  EXPECT_EQ(text_of("description  to the  lab "), "to the  lab");
  EXPECT_EQ(text_of("desc 'a | b'"), "a | b");
  EXPECT_EQ(text_of("switchport name what? why"), "what? why");
  EXPECT_TRUE(suggest("description what", host::kInterfaceMode).is_in_text);
  EXPECT_FALSE(suggest("description ", host::kInterfaceMode).is_in_text);
  EXPECT_TRUE(std::holds_alternative<suggestions>(host::meaning_of(" description ? ", host::kInterfaceMode)));
  EXPECT_TRUE(std::holds_alternative<host::command_line>(host::meaning_of("description why?", host::kInterfaceMode)));
}

TEST(Grammar, NoIsTheFormThatTakesBack) {
  std::string error;
  EXPECT_TRUE(parse_command("no shutdown", error, host::kInterfaceMode)->is_no);
  EXPECT_FALSE(parse_command("shutdown", error, host::kInterfaceMode)->is_no);
}

TEST(Grammar, AFileIsAnyWordThatIsNothingElse) {
  std::string error;
  EXPECT_EQ(parse_command("copy running-config /tmp/a.cfg", error)->file, "/tmp/a.cfg");
  EXPECT_EQ(parse_command("copy running-config start", error)->file, "");
}

TEST(Grammar, ArgumentsAreHandedOnByTheirKind) {
  std::string error;
  EXPECT_EQ(parse_command("find Up", error)->search_word, "Up");
  const auto vlans = parse_command("switchport trunk allowed vlan add 1-10,20", error, host::kInterfaceMode);
  ASSERT_TRUE(vlans) << error;
  ASSERT_EQ(vlans->vlans.size(), 2U);
  EXPECT_EQ(vlans->vlans[0].last, 10U);
  EXPECT_EQ(vlans->vlans[1].first, 20U);
  EXPECT_TRUE(parse_command("switchport trunk allowed vlan none", error, host::kInterfaceMode)->vlans.empty());
}

TEST(Grammar, AMacAddressHasManySpellings) {
  const std::array<uint8, 6> mac = {0x02, 0, 0x5e, 0, 0x0a, 0xb9};
  for (const char* const written : {"0200.5e00.0ab9", "02:00:5E:00:0A:B9", "2-0-5e-0-a-b9", "02005e000ab9"}) {
    std::string error;
    const auto parsed = parse_command(std::string("show mac address-table address ") + written, error);
    ASSERT_TRUE(parsed) << error;
    EXPECT_EQ(parsed->mac, mac) << written;
  }
}

TEST(Grammar, AWrongMacAddressIsReportedWithItsColumn) {
  EXPECT_EQ(error_of("show mac address-table address 0200.5g00.0ab9"),
            "column 38: expected a hexadecimal digit. A MAC address looks like '0200.0000.0009' or "
            "'02:00:00:00:00:09'.");
  EXPECT_EQ(error_of("show mac address-table address 02:00"),
            "column 37: the address ends too soon. A MAC address looks like '0200.0000.0009' or "
            "'02:00:00:00:00:09'.");
}

TEST(Grammar, EventsTakeARangeAndANumber) {
  std::string error;
  const auto parsed = parse_command("watch events interface ethernet 1/1-4 count 3", error);
  ASSERT_TRUE(parsed) << error;
  EXPECT_EQ(parsed->number, 3U);
  EXPECT_EQ(parsed->written_range, "ethernet 1/1-4");
  EXPECT_FALSE(parse_command("watch events", error)->number);
  EXPECT_EQ(error_of("watch events count 0"), "expected a number from 1 to 1000000 for EVENTS, not '0'.");
}

TEST(Grammar, EverySuggestionHasAHelpText) {
  for (const char* const line : {"", "show ", "show interface ", "show interface status ", "show interface | "}) {
    for (const auto& choice : suggest(line).words) EXPECT_FALSE(choice.help.empty()) << line << choice.word;
  }
}

TEST(Grammar, RangeIsHandedOnWithItsSpans) {
  std::string error;
  const auto parsed = parse_command("sh int e 1/1-4 , 1/7,port-channel 3", error);

  ASSERT_TRUE(parsed) << error;
  EXPECT_EQ(parsed->text, "show interface e 1/1-4 , 1/7,port-channel 3");
  ASSERT_EQ(parsed->range.items.size(), 3U);
  EXPECT_EQ(std::get<host::interface_span>(parsed->range.items[0]).high.port, 4U);
  EXPECT_EQ(std::get<host::interface_span>(parsed->range.items[1]).low.port, 7U);
  EXPECT_EQ(std::get<host::interface_span>(parsed->range.items[2]).word->word, "port-channel");
}

TEST(Grammar, WordsFollowEveryFormOfARange) {
  const command* const brief = command_of("show interface brief");
  for (const char* const range : {"all", "al", "all except ethernet 1/1-4", "ethernet1/1-ethernet1/4", "e1/1-4,6",
                                  "\"e*1/[1-3]\"", "'ethernet  1/*', po1", "e1/1 exc 'Eth*', mgmt0", "in-band"})
    EXPECT_EQ(command_of(std::string("show interface ") + range + " brief"), brief) << range;
  std::string error;
  EXPECT_EQ(parse_command("show  interface 'a  b',mgmt0 brief", error)->text, "show interface 'a  b',mgmt0 brief");
  EXPECT_EQ(parse_command("show interface all  except  e1/1 brief", error)->text,
            "show interface all except e1/1 brief");
}

TEST(Grammar, EveryBadItemOfARangeIsNamedWithItsColumn) {
  EXPECT_EQ(error_of("show interface ethernet 1/300, foo 2, 1/4-1 brief"),
            "column 25: not a number of ethernet '1/300'; column 32: unknown interface 'foo'. A range looks like "
            "'ethernet 1/1-4, 1/7'.");
  EXPECT_EQ(error_of("  show int e1/4-1,e1/300 | json"),
            "column 13: reversed range '1/4-1'; column 20: not a number of ethernet '1/300'. A range looks like "
            "'ethernet 1/1-4, 1/7'.");
  EXPECT_EQ(error_of("show interface \"e* brief"),
            "column 16: unclosed quote '\"e* brief'. A range looks like 'ethernet 1/1-4, 1/7'.");
  EXPECT_EQ(error_of("show interface ethernet brief"),
            "column 25: no number for ethernet 'brief'. A range looks like 'ethernet 1/1-4, 1/7'.");
}

TEST(Grammar, RangeThatIsNotCompleteLacksANumber) {
  for (const char* const line : {"show interface all except", "show interface ethernet", "show interface e1/1 -"})
    EXPECT_EQ(error_of(line),
              "a number is missing after '" + std::string(line) + "'. Type '" + line + " ?' for the list.");
}

TEST(Grammar, EveryInterfaceWordStartsARange) {
  for (const host::interface_word& word : host::kInterfaceWords) {
    if (host::names_one_interface(word)) {
      EXPECT_NE(command_of("show interface " + std::string(word.word)), nullptr);
      continue;
    }
    const char* const number = word.form == host::number_form::slot_port ? "1/1" : "1";
    EXPECT_NE(command_of("show interface " + std::string(word.word) + " " + number), nullptr);
    EXPECT_NE(command_of("show interface " + std::string(word.word) + number), nullptr);
  }
}

TEST(Grammar, MistakesAreNamedWithTheNextStep) {
  EXPECT_EQ(error_of("shwo"), "unknown word 'shwo': did you mean 'show'? Type '?' for the list.");
  EXPECT_EQ(error_of("show | json"), "incomplete command 'show'. Type 'show ?' for the list.");
  EXPECT_EQ(error_of("| json"), "no command before '|'. Type '?' for the list.");
  EXPECT_EQ(
      error_of("show interface ethernet 1/1,"),
      "a number is missing after 'show interface ethernet 1/1,'. Type 'show interface ethernet 1/1, ?' for the list.");
  EXPECT_EQ(error_of("show transport |"),
            "nothing after '|': expected one of begin, columns, count, exclude, include, json, no-more, rows, save, "
            "section, sort.");
  EXPECT_EQ(error_of("show interface ethernet 1/1 1/2"),
            "unknown word '1/2'. Type 'show interface ethernet 1/1 ?' for the list.");
  EXPECT_EQ(error_of("show interface ethernet 1/1 brief 1/2"),
            "unexpected '1/2' after 'show interface ethernet 1/1 brief'.");
}

TEST(Grammar, WordsBehindARangeMakeAnotherCommand) {
  const command* const all = command_of("show interface brief");

  EXPECT_EQ(all->view->id, 5U);
  EXPECT_EQ(command_of("sh int e1/1-4,1/7 b"), all);
  EXPECT_EQ(command_of("show interface ethernet 1/1 - 4 , 1/7 brief"), all);
  EXPECT_NE(command_of("show interface ethernet 1/1-4"), all);
}

TEST(Grammar, NumberArgumentIsReadWithinItsBounds) {
  std::string error;
  const auto parsed = parse_command("show interface status module 64", error);

  ASSERT_TRUE(parsed) << error;
  EXPECT_EQ(parsed->number, 64U);
  EXPECT_EQ(parsed->text, "show interface status module 64");
  EXPECT_EQ(parse_command("show interface status", error)->number, std::nullopt);
  for (const char* const word : {"-1", "2x", "two"})
    EXPECT_EQ(error_of(std::string("show interface status module ") + word),
              "expected a number from 1 to 64 for MODULE, not '" + std::string(word) + "'.");
  for (const char* const word : {"0", "4294967297", "2x", "two"})
    EXPECT_EQ(error_of(std::string("clock advance ") + word),
              "expected a number from 1 to 4000000000 for SECONDS, not '" + std::string(word) + "'.");
  EXPECT_EQ(error_of("show interface status module"),
            "incomplete command 'show interface status module'. Type 'show interface status module ?' for the list.");
}

TEST(Grammar, ModuleThatNoSwitchHasIsANumberAllTheSame) {
  for (const char* const word : {"0", "65", "4294967297", "99999999999999999999"}) {
    std::string error;
    const auto parsed = parse_command(std::string("show module ") + word + " resources", error);
    ASSERT_TRUE(parsed) << error;
    EXPECT_EQ(parsed->module, word);
    EXPECT_TRUE(parsed->number < 1 || parsed->number > 64) << word;
  }
}

TEST(Grammar, LineAsksForADocumentAlsoWithMistakes) {
  for (const char* const line : {"show | json", "show nothing | j", "show | count | json", "show | json | jsn",
                                 "show \"x | json", "configure ' | json ", "show 'a | b' | json"})
    EXPECT_TRUE(host::asks_for_document(line)) << line;
  for (const char* const line : {"show", "show json", "show | include json", "description 'a | json'",
                                 "description \"a | json b\"", "show \"x | json it", "show \"x |"})
    EXPECT_FALSE(host::asks_for_document(line)) << line;
}

TEST(Watch, EveryShowCommandIsReadBehindIt) {
  std::size_t watched = 0;
  for (const command& what : host::all_commands()) {
    const std::string line = line_of(what, true);
    if (!line.starts_with("show ")) continue;
    ++watched;
    for (const host::shell_mode mode : {host::kExecMode, host::kConfigureMode, host::kInterfaceMode}) {
      std::string error;
      const auto parsed = parse_command("watch 86400 " + line, error, mode);
      ASSERT_TRUE(parsed) << line << error;
      EXPECT_EQ(parsed->what, &what) << line;
      EXPECT_EQ(parsed->every, 86400U) << line;
      EXPECT_TRUE(parsed->text.starts_with("show ")) << parsed->text;
    }
  }
  EXPECT_GT(watched, 30U);
}

TEST(Watch, ItsNumberIsNotTheNumberOfTheCommand) {
  std::string error;
  const auto parsed = parse_command("wa 5 sh int e1/1-2 status mod 3 | inc up", error);

  ASSERT_TRUE(parsed) << error;
  EXPECT_EQ(parsed->every, 5U);
  EXPECT_EQ(parsed->number, 3U);
  EXPECT_EQ(parsed->text, "show interface e1/1-2 status module 3");
  EXPECT_EQ(parsed->range.items.size(), 1U);
  EXPECT_EQ(parsed->pipes.size(), 1U);
  EXPECT_EQ(parse_command("watch 5 show interface status", error)->number, std::nullopt);
  EXPECT_EQ(parse_command("show interface status", error)->every, std::nullopt);
}

TEST(Watch, MistakesAreNamedWithTheNextStep) {
  for (const char* const word : {"0", "86401", "-1", "2s", "two", "show"})
    EXPECT_EQ(error_of(std::string("watch ") + word + " show transport"),
              "expected a number from 1 to 86400 for INTERVAL, not '" + std::string(word) + "'.");
  EXPECT_EQ(error_of("watch"), "incomplete command 'watch'. Type 'watch ?' for the list.");
  EXPECT_EQ(error_of("watch 2"), "incomplete command 'watch 2'. Type 'watch 2 ?' for the list.");
  EXPECT_EQ(error_of("watch 2 show"), "incomplete command 'watch 2 show'. Type 'watch 2 show ?' for the list.");
  for (const char* const word : {"clear", "configure", "watch", "exit"})
    EXPECT_EQ(
        error_of(std::string("watch 2 ") + word),
        "'" + std::string(word) + "' cannot be watched: only show commands can. Type 'watch 2 show ?' for the list.");
  EXPECT_EQ(error_of("watch 2 shwo"), "unknown word 'shwo': did you mean 'show'? Type 'watch 2 ?' for the list.");
  EXPECT_EQ(error_of("watch 2 show clear"), "unknown word 'clear'. Type 'watch 2 show ?' for the list.");
}

TEST(Watch, HelpAndCompletionAreThoseOfTheCommandBehindIt) {
  EXPECT_EQ(host::help_text(suggest("watch ")),
            "  events        Changes as they come\n"
            "  INTERVAL      Seconds from one reading to the next, 1 to 86400\n");
  EXPECT_EQ(host::help_text(suggest("watch 2 ")), "  show          Show information\n");
  EXPECT_EQ(host::complete(suggest("wat")).addition, "ch ");
  EXPECT_EQ(host::complete(suggest("watch 2 sh")).addition, "ow ");
  for (const char* const line : {"show ", "show interface ", "show interface ethernet 1/1 counters "})
    EXPECT_EQ(host::help_text(suggest(std::string("watch 2 ") + line)), host::help_text(suggest(line))) << line;
  EXPECT_TRUE(suggest("watch 2 show interface | include up").is_in_text);
  EXPECT_FALSE(suggest("watch 2 show interface ").is_in_text);
}

TEST(Do, CommandsOfTheExecModeAreReadBehindIt) {
  for (const host::shell_mode mode : {host::kConfigureMode, host::kInterfaceMode}) {
    for (const char* const line : {"show interface e1/1 brief", "clear counters", "clock advance 7", "undo", "help"}) {
      std::string error;
      const auto parsed = parse_command(std::string("do ") + line, error, mode);
      ASSERT_TRUE(parsed) << line << error;
      EXPECT_EQ(parsed->what, command_of(line)) << line;
      EXPECT_EQ(parsed->text, line);
      EXPECT_EQ(parsed->every, std::nullopt);
    }
    std::string error;
    const auto watched = parse_command("do watch 5 show interface", error, mode);
    ASSERT_TRUE(watched) << error;
    EXPECT_EQ(watched->every, 5U);
    EXPECT_EQ(watched->text, "show interface");
  }
}

TEST(Do, NoCommandThatChangesTheModeIsReadBehindIt) {
  std::string error;
  for (const char* const word : {"configure", "exit", "quit", "end", "shutdown", "do"}) {
    EXPECT_FALSE(parse_command(std::string("do ") + word, error, host::kInterfaceMode)) << word;
    EXPECT_TRUE(error.starts_with("unknown word '" + std::string(word) + "'")) << error;
    EXPECT_TRUE(error.ends_with(" Type 'do ?' for the list.")) << error;
  }
  EXPECT_FALSE(parse_command("watch 5 do show transport", error, host::kConfigureMode));
  EXPECT_EQ(error, "'do' cannot be watched: only show commands can. Type 'watch 5 show ?' for the list.");
  EXPECT_EQ(error_of("do show transport"), "'do' belongs to the configuration. Type 'configure' first.");
}

TEST(Do, HelpAndCompletionAreThoseOfTheCommandBehindIt) {
  const auto mode = host::kInterfaceMode;
  EXPECT_EQ(host::complete(suggest("do sh", mode)).addition, "ow ");
  EXPECT_TRUE(suggests("do ", "watch", mode));
  EXPECT_FALSE(suggests("do ", "configure", mode));
  for (const char* const line : {"show ", "show interface ethernet 1/1 counters ", "clear counters "})
    EXPECT_EQ(host::help_text(suggest(std::string("do ") + line, mode)), host::help_text(suggest(line))) << line;
  EXPECT_TRUE(suggest("do show interface | include up", mode).is_in_text);
}

TEST(Comments, AreLinesWithoutACommand) {
  for (const char* const line : {"# show", "!", " ! what?"}) {
    std::string error;
    const auto parsed = parse_command(line, error);
    ASSERT_TRUE(parsed) << line << error;
    EXPECT_EQ(parsed->what, nullptr) << line;
    EXPECT_TRUE(suggest(line).is_in_text) << line;
    EXPECT_EQ(host::complete(suggest(line)).addition + host::complete(suggest(line)).choices, "") << line;
  }
  EXPECT_FALSE(suggest("").is_in_text);
}

TEST(Suggestions, NumberArgumentIsNamedWithItsBoundsAndKeptWhileItIsTyped) {
  for (const char* const line : {"show interface status module ", "show interface status module 6"}) {
    const auto found = suggest(line);
    ASSERT_EQ(found.hints.size(), 1U) << line;
    EXPECT_EQ(found.hints[0].word, "MODULE");
    EXPECT_EQ(found.hints[0].help, "Number of a module, 1 to 64");
    EXPECT_EQ(found.error, "");
  }
  EXPECT_NE(suggest("show interface status module two").error, "");
}

TEST(Grammar, EmptyLineIsNoCommandAndNoError) {
  std::string error;
  const auto parsed = parse_command("  \t", error);

  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->what, nullptr);
  EXPECT_EQ(error, "");
}

TEST(Grammar, PipesKeepTheirOrderAndTheirExpressions) {
  std::string error;
  const auto parsed = parse_command("show transport | inc a b|exc 'x|y' | count", error);

  ASSERT_TRUE(parsed) << error;
  ASSERT_EQ(parsed->pipes.size(), 3U);
  EXPECT_EQ(parsed->pipes[0].argument, "a b");
  EXPECT_EQ(parsed->pipes[1].argument, "x|y");
  EXPECT_EQ(parsed->pipes[2].kind, host::pipe_kind::count);
}

TEST(Suggestions, NumberBelongsToTheLastInterfaceWord) {
  const auto numbers_of = [](const char* line) {
    const auto* const word = suggest(line).numbers_of;
    return word == nullptr ? std::string() : std::string(word->word);
  };
  EXPECT_EQ(numbers_of("show interface ethernet "), "ethernet");
  EXPECT_EQ(numbers_of("show interface eth 1/"), "ethernet");
  EXPECT_EQ(numbers_of("show interface ethernet1/"), "ethernet");
  EXPECT_EQ(numbers_of("show interface ethernet 1/1, 1/"), "ethernet");
  EXPECT_EQ(numbers_of("show interface ethernet 1/1, port 1"), "port-channel");
  EXPECT_EQ(numbers_of("show interface "), "");
  EXPECT_EQ(suggest("show interface ethernet 1/1,2/").begun, "2/");
}

TEST(Suggestions, ExceptFollowsARange) {
  EXPECT_TRUE(suggests("show interface all ", "except"));
  EXPECT_TRUE(suggests("show interface e1/1 ex", "except"));
  EXPECT_TRUE(suggests("show interface e1/1 exce", "except"));
  EXPECT_EQ(host::complete(suggest("show interface all except")).addition, " ");
  EXPECT_TRUE(suggests("show interface all except ", "ethernet"));
  EXPECT_FALSE(suggests("show interface all except e1/1 ", "except"));
  EXPECT_FALSE(suggests("show interface ", "except"));
  EXPECT_FALSE(suggests("show interface e1/1 brief ", "except"));
}

TEST(Suggestions, LastNumberOfASpanFollowsTheFirst) {
  const auto after = [](const char* line) {
    const auto found = suggest(line);
    if (found.numbers_of == nullptr || !found.after) return std::string("nothing");
    return host::interface_text(*found.numbers_of, *found.after) + (found.needs_whole_number ? " whole" : "");
  };
  EXPECT_EQ(after("show interface e1/3-"), "ethernet 1/3");
  EXPECT_EQ(after("show interface e 1/3 - 1"), "ethernet 1/3");
  EXPECT_EQ(after("show interface e1/1,mgmt 0-"), "mgmt 0");
  EXPECT_EQ(after("show interface e1/3-eth"), "nothing");
  EXPECT_EQ(after("show interface e1/3-ethernet "), "ethernet 1/3 whole");
  EXPECT_EQ(after("show interface e1/3"), "nothing");
  EXPECT_TRUE(suggests("show interface e1/3-e", "ethernet"));
}

TEST(Expressions, QuestionMarkBelongsToAPattern) {
  EXPECT_TRUE(suggest("show interface \"e").is_in_text);
  EXPECT_TRUE(suggest("show interface e1/1, 'e 1/").is_in_text);
  EXPECT_FALSE(suggest("show interface \"e*\" ").is_in_text);
}

TEST(Suggestions, EndOfACommandIsHinted) {
  const auto hints = suggest("show transport ").hints;
  EXPECT_TRUE(std::any_of(hints.begin(), hints.end(), [](const auto& hint) { return hint.word == "<Enter>"; }));
  EXPECT_TRUE(suggest("show ").hints.empty());
}

TEST(Suggestions, PipesAreOfferedWithTheirArguments) {
  EXPECT_TRUE(suggests("show transport | s", "save"));
  EXPECT_TRUE(suggests("show transport | s", "section"));
  EXPECT_EQ(host::help_text(suggest("show transport | save ")), "  FILE          Name of a file\n");
  EXPECT_EQ(host::help_text(suggest("show transport | save a ")), "  <Enter>       Run the command\n");
  EXPECT_FALSE(suggest("show transport | save a").is_in_text);
  EXPECT_TRUE(suggest("show transport | section a").is_in_text);
}

TEST(Expressions, QuestionMarksBelongToThem) {
  EXPECT_FALSE(suggest("show interface ").is_in_text);
  EXPECT_FALSE(suggest("show interface | inc").is_in_text);
  EXPECT_TRUE(suggest("show interface | inc ").is_in_text);
  EXPECT_TRUE(suggest("show interface | include ab").is_in_text);
  EXPECT_FALSE(suggest("show interface | count ").is_in_text);
}

}  // namespace
// ---- Names of devices

const host::interface_names kDevices([] {
  return std::vector<host::interface_names::named_interface>{{"b", host::ethernet_index(IF_TYPE_ETHERNET, 0, 0)},
                                                             {"brief", host::ethernet_index(IF_TYPE_ETHERNET, 0, 1)},
                                                             {"veth12", host::ethernet_index(IF_TYPE_ETHERNET, 0, 2)},
                                                             {"veth13", host::ethernet_index(IF_TYPE_ETHERNET, 0, 3)}};
});

std::string read_with_devices(const std::string& line) {
  std::string error;
  const auto parsed = parse_command(line, error, host::kExecMode, kDevices);
  if (!parsed) return error;
  std::string text(parsed->what->syntax.text);
  for (const host::range_item& it : parsed->range.items) {
    const auto& span = std::get<host::interface_span>(it);
    text += ": " + interface_text(*span.word, span.low);
  }
  return text;
}

std::vector<std::string> typed_with_devices(const std::string& line) {
  std::vector<std::string> words;
  for (const auto& choice : suggest(line, host::kExecMode, kDevices).words) words.push_back(choice.word);
  return words;
}

TEST(DeviceNames, AreRangesAndComeBeforeAbbreviations) {
  EXPECT_EQ(read_with_devices("show interface veth12 status"), "show interface [RANGE] status: ethernet 1/3");
  EXPECT_EQ(read_with_devices("show interface b"), "show interface [RANGE]: ethernet 1/1");
  EXPECT_EQ(read_with_devices("show interface br"), "show interface [RANGE] brief");
}

TEST(DeviceNames, AWordOfACommandInFullComesBeforeAName) {
  EXPECT_EQ(read_with_devices("show interface brief"), "show interface [RANGE] brief");
  std::string error;
  const auto parsed = parse_command("show interface 'brief' status", error, host::kExecMode, kDevices);
  ASSERT_TRUE(parsed) << error;
  EXPECT_TRUE(matches(parsed->range, host::ethernet_index(IF_TYPE_ETHERNET, 0, 1)));
}

TEST(DeviceNames, AreCompleted) {
  EXPECT_THAT(typed_with_devices("show interface veth1"), testing::ElementsAre("veth12", "veth13"));
  EXPECT_THAT(typed_with_devices("show interface veth12,veth1"), testing::ElementsAre("veth12", "veth13"));
  EXPECT_THAT(typed_with_devices("show interface v"), testing::ElementsAre("veth12", "veth13", "vethernet"));
  EXPECT_EQ(suggest("show interface veth12,veth1", host::kExecMode, kDevices).begun, "veth1");
}

TEST(DeviceNames, AreNamedOnceByHelp) {
  const auto hints = suggest("show interface ", host::kExecMode, kDevices).hints;
  const auto is_of_devices = [](const host::suggestion& it) { return it.word == "DEVICE"; };
  ASSERT_EQ(std::count_if(hints.begin(), hints.end(), is_of_devices), 1);
  EXPECT_EQ(std::find_if(hints.begin(), hints.end(), is_of_devices)->help, "Network device: b, brief, veth12, veth13");
}

TEST(DeviceNames, ThatCannotBeShownAreNotCompleted) {
  const host::interface_names names([] {
    return std::vector<host::interface_names::named_interface>{
        {"lab\x1b]0;x\x07", host::ethernet_index(IF_TYPE_ETHERNET, 0, 0)},
        {"lab\xff", host::ethernet_index(IF_TYPE_ETHERNET, 0, 1)}};
  });
  EXPECT_EQ(host::complete(suggest("show interface la", host::kExecMode, names)).addition, "");
  EXPECT_EQ(host::complete(suggest("show interface la", host::kExecMode, names)).choices, "");
}

TEST(Help, ShowsControlBytesOfTheLineVisibly) {
  for (const std::string& text :
       {host::help_text(suggest("abc\x1b]0;x\x07 ")), host::complete(suggest("abc\x1b]0;x\x07 ")).choices}) {
    EXPECT_EQ(text.find_first_of("\x1b\x07"), std::string::npos);
    EXPECT_NE(text.find("abc\\x1b]0;x\\x07"), std::string::npos) << text;
  }
}

}  // namespace session
