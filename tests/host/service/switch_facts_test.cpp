// The service of the switch and its client: what each request answers, and that nothing is made of cut messages.
#include "messages/calls/switch_facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/client/client_fixture.h"
#include "host/switch/stopped_clock.h"
#include "messages/fields.h"
#include "messages/switch_messages.h"
#include "platform/interface_manager.h"
#include "settings/session.h"
#include "switch/clock.h"
#include "switch/if_index_layout.h"
#include "switch/source.h"
#include "transport/failures.h"

namespace host {
namespace {

using interfaces_of_switch = std::vector<if_index_t>;
using message_bytes = std::vector<std::byte>;

class source_of_facts final : public switch_source {
 public:
  void refresh(machine& model) override {
    ++num_refreshed;
    if (!fault.empty()) throw std::runtime_error(fault);
    model.name = "refreshed";
  }
  bool refresh_counters(machine&) override {
    ++num_counted;
    return has_counters;
  }
  bool counts_at_refresh() const override { return counts; }
  std::optional<double> rate_seconds() const override { return rate_time; }
  std::optional<std::string> baseline_file() const override { return file; }
  int write_baselines() override {
    ++num_written;
    return ENOSPC;
  }
  std::optional<std::vector<kernel_device>> devices() const override { return known_devices; }
  std::optional<kernel_system> system() const override { return kernel; }
  bool may_have_device(std::string_view name) const override { return name == "eth0"; }
  bool update_statistics(interface& port, uint32) override {
    if (port.if_index == without_counters) return false;
    port.stats.in.bytes = 1'000'000'000'001;
    port.stats.in.packets = 2;
    port.stats.out.bytes = counter();
    port.stats.out.packets = 4;
    port.stats.last_clear_sec = 1'600'000'000;
    return true;
  }
  std::vector<if_index_t> interfaces_towards(const std::string& address) const override {
    return address == "192.0.2.1" ? interfaces_of_switch{7, 9} : interfaces_of_switch{};
  }

  std::string fault;
  bool has_counters = true, counts = false;
  std::optional<double> rate_time;
  std::optional<std::string> file;
  std::optional<std::vector<kernel_device>> known_devices;
  std::optional<kernel_system> kernel;
  if_index_t without_counters = 0;
  int num_refreshed = 0, num_counted = 0, num_written = 0;
};

class SwitchFacts : public Clients {
 protected:
  SwitchFacts() : source_(*new source_of_facts) {
    set_source(std::unique_ptr<switch_source>(&source_));
    forget_failures();
  }
  ~SwitchFacts() override {
    EXPECT_TRUE(noted_failures().empty());
    set_source();
    set_switch_file({});
  }

  source_of_facts& source_;
};

// ---- The source

TEST_F(SwitchFacts, ARefreshUpdatesTheModel) {
  EXPECT_EQ(ask_refresh(switch_part::everything)->reason, "");
  EXPECT_EQ(the_machine().name, "refreshed");
  EXPECT_EQ(source_.num_counted, 0);
}

TEST_F(SwitchFacts, ARefreshOfCountersLeavesTheRestAsItWas) {
  EXPECT_EQ(ask_refresh(switch_part::counters)->reason, "");
  EXPECT_EQ(source_.num_counted, 1);
  EXPECT_EQ(source_.num_refreshed, 0);
}

TEST_F(SwitchFacts, ARefreshOfCountersReadsEverythingWhereTheyCannotBeReadAlone) {
  source_.has_counters = false;
  EXPECT_EQ(ask_refresh(switch_part::counters)->reason, "");
  EXPECT_EQ(source_.num_refreshed, 1);
}

TEST_F(SwitchFacts, TheSourceSaysWhyItCannotBeRead) {
  source_.fault = "cannot read the devices of the kernel: Operation not permitted";
  EXPECT_EQ(ask_refresh(switch_part::everything)->reason,
            "cannot read the devices of the kernel: Operation not permitted");
}

TEST_F(SwitchFacts, AnAnswerHasTheClockOfTheSwitch) {
  const stopped_clock clock(1'700'000'000);
  EXPECT_EQ(ask_refresh(switch_part::everything)->clock, (switch_clock{true, 1'700'000'000}));
  EXPECT_EQ(ask_to_advance_clock(90), (switch_clock{true, 1'700'000'090}));
  EXPECT_EQ(clock_now(), 1'700'000'090);

  clock_follow_machine();
  EXPECT_EQ(ask_refresh(switch_part::everything)->clock, (switch_clock{false, 0}));
  EXPECT_EQ(ask_to_advance_clock(90), (switch_clock{false, 90}));
}

TEST_F(SwitchFacts, OtherPartsAreNotRefreshed) {
  for (const uint8 part : {uint8{0}, uint8{3}, uint8{255}}) {
    const std::byte request[] = {static_cast<std::byte>(part)};
    EXPECT_EQ(serve_switch(SWITCH_OPC_REFRESH, request).what, reply::kind::reject) << int{part};
  }
  EXPECT_EQ(source_.num_refreshed + source_.num_counted, 0);
}

TEST_F(SwitchFacts, ASimulatedSwitchHasANameAndAFile) {
  the_machine().name = "lab";
  set_switch_file("/etc/lab.yaml");
  EXPECT_EQ(ask_switch_facts(), (switch_facts{.name = "lab", .file = "/etc/lab.yaml"}));
}

TEST_F(SwitchFacts, ASwitchOfDevicesHasAKernel) {
  the_machine().name = "box";
  source_.kernel = {"Linux", "6.1.0"};
  source_.known_devices.emplace();
  source_.counts = true;
  EXPECT_EQ(ask_switch_facts(), (switch_facts{"box", "", "Linux", "6.1.0", true, true}));
}

TEST_F(SwitchFacts, RatesCoverTheTimeBetweenReadings) {
  EXPECT_EQ(ask_rate_seconds(), 0);
  source_.rate_time = 2.5;
  EXPECT_EQ(ask_rate_seconds(), 2.5);
}

// ---- Users

TEST_F(SwitchFacts, AUserIsFoundByName) {
  the_machine().users = {{"ada", {}, true, true}, {"bob", std::vector<uint16>{1, 15, 4094}, false, false}};
  const auto bob = ask_user("bob");
  ASSERT_TRUE(bob);
  EXPECT_EQ(bob->user, (session_user{"bob", std::vector<uint16>{1, 15, 4094}, false, false}));
  EXPECT_EQ(bob->names, (std::vector<std::string>{"ada", "bob"}));
  EXPECT_EQ(ask_user("")->user, (session_user{"ada", {}, true, true})) << "the first one";
  EXPECT_EQ(ask_user("eve")->user, std::nullopt);
  EXPECT_EQ(ask_user("eve")->names.size(), 2U);
}

TEST_F(SwitchFacts, AUserMayBeRestrictedToNoVsanAtAll) {
  the_machine().users = {{"eve", std::vector<uint16>{}, true, false}};
  EXPECT_EQ(ask_user("")->user->vsans, std::vector<uint16>{});
}

TEST_F(SwitchFacts, ASwitchMayHaveNoUsers) {
  the_machine().users.clear();
  const auto answer = ask_user("");
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->user, std::nullopt);
  EXPECT_TRUE(answer->names.empty());
}

// A shell of the user "bob" of this machine, who may or may not be any user of the switch.
class UsersOfClients : public SwitchFacts {
 protected:
  UsersOfClients() {
    the_machine().users = {{"ada", {}, true, true}, {"bob", {}, false, false}};
    client_.set_owner({"bob", 1001, 4711, "", 0});
  }

  std::string user_for(std::string_view name) {
    const session_scope requests(client_);
    const auto answer = ask_user(name);
    if (!answer) return "no answer";
    EXPECT_TRUE(answer->refusal.empty() || !answer->user) << name;
    return answer->user ? answer->user->name : answer->refusal;
  }

  switch_session client_;
};

TEST_F(UsersOfClients, HaveTheirOwnName) {
  EXPECT_EQ(user_for(""), "bob");
  client_.set_rights({.may_be_any_user = false});
  EXPECT_EQ(user_for(""), "bob");
  EXPECT_EQ(user_for("bob"), "bob");
}

TEST_F(UsersOfClients, AreOthersOnlyWithTheRight) {
  EXPECT_EQ(user_for("ada"), "ada");
  client_.set_rights({.may_be_any_user = false});
  EXPECT_EQ(user_for("ada"), "the user 'bob' of this machine may not use the switch as 'ada': omit --user");
  EXPECT_EQ(user_for("eve"), "") << "unknown to everyone";
}

TEST_F(UsersOfClients, WithoutTheirNameAreTheFirstOnlyWithTheRight) {
  the_machine().users.pop_back();
  EXPECT_EQ(user_for(""), "ada");
  client_.set_rights({.may_be_any_user = false});
  EXPECT_EQ(user_for(""), "the switch has no user 'bob': ask its owner to add one with this name");
}

TEST_F(UsersOfClients, NeedNoneOnASwitchWithoutUsers) {
  the_machine().users.clear();
  client_.set_rights({.may_be_any_user = false});
  EXPECT_EQ(user_for(""), "");
}

// ---- Interfaces and modules

TEST_F(SwitchFacts, EveryInterfaceIsListedAscending) {
  interfaces_of_switch all = {names_.first_port,  names_.second_port, names_.third_port,
                              names_.routed_port, names_.sub_port,    names_.channel,
                              names_.old_channel, names_.loopback,    names_.mgmt};
  std::sort(all.begin(), all.end());
  EXPECT_EQ(ask_every_interface(), all);
}

TEST_F(SwitchFacts, ExistenceIsAnsweredInTheOrderOfTheRequest) {
  const std::vector asked = {names_.nobody, names_.mgmt, names_.nobody, names_.first_port};
  EXPECT_EQ(ask_which_exist(asked), (std::vector<bool>{false, true, false, true}));
  EXPECT_EQ(ask_which_exist({}), std::vector<bool>{});
}

TEST_F(SwitchFacts, InterfacesTowardsAnAddressAreThoseOfTheSource) {
  EXPECT_EQ(ask_interfaces_towards("192.0.2.1"), (interfaces_of_switch{7, 9}));
  EXPECT_EQ(ask_interfaces_towards(""), interfaces_of_switch{});
}

TEST_F(SwitchFacts, ModulesCountFromOne) {
  the_machine().cards = {{.slot = 0}, {.slot = 4}};
  EXPECT_EQ(ask_modules(), (std::vector<uint32>{1, 5}));
  the_machine().cards.clear();
  EXPECT_EQ(ask_modules(), std::vector<uint32>{});
}

// ---- Devices

TEST_F(SwitchFacts, DevicesThatMayExistAreThoseOfTheSource) {
  EXPECT_EQ(ask_may_have_device("eth0"), true);
  EXPECT_EQ(ask_may_have_device("ethernet"), false);
}

TEST_F(SwitchFacts, ASimulatedSwitchHasNoDevices) {
  const auto answer = ask_devices();
  ASSERT_TRUE(answer);
  EXPECT_FALSE(answer->is_kernel);
}

TEST_F(SwitchFacts, EachDeviceSaysWhyItHasItsInterface) {
  source_.known_devices.emplace();
  source_.known_devices->push_back({.name = "lo", .if_index = 5, .reason = name_reason::loopback});
  source_.known_devices->push_back({.name = "eth0.7", .if_index = 6, .reason = name_reason::vlan, .parent = "eth0"});
  const auto answer = ask_devices();
  ASSERT_TRUE(answer);
  EXPECT_TRUE(answer->is_kernel);
  EXPECT_EQ(answer->devices, (std::vector<device_interface>{{"lo", 5, "loopback"}, {"eth0.7", 6, "vlan of eth0"}}));
}

// ---- Counters

TEST_F(SwitchFacts, CountersThatStartFromZeroHaveNoBaselines) {
  const auto answer = ask_to_store_baselines();
  ASSERT_TRUE(answer);
  EXPECT_FALSE(answer->are_kept);
  EXPECT_EQ(source_.num_written, 0);
}

TEST_F(SwitchFacts, BaselinesOfTheSessionAreNotWritten) {
  source_.file = "";
  const auto answer = ask_to_store_baselines();
  ASSERT_TRUE(answer);
  EXPECT_TRUE(answer->are_kept);
  EXPECT_EQ(answer->file, "");
  EXPECT_EQ(answer->error, 0);
  EXPECT_EQ(source_.num_written, 0);
}

TEST_F(SwitchFacts, BaselinesAreWrittenToTheirFile) {
  source_.file = "/counters-of-the-test";
  const auto answer = ask_to_store_baselines();
  ASSERT_TRUE(answer);
  EXPECT_TRUE(answer->are_kept);
  EXPECT_EQ(answer->file, "/counters-of-the-test");
  EXPECT_EQ(answer->error, ENOSPC);
  EXPECT_EQ(source_.num_written, 1);
}

TEST_F(SwitchFacts, TrafficHasTheMomentOfItsCounters) {
  const stopped_clock clock(1'700'000'000);
  EXPECT_EQ(ask_traffic(names_.first_port), (traffic_count{1'700'000'000, 1'000'000'000'001, 2, 0, 4, 1'600'000'000}));
}

TEST_F(SwitchFacts, TrafficThatIsCountedAtARefreshHasItsMoment) {
  source_.counts = true;
  stopped_clock clock(1'700'000'000);
  EXPECT_EQ(ask_refresh(switch_part::counters)->reason, "");
  clock_advance(5);
  EXPECT_EQ(ask_traffic(names_.first_port)->at_sec, 1'700'000'000);
}

TEST_F(SwitchFacts, InterfacesWithoutCountersHaveNoTraffic) {
  source_.without_counters = names_.third_port;
  EXPECT_FALSE(ask_traffic(names_.third_port));
  EXPECT_FALSE(ask_traffic(names_.nobody));
  EXPECT_FALSE(ask_traffic(numbered_index(IF_TYPE_INBAND, 0)));
}

// ---- Cut messages ---------------------------------------------------------------------------------------------------

// A request, and the client's function for it, which returns whether there was an answer.
struct asked_fact {
  const char* what;
  mts_opc_t opcode;
  message_bytes request;
  std::function<bool()> ask;
};

template <typename Write>
message_bytes fields_of(Write write) {
  message_bytes bytes;
  field_writer to(bytes);
  write(to);
  return bytes;
}

std::vector<asked_fact> all_asked(const small_machine& names) {
  return {
      {"interfaces", SWITCH_OPC_INTERFACES, {}, [] { return ask_every_interface().has_value(); }},
      {"existence", SWITCH_OPC_EXIST, fields_of([&](field_writer& to) {
         to.numbers(std::vector{names.first_port, names.nobody});
       }),
       [&names] {
         return ask_which_exist(std::vector{names.first_port, names.nobody}).has_value();
       }},
      {"towards", SWITCH_OPC_TOWARDS, fields_of([](field_writer& to) { to.text("192.0.2.1"); }),
       [] { return ask_interfaces_towards("192.0.2.1").has_value(); }},
      {"refresh", SWITCH_OPC_REFRESH, fields_of([](field_writer& to) { to.u8(1); }),
       [] { return ask_refresh(switch_part::everything).has_value(); }},
      {"advance of the clock", SWITCH_OPC_ADVANCE_CLOCK, fields_of([](field_writer& to) { to.u32(0); }),
       [] { return ask_to_advance_clock(0).has_value(); }},
      {"facts", SWITCH_OPC_FACTS, {}, [] { return ask_switch_facts().has_value(); }},
      {"time of rates", SWITCH_OPC_RATE_TIME, {}, [] { return ask_rate_seconds().has_value(); }},
      {"user", SWITCH_OPC_USER, fields_of([](field_writer& to) { to.text("bob"); }),
       [] { return ask_user("bob").has_value(); }},
      {"device", SWITCH_OPC_DEVICE, fields_of([](field_writer& to) { to.text("eth0"); }),
       [] { return ask_may_have_device("eth0").has_value(); }},
      {"modules", SWITCH_OPC_MODULES, {}, [] { return ask_modules().has_value(); }},
      {"devices", SWITCH_OPC_DEVICES, {}, [] { return ask_devices().has_value(); }},
      {"baselines", SWITCH_OPC_BASELINES, {}, [] { return ask_to_store_baselines().has_value(); }},
      {"traffic", SWITCH_OPC_TRAFFIC, fields_of([&](field_writer& to) { to.u32(names.first_port); }),
       [&names] { return ask_traffic(names.first_port).has_value(); }},
  };
}

// Every list and text of an answer has something.
void fill(source_of_facts& source) {
  the_machine().users = {{"bob", std::vector<uint16>{1, 15}, false, false}};
  the_machine().cards = {{.slot = 0}};
  source.kernel = {"Linux", "6.1.0"};
  source.known_devices = {{.name = "lo", .if_index = 5, .reason = name_reason::loopback}};
  source.file = "/counters-of-the-test";
}

TEST_F(SwitchFacts, RequestsOfAnotherSizeAreRejected) {
  fill(source_);
  for (const asked_fact& it : all_asked(names_)) {
    EXPECT_EQ(serve_switch(it.opcode, it.request).what, reply::kind::answer) << it.what;
    for (std::size_t size = 0; size < it.request.size(); ++size)
      EXPECT_EQ(serve_switch(it.opcode, std::span(it.request).first(size)).what, reply::kind::reject)
          << it.what << ' ' << size;
    message_bytes longer = it.request;
    longer.emplace_back();
    EXPECT_EQ(serve_switch(it.opcode, longer).what, reply::kind::reject) << it.what;
  }
  EXPECT_EQ(serve_switch(0, {}).what, reply::kind::reject);
  EXPECT_EQ(serve_switch(1000, {}).what, reply::kind::reject);
}

message_bytes* served_fact = nullptr;

reply serve_fact(mts_opc_t, std::span<const std::byte>) { return {reply::kind::answer, *served_fact}; }

TEST_F(SwitchFacts, CutAnswersAreDamaged) {
  fill(source_);
  for (const asked_fact& it : all_asked(names_)) {
    const message_bytes whole = serve_switch(it.opcode, it.request).payload;
    message_bytes cut;
    served_fact = &cut;
    const service cutting[] = {{SAP_SWITCH, "switch", serve_fact}};
    transport_register(cutting);
    for (std::size_t size = 0; size <= whole.size() + 1; ++size) {
      cut = whole;
      cut.resize(size);
      forget_failures();
      EXPECT_EQ(it.ask(), size == whole.size()) << it.what << ' ' << size;
      EXPECT_EQ(noted_failures().empty(), size == whole.size()) << it.what << ' ' << size;
    }
    transport_register(all_services());
  }
  forget_failures();
}

}  // namespace
}  // namespace host
