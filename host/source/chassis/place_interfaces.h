// From the ranges of a switch file to single interfaces.
#pragma once

#include <string>
#include <vector>

#include "source/chassis/schema.h"

namespace host {

// One interface and the entry that describes it.
struct placed_interface {
  if_index_t if_index;
  std::size_t entry;  // position among the entries
};

// All interfaces of the entries, sorted by index. Throws yaml_file_error for ranges that no switch has and for
// interfaces that are described twice.
std::vector<placed_interface> place_interfaces(const std::vector<interface_draft>& entries, const std::string& path);

}  // namespace host
