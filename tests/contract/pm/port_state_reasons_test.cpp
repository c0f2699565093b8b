// Why a port is in its state: the words, the sentences, and the families.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "pm/port_attributes.h"

namespace pmcli_test {
namespace {

struct reason_texts {
  uint8 reason;
  const char* word;
  const char* sentence;
};

constexpr reason_texts kReasons[] = {
    {1, "down", "Other"},
    {2, "none", "None"},
    {3, "hwFailure", "Hardware failure"},
    {4, "diagFailure", "Diag Failure"},
    {5, "errDisabled", "Error disabled"},
    {6, "swFailure", "Port software failure"},
    {7, "notConnected", "Link failure or not-connected"},
    {8, "offline", "Offline"},
    {9, "nonPcpt", "Non participating"},
    {10, "init", "Initializing"},
    {11, "inactive", "Inactive"},
    {12, "down", "Administratively down"},
    {13, "channelDown", "Channel admin down"},
    {14, "suspended", "Suspended"},
    {15, "channelUpdate", "Channel membership update in progress"},
    {16, "rcfInProgress", "RCF is in progress"},
    {17, "isolated", "Isolation due to ELP failure"},
    {18, "isolated", "Isolation due to ESC failure"},
    {19, "isolated", "Isolation due to domain overlap"},
    {20, "isolated", "Isolation due to domain id assignment failure"},
    {21, "isolated", "Isolation due to domain other side eport isolated"},
    {22, "isolated", "Isolation due to invalid fabric reconfiguration"},
    {23, "isolated", "Isolation due to domain manager disabled"},
    {24, "isolated", "Isolation due to zone merge failure"},
    {25, "isolated", "Isolation due to vsan not configured on peer"},
    {26, "parentDown", "Parent interface down"},
    {27, "srcUnbound", "Tunnel port src interface unbound"},
    {28, "ifRemoved", "Interface is removed"},
    {29, "sfpAbsent", "SFP not present"},
    {30, "errDisabled", "Error disabled - SFP vendor not supported"},
    {31, "errDisabled", "Error disabled - incompatible admin port mode"},
    {32, "errDisabled", "Error disabled - incompatible admin port speed"},
    {33, "suspended", "Suspended due to incompatible mode"},
    {34, "suspended", "Suspended due to incompatible speed"},
    {35, "suspended", "Suspended due to incompatible remote switch WWN"},
    {36, "isolated", "Isolation due to domain manager other side not responding"},
    {37, "errDisabled", "Error Disabled - EPP Failure"},
    {38, "isolated", "Isolation due to port vsan mismatch"},
    {39, "isolated", "Isolation due to port loopback to same switch"},
    {40, "modUpgrade", "Linecard upgrade in progress"},
    {41, "errDisabled", "Error disabled - incompatible admin port rxbbcredit"},
    {42, "errDisabled", "Error disabled - incompatible admin port rxbufsize"},
    {43, "noOperMembers", "No operational members"},
    {44, "isolated", "Isolation due to remote zone server not responding"},
    {45, "errDisabled", "Error disabled - first interface in this group is E"},
    {46, "errDisabled", "Error disabled - other interfaces in this group are not shut"},
    {47, "peerDown", "TCP connection closed by peer"},
    {48, "peerDown", "TCP connection reset by peer"},
    {49, "tcpDown", "TCP max retransmission reached"},
    {50, "tcpDown", "TCP keep alive timer expired"},
    {51, "tcpDown", "TCP persist timer expired"},
    {52, "parentEthDown", "Parent ethernet link down"},
    {53, "parentEthDown", "Parent ethernet down"},
    {54, "adminCfgChange", "Admin config change"},
    {55, "srcPortRemoved", "Tunnel src port removed"},
    {56, "srcModNotOnline", "Tunnel source module not online"},
    {57, "invalidCfg", "Error disabled - Possible port channel misconfiguration"},
    {58, "isolated", "Isolation due to port security failure"},
    {59, "isolated", "Isolation due to fabric bind failure"},
    {60, "isolated", "Isolation due to no common vsans with peer on trunk"},
    {61, "ficonDown", "Ficon vsan down"},
    {62, "invalidAttach", "Invalid attachment: Ficon not configured on peer"},
    {63, "portBlocked", "Port blocked due to Ficon"},
    {64, "errDisabled", "Error disabled - incompatible admin port rxbbcredit performance buffers"},
    {65, "invalidFlogis", "Suspended due to too many invalid flogis"},
    {66, "invalidBinding", "Suspended due to port security"},
    {67, "isolated", "Isolation due to ELP failure: revision mismatch"},
    {68, "isolated", "Isolation due to ELP failure: class F param error"},
    {69, "isolated", "Isolation due to ELP failure: class N param error"},
    {70, "isolated", "Isolation due to ELP failure: invalid flow control code"},
    {71, "isolated", "Isolation due to ELP failure: invalid flow control param"},
    {72, "isolated", "Isolation due to ELP failure: invalid port name"},
    {73, "isolated", "Isolation due to ELP failure: invalid switch name"},
    {74, "isolated", "Isolation due to ELP failure: R_A_TOV or E_D_TOV mismatch"},
    {75, "isolated", "Isolation due to ELP failure: loopback detected"},
    {76, "isolated", "Isolation due to ELP failure: invalid transmit B2B credit"},
    {77, "isolated", "Isolation due to ELP failure: invalid payload size"},
    {78, "errDisabled", "Error Disabled due to port-channel mis-configuration"},
    {79, "errDisabled", "Error disabled - bit error rate too high"},
    {80, "notConnected", "Link failure: Link Reset"},
    {81, "notConnected", "Link failure: Port initialization failed"},
    {82, "notConnected", "Link failure: Port unusable"},
    {83, "notConnected", "Link failure: loss of signal"},
    {84, "notConnected", "Link failure: loss of sync"},
    {85, "notConnected", "Link failure: NOS received"},
    {86, "notConnected", "Link failure: OLS received"},
    {87, "notConnected", "Link failure: re-negotiation failed"},
    {88, "notConnected", "Link failure: Link Reset failed, non-empty recv queue"},
    {89, "notConnected", "Link failure: Excessive credit loss indications"},
    {90, "notConnected", "Link failure: receive queue overflow"},
    {91, "errDisabled", "Error disabled - excessive port interrupts"},
    {92, "notConnected", "Link failure: Loop initialization failed, non-empty recv queue"},
    {93, "notConnected", "Link failure: Link reset failed, queue not empty"},
    {94, "notConnected", "Link failure: OPNy timeout while receive queue not empty"},
    {95, "notConnected", "Link failure: OPNy returned while receive queue not empty"},
    {96, "notConnected", "Link failure: Link reset failed, queue not empty"},
    {97, "notConnected", "Link failure or not-connected"},
    {98, "isolated", "Isolation due to FCSP failure"},
    {99, "sfpErr", "SFP checksum error"},
    {100, "suspended", "Suspended due to external Loopback diagnostics failure"},
    {101, "isolated", "Invalid fabric binding exchange"},
    {102, "isolated", "Isolation due to TOV Mismatch"},
    {103, "errDisabled", "Error disabled - ficon not enabled"},
    {104, "noFiconPortNum", "Error disabled - no ficon port-number for physical interface"},
    {105, "ficonEnabled", "Ficon being enabled"},
    {106, "ficonProhibit", "Port down because prohibit mask in place for E/TE port"},
    {107, "gracefulShutdown", "Gracefully shutdown"},
    {108, "some", "Not all VSANs UP on the trunk"},
    {109, "isolated", "Isolation due to fabric binding: peer switch WWN not found"},
    {110, "isolated", "Isolation due to fabric binding: peer domain mismatch"},
    {111, "isolated", "Isolation due to fabric binding: database mismatch"},
    {112, "isolated", "Isolation due to fabric binding: no response from peer"},
    {113, "suspended", "Suspended due to dynamic vsan suspension"},
    {114, "suspended", "Suspended due to dynamic vsan not found"},
    {115, "trackedPortDown", "All tracked ports down"},
    {116, "suspended", "Suspended as extended credit mode not allowed for loop ports"},
    {117, "isolated", "Isolation due to port-channel mis-configuration"},
    {118, "suspended", "Peer device doesn't support port-channels"},
    {119, "isolated", "Isolation during port bringup"},
    {120, "isolated", "Isolation due to domain not allowed"},
    {121, "isolated", "Isolation due to virtual IVR domain overlap"},
    {122, "outOfServc", "Out of Service"},
    {123, "authFail", "Authentication Failure"},
    {125, "sfpConnTypeErr", "SFP Port Connector Type Not Supported "},
    {126, "errDisabled", "Error disabled - port reinit limit reached"},
    {127, "ficonDupPortNum", "Ficon duplicate port number in same vsan"},
    {128, "localRcf", "fcdomain disruptively reconfigured the VSAN"},
    {129, "isolated", "Isolation due to duplicate wwn in the same fabric"},
    {130, "isolated", "Isolation due to invalid principal selection"},
    {131, "isolated", "Isolation due to domain manager unknown reason"},
    {132, "isolated", "Isolation due to ELP failure: All zero peer wwn received"},
    {133, "isolated", "Isolation due to preferred path"},
    {134, "isolated", "Isolation due to fc redirect"},
    {136, "isolated", "Isolation due to sdm"},
    {137, "isolated", "Isolation due to fcid allocation failure"},
    {138, "extDisabled", "Externally Disabled"},
    {139, "npmExtLinkDown", "NPV upstream port not available"},
    {140, "npmPrefPathNotAvail", "NPV preferred upstream port not available"},
    {141, "errDisabled", "Error disabled - SFP read error"},
    {147, "authPend", "Authentication Pending"},
    {175, "VIFadminDown", "VIF Admin Down"},
    {176, "BoundIfDown", "Bound Physical Interface Down"},
    {177, "maxVifs", "VIFs on the interface exceeded maximum"},
    {178, "VIFholdDown", "VIF Hold Down"},
    {179, "noFCOE", "FCOE TLV not supported by DCX peer"},
    {181, "down", "Isolation due to limit of active port-channels being exceeded"},
    {182, "notBound", "VIF not bound"},
    {184, "fabricIfDown", "fabricIfDown"},
    {185, "invalidFabIf", "invalidFabIf"},
    {186, "noRemChassis", "noRemChassis"},
    {187, "vicEnableNotRcvd", "VIC Enable not received"},
    {188, "vicDisableRcvd", "VIC Disable received"},
    {189, "noVlanVsanMap", "VSAN not mapped to an FCoE enabled VLAN"},
    {190, "STPdownInVlan", "STP not forwarding in FCoE Mapped VLAN"},
    {191, "lcoffline", "LC Offline - port down due to module down"},
    {202, "fexFabSfpInv", "FEX fabric sfp invalid"},
    {220, "errDisabled", "Error disabled - port down due to link failure"},
    {255, "modRemoved", "Module removed"},
};

const reason_texts* find_reason(uint32 reason) {
  for (const reason_texts& texts : kReasons)
    if (texts.reason == reason) return &texts;
  return nullptr;
}

TEST(StateReason, HasItsShortWord) {
  for (const reason_texts& texts : kReasons)
    EXPECT_STREQ(port_state_reason_string(texts.reason, 1), texts.word) << +texts.reason;
}

TEST(StateReason, HasItsSentence) {
  for (const reason_texts& texts : kReasons)
    EXPECT_STREQ(port_state_reason_string(texts.reason, 0), texts.sentence) << +texts.reason;
}

TEST(StateReason, WithoutTextsIsDownAndUnknown) {
  uint32 without_texts = 0;
  for (uint32 reason = 0; reason <= 255; ++reason) {
    if (find_reason(reason) != nullptr) continue;
    ++without_texts;
    EXPECT_STREQ(port_state_reason_string(static_cast<uint8>(reason), 1), "down") << reason;
    EXPECT_STREQ(port_state_reason_string(static_cast<uint8>(reason), 0), "Unknown") << reason;
  }
  EXPECT_EQ(without_texts, 256U - std::size(kReasons));
}

TEST(StateReason, OnlyExactlyOneAsksForTheShortWord) {
  EXPECT_STREQ(port_state_reason_string(12, 1), "down");
  EXPECT_STREQ(port_state_reason_string(12, 0), "Administratively down");
  EXPECT_STREQ(port_state_reason_string(12, 2), "Administratively down");
  EXPECT_STREQ(port_state_reason_string(12, 0xFFFFFFFF), "Administratively down");
  EXPECT_STREQ(port_state_reason_string(12, 0x101), "Administratively down");
}

TEST(StateReason, SharesSentencesWithinTheLinkFailures) {
  EXPECT_STREQ(port_state_reason_string(93, 0), "Link failure: Link reset failed, queue not empty");
  EXPECT_STREQ(port_state_reason_string(96, 0), "Link failure: Link reset failed, queue not empty");
  EXPECT_STREQ(port_state_reason_string(7, 0), "Link failure or not-connected");
  EXPECT_STREQ(port_state_reason_string(97, 0), "Link failure or not-connected");
}

TEST(StateReason, NeverTouchesTheScratchBuffer) {
  port_type_string(77);
  const std::string before = local_temp_string_buffer;
  port_state_reason_string(0, 0);
  port_state_reason_string(250, 1);
  EXPECT_EQ(before, "Unknown(77)");
  EXPECT_EQ(local_temp_string_buffer, before);
}

struct family {
  uint8 representative;
  uint8 first;
  uint8 last;
};

constexpr family kFamilies[] = {
    {1, 1, 1},       {1, 11, 12},     {1, 149, 149},                                     //
    {2, 2, 2},       {2, 79, 79},                                                        //
    {5, 5, 5},       {5, 30, 32},     {5, 37, 37},     {5, 41, 42},     {5, 45, 46},     //
    {5, 64, 64},     {5, 78, 78},     {5, 91, 91},     {5, 103, 103},   {5, 126, 126},   //
    {5, 143, 146},   {5, 151, 151},   {5, 157, 157},   {5, 163, 166},   {5, 192, 194},   //
    {7, 7, 7},       {7, 80, 90},     {7, 92, 97},                                       //
    {14, 14, 14},    {14, 33, 35},    {14, 100, 100},  {14, 113, 114},  {14, 118, 118},  //
    {17, 17, 25},    {17, 36, 36},    {17, 38, 39},    {17, 44, 44},    {17, 58, 60},    //
    {17, 101, 101},  {17, 112, 112},  {17, 117, 117},  {17, 119, 121},  {17, 129, 134},  //
    {17, 136, 137},  {17, 181, 181},                                                     //
    {47, 47, 48},    {49, 49, 51},    {52, 52, 53},                                      //
    {104, 67, 77},   {104, 98, 98},   {104, 102, 102}, {104, 104, 104},                  //
    {115, 109, 111}, {115, 115, 115},
};

uint32 representative_of(uint32 reason) {
  for (const family& members : kFamilies)
    if (reason >= members.first && reason <= members.last) return members.representative;
  return reason;
}

TEST(StateReasonFamily, IsRepresentedByItsFirstReason) {
  for (uint32 reason = 0; reason <= 255; ++reason)
    EXPECT_EQ(port_state_reason_unique_enum(static_cast<uint8>(reason)), representative_of(reason)) << reason;
}

TEST(StateReasonFamily, HasItsSurprises) {
  EXPECT_EQ(port_state_reason_unique_enum(79), 2) << "a bit error rate too high is no error";
  EXPECT_EQ(port_state_reason_unique_enum(68), 104) << "an isolation by link parameters is not among the isolations";
  EXPECT_EQ(port_state_reason_unique_enum(110), 115);
  EXPECT_EQ(port_state_reason_unique_enum(220), 220) << "above the families, though its word is errDisabled";
  EXPECT_EQ(port_state_reason_unique_enum(195), 195);
  EXPECT_EQ(port_state_reason_unique_enum(0), 0);
}

}  // namespace
}  // namespace pmcli_test
