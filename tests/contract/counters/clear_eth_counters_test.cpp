// Clearing counters of Ethernet ports, virtual Ethernet interfaces and loopbacks.
#include <gtest/gtest.h>

#include "contract/counters/clear_commands.h"
#include "contract/sample_ports.h"
#include "pmcli/clear.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

using Events = std::vector<std::string>;

const if_index_t kEthernet1 = ethernet(1, 1);
const if_index_t kEthernet2 = ethernet(1, 2);

const Events kClient = {"open libstatcl.so now", "find statscl_clear_port_client_stats", "close libstatcl.so"};
const Events kIpLibrary = {"open libip_stats.so lazy", "find ip_clear_loopback_counters", "close libip_stats.so"};
constexpr char kNoFunction[] = "error: undefined symbol in dlsym for statscl_clear_port_client_stats\n";
constexpr char kNoLoopbackFunction[] = "error: undefined symbol in dlsym for ip_clear_loopback_counters\n";

constexpr uint32 kMostChassis = 30;

// Chassis 17 keeps at the client the counters of virtual interfaces only.
bool keeps_ports_at_client(uint32 chassis) {
  return chassis == 10 || chassis == 11 || (chassis >= 19 && chassis <= 24);
}
bool keeps_virtual_at_client(uint32 chassis) { return keeps_ports_at_client(chassis) || chassis == 17; }

std::string at_client(const std::string& name) { return "statscl_clear_port_client_stats " + name; }
std::string at_port_manager(const std::string& name) { return "pm_get_clear_eth_stats " + name; }
std::string at_ip_library(const std::string& name) { return "ip_clear_loopback_counters " + name; }

void list_ports(RecordingPlatform& platform) {
  platform.listings[IF_TYPE_ETHERNET] = listing_of({kEthernet1, kEthernet2});
  platform.listings[IF_TYPE_VETHERNET] = listing_of({vethernet(1), vethernet(9)});
}

void clear_all() { pm_cli_clear_all_eth_counters(RecordingPlatform::q()); }

// ---- All Ethernet --------------------------------------------------------------------------------------------------

TEST(ClearAllEthernet, EachChassisHasItsOwners) {
  for (uint32 chassis = 0; chassis <= kMostChassis; ++chassis) {
    SCOPED_TRACE(chassis);
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    list_ports(platform);
    clear_all();
    const auto port = keeps_ports_at_client(chassis) ? at_client : at_port_manager;
    const auto virtual_interface = keeps_virtual_at_client(chassis) ? at_client : at_port_manager;
    EXPECT_EQ(platform.cleared, (Cleared{port("Ethernet1/1"), port("Ethernet1/2"), virtual_interface("Vethernet1"),
                                         virtual_interface("Vethernet9")}));
    Events events;
    if (keeps_ports_at_client(chassis)) events.insert(events.end(), kClient.begin(), kClient.end());
    if (keeps_virtual_at_client(chassis)) events.insert(events.end(), kClient.begin(), kClient.end());
    EXPECT_EQ(platform.loader_events, events);
    EXPECT_EQ(platform.text(), "");
    EXPECT_EQ(platform.drops.size(), 2U);
  }
}

TEST(ClearAllEthernet, UnreadableChassisAsksThePortManager) {
  RecordingPlatform platform;
  platform.fail_with("pdb_get_chassis_type", PM_ERR_GENERAL);
  list_ports(platform);
  clear_all();
  EXPECT_EQ(platform.cleared, (Cleared{at_port_manager("Ethernet1/1"), at_port_manager("Ethernet1/2"),
                                       at_port_manager("Vethernet1"), at_port_manager("Vethernet9")}));
}

TEST(ClearAllEthernet, EachFailureIsToldAndTheNextCleared) {
  for (const uint32 chassis : {uint32{CHASSIS_UNKNOWN}, uint32{CHASSIS_17}, uint32{CHASSIS_22}}) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    list_ports(platform);
    platform.clear_errors = {{kEthernet1, PM_ERR_GENERAL}, {vethernet(9), -1}};
    clear_all();
    EXPECT_EQ(platform.cleared.size(), 4U);
    EXPECT_EQ(platform.text(), std::string(kClearingFailed) + kClearingFailed);
    EXPECT_EQ(platform.terminal(), platform.text());
  }
}

TEST(ClearAllEthernet, MissingLibraryEndsInSilence) {
  RecordingPlatform platform;
  list_ports(platform);
  platform.libraries.erase(STATCL_LIBRARY);
  clear_all();
  EXPECT_EQ(platform.text(), "");
  EXPECT_THAT(platform.cleared, IsEmpty());
  EXPECT_EQ(platform.loader_events, (Events{"miss libstatcl.so now"}));
  EXPECT_EQ(platform.count("pm_get_if_index_listing"), 1U);
  EXPECT_EQ(platform.drops.size(), 1U);
}

TEST(ClearAllEthernet, MissingFunctionIsToldAndEnds) {
  RecordingPlatform platform;
  list_ports(platform);
  platform.libraries[STATCL_LIBRARY].erase("statscl_clear_port_client_stats");
  clear_all();
  EXPECT_EQ(platform.text(), kNoFunction);
  EXPECT_EQ(platform.loader_events, kClient);
  EXPECT_EQ(platform.count("pm_get_if_index_listing"), 1U);
  EXPECT_EQ(platform.drops.size(), 1U);
}

TEST(ClearAllEthernet, FunctionOfValueNullIsMissing) {
  RecordingPlatform platform;
  list_ports(platform);
  platform.libraries[STATCL_LIBRARY]["statscl_clear_port_client_stats"] = nullptr;
  clear_all();
  EXPECT_EQ(platform.text(), "error: (null) in dlsym for statscl_clear_port_client_stats\n");
  EXPECT_THAT(platform.cleared, IsEmpty());
}

TEST(ClearAllEthernet, ErrorOfTheLoaderFromBeforeIsForgotten) {
  RecordingPlatform platform;
  list_ports(platform);
  platform.earlier_loader_error = "an earlier error";
  clear_all();
  EXPECT_EQ(platform.cleared.size(), 4U);
  EXPECT_EQ(platform.text(), "");
}

TEST(ClearAllEthernet, Chassis17NeedsTheLibraryOnlyInItsSecondPass) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_17;
  list_ports(platform);
  platform.libraries.erase(STATCL_LIBRARY);
  clear_all();
  EXPECT_EQ(platform.cleared, (Cleared{at_port_manager("Ethernet1/1"), at_port_manager("Ethernet1/2")}));
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.drops.size(), 2U);
}

TEST(ClearAllEthernet, FailedListingIsToldAndTheOtherKindCleared) {
  RecordingPlatform platform;
  platform.listings[IF_TYPE_VETHERNET] = listing_of({vethernet(1)});
  clear_all();
  EXPECT_EQ(platform.cleared, (Cleared{at_client("Vethernet1")}));
  EXPECT_EQ(platform.mts_errors.size(), 1U);
  EXPECT_EQ(platform.mts_errors[0].first, 1);

  platform.clear_output();
  platform.cleared.clear();
  platform.fail_with("pm_get_if_index_listing");
  clear_all();
  EXPECT_EQ(platform.text(), std::string(kTransportFailure) + kTransportFailure);
  EXPECT_THAT(platform.cleared, IsEmpty());
}

TEST(ClearAllEthernet, LyingListingsAreReadToTheirEnd) {
  const octets lying = listing_of({kEthernet1, kEthernet2}, 0x40000001);
  for (std::size_t size = 0; size <= lying.size(); ++size) {
    RecordingPlatform platform;
    platform.listings[IF_TYPE_ETHERNET] = octets(lying.begin(), lying.begin() + static_cast<std::ptrdiff_t>(size));
    platform.listings[IF_TYPE_VETHERNET] = {};
    clear_all();
    EXPECT_EQ(platform.cleared.size(), size < 4 ? 0U : (size - 4) / 4) << size;
    EXPECT_EQ(platform.text(), "");
  }
}

// ---- Ranges of Ethernet --------------------------------------------------------------------------------------------

TEST(ClearEthernetRange, EachChassisHasItsOwners) {
  for (uint32 chassis = 0; chassis <= kMostChassis; ++chassis) {
    SCOPED_TRACE(chassis);
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    clear_command command(platform, {{kEthernet1, kEthernet2}, {vethernet(1), vethernet(2)}});
    EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
    const auto port = keeps_ports_at_client(chassis) ? at_client : at_port_manager;
    const auto virtual_interface = keeps_virtual_at_client(chassis) ? at_client : at_port_manager;
    EXPECT_EQ(platform.cleared, (Cleared{port("Ethernet1/1"), port("Ethernet1/2"), virtual_interface("Vethernet1"),
                                         virtual_interface("Vethernet2")}));
    EXPECT_EQ(platform.loader_events, keeps_virtual_at_client(chassis) ? kClient : Events{});
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(ClearEthernetRange, KindsThatThePortManagerCounts) {
  RecordingPlatform platform;
  const if_index_t routable = ethernet(2, 47, IF_TYPE_ETHERNET_L3);
  clear_command command(platform, {{routable, ethernet(2, 48, IF_TYPE_ETHERNET_L3)},
                                   {sub_interface(kEthernet1, 7), sub_interface(kEthernet1, 8)},
                                   only(mgmt())});
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
  EXPECT_EQ(platform.cleared, (Cleared{at_client("Ethernet2/47"), at_client("Ethernet2/48"), at_client("Ethernet1/1.7"),
                                       at_client("Ethernet1/1.8"), at_client("mgmt0")}));
}

TEST(ClearEthernetRange, Chassis17OpensTheLibraryForVirtualInterfacesOnly) {
  for (const bool has_virtual : {false, true}) {
    RecordingPlatform platform;
    platform.chassis_type = CHASSIS_17;
    platform.libraries.erase(STATCL_LIBRARY);
    clear_command command(platform, {only(kEthernet1), has_virtual ? only(vethernet(1)) : only(kEthernet2)});
    EXPECT_EQ(pm_cli_eth_clear_counters(command.param), has_virtual ? 1 : 0);
    EXPECT_EQ(platform.cleared.size(), has_virtual ? 0U : 2U);
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(ClearEthernetRange, MissingLibraryReturnsOneInSilence) {
  RecordingPlatform platform;
  platform.libraries.erase(STATCL_LIBRARY);
  clear_command command(platform, {only(kEthernet1)});
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 1);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.loader_events, (Events{"miss libstatcl.so now"}));
}

TEST(ClearEthernetRange, MissingFunctionIsTold) {
  RecordingPlatform platform;
  platform.libraries[STATCL_LIBRARY] = {};
  clear_command command(platform, {only(kEthernet1), only(kEthernet2)});
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 1);
  EXPECT_EQ(platform.text(), kNoFunction);
  EXPECT_EQ(platform.loader_events, kClient);
}

TEST(ClearEthernetRange, EachFailureIsToldAndTheNextCleared) {
  for (const uint32 chassis : {uint32{CHASSIS_UNKNOWN}, uint32{CHASSIS_10}}) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    platform.clear_errors[kEthernet1] = PM_ERR_GENERAL;
    clear_command command(platform, {{kEthernet1, kEthernet2}});
    EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
    EXPECT_EQ(platform.cleared.size(), 2U);
    EXPECT_EQ(platform.text(), kClearingFailed);
  }
}

TEST(ClearEthernetRange, UncountableRangesArePassedOver) {
  RecordingPlatform platform;
  clear_command command(platform, {{kEthernet2, kEthernet1},
                                   {kEthernet1, ethernet(2, 1)},
                                   {kEthernet1, vethernet(3)},
                                   {vethernet(3), vethernet(1)},
                                   {vethernet(1), loopback(3)},
                                   {numbered(IF_TYPE_FCIP, 1), numbered(IF_TYPE_FCIP, 65537)},
                                   only(numbered(IF_TYPE_INBAND, 0)),
                                   only(kEthernet2)});
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
  EXPECT_EQ(platform.cleared, (Cleared{at_client("Ethernet1/2")}));
  EXPECT_EQ(platform.text(), "");
}

// ---- Stepping by number --------------------------------------------------------------------------------------------

TEST(ClearBySteps, VirtualAndSatelliteInterfaces) {
  RecordingPlatform platform;
  clear_command command(platform, {{vethernet(8), vethernet(11)}, {satellite(100, 1, 1), satellite(100, 1, 3)}});
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
  EXPECT_EQ(platform.cleared, (Cleared{at_client("Vethernet8"), at_client("Vethernet9"), at_client("Vethernet10"),
                                       at_client("Vethernet11"), at_client("Ethernet100/1/1"),
                                       at_client("Ethernet100/1/2"), at_client("Ethernet100/1/3")}));
}

TEST(ClearBySteps, EndBehindTheLastNumber) {
  RecordingPlatform platform;
  clear_command command(platform, {{satellite(100, 1, 0x3FFF), satellite(100, 2, 2)}});
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
  EXPECT_EQ(platform.cleared, (Cleared{at_client("Ethernet100/1/16383"), at_client("Ethernet100/1/16384")}));
}

TEST(ClearBySteps, AtMost65536) {
  RecordingPlatform platform;
  clear_command command(platform, {{vethernet(1), vethernet(70000)}});
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
  EXPECT_EQ(platform.cleared.size(), 65536U);
  EXPECT_EQ(platform.cleared.back(), at_client("Vethernet65536"));
}

TEST(ClearBySteps, StopWhereTheNextIsNotGreater) {
  for (const if_index_t next : {vethernet(2), vethernet(1)}) {
    RecordingPlatform platform;
    platform.next_interfaces[vethernet(2)] = next;
    clear_command command(platform, {{vethernet(1), vethernet(4)}});
    EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
    EXPECT_EQ(platform.cleared, (Cleared{at_client("Vethernet1"), at_client("Vethernet2")}));
  }
}

TEST(ClearBySteps, StopWhereTheNextIsNotKnown) {
  RecordingPlatform platform;
  platform.fail_with("if_index_next", PM_ERR_GENERAL);
  clear_command command(platform, {{vethernet(1), vethernet(4)}});
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
  EXPECT_EQ(platform.cleared, (Cleared{at_client("Vethernet1")}));
}

// ---- Loopbacks -----------------------------------------------------------------------------------------------------

void clear_loopbacks() { pm_cli_clear_all_loopback_counters(RecordingPlatform::q()); }

TEST(ClearAllLoopbacks, EachIsClearedAtTheIpLibrary) {
  RecordingPlatform platform;
  platform.listings[IF_TYPE_LOOPBACK] = listing_of({loopback(0), loopback(7)});
  clear_loopbacks();
  EXPECT_EQ(platform.cleared, (Cleared{at_ip_library("loopback0"), at_ip_library("loopback7")}));
  EXPECT_EQ(platform.loader_events, kIpLibrary);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.drops.size(), 1U);
}

TEST(ClearAllLoopbacks, OneIsSuccessAndNothingElse) {
  static int32 result;
  const std::map<int32, std::string> kTexts = {
      {1, ""}, {0, kClearingFailed}, {2, kClearingFailed}, {-1, kClearingFailed}};
  for (const auto& [value, text] : kTexts) {
    RecordingPlatform platform;
    result = value;
    platform.listings[IF_TYPE_LOOPBACK] = listing_of({loopback(0)});
    platform.libraries[IP_STATS_LIBRARY] = {
        {"ip_clear_loopback_counters", +[](uint32, if_index_t) -> int32 { return result; }}};
    clear_loopbacks();
    EXPECT_EQ(platform.text(), text) << value;
  }
}

TEST(ClearAllLoopbacks, FailedListingIsTold) {
  RecordingPlatform platform;
  platform.fail_with("pm_get_if_index_listing");
  clear_loopbacks();
  EXPECT_EQ(platform.text(), kTransportFailure);
  EXPECT_THAT(platform.loader_events, IsEmpty());
}

TEST(ClearAllLoopbacks, MissingLibraryIsSilentAndMissingFunctionTold) {
  RecordingPlatform platform;
  platform.listings[IF_TYPE_LOOPBACK] = listing_of({loopback(0)});
  platform.libraries.erase(IP_STATS_LIBRARY);
  clear_loopbacks();
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.drops.size(), 1U);
  platform.libraries[IP_STATS_LIBRARY] = {};
  platform.loader_events.clear();
  clear_loopbacks();
  EXPECT_EQ(platform.text(), kNoLoopbackFunction);
  EXPECT_EQ(platform.loader_events, kIpLibrary);
  EXPECT_EQ(platform.drops.size(), 2U);
}

TEST(ClearLoopbackRange, IsSteppedThroughWithOneLibrary) {
  RecordingPlatform platform;
  platform.clear_errors[loopback(2)] = PM_ERR_GENERAL;
  clear_command command(platform, {{loopback(1), loopback(3)}, only(loopback(10)), {loopback(9), loopback(8)}});
  pm_cli_loopback_clear_counters(command.param);
  EXPECT_EQ(platform.cleared, (Cleared{at_ip_library("loopback1"), at_ip_library("loopback2"),
                                       at_ip_library("loopback3"), at_ip_library("loopback10")}));
  EXPECT_EQ(platform.text(), kClearingFailed);
  EXPECT_EQ(platform.loader_events, kIpLibrary);
}

TEST(ClearLoopbackRange, MissingLibraryIsSilentAndMissingFunctionTold) {
  RecordingPlatform platform;
  clear_command command(platform, {only(loopback(1))});
  platform.libraries.erase(IP_STATS_LIBRARY);
  pm_cli_loopback_clear_counters(command.param);
  EXPECT_EQ(platform.text(), "");
  platform.libraries[IP_STATS_LIBRARY] = {};
  pm_cli_loopback_clear_counters(command.param);
  EXPECT_EQ(platform.text(), kNoLoopbackFunction);
  EXPECT_THAT(platform.cleared, IsEmpty());
}

// ---- Every call failing in its turn --------------------------------------------------------------------------------

TEST(ClearEthernetFailures, EverythingIsReleased) {
  for (const uint32 chassis : {uint32{CHASSIS_UNKNOWN}, uint32{CHASSIS_10}, uint32{CHASSIS_17}}) {
    for (const int32 error : {-1, int32{PM_ERR_GENERAL}}) {
      walk_failures(
          [=](RecordingPlatform& platform) {
            platform.chassis_type = chassis;
            list_ports(platform);
            clear_all();
          },
          [](const walk_run& run) {
            const std::string& call = run.platform.failed_call();
            const bool is_clearing = call == "statscl_clear_port_client_stats" || call == "pm_get_clear_eth_stats";
            EXPECT_EQ(run.platform.text() == kClearingFailed, is_clearing) << call;
            if (is_clearing) {
              EXPECT_EQ(run.platform.cleared.size(), 4U);
            }
          },
          error);
      walk_failures(
          [=](RecordingPlatform& platform) {
            platform.chassis_type = chassis;
            clear_command command(platform, {only(kEthernet1), {vethernet(1), vethernet(2)}});
            const int32 result = pm_cli_eth_clear_counters(command.param);
            EXPECT_EQ(result, platform.failed_call() == "dlopen" || platform.failed_call() == "dlsym" ? 1 : 0);
          },
          {}, error);
    }
  }
}

TEST(ClearLoopbackFailures, EverythingIsReleased) {
  std::map<std::string, std::string> texts;
  walk_failures(
      [](RecordingPlatform& platform) {
        platform.listings[IF_TYPE_LOOPBACK] = listing_of({loopback(0)});
        clear_loopbacks();
      },
      [&](const walk_run& run) { texts[run.platform.failed_call()] = run.platform.text(); });
  EXPECT_EQ(texts, (std::map<std::string, std::string>{{"", ""},
                                                       {"pm_get_if_index_listing", kTransportFailure},
                                                       {"mts_payload_get", ""},
                                                       {"mts_payload_size", ""},
                                                       {"dlopen", ""},
                                                       {"dlsym", kNoLoopbackFunction},
                                                       {"ip_clear_loopback_counters", kClearingFailed},
                                                       {"mts_drop", ""}}));
  walk_failures([](RecordingPlatform& platform) {
    clear_command command(platform, {{loopback(1), loopback(3)}});
    pm_cli_loopback_clear_counters(command.param);
  });
}

}  // namespace
}  // namespace pmcli_test
