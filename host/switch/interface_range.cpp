#include "switch/interface_range.h"

#include <fmt/format.h>
#include <fnmatch.h>

#include <algorithm>
#include <array>

#include "base/digits.h"
#include "base/text.h"
#include "platform/if_index.h"

namespace host {
namespace {

constexpr uint32 kFirstUnit = 100;

constexpr bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool is_word_char(char c) { return is_letter(c) || c == '-'; }
constexpr bool is_number_char(char c) { return is_digit(c) || c == '/' || c == '.'; }
constexpr bool is_blank(char c) { return kBlanks.find(c) != std::string_view::npos; }
constexpr bool is_quote(char c) { return c == '"' || c == '\''; }

// A number as it stands: its parts between slashes, and the one after the dot.
struct written_number {
  std::array<uint32, 3> parts{};
  std::size_t num_parts = 0;
  std::optional<uint32> sub_interface;
};

std::optional<uint32> to_number(std::string_view digits) {
  uint32 value = 0;
  return read_number(digits, value) ? std::optional(value) : std::nullopt;
}

std::optional<written_number> split_number(std::string_view token) {
  written_number written;
  if (const std::size_t dot = token.find('.'); dot != std::string_view::npos) {
    written.sub_interface = to_number(token.substr(dot + 1));
    if (!written.sub_interface) return std::nullopt;
    token = token.substr(0, dot);
  }
  while (written.num_parts < written.parts.size()) {
    const std::size_t slash = token.find('/');
    const std::optional<uint32> part = to_number(token.substr(0, slash));
    if (!part) return std::nullopt;
    written.parts[written.num_parts++] = *part;
    if (slash == std::string_view::npos) return written;
    token = token.substr(slash + 1);
  }
  return std::nullopt;
}

constexpr bool within(uint32 value, uint32 low, uint32 high) { return value >= low && value <= high; }

bool is_slot_port(const interface_number& number) {
  return within(number.slot, 1, kMaxSlot + 1) && within(number.port, 1, kMaxPort + 1);
}

bool is_satellite_port(const interface_number& number) {
  return within(number.unit, kFirstUnit, kMaxUnit) && within(number.slot, 1, kMaxUnitSlot + 1) &&
         within(number.port, 1, kMaxUnitPort + 1) && number.sub_interface == 0;
}

// Whether a number can name an interface of this word.
bool fits(const interface_word& word, const interface_number& number) {
  if (number.sub_interface != 0 && !word.has_sub_interfaces) return false;
  if (number.unit != 0) return word.kinds.back() == IF_TYPE_SATELLITE && is_satellite_port(number);
  if (word.kinds.front() == IF_TYPE_FC && number.slot > kMaxFcSlot + 1) return false;
  if (word.form == number_form::slot_port) return is_slot_port(number);
  return within(number.port, word.lowest, word.highest);
}

std::optional<interface_number> whole_number(const interface_word& word, const written_number& written) {
  interface_number number{.family = word.family};
  if (word.form == number_form::number && written.num_parts == 1) {
    number.port = written.parts[0];
  } else if (word.form == number_form::slot_port && written.num_parts == 2) {
    number.slot = written.parts[0];
    number.port = written.parts[1];
  } else if (word.form == number_form::slot_port && written.num_parts == 3 && written.parts[0] != 0) {
    number = {.unit = written.parts[0], .slot = written.parts[1], .port = written.parts[2]};
  } else {
    return std::nullopt;
  }
  if (written.sub_interface && !within(*written.sub_interface, 1, kMaxSubInterface)) return std::nullopt;
  number.sub_interface = written.sub_interface.value_or(0);
  if (!fits(word, number)) return std::nullopt;
  return number;
}

// The number after a "-" or a ",": the last part of the number before replaced, or a whole number.
std::optional<interface_number> high_number(const interface_word& word, const interface_number& low,
                                            const written_number& written) {
  if (written.num_parts != 1 || written.sub_interface) return whole_number(word, written);
  interface_number high = low;
  uint32& last_part = low.sub_interface != 0 ? high.sub_interface : high.port;
  last_part = written.parts[0];
  const bool is_no_sub_interface = low.sub_interface != 0 && !within(last_part, 1, kMaxSubInterface);
  if (is_no_sub_interface || !fits(word, high)) return std::nullopt;
  return high;
}

// A span over several ports or slots has an order only without sub-interfaces and within one form.
bool has_simple_order(const interface_number& low, const interface_number& high) {
  if (low.sub_interface == 0 && high.sub_interface == 0) return (low.unit == 0) == (high.unit == 0);
  return low.sub_interface != 0 && high.sub_interface != 0 && low.unit == high.unit && low.slot == high.slot &&
         low.port == high.port;
}

// What a text may contain: all of the grammar, or words and numbers.
enum class range_scope : uint8 { all, numbers };

class range_reader {
 public:
  range_reader(std::string_view text, range_scope scope, const interface_names& names)
      : text_(text), scope_(scope), names_(names) {}

  range_reading read() {
    std::vector<range_item>* list = &reading_.range.items;
    while (true) {
      item(*list);
      reading_.end = at_;
      skip_blanks();
      if (is_at_end()) break;
      if (text_[at_] == ',') {
        ++at_;
        continue;
      }
      const bool takes_except = scope_ == range_scope::all && list == &reading_.range.items;
      if (!takes_except || !take_except()) return std::move(reading_);
      list = &reading_.range.exceptions;
    }
    if (at_ > reading_.end && reading_.ending.is_complete) {
      reading_.ending.begun = at_;
      reading_.ending.begins_item = false;
      reading_.ending.number = nullptr;
      reading_.ending.low.reset();
    }
    reading_.ending.takes_except = list == &reading_.range.items;
    reading_.ending.item = item_;
    reading_.end = at_;
    return std::move(reading_);
  }

 private:
  void item(std::vector<range_item>& list) {
    skip_blanks();
    item_ = at_;
    reading_.ending = {.begun = at_, .begins_item = true, .number = word_};
    if (take_name(list)) return;
    if (is_at_end() || text_[at_] == ',') return fault(range_fault::empty, "empty range", {});
    if (scope_ == range_scope::all && is_quote(text_[at_])) return pattern(list);
    if (!is_letter(text_[at_])) return after_word(list);
    const std::size_t start = at_;
    const std::string_view token = take(is_word_char);
    reading_.ending = {.begun = start, .begins_item = true};
    if (scope_ == range_scope::all && starts_with_ignoring_case(kEveryInterface, token)) {
      list.emplace_back(any_interface{});
      reading_.ending.is_complete = true;
      return end_item();
    }
    last_number_.reset();
    if (!take_word(token)) return skip_number();
    after_word(list);
  }

  // Takes a name that an interface has beside its word and number.
  bool take_name(std::vector<range_item>& list) {
    const std::string_view name = first_item_word(text_.substr(at_));
    const std::optional<if_index_t> named = name.empty() ? std::nullopt : names_.find(name);
    if (!named) return false;
    const interface_number number = number_of(*named);
    const interface_word* const word = word_of(decode_index(*named).type, number.family);
    if (word == nullptr) return false;
    at_ += name.size();
    list.emplace_back(interface_span{word, number, number});
    reading_.ending.is_complete = true;
    word_ = nullptr;
    last_number_.reset();
    is_word_bad_ = false;
    return true;
  }

  // The word of the items that follow. False after an error.
  bool take_word(std::string_view token) {
    range_fault reason{};
    word_ = parse_interface_word(token, reason);
    is_word_bad_ = word_ == nullptr;
    if (is_word_bad_) word_error(reason, token);
    return !is_word_bad_;
  }

  void word_error(range_fault reason, std::string_view token) {
    fault(reason, reason == range_fault::unknown_word ? "unknown interface" : "ambiguous interface", token);
  }

  void after_word(std::vector<range_item>& list) {
    if (is_word_bad_) return skip_item();
    if (word_ == nullptr) return fault(range_fault::missing_word, "no kind of interface in front of", rest_token());
    numbers(list, *word_);
  }

  void numbers(std::vector<range_item>& list, const interface_word& word) {
    const std::size_t after_word = at_;
    skip_blanks();
    if (at_ > after_word || (!is_at_end() && is_number_char(text_[at_])))
      reading_.ending = {.begun = at_, .number = &word};
    const std::string_view low_token = take(is_number_char);
    if (low_token.empty() && names_one_interface(word)) {
      at_ = after_word;
      list.emplace_back(interface_span{&word, {}, {}});
      reading_.ending.is_complete = true;
      return end_item();
    }
    if (low_token.empty()) return missing_number(word);
    const std::optional<written_number> written = split_number(low_token);
    const std::optional<interface_number> low = written ? low_number(word, *written) : std::nullopt;
    if (!low) return bad_number(word, low_token);

    interface_span span{&word, *low, *low};
    reading_.ending.is_complete = reading_.ending.takes_dash = true;
    const std::size_t after_number = at_;
    skip_blanks();
    if (is_at_end() || text_[at_] != '-') {
      at_ = after_number;
    } else {
      ++at_;
      if (!high_end(low_token, span)) return;
      reading_.ending.is_complete = true;
    }
    list.emplace_back(span);
    last_number_ = span.high;
    end_item();
  }

  // A whole number, or the last part of one that is in the same slot as the number before, or on the same port.
  std::optional<interface_number> low_number(const interface_word& word, const written_number& written) const {
    const bool is_whole = word.form == number_form::number || !last_number_;
    return is_whole ? whole_number(word, written) : high_number(word, *last_number_, written);
  }

  // Reads what follows "-". False after an error.
  bool high_end(std::string_view low_token, interface_span& span) {
    skip_blanks();
    reading_.ending = {.begun = at_, .word = span.word, .number = span.word, .low = span.low};
    const bool has_word = !is_at_end() && is_letter(text_[at_]);
    if (has_word && !take_same_word(*span.word)) return false;
    if (has_word) {
      reading_.ending.number = nullptr;
      const std::size_t after_word = at_;
      skip_blanks();
      if (at_ > after_word || !is_at_end())
        reading_.ending = {.begun = at_, .number = span.word, .low = span.low, .is_whole = true};
    }
    const std::string_view token = take(is_number_char);
    if (token.empty()) return missing_number(*span.word), false;
    reading_.ending.word = nullptr;
    const std::optional<written_number> written = split_number(token);
    const std::optional<interface_number> high = !written   ? std::nullopt
                                                 : has_word ? whole_number(*span.word, *written)
                                                            : high_number(*span.word, span.low, *written);
    if (!high) return bad_number(*span.word, token), false;
    const std::string_view both(low_token.data(),
                                static_cast<std::size_t>(token.data() + token.size() - low_token.data()));
    if (!has_simple_order(span.low, *high)) {
      fault(range_fault::too_wide, "range over more than the sub-interfaces of one port", both);
      return false;
    }
    if (*high < span.low) return fault(range_fault::reversed, "reversed range", both), false;
    span.high = *high;
    return true;
  }

  // Reads the word before the last number of a span. False after an error.
  bool take_same_word(const interface_word& word) {
    const std::string_view token = take(is_word_char);
    range_fault reason{};
    const interface_word* const again = parse_interface_word(token, reason);
    if (again == &word) return true;
    if (again == nullptr)
      word_error(reason, token);
    else
      fault(range_fault::other_word, fmt::format("range from {} to another kind", word.word), token);
    return false;
  }

  void pattern(std::vector<range_item>& list) {
    const std::size_t start = at_;
    const std::size_t end = text_.find(text_[start], start + 1);
    reading_.ending = {.begun = start, .is_complete = true};
    if (end == std::string_view::npos) {
      reading_.ending = {.begun = text_.size(), .is_in_quotes = true};
      at_ = text_.size();
      return note(range_fault::open_quote, "unclosed quote", text_.substr(start));
    }
    at_ = end + 1;
    if (end == start + 1) return fault(range_fault::empty, "empty pattern", text_.substr(start, 2));
    list.emplace_back(pattern_of(text_.substr(start + 1, end - start - 1)));
    end_item();
  }

  name_pattern pattern_of(std::string_view text) const {
    name_pattern made{std::string(text)};
    for (const auto& [name, if_index] : names_.all())
      if (name == text || fnmatch(made.text.c_str(), name.c_str(), 0) == 0) made.named.push_back(if_index);
    std::sort(made.named.begin(), made.named.end());
    return made;
  }

  // An item ends at a blank or a comma.
  void end_item() {
    if (is_at_end() || is_blank(text_[at_]) || text_[at_] == ',') return;
    fault(range_fault::trailing_text, "unexpected text", rest_token());
  }

  void missing_number(const interface_word& word) {
    fault(range_fault::missing_number, fmt::format("no number for {}", word.word), rest_token());
  }

  void bad_number(const interface_word& word, std::string_view token) {
    fault(range_fault::bad_number, fmt::format("not a number of {}", word.word), token);
  }

  // `token` is a part of the text; an empty one stands for the place that was reached.
  void note(range_fault kind, std::string_view reason, std::string_view token) {
    const std::size_t position = token.empty() ? at_ : static_cast<std::size_t>(token.data() - text_.data());
    range_error error{kind, position, token.size(), std::string(reason), {}};
    if (!token.empty()) error.reason = fmt::format("{} '{}'", reason, token);
    error.message = fmt::format("{} at character {}", error.reason, position + 1);
    reading_.errors.push_back(std::move(error));
  }

  // The same, and skips the rest of the item.
  void fault(range_fault kind, std::string_view reason, std::string_view token) {
    note(kind, reason, token);
    reading_.ending.is_complete = false;
    if (kind != range_fault::empty || !token.empty()) skip_item();
  }

  void skip_item() {
    while (!is_at_end() && !is_blank(text_[at_]) && text_[at_] != ',') ++at_;
  }

  // Skips the number of a word that names no interface.
  void skip_number() {
    const std::size_t after_word = at_;
    skip_blanks();
    if (is_at_end() || !is_number_char(text_[at_])) at_ = after_word;
    skip_item();
  }

  // Takes "except", which may be abbreviated when a blank follows.
  bool take_except() {
    constexpr std::size_t kShortest = 3;
    const std::string_view word = rest_token();
    const bool is_last = at_ + word.size() == text_.size();
    if (word.size() < (is_last ? kExcept.size() : kShortest) || !starts_with_ignoring_case(kExcept, word)) return false;
    at_ += word.size();
    return true;
  }

  bool is_at_end() const { return at_ == text_.size(); }

  void skip_blanks() {
    while (at_ < text_.size() && is_blank(text_[at_])) ++at_;
  }

  std::string_view take(bool (*belongs)(char)) {
    const std::size_t first = at_;
    while (at_ < text_.size() && belongs(text_[at_])) ++at_;
    return text_.substr(first, at_ - first);
  }

  // What is at this place: a comma, or all up to the next comma or blank.
  std::string_view rest_token() const {
    if (!is_at_end() && text_[at_] == ',') return text_.substr(at_, 1);
    return first_item_word(text_.substr(at_));
  }

  std::string_view text_;
  range_scope scope_;
  const interface_names& names_;
  std::size_t at_ = 0;
  std::size_t item_ = 0;                         // where the current item begins
  const interface_word* word_ = nullptr;         // of numbers without a word
  std::optional<interface_number> last_number_;  // of the items since that word
  bool is_word_bad_ = false;                     // the last word names no interface
  range_reading reading_;
};

// The first error of a text that is a range.
std::optional<range_error> first_error(std::string_view text, const range_reading& reading) {
  const std::size_t rest = std::min(text.find_first_not_of(kBlanks, reading.end), text.size());
  if (reading.errors.empty() && rest == text.size()) return std::nullopt;
  if (!reading.errors.empty()) return reading.errors.front();
  const std::string_view token = text.substr(rest, text.find_first_of(kBlanks, rest) - rest);
  const std::string reason = fmt::format("unexpected text '{}'", token);
  return range_error{range_fault::trailing_text, rest, token.size(), reason,
                     fmt::format("{} at character {}", reason, rest + 1)};
}

bool is_match(const name_pattern& pattern, const char* name) {
  return fnmatch(pattern.text.c_str(), name, FNM_CASEFOLD) == 0;
}

bool matches_name(const name_pattern& pattern, if_index_t if_index) {
  if (std::binary_search(pattern.named.begin(), pattern.named.end(), if_index)) return true;
  char displayed[64] = {};
  if (is_match(pattern, sprintf_if_index(displayed, if_index))) return true;
  const interface_number number = number_of(if_index);
  const interface_word* const word = word_of(decode_index(if_index).type, number.family);
  return word != nullptr && is_match(pattern, interface_text(*word, number).c_str());
}

bool matches_any(const std::vector<range_item>& items, if_index_t if_index) {
  return std::any_of(items.begin(), items.end(), [=](const range_item& it) { return matches(it, if_index); });
}

}  // namespace

bool matches(const range_item& item, if_index_t if_index) {
  if (const auto* const pattern = std::get_if<name_pattern>(&item)) return matches_name(*pattern, if_index);
  const auto* const span = std::get_if<interface_span>(&item);
  std::vector<if_index_t> found;
  if (span != nullptr) append_matching(*span, {&if_index, 1}, found);
  return span == nullptr || !found.empty();
}

bool matches(const interface_range& range, if_index_t if_index) {
  return matches_any(range.items, if_index) && !matches_any(range.exceptions, if_index);
}

range_reading read_range(std::string_view text, const interface_names& names) {
  return range_reader(text, range_scope::all, names).read();
}

std::string_view first_item_word(std::string_view text) { return text.substr(0, text.find_first_of(" \t\r\n,")); }

std::optional<range_error> parse_interface_range(std::string_view text, interface_range& range) {
  range_reading reading = read_range(text);
  range = std::move(reading.range);
  return first_error(text, reading);
}

std::optional<range_error> parse_interface_range(std::string_view text, std::vector<interface_span>& spans) {
  const range_reading reading = range_reader(text, range_scope::numbers, interface_names()).read();
  const auto error = first_error(text, reading);
  for (const range_item& it : reading.range.items) spans.push_back(std::get<interface_span>(it));
  return error;
}

}  // namespace host
