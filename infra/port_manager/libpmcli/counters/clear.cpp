// Clearing counters of the port manager, the port-channel services and the kernel.

#include "pmcli/clear.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "counters/clear_targets.h"
#include "platform/clear_counters.h"
#include "platform/mts.h"
#include "platform/vsh.h"
#include "support/chassis.h"
#include "support/errors.h"
#include "support/heap.h"
#include "support/listing.h"
#include "support/text.h"

using namespace pmcli;

namespace {

// The list has no length, so its count is limited to the number of requested interfaces.
void report_failed(const uint8* list, std::size_t num_requested) {
  if (list == nullptr) return;
  const auto* const entries = reinterpret_cast<const pm_clear_status_t*>(list + 1);
  for (const pm_clear_status_t& entry : std::span(entries, std::min<std::size_t>(list[0], num_requested)))
    if (entry.status != 0)
      std::printf("error: %s clearing interface %s counters\n", system_error_text(entry.status),
                  interface_name(entry.if_index).text);
}

void clear_at_port_manager(mts_q_handle_t q, std::span<const if_index_t> if_indexes) {
  uint8* answer = nullptr;
  const int32 error =
      pm_clear_port_counters(q, static_cast<uint32>(if_indexes.size()), if_indexes.data(), 1, &answer, 1);
  const heap_block<uint8> list(answer);
  if (error == 0) return report_failed(list.get(), if_indexes.size());
  if (error == -1) vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
  std::printf("error: %s clearing counters\n", system_error_text(error));
}

// False when the heap is exhausted, which is printed.
bool clear_counted(mts_q_handle_t q, const vsh_intf_mono_range_t& range, uint32 count) {
  constexpr int kReportedLine = 2392;  // part of the text
  const auto size = static_cast<uint32>(count * sizeof(if_index_t));
  const heap_block<if_index_t> block(static_cast<if_index_t*>(std::malloc(size)));
  if (block == nullptr) {
    report_malloc_failure(size, __FILE__, kReportedLine);
    std::printf("%s: malloc failure, size(%d)\n", "pm_cli_clear_counters", static_cast<int32>(size));
    return false;
  }
  const std::span if_indexes(block.get(), count);
  for (uint32 i = 0; i < count; ++i) {
    if_indexes[i] = 0;  // unless there is one at this position
    pm_get_if_index_in_range(range.lower_if_index, range.upper_if_index, &if_indexes[i], i);
  }
  clear_at_port_manager(q, if_indexes);
  return true;
}

// False when the command must stop.
bool clear_range(mts_q_handle_t q, const vsh_intf_mono_range_t& range) {
  const uint32 count = count_interfaces(range);
  if (count == 0) return true;
  if_index_type_t type = IF_TYPE_NONE;
  if (if_index_get_type(range.lower_if_index, &type) != 0) return false;
  if (type != IF_TYPE_MGMT) return clear_counted(q, range, count);
  pm_cli_mgmt_clear_counters(range.lower_if_index, q);
  return true;
}

}  // namespace

int32 pm_cli_clear_counters(paraminfo_type* param) {
  if (param == nullptr) return 1;
  const auto ranges = find_ranges(param);
  if (!ranges) return 1;
  const bool is_done = std::all_of(ranges->begin(), ranges->end(), [param](const vsh_intf_mono_range_t& range) {
    return clear_range(param->q, range);
  });
  return is_done ? 0 : 1;
}

int32 pm_cli_clear_port_channel_counters(paraminfo_type* param) {
  if (param == nullptr) return 0;
  if (is_eth_switch_chassis(read_chassis_type()))
    pm_cli_clear_ethernet_channel_counters(param);
  else
    pm_cli_clear_counters(param);
  return 0;
}

int32 pm_cli_clear_all_counters(paraminfo_type* param) {
  if (param == nullptr) return 0;
  pm_cli_clear_all_loopback_counters(param->q);
  pm_clear_all_port_channel_counters(param->q);
  return 0;
}

int32 pm_cli_clear_all_interface_counters(if_index_type_t type, mts_q_handle_t q) {
  message answer(q);
  if (const int32 error = request_listing(type, q, &answer); error != 0) return error;
  interface_listing(answer.ref()).for_each([q](if_index_t if_index) { clear_at_port_manager(q, {&if_index, 1}); });
  if (answer.drop() == 0) return 0;
  vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
  return -1;
}

int32 pm_clear_all_port_channel_counters(mts_q_handle_t q) {
  constexpr uint32 kMostChannels = 256;
  if_index_t channels[kMostChannels];
  uint32 count = 0;
  if_index_t current = 0;
  while (count < kMostChannels) {
    if_index_t next = 0;
    if (pcmap_get_next_port_channel(current, &next) != 0 || next <= current) break;
    current = channels[count++] = next;
  }
  for (const if_index_t channel : std::span(channels, count))
    if (dstats_clear_counters(q, channel, 1, 1, 5) != 0) std::puts("error: clearing counters");
  return 0;
}

void pm_cli_inband_clear_counters(void) {
  [[maybe_unused]] const int result = std::system("echo > /proc/vexa/hw/inband/dicounts");
}

void pm_cli_mgmt_clear_counters(if_index_t if_index, mts_q_handle_t q) {
  uint32 port = 0;
  if_index_get_port(if_index, &port);
  char device[16];
  std::snprintf(device, sizeof device, "%s%d", "eth", static_cast<int32>(port));
  if (pm_clear_interface_counters(device, if_index, q) != 0) return;
  std::puts("clear mgmt0:");
  std::puts("error: pm_clear_interface_counters failed");
}
