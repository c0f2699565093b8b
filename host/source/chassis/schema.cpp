#include "source/chassis/schema.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "platform/vlan_manager.h"
#include "settings/table.h"
#include "source/chassis/attribute_words.h"
#include "source/chassis/module_image.h"
#include "switch/interface_range.h"

namespace host {
namespace {

// Longest texts that the records of the services carry.
constexpr std::size_t kMaxCapabilityText = 31;
constexpr std::size_t kMaxDeviceName = 15;
constexpr std::size_t kMaxStatus = 255;
constexpr std::size_t kMaxSwitchName = 63;
constexpr std::size_t kMaxUserName = 31;

template <class>
struct member;
template <class Owner, class Value>
struct member<Value Owner::*> {
  using owner = Owner;
  using value = Value;
};
template <auto Member>
using owner_of = typename member<decltype(Member)>::owner;
template <class Value>
struct written {
  using type = Value;
};
template <class Value>
struct written<std::optional<Value>> {
  using type = Value;
};
template <auto Member>
using value_of = typename written<typename member<decltype(Member)>::value>::type;

// Readers of one member each, for the tables below.
template <auto Member, uint64 kLow, uint64 kHigh>
void number(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = static_cast<value_of<Member>>(value.number(kLow, kHigh));
}

template <auto Member>
void flag(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = value.yes_or_no();
}

template <auto Member, std::size_t kMaxLength>
void text(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = value.text_of_at_most(kMaxLength);
}

template <auto Member, const auto& kWords>
void word(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = static_cast<value_of<Member>>(value.word(kWords));
}

template <auto Member, const auto& kWords>
void bits(const yaml_value& value, owner_of<Member>& target) {
  value.for_each([&](const yaml_value& item) { *(target.*Member) |= static_cast<uint8>(item.word(kWords)); });
}

template <auto Member>
void total(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = value.number(0, UINT64_MAX);
}

template <auto Member>
void reference(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = {value.text(), value.line()};
}

// A member with a notation of its own.
template <auto Member, auto kRead>
void notation(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = kRead(value);
}

// A map with its own rules for keys.
template <class Target, const auto& kRules>
void map(const yaml_value& value, Target& target) {
  read_map(value, kRules, target);
}

// Applies the reader of a part to the whole.
template <auto Part, auto kRead>
void in(const yaml_value& value, owner_of<Part>& target) {
  kRead(value, target.*Part);
}

// Values of settings, by the words in their table.

// A word may be the number of Gbit/s.
std::optional<uint32> read_word(const setting& of, std::string_view written) {
  if (const auto number = number_of_word(of, written)) return number;
  const bool is_gigabits = written.size() > 1 && (written.back() == 'G' || written.back() == 'g');
  if (!is_gigabits) return std::nullopt;
  return number_of_word(of, fmt::format("{}000", written.substr(0, written.size() - 1)));
}

// A setting that is on or off takes "yes" and "no".
bool is_switch(const setting& of) {
  return std::any_of(of.forms.begin(), of.forms.end(),
                     [](const setting_form& it) { return it.kind == form_kind::off; });
}

uint32 read_switch(const setting& of, const yaml_value& value) {
  const form_kind requested = value.yes_or_no() ? form_kind::word : form_kind::off;
  return std::find_if(of.forms.begin(), of.forms.end(), [requested](const auto& it) { return it.kind == requested; })
      ->value;
}

uint32 read_number(const setting& of, const yaml_value& value) {
  if (of.kind == setting_kind::number) return static_cast<uint32>(value.number(of.lowest, of.highest));
  if (const auto number = read_word(of, value.text())) return *number;
  if (is_switch(of)) return read_switch(of, value);
  std::vector<word_value> words;
  for (const setting_form& it : of.forms)
    if (it.kind == form_kind::word) words.push_back({it.syntax, it.value});
  return value.word(words);
}

constexpr word_value kCalibrationWords[] = {{"none", 0}, {"internal", 1}, {"external", 2}};

// A file in the directory of the switch file.
void read_eeprom(const yaml_value& value, transceiver& module) {
  const std::filesystem::path file = std::filesystem::path(value.path()).parent_path() / value.text();
  try {
    module.eeprom = read_image(file.string());
  } catch (const std::runtime_error& error) {
    value.fail(fmt::format("'{}' {}", value.text(), error.what()));
  }
}

template <auto Member, uint64 kScale>
void scaled(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = static_cast<value_of<Member>>(value.thousandths(1'000'000) * kScale);
}

using optics = optical_diagnostics;
constexpr key_rule<transceiver> kTransceiverRules[] = {
    {"media", [](const yaml_value&, transceiver&) {}},  // read before all others
    {"supported", flag<&transceiver::supported>},
    {"eeprom", read_eeprom},
    {"initializing", flag<&transceiver::is_initializing>},
    {"tx-fault", flag<&transceiver::has_tx_fault>},
    {"calibration", in<&transceiver::diagnostics, word<&optics::calibration, kCalibrationWords>>},
    {"temperature", in<&transceiver::diagnostics, scaled<&optics::temperature_mc, 1>>},
    {"drift", in<&transceiver::diagnostics, scaled<&optics::drift_mc, 1>>},
    {"load-drift", in<&transceiver::diagnostics, scaled<&optics::load_drift_mc, 1>>},
    {"voltage", in<&transceiver::diagnostics, scaled<&optics::voltage_uv, 1000>>},
    {"bias", in<&transceiver::diagnostics, scaled<&optics::bias_ua, 1>>},
    {"tx-power", in<&transceiver::diagnostics, number<&optics::tx_uw, 0, UINT32_MAX>>},
    {"rx-power", in<&transceiver::diagnostics, number<&optics::rx_uw, 0, UINT32_MAX>>},
};

// A supported module of a medium.
void choose_medium(const yaml_value& value, transceiver_choice& choice) {
  choice.module = transceiver{.supported = true, .type = static_cast<uint8>(value.word(kModuleWords))};
  choice.media = value.text();
}

// "absent", "unsupported", the medium of a supported transceiver, or a map with details.
void read_transceiver(const yaml_value& value, transceiver_choice& choice) {
  choice.is_given = true;
  if (value.is_map()) {
    const std::optional<yaml_value> media = value.find("media");
    if (!media) value.fail("a transceiver needs a 'media'");
    choose_medium(*media, choice);
    read_map(value, kTransceiverRules, *choice.module);
    return;
  }
  if (value.text() == "absent") return;
  if (value.text() == "unsupported")
    choice.module = transceiver{.supported = false, .type = FCOT_TYPE_SFP};
  else
    choose_medium(value, choice);
}

// "no", "yes" (ports are empty by default), or the default transceiver of every port.
void read_transceiver_capability(const yaml_value& value, capability_profile& profile) {
  profile.capabilities.transceiver = value.is_map() || value.text() != "no";
  if (value.is_map() || (profile.capabilities.transceiver && value.text() != "yes"))
    read_transceiver(value, profile.module);
}

// Counts such as "1p3q4t": priorities, queues, thresholds.
struct qos_counts {
  uint8 priorities = 0, queues = 0, thresholds = 0;
};

qos_counts read_qos(const yaml_value& value) {
  const std::string& written = value.text();
  qos_counts counts;
  const char* at = written.data();
  const char* const end = at + written.size();
  while (at != end) {
    uint8 count = 0;
    const auto [next, error] = std::from_chars(at, end, count);
    const char unit = next != end ? *next : '\0';
    uint8* const requested = unit == 'p'   ? &counts.priorities
                             : unit == 'q' ? &counts.queues
                             : unit == 't' ? &counts.thresholds
                                           : nullptr;
    if (error != std::errc() || requested == nullptr) value.fail_with_value("is not a queue structure such as 1p3q4t");
    *requested = count;
    at = next + 1;
  }
  return counts;
}

constexpr key_rule<port_capabilities> kQosRules[] = {
    {"receive",
     [](const yaml_value& value, port_capabilities& port) {
       const auto [priorities, queues, thresholds] = read_qos(value);
       port.qos->rx_priorities = priorities;
       port.qos->rx_queues = queues;
       port.qos->rx_thresholds = thresholds;
     }},
    {"send",
     [](const yaml_value& value, port_capabilities& port) {
       const auto [priorities, queues, thresholds] = read_qos(value);
       port.qos->tx_priorities = priorities;
       port.qos->tx_queues = queues;
       port.qos->tx_thresholds = thresholds;
     }},
};

// Mbit/s, or "auto" for a port that negotiates.
void read_speeds(const yaml_value& value, port_capabilities& port) {
  value.for_each([&](const yaml_value& item) {
    *port.speeds |=
        item.text() == "auto" ? uint32{CRDCFG_SPEED_AUTO} : speed_bit(read_number(*find_setting(PM_CFG_SPEED), item));
  });
}

using caps = port_capabilities;
constexpr key_rule<caps> kFlowCapabilityRules[] = {
    {"receive", bits<&caps::rx_flow_control, kFlowBits>},
    {"send", bits<&caps::tx_flow_control, kFlowBits>},
};

template <auto kRead>
constexpr auto capability = in<&capability_profile::capabilities, kRead>;

constexpr key_rule<capability_profile> kProfileRules[] = {
    {"model", capability<text<&caps::model, kMaxCapabilityText>>},
    {"media", capability<text<&caps::type, kMaxCapabilityText>>},
    {"speeds", capability<read_speeds>},
    {"duplex", capability<bits<&caps::duplexes, kDuplexBits>>},
    {"flow-control", capability<map<caps, kFlowCapabilityRules>>},
    {"rate-modes", capability<bits<&caps::rate_modes, kRateModeBits>>},
    {"qos", capability<map<caps, kQosRules>>},
    {"trunk", capability<flag<&caps::trunk_encapsulation>>},
    {"channel", capability<flag<&caps::channel>>},
    {"suppression", capability<flag<&caps::suppression>>},
    {"cos-rewrite", capability<flag<&caps::cos_rewrite>>},
    {"tos-rewrite", capability<flag<&caps::tos_rewrite>>},
    {"span", capability<flag<&caps::span>>},
    {"udld", capability<flag<&caps::udld>>},
    {"debounce", capability<flag<&caps::debounce>>},
    {"mdix", capability<flag<&caps::mdix>>},
    {"e-mode-on-first-only", capability<flag<&caps::e_mode_on_first_only>>},
    {"transceiver", read_transceiver_capability},
};

// Slots count from 1 in the file.
uint32 read_slot(const yaml_value& value) { return static_cast<uint32>(value.number(1, kMaxSlot + 1)) - 1; }

constexpr key_rule<card_draft> kCardRules[] = {
    {"slot", in<&card_draft::data, notation<&card::slot, read_slot>>},
    {"model", in<&card_draft::data, text<&card::model, kMaxCapabilityText>>},
    {"type", in<&card_draft::data, number<&card::card_type, 0, UINT32_MAX>>},
    {"profile", reference<&card_draft::profile>},
    {"shares-resources", in<&card_draft::data, flag<&card::shares_resources>>},
};

constexpr key_rule<switch_draft> kSwitchRules[] = {
    {"name", in<&switch_draft::data, text<&machine::name, kMaxSwitchName>>},
    {"chassis-type", in<&switch_draft::data, number<&machine::chassis_type, 0, UINT32_MAX>>},
    {"slots", in<&switch_draft::data, number<&machine::num_slots, 1, kMaxSlot + 1>>},
    {"management-device", in<&switch_draft::data, text<&machine::mgmt_device, kMaxDeviceName>>},
    {"management-device2", in<&switch_draft::data, text<&machine::mgmt_device2, kMaxDeviceName>>},
    {"base-mac", notation<&switch_draft::base_mac, read_mac>},
    {"uptime", notation<&switch_draft::uptime_sec, read_duration_sec>},
};

// Traffic.

uint32 read_percent_thousandths(const yaml_value& value) { return static_cast<uint32>(value.thousandths(100)); }

// Mbit/s with decimals.
uint64 read_rate_kbps(const yaml_value& value) { return value.thousandths(1'000'000); }

constexpr uint64 kMostPacketsPerSecond = 2'000'000'000;

template <rate_unit kUnit>
void read_rate(const yaml_value& value, traffic_rate& rate) {
  if constexpr (kUnit == rate_unit::packets)
    rate.value = value.number(0, kMostPacketsPerSecond);
  else
    rate.value = kUnit == rate_unit::kbps ? read_rate_kbps(value) : read_percent_thousandths(value);
  rate.unit = kUnit;
}

// Keys of a map that exclude each other.
void refuse_several(const yaml_value& value, std::initializer_list<std::string_view> keys) {
  std::string given;
  for (const std::string_view key : keys) {
    if (!value.find(key)) continue;
    if (!given.empty()) value.fail(fmt::format("'{}' and '{}' exclude each other", given, key));
    given = key;
  }
}

void refuse_several_rates(const yaml_value& value) { refuse_several(value, {"mbps", "pps", "line-rate-percent"}); }

constexpr key_rule<traffic_burst> kBurstRules[] = {
    {"every", notation<&traffic_burst::period_sec, read_duration_sec>},
    {"for", notation<&traffic_burst::length_sec, read_duration_sec>},
    {"mbps", in<&traffic_burst::rate, read_rate<rate_unit::kbps>>},
    {"pps", in<&traffic_burst::rate, read_rate<rate_unit::packets>>},
    {"line-rate-percent", in<&traffic_burst::rate, read_rate<rate_unit::line_rate>>},
};

void read_burst(const yaml_value& value, traffic_flow& flow) {
  traffic_burst burst;
  read_map(value, kBurstRules, burst);
  refuse_several_rates(value);
  if (burst.period_sec == 0 || burst.length_sec == 0) value.fail("a burst needs 'every' and 'for'");
  if (burst.length_sec > burst.period_sec) value.fail("a burst lasts longer than its 'every'");
  flow.burst = burst;
}

constexpr uint64 kSmallestPacket = 64, kLargestPacket = 65535;

void read_packet_bytes(const yaml_value& value, traffic_flow& flow) {
  flow.sizes = {{static_cast<uint32>(value.number(kSmallestPacket, kLargestPacket)), 100'000}};
}

// Sizes in bytes with their shares in percent.
void read_packet_sizes(const yaml_value& value, traffic_flow& flow) {
  require_map(value);
  flow.sizes.clear();
  uint32 sum = 0;
  for (const yaml_entry& entry : value.node().entries) {
    const yaml_value size(*entry.key, "packet size", value.path());
    const yaml_value share(*entry.value, size.text(), value.path());
    flow.sizes.push_back(
        {static_cast<uint32>(size.number(kSmallestPacket, kLargestPacket)), read_percent_thousandths(share)});
    sum += flow.sizes.back().percent_thousandths;
  }
  if (sum != 100'000) value.fail("the shares of the packet sizes do not add up to 100 percent");
}

constexpr key_rule<traffic_flow> kFlowRules[] = {
    {"mbps", in<&traffic_flow::rate, read_rate<rate_unit::kbps>>},
    {"pps", in<&traffic_flow::rate, read_rate<rate_unit::packets>>},
    {"line-rate-percent", in<&traffic_flow::rate, read_rate<rate_unit::line_rate>>},
    {"packet-bytes", read_packet_bytes},
    {"packet-sizes", read_packet_sizes},
    {"multicast-percent", notation<&traffic_flow::multicast_percent_thousandths, read_percent_thousandths>},
    {"broadcast-percent", notation<&traffic_flow::broadcast_percent_thousandths, read_percent_thousandths>},
    {"burst", read_burst},
    {"discards-per-million", number<&traffic_flow::discards_per_million, 0, 1'000'000>},
    {"bytes", total<&traffic_flow::bytes>},
    {"unicast", total<&traffic_flow::unicast_packets>},
    {"multicast", total<&traffic_flow::multicast_packets>},
    {"broadcast", total<&traffic_flow::broadcast_packets>},
    {"errors", total<&traffic_flow::errors>},
    {"discards", total<&traffic_flow::discards>},
};

void read_flow(const yaml_value& value, traffic_flow& flow) {
  read_map(value, kFlowRules, flow);
  refuse_several_rates(value);
  refuse_several(value, {"packet-bytes", "packet-sizes"});
  if (flow.multicast_percent_thousandths + flow.broadcast_percent_thousandths > 100'000)
    value.fail("multicast and broadcast are more than 100 percent");
}

using error_sources = std::vector<error_source>;

error_source& source_of(error_sources& errors, host::counter error_counters::*counter) {
  const auto found =
      std::find_if(errors.begin(), errors.end(), [=](const error_source& it) { return it.counter == counter; });
  if (found != errors.end()) return *found;
  errors.push_back({.counter = counter, .start = {}});
  return errors.back();
}

template <std::size_t kKind>
void error_start(const yaml_value& value, error_sources& errors) {
  source_of(errors, kErrorKinds[kKind].counter).start = value.number(0, UINT64_MAX);
}

template <std::size_t kKind>
void error_rate(const yaml_value& value, error_sources& errors) {
  source_of(errors, kErrorKinds[kKind].counter).per_million = static_cast<uint32>(value.number(0, 1'000'000));
}

using error_rules = std::array<key_rule<error_sources>, std::size(kErrorKinds)>;
static_assert(std::size(kErrorKinds) <= 64);

constexpr error_rules kErrorStartRules = []<std::size_t... kKind>(std::index_sequence<kKind...>) {
  return error_rules{{{kErrorKinds[kKind].word, error_start<kKind>}...}};
}
(std::make_index_sequence<std::size(kErrorKinds)>());

constexpr error_rules kErrorRateRules = []<std::size_t... kKind>(std::index_sequence<kKind...>) {
  return error_rules{{{kErrorKinds[kKind].word, error_rate<kKind>}...}};
}
(std::make_index_sequence<std::size(kErrorKinds)>());

constexpr key_rule<traffic_plan> kTrafficRules[] = {
    {"uptime", notation<&traffic_plan::uptime_sec, read_duration_sec>},
    {"in", in<&traffic_plan::in, read_flow>},
    {"out", in<&traffic_plan::out, read_flow>},
    {"errors", in<&traffic_plan::errors, map<error_sources, kErrorStartRules>>},
    {"errors-per-million", in<&traffic_plan::errors, map<error_sources, kErrorRateRules>>},
    {"profile", [](const yaml_value&, traffic_plan&) {}},  // the other keys change it
};

const traffic_plan& traffic_profile_named(const yaml_value& value, const std::vector<traffic_profile>& profiles) {
  for (const traffic_profile& it : profiles)
    if (it.name == value.text()) return it.plan;
  value.fail(fmt::format("there is no traffic profile '{}'", value.text()));
}

// A profile by its name alone, or a map that may begin with a profile.
void read_traffic(const yaml_value& value, const std::vector<traffic_profile>& profiles, traffic_plan& plan) {
  if (!value.is_map()) {
    plan = traffic_profile_named(value, profiles);
    return;
  }
  if (const auto named = value.find("profile")) plan = traffic_profile_named(*named, profiles);
  read_map(value, kTrafficRules, plan);
}

// Interfaces.

// An attribute that every interface of the range has.
template <auto kRead>
constexpr auto port = in<&interface_draft::attributes, kRead>;

template <std::size_t kRow>
void read_setting(const yaml_value& value, interface_draft& entry) {
  constexpr const setting& of = kSettings[kRow];
  if constexpr (of.kind == setting_kind::text)
    of.put(entry.attributes, value.text_of_at_most(of.highest));
  else if constexpr (of.kind == setting_kind::vlans)
    entry.allowed_vlans = read_vlan_list(value);  // the default depends on the mode
  else
    of.put(entry.attributes, read_number(of, value));
}

// A member, by the words of a setting.
template <auto Member, uint8 kType>
void setting_word(const yaml_value& value, owner_of<Member>& target) {
  target.*Member = static_cast<value_of<Member>>(read_number(*find_setting(kType), value));
}

// The key of a setting below a map, "" for the interface itself; empty when it is not there.
constexpr std::string_view key_below(const setting& of, std::string_view map) {
  const std::size_t blank = of.traits.key.find(' ');
  const std::string_view above = blank == std::string_view::npos ? std::string_view() : of.traits.key.substr(0, blank);
  if (above != map) return {};
  return blank == std::string_view::npos ? of.traits.key : of.traits.key.substr(blank + 1);
}

constexpr std::size_t num_keys_below(std::string_view map) {
  std::size_t count = 0;
  for (const setting& it : kSettings) count += key_below(it, map).empty() ? 0 : 1;
  return count;
}

template <std::size_t kRow, std::size_t kCount>
constexpr void add_rule(std::string_view map, std::array<key_rule<interface_draft>, kCount>& rules,
                        std::size_t& count) {
  if (const std::string_view key = key_below(kSettings[kRow], map); !key.empty())
    rules[count++] = {key, read_setting<kRow>};
}

// The rules of the settings below a map, and then others.
template <std::size_t kNumSettings, std::size_t kNumOthers>
constexpr auto with_settings(std::string_view map, const key_rule<interface_draft> (&others)[kNumOthers]) {
  std::array<key_rule<interface_draft>, kNumSettings + kNumOthers> rules{};
  std::size_t count = 0;
  [&]<std::size_t... kRow>(std::index_sequence<kRow...>) { (add_rule<kRow>(map, rules, count), ...); }
  (std::make_index_sequence<std::size(kSettings)>());
  for (const auto& it : others) rules[count++] = it;
  return rules;
}

using link_partner = interface::link_partner;
using private_vlans = interface::private_vlans;
template <auto kRead>
constexpr auto private_vlan = port<in<&interface::private_vlan, kRead>>;

constexpr key_rule<interface_draft> kOtherVlanRules[] = {
    {"errored", port<notation<&interface::errored_vlans, read_vlan_list>>},
    {"blocked", port<notation<&interface::blocked_vlans, read_vlan_list>>},
    {"host-primary", private_vlan<notation<&private_vlans::host_primary, read_vlan>>},
    {"host-secondary", private_vlan<notation<&private_vlans::host_secondary, read_vlan>>},
    {"mapping-primary", private_vlan<notation<&private_vlans::mapping_primary, read_vlan>>},
    {"mapping-secondary", private_vlan<notation<&private_vlans::mapping_secondary, read_vlan_list>>},
};
constexpr auto kVlanRules = with_settings<num_keys_below("vlan")>("vlan", kOtherVlanRules);

constexpr auto kFlowControlRules = [] {
  std::array<key_rule<interface_draft>, num_keys_below("flow-control")> rules{};
  std::size_t count = 0;
  [&]<std::size_t... kRow>(std::index_sequence<kRow...>) { (add_rule<kRow>("flow-control", rules, count), ...); }
  (std::make_index_sequence<std::size(kSettings)>());
  return rules;
}();

// Whether the partner agrees to what a side desires.
template <uint16 kSide>
void partner_flow_control(const yaml_value& value, link_partner& target) {
  const bool agrees = value.text() != "off";
  if (agrees && value.text() != "on") value.fail_with_value("is neither 'on' nor 'off'");
  target.flow_control = static_cast<uint16>(agrees ? target.flow_control | kSide : target.flow_control & ~kSide);
}

constexpr key_rule<link_partner> kPartnerFlowControlRules[] = {
    {"receive", partner_flow_control<PM_FLOW_CTRL_RECEIVE>},
    {"send", partner_flow_control<PM_FLOW_CTRL_SEND>},
};

template <std::size_t kClass>
void storm_level(const yaml_value& value, interface& target) {
  if (value.text() == "off") return;
  const uint64 percent_thousandths = value.thousandths(100);
  (*target.storm_control)[kClass] = {.mode = 1,
                                     .percent = static_cast<uint8>(percent_thousandths / 1000),
                                     .hundredths = static_cast<uint16>(percent_thousandths % 1000 / 10)};
}

constexpr key_rule<interface> kStormRules[] = {
    {"broadcast", storm_level<PM_STORM_BROADCAST>},
    {"multicast", storm_level<PM_STORM_MULTICAST>},
    {"unicast", storm_level<PM_STORM_UNICAST>},
};

bool is_number(const std::string& written) {
  return !written.empty() && written.find_first_not_of("0123456789") == std::string::npos;
}

void read_state(const yaml_value& value, interface& target) {
  const bool is_up = value.text() == "up";
  const uint32 reason = is_number(value.text()) ? static_cast<uint32>(value.number(1, 255)) : value.word(kReasonWords);
  target.oper_state = is_up ? PM_PORT_STATE_UP : PM_PORT_STATE_DOWN;
  target.settings.admin_state = reason == kReasonAdminDown ? PM_PORT_STATE_DOWN : PM_PORT_STATE_UP;
  target.state_reason = static_cast<uint8>(reason);
}

void read_range(const yaml_value& value, interface_draft& entry) {
  if (const auto error = parse_interface_range(value.text(), entry.spans)) value.fail(error->message);
}

void read_addresses(const yaml_value& value, interface& target) {
  value.for_each([&](const yaml_value& item) { target.addresses.push_back(read_ip(item)); });
}

void read_link_change(const yaml_value& value, interface_draft& entry) {
  entry.attributes.link_change_sec = read_moment_sec(value, entry.now_sec);
}

void read_last_clear(const yaml_value& value, interface_draft& entry) {
  entry.attributes.stats.last_clear_sec = read_moment_sec(value, entry.now_sec);
}

void read_interface_traffic(const yaml_value& value, interface_draft& entry) {
  entry.traffic = std::make_shared<traffic_plan>();
  read_traffic(value, *entry.traffic_profiles, *entry.traffic);
}

constexpr key_rule<interface_draft> kOtherInterfaceRules[] = {
    {"range", read_range},
    {"kind", number<&interface_draft::kind, 1, 254>},
    {"subtype", word<&interface_draft::subtype, kSubtypeWords>},
    {"profile", reference<&interface_draft::profile>},
    {"state", port<read_state>},
    {"link-change", read_link_change},
    {"oper-mode", in<&interface_draft::partner, setting_word<&link_partner::mode, PM_CFG_PORT_MODE>>},
    {"oper-speed", in<&interface_draft::partner, setting_word<&link_partner::speed_mbps, PM_CFG_SPEED>>},
    {"oper-duplex", in<&interface_draft::partner, setting_word<&link_partner::duplex, PM_CFG_DUPLEX>>},
    {"flow-control", map<interface_draft, kFlowControlRules>},
    {"oper-flow-control", in<&interface_draft::partner, map<link_partner, kPartnerFlowControlRules>>},
    {"bandwidth", port<number<&interface::bandwidth_kbps, 1, UINT32_MAX>>},
    {"delay", port<number<&interface::delay_usec, 0, UINT32_MAX>>},
    {"debounce", port<number<&interface::debounce_ms, 0, 65535>>},
    {"rate-mode", port<word<&interface::rate_mode, kRateModeWords>>},
    {"mdix", port<flag<&interface::mdix_on>>},
    {"resets", port<number<&interface::resets, 0, UINT32_MAX>>},
    {"vsan", port<number<&interface::vsan, 1, 4094>>},
    {"trunk-vsans", port<notation<&interface::trunk_vsans, read_vsan_list>>},
    {"fc-layer", port<number<&interface::fc_layer, 0, 255>>},
    {"record-error", port<number<&interface::record_error, 0, UINT32_MAX>>},
    {"locked", port<flag<&interface::is_locked>>},
    {"refuses-settings", port<number<&interface::refusal, 0, UINT32_MAX>>},
    {"mac", port<notation<&interface::burned_in_mac, read_mac>>},
    {"router-mac", port<notation<&interface::router_mac, read_mac>>},
    {"layer", number<&interface_draft::layer, 2, 3>},
    {"vlan", map<interface_draft, kVlanRules>},
    {"dot1q", port<notation<&interface::encapsulation_vlan, read_vlan>>},
    {"addresses", port<read_addresses>},
    {"channel", reference<&interface_draft::channel>},
    {"bound-to", reference<&interface_draft::bound_to>},
    {"tracked", reference<&interface_draft::tracked>},
    {"unit", port<number<&interface::satellite_unit, 100, kMaxUnit>>},
    {"multi-chassis", port<text<&interface::multi_chassis_status, kMaxStatus>>},
    {"storm-control", port<map<interface, kStormRules>>},
    {"transceiver", in<&interface_draft::module, read_transceiver>},
    {"traffic", read_interface_traffic},
    {"last-clear", read_last_clear},
};
constexpr auto kInterfaceRules = with_settings<num_keys_below("")>("", kOtherInterfaceRules);
static_assert(std::size(kInterfaceRules) <= 64);

// The lists of the top level.

void read_profiles(const yaml_value& value, switch_draft& draft) {
  require_map(value);
  for (const yaml_entry& entry : value.node().entries) {
    const yaml_value key(*entry.key, "profile", value.path());
    const std::string& name = key.text();
    const auto same_name = [&](const capability_profile& it) { return it.name == name; };
    if (std::any_of(draft.profiles.begin(), draft.profiles.end(), same_name))
      key.fail(fmt::format("profile '{}' is given twice", name));
    draft.profiles.push_back({.name = name, .line = key.line(), .capabilities = {}, .module = {}});
    read_map(yaml_value(*entry.value, name, value.path()), kProfileRules, draft.profiles.back());
  }
}

// A profile may extend one that precedes it.
void read_traffic_profiles(const yaml_value& value, switch_draft& draft) {
  require_map(value);
  for (const yaml_entry& entry : value.node().entries) {
    const yaml_value key(*entry.key, "traffic profile", value.path());
    const auto same_name = [&](const traffic_profile& it) { return it.name == key.text(); };
    if (std::any_of(draft.traffic_profiles.begin(), draft.traffic_profiles.end(), same_name))
      key.fail(fmt::format("traffic profile '{}' is given twice", key.text()));
    traffic_profile profile{.name = key.text(), .plan = {}};
    read_traffic(yaml_value(*entry.value, profile.name, value.path()), draft.traffic_profiles, profile.plan);
    draft.traffic_profiles.push_back(std::move(profile));
  }
}

void read_cards(const yaml_value& value, switch_draft& draft) {
  value.for_each([&](const yaml_value& item) {
    card_draft& card = draft.cards.emplace_back();
    card.line = item.line();
    card.data.slot = UINT32_MAX;
    read_map(yaml_value(item.node(), "a card", item.path()), kCardRules, card);
    if (card.data.slot == UINT32_MAX) item.fail("a card needs a 'slot'");
  });
}

// Without a list, or with the word, a user sees all VSANs.
void read_user_vsans(const yaml_value& value, user& target) {
  if (value.text() != "all") target.vsans = read_vsan_list(value);
}

constexpr key_rule<user> kUserRules[] = {
    {"name", text<&user::name, kMaxUserName>},
    {"vsans", read_user_vsans},
    {"counters", flag<&user::sees_counters>},
    {"clear-in-band", flag<&user::may_clear_inband>},
};

void read_users(const yaml_value& value, switch_draft& draft) {
  value.for_each([&](const yaml_value& item) {
    user read;
    read_map(yaml_value(item.node(), "a user", item.path()), kUserRules, read);
    if (read.name.empty()) item.fail("a user needs a 'name'");
    if (draft.data.find_user(read.name) != nullptr) item.fail(fmt::format("user '{}' is given twice", read.name));
    draft.data.users.push_back(std::move(read));
  });
}

void read_interfaces(const yaml_value& value, switch_draft& draft) {
  value.for_each([&](const yaml_value& item) {
    interface_draft& entry = draft.interfaces.emplace_back();
    entry.line = item.line();
    entry.now_sec = draft.now_sec;
    entry.traffic_profiles = &draft.traffic_profiles;
    entry.attributes.oper_state = PM_PORT_STATE_UP;
    entry.attributes.state_reason = kReasonNone;
    read_map(yaml_value(item.node(), "an interface", item.path()), kInterfaceRules, entry);
    if (entry.spans.empty()) item.fail("an interface needs a 'range'");
  });
}

constexpr word_value kVlanKinds[] = {{"ordinary", 0},
                                     {"primary", VLAN_TYPE_PRIMARY},
                                     {"isolated", VLAN_TYPE_SECONDARY_ISOLATED},
                                     {"community", VLAN_TYPE_SECONDARY_COMMUNITY},
                                     {"internal", VLAN_TYPE_INTERNAL_RESERVED}};

constexpr std::size_t kMaxVlanName = VLAN_NAME_BYTES - 1;

constexpr key_rule<vlan> kVlanTableRules[] = {
    {"id", notation<&vlan::id, read_vlan>},
    {"name", text<&vlan::name, kMaxVlanName>},
    {"kind", word<&vlan::kind, kVlanKinds>},
    {"shut", flag<&vlan::is_shut>},
};

void read_vlans(const yaml_value& value, switch_draft& draft) {
  value.for_each([&](const yaml_value& item) {
    vlan read;
    read_map(yaml_value(item.node(), "a VLAN", item.path()), kVlanTableRules, read);
    if (read.id == 0) item.fail("a VLAN needs an 'id'");
    draft.data.vlans.push_back(std::move(read));
  });
  std::sort(draft.data.vlans.begin(), draft.data.vlans.end(), [](const vlan& a, const vlan& b) { return a.id < b.id; });
}

constexpr key_rule<machine> kManagementRules[] = {
    {"device", text<&machine::mgmt_device, kMaxDeviceName>},
    {"second-device", text<&machine::mgmt_device2, kMaxDeviceName>},
};

constexpr std::string_view kTrafficProfilesKey = "traffic-profiles";

constexpr key_rule<switch_draft> kFileRules[] = {
    {"switch", map<switch_draft, kSwitchRules>},
    {"management", in<&switch_draft::data, map<machine, kManagementRules>>},
    {kTrafficProfilesKey, [](const yaml_value&, switch_draft&) {}},  // read before all others
    {"profiles", read_profiles},
    {"cards", read_cards},
    {"users", read_users},
    {"vlans", read_vlans},
    {"interfaces", read_interfaces},
};

}  // namespace

void read_switch(const yaml_value& file, switch_draft& draft) {
  require_map(file);
  // Interfaces refer to these, in any order in the file.
  if (const auto profiles = file.find(kTrafficProfilesKey)) read_traffic_profiles(*profiles, draft);
  read_map(file, kFileRules, draft);
}

}  // namespace host
