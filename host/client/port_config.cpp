#include "platform/port_config.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include "client/request.h"
#include "service/port_manager_messages.h"

using namespace host;

namespace {

void append(std::vector<std::byte>* to, std::span<const std::byte> bytes) {
  to->insert(to->end(), bytes.begin(), bytes.end());
}

}  // namespace

int32 pm_cmi_set_port_config(mts_q_handle_t q, const char*, uint32, uint32 num_ranges, const if_index_range_t* ranges,
                             uint8 cfg_type, uint8 cfg_length, const void* value, pm_port_cfg_status_t** cfg_status,
                             uint32* num_ports, int32 timeout) {
  if (cfg_status != nullptr) *cfg_status = nullptr;
  if (num_ports != nullptr) *num_ports = 0;
  if (cfg_status == nullptr || num_ports == nullptr || value == nullptr || (ranges == nullptr && num_ranges != 0))
    return PM_ERR_GENERAL;
  std::vector<std::byte> request;
  append(&request, bytes_of(setting_request{num_ranges, cfg_type, cfg_length}));
  append(&request, {static_cast<const std::byte*>(value), cfg_length});
  for (const if_index_range_t& range : std::span(ranges, num_ranges))
    append(&request, bytes_of(range_request{range.low, range.high}));

  const answer got({q, MTS_SAP_PORT_MANAGER, PM_OPC_SET_CONFIG, timeout}, request, sizeof **cfg_status);
  if (got.error() != 0) return got.error();
  if (got.count() == 0) return 0;
  *cfg_status = static_cast<pm_port_cfg_status_t*>(std::malloc(got.records().size()));
  if (*cfg_status == nullptr) return PM_ERR_GENERAL;
  std::memcpy(*cfg_status, got.records().data(), got.records().size());
  *num_ports = got.count();
  return 0;
}
