// Requests about the switch as a whole. Nothing when the service does not answer, refuses, or sends a damaged answer,
// which is noted (transport/failures.h).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "messages/switch_messages.h"
#include "platform/if_index.h"

namespace host {

// ---- The source

// How the clock of the switch runs: stopped at a moment, in seconds since 1970, or ahead of the machine's time by
// these.
struct switch_clock {
  bool is_stopped = false;
  std::int64_t seconds = 0;

  bool operator==(const switch_clock&) const = default;
};

struct refresh_answer {
  std::string reason;  // why the source could not be read, a sentence without its full stop; empty: it was
  switch_clock clock;
};

// Updates what services answer for a command.
std::optional<refresh_answer> ask_refresh(switch_part part);

// Advances the clock of the switch, and returns how it runs then.
std::optional<switch_clock> ask_to_advance_clock(uint32 seconds);

// What stays as it is while a session lasts.
struct switch_facts {
  std::string name;
  std::string file;                // that the switch was read from; empty: none
  std::string kernel_name;         // of the devices; empty: they are simulated
  std::string kernel_release;      // of that kernel
  bool has_devices = false;        // its interfaces are devices of a kernel
  bool counts_at_refresh = false;  // its counters are those of the last refresh, not of the moment

  bool operator==(const switch_facts&) const = default;
};
std::optional<switch_facts> ask_switch_facts();

// The seconds that rates cover; 0 before the source was read twice.
std::optional<double> ask_rate_seconds();

// ---- Users

struct session_user {
  std::string name;
  std::optional<std::vector<uint16>> vsans;  // those that the user sees, ascending; without a list all
  bool sees_counters = true;
  bool may_clear_inband = false;

  bool operator==(const session_user&) const = default;
};

struct user_answer {
  std::optional<session_user> user;  // none: no user has the name, or there are no users
  std::vector<std::string> names;    // of all users
  std::string refusal;               // why this shell may not be the user: a sentence without its full stop
};

// The user with a name. Without one: over a connection that with the name of the shell's own user, otherwise, if the
// switch allows this shell to be any user, the first.
std::optional<user_answer> ask_user(std::string_view name);

// ---- Interfaces and modules

// Every interface, ascending.
std::optional<std::vector<if_index_t>> ask_every_interface();

// Which of some interfaces exist, in their order.
std::optional<std::vector<bool>> ask_which_exist(std::span<const if_index_t> interfaces);

// The interfaces that packets to an address take, ascending. An empty or invalid address uses the default route.
std::optional<std::vector<if_index_t>> ask_interfaces_towards(std::string_view address);

// The numbers of the modules, from 1.
std::optional<std::vector<uint32>> ask_modules();

// ---- Devices of the kernel

// False when no device has this name, as far as that can be said without a refresh.
std::optional<bool> ask_may_have_device(std::string_view name);

struct device_interface {
  std::string name;
  if_index_t if_index = 0;
  std::string reason;  // for which it has its interface, such as "vlan of eth0"

  bool operator==(const device_interface&) const = default;
};

struct devices_answer {
  bool is_kernel = false;  // false: the interfaces of the switch are no devices
  std::vector<device_interface> devices;
};
std::optional<devices_answer> ask_devices();

// ---- Counters

struct baselines_answer {
  bool are_kept = false;  // false: the counters of the switch start from 0 when they are cleared
  std::string file;       // with the values that are subtracted; empty: they are for the session only
  int32 error = 0;        // errno of writing the file
};

// Stores the baselines of counters that were cleared.
std::optional<baselines_answer> ask_to_store_baselines();

// The counters of an interface at a time.
struct traffic_count {
  double at_sec = 0;  // since 1970
  uint64 in_bytes = 0;
  uint64 in_packets = 0;
  uint64 out_bytes = 0;
  uint64 out_packets = 0;
  uint32 last_clear_sec = 0;  // since 1970; 0 is never

  bool operator==(const traffic_count&) const = default;
};

// The counters of an interface as they are now, or at the last refresh when they are read there. Nothing also for an
// interface without counters, which is not a failure.
std::optional<traffic_count> ask_traffic(if_index_t if_index);

}  // namespace host
