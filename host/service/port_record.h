// Records of the port manager, filled from the model.
#pragma once

#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "switch/model.h"

namespace host {

// Every member that the model knows; those it does not know are zero.
pm_port_info_t port_record(const interface& port);

// The module in a port: the image as it was read, then the port manager's trailer. Without a module the record says so
// in `status` and in `is_fcot_supported`.
pm_fcot_res_t transceiver_record(const interface& port);

}  // namespace host
