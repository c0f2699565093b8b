// Clearing counters through the client functions.
#include "platform/clear_counters.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "client/library_functions.h"
#include "host/client/client_fixture.h"
#include "host/switch/loopback_device.h"
#include "host/switch/stopped_clock.h"
#include "messages/calls/command_account.h"
#include "messages/calls/device_names.h"
#include "messages/port_manager_messages.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/syserr.h"
#include "support/heap_block.h"
#include "switch/if_index_layout.h"
#include "switch/source.h"

namespace host {
namespace {

// A status list as callers walk it.
struct status_list {
  heap_block<uint8> block;

  std::size_t count() const { return block == nullptr ? 0 : *block; }
  pm_clear_status_t operator[](std::size_t i) const {
    pm_clear_status_t entry;
    std::memcpy(&entry, block.get() + 1 + i * sizeof entry, sizeof entry);
    return entry;
  }
};

class ClearCounters : public Clients {
 protected:
  int32 clear(const std::vector<if_index_t>& if_indexes) {
    uint8* list = reinterpret_cast<uint8*>(std::uintptr_t{16});
    const int32 result =
        pm_clear_port_counters(q_, static_cast<uint32>(if_indexes.size()), if_indexes.data(), 1, &list, 1);
    list_.block.reset(list);
    return result;
  }

  static uint64 packets_of(if_index_t if_index) { return the_machine().find(if_index)->stats.out.packets.value_or(0); }
  static uint32 cleared_at(if_index_t if_index) { return the_machine().find(if_index)->stats.last_clear_sec; }

  stopped_clock clock_{1'750'000'000};
  status_list list_;
};

TEST_F(ClearCounters, EveryInterfaceHasItsStatus) {
  ASSERT_EQ(clear({names_.first_port, names_.nobody, names_.loopback}), 0);

  ASSERT_EQ(list_.count(), 3u);
  EXPECT_EQ(list_[0].if_index, names_.first_port);
  EXPECT_EQ(list_[0].status, 0);
  EXPECT_EQ(list_[1].if_index, names_.nobody);
  EXPECT_EQ(list_[1].status, PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(list_[2].status, 0);
  EXPECT_EQ(packets_of(names_.first_port), 0u);
  EXPECT_EQ(cleared_at(names_.first_port), 1'750'000'000u);
  EXPECT_EQ(packets_of(names_.loopback), 0u);
  EXPECT_EQ(packets_of(names_.routed_port), 9123u) << "was not asked for";
  EXPECT_EQ(cleared_at(names_.routed_port), 1'700'000'000u);
}

TEST_F(ClearCounters, TheInBandInterfaceIsNotThePortManagers) {
  const if_index_t inband = if_index_inband_get_active_sup_priority_hi();
  interface added;
  added.if_index = inband;
  the_machine().add(added);

  ASSERT_EQ(clear({inband}), 0);

  ASSERT_EQ(list_.count(), 1u);
  EXPECT_EQ(list_[0].status, PM_ERR_NOT_ALLOWED_ON_INTERFACE);
}

TEST_F(ClearCounters, NoInterfacesAreNoList) {
  EXPECT_EQ(clear({}), 0);
  EXPECT_EQ(list_.count(), 0u);

  uint8* list = nullptr;
  EXPECT_EQ(pm_clear_port_counters(q_, 1, nullptr, 1, &list, 1), PM_ERR_GENERAL);
  EXPECT_EQ(pm_clear_port_counters(q_, 1, &names_.first_port, 1, nullptr, 1), PM_ERR_GENERAL);
  EXPECT_EQ(packets_of(names_.first_port), 9123u);
}

TEST_F(ClearCounters, As255AreAllCounted) {
  ASSERT_EQ(clear(std::vector<if_index_t>(255, names_.first_port)), 0);

  EXPECT_EQ(list_.count(), 255u);
  EXPECT_EQ(list_[254].if_index, names_.first_port);
}

// More than a byte counts: the good ones are left out.
TEST_F(ClearCounters, LongRequestsAreSplit) {
  std::vector<if_index_t> many(600, names_.first_port);
  many[0] = many[255] = names_.nobody;
  many[599] = names_.routed_port;
  many[300] = ethernet_index(IF_TYPE_ETHERNET, 0, 41);

  ASSERT_EQ(clear(many), 0);

  ASSERT_EQ(list_.count(), 3u);
  EXPECT_EQ(list_[0].if_index, names_.nobody);
  EXPECT_EQ(list_[1].if_index, names_.nobody);
  EXPECT_EQ(list_[2].if_index, ethernet_index(IF_TYPE_ETHERNET, 0, 41));
  EXPECT_EQ(list_[2].status, PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(packets_of(names_.routed_port), 0u) << "the last of them was reached";
}

TEST_F(ClearCounters, MoreFailuresThanAListCountsAreCut) {
  ASSERT_EQ(clear(std::vector<if_index_t>(600, names_.nobody)), 0);
  EXPECT_EQ(list_.count(), 255u);
}

// Answers of disturbed services.

reply promise_two_send_one(mts_opc_t, std::span<const std::byte>) {
  reply answer;
  answer.payload.assign(1 + sizeof(pm_clear_status_t), std::byte{0});
  answer.payload[0] = std::byte{2};
  return answer;
}

// Three entries with indexes 0x01010101, 0x02020202, 0x03030303 and statuses 1, 2, 3 in every byte.
reply send_three(mts_opc_t, std::span<const std::byte>) {
  reply answer;
  answer.payload.push_back(std::byte{3});
  for (int entry = 1; entry <= 3; ++entry)
    answer.payload.insert(answer.payload.end(), sizeof(pm_clear_status_t), std::byte(entry));
  return answer;
}

reply send_nothing(mts_opc_t, std::span<const std::byte>) { return {}; }

class ClearCountersDisturbed : public ClearCounters {
 protected:
  static void replace_port_manager(service_function broken) {
    const service replaced{MTS_SAP_PORT_MANAGER, "port-manager", broken};
    transport_register({&replaced, 1});
  }
};

TEST_F(ClearCountersDisturbed, CountBeyondThePayloadIsAFailure) {
  replace_port_manager(promise_two_send_one);
  EXPECT_EQ(clear({names_.first_port, names_.second_port}), PM_ERR_GENERAL);
  EXPECT_EQ(list_.count(), 0u);
}

TEST_F(ClearCountersDisturbed, EmptyAnswerIsAFailure) {
  replace_port_manager(send_nothing);
  EXPECT_EQ(clear({names_.first_port}), PM_ERR_GENERAL);
}

TEST_F(ClearCountersDisturbed, MoreEntriesThanWereAskedForAreLeftOut) {
  replace_port_manager(send_three);
  ASSERT_EQ(clear({names_.first_port, names_.second_port}), 0);
  ASSERT_EQ(list_.count(), 2u);
  EXPECT_EQ(list_[1].if_index, 0x02020202u);
  EXPECT_EQ(list_[1].status, 0x02020202);
}

TEST_F(ClearCountersDisturbed, FewerEntriesSayNothingOfTheRest) {
  replace_port_manager(send_three);
  ASSERT_EQ(clear(std::vector<if_index_t>(5, names_.first_port)), 0);
  EXPECT_EQ(list_.count(), 3u);
}

TEST_F(ClearCounters, ServiceTakesNoMoreThanItsAnswerCounts) {
  const auto request = [](uint32 says, std::size_t holds) {
    std::vector<std::byte> bytes(4 + 4 * holds);
    const be32 count = says;
    std::memcpy(bytes.data(), &count, sizeof count);
    return serve_port_manager(PM_OPC_CLEAR_COUNTERS, bytes).what;
  };
  EXPECT_EQ(request(255, 255), reply::kind::answer);
  EXPECT_EQ(request(256, 256), reply::kind::reject);
  EXPECT_EQ(request(2, 1), reply::kind::reject);
  EXPECT_EQ(request(1, 2), reply::kind::reject);
  EXPECT_EQ(request(0x40000001, 1), reply::kind::reject);
  EXPECT_EQ(serve_port_manager(PM_OPC_CLEAR_COUNTERS, std::vector<std::byte>(3)).what, reply::kind::reject);
}

// Ranges of ports and channels.

TEST_F(ClearCounters, GetAndClearNeedsNoResponseForAClear) {
  EXPECT_EQ(pm_get_clear_eth_stats(q_, names_.first_port, names_.first_port, 0, nullptr), 0);
  EXPECT_EQ(packets_of(names_.first_port), 0u);
  EXPECT_EQ(cleared_at(names_.first_port), 1'750'000'000u);
  EXPECT_EQ(pm_get_clear_eth_stats(q_, names_.nobody, names_.nobody, 0, nullptr), PM_ERR_NO_SUCH_INTERFACE);
}

TEST_F(ClearCounters, RangeOfPortsLeavesSubInterfacesAlone) {
  ASSERT_EQ(pm_get_clear_eth_stats(q_, names_.routed_port, names_.sub_port, 0, nullptr), 0);
  EXPECT_EQ(cleared_at(names_.routed_port), 1'750'000'000u);
  EXPECT_EQ(cleared_at(names_.sub_port), 0u);

  ASSERT_EQ(pm_get_clear_eth_stats(q_, names_.sub_port, names_.sub_port, 0, nullptr), 0);
  EXPECT_EQ(cleared_at(names_.sub_port), 1'750'000'000u);
}

TEST_F(ClearCounters, PortChannelsAreWalkedInOrder) {
  interface sub;
  sub.if_index = channel_index(IF_TYPE_ETH_PORT_CHANNEL, 5, PC_SUBTYPE_ORDINARY, 9);
  the_machine().add(sub);
  if_index_t at = 0;

  ASSERT_EQ(pcmap_get_next_port_channel(at, &at), 0);
  EXPECT_EQ(at, names_.old_channel);
  ASSERT_EQ(pcmap_get_next_port_channel(at, &at), 0);
  EXPECT_EQ(at, names_.channel);
  EXPECT_NE(pcmap_get_next_port_channel(at, &at), 0) << "its sub-interface is no port-channel";
  EXPECT_EQ(at, names_.channel);
  EXPECT_NE(pcmap_get_next_port_channel(0, nullptr), 0);
}

TEST_F(ClearCounters, DistributedServiceClearsChannels) {
  EXPECT_EQ(dstats_clear_counters(q_, names_.channel, 1, 1, 5), 0);
  EXPECT_EQ(cleared_at(names_.channel), 1'750'000'000u);
  EXPECT_EQ(dstats_clear_counters(q_, names_.old_channel, 1, 1, 5), 0);
  EXPECT_EQ(dstats_clear_counters(q_, names_.first_port, 1, 1, 5), PM_ERR_NOT_ALLOWED_ON_INTERFACE);
  EXPECT_EQ(dstats_clear_counters(q_, names_.nobody, 1, 1, 5), PM_ERR_NO_SUCH_INTERFACE);
  EXPECT_EQ(packets_of(names_.first_port), 9123u);
}

// What became of each request.

using noted = std::vector<clear_result>;

TEST_F(ClearCounters, EveryRequestIsNotedWithItsOwnerAndItsResult) {
  command_account account(q_);
  clear({names_.first_port, names_.nobody});
  clear_port_statistics(names_.routed_port);
  clear_loopback_counters(names_.first_port);
  pm_get_clear_eth_stats(q_, names_.first_port, names_.third_port, 0, nullptr);
  pm_port_channel_get_clear_eth_stats(q_, names_.channel, 0, nullptr);
  dstats_clear_counters(q_, names_.channel, 1, 1, 5);
  pm_clear_interface_counters("eth0", names_.mgmt, q_);

  const char* const ports = "the port manager";
  const char* const statistics = "the statistics service";
  EXPECT_EQ(account.clears, (noted{{names_.first_port, names_.first_port, ports, 0},
                                   {names_.nobody, names_.nobody, ports, PM_ERR_NO_SUCH_INTERFACE},
                                   {names_.routed_port, names_.routed_port, statistics, 0},
                                   {names_.first_port, names_.first_port, statistics, PM_ERR_NOT_ALLOWED_ON_INTERFACE},
                                   {names_.first_port, names_.third_port, ports, 0},
                                   {names_.channel, names_.channel, ports, 0},
                                   {names_.channel, names_.channel, statistics, 0},
                                   {names_.mgmt, names_.mgmt, ports, 0}}));
}

TEST_F(ClearCounters, ReadingClearsNothing) {
  command_account account(q_);
  show_eth_intf_resp_t stats{};
  ASSERT_EQ(pm_get_clear_eth_stats(q_, names_.first_port, names_.first_port, 1, &stats), 0);
  EXPECT_EQ(account.clears, noted{});
}

TEST_F(ClearCountersDisturbed, WhatAnAnswerDoesNotNameIsNotedAsFailed) {
  command_account account(q_);
  replace_port_manager(send_three);
  clear({names_.first_port, 0x02020202});
  EXPECT_EQ(account.clears, (noted{{names_.first_port, names_.first_port, "the port manager", PM_ERR_GENERAL},
                                   {0x02020202, 0x02020202, "the port manager", 0x02020202}}));

  account.clears.clear();
  replace_port_manager(send_nothing);
  clear({names_.first_port});
  EXPECT_EQ(account.clears, (noted{{names_.first_port, names_.first_port, "the port manager", PM_ERR_GENERAL}}));
}

// The command of the channels' own library.

class ClearChannelCommand : public ClearCounters {
 protected:
  ClearChannelCommand() {
    ranges_.range_count = 1;
    ranges_.range[0] = {names_.channel, names_.channel};
    argument_.type = PARAM_TYPE_INTERFACES;
    argument_.arg = &ranges_;
    param_.parameter_count = 2;
    param_.q = q_;
    param_.arg_list[1] = &argument_;
  }

  int32 run() {
    testing::internal::CaptureStdout();
    const int32 result = pm_cli_clear_ethernet_channel_counters(&param_);
    std::fflush(stdout);
    printed_ = testing::internal::GetCapturedStdout();
    return result;
  }

  intf_range_t ranges_{};
  param_arg_t argument_{};
  paraminfo_t param_{};
  std::string printed_;
};

TEST_F(ClearChannelCommand, ClearsTheChannelsOfTheRange) {
  interface more;
  more.if_index = channel_index(IF_TYPE_ETH_PORT_CHANNEL, 8);
  the_machine().add(more);
  ranges_.range[0].upper_if_index = channel_index(IF_TYPE_ETH_PORT_CHANNEL, 20);

  EXPECT_EQ(run(), 0);

  EXPECT_EQ(printed_, "");
  EXPECT_EQ(cleared_at(names_.channel), 1'750'000'000u);
  EXPECT_EQ(cleared_at(more.if_index), 1'750'000'000u);
  EXPECT_EQ(cleared_at(names_.old_channel), 0u);
}

TEST_F(ClearChannelCommand, TakesTheRangeByTypeOrByToken) {
  for (const uint32 id : {0x40200001u, 0x40200002u}) {
    argument_.type = id;
    argument_.token_id = 0;
    EXPECT_EQ(run(), 0);
    argument_.type = 0;
    argument_.token_id = id;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(printed_, "");
  }
}

TEST_F(ClearChannelCommand, NeedsARange) {
  argument_.type = PARAM_TYPE_UINT32;
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(printed_, "error: token id list does not contain CONF_INTF\n");

  argument_.type = PARAM_TYPE_INTERFACES;
  argument_.arg = nullptr;
  EXPECT_EQ(run(), 1);

  argument_.arg = &ranges_;
  param_.parameter_count = 1;
  EXPECT_EQ(run(), 1) << "the range is the second argument";

  EXPECT_EQ(pm_cli_clear_ethernet_channel_counters(nullptr), 1);
}

TEST_F(ClearChannelCommand, FailedRangesAreReportedAndTheRestIsCleared) {
  ranges_.range_count = 3;
  ranges_.range[0] = {names_.first_port, names_.first_port};
  ranges_.range[1] = {channel_index(IF_TYPE_ETH_PORT_CHANNEL, 30), channel_index(IF_TYPE_ETH_PORT_CHANNEL, 31)};
  ranges_.range[2] = {names_.channel, names_.channel};

  EXPECT_EQ(run(), 1);

  EXPECT_EQ(printed_,
            "error: operation not allowed on the interface clearing interface Ethernet1/1 counters\n"
            "error: no such interface clearing interface port-channel30 counters\n");
  EXPECT_EQ(cleared_at(names_.channel), 1'750'000'000u);
}

TEST_F(ClearChannelCommand, EveryRangeIsNoted) {
  ranges_.range_count = 2;
  ranges_.range[1] = {names_.first_port, names_.first_port};
  command_account account(q_);

  run();

  EXPECT_EQ(account.clears,
            (noted{{names_.channel, names_.channel, "the port manager", 0},
                   {names_.first_port, names_.first_port, "the port manager", PM_ERR_NOT_ALLOWED_ON_INTERFACE}}));
}

TEST_F(ClearChannelCommand, NoRangesAreNothingToDo) {
  ranges_.range_count = 0;
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(cleared_at(names_.channel), 0u);
}

// The management port.

TEST_F(ClearCounters, ManagementPortReportsSuccessAsNotZero) {
  EXPECT_NE(pm_clear_interface_counters("eth0", names_.mgmt, q_), 0);
  EXPECT_EQ(cleared_at(names_.mgmt), 1'750'000'000u);
  EXPECT_EQ(pm_clear_interface_counters("eth0", names_.first_port, q_), 0) << "no management port";
  EXPECT_EQ(pm_clear_interface_counters("eth0", names_.nobody, q_), 0);
}

TEST_F(ClearCounters, BothViewsOfTheManagementDeviceStartFromItsClear) {
  the_machine().mgmt_device = "lo";
  const uint64 kernel_had = kernel_says("rx_packets");

  // Named by the port's number, whatever the device is called here.
  ASSERT_NE(pm_clear_interface_counters("eth0", names_.mgmt, q_), 0);

  pm_if_stat stats{};
  pm_proc_net_dev_stats_t kernel{};
  ASSERT_NE(pm_get_interface_counters(names_.mgmt, q_, &stats), 0);
  ASSERT_EQ(pm_get_proc_net_dev_stats("lo", &kernel), 0);
  const uint64 since = kernel_says("rx_packets") - kernel_had;
  EXPECT_LE(stats.in_pkts, kernel.rx_packets) << "both count what has come since, one after the other";
  EXPECT_LE(kernel.rx_packets, since);
  EXPECT_EQ(stats.interval_start_time, 1'750'000'000u);
}

TEST_F(ClearCounters, ADeviceIsClearedByItsName) {
  pm_proc_net_dev_stats_t kernel{};
  const uint64 kernel_had = kernel_says("rx_packets");
  EXPECT_TRUE(ask_to_clear_device("lo"));
  ASSERT_EQ(pm_get_proc_net_dev_stats("lo", &kernel), 0);
  EXPECT_LE(kernel.rx_packets, kernel_says("rx_packets") - kernel_had);
  EXPECT_FALSE(ask_to_clear_device("none-of-these"));
  EXPECT_FALSE(ask_to_clear_device("sixteen-letters."));
}

// Sends a packet each second.
struct packet_each_second : switch_source {
  bool update_statistics(interface& port, uint32 now_sec) override {
    port.stats.out.packets = now_sec - port.stats.last_clear_sec;
    return true;
  }
};

TEST_F(ClearCounters, TrafficGoesOnAfterAClear) {
  interface& port = *the_machine().find(names_.first_port);
  set_source(std::make_unique<packet_each_second>());
  show_eth_intf_resp_t stats{};
  ASSERT_EQ(pm_get_clear_eth_stats(q_, port.if_index, port.if_index, 0, nullptr), 0);
  ASSERT_EQ(pm_get_clear_eth_stats(q_, port.if_index, port.if_index, 1, &stats), 0);
  EXPECT_EQ(stats.if_data.ifi_opackets, 0u);

  clock_advance(7);
  ASSERT_EQ(pm_get_clear_eth_stats(q_, port.if_index, port.if_index, 1, &stats), 0);
  EXPECT_EQ(stats.if_data.ifi_opackets, 7u);
}

}  // namespace
}  // namespace host
