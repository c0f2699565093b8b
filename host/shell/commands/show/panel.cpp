// "show panel": the front panels of the modules, from the service of interface values.
#include <algorithm>
#include <cstdlib>
#include <optional>

#include "base/printable.h"
#include "platform/if_index.h"
#include "platform/port_manager.h"
#include "shell/commands/group.h"
#include "shell/commands/show/front_panel.h"
#include "shell/library/command_queue.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/parameters.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/terminal/locale.h"
#include "transport/transport.h"

namespace host {
namespace {

// Kinds of ports that are in modules.
constexpr if_index_type_t kInModules[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3,  IF_TYPE_SATELLITE, IF_TYPE_FC,
                                          IF_TYPE_ISCSI,    IF_TYPE_GIG_ETHERNET, IF_TYPE_EXTERNAL};

bool is_in_module(if_index_t if_index) {
  const interface_kind& kind = kind_of(if_index);
  const bool has_module = std::find(std::begin(kInModules), std::end(kInModules), kind.type) != std::end(kInModules);
  return has_module && kind.family == name_family::usual && if_index_is_sub_intf(if_index) == 0;
}

// All ports of modules, by module.
selection select_ports(command_parameters& parameters) {
  selection chosen = select_every(parameters);
  auto& all = chosen.interfaces;
  all.erase(std::remove_if(all.begin(), all.end(), [](if_index_t it) { return !is_in_module(it); }), all.end());
  std::stable_sort(all.begin(), all.end(),
                   [](if_index_t left, if_index_t right) { return number_of(left) < number_of(right); });
  return chosen;
}

// ---- What is known of a port ----------------------------------------------------------------------------------------

// A value that is there; null when it is absent.
const interface_value* find(std::span<const interface_value> values, property of) {
  const auto found =
      std::find_if(values.begin(), values.end(), [of](const interface_value& it) { return it.of == of; });
  return found == values.end() || found->kind == value_kind::absent ? nullptr : &*found;
}

port_light light_of(std::span<const interface_value> values) {
  const auto short_reason = [](uint64 reason) {
    return text_of_enum(enum_words::state_reason_short, static_cast<uint32>(reason));
  };
  const interface_value* const state = find(values, property::state);
  if (state == nullptr) return port_light::unknown;
  if (state->number() == PM_PORT_STATE_UP) return port_light::up;
  const interface_value* const reason = find(values, property::state_reason);
  if (reason == nullptr) return port_light::down;
  if (reason->number() == PM_REASON_ADMIN_DOWN) return port_light::admin_down;
  const bool is_error = short_reason(reason->number()) == short_reason(PM_REASON_ERROR_DISABLED);
  return is_error ? port_light::error_disabled : port_light::down;
}

std::string model_of(std::span<const interface_value> values) {
  std::string text;
  if (const interface_value* const model = find(values, property::model)) append_printable(text, model->text());
  return text;
}

// ---- Fronts ---------------------------------------------------------------------------------------------------------

// The front that a port belongs to. Ports of two kinds may have the same number: the second is on a separate front.
front_panel& front_for(std::vector<front_panel>& fronts, const interface_number& number, const std::string& model) {
  const auto found = std::find_if(fronts.begin(), fronts.end(), [&number](const front_panel& it) {
    return it.unit == number.unit && it.module == number.slot && !it.ports.contains(number.port);
  });
  if (found != fronts.end()) return *found;
  return fronts.emplace_back(front_panel{number.unit, number.slot, model, {}});
}

void add_port(std::vector<front_panel>& fronts, if_index_t if_index, std::span<const interface_value> values) {
  const interface_number number = number_of(if_index);
  const std::string model = model_of(values);
  front_panel& front = front_for(fronts, number, model);
  if (front.model != model) front.model.clear();
  front.ports.emplace(number.port, light_of(values));
}

void bind_place(command_output& output, if_index_t if_index) {
  const interface_number number = number_of(if_index);
  constexpr uint32 kNumber = uint32{CMD_TYPE_UINT32} << 24;
  output.bind({uint32{CMD_TYPE_IF_INDEX} << 24 | kTagRowInterface, &if_index});
  if (number.unit != 0) output.bind({kNumber | kTagRowUnit, &number.unit});
  output.bind({kNumber | kTagRowModule, &number.slot});
}

// ---- Output ---------------------------------------------------------------------------------------------------------

// Marks belong to the channel: plain text has those of optical diagnostics.
void print(command_output& output, const panel_line& shown) {
  line_gatherer& line = output.line();
  line.set_of_channel();
  line.current() += shown.text;
  for (const line_mark& mark : shown.marks) line.add_mark(mark);
  line.end_line();
}

void print_fronts(command_output& output, const std::vector<front_panel>& fronts) {
  const panel_style style = {output.columns(), output.has_colours(), has_utf8_locale()};
  for (const front_panel& front : fronts)
    for (const panel_line& line : lines_of(front, style)) print(output, line);
  print(output, legend(style));
}

int show_panel(const invocation& run) {
  const command_queue q;
  command_parameters parameters(run.session.library, run.session.user, q.handle, kNoDisplayId);
  const selection chosen = select_ports(parameters);
  if (chosen.code != kDone) return chosen.code;

  const announced_interfaces announced("panel", chosen.interfaces);
  command_output& output = run.output;
  std::vector<front_panel> fronts;
  std::size_t failed = 0;
  for (const if_index_t if_index : chosen.interfaces) {
    if (output.is_discarding()) return kDone;
    char name[64] = {};
    output.begin_interface(sprintf_if_index(name, if_index), if_index);
    if (output.is_structured()) {
      bind_place(output, if_index);
    } else {
      const auto values = output.values();
      add_port(fronts, if_index,
               values ? std::span<const interface_value>(*values) : std::span<const interface_value>());
    }
    failed += output.end_interface();
  }
  const bool is_all_lost = failed == chosen.interfaces.size() && failed != 0;
  if (!output.is_structured() && fronts.empty()) output.text("No module of this switch has ports.\n");
  if (!fronts.empty() && !is_all_lost) print_fronts(output, fronts);
  if (failed == 0) return kDone;
  return is_all_lost ? kServiceFailed : kSomeInterfacesFailed;
}

constexpr display kPanelShown = {kPanelDisplay, {}, "panel", true, true, "ports"};

// clang-format off
constexpr command kPanelRows[] = {
    {"show panel", "Front panels with the state of each port", show_panel, kPanelShown},
};
// clang-format on

constexpr word_help kPanelWords[] = {
    {"panel", "Front panels of the modules"},
};

}  // namespace

constexpr command_group kPanelCommands = {kPanelRows, kPanelWords};

}  // namespace host
