// Which services each display asks, and in which order. Recorded as properties of the tests, of which
// tools/services_table.py makes the table in docs/embedding.md.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "contract/whole_switch.h"

namespace pmcli_test {
namespace {

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
  display_arguments arguments;
  paraminfo_t* const param = display_command(platform, shown, display, arguments);
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
