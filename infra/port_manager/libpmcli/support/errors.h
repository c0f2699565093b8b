// Texts of system errors.
#pragma once

#include "platform/syserr.h"

namespace pmcli {

// Never null: a code without a text prints as empty.
inline const char* system_error_text(syserr_t error) {
  const char* const text = syserr2str(error);
  return text != nullptr ? text : "";
}

}  // namespace pmcli
