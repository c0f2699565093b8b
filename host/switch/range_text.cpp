#include "switch/range_text.h"

#include "switch/interface_name.h"

namespace host {

bool is_next(if_index_t first, if_index_t second) {
  const index_fields one = decode_index(first), other = decode_index(second);
  if (one.type != other.type || one.subtype != other.subtype) return false;
  interface_number next = number_of(first);
  ++next.port;
  return next.sub_interface == 0 && next == number_of(second);
}

std::vector<number_run> runs_of(std::span<const if_index_t> interfaces) {
  std::vector<number_run> runs;
  for (const if_index_t it : interfaces) {
    if (!runs.empty() && is_next(runs.back().last, it))
      runs.back().last = it;
    else
      runs.push_back({it, it});
  }
  return runs;
}

std::string range_text(const number_run& run) {
  const interface_number first = number_of(run.first), last = number_of(run.last);
  const interface_word* const word = word_of(decode_index(run.first).type, first.family);
  if (word == nullptr) return {};
  std::string text = interface_text(*word, first);
  if (run.last != run.first) text += "-" + std::to_string(last.sub_interface != 0 ? last.sub_interface : last.port);
  return text;
}

std::string range_text(std::span<const if_index_t> interfaces) {
  std::string text;
  for (const number_run& run : runs_of(interfaces)) text.append(text.empty() ? "" : ", ").append(range_text(run));
  return text;
}

std::string names_text(std::span<const if_index_t> interfaces) {
  std::string text;
  for (const auto& [first, last] : runs_of(interfaces)) {
    char name[64] = {};
    text.append(text.empty() ? "" : ", ").append(sprintf_if_index(name, first));
    if (last != first) text.append("-").append(std::to_string(number_of(last).port));
  }
  return text;
}

}  // namespace host
