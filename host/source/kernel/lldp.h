// Neighbors by LLDP, which the daemon lldpd knows.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace host {

// An identifier of a chassis or a port: its subtype by IEEE 802.1AB, and its bytes.
struct lldp_id {
  uint32 subtype = 0;
  std::string bytes;

  bool operator==(const lldp_id&) const = default;
};

// A neighbor as lldpd reports it. Texts are what the neighbor sent, of any bytes. What it did not send is empty.
struct lldp_neighbor {
  uint32 device_number = 0;  // the kernel's, of the device that hears the neighbor
  std::string device;
  std::string protocol;
  lldp_id chassis, port;
  std::string system_name, system_description, port_description;
  std::vector<std::string> management_addresses;
  uint32 capabilities = 0, enabled_capabilities = 0;  // bits by IEEE 802.1AB, the first is 1
  std::optional<uint32> port_vlan, ttl_seconds, unchanged_seconds;
  std::vector<uint32> vlans;

  bool operator==(const lldp_neighbor&) const = default;
};

// No text of an advertisement is longer, and no list has more entries: lldpd's are cut.
inline constexpr std::size_t kMostLldpBytes = 511, kMostLldpEntries = 512;

struct lldp_answer {
  int error = 0;  // an errno; ELIBACC: the library of lldpd is missing, ELIBBAD: it lacks a function, EPROTO: it does
                  // not understand lldpd
  std::vector<lldp_neighbor> neighbors = {};
};

// Asks lldpd by its library, which is loaded by the first call.
lldp_answer ask_lldpd();

// Why there is no answer: one or two sentences without the last full stop.
std::string lldp_error_text(int error);

// Neighbors as a text, for captures. A neighbor begins with the line "neighbor NUMBER DEVICE"; each of its values is a
// line of a word and the value. Bytes that are not printable ASCII, and backslashes, are "\xNN".
std::string lldp_text(const std::vector<lldp_neighbor>& neighbors);

// Lines that are not known are skipped.
std::vector<lldp_neighbor> read_lldp_text(std::string_view text);

}  // namespace host
