#include "source/chassis/build_machine.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "platform/card_config.h"
#include "platform/interface_manager.h"
#include "platform/port_manager.h"
#include "settings/table.h"
#include "source/chassis/attribute_words.h"
#include "source/chassis/hardware_address.h"
#include "source/chassis/module_image.h"
#include "source/chassis/place_interfaces.h"
#include "source/yaml/yaml_file_error.h"
#include "switch/interface_range.h"
#include "switch/operation.h"

namespace host {
namespace {

std::string name_of(if_index_t if_index) {
  std::array<char, 40> name;
  return sprintf_if_index(name.data(), if_index);
}

bool is_kind(if_index_t if_index, std::initializer_list<if_index_type_t> kinds) {
  return std::find(kinds.begin(), kinds.end(), decode_index(if_index).type) != kinds.end();
}

bool is_channel(if_index_t if_index) { return is_kind(if_index, {IF_TYPE_PORT_CHANNEL, IF_TYPE_ETH_PORT_CHANNEL}); }

bool is_always_layer_2(if_index_t if_index) {
  return is_kind(if_index, {IF_TYPE_ETHERNET, IF_TYPE_SATELLITE, IF_TYPE_VETHERNET});
}

// Whether an interface needs a card in its slot.
bool needs_card(if_index_t if_index) {
  const index_fields fields = decode_index(if_index);
  return fields.shape == index_shape::slot_port && fields.type != IF_TYPE_MGMT;
}

// Replaces "{port}" in the description of a range by the interface's number.
void number_description(interface& port) {
  constexpr std::string_view kPlace = "{port}";
  const std::size_t at = port.settings.description.find(kPlace);
  if (at == std::string::npos) return;
  const interface_number number = number_of(port.if_index);
  port.settings.description.replace(at, kPlace.size(),
                                    std::to_string(number.sub_interface != 0 ? number.sub_interface : number.port));
}

// Attributes of interfaces.

class builder {
 public:
  builder(switch_draft& draft, const std::string& path) : draft_(draft), path_(path) {}

  machine build() {
    take_cards();
    placed_ = place_interfaces(draft_.interfaces, path_);
    for (const placed_interface& it : placed_) existing_.push_back(it.if_index);
    for (const interface_draft& it : draft_.interfaces) targets_.push_back(targets_of(it));
    result().interfaces.reserve(placed_.size());
    for (const placed_interface& it : placed_) result().interfaces.push_back(describe(it));
    refuse_mixed_channels();
    for (interface& port : result().interfaces) follow_channel(port);
    for (interface& port : result().interfaces) derive_bandwidth(port);
    for (interface& port : result().interfaces) inherit_from_parent(port);
    for (interface& port : result().interfaces) port.at_start = port.settings;
    for (std::size_t i = 0; i < placed_.size(); ++i)
      start_traffic(draft_.interfaces[placed_[i].entry], result().interfaces[i]);
    result().save_startup();
    return std::move(draft_.data);
  }

 private:
  machine& result() { return draft_.data; }

  template <typename... Values>
  [[noreturn]] void fail(uint32 line, fmt::format_string<Values...> reason, Values&&... of) const {
    fail_at(path_, line, fmt::format(reason, std::forward<Values>(of)...));
  }

  // Cards

  void take_cards() {
    for (const card_draft& it : draft_.cards) {
      if (result().num_slots != 0 && it.data.slot >= result().num_slots)
        fail(it.line, "slot {} is beyond the {} slots of the switch", it.data.slot + 1, result().num_slots);
      if (const card_draft* other = card_in(it.data.slot); other != &it)
        fail(it.line, "slot {} is taken already in line {}", it.data.slot + 1, other->line);
      if (!it.profile.text.empty()) profile_named(it.profile);
      result().cards.push_back(it.data);
    }
    std::sort(result().cards.begin(), result().cards.end(),
              [](const card& a, const card& b) { return a.slot < b.slot; });
    if (result().num_slots == 0 && !result().cards.empty()) result().num_slots = result().cards.back().slot + 1;
  }

  const card_draft* card_in(uint32 slot) const {
    for (const card_draft& it : draft_.cards)
      if (it.data.slot == slot) return &it;
    return nullptr;
  }

  const capability_profile& profile_named(const file_reference& requested) const {
    for (const capability_profile& it : draft_.profiles)
      if (it.name == requested.text) return it;
    fail(requested.line, "there is no profile '{}'", requested.text);
  }

  // One interface

  interface describe(const placed_interface& placed) const {
    const interface_draft& entry = draft_.interfaces[placed.entry];
    refuse_misplaced(placed.if_index, entry);
    interface port = entry.attributes;
    port.if_index = placed.if_index;
    if (const uint32 unit = decode_index(port.if_index).unit; unit != 0) port.satellite_unit = unit;
    number_description(port);
    set_layer(entry, port);
    set_capabilities(entry, port);
    set_operation(entry, port);
    set_addresses(port);
    set_references(entry, targets_[placed.entry], port);
    return port;
  }

  void refuse_misplaced(if_index_t if_index, const interface_draft& entry) const {
    const index_fields fields = decode_index(if_index);
    if (needs_card(if_index) && card_in(fields.slot) == nullptr)
      fail(entry.line, "{}: slot {} holds no card", name_of(if_index), fields.slot + 1);
    if (fields.sub_interface != 0 && !exists(parent_of(if_index)))
      fail(entry.line, "{} has no parent: {} of kind {} does not exist", name_of(if_index),
           name_of(parent_of(if_index)), fields.type);
    if (fields.sub_interface == 0 && entry.attributes.encapsulation_vlan != 0)
      fail(entry.line, "{}: only a sub-interface has 'dot1q'", name_of(if_index));
    if (fields.type != IF_TYPE_VETHERNET && !entry.bound_to.text.empty())
      fail(entry.bound_to.line, "{}: only a virtual Ethernet interface has 'bound-to'", name_of(if_index));
    const bool is_alone = entry.spans.size() == 1 && entry.spans.front().low == entry.spans.front().high;
    if (!is_alone && !entry.attributes.addresses.empty())
      fail(entry.line, "'addresses' belong to a single interface, not to a range");
  }

  bool exists(if_index_t if_index) const { return std::binary_search(existing_.begin(), existing_.end(), if_index); }

  void set_layer(const interface_draft& entry, interface& port) const {
    const bool is_sub_interface = if_index_is_sub_intf(port.if_index) != 0;
    port.settings.layer = entry.layer.value_or(std::get<uint32>(usual_layer(port)));
    if (is_always_layer_2(port.if_index) && !is_sub_interface && port.settings.layer != IF_LAYER_2)
      fail(entry.line, "{} cannot be routed", name_of(port.if_index));
    if (port.settings.admin_mode == 0) follow_layer(port);
    if (entry.allowed_vlans)
      port.settings.allowed_vlans = *entry.allowed_vlans;
    else
      follow_mode(port);
  }

  void set_capabilities(const interface_draft& entry, interface& port) const {
    const card_draft* const card = needs_card(port.if_index) ? card_in(decode_index(port.if_index).slot) : nullptr;
    file_reference requested = entry.profile;
    if (requested.text.empty() && card != nullptr) requested = card->profile;
    transceiver_choice module = entry.module;
    if (!requested.text.empty()) {
      const capability_profile& profile = profile_named(requested);
      port.capabilities = profile.capabilities;
      if (!module.is_given) module = profile.module;
    }
    if (port.capabilities.model.empty() && card != nullptr) port.capabilities.model = card->data.model;
    if (entry.module.is_given && !port.capabilities.transceiver)
      fail(entry.line, "{} has no receptacle for a transceiver", name_of(port.if_index));
    if (!port.capabilities.transceiver || if_index_is_sub_intf(port.if_index)) return;
    if (port.state_reason == kReasonSfpAbsent) module = {};
    port.module_in_port = module.module;
    if (port.module_in_port) finish_module(port, module);
    if (port.capabilities.type.empty()) port.capabilities.type = module.media;
  }

  // A module without its own page gets that of its medium, and diagnostics by the page.
  static void finish_module(interface& port, const transceiver_choice& chosen) {
    transceiver& module = *port.module_in_port;
    if (module.eeprom.empty()) module.eeprom = module_image(chosen.media, port.if_index);
    if (module.diagnostics.calibration == 0 && has_diagnostics(module.eeprom)) module.diagnostics.calibration = 1;
  }

  void set_operation(const interface_draft& entry, interface& port) const {
    port.partner = entry.partner;
    port.at_start = port.settings;
    negotiate(port);
  }

  void set_addresses(interface& port) const {
    if (port.burned_in_mac == mac_address{}) port.burned_in_mac = hardware_address(draft_.base_mac, port.if_index);
    if (port.router_mac == mac_address{}) port.router_mac = draft_.base_mac;
  }

  // Counters start with the last clear, or later with the traffic.
  uint32 counted_sec(const interface_draft& entry) const {
    const uint32 flowing_sec = entry.traffic->uptime_sec.value_or(draft_.uptime_sec);
    const uint32 last_clear_sec = entry.attributes.stats.last_clear_sec;
    if (last_clear_sec == 0 || last_clear_sec > draft_.now_sec) return flowing_sec;
    return std::min(flowing_sec, draft_.now_sec - last_clear_sec);
  }

  void start_traffic(const interface_draft& entry, interface& port) {
    if (entry.traffic == nullptr) return;
    port.traffic = std::make_shared<traffic_source>(traffic_source{.plan = entry.traffic,
                                                                   .line_kbps = line_kbps(port),
                                                                   .is_up = port.oper_state == PM_PORT_STATE_UP,
                                                                   .started_sec = draft_.now_sec,
                                                                   .counting_sec = counted_sec(entry)});
    follow_traffic(port, draft_.now_sec);
  }

  uint64 line_kbps(const interface& port) {
    const bool is_whole_channel = is_channel(port.if_index) && !if_index_is_sub_intf(port.if_index);
    return uint64{is_whole_channel ? members_mbps(port.if_index) : port.oper_speed_mbps.value_or(0)} * 1000;
  }

  // References

  // The targets of an entry's references.
  struct reference_targets {
    if_index_t channel = 0;
    if_index_t bound_to = 0;
    std::vector<if_index_t> tracked;
  };

  reference_targets targets_of(const interface_draft& entry) const {
    reference_targets targets;
    if (!entry.channel.text.empty()) targets.channel = channel_named(entry.channel);
    if (!entry.bound_to.text.empty()) targets.bound_to = single(entry.bound_to, entry.bound_to.text);
    if (!entry.tracked.text.empty()) targets.tracked = interfaces_of(entry.tracked, entry.tracked.text);
    return targets;
  }

  void set_references(const interface_draft& entry, const reference_targets& targets, interface& port) const {
    if (targets.channel != 0) refuse_alien_member(entry, port.if_index, targets.channel);
    port.settings.channel = targets.channel;
    port.bound_to = targets.bound_to;
    port.tracked = targets.tracked;
  }

  if_index_t channel_named(const file_reference& reference) const {
    const bool is_bare_number = reference.text.find_first_not_of("0123456789") == std::string::npos;
    const if_index_t channel = single(reference, (is_bare_number ? "port-channel " : "") + reference.text);
    if (!is_channel(channel) || if_index_is_sub_intf(channel))
      fail(reference.line, "{} is not a port-channel", name_of(channel));
    return channel;
  }

  void refuse_alien_member(const interface_draft& entry, if_index_t member, if_index_t channel) const {
    const bool can_join = is_kind(channel, {IF_TYPE_ETH_PORT_CHANNEL})
                              ? is_kind(member, {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE})
                              : is_kind(member, {IF_TYPE_FC, IF_TYPE_ETHERNET});
    if (if_index_is_sub_intf(member))
      fail(entry.channel.line, "{}: a sub-interface cannot join a port-channel", name_of(member));
    if (!can_join)
      fail(entry.channel.line, "{} cannot join {}: a port-channel of kind {} takes no interface of kind {}",
           name_of(member), name_of(channel), decode_index(channel).type, decode_index(member).type);
  }

  if_index_t single(const file_reference& reference, const std::string& text) const {
    const std::vector<if_index_t> found = interfaces_of(reference, text);
    if (found.size() != 1) fail(reference.line, "'{}' is not a single interface", reference.text);
    return found.front();
  }

  std::vector<if_index_t> interfaces_of(const file_reference& reference, const std::string& text) const {
    std::vector<interface_span> spans;
    if (const auto error = parse_interface_range(text, spans)) fail(reference.line, "{}", error->message);
    std::vector<if_index_t> found;
    for (const interface_span& span : spans) {
      const span_ends ends = append_matching(span, existing_, found);
      if (ends.low_exists && ends.high_exists) continue;
      fail(reference.line, "'{}' does not exist", interface_text(*span.word, ends.low_exists ? span.high : span.low));
    }
    return found;
  }

  // The members of a port-channel are of one kind.
  void refuse_mixed_channels() {
    std::map<if_index_t, if_index_t> first_members;
    for (std::size_t i = 0; i < placed_.size(); ++i) {
      const if_index_t channel = result().interfaces[i].settings.channel;
      if (channel == 0) continue;
      const if_index_t member = placed_[i].if_index;
      const if_index_t first = first_members.emplace(channel, member).first->second;
      if (decode_index(first).type != decode_index(member).type)
        fail(draft_.interfaces[placed_[i].entry].channel.line, "{} and {} in {} are of different kinds",
             name_of(member), name_of(first), name_of(channel));
    }
  }

  // Values that follow from other interfaces

  // A member has the settings of its port-channel.
  void follow_channel(interface& port) {
    if (port.settings.channel == 0) return;
    take_over_settings(*result().find(port.settings.channel), port);
    port.at_start = port.settings;
    negotiate(port);
  }

  // The speed of a port-channel is the sum of its members that are up; other interfaces have their operational speed.
  void derive_bandwidth(interface& port) {
    const bool is_whole_channel = is_channel(port.if_index) && !if_index_is_sub_intf(port.if_index);
    if (is_whole_channel && port.oper_speed_mbps == 0 && port.oper_state == PM_PORT_STATE_UP)
      for (const if_index_t member : result().members_of(port.if_index))
        port.oper_speed_mbps = std::max(port.oper_speed_mbps, result().find(member)->oper_speed_mbps);
    if (is_whole_channel) port.partner.speed_mbps = port.oper_speed_mbps;
    if (port.bandwidth_kbps != 0) return;
    uint32 mbps = port.oper_speed_mbps.value_or(0);
    if (mbps == 0) mbps = fastest_mbps(port.capabilities.speeds.value_or(0));
    if (is_whole_channel) mbps = members_mbps(port.if_index);
    port.bandwidth_kbps = mbps * 1000;
  }

  uint32 members_mbps(if_index_t channel) {
    uint32 mbps = 0;
    for (const if_index_t member : result().members_of(channel))
      if (const interface* port = result().find(member); port->oper_state == PM_PORT_STATE_UP)
        mbps += port->oper_speed_mbps.value_or(0);
    return mbps;
  }

  void inherit_from_parent(interface& port) {
    if (!if_index_is_sub_intf(port.if_index)) return;
    const interface& parent = *result().find(parent_of(port.if_index));
    port.partner.speed_mbps = port.oper_speed_mbps = parent.oper_speed_mbps;
    if (port.bandwidth_kbps == 0) port.bandwidth_kbps = parent.bandwidth_kbps;
  }

  switch_draft& draft_;
  const std::string& path_;
  std::vector<placed_interface> placed_;    // sorted by index
  std::vector<if_index_t> existing_;        // their indexes
  std::vector<reference_targets> targets_;  // of each entry
};

}  // namespace

machine build_machine(switch_draft draft, const std::string& path) { return builder(draft, path).build(); }

}  // namespace host
