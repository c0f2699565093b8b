// A switch whose process ends: what was acknowledged is there when it starts again, and nothing else.
#include "store/switch_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "base/port_status.h"
#include "host/store/failing_calls.h"
#include "host/store/temporary_folder.h"
#include "host/switch/stopped_clock.h"
#include "messages/fields.h"
#include "messages/port_channel_messages.h"
#include "messages/port_manager_messages.h"
#include "messages/session_messages.h"
#include "messages/spanning_tree_messages.h"
#include "messages/statistics_messages.h"
#include "platform/port_config.h"
#include "platform/syserr.h"
#include "service/services.h"
#include "settings/session.h"
#include "settings/wire.h"
#include "source/chassis/chassis_source.h"
#include "source/chassis/switch_file.h"
#include "store/record.h"
#include "store/stored_source.h"
#include "switch/if_index_layout.h"
#include "switch/interface_name.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using request_bytes = std::vector<std::byte>;

constexpr std::time_t kStart = 1'800'000'000;

template <typename... Records>
request_bytes request_of(const Records&... records) {
  request_bytes all;
  const auto append = [&all](const auto& record) {
    const auto bytes = std::as_bytes(std::span(&record, 1));
    all.insert(all.end(), bytes.begin(), bytes.end());
  };
  (append(records), ...);
  return all;
}

request_bytes setting_of(const setting& of, const setting_value& value, if_index_t low, if_index_t high,
                         vlan_action action = vlan_action::set) {
  const request_bytes octets = octets_of(of, value, action);
  request_bytes all = request_of(setting_request{1, of.type, static_cast<uint16>(octets.size())});
  all.insert(all.end(), octets.begin(), octets.end());
  const request_bytes range = request_of(range_request{low, high});
  all.insert(all.end(), range.begin(), range.end());
  return all;
}

request_bytes creation_of(if_index_t low, if_index_t high, bool is_deletion = false) {
  return request_of(
      pm_cli_if_index_verify_req_payload_t{.is_create = !is_deletion, .is_delete = is_deletion, .num_range = 1},
      pm_port_range_t{low, high});
}

reply ask(std::string_view name, mts_opc_t opcode, const request_bytes& request) {
  for (const service& it : all_services())
    if (it.name == name) return it.serve(opcode, request);
  return {reply::kind::reject, {}};
}

// The statuses that an answer to a setting has for its ports.
std::vector<uint32> statuses_in(const reply& said) {
  std::vector<uint32> all;
  for (std::size_t at = sizeof(reply_head); at < said.payload.size(); at += sizeof(pm_port_cfg_status_t)) {
    pm_port_cfg_status_t status;
    std::memcpy(&status, said.payload.data() + at, sizeof status);
    all.push_back(status.status);
  }
  return all;
}

uint32 error_in(const reply& said) {
  reply_head head;
  std::memcpy(&head, said.payload.data(), sizeof head);
  return static_cast<uint32>(int32{head.status});
}

// The request for the commit of the session itself.
request_bytes own_commit() {
  return fields_of([](field_writer& to) { to.u32(0); });
}

// What the file describes; read once for each file.
const machine& as_in_file(const std::string& name) {
  static std::map<std::string, machine> known;
  const auto found = known.find(name);
  return found != known.end() ? found->second
                              : known.emplace(name, load_switch_file(PMCLI_SWITCHES "/" + name, kStart)).first->second;
}

// A machine with the counters of this moment.
machine counted(machine of) {
  for (interface& it : of.interfaces) follow_traffic(it, static_cast<uint32>(clock_now()));
  return of;
}

class StoredSwitch : public testing::Test {
 protected:
  StoredSwitch() { start(); }
  ~StoredSwitch() override {
    set_source();
    the_machine() = {};
    forget_changes();
    the_failing_calls().reset();
  }

  const std::string& path() const { return path_; }

  void start(bool begins_anew = false) {
    set_source();  // the last process ends here
    said_.clear();
    the_machine() = as_in_file(file_);
    auto store = std::make_unique<switch_store>(
        path_, switch_identity{fingerprint_of(the_machine()), file_, static_cast<uint32>(clock_now())}, begins_anew,
        [this](std::string_view sentence) { said_.emplace_back(sentence); }, file_calls_that_fail());
    started_sec_ = store->started_sec();
    switch_store& kept = *store;
    kept.restore(the_machine());
    set_source(std::make_unique<stored_source<chassis_source>>(std::move(store)));
    kept.begin(the_machine());
    forget_changes();
  }

  // The sentence with which it does not start; empty: it does.
  std::string refusal_to_start() {
    try {
      start();
      return {};
    } catch (const store_error& error) {
      return error.what();
    }
  }

  void use(const std::string& file) {
    set_source();
    fs::remove(path_);
    file_ = file;
    start();
  }

  // What a process would find that starts now.
  machine after_restart() {
    const machine now = the_machine();
    start();
    return std::exchange(the_machine(), now);
  }

  void expect_same_after_restart() {
    const machine before = counted(the_machine());
    start();
    const machine after = counted(the_machine());
    ASSERT_EQ(after.interfaces.size(), before.interfaces.size());
    for (std::size_t i = 0; i < after.interfaces.size(); ++i) {
      const interface &one = before.interfaces[i], &other = after.interfaces[i];
      EXPECT_EQ(one.settings, other.settings) << name_of(one.if_index);
      EXPECT_EQ(one.stats, other.stats) << name_of(one.if_index);
      EXPECT_TRUE(one == other) << name_of(one.if_index);
    }
    EXPECT_TRUE(before == after);
    EXPECT_THAT(said_, IsEmpty());
  }

  static std::string name_of(if_index_t if_index) {
    char name[64];
    return sprintf_if_index(name, if_index);
  }

  static interface& port(if_index_t if_index) { return *the_machine().find(if_index); }

  std::vector<uint32> set(uint8 type, const setting_value& value, if_index_t low, if_index_t high = 0) {
    const request_bytes request = setting_of(*find_setting(type), value, low, high != 0 ? high : low);
    return statuses_in(ask("port-manager", PM_OPC_SET_CONFIG, request));
  }

  uint32 describe(const std::string& text, if_index_t if_index) {
    const std::vector<uint32> statuses = set(PM_CFG_NAME, text, if_index);
    EXPECT_EQ(statuses.size(), 1U);
    return statuses.empty() ? 0xFFFFFFFF : statuses.front();
  }

  std::string bytes() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void write(const std::string& content) const { std::ofstream(path_, std::ios::binary) << content; }
  std::size_t num_records() const {
    const std::string all = bytes();
    return read_records(std::as_bytes(std::span(all))).payloads.size();
  }

  const stopped_clock clock_{kStart};
  temporary_folder folder_;
  std::string path_ = folder_.file("lab.journal");
  std::string file_ = "campus.yaml";
  std::vector<std::string> said_;
  uint32 started_sec_ = 0;
  const if_index_t first_ = ethernet_index(IF_TYPE_ETHERNET, 0, 0);
  const if_index_t second_ = ethernet_index(IF_TYPE_ETHERNET, 0, 1);
  const if_index_t loopback_ = numbered_index(IF_TYPE_LOOPBACK, 77);
};

TEST_F(StoredSwitch, IsAsItsFileAtFirst) {
  EXPECT_TRUE(the_machine() == as_in_file(file_));
  EXPECT_THAT(said_, IsEmpty());
  EXPECT_EQ(num_records(), 1U);
  expect_same_after_restart();
}

TEST_F(StoredSwitch, KeepsASetting) {
  EXPECT_EQ(describe("to the lab", first_), 0U);
  EXPECT_EQ(num_records(), 2U);
  expect_same_after_restart();
  EXPECT_EQ(port(first_).settings.description, "to the lab");
}

// Values of a setting that some port takes: each of its words, the bounds of numbers, texts and lists.
std::vector<setting_value> values_of(const setting& of, const interface& port) {
  std::vector<setting_value> values = {usual_value(of, port)};
  if (of.kind == setting_kind::text) {
    values = {std::string("lab"), std::string(of.highest, '~'), std::string("\x01 'quoted' \xC3\xA4"), std::string()};
    return values;
  }
  if (of.kind == setting_kind::vlans) {
    values.insert(values.end(),
                  {std::vector<uint16>{}, std::vector<uint16>{1}, std::vector<uint16>{2, 3, 4094}, every_vlan()});
    return values;
  }
  for (const setting_form& form : of.forms)
    if (form.kind == form_kind::word || form.kind == form_kind::off)
      values.emplace_back(form.value);
    else if (form.kind == form_kind::argument)
      values.insert(values.end(), {form.value | of.lowest, form.value | of.highest, form.value | (of.lowest + 4)});
  if (of.forms.empty()) values.insert(values.end(), {of.lowest, of.highest});
  if (of.type == HOST_CFG_CHANNEL) values.insert(values.end(), {uint32{1}, uint32{0}, uint32{10}, uint32{0}});
  return values;
}

// A port of each kind.
std::vector<if_index_t> ports_of_each_kind(const machine& of) {
  std::map<std::pair<if_index_type_t, bool>, int> seen;
  std::vector<if_index_t> all;
  for (const interface& it : of.interfaces)
    if (seen[{decode_index(it.if_index).type, if_index_is_sub_intf(it.if_index) != 0}]++ == 0)
      all.push_back(it.if_index);
  return all;
}

TEST_F(StoredSwitch, KeepsEveryValueOfEverySetting) {
  constexpr std::size_t kMostRecords = 8;  // a longer journal takes longer to read
  std::set<uint8> set_types;
  for (const std::string name : {"campus.yaml", "storage.yaml"}) {
    use(name);
    for (const if_index_t it : ports_of_each_kind(the_machine())) {
      SCOPED_TRACE(name + " " + name_of(it));
      machine replayed = as_in_file(file_);
      for (const setting& of : all_settings()) {
        for (const setting_value& value : values_of(of, port(it))) {
          const port_settings before = port(it).settings;
          clock_advance(7);
          const std::vector<uint32> statuses = set(of.type, value, it);
          ASSERT_EQ(statuses.size(), 1U);
          if (port(it).settings != before) {
            EXPECT_EQ(statuses.front(), 0U);
            set_types.insert(of.type);
          }
          const std::string all = bytes();
          stored_state state;
          const record_list records = read_records(std::as_bytes(std::span(all)));
          ASSERT_EQ(read_state(records.payloads, state), records.payloads.size());
          ASSERT_TRUE(put_state(replayed, state));
          ASSERT_EQ(replayed.find(it)->settings, port(it).settings) << of.command;
          ASSERT_TRUE(*replayed.find(it) == port(it)) << of.command;
        }
        if (num_records() > kMostRecords) start();
      }
      expect_same_after_restart();
    }
  }
  for (const setting& of : all_settings()) EXPECT_THAT(set_types, Contains(of.type)) << of.command;
}

TEST_F(StoredSwitch, KeepsWhenALinkChanged) {
  for (const uint32 state : {2U, 1U, 2U}) {
    clock_advance(60);
    EXPECT_THAT(set(PM_CFG_PORT_STATE, state, first_), ElementsAre(0U));
  }
  clock_advance(60);
  EXPECT_EQ(port(first_).link_changes.size(), 3U);
  expect_same_after_restart();
  EXPECT_EQ(port(first_).link_changes.size(), 3U);
  EXPECT_THAT(set(PM_CFG_PORT_STATE, uint32{1}, first_), ElementsAre(0U));
  clock_advance(60);
  expect_same_after_restart();
  EXPECT_EQ(port(first_).link_changes.size(), 4U);
}

TEST_F(StoredSwitch, StoresARangeTogether) {
  const auto low = ethernet_index(IF_TYPE_ETHERNET, 0, 0), high = ethernet_index(IF_TYPE_ETHERNET, 0, 5);
  EXPECT_EQ(set(PM_CFG_NAME, std::string("all"), low, high).size(), 6U);
  EXPECT_EQ(num_records(), 2U);
  expect_same_after_restart();
}

TEST_F(StoredSwitch, StoresNothingWithoutAChange) {
  EXPECT_EQ(describe("once", first_), 0U);
  const std::string before = bytes();
  EXPECT_EQ(describe("once", first_), 0U);
  EXPECT_THAT(set(PM_CFG_MTU, uint32{65535}, first_), ElementsAre(testing::Ne(0U)));
  EXPECT_THAT(set(PM_CFG_DUPLEX, uint32{9}, first_), ElementsAre(testing::Ne(0U)));
  ask("port-manager", PM_OPC_PORT_CONFIG, request_of(range_request{first_, second_}));
  EXPECT_EQ(bytes(), before);
}

TEST_F(StoredSwitch, KeepsEdgePortsAndMembers) {
  ask("spanning-tree", STP_OPC_EDGE, request_of(range_request{first_, first_}));
  const if_index_t channel = channel_index(IF_TYPE_ETH_PORT_CHANNEL, 10);
  const std::vector<if_index_t> members = the_machine().members_of(channel);
  ASSERT_FALSE(members.empty());
  ask("port-channel", PC_OPC_LEAVE, request_of(range_request{members.front(), members.front()}));
  EXPECT_TRUE(port(first_).settings.is_edge);
  EXPECT_EQ(port(members.front()).settings.channel, 0U);
  expect_same_after_restart();
  EXPECT_THAT(set(HOST_CFG_CHANNEL, uint32{10}, members.front()), ElementsAre(0U));
  EXPECT_THAT(set(PM_CFG_MTU, uint32{4000}, channel), ElementsAre(0U));
  EXPECT_EQ(port(members.front()).settings.mtu_bytes, 4000) << "the members follow";
  expect_same_after_restart();
}

// ---- Interfaces

class StoredInterfaces : public StoredSwitch {
 protected:
  if_index_t sub_interface_of_file() const {
    for (const interface& it : as_in_file(file_).interfaces)
      if (if_index_is_sub_intf(it.if_index) != 0) return it.if_index;
    return 0;
  }
  uint32 create(mts_opc_t opcode, if_index_t low, if_index_t high = 0) {
    return error_in(ask("port-manager", opcode, creation_of(low, high != 0 ? high : low)));
  }
  uint32 remove(mts_opc_t opcode, if_index_t it) {
    return error_in(ask("port-manager", opcode, creation_of(it, it, true)));
  }
};

TEST_F(StoredInterfaces, AreCreatedAgain) {
  const if_index_t sub = parent_of(sub_interface_of_file()) | 700;  // another one of the same port
  ASSERT_NE(sub, 0U);
  EXPECT_EQ(create(PM_OPC_LOOPBACKS, loopback_, loopback_ + 3), 0U);
  EXPECT_EQ(create(PM_OPC_SUB_INTERFACES, sub), 0U);
  EXPECT_EQ(num_records(), 3U);
  expect_same_after_restart();
  EXPECT_EQ(describe("created", loopback_ + 1), 0U);
  EXPECT_EQ(describe("sub", sub), 0U);
  expect_same_after_restart();
  EXPECT_TRUE(port(sub).is_created);
}

TEST_F(StoredInterfaces, StayDeleted) {
  EXPECT_EQ(create(PM_OPC_LOOPBACKS, loopback_, loopback_ + 3), 0U);
  EXPECT_EQ(remove(PM_OPC_LOOPBACKS, loopback_), 0U);
  const if_index_t sub = sub_interface_of_file();
  ASSERT_NE(sub, 0U);
  EXPECT_EQ(remove(PM_OPC_SUB_INTERFACES, sub), 0U);
  EXPECT_THAT(the_machine().deleted, ElementsAre(sub));
  expect_same_after_restart();
  EXPECT_EQ(the_machine().find(sub), nullptr);
  EXPECT_EQ(create(PM_OPC_SUB_INTERFACES, sub), 0U);
  expect_same_after_restart();
  EXPECT_TRUE(port(sub).is_created);
}

TEST_F(StoredInterfaces, ThatAreRestoredAreAsTheyWere) {
  const if_index_t sub = sub_interface_of_file();
  EXPECT_EQ(describe("before", sub), 0U);
  begin_changes("no interface");
  EXPECT_EQ(remove(PM_OPC_SUB_INTERFACES, sub), 0U);
  expect_same_after_restart();
  EXPECT_EQ(create(PM_OPC_LOOPBACKS, loopback_), 0U);
  begin_changes("no interface loopback");
  EXPECT_EQ(remove(PM_OPC_LOOPBACKS, loopback_), 0U);
  ask("session", SESSION_OPC_UNDO, {});
  EXPECT_NE(the_machine().find(loopback_), nullptr);
  expect_same_after_restart();
}

TEST_F(StoredInterfaces, AreTrackedNoMoreWhenTheyWereDeleted) {
  EXPECT_EQ(create(PM_OPC_LOOPBACKS, loopback_), 0U);
  const if_index_t sub = sub_interface_of_file();
  machine changed = as_in_file(file_);
  changed.find(second_)->tracked = {sub};
  the_machine().find(second_)->tracked = {sub};
  EXPECT_EQ(remove(PM_OPC_SUB_INTERFACES, sub), 0U);
  EXPECT_THAT(port(second_).tracked, IsEmpty());
  const std::string all = bytes();
  stored_state state;
  read_state(read_records(std::as_bytes(std::span(all))).payloads, state);
  ASSERT_TRUE(put_state(changed, state));
  EXPECT_TRUE(changed == the_machine());
}

TEST_F(StoredInterfaces, OfTheStartupConfigurationAreKept) {
  EXPECT_EQ(create(PM_OPC_LOOPBACKS, loopback_), 0U);
  EXPECT_EQ(error_in(ask("session", SESSION_OPC_SAVE_STARTUP, {})), 0U);
  EXPECT_THAT(the_machine().startup, Contains(loopback_));
  EXPECT_EQ(num_records(), 3U);
  expect_same_after_restart();
  expect_same_after_restart();  // of the shortened journal
  EXPECT_THAT(the_machine().startup, Contains(loopback_));
}

// ---- Counters

TEST_F(StoredSwitch, KeepsClearedCounters) {
  clock_advance(100);
  EXPECT_EQ(error_in(ask("statistics", STATS_OPC_CLEAR_PORT, request_of(be32(first_)))), 0U);
  ask("port-manager", PM_OPC_CLEAR_COUNTERS, request_of(clear_request{1}, be32(second_)));
  EXPECT_EQ(num_records(), 3U);
  EXPECT_EQ(port(first_).stats.last_clear_sec, kStart + 100);
  clock_advance(100);
  expect_same_after_restart();
  EXPECT_EQ(port(first_).stats.last_clear_sec, kStart + 100);
  EXPECT_TRUE(port(second_).stats.is_cleared_here);
  EXPECT_EQ(describe("later", first_), 0U);
  expect_same_after_restart();
}

// Its baseline is of the process: after a restart it would be wrong that the port was cleared.
TEST_F(StoredSwitch, ForgetsTheClearOfADeviceOfTheKernel) {
  const if_index_t management = ethernet_index(IF_TYPE_MGMT, 0, 0);
  the_machine().mgmt_device = "lo";
  EXPECT_EQ(error_in(ask("port-manager", PM_OPC_CLEAR_MANAGEMENT, request_of(be32(management)))), 0U);
  EXPECT_TRUE(port(management).stats.is_cleared_here);
  EXPECT_EQ(num_records(), 1U);
  EXPECT_EQ(describe("management", management), 0U);
  start();
  EXPECT_EQ(port(management).settings.description, "management");
  EXPECT_FALSE(port(management).stats.is_cleared_here);
}

TEST_F(StoredSwitch, KnowsWhenItStartedForTheFirstTime) {
  EXPECT_EQ(started_sec_, kStart);
  clock_advance(500);
  start();
  EXPECT_EQ(started_sec_, kStart);
  start(true);
  EXPECT_EQ(started_sec_, kStart + 500);
}

// ---- Trials

TEST_F(StoredSwitch, StoresNothingOfADryRun) {
  const std::string before = bytes();
  switch_session session;
  {
    const session_scope scope(session);
    session.begin_dry_run();
    EXPECT_EQ(describe("tried", first_), 0U);
    EXPECT_EQ(error_in(ask("port-manager", PM_OPC_LOOPBACKS, creation_of(loopback_, loopback_))), 0U);
    ask("statistics", STATS_OPC_CLEAR_PORT, request_of(be32(first_)));
    session.end_dry_run();
  }
  EXPECT_EQ(bytes(), before);
  EXPECT_EQ(describe("made", second_), 0U);
  expect_same_after_restart();
  EXPECT_NE(port(first_).settings.description, "tried");
}

// ---- Sessions

class StoredCommits : public StoredSwitch {
 protected:
  // Describes both ports in the candidate of the session, and commits them.
  changes_made commit(switch_session& session, const std::string& text, std::optional<uint32> seconds = {}) {
    const session_scope scope(session);
    session.begin_candidate();
    session.enter_candidate();
    EXPECT_EQ(describe(text, first_), 0U);
    EXPECT_EQ(describe(text, second_), 0U);
    EXPECT_EQ(error_in(ask("port-manager", PM_OPC_LOOPBACKS, creation_of(loopback_, loopback_))), 0U);
    session.leave_candidate();
    return session.commit("commit", seconds).made;
  }

  void expect_descriptions(const std::string& first, const std::string& second) const {
    EXPECT_EQ(port(first_).settings.description, first);
    EXPECT_EQ(port(second_).settings.description, second);
  }

  // The process ends without a word: sessions of its own do not roll back in the next one.
  void restart_after_kill() {
    const machine now = the_machine();
    const std::string stored = bytes();
    set_source();
    sessions_.clear();
    write(stored);
    start();
  }

  switch_session& begin_session() { return *sessions_.emplace_back(std::make_unique<switch_session>()); }

  std::vector<std::unique_ptr<switch_session>> sessions_;
  const std::string first_text_ = as_in_file("campus.yaml").find(first_)->settings.description;
  const std::string second_text_ = as_in_file("campus.yaml").find(second_)->settings.description;
};

TEST_F(StoredCommits, AreOneRecord) {
  const std::string before = bytes();
  EXPECT_EQ(commit(begin_session(), "together").applied.size(), 3U);
  EXPECT_EQ(num_records(), 2U);
  const std::string whole = bytes();
  for (std::size_t size = before.size(); size < whole.size(); ++size) {
    set_source();
    write(whole.substr(0, size));
    start();
    ASSERT_TRUE(the_machine() == as_in_file(file_)) << size;
  }
  set_source();
  write(whole);
  start();
  expect_descriptions("together", "together");
}

TEST_F(StoredCommits, ACandidateStoresNothingBefore) {
  const std::string before = bytes();
  switch_session& session = begin_session();
  {
    const session_scope scope(session);
    session.begin_candidate();
    session.enter_candidate();
    EXPECT_EQ(describe("candidate", first_), 0U);
    session.leave_candidate();
  }
  EXPECT_EQ(bytes(), before);
}

TEST_F(StoredCommits, ThatCannotBeStoredStayInTheCandidate) {
  switch_session& session = begin_session();
  const machine before = the_machine();
  the_failing_calls().fail(1, ENOSPC, true);
  // The candidate's own lines store nothing, so only the commit fails.
  const changes_made made = commit(session, "full");
  the_failing_calls().reset();
  EXPECT_THAT(made.applied, IsEmpty());
  ASSERT_EQ(made.refused.size(), 3U);
  for (const auto& [if_index, status] : made.refused)
    EXPECT_EQ(text_of_port_status(status), "cannot store the change in '" + path_ + "': No space left on device");
  EXPECT_TRUE(the_machine() == before);
  EXPECT_EQ(num_records(), 1U);
  const session_scope scope(session);
  EXPECT_EQ(session.candidate_changes().ports().size(), 3U);
  EXPECT_EQ(session.commit("commit", std::nullopt).made.applied.size(), 3U);
  expect_descriptions("full", "full");
}

TEST_F(StoredCommits, AnUndoThatCannotBeStoredCanBeRepeated) {
  begin_changes("description");
  EXPECT_EQ(describe("changed", first_), 0U);
  the_failing_calls().fail(1, ENOSPC);
  EXPECT_EQ(take_change_back(the_machine()).refused.size(), 1U);
  EXPECT_EQ(port(first_).settings.description, "changed");
  EXPECT_EQ(take_change_back(the_machine()).applied.size(), 1U);
  EXPECT_EQ(port(first_).settings.description, first_text_);
  start();
  EXPECT_EQ(port(first_).settings.description, first_text_);
}

TEST_F(StoredCommits, AreRolledBackWhenTheProcessEndsBeforeTheirConfirmation) {
  EXPECT_EQ(describe("kept", first_), 0U);
  EXPECT_EQ(commit(begin_session(), "unconfirmed", 60).applied.size(), 3U);
  expect_descriptions("unconfirmed", "unconfirmed");
  restart_after_kill();
  expect_descriptions("kept", second_text_);
  EXPECT_EQ(the_machine().find(loopback_), nullptr);
  EXPECT_THAT(said_, ElementsAre("a commit of 3 interfaces that was not confirmed is rolled back; 0 of them refused."));
  expect_same_after_restart();
}

TEST_F(StoredCommits, OnlyWhatTheyChangedIsRolledBack) {
  EXPECT_EQ(commit(begin_session(), "unconfirmed", 60).applied.size(), 3U);
  EXPECT_THAT(set(PM_CFG_MTU, uint32{4000}, first_), ElementsAre(0U));
  restart_after_kill();
  expect_descriptions(first_text_, second_text_);
  EXPECT_EQ(port(first_).settings.mtu_bytes, 4000);
}

TEST_F(StoredCommits, StayWhenTheyWereConfirmed) {
  switch_session& session = begin_session();
  EXPECT_EQ(commit(session, "confirmed", 60).applied.size(), 3U);
  {
    const session_scope scope(session);
    EXPECT_EQ(error_in(ask("session", SESSION_OPC_CONFIRM, own_commit())), 0U);
  }
  restart_after_kill();
  expect_descriptions("confirmed", "confirmed");
  EXPECT_THAT(said_, IsEmpty());
}

TEST_F(StoredCommits, AConfirmationThatCannotBeStoredIsRefused) {
  switch_session& session = begin_session();
  EXPECT_EQ(commit(session, "waits", 60).applied.size(), 3U);
  const session_scope scope(session);
  the_failing_calls().fail(1, ENOSPC);
  EXPECT_TRUE(is_status_of_text(error_in(ask("session", SESSION_OPC_CONFIRM, own_commit()))));
  EXPECT_TRUE(session.seconds_to_confirm()) << "it waits on";
  EXPECT_EQ(error_in(ask("session", SESSION_OPC_CONFIRM, own_commit())), 0U);
  EXPECT_FALSE(session.seconds_to_confirm());
}

TEST_F(StoredCommits, ARollbackIsStored) {
  switch_session& session = begin_session();
  EXPECT_EQ(commit(session, "rolled back", 60).applied.size(), 3U);
  {
    const session_scope scope(session);
    EXPECT_TRUE(session.roll_back());
  }
  EXPECT_EQ(describe("later", first_), 0U);
  restart_after_kill();
  expect_descriptions("later", second_text_);
  EXPECT_THAT(said_, IsEmpty());
}

// The switch is rolled back although its disk is full; the next change stores that, too.
TEST_F(StoredCommits, ARollbackThatCannotBeStoredIsMadeAllTheSame) {
  switch_session& session = begin_session();
  EXPECT_EQ(commit(session, "rolled back", 60).applied.size(), 3U);
  {
    const session_scope scope(session);
    the_failing_calls().fail(1, ENOSPC, true);
    EXPECT_TRUE(session.roll_back());
  }
  expect_descriptions(first_text_, second_text_);
  EXPECT_NE(describe("refused", first_), 0U);
  expect_descriptions(first_text_, second_text_);
  the_failing_calls().reset();
  const std::string before = bytes();
  EXPECT_EQ(describe("later", first_), 0U);
  const std::string after = bytes();
  for (const std::string* const stored : {&before, &after}) {
    set_source();
    write(*stored);
    start();
    expect_descriptions(stored == &after ? "later" : first_text_, second_text_);
    EXPECT_EQ(the_machine().find(loopback_), nullptr);
    EXPECT_THAT(said_, Contains(HasSubstr("not confirmed is rolled back")).Times(stored == &before ? 1 : 0));
  }
}

// The rollback at the start cannot be stored: it is made again at the next one.
TEST_F(StoredCommits, AreRolledBackAtEachStartUntilThatIsStored) {
  EXPECT_EQ(commit(begin_session(), "unconfirmed", 60).applied.size(), 3U);
  the_failing_calls().fail(1, ENOSPC, true);
  restart_after_kill();
  expect_descriptions(first_text_, second_text_);
  the_failing_calls().reset();
  restart_after_kill();
  expect_descriptions(first_text_, second_text_);
  EXPECT_THAT(said_, Contains(HasSubstr("not confirmed is rolled back")).Times(1));
  start();
  EXPECT_THAT(said_, IsEmpty());
}

// ---- Damage

class DamagedJournal : public StoredSwitch {
 protected:
  // Two changes; returns the sizes of the journal before, between and after them.
  std::vector<std::size_t> make_two_changes() {
    std::vector<std::size_t> sizes = {bytes().size()};
    EXPECT_EQ(describe("one", first_), 0U);
    sizes.push_back(bytes().size());
    EXPECT_EQ(describe("two", second_), 0U);
    sizes.push_back(bytes().size());
    return sizes;
  }
};

TEST_F(DamagedJournal, ATornLastRecordIsDropped) {
  const std::vector<std::size_t> sizes = make_two_changes();
  const std::string whole = bytes();
  const std::string description = as_in_file(file_).find(second_)->settings.description;
  for (std::size_t size = sizes[1]; size < sizes[2]; ++size) {
    set_source();
    write(whole.substr(0, size));
    start();
    ASSERT_EQ(port(first_).settings.description, "one") << size;
    ASSERT_EQ(port(second_).settings.description, description) << size;
    if (size == sizes[1]) continue;
    ASSERT_EQ(said_.size(), 1U) << size;
    EXPECT_THAT(said_.front(), HasSubstr("the last change in '" + path_ + "' was not stored completely, at byte " +
                                         std::to_string(sizes[1]) + ": "));
    ASSERT_EQ(describe("three", second_), 0U);
    ASSERT_EQ(refusal_to_start(), "");
    ASSERT_EQ(port(second_).settings.description, "three");
    ASSERT_THAT(said_, IsEmpty());
  }
}

TEST_F(DamagedJournal, ADamagedByteOfTheLastRecordDropsIt) {
  const std::vector<std::size_t> sizes = make_two_changes();
  const std::string whole = bytes();
  for (std::size_t byte = sizes[1]; byte < sizes[2]; ++byte) {
    set_source();
    std::string damaged = whole;
    damaged[byte] = static_cast<char>(damaged[byte] ^ 0x20);
    write(damaged);
    ASSERT_EQ(refusal_to_start(), "") << byte;
    ASSERT_EQ(port(first_).settings.description, "one") << byte;
    ASSERT_NE(port(second_).settings.description, "two") << byte;
    ASSERT_EQ(said_.size(), 1U) << byte;
  }
}

TEST_F(DamagedJournal, ADamagedByteBeforeRefusesTheStart) {
  const std::vector<std::size_t> sizes = make_two_changes();
  const std::string whole = bytes();
  for (std::size_t byte = 0; byte < sizes[1]; ++byte) {
    set_source();
    std::string damaged = whole;
    damaged[byte] = static_cast<char>(damaged[byte] ^ 0x20);
    write(damaged);
    const std::string refusal = refusal_to_start();
    const std::size_t record = byte < sizes[0] ? 0 : sizes[0];
    ASSERT_THAT(refusal, HasSubstr("the state in '" + path_ + "' is damaged at byte " + std::to_string(record) + ": "));
    ASSERT_THAT(refusal, HasSubstr("--new-state, which moves the file aside and begins anew."));
    ASSERT_EQ(bytes(), damaged) << "it is as it was";
  }
  start(true);
  EXPECT_THAT(said_, ElementsAre("the old state is in '" + path_ + ".1'."));
  EXPECT_TRUE(the_machine() == as_in_file(file_));
}

TEST_F(DamagedJournal, AFileThatIsNoJournalIsRefused) {
  for (const std::string content : {"", "interface ethernet 1/1\n", "pmsR"}) {
    set_source();
    write(content);
    EXPECT_THAT(refusal_to_start(), HasSubstr("is damaged at byte 0: "));
    EXPECT_EQ(bytes(), content);
  }
}

TEST_F(DamagedJournal, ARecordOfAnotherVersionIsRefused) {
  set_source();
  const std::size_t at = bytes().size();
  std::vector<std::byte> record;
  append_record(record, 1, std::as_bytes(std::span("something else")));
  write(bytes() + std::string(reinterpret_cast<const char*>(record.data()), record.size()));
  EXPECT_THAT(refusal_to_start(), HasSubstr("is damaged at byte " + std::to_string(at) +
                                            ": this version of pmshd does not know the record."));
}

TEST_F(StoredSwitch, IsNotAnotherOne) {
  EXPECT_EQ(describe("one", first_), 0U);
  set_source();
  file_ = "storage.yaml";
  EXPECT_THAT(refusal_to_start(), HasSubstr("the state in '" + path_ +
                                            "' is of a switch with other modules or interfaces, from 'campus.yaml'."));
  file_ = "campus.yaml";
  EXPECT_EQ(refusal_to_start(), "");
  EXPECT_EQ(port(first_).settings.description, "one");
}

TEST(Fingerprint, IsOfTheHardware) {
  const machine& file = as_in_file("campus.yaml");
  machine other = file;
  other.interfaces.front().settings.description = "edited";
  other.interfaces.front().traffic = nullptr;
  EXPECT_EQ(fingerprint_of(other), fingerprint_of(file));
  other.interfaces.pop_back();
  EXPECT_NE(fingerprint_of(other), fingerprint_of(file));
  other = file;
  other.cards.front().model += "x";
  EXPECT_NE(fingerprint_of(other), fingerprint_of(file));
  other = file;
  other.interfaces.front().capabilities.mtu.highest = 1600;
  EXPECT_NE(fingerprint_of(other), fingerprint_of(file));
}

// ---- Compaction

TEST_F(StoredSwitch, IsWrittenAgainWithoutWhatIsOutdated) {
  for (int i = 0; i < 20; ++i) EXPECT_EQ(describe("number " + std::to_string(i), first_), 0U);
  EXPECT_EQ(num_records(), 21U);
  expect_same_after_restart();
  EXPECT_EQ(num_records(), 2U);
  const std::string compact = bytes();
  start();
  EXPECT_EQ(bytes(), compact);
}

TEST_F(StoredSwitch, KeepsAJournalThatCannotBeWrittenAgain) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(describe("number " + std::to_string(i), first_), 0U);
  const std::string before = bytes();
  fs::create_directory(path_ + ".new");
  start();
  EXPECT_EQ(said_.size(), 1U);
  EXPECT_EQ(bytes(), before);
  EXPECT_EQ(describe("later", second_), 0U);
  fs::remove(path_ + ".new");
  expect_same_after_restart();
  EXPECT_EQ(port(first_).settings.description, "number 2");
}

// Of a journal of 4 MiB most is outdated.
TEST_F(StoredSwitch, IsWrittenAgainWhenItIsLarge) {
  constexpr std::size_t kLargeBytes = 4 * 1024 * 1024;
  const setting& vlans = *find_setting(HOST_CFG_ALLOWED_VLANS);
  const if_index_t last = ethernet_index(IF_TYPE_ETHERNET, 0, 47);
  std::size_t largest = 0, size = bytes().size();
  for (uint16 number = 1; size >= largest; ++number) {
    largest = size;
    ASSERT_LT(number, 4000);
    ask("port-manager", PM_OPC_SET_CONFIG, setting_of(vlans, std::vector<uint16>{number}, first_, last));
    size = fs::file_size(path_);
  }
  EXPECT_GT(largest, kLargeBytes / 2);
  EXPECT_LT(largest, kLargeBytes);
  EXPECT_EQ(num_records(), 2U);
  EXPECT_EQ(describe("later", first_), 0U);
  EXPECT_EQ(num_records(), 3U);
  expect_same_after_restart();
}

// ---- Failing disks

class FailingDisk : public StoredSwitch {
 protected:
  std::string refusal() const { return "cannot store the change in '" + path_ + "': No space left on device"; }

  // Runs a change on a full disk. Nothing changes; afterwards it works.
  template <typename Change>
  void expect_refused(Change change) {
    const machine before = counted(the_machine());
    const std::string stored = bytes();
    the_failing_calls().fail(1, ENOSPC, true);
    const uint32 status = change();
    the_failing_calls().reset();
    ASSERT_TRUE(is_status_of_text(status)) << status;
    EXPECT_EQ(text_of_port_status(status), refusal());
    EXPECT_TRUE(counted(the_machine()) == before);
    EXPECT_EQ(change(), 0U);
    EXPECT_FALSE(counted(the_machine()) == before);
    expect_after_failure();
  }

  void expect_after_failure() {
    EXPECT_THAT(said_,
                ElementsAre("cannot store changes in '" + path_ + "': No space left on device. They are refused.",
                            "changes are stored in '" + path_ + "' again."));
    expect_same_after_restart();
  }
};

TEST_F(FailingDisk, RefusesASetting) {
  expect_refused([this] { return describe("full", first_); });
}

TEST_F(FailingDisk, RefusesAShutdown) {
  expect_refused([this] { return set(PM_CFG_PORT_STATE, uint32{2}, first_).front(); });
}

TEST_F(FailingDisk, RefusesACreation) {
  expect_refused(
      [this] { return error_in(ask("port-manager", PM_OPC_LOOPBACKS, creation_of(loopback_, loopback_ + 2))); });
}

TEST_F(FailingDisk, RefusesADeletion) {
  if_index_t sub = 0;
  for (const interface& it : the_machine().interfaces)
    if (if_index_is_sub_intf(it.if_index) != 0) sub = it.if_index;
  expect_refused([=] { return error_in(ask("port-manager", PM_OPC_SUB_INTERFACES, creation_of(sub, sub, true))); });
}

TEST_F(FailingDisk, RefusesTheStartupConfiguration) {
  EXPECT_EQ(error_in(ask("port-manager", PM_OPC_LOOPBACKS, creation_of(loopback_, loopback_))), 0U);
  expect_refused([] { return error_in(ask("session", SESSION_OPC_SAVE_STARTUP, {})); });
}

TEST_F(FailingDisk, RefusesAClear) {
  clock_advance(10);
  expect_refused([this] { return error_in(ask("statistics", STATS_OPC_CLEAR_PORT, request_of(be32(first_)))); });
}

TEST_F(FailingDisk, RefusesARangeAsAWhole) {
  the_failing_calls().fail(1, ENOSPC);
  const std::vector<uint32> statuses = set(PM_CFG_NAME, std::string("all"), first_, second_);
  ASSERT_EQ(statuses.size(), 2U);
  for (const uint32 it : statuses) EXPECT_EQ(text_of_port_status(it), refusal());
  EXPECT_EQ(num_records(), 1U);
}

// Whichever call fails: the answer says what the next process finds.
TEST_F(FailingDisk, AnswersWhatIsStored) {
  EXPECT_EQ(describe("kept", first_), 0U);
  for (const int error : {ENOSPC, EIO, EFBIG}) {
    bool has_failed = true;
    for (int at = 1; has_failed; ++at) {
      ASSERT_LT(at, 10);
      const std::string text = std::to_string(error) + " at " + std::to_string(at);
      the_failing_calls().fail(at, error);
      has_failed = describe(text, second_) != 0;
      the_failing_calls().reset();
      EXPECT_EQ(port(second_).settings.description == text, !has_failed);
      const machine before = the_machine();
      start();
      EXPECT_TRUE(the_machine() == before) << text;
      EXPECT_THAT(said_, IsEmpty()) << text;
    }
  }
}

// A disk that does not even remove what it wrote may keep a refused change, as a whole or not at all.
TEST_F(FailingDisk, ThatFailsForEverKeepsWhatWasAcknowledged) {
  EXPECT_EQ(describe("kept", first_), 0U);
  const std::string before = port(second_).settings.description;
  bool has_failed = true;
  for (int at = 1; has_failed; ++at) {
    ASSERT_LT(at, 10);
    const std::string text = "at " + std::to_string(at);
    the_failing_calls().fail(at, EIO, true);
    has_failed = describe(text, second_) != 0;
    the_failing_calls().reset();
    start();
    EXPECT_EQ(port(first_).settings.description, "kept");
    EXPECT_THAT(port(second_).settings.description, testing::AnyOf(text, has_failed ? before : text));
    EXPECT_EQ(describe(before, second_), 0U);
  }
}

// A variable of the environment, which gets its old value back.
class variable {
 public:
  variable(const char* name, const char* value) : name_(name) {
    if (const char* const old = std::getenv(name)) old_ = old;
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
  }
  ~variable() { old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_); }
  variable(const variable&) = delete;
  variable& operator=(const variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

TEST(JournalPath, IsInTheFolderOfSystemdOrOfTheUser) {
  const auto path_with = [](const char* given, const char* own) {
    const variable of_systemd("STATE_DIRECTORY", given), of_user("XDG_STATE_HOME", own);
    return journal_path("lab");
  };
  EXPECT_EQ(path_with("/var/lib/pmshd/lab", "/home/ann/state"), "/var/lib/pmshd/lab/lab.journal");
  EXPECT_EQ(path_with("/var/lib/one:/var/lib/two", nullptr), "/var/lib/one/lab.journal");
  EXPECT_EQ(path_with(nullptr, "/home/ann/state"), "/home/ann/state/pmsh/switches/lab.journal");
  EXPECT_EQ(path_with("", "/home/ann/state"), "/home/ann/state/pmsh/switches/lab.journal");
}

TEST(JournalPath, WithoutAFolderIsReported) {
  const variable of_systemd("STATE_DIRECTORY", nullptr), of_user("XDG_STATE_HOME", nullptr), home("HOME", nullptr);
  try {
    FAIL() << journal_path("lab");
  } catch (const store_error& error) {
    EXPECT_STREQ(
        error.what(),
        "there is no folder for the state of the switch. Set STATE_DIRECTORY, XDG_STATE_HOME or HOME, or start "
        "pmshd with --stateless.");
  }
}

}  // namespace
}  // namespace host
