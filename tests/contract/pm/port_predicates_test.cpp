// Which attributes a kind of interface has.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "contract/sample_ports.h"
#include "pm/port_attributes.h"

namespace pmcli_test {
namespace {

using Kinds = std::vector<uint32>;

bool holds(const Kinds& kinds, uint32 kind) { return std::find(kinds.begin(), kinds.end(), kind) != kinds.end(); }

// ---- Of a kind -----------------------------------------------------------------------------------------------------

TEST(KindPredicate, EachKind) {
  for (uint32 kind = 0; kind <= 255; ++kind) {
    const auto type = static_cast<if_index_type_t>(kind);
    SCOPED_TRACE(kind);
    EXPECT_EQ(pm_is_port_mode_supported(type), !holds({2, 5, 11}, kind));
    EXPECT_EQ(pm_is_trunk_mode_supported(type), !holds({2, 5, 11}, kind));
    EXPECT_EQ(pm_is_port_speed_supported(type), !holds({2, 11}, kind));
    EXPECT_EQ(pm_is_duplex_mode_supported(type), kind == 5);
  }
}

// ---- Of an interface -----------------------------------------------------------------------------------------------

// The subtype of this index cannot be read, so kinds 4 and 22 are not of the 10-gigabit Fibre Channel.
TEST(InterfacePredicate, EachKindWithoutASubtype) {
  for (uint32 kind = 0; kind <= 255; ++kind) {
    SCOPED_TRACE(kind);
    RecordingPlatform platform;
    platform.types[kPort] = static_cast<if_index_type_t>(kind);
    EXPECT_FALSE(pm_is_xgfc_interface(kPort));
    EXPECT_EQ(pm_is_bundle_port_type(kPort), holds({4, 22}, kind));
    EXPECT_EQ(pm_is_fcsif_port_type(kPort), kind == 30);
    EXPECT_EQ(pm_is_beacon_mode_supported(kPort), !holds({5, 10, 11, 4}, kind));
    EXPECT_EQ(pm_is_bbcredit_supported(kPort), !holds({5, 10, 11, 30, 254, 4}, kind));
    EXPECT_EQ(pm_is_transceiver_supported(kPort), holds({1, 2, 26}, kind));
  }
}

TEST(InterfacePredicate, ChannelsBySubtype) {
  for (uint8 subtype = 0; subtype <= 3; ++subtype) {
    RecordingPlatform platform;
    const if_index_t older = port_channel(3, IF_TYPE_PORT_CHANNEL, subtype);
    const if_index_t ethernet_channel = port_channel(3, IF_TYPE_ETH_PORT_CHANNEL, subtype);
    const bool is_xgfc = subtype == 1;
    SCOPED_TRACE(int{subtype});
    EXPECT_EQ(pm_is_xgfc_interface(older), is_xgfc);
    EXPECT_EQ(pm_is_xgfc_interface(ethernet_channel), is_xgfc);
    EXPECT_EQ(pm_is_bundle_port_type(older), !is_xgfc);
    EXPECT_EQ(pm_is_bundle_port_type(ethernet_channel), !is_xgfc);
    EXPECT_EQ(pm_is_beacon_mode_supported(older), is_xgfc);
    EXPECT_EQ(pm_is_bbcredit_supported(older), is_xgfc);
    // The other family has them always, which is intended.
    EXPECT_TRUE(pm_is_beacon_mode_supported(ethernet_channel));
    EXPECT_TRUE(pm_is_bbcredit_supported(ethernet_channel));
    EXPECT_FALSE(pm_is_transceiver_supported(older));
    EXPECT_FALSE(pm_is_transceiver_supported(ethernet_channel));
  }
}

// A port-channel index whose kind is said to be another is no channel, whatever its subtype.
TEST(InterfacePredicate, SubtypeCountsForChannelsOnly) {
  const if_index_t channel = port_channel(3, IF_TYPE_PORT_CHANNEL, PC_SUBTYPE_XGFC);
  for (uint32 kind = 0; kind <= 255; ++kind) {
    RecordingPlatform platform;
    platform.types[channel] = static_cast<if_index_type_t>(kind);
    EXPECT_EQ(pm_is_xgfc_interface(channel), holds({4, 22}, kind)) << kind;
  }
}

TEST(InterfacePredicate, UnreadableSubtypeIsAnOrdinaryBundle) {
  for (const if_index_type_t kind : {if_index_type_t{4}, if_index_type_t{22}}) {
    const if_index_t channel = port_channel(3, kind, PC_SUBTYPE_XGFC);
    RecordingPlatform platform;
    platform.fail_with("if_index_port_channel_get_subtype", PM_ERR_GENERAL);
    EXPECT_FALSE(pm_is_xgfc_interface(channel));
    EXPECT_TRUE(pm_is_bundle_port_type(channel));
    EXPECT_EQ(pm_is_beacon_mode_supported(channel), kind == 22);
    EXPECT_EQ(pm_is_bbcredit_supported(channel), kind == 22);
  }
}

TEST(InterfacePredicate, UnreadableKindAnswersAsKind0) {
  for (const if_index_t if_index : {kPort, kRoutablePort, mgmt(), kOldChannel, kChannel, numbered(30, 1),
                                    port_channel(1, IF_TYPE_PORT_CHANNEL, PC_SUBTYPE_XGFC)}) {
    RecordingPlatform platform;
    platform.fail_with("if_index_get_type", PM_ERR_GENERAL);
    EXPECT_FALSE(pm_is_xgfc_interface(if_index));
    EXPECT_FALSE(pm_is_bundle_port_type(if_index));
    EXPECT_FALSE(pm_is_fcsif_port_type(if_index));
    EXPECT_TRUE(pm_is_beacon_mode_supported(if_index));
    EXPECT_TRUE(pm_is_bbcredit_supported(if_index));
    EXPECT_FALSE(pm_is_transceiver_supported(if_index));
  }
}

// ---- X2 modules ----------------------------------------------------------------------------------------------------

TEST(X2Predicate, DwdmIsToldByTheByteAt206OfTheImage) {
  for (uint32 code = 0; code <= 255; ++code) {
    for (const uint8 ethernet_code : {uint8{0}, uint8{1}, uint8{0x80}, uint8{255}}) {
      lc_fcot_x2_info_t x2{};
      x2.xg_eth_code[0] = ethernet_code;
      x2.xg_eth_code[1] = 255;
      reinterpret_cast<uint8*>(&x2)[206] = static_cast<uint8>(code);
      EXPECT_EQ(pm_is_x2_dwdm(&x2), ethernet_code == 0 && code >= 9 && code <= 40) << code;
    }
  }
}

TEST(X2Predicate, OtherBytesDoNotCount) {
  lc_fcot_x2_info_t x2;
  auto* const image = reinterpret_cast<uint8*>(&x2);
  std::memset(image, 20, sizeof x2);
  x2.xg_eth_code[0] = 0;
  x2.xg_eth_code[1] = 20;
  EXPECT_TRUE(pm_is_x2_dwdm(&x2));
  image[206] = 41;
  EXPECT_FALSE(pm_is_x2_dwdm(&x2));
}

TEST(X2Predicate, NoModuleIsNone) { EXPECT_FALSE(pm_is_x2_dwdm(nullptr)); }

// ---- Error codes ---------------------------------------------------------------------------------------------------

TEST(SnmpErrorCode, IsTheArgument) {
  for (const int32 code : {0, 1, -1, 0x40290000, 0x40290037, INT_MAX, INT_MIN})
    EXPECT_EQ(pm_map_snmp_error_code(code), code);
}

}  // namespace
}  // namespace pmcli_test
