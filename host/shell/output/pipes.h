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

enum class pipe_kind : uint8 { include, exclude, begin, count, json, no_more };

struct pipe_word {
  pipe_kind kind;
  std::string_view word;
  bool takes_expression;  // a regular expression up to the next "|" or the end
  std::string_view help;
};

inline constexpr pipe_word kPipeWords[] = {
    {pipe_kind::begin, "begin", true, "Lines from the first that matches the expression"},
    {pipe_kind::count, "count", false, "Only the number of lines"},
    {pipe_kind::exclude, "exclude", true, "Lines that do not match the expression"},
    {pipe_kind::include, "include", true, "Lines that match the expression"},
    {pipe_kind::json, "json", false, "One JSON document instead of text"},
    {pipe_kind::no_more, "no-more", false, "Without stops at the end of a screen"},
};

struct pipe_stage {
  pipe_kind kind;
  std::string expression;
};

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
