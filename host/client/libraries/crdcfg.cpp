// libcrdcfg.so: the card-configuration library.
#include "client/library_functions.h"

extern "C" syserr_t crdcfg_get_port_cap(const if_index_range_t* range, uint32 size, uint8* response) {
  return host::get_port_capability(range, size, response);
}
