// A source that overrides nothing: the switch is its model.
#include "switch/source.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/switch/small_machine.h"
#include "platform/port_config.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

class Source : public testing::Test {
 protected:
  const interface& port(if_index_t if_index) {
    const interface* const found = std::as_const(the_machine()).find(if_index);
    if (found == nullptr) throw std::runtime_error("no interface " + std::to_string(if_index));
    return *found;
  }

  small_machine names_ = install_small_machine();
};

TEST_F(Source, LeavesTheModelAsItStands) {
  interface& loopback = *the_machine().find(names_.loopback);
  the_source().refresh(the_machine());
  EXPECT_TRUE(the_source().update_statistics(loopback, 1'800'000'000));
  the_source().clear_counters(loopback, 1'800'000'000);
  the_source().complete(loopback, detail::counters);
  EXPECT_EQ(loopback.stats.in.bytes, 0x1'0000'2001U) << "its totals are those of the small machine";
  EXPECT_EQ(loopback.stats.last_clear_sec, 1'700'000'000U);
  EXPECT_FALSE(the_source().counts_at_refresh());
}

TEST_F(Source, KnowsEverything) { EXPECT_TRUE(the_source().knows_all_fields()); }

TEST_F(Source, TakesEverySettingAndLeavesMembersToTheServices) {
  EXPECT_EQ(the_source().apply_settings(*the_machine().find(names_.first_port), {}), 0U);
  EXPECT_TRUE(the_source().applies_setting(PM_CFG_RX_BB_CREDIT));
  EXPECT_FALSE(the_source().hands_settings_to_members());
  EXPECT_FALSE(the_source().allows_sub_interfaces_of_switched_ports());
}

TEST_F(Source, CreatesInTheModel) {
  const if_index_t sub_port = ethernet_index(IF_TYPE_ETHERNET_L3, 1, 0, 8);
  const if_index_t loopback = numbered_index(IF_TYPE_LOOPBACK, 9);
  const if_index_t missing[] = {sub_port, loopback};
  EXPECT_EQ(the_source().create_interfaces(the_machine(), missing), 0U);
  EXPECT_TRUE(port(sub_port).is_created);
  EXPECT_EQ(port(sub_port).settings.mtu_bytes, port(names_.routed_port).settings.mtu_bytes);
  EXPECT_TRUE(port(loopback).is_created);
  EXPECT_EQ(port(loopback).bandwidth_kbps, 8'000'000U);
}

TEST_F(Source, NotesWhatIsDeletedUntilItIsRestored) {
  const interface before = port(names_.sub_port);
  const if_index_t created = numbered_index(IF_TYPE_LOOPBACK, 9);
  the_source().create_interfaces(the_machine(), {&created, 1});
  const if_index_t doomed[] = {names_.sub_port, names_.loopback, created};
  EXPECT_EQ(the_source().delete_interfaces(the_machine(), doomed), 0U);
  EXPECT_EQ(std::as_const(the_machine()).find(names_.sub_port), nullptr);
  std::vector<if_index_t> noted = {names_.sub_port, names_.loopback};
  std::sort(noted.begin(), noted.end());
  EXPECT_EQ(the_machine().deleted, noted) << "what a command created is none of the switch's own";

  EXPECT_EQ(the_source().restore_interface(the_machine(), before), 0U);
  EXPECT_EQ(port(names_.sub_port).encapsulation_vlan, 70);
  EXPECT_EQ(the_machine().deleted, (std::vector<if_index_t>{names_.loopback}));
}

TEST_F(Source, IsNotTheKernels) {
  EXPECT_FALSE(the_source().devices());
  EXPECT_FALSE(the_source().baseline_file());
  EXPECT_EQ(the_source().write_baselines(), 0);
  EXPECT_TRUE(the_source().interfaces_towards("192.0.2.1").empty());
}

struct refusing_source : switch_source {
  uint32 apply_settings(interface&, const port_settings&) override { return 7; }
};

TEST_F(Source, IsAnotherOnceItIsSet) {
  set_source(std::make_unique<refusing_source>());
  EXPECT_EQ(the_source().apply_settings(*the_machine().find(names_.first_port), {}), 7U);
  set_source();
  EXPECT_EQ(the_source().apply_settings(*the_machine().find(names_.first_port), {}), 0U);
}

}  // namespace
}  // namespace host
