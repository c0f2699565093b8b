// Sessions that may only look: what each request of each service may do.
#include "service/permissions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/port_status.h"
#include "host/switch/small_machine.h"
#include "messages/fields.h"
#include "messages/hardware_messages.h"
#include "messages/port_channel_messages.h"
#include "messages/port_manager_messages.h"
#include "messages/session_messages.h"
#include "messages/spanning_tree_messages.h"
#include "messages/statistics_messages.h"
#include "messages/switch_messages.h"
#include "platform/port_config.h"
#include "platform/syserr.h"
#include "service/services.h"
#include "settings/session.h"
#include "settings/settings.h"
#include "switch/model.h"

namespace host {
namespace {

using sent_bytes = std::vector<std::byte>;

template <typename Record>
sent_bytes& append_record(sent_bytes& to, const Record& record) {
  const auto* const begin = reinterpret_cast<const std::byte*>(&record);
  to.insert(to.end(), begin, begin + sizeof record);
  return to;
}

template <typename... Records>
sent_bytes bytes_of_records(const Records&... records) {
  sent_bytes all;
  (append_record(all, records), ...);
  return all;
}

class LookingSession : public testing::Test {
 protected:
  LookingSession() { session_.set_rights({.may_change = false}); }

  // What other sessions would see of a change.
  static auto state() {
    std::map<if_index_t, std::pair<port_settings, bool>> all;
    for (const interface& it : std::as_const(the_machine()).interfaces)
      all.emplace(it.if_index, std::pair(it.settings, it.stats.is_cleared_here));
    return std::pair(all, the_machine().startup);
  }

  static reply ask(std::string_view name, mts_opc_t opcode, const sent_bytes& request) {
    for (const service& it : all_services())
      if (it.name == name) return it.serve(opcode, request);
    return {reply::kind::reject, {}};
  }

  // A valid request of each kind that changes something.
  std::map<std::pair<std::string, mts_opc_t>, sent_bytes> changing_requests() const {
    const be32 port = names_.routed_port;
    const range_request range{names_.routed_port, names_.routed_port};
    const sent_bytes of_interface = bytes_of_records(port);
    sent_bytes shutdown = bytes_of_records(setting_request{1, PM_CFG_PORT_STATE, 1}, uint8{2}, range);
    sent_bytes device;
    device.resize(sizeof(device_request));
    sent_bytes commit;
    field_writer to(commit);
    to.text("commit");
    to.flag(false);
    to.u32(0);
    const sent_bytes clear_of_range = bytes_of_records(eth_statistics_request{range, 0});
    return {
        {{"port-manager", PM_OPC_ETH_STATISTICS}, clear_of_range},
        {{"port-manager", PM_OPC_CHANNEL_STATISTICS}, clear_of_range},
        {{"port-manager", PM_OPC_CLEAR_COUNTERS}, bytes_of_records(clear_request{1}, port)},
        {{"port-manager", PM_OPC_CLEAR_MANAGEMENT}, of_interface},
        {{"port-manager", PM_OPC_SET_CONFIG}, shutdown},
        {{"port-manager", PM_OPC_SUB_INTERFACES}, {}},
        {{"port-manager", PM_OPC_LOOPBACKS}, {}},
        {{"statistics", STATS_OPC_CLEAR_PORT}, of_interface},
        {{"statistics", STATS_OPC_CLEAR_LOOPBACK}, of_interface},
        {{"statistics", STATS_OPC_CLEAR_CHANNEL}, of_interface},
        {{"hardware", HARDWARE_OPC_CLEAR_DEVICE}, device},
        {{"port-channel", PC_OPC_LEAVE}, bytes_of_records(range)},
        {{"spanning-tree", STP_OPC_EDGE}, bytes_of_records(range)},
        {{"session", SESSION_OPC_UNDO}, {}},
        {{"session", SESSION_OPC_COMMIT}, commit},
        {{"session", SESSION_OPC_CONFIRM}, bytes_of_records(be32(0))},
        {{"session", SESSION_OPC_ROLL_BACK}, bytes_of_records(be32(0))},
        {{"session", SESSION_OPC_LEAVE}, {}},
        {{"session", SESSION_OPC_SAVE_STARTUP}, {}},
        {{"switch", SWITCH_OPC_BASELINES}, {}},
        {{"switch", SWITCH_OPC_ADVANCE_CLOCK}, bytes_of_records(be32(60))},
    };
  }

  small_machine names_ = install_small_machine();
  switch_session session_;
  session_scope scope_{session_};
};

bool has_status(const reply& said, uint32 status) {
  const be32 searched = status;
  sent_bytes pattern = bytes_of_records(searched);
  return std::search(said.payload.begin(), said.payload.end(), pattern.begin(), pattern.end()) != said.payload.end();
}

// Every request of every service: a new one fails here until the table says whether it changes something.
TEST_F(LookingSession, IsRefusedEveryRequestThatChangesSomething) {
  const auto requests = changing_requests();
  const auto before = state();
  std::size_t num_changing = 0;
  for (const service& of : all_services()) {
    EXPECT_FALSE(requests_of(of.name).empty()) << of.name;
    for (const known_request& it : requests_of(of.name)) {
      const auto request = requests.find({std::string(of.name), it.opcode});
      ASSERT_EQ(changes_others(it.effect), request != requests.end())
          << of.name << " " << it.opcode << " needs a request in this test when it changes something";
      if (request == requests.end()) continue;
      ++num_changing;
      const reply said = ask(of.name, it.opcode, request->second);
      ASSERT_EQ(said.what, reply::kind::answer) << of.name << " " << it.opcode;
      const bool is_empty = of.name == "session" && (it.opcode == SESSION_OPC_UNDO || it.opcode == SESSION_OPC_COMMIT);
      EXPECT_EQ(has_status(said, kPortStatusLookOnly), !is_empty) << of.name << " " << it.opcode;
      EXPECT_EQ(state(), before) << of.name << " " << it.opcode;
    }
  }
  EXPECT_EQ(num_changing, requests.size());
}

// Whatever else it sends: requests of all sizes, with an interface in front.
TEST_F(LookingSession, ChangesNothingByOtherRequests) {
  const auto before = state();
  for (const service& of : all_services()) {
    for (const known_request& it : requests_of(of.name)) {
      if (changes_others(it.effect) || of.name == "session") continue;
      for (std::size_t size = 0; size <= 32; ++size) {
        sent_bytes request = bytes_of_records(be32(names_.routed_port), be32(names_.routed_port), be32(1));
        request.resize(size);
        ask(of.name, it.opcode, request);
      }
      EXPECT_EQ(state(), before) << of.name << " " << it.opcode;
    }
  }
}

TEST_F(LookingSession, ReadsCounters) {
  const range_request range{names_.routed_port, names_.routed_port};
  const reply said = ask("port-manager", PM_OPC_ETH_STATISTICS, bytes_of_records(eth_statistics_request{range, 1}));
  ASSERT_EQ(said.what, reply::kind::answer);
  EXPECT_FALSE(has_status(said, kPortStatusLookOnly));
}

TEST_F(LookingSession, TriesSettingsInADryRun) {
  const auto before = state();
  const sent_bytes shutdown = changing_requests().at({"port-manager", PM_OPC_SET_CONFIG});
  session_.begin_dry_run();
  EXPECT_FALSE(has_status(ask("port-manager", PM_OPC_SET_CONFIG, shutdown), kPortStatusLookOnly));
  EXPECT_NE(state(), before);
  const sent_bytes clear = changing_requests().at({"statistics", STATS_OPC_CLEAR_PORT});
  EXPECT_TRUE(has_status(ask("statistics", STATS_OPC_CLEAR_PORT, clear), kPortStatusLookOnly));
  session_.end_dry_run();
  EXPECT_EQ(state(), before);
}

TEST_F(LookingSession, DoesNotCommitItsCandidate) {
  session_.begin_candidate();
  session_.enter_candidate();
  the_machine().find(names_.routed_port)->settings.description = "lab";
  session_.leave_candidate();
  const auto before = state();
  const reply said =
      ask("session", SESSION_OPC_COMMIT, changing_requests().at({"session", mts_opc_t{SESSION_OPC_COMMIT}}));
  EXPECT_TRUE(has_status(said, kPortStatusLookOnly));
  EXPECT_TRUE(has_status(said, names_.routed_port));
  EXPECT_EQ(state(), before);
}

TEST(Requests, ThatAServiceDoesNotListAreRejected) {
  constexpr known_request kOnly[] = {{1}};
  const auto answers = [](mts_opc_t, std::span<const std::byte>) { return reply{}; };
  EXPECT_EQ(serve_permitted(kOnly, answers, 1, {}).what, reply::kind::answer);
  EXPECT_EQ(serve_permitted(kOnly, answers, 2, {}).what, reply::kind::reject);
  EXPECT_TRUE(serve_permitted(kOnly, answers, 2, {}).is_unknown);
}

TEST(Requests, OfAnOrdinarySessionChangeTheSwitch) {
  const small_machine names = install_small_machine();
  const range_request range{names.routed_port, names.routed_port};
  const sent_bytes shutdown = bytes_of_records(setting_request{1, PM_CFG_PORT_STATE, 1}, uint8{2}, range);
  const port_settings before = the_machine().find(names.routed_port)->settings;
  for (const service& it : all_services())
    if (it.name == "port-manager") EXPECT_FALSE(has_status(it.serve(PM_OPC_SET_CONFIG, shutdown), kPortStatusLookOnly));
  EXPECT_NE(the_machine().find(names.routed_port)->settings, before);
}

TEST(Requests, TheStatusOfARefusalHasAText) {
  EXPECT_STREQ(syserr2str(static_cast<syserr_t>(kPortStatusLookOnly)),
               "not permitted: this session may only look at the switch");
  EXPECT_TRUE(is_missing_right(kPortStatusLookOnly));
  EXPECT_FALSE(is_missing_right(0));
}

}  // namespace
}  // namespace host
