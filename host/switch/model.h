// What a switch is, as plain data. Sources (switch/source.h) fill it, services answer from it.
//
// Numbers are native, units stand in the names, interfaces are named by their index. Vectors of interfaces are sorted
// by index.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/if_index.h"
#include "platform/types.h"
#include "switch/optics.h"
#include "switch/port_settings.h"

namespace host {

using mac_address = std::array<uint8, 6>;

struct ip_address {
  bool is_ipv6 = false;
  std::array<uint8, 16> bytes{};  // network order; four are used for IPv4
  uint32 prefix_length = 0;       // bits
};

// What a port can do, as its line card knows it.
struct port_capabilities {
  std::string model;
  std::string type;           // media type; empty for a port whose transceiver tells
  uint8 speeds = 0;           // CRDCFG_SPEED_*
  uint8 duplexes = 0;         // CRDCFG_DUPLEX_*
  uint8 rx_flow_control = 0;  // CRDCFG_FLOW_*
  uint8 tx_flow_control = 0;
  uint8 rate_modes = 0;  // CRDCFG_RATE_*
  bool trunk_encapsulation = true;
  bool channel = true;
  bool suppression = true;
  bool cos_rewrite = true;
  bool tos_rewrite = true;
  bool span = true;
  bool udld = true;
  bool debounce = true;
  bool mdix = false;
  bool transceiver = false;
  bool e_mode_on_first_only = false;  // mode E only on the first of each four Fibre-Channel ports
  uint8 rx_qos_priorities = 0, rx_qos_queues = 0, rx_qos_thresholds = 0;
  uint8 tx_qos_priorities = 0, tx_qos_queues = 0, tx_qos_thresholds = 0;
};

// The module in a port. An absent one is no transceiver at all.
struct transceiver {
  bool supported = true;
  uint8 type = 0;                  // FCOT_TYPE_*
  std::vector<uint8> eeprom = {};  // identity page as it was read
  bool is_initializing = false;
  bool has_tx_fault = false;
  std::optional<bool> has_rx_loss = {};  // absent: as the link is
  optical_diagnostics diagnostics = {};
};

// Packets by their size in bytes: up to 64, 127, 255, 511, 1023, 1518, 1548, and what is longer.
inline constexpr std::array<uint32, 7> kLargestOfSizeClass = {64, 127, 255, 511, 1023, 1518, 1548};
using size_classes = std::array<uint64, kLargestOfSizeClass.size() + 1>;

// Totals since the counters were cleared.
struct traffic_counters {
  uint64 bytes = 0;
  uint64 unicast_packets = 0;
  uint64 multicast_packets = 0;
  uint64 broadcast_packets = 0;
  uint64 errors = 0;
  uint64 discards = 0;
  size_classes packets_by_size{};

  uint64 packets() const { return unicast_packets + multicast_packets + broadcast_packets; }
};

struct error_counters {
  uint64 crc = 0;
  uint64 runts = 0;
  uint64 giants = 0;
  uint64 jabber = 0;
  uint64 overruns = 0;
  uint64 underruns = 0;
  uint64 collisions = 0;
  uint64 late_collisions = 0;
  uint64 deferred = 0;
  uint64 lost_carrier = 0;
  uint64 no_carrier = 0;
  uint64 pause_received = 0;
  uint64 pause_sent = 0;

  uint64 short_frames = 0;
  uint64 no_buffer = 0;
  uint64 ecc = 0;
  uint64 ignored = 0;
  uint64 bad_ethertype = 0;
  uint64 bad_protocol = 0;
  uint64 bad_encapsulation = 0;
  uint64 dropped_while_down = 0;
  uint64 dribble = 0;
  uint64 watchdog = 0;
  uint64 symbol = 0;
  uint64 storm_suppressed = 0;
  uint64 compressed = 0;
  uint64 receive_fifo = 0;

  uint64 crc_sent = 0;
  uint64 single_collisions = 0;
  uint64 multiple_collisions = 0;
  uint64 excessive_collisions = 0;
  uint64 deferred_long = 0;
  uint64 babble = 0;
  uint64 sqe_test = 0;
  uint64 send_fifo = 0;
  uint64 bpdu_lost = 0;
  uint64 cos0_lost = 0, cos1_lost = 0, cos2_lost = 0, cos3_lost = 0;  // by class of service
  uint64 cos4_lost = 0, cos5_lost = 0, cos6_lost = 0, cos7_lost = 0;
};

// One sample of the rate ring.
struct rate_sample {
  uint64 in_bytes = 0;
  uint64 out_bytes = 0;
  uint32 in_frames = 0;
  uint32 out_frames = 0;
};

struct statistics {
  traffic_counters in;
  traffic_counters out;
  error_counters errors;
  // Averages of the last half minute, of a management port of the last minute.
  uint64 in_bytes_per_second = 0;
  uint64 out_bytes_per_second = 0;
  uint64 in_packets_per_second = 0;
  uint64 out_packets_per_second = 0;
  std::array<rate_sample, 8> rate_ring{};  // one sample a minute
  uint32 rate_index = 0;                   // slot that will be written next
  uint32 last_clear_sec = 0;               // seconds since 1970; 0 is never
  uint32 counted_sec = 0;                  // how long the totals have been counting
  bool is_cleared_here = false;            // the totals began with a clear that the source did not make itself
};

// What a source makes the statistics of an interface from; only the source knows what it is.
struct traffic_source;

// Any kind of interface. What a kind does not have keeps its default.
struct interface : port_settings {
  if_index_t if_index = 0;
  bool is_created = false;  // by a command; the running configuration creates it again

  // Configured and operational attributes in the port manager's numbers (platform/port_manager.h).
  uint16 oper_flow_control = 0;
  uint32 bandwidth_kbps = 0;
  uint32 delay_usec = 10;
  uint16 debounce_ms = 0;
  uint8 rate_mode = 1;
  bool mdix_on = true;
  uint32 resets = 0;
  uint32 link_change_sec = 0;  // seconds since 1970; 0 is never
  struct link_change {
    uint32 at_sec;
    uint8 state;
  };
  std::vector<link_change> link_changes;  // since the switch started, in their order
  bool is_locked = false;                 // the port takes no settings
  uint32 refusal = 0;                     // the status with which it refuses every setting; 0: it does not
  uint32 vsan = 1;
  std::vector<uint16> trunk_vsans;  // what a trunking port carries, ascending
  uint8 fc_layer = 0;               // phy_port_layer: 1 for a channel that carries no Ethernet
  uint32 record_error = 0;          // status of the port's record; 0 is good

  mac_address burned_in_mac{};
  mac_address router_mac{};

  // Layer and VLANs.
  uint16 encapsulation_vlan = 0;      // of a sub-interface; 0 is none
  std::vector<uint16> errored_vlans;  // carried, but shut by an error
  std::vector<uint16> blocked_vlans;  // of those that it carries: where spanning tree does not let it forward
  struct private_vlans {
    uint16 host_primary = 0, host_secondary = 0, mapping_primary = 0;  // 0 is none
    std::vector<uint16> mapping_secondary;
  };
  private_vlans private_vlan;
  std::vector<ip_address> addresses;

  // Other interfaces; 0 is none.
  if_index_t bound_to = 0;
  uint32 satellite_unit = 0;  // of a satellite's port, or the unit that a fabric port leads to; 0 is none
  std::vector<if_index_t> tracked;
  std::string multi_chassis_status;

  struct storm_level {
    uint8 mode = 0;
    uint8 percent = 100;
    uint16 hundredths = 0;
  };
  std::array<storm_level, 3> storm_control{};  // broadcast, multicast, unicast

  port_capabilities capabilities;
  std::optional<transceiver> module_in_port;
  statistics stats;  // as they were last brought up to date, see switch/live_statistics.h
  std::shared_ptr<const traffic_source> traffic;
};

// A line card or supervisor. Slots count from 0.
struct card {
  uint32 slot = 0;
  uint32 card_type = 0;
  std::string model;
  bool shares_resources = false;  // buffers and bandwidth are shared out among groups of its ports
};

// A VLAN that has a name or a kind of its own.
struct vlan {
  uint16 id = 0;
  std::string name;
  uint32 kind = 0;  // VLAN_TYPE_*; 0 is an ordinary one
  bool is_shut = false;
};

// Who may use the shell, and how far.
struct user {
  std::string name;
  std::optional<std::vector<uint16>> vsans;  // those that the user sees, ascending; without a list all
  bool sees_counters = true;
  bool may_clear_inband = false;
};

struct machine {
  std::string name;
  uint32 chassis_type = 0;
  uint32 num_slots = 0;
  std::string mgmt_device;   // kernel device of the management port
  std::string mgmt_device2;  // of the second one, on chassis that have it
  std::vector<card> cards;
  std::vector<interface> interfaces;  // sorted by if_index
  std::vector<if_index_t> startup;    // interfaces of the startup configuration, sorted
  std::vector<if_index_t> deleted;    // interfaces of the source that commands deleted, sorted
  std::vector<user> users;
  std::vector<vlan> vlans;  // sorted by id

  // The interface with this index, or null.
  interface* find(if_index_t if_index);
  const interface* find(if_index_t if_index) const;

  // Puts an interface in its place; one with its index must not exist.
  void add(interface added);

  // Takes an interface away, also from what others track. False when there is none.
  bool remove(if_index_t if_index);

  // What runs now becomes the startup configuration.
  void save_startup();

  // The user with this name, or null.
  const user* find_user(std::string_view name) const;

  // The members of a port-channel, in ascending order.
  std::vector<if_index_t> members_of(if_index_t channel) const;
};

// The machine that the services answer for. Set once before the first command.
machine& the_machine();

}  // namespace host
