// Interfaces as ranges: what follows each other is one.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/if_index.h"

namespace host {

// The first and the last of interfaces of one kind and subtype whose numbers follow each other: so do their indexes.
struct number_run {
  if_index_t first;
  if_index_t last;
};

// Whether two interfaces may be in one run: the number of the second follows that of the first.
bool is_next(if_index_t first, if_index_t second);

// The runs in some interfaces, in their order. A sub-interface is a run of its own.
std::vector<number_run> runs_of(std::span<const if_index_t> interfaces);

// Ranges as the shell reads them: "ethernet 1/1-4, ethernet 1/7". Both ends of a run may be sub-interfaces of a port:
// "ethernet 1/1.5-9".
std::string range_text(const number_run& run);
std::string range_text(std::span<const if_index_t> interfaces);

// Interfaces by their full names: "Ethernet1/1-4, Ethernet1/7".
std::string names_text(std::span<const if_index_t> interfaces);

}  // namespace host
