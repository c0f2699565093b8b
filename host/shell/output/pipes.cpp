#include "shell/output/pipes.h"

#include <re2/re2.h>

#include <utility>

namespace host {

struct line_filters::stage {
  pipe_kind kind;
  std::unique_ptr<re2::RE2> expression;
  uint64 lines = 0;    // count
  bool begun = false;  // begin: for good; section: up to the next line that is not indented
};

namespace {

bool is_indented(std::string_view line) { return line.starts_with(' ') || line.starts_with('\t'); }

}  // namespace

line_filters::line_filters() = default;
line_filters::~line_filters() = default;

std::optional<std::string> line_filters::add(const pipe_stage& requested) {
  if (!is_filter(requested.kind)) return std::nullopt;
  stage running{requested.kind, nullptr};
  if (requested.kind != pipe_kind::count) {
    running.expression = std::make_unique<re2::RE2>(requested.argument, re2::RE2::Quiet);
    if (!running.expression->ok()) return running.expression->error();
  }
  stages_.push_back(std::move(running));
  return std::nullopt;
}

bool line_filters::pass_from(std::size_t first, std::string_view line) {
  for (std::size_t i = first; i < stages_.size(); ++i) {
    stage& filter = stages_[i];
    if (filter.kind == pipe_kind::count) {
      ++filter.lines;
      return false;
    }
    const bool is_section = filter.kind == pipe_kind::section;
    if (is_section && is_indented(line) && !filter.begun) return false;
    if (filter.begun && (!is_section || is_indented(line))) continue;
    const bool matches = re2::RE2::PartialMatch({line.data(), line.size()}, *filter.expression);
    filter.begun = matches && (is_section || filter.kind == pipe_kind::begin);
    if (matches == (filter.kind == pipe_kind::exclude)) return false;
  }
  return true;
}

void line_filters::finish(const std::function<void(std::string_view)>& emit) {
  for (std::size_t i = 0; i < stages_.size(); ++i) {
    if (stages_[i].kind != pipe_kind::count) continue;
    const std::string line = std::to_string(stages_[i].lines);
    if (pass_from(i + 1, line)) emit(line);
  }
}

}  // namespace host
