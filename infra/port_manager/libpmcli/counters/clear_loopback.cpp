// Clearing counters of loopbacks.

#include <cstdio>
#include <functional>

#include "counters/clear_targets.h"
#include "platform/clear_counters.h"
#include "platform/ip_statistics.h"
#include "pmcli/clear.h"
#include "support/library_messages.h"
#include "support/listing.h"

using namespace pmcli;

namespace {

// The IP statistics library, which clears one loopback after the other.
class loopback_clearer {
 public:
  // A missing library is not reported, a missing function is.
  loopback_clearer() : library_(IP_STATS_LIBRARY, RTLD_LAZY) {
    constexpr char kSymbol[] = "ip_clear_loopback_counters";
    if (!library_) return;
    const auto clear = library_.find<ip_clear_loopback_counters_fn>(kSymbol);
    if (clear)
      clear_ = clear.function;
    else
      print_function_not_found(clear.error, kSymbol);
  }

  explicit operator bool() const { return clear_ != nullptr; }

  void operator()(if_index_t if_index) const {
    if (clear_(0, if_index) != 1) std::puts("error: clearing counters");  // 1 is success here
  }

 private:
  service_library library_;
  ip_clear_loopback_counters_fn clear_ = nullptr;
};

}  // namespace

void pm_cli_clear_all_loopback_counters(mts_q_handle_t q) {
  message answer(q);
  if (request_listing(IF_TYPE_LOOPBACK, q, &answer) != 0) return;
  const loopback_clearer clear;
  if (clear) interface_listing(answer.ref()).for_each(clear);
}

void pm_cli_loopback_clear_counters(paraminfo_t* param) {
  if (param == nullptr) return;
  const auto ranges = find_ranges(param);
  if (!ranges || ranges->empty()) return;
  const loopback_clearer clear;
  if (!clear) return;
  for (const vsh_intf_mono_range_t& range : *ranges) for_each_interface(range, std::cref(clear));
}
