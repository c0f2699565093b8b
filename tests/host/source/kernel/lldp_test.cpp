// Neighbors by LLDP: their text in captures.
#include "source/kernel/lldp.h"

#include <gtest/gtest.h>

#include <string>

#include "source/kernel/anonymous.h"
#include "source/kernel/lldp_library.h"
#if __has_include(<lldpctl.h>)
#include <lldpctl.h>
#endif

namespace host {
namespace {

using namespace std::string_literals;

lldp_neighbor bridge_at_port_7() {
  return {.device_number = 7,
          .device = "eth7",
          .protocol = "LLDP",
          .chassis = {4, "\x02\x1c\x73\x40\x02\x02"},
          .port = {5, "Eth1/1"},
          .system_name = "leaf-1",
          .system_description = "A switch\nof the lab",
          .port_description = "to spine",
          .management_addresses = {"192.0.2.1", "2001:db8::1"},
          .capabilities = 0x14,
          .enabled_capabilities = 0x04,
          .port_vlan = 10,
          .ttl_seconds = 120,
          .unchanged_seconds = 33,
          .vlans = {20, 10, 4095, 0, 20}};
}

// ---- Captures -------------------------------------------------------------------------------------------------------

constexpr char kBridgeText[] =
    "neighbor 7 eth7\n"
    "protocol LLDP\n"
    "chassis-id 4 \\x02\\x1cs@\\x02\\x02\n"
    "port-id 5 Eth1/1\n"
    "system-name leaf-1\n"
    "system-description A switch\\x0aof the lab\n"
    "port-description to spine\n"
    "management-address 192.0.2.1\n"
    "management-address 2001:db8::1\n"
    "capabilities 20\n"
    "enabled-capabilities 4\n"
    "port-vlan 10\n"
    "vlan 20\n"
    "vlan 10\n"
    "vlan 4095\n"
    "vlan 0\n"
    "vlan 20\n"
    "ttl 120\n"
    "unchanged 33\n";

TEST(LldpText, HasALineForEachValue) {
  EXPECT_EQ(lldp_text({bridge_at_port_7()}), kBridgeText);
  EXPECT_EQ(read_lldp_text(kBridgeText), std::vector{bridge_at_port_7()});
}

TEST(LldpText, KeepsEveryByte) {
  lldp_neighbor hostile{.device_number = 9, .device = "a b\n\\"};
  hostile.system_name = " \\x41\x1b[2J\xff\nneighbor 1 eth1\n\0end "s;
  hostile.chassis = {7, "1 2"};
  EXPECT_EQ(read_lldp_text(lldp_text({hostile, bridge_at_port_7()})), (std::vector{hostile, bridge_at_port_7()}));
}

TEST(LldpText, DamagedLinesAreSkipped) {
  EXPECT_TRUE(read_lldp_text("ttl 120\nsystem-name early\n").empty());
  const auto read = read_lldp_text("neighbor x\nttl -1\nttl\nport-vlan 99999999999\nlater 1\n\nsystem-name a\\x4\\xzz");
  ASSERT_EQ(read.size(), 1U);
  EXPECT_EQ(read[0], (lldp_neighbor{.system_name = "a\\x4\\xzz"}));
}

TEST(LldpText, AnonymousNeighborsHaveNoTexts) {
  anonymiser names;
  const std::string device = names.device_name("eth7", "");
  const std::vector made = {names.neighbor(bridge_at_port_7())};
  EXPECT_EQ(lldp_text(made), "neighbor 7 " + device +
                                 "\n"
                                 "protocol LLDP\n"
                                 "chassis-id 4 \\x02\\x00\\x00\\x00\\x00\\x01\n"
                                 "port-id 7 id1\n"
                                 "capabilities 20\n"
                                 "enabled-capabilities 4\n"
                                 "port-vlan 10\n"
                                 "vlan 20\n"
                                 "vlan 10\n"
                                 "vlan 4095\n"
                                 "vlan 0\n"
                                 "vlan 20\n"
                                 "ttl 120\n"
                                 "unchanged 33\n");
}

// ---- The library ----------------------------------------------------------------------------------------------------

#if __has_include(<lldpctl.h>)
TEST(LldpLibrary, NumbersAreThoseOfItsHeader) {
  EXPECT_EQ(lldpctl::kDoesNotExist, int{LLDPCTL_ERR_NOT_EXIST});
  EXPECT_EQ(lldpctl::kOutOfMemory, int{LLDPCTL_ERR_NOMEM});
  EXPECT_EQ(lldpctl::kCallbackFailed, int{LLDPCTL_ERR_CALLBACK_FAILURE});
  EXPECT_EQ(lldpctl::kPortName, int{lldpctl_k_port_name});
  EXPECT_EQ(lldpctl::kPortIndex, int{lldpctl_k_port_index});
  EXPECT_EQ(lldpctl::kPortNeighbors, int{lldpctl_k_port_neighbors});
  EXPECT_EQ(lldpctl::kPortProtocol, int{lldpctl_k_port_protocol});
  EXPECT_EQ(lldpctl::kPortAge, int{lldpctl_k_port_age});
  EXPECT_EQ(lldpctl::kPortIdSubtype, int{lldpctl_k_port_id_subtype});
  EXPECT_EQ(lldpctl::kPortId, int{lldpctl_k_port_id});
  EXPECT_EQ(lldpctl::kPortDescription, int{lldpctl_k_port_descr});
  EXPECT_EQ(lldpctl::kPortHidden, int{lldpctl_k_port_hidden});
  EXPECT_EQ(lldpctl::kPortChassis, int{lldpctl_k_port_chassis});
  EXPECT_EQ(lldpctl::kPortTtl, int{lldpctl_k_port_ttl});
  EXPECT_EQ(lldpctl::kPortPvid, int{lldpctl_k_port_vlan_pvid});
  EXPECT_EQ(lldpctl::kPortVlans, int{lldpctl_k_port_vlans});
  EXPECT_EQ(lldpctl::kVlanId, int{lldpctl_k_vlan_id});
  EXPECT_EQ(lldpctl::kChassisIdSubtype, int{lldpctl_k_chassis_id_subtype});
  EXPECT_EQ(lldpctl::kChassisId, int{lldpctl_k_chassis_id});
  EXPECT_EQ(lldpctl::kChassisName, int{lldpctl_k_chassis_name});
  EXPECT_EQ(lldpctl::kChassisDescription, int{lldpctl_k_chassis_descr});
  EXPECT_EQ(lldpctl::kChassisCapabilities, int{lldpctl_k_chassis_cap_available});
  EXPECT_EQ(lldpctl::kChassisEnabled, int{lldpctl_k_chassis_cap_enabled});
  EXPECT_EQ(lldpctl::kChassisManagement, int{lldpctl_k_chassis_mgmt});
  EXPECT_EQ(lldpctl::kManagementIp, int{lldpctl_k_mgmt_ip});
}
#endif

}  // namespace
}  // namespace host
