#include <bit>

#include "pmcli/command.h"

uint32 ipmask_to_len(uint32 mask) { return static_cast<uint32>(std::countl_one(mask)); }
