// A machine with hardware, as messages of the kernel: a management port with the default route, optics in a bond and on
// a bridge, ports that are down for various reasons, empty cages.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/source/kernel/kernel_recording.h"
#include "source/kernel/ethtool.h"

namespace host {

// The kernel's numbers of its devices. Ports of hardware but for the management port are named swpN.
enum recorded_device : uint32 {
  kLoopback = 1,
  kEth0 = 2,       // copper, 1 Gbit/s; the default route
  kSwp1 = 3,       // SFP, in the bond
  kSwp2 = 4,       // the same, without a module
  kSwp3 = 5,       // QSFP, trunk of the bridge, negotiates, partner pauses
  kSwp4 = 6,       // set up, no sync
  kSwp5 = 7,       // set up, no cable
  kSwp6 = 8,       // set down; its driver tells a fault nevertheless
  kBond0 = 9,      //
  kBr0 = 10,       //
  kVlan100 = 11,   // on swp3
  kVeth0 = 12,     // up
  kVanished = 13,  // in no dump of links
};

void record_switch(recorded_kernel& kernel);

// ---- Messages -------------------------------------------------------------------------------------------------------

struct recorded_link {
  uint32 number;
  std::string name;
  std::string kind = "";
  uint32 flags = 0;
  uint8 operation = 0;
  std::string slave_kind = "";
  uint32 master = 0;
  uint32 parent = 0;
  uint16 vlan = 0;
};
netlink_request link_message(const recorded_link& link);

// A message of the ethtool family with the head of a device, and what `put` adds.
netlink_request ethtool_message(uint8 command, uint16 head, uint32 device, const std::function<void(nlmsghdr&)>& put);

struct recorded_modes {
  uint8 negotiates = 0;
  uint32 speed_mbps = 0xFFFFFFFF;
  uint8 duplex = 0xFF;
  std::vector<uint32> supported = {};  // bits
  std::vector<uint32> advertised = {};
  std::vector<uint32> partner = {};
};
netlink_request modes_message(uint32 device, const recorded_modes& modes);
netlink_request pause_message(uint32 device, bool negotiates, bool receives, bool sends, uint64 received, uint64 sent);
netlink_request fault_message(uint32 device, uint8 state, uint8 substate);

struct recorded_size {
  uint32 low;
  uint32 high;
  uint64 packets;
};
struct recorded_group {
  uint32 id;
  std::vector<std::pair<uint16, uint64>> counters;
  std::vector<recorded_size> received = {};
  std::vector<recorded_size> sent = {};
};
netlink_request counters_message(uint32 device, const std::vector<recorded_group>& groups);

// ---- Memory of modules ----------------------------------------------------------------------------------------------

using module_pages = std::map<module_place, std::vector<uint8>>;

std::vector<uint8> sfp_identity();
std::vector<uint8> sfp_diagnostics_page();
module_pages qsfp_pages();

// Lets a kernel answer for the memory of modules by the number of their device; every other port has an empty cage.
void record_modules(recorded_kernel& kernel, std::map<uint32, module_pages> modules);

void put_text(std::vector<uint8>& page, std::size_t at, std::size_t width, const std::string& text);
void put_word(std::vector<uint8>& page, std::size_t at, uint16 word);

}  // namespace host
