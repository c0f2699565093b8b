// Which services each display asks, and in which order. Recorded as properties of the tests, of which
// tools/services_table.py makes the table in docs/embedding.md.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "contract/sample_ports.h"
#include "contract/transceiver/transceiver_images.h"
#include "pmcli/command.h"
#include "pmcli/displays.h"
#include "support/vlan_libraries.h"

namespace pmcli_test {
namespace {

constexpr uint32 kLastDisplay = DISPLAY_NOTHING_106;

struct shown_kind {
  const char* name;
  uint32 (*handler)(paraminfo_t*);
  if_index_t if_index;
  uint32 port_mode = PM_PORT_MODE_ACCESS;
  uint32 layer = IF_LAYER_2;
};

uint32 show_inband(paraminfo_t* param) { return static_cast<uint32>(pm_cli_show_inband_port_config(param)); }

const shown_kind kAccessPort = {"Ethernet port in access mode", pm_cli_show_eth_port_config, kPort};
const shown_kind kTrunk = {"Ethernet port in trunk mode", pm_cli_show_eth_port_config, kPort, PM_PORT_MODE_TRUNK};
const shown_kind kRouted = {"Routed Ethernet port", pm_cli_show_eth_port_config, kRoutablePort, PM_PORT_MODE_ACCESS,
                            IF_LAYER_3};
const shown_kind kManagement = {"Management port", pm_cli_show_mgmt_port_config, mgmt()};
const shown_kind kLoopback = {"Loopback", pm_cli_show_loopback_config, loopback(0)};
const shown_kind kInband = {"In-band interface", show_inband, numbered(IF_TYPE_INBAND, 0)};
const shown_kind kKinds[] = {
    kAccessPort,
    kTrunk,
    kRouted,
    {"Sub-interface", pm_cli_show_eth_port_config, sub_interface(kRoutablePort, 100), PM_PORT_MODE_ACCESS, IF_LAYER_3},
    {"Port of a satellite unit", pm_cli_show_sat_eth_port_config, satellite(100, 1, 1)},
    {"Ethernet port-channel", pm_cli_show_eth_port_config, kChannel, PM_PORT_MODE_TRUNK},
    {"Virtual Ethernet interface", pm_cli_show_eth_port_config, vethernet(1)},
    kManagement,
    kLoopback,
    kInband,
};

// A switch on which the interface exists, is up, and every service answers.
void prepare(RecordingPlatform& platform, const shown_kind& shown) {
  install_vlan_libraries(platform);
  answers_of_vlans.memberships = {membership(shown.if_index, 1, {1, 10})};
  answers_of_vlans.forwarding.resize(1);
  platform.on_request = [if_index = shown.if_index](const mts_request& request) {
    return mts_reply{request.node == MTS_NODE_LOCAL ? octets{1, 2, 3, 4}
                                                    : misc_info(if_index, state_entry(kGoodState))};
  };
  platform.ports[shown.if_index] = port_record_in_mode(shown.port_mode);
  platform.layers[shown.if_index] = shown.layer;
  platform.capabilities[shown.if_index] = port_capabilities("SFP");
  platform.transceivers[shown.if_index] = sfp_record();
  platform.diagnostics[shown.if_index] = healthy_diagnostics();
  platform.fabric_ports[shown.if_index] = {};
  platform.port_stats[shown.if_index] = {};
  platform.snmp_port_stats[shown.if_index] = {};
  platform.eth_stats[shown.if_index] = {};
  platform.channel_eth_stats[shown.if_index] = {};
  platform.interface_counters[shown.if_index] = {};
  platform.loopback_stats[shown.if_index] = {};
  platform.addresses[shown.if_index] = {ipv4_address(10, 1, 2, 3, 24)};
  platform.channel_members[shown.if_index] = {ethernet(1, 2)};
  platform.tracked_ports[shown.if_index] = {};
  for (const char* const device : {"eth1", "eth2"}) {
    platform.kernel_devices[device] = {};
    platform.kernel_interfaces[device] = {.hardware_address = {2, 0, 0, 0, 0, 1}};
  }
}

bool begins_with_one_of(const std::string& text, std::initializer_list<const char*> beginnings) {
  return std::any_of(beginnings.begin(), beginnings.end(),
                     [&](const char* beginning) { return text.starts_with(beginning); });
}

// Memory, the loader, the output channel, interface indexes and what is done with a message are no questions to a
// service.
bool asks_a_service(const std::string& call) {
  return call == "mts_send" ||
         !begins_with_one_of(call, {"calloc", "malloc", "realloc", "dl", "cmd_", "if_index_", "mts_", "socket"});
}

// The library in which a function was looked up last; empty for functions that were not.
std::string library_of(const RecordingPlatform& platform, const std::string& function) {
  std::string opened, found;
  for (const std::string& event : platform.loader_events) {
    std::string action, name;
    std::istringstream(event) >> action >> name;
    if (action == "open") opened = name;
    if (action == "find" && name == function) found = opened;
  }
  return found;
}

std::string node_name(uint32 node) { return node == MTS_NODE_LOCAL ? "local" : "line-card"; }

// The services that were asked, in order: "function", "function@library", "mts_send@NODE:ACCESS_POINT" or
// "ioctl@REQUEST".
std::vector<std::string> services_asked(const RecordingPlatform& platform) {
  std::vector<std::string> kernel_requests;
  for (const std::string& event : platform.kernel_events)
    if (event.starts_with("SIOC")) kernel_requests.push_back(event.substr(0, event.find(' ')));
  std::vector<std::string> asked;
  std::size_t sent = 0, requested = 0;
  for (const std::string& call : platform.calls) {
    if (!asks_a_service(call)) continue;
    std::string place = library_of(platform, call);
    if (call == "ioctl") place = kernel_requests.at(requested++);
    if (call == "mts_send") {
      const mts_request& request = platform.requests.at(sent++);
      if (!asked.empty() && asked.back().starts_with("stp_send_get_port_state")) continue;  // the client's own
      place = node_name(request.node) + ":" + std::to_string(request.sap);
    }
    asked.push_back(place.empty() ? call : call + "@" + place);
  }
  return asked;
}

std::vector<std::string> show(const shown_kind& shown, uint32 display) {
  RecordingPlatform platform;
  prepare(platform, shown);
  paraminfo_t* const param = platform.show_command(display, shown.if_index);
  uint32 module = 1;
  vsh_int_multi_range_t vlans{.size = sizeof vlans, .range_count = 1, .range = {{1, 4094}}};
  if (display == DISPLAY_TRUNK_DETAIL_OF_VLANS)
    platform.add_argument(param, PARAM_TYPE_INT_RANGES, &vlans);
  else
    platform.add_argument(param, PARAM_TYPE_UINT32, &module);
  EXPECT_EQ(shown.handler(param), 0U) << shown.name << ", display " << display;
  return services_asked(platform);
}

// What the library asks once in a process is asked by then.
std::vector<std::string> show_again(const shown_kind& shown, uint32 display) {
  show(shown, display);
  return show(shown, display);
}

using Services = std::vector<std::string>;

TEST(ServicesOfDisplays, ADescriptionIsInThePortRecord) {
  for (const shown_kind& shown : {kAccessPort, kTrunk, kRouted, kManagement})
    EXPECT_EQ(show_again(shown, DISPLAY_DESCRIPTION), (Services{"pm_cmi_get_port_config"})) << shown.name;
}

TEST(ServicesOfDisplays, CountersOfALoopbackComeFromItsLibrary) {
  EXPECT_EQ(show_again(kLoopback, DISPLAY_COUNTERS_NONZERO), (Services{"ip_get_loopback_counters@libip_stats.so"}));
}

TEST(ServicesOfDisplays, AllowedVlansAreAskedByMessage) {
  EXPECT_EQ(show_again(kTrunk, DISPLAY_TRUNK_ALLOWED_VLANS),
            (Services{"pm_cmi_get_port_config", "vlan_get_port_trunking_memb_build_mts@libvlan_mgr.so",
                      "mts_send@local:167", "vlan_get_port_trunking_memb_parse_reply@libvlan_mgr.so"}));
}

TEST(ServicesOfDisplays, TheInbandInterfaceIsTheKernels) {
  EXPECT_EQ(show_again(kInband, DISPLAY_BRIEF), (Services{"ioctl@SIOCGIFFLAGS"}));
}

TEST(ServicesOfDisplays, NothingIsAskedByADisplayOfNothing) {
  for (const shown_kind& shown : {kAccessPort, kManagement, kLoopback})
    EXPECT_EQ(show_again(shown, DISPLAY_NOTHING_14), Services{}) << shown.name;
}

TEST(ServicesOfDisplays, Recording) {
  for (const shown_kind& shown : kKinds) {
    for (uint32 display = 1; display <= kLastDisplay; ++display) {
      std::string services;
      for (const std::string& service : show_again(shown, display)) services += (services.empty() ? "" : " ") + service;
      RecordProperty(shown.name + std::string("/") + std::to_string(display), services);
    }
  }
}

}  // namespace
}  // namespace pmcli_test
