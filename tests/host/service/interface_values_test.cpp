// The service of values, and its client functions.
#include "messages/calls/interface_values.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "host/client/client_fixture.h"
#include "host/switch/stopped_clock.h"
#include "messages/messages.h"
#include "platform/port_manager.h"
#include "source/chassis/chassis_source.h"
#include "source/chassis/giant.h"
#include "source/chassis/switch_file.h"
#include "switch/clock.h"
#include "switch/source.h"
#include "transport/failures.h"

namespace host {
namespace {

using bytes = std::vector<std::byte>;

// As a reader of this file would write the value down.
std::string written(const interface_value& value) {
  std::string text;
  const auto add = [&text](auto number) { text += (text.empty() ? "" : " ") + std::to_string(number); };
  switch (value.kind) {
    case value_kind::absent: return "absent " + std::to_string(static_cast<int>(value.why_absent()));
    case value_kind::text:
    case value_kind::decimal: return std::string(value.text());
    case value_kind::mac:
    case value_kind::ipv4:
      for (const std::byte it : value.bytes) add(static_cast<int>(it));
      return text;
    case value_kind::membership: {
      const vlan_membership held = value.membership();
      add(static_cast<int>(held.mode));
      add(uint32{held.access});
      add(uint32{held.native});
      [[fallthrough]];
    }
    case value_kind::interfaces:
    case value_kind::numbers:
    case value_kind::vlans:
      for (std::size_t i = 0; i < value.num_entries(); ++i) add(value.entry(i));
      return text;
    default: return std::to_string(value.number());
  }
}

std::vector<property> every_property() {
  std::vector<property> all;
  for (uint16 number = 1; number < kNumProperties; ++number) all.push_back(static_cast<property>(number));
  return all;
}

class ValuesService : public Clients {
 protected:
  std::string value_of(if_index_t if_index, property of) {
    const auto answer = ask_interface_values(q_, if_index, std::array{of}, false);
    if (!answer) return "no answer";
    const interface_value* const value = answer->find(of);
    return value == nullptr ? "no value" : written(*value);
  }
};

constexpr const char* kNone = "absent 0";
constexpr const char* kNotSupported = "absent 1";
constexpr const char* kNoPermission = "absent 2";

TEST_F(ValuesService, IdentityAndStateAreThoseOfTheModel) {
  EXPECT_EQ(value_of(names_.first_port, property::interface), std::to_string(names_.first_port));
  EXPECT_EQ(value_of(names_.first_port, property::interface_index), std::to_string(names_.first_port));
  EXPECT_EQ(value_of(names_.first_port, property::description), "uplink to core");
  EXPECT_EQ(value_of(names_.second_port, property::description), kNone);
  EXPECT_EQ(value_of(names_.first_port, property::hardware), "100/1000 Ethernet");
  EXPECT_EQ(value_of(names_.loopback, property::hardware), "Loopback");
  EXPECT_EQ(value_of(names_.first_port, property::burned_in_address), "2 17 34 51 68 85");
  EXPECT_EQ(value_of(names_.routed_port, property::ip_address), "192 0 2 1");
  EXPECT_EQ(value_of(names_.routed_port, property::prefix_length_bits), "24");
  EXPECT_EQ(value_of(names_.first_port, property::ip_address), kNone);
  EXPECT_EQ(value_of(names_.first_port, property::state), "1");
  EXPECT_EQ(value_of(names_.first_port, property::state_reason), "9");
  EXPECT_EQ(value_of(names_.first_port, property::last_link_flapped), "1600000000");
  EXPECT_EQ(value_of(names_.second_port, property::last_link_flapped), kNone) << "never";
  EXPECT_EQ(value_of(names_.first_port, property::link_changes), kNone) << "simulated switches do not count them";
  EXPECT_EQ(value_of(names_.first_port, property::interface_resets), "11");
  EXPECT_EQ(value_of(names_.first_port, property::device), kNone) << "no device of a kernel";
}

TEST_F(ValuesService, OtherInterfacesAreNamedByTheirIndex) {
  EXPECT_EQ(value_of(names_.first_port, property::member_of), std::to_string(names_.channel));
  EXPECT_EQ(value_of(names_.third_port, property::member_of), kNone);
  EXPECT_EQ(value_of(names_.channel, property::members),
            std::to_string(names_.first_port) + " " + std::to_string(names_.second_port));
  EXPECT_EQ(value_of(names_.old_channel, property::members), "") << "a list without entries";
  EXPECT_EQ(value_of(names_.first_port, property::members), kNone);
  EXPECT_EQ(value_of(names_.channel, property::multi_chassis_status), "peer is alive");
}

TEST_F(ValuesService, SettingsAreNumbersOfThePortManager) {
  EXPECT_EQ(value_of(names_.first_port, property::mtu_bytes), "9216");
  EXPECT_EQ(value_of(names_.first_port, property::bandwidth_kbps), "1000000");
  EXPECT_EQ(value_of(names_.first_port, property::delay_usec), "120");
  EXPECT_EQ(value_of(names_.first_port, property::port_mode), std::to_string(PM_PORT_MODE_TRUNK));
  EXPECT_EQ(value_of(names_.first_port, property::duplex), "1");
  EXPECT_EQ(value_of(names_.first_port, property::speed_mbps), "1000");
  EXPECT_EQ(value_of(names_.second_port, property::speed_mbps), kNone) << "not negotiated yet";
  EXPECT_EQ(value_of(names_.first_port, property::debounce), "enable");
  EXPECT_EQ(value_of(names_.first_port, property::debounce_msec), "300");
  EXPECT_EQ(value_of(names_.first_port, property::input_flow_control), "0") << "5 has no bits of the receive side";
  EXPECT_EQ(value_of(names_.first_port, property::output_flow_control), "5");
  EXPECT_EQ(value_of(names_.first_port, property::admin_input_flow_control), "10");
  EXPECT_EQ(value_of(names_.first_port, property::admin_output_flow_control), "0");
  EXPECT_EQ(value_of(names_.first_port, property::switchport_monitor), "1");
  EXPECT_EQ(value_of(names_.first_port, property::broadcast_level_percent), "30.05");
  EXPECT_EQ(value_of(names_.first_port, property::unicast_level_percent), "50.07");
  EXPECT_EQ(value_of(names_.sub_port, property::encapsulation), "802.1Q Virtual LAN, Vlan ID 70");
  EXPECT_EQ(value_of(names_.sub_port, property::encapsulation_vlan), "70");
  EXPECT_EQ(value_of(names_.first_port, property::encapsulation), "ARPA");
  EXPECT_EQ(value_of(names_.first_port, property::encapsulation_vlan), kNone);
}

TEST_F(ValuesService, VlansAreAMembership) {
  interface& trunk = *the_machine().find(names_.first_port);
  trunk.settings.allowed_vlans = {10, 11, 12, 20};
  EXPECT_EQ(value_of(names_.first_port, property::vlan), "2 0 13 10 12 20 20") << "trunk, native, first and last VLANs";
  EXPECT_EQ(value_of(names_.first_port, property::allowed_vlans), "10 12 20 20");
  EXPECT_EQ(value_of(names_.first_port, property::trunk_status), "trnk-bndl");
  EXPECT_EQ(value_of(names_.first_port, property::forwarding_vlans), "10 12 20 20");
  trunk.blocked_vlans = {11};
  EXPECT_EQ(value_of(names_.first_port, property::forwarding_vlans), "10 10 12 12 20 20");
  EXPECT_EQ(value_of(names_.third_port, property::vlan), "1 1 0") << "access, VLAN 1";
  EXPECT_EQ(value_of(names_.routed_port, property::vlan), "3 0 0") << "routed";
  EXPECT_EQ(value_of(names_.loopback, property::vlan), "3 0 0");
}

TEST_F(ValuesService, CountersAreWholeAndSumsAreThoseOfDisplays) {
  EXPECT_EQ(value_of(names_.first_port, property::input_packets), "4294967319") << "64 bits";
  EXPECT_EQ(value_of(names_.first_port, property::input_unicast_packets), "4294967296");
  EXPECT_EQ(value_of(names_.first_port, property::output_packets), "9123");
  EXPECT_EQ(value_of(names_.first_port, property::output_trunk_packets), "9123");
  EXPECT_EQ(value_of(names_.first_port, property::alignment_errors), "8006") << "runts and jabbers: 4002 and 4004";
  EXPECT_EQ(value_of(names_.first_port, property::carrier_errors), "8021") << "4010 and 4011";
  EXPECT_EQ(value_of(names_.first_port, property::input_errors), "2002");
  EXPECT_EQ(value_of(names_.first_port, property::last_counters_cleared), "1700000000");
}

TEST_F(ValuesService, WhatIsNotKnownIsNotSupported) {
  EXPECT_EQ(value_of(names_.first_port, property::symbol_errors), kNotSupported);
  EXPECT_EQ(value_of(names_.first_port, property::input_drop_events), kNotSupported) << "a sum with the unknown";
  EXPECT_EQ(value_of(names_.third_port, property::input_bytes), kNotSupported);
  interface& port = *the_machine().find(names_.first_port);
  port.settings.access_vlan.reset();
  port.delay_usec.reset();
  port.capabilities.speeds.reset();
  EXPECT_EQ(value_of(names_.first_port, property::vlan), kNotSupported);
  EXPECT_EQ(value_of(names_.first_port, property::delay_usec), kNotSupported);
  EXPECT_EQ(value_of(names_.first_port, property::speeds_mbps), kNotSupported);
  EXPECT_EQ(value_of(names_.first_port, property::hardware), kNotSupported) << "it begins with the speeds";
}

// The ring of the small machine: sample i has 6000 + i bytes received. The newest is sample 2, the one five minutes
// older sample 5.
TEST_F(ValuesService, RatesAreTheFiveMinutesOfTheRing) {
  interface& port = *the_machine().find(names_.first_port);
  port.stats.rate_ring->samples[2] = {606'005, 6105, 36'205, 6305};
  EXPECT_EQ(value_of(names_.first_port, property::load_interval_seconds), "300");
  EXPECT_EQ(value_of(names_.first_port, property::input_bytes_per_second), "2000") << "600000 bytes in 300 seconds";
  EXPECT_EQ(value_of(names_.first_port, property::input_bits_per_second), "16000");
  EXPECT_EQ(value_of(names_.first_port, property::input_packets_per_second), "100");
  EXPECT_EQ(value_of(names_.first_port, property::output_bits_per_second), "0");
}

// 5001 bytes per second are the small machine's average.
TEST_F(ValuesService, WithoutARingRatesAreThoseOfTheLastMinute) {
  the_machine().find(names_.first_port)->stats.rate_ring.reset();
  EXPECT_EQ(value_of(names_.first_port, property::load_interval_seconds), "60");
  EXPECT_EQ(value_of(names_.first_port, property::input_bits_per_second), "40008");
}

TEST_F(ValuesService, RatesOfAPortThatCanBeRoutedAreThoseOfHalfAMinute) {
  EXPECT_EQ(value_of(names_.routed_port, property::load_interval_seconds), "30");
  EXPECT_EQ(value_of(names_.routed_port, property::input_bytes_per_second), "5001");
  EXPECT_EQ(value_of(names_.routed_port, property::input_bits_per_second), "40008");
  EXPECT_EQ(value_of(names_.routed_port, property::output_packets_per_second), "5004");
  EXPECT_EQ(value_of(names_.loopback, property::load_interval_seconds), kNone);
  EXPECT_EQ(value_of(names_.first_port, property::rate_interval_seconds), "30")
      << "tables of rates have other averages";
  EXPECT_EQ(value_of(names_.loopback, property::rate_interval_seconds), kNone);
  EXPECT_EQ(value_of(names_.loopback, property::input_bytes_per_second), kNone);
}

TEST_F(ValuesService, LoadsAreParts) {
  interface& port = *the_machine().find(names_.first_port);
  port.stats.in_bytes_per_second = 62'500'000;
  port.stats.out_bytes_per_second = 125'000'000;
  EXPECT_EQ(value_of(names_.first_port, property::rx_load_per_255), "127") << "half of 1 Gbit/s";
  EXPECT_EQ(value_of(names_.first_port, property::tx_load_per_255), "255");
  port.stats.in = {.packets = 900, .errors = 100};
  port.stats.out = {.packets = 100, .errors = 0};
  EXPECT_EQ(value_of(names_.first_port, property::reliability_per_255), "230") << "255 less 25";
  port.stats.in_bytes_per_second = std::nullopt;
  EXPECT_EQ(value_of(names_.first_port, property::rx_load_per_255), kNotSupported);
}

TEST_F(ValuesService, MegabytesAreThoseOfTheLoadInterval) {
  statistics& stats = the_machine().find(names_.first_port)->stats;
  stats.in_bytes_per_second = 62'500'000;  // of the last half minute
  rate_samples& ring = stats.rate_ring.emplace();
  ring.samples[5].in_bytes = 600'000'000;
  ring.next = 6;
  EXPECT_EQ(value_of(names_.first_port, property::load_interval_seconds), "300");
  EXPECT_EQ(value_of(names_.first_port, property::input_bits_per_second), "16000000");
  EXPECT_EQ(value_of(names_.first_port, property::input_megabytes_per_second), "2");
  EXPECT_EQ(value_of(names_.loopback, property::input_megabytes_per_second), kNone);
}

TEST_F(ValuesService, ManagementPortsOfSwitchesHaveTheCapabilitiesOfDisplays) {
  EXPECT_EQ(value_of(names_.mgmt, property::speeds_mbps), "10 100 1000");
  EXPECT_EQ(value_of(names_.mgmt, property::duplex_modes), "half,full,auto");
}

TEST_F(ValuesService, CapabilitiesAreListsAndWords) {
  EXPECT_EQ(value_of(names_.first_port, property::model), "MODEL-48X");
  EXPECT_EQ(value_of(names_.first_port, property::speeds_mbps), "100 1000");
  EXPECT_EQ(value_of(names_.first_port, property::duplex_modes), "half,full");
  EXPECT_EQ(value_of(names_.first_port, property::flow_control_modes), "rx-(off/on),tx-(desired)");
  EXPECT_EQ(value_of(names_.first_port, property::rate_modes), "shared");
  EXPECT_EQ(value_of(names_.first_port, property::qos_scheduling), "rx-(22q23t),tx-(24p25q26t)");
  EXPECT_EQ(value_of(names_.first_port, property::udld), "0");
  EXPECT_EQ(value_of(names_.first_port, property::span), "1");
}

TEST_F(ValuesService, AModuleHasItsIdentity) {
  interface& port = *the_machine().find(names_.first_port);
  std::vector<uint8>& image = port.module_in_port->eeprom;
  const std::string vendor = "FAR LIGHT       ";
  std::copy(vendor.begin(), vendor.end(), image.begin() + 20);
  image[12] = 103;
  image[14] = 40;
  EXPECT_EQ(value_of(names_.first_port, property::presence), "present");
  EXPECT_EQ(value_of(names_.first_port, property::vendor), "FAR LIGHT");
  EXPECT_EQ(value_of(names_.first_port, property::bit_rate_mbps), "10300");
  EXPECT_EQ(value_of(names_.first_port, property::length_9um_km), "40");
  image[92] = 104;
  image[96] = 7;
  port.module_in_port->has_tx_fault = true;
  port.module_in_port->has_rx_loss = false;
  EXPECT_EQ(value_of(names_.first_port, property::vendor_extended_id), "7");
  EXPECT_EQ(value_of(names_.first_port, property::diagnostic_monitoring_type), "104");
  EXPECT_EQ(value_of(names_.first_port, property::tx_fault), "1");
  EXPECT_EQ(value_of(names_.first_port, property::rx_loss), "0");
  EXPECT_EQ(value_of(names_.first_port, property::base_checksum_ok), "0");
  EXPECT_EQ(value_of(names_.third_port, property::tx_fault), kNone);
  EXPECT_EQ(value_of(names_.third_port, property::vendor), kNone);
  EXPECT_EQ(value_of(names_.third_port, property::presence), "not applicable");
}

TEST_F(ValuesService, AModuleThatTheUserMayNotReadIsNotAnEmptyCage) {
  the_machine().find(names_.third_port)->is_module_protected = true;
  for (const property of : {property::presence, property::vendor, property::serial_number, property::media_type})
    EXPECT_EQ(value_of(names_.third_port, of), kNoPermission) << static_cast<int>(of);
}

TEST_F(ValuesService, OnlyAManagementPortHasCountersOfADevice) {
  EXPECT_EQ(value_of(names_.first_port, property::kernel_input_packets), kNone);
  the_machine().mgmt_device = "lo";
  EXPECT_NE(value_of(names_.mgmt, property::kernel_input_packets), kNone);
  EXPECT_EQ(value_of(names_.mgmt, property::load_interval_seconds), "60");
  the_machine().mgmt_device = "no-such-device";
  EXPECT_EQ(value_of(names_.mgmt, property::kernel_input_packets), kNone);
}

TEST_F(ValuesService, DisplaysBindSomePropertiesWithoutAService) {
  EXPECT_EQ(value_of(names_.first_port, property::temperature_c), "no value");
  EXPECT_EQ(value_of(names_.first_port, property::rx_power_0), "no value");
  EXPECT_EQ(value_of(names_.first_port, property::none), "no value");
}

TEST_F(ValuesService, AnAnswerHasTheOrderOfItsRequest) {
  const std::array asked = {property::mtu_bytes, property::state, property::description};
  const auto answer = ask_interface_values(q_, names_.first_port, asked, false);
  ASSERT_TRUE(answer);
  ASSERT_EQ(answer->values().size(), 3U);
  for (std::size_t i = 0; i < asked.size(); ++i) EXPECT_EQ(answer->values()[i].of, asked[i]);
}

TEST_F(ValuesService, WhatIsPresentIsLeftOutOnRequest) {
  const std::array asked = {property::state, property::symbol_errors, property::mtu_bytes, property::ip_address};
  const auto answer = ask_interface_values(q_, names_.first_port, asked, true);
  ASSERT_TRUE(answer);
  ASSERT_EQ(answer->values().size(), 2U);
  EXPECT_EQ(answer->values()[0].of, property::symbol_errors);
  EXPECT_EQ(answer->values()[0].why_absent(), absence::not_supported);
  EXPECT_EQ(answer->values()[1].of, property::ip_address);
  EXPECT_EQ(answer->values()[1].why_absent(), absence::none);
}

TEST_F(ValuesService, OnlyWhatIsUnknownIsReportedAsSuch) {
  const std::array asked = {property::state, property::symbol_errors, property::mtu_bytes, property::ip_address};
  const auto unknown = ask_unknown_values(q_, names_.first_port, asked);
  ASSERT_TRUE(unknown);
  EXPECT_TRUE(unknown->has(property::symbol_errors));
  EXPECT_FALSE(unknown->has(property::state));
  EXPECT_FALSE(unknown->has(property::mtu_bytes));
  EXPECT_FALSE(unknown->has(property::ip_address)) << "which is known to be absent";
  EXPECT_FALSE(unknown->has(property::giants)) << "which was not asked for";
}

// ---- What is done for a request -------------------------------------------------------------------------------------

// Notes what the service asks of its source.
struct refreshing_source : switch_source {
  bool update_statistics(interface&, uint32) override {
    ++updates;
    return true;
  }
  void complete(interface&, detail needed) override { completed.push_back(needed); }
  bool knows_all_fields() const override { return false; }

  uint32 updates = 0;
  std::vector<detail> completed;
};

class ValuesOfASource : public ValuesService {
 protected:
  ValuesOfASource() {
    auto source = std::make_unique<refreshing_source>();
    source_ = source.get();
    set_source(std::move(source));
  }
  ~ValuesOfASource() override { set_source(); }

  void ask(const std::vector<property>& asked) { ask_interface_values(q_, names_.first_port, asked, true); }

  refreshing_source* source_;
};

TEST_F(ValuesOfASource, NothingIsBroughtUpToDateForASetting) {
  ask({property::mtu_bytes, property::description});
  EXPECT_EQ(source_->updates, 0U);
  EXPECT_TRUE(source_->completed.empty());
}

TEST_F(ValuesOfASource, StatisticsAreBroughtUpToDateOnce) {
  ask({property::input_bytes, property::rx_load_per_255, property::output_packets});
  EXPECT_EQ(source_->updates, 1U);
  EXPECT_TRUE(source_->completed.empty());
}

TEST_F(ValuesOfASource, DetailsAreCompletedForWhatNeedsThem) {
  ask({property::symbol_errors, property::state_reason, property::vendor, property::model});
  EXPECT_EQ(source_->updates, 1U);
  EXPECT_EQ(source_->completed, (std::vector{detail::link_fault, detail::driver, detail::module, detail::counters}));
  source_->completed.clear();
  ask({property::rx_loss});
  EXPECT_EQ(source_->completed, (std::vector{detail::module, detail::diagnostics}));
}

TEST_F(ValuesOfASource, ASourceSaysWhetherItKnowsAll) {
  EXPECT_EQ(ask_source_knows_all(q_), std::optional(false));
  set_source();
  EXPECT_EQ(ask_source_knows_all(q_), std::optional(true));
}

// ---- Whole switches -------------------------------------------------------------------------------------------------

// A switch that is made from a file knows all values: an absent one is one that there is not.
void expect_that_all_is_known(mts_q_handle_t q) {
  const std::vector<property> all = every_property();
  for (const interface& it : the_machine().interfaces) {
    const auto answer = ask_interface_values(q, it.if_index, all, true);
    ASSERT_TRUE(answer);
    for (const interface_value& value : answer->values())
      EXPECT_EQ(value.why_absent(), absence::none) << it.if_index << ": " << static_cast<int>(value.of);
  }
}

TEST_F(ValuesService, ASwitchFileKnowsAll) {
  for (const char* const file : {"/campus.yaml", "/storage.yaml"}) {
    the_machine() = load_switch_file(PMCLI_SWITCHES + std::string(file));
    set_source(std::make_unique<chassis_source>());
    expect_that_all_is_known(q_);
  }
  set_source();
}

TEST_F(ValuesService, AGiantKnowsAll) {
  the_machine() = make_giant(64, 1'700'000'000);
  set_source(std::make_unique<chassis_source>());
  expect_that_all_is_known(q_);
  set_source();
}

// ---- Requests and answers that are wrong ----------------------------------------------------------------------------

TEST_F(ValuesService, ARequestThatIsCutIsRejected) {
  const std::array asked = {property::state, property::mtu_bytes};
  const bytes request = values_request_for(names_.first_port, asked, false);
  for (std::size_t size = 0; size < request.size(); ++size)
    EXPECT_EQ(serve_interface_values(VALUES_OPC_INTERFACE, std::span(request).first(size)).what, reply::kind::reject)
        << size;
  EXPECT_EQ(serve_interface_values(VALUES_OPC_INTERFACE, request).what, reply::kind::answer);
}

TEST_F(ValuesService, UnknownPropertiesAndOpcodesAreRejected) {
  bytes request = values_request_for(names_.first_port, std::array{property::state}, false);
  const be16 beyond = kNumProperties;
  std::memcpy(request.data() + sizeof(values_request), &beyond, sizeof beyond);
  EXPECT_EQ(serve_interface_values(VALUES_OPC_INTERFACE, request).what, reply::kind::reject);
  EXPECT_EQ(serve_interface_values(99, {}).what, reply::kind::reject);
  EXPECT_EQ(serve_interface_values(VALUES_OPC_SOURCE, request).what, reply::kind::reject);
}

TEST_F(ValuesService, AnInterfaceThatIsNotThereHasNoValues) {
  forget_failures();
  const bytes request = values_request_for(names_.nobody, std::array{property::state}, false);
  const reply answer = serve_interface_values(VALUES_OPC_INTERFACE, request);
  ASSERT_EQ(answer.payload.size(), sizeof(reply_head));
  reply_head head;
  std::memcpy(&head, answer.payload.data(), sizeof head);
  EXPECT_EQ(head.status, PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(value_of(names_.nobody, property::state), "no answer");
  EXPECT_TRUE(noted_failures().empty()) << "which is an answer";
}

bytes* served_bytes = nullptr;

reply serve_bytes(mts_opc_t, std::span<const std::byte>) { return {reply::kind::answer, *served_bytes}; }

// Serves the beginnings of an answer, then all of it; `ask` returns whether there was an answer.
template <typename Ask>
void expect_cut_answers_are_damaged(const reply& whole, const Ask& ask) {
  const service cutting[] = {{SAP_INTERFACE_VALUES, "interface-values", serve_bytes}};
  transport_register(cutting);
  bytes cut;
  served_bytes = &cut;
  for (std::size_t size = 0; size <= whole.payload.size(); ++size) {
    cut.assign(whole.payload.begin(), whole.payload.begin() + static_cast<std::ptrdiff_t>(size));
    const bool is_whole = size == whole.payload.size();
    forget_failures();
    EXPECT_EQ(ask(), is_whole) << size;
    EXPECT_EQ(noted_failures().empty(), is_whole) << size;
  }
}

TEST_F(ValuesService, AnAnswerThatIsCutIsDamaged) {
  const std::array asked = {property::state, property::description, property::mtu_bytes};
  const reply whole = serve_interface_values(VALUES_OPC_INTERFACE, values_request_for(names_.first_port, asked, false));
  expect_cut_answers_are_damaged(whole,
                                 [&] { return ask_interface_values(q_, names_.first_port, asked, false).has_value(); });
}

TEST_F(ValuesService, AnAnswerAboutUnknownValuesThatIsCutIsDamaged) {
  const std::array asked = {property::state, property::symbol_errors};
  const reply whole = serve_interface_values(VALUES_OPC_UNKNOWN, values_request_for(names_.first_port, asked, true));
  expect_cut_answers_are_damaged(whole, [&] { return ask_unknown_values(q_, names_.first_port, asked).has_value(); });
}

// Reads all of an answer's values by every accessor.
void read_all(const values_answer& answer) {
  for (const interface_value& value : answer.values()) {
    written(value);
    value.number();
    value.membership();
    value.why_absent();
    value.entry(value.num_entries());
  }
}

TEST_F(ValuesService, ARequestWithAnyByteIsAnsweredOrRejected) {
  const bytes request = values_request_for(names_.first_port, std::array{property::vlan, property::members}, false);
  for (std::size_t at = 0; at < request.size(); ++at)
    for (int byte = 0; byte < 256; ++byte) {
      bytes changed = request;
      changed[at] = static_cast<std::byte>(byte);
      const reply answer = serve_interface_values(VALUES_OPC_INTERFACE, changed);
      if (answer.what == reply::kind::reject) continue;
      ASSERT_GE(answer.payload.size(), sizeof(reply_head));
      EXPECT_TRUE(read_values(std::span(answer.payload).subspan(sizeof(reply_head)))) << at << ": " << byte;
    }
}

TEST_F(ValuesService, AnAnswerWithAnyByteIsReadOrRefused) {
  the_machine().find(names_.first_port)->settings.allowed_vlans = {10, 11, 20};
  const std::array asked = {property::vlan, property::description, property::member_of, property::speeds_mbps};
  const reply whole = serve_interface_values(VALUES_OPC_INTERFACE, values_request_for(names_.first_port, asked, false));
  const service changing[] = {{SAP_INTERFACE_VALUES, "interface-values", serve_bytes}};
  transport_register(changing);
  bytes changed;
  served_bytes = &changed;
  for (std::size_t at = 0; at < whole.payload.size(); ++at)
    for (const int byte : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      changed = whole.payload;
      changed[at] = static_cast<std::byte>(byte);
      if (const auto answer = ask_interface_values(q_, names_.first_port, asked, false)) read_all(*answer);
    }
  forget_failures();
}

}  // namespace
}  // namespace host
