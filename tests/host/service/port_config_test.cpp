// Settings of ports through the client function: what the port manager applies, and what it refuses.
#include "platform/port_config.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "host/client/client_fixture.h"
#include "host/switch/stopped_clock.h"
#include "messages/port_manager_messages.h"
#include "platform/card_config.h"
#include "platform/syserr.h"
#include "settings/change_journal.h"
#include "support/heap_block.h"
#include "switch/if_index_layout.h"
#include "switch/interface_name.h"
#include "switch/source.h"

namespace host {
namespace {

struct outcome {
  int32 error = 0;
  std::vector<std::pair<if_index_t, uint32>> ports;
};

using Ports = std::vector<std::pair<if_index_t, uint32>>;
using Octets = std::vector<uint8>;

class PortConfig : public Clients {
 protected:
  PortConfig() { forget_changes(); }

  outcome set(const std::vector<if_index_range_t>& ranges, uint8 type, const Octets& value) {
    pm_port_cfg_status_t* block = nullptr;
    uint32 count = 99;
    outcome got;
    got.error = pm_cmi_set_port_config(q_, "operator", 1, static_cast<uint32>(ranges.size()), ranges.data(), type,
                                       static_cast<uint8>(value.size()), value.data(), &block, &count, 60);
    const heap_block<pm_port_cfg_status_t> results(block);
    for (uint32 i = 0; i < count; ++i) got.ports.emplace_back(block[i].if_index, block[i].status);
    return got;
  }
  uint32 set_one(if_index_t port, uint8 type, const Octets& value) {
    const outcome got = set({{port, port}}, type, value);
    EXPECT_EQ(got.error, 0);
    EXPECT_EQ(got.ports.size(), 1U);
    return got.ports.empty() ? 0xFFFFFFFF : got.ports[0].second;
  }
  const interface& port(if_index_t if_index) { return *the_machine().find(if_index); }
};

TEST_F(PortConfig, ShutdownTakesThePortDownAndBackToWhatItWas) {
  const stopped_clock at(1'800'000'000);
  const uint8 state_before = port(names_.routed_port).oper_state;
  const uint8 reason_before = port(names_.routed_port).state_reason;
  EXPECT_EQ(set_one(names_.routed_port, PM_CFG_PORT_STATE, {2}), 0U);
  EXPECT_EQ(port(names_.routed_port).settings.admin_state, PM_PORT_STATE_DOWN);
  EXPECT_EQ(port(names_.routed_port).oper_state, PM_PORT_STATE_DOWN);
  EXPECT_EQ(port(names_.routed_port).state_reason, PM_REASON_ADMIN_DOWN);
  EXPECT_EQ(set_one(names_.routed_port, PM_CFG_PORT_STATE, {2}), 0U);
  EXPECT_EQ(set_one(names_.routed_port, PM_CFG_PORT_STATE, {1}), 0U);
  EXPECT_EQ(port(names_.routed_port).settings.admin_state, PM_PORT_STATE_UP);
  EXPECT_EQ(port(names_.routed_port).oper_state, state_before);
  EXPECT_EQ(port(names_.routed_port).state_reason, reason_before);
  EXPECT_EQ(set_one(names_.routed_port, PM_CFG_PORT_STATE, {3}), uint32{PM_ERR_VALUE_OUT_OF_RANGE});
}

TEST_F(PortConfig, SettingsReachTheModel) {
  const if_index_t it = names_.third_port;
  the_machine().find(it)->capabilities.speeds = CRDCFG_SPEED_100M | CRDCFG_SPEED_1G;
  Octets name(81);
  std::memcpy(name.data(), "to the lab", 10);
  EXPECT_EQ(set_one(it, PM_CFG_NAME, name), 0U);
  EXPECT_EQ(set_one(it, PM_CFG_PORT_MODE, {0, 0x10, 0, 0}), 0U);
  EXPECT_EQ(set_one(it, PM_CFG_SPEED, {0, 0, 0, 100}), 0U);
  EXPECT_EQ(set_one(it, PM_CFG_DUPLEX, {2}), 0U);
  EXPECT_EQ(set_one(it, PM_CFG_BEACON, {1}), 0U);
  EXPECT_EQ(set_one(it, PM_CFG_MTU, {0, 0, 0x23, 0x28}), 0U);
  EXPECT_EQ(set_one(it, PM_CFG_MONITOR, {0, 0, 0, 1}), 0U);
  EXPECT_EQ(set_one(it, PM_CFG_SERVICE_STATE, {0, 0, 0, 1}), 0U);
  EXPECT_EQ(set_one(it, PM_CFG_SWITCHPORT, {0, 0, 0, 3}), uint32{PM_ERR_NOT_ALLOWED_ON_INTERFACE})
      << "its kind is never routed";
  EXPECT_EQ(set_one(names_.routed_port, PM_CFG_SWITCHPORT, {0, 0, 0, 2}), uint32{PM_ERR_SUB_INTERFACE_ON_L2})
      << "its sub-interfaces need a routed port";
  EXPECT_EQ(set_one(names_.channel, PM_CFG_SWITCHPORT, {0, 0, 0, 3}), 0U);
  EXPECT_EQ(port(names_.channel).settings.layer, 3U);
  const interface& changed = port(it);
  EXPECT_EQ(changed.settings.description, "to the lab");
  EXPECT_EQ(changed.settings.admin_mode, 0x100000U);
  EXPECT_EQ(changed.settings.admin_speed_mbps, 100U);
  EXPECT_EQ(changed.oper_speed_mbps, 100U);
  EXPECT_EQ(changed.settings.admin_duplex, PM_PORT_DUPLEX_HALF);
  EXPECT_TRUE(changed.settings.beacon_on);
  EXPECT_EQ(changed.settings.mtu_bytes, 9000);
  EXPECT_EQ(changed.settings.span_monitor, 1U);
  EXPECT_EQ(changed.settings.service_state, 1U);
}

TEST_F(PortConfig, RefusalsNameTheirReasonAndChangeNothing) {
  the_machine().find(names_.third_port)->capabilities.speeds = CRDCFG_SPEED_1G;
  const auto mtu = port(names_.third_port).settings.mtu_bytes;
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_SPEED, {0, 0, 0, 100}), uint32{PM_ERR_SPEED_NOT_SUPPORTED});
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_SPEED, {0, 0, 0, 7}), uint32{PM_ERR_SPEED_NOT_SUPPORTED});
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 1, 0, 0}), uint32{PM_ERR_VALUE_OUT_OF_RANGE});
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_DUPLEX, {4}), uint32{PM_ERR_VALUE_OUT_OF_RANGE});
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_BEACON, {0}), uint32{PM_ERR_VALUE_OUT_OF_RANGE});
  EXPECT_EQ(set_one(names_.loopback, PM_CFG_MTU, {0, 0, 5, 220}), uint32{PM_ERR_NOT_ALLOWED_ON_INTERFACE});
  EXPECT_EQ(set_one(names_.mgmt, PM_CFG_BEACON, {1}), uint32{PM_ERR_NOT_ALLOWED_ON_INTERFACE});
  EXPECT_EQ(set_one(names_.second_port, PM_CFG_MTU, {0, 0, 5, 220}), uint32{PM_ERR_PORT_IN_CHANNEL});
  EXPECT_EQ(set_one(names_.nobody, PM_CFG_PORT_STATE, {1}), uint32{PM_ERR_NO_SUCH_INTERFACE});
  EXPECT_EQ(port(names_.third_port).settings.mtu_bytes, mtu);
  EXPECT_FALSE(port(names_.third_port).settings.beacon_on);
}

TEST_F(PortConfig, EveryPortOfEveryRangeIsAnsweredInOrder) {
  const outcome got =
      set({{names_.first_port, names_.third_port}, {names_.routed_port, names_.routed_port}}, PM_CFG_BEACON, {1});
  EXPECT_EQ(got.error, 0);
  EXPECT_EQ(got.ports,
            (Ports{{names_.first_port, 0}, {names_.second_port, 0}, {names_.third_port, 0}, {names_.routed_port, 0}}));
}

TEST_F(PortConfig, MembersFollowTheirChannel) {
  EXPECT_EQ(set_one(names_.channel, PM_CFG_MTU, {0, 0, 0x23, 0x28}), 0U);
  EXPECT_EQ(port(names_.first_port).settings.mtu_bytes, 9000);
  EXPECT_EQ(port(names_.second_port).settings.mtu_bytes, 9000);
  EXPECT_EQ(set_one(names_.channel, PM_CFG_PORT_STATE, {2}), 0U);
  EXPECT_EQ(port(names_.first_port).settings.admin_state, PM_PORT_STATE_UP) << "a member has its own state";
}

TEST_F(PortConfig, LockedPortsTakeNothing) {
  the_machine().find(names_.third_port)->is_locked = true;
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_BEACON, {1}), uint32{PM_ERR_PORT_LOCKED});
  EXPECT_FALSE(port(names_.third_port).settings.beacon_on);
}

TEST_F(PortConfig, APortRefusesWithTheStatusOfItsFile) {
  the_machine().find(names_.third_port)->refusal = 0x402900F4;
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_BEACON, {1}), 0x402900F4U);
  EXPECT_FALSE(port(names_.third_port).settings.beacon_on);
}

TEST_F(PortConfig, ModeEIsForTheFirstPortOfAGroupWhereTheCardSaysSo) {
  interface fibre;
  for (const uint32 number : {4U, 5U}) {
    fibre.if_index = index_of(IF_TYPE_FC, {.slot = 3, .port = number + 1});
    fibre.capabilities.e_mode_on_first_only = true;
    the_machine().add(fibre);
  }
  const if_index_t first = index_of(IF_TYPE_FC, {.slot = 3, .port = 5});
  EXPECT_EQ(set_one(first, PM_CFG_PORT_MODE, {0, 0, 0, 4}), 0U);
  EXPECT_EQ(set_one(fibre.if_index, PM_CFG_PORT_MODE, {0, 0, 0, 4}), uint32{PM_ERR_MODE_E_OUTSIDE_FIRST_PORT});
  EXPECT_EQ(port(fibre.if_index).settings.admin_mode, 0U);
  the_machine().find(fibre.if_index)->capabilities.e_mode_on_first_only = false;
  EXPECT_EQ(set_one(fibre.if_index, PM_CFG_PORT_MODE, {0, 0, 0, 4}), 0U);
}

struct kept_setting {
  uint8 type;
  Octets lowest, highest, below, above;  // empty: there is none
};

TEST_F(PortConfig, KeptNumbersHaveBounds) {
  interface fibre;
  fibre.if_index = index_of(IF_TYPE_FC, {.slot = 3, .port = 5});
  the_machine().add(fibre);
  const kept_setting kSettings[] = {
      {PM_CFG_TRUNKING_MODE, {1}, {3}, {0}, {4}},
      {PM_CFG_RXBUFSIZE, {1, 0}, {8, 0x40}, {0, 0xFF}, {8, 0x41}},
      {PM_CFG_ENCAP, {1}, {3}, {0}, {4}},
      {PM_CFG_PROMISCUOUS, {0, 0, 0, 1}, {0, 0, 0, 2}, {0, 0, 0, 0}, {0, 0, 0, 3}},
      {PM_CFG_RX_BB_CREDIT, {0, 0, 0, 0}, {0xC0, 0, 0, 255}, {}, {0x80, 0, 1, 0}},
      {PM_CFG_PERFORMANCE_BUFFERS, {0, 0, 0, 0}, {0xFF, 0xFF, 0xFF, 0xFF}, {}, {}},
      {PM_CFG_BB_CREDIT_EXTENDED, {0, 0, 0, 0}, {0, 0, 0x0F, 0xFF}, {}, {0, 0, 0x10, 0}},
      {PM_CFG_BB_CREDIT_MULTIPLIER, {0, 0, 0, 0}, {0, 0, 0, 255}, {}, {0, 0, 1, 0}},
      {PM_CFG_IGNORE, {1}, {2}, {0}, {3}},
      {PM_CFG_BB_SCN, {1}, {2}, {0}, {3}},
      {PM_CFG_31, {0, 0, 0, 1}, {0, 0, 0, 2}, {0, 0, 0, 0}, {0, 0, 0, 3}},
      {PM_CFG_36, {0, 0, 0, 1}, {0, 0, 0, 2}, {0, 0, 0, 0}, {0, 0, 0, 3}},
      {PM_CFG_44, {0}, {3}, {}, {4}},
      {PM_CFG_PORT_DOWN_ON_LINK_FAILURE, {0, 0, 0, 3}, {0, 0, 0, 4}, {0, 0, 0, 2}, {0, 0, 0, 5}},
      {PM_CFG_84, {1}, {2}, {0}, {3}},
      {PM_CFG_85, {0}, {1}, {}, {2}},
  };
  for (const kept_setting& it : kSettings) {
    const port_settings before = port(fibre.if_index).settings;
    for (const Octets& outside : {it.below, it.above}) {
      if (outside.empty()) continue;
      EXPECT_EQ(set_one(fibre.if_index, it.type, outside), uint32{PM_ERR_VALUE_OUT_OF_RANGE}) << int{it.type};
    }
    EXPECT_EQ(port(fibre.if_index).settings, before) << int{it.type};
    EXPECT_EQ(set_one(fibre.if_index, it.type, it.lowest), 0U) << int{it.type};
    const port_settings lowest = port(fibre.if_index).settings;
    EXPECT_EQ(set_one(fibre.if_index, it.type, it.highest), 0U) << int{it.type};
    EXPECT_NE(port(fibre.if_index).settings, lowest) << int{it.type};
  }
  EXPECT_EQ(port(fibre.if_index).settings.receive_credit, 0xC00000FFU);
  EXPECT_EQ(port(fibre.if_index).settings.receive_buffer_bytes, 2112);
  EXPECT_EQ(port(fibre.if_index).settings.down_on_link_failure, 4U);
}

TEST_F(PortConfig, TheLastCommandIsTakenBackAsAWhole) {
  const stopped_clock at(1'800'000'000);
  const port_settings third = port(names_.third_port).settings;
  const port_settings routed = port(names_.routed_port).settings;
  begin_changes({});
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 0, 5, 221}), 0U);
  begin_changes({});
  const port_settings with_mtu = port(names_.third_port).settings;
  EXPECT_NE(with_mtu, third);
  set({{names_.third_port, names_.third_port}, {names_.routed_port, names_.routed_port}}, PM_CFG_PORT_STATE, {2});
  set({{names_.routed_port, names_.routed_port}}, PM_CFG_PORT_STATE, {2});
  set({{names_.mgmt, names_.mgmt}}, PM_CFG_BEACON, {1});  // refused
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{names_.third_port, names_.routed_port}));
  EXPECT_EQ(port(names_.third_port).settings, with_mtu);
  EXPECT_EQ(port(names_.routed_port).settings, routed);
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{names_.third_port}));
  EXPECT_EQ(port(names_.third_port).settings, third);
  EXPECT_TRUE(take_change_back(the_machine()).applied.empty());
}

TEST_F(PortConfig, StepsAreThoseThatChangedSomething) {
  const stopped_clock at(1'800'000'000);
  begin_changes("mtu 1501");
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 0, 5, 221}), 0U);
  begin_changes("mtu 1501");  // all is so already
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 0, 5, 221}), 0U);
  begin_changes("beacon");  // refused
  set({{names_.mgmt, names_.mgmt}}, PM_CFG_BEACON, {1});
  clock_advance(60);
  begin_changes("shutdown");  // of two ports, of which one is shut
  set({{names_.third_port, names_.third_port}}, PM_CFG_PORT_STATE, {2});
  set({{names_.mgmt, names_.mgmt}}, PM_CFG_BEACON, {1});

  const auto& steps = change_steps(the_machine());
  ASSERT_EQ(steps.size(), 2U);
  EXPECT_EQ(steps[0].command, "mtu 1501");
  EXPECT_EQ(steps[0].at_sec, 1'800'000'000U);
  EXPECT_EQ(steps[0].ports(), (std::vector<if_index_t>{names_.third_port}));
  EXPECT_EQ(steps[1].command, "shutdown");
  EXPECT_EQ(steps[1].at_sec, 1'800'000'060U);
  EXPECT_EQ(changed_ports(the_machine(), 5), (std::vector<if_index_t>{names_.third_port}));
}

TEST_F(PortConfig, OfTooManyStepsTheOldestAreForgotten) {
  for (int i = 0; i < 20'050; ++i) {
    begin_changes(std::to_string(i));
    note_change(port(names_.third_port));
    the_machine().find(names_.third_port)->settings.beacon_on = i % 2 == 0;
  }
  const auto& steps = change_steps(the_machine());
  EXPECT_EQ(steps.size(), 20'001U);
  EXPECT_EQ(steps.back().command, "20049");
}

// ---- A source that has the last word

constexpr uint32 kRefusal = 0x40F10000;

struct source_of_small_packets : switch_source {
  uint32 apply_settings(interface& port, const port_settings& before) override {
    mtus_before.push_back(*before.mtu_bytes);
    return port.settings.mtu_bytes > 4000 ? kRefusal : 0;
  }
  bool hands_settings_to_members() const override { return true; }

  std::vector<uint16> mtus_before;
};

source_of_small_packets& use_source_of_small_packets() {
  auto made = std::make_unique<source_of_small_packets>();
  source_of_small_packets& used = *made;
  set_source(std::move(made));
  return used;
}

TEST_F(PortConfig, WhatTheSourceRefusesIsNotSet) {
  const source_of_small_packets& source = use_source_of_small_packets();
  begin_changes({});
  const port_settings as_made = port(names_.third_port).settings;
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 0, 0x0F, 0xA1}), kRefusal);
  EXPECT_EQ(port(names_.third_port).settings, as_made);
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 0, 0x0F, 0xA0}), 0U);
  EXPECT_EQ(port(names_.third_port).settings.mtu_bytes, 4000);
  EXPECT_EQ(source.mtus_before, (std::vector<uint16>{*as_made.mtu_bytes, *as_made.mtu_bytes}));
}

TEST_F(PortConfig, TheSourceDecidesWhatMembersMayBeSetTo) {
  interface& member = *the_machine().find(names_.third_port);
  member.settings.channel = names_.channel;
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 0, 0x0B, 0xB8}), uint32{PM_ERR_PORT_IN_CHANNEL});
  use_source_of_small_packets();
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 0, 0x0B, 0xB8}), 0U);
  EXPECT_EQ(member.settings.mtu_bytes, 3000);
  EXPECT_EQ(set_one(names_.channel, PM_CFG_MTU, {0, 0, 0x0F, 0xA0}), 0U);
  EXPECT_EQ(member.settings.mtu_bytes, 3000);
}

TEST_F(PortConfig, WhatTheSourceRefusesToTakeBackStays) {
  the_machine().find(names_.third_port)->settings.mtu_bytes = 9000;
  begin_changes({});
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_MTU, {0, 0, 0x0F, 0xA0}), 0U);
  use_source_of_small_packets();
  EXPECT_EQ(changed_ports(the_machine(), 1), (std::vector<if_index_t>{names_.third_port}));
  const changes_made made = take_change_back(the_machine());
  EXPECT_TRUE(made.applied.empty());
  ASSERT_EQ(made.refused.size(), 1U);
  EXPECT_EQ(made.refused[0].if_index, names_.third_port);
  EXPECT_EQ(made.refused[0].status, kRefusal);
  EXPECT_EQ(port(names_.third_port).settings.mtu_bytes, 4000);
}

TEST_F(PortConfig, ACommandThatChangesNothingForgetsNothing) {
  begin_changes({});
  EXPECT_EQ(set_one(names_.third_port, PM_CFG_BEACON, {1}), 0U);
  begin_changes({});
  EXPECT_EQ(set_one(names_.mgmt, PM_CFG_BEACON, {1}), uint32{PM_ERR_NOT_ALLOWED_ON_INTERFACE});
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{names_.third_port}));
  EXPECT_FALSE(port(names_.third_port).settings.beacon_on);
}

TEST_F(PortConfig, NoRangesGiveNoResults) {
  const outcome got = set({}, PM_CFG_BEACON, {1});
  EXPECT_EQ(got.error, 0);
  EXPECT_TRUE(got.ports.empty());
}

TEST_F(PortConfig, SettingsThatNobodyKnowsAreAnError) {
  EXPECT_EQ(set({{names_.third_port, names_.third_port}}, 255, {1}).error, PM_ERR_UNKNOWN_TLV);
}

TEST_F(PortConfig, ValuesOfAnotherLengthAreRejected) {
  EXPECT_NE(set({{names_.third_port, names_.third_port}}, PM_CFG_MTU, {5, 220}).error, 0);
  EXPECT_NE(set({{names_.third_port, names_.third_port}}, PM_CFG_PORT_STATE, {}).error, 0);
}

TEST_F(PortConfig, LyingRequestsAreRejected) {
  const auto is_rejected = [](const std::vector<std::byte>& request) {
    return serve_port_manager(PM_OPC_SET_CONFIG, request).what == reply::kind::reject;
  };
  std::vector<std::byte> request(7 + 1 + 8);
  request[3] = std::byte{1};  // one range
  request[4] = std::byte{PM_CFG_BEACON};
  request[6] = std::byte{1};  // one byte of value
  EXPECT_FALSE(is_rejected(request));
  for (std::size_t size = 0; size < request.size(); ++size)
    EXPECT_TRUE(is_rejected({request.begin(), request.begin() + static_cast<std::ptrdiff_t>(size)})) << size;
  request[0] = std::byte{0xFF};
  EXPECT_TRUE(is_rejected(request));
}

TEST_F(PortConfig, FailedRequestsLeaveNoResults) {
  ASSERT_TRUE(transport_inject_fault("port-manager", {injected_fault::kind::lost}));
  const outcome got = set({{names_.third_port, names_.third_port}}, PM_CFG_BEACON, {1});
  ASSERT_TRUE(transport_inject_fault("port-manager", {injected_fault::kind::none}));
  EXPECT_EQ(got.error, -1);
  EXPECT_TRUE(got.ports.empty());
  EXPECT_FALSE(port(names_.third_port).settings.beacon_on);
}

TEST_F(PortConfig, ShortAnswersAreFailures) {
  for (const uint32 bytes : {0U, 4U, 8U, 15U}) {
    ASSERT_TRUE(transport_inject_fault("port-manager", {injected_fault::kind::cut, bytes}));
    const outcome got = set({{names_.third_port, names_.third_port}}, PM_CFG_BEACON, {1});
    ASSERT_TRUE(transport_inject_fault("port-manager", {injected_fault::kind::none}));
    EXPECT_NE(got.error, 0) << bytes;
    EXPECT_TRUE(got.ports.empty()) << bytes;
  }
}

}  // namespace
}  // namespace host
