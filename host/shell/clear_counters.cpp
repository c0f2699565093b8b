// "clear counters": hands interfaces to the owner of their counters.
#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "platform/vsh.h"
#include "shell/commands.h"
#include "shell/interface_kinds.h"
#include "shell/listing.h"
#include "shell/output/command_output.h"
#include "shell/selection.h"
#include "shell/shell.h"
#include "shell/state_directory.h"

namespace host {
namespace {

constexpr uint32 kNoDisplayId = 0;

// Who clears a kind of interface.
enum class clearer : uint8 { ethernet, port_channels, loopbacks, inband, others };

clearer clearer_of(const interface_kind& kind) {
  switch (kind.type) {
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

void clear_by(clearer who, const command_library& library, paraminfo_t* block) {
  switch (who) {
    case clearer::ethernet: library.clear_ethernet(block); return;
    case clearer::port_channels: library.clear_port_channels(block); return;
    case clearer::loopbacks: library.clear_loopbacks(block); return;
    case clearer::inband: library.clear_inband(); return;
    case clearer::others: library.clear_others(block); return;
  }
}

// Clears interfaces of one kind, as many in a call as an argument holds.
void clear_some(const invocation& run, command_parameters& parameters, std::span<const if_index_t> interfaces) {
  const interface_kind& kind = kind_of(interfaces.front());
  while (!interfaces.empty() && !run.output.is_discarding()) {
    std::array<vsh_intf_mono_range_t, PARAM_MAX_RANGES> ranges{};
    const std::size_t count = std::min(interfaces.size(), ranges.size());
    std::transform(interfaces.begin(), interfaces.begin() + static_cast<std::ptrdiff_t>(count), ranges.begin(),
                   [](if_index_t if_index) {
                     return vsh_intf_mono_range_t{if_index, if_index};
                   });
    clear_by(clearer_of(kind), run.session.library, parameters.for_ranges(kind.mask, std::span(ranges).first(count)));
    interfaces = interfaces.subspan(count);
  }
}

// The kernel's counters cannot be set to 0: says how long it is that they are shown so.
int keep_cleared(const invocation& run) {
  const std::string& path = run.session.kept_cleared_in;
  if (path.empty()) {
    run.output.text("The kernel counts on; for this session, what it had counted is left out.\n");
    return kDone;
  }
  make_directories_of(path);
  if (const int error = run.session.keep_cleared(); error != 0) {
    run.output.complain("cannot write '" + path + "': " + std::strerror(error) +
                        ". What was counted is left out for this session only.");
    return kServiceFailed;
  }
  run.output.text("The kernel counts on; what it had counted is left out from now on, as kept in\n" + path + ".\n");
  return kDone;
}

// Failures are told by what the library printed.
int result_of(const invocation& run) {
  run.output.flush();
  if (run.output.failed()) return kServiceFailed;
  return run.session.keep_cleared == nullptr ? kDone : keep_cleared(run);
}

void clear_management_ports(const invocation& run, mts_q_handle_t q) {
  const auto ports = list_kind(q, IF_TYPE_MGMT);
  if (!ports) return vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
  for (const if_index_t port : *ports) run.session.library.clear_management(port, q);
}

// Refuses, unless the switch file grants it to the user.
bool may_clear_inband(const invocation& run) {
  const user* const who = run.session.who;
  if (who != nullptr && who->may_clear_inband) return true;
  run.output.complain(
      "not permitted: only users with 'clear-in-band: yes' in the switch file may clear the in-band interface.");
  return false;
}

bool is_inband(if_index_t if_index) { return kind_of(if_index).type == IF_TYPE_INBAND; }

}  // namespace

int clear_all(const invocation& run) {
  const command_queue q;
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  run.session.library.clear_all_ethernet(q.handle);
  run.session.library.clear_all_others(parameters.for_ranges(0, {}));
  clear_management_ports(run, q.handle);
  return result_of(run);
}

int clear_range(const invocation& run) {
  const command_queue q;
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  const selection chosen = select_named(run.session, parameters, run.line.spans);
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) return chosen.code;
  const std::span all(chosen.interfaces);
  if (std::any_of(all.begin(), all.end(), is_inband) && !may_clear_inband(run)) return kNotPermitted;
  for (std::size_t first = 0; first < all.size();) {
    const auto is_same_kind = [&](if_index_t it) { return &kind_of(it) == &kind_of(all[first]); };
    const auto end = std::find_if_not(all.begin() + static_cast<std::ptrdiff_t>(first), all.end(), is_same_kind);
    const auto count = static_cast<std::size_t>(end - all.begin()) - first;
    clear_some(run, parameters, all.subspan(first, count));
    first += count;
  }
  return result_of(run);
}

int clear_ethernet(const invocation& run) {
  const command_queue q;
  run.session.library.clear_all_ethernet(q.handle);
  return result_of(run);
}

int clear_port_channels(const invocation& run) {
  const command_queue q;
  run.session.library.clear_all_port_channels(q.handle);
  return result_of(run);
}

int clear_loopbacks(const invocation& run) {
  const command_queue q;
  run.session.library.clear_all_loopbacks(q.handle);
  return result_of(run);
}

int clear_inband(const invocation& run) {
  if (!may_clear_inband(run)) return kNotPermitted;
  run.session.library.clear_inband();
  return result_of(run);
}

int clear_management(const invocation& run) {
  const command_queue q;
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  const interface_number number{.port = *run.line.number};
  const interface_span span{word_of(IF_TYPE_MGMT), number, number};
  const selection chosen = select_named(run.session, parameters, {&span, 1});
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) return chosen.code;
  for (const if_index_t port : chosen.interfaces) run.session.library.clear_management(port, q.handle);
  return result_of(run);
}

}  // namespace host
