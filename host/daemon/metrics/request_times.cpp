#include "daemon/metrics/request_times.h"

#include <iterator>

#include "service/services.h"

namespace host {
namespace {

struct bound {
  std::chrono::nanoseconds longest;
  std::string_view seconds;
};
constexpr bound kBounds[] = {
    {std::chrono::microseconds(10), "1e-05"}, {std::chrono::microseconds(100), "0.0001"},
    {std::chrono::milliseconds(1), "0.001"},  {std::chrono::milliseconds(10), "0.01"},
    {std::chrono::milliseconds(100), "0.1"},  {std::chrono::seconds(1), "1.0"},
};

std::size_t bucket_of(std::chrono::nanoseconds took) {
  std::size_t bucket = 0;
  while (bucket < std::size(kBounds) && took > kBounds[bucket].longest) ++bucket;
  return bucket;
}

}  // namespace

void request_times::note(const service& asked, std::chrono::nanoseconds took) {
  static_assert(std::size(kBounds) == kNumBounds);
  of_services_.resize(all_services().size());
  histogram& of_service = of_services_[static_cast<std::size_t>(&asked - all_services().data())];
  ++of_service.counts[bucket_of(took)];
  of_service.sum_ns += static_cast<uint64>(took.count());
}

void request_times::write(std::string_view labels, exposition& to) const {
  static const metric_family kFamily = {"pmshd_request_duration_seconds", metric_type::histogram, "seconds",
                                        "Time that a service took to answer a request of a shell"};
  to.begin(kFamily);
  decimal_buffer digits;
  for (std::size_t i = 0; i < all_services().size(); ++i) {
    const histogram of_service = i < of_services_.size() ? of_services_[i] : histogram{};
    std::string own(labels);
    append_label(own, "service", all_services()[i].name);
    uint64 count = 0;
    for (std::size_t bucket = 0; bucket <= kNumBounds; ++bucket) {
      count += of_service.counts[bucket];
      std::string limit;
      append_label(limit, "le", bucket < kNumBounds ? kBounds[bucket].seconds : "+Inf");
      to.part("_bucket", own, decimal_text(static_cast<int64_t>(count), 0, digits), limit);
    }
    to.part("_count", own, decimal_text(static_cast<int64_t>(count), 0, digits));
    to.part("_sum", own, decimal_text(static_cast<int64_t>(of_service.sum_ns), 9, digits));
  }
}

request_times& the_request_times() {
  static request_times times;
  return times;
}

}  // namespace host
