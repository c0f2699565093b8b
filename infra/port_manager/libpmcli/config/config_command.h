// A configuration command: its interface range, and the tokens after it.
#pragma once

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>

#include "platform/if_index.h"
#include "platform/paraminfo.h"
#include "platform/types.h"
#include "support/scope.h"

namespace pmcli {

struct config_command {
  paraminfo_t* param;
  uint32 range_at;  // number of the range's argument, from 1
  std::span<const vsh_intf_mono_range_t> ranges;
  if_index_type_t kind;  // of the first range's low end; 0 without a range
  if_index_t first;      // that end
  bool is_bundle;
  bool is_no;  // the "no" form

  // How many arguments follow the range.
  uint32 num_behind() const { return param->parameter_count - range_at; }

  // The argument at `distance` after the range; null when there is none.
  const param_arg_t* argument(uint32 distance) const;

  // Its token; 0 when there is none.
  uint32 token(uint32 distance) const {
    const param_arg_t* const found = argument(distance);
    return found != nullptr ? found->token_id : 0;
  }

  // The keyword follows the range; a range without the range's token carries it itself.
  uint32 keyword() const { return token(0) == TOKEN_CONF_INTERFACES ? token(1) : token(0); }

  // The shell's value of that argument, which need not be aligned; none when it has none.
  template <typename Value>
  std::optional<Value> value(uint32 distance) const {
    const param_arg_t* const found = argument(distance);
    if (found == nullptr || found->arg == nullptr) return std::nullopt;
    Value value;
    std::memcpy(&value, found->arg, sizeof value);
    return value;
  }

  // The text of that argument; empty when it has none.
  const char* text(uint32 distance) const {
    const param_arg_t* const found = argument(distance);
    return found != nullptr && found->arg != nullptr ? static_cast<const char*>(found->arg) : "";
  }
};

// Finds the interface range among the arguments by its type; none when there is none.
std::optional<config_command> read_config_command(paraminfo_t* param);

// The ranges as the port manager takes them, in their order. Null after the exhausted heap was printed.
heap_block<if_index_range_t> copy_ranges(std::span<const vsh_intf_mono_range_t> ranges);

// The ranges of an argument; no more than the record holds.
inline std::span<const vsh_intf_mono_range_t> ranges_of(const intf_range_t& ranges) {
  return {ranges.range, std::min<std::size_t>(ranges.range_count, PARAM_MAX_RANGES)};
}

}  // namespace pmcli
