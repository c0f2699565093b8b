#include "platform/platform_data.h"

#include <gtest/gtest.h>

#include "host/client/client_fixture.h"
#include "platform/if_index.h"
#include "platform/syserr.h"

namespace host {
namespace {

using PlatformData = Clients;

TEST_F(PlatformData, DescribesTheMachine) {
  uint32 type = 0;
  platform_info_t info{};

  EXPECT_EQ(pdb_get_chassis_type(&type), 0);
  EXPECT_EQ(type, 11u);
  EXPECT_EQ(get_platform_info(&info), 0);
  EXPECT_EQ(info.num_slots, 4u);
}

TEST_F(PlatformData, NamesTheManagementDevices) {
  const platform_runtime_param_t& row = platform_runtime_param_array[get_platform_runtime_index()];

  EXPECT_STREQ(row.mgmt_eth_intf_name, "eth-mgmt0");
  EXPECT_STREQ(row.mgmt_eth_intf_name2, "a-name-of-seven") << "15 characters and the end";
}

TEST_F(PlatformData, RowFollowsTheMachine) {
  the_machine().chassis_type = 22;
  the_machine().mgmt_device = "eth3";

  EXPECT_STREQ(platform_runtime_param_array[get_platform_runtime_index()].mgmt_eth_intf_name, "eth3");

  the_machine().chassis_type = 0xFFFFFFFF;
  EXPECT_LT(get_platform_runtime_index(), uint32{PLATFORM_RUNTIME_PARAMS});
}

TEST_F(PlatformData, FindsTheCardOfAPort) {
  card_module_info_t info{};
  uint32 node = 0;

  EXPECT_EQ(get_card_module_info(names_.first_port, &info), 0);
  EXPECT_EQ(info.card_type, 77u);
  EXPECT_EQ(idxmap_node_by_if_index(names_.first_port, &node), 0);
  EXPECT_EQ(node, 1u);
}

TEST_F(PlatformData, PortsWithoutACardAreErrors) {
  card_module_info_t info{};
  uint32 node = 0;

  EXPECT_EQ(get_card_module_info(names_.routed_port, &info), PM_ERR_NO_SUCH_INTERFACE) << "an empty slot";
  EXPECT_EQ(get_card_module_info(names_.loopback, &info), PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(idxmap_node_by_if_index(names_.channel, &node), PM_ERR_NO_SUCH_INTERFACE);
}

}  // namespace
}  // namespace host
