#include <cstring>
#include <string_view>

#include "client/request.h"
#include "messages/calls/device_names.h"
#include "messages/hardware_messages.h"
#include "platform/ip_statistics.h"

using namespace host;

int32 pm_get_proc_net_dev_stats(const char* device, pm_proc_net_dev_stats_t* stats) {
  if (device == nullptr || stats == nullptr) return PM_ERR_GENERAL;
  const std::string_view name = device;
  device_request request{};
  if (name.size() >= sizeof request.name) return PM_ERR_NO_SUCH_INTERFACE;  // no device has such a name
  std::memcpy(request.name, name.data(), name.size());
  const call to{client_queue(), SAP_HARDWARE, HARDWARE_OPC_DEVICE_COUNTERS};
  return ask_record(answered_by_errors(to), bytes_of(request), writable_bytes_of(*stats));
}

namespace {

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
