// Bytes that travel.
#pragma once

#include <vector>

#include "platform/types.h"

namespace pmcli_test {

using octets = std::vector<uint8>;

}  // namespace pmcli_test
