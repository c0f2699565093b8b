// "show interface counters driver": the counters of drivers under their own names.
#include <cstddef>
#include <optional>
#include <vector>

#include "base/printable.h"
#include "shell/commands/group.h"
#include "shell/commands/show/table_display.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"

namespace host {
namespace {

constexpr std::string_view kDriverCounters = "driver counters";

// The counters of one device may come in several rows, which make one record.
class record_maker {
 public:
  explicit record_maker(command_output& output) : output_(output) {}

  void add(const table_query::row& values) {
    const shown_row row(values);
    const interface_value* const device = row.find(property::ifindex);
    const uint64 number = device == nullptr ? 0 : device->number();
    if (!values_.empty() && number != number_) end();
    number_ = number;
    if (values_.empty()) take(values);
    const interface_value* const counters = row.find(property::driver_counters);
    if (counters == nullptr) return;
    has_counters_ = true;
    bytes_.insert(bytes_.end(), counters->bytes.begin(), counters->bytes.end());
  }

  void end() {
    if (values_.empty()) return;
    for (std::size_t i = 0; i < values_.size(); ++i) values_[i].bytes = owned_[i];
    if (has_counters_) values_.push_back({property::driver_counters, value_kind::map, bytes_});
    output_.add_row(values_);
    values_.clear();
    bytes_.clear();
    has_counters_ = false;
  }

 private:
  // Rows live only until the next piece.
  void take(const table_query::row& values) {
    owned_.clear();
    for (const interface_value& it : values) {
      if (it.of == property::driver_counters) continue;
      values_.push_back(it);
      owned_.emplace_back(it.bytes.begin(), it.bytes.end());
    }
  }

  command_output& output_;
  uint64 number_ = 0;
  std::vector<interface_value> values_;
  std::vector<std::vector<std::byte>> owned_;
  std::vector<std::byte> bytes_;
  bool has_counters_ = false;
};

void print_counters(command_output& output, const shown_row& row, std::string& last) {
  const interface_value* const counters = row.find(property::driver_counters);
  if (counters == nullptr) return;
  if (std::string subject = subject_of(row); subject != last) {
    output.text(subject + "\n");
    last = std::move(subject);
  }
  for (const auto& [name, number] : counters->map_entries()) {
    std::string line = "  ";
    append_printable(line, name);
    output.text(line + ": " + std::to_string(number) + "\n");
  }
}

int show_driver_counters(const invocation& run) {
  if (run.session.user != nullptr && !run.session.user->sees_counters) {
    run.output.complain("this user may not see counters.");
    return kNotPermitted;
  }
  record_maker records(run.output);
  std::string last;
  return read_table(run, table_id::driver_counters, kDriverCounters, [&](std::span<const table_query::row> rows) {
    for (const table_query::row& it : rows) {
      if (run.output.is_discarding()) return;
      if (run.output.is_structured())
        records.add(it);
      else
        print_counters(run.output, shown_row(it), last);
    }
    if (!rows.empty()) return;
    records.end();
    if (last.empty() && !run.output.is_structured()) run.output.text("There are no driver counters.\n");
  });
}

constexpr display kDriverCountersShown = {
    .bit = kDriverCountersDisplay, .name = "driver_counters", .list = "interfaces", .is_table = true};

// clang-format off
constexpr command kDriverCounterRows[] = {
    {"show interface [RANGE] counters driver", "Counters of drivers under their own names", show_driver_counters, kDriverCountersShown},
};
// clang-format on

constexpr word_help kDriverCounterWords[] = {
    {"driver", "Counters of drivers under their own names"},
};

}  // namespace

constexpr command_group kDriverCounterCommands = {kDriverCounterRows, kDriverCounterWords};

}  // namespace host
