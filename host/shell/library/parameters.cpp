#include "shell/library/parameters.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/vsan_access.h"

namespace host {
namespace {

const char* name_of(const session_user* user) {
  if (user != nullptr) return user->name.c_str();
  const char* const name = std::getenv("USER");
  return name == nullptr ? "" : name;
}

void set_vsans(vsan_bitset_t& set, const session_user* user) {
  bitset_clear_all(&set);
  if (user != nullptr && user->vsans) {
    for (const uint16 vsan : *user->vsans) bitset_set(&set, vsan);
    return;
  }
  for (uint32 vsan = kFirstVsan; vsan <= kLastVsan; ++vsan) bitset_set(&set, vsan);
}

}  // namespace

command_parameters::command_parameters(const command_library& library, std::shared_ptr<const session_user> user,
                                       mts_q_handle_t q, uint32 command_id)
    : library_(library), user_(std::move(user)) {
  block_.parameter_count = 1;
  block_.q = q;
  block_.command_id = command_id;
  block_.vtyname = isatty(STDIN_FILENO) != 0 ? ttyname(STDIN_FILENO) : nullptr;
  block_.username = name_of(user_.get());
  block_.session_id = static_cast<uint32>(getpid());
  block_.sup_state = SYSMGR_SUPSTATE_ACTIVE;
  block_.user_mode_state = user_ != nullptr && !user_->sees_counters ? VSH_USER_MODE_RESTRICTED : VSH_USER_MODE_FULL;
  block_.prc_mode = PRC_MODE_SHOW;
  set_vsans(block_.vsan_mask, user_.get());
  interfaces_.type = PARAM_TYPE_INTERFACES;
  block_.arg_list[0] = &interfaces_;
  ranges_.size = sizeof ranges_;
}

void command_parameters::add_number(uint32 number) {
  number_ = number;
  number_argument_.type = PARAM_TYPE_UINT32;
  number_argument_.arg = &number_;
  block_.arg_list[1] = &number_argument_;
  block_.parameter_count = 2;
}

void command_parameters::add_number_ranges(std::span<const vlan_span> ranges) {
  const std::size_t count = std::min<std::size_t>(ranges.size(), PARAM_MAX_RANGES);
  for (std::size_t i = 0; i < count; ++i) number_ranges_.range[i] = {ranges[i].first, ranges[i].last};
  number_ranges_.size = sizeof number_ranges_;
  number_ranges_.range_count = static_cast<uint32>(count);
  number_argument_.type = PARAM_TYPE_INT_RANGES;
  number_argument_.arg = &number_ranges_;
  block_.arg_list[1] = &number_argument_;
  block_.parameter_count = 2;
}

void command_parameters::begin_setting(bool is_no) {
  block_.prc_mode = PRC_MODE_CONFIGURE;
  block_.no_flag = is_no ? 1 : 0;
  interfaces_.type = PARAM_TYPE_CONF_INTERFACES;
  interfaces_.token_id = TOKEN_CONF_INTERFACES;
}

void command_parameters::begin_creation(bool is_no) {
  block_.prc_mode = PRC_MODE_CONFIGURE;
  block_.no_flag = is_no ? 1 : 0;
  interfaces_.token_id = TOKEN_CONF_INTERFACES;
}

void command_parameters::add_token(uint32 token_id, void* value) {
  param_arg_t& token = tokens_.at(block_.parameter_count - 1U);
  token.token_id = token_id;
  token.arg = value;
  block_.arg_list[block_.parameter_count++] = &token;
}

paraminfo_t* command_parameters::for_interface(interface_mask_t mask, if_index_t if_index) {
  if_index_ = if_index;
  interfaces_.interface_mask = mask;
  interfaces_.arg = &if_index_;
  return &block_;
}

paraminfo_t* command_parameters::for_ranges(interface_mask_t mask, std::span<const vsh_intf_mono_range_t> ranges) {
  const std::size_t count = std::min<std::size_t>(ranges.size(), PARAM_MAX_RANGES);
  std::copy_n(ranges.begin(), count, ranges_.range);
  ranges_.range_count = static_cast<uint32>(count);
  interfaces_.interface_mask = mask;
  interfaces_.arg = &ranges_;
  return &block_;
}

}  // namespace host
