// The transport queue of a command.
#pragma once

#include "transport/transport.h"

namespace host {

struct command_queue {
  command_queue() : handle(transport_open_queue()) {}
  ~command_queue() { transport_close_queue(handle); }
  command_queue(const command_queue&) = delete;
  command_queue& operator=(const command_queue&) = delete;

  mts_q_handle_t handle;
};

}  // namespace host
