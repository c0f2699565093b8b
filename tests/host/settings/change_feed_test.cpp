// The changes that sessions make, as events for readers.
#include "settings/change_feed.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/switch/small_machine.h"
#include "host/switch/stopped_clock.h"
#include "platform/port_manager.h"
#include "service/change_settings.h"
#include "settings/session.h"
#include "settings/shared_source.h"
#include "settings/trial.h"
#include "switch/live_statistics.h"

namespace host {
namespace {

constexpr std::time_t kChanged = 1'000'000'000;

bool is_readable(const event_reader& reader) {
  for (const int it : reader.descriptors()) {
    pollfd waiting{it, POLLIN, 0};
    if (poll(&waiting, 1, 0) == 1) return true;
  }
  return false;
}

std::string shown_value(const event_value& value) {
  const auto* const text = std::get_if<std::string>(&value);
  return text == nullptr ? "none" : *text;
}

class Changes : public testing::Test {
 protected:
  Changes() {
    set_source();
    share_source();
    session_.set_owner({"ann", 1001, 4711, "pts/3", kChanged});
    reader_ = the_source().open_events();
  }
  ~Changes() override {
    reader_.reset();
    set_source();
  }

  interface& port() {
    return *the_machine().find(names_.third_port);
  }

  template <typename Change>
  void change(Change make) {
    change_settings(port(), [&](interface& it) {
      make(it.settings);
      return 0U;
    });
  }

  // "description: none -> lab"
  std::vector<std::string> read() {
    std::vector<switch_event> events;
    EXPECT_TRUE(reader_->read(events));
    std::vector<std::string> texts;
    for (const switch_event& it : events) {
      EXPECT_EQ(it.user, "ann");
      EXPECT_EQ(it.terminal, "pts/3");
      EXPECT_EQ(it.at_sec, kChanged);
      const bool has_values = it.kind == event_kind::setting;
      texts.push_back(has_values ? it.change + ": " + shown_value(it.old_value) + " -> " + shown_value(it.new_value)
                                 : it.change);
      last_ = it;
    }
    return texts;
  }

  using texts = std::vector<std::string>;
  const stopped_clock clock_{kChanged};
  small_machine names_ = install_small_machine();
  switch_session session_;
  session_scope scope_{session_};
  std::unique_ptr<event_reader> reader_;
  switch_event last_;
};

TEST_F(Changes, OfSettingsHaveTheirValues) {
  port().settings.description = "";
  port().settings.mtu_bytes = 1500;
  EXPECT_FALSE(is_readable(*reader_));
  change([](port_settings& to) {
    to.description = "lab 1";
    to.mtu_bytes = 9000;
  });
  EXPECT_TRUE(is_readable(*reader_));
  EXPECT_EQ(read(), (texts{"description: none -> lab 1", "switchport mtu: 1500 -> 9000"}));
  EXPECT_EQ(last_.kind, event_kind::setting);
  EXPECT_EQ(last_.device.if_index, names_.third_port);
  EXPECT_FALSE(is_readable(*reader_));
  EXPECT_EQ(read(), texts{});
}

TEST_F(Changes, OfStatesAreCommands) {
  port().settings.admin_state = PM_PORT_STATE_UP;
  change([](port_settings& to) { to.admin_state = PM_PORT_STATE_DOWN; });
  EXPECT_EQ(read(), texts{"shutdown: no shutdown -> shutdown"});
  change([](port_settings& to) { to.is_edge = !to.is_edge; });
  EXPECT_EQ(read().size(), 1U);
}

TEST_F(Changes, OfManyVlansAreOneValue) {
  port().settings.allowed_vlans = {1, 2, 3, 10};
  change([](port_settings& to) {
    to.allowed_vlans.clear();
    for (uint16 it = 2; it <= 300; it = static_cast<uint16>(it + 2)) to.allowed_vlans.push_back(it);
  });
  const texts changed = read();
  ASSERT_EQ(changed.size(), 1U);
  const std::string begin = "switchport trunk allowed vlan: 1-3,10 -> 2,4,6";
  EXPECT_EQ(changed[0].substr(0, begin.size()), begin);
  EXPECT_EQ(changed[0].find("add"), std::string::npos);
  EXPECT_EQ(changed[0].substr(changed[0].size() - 8), ",298,300");
}

TEST_F(Changes, OfInterfacesAndCounters) {
  const if_index_t made[] = {names_.loopback + 1};
  ASSERT_EQ(the_source().create_interfaces(the_machine(), made), 0U);
  EXPECT_EQ(read(), texts{"created"});
  EXPECT_EQ(last_.kind, event_kind::interface);
  const interface before = *the_machine().find(made[0]);
  ASSERT_EQ(the_source().delete_interfaces(the_machine(), made), 0U);
  EXPECT_EQ(read(), texts{"deleted"});
  ASSERT_EQ(the_source().restore_interface(the_machine(), before), 0U);
  EXPECT_EQ(read(), texts{"created"});
  ASSERT_TRUE(clear_statistics(port()));
  EXPECT_EQ(read(), texts{"cleared"});
  EXPECT_EQ(last_.kind, event_kind::counters);
}

TEST_F(Changes, InTrialsAreNotPublished) {
  session_.begin_dry_run();
  change([](port_settings& to) { to.description = "tried"; });
  clear_statistics(port());
  session_.end_dry_run();
  EXPECT_EQ(read(), texts{});
}

TEST_F(Changes, ThatARefusalPreventsAreNotPublished) {
  change_settings(port(), [](interface&) { return 1U; });
  EXPECT_EQ(read(), texts{});
}

TEST_F(Changes, OfARollbackAreThoseOfItsSession) {
  port().settings.description = "";
  session_.begin_candidate();
  session_.enter_candidate();
  port().settings.description = "lab";
  session_.leave_candidate();
  session_.commit("commit confirmed 20", 20U);
  EXPECT_EQ(read(), texts{"description: none -> lab"});
  session_.roll_back();
  EXPECT_EQ(read(), texts{"description: lab -> none"});
}

TEST_F(Changes, ByAnotherProcessAreFoundAfterwards) {
  const if_index_t created[] = {names_.loopback + 1};
  const if_index_t asked[] = {names_.third_port, names_.loopback, names_.loopback + 1};
  port().settings.description = "";
  const changes_elsewhere made(asked);
  port().settings.description = "lab";
  the_machine().remove(names_.loopback);
  ASSERT_EQ(switch_source().create_interfaces(the_machine(), created), 0U);
  made.publish();
  const texts changed = read();
  ASSERT_EQ(changed.size(), 3U);
  EXPECT_EQ(std::vector(changed.begin() + 1, changed.end()), (texts{"deleted", "created"}));
  EXPECT_EQ(changed[0], "description: none -> lab");
}

TEST_F(Changes, ThatAreNotReadAreCountedWhenTheyAreLost) {
  for (int i = 0; i < 1030; ++i) change([i](port_settings& to) { to.description = std::to_string(i); });
  std::unique_ptr<event_reader> late = the_source().open_events();
  const texts kept = read();
  EXPECT_EQ(kept.size(), 1024U);
  EXPECT_EQ(kept.front(), "description: 5 -> 6");
  EXPECT_EQ(kept.back(), "description: 1028 -> 1029");
  EXPECT_EQ(reader_->num_lost_changes(), 6U);
  EXPECT_EQ(read(), texts{});
  EXPECT_EQ(reader_->num_lost_changes(), 0U);
  std::vector<switch_event> none;
  EXPECT_TRUE(late->read(none));
  EXPECT_TRUE(none.empty());
}

// The events of the source itself come with them.
class source_events final : public event_reader {
 public:
  std::vector<int> descriptors() const override { return {40}; }
  bool read(std::vector<switch_event>& events) override {
    events.push_back({.change = "oper_state"});
    return false;
  }
};

TEST_F(Changes, ComeWithTheEventsOfTheSource) {
  const auto both = open_change_feed(std::make_unique<source_events>());
  EXPECT_EQ(both->descriptors().size(), 2U);
  EXPECT_EQ(both->descriptors()[0], 40);
  change([](port_settings& to) { to.description = "other"; });
  std::vector<switch_event> events;
  EXPECT_FALSE(both->read(events));
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].change, "oper_state");
  EXPECT_EQ(events[1].change, "description");
}

}  // namespace
}  // namespace host
