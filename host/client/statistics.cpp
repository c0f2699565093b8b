#include <array>
#include <charconv>
#include <string_view>

#include "client/library_functions.h"
#include "client/request.h"
#include "messages/statistics_messages.h"

namespace host {
namespace {

template <typename Record>
syserr_t ask_statistics(mts_q_handle_t q, statistics_opcode opcode, if_index_t if_index, Record* record) {
  if (record == nullptr) return PM_ERR_GENERAL;
  return ask_record({q, SAP_STATISTICS, opcode}, bytes_of(interface_request{if_index}), writable_bytes_of(*record));
}

// One line of plain text without a percent sign. `format` has a '#' for each number; with five of them it fits.
template <typename... Numbers>
void print_line(cmd_rx_handle_t* rx_handle, std::string_view format, Numbers... numbers) {
  const std::array<uint64, sizeof...(numbers)> values{numbers...};
  std::array<char, 192> line;
  const auto* value = values.begin();
  char* end = line.begin();
  for (const char character : format) {
    if (character == '#')
      end = std::to_chars(end, line.end(), *value++).ptr;
    else
      *end++ = character;
  }
  *end = '\0';
  cmd_prt(rx_handle, line.data());
}

constexpr uint64 kBitsPerByte = 8;

}  // namespace

int32 get_port_statistics(if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  return ask_statistics(client_queue(), STATS_OPC_PORT, if_index, stats);
}

int32 get_port_snmp_statistics(if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  return ask_statistics(client_queue(), STATS_OPC_PORT_SNMP, if_index, stats);
}

int32 get_loopback_counters(mts_q_handle_t q, if_index_t if_index, ip_if_stats* stats) {
  return ask_statistics(q, STATS_OPC_LOOPBACK, if_index, stats) == 0 ? 1 : 0;
}

}  // namespace host

void pm_cli_ethernet_intf_stats_print(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats, uint32 detail) {
  if (stats == nullptr) return;
  using host::print_line;
  const statscl_portcl_mac_pktflow_stats_t& flow = stats->mac.pktflow;
  const statscl_portcl_mac_error_stats_t& errors = stats->mac.errors;
  print_line(rx_handle, "    30 seconds input rate # bits/sec, # packets/sec\n", flow.byte_rate_rx * host::kBitsPerByte,
             flow.pkt_rate_rx);
  print_line(rx_handle, "    30 seconds output rate # bits/sec, # packets/sec\n",
             flow.byte_rate_tx * host::kBitsPerByte, flow.pkt_rate_tx);
  print_line(rx_handle, "    # packets input, # bytes, # input errors\n", flow.ingress_pkts, flow.bytes_pkts,
             errors.input_errors);
  print_line(rx_handle, "      # unicast, # multicast, # broadcast\n", flow.unicast_pkts, flow.multicast_pkts,
             flow.broadcast_pkts);
  if (detail != 0)
    print_line(rx_handle, "      # runts, # giants, # CRC, # overrun, # dropped\n", errors.runt, errors.giants_rx,
               errors.crc, errors.overrun, errors.in_discard);
  print_line(rx_handle, "    # packets output, # bytes, # output errors\n", flow.egress_pkts, flow.bytes_tx,
             errors.output_errors);
  print_line(rx_handle, "      # unicast, # multicast, # broadcast\n", flow.unicast_pkts_tx, flow.multicast_pkts_tx,
             flow.broadcast_pkts_tx);
  if (detail != 0)
    print_line(rx_handle, "      # collisions, # late collisions, # underrun, # dropped\n", errors.collision,
               errors.late_collision, errors.underrun, errors.tx_dropped);
}
