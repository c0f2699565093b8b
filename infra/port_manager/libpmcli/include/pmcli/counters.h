/*
 * Counters: fetching them from their providers, normalising them, and showing them.
 *
 * Records are in wire format, unless they say "native", and stay the caller's, zeroed before a fetch. Providers are
 * opened by name for each request and closed again. No pointer may be null unless a contract says what null does.
 * Displays print through the output handle, and only pm_cli_show_mgmt_counters() flushes it; what is said to be printed
 * on the terminal is no part of the structured output.
 */
#ifndef PMCLI_COUNTERS_H
#define PMCLI_COUNTERS_H

#include "platform/cmd_channel.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/port_manager.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Forwarding statistics of the platform, layer 2. Wire format. */
typedef struct pfstat_l2_cntrs_t {
  be64 l2_ipv4_ucast_bytes;
  be64 l2_ipv4_ucast_pkts;
  be64 l2_ipv4_mcast_bytes;
  be64 l2_ipv4_mcast_pkts;
  be64 l2_ipv6_ucast_bytes;
  be64 l2_ipv6_ucast_pkts;
  be64 l2_ipv6_mcast_bytes;
  be64 l2_ipv6_mcast_pkts;
  be64 l2_ucast_bytes;
  be64 l2_ucast_pkts;
  be64 l2_mcast_bytes;
  be64 l2_mcast_pkts;
  be64 l2_bcast_bytes;
  be64 l2_bcast_pkts;
  be64 unknown_ucast_bytes;
  be64 unknown_ucast_pkts;
  be64 recv_l3_routed_bytes;
  be64 recv_l3_routed_pkts;
  be64 sent_l3_routed_bytes;
  be64 sent_l3_routed_pkts;
  be64 recv_l3_mcast_bytes;
  be64 recv_l3_mcast_pkts;
  be64 sent_l3_mcast_bytes;
  be64 sent_l3_mcast_pkts;
  be64 recv_l3_ucast_bytes;
  be64 recv_l3_ucast_pkts;
  be64 sent_l3_ucast_bytes;
  be64 sent_l3_ucast_pkts;
  be64 last_cleared; /* timestamp_t */
} pfstat_l2_cntrs_t;
static_assert(sizeof(pfstat_l2_cntrs_t) == 232, "wire size");

/* Forwarding statistics of the platform, layer 3. Wire format. */
typedef struct pfstat_l3_cntrs_t {
  be64 l3_routed_bytes_in;
  be64 l3_routed_pkts_in;
  be64 l3_ipv4_ucast_bytes_in;
  be64 l3_ipv4_ucast_pkts_in;
  be64 l3_ipv4_mcast_bytes_in;
  be64 l3_ipv4_mcast_pkts_in;
  be64 l3_ipv6_ucast_bytes_in;
  be64 l3_ipv6_ucast_pkts_in;
  be64 l3_ipv6_mcast_bytes_in;
  be64 l3_ipv6_mcast_pkts_in;
  be64 l3_ucast_bytes_in;
  be64 l3_ucast_pkts_in;
  be64 l3_mcast_bytes_in;
  be64 l3_mcast_pkts_in;
  be64 l3_routed_bytes_out;
  be64 l3_routed_pkts_out;
  be64 l3_ipv4_ucast_bytes_out;
  be64 l3_ipv4_ucast_pkts_out;
  be64 l3_ipv4_mcast_bytes_out;
  be64 l3_ipv4_mcast_pkts_out;
  be64 l3_ipv6_ucast_bytes_out;
  be64 l3_ipv6_ucast_pkts_out;
  be64 l3_ipv6_mcast_bytes_out;
  be64 l3_ipv6_mcast_pkts_out;
  be64 l3_ucast_bytes_out;
  be64 l3_ucast_pkts_out;
  be64 l3_mcast_bytes_out;
  be64 l3_mcast_pkts_out;
  be64 l3_average_input_bytes;
  be64 l3_average_input_packets;
  be64 l3_average_output_bytes;
  be64 l3_average_output_packets;
  be32 sample_rate;
  be64 last_cleared; /* timestamp_t */
  be64 l3_valid_bits;
} pfstat_l3_cntrs_t;
static_assert(sizeof(pfstat_l3_cntrs_t) == 276, "wire size");

/* Forwarding statistics of dropped packets. Wire format. */
typedef struct pfstat_null_cntrs_t {
  be64 null_dropped_bytes;
  be64 null_dropped_pkts;
  be64 last_cleared; /* timestamp_t */
} pfstat_null_cntrs_t;

/* The key of the counters. Wire format. */
typedef struct pfstat_key_t {
  be32 key_flags; /* 1 layer 2, 2 layer 3, 3 both */
  union {
    be32 ifidx;
    be32 vlan_id;
  } id;
} pfstat_key_t;

/* Forwarding statistics for one key. Wire format. */
typedef struct pfstat_key_cntrs_t {
  pfstat_key_t key;
  be32 status;
  union {
    pfstat_l2_cntrs_t l2_cntrs;
    pfstat_l3_cntrs_t l3_cntrs;
    pfstat_null_cntrs_t null_cntrs;
  } cntrs;
} pfstat_key_cntrs_t;
static_assert(sizeof(pfstat_key_cntrs_t) == 288, "wire size");

/* Error counters in the terms of every medium; a counter whose flag is 0 does not exist there. Native. */
typedef struct pm_cli_common_error_stat_t {
  uint64 rx_align;
  uint64 rx_frames;
  uint64 tx_errors;
  uint64 rx_errors;
  uint64 undersize;
  uint64 tx_dropped;
  uint64 single_coll;
  uint64 multi_coll;
  uint64 late_coll;
  uint64 excess_coll;
  uint64 carrier;
  uint64 runts;
  uint64 giant;
  uint64 SQEtest;
  uint64 deferred;
  uint64 rx_int_mac_errors;
  uint64 tx_int_mac_errors;
  uint64 symbol;
  boolean have_rx_align;
  boolean have_rx_frames;
  boolean have_tx_errors;
  boolean have_rx_errors;
  boolean have_undersize;
  boolean have_tx_dropped;
  boolean have_single_coll;
  boolean have_multi_coll;
  boolean have_late_coll;
  boolean have_excess_coll;
  boolean have_carrier;
  boolean have_runts;
  boolean have_giant;
  boolean have_SQEtest;
  boolean have_deferred;
  boolean have_rx_int_mac_errors;
  boolean have_tx_int_mac_errors;
  boolean have_symbol;
} pm_cli_common_error_stat_t;

/* Trunk counters in the terms of every medium. Native. */
typedef struct pm_cli_common_trunk_stat_t {
  uint64 trunk_rx;
  uint64 trunk_tx;
  uint64 wrong_encap;
  boolean have_trunk_rx;
  boolean have_trunk_tx;
  boolean have_wrong_encap;
} pm_cli_common_trunk_stat_t;

/* ---- Fetching --------------------------------------------------------------------------------------------------- */

/*
 * Statistics of an Ethernet port from the statistics client; the second without SNMP values, the third with them, the
 * first with them when `snmp_values` is exactly 1. The record is zeroed first. Returns 0, or -1: a missing library or
 * function is printed on the terminal, a failure of the client is not.
 */
syserr_t pm_cli_get_common_eth_stat_info(if_index_t if_index, statscl_portcl_stats_msg_t* eth_stats,
                                         boolean snmp_values);
syserr_t pm_cli_get_eth_stat_info(if_index_t if_index, statscl_portcl_stats_msg_t* eth_stats);
syserr_t pm_cli_get_snmp_eth_stat_info(if_index_t if_index, statscl_portcl_stats_msg_t* eth_stats);

/*
 * Counters of a loopback from the IP statistics library. The record is not zeroed here. Returns 0, or -1: a missing
 * library or function is printed on the terminal, a failure of the library is not.
 */
syserr_t pm_cli_get_loopback_counters(if_index_t if_index, mts_q_handle_t src_q, ip_if_stats* loopback_stats);

/*
 * Forwarding statistics: no provider is called, and only `stats` is used. Zeroes the first 276 of its 288 bytes.
 * Returns 0.
 */
syserr_t pm_cli_get_pfstat_counters(if_index_t if_index, mts_q_handle_t q, pfstat_key_cntrs_t* stats,
                                    boolean snmp_values);

/* ---- Normalising ------------------------------------------------------------------------------------------------ */

/*
 * Each fills the common record, native, from the counters of a medium; they cannot fail. A counter that the medium
 * lacks gets the flag 0. Members that a medium does not mention keep their value, so start from a zeroed record: all of
 * Ethernet but `SQEtest` are written; of IP those of alignment, frames, errors, drops, late collisions, carrier, runts
 * and giants; of the management port, whose record is not read and may be null, only the flags, all 0.
 */
void pm_cli_copy_eth_to_common_ctr_err(pm_cli_common_error_stat_t* common, statscl_portcl_stats_msg_t* eth_stats);
void pm_cli_copy_eth_to_common_trunk_ctr(pm_cli_common_trunk_stat_t* common, statscl_portcl_stats_msg_t* eth_stats);
void pm_cli_copy_ip_to_common_ctr_err(pm_cli_common_error_stat_t* common, ip_if_stats* ip_stats);
void pm_cli_copy_mgmt_to_common_ctr_err(pm_cli_common_error_stat_t* common, pm_if_stat* stats);

/* ---- Lists, one counter a line ---------------------------------------------------------------------------------- */

/*
 * One line of a list: a label `desc` and a native value. `tuple` is an id of an unsigned integer of 32 or 64 bits,
 * whatever the width of the value; one of 32 bits takes the low half. nzero_prt() prints nothing when the value is 0
 * and cuts the label to 35 characters; numlist_prt() prints every value, numbered with `ctr`.
 */
void nzero_prt(cmd_rx_handle_t* rx_handle, const uint64* value, const char* desc, int tuple);
void nzero_prt_uint32(cmd_rx_handle_t* rx_handle, const uint32* value, const char* desc, int tuple);
void numlist_prt(cmd_rx_handle_t* rx_handle, const uint64* value, const char* desc, int ctr, int tuple);
void numlist_prt_uint32(cmd_rx_handle_t* rx_handle, const uint32* value, const char* desc, int ctr, int tuple);

/* 1 when one of the sixteen layer-3 counters of the lists is not 0, regardless of the key; else 0, also for null. */
boolean pm_cli_is_nonzero_pfstats(pfstat_key_cntrs_t* pfstats);

/*
 * An Ethernet port's counters that are not 0, under its name (`ifidx` of the record); nothing at all when all are 0.
 * Layer-3 counters follow unless the key of `pfstats` says layer 2 only; `pfstats` may be null. A sub-interface has
 * layer-3 counters only, and shows them for a key of layer 3 or both. A null handle or record prints nothing.
 */
void pm_cli_show_common_eth_counters_detailed(cmd_rx_handle_t* rx_handle, pfstat_key_cntrs_t* pfstats,
                                              statscl_portcl_stats_msg_t* stats);

/* The lines of the layer-3 counters that are not 0, without a title. A null handle or record prints nothing. */
void pm_cli_show_L3_eth_counters_detailed(cmd_rx_handle_t* rx_handle, pfstat_key_cntrs_t* pfstats);

/*
 * All counters of an Ethernet port, numbered, under its name and titles. Layer-3 counters follow unless the key of
 * `pfstats` says layer 2 only; `pfstats` may be null. A sub-interface with `pfstats` shows its layer-3 counters only. A
 * null handle or record prints nothing.
 */
void pm_cli_show_eth_counters_detailed_all(cmd_rx_handle_t* rx_handle, pfstat_key_cntrs_t* pfstats,
                                           statscl_portcl_stats_msg_t* stats);

/* All layer-3 counters, numbered from `linecount`, without a title. A null handle or record prints nothing. */
void pm_cli_show_eth_L3_counters_detailed_all(cmd_rx_handle_t* rx_handle, int linecount, pfstat_key_cntrs_t* pfstats);

/*
 * The management port's counters under its name, those of the port manager, then those of the kernel; either record may
 * be null and is then left out. The first prints those that are not 0, and nothing at all when all are 0; the second
 * all, numbered through. A null handle prints nothing.
 */
void pm_cli_mgmt_counters_detailed(cmd_rx_handle_t* rx_handle, pm_if_stat* stats, pm_proc_net_dev_stats_t* system_stats,
                                   if_index_t if_index);
void pm_cli_mgmt_counters_detailed_all(cmd_rx_handle_t* rx_handle, pm_if_stat* stats,
                                       pm_proc_net_dev_stats_t* system_stats, if_index_t if_index);

/* All counters of a loopback, numbered, under its name and titles. A null handle or record prints nothing. */
void pm_cli_show_loopback_counters_detailed_all(cmd_rx_handle_t* rx_handle, ip_if_stats* stats, if_index_t if_index);

/*
 * The management port's counter display with this command id: DISPLAY_COUNTERS, the three tables of errors,
 * DISPLAY_RECEIVED, DISPLAY_SENT, DISPLAY_COUNTERS_NONZERO or DISPLAY_COUNTERS_ALL; others print nothing. Fetches what
 * it shows from the port manager and the kernel; a failure is printed on the terminal. A list shows what there is, and
 * leaves out the kernel's counters silently when only they are unavailable. The errors are all "--", without a fetch.
 * Flushes in every case. Returns 0.
 */
int32 pm_cli_show_mgmt_counters(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, uint32 command, if_index_t if_index);

/* ---- Tables, one row for each interface ------------------------------------------------------------------------- */

/*
 * A row of the three tables of errors, and of the trunk frames, of native records. A counter whose flag is 0 shows
 * "--". They ask no service and cannot fail.
 */
void pm_cli_show_port_1st_counters_errors_table(cmd_rx_handle_t* rx_handle, if_index_t if_index,
                                                pm_cli_common_error_stat_t* stats);
void pm_cli_show_port_2nd_counters_errors_table(cmd_rx_handle_t* rx_handle, if_index_t if_index,
                                                pm_cli_common_error_stat_t* stats);
void pm_cli_show_port_3rd_counters_errors_table(cmd_rx_handle_t* rx_handle, if_index_t if_index,
                                                pm_cli_common_error_stat_t* stats);
void pm_cli_show_port_counters_trunk(cmd_rx_handle_t* rx_handle, pm_cli_common_trunk_stat_t* stats,
                                     if_index_t if_index);

/*
 * A row of received or of sent traffic, of a record that the caller fetched: bytes, then unicast, multicast and
 * broadcast packets; of a loopback packets in place of the bytes, without a gap between the cells. The Ethernet rows
 * take the interface from the record. They ask no service and cannot fail.
 */
void pm_cli_show_eth_port_stats_rx(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats);
void pm_cli_show_eth_port_stats_tx(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats);
void pm_cli_show_mgmt_stats_rx(cmd_rx_handle_t* rx_handle, if_index_t if_index, pm_if_stat* stats);
void pm_cli_show_mgmt_stats_tx(cmd_rx_handle_t* rx_handle, if_index_t if_index, pm_if_stat* stats);
void pm_cli_show_loopback_stats_rx(cmd_rx_handle_t* rx_handle, if_index_t if_index, ip_if_stats* stats);
void pm_cli_show_loopback_stats_tx(cmd_rx_handle_t* rx_handle, if_index_t if_index, ip_if_stats* stats);

/*
 * A row of the flow-control table: configured and operational flow control to send and to receive from the port record,
 * pause frames received and sent from the statistics. Asks no service and cannot fail.
 */
void pm_cli_show_port_flow_ctrl(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                statscl_portcl_stats_msg_t* stats);

/*
 * A row of the storm-control table: the suppression levels of unicast, multicast and broadcast from the port record, in
 * percent with two decimals, and the packets discarded from the statistics. Asks no service and cannot fail.
 */
void pm_cli_show_port_storm_ctrl_counters(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                                          statscl_portcl_stats_msg_t* stats);

/*
 * A row of rates in brief, with tagged values, from the record's own rates: megabytes (10^6) per second, rounded down,
 * and packets per second, received and sent. Takes the interface from the record. Asks no service and cannot fail.
 */
void pm_cli_show_common_counters_brief(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats);

/*
 * A row of rates in brief, as one text without tagged values, from five-minute rates: megabits (10^6) per second,
 * rounded down, under columns that are headed MB/s, and frames per second, received and sent. Only Ethernet-class ports
 * (IF_TYPE_ETHERNET) and port-channels of both families have one; other kinds print nothing. The rates come from the
 * port manager, those of the older family of port-channels from their service; when they are unavailable nothing is
 * printed. For VSH_USER_MODE_RESTRICTED only "    Counters not available" is printed, on the terminal.
 */
void pm_cli_show_eth_port_counters_brief(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, if_index_t if_index,
                                         vsh_user_mode_state_t user_mode);

/* ---- Blocks, the counters of one interface under its name ------------------------------------------------------- */

/*
 * Fetches and prints the counters of an Ethernet-class port (IF_TYPE_ETHERNET) from the port manager, of a port-channel
 * of the older family from its service, of the management port from the kernel; other kinds print nothing. A failure
 * prints "No counters available." on the terminal, of an Ethernet-class port nothing.
 */
void pm_cli_show_eth_port_counters(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, if_index_t if_index);

/* The block of a response that the caller fetched: the name, an empty line, and pm_cli_eth_intf_stats_print() in its
 * longer form. */
void pm_cli_show_eth_port_stats(cmd_rx_handle_t* rx_handle, show_eth_intf_resp_t* stats, if_index_t if_index);

/*
 * Fetches and prints the counters of a loopback from the IP statistics library. A failed fetch shows zeros; a missing
 * library or function is printed on the terminal, too.
 */
void pm_cli_show_loopback_port_counters(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, if_index_t if_index);

#ifdef __cplusplus
}
#endif
#endif
