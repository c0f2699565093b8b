#include "source/chassis/place_interfaces.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

#include "source/yaml/yaml_file_error.h"

namespace host {
namespace {

constexpr std::size_t kMaxInterfaces = 65536;

if_index_type_t kind_of(const interface_draft& entry, const interface_span& span, const std::string& path) {
  const auto& kinds = span.word->kinds;
  const bool is_satellite = span.low.unit != 0;
  if (entry.kind == IF_TYPE_NONE) return is_satellite ? if_index_type_t{IF_TYPE_SATELLITE} : kinds.front();
  const bool is_of_word = std::find(kinds.begin(), kinds.end(), entry.kind) != kinds.end();
  if (!is_of_word || (entry.kind == IF_TYPE_SATELLITE) != is_satellite)
    fail_at(path, entry.line,
            fmt::format("'{}' cannot be of kind {}", interface_text(*span.word, span.low), entry.kind));
  return entry.kind;
}

// The interfaces of a span, which counts in its last number.
std::vector<if_index_t> indexes_of(const interface_draft& entry, const interface_span& span, const std::string& path) {
  const if_index_type_t kind = kind_of(entry, span, path);
  interface_number number = span.low;
  uint32& running = number.sub_interface != 0 ? number.sub_interface : number.port;
  const uint32 last = number.sub_interface != 0 ? span.high.sub_interface : span.high.port;
  const bool is_one_slot = span.low.unit == span.high.unit && span.low.slot == span.high.slot;
  if (!is_one_slot) fail_at(path, entry.line, "a range of a switch file stays within one slot");
  if (last - running >= kMaxInterfaces)
    fail_at(path, entry.line, fmt::format("more than {} interfaces", kMaxInterfaces));
  std::vector<if_index_t> indexes;
  for (; running <= last; ++running) indexes.push_back(index_of(kind, number, entry.subtype));
  return indexes;
}

// Two interfaces with one name are duplicates, even if their kinds differ.
void refuse_duplicates(const std::vector<placed_interface>& placed, const std::vector<interface_draft>& entries,
                       const std::string& path) {
  struct named {
    const interface_word* word;
    interface_number number;
    std::size_t entry;
  };
  const auto is_less = [](const named& a, const named& b) {
    return std::tie(a.word, a.number) < std::tie(b.word, b.number);
  };
  std::vector<named> names;
  names.reserve(placed.size());
  for (const placed_interface& it : placed) {
    const interface_number number = number_of(it.if_index);
    names.push_back({word_of(decode_index(it.if_index).type, number.family), number, it.entry});
  }
  std::stable_sort(names.begin(), names.end(), is_less);
  const auto twice =
      std::adjacent_find(names.begin(), names.end(), [&](const named& a, const named& b) { return !is_less(a, b); });
  if (twice == names.end()) return;
  fail_at(path, entries[twice[1].entry].line,
          fmt::format("'{}' is described already in line {}", interface_text(*twice->word, twice->number),
                      entries[twice->entry].line));
}

}  // namespace

std::vector<placed_interface> place_interfaces(const std::vector<interface_draft>& entries, const std::string& path) {
  std::vector<placed_interface> placed;
  for (std::size_t i = 0; i < entries.size(); ++i)
    for (const interface_span& span : entries[i].spans) {
      for (const if_index_t if_index : indexes_of(entries[i], span, path)) placed.push_back({if_index, i});
      if (placed.size() > kMaxInterfaces)
        fail_at(path, entries[i].line, fmt::format("more than {} interfaces", kMaxInterfaces));
    }
  refuse_duplicates(placed, entries, path);
  std::sort(placed.begin(), placed.end(),
            [](const placed_interface& a, const placed_interface& b) { return a.if_index < b.if_index; });
  return placed;
}

}  // namespace host
