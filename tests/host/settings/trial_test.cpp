// Commands on a copy of the machine.
#include "settings/trial.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "host/switch/small_machine.h"
#include "host/switch/stopped_clock.h"
#include "platform/port_config.h"
#include "service/change_settings.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

// Counts what reaches it.
struct observed {
  int changes = 0;
  int refreshes = 0;
  int clears = 0;
  uint32 asked_at_sec = 0;
};

class observed_source final : public switch_source {
 public:
  explicit observed_source(observed& seen) : seen_(seen) {}

  void refresh(machine&) override { ++seen_.refreshes; }
  bool knows_all_fields() const override { return false; }
  void complete(interface& port, detail) override { port.capabilities.model = "completed"; }
  bool counts_at_refresh() const override { return true; }
  bool update_statistics(interface&, uint32 now_sec) override {
    seen_.asked_at_sec = now_sec;
    return true;
  }
  void clear_counters(interface&, uint32) override { ++seen_.clears; }
  bool applies_setting(uint8 type) const override { return type == PM_CFG_MTU; }
  uint32 check_settings(const interface& port, const port_settings&) const override {
    return port.settings.mtu_bytes == 7000 ? PM_ERR_PORT_LOCKED : 0;
  }
  bool hands_settings_to_members() const override { return true; }
  bool allows_sub_interfaces_of_switched_ports() const override { return true; }
  uint32 apply_settings(interface&, const port_settings&) override { return ++seen_.changes, 0; }
  uint32 create_interfaces(machine&, std::span<const if_index_t>) override { return ++seen_.changes, 0; }
  uint32 delete_interfaces(machine&, std::span<const if_index_t>) override { return ++seen_.changes, 0; }
  uint32 restore_interface(machine&, const interface&) override { return ++seen_.changes, 0; }
  std::vector<if_index_t> interfaces_towards(const std::string&) const override { return {7}; }

 private:
  observed& seen_;
};

class Trial : public testing::Test {
 protected:
  Trial() { set_source(std::make_unique<observed_source>(seen_)); }
  ~Trial() override {
    set_source();
    forget_changes();
  }

  interface& port() {
    return *the_machine().find(names_.first_port);
  }

  void set_mtu(uint16 bytes) {
    begin_changes("switchport mtu " + std::to_string(bytes));
    change_settings(port(), [bytes](interface& it) {
      it.settings.mtu_bytes = bytes;
      return 0U;
    });
  }

  small_machine names_ = install_small_machine();
  observed seen_;
};

TEST_F(Trial, ASettingStaysInTheCopy) {
  forget_changes();
  const uint16 before = *port().settings.mtu_bytes;
  trial_state state{the_machine(), {}};
  {
    const trial running(state);
    set_mtu(9000);
    EXPECT_EQ(port().settings.mtu_bytes, 9000) << "later commands see it";
    EXPECT_EQ(change_steps(the_machine()).size(), 1U);
  }
  EXPECT_EQ(port().settings.mtu_bytes, before);
  EXPECT_EQ(state.model.find(names_.first_port)->settings.mtu_bytes, 9000);
  EXPECT_TRUE(change_steps(the_machine()).empty());
  EXPECT_EQ(seen_.changes, 0);
}

TEST_F(Trial, WhatTheRealSourceIsKnownToRefuseIsRefused) {
  trial_state state{the_machine(), {}};
  const trial running(state);
  const uint16 before = *port().settings.mtu_bytes;
  const auto set_7000 = [](interface& it) { return it.settings.mtu_bytes = 7000, 0U; };
  EXPECT_EQ(change_settings(port(), set_7000), uint32{PM_ERR_PORT_LOCKED});
  EXPECT_EQ(port().settings.mtu_bytes, before);
  trial_state inner_state{the_machine(), {}};
  const trial inner(inner_state);
  EXPECT_EQ(change_settings(port(), set_7000), uint32{PM_ERR_PORT_LOCKED}) << "also in a trial of a trial";
}

TEST_F(Trial, StepsOfTheSessionCannotBeTakenBackInIt) {
  forget_changes();
  set_mtu(4000);
  trial_state state{the_machine(), {}};
  {
    const trial running(state);
    EXPECT_TRUE(change_steps(the_machine()).empty());
    take_change_back(the_machine());
  }
  EXPECT_EQ(port().settings.mtu_bytes, 4000);
  EXPECT_EQ(change_steps(the_machine()).size(), 1U);
}

TEST_F(Trial, CreatedAndDeletedInterfacesStayInTheCopy) {
  const if_index_t loopback = numbered_index(IF_TYPE_LOOPBACK, 9);
  trial_state state{the_machine(), {}};
  {
    const trial running(state);
    EXPECT_EQ(the_source().create_interfaces(the_machine(), {&loopback, 1}), 0U);
    EXPECT_EQ(the_source().delete_interfaces(the_machine(), {&names_.sub_port, 1}), 0U);
    EXPECT_NE(the_machine().find(loopback), nullptr);
    EXPECT_EQ(the_machine().find(names_.sub_port), nullptr);
  }
  EXPECT_EQ(the_machine().find(loopback), nullptr);
  EXPECT_NE(the_machine().find(names_.sub_port), nullptr);
  EXPECT_EQ(seen_.changes, 0);
}

TEST_F(Trial, ItsSourceReadsAsTheRealOne) {
  trial_state state{the_machine(), {}};
  const trial running(state);
  EXPECT_FALSE(the_source().knows_all_fields());
  EXPECT_TRUE(the_source().applies_setting(PM_CFG_MTU));
  EXPECT_FALSE(the_source().applies_setting(PM_CFG_SPEED));
  EXPECT_TRUE(the_source().hands_settings_to_members());
  EXPECT_TRUE(the_source().allows_sub_interfaces_of_switched_ports());
  EXPECT_EQ(the_source().interfaces_towards(""), std::vector<if_index_t>{7});
  the_source().complete(port(), detail::driver);
  EXPECT_EQ(port().capabilities.model, "completed");
}

TEST_F(Trial, NothingIsReadAnewOrCleared) {
  trial_state state{the_machine(), {}};
  const trial running(state);
  the_source().refresh(the_machine());
  the_source().clear_counters(port(), 1'800'000'000);
  EXPECT_EQ(the_source().write_baselines(), 0);
  EXPECT_EQ(seen_.refreshes, 0);
  EXPECT_EQ(seen_.clears, 0);
}

// Rates of a source that counts at its refresh would otherwise have a reading of a later moment.
TEST_F(Trial, CountersAreOfTheMomentAtWhichItBegan) {
  const stopped_clock clock(1'800'000'000);
  trial_state state{the_machine(), {}};
  const trial running(state);
  EXPECT_TRUE(the_source().update_statistics(port(), 1'800'000'090));
  EXPECT_EQ(seen_.asked_at_sec, 1'800'000'000U);
}

TEST_F(Trial, OneRunsWithinAnother) {
  EXPECT_FALSE(trial::is_running());
  trial_state outer{the_machine(), {}};
  const trial running(outer);
  set_mtu(8000);
  {
    trial_state inner{the_machine(), {}};
    const trial within(inner);
    EXPECT_EQ(port().settings.mtu_bytes, 8000);
    set_mtu(9000);
  }
  EXPECT_TRUE(trial::is_running());
  EXPECT_EQ(port().settings.mtu_bytes, 8000);
}

}  // namespace
}  // namespace host
