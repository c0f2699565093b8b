// What became of the counters that a command asked to be cleared, as the services answered.
#pragma once

#include <string_view>
#include <vector>

#include "platform/if_index.h"
#include "platform/syserr.h"

namespace host {

struct clear_result {
  if_index_t low, high;      // the interfaces of the request, bounds included
  std::string_view service;  // that was asked, such as "the port manager"
  syserr_t error;            // 0: they are cleared

  bool operator==(const clear_result&) const = default;
};

// The port manager or the statistics service, by its access point, answered a request.
void note_clear(uint32 sap, if_index_t low, if_index_t high, syserr_t error);

// What was noted since the last call of take_clear_results().
const std::vector<clear_result>& noted_clear_results();
std::vector<clear_result> take_clear_results();

}  // namespace host
