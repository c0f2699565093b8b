// What the port manager and the line cards say of the modules in ports.
#pragma once

#include <span>

#include "switch/model.h"
#include "transport/transport.h"

namespace host {

// Optical diagnostics of a port whose statistics are up to date: one sfp_diagnostics, or why there are none.
reply answer_diagnostics(interface& port);

}  // namespace host
