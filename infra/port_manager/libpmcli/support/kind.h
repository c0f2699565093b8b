// Kinds of interface.
#pragma once

#include "platform/if_index.h"

namespace pmcli {

// The kind of an interface; IF_TYPE_NONE when it cannot be read.
inline if_index_type_t kind_of(if_index_t if_index) {
  if_index_type_t kind = IF_TYPE_NONE;
  if_index_get_type(if_index, &kind);
  return kind;
}

}  // namespace pmcli
