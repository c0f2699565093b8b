#include "service/answers.h"
#include "service/services.h"
#include "service/statistics_messages.h"
#include "service/statistics_records.h"

namespace host {
namespace {

reply answer_port(const interface& it) { return answer_record(port_statistics_record(it)); }

reply answer_loopback(const interface& it) {
  if_index_type_t type = IF_TYPE_NONE;
  if_index_get_type(it.if_index, &type);
  if (type != IF_TYPE_LOOPBACK) return answer_error(PM_ERR_NOT_ALLOWED_ON_INTERFACE);
  return answer_record(ip_statistics_record(it));
}

}  // namespace

reply serve_statistics(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case STATS_OPC_PORT:
    case STATS_OPC_PORT_SNMP: return answer_for_interface(request, answer_port);
    case STATS_OPC_LOOPBACK: return answer_for_interface(request, answer_loopback);
    default: return reject();
  }
}

}  // namespace host
