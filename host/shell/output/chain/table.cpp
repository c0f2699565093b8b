#include "shell/output/chain/table.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <string_view>
#include <utility>

#include "base/printable.h"
#include "base/text.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

constexpr std::size_t kShortestRule = 20;
constexpr std::size_t kMostTitleLines = 6;

using piece = table_sink::piece;

bool is_rule(std::string_view text) {
  const std::string_view dashes = text.substr(0, text.find_last_not_of(' ') + 1);  // npos + 1 is 0
  return dashes.size() >= kShortestRule && dashes.find_first_not_of('-') == std::string_view::npos;
}

bool is_dashes(std::string_view text) { return text.find_first_not_of("- ") == std::string_view::npos; }

// A position in characters, of one in bytes.
std::size_t character_at(std::string_view text, std::size_t byte) { return count_characters(text.substr(0, byte)); }

bool begins_word(char character) { return std::isalnum(static_cast<unsigned char>(character)) != 0; }

// The phrases of a text: words with one blank between them, unless `splits` has the place of that blank. A sign such as
// "%" belongs to the word before it.
std::vector<piece> phrases(std::string_view text, const std::vector<std::size_t>& splits = {}) {
  std::vector<piece> found;
  std::size_t at = 0;
  while ((at = text.find_first_not_of(' ', at)) != std::string_view::npos) {
    std::size_t end = at;
    while (end < text.size()) {
      end = std::min(text.find(' ', end), text.size());
      const bool goes_on =
          end + 1 < text.size() && text[end + 1] != ' ' &&
          (std::find(splits.begin(), splits.end(), end) == splits.end() || !begins_word(text[end + 1]));
      if (!goes_on) break;
      ++end;
    }
    found.push_back({character_at(text, at), character_at(text, end), std::string(text.substr(at, end - at))});
    at = end;
  }
  return found;
}

// The blanks before and after the cells of a row: those of the header there are between two titles.
std::vector<std::size_t> splits_of(const text_line* row) {
  std::vector<std::size_t> splits;
  if (row == nullptr) return splits;
  for (const line_cell& cell : row->cells) {
    if (cell.begin > 0) splits.push_back(character_at(row->text, cell.begin) - 1);
    splits.push_back(character_at(row->text, cell.end));
  }
  return splits;
}

// The texts of a row: those of its cells, with what is printed beside them without a blank, and what is between them.
std::vector<piece> pieces_of(const text_line& row) {
  std::vector<piece> found;
  std::size_t done = 0;
  const auto add_between = [&](std::size_t end) {
    for (piece& it : phrases(row.text.substr(done, end - done))) {
      const std::size_t shift = character_at(row.text, done);
      found.push_back({it.begin + shift, it.end + shift, std::move(it.text)});
    }
  };
  for (const line_cell& cell : row.cells) {
    add_between(cell.begin);
    const std::string_view text = row.text.substr(cell.begin, cell.end - cell.begin);
    const std::size_t first = text.find_first_not_of(' ');
    done = cell.end;
    if (first == std::string_view::npos) continue;
    const std::string_view value = trim(text);
    const std::size_t begin = character_at(row.text, cell.begin + first);
    found.push_back({begin, begin + count_characters(value), std::string(value), cell.id});
  }
  add_between(row.text.size());
  return found;
}

// Letters and digits in lower case, to compare the names of columns and fields.
std::string plain_name(std::string_view text) {
  std::string name;
  for (const char character : text)
    if (std::isalnum(static_cast<unsigned char>(character)) != 0)
      name += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  return name;
}

bool is_named(const piece& value, std::string_view column) {
  const binding* const bound = value.id == 0 ? nullptr : find_binding(value.id);
  if (bound == nullptr) return false;
  const std::string title = plain_name(column);
  return title == plain_name(field_of(*bound).name) || title == plain_name(field_of(*bound).title);
}

}  // namespace

void table_sink::hold(const text_line& it, line_role role) { held_.emplace_back(it.text, role); }

// Hands on the held lines, as parts of a table or, for null, of none.
void table_sink::release(const line_table* as) {
  for (const auto& [text, role] : std::exchange(held_, {})) {
    text_line line{text};
    line.is_of_channel = is_of_channel_;
    line.table = as;
    if (as != nullptr) line.role = role;
    next().take(line);
  }
}

void table_sink::take(const text_line& it) {
  const bool is_blank = trim(it.text).empty();
  const bool begins_header = it.role == line_role::title || is_rule(it.text);
  if (state_ == state::below_header && (is_blank || begins_header)) begin_rows(nullptr);
  if (begins_header && state_ != state::in_header) {
    is_of_channel_ = it.is_of_channel;
    state_ = it.role == line_role::title ? state::below_header : state::in_header;
    return hold(it, it.role == line_role::title ? line_role::title : line_role::rule);
  }
  if (state_ == state::in_header) {
    if (is_rule(it.text) && held_.size() > 1) {
      state_ = state::below_header;
      return hold(it, line_role::rule);
    }
    if (!is_blank && !is_rule(it.text) && held_.size() <= kMostTitleLines) return hold(it, line_role::title);
    release(nullptr);
    state_ = state::outside;
    return next().take(it);
  }
  if (state_ == state::below_header) begin_rows(&it);
  if (state_ != state::in_rows || is_blank || it.is_of_channel != is_of_channel_) {
    if (is_blank) state_ = state::outside;
    return next().take(it);
  }
  take_row(it);
}

void table_sink::end() {
  if (state_ == state::below_header)
    begin_rows(nullptr);
  else
    release(nullptr);
  state_ = state::outside;
  line_link::end();
}

// Titles of several lines that are below each other are one; a title above several of them begins each.
void table_sink::begin_rows(const text_line* first) {
  const std::vector<std::size_t> splits = splits_of(first);
  std::vector<piece> columns;
  for (auto line = held_.rbegin(); line != held_.rend(); ++line) {
    if (line->second != line_role::title) continue;
    const std::vector<piece> above = phrases(line->first, splits);
    std::vector<piece> added;
    for (std::size_t i = 0; i < above.size(); ++i) {
      const piece& title = above[i];
      if (is_dashes(title.text)) continue;
      const std::size_t end = i + 1 < above.size() ? above[i + 1].begin : std::numeric_limits<std::size_t>::max();
      bool has_any = false;
      for (piece& column : columns) {
        if (column.end <= title.begin || column.begin >= end) continue;
        column.text = title.text + " " + column.text;
        has_any = true;
      }
      if (!has_any) added.push_back(title);
    }
    columns.insert(columns.end(), added.begin(), added.end());
    std::sort(columns.begin(), columns.end(), [](const piece& a, const piece& b) { return a.begin < b.begin; });
  }
  line_table& made = tables_.emplace_back();
  places_.clear();
  for (piece& column : columns) {
    made.columns.push_back(std::move(column.text));
    places_.push_back({column.begin, column.end});
  }
  if (first != nullptr) is_of_channel_ = first->is_of_channel;
  release(&made);
  state_ = first == nullptr ? state::outside : state::in_rows;
}

// Finds the column of each text so that their order is kept and the sum of what does not fit is least.
void table_sink::take_row(const text_line& it) {
  constexpr std::size_t kUnnamed = 100, kShared = 50;
  const line_table& table = tables_.back();
  const std::vector<piece> texts = pieces_of(it);
  const std::size_t num_columns = table.columns.size();
  text_line row = it;
  row.table = &table;
  std::vector<std::string> values(num_columns);
  if (num_columns == 0 || texts.empty()) return next().take(it);
  const auto cost_of = [&](const piece& text, std::size_t column) {
    if (is_named(text, table.columns[column])) return std::size_t{0};
    const column_place& place = places_[column];
    const std::size_t distance = text.begin >= place.end   ? text.begin - place.end + 1
                                 : text.end <= place.begin ? place.begin - text.end + 1
                                                           : 0;
    return kUnnamed + distance;
  };
  // least[i][c]: of the first i + 1 texts, the last of them in column c; from[i][c]: the column of the one before.
  std::vector<std::vector<std::size_t>> least(texts.size(), std::vector<std::size_t>(num_columns));
  std::vector<std::vector<std::size_t>> from = least;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    for (std::size_t c = 0; c < num_columns; ++c) {
      std::size_t best = i == 0 ? 0 : std::numeric_limits<std::size_t>::max();
      for (std::size_t before = 0; i > 0 && before <= c; ++before) {
        const std::size_t cost = least[i - 1][before] + (before == c ? kShared : 0);
        if (cost >= best) continue;
        best = cost;
        from[i][c] = before;
      }
      least[i][c] = best + cost_of(texts[i], c);
    }
  }
  std::size_t column =
      static_cast<std::size_t>(std::min_element(least.back().begin(), least.back().end()) - least.back().begin());
  for (std::size_t i = texts.size(); i-- > 0; column = from[i][column]) {
    std::string& value = values[column];
    value = value.empty() ? texts[i].text : texts[i].text + (texts[i].end < texts[i + 1].begin ? " " : "") + value;
  }
  row.role = values.front().empty() ? line_role::continuation : line_role::row;
  row.values = values;
  next().take(row);
}

}  // namespace host
