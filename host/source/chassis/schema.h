// The contents of a switch file, key by key, before kinds of interface are distinguished and references are resolved.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "source/chassis/traffic.h"
#include "source/yaml/yaml_value.h"
#include "switch/interface_name.h"
#include "switch/model.h"

namespace host {

// A reference to a name elsewhere in the file.
struct file_reference {
  std::string text;  // empty when none was given
  uint32 line = 0;
};

// The transceiver of a port in a file.
struct transceiver_choice {
  bool is_given = false;
  std::optional<transceiver> module;
  std::string media;
};

// Capabilities that cards and ports refer to by name.
struct capability_profile {
  std::string name;
  uint32 line = 0;
  port_capabilities capabilities;
  transceiver_choice module;
};

// Traffic that interfaces refer to by name.
struct traffic_profile {
  std::string name;
  traffic_plan plan;
};

struct card_draft {
  uint32 line = 0;
  card data;
  file_reference profile;
};

// One entry of the list of interfaces: attributes that all interfaces of a range share.
struct interface_draft {
  uint32 line = 0;
  uint32 now_sec = 0;
  std::vector<interface_span> spans;
  if_index_type_t kind = IF_TYPE_NONE;  // none: the usual one of the word
  pc_subtype_t subtype = PC_SUBTYPE_ORDINARY;
  interface attributes;
  std::optional<uint32> layer;
  std::optional<std::vector<uint16>> allowed_vlans;
  interface::link_partner partner;
  transceiver_choice module;
  file_reference profile;
  file_reference channel;
  file_reference bound_to;
  file_reference tracked;
  const std::vector<traffic_profile>* traffic_profiles = nullptr;
  std::shared_ptr<traffic_plan> traffic;  // null when the file has none
};

struct switch_draft {
  machine data;  // without cards and interfaces
  mac_address base_mac{0x02, 0x00, 0x00, 0x00, 0x00, 0x00};
  uint32 uptime_sec = 0;
  std::vector<capability_profile> profiles;
  std::vector<traffic_profile> traffic_profiles;
  std::vector<card_draft> cards;
  std::vector<interface_draft> interfaces;
  uint32 now_sec = 0;
};

// Reads the top level of a file.
void read_switch(const yaml_value& file, switch_draft& draft);

}  // namespace host
