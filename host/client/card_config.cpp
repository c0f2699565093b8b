#include <algorithm>
#include <cstring>

#include "client/library_functions.h"
#include "client/request.h"
#include "messages/card_config_messages.h"

namespace host {

syserr_t get_port_capability(const if_index_range_t* range, uint32 size, uint8* response) {
  if (range == nullptr || response == nullptr) return PM_ERR_GENERAL;
  crdcfg_port_cap_t capability;
  const syserr_t error = ask_record({client_queue(), SAP_CARD_CONFIG, CRDCFG_OPC_PORT_CAPABILITY},
                                    bytes_of(range_request{range->low, range->high}), writable_bytes_of(capability));
  if (error != 0) return error;
  std::memcpy(response, &capability, std::min<std::size_t>(size, sizeof capability));
  return 0;
}

}  // namespace host
