#include <ctime>

#include "service/answers.h"
#include "service/interface_requests.h"
#include "service/port_manager_messages.h"
#include "service/port_record.h"
#include "service/services.h"
#include "service/statistics_records.h"

namespace host {
namespace {

bool is_of_type(if_index_t if_index, uint32 wanted) {
  if_index_type_t type = IF_TYPE_NONE;
  return wanted == IF_TYPE_NONE || (if_index_get_type(if_index, &type) == 0 && type == wanted);
}

// One record for each interface of a range. The in-band interface is listed, but it is no port and has none.
template <typename Record>
reply answer_range(std::span<const std::byte> bytes, Record (*record_of)(const interface&)) {
  const auto request = read_request<range_request>(bytes);
  if (!request) return reject();
  const auto [error, interfaces] = find_range(*request);
  if (error != 0) return answer_error(error);
  if (is_of_type(interfaces.front().if_index, IF_TYPE_INBAND)) return answer_error(PM_ERR_NO_SUCH_INTERFACE);
  answer_writer answer(interfaces.size() * sizeof(Record));
  for (const interface& it : interfaces) answer.append(record_of(it));
  return answer.finish();
}

if_index_t index_in(const interface& listed) { return listed.if_index; }
if_index_t index_in(if_index_t listed) { return listed; }

template <class Entry>
reply answer_listing(std::span<const std::byte> bytes, const std::vector<Entry>& entries) {
  const auto request = read_request<listing_request>(bytes);
  if (!request) return reject();
  reply listing;
  uint32 count = 0;
  append_bytes(listing, pm_if_index_listing_res_payload_t{});
  for (const Entry& it : entries) {
    if (!is_of_type(index_in(it), request->if_index_type)) continue;
    append_bytes(listing, be32(index_in(it)));
    ++count;
  }
  const pm_if_index_listing_res_payload_t head{count};
  std::memcpy(listing.payload.data(), &head, sizeof head);
  return listing;
}

reply answer_tracked_ports(const interface& port) {
  answer_writer answer(port.tracked.size() * sizeof(be32));
  for (const if_index_t tracked : port.tracked) answer.append(be32(tracked));
  return answer.finish();
}

// Rates go on; what counts up starts again.
void clear(statistics& stats) {
  stats.in = {};
  stats.out = {};
  stats.errors = {};
  stats.rate_ring = {};
  stats.last_clear_sec = static_cast<uint32>(std::time(nullptr));
}

reply answer_eth_statistics(std::span<const std::byte> bytes, bool of_channel) {
  const auto request = read_request<eth_statistics_request>(bytes);
  if (!request) return reject();
  const auto [error, interfaces] = find_range(request->range);
  if (error != 0) return answer_error(error);
  const bool is_channel = is_of_type(interfaces.front().if_index, IF_TYPE_PORT_CHANNEL) ||
                          is_of_type(interfaces.front().if_index, IF_TYPE_ETH_PORT_CHANNEL);
  if (of_channel && !is_channel) return answer_error(PM_ERR_NOT_ALLOWED_ON_INTERFACE);
  if (request->get != 0) return answer_record(eth_statistics_record(interfaces.front()));
  for (interface& it : interfaces) clear(it.stats);
  return answer_writer(0).finish();
}

}  // namespace

reply serve_port_manager(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case PM_OPC_PORT_CONFIG: return answer_range(request, port_record);
    case PM_OPC_TRANSCEIVER: return answer_range(request, transceiver_record);
    case PM_OPC_LISTING: return answer_listing(request, the_machine().interfaces);
    case PM_OPC_STARTUP_LISTING: return answer_listing(request, the_machine().startup);
    case PM_OPC_VERIFY: return answer_verification(request);
    case PM_OPC_SUB_INTERFACES: return configure_sub_interfaces(request);
    case PM_OPC_LOOPBACKS: return configure_loopbacks(request);
    case PM_OPC_TRACKED_PORTS: return answer_for_interface(request, answer_tracked_ports);
    case PM_OPC_ETH_STATISTICS: return answer_eth_statistics(request, false);
    case PM_OPC_CHANNEL_STATISTICS: return answer_eth_statistics(request, true);
    case PM_OPC_INTERFACE_COUNTERS:
      return answer_for_interface(request,
                                  [](const interface& it) { return answer_record(interface_counters_record(it)); });
    default: return reject();
  }
}

}  // namespace host
