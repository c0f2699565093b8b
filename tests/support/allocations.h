// Allocations by "new" in this program: counted, and made to fail.
#pragma once

#include <cstddef>

namespace pmcli_test {

// Since the program began.
std::size_t num_allocations();

// While one lives, an allocation fails: the one that comes after `spared` others, once.
class failing_allocation {
 public:
  explicit failing_allocation(std::size_t spared);
  ~failing_allocation();
  failing_allocation(const failing_allocation&) = delete;
  failing_allocation& operator=(const failing_allocation&) = delete;

  bool has_failed() const;
};

}  // namespace pmcli_test
