// Traffic of an interface as a switch file describes it, and the statistics that follow from it.
#pragma once

#include <optional>

#include "switch/model.h"

namespace host {

// One direction: a steady rate, and totals that hold instead of those that follow from the rate.
struct traffic_flow {
  uint64 rate_kbps = 0;
  uint32 packet_bytes = 512;
  uint32 multicast_percent_thousandths = 0;
  uint32 broadcast_percent_thousandths = 0;
  std::optional<uint64> bytes;
  std::optional<uint64> unicast_packets;
  std::optional<uint64> multicast_packets;
  std::optional<uint64> broadcast_packets;
  uint64 errors = 0;
  uint64 discards = 0;
};

struct traffic_plan {
  std::optional<uint32> uptime_sec;  // how long the traffic has been flowing
  traffic_flow in;
  traffic_flow out;
  error_counters errors;
};

// The statistics after `counted_sec` seconds of this traffic.
statistics follow_traffic(const traffic_plan& plan, uint32 counted_sec);

}  // namespace host
