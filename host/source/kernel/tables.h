// The tables of the kernel, by dumps that are read while their rows are shown.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "source/kernel/device_map.h"
#include "source/kernel/links.h"
#include "source/kernel/netlink.h"
#include "switch/tables.h"

namespace host {

// A device as rows name it.
struct table_device {
  uint32 number = 0;  // the kernel's
  std::string name;
  if_index_t if_index = 0;  // 0: none
  uint32 mtu_bytes = 0;
  std::optional<mac_address> permanent_mac = {};
};

// The devices that a table is read of, as the command found them.
class table_devices {
 public:
  // `interfaces`, sorted: those that the user named; without any all devices.
  table_devices(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped,
                const std::vector<if_index_t>& interfaces);

  bool is_requested(uint32 number) const;

  // Sorted by number.
  const std::vector<table_device>& requested() const { return requested_; }

  // Null for a device that came later.
  const table_device* find(uint32 number) const;

  // As rows have it, also a device that came later.
  row_device row_of(uint32 number) const;

 private:
  std::vector<table_device> all_;
  std::vector<table_device> requested_;
  bool has_all_;
};

// Appends the rows of a message.
using row_decoder = std::function<void(const nlmsghdr&, const table_devices&, std::vector<table_row>&)>;

// Reads a table whose rows are messages of one dump of NETLINK_ROUTE.
std::unique_ptr<table_reader> read_dump(netlink_request request, std::string what, row_decoder decode,
                                        table_devices devices);

// Null when the kernel has no such table.
std::unique_ptr<table_reader> open_kernel_table(table_id table, table_devices devices);

// ---- Decoders of single messages ------------------------------------------------------------------------------------

// An address or a neighbor of a message about one, also about its end; its device has a number only.
std::optional<address_row> address_in_message(const nlmsghdr& message);
std::optional<neighbor_row> neighbor_in_message(const nlmsghdr& message);

// Whether an entry is a neighbor: those that need no resolution, such as those of groups, are none.
bool is_neighbor(const nlmsghdr& message);

void decode_address_row(const nlmsghdr& message, const table_devices& devices, std::vector<table_row>& rows);
void decode_neighbor_row(const nlmsghdr& message, const table_devices& devices, std::vector<table_row>& rows);
void decode_forwarding_row(const nlmsghdr& message, const table_devices& devices, std::vector<table_row>& rows);

// A bridge, by its own message, which spanning tree needs for the rows of its ports.
struct bridge_state {
  bool runs_spanning_tree = false;  // the kernel does
  std::optional<bridge_id> id;
  uint32 root_port = 0;  // number of a port; 0: it is the root
};
std::optional<bridge_state> decode_bridge(const nlmsghdr& message);

// The row of a port; its role follows from its bridge.
struct bridge_port {
  uint32 bridge = 0;  // the kernel's number
  uint32 number = 0;  // of the port in its bridge
  uint32 designated_port = 0;
  bridge_port_row row;
};
std::optional<bridge_port> decode_bridge_port(const nlmsghdr& message, const table_devices& devices);
std::optional<std::string> role_of(const bridge_port& port, const bridge_state& bridge);

// All ports at once: a bridge may come after its ports.
std::unique_ptr<table_reader> read_bridge_ports(table_devices devices);

// The counters of a device's driver in rows; one without counters when it has none.
std::vector<table_row> driver_counter_rows(const table_device& device);
std::unique_ptr<table_reader> read_driver_counter_table(table_devices devices);
std::unique_ptr<table_reader> read_hardware_table(table_devices devices);

// Neighbors by lldpd, in the order of devices.
std::unique_ptr<table_reader> read_lldp_table(table_devices devices);

// Words of the bits in `flags`, in the order of `words`, separated by commas.
struct flag_word {
  uint32 bits;
  const char* word;
};
std::string words_of_flags(uint32 flags, std::span<const flag_word> words);

// Appends a word to a list.
void append_word(std::string& list, std::string_view word);

// An address in its bytes; nothing when there are not four or sixteen.
std::optional<ip_address> address_of(std::span<const uint8> bytes);

}  // namespace host
