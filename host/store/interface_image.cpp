#include "store/interface_image.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/port_config.h"
#include "settings/wire.h"
#include "switch/if_index_layout.h"
#include "switch/live_statistics.h"
#include "switch/source.h"

namespace host {
namespace {

std::vector<stored_value> differences(const port_settings& from, const port_settings& to) {
  std::vector<stored_value> values;
  for (const setting& it : all_settings())
    if (it.type != HOST_CFG_CHANNEL && !is_equal(it, from, to))
      if (auto value = it.get(to)) values.push_back({&it, std::move(*value)});
  return values;
}

void put_values(const std::vector<stored_value>& values, port_settings& to) {
  interface port;
  port.settings = std::move(to);
  for (const auto& [of, value] : values) of->put(port, value);
  to = std::move(port.settings);
}

bool is_listed_as_deleted(const machine& of, if_index_t if_index) {
  return std::binary_search(of.deleted.begin(), of.deleted.end(), if_index);
}

void list_as_deleted(machine& of, if_index_t if_index, bool is_listed) {
  std::erase(of.deleted, if_index);
  if (is_listed) of.deleted.insert(std::lower_bound(of.deleted.begin(), of.deleted.end(), if_index), if_index);
}

uint32 num_equal(const std::vector<interface::link_change>& one, const std::vector<interface::link_change>& other) {
  const auto [at, end] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
  return static_cast<uint32>(at - one.begin());
}

// An interface that a command creates.
bool create(machine& of, if_index_t if_index) {
  const bool has_parent = if_index_is_sub_intf(if_index) == 0 || of.find(parent_of(if_index)) != nullptr;
  return has_parent && switch_source().create_interfaces(of, {&if_index, 1}) == 0;
}

void put_clear(uint32 cleared_sec, statistics& to) {
  set_totals_to_zero(to);
  if (to.rate_ring) to.rate_ring.emplace();
  to.counted_sec = 0;
  to.last_clear_sec = cleared_sec;
  to.is_cleared_here = true;
}

// ---- Fields

template <typename Number>
void write_optional(field_writer& to, const std::optional<Number>& value) {
  to.flag(value.has_value());
  to.u32(value.value_or(0));
}

template <typename Number>
void read_optional(field_reader& from, std::optional<Number>& value) {
  const bool is_known = from.flag();
  const uint32 number = from.u32();
  value = is_known ? std::optional(static_cast<Number>(number)) : std::nullopt;
}

void write_values(field_writer& to, const std::vector<stored_value>& values) {
  to.u32(static_cast<uint32>(values.size()));
  for (const auto& [of, value] : values) {
    const std::vector<std::byte> octets = octets_of(*of, value);
    to.u8(of->type);
    to.text({reinterpret_cast<const char*>(octets.data()), octets.size()});
  }
}

bool read_values(field_reader& from, std::vector<stored_value>& values) {
  constexpr std::size_t kLeastBytes = sizeof(uint8) + sizeof(be32);
  values.resize(from.count(kLeastBytes));
  for (auto& [of, value] : values) {
    of = find_setting(from.u8());
    const std::string_view octets = from.text();
    if (of == nullptr) return false;
    auto read = value_of_octets(*of, std::as_bytes(std::span(octets)), interface());
    if (!read) return false;
    value = std::move(*read);
  }
  return true;
}

}  // namespace

bool is_counted_by_device(const machine& of, const interface& port) {
  return decode_index(port.if_index).type == IF_TYPE_MGMT &&
         kernel_counters(management_device(of, port.if_index)).has_value();
}

interface_image image_of(const machine& of, if_index_t if_index, const interface* before) {
  interface_image image;
  image.if_index = if_index;
  image.is_listed = is_listed_as_deleted(of, if_index);
  const interface* const port = of.find(if_index);
  image.is_present = port != nullptr;
  image.was_deleted = !image.is_present;
  if (port == nullptr) return image;
  image.is_created = port->is_created;
  if (port->is_created) image.at_start = differences({}, port->at_start);
  image.settings = differences(port->at_start, port->settings);
  image.channel = port->settings.channel;
  image.is_edge = port->settings.is_edge;
  image.oper_state = port->oper_state;
  image.state_reason = port->state_reason;
  image.link_before_shutdown = port->link_before_shutdown;
  image.oper_mode = port->oper_mode;
  image.oper_speed_mbps = port->oper_speed_mbps;
  image.oper_duplex = port->oper_duplex;
  image.oper_flow_control = port->oper_flow_control;
  image.partner_speed_mbps = port->partner.speed_mbps;
  image.link_change_sec = port->link_change_sec;
  if (before != nullptr) image.num_known_changes = num_equal(before->link_changes, port->link_changes);
  image.link_changes.assign(port->link_changes.begin() + image.num_known_changes, port->link_changes.end());
  if (port->stats.is_cleared_here && !is_counted_by_device(of, *port)) image.cleared_sec = port->stats.last_clear_sec;
  return image;
}

void add_image(interface_image& to, interface_image later) {
  std::vector<interface::link_change> changes = std::move(to.link_changes);
  changes.resize(std::min<std::size_t>(changes.size(), later.num_known_changes));
  changes.insert(changes.end(), later.link_changes.begin(), later.link_changes.end());
  later.num_known_changes = 0;
  later.link_changes = std::move(changes);
  later.was_deleted = later.was_deleted || to.was_deleted;
  to = std::move(later);
}

bool put_image(machine& to, const interface_image& image) {
  if (image.was_deleted)
    for (interface& it : to.interfaces) std::erase(it.tracked, image.if_index);
  const interface* const found = to.find(image.if_index);
  if (found != nullptr && (!image.is_present || found->is_created != image.is_created)) to.remove(image.if_index);
  list_as_deleted(to, image.if_index, image.is_listed);
  if (!image.is_present) return true;
  if (image.is_created && to.find(image.if_index) == nullptr && !create(to, image.if_index)) return false;
  interface* const port = to.find(image.if_index);
  if (port == nullptr) return false;
  if (image.is_created) {
    port->at_start = {};
    put_values(image.at_start, port->at_start);
  }
  port->settings = port->at_start;
  put_values(image.settings, port->settings);
  port->settings.channel = image.channel;
  port->settings.is_edge = image.is_edge;
  port->oper_state = image.oper_state;
  port->state_reason = image.state_reason;
  port->link_before_shutdown = image.link_before_shutdown;
  port->oper_mode = image.oper_mode;
  port->oper_speed_mbps = image.oper_speed_mbps;
  port->oper_duplex = image.oper_duplex;
  port->oper_flow_control = image.oper_flow_control;
  port->partner.speed_mbps = image.partner_speed_mbps;
  port->link_change_sec = image.link_change_sec;
  port->link_changes.resize(std::min<std::size_t>(port->link_changes.size(), image.num_known_changes));
  port->link_changes.insert(port->link_changes.end(), image.link_changes.begin(), image.link_changes.end());
  if (image.cleared_sec) put_clear(*image.cleared_sec, port->stats);
  return true;
}

void write_image(field_writer& to, const interface_image& image) {
  to.u32(image.if_index);
  to.flag(image.is_present);
  to.flag(image.was_deleted);
  to.flag(image.is_listed);
  if (!image.is_present) return;
  to.flag(image.is_created);
  if (image.is_created) write_values(to, image.at_start);
  write_values(to, image.settings);
  to.u32(image.channel);
  to.flag(image.is_edge);
  to.u8(image.oper_state);
  to.u8(image.state_reason);
  to.flag(image.link_before_shutdown.has_value());
  const interface::link before = image.link_before_shutdown.value_or(interface::link{});
  to.u8(before.state);
  to.u8(before.reason);
  write_optional(to, image.oper_mode);
  write_optional(to, image.oper_speed_mbps);
  write_optional(to, image.oper_duplex);
  write_optional(to, image.oper_flow_control);
  write_optional(to, image.partner_speed_mbps);
  write_optional(to, image.link_change_sec);
  to.u32(image.num_known_changes);
  to.u32(static_cast<uint32>(image.link_changes.size()));
  for (const auto& [at_sec, state] : image.link_changes) {
    to.u32(at_sec);
    to.u8(state);
  }
  write_optional(to, image.cleared_sec);
}

std::optional<interface_image> read_image(field_reader& from) {
  interface_image image;
  image.if_index = from.u32();
  image.is_present = from.flag();
  image.was_deleted = from.flag();
  image.is_listed = from.flag();
  if (!image.is_present) return from.has_failed() ? std::nullopt : std::optional(image);
  image.is_created = from.flag();
  if (image.is_created && !read_values(from, image.at_start)) return std::nullopt;
  if (!read_values(from, image.settings)) return std::nullopt;
  image.channel = from.u32();
  image.is_edge = from.flag();
  image.oper_state = from.u8();
  image.state_reason = from.u8();
  const bool was_shut = from.flag();
  const interface::link before { from.u8(), from.u8() };
  if (was_shut) image.link_before_shutdown = before;
  read_optional(from, image.oper_mode);
  read_optional(from, image.oper_speed_mbps);
  read_optional(from, image.oper_duplex);
  read_optional(from, image.oper_flow_control);
  read_optional(from, image.partner_speed_mbps);
  read_optional(from, image.link_change_sec);
  image.num_known_changes = from.u32();
  constexpr std::size_t kChangeBytes = sizeof(be32) + sizeof(uint8);
  image.link_changes.resize(from.count(kChangeBytes));
  for (auto& [at_sec, state] : image.link_changes) {
    at_sec = from.u32();
    state = from.u8();
  }
  read_optional(from, image.cleared_sec);
  return from.has_failed() ? std::nullopt : std::optional(std::move(image));
}

}  // namespace host
