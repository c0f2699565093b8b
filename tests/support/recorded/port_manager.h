// The port manager: records of ports, listings, tracked ports, creation of interfaces.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/paraminfo.h"
#include "platform/port_manager.h"
#include "support/recorded/octets.h"

namespace pmcli_test {

struct recorded_port_manager {
  std::map<if_index_t, pm_port_info_t> ports;  // if_index in the record is filled in when it is 0
  // Takes the place of `ports` for odd answers: count and block (null: none) as they are given, copied to the heap.
  struct port_config_answer {
    uint32 count;
    std::optional<octets> block;
  };
  std::optional<port_config_answer> port_config;
  struct port_query {
    mts_q_handle_t q;
    uint32 version;
    uint32 instance;
    if_index_range_t range;
    int32 timeout;
  };
  std::vector<port_query> port_queries;             // of pm_cmi_get_port_config() and pm_cmi_get_fcot_info()
  std::optional<port_config_answer> port_range;     // takes the place of `ports` in pm_parse_get_port_info_range()
  std::vector<if_index_range_t> port_ranges_asked;  // of pm_get_port_info_range()
  std::map<if_index_t, uint32> port_manager_saps;   // without an entry: MTS_SAP_PORT_MANAGER

  std::map<if_index_t, std::vector<if_index_t>> tracked_ports;  // without an entry: a null list
  std::optional<octets> tracked_block;                          // takes the place of `tracked_ports`, byte for byte

  std::map<if_index_type_t, octets> listings;          // payloads of pm_get_if_index_listing()
  std::map<if_index_type_t, octets> startup_listings;  // payloads of pm_get_startup_if_index_listing()
  struct listing_query {
    if_index_type_t type;
    mts_q_handle_t q;
    int32 timeout;
    std::optional<std::string> startup_uri;  // none: the running configuration was asked for
    bool operator==(const listing_query&) const = default;
  };
  std::vector<listing_query> listing_queries;

  struct interface_configuration {
    if_index_type_t type;  // IF_TYPE_LOOPBACK, or IF_TYPE_ETHERNET for sub-interfaces
    mts_q_handle_t q;
    uint32 create;
    interface_mask_t mask;
    std::vector<vsh_intf_mono_range_t> ranges;
    uint32 timeout;
  };
  std::vector<interface_configuration> interface_configurations;
};

}  // namespace pmcli_test
