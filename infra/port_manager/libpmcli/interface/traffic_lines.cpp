// Traffic lines of the port manager's statistics response, and two single lines of it.

#include <cstdarg>
#include <cstdio>

#include "pmcli/interface.h"

namespace {

// Prints a line that is first formatted into a fixed buffer, whose size cuts it.
[[gnu::format(printf, 2, 3)]] void print_line(cmd_rx_handle_t* rx, const char* format, ...) {
  char line[89];
  std::va_list values;
  va_start(values, format);
  std::vsnprintf(line, sizeof line, format, values);
  va_end(values);
  cmd_prt(rx, line);
}

// As printf takes it.
unsigned long long wide(uint64 value) { return value; }

void print_rates(cmd_rx_handle_t* rx, show_eth_intf_resp_t* response) {
  uint64 in_bits = 0, out_bits = 0, in_bytes = 0, out_bytes = 0;
  uint32 in_frames = 0, out_frames = 0;
  pm_cli_eth_intf_get_rate_stuff(response, &in_bits, &out_bits, &in_frames, &out_frames, &in_bytes, &out_bytes);
  print_line(rx, "    5 minutes input rate %llu bits/sec, %llu bytes/sec, %u frames/sec\n", wide(in_bits),
             wide(in_bytes), in_frames);
  print_line(rx, "    5 minutes output rate %llu bits/sec, %llu bytes/sec, %u frames/sec\n", wide(out_bits),
             wide(out_bytes), out_frames);
}

// Counters in host order, as the lines take them.
struct host_counters {
  explicit host_counters(const eth_intf_if_data_t& data)
      : in_bytes(data.ifi_ibytes),
        out_bytes(data.ifi_obytes),
        in_packets(data.ifi_ipackets),
        out_packets(data.ifi_opackets),
        in_multicasts(data.ifi_imcasts),
        out_multicasts(data.ifi_omcasts),
        in_broadcasts(data.ifi_ibcasts),
        out_broadcasts(data.ifi_obcasts),
        in_errors(data.ifi_ierrors),
        out_errors(data.ifi_oerrors),
        collisions(data.ifi_collisions),
        queue_drops(data.ifi_iqdrops),
        arp_drops(data.ifi_oarpdrops),
        in_down_drops(data.ifi_idowndrops),
        out_down_drops(data.ifi_odowndrops),
        bad_ether_types(data.ifi_badetype),
        bad_protocols(data.ifi_noproto) {}

  unsigned long long in_bytes, out_bytes;
  uint32 in_packets, out_packets, in_multicasts, out_multicasts, in_broadcasts, out_broadcasts, in_errors, out_errors,
      collisions, queue_drops, arp_drops, in_down_drops, out_down_drops, bad_ether_types, bad_protocols;
};

// The zeros in the short forms are fixed text, not counters.
void print_received(cmd_rx_handle_t* rx, const host_counters& count, uint32 detail) {
  print_line(rx, "    %u packets input, %llu bytes\n", count.in_packets, count.in_bytes);
  if (detail == 0) {
    print_line(rx, "      %u multicast frames, 0 compressed\n", count.in_multicasts);
    print_line(rx, "      %u input errors, 0 frame, 0 overrun 0 fifo\n", count.in_errors);
    return;
  }
  print_line(rx, "      %u multicast frames, %u broadcast frames\n", count.in_multicasts, count.in_broadcasts);
  print_line(rx, "      %u errors, %u queue drops %u if-down drops\n", count.in_errors, count.queue_drops,
             count.in_down_drops);
  print_line(rx, "      %u bad ether type drop, %u bad protocol drops\n", count.bad_ether_types, count.bad_protocols);
}

void print_sent(cmd_rx_handle_t* rx, const host_counters& count, uint32 detail) {
  print_line(rx, "    %u packets output, %llu bytes, 0 underruns\n", count.out_packets, count.out_bytes);
  if (detail == 0) {
    print_line(rx, "      %u output errors, %u collisions, 0 fifo\n", count.out_errors, count.collisions);
    cmd_prt(rx, "      0 carrier errors\n");
    return;
  }
  print_line(rx, "      %u multicast, %u broadcast\n", count.out_multicasts, count.out_broadcasts);
  print_line(rx, "      %u errors, %u collisions, %u arp drops, %u if-down drops\n", count.out_errors, count.collisions,
             count.arp_drops, count.out_down_drops);
}

}  // namespace

void pm_cli_eth_intf_stats_print(cmd_rx_handle_t* rx_handle, show_eth_intf_resp_t* intf_resp, uint32 detail) {
  print_rates(rx_handle, intf_resp);
  const host_counters count(intf_resp->if_data);
  print_received(rx_handle, count, detail);
  print_sent(rx_handle, count, detail);
}

void pm_eth_intf_hwinfo_print(show_eth_intf_resp_t* intf_resp) {
  const uint8* const mac = intf_resp->macaddr;
  std::printf("    Hardware is GigabitEthernet, address is %02x%02x.%02x%02x.%02x%02x\n", mac[0], mac[1], mac[2],
              mac[3], mac[4], mac[5]);
}

void pm_cli_eth_intf_prefix_print(show_eth_intf_resp_t* intf_resp) {
  std::printf("    MTU %u  bytes\n", static_cast<uint32>(intf_resp->if_mtu));  // two blanks are intended
}
