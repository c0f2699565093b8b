// Records of the ranges that failed: the functions of platform/cmd_channel.h for them.
#include <fmt/format.h>

#include <cstdio>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "base/c_edge.h"
#include "platform/cmd_channel.h"
#include "platform/if_index.h"
#include "shell/output/command_output.h"
#include "switch/interface_name.h"
#include "switch/range_text.h"

namespace {

struct range_record {
  mrange_handle_t head{};  // the library's pointer; must stay first
  std::vector<if_index_range_t> ranges;
  range_record* handed_over_before = nullptr;
};

range_record* record_of(mrange_handle_t* handle) { return reinterpret_cast<range_record*>(handle); }

bool differ_in_port_alone(const host::interface_number& low, const host::interface_number& high) {
  return low.sub_interface == 0 && high.sub_interface == 0 && low.unit == high.unit && low.slot == high.slot;
}

// "Ethernet1/1-4"; both names when the two ends differ in more than the port.
std::string text_of(const if_index_range_t& range) {
  char name[64];
  std::string text = sprintf_if_index(name, range.low);
  if (range.high == range.low) return text;
  const host::interface_number low = host::number_of(range.low), high = host::number_of(range.high);
  if (differ_in_port_alone(low, high)) return fmt::format("{}-{}", text, high.port);
  return fmt::format("{}-{}", text, sprintf_if_index(name, range.high));
}

// Consecutive ranges become one.
std::vector<if_index_range_t> without_gaps(const std::vector<if_index_range_t>& ranges) {
  std::vector<if_index_range_t> found;
  for (const if_index_range_t& range : ranges) {
    if (!found.empty() && host::is_next(found.back().high, range.low))
      found.back().high = range.high;
    else
      found.push_back(range);
  }
  return found;
}

range_record* handed_over = nullptr;  // the last one, which leads to those before it

std::string text_of_all(const mrange_handle_t* ranges) {
  std::string text;
  if (ranges == nullptr) return text;
  for (const if_index_range_t& range : without_gaps(reinterpret_cast<const range_record*>(ranges)->ranges)) {
    if (!text.empty()) text += ", ";
    text += text_of(range);
  }
  return text;
}

void release_failed_ranges() {
  while (handed_over != nullptr) {
    range_record* const released = std::exchange(handed_over, handed_over->handed_over_before);
    cmd_mrange_free(&released->head);
  }
}

}  // namespace

mrange_handle_t* cmd_mrange_create(uint32 token_id) {
  auto* const record = new (std::nothrow) range_record;
  if (record == nullptr) return nullptr;
  record->head.tid = static_cast<int32>(token_id);
  return &record->head;
}

// Without memory a range is omitted, which is a failure of the command.
void cmd_mrange_range_add(mrange_handle_t* ranges, if_index_t first, if_index_t last) {
  if (ranges == nullptr) return;
  range_record* const record = record_of(ranges);
  const bool is_added = host::no_throw(false, [&] {
    record->ranges.push_back({first, last});
    return true;
  });
  host::command_output* const output = host::command_output::running();
  if (!is_added && output != nullptr) output->note_failure();
  record->head.list = record->ranges.data();
  record->head.len = static_cast<int32>(record->ranges.size());
}

// The command failed for these ranges. They stay until it ends: the library may still render them.
void cmd_mrange_error_set(mrange_handle_t* ranges) {
  if (ranges == nullptr) return;
  if (host::command_output* const output = host::command_output::running()) {
    output->note_failure();
    output->at_end(release_failed_ranges);
  }
  record_of(ranges)->handed_over_before = handed_over;
  handed_over = record_of(ranges);
}

int32 cmd_mrange_snprintf(char* buffer, uint32 size, const mrange_handle_t* ranges) {
  if (size != 0) *buffer = '\0';
  return host::no_throw<int32>(-1, [&] { return std::snprintf(buffer, size, "%s", text_of_all(ranges).c_str()); });
}

void cmd_mrange_free(mrange_handle_t* ranges) { delete record_of(ranges); }
