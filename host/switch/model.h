// The model of a switch, as plain data. Sources (switch/source.h) fill it, services answer from it.
//
// Numbers are native, units are part of the names, interfaces are named by their index. Vectors of interfaces are
// sorted by index. Values that a source may not know are optional.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/if_index.h"
#include "platform/port_manager.h"
#include "platform/types.h"
#include "switch/count.h"
#include "switch/optics.h"
#include "switch/port_settings.h"

namespace host {

using mac_address = std::array<uint8, 6>;

struct ip_address {
  bool is_ipv6 = false;
  std::array<uint8, 16> bytes{};  // network order; four are used for IPv4
  uint32 prefix_length = 0;       // bits

  bool operator==(const ip_address&) const = default;
};

// Capabilities of a port, from its line card.
struct port_capabilities {
  std::string model;
  std::string type;                  // media type; empty where the transceiver decides
  std::optional<uint32> speeds = 0;  // bits, see switch/port_settings.h; and CRDCFG_SPEED_AUTO
  struct mtu_limits {
    uint32 lowest = 576, highest = 9216;  // bytes

    bool operator==(const mtu_limits&) const = default;
  };
  mtu_limits mtu;
  std::optional<uint8> duplexes = uint8{0};         // CRDCFG_DUPLEX_*
  std::optional<uint8> rx_flow_control = uint8{0};  // CRDCFG_FLOW_*
  std::optional<uint8> tx_flow_control = uint8{0};
  std::optional<uint8> rate_modes = uint8{0};  // CRDCFG_RATE_*
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
  bool e_mode_on_first_only = false;  // mode E only on the first of each four Fibre Channel ports
  struct qos_scheduling {
    uint8 rx_priorities = 0, rx_queues = 0, rx_thresholds = 0;
    uint8 tx_priorities = 0, tx_queues = 0, tx_thresholds = 0;

    bool operator==(const qos_scheduling&) const = default;
  };
  std::optional<qos_scheduling> qos = qos_scheduling{};

  bool operator==(const port_capabilities&) const = default;
};

// The transceiver in a port. An absent value means no transceiver.
struct transceiver {
  bool supported = true;
  uint8 type = 0;                  // FCOT_TYPE_*
  std::vector<uint8> eeprom = {};  // identity page as it was read
  bool is_initializing = false;
  bool has_tx_fault = false;
  std::optional<bool> has_rx_loss = {};  // absent: as the link is
  optical_diagnostics diagnostics = {};

  bool operator==(const transceiver&) const = default;
};

// Packets by their size in bytes: up to 64, 127, 255, 511, 1023, 1518, 1548, and longer ones.
inline constexpr std::array<uint32, 7> kLargestOfSizeClass = {64, 127, 255, 511, 1023, 1518, 1548};
using size_classes = std::array<counter, kLargestOfSizeClass.size() + 1>;

// Totals since the counters were cleared.
struct traffic_counters {
  counter bytes;
  counter packets;  // all of them
  counter unicast_packets;
  counter multicast_packets;
  counter broadcast_packets;
  counter trunk_packets;
  counter errors;
  counter discards;
  size_classes packets_by_size;

  bool operator==(const traffic_counters&) const = default;
};

struct error_counters {
  counter crc;
  counter runts;
  counter giants;
  counter jabber;
  counter overruns;
  counter underruns;
  counter collisions;
  counter late_collisions;
  counter deferred;
  counter lost_carrier;  // without no_carrier: both
  counter no_carrier;
  counter pause_received;
  counter pause_sent;

  counter short_frames;
  counter no_buffer;
  counter ecc;
  counter ignored;
  counter bad_ethertype;
  counter bad_protocol;
  counter bad_encapsulation;
  counter dropped_while_down;
  counter dribble;
  counter watchdog;
  counter symbol;
  counter storm_suppressed;
  counter compressed;
  counter receive_fifo;

  counter crc_sent;
  counter single_collisions;
  counter multiple_collisions;
  counter excessive_collisions;
  counter deferred_long;
  counter babble;
  counter sqe_test;
  counter send_fifo;
  counter bpdu_lost;
  counter cos0_lost, cos1_lost, cos2_lost, cos3_lost;  // by class of service
  counter cos4_lost, cos5_lost, cos6_lost, cos7_lost;

  bool operator==(const error_counters&) const = default;
};

// A record of counters only, all known and 0.
template <typename Counters>
constexpr Counters all_zero() {
  std::array<counter, sizeof(Counters) / sizeof(counter)> zeros;
  zeros.fill(0);
  return std::bit_cast<Counters>(zeros);
}

// One sample of the rate ring.
struct rate_sample {
  uint64 in_bytes = 0;
  uint64 out_bytes = 0;
  uint32 in_frames = 0;
  uint32 out_frames = 0;

  bool operator==(const rate_sample&) const = default;
};

// One sample a minute.
struct rate_samples {
  std::array<rate_sample, 8> samples{};
  uint32 next = 0;  // slot that will be written next

  bool operator==(const rate_samples&) const = default;
};

struct statistics {
  traffic_counters in;
  traffic_counters out;
  error_counters errors;
  // Averages of the last half minute, of a management port of the last minute.
  counter in_bytes_per_second;
  counter out_bytes_per_second;
  counter in_packets_per_second;
  counter out_packets_per_second;
  std::optional<double> rates_of_sec;  // seconds that these averages cover; none: as above
  std::optional<rate_samples> rate_ring;
  uint32 last_clear_sec = 0;     // seconds since 1970; 0 is never
  uint32 counted_sec = 0;        // seconds that the totals cover
  bool is_cleared_here = false;  // the last clear was not made by the source

  bool operator==(const statistics&) const = default;
};

// Makes every total known, and 0.
void set_totals_to_zero(statistics& stats);

// The input for the statistics of an interface; only the source knows its contents.
struct traffic_source;

// An interface of any kind. Members that a kind does not have keep their defaults.
struct interface {
  if_index_t if_index = 0;
  bool is_created = false;  // by a command; the running configuration creates it again

  port_settings settings;
  port_settings at_start;  // as the source found the port when the session began

  // Operation.
  uint8 oper_state = 2;
  uint8 state_reason = 1;
  struct link {
    uint8 state;
    uint8 reason;

    bool operator==(const link&) const = default;
  };
  std::optional<link> link_before_shutdown;  // what the port returns to
  std::optional<uint32> oper_mode = 0;
  std::optional<uint32> oper_speed_mbps = 0;
  std::optional<uint8> oper_duplex = uint8{3};
  std::optional<uint16> oper_flow_control = uint16{0};

  // What the device at the other end of the link agrees to, when the port negotiates or has the settings of the start.
  // Absent: everything.
  struct link_partner {
    std::optional<uint32> mode;
    std::optional<uint32> speed_mbps;
    std::optional<uint8> duplex;
    uint16 flow_control = PM_FLOW_CTRL_RECEIVE | PM_FLOW_CTRL_SEND;  // of the port's sides that are desired

    bool operator==(const link_partner&) const = default;
  };
  link_partner partner;

  // Configured and operational attributes in the port manager's numbers (platform/port_manager.h).
  std::optional<uint32> bandwidth_kbps = 0;
  std::optional<uint32> delay_usec = 10;
  std::optional<uint16> debounce_ms = uint16{0};
  std::optional<uint8> rate_mode = uint8{1};
  std::optional<bool> mdix_on = true;
  std::optional<uint32> resets = 0;
  std::optional<uint32> link_change_sec = 0;  // seconds since 1970; 0 is never
  struct link_change {
    uint32 at_sec;
    uint8 state;

    bool operator==(const link_change&) const = default;
  };
  std::vector<link_change> link_changes;   // since the switch started, in their order
  std::optional<uint32> num_link_changes;  // that the device counted
  bool is_locked = false;                  // the port takes no settings
  uint32 refusal = 0;                      // the status with which it refuses every setting; 0: it does not
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

    bool operator==(const private_vlans&) const = default;
  };
  private_vlans private_vlan;
  std::vector<ip_address> addresses;

  // Other interfaces; 0 is none.
  if_index_t bound_to = 0;
  uint32 satellite_unit = 0;  // of a satellite's port, or the unit that a fabric port leads to; 0 is none
  std::vector<if_index_t> tracked;
  std::string multi_chassis_status;
  std::string vrf;  // that routes its packets; empty: none

  struct storm_level {
    uint8 mode = 0;
    uint8 percent = 100;
    uint16 hundredths = 0;

    bool operator==(const storm_level&) const = default;
  };
  using storm_levels = std::array<storm_level, 3>;  // broadcast, multicast, unicast
  std::optional<storm_levels> storm_control = storm_levels{};

  port_capabilities capabilities;
  std::optional<transceiver> module_in_port;
  bool is_module_protected = false;               // the user may not read transceivers: whether there is one is unknown
  statistics stats;                               // as they were last brought up to date, see switch/live_statistics.h
  std::shared_ptr<const traffic_source> traffic;  // equal when it is the same one

  bool operator==(const interface&) const = default;
};

// A line card or supervisor. Slots count from 0.
struct card {
  uint32 slot = 0;
  uint32 card_type = 0;
  std::string model;
  bool shares_resources = false;  // groups of its ports share buffers and bandwidth

  bool operator==(const card&) const = default;
};

// A VLAN with a name or a kind.
struct vlan {
  uint16 id = 0;
  std::string name;
  uint32 kind = 0;  // VLAN_TYPE_*; 0 is an ordinary one
  bool is_shut = false;

  bool operator==(const vlan&) const = default;
};

// A user of the shell and the user's rights.
struct user {
  std::string name;
  std::optional<std::vector<uint16>> vsans;  // those that the user sees, ascending; without a list all
  bool sees_counters = true;
  bool may_clear_inband = false;

  bool operator==(const user&) const = default;
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

  // Removes an interface, also from the tracked interfaces of others. False when there is none.
  bool remove(if_index_t if_index);

  // Stores the running configuration as the startup configuration.
  void save_startup();

  // The user with this name, or null.
  const user* find_user(std::string_view name) const;

  // The members of a port-channel, in ascending order.
  std::vector<if_index_t> members_of(if_index_t channel) const;

  bool operator==(const machine&) const = default;
};

// The machine that the services answer for. Set once before the first command.
machine& the_machine();

}  // namespace host
