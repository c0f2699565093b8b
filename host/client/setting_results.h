// What became of the settings that a command asked for, as the services answered.
#pragma once

#include <span>
#include <vector>

#include "platform/port_config.h"

namespace host {

struct setting_results {
  bool was_asked = false;   // some service got a request
  bool has_failed = false;  // a request itself failed
  std::vector<pm_port_cfg_status_t> ports;
};

// A request failed, or was answered for these ports.
void note_failed_request();
void note_results(std::span<const pm_port_cfg_status_t> ports);

// What was noted since the last call of take_setting_results().
const setting_results& noted_setting_results();
setting_results take_setting_results();

}  // namespace host
