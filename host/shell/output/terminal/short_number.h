// Short forms of large numbers.
#pragma once

#include <string>

#include "platform/types.h"

namespace host {

// Three digits and a decimal prefix, rounded, without zeros at the end of a fraction: "950", "255k", "1.84G".
std::string short_number(uint64 number);

}  // namespace host
