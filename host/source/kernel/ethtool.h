// What the kernel reports about ports by ethtool, over generic netlink.
//
// Without it, or without one of its messages, the values are absent.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <utility>

#include "source/kernel/links.h"
#include "source/kernel/netlink.h"

namespace host {

// A socket to the ethtool family. A kernel without it, or without generic netlink, answers every question with ENOENT.
class ethtool_socket {
 public:
  ethtool_socket();

  // A request of the family; the caller appends the rest.
  netlink_request request(uint8 command, uint16 flags) const;

  int ask(netlink_request& request, const message_visitor& visit, const std::function<void()>& restart = {});

  // The group to which the kernel publishes changes that ethtool shows; 0: it publishes none.
  uint32 monitor_group() const { return monitor_group_; }

  // As netlink_socket::reason().
  std::string reason() const { return generic_ ? generic_->reason() : std::string(); }

 private:
  std::optional<netlink_socket> generic_;
  uint16 family_ = 0;  // the kernel has none
  uint32 monitor_group_ = 0;
};

// Puts the head of a request: for one device, or all when `device` is 0.
void put_ethtool_head(netlink_request& request, uint16 attribute, uint32 device, uint32 flags);

// ---- Settings of ports: one dump each, for every command -----------------------------------------------------------

// Link modes of all links, and pause settings of hardware, the only devices that have them. By ioctl from a kernel that
// does not know these messages.
void read_port_settings(std::vector<kernel_link>& links);

// The pause settings alone, when there is hardware.
void read_pause_settings(ethtool_socket& ethtool, std::vector<kernel_link>& links);

void decode_link_modes(const nlmsghdr& message, std::vector<kernel_link>& links);
void decode_pause(const nlmsghdr& message, std::vector<kernel_link>& links);

// ---- Why links are down ---------------------------------------------------------------------------------------------

// ETHTOOL_LINK_EXT_STATE_* and its substate, which is 0 when the driver reports none.
struct link_fault {
  uint8 state = 0;
  uint8 substate = 0;
};
using link_faults = std::map<uint32, link_fault>;  // by the device's number

// The device that a message about the state of a link is about; none without its number and name.
struct reported_device {
  uint32 number;
  std::string name;
};
std::optional<reported_device> decode_link_name(const nlmsghdr& message);

link_faults read_link_faults(ethtool_socket& ethtool);
void decode_link_fault(const nlmsghdr& message, link_faults& faults);

// ---- Counters beyond those that every device has
// ----------------------------------------------------------------------

enum driver_counter : uint32 {
  kDriverSymbolErrors,
  kDriverFcsErrors,
  kDriverSingleCollisions,
  kDriverMultipleCollisions,
  kDriverDeferred,
  kDriverLateCollisions,
  kDriverExcessiveCollisions,
  kDriverCarrierErrors,
  kDriverExcessiveDeferrals,
  kDriverTooLong,
  kDriverUndersized,
  kDriverJabber,
  kDriverMulticastsReceived,
  kDriverBroadcastsReceived,
  kDriverMulticastsSent,
  kDriverBroadcastsSent,
  kDriverPausesReceived,
  kDriverPausesSent,
  kDriverReceivedBySize,
  kDriverSentBySize = kDriverReceivedBySize + std::tuple_size_v<size_classes>,
  kDriverCounters = kDriverSentBySize + std::tuple_size_v<size_classes>
};
// What a driver does not count is absent.
using driver_counter_values = std::array<std::optional<uint64>, kDriverCounters>;

std::map<uint32, driver_counter_values> read_driver_counters(ethtool_socket& ethtool);
void decode_driver_counters(const nlmsghdr& message, std::map<uint32, driver_counter_values>& counted);

// ---- Power of modules -----------------------------------------------------------------------------------------------

// ETHTOOL_MODULE_POWER_MODE_POLICY_* and ETHTOOL_MODULE_POWER_MODE_*; 0: the driver does not report it.
struct module_power {
  uint8 policy = 0;
  uint8 mode = 0;

  bool operator==(const module_power&) const = default;
};

// The power of all modules whose drivers report it, by the device's number.
std::map<uint32, module_power> read_module_power(ethtool_socket& ethtool);

// The device and the power of its module, of an answer or a notification; none of another message.
std::optional<std::pair<uint32, module_power>> decode_module_power(const nlmsghdr& message);

// ---- Memory of modules ----------------------------------------------------------------------------------------------

// At most 128 bytes of a module's memory. Offsets count within a page of 256 bytes whose lower half all pages share.
struct module_place {
  uint8 i2c_address;
  uint8 page;
  uint8 offset;

  auto operator<=>(const module_place&) const = default;
};
inline constexpr uint32 kModulePageBytes = 128;

// The bytes there, as many as the kernel has; none without a module, or without the right to read it. `error` is an
// errno.
std::vector<uint8> read_module_page(ethtool_socket& ethtool, uint32 device, const module_place& place, int& error);
std::vector<uint8> decode_module_page(const nlmsghdr& message, uint32 device);

// The same by ioctl, for kernels that do not know the message.
std::vector<uint8> read_module_page_by_ioctl(const std::string& device, const module_place& place);

}  // namespace host
