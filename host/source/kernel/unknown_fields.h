// What the kernel does not tell of an interface, by the names that the fields have in the structured form.
#pragma once

#include <string_view>
#include <vector>

#include "source/kernel/device_map.h"

namespace host {

// Whether nothing tells the value of a field of this interface (machine::is_unknown); without an interface whether that
// may be so of some interface. Counters are looked for among those of drivers.
bool is_unknown_field(if_index_t if_index, std::string_view field);

// Takes note of what is told of the devices that a command begins with.
void note_told_fields(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped);

}  // namespace host
