#include "shell/output/terminal/fitted_table.h"

#include <algorithm>
#include <numeric>

#include "base/printable.h"

namespace host {
namespace {

constexpr std::size_t kGap = 2;  // blanks between columns
constexpr std::string_view kCut = "...";

std::size_t least_width(const fitted_column& column, std::size_t natural) {
  if (column.least == 0) return natural;
  return std::min(natural, std::max(column.least, column.title.size()));
}

void append_cell(std::string& line, std::string_view text, std::size_t width, const fitted_column& of) {
  std::string cut;
  if (count_characters(text) > width && of.least != 0) {
    const std::size_t mark = std::min(kCut.size(), width);
    cut.append(first_characters(text, width - mark)).append(kCut.substr(0, mark));
    text = cut;
  }
  const std::string blanks(width - std::min(width, count_characters(text)), ' ');
  if (of.is_right) line += blanks;
  line += text;
  if (!of.is_right) line += blanks;
}

}  // namespace

std::size_t fitted_layout::total_width() const {
  if (shown_.empty()) return 0;
  return std::accumulate(shown_.begin(), shown_.end(), (shown_.size() - 1) * kGap,
                         [](std::size_t sum, const shown_column& it) { return sum + it.width; });
}

void fitted_layout::leave_out(std::size_t width) {
  const auto is_more_important = [&](const shown_column& left, const shown_column& right) {
    return columns_[left.index].rank < columns_[right.index].rank;
  };
  while (shown_.size() > 1 && total_width() > width)
    shown_.erase(std::max_element(shown_.begin(), shown_.end(), is_more_important));
}

// Distributes the remaining width among the columns that are cut, the most important first.
void fitted_layout::widen(std::size_t width) {
  std::vector<shown_column*> by_rank;
  for (shown_column& it : shown_) by_rank.push_back(&it);
  std::sort(by_rank.begin(), by_rank.end(), [&](const shown_column* left, const shown_column* right) {
    return columns_[left->index].rank < columns_[right->index].rank;
  });
  for (shown_column* const it : by_rank) {
    const std::size_t room = width == 0 ? it->natural : width - std::min(width, total_width());
    it->width += std::min(room, it->natural - it->width);
  }
}

fitted_layout::fitted_layout(std::span<const fitted_column> columns, const table_rows& rows, std::size_t width)
    : columns_(columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::size_t longest = 0;
    for (const auto& row : rows) longest = std::max(longest, count_characters(row[i]));
    if (longest == 0 && columns[i].rank != 1) continue;
    const std::size_t natural = std::max(longest, columns[i].title.size());
    shown_.push_back({i, natural, least_width(columns[i], natural)});
  }
  if (width != 0) leave_out(width);
  widen(width);
}

template <typename TextOf>
std::string fitted_layout::line_of(TextOf text_of) const {
  std::string line;
  for (const shown_column& it : shown_) {
    if (&it != &shown_.front()) line.append(kGap, ' ');
    append_cell(line, text_of(it.index), it.width, columns_[it.index]);
  }
  line.resize(line.find_last_not_of(' ') + 1);
  return line;
}

std::string fitted_layout::titles() const {
  return line_of([this](std::size_t column) { return columns_[column].title; });
}

std::string fitted_layout::line(const std::vector<std::string>& row) const {
  return line_of([&row](std::size_t column) { return std::string_view(row[column]); });
}

bool fits(std::span<const fitted_column> columns, const table_rows& rows, std::size_t width) {
  return width == 0 || fitted_layout(columns, rows, 0).total_width() <= width;
}

std::vector<std::string> fitted_lines(std::span<const fitted_column> columns, const table_rows& rows,
                                      std::size_t width) {
  const fitted_layout layout(columns, rows, width);
  std::vector<std::string> lines;
  lines.reserve(rows.size() + 1);
  lines.push_back(layout.titles());
  for (const auto& row : rows) lines.push_back(layout.line(row));
  return lines;
}

}  // namespace host
