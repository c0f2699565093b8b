// "clear counters": passes interfaces to the owner of their counters, and compares the cleared ones with the named
// ones.
#include <dlfcn.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <map>
#include <optional>
#include <string>

#include "base/port_status.h"
#include "base/state_directory.h"
#include "messages/calls/command_account.h"
#include "messages/calls/switch_facts.h"
#include "platform/clear_counters.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/vsh.h"
#include "shell/commands/group.h"
#include "shell/library/command_queue.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/listing.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "switch/range_text.h"

namespace host {
namespace {

// Kinds that show counters, by the commands that clear all of them.
constexpr if_index_type_t kPorts[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_VETHERNET};
constexpr if_index_type_t kChannels[] = {IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL};
constexpr if_index_type_t kLoopbacks[] = {IF_TYPE_LOOPBACK};
constexpr if_index_type_t kAll[] = {IF_TYPE_MGMT,      IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,
                                    IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                    IF_TYPE_LOOPBACK,  IF_TYPE_VETHERNET};

// ---- Handing over ---------------------------------------------------------------------------------------------------

// The part of the library that clears a kind of interface.
enum class clearer : uint8 { ethernet, port_channels, loopbacks, inband, others };

clearer clearer_of(if_index_t if_index) {
  switch (kind_of(if_index).type) {
    case IF_TYPE_ETHERNET:
    case IF_TYPE_ETHERNET_L3:
    case IF_TYPE_VETHERNET:
    case IF_TYPE_SATELLITE: return clearer::ethernet;
    case IF_TYPE_PORT_CHANNEL:
    case IF_TYPE_ETH_PORT_CHANNEL: return clearer::port_channels;
    case IF_TYPE_LOOPBACK: return clearer::loopbacks;
    case IF_TYPE_INBAND: return clearer::inband;
    default: return clearer::others;
  }
}

// Results of the handlers are ignored: interfaces that were not cleared are found by comparison.
void clear_by(clearer owner, const command_library& library, paraminfo_t* block) {
  switch (owner) {
    case clearer::ethernet: library.clear_ethernet(block); return;
    case clearer::port_channels: library.clear_port_channels(block); return;
    case clearer::loopbacks: library.clear_loopbacks(block); return;
    case clearer::inband: library.clear_inband(); return;
    case clearer::others: library.clear_others(block); return;
  }
}

// As many interfaces in a call as an argument holds; all of them have the same clearer.
void clear_block(const invocation& run, command_parameters& parameters, std::span<const if_index_t> interfaces) {
  std::array<vsh_intf_mono_range_t, PARAM_MAX_RANGES> ranges{};
  interface_mask_t mask = 0;
  for (std::size_t i = 0; i < interfaces.size(); ++i) {
    ranges[i] = {interfaces[i], interfaces[i]};
    mask |= kind_of(interfaces[i]).mask;
  }
  paraminfo_t* const block = parameters.for_ranges(mask, std::span(ranges).first(interfaces.size()));
  clear_by(clearer_of(interfaces.front()), run.session.library, block);
}

void clear_ranges(const invocation& run, command_parameters& parameters, std::span<const if_index_t> interfaces) {
  while (!interfaces.empty() && !run.output.is_discarding()) {
    const auto has_other_clearer = [owner = clearer_of(interfaces.front())](if_index_t it) {
      return clearer_of(it) != owner;
    };
    const auto most = interfaces.first(std::min<std::size_t>(interfaces.size(), PARAM_MAX_RANGES));
    const auto end = std::find_if(most.begin(), most.end(), has_other_clearer);
    const auto count = static_cast<std::size_t>(end - most.begin());
    clear_block(run, parameters, interfaces.first(count));
    interfaces = interfaces.subspan(count);
  }
}

// ---- The in-band interface ------------------------------------------------------------------------------------------

bool is_inband(if_index_t if_index) { return clearer_of(if_index) == clearer::inband; }

// By the switch file.
bool has_inband_right(const invocation& run) {
  return run.session.user != nullptr && run.session.user->may_clear_inband;
}

bool may_clear_inband(const invocation& run) {
  if (has_inband_right(run)) return true;
  run.output.complain(
      "not permitted: only users with 'clear-in-band: yes' in the switch file may clear the in-band interface.");
  return false;
}

// Of a switch that has one: cleared, or named as one that keeps its counters.
void clear_inband_of_switch(const invocation& run, mts_q_handle_t q) {
  const auto listed = list_kind(q, IF_TYPE_INBAND);
  if (!listed) return vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
  if (listed->empty()) return;
  if (has_inband_right(run)) return run.session.library.clear_inband();
  run.output.text(
      "The in-band interface keeps its counters: the switch file does not grant 'clear-in-band: yes' to the user.\n");
}

// ---- Comparing ------------------------------------------------------------------------------------------------------

// The answers of services, by interface.
class answered_clears {
 public:
  explicit answered_clears(const std::vector<clear_result>& results) {
    for (const clear_result& it : results) {
      const auto [known, is_new] = by_low_.emplace(it.low, it);
      if (!is_new && it.error == 0) known->second = it;  // success takes precedence over other answers
    }
  }

  // Null for an interface of which no service was asked.
  const clear_result* find(if_index_t if_index) const {
    const auto next = by_low_.upper_bound(if_index);
    if (next == by_low_.begin()) return nullptr;
    const clear_result& found = std::prev(next)->second;
    return if_index <= found.high ? &found : nullptr;
  }

  bool has_missing_right() const {
    return std::any_of(by_low_.begin(), by_low_.end(),
                       [](const auto& it) { return is_missing_right(static_cast<uint32>(it.second.error)); });
  }

  bool has_success() const {
    return std::any_of(by_low_.begin(), by_low_.end(), [](const auto& it) { return it.second.error == 0; });
  }

 private:
  std::map<if_index_t, clear_result> by_low_;
};

// A function of a client library by which the command library clears interfaces.
struct client_function {
  const char* library;
  const char* name;
};

std::string fault_of(const client_function& requested) {
  void* const library = dlopen(requested.library, RTLD_NOW);
  if (library == nullptr) return fmt::format("{} cannot be opened", requested.library);
  const bool is_there = dlsym(library, requested.name) != nullptr;
  dlclose(library);
  return is_there ? "no service was asked" : fmt::format("{} has no function {}", requested.library, requested.name);
}

std::string why_not_asked(clearer owner) {
  switch (owner) {
    case clearer::ethernet: return fault_of({STATCL_LIBRARY, "statscl_clear_port_client_stats"});
    case clearer::loopbacks: return fault_of({IP_STATS_LIBRARY, "ip_clear_loopback_counters"});
    default: return "the command library does not clear interfaces of this kind";
  }
}

std::string why_failed(const clear_result& result) {
  const char* const text = syserr2str(result.error);
  return fmt::format("{} failed ({})", result.service, text == nullptr ? "" : text);
}

// Names the interfaces whose counters were not cleared, by reason. False when there are none.
bool name_uncleared(const invocation& run, std::span<const if_index_t> requested, const answered_clears& answered) {
  std::map<std::string, std::vector<if_index_t>> by_reason;
  std::map<clearer, std::string> not_asked;  // reasons, each found once
  for (const if_index_t if_index : requested) {
    if (is_inband(if_index)) continue;  // the kernel's, which sends no answer
    const clear_result* const result = answered.find(if_index);
    if (result != nullptr && result->error == 0) continue;
    if (result != nullptr) {
      by_reason[why_failed(*result)].push_back(if_index);
      continue;
    }
    const clearer owner = clearer_of(if_index);
    std::string& reason = not_asked[owner];
    if (reason.empty()) reason = run.output.is_discarding() ? "the command was interrupted" : why_not_asked(owner);
    by_reason[reason].push_back(if_index);
  }
  for (const auto& [reason, interfaces] : by_reason)
    run.output.complain(fmt::format("counters of {} were not cleared: {}.", range_text(interfaces), reason));
  return !by_reason.empty();
}

// ---- The end of a command -------------------------------------------------------------------------------------------

// The kernel's counters cannot be set to 0: reports how long the baseline is kept.
int keep_cleared(const invocation& run) {
  const auto baselines = ask_to_store_baselines();
  if (!baselines) return kServiceFailed;
  if (!baselines->are_kept) return kDone;
  if (baselines->file.empty()) {
    run.output.text("The kernel's counters keep running; for this session, displays subtract the values read now.\n");
    return kDone;
  }
  if (baselines->error != 0) {
    run.output.complain(fmt::format("cannot write '{}': {}. The counters are cleared for this session only.",
                                    baselines->file, std::strerror(baselines->error)));
    return kServiceFailed;
  }
  run.output.text(
      fmt::format("The kernel's counters keep running; displays subtract the values saved in\n{}.\n", baselines->file));
  return kDone;
}

// The exit code of a command that should clear these interfaces.
int result_of(const invocation& run, std::span<const if_index_t> requested, const std::vector<clear_result>& results) {
  run.output.flush();
  const answered_clears answered(results);
  const bool has_failed = name_uncleared(run, requested, answered) || run.output.failed();
  const int kept = !has_failed || answered.has_success() ? keep_cleared(run) : kDone;
  if (answered.has_missing_right()) return kNotPermitted;
  return has_failed ? kServiceFailed : kept;
}

// All interfaces of some kinds: `clear_all` is the command library's own function, which omits some of them. These are
// cleared by their ranges.
template <typename ClearAll>
int clear_every(const invocation& run, std::span<const if_index_type_t> kinds, ClearAll clear_all) {
  const command_queue q;
  command_account account(q.handle);
  command_parameters parameters(run.session.library, run.session.user, q.handle, kNoDisplayId);
  const selection every = select_all(parameters, kinds);
  if (every.code != kDone) return every.code;
  clear_all(parameters);
  const answered_clears answered(account.clears);
  std::vector<if_index_t> rest = every.interfaces;
  std::erase_if(rest, [&](if_index_t if_index) { return answered.find(if_index) != nullptr; });
  clear_ranges(run, parameters, rest);
  return result_of(run, every.interfaces, account.clears);
}

// Named interfaces, all of which are cleared by their ranges.
int clear_named(const invocation& run, const interface_range& range) {
  const command_queue q;
  command_account account(q.handle);
  command_parameters parameters(run.session.library, run.session.user, q.handle, kNoDisplayId);
  const selection chosen = select_named(parameters, range);
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) return chosen.code;
  if (std::any_of(chosen.interfaces.begin(), chosen.interfaces.end(), is_inband) && !may_clear_inband(run))
    return kNotPermitted;
  clear_ranges(run, parameters, chosen.interfaces);
  return result_of(run, chosen.interfaces, account.clears);
}

int clear_all(const invocation& run) {
  return clear_every(run, kAll, [&run](command_parameters& parameters) {
    run.session.library.clear_all_ethernet(parameters.queue());
    run.session.library.clear_all_others(parameters.for_ranges(0, {}));
    clear_inband_of_switch(run, parameters.queue());
  });
}

int clear_range(const invocation& run) { return clear_named(run, run.line.range); }

int clear_ethernet(const invocation& run) {
  return clear_every(run, kPorts, [&run](command_parameters& parameters) {
    run.session.library.clear_all_ethernet(parameters.queue());
  });
}

int clear_port_channels(const invocation& run) {
  return clear_every(run, kChannels, [&run](command_parameters& parameters) {
    run.session.library.clear_all_port_channels(parameters.queue());
  });
}

int clear_loopbacks(const invocation& run) {
  return clear_every(run, kLoopbacks, [&run](command_parameters& parameters) {
    run.session.library.clear_all_loopbacks(parameters.queue());
  });
}

int clear_inband(const invocation& run) {
  if (!may_clear_inband(run)) return kNotPermitted;
  run.session.library.clear_inband();
  return result_of(run, {}, {});
}

int clear_management(const invocation& run) {
  const interface_number number{.port = *run.line.number};
  const interface_span span{word_of(IF_TYPE_MGMT), number, number};
  return clear_named(run, {{span}, {}});
}

// clang-format off
constexpr command kClearRows[] = {
    {"clear counters", "Clear the counters of all interfaces", clear_all, kSentences, nullptr, kEveryMode, command_effect::outside},
    {"clear counters all", "Clear the counters of all interfaces", clear_all, kSentences, nullptr, kEveryMode, command_effect::outside},
    {"clear counters interface RANGE", "Clear the counters of a range", clear_range, kSentences, nullptr, kEveryMode, command_effect::outside},
    {"clear counters ethernet", "Clear the counters of all Ethernet ports", clear_ethernet, kSentences, nullptr, kEveryMode, command_effect::outside},
    {"clear counters port-channel", "Clear the counters of all port-channels", clear_port_channels, kSentences, nullptr, kEveryMode, command_effect::outside},
    {"clear counters loopback", "Clear the counters of all loopbacks", clear_loopbacks, kSentences, nullptr, kEveryMode, command_effect::outside},
    {"clear counters in-band", "Clear the counters of the in-band interface", clear_inband, kSentences, nullptr, kEveryMode, command_effect::outside},
    {"clear counters mgmt PORT", "Clear the counters of a management port", clear_management, kSentences, nullptr, kEveryMode, command_effect::outside},
};
// clang-format on

constexpr word_help kClearWords[] = {
    {"clear", "Clear counters"},   {"ethernet", "All Ethernet ports"}, {"in-band", "The in-band interface"},
    {"loopback", "All loopbacks"}, {"mgmt", "A management port"},
};

}  // namespace

constexpr command_group kClearCommands = {kClearRows, kClearWords};

}  // namespace host
