#include "platform/module_resources.h"

#include "client/request.h"
#include "service/port_manager_messages.h"

using namespace host;

int32 pm_get_module_resources(mts_q_handle_t q, uint32 count, const pm_mod_resource_category_t* category, uint32,
                              uint32, mts_msg_ref_t* answer) {
  if (category == nullptr || answer == nullptr || count != 1) return PM_ERR_GENERAL;
  return exchange({q, MTS_SAP_PORT_MANAGER, PM_OPC_MODULE_RESOURCES}, bytes_of(module_request{category->id}), answer);
}
