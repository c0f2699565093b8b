// The pipes that work on tables as a whole.
#pragma once

#include <memory>

#include "shell/output/pipes.h"

namespace host {

// What goes on to the next stage; true when it passes there, or is kept.
class line_filters::link {
 public:
  link(line_filters& of, std::size_t at, const line_taker& emit) : of_(of), at_(at), emit_(emit) {}

  bool operator()(const text_line& it) const;

 private:
  line_filters& of_;
  std::size_t at_;
  const line_taker& emit_;
};

class line_filters::stage {
 public:
  stage() = default;
  virtual ~stage() = default;
  stage(const stage&) = delete;
  stage& operator=(const stage&) = delete;

  // Hands on the line, or not. True when it passes all that follow, or is kept.
  virtual bool take(const text_line& it, const link& next) = 0;

  // There are no more lines: hands on what was kept. Returns why the stage does not apply to them; empty: it does.
  virtual std::string finish(const link&) { return {}; }
};

std::unique_ptr<line_filters::stage> make_columns_stage(std::string_view columns);
std::unique_ptr<line_filters::stage> make_sort_stage(std::string_view column);

// Why a pipe does not apply to an output that is not a table.
std::string no_table_fault(std::string_view pipe);

}  // namespace host
