// Texts of system errors.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/syserr.h"

namespace pmcli_test {

struct recorded_syserr {
  std::map<syserr_t, std::optional<std::string>> syserr_texts;  // no text: null; without an entry: "<system error HEX>"
};

}  // namespace pmcli_test
