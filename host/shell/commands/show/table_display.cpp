#include "shell/commands/show/table_display.h"

#include <algorithm>
#include <vector>

#include "base/printable.h"
#include "platform/if_index.h"
#include "platform/syserr.h"
#include "shell/library/command_queue.h"
#include "shell/library/parameters.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

constexpr std::size_t kMostGatheredRows = 256;

std::string text_of_number(const field& meaning, uint64 number) {
  if (meaning.type == field_type::enumeration) return text_of_enum(meaning.words, static_cast<uint32>(number));
  return std::to_string(number);
}

std::string text_of_value(const interface_value& value) {
  const auto* const bytes = reinterpret_cast<const uint8*>(value.bytes.data());
  std::string text;
  switch (value.kind) {
    case value_kind::number: return text_of_number(all_fields()[static_cast<uint16>(value.of) - 1U], value.number());
    case value_kind::mac: return text_of_mac(bytes);
    case value_kind::ipv4: return text_of_ipv4(bytes);
    case value_kind::ipv6: return text_of_ipv6(bytes);
    case value_kind::interface: {
      char name[64] = {};
      return sprintf_if_index(name, static_cast<if_index_t>(value.number()));
    }
    default: append_printable(text, value.text()); return text;
  }
}

// The rows of a table as lines of text.
class table_printer {
 public:
  table_printer(command_output& output, const table_view& view) : output_(output), view_(view) {
    for (const table_column& it : view.columns) columns_.push_back(it.fitted);
  }

  void add(std::span<const table_query::row> rows) {
    for (const table_query::row& it : rows) {
      std::vector<std::string> cells = cells_of(it);
      if (layout_)
        print(layout_->line(cells));
      else
        gathered_.push_back(std::move(cells));
    }
    if (layout_) output_.flush();
    if (layout_ || gathered_.size() < kMostGatheredRows) return;
    std::vector<std::string>& usual = gathered_.emplace_back();
    for (const table_column& it : view_.columns) usual.emplace_back(std::max<std::size_t>(it.usual, 1), ' ');
    begin(true);
  }

  void end() {
    if (!layout_) begin(false);
  }

 private:
  std::vector<std::string> cells_of(const table_query::row& values) const {
    const shown_row row(values);
    std::vector<std::string> cells;
    cells.reserve(view_.columns.size());
    for (const table_column& it : view_.columns) cells.push_back(it.text == nullptr ? row.text(it.of) : it.text(row));
    return cells;
  }

  void print(const std::string& line) {
    if (!output_.is_discarding()) output_.text(line + "\n");
  }

  // Prints the gathered rows, but the last one if it is a sample.
  void begin(bool has_sample) {
    layout_.emplace(columns_, gathered_, output_.columns());
    if (has_sample) gathered_.pop_back();
    output_.line().set_title();
    print(layout_->titles());
    for (const auto& row : gathered_) print(layout_->line(row));
    gathered_.clear();
    output_.flush();
  }

  command_output& output_;
  const table_view& view_;
  std::vector<fitted_column> columns_;
  table_rows gathered_;
  std::optional<fitted_layout> layout_;
};

// The interfaces that a table is read of; none: all. A user with all rights also sees devices without an interface.
selection interfaces_for(const invocation& run, mts_q_handle_t q) {
  command_parameters parameters(run.session.library, run.session.user, q, kNoDisplayId);
  selection chosen;
  if (!run.line.range.empty())
    chosen = select_named(parameters, run.line.range);
  else if (run.session.user != nullptr)
    chosen = select_every(parameters);
  std::sort(chosen.interfaces.begin(), chosen.interfaces.end());
  return chosen;
}

int report_failure(const invocation& run, std::string_view what, syserr_t error) {
  if (error == kNoSuchTable) {
    run.output.complain("this switch has no table of " + std::string(what) +
                        ". Start the shell with --kernel to show that of this machine.");
    return kUsage;
  }
  const char* const text = syserr2str(error);
  if (error != PM_ERR_GENERAL && text != nullptr)
    run.output.complain("the " + std::string(what) + " cannot be read: " + text +
                        (std::string_view(text).ends_with('.') ? "" : "."));
  return kServiceFailed;
}

}  // namespace

const interface_value* shown_row::find(property of) const {
  const auto found =
      std::find_if(values_.begin(), values_.end(), [of](const interface_value& it) { return it.of == of; });
  return found == values_.end() || found->kind == value_kind::absent ? nullptr : &*found;
}

std::string shown_row::text(property of) const {
  const auto found =
      std::find_if(values_.begin(), values_.end(), [of](const interface_value& it) { return it.of == of; });
  if (found == values_.end()) return {};
  if (found->kind != value_kind::absent) return text_of_value(*found);
  return found->why_absent() == absence::none ? "" : "--";
}

int read_table(const invocation& run, table_id table, std::string_view what, const row_taker& take,
               const row_condition& is_shown) {
  const command_queue q;
  const selection chosen = interfaces_for(run, q.handle);
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) return chosen.code;
  const bool may_see_none = run.session.user != nullptr && chosen.interfaces.empty();
  table_query query(q.handle, table, chosen.interfaces);
  while (!may_see_none && query.next()) {
    if (run.output.is_discarding()) return kDone;
    std::span<table_query::row> rows = query.rows();
    if (is_shown) {
      const auto shown = std::stable_partition(rows.begin(), rows.end(),
                                               [&](const table_query::row& it) { return is_shown(shown_row(it)); });
      rows = rows.first(static_cast<std::size_t>(shown - rows.begin()));
    }
    if (!rows.empty()) take(rows);
  }
  if (query.error() != 0) return report_failure(run, what, query.error());
  take({});
  if (query.has_changed())
    run.output.complain("the " + std::string(what) +
                        " changed while they were read: rows may be missing, or be there twice.");
  return chosen.result_of(kDone);
}

void record_rows(const invocation& run, std::span<const table_query::row> rows) {
  for (const table_query::row& it : rows) run.output.add_row(it);
}

std::string subject_of(const shown_row& row) {
  const std::string interface = row.text(property::interface), device = row.text(property::device);
  if (interface.empty()) return device;
  return device.empty() ? interface : interface + " (" + device + ")";
}

int show_table(const invocation& run, const table_view& view, const row_condition& is_shown) {
  table_printer printer(run.output, view);
  std::size_t count = 0;
  const auto take = [&](std::span<const table_query::row> rows) {
    if (run.output.is_structured()) return record_rows(run, rows);
    count += rows.size();
    if (!rows.empty()) return printer.add(rows);
    if (count == 0)
      run.output.text("There are no " + std::string(view.what) + ".\n");
    else
      printer.end();
  };
  return read_table(run, view.table, view.what, take, is_shown);
}

}  // namespace host
