/* Statistics of Ethernet interfaces: the port manager's response, and the statistics client's record. */
#ifndef PLATFORM_ETH_STATISTICS_H
#define PLATFORM_ETH_STATISTICS_H

#include "platform/cmd_channel.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { ETH_RATE_SAMPLES = 8, ETH_RATE_SAMPLE_SECONDS = 60 };

/* One sample of the rate ring: totals at the time of the sample. Wire format. */
typedef struct eth_intf_rate_sample_t {
  be64 in_bytes;
  be64 out_bytes;
  be32 in_frames;
  be32 out_frames;
} eth_intf_rate_sample_t;

/* Ring of samples, one a minute. Wire format. */
typedef struct eth_intf_stats_rate_t {
  eth_intf_rate_sample_t stats[ETH_RATE_SAMPLES];
  be32 index; /* slot that will be written next */
  be32 reserved;
} eth_intf_stats_rate_t;
static_assert(sizeof(eth_intf_stats_rate_t) == 200, "wire size");

/* Totals since the counters were cleared. Wire format. */
typedef struct eth_intf_if_data_t {
  be64 ifi_ibytes;
  be64 ifi_obytes;
  be32 ifi_ipackets;
  be32 ifi_opackets;
  be32 ifi_imcasts;
  be32 ifi_omcasts;
  be32 ifi_ibcasts;
  be32 ifi_obcasts;
  be32 ifi_ierrors;
  be32 ifi_oerrors;
  be32 ifi_collisions;
  be32 ifi_iqdrops;
  be32 ifi_oarpdrops;
  be32 ifi_idowndrops;
  be32 ifi_odowndrops;
  be32 ifi_badetype;
  be32 ifi_noproto;
  be32 reserved;
} eth_intf_if_data_t;
static_assert(sizeof(eth_intf_if_data_t) == 80, "wire size");

/* The port manager's statistics response for one Ethernet interface. Wire format. */
typedef struct show_eth_intf_resp_t {
  uint8 opaque[24]; /* transport header */
  be_int32 isvalid;
  be32 if_mtu; /* bytes */
  eth_intf_stats_rate_t rate;
  eth_intf_if_data_t if_data;
  uint8 macaddr[6];
  be16 reserved;
} show_eth_intf_resp_t;
static_assert(sizeof(show_eth_intf_resp_t) == 320, "wire size");
static_assert(offsetof(show_eth_intf_resp_t, rate) == 32, "wire offset");
static_assert(offsetof(show_eth_intf_resp_t, if_data) == 232, "wire offset");
static_assert(offsetof(show_eth_intf_resp_t, macaddr) == 312, "wire offset");

/*
 * Gets (`get` 1) or clears (`get` 0) the statistics of an interface at the port manager. `response` is the caller's
 * record; null when clearing. Returns 0, -1 for a transport failure, or a system error.
 */
int32 pm_get_clear_eth_stats(mts_q_handle_t q, if_index_t low, if_index_t high, uint32 get,
                             show_eth_intf_resp_t* response);

/* The same for a port-channel of the older family. */
int32 pm_port_channel_get_clear_eth_stats(mts_q_handle_t q, if_index_t if_index, uint32 get,
                                          show_eth_intf_resp_t* response);

/* Packet-flow counters of a port. The rates are per second. Wire format. */
typedef struct statscl_portcl_mac_pktflow_stats_t {
  be64 ingress_pkts;
  be64 unicast_pkts;
  be64 multicast_pkts;
  be64 broadcast_pkts;
  be64 jumbo_pkts;
  be64 bytes_pkts;
  be64 storm_supression; /* spelled so */
  be64 pkt_rate_rx;
  be64 byte_rate_rx;
  be64 unicast_pkts_tx;
  be64 egress_pkts;
  be64 multicast_pkts_tx;
  be64 jumbo_pkts_tx;
  be64 broadcast_pkts_tx;
  be64 bytes_tx;
  be64 b64_rx;
  be64 b65_127_rx;
  be64 b128_255_rx;
  be64 b256_511_rx;
  be64 b512_1023_rx;
  be64 b1024_1518_rx;
  be64 b1519_1548_rx;
  be64 trunk_rx;
  be64 b64_tx;
  be64 b65_127_tx;
  be64 b128_255_tx;
  be64 b256_511_tx;
  be64 b512_1023_tx;
  be64 b1024_1518_tx;
  be64 b1519_1548_tx;
  be64 trunk_tx;
  be64 pkt_rate_tx;
  be64 byte_rate_tx;
} statscl_portcl_mac_pktflow_stats_t;
static_assert(sizeof(statscl_portcl_mac_pktflow_stats_t) == 264, "wire size");

/* Error counters of a port. `deferred` and the misspelt `deffered` are two counters. Wire format. */
typedef struct statscl_portcl_mac_error_stats_t {
  be64 no_buffer;
  be64 runt;
  be64 crc;
  be64 ecc;
  be64 overrun;
  be64 underrun;
  be64 ignored;
  be64 bad_etype_drop;
  be64 bad_proto_drop;
  be64 if_down_drop;
  be64 collision;
  be64 late_collision;
  be64 lost_carrier;
  be64 no_carrier;
  be64 babble;
  be64 watchdog;
  be64 input_dribble;
  be64 input_errors;
  be64 output_errors;
  be64 deferred;
  be64 jabber;
  be64 shortframe;
  be64 single_collision;
  be64 multi_collision;
  be64 excessive_collision;
  be64 in_discard;
  be64 bad_encap;
  be64 crc_tx;
  be64 bpdu_outlost;
  be64 cos0_outlost;
  be64 cos1_outlost;
  be64 cos2_outlost;
  be64 cos3_outlost;
  be64 cos4_outlost;
  be64 cos5_outlost;
  be64 cos6_outlost;
  be64 cos7_outlost;
  be64 giants_rx;
  be64 symbol_err;
  be64 tx_dropped;
  be64 deffered;
} statscl_portcl_mac_error_stats_t;
static_assert(sizeof(statscl_portcl_mac_error_stats_t) == 328, "wire size");

/* Control counters of a port. Wire format. */
typedef struct statscl_portcl_mac_ctrl_stats_t {
  be64 rx_pause;
  be64 tx_pause;
  be64 reset;
  be64 sqetest;
} statscl_portcl_mac_ctrl_stats_t;

/* Lookup-unit counters of one layer. Wire format. */
typedef struct statscl_portcl_lu_layer_stats_t {
  be64 ucast;
  be64 bcast;
  be64 mcast;
} statscl_portcl_lu_layer_stats_t;

/* Statistics of one Ethernet port, from the statistics client. Wire format. */
typedef struct statscl_portcl_stats_msg_t {
  be32 ifidx;
  be32 last_clear; /* seconds since 1970; 0 is never */
  struct {
    statscl_portcl_mac_pktflow_stats_t pktflow;
    statscl_portcl_mac_error_stats_t errors;
    statscl_portcl_mac_ctrl_stats_t ctrl;
  } mac;
  struct {
    statscl_portcl_lu_layer_stats_t l2;
    statscl_portcl_lu_layer_stats_t l3;
  } lu;
  be32 sts; /* status of the provider */
  be32 pad;
} statscl_portcl_stats_msg_t;
static_assert(sizeof(statscl_portcl_stats_msg_t) == 688, "wire size");
static_assert(offsetof(statscl_portcl_stats_msg_t, mac.pktflow.byte_rate_rx) == 72, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, mac.pktflow.egress_pkts) == 88, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, mac.pktflow.trunk_rx) == 184, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, mac.pktflow.byte_rate_tx) == 264, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, mac.errors.input_errors) == 408, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, mac.errors.cos7_outlost) == 560, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, mac.errors.deffered) == 592, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, mac.ctrl.sqetest) == 624, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, lu.l3) == 656, "wire offset");
static_assert(offsetof(statscl_portcl_stats_msg_t, sts) == 680, "wire offset");

/* The statistics client, opened by name. */
#define STATCL_LIBRARY "libstatcl.so"

/*
 * "statcl_get_port_client_stats" and "statcl_get_port_client_snmp_stats": fill the caller's zeroed record, `ifidx`
 * included. 0 is success.
 */
typedef int32 (*statcl_get_port_client_stats_fn)(if_index_t if_index, statscl_portcl_stats_msg_t* stats);

/* The statistics client's own printer of a port's traffic lines; `detail` not zero adds lines. Linked, not opened. */
void pm_cli_ethernet_intf_stats_print(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats, uint32 detail);

#ifdef __cplusplus
}
#endif
#endif
