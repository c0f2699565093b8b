// A command sees one state of the switch, whatever other sessions change meanwhile.
#include "settings/command_view.h"

#include <gtest/gtest.h>

#include <memory>
#include <string_view>
#include <vector>

#include "host/switch/small_machine.h"
#include "messages/port_manager_messages.h"
#include "messages/statistics_messages.h"
#include "messages/switch_messages.h"
#include "platform/port_config.h"
#include "service/answers.h"
#include "service/services.h"
#include "settings/session.h"
#include "switch/source.h"

namespace host {
namespace {

using answered = std::vector<std::byte>;

class CommandViews : public testing::Test {
 protected:
  CommandViews() { set_source(); }
  ~CommandViews() override { set_source(); }

  template <typename... Records>
  static answered ask(switch_session& session, std::string_view name, mts_opc_t opcode, const Records&... fields) {
    reply request;
    (append_bytes(request, fields), ...);
    const session_scope requests(session);
    for (const service& it : all_services())
      if (it.name == name) return it.serve(opcode, request.payload).payload;
    return {};
  }

  void begin_command(switch_session& session) { ask(session, "switch", SWITCH_OPC_REFRESH, uint8{1}); }
  answered read(switch_session& session) { return ask(session, "port-manager", PM_OPC_PORT_CONFIG, range()); }
  answered count(switch_session& session) {
    return ask(session, "port-manager", PM_OPC_ETH_STATISTICS, eth_statistics_request{range(), 1});
  }
  void set_state(switch_session& session, uint8 state) {
    ask(session, "port-manager", PM_OPC_SET_CONFIG, setting_request{1, PM_CFG_PORT_STATE, 1}, state, range());
  }
  void shut(switch_session& session) { set_state(session, PM_PORT_STATE_DOWN); }
  range_request range() const { return {names_.routed_port, names_.routed_port}; }

  small_machine names_ = install_small_machine();
  switch_session reading_, setting_;
};

TEST_F(CommandViews, StayAsTheCommandBegan) {
  begin_command(reading_);
  const answered before = read(reading_);
  shut(setting_);
  EXPECT_EQ(read(reading_), before);
  EXPECT_NE(read(setting_), before);
  begin_command(reading_);
  EXPECT_EQ(read(reading_), read(setting_)) << "the next command";
}

TEST_F(CommandViews, HaveEveryInterfaceUntilTheCommandEnds) {
  begin_command(reading_);
  const answered before = ask(reading_, "switch", SWITCH_OPC_INTERFACES);
  ask(setting_, "port-manager", PM_OPC_LOOPBACKS, pm_cli_if_index_verify_req_payload_t{0, 1, 1},
      pm_port_range_t{names_.loopback, names_.loopback});
  EXPECT_NE(ask(setting_, "switch", SWITCH_OPC_INTERFACES), before);
  EXPECT_EQ(ask(reading_, "switch", SWITCH_OPC_INTERFACES), before);
}

TEST_F(CommandViews, EndWithAChangeByTheirSession) {
  begin_command(reading_);
  const answered before = read(reading_);
  shut(setting_);
  ASSERT_EQ(read(reading_), before);
  ask(reading_, "statistics", STATS_OPC_CLEAR_PORT, be32(names_.loopback));
  EXPECT_EQ(read(reading_), read(setting_));
}

TEST_F(CommandViews, AreNotCopiedByTheirOwnChanges) {
  begin_command(reading_);
  shut(reading_);
  EXPECT_EQ(num_kept_machines(), 0U);
  EXPECT_EQ(read(reading_), read(setting_));
}

TEST_F(CommandViews, AreOfTheCountersToo) {
  begin_command(reading_);
  const answered before = count(reading_);
  ask(setting_, "port-manager", PM_OPC_ETH_STATISTICS, eth_statistics_request{range(), 0});
  EXPECT_EQ(count(reading_), before);
  EXPECT_NE(count(setting_), before);
}

TEST_F(CommandViews, ReadingsOfStatisticsCopyNothing) {
  switch_session other;
  begin_command(other);
  begin_command(reading_);
  count(reading_);
  EXPECT_EQ(num_kept_machines(), 0U);
}

TEST_F(CommandViews, ShareTheirCopies) {
  switch_session second, third;
  begin_command(reading_);
  begin_command(second);
  EXPECT_EQ(num_kept_machines(), 0U);
  shut(setting_);
  EXPECT_EQ(num_kept_machines(), 1U);
  set_state(setting_, PM_PORT_STATE_UP);
  EXPECT_EQ(num_kept_machines(), 1U) << "all have it already";
  begin_command(third);
  shut(setting_);
  EXPECT_EQ(num_kept_machines(), 2U);
  begin_command(reading_);
  begin_command(second);
  EXPECT_EQ(num_kept_machines(), 1U);
  third.abandon();
  EXPECT_EQ(num_kept_machines(), 0U);
}

TEST_F(CommandViews, EndWhenTheyKeepTooMuch) {
  for (if_index_t it = 0x14000100; the_machine().interfaces.size() < kMostKeptInterfaces / 2; ++it) {
    interface made;
    made.if_index = it;
    the_machine().add(std::move(made));
  }
  const answered before = read(setting_);
  std::vector<std::unique_ptr<switch_session>> sessions;
  for (int i = 0; i < 3; ++i) {
    begin_command(*sessions.emplace_back(std::make_unique<switch_session>()));
    set_state(setting_, i % 2 == 0 ? PM_PORT_STATE_DOWN : PM_PORT_STATE_UP);
  }
  EXPECT_EQ(num_kept_machines(), 2U);
  EXPECT_NE(read(*sessions[0]), before) << "the oldest sees the switch as it is";
  EXPECT_EQ(read(*sessions[0]), read(setting_));
  EXPECT_NE(read(*sessions[1]), before);
  EXPECT_EQ(read(*sessions[2]), before);
}

TEST_F(CommandViews, HaveNoEffectOnCandidates) {
  begin_command(reading_);
  const answered before = read(reading_);
  shut(setting_);
  reading_.begin_candidate();
  {
    const session_scope requests(reading_);
    reading_.enter_candidate();
  }
  EXPECT_NE(read(reading_), before) << "the candidate began with the switch as it is";
  {
    const session_scope requests(reading_);
    reading_.leave_candidate();
  }
  EXPECT_EQ(read(reading_), before);
}

TEST_F(CommandViews, OutliveARollback) {
  setting_.begin_candidate();
  {
    const session_scope requests(setting_);
    setting_.enter_candidate();
    the_machine().find(names_.routed_port)->settings.admin_state = PM_PORT_STATE_DOWN;
    setting_.leave_candidate();
    setting_.commit("commit confirmed 20", 20U);
  }
  begin_command(reading_);
  const answered before = read(reading_);
  setting_.roll_back();
  EXPECT_EQ(read(reading_), before);
  EXPECT_NE(read(setting_), before);
}

// Devices change by themselves.
class source_of_devices final : public switch_source {
 public:
  bool knows_all_fields() const override { return false; }
};

TEST_F(CommandViews, AreOnlyOfSimulatedSwitches) {
  set_source(std::make_unique<source_of_devices>());
  begin_command(reading_);
  shut(setting_);
  EXPECT_EQ(num_kept_machines(), 0U);
  EXPECT_EQ(read(reading_), read(setting_));
}

}  // namespace
}  // namespace host
