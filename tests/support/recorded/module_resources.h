// The resources of modules.
#pragma once

#include <vector>

#include "platform/module_resources.h"
#include "support/recorded/octets.h"

namespace pmcli_test {

struct recorded_module_resources {
  octets resources;  // payload of pm_get_module_resources()
  struct resource_query {
    mts_q_handle_t q;
    uint32 count, category, id, types, module_key;
    bool operator==(const resource_query&) const = default;
  };
  std::vector<resource_query> resource_queries;
};

}  // namespace pmcli_test
