#include "settings/written_settings.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/text_argument.h"

namespace host {
namespace {

std::string line_of(std::string_view command, std::string_view words) {
  return words.empty() ? std::string(command) : fmt::format("{} {}", command, words);
}

const setting_form* find_form(const setting& of, form_kind kind) {
  const auto found =
      std::find_if(of.forms.begin(), of.forms.end(), [kind](const setting_form& it) { return it.kind == kind; });
  return found == of.forms.end() ? nullptr : &*found;
}

std::string no_command(const setting& of) { return fmt::format("no {}", of.command); }

// "bb-credit COUNT mode e" with the number in the place of its name.
std::string with_number(const setting& of, const setting_form& form, uint32 number) {
  const std::size_t end = std::min(form.syntax.find(' '), form.syntax.size());
  return fmt::format("{} {}{}", of.command, number, form.syntax.substr(end));
}

std::string command_for_number(const setting& of, uint32 number) {
  for (const setting_form& form : of.forms) {
    const bool is_word = form.kind == form_kind::word || form.kind == form_kind::off;
    if (is_word && form.value == number)
      return form.kind == form_kind::off ? no_command(of) : line_of(of.command, form.syntax);
  }
  const uint32 bits = number & form_bits(of), plain = number & ~bits;
  for (const setting_form& form : of.forms)
    if (form.kind == form_kind::argument && form.value == bits && plain >= of.lowest && plain <= of.highest)
      return with_number(of, form, plain);
  return no_command(of);
}

// A line takes a limited number of ranges.
std::vector<std::string> commands_for_vlans(const setting& of, const std::vector<uint16>& vlans) {
  constexpr std::size_t kRangesOfLine = 60;
  if (vlans.empty()) return {line_of(of.command, "none")};
  std::vector<std::string> lines;
  std::size_t num_ranges = 0;
  for (std::size_t first = 0; first < vlans.size(); ++num_ranges) {
    std::size_t last = first;
    while (last + 1 < vlans.size() && vlans[last + 1] == vlans[last] + 1) ++last;
    if (num_ranges % kRangesOfLine == 0)
      lines.push_back(fmt::format("{} {}", of.command, lines.empty() ? "" : "add "));
    else
      lines.back() += ",";
    lines.back() += last == first ? std::to_string(vlans[first]) : fmt::format("{}-{}", vlans[first], vlans[last]);
    first = last + 1;
  }
  return lines;
}

}  // namespace

std::vector<std::string> commands_for(const setting& of, const setting_value& value) {
  if (of.command.empty()) return {};
  switch (of.kind) {
    case setting_kind::vlans: return commands_for_vlans(of, std::get<std::vector<uint16>>(value));
    case setting_kind::text: {
      const auto& text = std::get<std::string>(value);
      return {text.empty() && find_form(of, form_kind::usual) != nullptr ? no_command(of)
                                                                         : line_of(of.command, text_argument(text))};
    }
    default: return {command_for_number(of, std::get<uint32>(value))};
  }
}

}  // namespace host
