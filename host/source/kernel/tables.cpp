#include "source/kernel/tables.h"

#include <linux/neighbour.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <utility>

#include "source/kernel/dump.h"
#include "source/kernel/sorted_records.h"

namespace host {
namespace {

class dump_reader final : public table_reader {
 public:
  dump_reader(netlink_request request, std::string what, row_decoder decode, table_devices devices)
      : dump_(NETLINK_ROUTE, std::move(request), std::move(what)),
        decode_(std::move(decode)),
        devices_(std::move(devices)) {}

  bool next(std::vector<table_row>& rows) override {
    return dump_.next([&](const nlmsghdr& message) { decode_(message, devices_, rows); });
  }
  bool has_changed() const override { return dump_.has_changed(); }

 private:
  kernel_dump dump_;
  row_decoder decode_;
  table_devices devices_;
};

netlink_request neighbor_request(uint8 family) {
  netlink_request request(RTM_GETNEIGH, NLM_F_DUMP);
  request.extra<ndmsg>().ndm_family = family;
  return request;
}

netlink_request address_request(uint8 family) {
  netlink_request request(RTM_GETADDR, NLM_F_DUMP);
  request.extra<ifaddrmsg>().ifa_family = family;
  return request;
}

}  // namespace

table_devices::table_devices(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped,
                             const std::vector<if_index_t>& interfaces)
    : has_all_(interfaces.empty()) {
  all_.reserve(links.size());
  for (const kernel_link& it : links) {
    const mapped_device* const known = find_by<&mapped_device::number>(mapped, it.number);
    const if_index_t if_index = known == nullptr ? 0 : known->if_index;
    all_.push_back({it.number, it.name, if_index, it.mtu_bytes, it.permanent_mac});
    if (has_all_ || std::binary_search(interfaces.begin(), interfaces.end(), if_index))
      requested_.push_back(all_.back());
  }
}

const table_device* table_devices::find(uint32 number) const { return find_by<&table_device::number>(all_, number); }

bool table_devices::is_requested(uint32 number) const {
  return has_all_ || find_by<&table_device::number>(requested_, number) != nullptr;
}

row_device table_devices::row_of(uint32 number) const {
  const table_device* const known = find(number);
  return known == nullptr ? row_device{0, {}, number} : row_device{known->if_index, known->name, number};
}

std::unique_ptr<table_reader> read_dump(netlink_request request, std::string what, row_decoder decode,
                                        table_devices devices) {
  return std::make_unique<dump_reader>(std::move(request), std::move(what), std::move(decode), std::move(devices));
}

std::unique_ptr<table_reader> open_kernel_table(table_id table, table_devices devices) {
  switch (table) {
    case table_id::ipv4_addresses:
    case table_id::ipv6_addresses:
      return read_dump(address_request(table == table_id::ipv4_addresses ? AF_INET : AF_INET6),
                       "addresses of the kernel", decode_address_row, std::move(devices));
    case table_id::ipv4_neighbors:
    case table_id::ipv6_neighbors:
      return read_dump(neighbor_request(table == table_id::ipv4_neighbors ? AF_INET : AF_INET6),
                       "neighbors of the kernel", decode_neighbor_row, std::move(devices));
    case table_id::mac_addresses:
      return read_dump(neighbor_request(AF_BRIDGE), "MAC addresses of the kernel", decode_forwarding_row,
                       std::move(devices));
    case table_id::bridge_ports: return read_bridge_ports(std::move(devices));
    case table_id::driver_counters: return read_driver_counter_table(std::move(devices));
    case table_id::hardware: return read_hardware_table(std::move(devices));
    case table_id::lldp_neighbors: return read_lldp_table(std::move(devices));
    case table_id::optical_violations: break;
  }
  return nullptr;
}

void append_word(std::string& list, std::string_view word) {
  if (!list.empty()) list += ',';
  list += word;
}

std::string words_of_flags(uint32 flags, std::span<const flag_word> words) {
  std::string list;
  for (const flag_word& it : words)
    if ((flags & it.bits) == it.bits) append_word(list, it.word);
  return list;
}

std::optional<ip_address> address_of(std::span<const uint8> bytes) {
  constexpr std::size_t kIpv4Bytes = 4, kIpv6Bytes = 16;
  if (bytes.size() != kIpv4Bytes && bytes.size() != kIpv6Bytes) return std::nullopt;
  ip_address address{.is_ipv6 = bytes.size() == kIpv6Bytes};
  std::copy(bytes.begin(), bytes.end(), address.bytes.begin());
  return address;
}

}  // namespace host
