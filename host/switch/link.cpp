#include "switch/link.h"

#include "switch/clock.h"

namespace host {

void set_link(interface& port, uint8 state, uint8 reason) {
  if (port.oper_state != state) {
    const auto now_sec = static_cast<uint32>(clock_now());
    port.link_change_sec = now_sec;
    port.link_changes.push_back({now_sec, state});
  }
  port.oper_state = state;
  port.state_reason = reason;
}

}  // namespace host
