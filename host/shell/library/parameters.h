// The parameter block with which the shell calls the functions of the command library.
#pragma once

#include <array>
#include <memory>
#include <span>

#include "base/text_argument.h"
#include "base/vlan_set.h"
#include "messages/calls/switch_facts.h"
#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "settings/settings.h"
#include "shell/library/command_library.h"

namespace host {

// The command id of a block that is for no display.
inline constexpr uint32 kNoDisplayId = 0;

// One block for a command of a user, null with all rights; argument 0 is set for each call. The library is that which
// is called.
class command_parameters {
 public:
  command_parameters(const command_library& library, std::shared_ptr<const session_user> user, mts_q_handle_t q,
                     uint32 command_id);
  command_parameters(const command_parameters&) = delete;
  command_parameters& operator=(const command_parameters&) = delete;

  // Argument 1: a number.
  void add_number(uint32 number);

  // Argument 1: ranges of numbers.
  void add_number_ranges(std::span<const vlan_span> ranges);

  // The block is for a setting, or for its "no" form: argument 0 has the interfaces, the tokens follow.
  void begin_setting(bool is_no);
  void add_token(uint32 token_id, void* value);  // the value is the caller's; null: none

  // Argument 0 has interfaces that the command creates, or deletes in its "no" form; they need verification.
  void begin_creation(bool is_no);

  // The block for one interface, or for at most PARAM_MAX_RANGES ranges of a kind.
  paraminfo_t* for_interface(interface_mask_t mask, if_index_t if_index);
  paraminfo_t* for_ranges(interface_mask_t mask, std::span<const vsh_intf_mono_range_t> ranges);

  // What the display that comes next is about.
  void set_command_id(uint32 command_id) { block_.command_id = command_id; }

  const command_library& library() const { return library_; }
  const session_user* user() const { return user_.get(); }
  mts_q_handle_t queue() const { return block_.q; }
  bool is_no() const { return block_.no_flag != 0; }

 private:
  const command_library& library_;
  std::shared_ptr<const session_user> user_;
  paraminfo_t block_{};
  param_arg_t interfaces_{};
  param_arg_t number_argument_{};
  vsh_int_multi_range_t number_ranges_{};
  std::array<param_arg_t, kMaxSettingTokens> tokens_{};
  if_index_t if_index_ = 0;
  intf_range_t ranges_{};
  uint32 number_ = 0;
};

}  // namespace host
