#include "interface/ip_address.h"

#include <cstring>

#include "support/scope.h"

namespace pmcli {

std::optional<ipconf_if_inet_addr_info_t> ask_first_address(mts_q_handle_t q, if_index_t if_index) {
  ipconf_if_inet_addrs_t* answer = nullptr;
  const int32 error = ipconf_get_if_inet_addrs(q, if_index, &answer);
  const heap_block<ipconf_if_inet_addrs_t> list(answer);
  if (error != 0 || list == nullptr || list->num_inet_addrs == 0) return std::nullopt;
  ipconf_if_inet_addr_info_t first;
  std::memcpy(&first, answer + 1, sizeof first);
  return first;
}

}  // namespace pmcli
