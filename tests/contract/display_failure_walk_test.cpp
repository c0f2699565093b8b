// The displays with each of their calls failing in turn.
#include <gtest/gtest.h>

#include <map>

#include "contract/sample_ports.h"
#include "pmcli/command.h"
#include "pmcli/interface.h"
#include "support/failure_walk.h"

namespace pmcli_test {
namespace {

// What a run must print, whole, when this call is the one that fails. Calls that are not named here may fail in any way
// that releases what was taken.
using contracted_texts = std::map<std::string, std::string>;

// Walks a scenario with results that are a transport failure, and with others. Each named call must be met, and the run
// in which nothing fails prints what stands under "".
void expect_texts(const walk_scenario& scenario, const contracted_texts& on_transport_failure,
                  const contracted_texts& on_other_failure) {
  for (const int32 result : {-1, int32{PM_ERR_GENERAL}}) {
    const contracted_texts& texts = result == -1 ? on_transport_failure : on_other_failure;
    std::map<std::string, uint32> met;
    walk_failures(
        scenario,
        [&](const walk_run& run) {
          const auto text = texts.find(run.platform.failed_call());
          if (text == texts.end()) return;
          ++met[text->first];
          EXPECT_EQ(run.platform.text(), text->second) << "failing call: " << text->first << ", result " << result;
        },
        result);
    for (const auto& [call, text] : texts) EXPECT_EQ(met[call], 1U) << "calls of " << call;
  }
}

// ---- The detailed view of a routable port --------------------------------------------------------------------------

struct block_variant {
  const char* hardware = "  Hardware: 10/100/1000 Ethernet, address: 0210.2030.4050 (bia 0210.2030.4050)\n";
  const char* address = "  Internet Address is 10.1.2.3/24\n";
  const char* mode = "  Port mode is 524288\n";
  const char* duplex = "  11-duplex, 1000, media type is SFP\n";
  const char* rate = "  Rate mode is 13\n";
  const char* end = "";
};

std::string block(const block_variant& variant) {
  return std::string("Ethernet1/2 is 1\n") + variant.hardware + variant.address +
         "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
         "     reliability 0/255, txload 0/255, rxload 0/255\n"
         "  Encapsulation ARPA\n" +
         variant.mode + variant.duplex + "  Input flow-control is 8, output flow-control is 1\n" + variant.rate +
         "  Switchport monitor is 15 \n" + variant.end;
}

constexpr char kRoutedHardware[] = "  Hardware: 10/100/1000 Ethernet, address: 02aa.bbcc.ddee (bia 0210.2030.4050)\n";
constexpr char kUnknownHardware[] = "  Hardware: , address: 0210.2030.4050 (bia 0210.2030.4050)\n";

void show_routable_port(RecordingPlatform& platform) {
  platform.ports[kRoutablePort] = port_record();
  platform.capabilities[kRoutablePort] = port_capabilities("SFP");
  platform.transceiver_block = octets(267, 1);
  platform.addresses[kRoutablePort] = {ipv4_address(10, 1, 2, 3, 24)};
  platform.port_stats[kRoutablePort] = {};
  pm_cli_show_eth_port_config(platform.show_command(1, kRoutablePort));
}

contracted_texts routable_port_texts(const std::string& code) {
  block_variant routed;
  routed.hardware = kRoutedHardware;
  routed.mode = "";
  block_variant no_transceiver;
  no_transceiver.duplex = "  11-duplex, 1000\n";
  no_transceiver.rate = "";
  block_variant no_capabilities;
  no_capabilities.hardware = kUnknownHardware;
  no_capabilities.duplex = "  11-duplex, 1000, media type is \n";
  block_variant no_address;
  no_address.address = "";
  block_variant no_statistics;
  no_statistics.end = "stats unavailable\n";
  const std::string text = "<system error " + code + ">";
  const std::string hex = code == "FFFFFFFF" ? "0xffffffff" : "0x40290000";
  return {
      {"", block({})},
      {"cmd_paraminfo_to_rxhandle", "cmd_paraminfo_to_rxhandle failed \n"},
      {"pm_cmi_get_fcot_info", block(no_transceiver)},
      {"crdcfg_get_port_cap", "crdcfg_get_port_cap failed with " + text + "\n" + block(no_capabilities)},
      {"im_ext_sbcr_init", "im_ext_sbcr_init failed: " + hex + " (" + text + ")\n" + block(routed)},
      {"im_get_ifindex_layermode_list", "im_get_ifindex_layermode_list failed for 0x68001000 \nstatus: " + hex + " - " +
                                            text + "\nif_info_status: 0x0\n" + block(routed)},
      {"ipconf_get_if_inet_addrs", block(no_address)},
      {"statcl_get_port_client_stats", block(no_statistics)},
  };
}

TEST(FailureWalk, DetailedViewOfAPort) {
  contracted_texts on_transport_failure = routable_port_texts("FFFFFFFF");
  on_transport_failure["pm_cmi_get_port_config"] = "<transport failure 2 110>\n";
  contracted_texts on_other_failure = routable_port_texts("40290000");
  on_other_failure["pm_cmi_get_port_config"] = "error: <system error 40290000>\n";
  expect_texts(show_routable_port, on_transport_failure, on_other_failure);
}

// The loader fails for the card configuration first, for the statistics client second.
TEST(FailureWalk, DetailedViewOfAPortWithoutItsLibraries) {
  block_variant no_capabilities;
  no_capabilities.hardware = kUnknownHardware;
  no_capabilities.duplex = "  11-duplex, 1000, media type is \n";
  const std::string without_card = block(no_capabilities);
  std::map<std::string, std::vector<std::string>> texts;
  walk_failures(show_routable_port,
                [&](const walk_run& run) { texts[run.platform.failed_call()].push_back(run.platform.text()); });

  EXPECT_EQ(texts["dlopen"],
            (std::vector<std::string>{without_card,
                                      block({}) + "error: unable to open library libstatcl.so\nstats unavailable\n"}));
  EXPECT_EQ(texts["dlsym"],
            (std::vector<std::string>{
                "couldn't get crdcfg_get_port_cap()\n" + without_card,
                block({}) + "error: undefined symbol in dlsym for statcl_get_port_client_stats\nstats unavailable\n"}));
}

// ---- The detailed view of a port-channel ---------------------------------------------------------------------------

void show_channel(RecordingPlatform& platform) {
  platform.chassis_type = CHASSIS_UNKNOWN;
  platform.ports[kChannel] = port_record();
  platform.multi_chassis_status[kChannel] = "(both up)";
  platform.channel_members[kChannel] = {ethernet(1, 2)};
  platform.tracked_ports[kChannel] = {ethernet(1, 9)};
  platform.port_stats[kChannel] = {};
  pm_cli_show_eth_port_config(platform.show_command(1, kChannel));
}

std::string channel_block(const char* status, const char* members, const char* end) {
  return std::string("port-channel3 is 1\n") + status +
         "  Hardware: Port-Channel, address: 0210.2030.4050 (bia 0210.2030.4050)\n"
         "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
         "     reliability 0/255, txload 0/255, rxload 0/255\n"
         "  Encapsulation ARPA\n"
         "  Port mode is 524288\n"
         "  11-duplex, 1000\n"
         "  Input flow-control is 8, output flow-control is 1\n"
         "  Switchport monitor is 15 \n" +
         members + end;
}

TEST(FailureWalk, DetailedViewOfAPortChannel) {
  constexpr char kStatus[] = " (both up)\n";
  constexpr char kMember[] = "    Member[1] : Ethernet1/2\n";
  constexpr char kTracked[] = "    Linked to 1 port(s)\n      Port linked to interface Ethernet1/9\n";
  const contracted_texts texts = {
      {"", channel_block(kStatus, kMember, kTracked)},
      {"mcecm_api_sdb_sh_int_po", channel_block("", kMember, kTracked)},
      {"get_port_channel_members", channel_block(kStatus, "    No members\n", kTracked)},
      {"pm_cmi_get_tracked_port_if_list", channel_block(kStatus, kMember, "")},
      {"statcl_get_port_client_stats", channel_block(kStatus, kMember, "stats unavailable\n")},
      {"dlopen", channel_block(kStatus, kMember, "error: unable to open library libstatcl.so\nstats unavailable\n")},
      {"ipconf_get_if_inet_addrs", channel_block(kStatus, kMember, kTracked)},
  };
  expect_texts(show_channel, texts, texts);
}

// ---- The switchport-style view -------------------------------------------------------------------------------------

void show_ips_trunk(RecordingPlatform& platform) {
  platform.chassis_type = CHASSIS_UNKNOWN;
  pm_port_info_t port = port_record_in_mode(PM_PORT_MODE_IPS);
  port.admin_port_mode = PM_PORT_MODE_TRUNK;
  platform.ports[kOldChannel] = port;
  platform.channel_eth_stats[kOldChannel] = {};
  platform.channel_members[kOldChannel] = {ethernet(1, 2)};
  platform.tracked_ports[kOldChannel] = {};
  pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), 29, kOldChannel);
}

TEST(FailureWalk, TrunkDetailOfAnIpsChannel) {
  constexpr char kStatus[] = "port-channel4 is 1\nport-channel4 is 1\n";
  constexpr char kMember[] = "    Member[1] : Ethernet1/2\n";
  constexpr char kNoMembership[] =
      "error: undefined symbol in dlsym for vlan_get_port_trunking_memb_build_mts\n"
      "Couldn't call pm_cli_get_vlan_memb_info\n";
  const std::string lines =
      "    Hardware is GigabitEthernet, address is 0210.2030.4050\n"
      "    MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec\n"
      "    Port mode is IPS\n"
      "    Port mode is 512\n"
      "    Speed is 1000\n"
      "    Duplex mode is 12\n"
      "    Receive flow-control is desired, Send flow-control is on\n";
  const contracted_texts texts = {
      {"", kStatus + lines + kMember + kNoTraffic + kNoMembership},
      {"pm_port_channel_get_clear_eth_stats", std::string(kStatus) + kNoMembership},
      {"get_port_channel_members", kStatus + lines + "    No members\n" + kNoTraffic + kNoMembership},
      {"if_index_get_sub_intf", kStatus + lines + kMember + kNoTraffic + kNoMembership},
      {"pm_cmi_get_tracked_port_if_list", kStatus + lines + kMember + kNoTraffic + kNoMembership},
      {"dlopen", kStatus + lines + kMember + kNoTraffic + "libvlan_mgr.so missing\n"},
  };
  expect_texts(show_ips_trunk, texts, texts);
}

// ---- Traffic lines -------------------------------------------------------------------------------------------------

TEST(FailureWalk, TrafficOfARoutablePort) {
  const walk_scenario scenario = [](RecordingPlatform& platform) {
    platform.ports[kRoutablePort] = port_record();
    platform.port_stats[kRoutablePort] = {};
    pm_cli_show_eth_stat_info(platform.show_command(1, kRoutablePort));
  };
  contracted_texts texts = {
      {"", "<statistics of Ethernet1/2, detail 0>\n"},
      {"cmd_paraminfo_to_rxhandle", "cmd_paraminfo_to_rxhandle failed \n"},
      {"if_index_get_type", "error: invalid if index type(0)\n"},
      {"dlopen", ""},
      {"dlsym", "error: undefined symbol in dlsym for statcl_get_port_client_stats\n"},
      {"statcl_get_port_client_stats", ""},
      {"pm_cmi_get_port_config", "<transport failure 2 110>\n"},
  };
  contracted_texts on_other_failure = texts;
  on_other_failure["pm_cmi_get_port_config"] = "error: <system error 40290000>\n";
  expect_texts(scenario, texts, on_other_failure);
}

TEST(FailureWalk, TrafficOfAnIpsChannel) {
  const walk_scenario scenario = [](RecordingPlatform& platform) {
    platform.ports[kChannel] = port_record_in_mode(PM_PORT_MODE_IPS);
    platform.eth_stats[kChannel] = {};
    platform.channel_members[kChannel] = {ethernet(1, 2)};
    pm_show_eth_stat_info(platform.output(), RecordingPlatform::q(), 1, kChannel);
  };
  const contracted_texts texts = {
      {"", std::string(kNoTraffic) + "  Members in this channel: Eth1/2\n"},
      {"pm_get_clear_eth_stats", ""},
      {"get_port_channel_members", std::string(kNoTraffic) + "  No members\n"},
  };
  expect_texts(scenario, texts, texts);
}

TEST(FailureWalk, TrafficOfALoopback) {
  const walk_scenario scenario = [](RecordingPlatform& platform) {
    platform.loopback_stats[loopback(0)].in_pkts = 5;
    pm_port_info_t port = named(loopback(0), port_record());
    print_eth_stat_info(platform.output(), RecordingPlatform::q(), &port);
  };
  const auto lines = [](const char* packets) {
    return std::string("    ") + packets +
           " packets input 0 bytes\n"
           "    0 multicast frames 0 compressed\n"
           "    0 input errors 0 frame 0 overrun 0 fifo\n"
           "    0 packets output 0 bytes 0 underruns\n"
           "    0 output errors 0 collisions 0 fifo\n"
           "    0 out_carrier_errors\n";
  };
  const contracted_texts texts = {
      {"", lines("5")},
      {"if_index_get_type", "error: invalid if index type(0)\n"},
      {"dlopen", "error: unable to open library libip_stats.so\n"},
      {"dlsym", "error: undefined symbol in dlsym for ip_get_loopback_counters\n"},
      {"ip_get_loopback_counters", lines("0")},
  };
  expect_texts(scenario, texts, texts);
}

TEST(FailureWalk, TrafficOfTheManagementPort) {
  const walk_scenario scenario = [](RecordingPlatform& platform) {
    platform.kernel_devices["eth1"] = {};
    pm_port_info_t port = named(mgmt(), port_record());
    print_eth_stat_info(platform.output(), RecordingPlatform::q(), &port);
  };
  const contracted_texts texts = {
      {"",
       "    0 packets input, 0 bytes\n"
       "    0 multicast frames, 0 compressed\n"
       "    0 input errors, 0 frame, 0 overrun, 0 fifo\n"
       "    0 packets output, 0 bytes\n"
       "    0 underrun, 0 output errors, 0 collisions\n"
       "    0 fifo, 0 carrier errors\n"},
      {"if_index_get_type", "error: invalid if index type(0)\n"},
      {"pm_get_proc_net_dev_stats", "No counters available.\n"},
  };
  expect_texts(scenario, texts, texts);
}

// ---- The handlers --------------------------------------------------------------------------------------------------

TEST(FailureWalk, LoopbackCountersThatAreNotZero) {
  const walk_scenario scenario = [](RecordingPlatform& platform) {
    platform.loopback_stats[loopback(0)].in_pkts = 5;
    EXPECT_EQ(pm_cli_show_loopback_config(platform.show_command(58, loopback(0))), 0U);
  };
  const contracted_texts texts = {
      {"", "loopback0\n  Input Packets:                                        5\n\n"},
      {"cmd_paraminfo_to_rxhandle", "cmd_paraminfo_to_rxhandle failed \n"},
      {"dlopen", "error: unable to open library libip_stats.so\n"},
      {"dlsym", "error: undefined symbol in dlsym for ip_get_loopback_counters\n"},
      {"ip_get_loopback_counters", ""},
  };
  expect_texts(scenario, texts, texts);
}

TEST(FailureWalk, VlanFilter) {
  const walk_scenario scenario = [](RecordingPlatform& platform) {
    platform.ports[kPort] = port_record();
    vsh_int_multi_range_t list{};
    list.range_count = 1;
    list.range[0] = {0, 4095};
    paraminfo_t* const param = platform.show_command(31, kPort);
    platform.add_argument(param, PARAM_TYPE_INT_RANGES, &list);
    EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
  };
  const contracted_texts texts = {
      {"cmd_paraminfo_to_rxhandle", "cmd_paraminfo_to_rxhandle failed \n"},
      {"dlopen", ""},
  };
  expect_texts(scenario, texts, texts);
}

TEST(FailureWalk, ModuleFilter) {
  const walk_scenario scenario = [](RecordingPlatform& platform) {
    platform.ports[kPort] = port_record();
    platform.port_stats[kPort] = {};
    uint32 module = 1;
    paraminfo_t* const param = platform.show_command(34, kPort);
    platform.add_argument(param, PARAM_TYPE_UINT32, &module);
    EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
  };
  const contracted_texts texts = {
      {"cmd_paraminfo_to_rxhandle", "cmd_paraminfo_to_rxhandle failed \n"},
      {"if_index_get_slot", ""},
      {"dlopen", "error: unable to open library libstatcl.so\nstats unavailable\n"},
      {"statcl_get_port_client_stats", "stats unavailable\n"},
  };
  expect_texts(scenario, texts, texts);
}

}  // namespace
}  // namespace pmcli_test
