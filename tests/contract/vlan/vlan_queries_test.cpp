// What displays ask about VLANs: of the VLAN manager, the interface manager, spanning tree and private VLANs.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "pmcli/command.h"
#include "pmcli/vlan.h"
#include "support/failure_walk.h"
#include "support/matchers.h"
#include "support/vlan_libraries.h"

namespace pmcli_test {
namespace {

using Events = std::vector<std::string>;

octets bytes_of(if_index_t if_index) {
  octets bytes(4);
  std::memcpy(bytes.data(), &if_index, 4);
  return bytes;
}

class VlanQuery : public testing::Test {
 protected:
  VlanQuery() { install_vlan_libraries(platform); }

  RecordingPlatform platform;
};

// ---- Membership ---------------------------------------------------------------------------------------------------

class Membership : public VlanQuery {
 protected:
  Membership() : library(platform.libraries.contains(VLAN_MGR_LIBRARY) ? open_library() : nullptr) {}
  ~Membership() override {
    if (library != nullptr) platform.close(library);
  }

  // As the callers of the query do.
  static void* open_library();
  syserr_t ask() { return pm_cli_get_vlan_memb_info(library, RecordingPlatform::q(), kPort, &record); }

  void* library;
  trunk_port_memb_t record = membership(kPort, 4000, {4000});  // what was there before
};

void* Membership::open_library() {
  void* handle = nullptr;
  pm_get_function_from_library(VLAN_MGR_LIBRARY, "vlan_get_vlan_info_build_mts", &handle);
  return handle;
}

TEST_F(Membership, IsTheLastRecordOfThePort) {
  answers_of_vlans.memberships = {membership(kPort, 1, {1}), membership(kRoutablePort, 9, {9}),
                                  membership(kPort, 10, {10, 20}), membership(kChannel, 8, {8})};
  EXPECT_EQ(ask(), 0);
  EXPECT_EQ(record.native_trunk.vlan_id, 10);
  EXPECT_EQ(ids_of(record.allowed_vlan_list), "10,20");
  ASSERT_EQ(platform.requests.size(), 1U);
  EXPECT_EQ(platform.requests[0].node, 0xFE000000U);
  EXPECT_EQ(platform.requests[0].sap, 167U);
  EXPECT_EQ(platform.requests[0].opcode, 23562U);
  EXPECT_EQ(platform.requests[0].payload, bytes_of(kPort));
  EXPECT_EQ(platform.receives.at(0).timeout, 60);
  EXPECT_EQ(platform.receives.at(0).version, 1U);
}

TEST_F(Membership, OfOthersLeavesTheRecordAlone) {
  for (const auto& others : {std::vector<trunk_port_memb_t>{}, {membership(kRoutablePort, 9, {9})}}) {
    answers_of_vlans.memberships = others;
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(record.native_trunk.vlan_id, 4000);
  }
  answers_of_vlans.memberships = {membership(kPort, 1, {1}), membership(kPort, 2, {2})};
  answers_of_vlans.null_memberships = true;
  EXPECT_EQ(ask(), 0);
  EXPECT_EQ(record.native_trunk.vlan_id, 4000);
}

TEST_F(Membership, MissingFunctionsAreTold) {
  for (const char* const symbol :
       {"vlan_get_port_trunking_memb_build_mts", "vlan_get_port_trunking_memb_parse_reply"}) {
    platform.clear_output();
    const auto all = platform.libraries[VLAN_MGR_LIBRARY];
    platform.libraries[VLAN_MGR_LIBRARY].erase(symbol);
    EXPECT_EQ(ask(), -1);
    EXPECT_EQ(platform.text(), std::string("error: undefined symbol in dlsym for ") + symbol + "\n");
    platform.clear_output();
    platform.libraries[VLAN_MGR_LIBRARY][symbol] = nullptr;
    EXPECT_EQ(ask(), -1);
    EXPECT_EQ(platform.text(), std::string("error: (null) in dlsym for ") + symbol + "\n");
    platform.libraries[VLAN_MGR_LIBRARY] = all;
  }
  EXPECT_THAT(platform.requests, IsEmpty());
}

TEST_F(Membership, NeedsALibrary) {
  EXPECT_EQ(pm_cli_get_vlan_memb_info(nullptr, RecordingPlatform::q(), kPort, &record), -1);
  EXPECT_EQ(platform.text(), "error: (null) in dlsym for vlan_get_port_trunking_memb_build_mts\n");
}

TEST_F(Membership, FailuresAreMinusOne) {
  const std::pair<const char*, const char*> kFailures[] = {{"vlan_get_port_trunking_memb_build_mts", ""},
                                                           {"mts_send", "error\n"},
                                                           {"mts_recv", "error\n"},
                                                           {"mts_is_reject", ""},
                                                           {"mts_payload_get", "error\n"},
                                                           {"mts_payload_size", "error\n"},
                                                           {"vlan_get_port_trunking_memb_parse_reply", ""}};
  for (const auto& [function, text] : kFailures) {
    platform.clear_output();
    platform.fail_with(function, -1);
    EXPECT_EQ(ask(), -1) << function;
    EXPECT_EQ(platform.text(), text) << function;
    platform.fail_with(function, 0);
  }
}

TEST_F(Membership, RejectedAndEmptyAnswersAreFailures) {
  platform.on_request = [](const mts_request&) { return mts_reply{{1, 2, 3, 4}, true}; };
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(platform.text(), "");
  platform.on_request = [](const mts_request&) { return mts_reply{}; };
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(platform.text(), "error\n");
  EXPECT_EQ(platform.count("vlan_get_port_trunking_memb_parse_reply"), 0U);
}

// ---- A VLAN -------------------------------------------------------------------------------------------------------

class VlanInfo : public Membership {
 protected:
  syserr_t ask_info() {
    vdc_vlan_id_t vlan{};
    vlan.vdc_id = 1;
    vlan.vlan_id = 300;
    return pm_cli_get_vlan_info_from_vlan_mgr(library, RecordingPlatform::q(), &vlan, &info);
  }

  vlan_info_resp_t info{};
};

TEST_F(VlanInfo, IsWhatTheLibraryParses) {
  answers_of_vlans.info.vtype = VLAN_TYPE_PRIVATE;
  std::memcpy(answers_of_vlans.info.vlan_name, "guests", 7);
  EXPECT_EQ(ask_info(), 0);
  EXPECT_EQ(info.vtype, uint32{VLAN_TYPE_PRIVATE});
  EXPECT_STREQ(info.vlan_name, "guests");
  ASSERT_EQ(platform.requests.size(), 1U);
  EXPECT_EQ(platform.requests[0].node, 0xFE000000U);
  EXPECT_EQ(platform.requests[0].sap, 167U);
  EXPECT_EQ(platform.requests[0].opcode, 23556U);
  EXPECT_EQ(platform.requests[0].payload, (octets{0, 1, 1, 44}));
  EXPECT_EQ(platform.receives.at(0).timeout, 60);
}

TEST_F(VlanInfo, FailuresAreGeneral) {
  for (const char* const function :
       {"vlan_get_vlan_info_build_mts", "mts_send", "mts_recv", "mts_is_reject", "vlan_get_vlan_info_parse_reply"}) {
    platform.fail_with(function, 3);
    EXPECT_EQ(ask_info(), PM_ERR_GENERAL) << function;
    platform.fail_with(function, 0);
  }
  EXPECT_EQ(platform.text(), "");
}

TEST_F(VlanInfo, RejectedAndEmptyAnswersAreNotParsed) {
  for (const mts_reply& reply : {mts_reply{{1, 2, 3, 4}, true}, mts_reply{}}) {
    platform.on_request = [reply](const mts_request&) { return reply; };
    EXPECT_EQ(ask_info(), 0x40290000);
  }
  platform.on_request = [](const mts_request&) { return mts_reply{{1, 2, 3, 4}}; };
  for (const char* const function : {"mts_payload_get", "mts_payload_size"}) {
    platform.fail_with(function);
    EXPECT_EQ(ask_info(), 0x40290000) << function;
    platform.fail_with(function, 0);
  }
  EXPECT_EQ(platform.count("vlan_get_vlan_info_parse_reply"), 0U);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.drops.size(), 8U);
}

TEST_F(VlanInfo, MissingFunctionsAreTold) {
  for (const char* const symbol : {"vlan_get_vlan_info_build_mts", "vlan_get_vlan_info_parse_reply"}) {
    platform.clear_output();
    const auto all = platform.libraries[VLAN_MGR_LIBRARY];
    platform.libraries[VLAN_MGR_LIBRARY].erase(symbol);
    EXPECT_EQ(ask_info(), PM_ERR_GENERAL);
    EXPECT_EQ(platform.text(), std::string("error: undefined symbol in dlsym for ") + symbol + "\n");
    platform.libraries[VLAN_MGR_LIBRARY] = all;
  }
}

// ---- The native VLAN ----------------------------------------------------------------------------------------------

TEST(NativeVlan, IsTheInterfaceManagers) {
  RecordingPlatform platform;
  platform.native_vlans[kPort] = 77;
  vlan_id_t vlan = 0;
  EXPECT_EQ(pm_cli_get_native_vlan(kPort, &vlan), 0);
  EXPECT_EQ(vlan, 77U);
  EXPECT_EQ(platform.interface_manager_starts, (Events{"262 0 clish"}));
}

TEST(NativeVlan, FailuresAreTold) {
  RecordingPlatform platform;
  vlan_id_t vlan = 5;
  platform.fail_with("im_ext_sbcr_init", 9);
  EXPECT_EQ(pm_cli_get_native_vlan(kPort, &vlan), 9);
  EXPECT_EQ(platform.text(), "im_ext_sbcr_init failed: 0x9 (<system error 9>)\n");
  platform.fail_with("im_ext_sbcr_init", 0);
  platform.clear_output();
  platform.fail_with("im_get_ifindex_native_vlan_list", 10);
  EXPECT_EQ(pm_cli_get_native_vlan(kPort, &vlan), 10);
  char expected[200];
  std::snprintf(expected, sizeof expected,
                "im_get_ifindex_native_vlan_list failed for 0x%x \nstatus: 0xa - <system error A>\n"
                "if_vlan.status: 0x0\n",
                kPort);
  EXPECT_EQ(platform.text(), expected);
  EXPECT_EQ(vlan, 5U);
}

TEST(NativeVlan, ABadRecordIsToldAndReturnsTheCallsResult) {
  RecordingPlatform platform;
  platform.interface_manager_status = 0x20;
  vlan_id_t vlan = 5;
  EXPECT_EQ(pm_cli_get_native_vlan(kPort, &vlan), 0);
  EXPECT_EQ(vlan, 5U);
  EXPECT_THAT(platform.text(), HasSubstr("if_vlan.status: 0x20\n"));
}

// ---- Spanning tree ------------------------------------------------------------------------------------------------

class Forwarding : public VlanQuery {
 protected:
  syserr_t ask() { return pm_cli_get_stp_forwarding_info(kPort, RecordingPlatform::q(), &forwarding); }
  void forward(const std::vector<std::vector<uint32>>& ports) {
    for (const auto& ids : ports) {
      stp_port_state_t state{};
      state.if_index = kPort;
      state.forwarding = vlans(ids);
      answers_of_vlans.forwarding.push_back(state);
    }
  }

  vlan_bitset_t forwarding = vlans({4094});
};

TEST_F(Forwarding, IsTheSetOfThePort) {
  forward({{1, 10, 20}});
  EXPECT_EQ(ask(), 0);
  EXPECT_EQ(ids_of(forwarding), "1,10,20");
  ASSERT_EQ(platform.requests.size(), 1U);
  EXPECT_EQ(platform.requests[0].sap, platform.vdc) << "the context is handed on";
  EXPECT_EQ(platform.requests[0].opcode, 1U) << "one port";
  EXPECT_EQ(platform.requests[0].payload, bytes_of(kPort));
  EXPECT_EQ(platform.receives.at(0).version, 1U);
  EXPECT_EQ(platform.loader_events.front(), "open libstp.so lazy");
  EXPECT_EQ(platform.loader_events.back(), "close libstp.so");
}

TEST_F(Forwarding, OfAnyOtherNumberOfPortsIsAFailure) {
  EXPECT_EQ(ask(), -1) << "none";
  forward({{1}, {2}});
  EXPECT_EQ(ask(), -1) << "two";
  answers_of_vlans.forwarding.pop_back();
  answers_of_vlans.null_forwarding = true;
  EXPECT_EQ(ask(), -1) << "one, without a list";
  EXPECT_EQ(ids_of(forwarding), "4094");
}

TEST_F(Forwarding, FailuresAreMinusOne) {
  forward({{1}});
  for (const char* const function :
       {"stp_send_get_port_state", "mts_send", "mts_recv", "mts_is_reject", "stp_parse_get_port_state"}) {
    platform.fail_with(function, -1);
    EXPECT_EQ(ask(), -1) << function;
    platform.fail_with(function, 0);
  }
  EXPECT_EQ(platform.text(), "");
}

TEST_F(Forwarding, RejectedAnswersAreNotParsed) {
  forward({{1}});
  platform.on_request = [](const mts_request&) { return mts_reply{{1, 2, 3, 4}, true}; };
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.drops, (std::vector<uint32>{1, 2}));
  EXPECT_EQ(platform.count("stp_parse_get_port_state"), 0U);
  EXPECT_EQ(platform.loader_events.back(), "close libstp.so");
  EXPECT_EQ(ids_of(forwarding), "4094");
}

// Its parser takes the message itself, and says what is missing in it.
TEST_F(Forwarding, AnswerWithoutAPayloadIsTheParsersToRefuse) {
  forward({});
  platform.on_request = [](const mts_request&) { return mts_reply{}; };
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(platform.count("stp_parse_get_port_state"), 1U);
  EXPECT_EQ(platform.text(), "");
}

TEST_F(Forwarding, MissingLibraryAndFunctionsAreTold) {
  for (const char* const symbol : {"stp_send_get_port_state", "stp_parse_get_port_state"}) {
    platform.clear_output();
    const auto all = platform.libraries[STP_LIBRARY];
    platform.libraries[STP_LIBRARY].erase(symbol);
    EXPECT_EQ(ask(), -1);
    EXPECT_EQ(platform.text(), std::string("error: undefined symbol in dlsym for ") + symbol + "\n");
    platform.libraries[STP_LIBRARY] = all;
  }
  platform.clear_output();
  platform.libraries.erase(STP_LIBRARY);
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(platform.text(), "error: couldn't open libstp.so\n");
}

// ---- Private VLANs ------------------------------------------------------------------------------------------------

class PrivateVlans : public VlanQuery {
 protected:
  syserr_t ask(if_index_t if_index = kPort) {
    return pm_cli_get_pvlan_info(if_index, RecordingPlatform::q(), &host_primary, &host_secondary, &mapping_primary,
                                 &mapping_secondary, &operational);
  }
  void expect_empty() {
    EXPECT_EQ(host_primary + host_secondary + mapping_primary, 0U);
    EXPECT_EQ(ids_of(mapping_secondary), "");
    EXPECT_EQ(ids_of(operational), "");
  }

  vlan_id_t host_primary = 11, host_secondary = 12, mapping_primary = 13;
  vlan_bitset_t mapping_secondary = vlans({14}), operational = vlans({15});
};

TEST_F(PrivateVlans, AreWhatTheLibraryParses) {
  pvlan_switchport_info_t& info = answers_of_vlans.private_vlans;
  info.host_primary = 100;
  info.host_secondary = 101;
  info.mapping_primary = 200;
  info.mapping_secondary = vlans({201, 202});
  info.mapping_secondary.size = 0xFFFFFFFF;  // not believed
  info.operational = vlans({100, 101});
  EXPECT_EQ(ask(), 0);
  EXPECT_EQ(host_primary, 100U);
  EXPECT_EQ(host_secondary, 101U);
  EXPECT_EQ(mapping_primary, 200U);
  EXPECT_EQ(ids_of(mapping_secondary), "201,202");
  EXPECT_EQ(ids_of(operational), "100,101");
  EXPECT_EQ(platform.requests.at(0).node, 0xFE000000U);
  EXPECT_EQ(platform.requests.at(0).payload, bytes_of(kPort));
  EXPECT_EQ(platform.receives.at(0).timeout, 10);
}

TEST_F(PrivateVlans, OfPortChannelsAreNotAskedFor) {
  EXPECT_EQ(ask(kChannel), 0);
  EXPECT_EQ(host_primary, 11U);
  EXPECT_THAT(platform.loader_events, IsEmpty());
  EXPECT_EQ(ask(kOldChannel), 0);
  EXPECT_EQ(host_primary, 0U) << "those of the older family are";
}

// The number is that of the transport's last failure.
TEST_F(PrivateVlans, FailuresAreToldAndLeaveNothing) {
  const std::pair<const char*, const char*> kFailures[] = {
      {"pvlan_build_get_switchport_info_req", ""},
      {"mts_send", ""},
      {"mts_recv", "error: mts_recv get PVLAN switchport info returned 110\n"},
      {"mts_is_reject", "error: mts_recv for get PVLAN switchport info returned 110\n"},
      {"mts_payload_get", "error: mts_recv for get PVLAN switchport info returned 110\n"},
      {"pvlan_parse_get_switchport_info_rsp", "error: pvlan_parse_get_switchport_info_rsp returned <system error 7>\n"},
  };
  for (const auto& [function, text] : kFailures) {
    platform.clear_output();
    platform.fail_with(function, std::string(function) == "mts_recv" ? -1 : 7);
    EXPECT_EQ(ask(), -1) << function;
    EXPECT_EQ(platform.text(), text) << function;
    expect_empty();
    platform.fail_with(function, 0);
  }
}

TEST_F(PrivateVlans, RejectedAndEmptyAnswersAreNotParsed) {
  for (const mts_reply& reply : {mts_reply{{1, 2, 3, 4}, true}, mts_reply{}}) {
    platform.clear_output();
    platform.on_request = [reply](const mts_request&) { return reply; };
    EXPECT_EQ(ask(), -1);
    EXPECT_EQ(platform.text(), "error: mts_recv for get PVLAN switchport info returned 0\n");
    expect_empty();
  }
  platform.on_request = [](const mts_request&) { return mts_reply{{1, 2, 3, 4}}; };
  platform.fail_with("mts_payload_size");
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(platform.count("pvlan_parse_get_switchport_info_rsp"), 0U);
}

TEST_F(PrivateVlans, MissingLibraryAndFunctionsAreTold) {
  for (const char* const symbol : {"pvlan_build_get_switchport_info_req", "pvlan_parse_get_switchport_info_rsp"}) {
    platform.clear_output();
    const auto all = platform.libraries[PVLAN_LIBRARY];
    platform.libraries[PVLAN_LIBRARY].erase(symbol);
    EXPECT_EQ(ask(), -1);
    EXPECT_EQ(platform.text(), std::string("error: undefined symbol in dlsym for ") + symbol + "\n");
    platform.libraries[PVLAN_LIBRARY] = all;
  }
  platform.clear_output();
  platform.libraries.erase(PVLAN_LIBRARY);
  EXPECT_EQ(ask(), -1);
  EXPECT_EQ(platform.text(), "error: couldn't open libpvlan.so\n");
  expect_empty();
}

// ---- Every call failing -------------------------------------------------------------------------------------------

TEST(VlanQueryWalk, EveryCallMayFail) {
  const walk_scenario kScenarios[] = {
      [](RecordingPlatform& platform) {
        install_vlan_libraries(platform);
        answers_of_vlans.memberships = {membership(kPort, 1, {1})};
        pm_port_info_t port = named(kPort, port_record());
        pm_cli_print_eth_trunk_allowed_vlans(platform.output(), &port, RecordingPlatform::q());
      },
      [](RecordingPlatform& platform) {
        install_vlan_libraries(platform);
        answers_of_vlans.forwarding.resize(1);
        pm_port_info_t port = named(kPort, port_record());
        pm_cli_print_eth_trunk_stp_forwarding(platform.output(), &port, RecordingPlatform::q());
      },
      [](RecordingPlatform& platform) {
        install_vlan_libraries(platform);
        vlan_id_t id = 0;
        vlan_bitset_t set;
        pm_cli_get_pvlan_info(kPort, RecordingPlatform::q(), &id, &id, &id, &set, &set);
      },
      [](RecordingPlatform& platform) {
        pm_port_info_t port = named(kPort, port_record());
        pm_cli_print_eth_trunk_brief(platform.output(), &port, RecordingPlatform::q());
      },
  };
  for (const walk_scenario& scenario : kScenarios) {
    EXPECT_GE(walk_failures(scenario), 3U);
    EXPECT_GE(walk_failures(scenario, {}, PM_ERR_GENERAL), 3U);
  }
}

}  // namespace
}  // namespace pmcli_test
