/*
 * Interface displays: the data of one interface and the blocks, lines and rows that show it.
 *
 * Port records (pm_port_info_t) come from the port manager in wire format. All records stay the caller's, and no
 * pointer may be null unless a contract says what null does. Displays print through the output handle unless they say
 * "on the terminal", and only pm_cli_show_mgmt_info() flushes it.
 *
 * The kernel's device of a management port has the name that the platform's run-time parameters give it, on chassis
 * 17 one with its number; the chassis type is read once for it in the life of the process.
 */
#ifndef PMCLI_INTERFACE_H
#define PMCLI_INTERFACE_H

#include "platform/cmd_channel.h"
#include "platform/eth_statistics.h"
#include "platform/interface_manager.h"
#include "platform/ip_config.h"
#include "platform/ip_statistics.h"
#include "platform/port_manager.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Capabilities of a port. Native, built by the library. Texts are terminated. */
typedef struct pm_cli_common_capability_s {
  if_index_t if_index;
  char model[32];
  char type[32];
  uint8 speed;  /* bits: 1 = 10, 2 = 100, 4 = 1000, 8 = 10000 Mb/s, 16 = auto */
  uint8 duplex; /* bits: 1 = full, 2 = half, 4 = auto */
  uint8 trunk_encap;
  boolean channel;
  boolean suppression;
  uint8 rx_flowcontrol; /* bits: 1 = on, 2 = off, 4 = desired */
  uint8 tx_flowcontrol;
  uint8 rate_mode; /* bits: 1 = dedicated, 2 = shared */
  boolean cos_rewrite;
  boolean tos_rewrite;
  boolean QOS_scheduling;
  uint8 rx_QOS_priority;
  uint8 rx_QOS_queue;
  uint8 rx_QOS_threshold;
  uint8 tx_QOS_priority;
  uint8 tx_QOS_queue;
  uint8 tx_QOS_threshold;
  boolean span;
  boolean udld;
  boolean link_debounce;
  uint8 link_debounce_time;
  boolean mdix;
  boolean fcot_capable;
  boolean port_group_capable;
  uint8 port_group;
  uint8 ASIC;
} pm_cli_common_capability_t;

/* Values of the detailed block besides the port record. Native, built by the library, but for the address inside. */
typedef struct pm_cli_common_show_intf_data_s {
  char hardware[80];
  char type[80];                        /* media type */
  char encap[20];                       /* "ARPA", "LOOPBACK" or "--" */
  ipconf_if_inet_addr_info_t inet_addr; /* primary address; big-endian as it came */
  boolean layer2;
  boolean sub_interface;
  boolean fcot_supported; /* a transceiver can be present */
  boolean port_channel;
  boolean physical;
  boolean beacon_supported;
  boolean mdix_supported;
  boolean span_supported;
  boolean flowcontrol_supported;
  uint16 reliability;    /* 0..255 */
  uint16 rx_load;        /* 0..255 */
  uint16 tx_load;        /* 0..255 */
  char last_cleared[20]; /* time since the counters were cleared; empty: not shown */
  char last_flapped[20]; /* time since the link changed; empty: not shown */
} pm_cli_common_show_intf_data_t;

/* ---- Data of one interface -------------------------------------------------------------------------------------- */

/*
 * Capabilities of an Ethernet-class port or a port-channel from the line-card configuration, whose library is opened by
 * name. Fills the record, native, but for the port group and the ASIC, which the line card does not know. Returns 0, or
 * -1 and leaves the record as it was: silently without the library; a missing function, and the line card's error, are
 * printed on the terminal.
 */
syserr_t pm_cli_get_port_capability(if_index_t if_index, pm_cli_common_capability_t* port_cap);

/*
 * Capabilities of the management port: fixed values, no service is called. Counts of queues, the port group and the
 * ASIC are left as they were. Returns 0.
 */
syserr_t pm_cli_get_mgmt_capability(if_index_t if_index, pm_cli_common_capability_t* port_cap);

/*
 * Asks the interface manager for the layer of an interface; the answer, in wire format, is in if_info->val.layer
 * (IF_LAYER_2 or another). The record is zeroed first. `src_q` is not used. Failures are printed on the terminal.
 * Returns the error of the call: 0 also when only the record's own status is bad, which is intended.
 */
syserr_t pm_cli_get_layer(if_index_t if_index, mts_q_handle_t src_q, if_info_t* if_info);

/*
 * Fills the data of the detailed block, which is zeroed first, for any kind of interface. Of Ethernet ports it asks the
 * port manager for the transceiver and the line-card configuration for speeds, media type and MDIX; of kinds 22 and 26
 * the interface manager for the layer; of the management port the platform for the chassis; of all the IP configuration
 * for the first address. Kinds without a block of their own show "--" as hardware. Reliability, loads and times stay 0
 * and empty. Cannot fail: unavailable values stay zero or take their defaults; of failures only those of
 * pm_cli_get_port_capability() and pm_cli_get_layer() are printed.
 */
void pm_cli_get_port_data(if_index_t if_index, mts_q_handle_t mts_q, pm_cli_common_show_intf_data_t* port_data);

/* ---- Figures derived from statistics ---------------------------------------------------------------------------- */

/*
 * Reliability (0 to 255; 255 without packets) and loads (1 to 255; 1 without a configured bandwidth) of an Ethernet
 * port from its statistics and its record, and the times since counters were cleared and since the link changed, up to
 * now, as texts ("never" for a moment of 0), into `port_data`. They are computed in 64 bits, where products wrap; a
 * load keeps the low 16 bits of its quotient. No service is called. A null pointer changes nothing.
 */
void pm_cli_calc_eth_reliability_loads(statscl_portcl_stats_msg_t* stats, pm_port_info_t* port_info,
                                       pm_cli_common_show_intf_data_t* port_data);

/*
 * Reliability (0 to 255; 255 without packets) of the management port from the kernel's counters in 32 bits, of a
 * loopback from its IP counters in 64 bits, into `port_data`; both loads are 1, the times are left alone. No service is
 * asked. A null pointer changes nothing.
 */
void pm_cli_calc_mgmt_reliability_loads(pm_proc_net_dev_stats_t* mgmt_stats, pm_cli_common_show_intf_data_t* port_data);
void pm_cli_calc_ip_reliability_loads(ip_if_stats* ip_stats, pm_cli_common_show_intf_data_t* port_data);

/*
 * Five-minute rates from the ring of samples of a statistics response: bits (`in_rate`, `out_rate`), frames and bytes
 * (`in_rate_B`, `out_rate_B`) per second, between the newest sample and the fifth before it (300 seconds), rounded
 * down; bits are eight times the rounded bytes. Null `stats` store nothing; the other pointers must not be null.
 */
void pm_cli_eth_intf_get_rate_stuff(show_eth_intf_resp_t* stats, uint64* in_rate, uint64* out_rate,
                                    uint32* in_frame_rate, uint32* out_frame_rate, uint64* in_rate_B,
                                    uint64* out_rate_B);

/* ---- Detailed views --------------------------------------------------------------------------------------------- */

/*
 * Shows the display with this command id (pmcli/displays.h) of one interface: fetches the port record from the port
 * manager, and from other services what the display needs, prints, frees. A record that is unavailable is reported on
 * the terminal and nothing is shown, whatever the id; unavailable statistics print "stats unavailable" there. An
 * id without a display prints "Option not supported" on the terminal. Selections by module or by VLANs are the
 * caller's.
 */
void pm_cli_show_eth_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command, if_index_t if_index);

/*
 * Prints the common detailed block with which every detailed view begins, from a port record and from what
 * pm_cli_get_port_data() filled for the same interface; reliability, loads and times are those of `port_data`. Asks the
 * multi-chassis service for the status of a port-channel (`port_channel` of the data) and the port-channel service for
 * its members; without an answer there is no such line, or "No members".
 */
void pm_cli_show_port_info(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                           pm_cli_common_show_intf_data_t* port_data);

/* Prints the line with the number of interface resets of the port record. `port_data` is not read and may be null. */
void pm_cli_show_port_reset_cntr(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                                 pm_cli_common_show_intf_data_t* port_data);

/*
 * Prints the switchport-style detailed view of an interface by its record:
 * - an Ethernet-class port (IF_TYPE_ETHERNET): its status line only;
 * - a port-channel of either family: the status line twice, description and channel, hardware, MTU, and unless it is a
 *   sub-interface mode, speed, duplex, flow control and the members (from the port-channel service), then traffic
 *   lines. These show zeros but in IPS mode, when they are fetched as print_eth_stat_info() does; a failure then
 *   silently ends the view after the channel;
 * - a loopback: the status line twice, description and channel;
 * - a management port: the same, then print_mgmt_port_config().
 *
 * A port-channel of the older family that carries Fibre Channel (`phy_port_layer`) prints nothing. Any other kind
 * prints "error: invalid if index type" with its number on the terminal.
 */
void print_eth_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t mts_q, pm_port_info_t* port_info);

/*
 * Prints the traffic lines of an interface by its record, each kind from a provider of its own:
 * - in IPS mode, from the port manager, or for a port-channel of the older family from its service, then the members of
 *   a port-channel; a failure prints nothing;
 * - an Ethernet port of either layer (IF_TYPE_ETHERNET_L3): from the statistics client, on the Ethernet-switch chassis
 *   family but chassis 17; a missing function is printed on the terminal, a missing library and a failure are not;
 * - a loopback: from the IP statistics library; a missing library or function is printed on the terminal, a failure
 *   shows zeros;
 * - the management port: from the kernel, or "No counters available." on the terminal;
 * - an Ethernet-class port (IF_TYPE_ETHERNET), other port-channels: nothing.
 *
 * A port-channel of the older family that carries Fibre Channel (`phy_port_layer`) prints nothing. Any other kind
 * prints "error: invalid if index type" with its number on the terminal.
 */
void print_eth_stat_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t mts_q, pm_port_info_t* port_info);

/* ---- Lines of detailed views ------------------------------------------------------------------------------------ */

/*
 * Prints the status line: name, state, and the reason unless it is up. For a record whose `status` is not 0 the name is
 * followed by "    Error: ", the code and its text on the terminal.
 */
void print_eth_port_status(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);

/*
 * Prints the status line as above, the description when there is one, and the port-channel that the port belongs to
 * when `is_part_of_bundle` is exactly 1.
 */
void print_eth_port_common_info(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);

/* Prints the line of MTU (bytes), bandwidth (Kbit/s) and delay (microseconds) of a record. `is_subintf` changes
 * nothing. */
void print_eth_mtu_bw_dly(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, int is_subintf);

/*
 * Prints the traffic lines of a statistics response that the caller fetched, without tagged values: five-minute rates,
 * packets, bytes, errors; with `detail` not zero the longer form. Zeros in the short form are fixed text.
 */
void pm_cli_eth_intf_stats_print(cmd_rx_handle_t* rx_handle, show_eth_intf_resp_t* intf_resp, uint32 detail);

/* Each prints one line of a statistics response on the terminal: its MAC address; its MTU in bytes. */
void pm_eth_intf_hwinfo_print(show_eth_intf_resp_t* intf_resp);
void pm_cli_eth_intf_prefix_print(show_eth_intf_resp_t* intf_resp);

/* A hook that prints nothing; its arguments are not looked at. */
void print_loopback_port_config(cmd_rx_handle_t* rx_handle, if_index_t if_index);

/* ---- Port-channel members and tracked ports --------------------------------------------------------------------- */

/*
 * Prints the members of a port-channel, from the port-channel service, in ascending order and at most 256: on the
 * Ethernet-switch chassis family in one line of short names, cut at 200 characters; on others each in a numbered line.
 * Without members, and when the service fails, a line says "No members".
 */
void print_eth_port_channel_members(cmd_rx_handle_t* rx_handle, if_index_t if_index);

/*
 * Prints the members in numbered lines on the terminal, for callers without an output handle. The answer of the service
 * is taken in its Ethernet-switch form on chassis 10, 11 and 17 only.
 */
void print_port_channel_members(if_index_t if_index);

/* Sorts `size` interface indexes, native, in ascending order, in place. A size of 0 or less does nothing. */
void sort_ports_by_if_index(if_index_t* port_list, int size);

/*
 * Prints on the terminal the ports linked to this one by port tracking, from the port manager, at most 256; without any
 * nothing. On the Ethernet-switch chassis family it asks and prints nothing. Returns 1, silently, when the query fails;
 * else 0, also after "Error getting linked if index list." for an answer without a list.
 */
int32 pm_show_tracked_port_info(mts_q_handle_t q, if_index_t if_index);

/* ---- Capabilities ----------------------------------------------------------------------------------------------- */

/* Prints the capability list of a record that the caller filled; no service is called. The name is spelled so. */
void pm_cli_show_port_capabities(cmd_rx_handle_t* rx_handle, pm_cli_common_capability_t* port_cap);

/*
 * Each writes words into the caller's buffer of `size` bytes, cut to it and terminated; a size of 0 or less writes
 * nothing. The first: the speeds in Mbit/s whose flag is not zero, "auto" among them, joined with `delim`. The second:
 * the flow-control settings whose flag is not zero, joined with "/", or "none".
 */
void pm_cli_build_speed_string(char* speed_str, int size, const char* delim, boolean ten_meg, boolean hundrd_meg,
                               boolean gig, boolean ten_gig, boolean speed_auto);
void pm_cli_build_flowctrl_flags(char* flags_str, int size, boolean fl_off, boolean fl_on, boolean fl_desired);

/* ---- Management ports ------------------------------------------------------------------------------------------- */

/*
 * Shows the detailed view (DISPLAY_DETAIL) or the row of the brief table (DISPLAY_BRIEF) of a management port; other
 * ids show nothing. The port record, which is fetched for every id, and rates come from the port manager, counters from
 * the kernel. A record or rates that are unavailable are reported on the terminal; missing values show
 * zeros. Flushes in every case. Returns 1 when there was no record, else 0.
 */
int32 pm_cli_show_mgmt_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command, if_index_t if_index);

/*
 * Prints the management port's row of the brief table from its record, with its first IPv4 address from the IP
 * configuration; an absent value shows "--", as the VRF always does. Cannot fail.
 */
void print_mgmt_info_brief(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, pm_port_info_t* port_info);

/*
 * What the kernel reports of the device `name` (at most 15 characters, null is empty) of a management port, and the
 * port manager of its speed, duplex and state.
 *
 * With `print_info` not zero it prints hardware, address and, for a port that is up or down, MTU in bytes, and for one
 * that is up speed and duplex. When the kernel does not answer, "Cannot get interface config." is printed on the
 * terminal after what was there; without a port record there is no MTU line. The three outputs are not written.
 *
 * With `print_info` 0 it prints nothing, and the handle may be null. "--" goes into `ipaddr` (4 bytes), the speed in
 * Mbit/s (100 without a port record) into `speedMbit`, the MTU in bytes into `mtu`; each may be null. When the kernel
 * does not answer, the last two keep their value, and all three when there is no socket to ask it.
 */
void print_mgmt_port_config(cmd_rx_handle_t* rx_handle, boolean print_info, mts_q_handle_t src_q, if_index_t if_index,
                            char* ipaddr, int* speedMbit, int* mtu, char* name);

/*
 * Prints the traffic lines of a management port from the kernel's counters, which the caller fetched. Overruns and
 * underruns show the dropped packets, which is intended. Null prints nothing.
 */
void print_eth_port_counters(cmd_rx_handle_t* rx_handle, pm_proc_net_dev_stats_t* stats);

/*
 * Prints the one-minute rates (bits and packets per second) and the counters that the port manager keeps of a
 * management port, which the caller fetched. Null prints nothing.
 */
void pm_cli_show_mgmt_vdc_counters(cmd_rx_handle_t* rx_handle, pm_if_stat* stats);

/* ---- Loopbacks -------------------------------------------------------------------------------------------------- */

/*
 * Shows a loopback: DISPLAY_DETAIL, DISPLAY_STATUS, DISPLAY_DESCRIPTION, DISPLAY_BRIEF, or its status row for
 * DISPLAY_STATUS_ADMIN_DOWN, DISPLAY_STATUS_INACTIVE and DISPLAY_STATUS_UP when it is so. Any other id prints "Option
 * not supported" on the terminal. The port record, which is fetched for every id, comes from the port manager, counters
 * from the IP statistics library, the address from the IP configuration. A record that is unavailable is reported on
 * the terminal and nothing is shown; counters that cannot show zeros.
 */
void pm_cli_show_loopback_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command,
                                    if_index_t if_index);

/* Prints a loopback's row of the brief table from its record: name, state, description or "--". */
void print_loop_intf_brief(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);

/* Prints the traffic lines of a loopback from counters that the caller fetched; `detail` changes nothing. */
void pm_cli_loopback_intf_stats_print(cmd_rx_handle_t* rx_handle, ip_if_stats* stats, uint32 detail);

/* ---- The in-band interface: a kernel device without a port record ----------------------------------------------- */

/*
 * Shows the in-band interface: DISPLAY_DETAIL, DISPLAY_STATUS, DISPLAY_DESCRIPTION (which is empty) or DISPLAY_BRIEF;
 * any other id prints "Option not supported". All is printed on the terminal but the counters of the detailed view,
 * which the kernel gives; without them "No counters available." is printed there. `src_q` is not used.
 */
void pm_cli_show_inband_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command);

/*
 * Prints on the terminal whether the kernel's device is up: the first in a line, or with `brief_mode` not zero in a row
 * of the brief table, without a line end; the second that row. Nothing when the kernel does not answer.
 */
void print_inband_port_status(int brief_mode);
void pm_cli_print_inband_brief_info(void);

/* Prints the two lines of hardware and speed on the terminal: fixed texts. */
void print_inband_port_config(void);

/* A hook that prints nothing. */
void print_inband_port_description(void);

/* ---- Tables, one row for each interface ------------------------------------------------------------------------- */

/*
 * Prints a row of the brief table: name, state (or the family of its reason, when it is not up and no loopback), first
 * IPv4 address from the IP configuration, speed and MTU; an absent value shows "--". Kinds 2, 4, 5, 20, 22 and 31 have
 * one; any other prints "error: invalid if index type" with its number on the terminal.
 */
void print_eth_port_info_brief(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t mts_q);

/*
 * Prints a row of the status table: name, description, state, VLAN, duplex, speed, type. The VLAN is "routed" for
 * loopbacks and the management port, is left out for Ethernet-class ports (IF_TYPE_ETHERNET), and else comes from the
 * interface manager, whose failures are printed on the terminal and show "--". The type is that of
 * pm_cli_get_port_capability(), or when it is empty the vendor of the transceiver, from the port manager; "--" when it
 * is unavailable, and for other kinds than 2 and 26.
 */
void print_eth_port_status_line(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t mts_q);

/*
 * Prints a row of the error-disabled table: name, description, state, and the reason of a port that is error-disabled,
 * else "none". `mts_q` is not used: no service is called.
 */
void print_eth_port_err_status_line(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t mts_q);

/*
 * Each prints a row of one table from the port record, for any kind of interface: name and description, or "--"; name,
 * router's and burned-in MAC address; name and interface index, in decimal and in hexadecimal; name, whether link
 * debounce is on, and its time in ms. No service is called.
 */
void print_eth_port_description(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);
void print_eth_port_mac_address(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);
void print_port_ifindex(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);
void print_port_debounce(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);

#ifdef __cplusplus
}
#endif
#endif
