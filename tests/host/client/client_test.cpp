// What the client functions make of the services' answers.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "client/library_functions.h"
#include "client/request.h"
#include "host/client/captured_output.h"
#include "host/client/client_fixture.h"
#include "messages/calls/diagnostic_marks.h"
#include "platform/interface_manager.h"
#include "platform/ip_config.h"
#include "platform/port_channel.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "support/heap_block.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

using testing::HasSubstr;

uint32 word_at(const void* block, std::size_t offset) {
  be32 word;
  std::memcpy(&word, static_cast<const char*>(block) + offset, sizeof word);
  return word;
}

TEST_F(Clients, PortConfigIsABlockOfRecords) {
  const if_index_range_t range{names_.first_port, names_.third_port};
  uint32 count = 99;
  pm_port_info_t* records = nullptr;

  ASSERT_EQ(pm_cmi_get_port_config(q_, 1, 1, &range, &count, &records, 60), 0);

  const heap_block<pm_port_info_t> block(records);
  ASSERT_EQ(count, 3u);
  EXPECT_EQ(records[0].if_index, names_.first_port);
  EXPECT_EQ(records[2].if_index, names_.third_port);
}

TEST_F(Clients, PortConfigPassesTheServicesErrorsOn) {
  const if_index_range_t nobody{names_.nobody, names_.nobody};
  const if_index_range_t reversed{names_.second_port, names_.first_port};
  pm_port_info_t unused;
  uint32 count = 99;
  pm_port_info_t* records = &unused;

  EXPECT_EQ(pm_cmi_get_port_config(q_, 1, 1, &nobody, &count, &records, 60), PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(records, nullptr);

  records = &unused;
  EXPECT_EQ(pm_cmi_get_port_config(q_, 1, 1, &reversed, &count, &records, 60), PM_ERR_INVALID_RANGE);
  EXPECT_EQ(records, nullptr);

  records = &unused;
  EXPECT_EQ(pm_cmi_get_port_config(q_, 1, 1, nullptr, &count, &records, 60), PM_ERR_GENERAL);
  EXPECT_EQ(records, nullptr);
}

TEST_F(Clients, PortConfigOnAClosedQueueIsATransportFailure) {
  const if_index_range_t range{names_.first_port, names_.first_port};
  uint32 count = 99;
  pm_port_info_t* records = nullptr;

  EXPECT_EQ(pm_cmi_get_port_config(-5, 1, 1, &range, &count, &records, 60), -1);
  EXPECT_EQ(mts_errno_get(-5), EBADF);
}

TEST_F(Clients, SilentServiceIsWaitedForAsLongAsTheCallerSays) {
  ASSERT_TRUE(transport_inject_fault("port-manager", {.what = injected_fault::kind::silent}));
  const if_index_range_t range{names_.first_port, names_.first_port};
  uint32 count = 99;
  pm_port_info_t* records = nullptr;

  EXPECT_EQ(pm_cmi_get_port_config(q_, 1, 1, &range, &count, &records, 1), -1);

  EXPECT_EQ(mts_errno_get(q_), ETIMEDOUT);
  transport_inject_fault("port-manager", {});
}

TEST_F(Clients, TransceiverLengthIsInBytes) {
  const if_index_range_t range{names_.first_port, names_.second_port};
  uint32 length = 0;
  pm_fcot_res_t* response = nullptr;

  ASSERT_EQ(pm_cmi_get_fcot_info(q_, 1, 1, &range, &length, &response, 60), 0);

  const heap_block<pm_fcot_res_t> block(response);
  EXPECT_EQ(length, 2u * 267u);
  EXPECT_EQ(response[0].is_fcot_supported, 1);
  EXPECT_EQ(response[1].is_fcot_supported, 2);
}

// An SFP's image and trailer take 140 bytes of the 257 that the longest image has.
TEST_F(Clients, RecordOfAShortTransceiverImageEndsInZeros) {
  const if_index_range_t range{names_.first_port, names_.first_port};
  uint32 length = 0;
  pm_fcot_res_t* response = nullptr;

  ASSERT_EQ(pm_cmi_get_fcot_info(q_, 1, 1, &range, &length, &response, 60), 0);

  const heap_block<pm_fcot_res_t> block(response);
  ASSERT_EQ(response->fcot_type, FCOT_TYPE_SFP);
  const auto* const image = reinterpret_cast<const uint8*>(&response->fi);
  EXPECT_EQ(std::vector<uint8>(image + 140, image + 257), std::vector<uint8>(117));
}

TEST_F(Clients, TrackedListIsPaddedTo256Entries) {
  void* list = nullptr;

  ASSERT_EQ(pm_cmi_get_tracked_port_if_list(q_, names_.first_port, &list, 60), 0);

  const heap_block<void> block(list);
  EXPECT_EQ(word_at(list, 8), 2u);
  EXPECT_EQ(word_at(list, 12), names_.third_port);
  EXPECT_EQ(word_at(list, 16), names_.routed_port);
  EXPECT_EQ(word_at(list, 20), 0u);
  EXPECT_EQ(word_at(list, 12 + 4 * 255), 0u) << "the last entry that a reader may look at";
}

TEST_F(Clients, ListsAreCutTo256Entries) {
  interface& port = *the_machine().find(names_.first_port);
  port.tracked.assign(300, names_.third_port);
  void* list = nullptr;

  ASSERT_EQ(pm_cmi_get_tracked_port_if_list(q_, names_.first_port, &list, 60), 0);

  const heap_block<void> block(list);
  EXPECT_EQ(word_at(list, 8), 256u);
  EXPECT_EQ(word_at(list, 12 + 4 * 255), names_.third_port);
}

TEST_F(Clients, ListingIsAMessageOfTheCaller) {
  mts_msg_ref_t message{};

  ASSERT_EQ(pm_get_if_index_listing(IF_TYPE_ETHERNET_L3, q_, &message, 60), 0);

  ASSERT_EQ(mts_payload_size(&message), 12u);
  EXPECT_EQ(word_at(mts_payload_get(&message), 0), 2u);
  EXPECT_EQ(word_at(mts_payload_get(&message), 4), names_.routed_port);
  EXPECT_EQ(word_at(mts_payload_get(&message), 8), names_.sub_port);
  EXPECT_EQ(mts_drop(q_, &message), 0);
}

TEST_F(Clients, StatisticsAreReadAndCleared) {
  show_eth_intf_resp_t stats{};
  ASSERT_EQ(pm_get_clear_eth_stats(q_, names_.first_port, names_.first_port, 1, &stats), 0);
  EXPECT_EQ(stats.if_data.ifi_opackets, 9123u);

  ASSERT_EQ(pm_get_clear_eth_stats(q_, names_.first_port, names_.first_port, 0, nullptr), 0);

  ASSERT_EQ(pm_get_clear_eth_stats(q_, names_.first_port, names_.first_port, 1, &stats), 0);
  EXPECT_EQ(stats.if_data.ifi_opackets, 0u);
}

TEST_F(Clients, ChannelStatisticsAreReadAndCleared) {
  interface& channel = *the_machine().find(names_.old_channel);
  channel.stats.out.packets = 5;
  show_eth_intf_resp_t stats{};
  ASSERT_EQ(pm_port_channel_get_clear_eth_stats(q_, names_.old_channel, 1, &stats), 0);
  EXPECT_EQ(stats.if_data.ifi_opackets, 5u);

  ASSERT_EQ(pm_port_channel_get_clear_eth_stats(q_, names_.old_channel, 0, nullptr), 0);

  EXPECT_EQ(channel.stats.out.unicast_packets, 0u);
  EXPECT_EQ(pm_port_channel_get_clear_eth_stats(q_, names_.first_port, 1, &stats), PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

TEST_F(Clients, InterfaceCountersReportSuccessAsNotZero) {
  pm_if_stat stats{};

  EXPECT_EQ(pm_get_interface_counters(names_.mgmt, q_, &stats), 1);
  EXPECT_EQ(stats.in_bps, 5001u);
  EXPECT_EQ(pm_get_interface_counters(names_.nobody, q_, &stats), 0);
}

TEST_F(Clients, AddressListHoldsTheEntriesThatItsHeadCounts) {
  ipconf_if_inet_addrs_t* list = nullptr;

  ASSERT_EQ(ipconf_get_if_inet_addrs(q_, names_.routed_port, &list), 0);

  const heap_block<ipconf_if_inet_addrs_t> block(list);
  EXPECT_EQ(list->status, 0u);
  EXPECT_EQ(list->num_inet_addrs, 2u);
  const auto* const entries = reinterpret_cast<const ipconf_if_inet_addr_info_t*>(list + 1);
  EXPECT_EQ(entries[0].prefix_len, 24u);
  EXPECT_EQ(entries[1].prefix_len, 64u);
  const uint8* const short_address = entries[0].inet_addr.a.ipv6_addr;
  EXPECT_EQ(std::vector<uint8>(short_address + 4, short_address + 16), std::vector<uint8>(12));
}

TEST_F(Clients, NoAddressesIsNoList) {
  ipconf_if_inet_addrs_t unused;
  ipconf_if_inet_addrs_t* list = &unused;

  EXPECT_EQ(ipconf_get_if_inet_addrs(q_, names_.third_port, &list), 0);
  EXPECT_EQ(list, nullptr);

  list = &unused;
  EXPECT_EQ(ipconf_get_if_inet_addrs(q_, names_.nobody, &list), PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(list, nullptr);
}

TEST_F(Clients, InterfaceManagerFillsEachRecord) {
  ASSERT_EQ(im_ext_sbcr_init(262, 0, "clish"), 0);
  std::vector<if_info_t> records(3);
  records[0].ifindex = names_.first_port;
  records[1].ifindex = names_.nobody;
  records[2].ifindex = names_.routed_port;

  ASSERT_EQ(im_get_ifindex_layermode_list(records.data(), 3), 0);

  EXPECT_EQ(records[0].status, 0);
  EXPECT_EQ(records[0].val.layer, 2u);
  EXPECT_EQ(records[1].status, PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(records[2].status, 0);
  EXPECT_EQ(records[2].val.layer, 3u);
}

TEST_F(Clients, VlanIdsStandInTheSecondHalfWord) {
  if_info_t record{};
  record.ifindex = names_.first_port;

  ASSERT_EQ(im_get_ifindex_native_vlan_list(&record, 1), 0);
  EXPECT_EQ(record.val.vlan.vlan_id, 13);
  ASSERT_EQ(im_get_ifindex_access_vlan_list(&record, 1), 0);
  EXPECT_EQ(record.val.vlan.vlan_id, 12);
  EXPECT_EQ(record.ifindex, names_.first_port);
}

TEST_F(Clients, NoInterfacesAreNoQuestion) {
  EXPECT_EQ(im_get_ifindex_layermode_list(nullptr, 0), 0);
  EXPECT_EQ(im_get_ifindex_layermode_list(nullptr, 1), PM_ERR_GENERAL);
}

TEST_F(Clients, MembersComeInTheFormOfTheChassis) {
  for (const uint32 chassis : {10u, 11u, 17u, 19u, 20u, 21u, 22u, 23u, 24u}) {
    void* response = nullptr;
    ASSERT_EQ(get_port_channel_members(chassis, names_.channel, &response), 0);
    const heap_block<void> block(response);
    EXPECT_EQ(word_at(response, 18), 2u) << chassis;
    EXPECT_EQ(word_at(response, 26), names_.first_port) << chassis;
    EXPECT_EQ(word_at(response, 33), names_.second_port) << chassis;
  }
  for (const uint32 chassis : {0u, 9u, 12u, 18u, 25u}) {
    void* response = nullptr;
    ASSERT_EQ(get_port_channel_members(chassis, names_.channel, &response), 0);
    const heap_block<void> block(response);
    EXPECT_EQ(word_at(response, 8), 2u) << chassis;
    EXPECT_EQ(word_at(response, 32), names_.first_port) << chassis;
    EXPECT_EQ(word_at(response, 40), names_.second_port) << chassis;
  }
}

TEST_F(Clients, MembersArePaddedTo256Entries) {
  void* response = nullptr;
  ASSERT_EQ(get_port_channel_members(0, names_.old_channel, &response), 0);
  const heap_block<void> block(response);

  EXPECT_EQ(std::string(static_cast<char*>(response), PORT_CHANNEL_MEMBERS_BYTES),
            std::string(PORT_CHANNEL_MEMBERS_BYTES, '\0'));
}

TEST_F(Clients, MembersFitTheirBlockHoweverManyThereAre) {
  for (uint32 port = 0; port < 255; ++port) {
    for (uint32 slot = 2; slot < 5; ++slot) {
      interface member;
      member.if_index = ethernet_index(IF_TYPE_ETHERNET_L3, slot, port);
      member.settings.channel = names_.channel;
      the_machine().interfaces.push_back(member);
    }
  }
  void* response = nullptr;

  ASSERT_EQ(get_port_channel_members(0, names_.channel, &response), 0);

  const heap_block<void> block(response);
  EXPECT_EQ(word_at(response, 8), 256u);
  EXPECT_NE(word_at(response, PORT_CHANNEL_MEMBERS_BYTES - 8), 0u);
}

TEST_F(Clients, MultiChassisStatusIsAText) {
  char status[MCEC_STATUS_BYTES] = {};
  EXPECT_EQ(mcecm_api_sdb_sh_int_po(names_.channel, status), 0);
  EXPECT_STREQ(status, "peer is alive");

  char none[MCEC_STATUS_BYTES] = {};
  EXPECT_EQ(mcecm_api_sdb_sh_int_po(names_.old_channel, none), 0);
  EXPECT_STREQ(none, "");
  EXPECT_EQ(mcecm_api_sdb_sh_int_po(names_.nobody, none), PM_ERR_NO_SUCH_INTERFACE);
}

TEST_F(Clients, CapabilityFillsNoMoreThanTheCallersBytes) {
  const if_index_range_t range{names_.first_port, names_.first_port};
  std::vector<uint8> whole(sizeof(crdcfg_port_cap_t)), part(8);

  ASSERT_EQ(get_port_capability(&range, 124, whole.data()), 0);
  ASSERT_EQ(get_port_capability(&range, 8, part.data()), 0);

  EXPECT_EQ(whole[4], 2 | 4 | 16);
  EXPECT_EQ(whole[28], 26);
  EXPECT_EQ(part[4], 2 | 4 | 16);
}

TEST_F(Clients, InterruptedWaitsAreTakenUpAgain) {
  ASSERT_TRUE(transport_inject_fault("port-manager", {.what = injected_fault::kind::interrupt, .number = 3}));
  pm_if_stat stats{};

  EXPECT_EQ(pm_get_interface_counters(names_.mgmt, q_, &stats), 1);

  EXPECT_EQ(stats.out_bps, 5002u);
}

TEST_F(Clients, StatisticsPrinterShowsRatesAndTotals) {
  statscl_portcl_stats_msg_t stats{};
  ASSERT_EQ(get_port_statistics(names_.routed_port, &stats), 0);

  pm_cli_ethernet_intf_stats_print(nullptr, &stats, 0);

  EXPECT_EQ(take_captured_output(),
            "    30 seconds input rate 40008 bits/sec, 5003 packets/sec\n"
            "    30 seconds output rate 40016 bits/sec, 5004 packets/sec\n"
            "    4294967319 packets input, 4294975489 bytes, 2002 input errors\n"
            "      4294967296 unicast, 20 multicast, 3 broadcast\n"
            "    9123 packets output, 3001 bytes, 3004 output errors\n"
            "      3100 unicast, 3020 multicast, 3003 broadcast\n");
}

TEST_F(Clients, StatisticsPrinterAddsLinesForDetail) {
  statscl_portcl_stats_msg_t stats{};
  ASSERT_EQ(get_port_snmp_statistics(names_.routed_port, &stats), 0);

  pm_cli_ethernet_intf_stats_print(nullptr, &stats, 1);

  const std::string printed = take_captured_output();
  EXPECT_THAT(printed, HasSubstr("      4002 runts, 4003 giants, 4001 CRC, 4005 overrun, 2003 dropped\n"));
  EXPECT_THAT(printed, HasSubstr("      4007 collisions, 4008 late collisions, 4006 underrun, 3005 dropped\n"));
}

TEST_F(Clients, LanesAreNotedWithTheDiagnosticsOfTheirModule) {
  for (const if_index_t it : {names_.first_port, names_.second_port})
    the_machine().find(it)->module_in_port->diagnostics.calibration = 1;
  the_machine().find(names_.first_port)->module_in_port->diagnostics.lanes.resize(4);
  mts_get_sfp_diag_info_t diagnostics{};
  sfp_diag_info_ddm_tlvs_t further{};

  ASSERT_EQ(pm_get_sfp_diag_info(q_, names_.first_port, &diagnostics, &further), 0);
  EXPECT_TRUE(has_noted_lanes(names_.first_port));
  EXPECT_FALSE(has_noted_lanes(names_.second_port));
  ASSERT_EQ(pm_get_sfp_diag_info(q_, names_.second_port, &diagnostics, &further), 0);
  EXPECT_FALSE(has_noted_lanes(names_.first_port));
  EXPECT_FALSE(has_noted_lanes(names_.second_port)) << "it has one";
}

TEST_F(Clients, SystemErrorsHaveTexts) {
  EXPECT_STREQ(syserr2str(0), "success");
  EXPECT_STREQ(syserr2str(-1), "message transport failed");
  EXPECT_STREQ(syserr2str(0x40290000), "general failure");
  EXPECT_STREQ(syserr2str(0x40290037), "no such interface");
  EXPECT_EQ(syserr2str(0x4029FFFF), nullptr);
}

}  // namespace
}  // namespace host
