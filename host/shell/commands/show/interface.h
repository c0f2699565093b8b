// "show interface" in its views, which the command library shows: one call of its handlers for each interface.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "pmcli/displays.h"
#include "shell/commands/group.h"
#include "shell/library/views.h"

namespace host {

// A command that shows interfaces in a view.
struct interface_display {
  std::string_view syntax;
  std::string_view help;
  display shown;
  interface_view view;
};

// Shows the interfaces that the user named, or all of the kinds of the command's view.
int show_interface(const invocation& run);

// Shows all interfaces of some kinds in the command's view.
int show_kinds(const invocation& run, std::span<const if_index_type_t> kinds);

// The commands of a table of displays.
template <const auto& Displays>
constexpr auto commands_of() {
  return []<std::size_t... I>(std::index_sequence<I...>) {
    return std::array{command{command_syntax(Displays[I].syntax), Displays[I].help, show_interface, Displays[I].shown,
                              &Displays[I].view}...};
  }
  (std::make_index_sequence<std::size(Displays)>());
}

// ---- What views have in common

// Without a range the in-band interface is omitted, like every kind without a word of kWordsInOrder (selection.cpp).
inline constexpr if_index_type_t kAllWithInband[] = {IF_TYPE_MGMT,      IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,
                                                     IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                                     IF_TYPE_LOOPBACK,  IF_TYPE_VETHERNET,        IF_TYPE_INBAND};
inline constexpr if_index_type_t kAllButLoopbacks[] = {
    IF_TYPE_MGMT,         IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL,
    IF_TYPE_PORT_CHANNEL, IF_TYPE_VETHERNET};
inline constexpr if_index_type_t kCountedKinds[] = {IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,  IF_TYPE_SATELLITE,
                                                    IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL, IF_TYPE_VETHERNET};
inline constexpr if_index_type_t kKindsInModules[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3};

inline constexpr table_headers kNoHeaders = {};
inline constexpr table_headers kCommonHeaders = {&command_library::common_header, &command_library::common_header,
                                                 &command_library::common_header, &command_library::common_header};
inline constexpr table_headers kPortHeaders = {&command_library::common_header, nullptr, nullptr, nullptr};

}  // namespace host
