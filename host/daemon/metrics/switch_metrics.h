// The metrics of a switch and of the daemon that has it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "daemon/metrics/exposition.h"
#include "switch/count.h"
#include "switch/model.h"

namespace host {

// What the daemon is.
struct daemon_facts {
  std::string_view switch_name;
  std::string_view program_version;
  std::size_t num_sessions = 0;  // shells that are connected
};

// Updates the_machine() as a show command does. Returns an empty text, or the sentence of the source that cannot be
// read.
std::string refresh_for_metrics();

// Writes all metrics of the_machine(), which is up to date, and keeps memory for the next time.
class switch_metrics {
 public:
  // Replaces the text.
  void write(const daemon_facts& facts, exposition_format format, std::string& to);

 private:
  // Millidegrees, microvolts, microamperes, microwatts sent and received; limits in the same units.
  struct module_values {
    std::size_t port;  // its place in the machine
    std::array<int64_t, 2> measured;
    std::array<std::array<std::optional<int64_t>, 4>, 5> limits;
    std::size_t first_lane, num_lanes;
  };

  void read(machine& of);
  void read_interface(std::size_t place, interface& port);
  void read_module(std::size_t place, const interface& port);
  void write_daemon(const daemon_facts& facts, exposition& to) const;
  void write_interfaces(exposition& to) const;
  void write_modules(exposition& to) const;
  std::string_view labels_of(std::size_t place) const;

  std::string switch_label_;
  std::string labels_;                   // of all interfaces, one after the other
  std::vector<std::size_t> label_ends_;  // of each in `labels_`
  std::vector<counter> values_;          // of the first interface, then of the second one ...
  std::vector<module_values> modules_;
  std::vector<std::array<int64_t, 3>> lanes_;
};

}  // namespace host
