#include "switch/interface_name.h"

#include <algorithm>

#include "base/text.h"

namespace host {

bool names_one_interface(const interface_word& word) { return word.form == number_form::number && word.highest == 0; }

const interface_word* parse_interface_word(std::string_view text, range_fault& fault) {
  const interface_word* found = nullptr;
  fault = range_fault::unknown_word;
  for (const interface_word& word : kInterfaceWords) {
    if (!starts_with_ignoring_case(word.word, text)) continue;
    if (text.size() == word.word.size()) return &word;
    if (text.size() < word.shortest) continue;
    if (found != nullptr) fault = range_fault::ambiguous_word;
    found = &word;
  }
  return fault == range_fault::ambiguous_word ? nullptr : found;
}

std::string interface_text(const interface_word& word, const interface_number& number) {
  std::string text(word.word);
  text += ' ';
  if (number.unit != 0) text += std::to_string(number.unit) + '/';
  if (word.form == number_form::slot_port) text += std::to_string(number.slot) + '/';
  text += std::to_string(number.port);
  if (number.sub_interface != 0) text += '.' + std::to_string(number.sub_interface);
  return text;
}

if_index_t index_of(if_index_type_t type, const interface_number& number, pc_subtype_t subtype) {
  switch (decode_index(first_index_of(type)).shape) {
    case index_shape::slot_port:
      if (type == IF_TYPE_MGMT) return ethernet_index(type, 0, number.port);
      if (number.family != name_family::usual) return named_fc_index(number.family, number.port - 1);
      return ethernet_index(type, number.slot - 1, number.port - 1, number.sub_interface);
    case index_shape::satellite: return satellite_index(number.unit, number.slot - 1, number.port - 1);
    case index_shape::channel: return channel_index(type, number.port, subtype, number.sub_interface);
    default: return numbered_index(type, number.port);
  }
}

interface_number number_of(if_index_t if_index) {
  const index_fields fields = decode_index(if_index);
  if (fields.type == IF_TYPE_MGMT) return {.port = fields.port};
  if (fields.family != name_family::usual) return {.family = fields.family, .port = fields.port + 1};
  if (fields.shape == index_shape::channel || fields.shape == index_shape::number)
    return {.port = fields.number, .sub_interface = fields.sub_interface};
  return {name_family::usual, fields.unit, fields.slot + 1, fields.port + 1, fields.sub_interface};
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
