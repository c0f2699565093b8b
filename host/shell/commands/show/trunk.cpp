// "show interface trunk".
#include "shell/commands/show/interface.h"

namespace host {
namespace {

// The library has no detailed view of the others.
constexpr if_index_type_t kTrunksInDetail[] = {IF_TYPE_ETHERNET, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL};

constexpr display kTrunkShown = {kTrunkDisplay, {}, "trunk", false, true};
constexpr display kAllowedVlansShown = {kAllowedVlansDisplay, {}, "trunk_allowed", false, true};
constexpr display kForwardingVlansShown = {kForwardingVlansDisplay, {}, "trunk_forwarding", false, true};
constexpr display kTrunkDetailShown = {kSwitchportDisplay, {}, "trunk_detail", false, true};

// clang-format off
constexpr interface_display kTrunkDisplays[] = {
    {"show interface [RANGE] trunk", "Trunks: native VLAN, status, port-channel", kTrunkShown,
     {DISPLAY_TRUNK_STATUS, kCountedKinds, kPortHeaders}},
    {"show interface [RANGE] trunk allowed", "VLANs that trunks carry", kAllowedVlansShown,
     {DISPLAY_TRUNK_ALLOWED_VLANS, kCountedKinds, kPortHeaders}},
    {"show interface [RANGE] trunk forwarding", "VLANs that spanning tree forwards on trunks", kForwardingVlansShown,
     {DISPLAY_TRUNK_FORWARDING_VLANS, kCountedKinds, kPortHeaders}},
    {"show interface [RANGE] trunk detail", "Trunks in detail", kTrunkDetailShown,
     {DISPLAY_TRUNK_DETAIL, kTrunksInDetail, kNoHeaders}},
    {"show interface [RANGE] trunk detail module MODULE", "Trunks in detail on the ports of a module", kTrunkDetailShown,
     {DISPLAY_TRUNK_DETAIL_OF_MODULE, kTrunksInDetail, kNoHeaders}},
    {"show interface [RANGE] trunk detail native-vlan VLANS", "Trunks with one of these native VLANs", kTrunkDetailShown,
     {DISPLAY_TRUNK_DETAIL_OF_VLANS, kTrunksInDetail, kNoHeaders}},
};
// clang-format on

constexpr auto kTrunkRows = commands_of<kTrunkDisplays>();

constexpr word_help kTrunkWords[] = {
    {"forwarding", "VLANs that spanning tree forwards on trunks"},
    {"native-vlan", "Only trunks with one of these native VLANs"},
};

}  // namespace

constexpr command_group kTrunkCommands = {kTrunkRows, kTrunkWords};

}  // namespace host
