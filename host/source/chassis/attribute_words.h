// The words and short notations of switch files for numbers of the model.
#pragma once

#include <vector>

#include "platform/card_config.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "source/yaml/yaml_value.h"
#include "switch/model.h"

namespace host {

inline constexpr word_value kRateModeWords[] = {{"dedicated", 1}, {"shared", 2}, {"default", 3}};
inline constexpr word_value kSubtypeWords[] = {{"ordinary", PC_SUBTYPE_ORDINARY}, {"xgfc", PC_SUBTYPE_XGFC}};

// Media of transceivers with the layout of their identity page (FCOT_TYPE_*). SFP+ modules have that of an SFP.
inline constexpr word_value kModuleWords[] = {
    {"1000base-T", FCOT_TYPE_SFP}, {"1000base-SX", FCOT_TYPE_SFP}, {"1000base-LH", FCOT_TYPE_SFP},
    {"10Gbase-SR", FCOT_TYPE_SFP}, {"10Gbase-LR", FCOT_TYPE_SFP},  {"10Gbase-CU", FCOT_TYPE_SFP},
    {"10Gbase-LX4", FCOT_TYPE_X2}, {"10Gbase-ZR", FCOT_TYPE_X2},   {"4GFC-SW", FCOT_TYPE_SFP},
    {"4GFC-LW", FCOT_TYPE_SFP},    {"8GFC-SW", FCOT_TYPE_SFP},     {"8GFC-LW", FCOT_TYPE_SFP},
};

enum : uint8 { kReasonNone = 2, kReasonAdminDown = 12, kReasonSfpAbsent = 29 };

// The host's own words first, then the short word of each family of reasons with the family's first reason.
inline constexpr word_value kReasonWords[] = {
    {"up", 2},
    {"admin-down", 12},
    {"not-connected", 7},
    {"error-disabled", 5},
    {"sfp-absent", 29},
    {"inactive", 11},
    {"suspended", 14},
    {"no-members", 43},
    {"parent-down", 26},
    {"down", 1},
    {"none", 2},
    {"hwFailure", 3},
    {"diagFailure", 4},
    {"errDisabled", 5},
    {"swFailure", 6},
    {"notConnected", 7},
    {"offline", 8},
    {"nonPcpt", 9},
    {"init", 10},
    {"channelDown", 13},
    {"channelUpdate", 15},
    {"rcfInProgress", 16},
    {"isolated", 17},
    {"parentDown", 26},
    {"srcUnbound", 27},
    {"ifRemoved", 28},
    {"sfpAbsent", 29},
    {"modUpgrade", 40},
    {"noOperMembers", 43},
    {"peerDown", 47},
    {"tcpDown", 49},
    {"parentEthDown", 52},
    {"adminCfgChange", 54},
    {"srcPortRemoved", 55},
    {"srcModNotOnline", 56},
    {"invalidCfg", 57},
    {"ficonDown", 61},
    {"invalidAttach", 62},
    {"portBlocked", 63},
    {"invalidFlogis", 65},
    {"invalidBinding", 66},
    {"sfpErr", 99},
    {"noFiconPortNum", 104},
    {"ficonEnabled", 105},
    {"ficonProhibit", 106},
    {"gracefulShutdown", 107},
    {"some", 108},
    {"trackedPortDown", 115},
    {"outOfServc", 122},
    {"authFail", 123},
    {"sfpConnTypeErr", 125},
    {"ficonDupPortNum", 127},
    {"localRcf", 128},
    {"extDisabled", 138},
    {"npmExtLinkDown", 139},
    {"npmPrefPathNotAvail", 140},
    {"authPend", 147},
    {"VIFadminDown", 175},
    {"BoundIfDown", 176},
    {"maxVifs", 177},
    {"VIFholdDown", 178},
    {"noFCOE", 179},
    {"notBound", 182},
    {"fabricIfDown", 184},
    {"invalidFabIf", 185},
    {"noRemChassis", 186},
    {"vicEnableNotRcvd", 187},
    {"vicDisableRcvd", 188},
    {"noVlanVsanMap", 189},
    {"STPdownInVlan", 190},
    {"lcoffline", 191},
    {"fexFabSfpInv", 202},
    {"modRemoved", 255},
};

// Bits of capabilities (CRDCFG_*).
inline constexpr word_value kDuplexBits[] = {
    {"full", CRDCFG_DUPLEX_FULL}, {"half", CRDCFG_DUPLEX_HALF}, {"auto", CRDCFG_DUPLEX_AUTO}};
inline constexpr word_value kFlowBits[] = {
    {"on", CRDCFG_FLOW_ON}, {"off", CRDCFG_FLOW_OFF}, {"desired", CRDCFG_FLOW_DESIRED}};
inline constexpr word_value kRateModeBits[] = {{"dedicated", CRDCFG_RATE_DEDICATED}, {"shared", CRDCFG_RATE_SHARED}};

// Seconds of "3d4h30m10s"; weeks ("w") too.
uint32 read_duration_sec(const yaml_value& value);

// A moment as seconds since 1970: "never" (0), such a number, or a duration before `now_sec`.
uint32 read_moment_sec(const yaml_value& value, uint32 now_sec);

mac_address read_mac(const yaml_value& value);

// "10.1.2.3/24" or "2001:db8::1/64".
ip_address read_ip(const yaml_value& value);

// One VLAN or VSAN, or a sorted list of them such as "1-10,20", "all" or "none".
uint16 read_vlan(const yaml_value& value);
std::vector<uint16> read_vlan_list(const yaml_value& value);
std::vector<uint16> read_vsan_list(const yaml_value& value);

}  // namespace host
