#include "shell/output/pipes.h"

#include <re2/re2.h>

#include <utility>

#include "shell/output/table_pipes.h"

namespace host {
namespace {

bool is_indented(std::string_view line) { return line.starts_with(' ') || line.starts_with('\t'); }

bool matches(const re2::RE2& expression, std::string_view line) {
  return re2::RE2::PartialMatch({line.data(), line.size()}, expression);
}

// Chooses lines by an expression.
class choosing_stage : public line_filters::stage {
 public:
  choosing_stage(pipe_kind kind, std::unique_ptr<re2::RE2> expression)
      : kind_(kind), expression_(std::move(expression)) {}

  bool take(const text_line& it, const line_filters::link& next) override { return passes(it.text) && next(it); }

 private:
  bool passes(std::string_view line) {
    const bool is_section = kind_ == pipe_kind::section;
    if (is_section && is_indented(line) && !has_begun_) return false;
    if (has_begun_ && (!is_section || is_indented(line))) return true;
    const bool is_match = matches(*expression_, line);
    has_begun_ = is_match && (is_section || kind_ == pipe_kind::begin);
    return is_match != (kind_ == pipe_kind::exclude);
  }

  pipe_kind kind_;
  std::unique_ptr<re2::RE2> expression_;
  bool has_begun_ = false;  // begin: for good; section: up to the next line that is not indented
};

// Chooses rows of tables by an expression.
class rows_stage : public line_filters::stage {
 public:
  explicit rows_stage(std::unique_ptr<re2::RE2> expression) : expression_(std::move(expression)) {}

  bool take(const text_line& it, const line_filters::link& next) override {
    has_lines_ = true;
    has_tables_ |= it.table != nullptr;
    if (it.role == line_role::row) is_chosen_ = matches(*expression_, it.text);
    const bool is_of_row = it.role == line_role::row || it.role == line_role::continuation;
    return (!is_of_row || is_chosen_) && next(it);
  }

  std::string finish(const line_filters::link&) override {
    return has_lines_ && !has_tables_ ? no_table_fault("rows") : "";
  }

 private:
  std::unique_ptr<re2::RE2> expression_;
  bool is_chosen_ = false;  // the last row
  bool has_lines_ = false;
  bool has_tables_ = false;
};

// The number of rows when there are tables, else of lines.
class counting_stage : public line_filters::stage {
 public:
  bool take(const text_line& it, const line_filters::link&) override {
    ++lines_;
    rows_ += it.role == line_role::row ? 1 : 0;
    has_tables_ |= it.table != nullptr;
    return false;
  }

  std::string finish(const line_filters::link& next) override {
    next({std::to_string(has_tables_ ? rows_ : lines_)});
    return {};
  }

 private:
  uint64 lines_ = 0;
  uint64 rows_ = 0;
  bool has_tables_ = false;
};

}  // namespace

bool line_filters::link::operator()(const text_line& it) const {
  if (at_ < of_.stages_.size()) return of_.stages_[at_]->take(it, link(of_, at_ + 1, emit_));
  emit_(it);
  return true;
}

line_filters::line_filters() = default;
line_filters::~line_filters() = default;

std::optional<std::string> line_filters::add(const pipe_stage& requested) {
  if (!is_filter(requested.kind)) return std::nullopt;
  need_tables_ |= is_for_tables(requested.kind) || requested.kind == pipe_kind::count;
  switch (requested.kind) {
    case pipe_kind::count: stages_.push_back(std::make_unique<counting_stage>()); return std::nullopt;
    case pipe_kind::columns: stages_.push_back(make_columns_stage(requested.argument)); return std::nullopt;
    case pipe_kind::sort: stages_.push_back(make_sort_stage(requested.argument)); return std::nullopt;
    default: break;
  }
  auto expression = std::make_unique<re2::RE2>(requested.argument, re2::RE2::Quiet);
  if (!expression->ok()) return expression->error();
  if (requested.kind == pipe_kind::rows)
    stages_.push_back(std::make_unique<rows_stage>(std::move(expression)));
  else
    stages_.push_back(std::make_unique<choosing_stage>(requested.kind, std::move(expression)));
  return std::nullopt;
}

bool line_filters::take(const text_line& it, const line_taker& emit) { return link(*this, 0, emit)(it); }

void line_filters::finish(const line_taker& emit) {
  for (std::size_t i = 0; i < stages_.size() && fault_.empty(); ++i)
    fault_ = stages_[i]->finish(link(*this, i + 1, emit));
}

}  // namespace host
