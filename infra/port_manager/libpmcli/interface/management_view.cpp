// The views of the management port, which is a network device of the kernel.

#include <cstdio>
#include <cstring>
#include <optional>

#include "interface/ip_address.h"
#include "interface/kernel_device.h"
#include "interface/management.h"
#include "interface/port_record.h"
#include "platform/ip_statistics.h"
#include "pmcli/displays.h"
#include "pmcli/interface.h"
#include "support/counter_pieces.h"
#include "support/print.h"
#include "support/scope.h"
#include "support/text.h"

using namespace pmcli;

namespace {

void show_detail(cmd_rx_handle_t* rx, mts_q_handle_t q, if_index_t if_index, pm_port_info_t* record) {
  pm_proc_net_dev_stats_t kernel{};
  fetch_kernel_counters(if_index, &kernel);  // without an answer the zeros count
  pm_if_stat stats{};
  if (pm_get_interface_counters(if_index, q, &stats) == 0) std::puts("error: pm_get_interface_counters failed");
  pm_cli_common_show_intf_data_t data;
  pm_cli_get_port_data(if_index, q, &data);
  pm_cli_calc_mgmt_reliability_loads(&kernel, &data);
  pm_cli_show_port_info(rx, record, &data);
  pm_cli_show_mgmt_vdc_counters(rx, &stats);
}

void print_brief_address(cmd_rx_handle_t* rx, mts_q_handle_t q, if_index_t if_index) {
  const std::optional<ipconf_if_inet_addr_info_t> address = ask_first_address(q, if_index);
  if (address && address->inet_addr.addr_type == INET_ADDR_TYPE_IPV4)
    print_ipv4(rx, "%-39.39s ", tag::brief_ip_address, address->inet_addr.a.ipv4_addr);
  else
    print_absent(rx, "%-40.40s");
}

// One direction's line of rates. Both ids are of 64 bits, though the packets are recorded in 32.
struct rate_line {
  const char* bits_format;
  tuple_id<CMD_TYPE_UINT64> bits;
  tuple_id<CMD_TYPE_UINT64> packets;
};

constexpr rate_line kInputRate = {"  1 minute input rate %s bits/sec,", tag::management_input_rate_bps,
                                  tag::management_input_rate_pps};
constexpr rate_line kOutputRate = {"  1 minute output rate %s bits/sec,", tag::management_output_rate_bps,
                                   tag::management_output_rate_pps};

void print_rate(cmd_rx_handle_t* rx, const rate_line& line, uint64 bytes_per_second, uint32 packets_per_second) {
  print_u64(rx, line.bits_format, line.bits, bytes_per_second * 8);
  print_u64(rx, " %s packets/sec\n", line.packets, packets_per_second);
}

constexpr counter_piece<pm_if_stat, be64> kReceived[] = {
    {"  Rx\n    %s input packets ", &pm_if_stat::in_pkts, tag::management_input_packets},
    {"%s unicast packets ", &pm_if_stat::in_pkts_ucast, tag::management_input_unicast_packets},
    {"%s multicast packets\n", &pm_if_stat::in_pkts_mcast, tag::management_input_multicast_packets},
    {"    %s broadcast packets ", &pm_if_stat::in_pkts_bcast, tag::management_input_broadcast_packets},
    {"%s bytes\n", &pm_if_stat::in_bytes, tag::management_input_bytes},
};

constexpr counter_piece<pm_if_stat, be64> kSent[] = {
    {"  Tx\n    %s output packets ", &pm_if_stat::out_pkts, tag::management_output_packets},
    {"%s unicast packets ", &pm_if_stat::out_pkts_ucast, tag::management_output_unicast_packets},
    {"%s multicast packets\n", &pm_if_stat::out_pkts_mcast, tag::management_output_multicast_packets},
    {"    %s broadcast packets ", &pm_if_stat::out_pkts_bcast, tag::management_output_broadcast_packets},
    {"%s bytes\n", &pm_if_stat::out_bytes, tag::management_output_bytes},
};

void print_hardware(cmd_rx_handle_t* rx, const pm_port_info_t* record, const ifreq& hardware) {
  const bool is_gigabit = record != nullptr && record->oper_port_speed > 999;
  print_text(rx, "    Hardware is %s\n", tag::management_hardware, is_gigabit ? "GigabitEthernet" : "Ethernet");
  uint8 mac[PM_MAC_BYTES];
  std::memcpy(mac, hardware.ifr_hwaddr.sa_data, sizeof mac);
  print_mac(rx, "    Address is %s\n", tag::management_address, mac);
}

// A port that is neither up nor down shows nothing.
void print_mtu_line(cmd_rx_handle_t* rx, const pm_port_info_t& port, uint32 mtu_bytes) {
  switch (port.oper_port_state) {
    case PM_PORT_STATE_UP:
      print_u32(rx, "    MTU %s bytes", tag::management_mtu, mtu_bytes);
      print_enum(rx, " Speed %s Mbps", tag::management_speed, port.oper_port_speed);
      print_enum(rx, " %s Duplex\n", tag::management_duplex, port.oper_port_duplex);
      return;
    case PM_PORT_STATE_DOWN: return print_u32(rx, "    MTU %s bytes\n", tag::management_mtu, mtu_bytes);
    default: return;
  }
}

// In bytes; none when the kernel does not answer. The flags are asked for, too, and not otherwise used.
std::optional<int> ask_mtu(const kernel_device& device) {
  ifreq answer;
  if (!device.ask(SIOCGIFFLAGS, &answer) || !device.ask(SIOCGIFMTU, &answer)) return std::nullopt;
  return answer.ifr_mtu;
}

// Without a record, in Mbit/s.
constexpr int kDefaultSpeed = 100;

}  // namespace

int32 pm_cli_show_mgmt_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command, if_index_t if_index) {
  const heap_block<pm_port_info_t> record = fetch_port_record(src_q, if_index);
  if (record != nullptr && command == DISPLAY_DETAIL) show_detail(rx_handle, src_q, if_index, record.get());
  if (record != nullptr && command == DISPLAY_BRIEF) print_mgmt_info_brief(rx_handle, src_q, record.get());
  cmd_prt_send(rx_handle);
  return record != nullptr ? 0 : 1;
}

void print_mgmt_info_brief(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, pm_port_info_t* port_info) {
  const pm_port_info_t& port = *port_info;
  print_if_index(rx_handle, "%-6.6s ", tag::brief_interface, port.if_index);
  print_absent(rx_handle, "%-13.13s");  // the VRF
  print_enum(rx_handle, "%-6.6s ", tag::brief_state, port.oper_port_state);
  print_brief_address(rx_handle, src_q, port.if_index);
  if (port.oper_port_speed != 0)
    print_enum(rx_handle, "%-8.8s ", tag::brief_speed, port.oper_port_speed);
  else
    print_absent(rx_handle, "%-9.9s");
  if (port.admin_rxbufsize != 0)
    print_u32(rx_handle, "%s\n", tag::brief_mtu, port.admin_rxbufsize);
  else
    cmd_prt(rx_handle, "--\n");
}

void print_mgmt_port_config(cmd_rx_handle_t* rx_handle, boolean print_info, mts_q_handle_t src_q, if_index_t if_index,
                            char* ipaddr, int* speedMbit, int* mtu, char* name) {
  const bool is_shown = print_info != 0;
  const auto fail = [is_shown] {
    if (is_shown) std::puts("Cannot get interface config.");
  };
  const kernel_device device(name != nullptr ? name : "");
  if (!device.is_open()) return fail();
  if (!is_shown && ipaddr != nullptr) copy_text(ipaddr, 4, "--");

  ifreq hardware;
  if (!device.ask(SIOCGIFHWADDR, &hardware)) return fail();
  const heap_block<pm_port_info_t> record = ask_port_record(src_q, if_index).record;
  if (is_shown) print_hardware(rx_handle, record.get(), hardware);
  const std::optional<int> mtu_bytes = ask_mtu(device);
  if (!mtu_bytes) return fail();
  if (is_shown) {
    if (record != nullptr) print_mtu_line(rx_handle, *record, static_cast<uint32>(*mtu_bytes));
    return;
  }
  if (speedMbit != nullptr) *speedMbit = record != nullptr ? static_cast<int>(record->oper_port_speed) : kDefaultSpeed;
  if (mtu != nullptr) *mtu = *mtu_bytes;
}

void pm_cli_show_mgmt_vdc_counters(cmd_rx_handle_t* rx_handle, pm_if_stat* stats) {
  if (stats == nullptr) return;
  print_rate(rx_handle, kInputRate, stats->in_bps, stats->in_pps);
  print_rate(rx_handle, kOutputRate, stats->out_bps, stats->out_pps);
  print_counters(rx_handle, kReceived, *stats);
  print_counters(rx_handle, kSent, *stats);
}
