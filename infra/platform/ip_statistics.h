/* Statistics of interfaces that live in the IP stack and in the kernel: loopbacks and the management port. */
#ifndef PLATFORM_IP_STATISTICS_H
#define PLATFORM_IP_STATISTICS_H

#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* IP-layer statistics of one interface. Wire format. */
typedef struct ip_if_stats {
  be64 interval_start_time; /* timestamp_t */
  be32 interval;            /* seconds */
  uint8 padding[4];
  be64 in_pkts;
  be64 in_bytes;
  be64 in_pkts_ucast;
  be64 in_pkts_mcast;
  be64 in_pkts_bcast;
  be64 in_compressed;
  be64 in_errors;
  be64 in_frames;
  be64 in_overrun;
  be64 in_fifo;
  be64 out_pkts;
  be64 out_bytes;
  be64 out_pkts_ucast;
  be64 out_pkts_mcast;
  be64 out_pkts_bcast;
  be64 out_underruns;
  be64 out_errors;
  be64 out_collisions;
  be64 out_fifo;
  be64 out_carrier_errors;
  be64 in_pkts_discard;
  be64 out_pkts_discard;
  be64 unknown_proto_pkts;
} ip_if_stats;
static_assert(sizeof(ip_if_stats) == 200, "wire size");
static_assert(offsetof(ip_if_stats, in_pkts) == 16, "wire offset");
static_assert(offsetof(ip_if_stats, in_errors) == 64, "wire offset");
static_assert(offsetof(ip_if_stats, in_frames) == 72, "wire offset");
static_assert(offsetof(ip_if_stats, out_pkts) == 96, "wire offset");
static_assert(offsetof(ip_if_stats, out_errors) == 144, "wire offset");
static_assert(offsetof(ip_if_stats, out_carrier_errors) == 168, "wire offset");
static_assert(offsetof(ip_if_stats, unknown_proto_pkts) == 192, "wire offset");

/* The IP statistics library, opened by name. */
#define IP_STATS_LIBRARY "libip_stats.so"

/* "ip_get_loopback_counters": fills the caller's record. 1 is success, which is the opposite of most services. */
typedef int32 (*ip_get_loopback_counters_fn)(mts_q_handle_t q, if_index_t if_index, ip_if_stats* stats);

enum { PM_IF_STAT_HISTORY = 10 };

/* Management-interface statistics kept by the port manager; one layout on every machine. Wire format. */
typedef struct pm_if_stat {
  be32 rate_timer; /* handle of the rate timer */
  uint8 padding1[4];
  be64 interval_start_time; /* timestamp_t */
  be32 interval;            /* seconds */
  uint8 padding2[4];
  be64 in_pkts;
  be64 in_bytes;
  be64 in_bps; /* bytes per second, one minute average */
  be64 in_pkts_ucast;
  be64 in_pkts_mcast;
  be64 in_pkts_bcast;
  be64 out_pkts;
  be64 out_bytes;
  be64 out_bps; /* bytes per second, one minute average */
  be64 out_pkts_ucast;
  be64 out_pkts_mcast;
  be64 out_pkts_bcast;
  be64 interval_in_pkts;
  be64 interval_out_pkts;
  be64 interval_in_bytes;
  be64 interval_out_bytes;
  be32 in_pps;  /* packets per second */
  be32 out_pps; /* packets per second */
  be32 iod;     /* interface ordinal */
  uint8 padding3[4];
  be64 interval_in_pkts_prev[PM_IF_STAT_HISTORY];
  be64 interval_out_pkts_prev[PM_IF_STAT_HISTORY];
  be64 interval_in_bytes_prev[PM_IF_STAT_HISTORY];
  be64 interval_out_bytes_prev[PM_IF_STAT_HISTORY];
  be_int32 interval_secs_prev[PM_IF_STAT_HISTORY]; /* seconds */
} pm_if_stat;
static_assert(offsetof(pm_if_stat, interval_start_time) == 8, "wire offset");
static_assert(offsetof(pm_if_stat, in_pkts) == 24, "wire offset");
static_assert(offsetof(pm_if_stat, in_pps) == 152, "wire offset");
static_assert(offsetof(pm_if_stat, interval_in_pkts_prev) == 168, "wire offset");
static_assert(sizeof(pm_if_stat) == 528, "wire size");

/* Management-interface statistics. Fills the caller's record. Not zero is success. */
int32 pm_get_interface_counters(if_index_t if_index, mts_q_handle_t q, pm_if_stat* stats);

/* Counters of a kernel network device; one that 32 bits cannot hold is the largest value. Wire format. */
typedef struct pm_proc_net_dev_stats_t {
  be32 rx_packets;
  be32 tx_packets;
  be32 rx_bytes;
  be32 tx_bytes;
  be32 rx_errors;
  be32 tx_errors;
  be32 rx_dropped;
  be32 tx_dropped;
  be32 rx_multicast;
  be32 rx_compressed;
  be32 tx_compressed;
  be32 rx_frame_errors;
  be32 rx_fifo_errors;
  be32 tx_carrier_errors;
  be32 tx_fifo_errors;
  be32 tx_collisions;
} pm_proc_net_dev_stats_t;
static_assert(sizeof(pm_proc_net_dev_stats_t) == 64, "wire size");

/* Reads the kernel's counters of the device of this name into the caller's zeroed record. 0 is success. */
int32 pm_get_proc_net_dev_stats(const char* device, pm_proc_net_dev_stats_t* stats);

#ifdef __cplusplus
}
#endif
#endif
