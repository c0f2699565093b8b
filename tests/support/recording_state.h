// What the recording platform keeps between the calls of the library. For tests/support only.
#pragma once

#include <deque>

#include "support/recording_platform.h"

// The opaque types of the output channel.
struct cmd_rx_handle_t {};
struct cmd_tuple_t {
  uint32 id;
  const void* value;
};

namespace pmcli_test {

// ---- What is kept for each service, beside what tests see -----------------------------------------------------------

struct cmd_channel_state {
  cmd_rx_handle_t rx;
  std::deque<cmd_tuple_t> tuples;  // bound, not yet printed
  bool is_short_row = false;
  std::deque<std::vector<vsh_intf_mono_range_t>> ranges;  // behind the records of cmd_mrange_create()
};

struct message {
  std::string what;
  octets payload;
  bool is_rejection = false;
  bool is_dropped = false;
};

// The answer to a request, waiting to be received.
struct waiting_answer {
  mts_rr_token_t token;
  mts_reply reply;
};

struct mts_state {
  int32 last_mts_errno = 0;
  std::deque<message> messages;  // message n has id n + 1
  std::deque<waiting_answer> answers;
};

struct open_library {
  std::string name;
  bool is_open = true;
};

struct loader_state {
  std::deque<open_library> open_libraries;  // handles point into it
  std::string loader_text;                  // what dlerror() returned last
};

struct open_socket {
  bool is_open = true;
};

// Descriptors of sockets, far away from those of the process; the first is this one plus 1.
inline constexpr int kFirstSocket = 1000;

struct kernel_state {
  std::deque<open_socket> sockets;  // socket n has descriptor kFirstSocket + n
};

struct heap_entry {
  std::string label;
  std::size_t size;
};

struct heap_state {
  std::map<void*, heap_entry> blocks;
};

struct syserr_state {
  std::map<syserr_t, std::string> error_texts;
};

struct RecordingPlatform::state : cmd_channel_state, mts_state, loader_state, kernel_state, heap_state, syserr_state {
  std::FILE* stream = nullptr;  // stands in for stdout
  std::FILE* stdout_before = nullptr;

  std::map<std::string, int32> forced_results;
  uint32 fallible_calls = 0;
  uint32 failing_call = 0;
  int32 failing_result = 0;

  std::deque<paraminfo_t> params;
  std::deque<param_arg_t> arguments;
  std::deque<if_index_t> argument_values;
};

// ---- What services do for each other --------------------------------------------------------------------------------

// Results by port as a block for the library to free, and their number.
void hand_over_results(RecordingPlatform& platform, const std::vector<std::pair<if_index_t, uint32>>& results,
                       pm_port_cfg_status_t** block, uint32* count);

// The platform that lives. A platform function that is called without one ends the program with its name.
RecordingPlatform& platform_for(const char* function);

std::string interface_text(const RecordingPlatform& platform, if_index_t if_index, bool is_short);

// Records that this owner was asked to clear the counters of an interface, and gives what the test programmed.
int32 clear_at(const char* owner, if_index_t if_index, const std::string& device = "");

// The libraries opened by name, and what they offer for clearing.
library_symbols statistics_client();
library_symbols ip_statistics_library();
library_symbols card_config_library();
int32 statscl_clear_port_client_stats(if_index_t if_index);
int32 ip_clear_loopback_counters(uint32 zero, if_index_t if_index);

// The entries of platform_runtime_param_array as they are when a platform begins to live.
void reset_runtime_params();

// Puts a received message among those that must be dropped, and gives its reference.
mts_msg_ref_t receive_message(RecordingPlatform& platform, const std::string& what, const mts_reply& reply);

// The payload of a message that is not dropped; empty, and a failure of the test, without one.
octets message_payload(const mts_msg_ref_t* reference);

}  // namespace pmcli_test
