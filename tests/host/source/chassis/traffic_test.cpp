// Traffic that switch files describe, while the clock is moved.
#include "source/chassis/traffic.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/base/temporary_file.h"
#include "host/switch/loopback_device.h"
#include "host/switch/stopped_clock.h"
#include "platform/port_manager.h"
#include "source/chassis/chassis_source.h"
#include "source/chassis/switch_file.h"
#include "switch/if_index_layout.h"
#include "switch/link.h"
#include "switch/live_statistics.h"

namespace host {
namespace {

constexpr std::time_t kStart = 1'700'000'000;  // 200 seconds behind a multiple of five minutes

class Traffic : public testing::Test {
 protected:
  // A switch that starts at this moment.
  static void install(const std::string& file) {
    the_machine() = load_switch_file(temporary_file(file).path());
    set_source(std::make_unique<chassis_source>());
  }

  // One port, eth1/1, with this traffic. It has had none before now.
  static void install_port(const std::string& attributes) {
    install(
        "switch: {name: small, chassis-type: 10, uptime: 0s}\n"
        "profiles: {plain: {speeds: [1000], duplex: [full]}}\n"
        "cards: [{slot: 1, profile: plain}]\n"
        "interfaces:\n"
        "- {range: ethernet 1/1, " +
        attributes + "}\n");
  }

  static interface& port(uint32 number = 1) {
    return *the_machine().find(ethernet_index(IF_TYPE_ETHERNET, 0, number - 1));
  }

  static const statistics& now(interface& of = port()) {
    EXPECT_TRUE(refresh_statistics(of));
    return of.stats;
  }

  static const statistics& after(std::time_t seconds) {
    clock_advance(seconds);
    return now();
  }

  // A sample of the ring, the newest with age 0.
  static rate_sample sample(const statistics& stats, uint32 age) {
    return stats.rate_ring->samples[(stats.rate_ring->next + 7 - age) % 8];
  }

  stopped_clock clock_{kStart};
};

TEST_F(Traffic, GrowsWithTime) {
  install_port("traffic: {in: {mbps: 8, packet-bytes: 1000, multicast-percent: 10, broadcast-percent: 2.5}}");
  EXPECT_EQ(now().in.bytes, 0u);

  EXPECT_EQ(after(40).in.bytes, 40'000'000u);
  EXPECT_EQ(port().stats.in.unicast_packets, 35'000u);
  EXPECT_EQ(port().stats.in.multicast_packets, 4000u);
  EXPECT_EQ(port().stats.in.broadcast_packets, 1000u);
  EXPECT_EQ(port().stats.out.bytes, 0u);
  EXPECT_EQ(port().stats.counted_sec, 40u);
}

TEST_F(Traffic, TotalsOfTheFileAreWhereItStarts) {
  install_port(
      "traffic: {uptime: 1h, in: {pps: 10, packet-bytes: 100, bytes: 5000, unicast: 40}, out: {pps: 5}, errors: {crc: "
      "3, runts: 4, collisions: 9}}");
  EXPECT_EQ(now().in.bytes, 5000u);
  EXPECT_EQ(now().in.unicast_packets, 40u);
  EXPECT_EQ(now().out.unicast_packets, 18'000u) << "what the file does not give has been counting for an hour";
  EXPECT_EQ(now().in.errors, 7u) << "the errors of the file, of which a collision is none";
  EXPECT_EQ(now().out.errors, 0u);

  const statistics& later = after(10);
  EXPECT_EQ(later.in.bytes, 15'000u);
  EXPECT_EQ(later.in.unicast_packets, 140u);
  EXPECT_EQ(later.out.unicast_packets, 18'050u);
  EXPECT_EQ(later.errors.crc, 3u);
}

// Seven packets a second, in shares that divide by nothing.
TEST_F(Traffic, DoesNotDrift) {
  install_port("traffic: {in: {pps: 7, packet-bytes: 64, multicast-percent: 33.333, broadcast-percent: 12.5}}");
  traffic_counters last;
  for (uint64 second = 1; second <= 1000; ++second) {
    const traffic_counters counted = after(1).in;
    ASSERT_EQ(counted.packets, 7 * second);
    ASSERT_EQ(counted.bytes, 448 * second);
    ASSERT_EQ(counted.packets_by_size[0], 7 * second);
    ASSERT_GE(*counted.unicast_packets, last.unicast_packets.value_or(0));
    ASSERT_GE(*counted.multicast_packets, last.multicast_packets.value_or(0));
    ASSERT_GE(*counted.broadcast_packets, last.broadcast_packets.value_or(0));
    last = counted;
  }
  clock_set(kStart);
  EXPECT_EQ(after(1000).in.multicast_packets, last.multicast_packets) << "one step is as good as a thousand";
}

TEST_F(Traffic, CountersWrapAtTheirWidth) {
  install_port("traffic: {in: {mbps: 0.008, packet-bytes: 100, bytes: 18446744073709551000, unicast: 4294967290}}");
  EXPECT_EQ(now().in.bytes, 18'446'744'073'709'551'000u);
  EXPECT_EQ(now().in.packets, 4'294'967'290u);

  EXPECT_EQ(after(1).in.bytes, 384u) << "1000 bytes behind 2^64 - 616";
  EXPECT_EQ(now().in.packets, 4'294'967'300u) << "packets have 64 bits";
  EXPECT_EQ(now().in_bytes_per_second, 1000u);

  const statistics& later = after(59);
  EXPECT_EQ(later.in.bytes, 59'384u);
  EXPECT_EQ(sample(later, 0).in_bytes, 59'384u);
  EXPECT_EQ(sample(later, 1).in_bytes, 18'446'744'073'709'551'000u);
  EXPECT_EQ(sample(later, 0).in_frames, 594u) << "samples have 32 bits: 4294967890 - 2^32";
  EXPECT_EQ(sample(later, 0).in_bytes - sample(later, 1).in_bytes, 60'000u);
}

TEST_F(Traffic, EveryMinuteHasItsSample) {
  install_port("traffic: {uptime: 1h, in: {mbps: 8, packet-bytes: 1000}, out: {pps: 10, packet-bytes: 100}}");
  const uint32 first_index = now().rate_ring->next;
  EXPECT_EQ(sample(now(), 0).in_bytes, 3'600'000'000u);

  const statistics& before_the_minute = after(59);
  EXPECT_EQ(before_the_minute.rate_ring->next, first_index);
  EXPECT_EQ(sample(before_the_minute, 0).in_bytes, 3'600'000'000u);

  const statistics& at_the_minute = after(1);
  EXPECT_EQ(at_the_minute.rate_ring->next, (first_index + 1) % 8);
  EXPECT_EQ(sample(at_the_minute, 0).in_bytes, 3'660'000'000u);
  EXPECT_EQ(sample(at_the_minute, 0).out_frames, 36'600u);
  EXPECT_EQ(sample(at_the_minute, 1).in_bytes, 3'600'000'000u);
  EXPECT_EQ(sample(at_the_minute, 7).in_bytes, 3'240'000'000u);

  const statistics& later = after(10 * 60 + 7);
  EXPECT_EQ(later.rate_ring->next, (first_index + 11) % 8);
  EXPECT_EQ(sample(later, 0).in_bytes, 4'260'000'000u) << "the totals seven seconds ago";
  EXPECT_EQ(later.in.bytes, 4'267'000'000u);
  EXPECT_EQ((sample(later, 0).in_bytes - sample(later, 5).in_bytes) / 300, 1'000'000u);
  EXPECT_EQ((sample(later, 0).out_frames - sample(later, 5).out_frames) / 300, 10u);
}

TEST_F(Traffic, ClearStartsAgainFromZero) {
  install_port(
      "traffic: {uptime: 1h, in: {mbps: 8, packet-bytes: 1000, bytes: 77, errors: 5}, errors: {crc: 5}}, last-clear: "
      "2h");
  clock_advance(30);

  ASSERT_TRUE(clear_statistics(port()));
  EXPECT_EQ(port().stats.last_clear_sec, 1'700'000'030u);
  EXPECT_EQ(now().in.bytes, 0u);
  EXPECT_EQ(now().in.errors, 0u);
  EXPECT_EQ(now().errors.crc, 0u);
  EXPECT_EQ(now().in_bytes_per_second, 1'000'000u) << "rates go on";
  EXPECT_EQ(sample(now(), 0).in_bytes - sample(now(), 5).in_bytes, 300'000'000u);

  EXPECT_EQ(after(10).in.bytes, 10'000'000u);
  EXPECT_EQ(now().in.unicast_packets, 10'000u);
  EXPECT_EQ(now().counted_sec, 10u);
  EXPECT_EQ(after(20).in.bytes, 30'000'000u);
  EXPECT_EQ(sample(now(), 0).in_bytes, 30'000'000u) << "taken this very second, a minute after the start";

  ASSERT_TRUE(clear_statistics(port()));
  ASSERT_TRUE(clear_statistics(port()));
  EXPECT_EQ(after(1).in.bytes, 1'000'000u);
  EXPECT_EQ(now().last_clear_sec, 1'700'000'060u);
}

TEST_F(Traffic, ClearInTheFirstSecondCounts) {
  install_port("traffic: {uptime: 1h, in: {pps: 10, bytes: 99}}");
  ASSERT_TRUE(clear_statistics(port()));
  EXPECT_EQ(now().in.bytes, 0u);
  EXPECT_EQ(after(1).in.unicast_packets, 10u);
}

TEST_F(Traffic, BurstsComeAndGo) {
  install_port(
      "traffic: {in: {pps: 10, packet-bytes: 100, burst: {every: 5m, for: 20s, pps: 1000}}, out: {burst: {every: 1m, "
      "for: 1m, mbps: 0.8}}}");
  EXPECT_EQ(after(100).in.packets, 1000u);
  EXPECT_EQ(now().in_packets_per_second, 10u);

  EXPECT_EQ(after(10).in.packets, 11'100u) << "ten seconds of the burst that begins at a multiple of five minutes";
  EXPECT_EQ(now().in_packets_per_second, 343u) << "10 a second, and 1000 for ten of the last 30 seconds";
  EXPECT_EQ(now().in_bytes_per_second, 34'333u);

  EXPECT_EQ(after(10).in.packets, 21'200u);
  EXPECT_EQ(after(10).in.packets, 21'300u) << "the burst is over";
  EXPECT_EQ(after(30).in_packets_per_second, 10u);
  EXPECT_EQ(after(240).in.packets, 4000u + 20'000u) << "at second 400 the next burst begins";
  EXPECT_EQ(after(1).in.packets, 4010u + 21'000u);
  EXPECT_EQ(now().out.bytes, 401u * 100'000u) << "a burst without an end";
}

TEST_F(Traffic, LineRateFillsTheLine) {
  install(
      "switch: {name: small, uptime: 0s}\n"
      "profiles: {plain: {speeds: [1000, 10000], duplex: [full]}}\n"
      "cards: [{slot: 1, profile: plain}]\n"
      "interfaces:\n"
      "- {range: ethernet 1/1, speed: 1000, traffic: {in: {line-rate-percent: 100, packet-bytes: 64}}}\n"
      "- {range: ethernet 1/2-3, channel: 1, traffic: {in: {line-rate-percent: 0.5, packet-bytes: 1480}}}\n"
      "- {range: port-channel 1, traffic: {out: {line-rate-percent: 50, packet-bytes: 230}}}\n"
      "- {range: ethernet 1/4, speed: 1000, state: admin-down, traffic: {in: {line-rate-percent: 100}}}\n");
  EXPECT_EQ(now().in_packets_per_second, 1'488'095u) << "10^9 / (8 * 84)";
  EXPECT_EQ(now().in_bytes_per_second, 95'238'080u);
  EXPECT_EQ(now(port(2)).in_packets_per_second, 4166u) << "5 * 10^7 / (8 * 1500)";
  interface& channel = *the_machine().find(channel_index(IF_TYPE_ETH_PORT_CHANNEL, 1));
  EXPECT_EQ(now(channel).out_packets_per_second, 5'000'000u) << "half of two lines of 10^10: 10^10 / (8 * 250)";
  EXPECT_EQ(now(port(4)).in_packets_per_second, 0u);
}

TEST_F(Traffic, PacketsAreCountedByTheirSize) {
  install_port(
      "traffic: {in: {pps: 10, packet-sizes: {64: 50, 1518: 30, 9000: 20}}, out: {pps: 8, packet-sizes: {65: 12.5, "
      "127: 12.5, 128: 12.5, 512: 12.5, 1024: 12.5, 1519: 12.5, 1548: 12.5, 1549: 12.5}}}");
  const statistics& stats = after(10);
  EXPECT_EQ(stats.in.packets_by_size, (size_classes{50, 0, 0, 0, 0, 30, 0, 20}));
  EXPECT_EQ(stats.in.bytes, 50u * 64 + 30 * 1518 + 20 * 9000);
  EXPECT_EQ(stats.out.packets_by_size, (size_classes{0, 20, 10, 0, 10, 10, 20, 10}));
}

TEST_F(Traffic, GivenPacketsHaveSizes) {
  install_port("traffic: {in: {unicast: 600, multicast: 400, packet-sizes: {256: 75, 255: 25}}}");
  EXPECT_EQ(now().in.packets_by_size, (size_classes{0, 0, 250, 750, 0, 0, 0, 0}));
}

TEST_F(Traffic, ErrorsComePerMillionPackets) {
  install_port(
      "traffic: {in: {pps: 1000, discards-per-million: 30}, out: {pps: 100, discards-per-million: 20}, errors: {runts: "
      "7}, errors-per-million: {crc: 1000, runts: 500, storm-suppressed: 40, collisions: 2000, late-collisions: 50, "
      "pause-sent: 100}}");
  const statistics& stats = after(1000);
  EXPECT_EQ(stats.errors.crc, 1000u);
  EXPECT_EQ(stats.errors.runts, 507u);
  EXPECT_EQ(stats.errors.storm_suppressed, 40u);
  EXPECT_EQ(stats.in.errors, 1507u) << "what a storm suppressed is no error";
  EXPECT_EQ(stats.in.discards, 30u);
  EXPECT_EQ(stats.errors.collisions, 200u) << "of a hundred thousand packets that were sent";
  EXPECT_EQ(stats.errors.late_collisions, 5u);
  EXPECT_EQ(stats.errors.pause_sent, 10u);
  EXPECT_EQ(stats.out.errors, 5u) << "a collision is no error, a late one is";
  EXPECT_EQ(stats.out.discards, 2u);

  ASSERT_TRUE(clear_statistics(port()));
  EXPECT_EQ(after(1000).errors.crc, 1000u);
  EXPECT_EQ(now().errors.runts, 500u);
  EXPECT_EQ(now().in.errors, 1500u);
}

TEST_F(Traffic, WithoutALinkNothingFlows) {
  install_port(
      "state: not-connected, traffic: {uptime: 1h, in: {pps: 10, bytes: 4711}, out: {pps: 10}, errors: {crc: 3}}");
  const statistics& stats = after(600);
  EXPECT_EQ(stats.in.bytes, 4711u) << "what the file gives stays";
  EXPECT_EQ(stats.in.packets, 0u);
  EXPECT_EQ(stats.out.bytes, 0u);
  EXPECT_EQ(stats.errors.crc, 3u);
  EXPECT_EQ(stats.in_packets_per_second, 0u);
  EXPECT_EQ(sample(stats, 0).in_bytes, sample(stats, 7).in_bytes);
}

TEST_F(Traffic, ALinkThatIsLostStopsTheCounters) {
  install_port("traffic: {in: {pps: 10}}");
  EXPECT_EQ(after(20).in.packets, 200u);

  port().oper_state = PM_PORT_STATE_DOWN;
  port().link_change_sec = kStart + 20;
  EXPECT_EQ(after(15).in.packets, 200u);
  EXPECT_EQ(now().in_packets_per_second, 5u) << "15 of the last 30 seconds";
  EXPECT_EQ(after(15).in_packets_per_second, 0u);
}

TEST_F(Traffic, ALinkThatComesUpStartsTheCounters) {
  install_port("state: not-connected, traffic: {uptime: 1h, in: {pps: 10}}");
  clock_advance(20);

  port().oper_state = PM_PORT_STATE_UP;
  port().link_change_sec = kStart + 20;
  EXPECT_EQ(after(3).in.packets, 30u);
}

TEST_F(Traffic, FollowsEveryChangeOfTheLink) {
  install_port("traffic: {in: {pps: 10, packet-bytes: 100}}");
  EXPECT_EQ(after(10).in.packets, 100u);
  set_link(port(), PM_PORT_STATE_DOWN, PM_REASON_ADMIN_DOWN);
  EXPECT_EQ(after(20).in.packets, 100u);
  EXPECT_EQ(port().stats.in_packets_per_second, 3u) << "10 of the last 30 seconds: 3.3";
  set_link(port(), PM_PORT_STATE_UP, PM_REASON_NONE);
  EXPECT_EQ(after(5).in.packets, 150u);
  set_link(port(), PM_PORT_STATE_UP, PM_REASON_NONE);
  set_link(port(), PM_PORT_STATE_DOWN, PM_REASON_ADMIN_DOWN);
  EXPECT_EQ(after(7).in.packets, 150u);
  set_link(port(), PM_PORT_STATE_UP, PM_REASON_NONE);
  EXPECT_EQ(after(1).in.bytes, 16'000u);
}

TEST_F(Traffic, ProfilesAreWrittenOnce) {
  install(
      "switch: {name: small, uptime: 0s}\n"
      "interfaces:\n"
      "- {range: loopback 0, traffic: office}\n"
      "- {range: loopback 1, traffic: {profile: office, in: {mbps: 8}, errors: {runts: 1}}}\n"
      "- {range: loopback 2, traffic: busy-office}\n"
      "traffic-profiles:\n"
      "  office: {in: {pps: 10, packet-bytes: 100}, out: {pps: 20}, errors: {crc: 5}}\n"
      "  busy-office: {profile: office, in: {pps: 1000}}\n");
  const auto loopback = [](uint32 number) -> const statistics& {
    return now(*the_machine().find(numbered_index(IF_TYPE_LOOPBACK, number)));
  };
  EXPECT_EQ(loopback(0).in_packets_per_second, 10u);
  EXPECT_EQ(loopback(0).errors.crc, 5u);
  EXPECT_EQ(loopback(1).in_bytes_per_second, 1'000'000u) << "instead of the profile's packets per second";
  EXPECT_EQ(loopback(1).in_packets_per_second, 10'000u) << "with the profile's size of packets";
  EXPECT_EQ(loopback(1).out_packets_per_second, 20u);
  EXPECT_EQ(loopback(1).errors.crc, 5u);
  EXPECT_EQ(loopback(1).errors.runts, 1u);
  EXPECT_EQ(loopback(2).in_packets_per_second, 1000u);
  EXPECT_EQ(loopback(2).in_bytes_per_second, 100'000u);
}

TEST_F(Traffic, InterfacesWithoutTrafficCountNothing) {
  install_port("description: idle");
  EXPECT_EQ(after(3600).in.bytes, 0u);
  ASSERT_TRUE(clear_statistics(port()));
  EXPECT_EQ(port().stats.last_clear_sec, 1'700'003'600u);
}

TEST_F(Traffic, ClockBeforeTheStartShowsTheStart) {
  install_port("traffic: {uptime: 1h, in: {pps: 10}}");
  clock_set(kStart - 1000);
  EXPECT_EQ(now().in.packets, 36'000u);
  clock_set(0);
  EXPECT_EQ(now().in.packets, 36'000u);
}

TEST_F(Traffic, EarlyClocksHaveNoPast) {
  clock_set(100);
  install_port("traffic: {uptime: 1h, in: {pps: 10}}");
  EXPECT_EQ(now().in.packets, 1000u) << "no more than the seconds since 1970";
  EXPECT_EQ(after(60).in.packets, 1600u);
}

// The management port.

constexpr const char* kManagement =
    "switch: {name: small, chassis-type: 10, uptime: 0s}\n"
    "interfaces:\n";

interface& management(uint32 number = 0) {
  return *the_machine().find(ethernet_index(IF_TYPE_MGMT, 0, number));
}

TEST_F(Traffic, ManagementPortWithoutADeviceHasNoStatistics) {
  install(std::string(kManagement) + "- {range: mgmt 0}\nmanagement: {device: no-such-device}\n");
  EXPECT_FALSE(refresh_statistics(management()));
  EXPECT_FALSE(clear_statistics(management()));
  EXPECT_EQ(management().stats.last_clear_sec, 0u);
}

TEST_F(Traffic, ManagementPortWithoutADeviceMayHaveTraffic) {
  install(std::string(kManagement) +
          "- {range: mgmt 0, traffic: {in: {pps: 10, packet-bytes: 100, burst: {every: 5m, for: 20s, pps: 60}}}}\n"
          "management: {device: no-such-device}\n");
  clock_advance(130);
  EXPECT_EQ(now(management()).in.packets, 2500u);
  EXPECT_EQ(management().stats.in_packets_per_second, 30u) << "of a whole minute, 20 seconds of it with 60 more";
}

TEST_F(Traffic, ManagementPortCountsWhatItsDeviceCounts) {
  install(std::string(kManagement) +
          "- {range: mgmt 0, traffic: {in: {unicast: 123456789123}}}\nmanagement: {device: lo}\n");
  const uint64 kernel_had = kernel_says("rx_packets");
  ASSERT_TRUE(clear_statistics(management()));
  EXPECT_EQ(management().stats.last_clear_sec, 1'700'000'000u);
  const statistics& stats = now(management());
  EXPECT_LE(*stats.in.packets, kernel_says("rx_packets") - kernel_had) << "not what the file says";
}

TEST(ManagementDevice, FollowsTheRuleOfTheChassis) {
  machine it;
  it.mgmt_device = "first";
  it.mgmt_device2 = "second";
  const if_index_t mgmt0 = ethernet_index(IF_TYPE_MGMT, 0, 0);
  const if_index_t mgmt1 = ethernet_index(IF_TYPE_MGMT, 0, 1);
  it.chassis_type = 10;
  EXPECT_EQ(management_device(it, mgmt0), "first");
  EXPECT_EQ(management_device(it, mgmt1), "first");
  it.chassis_type = 22;
  EXPECT_EQ(management_device(it, mgmt0), "first");
  EXPECT_EQ(management_device(it, mgmt1), "second");
  it.chassis_type = 17;
  EXPECT_EQ(management_device(it, mgmt0), "eth1");
  EXPECT_EQ(management_device(it, mgmt1), "eth2");
}

}  // namespace
}  // namespace host
