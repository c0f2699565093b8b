// Answers of the service of interface values for the current interface, requested once and only when needed.
#pragma once

#include <optional>
#include <vector>

#include "messages/calls/interface_values.h"
#include "messages/property.h"
#include "platform/if_index.h"

namespace host {

class interface_answers {
 public:
  // `asked`: the properties of the display. `hides_traffic`: the user may not see counters and rates.
  interface_answers(std::vector<property> asked, bool hides_traffic);

  // The interface of the next requests; 0: none.
  void begin(if_index_t if_index);

  // Whether the interface's value is unknown: the source cannot supply it, or the user may not read it.
  bool is_unknown(property of);

  // All values of the display; nothing when the service failed, which is noted. Those of traffic are absent when the
  // user may not see them.
  std::optional<std::vector<interface_value>> values();

 private:
  bool knows_all();

  std::vector<property> asked_;
  bool hides_traffic_;
  if_index_t if_index_ = 0;
  std::optional<bool> knows_all_;          // of the source
  std::optional<unknown_answer> unknown_;  // of the interface
  std::optional<values_answer> all_;       // owns the bytes of values()
};

}  // namespace host
