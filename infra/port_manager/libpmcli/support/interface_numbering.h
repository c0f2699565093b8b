// The numbers by which the interfaces of a kind differ.
#pragma once

#include "platform/if_index.h"

namespace pmcli {

// How such a number is read from an index, and how it is replaced in one. Both return 0 or a system error.
struct interface_numbering {
  int32 (*get)(if_index_t if_index, uint32* number);
  int32 (*set)(if_index_t* if_index, uint32 number);
};

// Null for a kind whose interfaces have no such number.
const interface_numbering* numbering_of(if_index_type_t kind);

}  // namespace pmcli
