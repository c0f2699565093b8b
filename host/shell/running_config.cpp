#include "shell/running_config.h"

#include "platform/if_index.h"
#include "service/port_config.h"
#include "shell/interface_ranges.h"
#include "shell/words.h"
#include "shell/written_settings.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

// What a switch that starts as this one has already: the usual value where it starts with that too.
bool is_left_out(const setting& of, const interface& now, const interface& at_start) {
  // What a port that a command creates has from its parent depends on that.
  const bool is_inherited = of.traits.of_parent && now.is_created && if_index_is_sub_intf(now.if_index) != 0;
  return !is_inherited && is_usual(of, now) && is_usual(of, at_start);
}

// Values that no command sets on this kind of interface, as comments.
std::string fixed_settings_of(const interface& it) {
  std::string lines;
  for (const setting& of : all_settings()) {
    const auto value = of.get(it.settings);
    if (!value || of.has_it(take_apart(it.if_index).type) || is_usual(of, it)) continue;
    for (const std::string& command : commands_for(of, *value)) lines += "  ! part of the hardware: " + command + "\n";
  }
  return lines;
}

std::string lines_of(const interface& it) { return settings_of(it) + fixed_settings_of(it); }

}  // namespace

std::string settings_of(const interface& it) {
  interface at_start = it;
  at_start.settings = it.at_start;
  std::string lines;
  if (it.settings.is_edge) lines += "  switchport host\n";
  for (const setting& of : all_settings()) {
    const auto value = of.get(it.settings);
    if (!value || !has_setting_of_its_own(it, of) || is_left_out(of, it, at_start)) continue;
    for (const std::string& command : commands_for(of, *value)) lines += "  " + command + "\n";
  }
  return lines;
}

std::string running_config(const machine& of, std::span<const if_index_t> interfaces,
                           std::span<const if_index_t> deleted) {
  std::string text = "! Settings of " + text_argument(of.name) + "\nconfigure\n";
  if (!deleted.empty()) text += "no interface " + range_text(deleted) + "\n";
  for (std::size_t first = 0; first < interfaces.size();) {
    const interface* const it = of.find(interfaces[first]);
    const std::string lines = it != nullptr ? lines_of(*it) : std::string();
    const bool is_created = it != nullptr && it->is_created;
    const auto is_like_first = [&](const interface* other) {
      return other != nullptr && other->is_created == is_created && lines_of(*other) == lines;
    };
    std::size_t end = first + 1;
    while (end < interfaces.size() && is_next(interfaces[end - 1], interfaces[end]) &&
           is_like_first(of.find(interfaces[end])))
      ++end;
    if (is_created || !lines.empty())
      text += "interface " + range_text(interfaces.subspan(first, end - first)) + "\n" + lines;
    first = end;
  }
  return text + "end\n";
}

}  // namespace host
