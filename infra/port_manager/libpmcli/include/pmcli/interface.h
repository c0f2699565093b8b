/*
 * Interface displays: the data of one interface and the blocks, lines and rows that show it.
 *
 * Port records (pm_port_info_t) come from the port manager and stay the caller's. Everything prints through the output
 * channel unless said otherwise; none of it flushes.
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

/* What a port can do. Native, built by the library. Texts are terminated. */
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

/* What the detailed block shows besides the port record. Native, built by the library, but for the address inside. */
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
 * Capabilities of an Ethernet-class port from the line-card configuration. Returns 0, or -1 and leaves the record as it
 * was. Fields that the line card does not know (port groups) are the caller's.
 */
syserr_t pm_cli_get_port_capability(if_index_t if_index, pm_cli_common_capability_t* port_cap);

/* Capabilities of the management port: fixed values. Returns 0. */
syserr_t pm_cli_get_mgmt_capability(if_index_t if_index, pm_cli_common_capability_t* port_cap);

/*
 * Asks the interface manager for the layer of an interface; the answer is in if_info->val.layer. Failures are printed.
 * Returns the error of the call: 0 also when only the record's own status is bad, which is intended.
 */
syserr_t pm_cli_get_layer(if_index_t if_index, mts_q_handle_t src_q, if_info_t* if_info);

/* Fills the data of the detailed block for any kind of interface; what cannot be had stays zero or takes its default.
 */
void pm_cli_get_port_data(if_index_t if_index, mts_q_handle_t mts_q, pm_cli_common_show_intf_data_t* port_data);

/* Reliability, loads and elapsed times of an Ethernet port, into `port_data`. */
void pm_cli_calc_eth_reliability_loads(statscl_portcl_stats_msg_t* stats, pm_port_info_t* port_info,
                                       pm_cli_common_show_intf_data_t* port_data);

/* Reliability of the management port from the kernel's counters; loads are 1. */
void pm_cli_calc_mgmt_reliability_loads(pm_proc_net_dev_stats_t* mgmt_stats, pm_cli_common_show_intf_data_t* port_data);

/* Reliability of a loopback from its IP counters; loads are 1. */
void pm_cli_calc_ip_reliability_loads(ip_if_stats* ip_stats, pm_cli_common_show_intf_data_t* port_data);

/* Five-minute rates: bits, frames and bytes per second, from the rate ring. */
void pm_cli_eth_intf_get_rate_stuff(show_eth_intf_resp_t* stats, uint64* in_rate, uint64* out_rate,
                                    uint32* in_frame_rate, uint32* out_frame_rate, uint64* in_rate_B,
                                    uint64* out_rate_B);

/* ---- The detailed view ------------------------------------------------------------------------------------------ */

/*
 * The display with this command id of one interface of an Ethernet-class kind, port-channel, management or loopback:
 * fetches the port record, shows it, frees it. Failures are printed on the terminal.
 */
void pm_cli_show_eth_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command, if_index_t if_index);

/* The common detailed block with which every detailed view begins. */
void pm_cli_show_port_info(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                           pm_cli_common_show_intf_data_t* port_data);

/* The line with the number of interface resets. */
void pm_cli_show_port_reset_cntr(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                                 pm_cli_common_show_intf_data_t* port_data);

/* The switchport-style detailed view. */
void print_eth_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t mts_q, pm_port_info_t* port_info);

/* The traffic lines by kind of interface; each kind has a provider of its own. */
void print_eth_stat_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t mts_q, pm_port_info_t* port_info);

void print_eth_port_status(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);
void print_eth_port_common_info(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);
void print_eth_mtu_bw_dly(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, int is_subintf);

/* Traffic lines of the port manager's response; `detail` not zero gives the longer form. */
void pm_cli_eth_intf_stats_print(cmd_rx_handle_t* rx_handle, show_eth_intf_resp_t* intf_resp, uint32 detail);

/* One line each, with printf. */
void pm_eth_intf_hwinfo_print(show_eth_intf_resp_t* intf_resp);
void pm_cli_eth_intf_prefix_print(show_eth_intf_resp_t* intf_resp);

/* A hook that prints nothing. */
void print_loopback_port_config(cmd_rx_handle_t* rx_handle, if_index_t if_index);

/* ---- Port-channel members and tracked ports --------------------------------------------------------------------- */

/* The members of a port-channel, from the port-channel service. */
void print_eth_port_channel_members(cmd_rx_handle_t* rx_handle, if_index_t if_index);

/* The same list with printf, for callers without an output handle. */
void print_port_channel_members(if_index_t if_index);

/* Ascending order, in place. */
void sort_ports_by_if_index(if_index_t* port_list, int size);

/* The ports linked to this one by port tracking, with printf. Returns 1 when the port manager's query fails, else 0. */
int32 pm_show_tracked_port_info(mts_q_handle_t q, if_index_t if_index);

/* ---- Capabilities ----------------------------------------------------------------------------------------------- */

/* The capability list of one port. The name is spelled so. */
void pm_cli_show_port_capabities(cmd_rx_handle_t* rx_handle, pm_cli_common_capability_t* port_cap);

/* The speeds whose flag is not zero, joined with `delim`, into `size` bytes. */
void pm_cli_build_speed_string(char* speed_str, int size, const char* delim, boolean ten_meg, boolean hundrd_meg,
                               boolean gig, boolean ten_gig, boolean speed_auto);

/* The flow-control settings whose flag is not zero, joined with "/", or "none", into `size` bytes. */
void pm_cli_build_flowctrl_flags(char* flags_str, int size, boolean fl_off, boolean fl_on, boolean fl_desired);

/* ---- Management, loopback --------------------------------------------------------------------------------------- */

/* The traffic lines of the management port, from the kernel's counters. */
void print_eth_port_counters(cmd_rx_handle_t* rx_handle, pm_proc_net_dev_stats_t* stats);

/* The traffic lines of a loopback; `detail` changes nothing. */
void pm_cli_loopback_intf_stats_print(cmd_rx_handle_t* rx_handle, ip_if_stats* stats, uint32 detail);

/* The management port's view by command id; flushes. Returns 1 when the port record could not be had, else 0. */
int32 pm_cli_show_mgmt_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command, if_index_t if_index);

/* The management port's row of the brief table. */
void print_mgmt_info_brief(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, pm_port_info_t* port_info);

/*
 * What the kernel says of the device `name` behind a management port. With `print_info` its hardware, address, MTU,
 * speed and duplex are printed. Without, nothing is: "--" goes into `ipaddr` (4 bytes), the speed in Mbit/s and the MTU
 * in bytes into `speedMbit` and `mtu`; each may be null, and keeps its value when the kernel does not answer.
 */
void print_mgmt_port_config(cmd_rx_handle_t* rx_handle, boolean print_info, mts_q_handle_t src_q, if_index_t if_index,
                            char* ipaddr, int* speedMbit, int* mtu, char* name);

/* The rates and counters that the port manager keeps of the management port. */
void pm_cli_show_mgmt_vdc_counters(cmd_rx_handle_t* rx_handle, pm_if_stat* stats);

/* A loopback's view by command id. */
void pm_cli_show_loopback_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command,
                                    if_index_t if_index);

/* A loopback's row of the brief table. */
void print_loop_intf_brief(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);

/* ---- The in-band interface: a kernel device without a port record. But for its counters, plain text with printf ----
 */

/* Its view by command id. */
void pm_cli_show_inband_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command);

/* Whether it is up: a line, or with `brief_mode` not zero a table row without an end. Nothing when the kernel is
 * silent. */
void print_inband_port_status(int brief_mode);
void print_inband_port_config(void);
void print_inband_port_description(void); /* a hook that prints nothing */
void pm_cli_print_inband_brief_info(void);

/* ---- Tables, one row for each interface ------------------------------------------------------------------------- */

void print_eth_port_info_brief(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t mts_q);
void print_eth_port_status_line(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t mts_q);
void print_eth_port_err_status_line(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t mts_q);
void print_eth_port_description(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);
void print_eth_port_mac_address(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);
void print_port_ifindex(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);
void print_port_debounce(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info);

#ifdef __cplusplus
}
#endif
#endif
