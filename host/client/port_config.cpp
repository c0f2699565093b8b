#include "platform/port_config.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "base/c_edge.h"
#include "client/library_functions.h"
#include "client/request.h"
#include "messages/calls/command_account.h"
#include "messages/calls/host_settings.h"
#include "messages/port_channel_messages.h"
#include "messages/port_manager_messages.h"
#include "messages/spanning_tree_messages.h"

using namespace host;

namespace {

void append(std::vector<std::byte>* to, std::span<const std::byte> bytes) {
  to->insert(to->end(), bytes.begin(), bytes.end());
}

struct heap_deleter {
  void operator()(void* block) const { std::free(block); }
};

// Requests a status for each port. On success the caller frees the block.
int32 ask_statuses(const call& to, std::span<const std::byte> request, pm_port_cfg_status_t** cfg_status,
                   uint32* num_ports) {
  const answer got(answered_by_errors(to), request, sizeof **cfg_status);
  if (got.error() != 0 || got.count() == 0) return got.error();
  std::unique_ptr<pm_port_cfg_status_t[], heap_deleter> block(
      static_cast<pm_port_cfg_status_t*>(std::malloc(got.records().size())));
  if (block == nullptr) return PM_ERR_GENERAL;
  std::memcpy(block.get(), got.records().data(), got.records().size());
  note_results(to.q, {block.get(), got.count()});
  *num_ports = got.count();
  *cfg_status = block.release();
  return 0;
}

// Returns what `ask` returns, PM_ERR_GENERAL if it throws. A failure is noted as that of a request.
template <typename Ask>
int32 noting_failures(mts_q_handle_t q, Ask ask) {
  const int32 error = no_throw<int32>(PM_ERR_GENERAL, ask);
  if (error != 0) note_failed_request(q);
  return error;
}

// A setting_request.
std::vector<std::byte> request_of(uint8 type, std::span<const std::byte> value,
                                  std::span<const if_index_range_t> ranges) {
  std::vector<std::byte> request;
  append(&request,
         bytes_of(setting_request{static_cast<uint32>(ranges.size()), type, static_cast<uint16>(value.size())}));
  append(&request, value);
  for (const if_index_range_t& range : ranges) append(&request, bytes_of(range_request{range.low, range.high}));
  return request;
}

// The interface range of a configuration command; null without one.
const intf_range_t* range_of(const paraminfo_t* param) {
  for (const param_arg_t* const argument : std::span(param->arg_list, param->parameter_count))
    if (argument != nullptr && argument->token_id == TOKEN_CONF_INTERFACES)
      return static_cast<const intf_range_t*>(argument->arg);
  return nullptr;
}

int32 ask_for_range(const call& to, const paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports) {
  *cfg_status = nullptr;
  *num_ports = 0;
  const intf_range_t* const ranges = range_of(param);
  if (ranges == nullptr) return PM_ERR_INVALID_RANGE;
  return noting_failures(to.q, [&] {
    std::vector<std::byte> request;
    for (const vsh_intf_mono_range_t& range : std::span(ranges->range, ranges->range_count))
      append(&request, bytes_of(range_request{range.lower_if_index, range.upper_if_index}));
    return ask_statuses(to, request, cfg_status, num_ports);
  });
}

}  // namespace

int32 pm_cmi_set_port_config(mts_q_handle_t q, const char*, uint32, uint32 num_ranges, const if_index_range_t* ranges,
                             uint8 cfg_type, uint8 cfg_length, const void* value, pm_port_cfg_status_t** cfg_status,
                             uint32* num_ports, int32 timeout) {
  if (cfg_status != nullptr) *cfg_status = nullptr;
  if (num_ports != nullptr) *num_ports = 0;
  if (cfg_status == nullptr || num_ports == nullptr || value == nullptr || (ranges == nullptr && num_ranges != 0))
    return PM_ERR_GENERAL;
  return noting_failures(q, [&] {
    const std::vector<std::byte> request =
        request_of(cfg_type, {static_cast<const std::byte*>(value), cfg_length}, std::span(ranges, num_ranges));
    return ask_statuses({q, MTS_SAP_PORT_MANAGER, PM_OPC_SET_CONFIG, timeout}, request, cfg_status, num_ports);
  });
}

int32 host::set_host_setting(mts_q_handle_t q, std::span<const if_index_range_t> ranges, uint8 type,
                             std::span<const std::byte> value) {
  pm_port_cfg_status_t* block = nullptr;
  uint32 count = 0;
  const int32 error = noting_failures(q, [&] {
    return ask_statuses({q, MTS_SAP_PORT_MANAGER, PM_OPC_SET_CONFIG}, request_of(type, value, ranges), &block, &count);
  });
  std::free(block);  // what it holds is in the account
  return error;
}

int32 host::leave_channels(const paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports) {
  return ask_for_range({param->q, SAP_PORT_CHANNEL, PC_OPC_LEAVE}, param, cfg_status, num_ports);
}

int32 host::make_edge_ports(const paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports) {
  return ask_for_range({param->q, SAP_SPANNING_TREE, STP_OPC_EDGE}, param, cfg_status, num_ports);
}
