// What the kernel does not tell of an interface, by the names that the fields have in the structured form.
#pragma once

#include <string_view>

#include "source/kernel/details.h"

namespace host {

// A device of which a field may be told.
struct told_device {
  if_index_t if_index = 0;
  const interface* port = nullptr;  // in the model
  bool has_rates = false;           // averages need a second reading
  device_details& details;
};

// Whether nothing tells the value of a field of a device; without an interface, whether that may be so of some device.
// Counters are looked for among those of drivers.
bool is_unknown_field(const told_device& device, std::string_view field);

}  // namespace host
