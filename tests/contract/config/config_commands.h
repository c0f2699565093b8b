// Configuration commands as the shell hands them over: an interface range, and tokens behind it.
#pragma once

#include <algorithm>
#include <deque>
#include <iterator>
#include <string>
#include <vector>

#include "support/recording_platform.h"

namespace pmcli_test {

constexpr uint32 kSwitchport = 0x01030002;

// A command over ranges; tokens are added behind them, with a value or without.
struct config_command {
  config_command(RecordingPlatform& recorder, const std::vector<vsh_intf_mono_range_t>& named)
      : platform(recorder), param(recorder.show_command(0, 0)) {
    ranges.size = sizeof ranges;
    ranges.range_count = static_cast<uint32>(named.size());
    std::copy(named.begin(), named.end(), std::begin(ranges.range));
    param->parameter_count = 0;
    param->username = "operator";
    param->session_id = 4711;
    range_argument = platform.add_argument(param, PARAM_TYPE_CONF_INTERFACES, &ranges);
    range_argument->token_id = TOKEN_CONF_INTERFACES;
  }
  config_command(RecordingPlatform& recorder, if_index_t port) : config_command(recorder, {{port, port}}) {}
  config_command(const config_command&) = delete;
  config_command& operator=(const config_command&) = delete;

  config_command& token(uint32 id) { return token_with(id, nullptr); }
  config_command& tokens(const std::vector<uint32>& ids) {
    for (const uint32 id : ids) token(id);
    return *this;
  }
  config_command& number(uint32 id, uint32 value) { return token_with(id, &numbers.emplace_back(value)); }
  config_command& token_with(uint32 id, void* value) {
    param_arg_t* const added = platform.add_argument(param, PARAM_TYPE_UINT32, value);
    added->token_id = id;
    return *this;
  }
  config_command& no() {
    param->no_flag = 1;
    return *this;
  }

  RecordingPlatform& platform;
  intf_range_t ranges{};
  paraminfo_t* param;
  param_arg_t* range_argument;
  std::deque<uint32> numbers;
};

}  // namespace pmcli_test
