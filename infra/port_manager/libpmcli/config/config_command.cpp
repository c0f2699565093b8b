#include "config/config_command.h"

#include <algorithm>
#include <cstdlib>

#include "pm/port_attributes.h"
#include "support/heap.h"
#include "support/kind.h"

namespace pmcli {

const param_arg_t* config_command::argument(uint32 distance) const {
  const uint32 number = range_at + distance;
  return number <= param->parameter_count && number <= PARAM_MAX_ARGS ? param->arg_list[number - 1] : nullptr;
}

std::optional<config_command> read_config_command(paraminfo_t* param) {
  const uint32 count = std::min<uint32>(param->parameter_count, PARAM_MAX_ARGS);
  for (uint32 i = 0; i < count; ++i) {
    const param_arg_t* const argument = param->arg_list[i];
    if (argument == nullptr || argument->arg == nullptr) continue;
    if (argument->type != PARAM_TYPE_CONF_INTERFACES && argument->type != PARAM_TYPE_INTERFACES) continue;
    const auto ranges = ranges_of(*static_cast<const intf_range_t*>(argument->arg));
    const if_index_t first = ranges.empty() ? 0 : ranges.front().lower_if_index;
    return config_command{
        .param = param,
        .range_at = i + 1,
        .ranges = ranges,
        .kind = ranges.empty() ? if_index_type_t{IF_TYPE_NONE} : kind_of(first),
        .first = first,
        .is_bundle = !ranges.empty() && pm_is_bundle_port_type(first),
        .is_no = param->no_flag != 0,
    };
  }
  return std::nullopt;
}

heap_block<if_index_range_t> copy_ranges(std::span<const vsh_intf_mono_range_t> ranges) {
  const std::size_t count = std::max<std::size_t>(ranges.size(), 1);  // an empty list is a block too
  const std::size_t size = count * sizeof(if_index_range_t);
  heap_block<if_index_range_t> copy(static_cast<if_index_range_t*>(std::malloc(size)));
  if (copy == nullptr) {
    report_malloc_failure(static_cast<uint32>(size));
    std::puts("error: allocating memory for range list");
    return copy;
  }
  std::transform(ranges.begin(), ranges.end(), copy.get(), [](const vsh_intf_mono_range_t& range) {
    return if_index_range_t{range.lower_if_index, range.upper_if_index};
  });
  return copy;
}

}  // namespace pmcli
