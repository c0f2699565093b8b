// How long services took to answer the requests of shells.
#pragma once

#include <array>
#include <chrono>
#include <vector>

#include "daemon/metrics/exposition.h"
#include "transport/transport.h"

namespace host {

class request_times {
 public:
  // One request of a service of all_services().
  void note(const service& asked, std::chrono::nanoseconds took);

  // A histogram for each service, with these labels.
  void write(std::string_view labels, exposition& to) const;

 private:
  static constexpr std::size_t kNumBounds = 6;

  struct histogram {
    std::array<uint64, kNumBounds + 1> counts{};  // by the first bound that holds; the last one is for longer requests
    uint64 sum_ns = 0;
  };

  std::vector<histogram> of_services_;  // in the order of all_services(); empty before the first request
};

// Of this process.
request_times& the_request_times();

}  // namespace host
