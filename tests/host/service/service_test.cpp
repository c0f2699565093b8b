#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <string>

#include "host/switch/small_machine.h"
#include "messages/card_config_messages.h"
#include "messages/interface_manager_messages.h"
#include "messages/ip_messages.h"
#include "messages/port_channel_messages.h"
#include "messages/port_manager_messages.h"
#include "messages/statistics_messages.h"
#include "messages/vsan_messages.h"
#include "service/services.h"

namespace host {
namespace {

template <typename Record>
std::vector<std::byte> bytes_of(const Record& record) {
  std::vector<std::byte> copy(sizeof record);
  std::memcpy(copy.data(), &record, sizeof record);
  return copy;
}

// The `position`-th of the records that stand in an answer from `offset` on.
template <typename Record>
Record record_at(const reply& answer, std::size_t offset, std::size_t position = 0) {
  Record record{};
  const std::size_t start = offset + position * sizeof record;
  EXPECT_LE(start + sizeof record, answer.payload.size());
  if (start + sizeof record <= answer.payload.size())
    std::memcpy(&record, answer.payload.data() + start, sizeof record);
  return record;
}

// The answer's records, after a look at its head.
template <typename Record>
std::vector<Record> records(const reply& answer) {
  EXPECT_EQ(answer.what, reply::kind::answer);
  const auto head = record_at<reply_head>(answer, 0);
  EXPECT_EQ(head.status, 0);
  EXPECT_EQ(answer.payload.size(), sizeof head + head.count * sizeof(Record));
  std::vector<Record> found;
  for (std::size_t i = 0; i < head.count; ++i) found.push_back(record_at<Record>(answer, sizeof head, i));
  return found;
}

template <typename Record>
Record only_record(const reply& answer) {
  const auto found = records<Record>(answer);
  EXPECT_EQ(found.size(), 1u);
  return found.empty() ? Record{} : found.front();
}

syserr_t error_of(const reply& answer) {
  EXPECT_EQ(answer.what, reply::kind::answer);
  EXPECT_EQ(answer.payload.size(), sizeof(reply_head));
  return record_at<reply_head>(answer, 0).status;
}

std::vector<if_index_t> indexes(const std::vector<be32>& wire) { return {wire.begin(), wire.end()}; }

class Services : public testing::Test {
 protected:
  range_request range(if_index_t low, if_index_t high) const { return {low, high}; }
  range_request one(if_index_t if_index) const { return {if_index, if_index}; }
  interface_request about(if_index_t if_index) const { return {if_index}; }

  small_machine names_ = install_small_machine();
};

// Every question that can be asked.
struct service_question {
  const char* name;
  service_function serve;
  mts_opc_t opcode;
  std::size_t request_bytes;
};
constexpr service_question kQuestions[] = {
    {"port config", serve_port_manager, PM_OPC_PORT_CONFIG, 8},
    {"transceiver", serve_port_manager, PM_OPC_TRANSCEIVER, 8},
    {"listing", serve_port_manager, PM_OPC_LISTING, 4},
    {"tracked ports", serve_port_manager, PM_OPC_TRACKED_PORTS, 4},
    {"Ethernet statistics", serve_port_manager, PM_OPC_ETH_STATISTICS, 12},
    {"channel statistics", serve_port_manager, PM_OPC_CHANNEL_STATISTICS, 12},
    {"interface counters", serve_port_manager, PM_OPC_INTERFACE_COUNTERS, 4},
    {"clear of management", serve_port_manager, PM_OPC_CLEAR_MANAGEMENT, 4},
    {"clear of a port", serve_statistics, STATS_OPC_CLEAR_PORT, 4},
    {"clear of a loopback", serve_statistics, STATS_OPC_CLEAR_LOOPBACK, 4},
    {"clear of a channel", serve_statistics, STATS_OPC_CLEAR_CHANNEL, 4},
    {"next channel", serve_port_channel, PC_OPC_NEXT, 4},
    {"layer mode", serve_interface_manager, IM_OPC_LAYER_MODE, 4},
    {"native VLAN", serve_interface_manager, IM_OPC_NATIVE_VLAN, 4},
    {"access VLAN", serve_interface_manager, IM_OPC_ACCESS_VLAN, 4},
    {"port statistics", serve_statistics, STATS_OPC_PORT, 4},
    {"SNMP statistics", serve_statistics, STATS_OPC_PORT_SNMP, 4},
    {"loopback statistics", serve_statistics, STATS_OPC_LOOPBACK, 4},
    {"addresses", serve_ip, IP_OPC_ADDRESSES, 4},
    {"capability", serve_card_config, CRDCFG_OPC_PORT_CAPABILITY, 8},
    {"members", serve_port_channel, PC_OPC_MEMBERS, 4},
    {"multi-chassis status", serve_port_channel, PC_OPC_MULTI_CHASSIS_STATUS, 4},
    {"startup listing", serve_port_manager, PM_OPC_STARTUP_LISTING, 4},
    {"trunk membership", serve_vsan_manager, VSAN_OPC_TRUNK_MEMBERSHIP, 4},
};

TEST_F(Services, RejectRequestsOfEveryOtherSize) {
  for (const service_question& asked : kQuestions) {
    for (std::size_t size = 0; size < 32; ++size) {
      // Of exactly its size, so that a sanitizer sees a read past the end.
      const std::vector<std::byte> request(size);
      const reply answer = asked.serve(asked.opcode, request);
      const bool fits = size == asked.request_bytes;
      EXPECT_EQ(answer.what, fits ? reply::kind::answer : reply::kind::reject) << asked.name << ", " << size;
    }
  }
}

TEST_F(Services, RejectUnknownOpcodes) {
  for (const service& it : all_services())
    for (const mts_opc_t opcode : {0u, 99u, 333u, 0xFFFFFFFFu})
      EXPECT_EQ(it.serve(opcode, bytes_of(about(names_.first_port))).what, reply::kind::reject) << it.name;
}

TEST_F(Services, HaveNamesAndAccessPointsOfTheirOwn) {
  std::vector<std::string_view> service_names;
  std::vector<uint32> saps;
  for (const service& it : all_services()) {
    service_names.push_back(it.name);
    if (!it.is_on_line_cards) saps.push_back(it.sap);
  }
  EXPECT_EQ(service_names, (std::vector<std::string_view>{
                               "port-manager", "interface-manager", "statistics", "ip", "hardware", "card-config",
                               "port-channel", "spanning-tree", "vsan-manager", "vlan-manager", "private-vlans",
                               "satellite-manager", "interface-values", "tables", "session", "switch", "line-card"}));
  EXPECT_EQ(saps.front(), 179u);
  std::sort(saps.begin(), saps.end());
  EXPECT_EQ(std::adjacent_find(saps.begin(), saps.end()), saps.end());
}

TEST_F(Services, ReportAnUnknownInterface) {
  for (const service_question& asked : kQuestions) {
    const bool is_listing = asked.opcode == PM_OPC_LISTING || asked.opcode == PM_OPC_STARTUP_LISTING;
    const bool is_walk = asked.serve == serve_port_channel && asked.opcode == PC_OPC_NEXT;
    if (asked.serve == serve_interface_manager || is_listing || is_walk) continue;
    std::vector<std::byte> request(asked.request_bytes);
    const be32 nobody = names_.nobody;
    std::memcpy(request.data(), &nobody, 4);
    if (request.size() >= 8) std::memcpy(request.data() + 4, &nobody, 4);
    EXPECT_EQ(error_of(asked.serve(asked.opcode, request)), PM_ERR_NO_SUCH_INTERFACE) << asked.name;
  }
}

TEST_F(Services, RefuseAReversedRangeAndOneOverTwoKinds) {
  for (const service_question& asked : kQuestions) {
    if (asked.request_bytes < 8) continue;
    const auto ask = [&](range_request range) {
      std::vector<std::byte> request(asked.request_bytes);
      std::memcpy(request.data(), &range, sizeof range);
      return error_of(asked.serve(asked.opcode, request));
    };
    EXPECT_EQ(ask(range(names_.second_port, names_.first_port)), PM_ERR_INVALID_RANGE) << asked.name;
    EXPECT_EQ(ask(range(names_.first_port, names_.routed_port)), PM_ERR_INVALID_RANGE) << asked.name;
    EXPECT_EQ(ask(range(0, 0xFFFFFFFF)), PM_ERR_INVALID_RANGE) << asked.name;
  }
}

TEST_F(Services, PortRecordCarriesTheWholePort) {
  const auto port =
      only_record<pm_port_info_t>(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(names_.first_port))));

  EXPECT_EQ(port.if_index, names_.first_port);
  EXPECT_EQ(port.status, 0x40290003u);
  EXPECT_STREQ(port.port_name, "uplink to core");
  EXPECT_EQ(port.admin_port_mode, 0x00100000u);
  EXPECT_EQ(port.admin_port_speed, 100u);
  EXPECT_EQ(port.admin_port_flow_ctrl, 0x0A);
  EXPECT_EQ(port.admin_port_state, 1);
  EXPECT_EQ(port.admin_trunking_mode, 2) << "on";
  EXPECT_EQ(port.admin_beacon_mode, 1) << "on";
  EXPECT_EQ(port.admin_port_link_debounce, 300);
  EXPECT_EQ(port.admin_rxbufsize, 9216);
  EXPECT_EQ(port.port_vsan, 17u);
  EXPECT_EQ(port.oper_port_mode, 0x00100000u);
  EXPECT_EQ(port.oper_port_speed, 1000u);
  EXPECT_EQ(port.oper_port_flow_ctrl, 0x05);
  EXPECT_EQ(port.oper_port_state, 1);
  EXPECT_EQ(port.oper_state_reason, 9);
  EXPECT_EQ(port.oper_trunking_mode, 2);
  EXPECT_EQ(port.reset_cntr, 11u);
  EXPECT_EQ(port.is_part_of_bundle, 1u);
  EXPECT_EQ(port.bundle_if_index, names_.channel);
  EXPECT_EQ(port.link_status_last_change_sec, 1'600'000'000u);
  EXPECT_EQ(port.oper_port_duplex, 1);
  EXPECT_EQ(port.admin_port_duplex, 2);
  EXPECT_EQ(port.is_fcot_present, 1);
  EXPECT_EQ(port.admin_port_auto_negotiate, 2u) << "off: the speed is set";
  EXPECT_EQ(port.admin_port_rate_mode, 2);
  EXPECT_EQ(port.admin_port_delay, 12u) << "tens of microseconds";
  EXPECT_EQ(port.admin_port_bandwidth, 1'000'000u);
  EXPECT_EQ(port.admin_mdix_mode, 1);
  EXPECT_EQ(port.span_mode, 1u);
  EXPECT_EQ(port.admin_si_vlan_id, 0u);
  EXPECT_EQ(port.bound_ifindex, 0u);
}

TEST_F(Services, PortRecordCarriesBothMacAddresses) {
  const auto port =
      only_record<pm_port_info_t>(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(names_.first_port))));
  const uint8 burned_in[] = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};
  const uint8 router[] = {0x02, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE};

  EXPECT_EQ(std::memcmp(port.port_wwn + 2, burned_in, 6), 0);
  EXPECT_EQ(std::memcmp(port.router_mac, router, 6), 0);
}

TEST_F(Services, PortRecordCarriesStormControl) {
  const auto port =
      only_record<pm_port_info_t>(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(names_.first_port))));

  const pm_port_storm_control_t& unicast = port.admin_port_storm_control[PM_STORM_UNICAST];
  EXPECT_EQ(port.admin_port_storm_control[PM_STORM_BROADCAST].mode, 1);
  EXPECT_EQ(port.admin_port_storm_control[PM_STORM_MULTICAST].level, 40);
  EXPECT_EQ(unicast.mode, 3);
  EXPECT_EQ(unicast.level, 50);
  EXPECT_EQ(unicast.level_fraction, 7);
}

TEST_F(Services, PortRecordOfAnIdlePortSaysSo) {
  const auto port =
      only_record<pm_port_info_t>(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(names_.third_port))));

  EXPECT_EQ(port.oper_port_state, 2);
  EXPECT_EQ(port.is_part_of_bundle, 0u);
  EXPECT_EQ(port.is_fcot_present, 0);
  EXPECT_EQ(port.link_status_last_change_sec, 0u);
  EXPECT_EQ(port.admin_trunking_mode, 1) << "off";
  EXPECT_EQ(port.admin_beacon_mode, 2) << "off";
  EXPECT_EQ(port.admin_port_auto_negotiate, 1u) << "on: the speed is automatic";
  EXPECT_EQ(port.span_mode, 0u);
}

TEST_F(Services, DescriptionThatFillsItsFieldIsNotTerminated) {
  the_machine().find(names_.first_port)->settings.description = std::string(200, 'x');

  const auto port =
      only_record<pm_port_info_t>(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(names_.first_port))));

  EXPECT_EQ(std::string(port.port_name, sizeof port.port_name), std::string(81, 'x'));
  EXPECT_EQ(port.admin_port_mode, 0x00100000u);
}

TEST_F(Services, SubInterfaceRecordCarriesItsVlan) {
  const auto port = only_record<pm_port_info_t>(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(names_.sub_port))));

  EXPECT_EQ(port.admin_si_vlan_id, 70u);
}

TEST_F(Services, ChannelRecordCarriesItsLayer) {
  const auto port =
      only_record<pm_port_info_t>(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(names_.old_channel))));

  EXPECT_EQ(port.phy_port_layer, 1);
}

TEST_F(Services, RangeHasOneRecordForEachPort) {
  const auto ports = records<pm_port_info_t>(
      serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(range(names_.first_port, names_.nobody))));

  ASSERT_EQ(ports.size(), 3u);
  EXPECT_EQ(ports[0].if_index, names_.first_port);
  EXPECT_EQ(ports[1].if_index, names_.second_port);
  EXPECT_EQ(ports[2].if_index, names_.third_port);
}

TEST_F(Services, TransceiverRecordHoldsTheImageAndTheTrailer) {
  const auto sfp = only_record<pm_fcot_res_t>(serve_port_manager(PM_OPC_TRANSCEIVER, bytes_of(one(names_.first_port))));

  EXPECT_EQ(sfp.if_index, names_.first_port);
  EXPECT_EQ(sfp.status, 0u);
  EXPECT_EQ(sfp.is_fcot_supported, 1);
  EXPECT_EQ(sfp.fcot_type, 1);
  EXPECT_EQ(sfp.fi.fcot_info.xcvrId, 1);
  EXPECT_EQ(sfp.fi.fcot_info.ccex, 96);
  EXPECT_EQ(sfp.fi.fcot_info.vendorData[31], 128);
  EXPECT_EQ(sfp.fi.fcot_info.maxSpeed, 1000u) << "behind the image, whatever the image held there";
  EXPECT_EQ(sfp.fi.fcot_info.minSpeed, 100u);
}

TEST_F(Services, ModuleThatIsNotSupportedIsPresent) {
  const auto x2 = only_record<pm_fcot_res_t>(serve_port_manager(PM_OPC_TRANSCEIVER, bytes_of(one(names_.second_port))));

  EXPECT_EQ(x2.status, 0u);
  EXPECT_EQ(x2.is_fcot_supported, 2);
  EXPECT_EQ(x2.fcot_type, 2);
  EXPECT_EQ(x2.fi.x2_fcot_info.xcvr_type, 1);
  EXPECT_EQ(x2.fi.x2_fcot_info.max_speed, 10000u);
  EXPECT_EQ(x2.fi.x2_fcot_info.fcot_num, 1);
  EXPECT_EQ(x2.fi.x2_fcot_info.package_oui[0], 0) << "the image was read only in part";
}

TEST_F(Services, EmptyCageHasNoTransceiver) {
  const auto none =
      only_record<pm_fcot_res_t>(serve_port_manager(PM_OPC_TRANSCEIVER, bytes_of(one(names_.third_port))));

  EXPECT_EQ(none.is_fcot_supported, 0);
  EXPECT_EQ(none.status, 0x4029002Au);
}

TEST_F(Services, ListingIsOfOneKindOrOfAll) {
  const auto listing = [](if_index_type_t type) {
    const reply answer = serve_port_manager(PM_OPC_LISTING, bytes_of(listing_request{type}));
    const auto head = record_at<pm_if_index_listing_res_payload_t>(answer, 0);
    EXPECT_EQ(answer.payload.size(), 4 + 4 * head.num_if_index);
    std::vector<if_index_t> listed;
    for (std::size_t i = 0; i < head.num_if_index; ++i) listed.push_back(record_at<be32>(answer, 4, i));
    return listed;
  };

  EXPECT_EQ(listing(IF_TYPE_ETHERNET),
            (std::vector<if_index_t>{names_.first_port, names_.second_port, names_.third_port}));
  EXPECT_EQ(listing(IF_TYPE_ETHERNET_L3), (std::vector<if_index_t>{names_.routed_port, names_.sub_port}));
  EXPECT_EQ(listing(IF_TYPE_NONE).size(), 9u);
  EXPECT_EQ(listing(IF_TYPE_FC), std::vector<if_index_t>{});
}

TEST_F(Services, ListingOfATypeBeyondAByteIsEmpty) {
  const reply answer = serve_port_manager(PM_OPC_LISTING, bytes_of(listing_request{0x100 + IF_TYPE_ETHERNET}));

  EXPECT_EQ(record_at<be32>(answer, 0), 0u);
  EXPECT_EQ(answer.payload.size(), 4u);
}

TEST_F(Services, StartupListingHoldsWhatWasSavedWhateverRuns) {
  const auto startup = [](if_index_type_t type) {
    const reply answer = serve_port_manager(PM_OPC_STARTUP_LISTING, bytes_of(listing_request{type}));
    std::vector<if_index_t> listed;
    for (std::size_t at = 4; at < answer.payload.size(); at += 4) listed.push_back(record_at<be32>(answer, at));
    EXPECT_EQ(record_at<be32>(answer, 0), listed.size());
    return listed;
  };
  interface added;
  added.if_index = names_.nobody;
  the_machine().add(added);
  the_machine().remove(names_.second_port);

  EXPECT_EQ(startup(IF_TYPE_ETHERNET),
            (std::vector<if_index_t>{names_.first_port, names_.second_port, names_.third_port}));
  EXPECT_EQ(startup(IF_TYPE_NONE).size(), 9u);
}

TEST_F(Services, InBandInterfaceIsListedAndHasNoRecord) {
  interface in_band;
  in_band.if_index = if_index_inband_get_active_sup_priority_hi();
  the_machine().add(in_band);

  const reply listing = serve_port_manager(PM_OPC_LISTING, bytes_of(listing_request{IF_TYPE_INBAND}));

  EXPECT_EQ(record_at<be32>(listing, 0), 1u);
  EXPECT_EQ(record_at<be32>(listing, 4), in_band.if_index);
  EXPECT_EQ(error_of(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(in_band.if_index)))),
            PM_ERR_NO_SUCH_INTERFACE);
}

TEST_F(Services, TrunkMembershipIsASetOfVsans) {
  const auto carried =
      only_record<vsan_bitset_t>(serve_vsan_manager(VSAN_OPC_TRUNK_MEMBERSHIP, bytes_of(about(names_.old_channel))));

  vsan_bitset_t expected{};
  expected.size = 512;
  expected.bits[0] = 0x40;    // 1
  expected.bits[1] = 0x01;    // 15
  expected.bits[511] = 0x02;  // 4094
  EXPECT_EQ(std::memcmp(&carried, &expected, sizeof expected), 0);
}

TEST_F(Services, TrunkMembershipIsOfKindsWithVsansOnly) {
  for (const if_index_t without : {names_.first_port, names_.channel, names_.mgmt, names_.loopback})
    EXPECT_EQ(error_of(serve_vsan_manager(VSAN_OPC_TRUNK_MEMBERSHIP, bytes_of(about(without)))),
              PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

TEST_F(Services, PortRecordOfATrunkOfVsansSaysSo) {
  const auto trunking = [this](uint32 oper_mode) {
    the_machine().find(names_.old_channel)->oper_mode = oper_mode;
    const auto port =
        only_record<pm_port_info_t>(serve_port_manager(PM_OPC_PORT_CONFIG, bytes_of(one(names_.old_channel))));
    return int{port.oper_trunking_mode};
  };
  EXPECT_EQ(trunking(0x8), 2) << "TE";
  EXPECT_EQ(trunking(0x4), 1) << "E";
}

TEST_F(Services, TrackedPortsAreListed) {
  const auto tracked = records<be32>(serve_port_manager(PM_OPC_TRACKED_PORTS, bytes_of(about(names_.first_port))));
  EXPECT_EQ(indexes(tracked), (std::vector<if_index_t>{names_.third_port, names_.routed_port}));

  EXPECT_TRUE(records<be32>(serve_port_manager(PM_OPC_TRACKED_PORTS, bytes_of(about(names_.third_port)))).empty());
}

TEST_F(Services, EthernetStatisticsCarryRatesAndTotals) {
  const auto stats = only_record<show_eth_intf_resp_t>(
      serve_port_manager(PM_OPC_ETH_STATISTICS, bytes_of(eth_statistics_request{one(names_.first_port), 1})));

  EXPECT_EQ(stats.if_mtu, 9216u);
  EXPECT_EQ(stats.macaddr[5], 0x55);
  EXPECT_EQ(stats.rate.index, 3u);
  EXPECT_EQ(stats.rate.stats[0].in_bytes, 6000u);
  EXPECT_EQ(stats.rate.stats[7].out_bytes, 6107u);
  EXPECT_EQ(stats.rate.stats[4].in_frames, 6204u);
  EXPECT_EQ(stats.rate.stats[5].out_frames, 6305u);
  EXPECT_EQ(stats.if_data.ifi_ibytes, 0x100002001u);
  EXPECT_EQ(stats.if_data.ifi_obytes, 3001u);
  EXPECT_EQ(stats.if_data.ifi_ipackets, UINT32_MAX) << "the most that 32 bits hold of 0x100000017";
  EXPECT_EQ(stats.if_data.ifi_opackets, 9123u);
  EXPECT_EQ(stats.if_data.ifi_imcasts, 20u);
  EXPECT_EQ(stats.if_data.ifi_omcasts, 3020u);
  EXPECT_EQ(stats.if_data.ifi_ibcasts, 3u);
  EXPECT_EQ(stats.if_data.ifi_obcasts, 3003u);
  EXPECT_EQ(stats.if_data.ifi_ierrors, 2002u);
  EXPECT_EQ(stats.if_data.ifi_oerrors, 3004u);
  EXPECT_EQ(stats.if_data.ifi_collisions, 4007u);
  EXPECT_EQ(stats.if_data.ifi_iqdrops, 2003u);
}

TEST_F(Services, ClearingZeroesTheCountersOfTheRange) {
  const auto now = static_cast<uint32>(std::time(nullptr));

  const auto none = records<show_eth_intf_resp_t>(serve_port_manager(
      PM_OPC_ETH_STATISTICS, bytes_of(eth_statistics_request{range(names_.first_port, names_.third_port), 0})));

  EXPECT_TRUE(none.empty());
  const statistics& stats = the_machine().find(names_.first_port)->stats;
  EXPECT_EQ(stats.in.bytes, 0u);
  EXPECT_EQ(stats.out.unicast_packets, 0u);
  EXPECT_EQ(stats.errors.crc, 0u);
  EXPECT_EQ(stats.rate_ring->samples[0].in_bytes, 0u);
  EXPECT_EQ(stats.in_bytes_per_second, 5001u) << "traffic goes on";
  EXPECT_GE(stats.last_clear_sec, now);
  EXPECT_GE(the_machine().find(names_.third_port)->stats.last_clear_sec, now);
  EXPECT_EQ(the_machine().find(names_.routed_port)->stats.last_clear_sec, 1'700'000'000u) << "outside the range";
}

TEST_F(Services, ChannelStatisticsAreForChannelsOnly) {
  const auto ask = [&](if_index_t if_index) {
    return serve_port_manager(PM_OPC_CHANNEL_STATISTICS, bytes_of(eth_statistics_request{one(if_index), 1}));
  };

  EXPECT_EQ(only_record<show_eth_intf_resp_t>(ask(names_.old_channel)).if_mtu, 1500u);
  EXPECT_EQ(only_record<show_eth_intf_resp_t>(ask(names_.channel)).if_mtu, 1500u);
  EXPECT_EQ(error_of(ask(names_.first_port)), PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

TEST_F(Services, InterfaceCountersCarryRates) {
  const auto stats =
      only_record<pm_if_stat>(serve_port_manager(PM_OPC_INTERFACE_COUNTERS, bytes_of(about(names_.mgmt))));

  EXPECT_EQ(stats.in_pkts, 0x100000017u);
  EXPECT_EQ(stats.in_bytes, 0x100002001u);
  EXPECT_EQ(stats.in_bps, 5001u);
  EXPECT_EQ(stats.in_pkts_ucast, 0x100000000u);
  EXPECT_EQ(stats.in_pkts_mcast, 20u);
  EXPECT_EQ(stats.in_pkts_bcast, 3u);
  EXPECT_EQ(stats.out_pkts, 9123u);
  EXPECT_EQ(stats.out_bytes, 3001u);
  EXPECT_EQ(stats.out_bps, 5002u);
  EXPECT_EQ(stats.out_pkts_ucast, 3100u);
  EXPECT_EQ(stats.out_pkts_mcast, 3020u);
  EXPECT_EQ(stats.out_pkts_bcast, 3003u);
  EXPECT_EQ(stats.in_pps, 5003u);
  EXPECT_EQ(stats.out_pps, 5004u);
}

TEST_F(Services, PortStatisticsCarryTrafficAndRates) {
  const auto stats =
      only_record<statscl_portcl_stats_msg_t>(serve_statistics(STATS_OPC_PORT, bytes_of(about(names_.first_port))));
  const statscl_portcl_mac_pktflow_stats_t& flow = stats.mac.pktflow;

  EXPECT_EQ(stats.ifidx, names_.first_port);
  EXPECT_EQ(stats.last_clear, 1'700'000'000u);
  EXPECT_EQ(stats.sts, 0u);
  EXPECT_EQ(flow.ingress_pkts, 0x100000017u);
  EXPECT_EQ(flow.unicast_pkts, 0x100000000u);
  EXPECT_EQ(flow.multicast_pkts, 20u);
  EXPECT_EQ(flow.broadcast_pkts, 3u);
  EXPECT_EQ(flow.bytes_pkts, 0x100002001u);
  EXPECT_EQ(flow.byte_rate_rx, 5001u);
  EXPECT_EQ(flow.pkt_rate_rx, 5003u);
  EXPECT_EQ(flow.egress_pkts, 9123u);
  EXPECT_EQ(flow.unicast_pkts_tx, 3100u);
  EXPECT_EQ(flow.multicast_pkts_tx, 3020u);
  EXPECT_EQ(flow.broadcast_pkts_tx, 3003u);
  EXPECT_EQ(flow.bytes_tx, 3001u);
  EXPECT_EQ(flow.byte_rate_tx, 5002u);
  EXPECT_EQ(flow.pkt_rate_tx, 5004u);
  EXPECT_EQ(flow.trunk_rx, 0x100000017u) << "a trunk carries tagged frames";
  EXPECT_EQ(flow.trunk_tx, 9123u);
  EXPECT_EQ(stats.mac.ctrl.rx_pause, 4012u);
  EXPECT_EQ(stats.mac.ctrl.tx_pause, 4013u);
  EXPECT_EQ(stats.mac.ctrl.reset, 11u);
}

TEST_F(Services, PortStatisticsCarryErrors) {
  const auto stats =
      only_record<statscl_portcl_stats_msg_t>(serve_statistics(STATS_OPC_PORT, bytes_of(about(names_.first_port))));
  const statscl_portcl_mac_error_stats_t& errors = stats.mac.errors;

  EXPECT_EQ(errors.crc, 4001u);
  EXPECT_EQ(errors.runt, 4002u);
  EXPECT_EQ(errors.giants_rx, 4003u);
  EXPECT_EQ(errors.jabber, 4004u);
  EXPECT_EQ(errors.overrun, 4005u);
  EXPECT_EQ(errors.underrun, 4006u);
  EXPECT_EQ(errors.collision, 4007u);
  EXPECT_EQ(errors.late_collision, 4008u);
  EXPECT_EQ(errors.deferred, 4009u);
  EXPECT_EQ(errors.deffered, 0u) << "another counter";
  EXPECT_EQ(errors.lost_carrier, 4010u);
  EXPECT_EQ(errors.no_carrier, 4011u);
  EXPECT_EQ(errors.input_errors, 2002u);
  EXPECT_EQ(errors.output_errors, 3004u);
  EXPECT_EQ(errors.in_discard, 2003u);
  EXPECT_EQ(errors.tx_dropped, 3005u);
}

TEST_F(Services, PortStatisticsCarryEveryCounterOfTheModel) {
  statistics& stats = the_machine().find(names_.first_port)->stats;
  stats.in.packets_by_size = {101, 102, 103, 104, 105, 106, 107, 108};
  stats.out.packets_by_size = {201, 202, 203, 204, 205, 206, 207, 208};
  stats.errors = {.short_frames = 301,
                  .no_buffer = 302,
                  .ecc = 303,
                  .ignored = 304,
                  .bad_ethertype = 305,
                  .bad_protocol = 306,
                  .bad_encapsulation = 307,
                  .dropped_while_down = 308,
                  .dribble = 309,
                  .watchdog = 310,
                  .symbol = 311,
                  .storm_suppressed = 312,
                  .crc_sent = 313,
                  .single_collisions = 314,
                  .multiple_collisions = 315,
                  .excessive_collisions = 316,
                  .deferred_long = 317,
                  .babble = 318,
                  .sqe_test = 319,
                  .bpdu_lost = 320,
                  .cos0_lost = 400,
                  .cos1_lost = 401,
                  .cos2_lost = 402,
                  .cos3_lost = 403,
                  .cos4_lost = 404,
                  .cos5_lost = 405,
                  .cos6_lost = 406,
                  .cos7_lost = 407};

  const auto record =
      only_record<statscl_portcl_stats_msg_t>(serve_statistics(STATS_OPC_PORT, bytes_of(about(names_.first_port))));

  const statscl_portcl_mac_pktflow_stats_t& flow = record.mac.pktflow;
  EXPECT_EQ(flow.b64_rx, 101u);
  EXPECT_EQ(flow.b65_127_rx, 102u);
  EXPECT_EQ(flow.b128_255_rx, 103u);
  EXPECT_EQ(flow.b256_511_rx, 104u);
  EXPECT_EQ(flow.b512_1023_rx, 105u);
  EXPECT_EQ(flow.b1024_1518_rx, 106u);
  EXPECT_EQ(flow.b1519_1548_rx, 107u);
  EXPECT_EQ(flow.jumbo_pkts, 108u);
  EXPECT_EQ(flow.b64_tx, 201u);
  EXPECT_EQ(flow.b65_127_tx, 202u);
  EXPECT_EQ(flow.b128_255_tx, 203u);
  EXPECT_EQ(flow.b256_511_tx, 204u);
  EXPECT_EQ(flow.b512_1023_tx, 205u);
  EXPECT_EQ(flow.b1024_1518_tx, 206u);
  EXPECT_EQ(flow.b1519_1548_tx, 207u);
  EXPECT_EQ(flow.jumbo_pkts_tx, 208u);
  EXPECT_EQ(flow.storm_supression, 312u);
  const statscl_portcl_mac_error_stats_t& errors = record.mac.errors;
  EXPECT_EQ(errors.shortframe, 301u);
  EXPECT_EQ(errors.no_buffer, 302u);
  EXPECT_EQ(errors.ecc, 303u);
  EXPECT_EQ(errors.ignored, 304u);
  EXPECT_EQ(errors.bad_etype_drop, 305u);
  EXPECT_EQ(errors.bad_proto_drop, 306u);
  EXPECT_EQ(errors.bad_encap, 307u);
  EXPECT_EQ(errors.if_down_drop, 308u);
  EXPECT_EQ(errors.input_dribble, 309u);
  EXPECT_EQ(errors.watchdog, 310u);
  EXPECT_EQ(errors.symbol_err, 311u);
  EXPECT_EQ(errors.crc_tx, 313u);
  EXPECT_EQ(errors.single_collision, 314u);
  EXPECT_EQ(errors.multi_collision, 315u);
  EXPECT_EQ(errors.excessive_collision, 316u);
  EXPECT_EQ(errors.deffered, 317u);
  EXPECT_EQ(errors.deferred, 0u);
  EXPECT_EQ(errors.babble, 318u);
  EXPECT_EQ(errors.bpdu_outlost, 320u);
  EXPECT_EQ(errors.cos0_outlost, 400u);
  EXPECT_EQ(errors.cos1_outlost, 401u);
  EXPECT_EQ(errors.cos2_outlost, 402u);
  EXPECT_EQ(errors.cos3_outlost, 403u);
  EXPECT_EQ(errors.cos4_outlost, 404u);
  EXPECT_EQ(errors.cos5_outlost, 405u);
  EXPECT_EQ(errors.cos6_outlost, 406u);
  EXPECT_EQ(errors.cos7_outlost, 407u);
  EXPECT_EQ(record.mac.ctrl.sqetest, 319u);

  const auto totals =
      only_record<show_eth_intf_resp_t>(
          serve_port_manager(PM_OPC_ETH_STATISTICS, bytes_of(eth_statistics_request{one(names_.first_port), 1})))
          .if_data;
  EXPECT_EQ(totals.ifi_badetype, 305u);
  EXPECT_EQ(totals.ifi_noproto, 306u);
  EXPECT_EQ(totals.ifi_idowndrops, 308u);
}

TEST_F(Services, InterfaceCountersCarryTheLastMinutes) {
  statistics& stats = the_machine().find(names_.mgmt)->stats;
  stats.rate_ring->samples = {{{800, 8000, 80, 8},
                               {900, 9000, 90, 9},
                               {100, 0, 0, 0},
                               {200, 1000, 10, 1},
                               {350, 2500, 25, 2},
                               {400, 3000, 30, 3},
                               {500, 4000, 40, 4},
                               {700, 6000, 60, 6}}};
  stats.rate_ring->next = 2;
  stats.counted_sec = 77;

  const auto record =
      only_record<pm_if_stat>(serve_port_manager(PM_OPC_INTERFACE_COUNTERS, bytes_of(about(names_.mgmt))));

  EXPECT_EQ(record.interval, 77u);
  EXPECT_EQ(record.interval_in_bytes, 100u) << "slot 1 less slot 0";
  EXPECT_EQ(record.interval_out_bytes, 1000u);
  EXPECT_EQ(record.interval_in_pkts, 10u);
  EXPECT_EQ(record.interval_out_pkts, 1u);
  EXPECT_EQ(record.interval_in_bytes_prev[0], 100u);
  EXPECT_EQ(record.interval_in_bytes_prev[1], 100u) << "slot 0 less slot 7";
  EXPECT_EQ(record.interval_in_bytes_prev[2], 200u) << "slot 7 less slot 6";
  EXPECT_EQ(record.interval_in_bytes_prev[6], 100u) << "slot 3 less slot 2, the oldest";
  EXPECT_EQ(record.interval_secs_prev[6], 60);
  EXPECT_EQ(record.interval_in_bytes_prev[7], 0u) << "there are no more samples";
  EXPECT_EQ(record.interval_secs_prev[7], 0);
}

TEST_F(Services, LookedUpPacketsCountForTheLayerOfThePort) {
  const auto stats_of = [](if_index_t if_index) {
    return only_record<statscl_portcl_stats_msg_t>(
        serve_statistics(STATS_OPC_PORT_SNMP, bytes_of(interface_request{if_index})));
  };

  EXPECT_EQ(stats_of(names_.first_port).lu.l2.ucast, 0x100000000u);
  EXPECT_EQ(stats_of(names_.first_port).lu.l3.ucast, 0u);
  EXPECT_EQ(stats_of(names_.routed_port).lu.l2.mcast, 0u);
  EXPECT_EQ(stats_of(names_.routed_port).lu.l3.mcast, 20u);
}

TEST_F(Services, LoopbackStatisticsAreForLoopbacksOnly) {
  const auto stats = only_record<ip_if_stats>(serve_statistics(STATS_OPC_LOOPBACK, bytes_of(about(names_.loopback))));

  EXPECT_EQ(stats.in_pkts, 0x100000017u);
  EXPECT_EQ(stats.in_bytes, 0x100002001u);
  EXPECT_EQ(stats.in_errors, 2002u);
  EXPECT_EQ(stats.in_frames, 4001u);
  EXPECT_EQ(stats.in_overrun, 4005u);
  EXPECT_EQ(stats.out_pkts, 9123u);
  EXPECT_EQ(stats.out_bytes, 3001u);
  EXPECT_EQ(stats.out_errors, 3004u);
  EXPECT_EQ(stats.out_underruns, 4006u);
  EXPECT_EQ(stats.out_collisions, 4007u);
  EXPECT_EQ(stats.out_carrier_errors, 8021u);
  EXPECT_EQ(stats.in_pkts_discard, 2003u);
  EXPECT_EQ(stats.out_pkts_discard, 3005u);

  the_machine().find(names_.loopback)->stats.errors = {
      .bad_protocol = 501, .compressed = 502, .receive_fifo = 503, .send_fifo = 504};
  const auto rarer = only_record<ip_if_stats>(serve_statistics(STATS_OPC_LOOPBACK, bytes_of(about(names_.loopback))));
  EXPECT_EQ(rarer.unknown_proto_pkts, 501u);
  EXPECT_EQ(rarer.in_compressed, 502u);
  EXPECT_EQ(rarer.in_fifo, 503u);
  EXPECT_EQ(rarer.out_fifo, 504u);
  EXPECT_EQ(error_of(serve_statistics(STATS_OPC_LOOPBACK, bytes_of(about(names_.first_port)))),
            PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

TEST_F(Services, InterfaceManagerKnowsLayersAndVlans) {
  const auto ask = [&](mts_opc_t opcode, if_index_t if_index) {
    return only_record<if_value>(serve_interface_manager(opcode, bytes_of(about(if_index))));
  };

  EXPECT_EQ(ask(IM_OPC_LAYER_MODE, names_.first_port).value, 2u);
  EXPECT_EQ(ask(IM_OPC_LAYER_MODE, names_.routed_port).value, 3u);
  EXPECT_EQ(ask(IM_OPC_NATIVE_VLAN, names_.first_port).value, 13u);
  EXPECT_EQ(ask(IM_OPC_ACCESS_VLAN, names_.first_port).value, 12u);
  EXPECT_EQ(ask(IM_OPC_LAYER_MODE, names_.first_port).status, 0);
  EXPECT_EQ(ask(IM_OPC_LAYER_MODE, names_.nobody).status, PM_ERR_NO_SUCH_INTERFACE);
}

TEST_F(Services, AddressesAreInNetworkOrder) {
  const auto addresses =
      records<ipconf_if_inet_addr_info_t>(serve_ip(IP_OPC_ADDRESSES, bytes_of(about(names_.routed_port))));

  ASSERT_EQ(addresses.size(), 2u);
  EXPECT_EQ(addresses[0].if_index, names_.routed_port);
  EXPECT_EQ(addresses[0].inet_addr.addr_type, 1u);
  EXPECT_EQ(addresses[0].inet_addr.a.ipv4_addr[0], 192);
  EXPECT_EQ(addresses[0].inet_addr.a.ipv4_addr[3], 1);
  EXPECT_EQ(addresses[0].prefix_len, 24u);
  EXPECT_EQ(addresses[1].inet_addr.addr_type, 2u);
  EXPECT_EQ(addresses[1].inet_addr.a.ipv6_addr[15], 1);
  EXPECT_EQ(addresses[1].prefix_len, 64u);
}

TEST_F(Services, CapabilityRecordHasAByteForEachCapability) {
  const auto can =
      only_record<crdcfg_port_cap_t>(serve_card_config(CRDCFG_OPC_PORT_CAPABILITY, bytes_of(one(names_.first_port))));

  EXPECT_EQ(can.speed, 2 | 4 | 16);
  EXPECT_EQ(can.duplex, 1 | 2);
  EXPECT_EQ(can.rx_flowcontrol, 1 | 2);
  EXPECT_EQ(can.tx_flowcontrol, 4);
  EXPECT_EQ(can.rate_mode, 2);
  EXPECT_EQ(can.trunk_encap, 1);
  EXPECT_EQ(can.channel, 1);
  EXPECT_EQ(can.suppression, 1);
  EXPECT_EQ(can.cos_rewrite, 1);
  EXPECT_EQ(can.tos_rewrite, 1);
  EXPECT_EQ(can.span, 1);
  EXPECT_EQ(can.udld, 0);
  EXPECT_EQ(can.link_debounce, 1);
  EXPECT_EQ(can.fcot_capable, 1);
  EXPECT_EQ(can.mdix, 0);
  EXPECT_EQ(can.rx_qos_priority, 21);
  EXPECT_EQ(can.rx_qos_queue, 22);
  EXPECT_EQ(can.rx_qos_threshold, 23);
  EXPECT_EQ(can.tx_qos_priority, 24);
  EXPECT_EQ(can.tx_qos_queue, 25);
  EXPECT_EQ(can.tx_qos_threshold, 26);
  EXPECT_STREQ(can.model, "MODEL-48X");
  EXPECT_EQ(std::string(can.type, sizeof can.type), "10/100/1000BASE-T, a text of mor");
  EXPECT_EQ(can.reserved4[0], 0);
}

TEST_F(Services, ChannelsKnowTheirMembers) {
  const auto members = records<be32>(serve_port_channel(PC_OPC_MEMBERS, bytes_of(about(names_.channel))));
  EXPECT_EQ(indexes(members), (std::vector<if_index_t>{names_.first_port, names_.second_port}));

  EXPECT_TRUE(records<be32>(serve_port_channel(PC_OPC_MEMBERS, bytes_of(about(names_.old_channel)))).empty());
}

TEST_F(Services, MultiChassisStatusIsTerminated) {
  const auto ask = [&] {
    return only_record<multi_chassis_status>(
        serve_port_channel(PC_OPC_MULTI_CHASSIS_STATUS, bytes_of(about(names_.channel))));
  };
  EXPECT_STREQ(ask().text, "peer is alive");

  the_machine().find(names_.channel)->multi_chassis_status = std::string(1000, 'm');
  EXPECT_EQ(ask().text, std::string(255, 'm'));
}

}  // namespace
}  // namespace host
