#include <cstring>
#include <optional>
#include <string_view>

#include "client/request.h"
#include "messages/calls/device_names.h"
#include "messages/hardware_messages.h"
#include "platform/ip_statistics.h"

using namespace host;

namespace {

// Nothing for a name that no device has.
std::optional<device_request> request_for(std::string_view name) {
  device_request request{};
  if (name.size() >= sizeof request.name) return std::nullopt;
  std::memcpy(request.name, name.data(), name.size());
  return request;
}

call to_hardware(mts_opc_t opcode) { return answered_by_errors({client_queue(), SAP_HARDWARE, opcode}); }

using device_names = std::vector<std::pair<std::string, if_index_t>>;

// The names of an answer without its head, up to the first that is not whole.
device_names read_names(std::span<const std::byte> records) {
  device_names names;
  while (records.size() >= sizeof(device_name_record)) {
    device_name_record record;
    std::memcpy(&record, records.data(), sizeof record);
    records = records.subspan(sizeof record);
    if (record.length > records.size()) break;
    names.emplace_back(std::string(reinterpret_cast<const char*>(records.data()), record.length), record.if_index);
    records = records.subspan(record.length);
  }
  return names;
}

}  // namespace

int32 pm_get_proc_net_dev_stats(const char* device, pm_proc_net_dev_stats_t* stats) {
  if (device == nullptr || stats == nullptr) return PM_ERR_GENERAL;
  const auto request = request_for(device);
  if (!request) return PM_ERR_NO_SUCH_INTERFACE;
  return ask_record(to_hardware(HARDWARE_OPC_DEVICE_COUNTERS), bytes_of(*request), writable_bytes_of(*stats));
}

bool host::ask_to_clear_device(std::string_view name) {
  const auto request = request_for(name);
  return request && answer(to_hardware(HARDWARE_OPC_CLEAR_DEVICE), bytes_of(*request), 1).error() == 0;
}

std::vector<std::pair<std::string, if_index_t>> host::ask_device_names() {
  constexpr int32 kNamesTimeoutSec = 2;  // a line that names no device needs none
  const call to{client_queue(), SAP_HARDWARE, HARDWARE_OPC_DEVICE_NAMES, kNamesTimeoutSec};
  mts_msg_ref_t got{};
  if (exchange(to, {}, &got) != 0) return {};
  const std::span<const std::byte> payload = payload_of(got);
  device_names names;
  if (reported_error(payload) == 0) names = read_names(payload.subspan(sizeof(reply_head)));
  mts_drop(to.q, &got);
  return names;
}
