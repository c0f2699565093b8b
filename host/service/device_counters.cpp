#include "service/device_counters.h"

using namespace host;

namespace {

struct counter_member {
  be32 pm_proc_net_dev_stats_t::*member;
  uint64 device_counters::*counter;
};

using record = pm_proc_net_dev_stats_t;
constexpr counter_member kMembers[] = {
    {&record::rx_packets, &device_counters::rx_packets},
    {&record::tx_packets, &device_counters::tx_packets},
    {&record::rx_bytes, &device_counters::rx_bytes},
    {&record::tx_bytes, &device_counters::tx_bytes},
    {&record::rx_errors, &device_counters::rx_errors},
    {&record::tx_errors, &device_counters::tx_errors},
    {&record::rx_dropped, &device_counters::rx_dropped},
    {&record::tx_dropped, &device_counters::tx_dropped},
    {&record::rx_multicast, &device_counters::rx_multicast},
    {&record::rx_compressed, &device_counters::rx_compressed},
    {&record::tx_compressed, &device_counters::tx_compressed},
    {&record::rx_frame_errors, &device_counters::rx_frame_errors},
    {&record::rx_fifo_errors, &device_counters::rx_fifo_errors},
    {&record::tx_carrier_errors, &device_counters::tx_carrier_errors},
    {&record::tx_fifo_errors, &device_counters::tx_fifo_errors},
    {&record::tx_collisions, &device_counters::tx_collisions},
};

}  // namespace

pm_proc_net_dev_stats_t host::device_record(const device_counters& counted) {
  pm_proc_net_dev_stats_t made{};
  for (const auto& [member, counter] : kMembers) made.*member = in_32_bits(counted.*counter);
  return made;
}
