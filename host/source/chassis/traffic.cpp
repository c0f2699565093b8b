#include "source/chassis/traffic.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "platform/port_manager.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr uint32 kSampleSeconds = 60;
constexpr uint32 kUsualAverageSeconds = 30;
constexpr uint32 kManagementAverageSeconds = 60;
constexpr uint64 kWhole = 100'000;  // 100 percent in thousandths of a percent
constexpr uint64 kGapBytes = 20;    // preamble and gap between two packets on a line
constexpr uint64 kMillion = 1'000'000;

struct speed {
  uint64 bytes_per_second = 0;
  uint64 packets_per_second = 0;
};

// Thousandths of a percent of a byte.
uint64 mean_size(const traffic_flow& flow) {
  return std::accumulate(flow.sizes.begin(), flow.sizes.end(), uint64{0}, [](uint64 sum, const packet_share& it) {
    return sum + uint64{it.bytes} * it.percent_thousandths;
  });
}

speed of_packets(uint64 packets_per_second, uint64 mean) {
  return {packets_per_second * mean / kWhole, packets_per_second};
}

speed speed_of(const traffic_rate& rate, uint64 mean, uint64 line_kbps) {
  if (rate.unit == rate_unit::packets) return of_packets(rate.value, mean);
  if (rate.unit == rate_unit::line_rate) {
    const uint64 bits_per_second = line_kbps * rate.value / 100;
    return of_packets(bits_per_second * kWhole / (8 * (mean + kGapBytes * kWhole)), mean);
  }
  const uint64 bytes_per_second = rate.value * 125;
  return {bytes_per_second, bytes_per_second * kWhole / mean};
}

// All traffic since 1970, modulo 2^64. Only differences are meaningful.
struct position {
  uint64 bytes = 0;
  uint64 packets = 0;
};

// One direction on its line.
struct course {
  speed steady;
  speed burst;
  uint32 burst_period_sec = 1;
  uint32 burst_length_sec = 0;

  position at(uint32 moment_sec) const {
    if (burst_length_sec == 0) return {steady.bytes_per_second * moment_sec, steady.packets_per_second * moment_sec};
    const uint64 bursting_sec = uint64{moment_sec / burst_period_sec} * burst_length_sec +
                                std::min(moment_sec % burst_period_sec, burst_length_sec);
    return {steady.bytes_per_second * moment_sec + burst.bytes_per_second * bursting_sec,
            steady.packets_per_second * moment_sec + burst.packets_per_second * bursting_sec};
  }
};

course course_of(const traffic_flow& flow, uint64 line_kbps) {
  const uint64 mean = mean_size(flow);
  course made{.steady = speed_of(flow.rate, mean, line_kbps), .burst = {}};
  if (!flow.burst) return made;
  made.burst = speed_of(flow.burst->rate, mean, line_kbps);
  made.burst_period_sec = flow.burst->period_sec;
  made.burst_length_sec = flow.burst->length_sec;
  return made;
}

// Of every `period` packets in a row, those from the `first` on, `length` of them: how many of the first `packets`.
struct turn {
  uint64 first;
  uint64 length;
  uint64 period;

  uint64 among(uint64 packets) const {
    return packets / period * length + std::clamp(packets % period, first, first + length) - first;
  }
};

uint64 per_million_of(uint64 packets, uint64 parts) {
  return packets / kMillion * parts + packets % kMillion * parts / kMillion;
}

// The traffic between two times, by kind.
struct passage {
  position from;
  position to;

  uint64 bytes() const { return to.bytes - from.bytes; }
  uint64 packets() const { return to.packets - from.packets; }
  uint64 of(const turn& kind) const { return kind.among(to.packets) - kind.among(from.packets); }
  uint64 per_million(uint64 parts) const {
    return per_million_of(to.packets, parts) - per_million_of(from.packets, parts);
  }
};

// A time before another one, but not before 1970.
uint32 before(uint32 moment_sec, uint32 seconds) { return moment_sec - std::min(moment_sec, seconds); }

std::size_t size_class_of(uint32 bytes) {
  const auto found = std::lower_bound(kLargestOfSizeClass.begin(), kLargestOfSizeClass.end(), bytes);
  return static_cast<std::size_t>(found - kLargestOfSizeClass.begin());
}

void add_by_size(const traffic_flow& flow, const passage& passed, size_classes& counted) {
  uint64 period = kWhole;
  for (const packet_share& it : flow.sizes) period = std::gcd(period, uint64{it.percent_thousandths});
  uint64 first = 0;
  for (const packet_share& it : flow.sizes) {
    const uint64 length = it.percent_thousandths / period;
    counted[size_class_of(it.bytes)] += passed.of({first, length, kWhole / period});
    first += length;
  }
}

void add_flow(const traffic_flow& flow, const passage& passed, traffic_counters& counted) {
  const uint64 unit = std::gcd(std::gcd(kWhole, uint64{flow.multicast_percent_thousandths}),
                               uint64{flow.broadcast_percent_thousandths});
  const uint64 period = kWhole / unit;
  const uint64 multicast = flow.multicast_percent_thousandths / unit;
  const uint64 broadcast = flow.broadcast_percent_thousandths / unit;
  const uint64 unicast = period - multicast - broadcast;
  counted.bytes += passed.bytes();
  counted.packets += passed.packets();
  counted.unicast_packets += passed.of({0, unicast, period});
  counted.multicast_packets += passed.of({unicast, multicast, period});
  counted.broadcast_packets += passed.of({unicast + multicast, broadcast, period});
  counted.discards += passed.per_million(flow.discards_per_million);
  add_by_size(flow, passed, counted.packets_by_size);
}

const error_kind& kind_of(const error_source& source) {
  return *std::find_if(std::begin(kErrorKinds), std::end(kErrorKinds),
                       [&](const error_kind& it) { return it.counter == source.counter; });
}

// The traffic of both directions.
struct both_ways {
  passage in;
  passage out;
};

void add_errors(const traffic_plan& plan, const both_ways& passed, statistics& stats) {
  for (const error_source& source : plan.errors) {
    const error_kind& kind = kind_of(source);
    const uint64 more = (kind.is_sent ? passed.out : passed.in).per_million(source.per_million);
    stats.errors.*source.counter += more;
    if (kind.is_error) (kind.is_sent ? stats.out : stats.in).errors += more;
  }
}

void add_passage(const traffic_plan& plan, const both_ways& passed, statistics& stats) {
  add_flow(plan.in, passed.in, stats.in);
  add_flow(plan.out, passed.out, stats.out);
  add_errors(plan, passed, stats);
}

void put_totals(const traffic_flow& flow, traffic_counters& counted) {
  const auto put = [](const std::optional<uint64>& given, counter& to) {
    if (given) to = *given;
  };
  const bool has_packets = flow.unicast_packets || flow.multicast_packets || flow.broadcast_packets;
  put(flow.bytes, counted.bytes);
  put(flow.unicast_packets, counted.unicast_packets);
  put(flow.multicast_packets, counted.multicast_packets);
  put(flow.broadcast_packets, counted.broadcast_packets);
  put(flow.errors, counted.errors);
  put(flow.discards, counted.discards);
  if (!has_packets) return;
  counted.packets = counted.unicast_packets + counted.multicast_packets + counted.broadcast_packets;
  counted.packets_by_size.fill(0);
  add_by_size(flow, {{}, {0, *counted.packets}}, counted.packets_by_size);
}

// Totals of a file replace computed ones; its single error counters add to the errors of their direction, unless it
// gives those, too.
void put_given_totals(const traffic_plan& plan, statistics& stats) {
  for (const error_source& source : plan.errors) {
    if (!source.start) continue;
    const error_kind& kind = kind_of(source);
    if (kind.is_error) (kind.is_sent ? stats.out : stats.in).errors += *source.start - *(stats.errors.*source.counter);
    stats.errors.*source.counter = *source.start;
  }
  put_totals(plan.in, stats.in);
  put_totals(plan.out, stats.out);
}

// Received and sent traffic of an interface, which stop while there is no link.
class line_in_use {
 public:
  line_in_use(const interface& port, uint32 now_sec) {
    const traffic_source& source = *port.traffic;
    in_ = course_of(source.plan->in, source.line_kbps);
    out_ = course_of(source.plan->out, source.line_kbps);
    bool is_up = source.is_up;
    uint32 from = 0;
    const auto change_to = [&](bool up, uint32 at_sec) {
      if (is_up && !up) flowing_.push_back({from, at_sec});
      if (is_up != up) from = at_sec;
      is_up = up;
    };
    for (const interface::link_change& change : port.link_changes)
      change_to(change.state == PM_PORT_STATE_UP, change.at_sec);
    change_to(port.oper_state == PM_PORT_STATE_UP,
              std::clamp(port.link_change_sec.value_or(0), source.started_sec, now_sec));
    if (is_up) flowing_.push_back({from, UINT32_MAX});
  }

  both_ways between(uint32 from_sec, uint32 to_sec) const {
    return {{at(in_, from_sec), at(in_, to_sec)}, {at(out_, from_sec), at(out_, to_sec)}};
  }

 private:
  // Seconds in which there was a link, the end not included.
  struct stretch {
    uint32 from_sec;
    uint32 until_sec;
  };

  position at(const course& along, uint32 moment_sec) const {
    position passed = flowing_.empty() ? position{} : along.at(flowing_.front().from_sec);
    for (const stretch& it : flowing_) {
      const position begin = along.at(it.from_sec);
      const position end = along.at(std::clamp(moment_sec, it.from_sec, it.until_sec));
      passed.bytes += end.bytes - begin.bytes;
      passed.packets += end.packets - begin.packets;
    }
    return passed;
  }

  course in_;
  course out_;
  std::vector<stretch> flowing_;
};

void take_averages(const both_ways& passed, uint32 seconds, statistics& stats) {
  stats.in_bytes_per_second = passed.in.bytes() / seconds;
  stats.in_packets_per_second = passed.in.packets() / seconds;
  stats.out_bytes_per_second = passed.out.bytes() / seconds;
  stats.out_packets_per_second = passed.out.packets() / seconds;
}

// A sample for each whole minute since the start. Differences of samples count: those from before the counters began
// to count go on below 0, so that rates do not change when counters are cleared.
void fill_ring(const line_in_use& line, uint32 started_sec, uint32 now_sec, statistics& stats) {
  const uint32 minutes = (now_sec - started_sec) / kSampleSeconds;
  const uint32 newest_sec = started_sec + minutes * kSampleSeconds;
  rate_samples& ring = stats.rate_ring.emplace();
  const auto slots = static_cast<uint32>(ring.samples.size());
  ring.next = (minutes + 1) % slots;
  for (uint32 age = 0; age < slots; ++age) {
    const both_ways since = line.between(before(newest_sec, age * kSampleSeconds), now_sec);
    ring.samples[(minutes - age) % slots] = {*stats.in.bytes - since.in.bytes(), *stats.out.bytes - since.out.bytes(),
                                             static_cast<uint32>(*stats.in.packets - since.in.packets()),
                                             static_cast<uint32>(*stats.out.packets - since.out.packets())};
  }
}

// On a trunk all packets are trunk packets.
void count_trunk_packets(interface& port) {
  const bool is_trunk = port.oper_mode == PM_PORT_MODE_TRUNK;
  for (traffic_counters* const it : {&port.stats.in, &port.stats.out})
    it->trunk_packets = is_trunk ? it->packets : counter(0);
}

// The statistics of an interface that has no traffic.
void stand_still(statistics& stats) {
  set_totals_to_zero(stats);
  take_averages({}, 1, stats);
  stats.rate_ring.emplace();
}

}  // namespace

bool follow_traffic(interface& port, uint32 now_sec) {
  const bool is_management = decode_index(port.if_index).type == IF_TYPE_MGMT;
  if (port.traffic == nullptr) {
    stand_still(port.stats);
    return !is_management;
  }
  const traffic_source& source = *port.traffic;
  statistics& stats = port.stats;
  const uint32 since_sec = stats.is_cleared_here ? stats.last_clear_sec : source.started_sec;
  now_sec = std::max({now_sec, since_sec, source.started_sec});
  const line_in_use line(port, now_sec);

  set_totals_to_zero(stats);
  stats.counted_sec = now_sec - since_sec;
  if (!stats.is_cleared_here) {
    add_passage(*source.plan, line.between(before(since_sec, source.counting_sec), since_sec), stats);
    put_given_totals(*source.plan, stats);
    stats.counted_sec += source.counting_sec;
  }
  add_passage(*source.plan, line.between(since_sec, now_sec), stats);
  count_trunk_packets(port);
  const uint32 averaged_sec = is_management ? kManagementAverageSeconds : kUsualAverageSeconds;
  take_averages(line.between(before(now_sec, averaged_sec), now_sec), averaged_sec, stats);
  fill_ring(line, source.started_sec, now_sec, stats);
  return true;
}

}  // namespace host
