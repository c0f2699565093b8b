// Changes that are collected, and then made of a machine as one.
#include "settings/machine_changes.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "host/switch/small_machine.h"
#include "platform/interface_manager.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"
#include "settings/settings_merge.h"
#include "switch/if_index_layout.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr uint32 kRefused = 77;
constexpr uint16 kReceiveOn = uint16{PM_FLOW_CTRL_RECEIVE} & uint16{PM_FLOW_CTRL_ON};
constexpr uint16 kSendOn = uint16{PM_FLOW_CTRL_SEND} & uint16{PM_FLOW_CTRL_ON};

// Refuses what it is to refuse, also when it was set so before, as devices do; knows what it made.
struct made_settings {
  bool refuses_flow_control = false;
  bool refuses_creation = false;
  std::vector<port_settings> steps;
};

class refusing_source final : public switch_source {
 public:
  explicit refusing_source(made_settings& made) : made_(made) {}

  uint32 apply_settings(interface& port, const port_settings& before) override {
    if (made_.refuses_flow_control && port.settings.admin_flow_control != before.admin_flow_control) return kRefused;
    made_.steps.push_back(port.settings);
    return switch_source::apply_settings(port, before);
  }
  uint32 create_interfaces(machine& model, std::span<const if_index_t> interfaces) override {
    return made_.refuses_creation ? kRefused : switch_source::create_interfaces(model, interfaces);
  }

 private:
  made_settings& made_;
};

class MachineChanges : public testing::Test {
 protected:
  MachineChanges() {
    set_source(std::make_unique<refusing_source>(made_));
    forget_changes();
    begin_changes("commit");
    port(names_.third_port).settings.admin_state = PM_PORT_STATE_UP;
    begun_ = the_machine();
    requested_ = the_machine();
  }
  ~MachineChanges() override {
    set_source();
    forget_changes();
  }

  interface& port(if_index_t if_index) {
    return *the_machine().find(if_index);
  }
  port_settings& requested(if_index_t if_index) { return requested_.find(if_index)->settings; }

  changes_made apply() {
    return apply_changes(the_machine(), rebased(changes_between(begun_, requested_), the_machine()));
  }

  small_machine names_ = install_small_machine();
  made_settings made_;
  machine begun_;
  machine requested_;
};

TEST(MergedSettings, OnlyWhatDiffersIsTaken) {
  port_settings now, from, to;
  now.description = "set meanwhile";
  now.mtu_bytes = uint16{4000};
  from.access_vlan = to.access_vlan = uint16{7};
  to.mtu_bytes = uint16{9000};
  const port_settings merged = merged_settings(now, from, to);
  EXPECT_EQ(merged.description, "set meanwhile");
  EXPECT_EQ(merged.mtu_bytes, 9000);
  EXPECT_EQ(merged.access_vlan, 1) << "it is the same in both";
}

TEST(MergedSettings, TheSidesOfFlowControlAreSettingsOfTheirOwn) {
  port_settings now, from, to;
  now.admin_flow_control = kSendOn;
  to.admin_flow_control = kReceiveOn;
  EXPECT_EQ(merged_settings(now, from, to).admin_flow_control, PM_FLOW_CTRL_ON);
}

TEST_F(MachineChanges, AreMergedWithWhatChangedMeanwhile) {
  requested(names_.third_port).mtu_bytes = uint16{9000};
  port(names_.third_port).settings.description = "set meanwhile";
  port(names_.loopback).settings.description = "another port";
  const changes_made made = apply();
  EXPECT_EQ(made.applied, std::vector<if_index_t>{names_.third_port});
  EXPECT_EQ(port(names_.third_port).settings.mtu_bytes, 9000);
  EXPECT_EQ(port(names_.third_port).settings.description, "set meanwhile");
  EXPECT_EQ(port(names_.loopback).settings.description, "another port");
}

TEST_F(MachineChanges, WhatIsSoAlreadyIsNone) {
  requested(names_.third_port).mtu_bytes = uint16{9000};
  port(names_.third_port).settings.mtu_bytes = uint16{9000};
  EXPECT_TRUE(rebased(changes_between(begun_, requested_), the_machine()).is_empty());
}

// The refused step comes behind others, and the port is switched off first.
TEST_F(MachineChanges, APortTakesAllOfThemOrNone) {
  made_.refuses_flow_control = true;
  port_settings& settings = requested(names_.third_port);
  settings.admin_state = PM_PORT_STATE_DOWN;
  settings.description = "new";
  settings.admin_flow_control = kReceiveOn;
  settings.mtu_bytes = uint16{9000};
  requested(names_.loopback).description = "also new";
  const changes_made made = apply();
  ASSERT_EQ(made.refused.size(), 1U);
  EXPECT_EQ(made.refused[0].if_index, names_.third_port);
  EXPECT_EQ(made.refused[0].status, kRefused);
  EXPECT_EQ(made.applied, std::vector<if_index_t>{names_.loopback});
  const port_settings& before = begun_.find(names_.third_port)->settings;
  EXPECT_EQ(port(names_.third_port).settings, before);
  ASSERT_GE(made_.steps.size(), 2U);
  EXPECT_EQ(made_.steps[made_.steps.size() - 2], before) << "the source made the steps undone, too";
}

TEST_F(MachineChanges, AreOneStepOfTheJournal) {
  requested(names_.third_port).mtu_bytes = uint16{9000};
  requested(names_.loopback).description = "new";
  apply();
  ASSERT_EQ(change_steps(the_machine()).size(), 1U);
  take_change_back(the_machine());
  EXPECT_EQ(port(names_.third_port).settings, begun_.find(names_.third_port)->settings);
  EXPECT_EQ(port(names_.loopback).settings, begun_.find(names_.loopback)->settings);
}

TEST_F(MachineChanges, LockedAndMissingPortsRefuseThem) {
  requested(names_.third_port).mtu_bytes = uint16{9000};
  requested(names_.sub_port).description = "new";
  port(names_.third_port).is_locked = true;
  the_machine().remove(names_.sub_port);
  const changes_made made = apply();
  EXPECT_TRUE(made.applied.empty());
  ASSERT_EQ(made.refused.size(), 2U);
  for (const auto& [if_index, status] : made.refused)
    EXPECT_EQ(status, if_index == names_.third_port ? PM_ERR_PORT_LOCKED : PM_ERR_NO_SUCH_INTERFACE);
}

TEST_F(MachineChanges, APortThatJoinedAChannelRefusesWhatIsItsChannels) {
  requested(names_.third_port).mtu_bytes = uint16{9000};
  port(names_.third_port).settings.channel = names_.channel;
  ASSERT_EQ(apply().refused.size(), 1U);
  requested(names_.third_port) = begun_.find(names_.third_port)->settings;
  requested(names_.third_port).description = "its own";
  EXPECT_TRUE(apply().refused.empty());
}

class CreatedAndDeleted : public MachineChanges {
 protected:
  // As a command does.
  void create(if_index_t if_index) {
    switch_source().create_interfaces(requested_, {&if_index, 1});
    requested(if_index).description = "created";
  }
  void remove(if_index_t if_index) { switch_source().delete_interfaces(requested_, {&if_index, 1}); }

  const if_index_t new_loopback_ = numbered_index(IF_TYPE_LOOPBACK, 9);
};

TEST_F(CreatedAndDeleted, InterfacesAreAmongThem) {
  create(new_loopback_);
  remove(names_.sub_port);
  const changes_made made = apply();
  EXPECT_TRUE(made.refused.empty());
  EXPECT_EQ(port(new_loopback_).settings.description, "created");
  EXPECT_EQ(the_machine().find(names_.sub_port), nullptr);
  take_change_back(the_machine());
  EXPECT_EQ(the_machine().find(new_loopback_), nullptr);
  EXPECT_NE(the_machine().find(names_.sub_port), nullptr);
}

TEST_F(CreatedAndDeleted, AnInterfaceWhoseSettingsAreRefusedIsNotCreated) {
  made_.refuses_flow_control = true;
  create(new_loopback_);
  requested(new_loopback_).admin_flow_control = PM_FLOW_CTRL_ON;
  EXPECT_EQ(apply().refused.size(), 1U);
  EXPECT_EQ(the_machine().find(new_loopback_), nullptr);
  EXPECT_TRUE(change_steps(the_machine()).empty());
}

TEST_F(CreatedAndDeleted, OneThatExistsByNowTakesTheSettings) {
  create(new_loopback_);
  the_source().create_interfaces(the_machine(), {&new_loopback_, 1});
  EXPECT_TRUE(apply().refused.empty());
  EXPECT_EQ(port(new_loopback_).settings.description, "created");
}

TEST_F(CreatedAndDeleted, OneThatIsDeletedAndCreatedIsNew) {
  remove(names_.loopback);
  create(names_.loopback);
  EXPECT_TRUE(apply().refused.empty());
  EXPECT_TRUE(port(names_.loopback).is_created);
  EXPECT_EQ(port(names_.loopback).settings.description, "created");
}

TEST_F(CreatedAndDeleted, OneThatCannotBeCreatedAgainStays) {
  made_.refuses_creation = true;
  remove(names_.loopback);
  create(names_.loopback);
  EXPECT_EQ(apply().refused.size(), 1U);
  EXPECT_FALSE(port(names_.loopback).is_created);
}

TEST_F(CreatedAndDeleted, SubInterfacesComeWhenTheirPortHasChanged) {
  const if_index_t sub = ethernet_index(IF_TYPE_ETHERNET, 0, 2, 5);
  requested(names_.third_port).layer = IF_LAYER_3;
  create(sub);
  EXPECT_TRUE(apply().refused.empty());
  EXPECT_NE(the_machine().find(sub), nullptr);
}

TEST_F(CreatedAndDeleted, ReversedTheyTakeEverythingBack) {
  create(new_loopback_);
  remove(names_.sub_port);
  requested(names_.third_port).mtu_bytes = uint16{9000};
  port(names_.third_port).settings.mtu_bytes = uint16{4000};
  const machine before = the_machine();
  const machine_changes changes = rebased(changes_between(begun_, requested_), the_machine());
  EXPECT_EQ(changes.ports().size(), 3U);
  apply_changes(the_machine(), changes);
  port(names_.third_port).settings.description = "set afterwards";
  EXPECT_TRUE(apply_changes(the_machine(), reversed(changes)).refused.empty());
  EXPECT_EQ(the_machine().find(new_loopback_), nullptr);
  EXPECT_EQ(port(names_.sub_port), *before.find(names_.sub_port));
  EXPECT_EQ(port(names_.third_port).settings.mtu_bytes, 4000);
  EXPECT_EQ(port(names_.third_port).settings.description, "set afterwards");
}

}  // namespace
}  // namespace host
