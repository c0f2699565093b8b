#include "source/chassis/traffic.h"

namespace host {
namespace {

constexpr uint32 kSampleSeconds = 60;
constexpr uint64 kWholeInThousandths = 100'000;  // of a percent

struct flow_rate {
  uint64 bytes_per_second;
  uint64 packets_per_second;
};

flow_rate rate_of(const traffic_flow& flow) {
  const uint64 bytes_per_second = flow.rate_kbps * 125;
  return {bytes_per_second, bytes_per_second / flow.packet_bytes};
}

traffic_counters totals_of(const traffic_flow& flow, uint32 counted_sec) {
  const auto [bytes_per_second, packets_per_second] = rate_of(flow);
  const uint64 packets = packets_per_second * counted_sec;
  const uint64 multicast = packets * flow.multicast_percent_thousandths / kWholeInThousandths;
  const uint64 broadcast = packets * flow.broadcast_percent_thousandths / kWholeInThousandths;
  return {.bytes = flow.bytes.value_or(bytes_per_second * counted_sec),
          .unicast_packets = flow.unicast_packets.value_or(packets - multicast - broadcast),
          .multicast_packets = flow.multicast_packets.value_or(multicast),
          .broadcast_packets = flow.broadcast_packets.value_or(broadcast),
          .errors = flow.errors,
          .discards = flow.discards};
}

}  // namespace

statistics follow_traffic(const traffic_plan& plan, uint32 counted_sec) {
  const flow_rate in = rate_of(plan.in);
  const flow_rate out = rate_of(plan.out);
  statistics stats;
  stats.in = totals_of(plan.in, counted_sec);
  stats.out = totals_of(plan.out, counted_sec);
  stats.errors = plan.errors;
  stats.in_bytes_per_second = in.bytes_per_second;
  stats.out_bytes_per_second = out.bytes_per_second;
  stats.in_packets_per_second = in.packets_per_second;
  stats.out_packets_per_second = out.packets_per_second;

  // The ring goes back from the totals at the given rates. Differences of samples count, so that totals which are
  // smaller than the traffic of the last minutes may wrap.
  stats.rate_index = counted_sec / kSampleSeconds % static_cast<uint32>(stats.rate_ring.size());
  for (uint32 age = 0; age < stats.rate_ring.size(); ++age) {
    const uint64 seconds_ago = uint64{age} * kSampleSeconds;
    rate_sample& sample = stats.rate_ring[(stats.rate_index - 1 - age) % stats.rate_ring.size()];
    sample.in_bytes = stats.in.bytes - in.bytes_per_second * seconds_ago;
    sample.out_bytes = stats.out.bytes - out.bytes_per_second * seconds_ago;
    sample.in_frames = static_cast<uint32>(stats.in.packets() - in.packets_per_second * seconds_ago);
    sample.out_frames = static_cast<uint32>(stats.out.packets() - out.packets_per_second * seconds_ago);
  }
  return stats;
}

}  // namespace host
