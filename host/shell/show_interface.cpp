// "show interface": calls the library's handlers, once for each interface.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "platform/if_index.h"
#include "platform/vsh.h"
#include "shell/commands.h"
#include "shell/listing.h"
#include "shell/output/command_output.h"
#include "shell/shell.h"

namespace host {
namespace {

// What a kind of interface is shown with. A null handler: there is no display of this kind.
struct kind_display {
  if_index_type_t kind;
  interface_mask_t mask;
  command_handler command_library::*handler;
  bool has_statistics;  // the detailed view continues with the traffic lines
};

constexpr kind_display kKinds[] = {
    {IF_TYPE_ETHERNET, 0x2, &command_library::show_ethernet, true},
    {IF_TYPE_ETHERNET_L3, 0x800000, &command_library::show_ethernet, true},
    {IF_TYPE_PORT_CHANNEL, 0x10, &command_library::show_ethernet, true},
    {IF_TYPE_ETH_PORT_CHANNEL, 0x100000, &command_library::show_ethernet, true},
    {IF_TYPE_VETHERNET, 0x200000, &command_library::show_ethernet, false},
    {IF_TYPE_SATELLITE, 0x10000000, &command_library::show_satellite, false},
    {IF_TYPE_MGMT, 0x80, &command_library::show_management, true},
    {IF_TYPE_LOOPBACK, 0x4000, &command_library::show_loopback, false},
};

enum { DETAILED_VIEW = 1 };

// Words of the interfaces that are shown when no range is given, in this order.
constexpr std::string_view kShownWords[] = {"mgmt", "ethernet", "port-channel", "loopback", "vethernet"};

const kind_display* find_kind(if_index_t if_index) {
  if_index_type_t kind = IF_TYPE_NONE;
  if_index_get_type(if_index, &kind);
  const auto* const found =
      std::find_if(std::begin(kKinds), std::end(kKinds), [kind](const kind_display& row) { return row.kind == kind; });
  return found == std::end(kKinds) ? nullptr : found;
}

// The parameter block of a show command; `arg` is set for each interface.
struct show_parameters {
  show_parameters(mts_q_handle_t q, uint32 command_id) {
    block.parameter_count = 1;
    block.q = q;
    block.command_id = command_id;
    block.vtyname = isatty(STDIN_FILENO) != 0 ? ttyname(STDIN_FILENO) : nullptr;
    const char* const user = std::getenv("USER");
    block.username = user == nullptr ? "" : user;
    block.session_id = static_cast<uint32>(getpid());
    block.sup_state = kSupervisorActive;
    block.prc_mode = kShowCommand;
    bitset_clear_all(&block.vsan_mask);
    for (uint32 vsan = 1; vsan < 4094; ++vsan) bitset_set(&block.vsan_mask, vsan);
    argument.type = PARAM_TYPE_INTERFACES;
    argument.arg = &if_index;
    block.arg_list[0] = &argument;
  }
  show_parameters(const show_parameters&) = delete;
  show_parameters& operator=(const show_parameters&) = delete;

  static constexpr sysmgr_supstate_t kSupervisorActive = 1;
  static constexpr uint32 kShowCommand = 3;

  paraminfo_t block{};
  param_arg_t argument{};
  if_index_t if_index = 0;
};

// How the displays of a command went.
struct tally {
  std::size_t shown = 0;
  std::size_t failed = 0;
  std::size_t without_display = 0;

  int result() const {
    if (failed + without_display == 0) return kDone;
    return failed == shown ? kServiceFailed : kSomeInterfacesFailed;
  }
};

void show_one(const invocation& run, show_parameters& parameters, if_index_t if_index, tally& count) {
  char name[64];
  run.output.begin_interface(sprintf_if_index(name, if_index));
  ++count.shown;
  if (const kind_display* const kind = find_kind(if_index)) {
    const command_library& library = run.session.library;
    parameters.if_index = if_index;
    parameters.argument.interface_mask = kind->mask;
    (library.*kind->handler)(&parameters.block);
    const bool is_detailed = parameters.block.command_id == DETAILED_VIEW;
    if (kind->has_statistics && is_detailed) library.show_statistics(&parameters.block);
  } else {
    ++count.without_display;
    std::printf("%s: there is no such display of this kind of interface\n", name);
  }
  count.failed += run.output.end_interface();
}

int show_all(const invocation& run, mts_q_handle_t q, const std::vector<if_index_t>& interfaces) {
  show_parameters parameters(q, run.line.what->command_id);
  tally count;
  for (const if_index_t if_index : interfaces) {
    if (run.output.is_discarding()) break;
    show_one(run, parameters, if_index, count);
  }
  return count.result();
}

std::vector<const interface_word*> shown_words() {
  std::vector<const interface_word*> words;
  range_fault fault{};
  for (const std::string_view word : kShownWords) words.push_back(parse_interface_word(word, fault));
  return words;
}

int report_no_listing(mts_q_handle_t q) {
  vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
  return kServiceFailed;
}

}  // namespace

int show_interface(const invocation& run) {
  const command_queue q;
  if (run.line.spans.empty()) {
    const auto interfaces = expand_words(q.handle, shown_words());
    return interfaces ? show_all(run, q.handle, *interfaces) : report_no_listing(q.handle);
  }
  const auto expanded = expand_spans(q.handle, run.line.spans);
  if (!expanded) return report_no_listing(q.handle);
  if (!expanded->missing.empty()) {
    run.output.complain("no such interface: " + expanded->missing + ". Type 'show interface ?' for the kinds.");
    return kNoSuchInterface;
  }
  return show_all(run, q.handle, expanded->interfaces);
}

}  // namespace host
