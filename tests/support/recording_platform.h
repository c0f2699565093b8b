// The recording platform: everything that the library expects from a switch, programmable by a test, recorded and
// accounted for.
//
//   RecordingPlatform platform;
//   platform.ports[ethernet(1, 1)] = record;
//   pm_cli_show_eth_port_info(platform.output(), platform.q(), 1, ethernet(1, 1));
//   EXPECT_EQ(platform.text(), "...");
//   EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, ethernet(1, 1)}, {0x302A0204, "uplink"}}));
//
// One platform lives at a time. While it lives, stdout is a stream of its own, and what the library allocates, opens,
// sends and receives is watched; what is not released when it ends fails the test. Tests are written inside namespace
// pmcli_test.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/recorded/card_config.h"
#include "support/recorded/clear_counters.h"
#include "support/recorded/clock.h"
#include "support/recorded/cmd_channel.h"
#include "support/recorded/eth_statistics.h"
#include "support/recorded/if_index.h"
#include "support/recorded/interface_manager.h"
#include "support/recorded/ip_config.h"
#include "support/recorded/ip_statistics.h"
#include "support/recorded/kernel.h"
#include "support/recorded/loader.h"
#include "support/recorded/module_resources.h"
#include "support/recorded/mts.h"
#include "support/recorded/platform_data.h"
#include "support/recorded/port_channel.h"
#include "support/recorded/port_config.h"
#include "support/recorded/port_manager.h"
#include "support/recorded/satellite.h"
#include "support/recorded/startup_config.h"
#include "support/recorded/syserr.h"
#include "support/recorded/transceiver.h"
#include "support/recorded/uri.h"
#include "support/recorded/vsan.h"
#include "support/recorded/vsh.h"

namespace pmcli_test {

// What each service answers, and what it was asked: the members of support/recorded/SERVICE.h. An interface without an
// entry is unknown to the service, which then fails with PM_ERR_NO_SUCH_INTERFACE unless said otherwise.
class RecordingPlatform : public recorded_card_config,
                          public recorded_clear_counters,
                          public recorded_clock,
                          public recorded_cmd_channel,
                          public recorded_eth_statistics,
                          public recorded_if_index,
                          public recorded_interface_manager,
                          public recorded_ip_config,
                          public recorded_ip_statistics,
                          public recorded_kernel,
                          public recorded_loader,
                          public recorded_module_resources,
                          public recorded_mts,
                          public recorded_platform_data,
                          public recorded_port_channel,
                          public recorded_port_config,
                          public recorded_port_manager,
                          public recorded_satellite,
                          public recorded_startup_config,
                          public recorded_syserr,
                          public recorded_transceiver,
                          public recorded_uri,
                          public recorded_vsan,
                          public recorded_vsh {
 public:
  RecordingPlatform();
  ~RecordingPlatform();  // calls expect_all_released()
  RecordingPlatform(const RecordingPlatform&) = delete;
  RecordingPlatform& operator=(const RecordingPlatform&) = delete;

  // The one that lives; null when none does.
  static RecordingPlatform* active();

  // -- The command --

  cmd_rx_handle_t* output();  // the handle that cmd_paraminfo_to_rxhandle() gives, too
  static constexpr mts_q_handle_t q() { return 7; }

  // A parameter block on queue q(): the first argument is this interface, of type PARAM_TYPE_UINT32. It lives as long
  // as the platform; change what the test needs. Further arguments are added by add_argument().
  paraminfo_t* show_command(uint32 command_id, if_index_t if_index);
  param_arg_t* add_argument(paraminfo_t* param, param_type_t type, void* arg);

  // -- What came out --

  std::string text() const { return text_; }          // everything, in order
  std::string terminal() const { return terminal_; }  // printf, puts and their kind only
  Tuples tuples() const;                              // every bound value, in order
  void clear_output();                                // forgets texts, pieces and tuples; not what must be released
  void add_text(std::string_view text, bool is_terminal);

  // -- What was called: names of platform, loader and heap functions that can fail, in order --

  std::vector<std::string> calls;
  uint32 count(std::string_view function) const;

  // -- Failing --

  // From now on this function fails with this result and stores nothing. Functions that return a pointer fail with
  // null, whatever `result` is; "mts_is_reject" says yes, "mts_payload_size" gives 0, and the message of a failed
  // "mts_drop" is gone all the same. A result of -1 makes `mts_errno` the reason that mts_errno_get() gives.
  void fail_with(const std::string& function, int32 result = -1);

  // The nth call that can fail (counted from 1) fails so; 0 is none. See failure_walk.h.
  void fail_call(uint32 nth, int32 result = -1);
  const std::string& failed_call() const { return failed_call_; }  // its name; empty when it was not reached

  // For functions that a test supplies: counts as a call that can fail, and says with what; 0 is "go on".
  int32 failure_of(const std::string& function);

  // -- The heap --

  // A block for the library, which must free it. `label` names it when it is not freed.
  void* hand_over(const void* bytes, std::size_t size, const std::string& label);

  // What a caller of the library does with what it was handed: frees a block, closes a library.
  void release(void* block);
  void close(void* library_handle);
  // Drops the messages that are left, as the transport does with the queue.
  void drop_messages();

  // Fails the test for every message, library and block that is not released; each is reported once.
  void expect_all_released();
  // The same as a list of texts, without failing.
  std::vector<std::string> unreleased() const;

  struct state;  // what the platform functions keep: recording_state.h, for tests/support only
  state& internals() { return *state_; }

 private:
  std::unique_ptr<state> state_;
  std::string text_;
  std::string terminal_;
  std::string failed_call_;
};

}  // namespace pmcli_test
