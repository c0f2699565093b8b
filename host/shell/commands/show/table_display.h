// Displays of tables: rows of the service of tables, as text and as records of the document.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "messages/calls/tables.h"
#include "shell/output/terminal/fitted_table.h"
#include "shell/session/invocation.h"

namespace host {

// The values of a row.
class shown_row {
 public:
  explicit shown_row(std::span<const interface_value> values) : values_(values) {}

  // Null when the row has none, or it is absent.
  const interface_value* find(property of) const;

  // The value as text; nothing when there is none, dashes when it is unknown.
  std::string text(property of) const;

 private:
  std::span<const interface_value> values_;
};

struct table_column {
  fitted_column fitted;
  property of;
  std::size_t usual = 0;                            // characters that most texts have: the least width in long tables
  std::string (*text)(const shown_row&) = nullptr;  // null: the value of the property
};

struct table_view {
  table_id table;
  std::string_view what;  // such as "IPv4 addresses", for sentences
  std::span<const table_column> columns;
};

using row_taker = std::function<void(std::span<const table_query::row>)>;

// Reads a table: of the interfaces that the line names, or all that the user may see. `take` gets its rows in pieces,
// at least once; an empty piece is the end. Returns an exit code; errors are reported.
// Rows for which `is_shown` is false are skipped; null: none.
using row_condition = std::function<bool(const shown_row&)>;
int read_table(const invocation& run, table_id table, std::string_view what, const row_taker& take,
               const row_condition& is_shown = {});

// Shows a table. One with few rows fits the terminal; the rows of a longer one are shown as they come, under the
// columns of the first ones.
int show_table(const invocation& run, const table_view& view, const row_condition& is_shown = {});

}  // namespace host
