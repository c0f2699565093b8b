// Captures without what identifies a machine: its answers keep only what displays read.
//
// Names of devices, aliases, hardware addresses and IP addresses are replaced, each by the same substitute everywhere;
// serial numbers of modules become zeros; all other attributes that no display reads are omitted.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "source/kernel/baselines.h"
#include "source/kernel/capture_format.h"

namespace host {

class anonymiser {
 public:
  // The messages of an answer; `request` is the whole message that they answer.
  std::string answer(const nlmsghdr& request, std::string_view messages);

  // Whether an answer to a request may be stored at all: those to settings, and of routes to own peers, are not.
  static bool is_stored(const captured_request& request);

  // The record of an ioctl after the call.
  std::string ioctl_answer(std::string_view record) const;

  // The text of the table of devices.
  std::string table(std::string_view text);

  // A device's substitute: "lo", or its kind and a number. `kind` is empty for hardware.
  std::string device_name(const std::string& name, const std::string& kind = "device");

  // A neighbor without its texts: only its protocol, types, capabilities, VLANs and times stay.
  lldp_neighbor neighbor(const lldp_neighbor& real);

  counter_baseline baseline(const counter_baseline& real);

 private:
  using octet_list = std::vector<uint8>;

  octet_list link(std::span<const uint8> payload);
  octet_list address(std::span<const uint8> payload);
  octet_list neighbor(std::span<const uint8> payload);
  lldp_id chassis_or_port(const lldp_id& real, uint32 mac_subtype);
  octet_list hardware_address(std::span<const uint8> real);
  octet_list ip_address(std::span<const uint8> real);

  std::map<std::string, std::string> names_;
  std::map<octet_list, octet_list> hardware_;
  std::map<octet_list, octet_list> ip_;
  std::map<std::string, std::string> aliases_;
  std::map<std::string, std::string> neighbors_;
};

}  // namespace host
