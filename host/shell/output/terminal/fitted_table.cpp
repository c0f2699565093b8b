#include "shell/output/terminal/fitted_table.h"

#include <algorithm>
#include <numeric>

#include "shell/output/terminal/printable.h"

namespace host {
namespace {

constexpr std::size_t kGap = 2;  // blanks between columns
constexpr std::string_view kCut = "...";

// A column of the table that is printed.
struct shown_column {
  std::size_t index;
  std::size_t natural;  // characters of its longest text
  std::size_t width;
};

std::size_t least_width(const fitted_column& column, std::size_t natural) {
  if (column.least == 0) return natural;
  return std::min(natural, std::max(column.least, column.title.size()));
}

// Columns that have a text in any row.
std::vector<shown_column> columns_with_text(std::span<const fitted_column> columns, const table_rows& rows) {
  std::vector<shown_column> shown;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::size_t longest = 0;
    for (const auto& row : rows) longest = std::max(longest, count_characters(row[i]));
    if (longest == 0 && columns[i].rank != 1) continue;
    const std::size_t natural = std::max(longest, columns[i].title.size());
    shown.push_back({i, natural, least_width(columns[i], natural)});
  }
  return shown;
}

std::size_t total_width(const std::vector<shown_column>& shown) {
  if (shown.empty()) return 0;
  return std::accumulate(shown.begin(), shown.end(), (shown.size() - 1) * kGap,
                         [](std::size_t sum, const shown_column& it) { return sum + it.width; });
}

void leave_out(std::span<const fitted_column> columns, std::vector<shown_column>& shown, std::size_t width) {
  const auto is_more_important = [&](const shown_column& left, const shown_column& right) {
    return columns[left.index].rank < columns[right.index].rank;
  };
  while (shown.size() > 1 && total_width(shown) > width)
    shown.erase(std::max_element(shown.begin(), shown.end(), is_more_important));
}

// Distributes the remaining width among the columns that are cut, the most important first.
void widen(std::span<const fitted_column> columns, std::vector<shown_column>& shown, std::size_t width) {
  std::vector<shown_column*> by_rank;
  for (shown_column& it : shown) by_rank.push_back(&it);
  std::sort(by_rank.begin(), by_rank.end(), [&](const shown_column* left, const shown_column* right) {
    return columns[left->index].rank < columns[right->index].rank;
  });
  for (shown_column* const it : by_rank) {
    const std::size_t room = width == 0 ? it->natural : width - std::min(width, total_width(shown));
    it->width += std::min(room, it->natural - it->width);
  }
}

void append_cell(std::string& line, std::string_view text, const shown_column& to, bool is_right) {
  std::string cut;
  if (count_characters(text) > to.width) {
    const std::size_t mark = std::min(kCut.size(), to.width);
    cut.append(first_characters(text, to.width - mark)).append(kCut.substr(0, mark));
    text = cut;
  }
  const std::string blanks(to.width - count_characters(text), ' ');
  if (is_right) line += blanks;
  line += text;
  if (!is_right) line += blanks;
}

template <typename TextOf>
std::string line_of(std::span<const fitted_column> columns, const std::vector<shown_column>& shown, TextOf text_of) {
  std::string line;
  for (const shown_column& it : shown) {
    if (&it != &shown.front()) line.append(kGap, ' ');
    append_cell(line, text_of(it.index), it, columns[it.index].is_right);
  }
  line.resize(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace

bool fits(std::span<const fitted_column> columns, const table_rows& rows, std::size_t width) {
  std::vector<shown_column> shown = columns_with_text(columns, rows);
  for (shown_column& it : shown) it.width = it.natural;
  return width == 0 || total_width(shown) <= width;
}

std::vector<std::string> fitted_lines(std::span<const fitted_column> columns, const table_rows& rows,
                                      std::size_t width) {
  std::vector<shown_column> shown = columns_with_text(columns, rows);
  if (width != 0) leave_out(columns, shown, width);
  widen(columns, shown, width);
  std::vector<std::string> lines;
  lines.reserve(rows.size() + 1);
  lines.push_back(line_of(columns, shown, [&](std::size_t column) { return columns[column].title; }));
  for (const auto& row : rows)
    lines.push_back(line_of(columns, shown, [&](std::size_t column) { return std::string_view(row[column]); }));
  return lines;
}

}  // namespace host
