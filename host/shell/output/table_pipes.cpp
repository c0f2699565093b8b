#include "shell/output/table_pipes.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <deque>
#include <utility>

#include "base/printable.h"
#include "base/text.h"
#include "base/tokens.h"

namespace host {
namespace {

constexpr std::string_view kUnknown = "--";

// A line that is kept.
struct held_line {
  explicit held_line(const text_line& it)
      : text(it.text), marks(it.marks.begin(), it.marks.end()), values(it.values.begin(), it.values.end()), line(it) {}

  // As it was taken; valid while this is.
  text_line view() const {
    text_line it = line;
    it.text = text;
    it.marks = marks;
    it.cells = {};
    it.values = values;
    return it;
  }

  std::string text;
  std::vector<line_mark> marks;
  std::vector<std::string> values;
  text_line line;  // all but its text and what lies below it
};

// ---- Columns by their names

// The words of a name abbreviate words of the title, in their order.
bool abbreviates(std::string_view name, std::string_view title) {
  const std::vector<word_token> words = split_words(title);
  auto at = words.begin();
  for (const word_token& written : split_words(name)) {
    at = std::find_if(at, words.end(),
                      [&](const word_token& word) { return starts_with_ignoring_case(word.text, written.text); });
    if (at == words.end()) return false;
    ++at;
  }
  return true;
}

bool is_same_name(std::string_view one, std::string_view other) {
  return one.size() == other.size() && starts_with_ignoring_case(one, other);
}

// The columns of a table that a name may be: one that has it, else those that it abbreviates, first from the start.
std::vector<std::size_t> find_columns(const line_table& table, std::string_view name) {
  std::vector<std::size_t> found;
  const auto add_if = [&](auto fits) {
    for (std::size_t i = 0; i < table.columns.size() && found.size() < table.columns.size(); ++i)
      if (fits(table.columns[i])) found.push_back(i);
  };
  add_if([&](std::string_view title) { return is_same_name(title, name); });
  if (found.empty()) add_if([&](std::string_view title) { return starts_with_ignoring_case(title, name); });
  if (found.empty()) add_if([&](std::string_view title) { return abbreviates(name, title); });
  return found;
}

// The column of each table that has it.
using column_of = std::vector<std::pair<const line_table*, std::size_t>>;

// Finds a column in each table that has it. Returns why it cannot be found in any; empty: it can.
std::string find_in_tables(const std::vector<const line_table*>& tables, std::string_view name, column_of& found) {
  std::vector<std::string_view> known;
  for (const line_table* const table : tables) {
    const std::vector<std::size_t> columns = find_columns(*table, name);
    if (columns.size() > 1) {
      std::vector<std::string_view> meant;
      for (const std::size_t column : columns) meant.push_back(table->columns[column]);
      return fmt::format("ambiguous column '{}': {}.", name, fmt::join(meant, ", "));
    }
    if (columns.size() == 1) found.emplace_back(table, columns.front());
    for (const std::string& title : table->columns)
      if (std::find(known.begin(), known.end(), title) == known.end()) known.push_back(title);
  }
  if (!found.empty()) return {};
  return fmt::format("unknown column '{}'. The columns are {}.", name, fmt::join(known, ", "));
}

// ---- Stages that need all lines

class keeping_stage : public line_filters::stage {
 public:
  bool take(const text_line& it, const line_filters::link&) override {
    if (it.table != nullptr && std::find(tables_.begin(), tables_.end(), it.table) == tables_.end())
      tables_.push_back(it.table);
    lines_.emplace_back(it);
    return true;
  }

 protected:
  std::vector<held_line> lines_;
  std::vector<const line_table*> tables_;
};

// ---- Sorting

// What rows are compared by: numbers, then texts, in which runs of digits are numbers, then what is not known.
struct sort_key {
  enum class kind_of_value : uint8_t { number, text, unknown };
  kind_of_value kind = kind_of_value::unknown;
  long double value = 0;
  std::string_view written;
};

sort_key key_of(std::string_view written) {
  if (written.empty() || written == kUnknown) return {};
  const std::size_t digit = written.front() == '-' ? 1 : 0;
  if (digit == written.size() || !is_digit(written[digit])) return {sort_key::kind_of_value::text, 0, written};
  long double value = 0;
  const char* const end = written.data() + written.size();
  const auto read = std::from_chars(written.data(), end, value);
  if (read.ec != std::errc{}) return {sort_key::kind_of_value::text, 0, written};
  if (read.ptr == end) return {sort_key::kind_of_value::number, value, written};
  constexpr std::pair<char, long double> kPrefixes[] = {{'k', 1e3L},  {'M', 1e6L},  {'G', 1e9L},
                                                        {'T', 1e12L}, {'P', 1e15L}, {'E', 1e18L}};
  for (const auto& [prefix, factor] : kPrefixes)
    if (*read.ptr == prefix && read.ptr + 1 == end) return {sort_key::kind_of_value::number, value * factor, written};
  return {sort_key::kind_of_value::text, 0, written};
}

bool is_before(std::string_view left, std::string_view right) {
  while (!left.empty() && !right.empty()) {
    if (!is_digit(left.front()) || !is_digit(right.front())) {
      if (left.front() != right.front())
        return static_cast<unsigned char>(left.front()) < static_cast<unsigned char>(right.front());
      left.remove_prefix(1);
      right.remove_prefix(1);
      continue;
    }
    const auto take_number = [](std::string_view& from) {
      from.remove_prefix(std::min(from.find_first_not_of('0'), from.size()));
      const std::size_t end = std::min(from.find_first_not_of("0123456789"), from.size());
      const std::string_view digits = from.substr(0, end);
      from.remove_prefix(end);
      return digits;
    };
    const std::string_view one = take_number(left), other = take_number(right);
    if (one != other) return one.size() != other.size() ? one.size() < other.size() : one < other;
  }
  return left.size() < right.size();
}

bool is_before(const sort_key& left, const sort_key& right) {
  if (left.kind != right.kind) return left.kind < right.kind;
  if (left.kind == sort_key::kind_of_value::number) return left.value < right.value;
  return left.kind == sort_key::kind_of_value::text && is_before(left.written, right.written);
}

class sort_stage : public keeping_stage {
 public:
  explicit sort_stage(std::string_view column) : column_(column) {}

  std::string finish(const line_filters::link& next) override {
    if (tables_.empty()) return lines_.empty() ? "" : no_table_fault("sort");
    column_of columns;
    if (std::string fault = find_in_tables(tables_, column_, columns); !fault.empty()) return fault;
    std::vector<const line_table*> sorted;
    for (const held_line& it : lines_) {
      const auto column =
          std::find_if(columns.begin(), columns.end(), [&](const auto& known) { return known.first == it.line.table; });
      const bool is_of_row = it.line.role == line_role::row || it.line.role == line_role::continuation;
      if (!is_of_row || column == columns.end()) {
        next(it.view());
        continue;
      }
      if (std::find(sorted.begin(), sorted.end(), it.line.table) != sorted.end()) continue;
      sorted.push_back(it.line.table);
      hand_on_rows(*column->first, column->second, next);
    }
    return {};
  }

 private:
  struct sorted_row {
    sort_key key;
    std::vector<const held_line*> lines;
  };

  void hand_on_rows(const line_table& of, std::size_t column, const line_filters::link& next) const {
    std::vector<sorted_row> rows;
    for (const held_line& it : lines_) {
      if (it.line.table != &of) continue;
      if (it.line.role == line_role::row || (it.line.role == line_role::continuation && rows.empty()))
        rows.push_back({key_of(it.values[column]), {&it}});
      else if (it.line.role == line_role::continuation)
        rows.back().lines.push_back(&it);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const sorted_row& left, const sorted_row& right) { return is_before(left.key, right.key); });
    for (const sorted_row& row : rows)
      for (const held_line* const line : row.lines) next(line->view());
  }

  std::string column_;
};

// ---- Columns

// A table with some columns of another.
struct chosen_table {
  const line_table* of;
  std::vector<std::size_t> columns;
  line_table made;
  std::vector<std::size_t> widths;
  std::vector<bool> is_number;
  bool has_title = false;  // it was handed on
};

class columns_stage : public keeping_stage {
 public:
  explicit columns_stage(std::string_view names) {
    for (const word_token& name : split_outside_quotes(names, ',')) names_.emplace_back(trim(unquote(trim(name.text))));
  }

  std::string finish(const line_filters::link& next) override {
    if (tables_.empty()) return lines_.empty() ? "" : no_table_fault("columns");
    for (const line_table* const table : tables_) chosen_.push_back({table, {}, {}, {}, {}});
    for (const std::string& name : names_) {
      column_of found;
      if (std::string fault = find_in_tables(tables_, name, found); !fault.empty()) return fault;
      for (const auto& [table, column] : found) table_of(table)->columns.push_back(column);
    }
    for (chosen_table& it : chosen_)
      if (repeats_names(it)) it.columns.clear();
    for (chosen_table& it : chosen_) measure(it);
    for (std::size_t i = 0; i < lines_.size(); ++i)
      if (!is_above_omitted(i)) hand_on(lines_[i], next);
    return {};
  }

 private:
  // Whether a line is the blank one above a table without any of the columns.
  bool is_above_omitted(std::size_t i) {
    if (i + 1 == lines_.size() || !trim(lines_[i].text).empty()) return false;
    const chosen_table* const table = table_of(lines_[i + 1].line.table);
    return table != nullptr && table->columns.empty();
  }

  chosen_table* table_of(const line_table* table) {
    const auto found = std::find_if(chosen_.begin(), chosen_.end(), [&](const auto& it) { return it.of == table; });
    return found == chosen_.end() ? nullptr : &*found;
  }

  // Whether a table has no more of the columns than the names of rows that another one shows with their values.
  bool repeats_names(const chosen_table& table) const {
    if (table.columns != std::vector<std::size_t>{0}) return false;
    return std::any_of(chosen_.begin(), chosen_.end(), [&](const chosen_table& other) {
      const bool has_names = std::find(other.columns.begin(), other.columns.end(), 0U) != other.columns.end();
      if (!has_names || other.columns.size() < 2) return false;
      const std::vector<std::string_view> shown = names_of_rows(other);
      const std::vector<std::string_view> names = names_of_rows(table);
      return std::all_of(names.begin(), names.end(), [&](std::string_view name) {
        return std::find(shown.begin(), shown.end(), name) != shown.end();
      });
    });
  }

  std::vector<std::string_view> names_of_rows(const chosen_table& table) const {
    std::vector<std::string_view> names;
    for (const held_line& it : lines_)
      if (it.line.table == table.of && it.line.role == line_role::row) names.push_back(it.values.front());
    return names;
  }

  void measure(chosen_table& table) const {
    for (const std::size_t column : table.columns) {
      const std::string& title = table.of->columns[column];
      table.made.columns.push_back(title);
      std::size_t width = count_characters(title);
      bool is_number = true;
      for (const held_line& it : lines_) {
        if (it.line.table != table.of || it.values.empty()) continue;
        const std::string& value = it.values[column];
        width = std::max(width, count_characters(value));
        is_number &= key_of(value).kind != sort_key::kind_of_value::text;
      }
      table.widths.push_back(width);
      table.is_number.push_back(is_number);
    }
  }

  static std::string line_of(const chosen_table& table, const std::vector<std::string>& values) {
    std::string line;
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (i > 0) line += "  ";
      const std::string blanks(table.widths[i] - count_characters(values[i]), ' ');
      line += table.is_number[i] ? blanks + values[i] : values[i] + blanks;
    }
    line.resize(line.find_last_not_of(' ') + 1);
    return line;
  }

  void hand_on(const held_line& it, const line_filters::link& next) {
    chosen_table* const table = table_of(it.line.table);
    if (table == nullptr) return void(next(it.view()));
    if (table->columns.empty()) return;
    text_line line{{}};
    line.table = &table->made;
    line.role = it.line.role;
    std::string text;
    std::vector<std::string> values;
    if (it.line.role == line_role::title) {
      if (std::exchange(table->has_title, true)) return;
      text = line_of(*table, table->made.columns);
    } else if (it.line.role == line_role::rule) {
      std::size_t width = 2 * (table->widths.size() - 1);
      for (const std::size_t column : table->widths) width += column;
      text.assign(width, '-');
    } else {
      for (const std::size_t column : table->columns) values.push_back(it.values[column]);
      text = line_of(*table, values);
    }
    line.text = text;
    line.values = values;
    next(line);
  }

  std::vector<std::string> names_;
  std::deque<chosen_table> chosen_;
};

}  // namespace

std::unique_ptr<line_filters::stage> make_columns_stage(std::string_view columns) {
  return std::make_unique<columns_stage>(columns);
}

std::unique_ptr<line_filters::stage> make_sort_stage(std::string_view column) {
  return std::make_unique<sort_stage>(column);
}

std::string no_table_fault(std::string_view pipe) {
  return fmt::format("'| {}' works on tables, and this output has none. Use '| include' for lines.", pipe);
}

}  // namespace host
