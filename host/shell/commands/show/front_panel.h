// The front of a module as a picture of characters.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "platform/types.h"
#include "shell/output/chain/line.h"

namespace host {

enum class port_light : uint8 { unknown, up, down, admin_down, error_disabled };

struct front_panel {
  uint32 unit = 0;  // satellite; 0: the switch itself
  uint32 module = 0;
  std::string model;  // printable; empty: unknown, or not the same for all ports
  std::map<uint32, port_light> ports;
};

struct panel_style {
  std::size_t columns = 0;  // of the terminal; 0: lines of any width
  bool has_colours = false;
  bool has_box_characters = false;
};

struct panel_line {
  std::string text;
  std::vector<line_mark> marks = {};
};

// A title, then frames of twelve ports, odd numbers on top, up to four side by side if they fit. Groups of twelve
// without ports are omitted. Without colours a letter after the number is the state.
std::vector<panel_line> lines_of(const front_panel& front, const panel_style& style);

// The meaning of colours and letters.
panel_line legend(const panel_style& style);

}  // namespace host
