#include "messages/port_manager_messages.h"
#include "service/answers.h"
#include "service/interface_requests.h"
#include "service/module_resources.h"
#include "service/optics.h"
#include "service/port_config.h"
#include "service/port_record.h"
#include "service/services.h"
#include "service/statistics_records.h"

namespace host {
namespace {

bool is_of_type(if_index_t if_index, uint32 requested) {
  if_index_type_t type = IF_TYPE_NONE;
  return requested == IF_TYPE_NONE || (if_index_get_type(if_index, &type) == 0 && type == requested);
}

// One record for each interface of a range, with the detail that it needs. The in-band interface is listed, but it is
// not a port and has none.
template <typename Record>
reply answer_range(std::span<const std::byte> bytes, detail needed, Record (*record_of)(const interface&)) {
  const auto request = read_request<range_request>(bytes);
  if (!request) return reject();
  const auto [error, interfaces] = find_range(*request);
  if (error != 0) return answer_error(error);
  if (is_of_type(interfaces.front().if_index, IF_TYPE_INBAND)) return answer_error(PM_ERR_NO_SUCH_INTERFACE);
  answer_writer answer(interfaces.size() * sizeof(Record));
  for (interface& it : interfaces) {
    the_source().complete(it, needed);
    answer.append(record_of(it));
  }
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

// Clears the interfaces of the request, or their sub-interfaces when the first one is a sub-interface.
reply clear_range(std::span<interface> interfaces) {
  const boolean of_subs = if_index_is_sub_intf(interfaces.front().if_index);
  reply answer = answer_writer(0).finish();
  for (interface& it : interfaces)
    if (if_index_is_sub_intf(it.if_index) == of_subs && !clear_statistics(it))
      answer = answer_error(PM_ERR_NO_SUCH_INTERFACE);
  return answer;
}

reply answer_eth_statistics(std::span<const std::byte> bytes, bool of_channel) {
  const auto request = read_request<eth_statistics_request>(bytes);
  if (!request) return reject();
  const auto [error, interfaces] = find_range(request->range);
  if (error != 0) return answer_error(error);
  const bool is_channel = is_of_type(interfaces.front().if_index, IF_TYPE_PORT_CHANNEL) ||
                          is_of_type(interfaces.front().if_index, IF_TYPE_ETH_PORT_CHANNEL);
  if (of_channel && !is_channel) return answer_error(PM_ERR_NOT_ALLOWED_ON_INTERFACE);
  if (request->get == 0) return clear_range(interfaces);
  if (!refresh_statistics(interfaces.front())) return answer_error(PM_ERR_NO_SUCH_INTERFACE);
  the_source().complete(interfaces.front(), detail::counters);
  return answer_record(eth_statistics_record(interfaces.front()));
}

// The in-band interface has its counters in the kernel, where the port manager does not reach.
syserr_t clear_counters(if_index_t if_index) {
  if (is_of_type(if_index, IF_TYPE_INBAND)) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  interface* const found = the_machine().find(if_index);
  return found != nullptr && clear_statistics(*found) ? 0 : PM_ERR_NO_SUCH_INTERFACE;
}

reply answer_clear(std::span<const std::byte> bytes) {
  clear_request request;
  if (bytes.size() < sizeof request) return reject();
  std::memcpy(&request, bytes.data(), sizeof request);
  const std::span requested = bytes.subspan(sizeof request);
  if (request.count > kMaxClearedAtOnce || requested.size() != request.count * sizeof(be32)) return reject();
  reply answer;
  append_bytes(answer, static_cast<uint8>(request.count));
  for (std::size_t at = 0; at < requested.size(); at += sizeof(be32)) {
    be32 if_index;
    std::memcpy(&if_index, requested.data() + at, sizeof if_index);
    append_bytes(answer, pm_clear_status_t{if_index, clear_counters(if_index)});
  }
  return answer;
}

reply answer_clear_management(interface& port) {
  return is_of_type(port.if_index, IF_TYPE_MGMT) ? answer_clear_of(port)
                                                 : answer_error(PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

}  // namespace

reply serve_port_manager(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case PM_OPC_PORT_CONFIG: return answer_range(request, detail::link_fault, port_record);
    case PM_OPC_TRANSCEIVER: return answer_range(request, detail::module, transceiver_record);
    case PM_OPC_LISTING: return answer_listing(request, the_machine().interfaces);
    case PM_OPC_STARTUP_LISTING: return answer_listing(request, the_machine().startup);
    case PM_OPC_VERIFY: return answer_verification(request);
    case PM_OPC_SUB_INTERFACES: return configure_sub_interfaces(request);
    case PM_OPC_LOOPBACKS: return configure_loopbacks(request);
    case PM_OPC_TRACKED_PORTS: return answer_for_interface(request, answer_tracked_ports);
    case PM_OPC_ETH_STATISTICS: return answer_eth_statistics(request, false);
    case PM_OPC_CHANNEL_STATISTICS: return answer_eth_statistics(request, true);
    case PM_OPC_INTERFACE_COUNTERS:
      return answer_with_counters(request,
                                  [](const interface& it) { return answer_record(interface_counters_record(it)); });
    case PM_OPC_SET_CONFIG: return configure_ports(request);
    case PM_OPC_DIAGNOSTICS: return answer_with_statistics(request, answer_diagnostics);
    case PM_OPC_MODULE_RESOURCES: return answer_module_resources(request);
    case PM_OPC_CLEAR_COUNTERS: return answer_clear(request);
    case PM_OPC_CLEAR_MANAGEMENT: return answer_for_interface(request, answer_clear_management);
    default: return reject_opcode();
  }
}

}  // namespace host
