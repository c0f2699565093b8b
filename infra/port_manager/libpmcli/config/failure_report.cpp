#include "config/failure_report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "command/frame.h"
#include "platform/cmd_channel.h"
#include "support/errors.h"
#include "support/heap.h"
#include "support/scope.h"
#include "support/text.h"

namespace pmcli {

namespace {

struct free_ranges {
  void operator()(mrange_handle_t* ranges) const { cmd_mrange_free(ranges); }
};
using range_set = std::unique_ptr<mrange_handle_t, free_ranges>;

struct failure_group {
  uint32 status = 0;  // 0: not used
  range_set ranges;
};

constexpr std::size_t kMostGroups = 20;
using failure_groups = std::array<failure_group, kMostGroups>;

struct failures {
  range_set all;
  failure_groups groups;
  bool is_any = false;
  bool is_any_port_good = false;
};

void add(const range_set& ranges, if_index_t if_index) {
  if (ranges != nullptr) cmd_mrange_range_add(ranges.get(), if_index, if_index);
}

// Only the first port of four may have mode E. When slot or port cannot be read, the port itself names its group.
void print_mode_e_refusal(if_index_t if_index) {
  constexpr uint32 kPortsOfGroup = 4;
  uint32 slot = 0, port = 0;
  const bool has_slot = if_index_phy_fc_get_slot(if_index, &slot) == 0;
  const bool has_port = if_index_phy_fc_get_port(if_index, &port) == 0;
  const uint32 base = port & ~(kPortsOfGroup - 1);
  if_index_t first = if_index;
  if (has_slot && has_port) if_index_phy_fc_port_init(&first, slot, base);
  const interface_name name(if_index), group(first);
  std::printf("%s: (error) mode E allowed only for interface %s in group %s-%d\n", name.text, group.text, group.text,
              static_cast<int32>(base + kPortsOfGroup));
}

// When all groups hold other statuses the port stays in none.
void add_to_group(failure_groups* groups, uint32 status, if_index_t if_index) {
  const auto group = std::find_if(groups->begin(), groups->end(), [status](const failure_group& candidate) {
    return candidate.status == status || candidate.status == 0;
  });
  if (group == groups->end()) return;
  if (group->status == 0) *group = {status, range_set(cmd_mrange_create(TOKEN_CONF_INTERFACES))};
  add(group->ranges, if_index);
}

failures collect(std::span<const pm_port_cfg_status_t> results) {
  failures found;
  for (const pm_port_cfg_status_t& result : results) {
    const uint32 status = result.status;
    if (status == 0) {
      found.is_any_port_good = true;
      continue;
    }
    if (!found.is_any) found.all.reset(cmd_mrange_create(TOKEN_CONF_INTERFACES));
    found.is_any = true;
    add(found.all, result.if_index);
    if (status == PM_ERR_MODE_E_OUTSIDE_FIRST_PORT)
      print_mode_e_refusal(result.if_index);
    else
      add_to_group(&found.groups, status, result.if_index);
  }
  return found;
}

void write_ranges(std::FILE* to, const mrange_handle_t& ranges) {
  constexpr uint32 kBytesOfRange = 20;
  const uint32 size = kBytesOfRange * static_cast<uint32>(std::max(ranges.len, 1));
  const heap_block<char> text(static_cast<char*>(std::malloc(size)));
  if (text == nullptr) return report_malloc_failure(size);
  text.get()[0] = '\0';
  cmd_mrange_snprintf(text.get(), size, &ranges);
  text.get()[size - 1] = '\0';
  std::fprintf(to, "%s: ", text.get());
}

// The group that was opened last comes first, which is intended.
void write_groups(std::FILE* to, const failure_groups& groups) {
  for (auto group = groups.rbegin(); group != groups.rend(); ++group) {
    if (group->status == 0) continue;
    if (group->status != PM_ERR_TEXT_ONLY && group->ranges != nullptr) write_ranges(to, *group->ranges);
    std::fprintf(to, "%s\n", system_error_text(static_cast<syserr_t>(group->status)));
  }
}

void send_failure(cmd_rx_handle_t* rx, const failure_groups& groups) {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* const stream = open_memstream(&text, &size);
  if (stream != nullptr) {
    write_groups(stream, groups);
    std::fclose(stream);
  }
  const heap_block<char> message(text);
  cmd_rsp_send_nok(rx, 0, message != nullptr ? message.get() : "");
}

}  // namespace

bool report_failures(paraminfo_t* param, std::span<const pm_port_cfg_status_t> results) {
  failures found = collect(results);
  if (!found.is_any) return found.is_any_port_good;
  if (found.all != nullptr) cmd_mrange_error_set(found.all.release());  // the shell frees it
  if (cmd_rx_handle_t* const rx = obtain_output(param); rx != nullptr) send_failure(rx, found.groups);
  return found.is_any_port_good;
}

}  // namespace pmcli
