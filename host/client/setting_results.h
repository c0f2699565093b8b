// What became of the settings that a command asked for, as the services answered.
#pragma once

#include <span>
#include <vector>

#include "platform/port_config.h"
#include "platform/syserr.h"

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

// The port manager answered a request to create or delete interfaces; 0 is success.
void note_creation(syserr_t error);

// Its last answer since the previous call; 0 when it was not asked.
syserr_t take_creation_error();

}  // namespace host
