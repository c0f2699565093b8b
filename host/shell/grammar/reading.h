// How far a line has been read in the table of commands.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/grammar/command_line.h"
#include "switch/interface_name.h"

namespace host {

// How a partly typed interface range ends.
enum class range_end : uint8 { none, word, number, comma, dash };

struct position {
  const command* what;
  std::size_t next = 0;  // word of the syntax that comes next
  range_end range = range_end::none;
  std::optional<uint32> number = {};  // that the line has named
};

bool may_leave_range(range_end end);

// The words of the syntax that may come next, up to the first one that is required.
template <typename Visit>
void for_each_next_word(const position& at, Visit visit) {
  if (!may_leave_range(at.range)) return;
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
  std::vector<vlan_span> vlans = {};  // that the word is
};

// Every way in which a word can be read at these positions.
std::vector<step> readings(const std::vector<position>& positions, std::string_view word);

// Only the readings of a word that is written in full, when there are any.
void prefer_exact(std::vector<step>& steps, std::string_view word);

std::vector<std::string_view> names_of(const std::vector<step>& steps);

// The interface words that the letters at the start of `text` name or abbreviate.
std::vector<const interface_word*> interface_words(std::string_view text);

// The number that may come next, if any.
const number_argument* expected_number(const std::vector<position>& positions);

// True when the rest of the line is a text.
bool takes_text(const std::vector<position>& positions);

struct reading_state {
  explicit reading_state(shell_mode typed_in) : mode(typed_in), positions(all_positions(typed_in)) {}

  shell_mode mode;
  std::vector<position> positions;
  std::vector<std::string_view> path;  // words in full
  command_line line;                   // the values of its arguments
  std::size_t words_in_front = 0;      // of the command behind "do" or "watch INTERVAL"
  std::string error;
};

// Reads a word; returns false and says why when it fits nowhere or in too many ways.
bool read_word(reading_state& state, std::string_view word);

}  // namespace host
