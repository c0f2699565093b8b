// Tables of a switch: rows that a source reads piece by piece, so that a table of any length takes little memory.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/table_id.h"
#include "platform/types.h"
#include "switch/model.h"

namespace host {

// What a row is about. An interface, a device of the kernel, or both.
struct row_device {
  if_index_t if_index = 0;  // 0: the device has no interface
  std::string name;         // of the kernel's device; empty: none
  uint32 number = 0;        // the kernel's
};

// Lists of words are separated by commas.
struct address_row {
  row_device device;
  std::optional<uint32> mtu_bytes;
  ip_address address;
  std::optional<ip_address> peer;  // at the other end of a link between two
  std::string scope;               // empty: unknown
  std::optional<std::string> flags;
  std::string label;
  std::optional<uint32> valid_seconds;  // none: for ever
  std::optional<uint32> preferred_seconds;
};

struct neighbor_row {
  row_device device;
  ip_address address;
  std::optional<mac_address> mac;
  std::string state;
  std::string flags;
  std::optional<uint32> age_seconds;  // since it was known to be reachable
};

// An address that a bridge or a device forwards.
struct forwarding_row {
  row_device port;
  std::string bridge;  // empty: the device's own
  mac_address mac{};
  std::optional<uint32> vlan;
  std::string type;  // permanent, static or dynamic
  std::string flags;
  std::optional<ip_address> remote;   // of a tunnel
  std::optional<uint32> age_seconds;  // since a packet came from the address
};

using bridge_id = std::array<uint8, 8>;  // priority, then the address

struct bridge_port_row {
  row_device port;
  std::string bridge;
  std::string state;                // empty: unknown
  std::optional<std::string> role;  // none: the bridge does not run spanning tree itself
  std::optional<uint32> path_cost, priority, port_id;
  std::optional<bridge_id> root, designated_bridge;
};

// Counters of a driver under its own names. Those of a device follow each other in rows of at most 512.
struct driver_counter_row {
  row_device device;
  std::optional<std::vector<std::pair<std::string, uint64>>> counters;  // none: the driver reports none
};

// What the kernel does not report is absent.
struct hardware_row {
  row_device device;
  std::string driver, driver_version, firmware_version, bus;
  std::optional<mac_address> permanent_mac;
  std::optional<uint32> rx_queues, tx_queues, other_queues, combined_queues;
  std::optional<uint32> most_rx_queues, most_tx_queues, most_other_queues, most_combined_queues;
  std::optional<uint32> rx_ring, tx_ring, most_rx_ring, most_tx_ring;  // entries
  std::optional<std::string> configured_fec;                           // words
  std::string active_fec;
  std::optional<bool> is_eee_enabled, is_eee_active;
  std::optional<std::string> offloads;  // the names of those that are active
};

// A neighbor by LLDP, or a protocol like it. What it does not advertise is empty.
struct lldp_row {
  row_device device;
  std::string protocol = {};
  std::string chassis_id = {}, chassis_id_type = {};
  std::string system_name = {}, system_description = {};
  std::string management_addresses = {};                     // words
  std::string capabilities = {}, enabled_capabilities = {};  // words
  std::string port_id = {}, port_id_type = {}, port_description = {};
  std::optional<uint32> port_vlan = {};  // of untagged frames
  std::vector<uint16> vlans = {};        // ascending
  std::optional<uint32> ttl_seconds = {};
  std::optional<uint32> unchanged_seconds = {};  // since it advertised something else
};

// A measured value of a transceiver that is outside of a limit.
struct violation_row {
  row_device device;
  std::optional<uint32> lane;  // from 1; none: of the module
  std::string quantity;
  std::string measured, limit;  // digits; empty: a power without light
  std::string unit;
  uint32 mark = 0;  // 1 high alarm, 2 high warning, 3 low warning, 4 low alarm
};

using table_row = std::variant<address_row, neighbor_row, forwarding_row, bridge_port_row, driver_counter_row,
                               hardware_row, lldp_row, violation_row>;

// A table that is being read. It lives until its last row was read, or the reader is dropped.
class table_reader {
 public:
  table_reader() = default;
  virtual ~table_reader() = default;
  table_reader(const table_reader&) = delete;
  table_reader& operator=(const table_reader&) = delete;

  // Appends the next rows, if any. False when there are no more. Throws std::runtime_error with the reason.
  virtual bool next(std::vector<table_row>& rows) = 0;

  // Whether the table changed while it was read: rows may be missing, or be there twice.
  virtual bool has_changed() const { return false; }
};

// Reads rows that are in memory.
class rows_in_memory final : public table_reader {
 public:
  explicit rows_in_memory(std::vector<table_row> rows) : rows_(std::move(rows)) {}
  bool next(std::vector<table_row>& rows) override;

 private:
  std::vector<table_row> rows_;
};

// The addresses in a model, of one family; without `interfaces` of all.
std::unique_ptr<table_reader> addresses_of(const machine& model, bool is_ipv6,
                                           const std::vector<if_index_t>& interfaces);

}  // namespace host
