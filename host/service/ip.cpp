#include <algorithm>
#include <cstring>

#include "messages/ip_messages.h"
#include "service/answers.h"
#include "service/services.h"

namespace host {
namespace {

ipconf_if_inet_addr_info_t address_record(if_index_t if_index, const ip_address& address) {
  ipconf_if_inet_addr_info_t record;
  std::memset(&record, 0, sizeof record);  // all of it, the rest of the union too
  record.if_index = if_index;
  record.inet_addr.addr_type = address.is_ipv6 ? INET_ADDR_TYPE_IPV6 : INET_ADDR_TYPE_IPV4;
  const std::size_t size = address.is_ipv6 ? sizeof record.inet_addr.a.ipv6_addr : sizeof record.inet_addr.a.ipv4_addr;
  std::copy_n(address.bytes.begin(), size, record.inet_addr.a.ipv6_addr);
  record.prefix_len = address.prefix_length;
  return record;
}

reply answer_addresses(const interface& it) {
  answer_writer answer(it.addresses.size() * sizeof(ipconf_if_inet_addr_info_t));
  for (const ip_address& address : it.addresses) answer.append(address_record(it.if_index, address));
  return answer.finish();
}

}  // namespace

reply serve_ip(mts_opc_t opcode, std::span<const std::byte> request) {
  return opcode == IP_OPC_ADDRESSES ? answer_for_interface(request, answer_addresses) : reject_opcode();
}

}  // namespace host
