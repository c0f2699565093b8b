// Readings of the counters of interfaces, and the rates between consecutive readings.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "messages/calls/switch_facts.h"
#include "platform/if_index.h"
#include "platform/types.h"

namespace host {

// Per second.
struct traffic_rates {
  double in_bytes = 0;
  double in_packets = 0;
  double out_bytes = 0;
  double out_packets = 0;
};

// The names of rates, as members of a record and as titles of columns.
struct rate_field {
  std::string_view name;
  std::string_view title;
  std::string_view description;
  double traffic_rates::*value;
};

inline constexpr rate_field kRateFields[] = {
    {"input_bytes_per_second", "In bytes/s", "Bytes received per second", &traffic_rates::in_bytes},
    {"input_packets_per_second", "In packets/s", "Packets received per second", &traffic_rates::in_packets},
    {"output_bytes_per_second", "Out bytes/s", "Bytes sent per second", &traffic_rates::out_bytes},
    {"output_packets_per_second", "Out packets/s", "Packets sent per second", &traffic_rates::out_packets},
};

// None when no time has passed between them, or when they cannot be compared: the counters were cleared, or one of them
// decreased.
std::optional<traffic_rates> rates_between(const traffic_count& before, const traffic_count& now);

class traffic_readings {
 public:
  // `count` returns what an interface has counted: nothing for one without counters, or when the display has no
  // traffic.
  using counter = std::function<std::optional<traffic_count>(if_index_t)>;
  explicit traffic_readings(counter count) : count_(std::move(count)) {}

  // The current reading becomes the previous one.
  void begin_reading();

  // Reads an interface, once per reading. `is_shown`: the display shows it. Returns its rates since the previous
  // reading, if it was in that.
  std::optional<traffic_rates> look_at(if_index_t if_index, bool is_shown);

  // The interfaces of this reading that are counted and shown, in the order in which they were looked at.
  struct row {
    if_index_t if_index;
    std::optional<traffic_rates> rates;
  };
  std::vector<row> rows() const;

 private:
  struct looked_at {
    row result;
    std::optional<traffic_count> counted;
    bool is_shown;
  };

  counter count_;
  std::map<if_index_t, traffic_count> before_;
  std::map<if_index_t, std::size_t> places_;  // in now_
  std::vector<looked_at> now_;
};

}  // namespace host
