// What a watch shows of a reading.
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "shell/output/document/traffic_readings.h"
#include "shell/output/terminal/pager.h"

namespace host {

// The bytes per second, in both directions, of the last readings of each interface.
class recent_rates {
 public:
  // Adds those of a reading; an interface without rates begins anew.
  void add(const std::vector<traffic_readings::row>& rows);

  // The oldest first.
  std::vector<double> of(if_index_t if_index) const;

 private:
  std::map<if_index_t, std::deque<double>> rates_;
};

// The table of rates; nothing when nothing is counted.
std::vector<std::string> rate_lines(const std::vector<traffic_readings::row>& rows);

// The same with a sparkline of the recent rates of each interface, as far as `columns` have room.
std::vector<std::string> rate_lines(const std::vector<traffic_readings::row>& rows, const recent_rates& recent,
                                    std::size_t columns, bool is_utf8);

// What is drawn on a screen: the first line, and of the display and the table below it as much as fits. A table that is
// too long leaves the display half of the screen. When something is hidden, the last line says how many rows, and
// `offset` lines are scrolled away at the top, of the display first; it becomes the greatest that there is when it is
// greater.
struct drawing_parts {
  const std::string& first;
  const std::vector<std::string>& shown;
  const std::vector<std::string>& rates;
};
std::string drawing(const drawing_parts& parts, screen_size size, std::size_t& offset, std::string_view help = {});

}  // namespace host
