// The tables and the selection of interfaces with each of their calls failing in turn.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "contract/command/interface_command.h"
#include "contract/sample_ports.h"
#include "pm/interface_ranges.h"
#include "pm/port_attributes.h"
#include "pmcli/command.h"
#include "pmcli/headers.h"
#include "pmcli/interface.h"
#include "pmcli/selection.h"
#include "pmcli/vlan.h"
#include "support/failure_walk.h"

namespace pmcli_test {
namespace {

// What a run gave: its result, and what it printed without numbers of source lines.
struct outcome {
  int32 result;
  std::string text;
  bool operator==(const outcome&) const = default;
};

void PrintTo(const outcome& run, std::ostream* out) { *out << '{' << run.result << ", \"" << run.text << "\"}"; }

// By the call that failed, in order; under "" the run in which none failed.
using outcomes = std::map<std::string, std::vector<outcome>>;

outcomes walk_results(const std::function<int32(RecordingPlatform&)>& scenario, int32 failure = -1) {
  outcomes all;
  int32 result = 0;
  walk_failures([&](RecordingPlatform& platform) { result = scenario(platform); },
                [&](const walk_run& run) {
                  all[run.platform.failed_call()].push_back({result, without_lines(run.platform.text())});
                },
                failure);
  return all;
}

const if_index_t kFc1 = fibre_channel(1, 1);
const if_index_t kFc2 = fibre_channel(1, 2);

// ---- Enumeration ---------------------------------------------------------------------------------------------------

int32 enumerate(RecordingPlatform& platform, interface_mask_t mask, bool has_ranges, uint32 config) {
  platform.config_type = config;
  platform.names = {{kFc1, "bay1"}, {kFc2, "bay2"}};
  platform.listings[1] = platform.startup_listings[1] = listing_of({kFc2, kFc1});
  intf_range_t ranges = interface_ranges({{kFc1, kFc2}});
  if_index_list_t list{};
  const int32 result =
      pm_cli_if_index_enum_func(interface_command(platform, 1, mask, has_ranges ? &ranges : nullptr), &list);
  if (result != 1) {
    EXPECT_EQ(list.length, 0U);
    EXPECT_EQ(list.list, nullptr);
  }
  platform.release(list.list);
  return result;
}

TEST(SelectionFailureWalk, Enumeration) {
  constexpr char kNoList[] =
      "(Error) Malloc Failure in enumeration.cpp[LINE] for size 8\nerror: malloc failure - size(8)\n";
  constexpr char kNoAnswer[] = "<transport failure 1 110>\n";
  for (const uint32 config : {1U, 2U}) {
    const char* const request = config == 1 ? "pm_get_if_index_listing" : "pm_get_startup_if_index_listing";
    const outcomes all =
        walk_results([=](RecordingPlatform& platform) { return enumerate(platform, 0x40000, false, config); });
    EXPECT_EQ(all, (outcomes{{"", {{1, ""}}},
                             {request, {{-1, kNoAnswer}}},
                             {"malloc", {{-1, kNoList}, {-1, kNoList}}},
                             {"mts_drop", {{-1, kNoAnswer}}},
                             {"mts_payload_get", {{1, ""}}},
                             {"mts_payload_size", {{1, ""}}}}));

    const outcomes of_ranges =
        walk_results([=](RecordingPlatform& platform) { return enumerate(platform, 0x40000, true, config); });
    EXPECT_EQ(of_ranges, (outcomes{{"", {{1, ""}}},
                                   {request, {{-1, kNoAnswer}}},
                                   {"malloc", {{-1, kNoList}}},
                                   {"mts_drop", {{-1, kNoAnswer}}},
                                   {"mts_payload_get", {{1, ""}}},
                                   {"mts_payload_size", {{1, ""}}}}));
  }
}

TEST(SelectionFailureWalk, EnumerationOfTheInbandInterface) {
  const outcomes all = walk_results([](RecordingPlatform& platform) { return enumerate(platform, 0x800, false, 1); });
  EXPECT_EQ(all, (outcomes{{"", {{1, ""}}},
                           {"malloc",
                            {{-1,
                              "(Error) Malloc Failure in enumeration.cpp[LINE] for size 4\n"
                              "error: malloc failure - size(4)\n"}}}}));
}

// ---- Verification --------------------------------------------------------------------------------------------------

int32 verify(RecordingPlatform& platform, interface_mask_t mask, if_index_t if_index, uint8 no_flag, uint32 status) {
  platform.on_request = [=](const mts_request&) { return mts_reply{.payload = words({status})}; };
  platform.ports[if_index] = port_record();
  intf_range_t ranges = interface_ranges({{if_index, if_index}});
  paraminfo_t* const param = interface_command(platform, 1, mask, &ranges);
  param->prc_mode = 1;
  param->no_flag = no_flag;
  param->arg_list[0]->token_id = TOKEN_CONF_INTERFACES;
  return pm_cli_if_index_verification_func(mask, param);
}

// What each step of the exchange with the port manager gives when it fails.
outcomes failed_exchange() {
  constexpr char kNotDropped[] = "error: in dropping message\n";
  return {
      {"", {{0, ""}}},
      {"malloc", {{-1, "error: malloc failure - size(20)\n"}}},
      {"mts_send", {{-1, "error: in sending message\n"}}},
      {"mts_drop", {{-1, kNotDropped}, {-1, kNotDropped}}},
      {"mts_recv", {{-1, "<transport failure 1 110>\n"}}},
      {"mts_is_reject", {{-1, ""}}},
      {"mts_payload_get", {{-1, ""}}},
      {"mts_payload_size", {{-1, ""}}},
  };
}

TEST(SelectionFailureWalk, VerificationOfAFibreChannelPort) {
  outcomes expected = failed_exchange();
  expected["if_index_get_type"] = {{0, ""}};  // a port of no known kind carries no VSANs
  expected["pm_get_port_info_range"] = {{-1, "error: getting port info range\n"}};
  expected["pm_parse_get_port_info_range"] = {{-1, "error: parsing port info range\n"}};
  expected["vsan_get_port_trunking_membership"] = {{0, ""}};
  expected["vsh_fc_intf_perm_check"] = {{-13, ""}};
  expected["mts_drop"].push_back({0, ""});  // that of the port records is not looked at
  EXPECT_EQ(walk_results([](RecordingPlatform& platform) { return verify(platform, 0x1, kFc1, 0, 0); }), expected);
}

TEST(SelectionFailureWalk, VerificationThatCreatesASubInterface) {
  const if_index_t sub = sub_interface(kPort, 1);
  outcomes expected = failed_exchange();
  expected["if_index_get_type"] = {{0, ""}};
  expected["pm_cli_config_sub_interface"] = {{-10, ""}};
  EXPECT_EQ(walk_results([=](RecordingPlatform& platform) { return verify(platform, 0x2, sub, 0, 0x40290037); }),
            expected);
  expected["if_index_get_sub_intf"] = {{-10, ""}, {-10, ""}};
  EXPECT_EQ(walk_results([=](RecordingPlatform& platform) { return verify(platform, 0x2, sub, 1, 0); }), expected);
}

TEST(SelectionFailureWalk, VerificationThatCreatesALoopback) {
  outcomes expected = failed_exchange();
  expected["if_index_get_type"] = {{0, ""}};
  expected["pm_cli_config_loopback_interface"] = {{-10, ""}};
  for (const uint8 no_flag : {uint8{0}, uint8{1}})
    EXPECT_EQ(walk_results([=](RecordingPlatform& platform) {
                return verify(platform, 0x4000, loopback(5), no_flag, 0x40290037);
              }),
              expected);
}

TEST(SelectionFailureWalk, VerificationOfOneRange) {
  const outcomes all = walk_results([](RecordingPlatform& platform) {
    platform.on_request = [](const mts_request&) { return mts_reply{.payload = words({0x40290037})}; };
    if_index_verify_info_t info{{kPort, kPort}, RecordingPlatform::q()};
    return pm_if_index_verify_cb(&info);
  });
  std::set<std::string> failed;
  for (const auto& [call, runs] : all) {
    failed.insert(call);
    for (const outcome& run : runs) EXPECT_EQ(run.result, call.empty() ? 0x40290037 : -1) << call;
  }
  EXPECT_EQ(failed, (std::set<std::string>{"", "malloc", "mts_drop", "mts_is_reject", "mts_payload_get",
                                           "mts_payload_size", "mts_recv", "mts_send"}));
}

// ---- Permissions ---------------------------------------------------------------------------------------------------

TEST(SelectionFailureWalk, PermissionOfOneInterface) {
  const outcomes all = walk_results([](RecordingPlatform& platform) {
    platform.ports[kFc1] = port_record();
    return static_cast<int32>(pm_cli_check_if_index_for_vsan_perm(platform.show_command(1, kFc1), kFc1));
  });
  EXPECT_EQ(all, (outcomes{{"", {{0, ""}}},
                           {"if_index_get_type", {{0, ""}}},
                           {"mts_drop", {{0, ""}}},
                           {"pm_get_port_info_range", {{-1, "error: getting port info range\n"}}},
                           {"pm_parse_get_port_info_range", {{0x40290000, "error: parsing port info range\n"}}},
                           {"vsan_get_port_trunking_membership", {{0, ""}}},
                           {"vsh_fc_intf_perm_check", {{0x40290000, ""}}}}));
}

// ---- Ranges --------------------------------------------------------------------------------------------------------

struct range_case {
  if_index_t low;
  if_index_t high;
};

const std::vector<range_case>& ranges_of_each_kind() {
  static const std::vector<range_case> kRanges = {
      {kFc1, kFc2},
      {ethernet(1, 1), ethernet(1, 4)},
      {sub_interface(kPort, 1), sub_interface(kPort, 4)},
      {port_channel(1, IF_TYPE_PORT_CHANNEL), port_channel(4, IF_TYPE_PORT_CHANNEL)},
      {port_channel(1), port_channel(4)},
      {numbered(IF_TYPE_FCIP, 1), numbered(IF_TYPE_FCIP, 4)},
      {numbered(IF_TYPE_SERVER, 1), numbered(IF_TYPE_SERVER, 4)},
  };
  return kRanges;
}

// The number of slots is 9 when it cannot be read, which is enough for these ports.
TEST(SelectionFailureWalk, RangesOfEachKind) {
  for (const range_case& range : ranges_of_each_kind()) {
    const outcomes counts = walk_results(
        [=](RecordingPlatform&) {
          uint32 count = 77;
          const uint32 result = pm_get_num_ports_in_if_index_range(range.low, range.high, &count);
          EXPECT_EQ(count != 0, result == 0);
          return static_cast<int32>(result);
        },
        PM_ERR_GENERAL);
    const outcomes positions = walk_results(
        [=](RecordingPlatform&) {
          if_index_t found = 0;
          const uint32 result = pm_get_if_index_in_range(range.low, range.high, &found, 1);
          EXPECT_EQ(found != 0, result == 0);
          return static_cast<int32>(result);
        },
        PM_ERR_GENERAL);
    for (const outcomes* const all : {&counts, &positions})
      for (const auto& [call, runs] : *all)
        for (const outcome& run : runs)
          EXPECT_EQ(run, (outcome{call.empty() || call == "get_platform_info" ? 0 : 0x4029000A, ""})) << call;
  }
}

// ---- Predicates ----------------------------------------------------------------------------------------------------

TEST(SelectionFailureWalk, PredicatesOfAnXgfcChannel) {
  const if_index_t channel = port_channel(3, IF_TYPE_PORT_CHANNEL, PC_SUBTYPE_XGFC);
  EXPECT_EQ(
      walk_results([=](RecordingPlatform&) { return pm_is_xgfc_interface(channel) ? 1 : 0; }),
      (outcomes{{"", {{1, ""}}}, {"if_index_get_type", {{0, ""}}}, {"if_index_port_channel_get_subtype", {{0, ""}}}}));
}

// ---- Rows ----------------------------------------------------------------------------------------------------------

// One row through its handler; each failing call gives the text, with the row's message in it, that stands here.
outcomes walk_row(uint32 command, if_index_t if_index) {
  return walk_results([=](RecordingPlatform& platform) {
    platform.ports[if_index] = port_record();
    platform.capabilities[if_index] = port_capabilities("");
    platform.addresses[if_index] = {ipv4_address(10, 1, 2, 3, 24)};
    platform.access_vlans[if_index] = 7;
    pm_fcot_res_t& transceiver = platform.transceivers[if_index];
    transceiver.is_fcot_supported = FCOT_SUPPORTED;
    transceiver.fcot_type = FCOT_TYPE_SFP;
    std::memcpy(transceiver.fi.fcot_info.VendorName, "ACME", 4);
    return static_cast<int32>(pm_cli_show_eth_port_config(platform.show_command(command, if_index)));
  });
}

// What the row of the run says whose only failing call is the nth of this name.
std::string text_of(const outcomes& all, const char* call, std::size_t nth = 0) {
  const auto runs = all.find(call);
  return runs == all.end() || nth >= runs->second.size() ? "(no such call)" : runs->second[nth].text;
}

TEST(RowFailureWalk, StatusRow) {
  const std::string start = "Eth1/2         --                 1        ";
  const std::string end = "11      1000    ACME       \n";
  const std::string without_type = "11      1000    --         \n";
  const outcomes all = walk_row(2, kRoutablePort);
  EXPECT_EQ(text_of(all, ""), start + "7         " + end);
  EXPECT_EQ(text_of(all, "im_ext_sbcr_init"),
            start + "im_ext_sbcr_init failed: 0xffffffff (<system error FFFFFFFF>)\n--        " + end);
  EXPECT_EQ(text_of(all, "im_get_ifindex_layermode_list"),
            start +
                "layermode query on if_idx 0x68001000 failed: \nstatus: 0xffffffff - <system error FFFFFFFF>\n"
                "if_info_status: 0x0\n--        " +
                end);
  EXPECT_EQ(text_of(all, "im_get_ifindex_access_vlan_list"),
            start +
                "im_get_ifindex_access_vlan_list failed for 0x68001000 \n"
                "status: 0xffffffff - <system error FFFFFFFF>\nif_info_status: 0x0\n--        " +
                end);
  EXPECT_EQ(text_of(all, "dlopen"), start + "7         " + without_type);
  EXPECT_EQ(text_of(all, "dlsym"),
            start + "7         11      1000    couldn't get crdcfg_get_port_cap()\n--         \n");
  EXPECT_EQ(text_of(all, "crdcfg_get_port_cap"),
            start + "7         11      1000    crdcfg_get_port_cap failed with <system error FFFFFFFF>\n--         \n");
  EXPECT_EQ(text_of(all, "pm_cmi_get_fcot_info"), start + "7         " + without_type);
  EXPECT_EQ(text_of(all, "pm_cmi_get_port_config"), "<transport failure 2 110>\n");
  EXPECT_EQ(text_of(all, "cmd_paraminfo_to_rxhandle"), "cmd_paraminfo_to_rxhandle failed \n");
}

TEST(RowFailureWalk, BriefRow) {
  const outcomes all = walk_row(5, kPort);
  EXPECT_EQ(text_of(all, ""), "Ethernet1/1              1          10.1.2.3          1000     1500  \n");
  EXPECT_EQ(text_of(all, "ipconf_get_if_inet_addrs"),
            "Ethernet1/1              1          --                1000     1500  \n");
}

TEST(RowFailureWalk, OtherRowsNeedNothingButTheRecord) {
  const std::map<uint32, std::string> kRows = {
      {4, "Ethernet1/1              --\n"},
      {22, "Eth1/1        disable                0\n"},
      {36, "Ethernet1/1                02aa.bbcc.ddee  0210.2030.4050\n"},
      {60, "Eth1/1     --                 1        2\n"},
      {104, "Eth1/1          134217728  (0x8000000 )\n"},
  };
  for (const auto& [command, row] : kRows) {
    const outcomes all = walk_row(command, kPort);
    EXPECT_EQ(text_of(all, ""), row);
    EXPECT_EQ(text_of(all, "pm_cmi_get_port_config"), "<transport failure 2 110>\n");
    EXPECT_EQ(text_of(all, "cmd_paraminfo_to_rxhandle"), "cmd_paraminfo_to_rxhandle failed \n");
  }
}

// ---- Headers -------------------------------------------------------------------------------------------------------

TEST(HeaderFailureWalk, OnlyTheHandleCanFail) {
  for (uint32 (*const handler)(paraminfo_t*) :
       {pm_cli_show_common_header, pm_cli_show_eth_header, pm_pcm_cli_show_header, pm_cli_show_loopback_header,
        pm_cli_show_mgmt_header}) {
    for (uint32 command = 0; command <= 105; ++command) {
      const outcomes all = walk_results([=](RecordingPlatform& platform) {
        intf_range_t ranges = interface_ranges({{kPort, kPort}});
        return static_cast<int32>(handler(interface_command(platform, command, 2, &ranges)));
      });
      ASSERT_EQ(all.size(), 2U);
      EXPECT_EQ(text_of(all, "cmd_paraminfo_to_rxhandle"), "cmd_paraminfo_to_rxhandle failed \n");
    }
  }
}

}  // namespace
}  // namespace pmcli_test
