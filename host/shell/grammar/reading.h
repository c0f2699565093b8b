// How far a line has been read in the table of commands.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shell/grammar/command_line.h"
#include "shell/grammar/cut_line.h"
#include "switch/interface_range.h"

namespace host {

struct position {
  const command* what;
  std::size_t next = 0;               // word of the syntax that comes next
  std::optional<uint32> number = {};  // that the line has named
};

// The words of the syntax that may come next, up to the first one that is required.
template <typename Visit>
void for_each_next_word(const position& at, Visit visit) {
  for (std::size_t i = at.next; i < at.what->syntax.num_words; ++i) {
    const syntax_word& word = at.what->syntax.words[i];
    visit(word, i);
    if (!word.is_optional) return;
  }
}

// Whether the line may end there.
bool is_complete(const position& at);

std::vector<position> all_positions(uint8 modes);

// The number that a word of a syntax stands for.
const number_argument& number_argument_of(const syntax_word& word);

// One word further.
struct step {
  std::string_view name;  // the word in full
  position to;
  bool begins_range = false;          // of interfaces, which may have more words
  std::vector<vlan_span> vlans = {};  // that the word is
  bool is_name = false;               // of an interface, beside its word and number
};

// Every way in which a word can be read at these positions.
std::vector<step> readings(const std::vector<position>& positions, std::string_view word, const interface_names& names);

// Only the readings of a word that is written in full, when there are any: a word of the syntax before the name of an
// interface.
void prefer_exact(std::vector<step>& steps, std::string_view word);

std::vector<std::string_view> names_of(const std::vector<step>& steps);

// The number that may come next, if any.
const number_argument* expected_number(const std::vector<position>& positions);

// True when the rest of the line is a text.
bool takes_text(const std::vector<position>& positions);

struct reading_state {
  // The command of a line, which it reads; that and the names must outlive this.
  reading_state(const line_part& command, shell_mode typed_in, const interface_names& known, bool is_typed = false)
      : text(command.text),
        left(command.words),
        names(known),
        mode(typed_in),
        is_being_typed(is_typed),
        positions(all_positions(typed_in)) {}

  std::string_view text;
  std::span<const word_token> left;  // to be read
  const interface_names& names;
  shell_mode mode;
  bool is_being_typed;  // what is not complete at the end of the line is no error
  std::vector<position> positions;
  std::vector<std::string_view> path;  // words in full
  command_line line;                   // the values of its arguments
  std::size_t words_in_front = 0;      // of the command behind "do" or "watch INTERVAL"
  std::size_t range_start = 0;         // of the last range, in the line
  std::optional<range_ending> ending;  // of a range with which the line ends
  bool takes_except = false;           // a range was read last, which has no exceptions
  std::string error;
};

// Reads the next word, or all words of the range that begins with it. False, with the reason in `error`, when it fits
// nowhere or in too many ways, or the range is wrong.
bool read_next(reading_state& state);

}  // namespace host
