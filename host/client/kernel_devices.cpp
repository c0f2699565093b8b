#include <cstring>
#include <string_view>

#include "client/request.h"
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
