#include "switch/interface_name.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace host {
namespace {

constexpr uint32 kFirstUnit = 100;

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }
constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr bool is_word_char(char c) { return (lower(c) >= 'a' && lower(c) <= 'z') || c == '-'; }
constexpr bool is_number_char(char c) { return is_digit(c) || c == '/' || c == '.'; }
constexpr bool is_blank(char c) { return c == ' ' || c == '\t'; }

// A number as it stands: its parts between slashes, and the one after the dot.
struct written_number {
  std::array<uint32, 3> parts{};
  std::size_t num_parts = 0;
  std::optional<uint32> sub_interface;
};

std::optional<uint32> to_number(std::string_view digits) {
  uint32 value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return value;
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
  return within(number.slot, 1, MAX_SLOT + 1) && within(number.port, 1, MAX_PORT + 1);
}

bool is_satellite_port(const interface_number& number) {
  return within(number.unit, kFirstUnit, MAX_UNIT) && within(number.slot, 1, MAX_UNIT_SLOT + 1) &&
         within(number.port, 1, MAX_UNIT_PORT + 1) && number.sub_interface == 0;
}

// Whether a number can name an interface of this word.
bool fits(const interface_word& word, const interface_number& number) {
  if (number.sub_interface != 0 && !word.has_sub_interfaces) return false;
  if (number.unit != 0) return word.kinds.back() == IF_TYPE_SATELLITE && is_satellite_port(number);
  if (word.kinds.front() == IF_TYPE_FC && number.slot > MAX_FC_SLOT + 1) return false;
  if (word.form == number_form::kSlotPort) return is_slot_port(number);
  return within(number.port, word.lowest, word.highest);
}

std::optional<interface_number> whole_number(const interface_word& word, const written_number& written) {
  interface_number number{.family = word.family};
  if (word.form == number_form::kNumber && written.num_parts == 1) {
    number.port = written.parts[0];
  } else if (word.form == number_form::kSlotPort && written.num_parts == 2) {
    number.slot = written.parts[0];
    number.port = written.parts[1];
  } else if (word.form == number_form::kSlotPort && written.num_parts == 3 && written.parts[0] != 0) {
    number = {.unit = written.parts[0], .slot = written.parts[1], .port = written.parts[2]};
  } else {
    return std::nullopt;
  }
  if (written.sub_interface && !within(*written.sub_interface, 1, MAX_SUB_INTERFACE)) return std::nullopt;
  number.sub_interface = written.sub_interface.value_or(0);
  if (!fits(word, number)) return std::nullopt;
  return number;
}

// The number after a "-": the last part of the low end replaced, or a whole number.
std::optional<interface_number> high_number(const interface_word& word, const interface_number& low,
                                            const written_number& written) {
  if (written.num_parts != 1 || written.sub_interface) return whole_number(word, written);
  interface_number high = low;
  uint32& last_part = low.sub_interface != 0 ? high.sub_interface : high.port;
  last_part = written.parts[0];
  const bool is_no_sub_interface = low.sub_interface != 0 && !within(last_part, 1, MAX_SUB_INTERFACE);
  if (is_no_sub_interface || !fits(word, high)) return std::nullopt;
  return high;
}

// A span over several ports or slots has an order only without sub-interfaces and within one form.
bool has_simple_order(const interface_number& low, const interface_number& high) {
  if (low.sub_interface == 0 && high.sub_interface == 0) return (low.unit == 0) == (high.unit == 0);
  return low.sub_interface != 0 && high.sub_interface != 0 && low.unit == high.unit && low.slot == high.slot &&
         low.port == high.port;
}

class range_parser {
 public:
  range_parser(std::string_view text, std::vector<interface_span>& spans) : text_(text), spans_(spans) {}

  std::optional<range_error> parse() {
    for (const interface_word* word = nullptr;;) {
      if (auto error = item(word)) return error;
      skip_blanks();
      if (at_ == text_.size()) return std::nullopt;
      if (text_[at_] != ',') return fault(range_fault::kTrailingText, "unexpected text", rest_token());
      ++at_;
    }
  }

 private:
  std::optional<range_error> item(const interface_word*& word) {
    skip_blanks();
    if (at_ == text_.size() || text_[at_] == ',') return fault(range_fault::kEmpty, "empty range", {});
    if (is_word_char(text_[at_]) && text_[at_] != '-') {
      const std::string_view token = take(is_word_char);
      range_fault reason{};
      word = parse_interface_word(token, reason);
      if (word == nullptr)
        return fault(reason, reason == range_fault::kUnknownWord ? "unknown interface" : "ambiguous interface", token);
      skip_blanks();
    }
    if (word == nullptr) return fault(range_fault::kMissingWord, "no kind of interface in front of", rest_token());
    return numbers(*word);
  }

  std::optional<range_error> numbers(const interface_word& word) {
    const std::string_view low_token = take(is_number_char);
    if (low_token.empty() && names_one_interface(word)) {
      spans_.push_back({&word, {}, {}});
      return std::nullopt;
    }
    if (low_token.empty()) return missing_number(word);
    const std::optional<written_number> low_written = split_number(low_token);
    const std::optional<interface_number> low = low_written ? whole_number(word, *low_written) : std::nullopt;
    if (!low) return bad_number(word, low_token);

    interface_span span{&word, *low, *low};
    skip_blanks();
    if (at_ < text_.size() && text_[at_] == '-') {
      ++at_;
      skip_blanks();
      if (auto error = high_end(low_token, span)) return error;
    }
    spans_.push_back(span);
    return std::nullopt;
  }

  std::optional<range_error> high_end(std::string_view low_token, interface_span& span) {
    const std::string_view token = take(is_number_char);
    if (token.empty()) return missing_number(*span.word);
    const std::optional<written_number> written = split_number(token);
    const std::optional<interface_number> high = written ? high_number(*span.word, span.low, *written) : std::nullopt;
    if (!high) return bad_number(*span.word, token);
    const std::string_view both(low_token.data(),
                                static_cast<std::size_t>(token.data() + token.size() - low_token.data()));
    if (!has_simple_order(span.low, *high))
      return fault(range_fault::kTooWide, "range over more than the sub-interfaces of one port", both);
    if (*high < span.low) return fault(range_fault::kReversed, "reversed range", both);
    span.high = *high;
    return std::nullopt;
  }

  std::optional<range_error> missing_number(const interface_word& word) {
    return fault(range_fault::kMissingNumber, "no number for " + std::string(word.word), rest_token());
  }

  std::optional<range_error> bad_number(const interface_word& word, std::string_view token) {
    return fault(range_fault::kBadNumber, "not a number of " + std::string(word.word), token);
  }

  // `token` is a part of the text; an empty one stands for the place that was reached.
  range_error fault(range_fault kind, std::string_view reason, std::string_view token) const {
    const std::size_t position = token.empty() ? at_ : static_cast<std::size_t>(token.data() - text_.data());
    std::string message(reason);
    if (!token.empty()) message.append(" '").append(token).append("'");
    message.append(" at character ").append(std::to_string(position + 1));
    return {kind, position, std::move(message)};
  }

  void skip_blanks() {
    while (at_ < text_.size() && is_blank(text_[at_])) ++at_;
  }

  std::string_view take(bool (*belongs)(char)) {
    const std::size_t first = at_;
    while (at_ < text_.size() && belongs(text_[at_])) ++at_;
    return text_.substr(first, at_ - first);
  }

  // What stands at this place, up to the next blank.
  std::string_view rest_token() const {
    const std::size_t end = std::min(text_.find_first_of(" \t", at_), text_.size());
    return text_.substr(at_, end - at_);
  }

  std::string_view text_;
  std::vector<interface_span>& spans_;
  std::size_t at_ = 0;
};

}  // namespace

bool names_one_interface(const interface_word& word) { return word.form == number_form::kNumber && word.highest == 0; }

const interface_word* parse_interface_word(std::string_view text, range_fault& fault) {
  const interface_word* found = nullptr;
  fault = range_fault::kUnknownWord;
  for (const interface_word& word : kInterfaceWords) {
    if (!starts_with_ignoring_case(word.word, text)) continue;
    if (text.size() == word.word.size()) return &word;
    if (text.size() < word.shortest) continue;
    if (found != nullptr) fault = range_fault::kAmbiguousWord;
    found = &word;
  }
  return fault == range_fault::kAmbiguousWord ? nullptr : found;
}

std::optional<range_error> parse_interface_range(std::string_view text, std::vector<interface_span>& spans) {
  return range_parser(text, spans).parse();
}

std::string interface_text(const interface_word& word, const interface_number& number) {
  std::string text(word.word);
  text += ' ';
  if (number.unit != 0) text += std::to_string(number.unit) + '/';
  if (word.form == number_form::kSlotPort) text += std::to_string(number.slot) + '/';
  text += std::to_string(number.port);
  if (number.sub_interface != 0) text += '.' + std::to_string(number.sub_interface);
  return text;
}

if_index_t index_of(if_index_type_t type, const interface_number& number, pc_subtype_t subtype) {
  switch (take_apart(first_index_of(type)).shape) {
    case index_shape::kSlotPort:
      if (type == IF_TYPE_MGMT) return ethernet_index(type, 0, number.port);
      if (number.family != name_family::kUsual) return named_fc_index(number.family, number.port - 1);
      return ethernet_index(type, number.slot - 1, number.port - 1, number.sub_interface);
    case index_shape::kSatellite: return satellite_index(number.unit, number.slot - 1, number.port - 1);
    case index_shape::kChannel: return channel_index(type, number.port, subtype, number.sub_interface);
    default: return numbered_index(type, number.port);
  }
}

interface_number number_of(if_index_t if_index) {
  const index_fields fields = take_apart(if_index);
  if (fields.type == IF_TYPE_MGMT) return {.port = fields.port};
  if (fields.family != name_family::kUsual) return {.family = fields.family, .port = fields.port + 1};
  if (fields.shape == index_shape::kChannel || fields.shape == index_shape::kNumber)
    return {.port = fields.number, .sub_interface = fields.sub_interface};
  return {name_family::kUsual, fields.unit, fields.slot + 1, fields.port + 1, fields.sub_interface};
}

const interface_word* word_of(if_index_type_t type, name_family family) {
  if (type == IF_TYPE_NONE) return nullptr;
  for (const interface_word& word : kInterfaceWords)
    if (word.family == family && std::find(word.kinds.begin(), word.kinds.end(), type) != word.kinds.end())
      return &word;
  return nullptr;
}

namespace {

bool in_natural_order(if_index_t a, if_index_t b) {
  const auto order = number_of(a) <=> number_of(b);
  return order == 0 ? a < b : order < 0;
}

}  // namespace

span_ends append_matching(const interface_span& span, std::span<const if_index_t> existing,
                          std::vector<if_index_t>& matches) {
  const std::size_t num_before = matches.size();
  span_ends ends;
  for (const if_index_type_t type : span.word->kinds) {
    if (type == IF_TYPE_NONE) continue;
    auto it = std::lower_bound(existing.begin(), existing.end(), first_index_of(type));
    for (; it != existing.end() && *it <= last_index_of(type); ++it) {
      const interface_number number = number_of(*it);
      if (number < span.low || number > span.high) continue;
      if ((number.sub_interface != 0) != (span.low.sub_interface != 0)) continue;
      matches.push_back(*it);
      ends.low_exists |= number == span.low;
      ends.high_exists |= number == span.high;
    }
  }
  const auto first = matches.begin() + static_cast<std::ptrdiff_t>(num_before);
  if (!std::is_sorted(first, matches.end(), in_natural_order)) std::sort(first, matches.end(), in_natural_order);
  return ends;
}

}  // namespace host
