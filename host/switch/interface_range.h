// Ranges of interfaces as people write them: on the command line and in switch files.
//
//   range   := list [ "except" list ]
//   list    := item { "," item }
//   item    := "all" | name | pattern | [ word ] number [ "-" [ word ] number ]
//   number  := slot/port[.sub] | unit/slot/port | number[.sub]
//   name    := a name of interface_names, exactly as it is written there
//   pattern := a text in quotes, in which * ? and [...] stand for characters of a name
//
// A number without a word belongs to the word before, and may be the last part alone: "1/1-4,6". "bay" and "ext" name
// Fibre-Channel ports by a number alone. Words may be abbreviated ("e" is ethernet) and written in any case; blanks may
// be between all parts. The number after "-" is the last part alone ("1/1-4", "1/9.10-20") or a whole number
// ("1/1-1/4"), which may be of another slot when no sub-interface is named.
//
// A name comes before everything else that its characters could be in a range; in quotes it is a pattern, for names
// with blanks and commas, or such as words of commands. Files name their interfaces by words and numbers alone.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "switch/interface_name.h"
#include "switch/interface_names.h"

namespace host {

// Its word, and that before the exceptions.
inline constexpr std::string_view kEveryInterface = "all";
inline constexpr std::string_view kExcept = "except";

struct any_interface {};

// Matches the name as it is written ("ethernet 1/1") and as it is displayed ("Ethernet1/1"), in any case, and other
// names of interfaces.
struct name_pattern {
  std::string text;
  std::vector<if_index_t> named = {};  // the interfaces whose other names match, sorted
};

using range_item = std::variant<interface_span, name_pattern, any_interface>;

struct interface_range {
  std::vector<range_item> items;
  std::vector<range_item> exceptions;

  bool empty() const { return items.empty(); }
};

bool matches(const range_item& item, if_index_t if_index);
bool matches(const interface_range& range, if_index_t if_index);

struct range_error {
  range_fault fault;
  std::size_t position;  // of the offending text, from 0
  std::size_t length;
  std::string reason;   // names the text
  std::string message;  // one line, names the text and its position
};

// What may be typed at the end of a text that ends within a range or with it.
struct range_ending {
  std::size_t begun = 0;                     // where that begins which may still be completed
  std::size_t item = 0;                      // where its item begins, which may become a name
  bool is_complete = false;                  // the range may end here
  bool begins_item = false;                  // a word of interfaces, "all" or a pattern may be typed
  bool takes_dash = false;                   // "-" and another number may follow
  bool takes_except = false;                 // "except" may follow
  bool is_in_quotes = false;                 // of a pattern
  const interface_word* word = nullptr;      // may be typed again, for the last number of a span
  const interface_word* number = nullptr;    // whose number may be typed
  std::optional<interface_number> low = {};  // the number is the last of a span that begins with this
  bool is_whole = false;                     // the number needs all of its parts
};

struct range_reading {
  interface_range range;
  std::vector<range_error> errors;
  std::size_t end = 0;  // of the range in the text: what follows it are other words
  range_ending ending;  // of a text that ends with the range
};

// Reads the range with which a text begins. Every bad item is an error; the others are in the range.
range_reading read_range(std::string_view text, const interface_names& names = interface_names());

// What is in front of the next blank or comma.
std::string_view first_item_word(std::string_view text);

// Reads a text that is a range. Returns its first error.
std::optional<range_error> parse_interface_range(std::string_view text, interface_range& range);

// The same of a text of a file. After an error `spans` holds those that could be read.
std::optional<range_error> parse_interface_range(std::string_view text, std::vector<interface_span>& spans);

}  // namespace host
