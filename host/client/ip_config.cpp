#include "platform/ip_config.h"

#include <cstdlib>
#include <cstring>

#include "client/request.h"
#include "messages/ip_messages.h"
#include "platform/mts.h"

using namespace host;

int32 ipconf_get_if_inet_addrs(mts_q_handle_t q, if_index_t if_index, ipconf_if_inet_addrs_t** list) {
  if (list == nullptr) return PM_ERR_GENERAL;
  *list = nullptr;
  const answer got({q, SAP_IP, IP_OPC_ADDRESSES}, bytes_of(interface_request{if_index}),
                   sizeof(ipconf_if_inet_addr_info_t));
  if (got.error() != 0 || got.count() == 0) return got.error();
  const ipconf_if_inet_addrs_t head{0, got.count()};
  auto* const block = static_cast<std::byte*>(std::malloc(sizeof head + got.records().size()));
  if (block == nullptr) return PM_ERR_GENERAL;
  std::memcpy(block, &head, sizeof head);
  std::memcpy(block + sizeof head, got.records().data(), got.records().size());
  *list = reinterpret_cast<ipconf_if_inet_addrs_t*>(block);
  return 0;
}
