// The headers of tabular displays: rules and column lines, plain text without tagged values.
#pragma once

#include <span>

#include "platform/cmd_channel.h"

namespace pmcli {

// One column line: a format of left-aligned, cut fields, and their labels; unused ones stay null.
struct header_line {
  const char* format;
  const char* labels[8];
};

// An empty line, a rule of 80 dashes, the column lines, a rule.
void print_framed_header(cmd_rx_handle_t* rx, std::span<const header_line> lines);

// An empty line, a rule of 79 dashes, the column lines, a rule.
void print_short_header(cmd_rx_handle_t* rx, std::span<const header_line> lines);

}  // namespace pmcli
