// A switch that several sessions change: what their unconfirmed commits hold.
#include "settings/shared_source.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/port_status.h"
#include "host/switch/small_machine.h"
#include "host/switch/stopped_clock.h"
#include "settings/session.h"
#include "settings/trial.h"
#include "switch/model.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr std::time_t kCommitted = 1'000'000'000;

std::string text_of_refusal(uint32 status) {
  const char* const text = status == 0 ? "none" : text_of_port_status(status);
  return text == nullptr ? "no text" : text;
}

class HeldInterfaces : public testing::Test {
 protected:
  HeldInterfaces() {
    set_source();
    share_source();
    ann_.set_owner({"ann", 1001, 4711, "pts/3", kCommitted});
  }
  ~HeldInterfaces() override {
    ann_.confirm(rolled_back_);
    set_source();
  }

  // Commits another description, to be confirmed in 20 seconds.
  static void commit(switch_session& session, if_index_t if_index) {
    const session_scope requests(session);
    session.begin_candidate();
    session.enter_candidate();
    the_machine().find(if_index)->settings.description = "committed";
    session.leave_candidate();
    ASSERT_EQ(session.commit("commit confirmed 20", 20U).made.applied, std::vector<if_index_t>{if_index});
    session.end_candidate();
  }

  // Why a setting of an interface is refused.
  static std::string refusal(if_index_t if_index) {
    interface& port = *the_machine().find(if_index);
    return text_of_refusal(the_source().apply_settings(port, port_settings(port.settings)));
  }

  const stopped_clock clock_{kCommitted};
  small_machine names_ = install_small_machine();
  switch_session ann_;
  switch_session bob_;
  std::optional<rollback> rolled_back_;
};

TEST_F(HeldInterfaces, NameTheirHolderAndItsTime) {
  commit(ann_, names_.third_port);
  clock_advance(8);
  const session_scope requests(bob_);
  EXPECT_EQ(refusal(names_.third_port), "held by ann on pts/3 for 12 s");
  EXPECT_EQ(refusal(names_.routed_port), "none");
}

TEST_F(HeldInterfaces, OfASessionWithoutATerminalNameItsProcess) {
  ann_.set_owner({"", 1001, 4711, "", kCommitted});
  commit(ann_, names_.third_port);
  const session_scope requests(bob_);
  EXPECT_EQ(refusal(names_.third_port), "held by 1001 on process 4711 for 20 s");
}

TEST_F(HeldInterfaces, ShowNoControlBytesOfATerminal) {
  ann_.set_owner({"ann", 1001, 4711, "\x1b[2J" + std::string(500, 'x'), kCommitted});
  commit(ann_, names_.third_port);
  const session_scope requests(bob_);
  EXPECT_EQ(refusal(names_.third_port), "held by ann on \\x1b[2J" + std::string(28, 'x') + " for 20 s");
}

TEST_F(HeldInterfaces, AreFreeAfterTheConfirmation) {
  commit(ann_, names_.third_port);
  ASSERT_TRUE(ann_.confirm(rolled_back_));
  const session_scope requests(bob_);
  EXPECT_EQ(refusal(names_.third_port), "none");
}

TEST_F(HeldInterfaces, AreFreeAfterTheRollback) {
  commit(ann_, names_.third_port);
  clock_advance(20);
  ASSERT_TRUE(ann_.end_overdue_commit());
  EXPECT_NE(the_machine().find(names_.third_port)->settings.description, "committed");
  const session_scope requests(bob_);
  EXPECT_EQ(refusal(names_.third_port), "none");
}

TEST_F(HeldInterfaces, AreFreeAfterTheEndOfTheSession) {
  {
    switch_session third;
    commit(third, names_.third_port);
  }
  EXPECT_NE(the_machine().find(names_.third_port)->settings.description, "committed");
  const session_scope requests(bob_);
  EXPECT_EQ(refusal(names_.third_port), "none");
}

TEST_F(HeldInterfaces, OfALeftSessionStayHeld) {
  commit(ann_, names_.third_port);
  ann_.abandon();
  const session_scope requests(bob_);
  EXPECT_EQ(refusal(names_.third_port), "held by ann on pts/3 for 20 s");
}

TEST_F(HeldInterfaces, ASessionWhoseCommitWaitsChangesNothing) {
  commit(ann_, names_.third_port);
  const session_scope requests(ann_);
  EXPECT_EQ(refusal(names_.routed_port), "a commit of this session waits for 'confirm'");
}

TEST_F(HeldInterfaces, AMemberHoldsTheSettingsOfItsPortChannel) {
  commit(ann_, names_.first_port);
  const session_scope requests(bob_);
  EXPECT_EQ(refusal(names_.channel), "held by ann on pts/3 for 20 s");
}

TEST_F(HeldInterfaces, AreNeitherDeletedNorCreated) {
  commit(ann_, names_.loopback);
  const session_scope requests(bob_);
  const interface before = *the_machine().find(names_.loopback);
  const if_index_t both[] = {names_.loopback, names_.loopback + 1};
  const std::string held = "held by ann on pts/3 for 20 s";
  EXPECT_EQ(text_of_refusal(the_source().delete_interfaces(the_machine(), both)), held);
  EXPECT_NE(the_machine().find(names_.loopback), nullptr);
  EXPECT_EQ(text_of_refusal(the_source().create_interfaces(the_machine(), both)), held);
  EXPECT_EQ(the_machine().find(names_.loopback + 1), nullptr) << "all or none";
  EXPECT_EQ(text_of_refusal(the_source().restore_interface(the_machine(), before)), held);
}

TEST_F(HeldInterfaces, TheirSubInterfacesAreNotDeleted) {
  commit(ann_, names_.routed_port);
  const session_scope requests(bob_);
  EXPECT_EQ(text_of_refusal(the_source().delete_interfaces(the_machine(), {&names_.sub_port, 1})),
            "held by ann on pts/3 for 20 s");
  EXPECT_EQ(refusal(names_.sub_port), "none") << "its settings are its own";
}

TEST_F(HeldInterfaces, AreFreeInTrials) {
  commit(ann_, names_.third_port);
  const session_scope requests(bob_);
  bob_.begin_candidate();
  bob_.enter_candidate();
  EXPECT_EQ(refusal(names_.third_port), "none");
  the_machine().find(names_.third_port)->settings.description = "of bob";
  bob_.leave_candidate();
  const changes_made made = bob_.commit("commit", std::nullopt).made;
  EXPECT_TRUE(made.applied.empty());
  ASSERT_EQ(made.refused.size(), 1U);
  EXPECT_EQ(text_of_refusal(made.refused[0].status), "held by ann on pts/3 for 20 s");
  EXPECT_EQ(the_machine().find(names_.third_port)->settings.description, "committed");
}

// Every function is passed on: a source of which each answer differs from the default.
class unusual_source final : public switch_source {
 public:
  explicit unusual_source(std::vector<std::string>& called) : called_(called) {}

  void refresh(machine&) override { note("refresh"); }
  bool refresh_counters(machine&) override { return note("refresh_counters"), true; }
  void complete(interface&, detail) override { note("complete"); }
  bool knows_all_fields() const override { return note("knows_all_fields"), false; }
  bool update_statistics(interface&, uint32) override { return note("update_statistics"), false; }
  void clear_counters(interface&, uint32) override { note("clear_counters"); }
  bool counts_at_refresh() const override { return note("counts_at_refresh"), true; }
  std::optional<double> rate_seconds() const override { return note("rate_seconds"), 1; }
  std::optional<std::string> baseline_file() const override { return note("baseline_file"), "file"; }
  int write_baselines() override { return note("write_baselines"), 1; }
  uint32 check_settings(const interface&, const port_settings&) const override { return note("check_settings"), 1; }
  uint32 apply_settings(interface&, const port_settings&) override { return note("apply_settings"), 1; }
  bool applies_setting(uint8) const override { return note("applies_setting"), false; }
  bool hands_settings_to_members() const override { return note("hands_settings_to_members"), true; }
  bool allows_sub_interfaces_of_switched_ports() const override { return note("allows_sub_interfaces"), true; }
  uint32 create_interfaces(machine&, std::span<const if_index_t>) override { return note("create_interfaces"), 1; }
  uint32 delete_interfaces(machine&, std::span<const if_index_t>) override { return note("delete_interfaces"), 1; }
  uint32 restore_interface(machine&, const interface&) override { return note("restore_interface"), 1; }
  std::unique_ptr<table_reader> open_table(const machine&, table_id, const std::vector<if_index_t>&) override {
    return note("open_table"), nullptr;
  }
  std::unique_ptr<event_reader> open_events() override { return note("open_events"), nullptr; }
  std::optional<std::vector<kernel_device>> devices() const override {
    return note("devices"), std::vector<kernel_device>(1);
  }
  std::optional<kernel_system> system() const override { return note("system"), kernel_system{"name", "release"}; }
  bool may_have_device(std::string_view) const override { return note("may_have_device"), false; }
  std::optional<kernel_device> find_device(if_index_t) const override { return note("find_device"), kernel_device(); }
  std::vector<if_index_t> interfaces_towards(const std::string&) const override {
    return note("interfaces_towards"), std::vector<if_index_t>{1};
  }

 private:
  void note(const char* name) const { called_.emplace_back(name); }
  std::vector<std::string>& called_;
};

TEST(SharedSource, PassesEverythingElseOn) {
  install_small_machine();
  std::vector<std::string> called;
  set_source(std::make_unique<unusual_source>(called));
  share_source();
  switch_source& of = the_source();
  machine& model = the_machine();
  interface& port = model.interfaces.front();
  const if_index_t one[] = {port.if_index};
  of.refresh(model);
  EXPECT_TRUE(of.refresh_counters(model));
  of.complete(port, detail::module);
  EXPECT_FALSE(of.knows_all_fields());
  EXPECT_FALSE(of.update_statistics(port, 1));
  of.clear_counters(port, 1);
  EXPECT_TRUE(of.counts_at_refresh());
  EXPECT_EQ(of.rate_seconds(), 1);
  EXPECT_EQ(of.baseline_file(), "file");
  EXPECT_EQ(of.write_baselines(), 1);
  EXPECT_EQ(of.check_settings(port, port.settings), 1U);
  EXPECT_EQ(of.apply_settings(port, port.settings), 1U);
  EXPECT_FALSE(of.applies_setting(1));
  EXPECT_TRUE(of.hands_settings_to_members());
  EXPECT_TRUE(of.allows_sub_interfaces_of_switched_ports());
  EXPECT_EQ(of.create_interfaces(model, one), 1U);
  EXPECT_EQ(of.delete_interfaces(model, one), 1U);
  EXPECT_EQ(of.restore_interface(model, port), 1U);
  of.open_table(model, table_id::ipv4_addresses, {});
  of.open_events();
  EXPECT_EQ(of.devices()->size(), 1U);
  EXPECT_EQ(of.system()->name, "name");
  EXPECT_FALSE(of.may_have_device("eth0"));
  EXPECT_TRUE(of.find_device(1));
  EXPECT_EQ(of.interfaces_towards("").size(), 1U);
  EXPECT_EQ(called.size(), 25U);
  set_source();
}

TEST(PassingTexts, KeepTheirStatusForAWhile) {
  const uint32 first = status_of_passing_text("for 12 s");
  EXPECT_EQ(status_of_passing_text("for 12 s"), first);
  EXPECT_NE(status_of_passing_text("for 11 s"), first);
  EXPECT_TRUE(is_status_of_text(first));
  EXPECT_EQ(text_of_refusal(first), "for 12 s");
  for (int i = 0; i < 4094; ++i) status_of_passing_text(std::to_string(i));
  EXPECT_EQ(text_of_refusal(first), "for 12 s");
  status_of_passing_text("one more");
  EXPECT_EQ(text_of_refusal(first), "one more");
  EXPECT_EQ(text_of_port_status(first + 4096), nullptr);
}

}  // namespace
}  // namespace host
