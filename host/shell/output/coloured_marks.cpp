#include "shell/output/coloured_marks.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

constexpr std::string_view kQuantities[] = {"  Temperature ", "  Voltage ", "  Current ", "  Tx Power ", "  Rx Power "};
constexpr std::string_view kRed = "\x1b[31m", kYellow = "\x1b[33m", kUsual = "\x1b[0m";

// Where the mark may stand.
constexpr std::size_t kFirstColumn = 22, kLastColumn = 30;

std::string_view mark_in(std::string_view line) {
  for (std::size_t at = kFirstColumn; at < std::min(kLastColumn, line.size()); ++at) {
    if (line[at - 1] != ' ' || (line[at] != '+' && line[at] != '-')) continue;
    const std::string_view mark =
        line.substr(at, line.substr(at).starts_with("++") || line.substr(at).starts_with("--") ? 2 : 1);
    const std::size_t end = at + mark.size();
    if (end == line.size() || line[end] == ' ') return mark;
  }
  return {};
}

}  // namespace

std::string with_coloured_mark(std::string_view line) {
  const bool is_row = std::any_of(std::begin(kQuantities), std::end(kQuantities),
                                  [line](std::string_view quantity) { return line.starts_with(quantity); });
  const std::string_view mark = is_row ? mark_in(line) : std::string_view();
  if (mark.empty()) return std::string(line);
  const auto at = static_cast<std::size_t>(mark.data() - line.data());
  std::string coloured(line.substr(0, at));
  coloured.append(mark.size() == 2 ? kRed : kYellow).append(mark).append(kUsual);
  return coloured.append(line.substr(at + mark.size()));
}

}  // namespace host
