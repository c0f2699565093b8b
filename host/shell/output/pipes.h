// The pipes of a command: a chain of filters over the lines of its output.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"
#include "shell/output/chain/line.h"

namespace host {

enum class pipe_kind : uint8 { include, exclude, begin, section, count, json, no_more, save, columns, sort, rows };

// What follows the word of a pipe, up to the next "|" or the end.
enum class pipe_argument : uint8 { none, expression, file, column, columns };

struct pipe_word {
  pipe_kind kind;
  std::string_view word;
  pipe_argument argument;
  std::string_view help;
};

inline constexpr pipe_word kPipeWords[] = {
    {pipe_kind::begin, "begin", pipe_argument::expression, "Lines from the first that matches the expression"},
    {pipe_kind::columns, "columns", pipe_argument::columns, "Only some columns of tables"},
    {pipe_kind::count, "count", pipe_argument::none, "Only the number of rows or lines"},
    {pipe_kind::exclude, "exclude", pipe_argument::expression, "Lines that do not match the expression"},
    {pipe_kind::include, "include", pipe_argument::expression, "Lines that match the expression"},
    {pipe_kind::json, "json", pipe_argument::none, "One JSON document instead of text"},
    {pipe_kind::no_more, "no-more", pipe_argument::none, "Without stops at the end of a screen"},
    {pipe_kind::rows, "rows", pipe_argument::expression, "Rows of tables that match, with the headers"},
    {pipe_kind::save, "save", pipe_argument::file, "Write the output to a file"},
    {pipe_kind::section, "section", pipe_argument::expression, "Matching lines with the indented lines below them"},
    {pipe_kind::sort, "sort", pipe_argument::column, "Rows of tables in the order of a column"},
};

// How the argument of a pipe is written in a syntax, with a blank before it.
constexpr std::string_view syntax_of(pipe_argument argument) {
  switch (argument) {
    case pipe_argument::none: return "";
    case pipe_argument::expression: return " EXPRESSION";
    case pipe_argument::file: return " FILE";
    case pipe_argument::column: return " COLUMN";
    case pipe_argument::columns: return " COLUMN[,COLUMN...]";
  }
  return "";
}

struct pipe_stage {
  pipe_kind kind;
  std::string argument;  // an expression, the name of a file, names of columns
};

// Whether a stage chooses or counts lines. The others work on the output as a whole, wherever they are written.
constexpr bool is_filter(pipe_kind kind) {
  return kind != pipe_kind::json && kind != pipe_kind::no_more && kind != pipe_kind::save;
}

// Whether a stage works on the columns and rows of tables.
constexpr bool is_for_tables(pipe_kind kind) {
  return kind == pipe_kind::columns || kind == pipe_kind::sort || kind == pipe_kind::rows;
}

using line_taker = std::function<void(const text_line&)>;

// The running chain.
class line_filters {
 public:
  line_filters();
  ~line_filters();
  line_filters(const line_filters&) = delete;
  line_filters& operator=(const line_filters&) = delete;

  // Adds a stage; returns what is wrong with its expression, if anything.
  std::optional<std::string> add(const pipe_stage& stage);

  bool empty() const { return stages_.empty(); }

  // Whether a stage asks which lines are parts of tables (chain/table.h).
  bool need_tables() const { return need_tables_; }

  // Hands the line on when it comes out at the end of the chain. True when it does, or is kept to come out later.
  bool take(const text_line& it, const line_taker& emit);

  // Ends the chain: hands on the lines that stages held back.
  void finish(const line_taker& emit);

  // After finish(): one line that says why a stage does not apply to the output; empty when all do.
  const std::string& fault() const { return fault_; }

  class stage;
  class link;

 private:
  std::vector<std::unique_ptr<stage>> stages_;
  bool need_tables_ = false;
  std::string fault_;
};

}  // namespace host
