#include "shell/commands/watch/drawing.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

#include "base/printable.h"
#include "platform/if_index.h"
#include "shell/output/terminal/sparkline.h"

namespace host {
namespace {

constexpr std::size_t kMostReadings = 60;
constexpr int kNameWidth = 22, kRateWidth = 14;

// Characters that take a place on the screen: colours do not.
std::size_t width_of(std::string_view line) {
  std::size_t width = 0;
  for (std::size_t colour = line.find('\x1b'); colour != std::string_view::npos; colour = line.find('\x1b')) {
    width += count_characters(line.substr(0, colour));
    line.remove_prefix(std::min(line.find('m', colour), line.size() - 1) + 1);
  }
  return width + count_characters(line);
}

std::size_t rows_of(std::string_view line, screen_size size) {
  return std::max<std::size_t>(1, (width_of(line) + size.columns - 1) / size.columns);
}

std::size_t rows_of(const std::vector<std::string>& lines, screen_size size) {
  std::size_t rows = 0;
  for (const std::string& line : lines) rows += rows_of(line, size);
  return rows;
}

// The lines from one on, as many as fit; returns the rows that they take.
std::size_t add_fitting(std::string& text, const std::vector<std::string>& lines, std::size_t from, screen_size size,
                        std::size_t room) {
  std::size_t used = 0;
  for (std::size_t i = from; i < lines.size(); ++i) {
    const std::size_t rows = rows_of(lines[i], size);
    if (used + rows > room) break;
    used += rows;
    text.append("\n").append(lines[i]);
  }
  return used;
}

// With how many lines less at their beginning the others fit.
std::size_t lines_to_skip(const std::vector<std::string>& lines, screen_size size, std::size_t room) {
  std::size_t used = 0;
  std::size_t first = lines.size();
  while (first > 0 && used + rows_of(lines[first - 1], size) <= room) used += rows_of(lines[--first], size);
  return first;
}

std::string padded(std::string_view text, int width) {
  char cell[64];
  std::snprintf(cell, sizeof cell, "%*.*s", width, static_cast<int>(text.size()), text.data());
  return cell;
}

std::vector<std::string> table_of_rates(const std::vector<traffic_readings::row>& rows, int name_width) {
  if (rows.empty()) return {};
  std::string titles = padded("Interface", -name_width);
  for (const rate_field& rate : kRateFields) titles += padded(rate.title, kRateWidth);
  std::vector<std::string> lines = {"", titles};
  for (const traffic_readings::row& row : rows) {
    char name[64];
    std::string line = padded(sprintf_if_index(name, row.if_index), -name_width);
    for (const rate_field& rate : kRateFields) {
      char number[64] = "--";
      if (row.rates) std::snprintf(number, sizeof number, "%.1f", (*row.rates).*rate.value);
      line += padded(number, kRateWidth);
    }
    lines.push_back(line);
  }
  return lines;
}

int longest_name(const std::vector<traffic_readings::row>& rows) {
  std::size_t longest = std::string_view("Interface").size();
  for (const traffic_readings::row& row : rows) {
    char name[64];
    longest = std::max(longest, std::string_view(sprintf_if_index(name, row.if_index)).size());
  }
  return static_cast<int>(longest);
}

}  // namespace

void recent_rates::add(const std::vector<traffic_readings::row>& rows) {
  for (const traffic_readings::row& row : rows) {
    std::deque<double>& rates = rates_[row.if_index];
    if (!row.rates) {
      rates.clear();
      continue;
    }
    rates.push_back(row.rates->in_bytes + row.rates->out_bytes);
    if (rates.size() > kMostReadings) rates.pop_front();
  }
}

std::vector<double> recent_rates::of(if_index_t if_index) const {
  const auto found = rates_.find(if_index);
  return found == rates_.end() ? std::vector<double>()
                               : std::vector<double>(found->second.begin(), found->second.end());
}

std::vector<std::string> rate_lines(const std::vector<traffic_readings::row>& rows) {
  return table_of_rates(rows, kNameWidth);
}

std::vector<std::string> rate_lines(const std::vector<traffic_readings::row>& rows, const recent_rates& recent,
                                    std::size_t columns, bool is_utf8) {
  constexpr std::size_t kGap = 2, kLeast = 8;
  const auto width_of_table = [](int name) { return static_cast<std::size_t>(name) + 4 * std::size_t{kRateWidth}; };
  int name_width = kNameWidth;
  if (width_of_table(name_width) + kGap + kLeast > columns) name_width = longest_name(rows);
  const std::size_t used = width_of_table(name_width) + kGap;
  if (used + kLeast > columns) return table_of_rates(rows, kNameWidth);
  std::vector<std::string> lines = table_of_rates(rows, name_width);
  if (lines.empty()) return lines;
  lines[1] += std::string(kGap, ' ') + "Recent";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string bars = sparkline(recent.of(rows[i].if_index), std::min(columns - used, kMostReadings), is_utf8);
    if (!bars.empty()) lines[2 + i] += std::string(kGap, ' ') + bars;
  }
  return lines;
}

std::string drawing(const drawing_parts& parts, screen_size size, std::size_t& offset, std::string_view help) {
  const auto& [first, shown, rates] = parts;
  std::size_t room = size.rows - 1;
  const std::size_t all = rows_of(shown, size) + rows_of(rates, size);
  const bool is_hidden = all > room;
  if (is_hidden && room > 0) --room;
  const std::size_t left_by_display = room - std::min(room, rows_of(shown, size));
  const std::size_t for_rates = std::min(rows_of(rates, size), std::max(room / 2, left_by_display));
  const std::size_t most_of_display = lines_to_skip(shown, size, room - for_rates);
  const std::size_t most_of_rates = lines_to_skip(rates, size, for_rates);
  offset = is_hidden ? std::min(offset, most_of_display + most_of_rates) : 0;
  const std::size_t of_display = std::min(offset, most_of_display);
  std::string text = first;
  std::size_t drawn = add_fitting(text, shown, of_display, size, room - for_rates);
  drawn += add_fitting(text, rates, offset - of_display, size, for_rates);
  if (!is_hidden || size.rows < 2) return text;
  const std::string status = fmt::format("{} rows hidden{}{}", all - drawn, help.empty() ? "" : ": ", help);
  return text.append("\n").append(first_characters(status, size.columns));
}

}  // namespace host
