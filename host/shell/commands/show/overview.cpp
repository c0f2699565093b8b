// "show interface overview": a row for each interface, from the service of interface values.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

#include "base/printable.h"
#include "platform/if_index.h"
#include "shell/commands/group.h"
#include "shell/library/command_queue.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/parameters.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/terminal/fitted_table.h"
#include "shell/output/terminal/short_number.h"
#include "transport/transport.h"

namespace host {
namespace {

constexpr char kNotKnown[] = "--";

// ---- Values of an interface -----------------------------------------------------------------------------------------

class shown_values {
 public:
  explicit shown_values(std::span<const interface_value> values) : values_(values) {}

  // A value that is there; null when it is absent.
  const interface_value* find(property of) const {
    const interface_value* const value = any(of);
    return value == nullptr || value->kind == value_kind::absent ? nullptr : value;
  }

  // The text for an absent value: nothing when there is none, dashes when it is unknown.
  std::string text_of_absent(property of) const {
    const interface_value* const value = any(of);
    return value != nullptr && value->why_absent() == absence::none ? std::string() : kNotKnown;
  }

 private:
  const interface_value* any(property of) const {
    const auto found =
        std::find_if(values_.begin(), values_.end(), [of](const interface_value& it) { return it.of == of; });
    return found == values_.end() ? nullptr : &*found;
  }

  std::span<const interface_value> values_;
};

// ---- Texts of cells -------------------------------------------------------------------------------------------------

template <property kOf>
std::string text_cell(const shown_values& values) {
  const interface_value* const value = values.find(kOf);
  if (value == nullptr) return values.text_of_absent(kOf);
  std::string text;
  append_printable(text, value->text());
  return text;
}

template <property kOf, enum_words kOfValue>
std::string word_cell(const shown_values& values) {
  const interface_value* const value = values.find(kOf);
  return value == nullptr ? values.text_of_absent(kOf) : text_of_enum(kOfValue, static_cast<uint32>(value->number()));
}

std::string vlan_cell(const shown_values& values) {
  const interface_value* const value = values.find(property::vlan);
  if (value == nullptr) return kNotKnown;  // also of ports that have none
  const vlan_membership membership = value->membership();
  if (membership.mode == vlan_mode::access) return std::to_string(membership.access);
  return std::string(word_of(membership.mode));
}

// "10G full"; the duplex alone while the speed is negotiated.
std::string speed_cell(const shown_values& values) {
  constexpr uint64 kMega = 1'000'000;
  const interface_value* const speed = values.find(property::speed_mbps);
  const std::string duplex = word_cell<property::duplex, enum_words::duplex>(values);
  const std::string rate =
      speed == nullptr ? values.text_of_absent(property::speed_mbps) : short_number(speed->number() * kMega);
  if (rate.empty() || duplex.empty() || rate == duplex) return rate.empty() ? duplex : rate;
  return rate + " " + duplex;
}

template <property kOf>
std::string number_cell(const shown_values& values) {
  const interface_value* const value = values.find(kOf);
  return value == nullptr ? values.text_of_absent(kOf) : std::to_string(value->number());
}

template <property kOf>
std::string time_cell(const shown_values& values) {
  const interface_value* const value = values.find(kOf);
  return value == nullptr ? values.text_of_absent(kOf) : local_text(static_cast<std::time_t>(value->number()));
}

template <property kOf>
std::string rate_cell(const shown_values& values) {
  const interface_value* const value = values.find(kOf);
  return value == nullptr ? values.text_of_absent(kOf) : short_number(value->number());
}

// Both directions. The sum is unknown if one of them is.
std::string errors_cell(const shown_values& values) {
  constexpr property kDirections[] = {property::input_errors, property::output_errors};
  uint64 sum = 0;
  bool is_counted = false;
  for (const property of : kDirections) {
    if (const interface_value* const value = values.find(of)) {
      sum += std::min(value->number(), std::numeric_limits<uint64>::max() - sum);
      is_counted = true;
    } else if (values.text_of_absent(of) == kNotKnown) {
      return kNotKnown;
    }
  }
  return is_counted ? std::to_string(sum) : std::string();
}

std::string short_name(if_index_t if_index) {
  char name[64] = {};
  snprintf_if_index_short(name, sizeof name, if_index);
  return name;
}

// "Po10" for a member; "2: Eth1/1, Eth1/2" for a channel.
std::string channel_cell(const shown_values& values) {
  if (const interface_value* const channel = values.find(property::member_of))
    return short_name(static_cast<if_index_t>(channel->number()));
  const interface_value* const members = values.find(property::members);
  if (members == nullptr)
    return std::max(values.text_of_absent(property::members), values.text_of_absent(property::member_of));
  std::string text = std::to_string(members->num_entries());
  for (std::size_t i = 0; i < members->num_entries(); ++i)
    text.append(i == 0 ? ": " : ", ").append(short_name(members->entry(i)));
  return text;
}

// ---- The table ------------------------------------------------------------------------------------------------------

struct overview_column {
  fitted_column column;
  std::string (*text)(const shown_values&);  // null: the name of the interface
};

// clang-format off
constexpr overview_column kColumns[] = {
    {{"Interface", 1}, nullptr},
    {{"Device", 3}, text_cell<property::device>},
    {{"Type", 12, false, 8}, text_cell<property::device_type>},
    {{"Master", 13}, text_cell<property::master_device>},
    {{"State", 2}, word_cell<property::state, enum_words::port_state>},
    {{"Reason", 9, false, 12}, word_cell<property::state_reason, enum_words::state_reason>},
    {{"VLAN", 7}, vlan_cell},
    {{"Speed", 6}, speed_cell},
    {{"In bit/s", 4, true}, rate_cell<property::input_bits_per_second>},
    {{"Out bit/s", 5, true}, rate_cell<property::output_bits_per_second>},
    {{"Errors", 8, true}, errors_cell},
    {{"Channel", 10, false, 10}, channel_cell},
    {{"VRF", 8}, text_cell<property::vrf>},
    {{"Description", 11, false, 11}, text_cell<property::description>},
    {{"Link changes", 14, true}, number_cell<property::link_changes>},
    {{"Last link change", 15}, time_cell<property::last_link_flapped>},
};
// clang-format on

constexpr auto kFitted = [] {
  std::array<fitted_column, std::size(kColumns)> columns{};
  for (std::size_t i = 0; i < columns.size(); ++i) columns[i] = kColumns[i].column;
  return columns;
}();

// The rows, and the interfaces that they are of.
struct overview {
  std::vector<if_index_t> interfaces;
  table_rows rows;
  std::size_t failed = 0;
};

std::vector<std::string> row_of(if_index_t if_index, const std::optional<std::vector<interface_value>>& values) {
  std::vector<std::string> row;
  row.reserve(std::size(kColumns));
  const shown_values shown(values ? std::span<const interface_value>(*values) : std::span<const interface_value>());
  char name[64] = {};
  for (const overview_column& it : kColumns)
    row.push_back(it.text == nullptr ? std::string(sprintf_if_index(name, if_index)) : it.text(shown));
  return row;
}

void add_interface(command_output& output, if_index_t if_index, overview& made) {
  char name[64] = {};
  output.begin_interface(sprintf_if_index(name, if_index), if_index);
  if (output.is_structured())
    output.bind({uint32{CMD_TYPE_IF_INDEX} << 24 | kTagRowInterface, &if_index});
  else
    made.rows.push_back(row_of(if_index, output.values()));
  made.interfaces.push_back(if_index);
  made.failed += output.end_interface();
}

// Names are short when the table would be cut otherwise, but for the history of links, which comes last.
void print_table(command_output& output, overview& made) {
  constexpr std::size_t kOfHistory = 2;
  if (!fits(std::span(kFitted).first(kFitted.size() - kOfHistory), made.rows, output.columns()))
    for (std::size_t i = 0; i < made.rows.size(); ++i) made.rows[i].front() = short_name(made.interfaces[i]);
  output.line().set_title();
  for (const std::string& line : fitted_lines(kFitted, made.rows, output.columns())) {
    if (output.is_discarding()) return;
    output.text(line + "\n");
  }
}

bool has_values(if_index_t if_index) { return kind_of(if_index).type != IF_TYPE_INBAND; }

bool is_management(if_index_t if_index) { return kind_of(if_index).type == IF_TYPE_MGMT; }

// All that have values, management ports first.
selection select_overview(command_parameters& parameters) {
  selection chosen = select_every(parameters);
  auto& all = chosen.interfaces;
  all.erase(std::remove_if(all.begin(), all.end(), [](if_index_t it) { return !has_values(it); }), all.end());
  std::stable_partition(all.begin(), all.end(), is_management);
  return chosen;
}

int show_overview(const invocation& run) {
  const command_queue q;
  command_parameters parameters(run.session.library, run.session.user, q.handle, kNoDisplayId);
  const selection chosen = run.line.range.empty() ? select_overview(parameters)
                                                  : select_named(parameters, run.line.range, absent_ends::skip);
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) return chosen.code;

  const announced_interfaces announced("overview", chosen.interfaces);
  overview made;
  std::size_t without_values = 0;
  for (const if_index_t if_index : chosen.interfaces) {
    if (run.output.is_discarding()) return kDone;
    if (has_values(if_index)) {
      add_interface(run.output, if_index, made);
      continue;
    }
    if (!chosen.is_named(if_index)) continue;
    ++without_values;
    char name[64] = {};
    run.output.complain(fmt::format("{} is not in the overview.", sprintf_if_index(name, if_index)));
  }
  const bool is_all_lost = made.failed == made.interfaces.size();
  if (!run.output.is_structured() && !is_all_lost) print_table(run.output, made);
  if (made.failed + without_values == 0) return chosen.result_of(kDone);
  return is_all_lost && made.failed != 0 ? kServiceFailed : kSomeInterfacesFailed;
}

constexpr display kOverviewShown = {kOverviewDisplay, {}, "overview", false, true};

// clang-format off
constexpr command kOverviewRows[] = {
    {"show interface [RANGE] overview", "One row per interface, fitted to the terminal", show_overview, kOverviewShown},
};
// clang-format on

constexpr word_help kOverviewWords[] = {
    {"overview", "One row per interface, fitted to the terminal"},
};

}  // namespace

constexpr command_group kOverviewCommands = {kOverviewRows, kOverviewWords};

}  // namespace host
