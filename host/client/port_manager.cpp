#include "platform/port_manager.h"

#include <cstdlib>
#include <cstring>

#include "base/c_edge.h"
#include "client/request.h"
#include "messages/calls/command_account.h"
#include "messages/port_manager_messages.h"
#include "platform/transceiver.h"
#include "transport/transport.h"

using namespace host;

namespace {

// Records as a heap block that the caller frees; null when there is no memory.
template <typename Record>
Record* copy_of(std::span<const std::byte> records) {
  void* const block = std::malloc(records.size());
  if (block != nullptr) std::memcpy(block, records.data(), records.size());
  return static_cast<Record*>(block);
}

// The records of a range as a heap block that the caller frees. On failure both results are 0.
template <typename Record>
syserr_t get_records(const call& to, const if_index_range_t* range, uint32* count, Record** records) {
  if (count != nullptr) *count = 0;
  if (records != nullptr) *records = nullptr;
  if (range == nullptr || count == nullptr || records == nullptr) return PM_ERR_GENERAL;
  const answer got(to, bytes_of(range_request{range->low, range->high}), sizeof(Record));
  if (got.error() != 0) return got.error();
  if (got.count() == 0) {
    transport_note_damaged(to.sap);
    return PM_ERR_GENERAL;
  }
  *records = copy_of<Record>(got.records());
  if (*records == nullptr) return PM_ERR_GENERAL;
  *count = got.count();
  return 0;
}

// Whether a received message holds as many entries as it says.
bool is_listing(const mts_msg_ref_t& message) {
  const std::span payload = payload_of(message);
  pm_if_index_listing_res_payload_t head;
  if (payload.size() < sizeof head) return false;
  std::memcpy(&head, payload.data(), sizeof head);
  return head.num_if_index <= (payload.size() - sizeof head) / sizeof(be32);
}

int32 get_listing(const call& to, if_index_type_t type, mts_msg_ref_t* message) {
  if (message == nullptr) return -1;
  if (exchange(to, bytes_of(listing_request{type}), message) != 0) return -1;
  if (is_listing(*message)) return 0;
  transport_note_damaged(to.sap);
  mts_drop(to.q, message);
  *message = {};
  return -1;
}

// Requests the creation or deletion of ranges of interfaces.
uint32 configure_interfaces(const call& to, uint32 create, const intf_range_t* ranges) {
  if (ranges == nullptr || ranges->range_count > PARAM_MAX_RANGES) return PM_ERR_GENERAL;
  struct {
    pm_cli_if_index_verify_req_payload_t head;
    pm_port_range_t ranges[PARAM_MAX_RANGES];
  } request;
  request.head = {create != 0 ? 1U : 0U, create != 0 ? 0U : 1U, ranges->range_count};
  for (uint32 i = 0; i < ranges->range_count; ++i)
    request.ranges[i] = {ranges->range[i].lower_if_index, ranges->range[i].upper_if_index};
  const std::size_t size = sizeof request.head + ranges->range_count * sizeof request.ranges[0];
  const syserr_t error = answer(answered_by_errors(to), bytes_of(request).first(size), 1).error();
  note_creation(to.q, error);
  return static_cast<uint32>(error);
}

constexpr std::size_t kTrackedHead = 12;  // eight unused bytes, and the count
constexpr std::size_t kMaxTracked = 256;
constexpr list_layout kTrackedLayout = {
    .block_bytes = kTrackedHead + kMaxTracked * sizeof(be32),
    .count_offset = 8,
    .first_entry = kTrackedHead,
    .entry_bytes = sizeof(be32),
};

syserr_t get_clear_statistics(const call& to, const eth_statistics_request& request, show_eth_intf_resp_t* response) {
  if (request.get == 0) {
    return no_throw<syserr_t>(PM_ERR_GENERAL, [&] {
      const syserr_t error = answer(answered_by_errors(to), bytes_of(request), sizeof *response).error();
      note_clear(to.q, to.sap, request.range.low, request.range.high, error);
      return error;
    });
  }
  if (response == nullptr) return PM_ERR_GENERAL;
  return ask_record(to, bytes_of(request), writable_bytes_of(*response));
}

}  // namespace

int32 pm_cmi_get_port_config(mts_q_handle_t q, uint32, uint32, const if_index_range_t* range, uint32* count,
                             pm_port_info_t** records, int32 timeout) {
  return get_records({q, MTS_SAP_PORT_MANAGER, PM_OPC_PORT_CONFIG, timeout}, range, count, records);
}

int32 pm_cmi_get_fcot_info(mts_q_handle_t q, uint32, uint32, const if_index_range_t* range, uint32* length,
                           pm_fcot_res_t** response, int32 timeout) {
  const call to{q, MTS_SAP_PORT_MANAGER, PM_OPC_TRANSCEIVER, timeout};
  const syserr_t error = get_records(to, range, length, response);
  if (error != 0) return error;
  for (const pm_fcot_res_t& record : std::span(*response, *length))
    note_reported(to, static_cast<syserr_t>(static_cast<uint32>(record.status)));
  *length *= static_cast<uint32>(sizeof **response);
  return 0;
}

int32 pm_cmi_get_tracked_port_if_list(mts_q_handle_t q, if_index_t if_index, void** list, int32 timeout) {
  if (list == nullptr) return PM_ERR_GENERAL;
  return ask_list({q, MTS_SAP_PORT_MANAGER, PM_OPC_TRACKED_PORTS, timeout}, bytes_of(interface_request{if_index}),
                  kTrackedLayout, list);
}

int32 pm_get_if_index_listing(if_index_type_t type, mts_q_handle_t q, mts_msg_ref_t* message, int32 timeout) {
  return get_listing({q, MTS_SAP_PORT_MANAGER, PM_OPC_LISTING, timeout}, type, message);
}

// A switch has one startup configuration, whatever place the prefix names.
int32 pm_get_startup_if_index_listing(const char*, if_index_type_t type, mts_q_handle_t q, mts_msg_ref_t* message,
                                      int32 timeout) {
  return get_listing({q, MTS_SAP_PORT_MANAGER, PM_OPC_STARTUP_LISTING, timeout}, type, message);
}

// One port manager owns all interfaces.
uint32 pm_get_mts_sap(if_index_t) { return MTS_SAP_PORT_MANAGER; }

int32 pm_get_port_info_range(mts_q_handle_t q, if_index_t low, if_index_t high, mts_msg_ref_t* message) {
  if (message == nullptr) return PM_ERR_GENERAL;
  const call to{q, MTS_SAP_PORT_MANAGER, PM_OPC_PORT_CONFIG};
  syserr_t error = exchange(to, bytes_of(range_request{low, high}), message);
  if (error != 0) return error;
  const std::span payload = payload_of(*message);
  error = reported_error(payload);
  if (is_damaged(payload, records_of(payload, sizeof(pm_port_info_t))))
    transport_note_damaged(to.sap);
  else
    note_reported(to, error);
  if (error == 0) return 0;
  mts_drop(q, message);
  *message = {};
  return error;
}

int32 pm_parse_get_port_info_range(const mts_msg_ref_t* message, uint32* num_ports, pm_port_info_t** ports) {
  if (num_ports != nullptr) *num_ports = 0;
  if (ports != nullptr) *ports = nullptr;
  if (message == nullptr || num_ports == nullptr || ports == nullptr) return PM_ERR_GENERAL;
  const counted_records found = records_of(payload_of(*message), sizeof **ports);
  if (found.count == 0) return found.error;
  *ports = copy_of<pm_port_info_t>(found.records);
  if (*ports == nullptr) return PM_ERR_GENERAL;
  *num_ports = found.count;
  return 0;
}

// The mask is not needed: the indexes give the kinds of interface.
uint32 pm_cli_config_sub_interface(mts_q_handle_t q, uint32 create, interface_mask_t, const intf_range_t* ranges,
                                   uint32 timeout) {
  return configure_interfaces({q, MTS_SAP_PORT_MANAGER, PM_OPC_SUB_INTERFACES, static_cast<int32>(timeout)}, create,
                              ranges);
}

uint32 pm_cli_config_loopback_interface(mts_q_handle_t q, uint32 create, interface_mask_t, const intf_range_t* ranges,
                                        uint32 timeout) {
  return configure_interfaces({q, MTS_SAP_PORT_MANAGER, PM_OPC_LOOPBACKS, static_cast<int32>(timeout)}, create, ranges);
}

int32 pm_get_clear_eth_stats(mts_q_handle_t q, if_index_t low, if_index_t high, uint32 get,
                             show_eth_intf_resp_t* response) {
  return get_clear_statistics({q, MTS_SAP_PORT_MANAGER, PM_OPC_ETH_STATISTICS}, {{low, high}, get}, response);
}

int32 pm_port_channel_get_clear_eth_stats(mts_q_handle_t q, if_index_t if_index, uint32 get,
                                          show_eth_intf_resp_t* response) {
  return get_clear_statistics({q, MTS_SAP_PORT_MANAGER, PM_OPC_CHANNEL_STATISTICS}, {{if_index, if_index}, get},
                              response);
}

// Not zero is success, unlike the others.
int32 pm_get_interface_counters(if_index_t if_index, mts_q_handle_t q, pm_if_stat* stats) {
  if (stats == nullptr) return 0;
  const call to{q, MTS_SAP_PORT_MANAGER, PM_OPC_INTERFACE_COUNTERS};
  const syserr_t error = ask_record(to, bytes_of(interface_request{if_index}), writable_bytes_of(*stats));
  return error == 0 ? 1 : 0;
}
