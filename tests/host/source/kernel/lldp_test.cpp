// Neighbors by LLDP: rows of what lldpd reports, their text in captures, and why there are none.
#include "source/kernel/lldp.h"

#include <gtest/gtest.h>

#include <string>

#include "host/source/kernel/kernel_recording.h"
#include "source/kernel/anonymous.h"
#include "source/kernel/lldp_library.h"
#include "source/kernel/tables.h"
#if __has_include(<lldpctl.h>)
#include <lldpctl.h>
#endif

namespace host {
namespace {

using namespace std::string_literals;

constexpr if_index_t kHearingPort = 0x1A006000;

// The port Ethernet 7, and a device without an interface.
table_devices hearing_devices(const std::vector<if_index_t>& interfaces = {}) {
  std::vector<kernel_link> links(2);
  links[0].number = 7;
  links[0].name = "eth7";
  links[1].number = 9;
  links[1].name = "eth9";
  return table_devices(links, {{"eth7", 7, kHearingPort}}, interfaces);
}

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

std::vector<lldp_row> lldp_rows(const std::vector<lldp_neighbor>& neighbors,
                                const std::vector<if_index_t>& interfaces = {}) {
  recorded_kernel kernel;
  kernel.lldp = {0, neighbors};
  std::vector<table_row> rows;
  EXPECT_FALSE(open_kernel_table(table_id::lldp_neighbors, hearing_devices(interfaces))->next(rows));
  std::vector<lldp_row> found;
  for (table_row& it : rows) found.push_back(std::get<lldp_row>(it));
  return found;
}

TEST(LldpRows, HaveWhatTheNeighborAdvertises) {
  const auto rows = lldp_rows({bridge_at_port_7()});
  ASSERT_EQ(rows.size(), 1U);
  const lldp_row& row = rows[0];
  EXPECT_EQ(row.device.if_index, kHearingPort);
  EXPECT_EQ(row.device.name, "eth7");
  EXPECT_EQ(row.device.number, 7U);
  EXPECT_EQ(row.protocol, "LLDP");
  EXPECT_EQ(row.chassis_id, "021c.7340.0202");
  EXPECT_EQ(row.chassis_id_type, "mac");
  EXPECT_EQ(row.system_name, "leaf-1");
  EXPECT_EQ(row.system_description, "A switch\nof the lab");
  EXPECT_EQ(row.management_addresses, "192.0.2.1,2001:db8::1");
  EXPECT_EQ(row.capabilities, "bridge,router");
  EXPECT_EQ(row.enabled_capabilities, "bridge");
  EXPECT_EQ(row.port_id, "Eth1/1");
  EXPECT_EQ(row.port_id_type, "ifname");
  EXPECT_EQ(row.port_description, "to spine");
  EXPECT_EQ(row.port_vlan, 10U);
  EXPECT_EQ(row.vlans, (std::vector<uint16>{10, 20})) << "ascending, each once, and only VLANs";
  EXPECT_EQ(row.ttl_seconds, 120U);
  EXPECT_EQ(row.unchanged_seconds, 33U);
}

TEST(LldpRows, IdentifiersAreShownByTheirType) {
  struct example {
    lldp_id chassis, port;
    const char *chassis_text, *chassis_type, *port_text, *port_type;
  };
  const example examples[] = {
      {{1, "rack 7"}, {1, "uplink"}, "rack 7", "chassis", "uplink", "ifalias"},
      {{2, "core"}, {2, "slot 1"}, "core", "ifalias", "slot 1", "port"},
      {{3, "slot 1"}, {3, "\x02\x00\x00\x00\x00\x09"s}, "slot 1", "port", "0200.0000.0009", "mac"},
      {{4, "\x02\x03"}, {3, "\x02"}, "0203", "mac", "02", "mac"},
      {{5, "\x01\xc0\x00\x02\x01"s}, {4, "\x01\xc0\x00\x02\x02"s}, "192.0.2.1", "ip", "192.0.2.2", "ip"},
      {{5, "\x02\xfe\x80"s + std::string(13, '\0') + "\x07"}, {4, "\x06\xaa"}, "fe80::7", "ip", "06aa", "ip"},
      {{6, "eth0"}, {6, "circuit"}, "eth0", "ifname", "circuit", "agent"},
      {{7, "name"}, {7, "4"}, "name", "local", "4", "local"},
      {{8, "later"}, {0, "later"}, "later", "8", "later", "0"},
      {{4, ""}, {}, "", "", "", ""},
  };
  for (const example& it : examples) {
    lldp_neighbor neighbor = bridge_at_port_7();
    neighbor.chassis = it.chassis;
    neighbor.port = it.port;
    const auto rows = lldp_rows({neighbor});
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].chassis_id, it.chassis_text);
    EXPECT_EQ(rows[0].chassis_id_type, it.chassis_type);
    EXPECT_EQ(rows[0].port_id, it.port_text);
    EXPECT_EQ(rows[0].port_id_type, it.port_type);
  }
}

TEST(LldpRows, WhatIsNotAnAddressIsNoManagementAddress) {
  lldp_neighbor neighbor = bridge_at_port_7();
  neighbor.management_addresses = {"192.0.2.1,evil", "", "::1", "192.0.2"};
  EXPECT_EQ(lldp_rows({neighbor}).at(0).management_addresses, "::1");
}

TEST(LldpRows, OfOtherInterfacesAreSkipped) {
  lldp_neighbor at_9 = bridge_at_port_7();
  at_9.device_number = 9;
  at_9.device = "eth9";
  const auto all = lldp_rows({at_9, bridge_at_port_7()});
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].device.name, "eth7") << "in the order of devices";
  EXPECT_EQ(all[1].device.name, "eth9");
  EXPECT_EQ(all[1].device.if_index, 0U);
  ASSERT_EQ(lldp_rows({at_9, bridge_at_port_7()}, {kHearingPort}).size(), 1U);
}

TEST(LldpRows, ADeviceOfAnotherNamespaceHasNoInterface) {
  lldp_neighbor other = bridge_at_port_7();
  other.device = "lan0";
  const auto rows = lldp_rows({other});
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].device.if_index, 0U);
  EXPECT_EQ(rows[0].device.name, "lan0");
  EXPECT_EQ(rows[0].device.number, 0U);
  EXPECT_TRUE(lldp_rows({other}, {kHearingPort}).empty());
}

TEST(LldpRows, WithoutAnAnswerTheReasonIsASentence) {
  struct example {
    int error;
    const char* text;
  };
  const example examples[] = {
      {ENOENT, "lldpd is not running. Start it with 'systemctl start lldpd'"},
      {ECONNREFUSED, "lldpd is not running. Start it with 'systemctl start lldpd'"},
      {ELIBACC, "liblldpctl.so.4 is missing. Install the package lldpd"},
      {ELIBBAD, "liblldpctl.so.4 lacks a function. Install the package lldpd again"},
      {EACCES, "this user may not use the socket of lldpd. Run the shell as root or as a member of the group _lldpd"},
      {EAGAIN, "lldpd does not answer"},
      {EPROTO, "the answer of lldpd is damaged. lldpd and liblldpctl.so.4 must have the same version"},
      {EMFILE, "lldpd: Too many open files"},
  };
  for (const example& it : examples) {
    recorded_kernel kernel;
    kernel.lldp = {it.error};
    std::vector<table_row> rows;
    try {
      open_kernel_table(table_id::lldp_neighbors, hearing_devices())->next(rows);
      ADD_FAILURE() << it.error;
    } catch (const kernel_error& error) {
      EXPECT_STREQ(error.what(), it.text);
    }
  }
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
