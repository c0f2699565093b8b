// Hardware addresses of interfaces that have none in their file.
#pragma once

#include "switch/model.h"

namespace host {

// The address of an interface, counted from the base address of its switch. Sub-interfaces have their parent's.
mac_address hardware_address(const mac_address& base, if_index_t if_index);

}  // namespace host
