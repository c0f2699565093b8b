// Datagrams of the kernel: whatever their messages claim, each decoder reads within them and makes no more than they
// hold.
#include "source/kernel/netlink.h"

#include <linux/rtnetlink.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "source/kernel/ethtool.h"
#include "source/kernel/events.h"
#include "source/kernel/links.h"
#include "source/kernel/tables.h"

namespace {

void expect(bool holds) {
  if (!holds) std::abort();
}

// A device whose attributes later messages change.
host::kernel_link known_link() {
  host::kernel_link link;
  link.number = 7;
  link.name = "swp7";
  return link;
}

void decode_links(const nlmsghdr& message, std::vector<host::kernel_link>& links) {
  const std::size_t size = message.nlmsg_len;
  if (const auto link = host::decode_link(message)) {
    expect(link->name.size() < size && link->alias.size() < size && link->kind.size() < size);
    expect(link->alternative_names.size() * sizeof(nlattr) < size);
  }
  host::decode_bridge_vlans(message, links);
  host::decode_address(message, links);
  host::decode_default_route(message);
  for (const host::kernel_link& link : links)
    expect(std::ranges::all_of(link.vlans, [](uint16_t vlan) { return vlan < 4096; }));
}

void decode_tables(const nlmsghdr& message, const host::table_devices& devices) {
  std::vector<host::table_row> rows;
  host::decode_address_row(message, devices, rows);
  host::decode_neighbor_row(message, devices, rows);
  host::decode_forwarding_row(message, devices, rows);
  expect(rows.size() <= 3);
  const auto bridge = host::decode_bridge(message);
  const auto port = host::decode_bridge_port(message, devices);
  if (bridge && port) host::role_of(*port, *bridge);
}

void decode_ethtool(const nlmsghdr& message, std::vector<host::kernel_link>& links) {
  host::decode_link_modes(message, links);
  host::decode_pause(message, links);
  host::link_faults faults;
  host::decode_link_fault(message, faults);
  std::map<uint32_t, host::driver_counter_values> counted;
  host::decode_driver_counters(message, counted);
  expect(faults.size() <= 1 && counted.size() <= 1);
  host::decode_module_power(message);
  expect(host::decode_module_page(message, 7).size() < message.nlmsg_len);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  // As a socket leaves them: aligned, and nothing behind them.
  const std::vector<char> datagram(data, data + size);
  std::vector<host::kernel_link> links = {known_link()};
  const host::table_devices devices(links, {}, {});
  host::event_finder finder({.links = links});
  host::visit_messages(datagram, [&](const nlmsghdr& message) {
    decode_links(message, links);
    decode_tables(message, devices);
    decode_ethtool(message, links);
    std::vector<host::switch_event> events;
    finder.take_route(message, events);
    finder.take_ethtool(message, events);
  });
  return 0;
}
