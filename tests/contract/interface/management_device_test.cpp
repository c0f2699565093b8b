// The kernel device behind a management port. The chassis type is asked once in the life of a process, so each case is
// a process of its own.
#include <gtest/gtest.h>

#include <cstring>

#include "interface/management.h"
#include "support/fresh_process.h"
#include "support/recording_platform.h"

namespace pmcli_test {
namespace {

std::string kernel_device(if_index_t if_index) {
  char name[16];
  std::memset(name, 'x', sizeof name);
  pmcli::pm_get_mgmt_kernel_ifname(if_index, name, sizeof name);
  EXPECT_NE(std::memchr(name, '\0', sizeof name), nullptr);
  return name;
}

// Texts of 16 characters are not terminated.
void put_devices(uint32 row, std::string first, std::string second) {
  platform_runtime_param_t& devices = platform_runtime_param_array[row];
  first.resize(sizeof devices.mgmt_eth_intf_name);
  second.resize(sizeof devices.mgmt_eth_intf_name2);
  std::memcpy(devices.mgmt_eth_intf_name, first.data(), first.size());
  std::memcpy(devices.mgmt_eth_intf_name2, second.data(), second.size());
}

TEST(ManagementDeviceDeathTest, OfChassis17CountsFromOne) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.chassis_type = 17;
    EXPECT_EQ(kernel_device(mgmt(0)), "eth1");
    EXPECT_EQ(kernel_device(mgmt(1)), "eth2");
    EXPECT_EQ(kernel_device(mgmt(200)), "eth201");
  });
}

TEST(ManagementDeviceDeathTest, OfChassis17WithoutAPortNumberIsTheFirst) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.chassis_type = 17;
    platform.fail_with("if_index_get_port", PM_ERR_NO_SUCH_INTERFACE);
    EXPECT_EQ(kernel_device(mgmt(1)), "eth1");
  });
}

TEST(ManagementDeviceDeathTest, OfChassis22HasASecondNameForPortOne) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.chassis_type = 22;
    platform.runtime_index = 3;
    put_devices(3, "mgmt-first", "mgmt-second");
    EXPECT_EQ(kernel_device(mgmt(0)), "mgmt-first");
    EXPECT_EQ(kernel_device(mgmt(1)), "mgmt-second");
    EXPECT_EQ(kernel_device(mgmt(200)), "mgmt-first");
  });
}

TEST(ManagementDeviceDeathTest, OfEveryOtherChassisIsTheFirstName) {
  for (const uint32 chassis : {0U, 10U, 11U, 16U, 18U, 19U, 21U, 23U, 24U}) {
    SCOPED_TRACE(chassis);
    in_fresh_process([=] {
      RecordingPlatform platform;
      platform.chassis_type = chassis;
      platform.runtime_index = 31;
      put_devices(31, "mgmt-first", "mgmt-second");
      EXPECT_EQ(kernel_device(mgmt(0)), "mgmt-first");
      EXPECT_EQ(kernel_device(mgmt(1)), "mgmt-first");
    });
  }
}

TEST(ManagementDeviceDeathTest, IsTheFirstNameWhenTheChassisCannotBeRead) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.chassis_type = 17;
    platform.fail_with("pdb_get_chassis_type", 5);
    EXPECT_EQ(kernel_device(mgmt(0)), "eth1");
    EXPECT_EQ(kernel_device(mgmt(1)), "eth1") << "not counted as on chassis 17";
  });
}

TEST(ManagementDeviceDeathTest, HasAtMostFifteenCharacters) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.chassis_type = 22;
    put_devices(0, "0123456789abcdef", "fedcba9876543210");
    EXPECT_EQ(kernel_device(mgmt(0)), "0123456789abcde");
    EXPECT_EQ(kernel_device(mgmt(1)), "fedcba987654321");
  });
}

TEST(ManagementDeviceDeathTest, OfAPlatformPastTheTableHasNoName) {
  in_fresh_process([] {
    RecordingPlatform platform;
    platform.chassis_type = 22;
    for (const uint32 index : {uint32{PLATFORM_RUNTIME_PARAMS}, 0xFFFFFFFFU}) {
      platform.runtime_index = index;
      EXPECT_EQ(kernel_device(mgmt(0)), "");
      EXPECT_EQ(kernel_device(mgmt(1)), "");
    }
  });
}

TEST(ManagementDeviceDeathTest, AsksForTheChassisOnceInTheLifeOfTheProcess) {
  in_fresh_process([] {
    {
      RecordingPlatform platform;
      platform.chassis_type = 17;
      EXPECT_EQ(kernel_device(mgmt(0)), "eth1");
      EXPECT_GT(platform.count("pdb_get_chassis_type"), 0U);
    }
    RecordingPlatform later;
    later.chassis_type = 22;
    put_devices(0, "mgmt-first", "mgmt-second");
    EXPECT_EQ(kernel_device(mgmt(1)), "eth2") << "still the first answer";
    EXPECT_EQ(later.count("pdb_get_chassis_type"), 0U);
  });
}

}  // namespace
}  // namespace pmcli_test
