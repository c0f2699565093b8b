#include "source/kernel/device_type.h"

#include <gtest/gtest.h>
#include <net/if.h>

namespace host {
namespace {

kernel_link link_of(const std::string& kind) {
  kernel_link link;
  link.kind = kind;
  return link;
}

TEST(DeviceType, IsTheKindOfTheKernel) {
  EXPECT_EQ(device_type(link_of("veth"), ""), "veth");
  EXPECT_EQ(device_type(link_of("bridge"), ""), "bridge");
  EXPECT_EQ(device_type(link_of("vrf"), ""), "vrf");
}

TEST(DeviceType, WithoutAKindIsHardwareOrTheLoopback) {
  EXPECT_EQ(device_type(link_of(""), ""), "physical");
  kernel_link loopback = link_of("");
  loopback.flags = IFF_LOOPBACK;
  EXPECT_EQ(device_type(loopback, ""), "loopback");
}

TEST(DeviceType, NamesTheDeviceBelow) {
  kernel_link vlan = link_of("vlan");
  vlan.vlan = 10;
  EXPECT_EQ(device_type(vlan, "eth0"), "vlan 10 of eth0");
  EXPECT_EQ(device_type(vlan, ""), "vlan 10");
  EXPECT_EQ(device_type(link_of("macvlan"), "eth0"), "macvlan of eth0");
  kernel_link vxlan = link_of("vxlan");
  EXPECT_EQ(device_type(vxlan, "eth1"), "vxlan over eth1");
  vxlan.vxlan = 42;
  EXPECT_EQ(device_type(vxlan, "eth1"), "vxlan 42 over eth1");
}

TEST(DeviceType, TellsTapFromTun) {
  kernel_link device = link_of("tun");
  EXPECT_EQ(device_type(device, ""), "tun");
  device.is_tap = true;
  EXPECT_EQ(device_type(device, ""), "tap");
}

TEST(DeviceType, TheOtherEndOfAVethIsNotBelow) {
  EXPECT_FALSE(has_device_below(link_of("veth")));
  EXPECT_TRUE(has_device_below(link_of("macvlan")));
}

}  // namespace
}  // namespace host
