// Port records of the tests' switch, and pieces of what displays say of them.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/recording_platform.h"

namespace pmcli_test {

inline constexpr if_index_t kPort = ethernet(1, 1);
inline constexpr if_index_t kRoutablePort = ethernet(1, 2, IF_TYPE_ETHERNET_L3);
inline constexpr if_index_t kChannel = port_channel(3);
inline constexpr if_index_t kOldChannel = port_channel(4, IF_TYPE_PORT_CHANNEL);

inline constexpr char kBurnedInMac[] = "0210.2030.4050";
inline constexpr char kRouterMac[] = "02aa.bbcc.ddee";

// A layer-2 port that is up; every field that a display shows has a value of its own.
inline pm_port_info_t port_record() {
  constexpr uint8 wwn[] = {0x20, 0x01, 0x02, 0x10, 0x20, 0x30, 0x40, 0x50};
  constexpr uint8 router_mac[] = {0x02, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE};
  pm_port_info_t port{};
  port.admin_port_mode = PM_PORT_MODE_ACCESS;
  port.admin_port_flow_ctrl = 0x0009;
  port.admin_rxbufsize = 1500;
  std::memcpy(port.port_wwn, wwn, sizeof wwn);
  port.oper_port_mode = PM_PORT_MODE_ACCESS;
  port.oper_port_speed = 1000;
  port.oper_port_state = PM_PORT_STATE_UP;
  port.oper_state_reason = 7;
  port.oper_port_duplex = 11;
  port.admin_port_duplex = 12;
  port.admin_port_rate_mode = 13;
  port.reset_cntr = 14;
  port.admin_port_delay = 20;
  port.admin_port_bandwidth = 1000000;
  std::memcpy(port.router_mac, router_mac, sizeof router_mac);
  port.admin_mdix_mode = 1;
  port.span_mode = 15;
  return port;
}

inline pm_port_info_t down_port_record() {
  pm_port_info_t port = port_record();
  port.oper_port_state = PM_PORT_STATE_DOWN;
  return port;
}

inline pm_port_info_t port_record_in_mode(uint32 mode) {
  pm_port_info_t port = port_record();
  port.admin_port_mode = mode;
  port.oper_port_mode = mode;
  return port;
}

// A record as displays get it that do not fetch it themselves.
inline pm_port_info_t named(if_index_t if_index, pm_port_info_t port) {
  port.if_index = if_index;
  return port;
}

inline void set_description(pm_port_info_t& port, const std::string& text) {
  std::memcpy(port.port_name, text.data(), text.size());
}

inline ipconf_if_inet_addr_info_t ipv4_address(uint8 a, uint8 b, uint8 c, uint8 d, uint32 prefix) {
  ipconf_if_inet_addr_info_t address;
  std::memset(&address, 0, sizeof address);
  address.inet_addr.addr_type = INET_ADDR_TYPE_IPV4;
  const uint8 bytes[] = {a, b, c, d};
  std::memcpy(address.inet_addr.a.ipv4_addr, bytes, sizeof bytes);
  address.prefix_len = prefix;
  return address;
}

inline ipconf_if_inet_addr_info_t ipv6_address(uint32 prefix) {
  ipconf_if_inet_addr_info_t address;
  std::memset(&address, 0, sizeof address);
  address.inet_addr.addr_type = INET_ADDR_TYPE_IPV6;
  std::memset(address.inet_addr.a.ipv6_addr, 0x20, sizeof address.inet_addr.a.ipv6_addr);
  address.prefix_len = prefix;
  return address;
}

// Capabilities of a port for 10, 100 and 1000 Mb/s.
inline crdcfg_port_cap_t port_capabilities(const std::string& type, uint8 speed = 7) {
  crdcfg_port_cap_t capabilities{};
  capabilities.speed = speed;
  std::memcpy(capabilities.type, type.data(), type.size());
  return capabilities;
}

// The formats of all pieces, in order.
inline std::vector<std::string> formats(const RecordingPlatform& platform) {
  std::vector<std::string> all;
  for (const printed_piece& piece : platform.pieces) all.push_back(piece.format);
  return all;
}

// The tuple with this id; a value of "(not bound)" when there is none.
inline tuple_value bound_to(const RecordingPlatform& platform, uint32 id) {
  for (const bound_tuple& tuple : platform.tuples())
    if (tuple.id == id) return tuple.value;
  return "(not bound)";
}

// The port manager was asked once, for this interface alone, with a minute to answer.
inline void expect_one_query(const RecordingPlatform& platform, if_index_t if_index) {
  ASSERT_EQ(platform.port_queries.size(), 1U);
  const RecordingPlatform::port_query& query = platform.port_queries[0];
  EXPECT_EQ(query.q, RecordingPlatform::q());
  EXPECT_EQ(query.version, 1U);
  EXPECT_EQ(query.instance, 1U);
  EXPECT_EQ(query.range.low, if_index);
  EXPECT_EQ(query.range.high, if_index);
  EXPECT_EQ(query.timeout, 60);
}

// The traffic lines of a response without traffic.
inline constexpr char kNoTraffic[] =
    "    5 minutes input rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"
    "    5 minutes output rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"
    "    0 packets input, 0 bytes\n"
    "      0 multicast frames, 0 compressed\n"
    "      0 input errors, 0 frame, 0 overrun 0 fifo\n"
    "    0 packets output, 0 bytes, 0 underruns\n"
    "      0 output errors, 0 collisions, 0 fifo\n"
    "      0 carrier errors\n";

}  // namespace pmcli_test
