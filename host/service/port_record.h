// Records of the port manager, filled from the model.
#pragma once

#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "switch/model.h"

namespace host {

// All members that the model knows; unknown ones are zero.
pm_port_info_t port_record(const interface& port);

// The module in a port: the image as it was read, then the port manager's trailer. `status` and `is_fcot_supported`
// report a missing module.
pm_fcot_res_t transceiver_record(const interface& port);

}  // namespace host
