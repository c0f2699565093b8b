// Transceivers, from the pages of their memory. A page may be short or wrong: missing bytes are 0.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "source/kernel/ethtool.h"

namespace host {

// Reads a page; as many bytes as there are, at most kModulePageBytes.
using page_reader = std::function<std::vector<uint8>(const module_place&)>;

// The module with its identity page in the layout of an SFP's; nothing without one. A module of another layout is not
// supported, and its page empty.
std::optional<transceiver> read_module(const page_reader& read);

// Its diagnostics, measured now. Of a module with several lanes they are those of the first.
void read_module_diagnostics(const page_reader& read, transceiver& module);

}  // namespace host
