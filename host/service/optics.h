// Reports of the port manager and the line cards on the transceivers in ports.
#pragma once

#include <span>

#include "platform/misc_info.h"
#include "switch/model.h"
#include "transport/transport.h"

namespace host {

// Run-time state of the module in a port, after its diagnostics are read.
port_xcvr_info_t transceiver_state(const interface& port);

// Optical diagnostics of a port whose statistics are up to date: one sfp_diagnostics, or why there are none.
reply answer_diagnostics(interface& port);

}  // namespace host
