// "show interface" in all its views: calls the library's handlers, once for each interface.
#include "shell/commands/show/interface.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <span>

#include "messages/calls/switch_facts.h"
#include "platform/if_index.h"
#include "shell/commands/show/lanes.h"
#include "shell/commands/show/library_display.h"
#include "shell/library/command_queue.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "transport/transport.h"

namespace host {
namespace {

// The result of a command's displays.
struct tally {
  std::size_t shown = 0;
  std::size_t failed = 0;
  std::size_t not_applicable = 0;

  int result() const {
    if (failed + not_applicable == 0) return kDone;
    return failed == shown && not_applicable == 0 ? kServiceFailed : kSomeInterfacesFailed;
  }
};

// Interfaces that share a header.
struct headed_group {
  command_handler header;  // null: none
  std::vector<if_index_t> interfaces;
};

// A view that is being shown, and those whose tables follow it.
struct showing {
  const invocation& run;
  std::span<const interface_view* const> shown;
  command_parameters& parameters;

  const command_library& library() const { return run.session.library; }

  command_handler provided(const interface_view& in, const interface_kind& kind) const {
    return provided_handler(in, kind.mask, run.output.is_structured());
  }

  // Null: the display does not apply to the kind.
  command_handler handler_of(const interface_view& in, const interface_kind& kind) const {
    if (const command_handler other = provided(in, kind); other != nullptr) return other;
    if (in.own.handler != nullptr) return is_of(in, kind) ? in.own.handler : nullptr;
    return kind.show == nullptr ? nullptr : library().*kind.show;
  }

  command_handler header_of(const interface_kind& kind) const {
    const interface_view& in = *shown.front();
    if (in.own.handler != nullptr) return is_of(in, kind) ? in.own.header : nullptr;
    if (kind.header == nullptr || handler_of(in, kind) == nullptr) return nullptr;
    const auto header = in.headers.*kind.header;
    return header == nullptr ? nullptr : library().*header;
  }

  static bool is_of(const interface_view& in, const interface_kind& kind) {
    return std::find(in.kinds.begin(), in.kinds.end(), kind.type) != in.kinds.end();
  }

  // Whether the display applies to an interface.
  bool applies_to(if_index_t if_index) const {
    const interface_view& in = *shown.front();
    const interface_kind& kind = kind_of(if_index);
    const bool has_kind = is_of(in, kind) || provided(in, kind) != nullptr;
    if (!has_kind || handler_of(in, kind) == nullptr) return false;
    if (if_index_is_sub_intf(if_index) == 0) return true;
    return in.own.handler != nullptr ? in.own.shows_sub_interfaces
                                     : library().applies_to_sub_interfaces(in.command_id()) != 0;
  }
};

// The interfaces by header; groups, and what is in them, keep their order.
std::vector<headed_group> group_by_header(const showing& view, const std::vector<if_index_t>& interfaces) {
  std::vector<headed_group> groups;
  for (const if_index_t if_index : interfaces) {
    const command_handler header = view.header_of(kind_of(if_index));
    auto group = std::find_if(groups.begin(), groups.end(),
                              [header](const headed_group& known) { return known.header == header; });
    if (group == groups.end()) group = groups.insert(groups.end(), {header, {}});
    group->interfaces.push_back(if_index);
  }
  return groups;
}

// Header handlers read the first interface: most tables have no header for sub-interfaces.
void show_header(const showing& view, const headed_group& group) {
  const if_index_t first = group.interfaces.front();
  const vsh_intf_mono_range_t range{first, group.interfaces.back()};
  view.parameters.set_command_id(view.shown.front()->command_id());
  group.header(view.parameters.for_ranges(kind_of(first).mask, {&range, 1}));
}

uint32 command_id_for(const interface_view& shown, const interface_kind& kind) {
  return kind.type == IF_TYPE_INBAND && shown.inband != kInbandSame ? shown.inband : shown.command_id();
}

void show_in(const showing& view, const interface_view& in, if_index_t if_index) {
  const interface_kind& kind = kind_of(if_index);
  const command_handler handler = view.handler_of(in, kind);
  view.parameters.set_command_id(command_id_for(in, kind));
  paraminfo_t* const block = view.parameters.for_interface(kind.mask, if_index);
  call_handler(view.run, handler, block);
  const bool has_traffic_lines =
      kind.has_statistics && in.command_id() == DISPLAY_DETAIL && view.provided(in, kind) == nullptr;
  if (has_traffic_lines) view.library().show_statistics(block);
  if (in.followed_by_lanes && !view.run.output.is_structured()) show_lanes(view.run, if_index);
}

void show_one(const showing& view, if_index_t if_index, tally& count) {
  char name[64];
  command_output& output = view.run.output;
  output.begin_interface(sprintf_if_index(name, if_index), if_index);
  ++count.shown;
  for (const interface_view* const in : view.shown) show_in(view, *in, if_index);
  count.failed += output.end_interface();
}

// A command without its arguments.
std::string words_of(const command& what) {
  std::string words;
  for (const syntax_word& word : std::span(what.syntax.words).first(what.syntax.num_words))
    if (word.kind == syntax_kind::literal) words.append(words.empty() ? "" : " ").append(word.text);
  return words;
}

void show_all(const showing& view, const std::vector<if_index_t>& interfaces, tally& count) {
  const announced_interfaces announced(words_of(*view.run.line.what), interfaces);
  for (const headed_group& group : group_by_header(view, interfaces)) {
    if (group.header != nullptr && !view.run.output.is_structured()) show_header(view, group);
    for (const if_index_t if_index : group.interfaces) {
      if (view.run.output.is_discarding()) return;
      show_one(view, if_index, count);
    }
  }
}

// Removes the interfaces to which the display does not apply. Those that the user named are errors; returns how many.
std::size_t remove_not_applicable(const showing& view, bool has_range, selection& chosen) {
  std::size_t named = 0;
  std::erase_if(chosen.interfaces, [&](if_index_t if_index) {
    if (view.applies_to(if_index)) return false;
    if (!has_range || !chosen.is_named(if_index)) return true;
    ++named;
    char name[64];
    sprintf_if_index(name, if_index);
    view.run.output.complain(
        fmt::format("{}: '{}' does not apply to this kind of interface.", name, words_of(*view.run.line.what)), name);
    return true;
  });
  return named;
}

// A view and those that follow it.
std::vector<const interface_view*> views_from(const interface_view& first) {
  std::vector<const interface_view*> views{&first};
  while (views.back()->followed_by != nullptr) views.push_back(views.back()->followed_by);
  return views;
}

// Shows the interfaces that the user named, else all of some kinds.
int show_views(const invocation& run, std::span<const interface_view* const> views,
               std::span<const if_index_type_t> kinds) {
  const command_queue q;
  command_parameters parameters(run.session.library, run.session.user, q.handle, views.front()->command_id());
  if (run.line.number) parameters.add_number(*run.line.number);
  if (!run.line.vlans.empty()) parameters.add_number_ranges(run.line.vlans);
  const bool has_range = !run.line.range.empty();
  selection chosen =
      has_range ? select_named(parameters, run.line.range, absent_ends::skip) : select_all(parameters, kinds);
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) return chosen.code;

  tally count;
  count.not_applicable = remove_not_applicable({run, views, parameters}, has_range, chosen);

  // As text the tables follow each other; a structured record holds the values of all of them.
  const std::size_t at_once = run.output.is_structured() ? views.size() : 1;
  for (std::size_t first = 0; first < views.size(); first += at_once)
    show_all({run, views.subspan(first, at_once), parameters}, chosen.interfaces, count);
  return chosen.result_of(count.result());
}

// The header of the library names a minute; readings of devices cover another time. Documents have it in each record.
void print_time_of_rates(const invocation& run) {
  command_output& output = run.output;
  if (output.is_structured() || !run.session.about.counts_at_refresh || !output.has_shown_interface()) return;
  const auto seconds = ask_rate_seconds();
  if (!seconds) return;
  if (*seconds != 0)
    output.text(fmt::format("\nThe rates cover the last {:.0f} s.\n", *seconds));
  else
    output.text("\nRates need two readings, a second or more apart: repeat the command.\n");
}

}  // namespace

int show_interface(const invocation& run) {
  if (const int checked = check_module(run); checked != kDone) return checked;
  const interface_view& shown = *run.line.what->view;
  const int result = show_views(run, views_from(shown), shown.kinds);
  if (run.line.what->shown.bit == kRatesDisplay) print_time_of_rates(run);
  return result;
}

int show_kinds(const invocation& run, std::span<const if_index_type_t> kinds) {
  return show_views(run, views_from(*run.line.what->view), kinds);
}

namespace {

constexpr if_index_type_t kUsualKinds[] = {IF_TYPE_MGMT,      IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,
                                           IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                           IF_TYPE_LOOPBACK,  IF_TYPE_VETHERNET};
constexpr if_index_type_t kBriefKinds[] = {IF_TYPE_MGMT,     IF_TYPE_ETHERNET,         IF_TYPE_SATELLITE,
                                           IF_TYPE_LOOPBACK, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                           IF_TYPE_INBAND};
constexpr if_index_type_t kEthernetPorts[] = {IF_TYPE_ETHERNET};
constexpr if_index_type_t kKindsWithCapabilities[] = {IF_TYPE_MGMT, IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3,
                                                      IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL};

constexpr table_headers kDescriptionHeaders = {&command_library::channel_header, &command_library::management_header,
                                               &command_library::loopback_header, nullptr};
constexpr table_headers kBriefHeaders = {&command_library::ethernet_header, &command_library::management_header,
                                         &command_library::loopback_header, &command_library::inband_header};

constexpr display kDetailedShown = {kDetailedDisplay, {}, "detailed", false, true};
constexpr display kBriefShown = {kBriefDisplay, {}, "brief", false, true};
constexpr display kStatusShown = {kStatusDisplay, {}, "status", false, true};
constexpr display kErrorStatusShown = {kErrorStatusDisplay, {}, "error_status", false, true};
constexpr display kDescriptionShown = {kDescriptionDisplay, {}, "description", false, true};
constexpr display kMacAddressShown = {kMacAddressDisplay, {}, "mac_address", false, true};
constexpr display kIfIndexShown = {kIfIndexDisplay, {}, "ifindex", false, true};
constexpr display kDebounceShown = {kDebounceDisplay, {}, "debounce", false, true};
constexpr display kCapabilitiesShown = {kCapabilityDisplay, {}, "capabilities", false, true};

// clang-format off
constexpr interface_display kInterfaceDisplays[] = {
    {"show interface [RANGE]", "Settings, state and traffic, in detail", kDetailedShown,
     {DISPLAY_DETAIL, kAllWithInband, kNoHeaders}},
    {"show interface [RANGE] brief", "State, address, speed and MTU", kBriefShown,
     {DISPLAY_BRIEF, kBriefKinds, kBriefHeaders}},
    {"show interface [RANGE] status", "State, VLAN, duplex, speed and type", kStatusShown,
     {DISPLAY_STATUS, kAllWithInband, kCommonHeaders}},
    {"show interface [RANGE] status up", "Status of interfaces that are up", kStatusShown,
     {DISPLAY_STATUS_UP, kUsualKinds, kCommonHeaders}},
    {"show interface [RANGE] status down", "Status of disabled interfaces", kStatusShown,
     {DISPLAY_STATUS_ADMIN_DOWN, kUsualKinds, kCommonHeaders}},
    {"show interface [RANGE] status inactive", "Status of inactive interfaces", kStatusShown,
     {DISPLAY_STATUS_INACTIVE, kUsualKinds, kCommonHeaders}},
    {"show interface [RANGE] status module MODULE", "Status of the ports of a module", kStatusShown,
     {DISPLAY_STATUS_OF_MODULE, kKindsInModules, kCommonHeaders}},
    {"show interface [RANGE] status err-disabled", "Status of ports disabled by an error", kErrorStatusShown,
     {DISPLAY_ERROR_DISABLED, kAllButLoopbacks, kCommonHeaders}},
    {"show interface [RANGE] description", "Descriptions", kDescriptionShown,
     {DISPLAY_DESCRIPTION, kUsualKinds, kDescriptionHeaders}},
    {"show interface [RANGE] mac-address", "Hardware addresses", kMacAddressShown,
     {DISPLAY_MAC_ADDRESS, kAllButLoopbacks, kCommonHeaders}},
    {"show interface [RANGE] ifindex", "Interface indexes", kIfIndexShown,
     {DISPLAY_IF_INDEX, kEthernetPorts, kCommonHeaders}},
    {"show interface [RANGE] debounce", "Link debounce times", kDebounceShown,
     {DISPLAY_DEBOUNCE, kEthernetPorts, kCommonHeaders}},
    {"show interface [RANGE] capabilities", "Capabilities of the ports", kCapabilitiesShown,
     {DISPLAY_CAPABILITIES, kKindsWithCapabilities, kNoHeaders}},
    {"show interface [RANGE] detailed", "Settings, state and traffic, with computed loads", kDetailedShown,
     {DISPLAY_DETAIL, kAllWithInband, kNoHeaders}},
};
// clang-format on

constexpr auto kInterfaceRows = commands_of<kInterfaceDisplays>();

constexpr word_help kShowInterfaceWords[] = {
    {"capabilities", "Capabilities of the ports"},
    {"debounce", "Link debounce times"},
    {"err-disabled", "Only ports disabled by an error"},
    {"ifindex", "Interface indexes"},
    {"inactive", "Only interfaces that are inactive"},
    {"mac-address", "Hardware addresses"},
    {"status", "Status table: VLAN, duplex, speed and type"},
};

}  // namespace

constexpr command_group kInterfaceCommands = {kInterfaceRows, kShowInterfaceWords};

}  // namespace host
