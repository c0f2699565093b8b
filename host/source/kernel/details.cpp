#include "source/kernel/details.h"

#include <linux/ethtool.h>

#include <algorithm>
#include <cerrno>

#include "platform/if_index.h"
#include "platform/port_manager.h"
#include "source/kernel/ethtool_ioctl.h"
#include "source/kernel/sorted_records.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

// ---- Why a link is down ---------------------------------------------------------------------------------------------

constexpr uint8 kAnySubstate = 0xFF;

// Faults that the port manager has a reason for. All others leave the port not connected.
struct fault_reason {
  uint8 state;
  uint8 substate;
  uint8 reason;
};
constexpr fault_reason kFaultReasons[] = {
    {ETHTOOL_LINK_EXT_STATE_LINK_TRAINING_FAILURE, kAnySubstate, 81},  // initialization failed
    {ETHTOOL_LINK_EXT_STATE_LINK_LOGICAL_MISMATCH, kAnySubstate, 84},  // loss of sync
    {ETHTOOL_LINK_EXT_STATE_BAD_SIGNAL_INTEGRITY, ETHTOOL_LINK_EXT_SUBSTATE_BSI_SERDES_ALOS, 83},  // loss of signal
    {ETHTOOL_LINK_EXT_STATE_EEPROM_ISSUE, kAnySubstate, 141},                                      // module read error
    {ETHTOOL_LINK_EXT_STATE_CALIBRATION_FAILURE, kAnySubstate, 3},                                 // hardware failure
    {ETHTOOL_LINK_EXT_STATE_OVERHEAT, kAnySubstate, 3},                                            //
    {ETHTOOL_LINK_EXT_STATE_MODULE, ETHTOOL_LINK_EXT_SUBSTATE_MODULE_CMIS_NOT_READY, 10},          // initializing
};

uint8 reason_of(const link_fault& fault) {
  for (const fault_reason& row : kFaultReasons)
    if (row.state == fault.state && (row.substate == kAnySubstate || row.substate == fault.substate)) return row.reason;
  return kReasonNotConnected;
}

// ---- Counters -------------------------------------------------------------------------------------------------------

constexpr struct {
  driver_counter reported;
  host::counter error_counters::*counter;
} kErrorCounters[] = {
    {kDriverSymbolErrors, &error_counters::symbol},
    {kDriverFcsErrors, &error_counters::crc},
    {kDriverSingleCollisions, &error_counters::single_collisions},
    {kDriverMultipleCollisions, &error_counters::multiple_collisions},
    {kDriverDeferred, &error_counters::deferred},
    {kDriverLateCollisions, &error_counters::late_collisions},
    {kDriverExcessiveCollisions, &error_counters::excessive_collisions},
    {kDriverCarrierErrors, &error_counters::lost_carrier},
    {kDriverExcessiveDeferrals, &error_counters::deferred_long},
    {kDriverTooLong, &error_counters::giants},
    {kDriverUndersized, &error_counters::short_frames},
    {kDriverJabber, &error_counters::jabber},
    {kDriverPausesReceived, &error_counters::pause_received},
    {kDriverPausesSent, &error_counters::pause_sent},
};

// Unicasts are what is left of the packets, when the driver counts both of the others.
void take_kinds(const driver_counter_values& reported, driver_counter multicasts, driver_counter broadcasts,
                traffic_counters& traffic) {
  uint64 left = traffic.packets.value_or(0);
  if (reported[multicasts]) traffic.multicast_packets = std::min(*reported[multicasts], left);
  left -= traffic.multicast_packets.value_or(0);
  if (reported[broadcasts]) traffic.broadcast_packets = std::min(*reported[broadcasts], left);
  if (reported[multicasts] && reported[broadcasts]) traffic.unicast_packets = left - *traffic.broadcast_packets;
}

void take_sizes(const driver_counter_values& reported, uint32 first, traffic_counters& traffic) {
  for (std::size_t i = 0; i < traffic.packets_by_size.size(); ++i)
    if (reported[first + i]) traffic.packets_by_size[i] = *reported[first + i];
}

void take_driver_counters(const driver_counter_values& reported, statistics& stats) {
  for (const auto& row : kErrorCounters)
    if (reported[row.reported]) stats.errors.*row.counter = *reported[row.reported];
  take_kinds(reported, kDriverMulticastsReceived, kDriverBroadcastsReceived, stats.in);
  take_kinds(reported, kDriverMulticastsSent, kDriverBroadcastsSent, stats.out);
  take_sizes(reported, kDriverReceivedBySize, stats.in);
  take_sizes(reported, kDriverSentBySize, stats.out);
}

// The counts since a clear. A device that counts less than its baseline was created again: it counts from its own
// start.
driver_counter_values since(const driver_counter_values& now, const driver_counter_values& cleared) {
  driver_counter_values came = now;
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (now[i] < cleared[i] && now[i]) return now;
    if (now[i]) *came[i] -= cleared[i].value_or(0);
  }
  return came;
}

// A management port has the counters of the kernel's own table only (switch/live_statistics.h).
bool is_counted_here(if_index_t if_index) { return decode_index(if_index).type != IF_TYPE_MGMT; }

}  // namespace

device_details::known_device* device_details::find_hardware(if_index_t if_index) {
  return find_by<&known_device::if_index>(hardware_, if_index);
}

ethtool_socket& device_details::ethtool() {
  if (!ethtool_) ethtool_.emplace();
  return *ethtool_;
}

void device_details::read_fault(const known_device& device, interface& port) {
  if (port.state_reason != kReasonNotConnected) return;
  if (!faults_) faults_ = read_link_faults(ethtool());
  const auto fault = faults_->find(device.number);
  if (fault != faults_->end()) port.state_reason = reason_of(fault->second);
}

// By netlink; by ioctl from a kernel that does not know the message. After a refusal for lack of rights no module is
// read.
page_reader device_details::reader_of(const known_device& device) {
  return [this, &device](const module_place& place) {
    if (modules_are_closed_) return std::vector<uint8>{};
    int error = 0;
    std::vector<uint8> page = read_module_page(ethtool(), device.number, place, error);
    modules_are_closed_ = error == EPERM;
    const bool has_no_message = error == EOPNOTSUPP || error == ENOENT;
    return has_no_message ? read_module_page_by_ioctl(device.name, place) : page;
  };
}

// One request for each port: a dump would end at the first empty cage, and reading the memory of a module takes far
// longer than the request for it.
void device_details::read_module_of(known_device& device, interface& port) {
  if (device.has_module_read) return;
  device.has_module_read = true;
  port.module_in_port = read_module(reader_of(device));
  port.is_module_protected = modules_are_closed_;
  if (port.module_in_port) port.capabilities.transceiver = true;
}

void device_details::read_diagnostics_of(known_device& device, interface& port) {
  read_module_of(device, port);
  if (device.has_diagnostics_read || !port.module_in_port) return;
  device.has_diagnostics_read = true;
  read_module_diagnostics(reader_of(device), *port.module_in_port);
}

// The current counters of the device.
driver_counter_values device_details::counters_of(const known_device& device) {
  if (!counted_) counted_ = read_driver_counters(ethtool());
  const auto found = counted_->find(device.number);
  driver_counter_values reported = found != counted_->end() ? found->second : driver_counter_values{};
  if (device.pause) {
    reported[kDriverPausesReceived] = device.pause->received_frames;
    reported[kDriverPausesSent] = device.pause->sent_frames;
  }
  return reported;
}

void device_details::begin(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped) {
  ethtool_.reset();
  faults_.reset();
  counted_.reset();
  modules_are_closed_ = false;
  hardware_.clear();
  for_each_mapped(links, mapped, [this](const mapped_device& it, const kernel_link& link) {
    if (is_physical(link))
      hardware_.push_back({.if_index = it.if_index, .number = it.number, .name = it.device, .pause = link.pause});
  });
  sort_by<&known_device::if_index>(hardware_);
}

void device_details::complete(interface& port, detail needed) {
  known_device* const device = find_hardware(port.if_index);
  if (device == nullptr) return;
  switch (needed) {
    case detail::link_fault: return read_fault(*device, port);
    case detail::driver: port.capabilities.model = driver_of(device->name); return;
    case detail::module: return read_module_of(*device, port);
    case detail::diagnostics: return read_diagnostics_of(*device, port);
    case detail::counters:
      if (is_counted_here(port.if_index))
        take_driver_counters(since(counters_of(*device), device->cleared), port.stats);
      return;
  }
}

driver_counter_values device_details::clear(const interface& port) {
  known_device* const device = find_hardware(port.if_index);
  if (device == nullptr) return {};
  device->cleared = counters_of(*device);
  return device->cleared;
}

void device_details::begin_at(if_index_t if_index, const driver_counter_values& cleared) {
  if (known_device* const device = find_hardware(if_index); device != nullptr) device->cleared = cleared;
}

}  // namespace host
