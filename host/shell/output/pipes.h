// The pipes of a command: a chain of filters over the lines of its output.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace re2 {
class RE2;
}

namespace host {

enum class pipe_kind : uint8 { include, exclude, begin, section, count, json, no_more, save };

// What follows the word of a pipe, up to the next "|" or the end.
enum class pipe_argument : uint8 { none, expression, file };

struct pipe_word {
  pipe_kind kind;
  std::string_view word;
  pipe_argument argument;
  std::string_view help;
};

inline constexpr pipe_word kPipeWords[] = {
    {pipe_kind::begin, "begin", pipe_argument::expression, "Lines from the first that matches the expression"},
    {pipe_kind::count, "count", pipe_argument::none, "Only the number of lines"},
    {pipe_kind::exclude, "exclude", pipe_argument::expression, "Lines that do not match the expression"},
    {pipe_kind::include, "include", pipe_argument::expression, "Lines that match the expression"},
    {pipe_kind::json, "json", pipe_argument::none, "One JSON document instead of text"},
    {pipe_kind::no_more, "no-more", pipe_argument::none, "Without stops at the end of a screen"},
    {pipe_kind::save, "save", pipe_argument::file, "Write the output to a file"},
    {pipe_kind::section, "section", pipe_argument::expression, "Matching lines with the indented lines below them"},
};

// How the argument of a pipe is written in a syntax, with a blank before it.
constexpr std::string_view syntax_of(pipe_argument argument) {
  return argument == pipe_argument::none ? "" : argument == pipe_argument::file ? " FILE" : " EXPRESSION";
}

struct pipe_stage {
  pipe_kind kind;
  std::string argument;  // an expression or the name of a file
};

// Whether a stage chooses or counts lines. The others work on the output as a whole, wherever they are written.
constexpr bool is_filter(pipe_kind kind) {
  return kind != pipe_kind::json && kind != pipe_kind::no_more && kind != pipe_kind::save;
}

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

  // True when a line comes out at the end of the chain.
  bool pass(std::string_view line) { return pass_from(0, line); }

  // Ends the chain: hands on the lines that stages held back.
  void finish(const std::function<void(std::string_view)>& emit);

 private:
  struct stage;
  bool pass_from(std::size_t first, std::string_view line);
  std::vector<stage> stages_;
};

}  // namespace host
