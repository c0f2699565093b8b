/* The port manager: the record of a port, and the client calls that request it. */
#ifndef PLATFORM_PORT_MANAGER_H
#define PLATFORM_PORT_MANAGER_H

#include "platform/if_index.h"
#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "platform/syserr.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Port attributes as numbers shared with the service; texts in pm/port_attributes.h. */
typedef uint32 pm_port_mode_t; /* one bit for each mode */
typedef uint32 pm_port_service_state_t;
typedef uint32 pm_port_type_t;
typedef uint8 pm_port_beacon_mode_t;
typedef uint8 pm_port_reserve_state_t;
typedef uint16 port_flow_ctrl_t;
typedef uint8 pm_port_bb_scn_cfg_t;
typedef uint8 pm_port_rate_mode_t;
typedef uint8 pm_port_ignore_t;
typedef uint8 pm_port_trunking_mode_t;
typedef uint32 pm_b2b_credit_t;
typedef uint32 pm_b2b_credit_multiplier_t;
typedef uint32 pm_b2b_performance_buffer_t;
typedef uint16 pm_b2b_recv_data_fld_size_t;
typedef uint8 pm_port_encap_t;
typedef uint32 pm_port_speed_t; /* Mbit/s, with special small codes */
typedef uint32 pm_port_promiscuous_mode_t;
typedef uint32 pm_gige_auto_negotiate_t;
typedef uint8 pm_port_snmp_trap_state_t;
typedef uint32 pm_port_track_mode_t;
typedef uint32 pm_port_sticky_down_link_failure_t;
typedef uint32 pm_delayed_trap_state_t;
typedef uint8 pm_port_state_t;
typedef uint8 pm_port_state_reason_t;

/* Port modes, with the words of their texts. */
enum {
  PM_PORT_MODE_AUTO = 0x00000001,
  PM_PORT_MODE_SD = 0x00000002,
  PM_PORT_MODE_E = 0x00000004,
  PM_PORT_MODE_TE = 0x00000008,
  PM_PORT_MODE_TL = 0x00000010,
  PM_PORT_MODE_F = 0x00000020,
  PM_PORT_MODE_FL = 0x00000040, /* a loop; two more loop modes follow */
  PM_PORT_MODE_FX = 0x00000060, /* F or FL */
  PM_PORT_MODE_IPS = 0x00000200,
  PM_PORT_MODE_ISCSI = 0x00000400,
  PM_PORT_MODE_NP = 0x00004000,
  PM_PORT_MODE_ST = 0x00008000,
  PM_PORT_MODE_ACCESS = 0x00080000, /* shows as "FA", which has the same value */
  PM_PORT_MODE_TRUNK = 0x00100000,
  PM_PORT_MODE_PVLAN_HOST = 0x00400000,
  PM_PORT_MODE_PVLAN_PROMISCUOUS = 0x00800000,
  PM_PORT_MODE_FABRIC = 0x02000000, /* to a satellite unit */
  PM_PORT_MODE_TF = 0x04000000,
  PM_PORT_MODE_TNP = 0x08000000
};

enum { PM_PORT_STATE_UP = 1, PM_PORT_STATE_DOWN = 2 };

/* State reasons that displays pick; the whole vocabulary has its texts in pm/port_attributes.h. */
enum { PM_REASON_NONE = 2, PM_REASON_ERROR_DISABLED = 5, PM_REASON_INACTIVE = 11, PM_REASON_ADMIN_DOWN = 12 };

enum { PM_PORT_DUPLEX_FULL = 1, PM_PORT_DUPLEX_HALF = 2, PM_PORT_DUPLEX_AUTO = 3 };
enum { PM_PORT_MDIX_ON = 1 };
enum { PM_PHY_LAYER_FC = 1 }; /* phy_port_layer of a channel that carries Fibre Channel */

/* Sides of the flow-control bits, and the values of either side. */
enum { PM_FLOW_CTRL_RECEIVE = 0x000A, PM_FLOW_CTRL_SEND = 0x0005 };
enum { PM_FLOW_CTRL_ON = 0x0003, PM_FLOW_CTRL_DESIRED = 0x000C };

/* Storm-control setting of one traffic class. Wire format. */
typedef struct pm_port_storm_control_t {
  uint8 mode;
  uint8 level;         /* percent of the line rate */
  be16 level_fraction; /* hundredths of a percent  */
} pm_port_storm_control_t;
static_assert(sizeof(pm_port_storm_control_t) == 4, "wire size");

enum { PM_STORM_BROADCAST = 0, PM_STORM_MULTICAST = 1, PM_STORM_UNICAST = 2, PM_STORM_CLASSES = 3 };

/* The binding of a virtual Fibre Channel interface. Wire format. */
typedef struct pm_vfc_bind_data_t {
  be32 vfc_type;
  uint8 vfc_remote_mac[6];
  uint8 padding[2];
  be32 vfc_eth_ifindex;
} pm_vfc_bind_data_t;
static_assert(sizeof(pm_vfc_bind_data_t) == 16, "wire size");

enum {
  PM_PORT_NAME_BYTES = 81, /* not terminated when all are used                         */
  PM_WWN_BYTES = 8,        /* the last six are the burned-in MAC address               */
  PM_MAC_BYTES = 6
};

/* One port as the port manager describes it: configured (admin) and operational (oper) attributes. Wire format. */
typedef struct pm_port_info_ {
  be32 if_index;
  be32 status;                        /* of this record; 0 is good */
  char port_name[PM_PORT_NAME_BYTES]; /* the configured description */
  be32 admin_port_mode;
  uint8 is_admin_port_mode_default;
  be32 admin_port_speed;     /* Mbit/s; 0 is auto */
  be16 admin_port_flow_ctrl; /* 0x000A receive side, 0x0005 send side */
  uint8 admin_port_state;
  uint8 admin_trunking_mode;
  uint8 admin_beacon_mode;
  uint8 admin_port_encap;
  be16 admin_port_link_debounce; /* ms; 0 is off */
  be16 admin_rxbufsize;          /* interface MTU, bytes */
  be32 bb_credit_model;
  be32 admin_rxbbcredit;
  be32 admin_rxbbcredit_mode_e;
  be32 admin_rxbbcredit_mode_fx;
  be32 admin_rxbuf_performance_buffers;
  be16 phy_port_index;
  uint8 phy_port_layer; /* kind 4: 1 suppresses the Ethernet displays */
  uint8 port_wwn[PM_WWN_BYTES];
  be32 fc_id;
  be32 port_vsan;
  be32 oper_port_mode;
  be32 oper_port_speed; /* Mbit/s */
  be16 oper_port_flow_ctrl;
  uint8 oper_port_state; /* 1 is up */
  uint8 oper_state_reason;
  uint8 oper_trunking_mode;
  be32 reset_cntr; /* interface resets */
  uint8 oper_phy_port_enable_state;
  be32 oper_rxbbcredit;
  be32 oper_txbbcredit;
  be32 oper_rxbuf_performance_buffers;
  uint8 port_osm_mode;
  uint8 port_bb_scn;
  uint8 port_module_type;
  uint8 port_tx_type;                /* transmitter type */
  be32 is_part_of_bundle;            /* boolean: member of a port-channel */
  be32 bundle_if_index;              /* the port-channel it belongs to */
  be32 link_status_last_change_sec;  /* seconds since 1970; 0 is never */
  be32 link_status_last_change_usec; /* microseconds */
  be32 snmp_link_up_down_trap_enable;
  be32 admin_port_promiscuous_mode;
  be32 admin_port_auto_negotiate;
  uint8 oper_port_duplex;
  uint8 admin_port_duplex;
  uint8 is_fcot_present; /* transceiver present */
  uint8 not_first_time_port_bringup;
  be32 cfg_port_vsan;
  be32 oper_port_vsan;
  be32 admin_ec_rxbbcredit;
  uint8 is_dynamic_vsan;
  uint8 admin_port_rate_mode;
  uint8 oper_port_rate_mode;
  be32 perf_buf_n_credit_mult_supported;
  be32 service_state;
  uint8 admin_bb_scn_cfg;
  uint8 reserved[8];
  be32 port_type;
  uint8 padding1[3];
  be32 sfp_initializing_state;
  be32 admin_port_delay;     /* tens of microseconds */
  be32 admin_port_bandwidth; /* Kbit/s */
  pm_port_storm_control_t admin_port_storm_control[PM_STORM_CLASSES];
  uint8 router_mac[PM_MAC_BYTES]; /* used when the interface is routed */
  be32 admin_si_vlan_id;          /* 802.1Q VLAN of a sub-interface; 0 is none */
  be16 admin_mdix_mode;           /* 1 is auto-MDIX on */
  be32 span_mode;                 /* switchport monitor */
  be32 bound_ifindex;             /* what a virtual Ethernet interface is bound to; 0 is none */
  pm_vfc_bind_data_t vfc_bind_data;
  uint8 admin_port_reserve_state;
  uint8 padding2[3];
  be32 admin_sticky_down_state;
  be32 admin_lf_num_flaps;
  be32 admin_lf_duration;
} pm_port_info_t;
static_assert(sizeof(pm_port_info_t) == 328, "wire size");
static_assert(offsetof(pm_port_info_t, port_name) == 8, "wire offset");
static_assert(offsetof(pm_port_info_t, admin_port_mode) == 89, "wire offset");
static_assert(offsetof(pm_port_info_t, admin_port_speed) == 94, "wire offset");
static_assert(offsetof(pm_port_info_t, admin_port_flow_ctrl) == 98, "wire offset");
static_assert(offsetof(pm_port_info_t, admin_rxbufsize) == 106, "wire offset");
static_assert(offsetof(pm_port_info_t, phy_port_layer) == 130, "wire offset");
static_assert(offsetof(pm_port_info_t, port_wwn) == 131, "wire offset");
static_assert(offsetof(pm_port_info_t, oper_port_mode) == 147, "wire offset");
static_assert(offsetof(pm_port_info_t, oper_port_state) == 157, "wire offset");
static_assert(offsetof(pm_port_info_t, reset_cntr) == 160, "wire offset");
static_assert(offsetof(pm_port_info_t, is_part_of_bundle) == 181, "wire offset");
static_assert(offsetof(pm_port_info_t, link_status_last_change_sec) == 189, "wire offset");
static_assert(offsetof(pm_port_info_t, oper_port_duplex) == 209, "wire offset");
static_assert(offsetof(pm_port_info_t, admin_port_rate_mode) == 226, "wire offset");
static_assert(offsetof(pm_port_info_t, port_type) == 245, "wire offset");
static_assert(offsetof(pm_port_info_t, admin_port_delay) == 256, "wire offset");
static_assert(offsetof(pm_port_info_t, router_mac) == 276, "wire offset");
static_assert(offsetof(pm_port_info_t, admin_mdix_mode) == 286, "wire offset");
static_assert(offsetof(pm_port_info_t, span_mode) == 288, "wire offset");
static_assert(offsetof(pm_port_info_t, vfc_bind_data) == 296, "wire offset");
static_assert(offsetof(pm_port_info_t, admin_lf_duration) == 324, "wire offset");

/* Listing of interfaces, the answer to pm_get_if_index_listing(). Wire format. */
typedef struct pm_if_index_listing_res_payload_t {
  be32 num_if_index; /* entries of four bytes follow */
} pm_if_index_listing_res_payload_t;

/*
 * Asks for the records of a range of ports, with a time-out in seconds. The two words after the queue are 1. On success
 * returns 0 and stores the number of records and a heap block of them that the caller frees. -1 is a transport failure
 * with the reason in mts_errno_get(); every other value is a system error. On failure *records is null.
 */
int32 pm_cmi_get_port_config(mts_q_handle_t q, uint32 version, uint32 instance, const if_index_range_t* range,
                             uint32* count, pm_port_info_t** records, int32 timeout);

/*
 * Interfaces tied to this one by port tracking. On success returns 0 and stores a heap block that the caller frees:
 * 8 bytes, the count (32 bits), the interface indexes (32 bits each), zero-padded to 256 of them; all big-endian.
 */
int32 pm_cmi_get_tracked_port_if_list(mts_q_handle_t q, if_index_t if_index, void** list, int32 timeout);

/*
 * Asks for the interfaces of a kind. On success returns 0 and fills `answer`, a message that holds a listing and that
 * the caller drops. Otherwise -1 with the reason in mts_errno_get().
 */
int32 pm_get_if_index_listing(if_index_type_t type, mts_q_handle_t q, mts_msg_ref_t* answer, int32 timeout);

/* Request whether interfaces may be used, created or deleted; num_range pairs follow. Wire format. */
typedef struct pm_cli_if_index_verify_req_payload_t {
  be32 is_create; /* boolean */
  be32 is_delete; /* boolean */
  be32 num_range;
} pm_cli_if_index_verify_req_payload_t;
static_assert(sizeof(pm_cli_if_index_verify_req_payload_t) == 12, "wire size");

/* A pair of the request, bounds included. Wire format. */
typedef struct pm_port_range_t {
  be32 if_index_low;
  be32 if_index_high;
} pm_port_range_t;
static_assert(sizeof(pm_port_range_t) == 8, "wire size");

/* Its answer. Wire format. */
typedef struct pm_cli_if_index_verify_res_payload_t {
  be32 status; /* 0 is success */
} pm_cli_if_index_verify_res_payload_t;
static_assert(sizeof(pm_cli_if_index_verify_res_payload_t) == 4, "wire size");

/* The same listing of the startup configuration below `uri_prefix`. */
int32 pm_get_startup_if_index_listing(const char* uri_prefix, if_index_type_t type, mts_q_handle_t q,
                                      mts_msg_ref_t* answer, int32 timeout);

/* The service access point of the port manager that owns an interface. */
uint32 pm_get_mts_sap(if_index_t if_index);

/* Asks for the ports of a range. On success returns 0 and fills `answer`, which the caller drops; otherwise a system
 * error. */
int32 pm_get_port_info_range(mts_q_handle_t q, if_index_t low, if_index_t high, mts_msg_ref_t* answer);

/* Takes the records out of that answer: a heap block that the caller frees, and their number. 0 is success. */
int32 pm_parse_get_port_info_range(const mts_msg_ref_t* answer, uint32* num_ports, pm_port_info_t** ports);

/*
 * Creates (`create` 1) or deletes (0) every interface of the ranges, with a time-out in seconds. Returns 0 or a system
 * error.
 */
uint32 pm_cli_config_sub_interface(mts_q_handle_t q, uint32 create, interface_mask_t mask, const intf_range_t* ranges,
                                   uint32 timeout);
uint32 pm_cli_config_loopback_interface(mts_q_handle_t q, uint32 create, interface_mask_t mask,
                                        const intf_range_t* ranges, uint32 timeout);

#ifdef __cplusplus
}
#endif
#endif
