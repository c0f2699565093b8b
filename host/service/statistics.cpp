#include <algorithm>

#include "messages/statistics_messages.h"
#include "service/answers.h"
#include "service/services.h"
#include "service/statistics_records.h"

namespace host {
namespace {

bool is_of_kind(const interface& it, std::initializer_list<if_index_type_t> kinds) {
  if_index_type_t type = IF_TYPE_NONE;
  if_index_get_type(it.if_index, &type);
  return std::find(kinds.begin(), kinds.end(), type) != kinds.end();
}

bool is_loopback(const interface& it) { return is_of_kind(it, {IF_TYPE_LOOPBACK}); }
bool is_port(const interface& it) { return !is_of_kind(it, {IF_TYPE_LOOPBACK, IF_TYPE_MGMT, IF_TYPE_INBAND}); }
bool is_channel(const interface& it) { return is_of_kind(it, {IF_TYPE_PORT_CHANNEL, IF_TYPE_ETH_PORT_CHANNEL}); }

reply answer_port(const interface& it) { return answer_record(port_statistics_record(it)); }

reply answer_loopback(const interface& it) {
  return is_loopback(it) ? answer_record(ip_statistics_record(it)) : answer_error(PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

// Clears an interface of the kind that the opcode is for.
reply answer_clear(std::span<const std::byte> request, bool (*is_requested)(const interface&)) {
  return answer_for_interface(request, [=](interface& it) {
    return is_requested(it) ? answer_clear_of(it) : answer_error(PM_ERR_NOT_ALLOWED_ON_INTERFACE);
  });
}

}  // namespace

reply serve_statistics(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case STATS_OPC_PORT:
    case STATS_OPC_PORT_SNMP: return answer_with_counters(request, answer_port);
    case STATS_OPC_LOOPBACK: return answer_with_counters(request, answer_loopback);
    case STATS_OPC_CLEAR_PORT: return answer_clear(request, is_port);
    case STATS_OPC_CLEAR_LOOPBACK: return answer_clear(request, is_loopback);
    case STATS_OPC_CLEAR_CHANNEL: return answer_clear(request, is_channel);
    default: return reject_opcode();
  }
}

}  // namespace host
