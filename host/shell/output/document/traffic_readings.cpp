#include "shell/output/document/traffic_readings.h"

namespace host {

std::optional<traffic_rates> rates_between(const traffic_count& before, const traffic_count& now) {
  const double seconds = now.at_sec - before.at_sec;
  const bool went_backwards = now.in_bytes < before.in_bytes || now.in_packets < before.in_packets ||
                              now.out_bytes < before.out_bytes || now.out_packets < before.out_packets;
  if (!(seconds > 0) || went_backwards || now.last_clear_sec != before.last_clear_sec) return std::nullopt;
  const auto rate = [seconds](uint64 from, uint64 to) { return static_cast<double>(to - from) / seconds; };
  return traffic_rates{rate(before.in_bytes, now.in_bytes), rate(before.in_packets, now.in_packets),
                       rate(before.out_bytes, now.out_bytes), rate(before.out_packets, now.out_packets)};
}

void traffic_readings::begin_reading() {
  before_.clear();
  for (const looked_at& it : now_) {
    if (it.counted) before_.emplace(it.result.if_index, *it.counted);
  }
  now_.clear();
  places_.clear();
}

std::optional<traffic_rates> traffic_readings::look_at(if_index_t if_index, bool is_shown) {
  const auto [place, is_new] = places_.emplace(if_index, now_.size());
  if (is_new) {
    looked_at added{{if_index, std::nullopt}, count_(if_index), false};
    const auto before = before_.find(if_index);
    if (added.counted && before != before_.end()) added.result.rates = rates_between(before->second, *added.counted);
    now_.push_back(added);
  }
  looked_at& it = now_[place->second];
  it.is_shown |= is_shown;
  return it.result.rates;
}

std::vector<traffic_readings::row> traffic_readings::rows() const {
  std::vector<row> found;
  for (const looked_at& it : now_) {
    if (it.counted && it.is_shown) found.push_back(it.result);
  }
  return found;
}

}  // namespace host
