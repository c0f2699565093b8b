#include "source/kernel/events.h"

#include <linux/ethtool.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include "source/kernel/device_type.h"
#include "source/kernel/policy.h"
#include "source/kernel/sorted_records.h"
#include "source/kernel/tables.h"
#include "switch/clock.h"

namespace host {
namespace {

using event_list = std::vector<switch_event>;

event_value value_of(std::string text) { return text.empty() ? event_value() : event_value(std::move(text)); }

constexpr char kAdded[] = "added", kRemoved[] = "removed", kOperState[] = "oper_state";

// ---- Differences ----------------------------------------------------------------------------------------------------

// Appends the changes of one subject.
class change_writer {
 public:
  change_writer(event_list& to, switch_event subject) : to_(to), subject_(std::move(subject)) {}

  void add(const char* change, event_value before, event_value now) {
    switch_event& added = to_.emplace_back(subject_);
    added.change = change;
    added.old_value = std::move(before);
    added.new_value = std::move(now);
  }
  void compare(const char* change, event_value before, event_value now) {
    if (before != now) add(change, std::move(before), std::move(now));
  }

 private:
  event_list& to_;
  switch_event subject_;
};

switch_event subject_of(event_kind kind, const std::vector<kernel_link>& links, uint32 device) {
  const kernel_link* const link = find_link(links, device);
  return {.kind = kind, .device = {0, link == nullptr ? std::string() : link->name, device}};
}

// ---- Links ----------------------------------------------------------------------------------------------------------

// IF_OPER_* in the words of ip(8).
std::string word_of_operation(uint8 operation) {
  constexpr const char* kWords[] = {"unknown", "notpresent", "down", "lowerlayerdown", "testing", "dormant", "up"};
  return operation < std::size(kWords) ? kWords[operation] : std::to_string(operation);
}

std::string word_of_admin_state(uint32 flags) { return (flags & IFF_UP) != 0 ? "up" : "down"; }

std::string name_of(const std::vector<kernel_link>& links, uint32 number) {
  if (number == 0) return {};
  const kernel_link* const found = find_link(links, number);
  return found == nullptr ? std::to_string(number) : found->name;
}

std::string type_of(const std::vector<kernel_link>& links, const kernel_link& link) {
  const kernel_link* const below = has_device_below(link) ? find_link(links, link.parent) : nullptr;
  return device_type(link, below == nullptr ? std::string_view() : std::string_view(below->name));
}

std::string alternative_names_of(const kernel_link& link) {
  std::string names;
  for (const std::string& it : link.alternative_names) append_word(names, it);
  return names;
}

// `links` has the names of masters.
void compare_links(const std::vector<kernel_link>& links, const kernel_link& before, const kernel_link& now,
                   event_list& to) {
  change_writer changes(to, {.kind = event_kind::link, .device = {0, now.name, now.number}});
  changes.compare("name", before.name, now.name);
  changes.compare("admin_state", word_of_admin_state(before.flags), word_of_admin_state(now.flags));
  changes.compare(kOperState, word_of_operation(before.operation), word_of_operation(now.operation));
  changes.compare("mtu", std::to_string(before.mtu_bytes), std::to_string(now.mtu_bytes));
  changes.compare("mac", before.mac, now.mac);
  changes.compare("master", value_of(name_of(links, before.master)), value_of(name_of(links, now.master)));
  changes.compare("description", value_of(before.alias), value_of(now.alias));
  changes.compare("alternative_names", value_of(alternative_names_of(before)), value_of(alternative_names_of(now)));
}

void add_new_link(const std::vector<kernel_link>& links, const kernel_link& link, event_list& to) {
  change_writer(to, {.kind = event_kind::link, .device = {0, link.name, link.number}})
      .add(kAdded, {}, type_of(links, link));
}

void add_removed_link(const std::vector<kernel_link>& links, const kernel_link& link, event_list& to) {
  change_writer(to, {.kind = event_kind::link, .device = {0, link.name, link.number}})
      .add(kRemoved, type_of(links, link), {});
}

constexpr message_policy kWholePolicy = {{IFLA_MTU, attribute_type::number, sizeof(uint32)}};

// Messages about a part of a link, such as one of a bridge or a wireless network, lack its settings.
bool is_about_whole_link(const nlmsghdr& message) {
  const auto parsed = parse<ifinfomsg>(message, kWholePolicy);
  return parsed && parsed->head.ifi_family == AF_UNSPEC &&
         (message.nlmsg_type == RTM_DELLINK || parsed->all.number<uint32>(IFLA_MTU).has_value());
}

uint32 device_in_message(const nlmsghdr& message) {
  return static_cast<uint32>(record_of<ifinfomsg>(payload_of(message)).ifi_index);
}

// Removes the entries of a device, which the kernel ends together with it.
template <typename Entries>
void forget_device(Entries& entries, uint32 device) {
  std::erase_if(entries, [device](const auto& it) { return std::get<0>(it.first) == device; });
}

// ---- Addresses and neighbors ----------------------------------------------------------------------------------------

switch_event subject_of(const std::vector<kernel_link>& links, const address_row& row) {
  switch_event subject = subject_of(event_kind::address, links, row.device.number);
  subject.address = row.address;
  return subject;
}

switch_event subject_of(const std::vector<kernel_link>& links, const neighbor_row& row) {
  switch_event subject = subject_of(event_kind::neighbor, links, row.device.number);
  subject.address = row.address;
  subject.mac = row.mac;
  return subject;
}

event_value value_of(const std::optional<ip_address>& address) {
  return address ? event_value(*address) : event_value();
}

event_value value_of(const std::optional<mac_address>& mac) { return mac ? event_value(*mac) : event_value(); }

event_value what_appears(const address_row& row) { return row.address; }
event_value what_appears(const neighbor_row& row) { return value_of(row.state); }

// Lifetimes are left out: they change all the time.
void compare_rows(const address_row& before, const address_row& now, change_writer& changes) {
  changes.compare("flags", value_of(before.flags.value_or("")), value_of(now.flags.value_or("")));
  changes.compare("scope", before.scope, now.scope);
  changes.compare("label", value_of(before.label), value_of(now.label));
  changes.compare("peer", value_of(before.peer), value_of(now.peer));
}

void compare_rows(const neighbor_row& before, const neighbor_row& now, change_writer& changes) {
  changes.compare("state", value_of(before.state), value_of(now.state));
  changes.compare("mac", value_of(before.mac), value_of(now.mac));
  changes.compare("flags", value_of(before.flags), value_of(now.flags));
}

// `before` is null for a new row.
template <typename Row>
void compare_rows(const std::vector<kernel_link>& links, const Row* before, const Row& now, event_list& to) {
  change_writer changes(to, subject_of(links, now));
  if (before == nullptr)
    changes.add(kAdded, {}, what_appears(now));
  else
    compare_rows(*before, now, changes);
}

template <typename Row>
void take_row(const std::vector<kernel_link>& links, std::map<address_key, Row>& known, Row row, event_list& to) {
  const auto [place, is_new] = known.try_emplace(key_of(row.device, row.address), row);
  compare_rows(links, is_new ? nullptr : &place->second, row, to);
  place->second = std::move(row);
}

// The neighbor may have another state at its end than before: the event has the one that was known.
template <typename Row>
void take_end(const std::vector<kernel_link>& links, std::map<address_key, Row>& known, const Row& row,
              event_list& to) {
  const auto found = known.find(key_of(row.device, row.address));
  if (found == known.end()) return;
  change_writer(to, subject_of(links, found->second)).add(kRemoved, what_appears(found->second), {});
  known.erase(found);
}

// The rows of a removed device ended with it.
template <typename Row>
void compare_tables(const known_devices& before, const known_devices& now,
                    std::map<address_key, Row> known_devices::*rows, event_list& to) {
  for (const auto& [key, row] : before.*rows)
    if (!(now.*rows).contains(key) && find_link(now.links, row.device.number) != nullptr)
      change_writer(to, subject_of(now.links, row)).add(kRemoved, what_appears(row), {});
  for (const auto& [key, row] : now.*rows) {
    const auto found = (before.*rows).find(key);
    compare_rows(now.links, found == (before.*rows).end() ? nullptr : &found->second, row, to);
  }
}

// ---- Modules --------------------------------------------------------------------------------------------------------

std::string word_of_policy(uint8 policy) {
  switch (policy) {
    case 0: return {};
    case ETHTOOL_MODULE_POWER_MODE_POLICY_HIGH: return "high";
    case ETHTOOL_MODULE_POWER_MODE_POLICY_AUTO: return "auto";
    default: return std::to_string(policy);
  }
}

std::string word_of_mode(uint8 mode) {
  switch (mode) {
    case 0: return {};
    case ETHTOOL_MODULE_POWER_MODE_LOW: return "low";
    case ETHTOOL_MODULE_POWER_MODE_HIGH: return "high";
    default: return std::to_string(mode);
  }
}

void compare_modules(const std::vector<kernel_link>& links, uint32 device, const module_power& before,
                     const module_power& now, event_list& to) {
  change_writer changes(to, subject_of(event_kind::module, links, device));
  changes.compare("power_mode_policy", value_of(word_of_policy(before.policy)), value_of(word_of_policy(now.policy)));
  changes.compare("power_mode", value_of(word_of_mode(before.mode)), value_of(word_of_mode(now.mode)));
}

// ---- Dumps ----------------------------------------------------------------------------------------------------------

template <typename Head>
void dump(netlink_socket& route, uint16 type, const char* what, const message_visitor& visit,
          const std::function<void()>& restart) {
  netlink_request request(type, NLM_F_DUMP);
  request.extra<Head>() = {};
  if (const int error = route.ask(request, visit, restart); error != 0)
    throw kernel_error(std::string("cannot read the ") + what + " of the kernel: " + std::strerror(error));
}

}  // namespace

address_key key_of(const row_device& device, const ip_address& address) {
  return {device.number, address.is_ipv6, address.bytes, address.prefix_length};
}

known_devices read_known_devices() {
  netlink_socket route(NETLINK_ROUTE);
  known_devices all;
  all.links = read_devices(route);
  dump<ifaddrmsg>(
      route, RTM_GETADDR, "addresses",
      [&all](const nlmsghdr& message) {
        if (auto row = address_in_message(message)) all.addresses.emplace(key_of(row->device, row->address), *row);
      },
      [&all] { all.addresses.clear(); });
  dump<ndmsg>(
      route, RTM_GETNEIGH, "neighbors",
      [&all](const nlmsghdr& message) {
        auto row = is_neighbor(message) ? neighbor_in_message(message) : std::nullopt;
        if (row) all.neighbors.emplace(key_of(row->device, row->address), *row);
      },
      [&all] { all.neighbors.clear(); });
  ethtool_socket ethtool;
  all.modules = read_module_power(ethtool);
  return all;
}

// ---- Events in messages ---------------------------------------------------------------------------------------------

void event_finder::take_route(const nlmsghdr& message, event_list& to) {
  switch (message.nlmsg_type) {
    case RTM_NEWLINK:
    case RTM_DELLINK: return take_link(message, to);
    case RTM_NEWADDR:
    case RTM_DELADDR: return take_address(message, to);
    case RTM_NEWNEIGH:
    case RTM_DELNEIGH: return take_neighbor(message, to);
    default: return;
  }
}

void event_finder::take_link(const nlmsghdr& message, event_list& to) {
  if (!is_about_whole_link(message)) return;
  std::vector<kernel_link>& links = known_.links;
  if (message.nlmsg_type == RTM_DELLINK) return remove_link(device_in_message(message), to);
  auto link = decode_link(message);
  if (!link) return;
  if (kernel_link* const known = find_link(links, link->number)) {
    const kernel_link before = std::exchange(*known, *link);
    return compare_links(links, before, *link, to);
  }
  const auto place =
      std::find_if(links.begin(), links.end(), [&](const kernel_link& it) { return it.number > link->number; });
  add_new_link(links, *links.insert(place, std::move(*link)), to);
}

void event_finder::remove_link(uint32 device, event_list& to) {
  const kernel_link* const known = find_link(known_.links, device);
  if (known == nullptr) return;
  add_removed_link(known_.links, *known, to);
  known_.links.erase(known_.links.begin() + (known - known_.links.data()));
  forget_device(known_.addresses, device);
  forget_device(known_.neighbors, device);
  known_.modules.erase(device);
}

void event_finder::take_address(const nlmsghdr& message, event_list& to) {
  auto row = address_in_message(message);
  if (!row) return;
  if (message.nlmsg_type == RTM_DELADDR) return take_end(known_.links, known_.addresses, *row, to);
  take_row(known_.links, known_.addresses, std::move(*row), to);
}

void event_finder::take_neighbor(const nlmsghdr& message, event_list& to) {
  auto row = neighbor_in_message(message);
  if (!row) return;
  if (message.nlmsg_type == RTM_DELNEIGH || !is_neighbor(message))
    return take_end(known_.links, known_.neighbors, *row, to);
  take_row(known_.links, known_.neighbors, std::move(*row), to);
}

void event_finder::take_ethtool(const nlmsghdr& message, event_list& to) {
  const auto found = decode_module_power(message);
  if (!found) return;
  module_power& known = known_.modules[found->first];
  compare_modules(known_.links, found->first, std::exchange(known, found->second), found->second, to);
}

void event_finder::take_reading(known_devices now, event_list& to) {
  for (const kernel_link& it : known_.links)
    if (find_link(now.links, it.number) == nullptr) add_removed_link(known_.links, it, to);
  for (const kernel_link& it : now.links) {
    const kernel_link* const before = find_link(known_.links, it.number);
    if (before == nullptr)
      add_new_link(now.links, it, to);
    else
      compare_links(now.links, *before, it, to);
  }
  compare_tables(known_, now, &known_devices::addresses, to);
  compare_tables(known_, now, &known_devices::neighbors, to);
  for (const auto& [device, power] : now.modules) {
    const auto before = known_.modules.find(device);
    compare_modules(now.links, device, before == known_.modules.end() ? module_power() : before->second, power, to);
  }
  known_ = std::move(now);
}

// ---- Events as they come --------------------------------------------------------------------------------------------

namespace {

constexpr std::size_t kEventBytes = 64 * 1024;
// Datagrams that are read at once: between them events are shown, and the user is heard. After a loss all that wait are
// read, but for an endless stream of them.
constexpr int kMostAtOnce = 1024, kMostAfterLoss = 65536;

class kernel_event_reader final : public event_reader {
 public:
  // What is published while everything is read waits in the channels.
  kernel_event_reader(interface_mapper map, link_taker take)
      : map_(std::move(map)),
        take_link_(std::move(take)),
        route_(subscribe(NETLINK_ROUTE, kRouteGroups)),
        finder_(known_devices()) {
    if (const uint32 group = ethtool_socket().monitor_group(); group != 0)
      ethtool_ = subscribe(NETLINK_GENERIC, std::span(&group, 1));
    finder_ = event_finder(read_known_devices());
    name_devices();
  }

  std::vector<int> descriptors() const override {
    std::vector<int> all = {route_->descriptor()};
    if (ethtool_ != nullptr) all.push_back(ethtool_->descriptor());
    return all;
  }

  bool read(event_list& to) override {
    const std::size_t first = to.size();
    bool is_complete = read_from(*route_, [&](const nlmsghdr& message) { finder_.take_route(message, to); });
    if (ethtool_ != nullptr)
      is_complete &= read_from(*ethtool_, [&](const nlmsghdr& message) { finder_.take_ethtool(message, to); });
    if (!is_complete) finder_.take_reading(read_known_devices(), to);
    complete(std::span(to).subspan(first));
    return is_complete;
  }

 private:
  static constexpr uint32 kRouteGroups[] = {RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR, RTNLGRP_NEIGH};

  static std::unique_ptr<kernel_channel> subscribe(int bus, std::span<const uint32> groups) {
    auto channel = the_kernel_io().subscribe(bus, groups);
    if (channel == nullptr)
      throw kernel_error(std::string("cannot subscribe to the events of the kernel: ") + std::strerror(errno));
    return channel;
  }

  // False when messages were lost; those that came before are read.
  bool read_from(kernel_channel& channel, const message_visitor& visit) {
    bool is_complete = true;
    for (int count = 0; count < (is_complete ? kMostAtOnce : kMostAfterLoss); ++count) {
      int error = 0;
      const ssize_t size = channel.receive({buffer_.get(), kEventBytes}, error);
      if (size >= 0) {
        visit_messages({buffer_.get(), static_cast<std::size_t>(size)}, visit);
        continue;
      }
      if (error == EAGAIN) break;
      if (error == ENOBUFS || error == ENOSPC)
        is_complete = false;
      else if (error != EINTR)
        throw kernel_error(std::string("cannot read the events of the kernel: ") + std::strerror(error));
    }
    return is_complete;
  }

  // The time, and the interfaces of devices. New devices get theirs.
  void complete(std::span<switch_event> added) {
    const auto now = static_cast<uint32>(clock_now());
    const auto is_new = [](const switch_event& it) { return it.kind == event_kind::link && it.change == kAdded; };
    if (std::any_of(added.begin(), added.end(), is_new)) name_devices();
    for (switch_event& it : added) {
      it.at_sec = now;
      if (const auto found = interfaces_.find(it.device.number); found != interfaces_.end())
        it.device.if_index = found->second;
      const kernel_link* const link = find_link(finder_.links(), it.device.number);
      if (it.change == kOperState && link != nullptr && take_link_) take_link_(*link);
    }
  }

  void name_devices() {
    const std::vector<mapped_device> mapped = map_(finder_.links());
    for (const kernel_link& it : finder_.links()) {
      const mapped_device* const found = find_by<&mapped_device::number>(mapped, it.number);
      interfaces_[it.number] = found == nullptr ? 0 : found->if_index;
    }
  }

  interface_mapper map_;
  link_taker take_link_;  // may be empty
  std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kEventBytes);
  std::unique_ptr<kernel_channel> route_;
  std::unique_ptr<kernel_channel> ethtool_;  // null: modules publish nothing
  event_finder finder_;
  std::map<uint32, if_index_t> interfaces_;  // by the device's number, also of removed devices
};

}  // namespace

std::unique_ptr<event_reader> open_kernel_events(interface_mapper map, link_taker take) {
  if (the_kernel_io().subscribe == nullptr) return nullptr;
  return std::make_unique<kernel_event_reader>(std::move(map), std::move(take));
}

}  // namespace host
