#include <algorithm>

#include "service/answers.h"

namespace host {

interface_run find_range(const range_request& range) {
  const if_index_t low = range.low;
  const if_index_t high = range.high;
  if_index_type_t low_type = IF_TYPE_NONE;
  if_index_type_t high_type = IF_TYPE_NONE;
  if_index_get_type(low, &low_type);
  if_index_get_type(high, &high_type);
  if (low > high || low_type != high_type) return {PM_ERR_INVALID_RANGE, {}};

  auto& all = the_machine().interfaces;
  if (low == high) {
    interface* const found = the_machine().find(low);
    return found == nullptr ? interface_run{PM_ERR_NO_SUCH_INTERFACE, {}} : interface_run{0, {found, 1}};
  }
  const auto first = std::lower_bound(all.begin(), all.end(), low,
                                      [](const interface& it, if_index_t bound) { return it.if_index < bound; });
  const auto last = std::upper_bound(first, all.end(), high,
                                     [](if_index_t bound, const interface& it) { return bound < it.if_index; });
  if (first == last) return {PM_ERR_NO_SUCH_INTERFACE, {}};
  return {0, {first, last}};
}

}  // namespace host
