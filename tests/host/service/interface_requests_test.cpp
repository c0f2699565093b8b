// Whether named interfaces may be used, created or deleted, and what becomes of them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "host/switch/small_machine.h"
#include "messages/port_manager_messages.h"
#include "platform/port_config.h"
#include "platform/port_manager.h"
#include "platform/vsan.h"
#include "service/services.h"
#include "settings/change_journal.h"
#include "support/heap_block.h"
#include "switch/if_index_layout.h"
#include "switch/source.h"

namespace host {
namespace {

enum class intent { use, create, remove };

struct pair {
  if_index_t low;
  if_index_t high;
};

// A request as it travels, of exactly its size so that a sanitizer sees a read past the end.
std::vector<std::byte> request(intent requested, const std::vector<pair>& ranges) {
  const pm_cli_if_index_verify_req_payload_t head{
      requested == intent::create ? 1u : 0u, requested == intent::remove ? 1u : 0u, static_cast<uint32>(ranges.size())};
  std::vector<std::byte> bytes(sizeof head + ranges.size() * sizeof(pm_port_range_t));
  std::memcpy(bytes.data(), &head, sizeof head);
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    const pm_port_range_t range{ranges[i].low, ranges[i].high};
    std::memcpy(bytes.data() + sizeof head + i * sizeof range, &range, sizeof range);
  }
  return bytes;
}

class InterfaceRequests : public testing::Test {
 protected:
  static uint32 status(intent requested, const std::vector<pair>& ranges) {
    const reply answer = serve_port_manager(330, request(requested, ranges));
    EXPECT_EQ(answer.what, reply::kind::answer);
    EXPECT_EQ(answer.payload.size(), 4u);
    be32 status = 99;
    if (answer.payload.size() == 4) std::memcpy(&status, answer.payload.data(), 4);
    return status;
  }
  static uint32 status(intent requested, if_index_t if_index) { return status(requested, {{if_index, if_index}}); }

  if_index_t sub(uint32 number) const { return ethernet_index(IF_TYPE_ETHERNET_L3, 1, 0, number); }

  small_machine names_ = install_small_machine();
};

TEST_F(InterfaceRequests, ExistingInterfacesMayBeUsed) {
  EXPECT_EQ(status(intent::use, names_.first_port), 0u);
  EXPECT_EQ(status(intent::use, names_.sub_port), 0u);
  EXPECT_EQ(status(intent::use, names_.loopback), 0u);
  EXPECT_EQ(status(intent::use, {{names_.first_port, names_.third_port}, {names_.mgmt, names_.mgmt}}), 0u);
  EXPECT_EQ(status(intent::use, std::vector<pair>{}), 0u);
}

TEST_F(InterfaceRequests, BothEndsOfEveryRangeMustExist) {
  EXPECT_EQ(status(intent::use, names_.nobody), 0x40290037u);
  EXPECT_EQ(status(intent::use, {{names_.first_port, names_.nobody}}), 0x40290037u);
  EXPECT_EQ(status(intent::use, {{names_.first_port, names_.first_port}, {names_.nobody, names_.nobody}}), 0x40290037u);
  EXPECT_EQ(status(intent::create, numbered_index(IF_TYPE_LOOPBACK, 900)), 0x40290037u);
  EXPECT_EQ(status(intent::remove, names_.nobody), 0x40290037u);
}

TEST_F(InterfaceRequests, EndsThatSpanNoRangeAreRefused) {
  EXPECT_EQ(status(intent::use, {{names_.second_port, names_.first_port}}), 0x4029000Au) << "reversed";
  EXPECT_EQ(status(intent::use, {{names_.first_port, names_.routed_port}}), 0x4029000Au) << "of two kinds";
  EXPECT_EQ(status(intent::use, {{0, 0xFFFFFFFF}}), 0x4029000Au);
  EXPECT_EQ(status(intent::use, names_.routed_port & 0xFFF), 0x4029000Au) << "of no kind";
  EXPECT_EQ(status(intent::create, {{names_.routed_port, names_.sub_port}}), 0x4029000Au) << "a port and its part";
  EXPECT_EQ(status(intent::create, {{sub(1), ethernet_index(IF_TYPE_ETHERNET_L3, 1, 1, 2)}}), 0x4029000Au)
      << "of two ports";
}

TEST_F(InterfaceRequests, RequestOfAnotherSizeThanItSaysIsRejected) {
  const std::vector<std::byte> good = request(intent::use, {{names_.first_port, names_.first_port}});
  for (const mts_opc_t opcode : {330u, 331u, 332u}) {
    for (std::size_t size = 0; size < good.size(); ++size) {
      const std::vector<std::byte> cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
      EXPECT_EQ(serve_port_manager(opcode, cut).what, reply::kind::reject) << opcode << ", " << size;
    }
    for (const uint32 num_range : {0u, 2u, 0x20000001u, 0xFFFFFFFFu}) {
      std::vector<std::byte> lying = good;
      const be32 on_wire = num_range;
      std::memcpy(lying.data() + 8, &on_wire, 4);
      EXPECT_EQ(serve_port_manager(opcode, lying).what, reply::kind::reject) << opcode << ", " << num_range;
    }
    std::vector<std::byte> longer = good;
    longer.push_back({});
    EXPECT_EQ(serve_port_manager(opcode, longer).what, reply::kind::reject) << opcode;
  }
}

TEST_F(InterfaceRequests, SubInterfaceThatCanBeMadeDoesNotExistYet) {
  EXPECT_EQ(status(intent::create, sub(8)), 0x40290037u);
  EXPECT_EQ(status(intent::create, {{sub(1), sub(4094)}}), 0x4029003Cu);
  EXPECT_EQ(status(intent::create, sub(7)), 0u) << "it exists";
  EXPECT_EQ(status(intent::create, {{sub(6), sub(7)}}), 0x40290037u) << "one of them is missing";
}

TEST_F(InterfaceRequests, EverySubInterfaceOfARangeCounts) {
  interface far;
  far.if_index = sub(9);
  the_machine().add(far);

  EXPECT_EQ(status(intent::use, {{sub(7), sub(9)}}), 0u) << "the ends exist";
  EXPECT_EQ(status(intent::create, {{sub(7), sub(9)}}), 0x40290037u) << "number 8 can be made";
}

TEST_F(InterfaceRequests, SubInterfacesNeedARoutedPortThatIsAlone) {
  interface& routed = *the_machine().find(names_.routed_port);

  EXPECT_EQ(status(intent::create, ethernet_index(IF_TYPE_ETHERNET, 0, 2, 5)), 0x402900EEu) << "always switched";
  routed.settings.layer = 2;
  EXPECT_EQ(status(intent::create, sub(8)), 0x402900EEu);
  routed.settings.layer = 3;
  routed.settings.channel = names_.channel;
  EXPECT_EQ(status(intent::create, sub(8)), 0x40290015u);
  EXPECT_EQ(status(intent::create, ethernet_index(IF_TYPE_ETHERNET_L3, 1, 9, 8)), 0x40290037u) << "no such port";
}

TEST_F(InterfaceRequests, LastSubInterfaceNumberIsInternal) {
  EXPECT_EQ(status(intent::create, sub(4095)), 0x402900F3u);
  EXPECT_EQ(status(intent::create, {{sub(4090), sub(4095)}}), 0x402900F3u);
  EXPECT_EQ(status(intent::use, sub(4095)), 0x40290037u) << "who does not create it only learns that it is not there";
}

TEST_F(InterfaceRequests, AThousandSubInterfacesAndNoMore) {
  // One exists.
  EXPECT_EQ(status(intent::create, {{sub(1001), sub(1999)}}), 0x40290037u);
  EXPECT_EQ(status(intent::create, {{sub(1001), sub(2000)}}), 0x4029003Cu);
  EXPECT_EQ(status(intent::create, {{sub(1001), sub(1500)}, {sub(2001), sub(2500)}}), 0x4029003Cu);
}

TEST_F(InterfaceRequests, EveryLoopbackOfARangeCounts) {
  interface far;
  far.if_index = names_.loopback + 2;
  the_machine().add(far);

  EXPECT_EQ(status(intent::use, {{names_.loopback, names_.loopback + 2}}), 0u) << "the ends exist";
  EXPECT_EQ(status(intent::create, {{names_.loopback, names_.loopback + 2}}), 0x40290037u)
      << "the one between is missing";
  EXPECT_EQ(status(intent::create, names_.loopback), 0u);
  EXPECT_EQ(status(intent::create, {{first_index_of(IF_TYPE_LOOPBACK), last_index_of(IF_TYPE_LOOPBACK)}}), 0x40290037u);
}

// Callers delete loopbacks when the status is that there are none.
TEST_F(InterfaceRequests, OnlySubInterfacesAreThePortManagersToDelete) {
  EXPECT_EQ(status(intent::remove, sub(7)), 0u);
  EXPECT_EQ(status(intent::remove, names_.loopback), 0x40290037u);
  for (const if_index_t permanent : {names_.first_port, names_.routed_port, names_.channel, names_.mgmt})
    EXPECT_EQ(status(intent::remove, permanent), 0x40290003u);
}

// Through the client functions, as commands use them.
class InterfaceConfiguration : public InterfaceRequests {
 protected:
  InterfaceConfiguration() {
    transport_register(all_services());
    forget_changes();
  }
  ~InterfaceConfiguration() override { transport_close_queue(q_); }

  static intf_range_t named(const std::vector<pair>& pairs) {
    intf_range_t ranges{};
    ranges.size = sizeof ranges;
    for (const pair& it : pairs) ranges.range[ranges.range_count++] = {it.low, it.high};
    return ranges;
  }

  uint32 sub_interfaces(uint32 create, const std::vector<pair>& pairs) {
    const intf_range_t ranges = named(pairs);
    return pm_cli_config_sub_interface(q_, create, 0x800000, &ranges, 120);
  }
  uint32 loopbacks(uint32 create, const std::vector<pair>& pairs) {
    const intf_range_t ranges = named(pairs);
    return pm_cli_config_loopback_interface(q_, create, 0x4000, &ranges, 120);
  }

  // The interfaces of a kind as the port manager lists them.
  std::vector<if_index_t> listed(if_index_type_t type, bool startup = false) {
    mts_msg_ref_t message{};
    EXPECT_EQ(startup ? pm_get_startup_if_index_listing("/startup", type, q_, &message, 60)
                      : pm_get_if_index_listing(type, q_, &message, 60),
              0);
    std::vector<be32> words(mts_payload_size(&message) / 4);
    std::memcpy(words.data(), mts_payload_get(&message), words.size() * 4);
    mts_drop(q_, &message);
    EXPECT_EQ(words.at(0), words.size() - 1);
    return {words.begin() + 1, words.end()};
  }

  mts_q_handle_t q_ = transport_open_queue();
};

TEST_F(InterfaceConfiguration, CreatedSubInterfacesAreListedAndVerified) {
  ASSERT_EQ(sub_interfaces(1, {{sub(6), sub(8)}, {sub(20), sub(20)}}), 0u);

  EXPECT_EQ(listed(IF_TYPE_ETHERNET_L3),
            (std::vector<if_index_t>{names_.routed_port, sub(6), sub(7), sub(8), sub(20)}));
  EXPECT_EQ(status(intent::create, {{sub(6), sub(8)}}), 0u);
  EXPECT_EQ(the_machine().find(sub(7))->encapsulation_vlan, 70) << "what existed stays as it was";
}

TEST_F(InterfaceConfiguration, StartupConfigurationStaysAsItWasLoaded) {
  ASSERT_EQ(sub_interfaces(1, {{sub(8), sub(8)}}), 0u);
  ASSERT_EQ(sub_interfaces(0, {{sub(7), sub(7)}}), 0u);

  EXPECT_EQ(listed(IF_TYPE_ETHERNET_L3), (std::vector<if_index_t>{names_.routed_port, sub(8)}));
  EXPECT_EQ(listed(IF_TYPE_ETHERNET_L3, true), (std::vector<if_index_t>{names_.routed_port, sub(7)}));
}

TEST_F(InterfaceConfiguration, NewSubInterfaceWorksAsItsParentDoes) {
  interface& parent = *the_machine().find(names_.routed_port);
  parent.oper_state = 1;
  parent.settings.mtu_bytes = 9000;
  parent.bandwidth_kbps = 10'000'000;
  parent.burned_in_mac = {2, 0, 0, 0, 0, 9};

  ASSERT_EQ(sub_interfaces(1, {{sub(8), sub(8)}}), 0u);

  const interface& made = *the_machine().find(sub(8));
  EXPECT_EQ(made.settings.layer, 3u);
  EXPECT_EQ(made.oper_state, 1);
  EXPECT_EQ(made.state_reason, 2) << "none";
  EXPECT_EQ(made.settings.mtu_bytes, 9000);
  EXPECT_EQ(made.bandwidth_kbps, 10'000'000u);
  EXPECT_EQ(made.burned_in_mac, (mac_address{2, 0, 0, 0, 0, 9}));
}

TEST_F(InterfaceConfiguration, NewSubInterfaceOfAPortThatIsDownIsDown) {
  the_machine().find(names_.routed_port)->oper_state = 2;

  ASSERT_EQ(sub_interfaces(1, {{sub(8), sub(8)}}), 0u);

  EXPECT_EQ(the_machine().find(sub(8))->oper_state, 2);
  EXPECT_EQ(the_machine().find(sub(8))->state_reason, 26) << "parent down";
}

TEST_F(InterfaceConfiguration, NothingIsCreatedUnlessAllOfItCan) {
  const auto before = listed(IF_TYPE_NONE);

  EXPECT_EQ(sub_interfaces(1, {{sub(8), sub(8)}, {sub(4095), sub(4095)}}), 0x402900F3u);
  EXPECT_EQ(sub_interfaces(1, {{sub(8), sub(8)}, {sub(10), sub(9)}}), 0x4029000Au);
  EXPECT_EQ(sub_interfaces(1, {{sub(1001), sub(2000)}}), 0x4029003Cu);
  EXPECT_EQ(sub_interfaces(1, {{names_.nobody + 1, names_.nobody + 1}}), 0x40290037u) << "a part of a missing port";
  EXPECT_EQ(sub_interfaces(1, {{names_.first_port, names_.first_port}}), 0x40290003u) << "no sub-interface";
  EXPECT_EQ(sub_interfaces(1, {{names_.loopback, names_.loopback}}), 0x40290003u);

  EXPECT_EQ(listed(IF_TYPE_NONE), before);
}

TEST_F(InterfaceConfiguration, SubInterfacesAreDeleted) {
  ASSERT_EQ(sub_interfaces(1, {{sub(8), sub(12)}}), 0u);
  the_machine().find(names_.third_port)->tracked = {sub(9), names_.routed_port};

  EXPECT_EQ(sub_interfaces(0, {{sub(7), sub(10)}}), 0u);

  EXPECT_EQ(listed(IF_TYPE_ETHERNET_L3), (std::vector<if_index_t>{names_.routed_port, sub(11), sub(12)}));
  EXPECT_EQ(the_machine().find(names_.third_port)->tracked, (std::vector<if_index_t>{names_.routed_port}));
}

TEST_F(InterfaceConfiguration, NothingIsDeletedUnlessAllOfItExists) {
  const auto before = listed(IF_TYPE_NONE);

  EXPECT_EQ(sub_interfaces(0, {{sub(7), sub(7)}, {sub(8), sub(9)}}), 0x40290037u);
  EXPECT_EQ(sub_interfaces(0, {{names_.routed_port, names_.routed_port}}), 0x40290003u) << "a port stays";
  EXPECT_EQ(loopbacks(0, {{sub(7), sub(7)}}), 0x40290003u);

  EXPECT_EQ(listed(IF_TYPE_NONE), before);
}

TEST_F(InterfaceConfiguration, LoopbacksAreCreatedAndDeleted) {
  const if_index_t third = names_.loopback;

  ASSERT_EQ(loopbacks(1, {{third - 1, third + 1}}), 0u);
  EXPECT_EQ(listed(IF_TYPE_LOOPBACK), (std::vector<if_index_t>{third - 1, third, third + 1}));
  const interface& made = *the_machine().find(third + 1);
  EXPECT_EQ(made.settings.layer, 3u);
  EXPECT_EQ(made.oper_state, 1);

  ASSERT_EQ(loopbacks(0, {{third, third + 1}}), 0u);
  EXPECT_EQ(listed(IF_TYPE_LOOPBACK), (std::vector<if_index_t>{third - 1}));
  EXPECT_EQ(loopbacks(0, {{third, third}}), 0x40290037u);
}

TEST_F(InterfaceConfiguration, WhatCommandsCreatedAndDeletedIsKnown) {
  const auto is_created = [](if_index_t if_index) { return the_machine().find(if_index)->is_created; };
  ASSERT_EQ(sub_interfaces(1, {{sub(7), sub(9)}}), 0u);
  ASSERT_EQ(loopbacks(1, {{names_.loopback, names_.loopback + 1}}), 0u);
  EXPECT_FALSE(is_created(sub(7))) << "it was there";
  EXPECT_TRUE(is_created(sub(8)));
  EXPECT_FALSE(is_created(names_.loopback));
  EXPECT_TRUE(is_created(names_.loopback + 1));

  ASSERT_EQ(sub_interfaces(0, {{sub(7), sub(8)}}), 0u);
  ASSERT_EQ(loopbacks(0, {{names_.loopback, names_.loopback + 1}}), 0u);
  EXPECT_EQ(the_machine().deleted, (std::vector<if_index_t>{names_.loopback, sub(7)})) << "not what commands created";

  ASSERT_EQ(loopbacks(1, {{names_.loopback, names_.loopback}}), 0u);
  EXPECT_TRUE(is_created(names_.loopback)) << "it is another one";
  ASSERT_EQ(loopbacks(0, {{names_.loopback, names_.loopback}}), 0u);
  EXPECT_EQ(the_machine().deleted.size(), 2u) << "each once";
}

TEST_F(InterfaceConfiguration, ANewSubInterfaceIsSetAsItsParent) {
  port_settings& parent = the_machine().find(names_.routed_port)->settings;
  parent.mtu_bytes = 9000;
  parent.admin_speed_mbps = 1000;
  parent.admin_duplex = PM_PORT_DUPLEX_HALF;
  ASSERT_EQ(sub_interfaces(1, {{sub(8), sub(8)}}), 0u);
  const port_settings& made = the_machine().find(sub(8))->settings;
  EXPECT_EQ(made.mtu_bytes, 9000);
  EXPECT_EQ(made.admin_speed_mbps, 1000u);
  EXPECT_EQ(made.admin_duplex, PM_PORT_DUPLEX_HALF);
}

TEST_F(InterfaceConfiguration, CreatingIsTakenBack) {
  begin_changes({});
  ASSERT_EQ(sub_interfaces(1, {{sub(7), sub(8)}}), 0u);
  EXPECT_EQ(changed_ports(the_machine(), 1), (std::vector<if_index_t>{sub(8)}));
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{sub(8)}));
  EXPECT_EQ(the_machine().find(sub(8)), nullptr);
  EXPECT_NE(the_machine().find(sub(7)), nullptr) << "it was there";
  EXPECT_TRUE(the_machine().deleted.empty());
}

TEST_F(InterfaceConfiguration, DeletingIsTakenBackWithAllSettings) {
  the_machine().find(names_.loopback)->settings.description = "of the lab";
  begin_changes({});
  ASSERT_EQ(loopbacks(0, {{names_.loopback, names_.loopback}}), 0u);
  EXPECT_EQ(changed_ports(the_machine(), 1), (std::vector<if_index_t>{names_.loopback}));
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{names_.loopback}));
  ASSERT_NE(the_machine().find(names_.loopback), nullptr);
  EXPECT_EQ(the_machine().find(names_.loopback)->settings.description, "of the lab");
  EXPECT_TRUE(the_machine().deleted.empty());
  EXPECT_TRUE(take_change_back(the_machine()).applied.empty()) << "once";
}

TEST_F(InterfaceConfiguration, WhatWasMadeAnewStaysWhenItsDeletionIsTakenBack) {
  begin_changes({});
  ASSERT_EQ(loopbacks(0, {{names_.loopback, names_.loopback}}), 0u);
  interface anew;
  anew.if_index = names_.loopback;
  anew.settings.description = "by somebody else";
  the_machine().add(anew);
  EXPECT_TRUE(take_change_back(the_machine()).applied.empty());
  EXPECT_EQ(the_machine().find(names_.loopback)->settings.description, "by somebody else");
}

TEST_F(InterfaceConfiguration, EarlierStepsAreTakenBackAfterADeletion) {
  begin_changes({});
  note_change(*the_machine().find(names_.first_port));
  the_machine().find(names_.first_port)->settings.description = "changed";
  begin_changes({});
  ASSERT_EQ(loopbacks(1, {{names_.loopback + 1, names_.loopback + 1}}), 0u);
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{names_.loopback + 1}));
  EXPECT_EQ(the_machine().find(names_.first_port)->settings.description, "changed");
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{names_.first_port}));
}

// A source that creates and deletes itself. It notes what it is asked for and leaves the model alone.
struct noting_source : switch_source {
  bool allows_sub_interfaces_of_switched_ports() const override { return true; }
  uint32 create_interfaces(machine&, std::span<const if_index_t> missing) override { return note(missing); }
  uint32 delete_interfaces(machine&, std::span<const if_index_t> doomed) override { return note(doomed); }
  uint32 restore_interface(machine&, const interface& deleted) override { return note({&deleted.if_index, 1}); }

  uint32 note(std::span<const if_index_t> interfaces) {
    asked.assign(interfaces.begin(), interfaces.end());
    return answer;
  }
  std::vector<if_index_t> asked;
  uint32 answer = 0;
};

// The same, and the model follows what it does not refuse.
struct following_source : noting_source {
  uint32 create_interfaces(machine& model, std::span<const if_index_t> missing) override {
    return note(missing) != 0 ? answer : switch_source::create_interfaces(model, missing);
  }
  uint32 delete_interfaces(machine& model, std::span<const if_index_t> doomed) override {
    return note(doomed) != 0 ? answer : switch_source::delete_interfaces(model, doomed);
  }
  uint32 restore_interface(machine& model, const interface& deleted) override {
    return note({&deleted.if_index, 1}) != 0 ? answer : switch_source::restore_interface(model, deleted);
  }
};

class InterfacesOfASource : public InterfaceConfiguration {
 protected:
  InterfacesOfASource() { use(std::make_unique<noting_source>()); }

  void use(std::unique_ptr<noting_source> source) {
    source_ = source.get();
    set_source(std::move(source));
  }

  noting_source* source_ = nullptr;
};

TEST_F(InterfacesOfASource, IsAskedForThoseThatAreMissing) {
  const auto before = listed(IF_TYPE_NONE);
  EXPECT_EQ(sub_interfaces(1, {{sub(6), sub(8)}, {sub(20), sub(20)}, {sub(8), sub(8)}}), 0u);
  EXPECT_EQ(source_->asked, (std::vector<if_index_t>{sub(6), sub(8), sub(20)}));
  EXPECT_EQ(listed(IF_TYPE_NONE), before) << "the model is the source's";

  source_->asked.clear();
  EXPECT_EQ(loopbacks(1, {{names_.loopback, names_.loopback}}), 0u);
  EXPECT_TRUE(source_->asked.empty()) << "it is there";
}

TEST_F(InterfacesOfASource, KnowsItselfWhichPortsAreSwitched) {
  the_machine().find(names_.routed_port)->settings.layer = 2;
  EXPECT_EQ(status(intent::create, sub(8)), 0x40290037u);
  EXPECT_EQ(sub_interfaces(1, {{sub(8), sub(8)}}), 0u);
}

TEST_F(InterfacesOfASource, IsAskedToDelete) {
  EXPECT_EQ(sub_interfaces(0, {{sub(7), sub(7)}}), 0u);
  EXPECT_EQ(source_->asked, (std::vector<if_index_t>{sub(7)}));
  EXPECT_NE(the_machine().find(sub(7)), nullptr) << "the model is the source's";
  EXPECT_TRUE(the_machine().deleted.empty());
}

TEST_F(InterfacesOfASource, IsAskedToTakeBackWhatItCreatedAndDeleted) {
  use(std::make_unique<following_source>());
  begin_changes({});
  ASSERT_EQ(loopbacks(1, {{names_.loopback + 1, names_.loopback + 1}}), 0u);
  source_->asked.clear();
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{names_.loopback + 1}));
  EXPECT_EQ(source_->asked, (std::vector<if_index_t>{names_.loopback + 1}));

  the_machine().find(names_.loopback)->settings.description = "of the lab";
  begin_changes({});
  ASSERT_EQ(loopbacks(0, {{names_.loopback, names_.loopback}}), 0u);
  EXPECT_EQ(take_change_back(the_machine()).applied, (std::vector<if_index_t>{names_.loopback}));
  EXPECT_EQ(the_machine().find(names_.loopback)->settings.description, "of the lab");

  begin_changes({});
  ASSERT_EQ(loopbacks(0, {{names_.loopback, names_.loopback}}), 0u);
  source_->answer = 0x40F00001;
  const changes_made made = take_change_back(the_machine());
  EXPECT_TRUE(made.applied.empty());
  ASSERT_EQ(made.refused.size(), 1u);
  EXPECT_EQ(made.refused[0].if_index, names_.loopback);
  EXPECT_EQ(made.refused[0].status, 0x40F00001u);
}

TEST_F(InterfacesOfASource, RefusesWithAStatusOfItsOwn) {
  source_->answer = 0x40F00001;
  EXPECT_EQ(sub_interfaces(1, {{sub(8), sub(8)}}), 0x40F00001u);
  EXPECT_EQ(sub_interfaces(0, {{sub(7), sub(7)}}), 0x40F00001u);
  EXPECT_EQ(loopbacks(1, {{names_.loopback + 1, names_.loopback + 1}}), 0x40F00001u);
  EXPECT_EQ(loopbacks(0, {{names_.loopback, names_.loopback}}), 0x40F00001u);
}

TEST_F(InterfaceConfiguration, LoopbacksAreLimited) {
  const if_index_t first = numbered_index(IF_TYPE_LOOPBACK, 100);
  EXPECT_EQ(loopbacks(1, {{first, last_index_of(IF_TYPE_LOOPBACK)}}), 0x4029000Au);
  EXPECT_EQ(loopbacks(1, {{first, first + 1023}}), 0x4029000Au) << "one exists already";
  EXPECT_EQ(loopbacks(1, {{first, first + 1022}}), 0u);
  EXPECT_EQ(listed(IF_TYPE_LOOPBACK).size(), 1024u);
}

TEST_F(InterfaceConfiguration, RequestThatNeitherCreatesNorDeletesIsRejected) {
  const auto neither = request(intent::use, {{sub(7), sub(7)}});
  auto both = neither;
  both[3] = both[7] = std::byte{1};
  for (const mts_opc_t opcode : {331u, 332u}) {
    EXPECT_EQ(serve_port_manager(opcode, neither).what, reply::kind::reject);
    EXPECT_EQ(serve_port_manager(opcode, both).what, reply::kind::reject);
  }
}

TEST_F(InterfaceConfiguration, RangesOfTheShellAreBelievedOnlyAsFarAsTheyReach) {
  intf_range_t ranges = named({{sub(8), sub(8)}});
  ranges.range_count = 65;
  EXPECT_EQ(pm_cli_config_sub_interface(q_, 1, 0x800000, &ranges, 120), 0x40290000u);
  EXPECT_EQ(pm_cli_config_sub_interface(q_, 1, 0x800000, nullptr, 120), 0x40290000u);

  ranges.range_count = 64;
  for (auto& range : ranges.range) range = {sub(8), sub(8)};
  EXPECT_EQ(pm_cli_config_sub_interface(q_, 1, 0x800000, &ranges, 120), 0u);
  EXPECT_EQ(listed(IF_TYPE_ETHERNET_L3).size(), 3u);
}

// Ports of a range, and what they carry.

TEST_F(InterfaceConfiguration, PortInfoOfARange) {
  mts_msg_ref_t message{};
  ASSERT_EQ(pm_get_port_info_range(q_, names_.first_port, names_.third_port, &message), 0);
  uint32 count = 99;
  pm_port_info_t* ports = nullptr;

  ASSERT_EQ(pm_parse_get_port_info_range(&message, &count, &ports), 0);
  EXPECT_EQ(mts_drop(q_, &message), 0);

  const heap_block<pm_port_info_t> block(ports);
  ASSERT_EQ(count, 3u);
  EXPECT_EQ(ports[0].if_index, names_.first_port);
  EXPECT_EQ(ports[0].port_vsan, 17u);
  EXPECT_EQ(ports[2].if_index, names_.third_port);
}

TEST_F(InterfaceConfiguration, PortInfoPassesErrorsOn) {
  mts_msg_ref_t message{7, 7};
  EXPECT_EQ(pm_get_port_info_range(q_, names_.nobody, names_.nobody, &message), 0x40290037);
  EXPECT_EQ(message.id, 0u);
  EXPECT_EQ(pm_get_port_info_range(q_, names_.second_port, names_.first_port, &message), 0x4029000A);
  EXPECT_EQ(pm_get_port_info_range(-5, names_.first_port, names_.first_port, &message), -1);
  EXPECT_EQ(pm_get_port_info_range(q_, names_.first_port, names_.first_port, nullptr), 0x40290000);
}

TEST_F(InterfaceConfiguration, PortInfoOfNoMessageIsAFailure) {
  const mts_msg_ref_t empty{};
  uint32 count = 99;
  pm_port_info_t unused;
  pm_port_info_t* ports = &unused;

  EXPECT_EQ(pm_parse_get_port_info_range(&empty, &count, &ports), 0x40290000);

  EXPECT_EQ(count, 0u);
  EXPECT_EQ(ports, nullptr);
  EXPECT_EQ(pm_parse_get_port_info_range(nullptr, &count, &ports), 0x40290000);
}

TEST_F(InterfaceConfiguration, TrunkMembershipReplacesTheCallersSet) {
  vsan_bitset_t carried{};
  carried.bits[7] = 0xFF;

  ASSERT_EQ(vsan_get_port_trunking_membership(q_, names_.old_channel, &carried), 0);
  EXPECT_EQ(carried.bits[0], 0x40) << "VSAN 1";
  EXPECT_EQ(carried.bits[7], 0);

  carried.bits[7] = 0xFF;
  EXPECT_EQ(vsan_get_port_trunking_membership(q_, names_.mgmt, &carried), 0x40290003);
  EXPECT_EQ(carried.bits[7], 0xFF) << "a failure leaves the set alone";
  EXPECT_EQ(vsan_get_port_trunking_membership(q_, names_.old_channel, nullptr), 0x40290000);
}

TEST_F(InterfaceConfiguration, OnePortManagerOwnsEverything) {
  EXPECT_EQ(pm_get_mts_sap(names_.first_port), 179u);
  EXPECT_EQ(pm_get_mts_sap(names_.loopback), 179u);
  EXPECT_EQ(pm_get_mts_sap(0), 179u);
}

}  // namespace
}  // namespace host
