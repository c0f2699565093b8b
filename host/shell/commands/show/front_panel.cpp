#include "shell/commands/show/front_panel.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <optional>

namespace host {
namespace {

constexpr uint32 kPortsOfAGroup = 12;
constexpr std::size_t kMostGroupsOfALine = 4;

struct light_sign {
  port_light light;
  char letter;
  std::string_view text;
  std::optional<severity> mark;
};

// clang-format off
constexpr light_sign kSigns[] = {
    {port_light::up,             'U', "up",                    severity::normal},
    {port_light::down,           'D', "down",                  severity::warning},
    {port_light::admin_down,     'A', "administratively down", severity::off},
    {port_light::error_disabled, 'E', "error-disabled",        severity::alarm},
    {port_light::unknown,        '?', "not known",             std::nullopt},
};
// clang-format on

const light_sign& sign_of(port_light light) {
  return *std::find_if(std::begin(kSigns), std::end(kSigns),
                       [light](const light_sign& it) { return it.light == light; });
}

struct frame_characters {
  std::string_view horizontal, vertical;
  std::string_view top[3], bottom[3];  // left, between cells, right
};

constexpr frame_characters kAscii = {"-", "|", {"+", "+", "+"}, {"+", "+", "+"}};
constexpr frame_characters kBox = {"─", "│", {"┌", "┬", "┐"}, {"└", "┴", "┘"}};

// The layout of the cells of a front.
struct layout {
  std::size_t digits;       // of the largest number
  std::size_t cell;         // characters between two bars
  uint32 ports_of_a_group;  // even
  std::size_t groups_of_a_line;

  std::size_t cells_of_a_group() const { return ports_of_a_group / 2; }
};

layout layout_of(const front_panel& front, const panel_style& style) {
  layout made{};
  made.digits = std::max<std::size_t>(2, std::to_string(front.ports.rbegin()->first).size());
  made.cell = made.digits + 1;
  const std::size_t bar = 1;
  const std::size_t usual = kPortsOfAGroup / 2;
  const std::size_t fitting = style.columns == 0 ? usual : (style.columns - bar) / (made.cell + bar);
  made.ports_of_a_group = static_cast<uint32>(2 * std::clamp<std::size_t>(fitting, 1, usual));
  const std::size_t width = made.cells_of_a_group() * (made.cell + bar) + bar;
  const std::size_t blank = 1;
  made.groups_of_a_line =
      style.columns == 0 ? kMostGroupsOfALine
                         : std::clamp<std::size_t>((style.columns + blank) / (width + blank), 1, kMostGroupsOfALine);
  return made;
}

// Ports of a frame: the first is odd.
struct port_group {
  uint32 first;
  std::size_t cells;  // in a row
};

std::vector<port_group> groups_of(const front_panel& front, const layout& by) {
  std::vector<port_group> groups;
  const uint32 last = front.ports.rbegin()->first;
  for (uint32 first = 1; first <= last; first += by.ports_of_a_group) {
    const auto port = front.ports.lower_bound(first);
    if (port == front.ports.end() || port->first >= first + by.ports_of_a_group) continue;
    const std::size_t cells = std::min<std::size_t>(by.cells_of_a_group(), (last - first) / 2 + 1);
    groups.push_back({first, cells});
  }
  return groups;
}

void append_edge(panel_line& line, const port_group& group, const layout& by, const frame_characters& with,
                 const std::string_view (&corners)[3]) {
  for (std::size_t cell = 0; cell < group.cells; ++cell) {
    line.text += corners[cell == 0 ? 0 : 1];
    for (std::size_t i = 0; i < by.cell; ++i) line.text += with.horizontal;
  }
  line.text += corners[2];
}

void append_cell(panel_line& line, uint32 number, port_light light, const layout& by, bool has_colours) {
  const light_sign& sign = sign_of(light);
  const std::string digits = std::to_string(number);
  line.text.append(by.digits - digits.size(), ' ');
  const std::size_t begin = line.text.size();
  line.text += digits;
  if (has_colours && sign.mark) line.marks.push_back({begin, line.text.size(), *sign.mark});
  line.text += has_colours && sign.mark ? ' ' : sign.letter;
}

// Every second port from `first`.
void append_row(panel_line& line, const front_panel& front, uint32 first, const port_group& group, const layout& by,
                const frame_characters& with, bool has_colours) {
  for (std::size_t cell = 0; cell < group.cells; ++cell) {
    line.text += with.vertical;
    const auto port = front.ports.find(first + static_cast<uint32>(2 * cell));
    if (port == front.ports.end())
      line.text.append(by.cell, ' ');
    else
      append_cell(line, port->first, port->second, by, has_colours);
  }
  line.text += with.vertical;
}

std::string title_of(const front_panel& front) {
  const std::string place = front.unit == 0 ? fmt::format("Module {}", front.module)
                                            : fmt::format("Module {} of unit {}", front.module, front.unit);
  return front.model.empty() ? place : fmt::format("{}: {}", place, front.model);
}

}  // namespace

std::vector<panel_line> lines_of(const front_panel& front, const panel_style& style) {
  std::vector<panel_line> lines = {{title_of(front)}};
  if (front.ports.empty()) return lines;
  const frame_characters& with = style.has_box_characters ? kBox : kAscii;
  const layout by = layout_of(front, style);
  const std::vector<port_group> groups = groups_of(front, by);
  for (std::size_t first = 0; first < groups.size(); first += by.groups_of_a_line) {
    panel_line top, odd, even, bottom;
    for (std::size_t i = first; i < std::min(first + by.groups_of_a_line, groups.size()); ++i) {
      if (i != first)
        for (panel_line* const line : {&top, &odd, &even, &bottom}) line->text += ' ';
      append_edge(top, groups[i], by, with, with.top);
      append_row(odd, front, groups[i].first, groups[i], by, with, style.has_colours);
      append_row(even, front, groups[i].first + 1, groups[i], by, with, style.has_colours);
      append_edge(bottom, groups[i], by, with, with.bottom);
    }
    for (panel_line* const line : {&top, &odd, &even, &bottom}) lines.push_back(std::move(*line));
  }
  return lines;
}

panel_line legend(const panel_style& style) {
  panel_line line;
  for (const light_sign& sign : kSigns) {
    const bool is_coloured = style.has_colours && sign.mark;
    if (!line.text.empty()) line.text += is_coloured ? "  " : ", ";
    if (!is_coloured) line.text.append(1, sign.letter).append(" ");
    const std::size_t begin = line.text.size();
    line.text += sign.text;
    if (is_coloured) line.marks.push_back({begin, line.text.size(), *sign.mark});
  }
  return line;
}

}  // namespace host
