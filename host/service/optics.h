// Reports of the port manager and the line cards on the transceivers in ports.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "platform/misc_info.h"
#include "switch/model.h"
#include "switch/tables.h"
#include "transport/transport.h"

namespace host {

// Run-time state of the module in a port, after its diagnostics are read.
port_xcvr_info_t transceiver_state(const interface& port);

// Optical diagnostics of a port whose statistics are up to date: one sfp_diagnostics, or why there are none.
reply answer_diagnostics(interface& port);

// The values of transceivers that are outside of their limits, port by port; without `interfaces` of all.
std::unique_ptr<table_reader> read_violations(std::vector<if_index_t> interfaces);

}  // namespace host
