/*
 * Numbers with which the shell calls the library: the command ids of displays, and other values of a parameter block
 * (platform/paraminfo.h) or of a handler's result.
 *
 * Named in other headers: supervisor states, user modes, prc_mode, parameter types and the token ids of interface
 * ranges in platform/paraminfo.h; kinds of interface (IF_TYPE_...) in platform/if_index.h; layers in
 * platform/interface_manager.h; port modes and states in platform/port_manager.h; errors of the port manager in
 * platform/syserr.h.
 */
#ifndef PMCLI_DISPLAYS_H
#define PMCLI_DISPLAYS_H

#include "platform/if_index.h"
#include "platform/interface_manager.h"
#include "platform/paraminfo.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"

/*
 * Command ids, as `command_id` of a parameter block. Header handlers (pmcli/headers.h) and show handlers
 * (pmcli/command.h) take the same ids.
 *
 * "Of a module": argument 1 is a PARAM_TYPE_UINT32, a module number from 1. "Of VLANs": argument 1 is a
 * PARAM_TYPE_INT_RANGES. "Header only": the rows belong to another library, and the show handler of Ethernet ports
 * prints "Option not supported", as for "no display" and for ids that are not listed. The in-band interface shows its
 * detailed view under every id that pm_cli_show_inband_port_config() does not name.
 */
enum {
  DISPLAY_DETAIL = 1,                     /* detailed view */
  DISPLAY_STATUS = 2,                     /* status table */
  DISPLAY_COUNTERS = 3,                   /* block of counters: management port and in-band interface only */
  DISPLAY_DESCRIPTION = 4,                /* description table */
  DISPLAY_BRIEF = 5,                      /* brief table */
  DISPLAY_TRANSCEIVER = 6,                /* transceiver, with its diagnostics in short */
  DISPLAY_COUNTERS_BRIEF = 7,             /* rates in brief; of a loopback its block of counters */
  DISPLAY_NOTHING_8 = 8,                  /* prints nothing */
  DISPLAY_TRANSCEIVER_CALIBRATION = 9,    /* transceiver, with its calibration constants */
  DISPLAY_TRANSCEIVER_DETAIL = 10,        /* transceiver, with its diagnostics and their thresholds */
  DISPLAY_CAPABILITIES = 13,              /* capabilities: management port and Ethernet port-channels only */
  DISPLAY_NOTHING_14 = 14,                /* prints nothing */
  DISPLAY_NOTHING_15 = 15,                /* prints nothing; a loopback refuses it */
  DISPLAY_ERRORS_FIRST = 18,              /* error counters, first table */
  DISPLAY_STORM_CONTROL = 19,             /* storm-control counters; header only */
  DISPLAY_TRUNK_COUNTERS = 20,            /* trunk counters */
  DISPLAY_DEBOUNCE = 22,                  /* link debounce table: Ethernet-class ports (kind 2) only */
  DISPLAY_FLOW_CONTROL = 23,              /* flow-control table */
  DISPLAY_STATUS_ADMIN_DOWN = 24,         /* status table, ports that are administratively down */
  DISPLAY_ERROR_DISABLED = 25,            /* error-disabled status, ports that are error-disabled */
  DISPLAY_STATUS_INACTIVE = 26,           /* status table, inactive ports */
  DISPLAY_STATUS_OF_MODULE = 27,          /* status table, of a module */
  DISPLAY_STATUS_UP = 28,                 /* status table, ports that are up */
  DISPLAY_TRUNK_DETAIL = 29,              /* switchport-style view of trunks, with their VLANs */
  DISPLAY_TRUNK_DETAIL_OF_MODULE = 30,    /* the same, of a module */
  DISPLAY_TRUNK_DETAIL_OF_VLANS = 31,     /* the same, of VLANs: trunks whose native VLAN is one of them */
  DISPLAY_STATUS_OF_MODULE_32 = 32,       /* variant of DISPLAY_STATUS_OF_MODULE */
  DISPLAY_TRUNK_DETAIL_OF_MODULE_33 = 33, /* variant of DISPLAY_TRUNK_DETAIL_OF_MODULE */
  DISPLAY_FLOW_CONTROL_OF_MODULE = 34,    /* flow-control table, of a module */
  DISPLAY_FLOW_CONTROL_OF_MODULE_35 = 35, /* variant of DISPLAY_FLOW_CONTROL_OF_MODULE */
  DISPLAY_MAC_ADDRESS = 36,               /* MAC address table */
  DISPLAY_TRUNK_STATUS_37 = 37,           /* variant of DISPLAY_TRUNK_STATUS; header only */
  DISPLAY_TRUNK_STATUS = 38,              /* trunk status table, ports configured as trunks */
  DISPLAY_TRUNK_ALLOWED_VLANS = 39,       /* VLANs allowed on trunks */
  DISPLAY_TRUNK_FORWARDING_VLANS = 40,    /* VLANs in which spanning tree forwards on trunks */
  DISPLAY_NOTHING_OF_MODULE_42 = 42,      /* of a module; prints nothing */
  DISPLAY_NOTHING_OF_MODULE_43 = 43,      /* of a module; prints nothing */
  DISPLAY_RECEIVED = 44,                  /* received traffic */
  DISPLAY_RECEIVED_45 = 45,               /* variant of DISPLAY_RECEIVED, not of the management port */
  DISPLAY_RECEIVED_46 = 46,               /* variant of DISPLAY_RECEIVED, not of the management port */
  DISPLAY_SENT = 47,                      /* sent traffic */
  DISPLAY_SENT_48 = 48,                   /* variant of DISPLAY_SENT, not of the management port */
  DISPLAY_SENT_49 = 49,                   /* variant of DISPLAY_SENT, not of the management port */
  DISPLAY_ERRORS_FIRST_OF_MODULE = 50,    /* error counters, first table, of a module */
  DISPLAY_ERRORS_FIRST_OF_MODULE_51 = 51, /* variant of DISPLAY_ERRORS_FIRST_OF_MODULE */
  DISPLAY_ERRORS_SECOND = 52,             /* error counters, second table */
  DISPLAY_ERRORS_SECOND_53 = 53,          /* variant of DISPLAY_ERRORS_SECOND, not of the management port */
  DISPLAY_ERRORS_SECOND_54 = 54,          /* variant of DISPLAY_ERRORS_SECOND, not of the management port */
  DISPLAY_ERRORS_THIRD = 55,              /* error counters, third table */
  DISPLAY_ERRORS_THIRD_56 = 56,           /* variant of DISPLAY_ERRORS_THIRD, not of the management port */
  DISPLAY_ERRORS_THIRD_57 = 57,           /* variant of DISPLAY_ERRORS_THIRD, not of the management port */
  DISPLAY_COUNTERS_NONZERO = 58,          /* list of the counters that are not 0 */
  DISPLAY_COUNTERS_ALL = 59,              /* list of all counters; not of Ethernet ports, which print nothing */
  DISPLAY_ERROR_STATUS = 60,              /* error-disabled status, every port */
  DISPLAY_UNSUPPORTED_61 = 61,            /* no display; a loopback says that it is not available */
  DISPLAY_UNSUPPORTED_62 = 62,            /* no display */
  DISPLAY_UNSUPPORTED_63 = 63,            /* no display */
  DISPLAY_UNSUPPORTED_64 = 64,            /* no display */
  DISPLAY_UNSUPPORTED_65 = 65,            /* no display */
  DISPLAY_UNSUPPORTED_66 = 66,            /* no display */
  DISPLAY_ERRORS_FIRST_67 = 67,           /* variant of DISPLAY_ERRORS_FIRST; header only */
  DISPLAY_ERRORS_FIRST_68 = 68,           /* variant of DISPLAY_ERRORS_FIRST; header only */
  DISPLAY_ERRORS_FIRST_69 = 69,           /* variant of DISPLAY_ERRORS_FIRST; header only */
  DISPLAY_ERRORS_SECOND_70 = 70,          /* variant of DISPLAY_ERRORS_SECOND; header only */
  DISPLAY_ERRORS_SECOND_71 = 71,          /* variant of DISPLAY_ERRORS_SECOND; header only */
  DISPLAY_ERRORS_SECOND_72 = 72,          /* variant of DISPLAY_ERRORS_SECOND; header only */
  DISPLAY_ERRORS_THIRD_73 = 73,           /* variant of DISPLAY_ERRORS_THIRD; header only */
  DISPLAY_ERRORS_THIRD_74 = 74,           /* variant of DISPLAY_ERRORS_THIRD; header only */
  DISPLAY_ERRORS_THIRD_75 = 75,           /* variant of DISPLAY_ERRORS_THIRD; header only */
  DISPLAY_RECEIVED_76 = 76,               /* variant of DISPLAY_RECEIVED; header only */
  DISPLAY_RECEIVED_77 = 77,               /* variant of DISPLAY_RECEIVED; header only */
  DISPLAY_RECEIVED_78 = 78,               /* variant of DISPLAY_RECEIVED; header only */
  DISPLAY_SENT_79 = 79,                   /* variant of DISPLAY_SENT; header only */
  DISPLAY_SENT_80 = 80,                   /* variant of DISPLAY_SENT; header only */
  DISPLAY_SENT_81 = 81,                   /* variant of DISPLAY_SENT; header only */
  DISPLAY_NOTHING_82 = 82,                /* prints nothing */
  DISPLAY_STORM_CONTROL_83 = 83,          /* variant of DISPLAY_STORM_CONTROL; header only */
  DISPLAY_STORM_CONTROL_84 = 84,          /* variant of DISPLAY_STORM_CONTROL; header only */
  DISPLAY_TRUNK_STATUS_85 = 85,           /* variant of DISPLAY_TRUNK_STATUS; header only */
  DISPLAY_TRUNK_ALLOWED_VLANS_86 = 86,    /* variant of DISPLAY_TRUNK_ALLOWED_VLANS; header only */
  DISPLAY_TRUNK_FORWARDING_VLANS_87 = 87, /* variant of DISPLAY_TRUNK_FORWARDING_VLANS; header only */
  DISPLAY_TRUNK_STATUS_88 = 88,           /* variant of DISPLAY_TRUNK_STATUS; header only */
  DISPLAY_TRUNK_ALLOWED_VLANS_89 = 89,    /* variant of DISPLAY_TRUNK_ALLOWED_VLANS; header only */
  DISPLAY_TRUNK_FORWARDING_VLANS_90 = 90, /* variant of DISPLAY_TRUNK_FORWARDING_VLANS; header only */
  DISPLAY_TRUNK_STATUS_91 = 91,           /* variant of DISPLAY_TRUNK_STATUS; header only */
  DISPLAY_TRUNK_ALLOWED_VLANS_92 = 92,    /* variant of DISPLAY_TRUNK_ALLOWED_VLANS; header only */
  DISPLAY_TRUNK_FORWARDING_VLANS_93 = 93, /* variant of DISPLAY_TRUNK_FORWARDING_VLANS; header only */
  DISPLAY_TRUNK_STATUS_94 = 94,           /* variant of DISPLAY_TRUNK_STATUS; header only */
  DISPLAY_TRUNK_ALLOWED_VLANS_95 = 95,    /* variant of DISPLAY_TRUNK_ALLOWED_VLANS; header only */
  DISPLAY_TRUNK_FORWARDING_VLANS_96 = 96, /* variant of DISPLAY_TRUNK_FORWARDING_VLANS; header only */
  DISPLAY_TRUNK_ERRORED_VLANS = 97,       /* VLANs error-disabled on trunks; header only */
  DISPLAY_TRUNK_ERRORED_VLANS_98 = 98,    /* variant of DISPLAY_TRUNK_ERRORED_VLANS; header only */
  DISPLAY_TRUNK_ERRORED_VLANS_99 = 99,    /* variant of DISPLAY_TRUNK_ERRORED_VLANS; header only */
  DISPLAY_TRUNK_ERRORED_VLANS_100 = 100,  /* variant of DISPLAY_TRUNK_ERRORED_VLANS; header only */
  DISPLAY_ERRORED_VLAN_STATUS = 101,      /* status of errored VLANs; header only */
  DISPLAY_ERRORED_VLAN_STATUS_102 = 102,  /* the same, also of port-channels; header only */
  DISPLAY_IF_INDEX = 104,                 /* interface-index table: Ethernet-class ports (kind 2) only */
  DISPLAY_NOTHING_105 = 105,              /* prints nothing */
  DISPLAY_NOTHING_106 = 106               /* prints nothing */
};

/*
 * Bits of `interface_mask` (interface_mask_t): the kinds of interface that a parameter accepts. For port-channels and
 * virtual Ethernet interfaces pm_cli_if_index_enum_func() asks the port manager for kind 0.
 */
enum {
  IF_MASK_FC = 0x1,                    /* Fibre-Channel ports; names that begin with f */
  IF_MASK_ETHERNET = 0x2,              /* Ethernet-class ports, kind 2 */
  IF_MASK_ISCSI = 0x8,                 /* IP storage ports */
  IF_MASK_PORT_CHANNEL = 0x10,         /* port-channels of the older family */
  IF_MASK_MGMT = 0x80,                 /* management ports */
  IF_MASK_INBAND = 0x800,              /* the in-band interface */
  IF_MASK_LOOPBACK = 0x4000,           /* loopbacks */
  IF_MASK_UNLISTED_16 = 0x10000,       /* cannot be enumerated; not verified */
  IF_MASK_BAY = 0x40000,               /* Fibre-Channel ports; names that begin with b */
  IF_MASK_EXTERNAL_FC = 0x80000,       /* Fibre-Channel ports; names that begin with e */
  IF_MASK_ETH_PORT_CHANNEL = 0x100000, /* Ethernet port-channels */
  IF_MASK_VETHERNET = 0x200000,        /* virtual Ethernet interfaces */
  IF_MASK_ETHERNET_L3 = 0x800000,      /* Ethernet ports of either layer, kind 26 */
  IF_MASK_UNLISTED_24 = 0x1000000,     /* cannot be enumerated; not verified */
  IF_MASK_EXTERNAL = 0x2000000,        /* external interfaces, kind 254 */
  IF_MASK_SATELLITE = 0x10000000       /* ports of satellite units */
};

/* Results of callbacks and of configuration handlers, beside 0 and 1. */
enum {
  PM_CLI_FAILED = -1,         /* the transport, a service or the heap failed */
  PM_CLI_REFUSED = -10,       /* the command must not use these interfaces */
  PM_CLI_NOT_PERMITTED = -12, /* a user restricted to some VSANs may not change a port mode */
  PM_CLI_VSAN_DENIED = -13    /* the user's VSANs forbid one of the interfaces */
};

/* ---- Token ids of configuration commands, for pm_cli_set_port_config() ------------------------------------------- */

/* Keywords: the token of the argument after the range, or of the range itself when that is not TOKEN_CONF_INTERFACES.
 */
enum {
  TOKEN_SHUTDOWN = 3,
  TOKEN_OUT_OF_SERVICE = 5,
  TOKEN_ATTRIBUTE_31 = 9,
  TOKEN_PORT_DOWN_ON_LINK_FAILURE = 127,
  TOKEN_SWITCHPORT = 0x01030002 /* alone, or with a sub-command */
};

/* Sub-commands: the token of the argument after TOKEN_SWITCHPORT. */
enum {
  TOKEN_SWITCHPORT_NAME = 2, /* the text follows */
  TOKEN_SWITCHPORT_MODE = 4, /* a port mode follows (uint32), or TOKEN_MODE_BY_NUMBER and a port mode */
  TOKEN_SWITCHPORT_BEACON = 15,
  TOKEN_SWITCHPORT_SPEED = 16,
  TOKEN_SWITCHPORT_TRUNK_MODE = 22,
  TOKEN_SWITCHPORT_BB_CREDIT = 29,
  TOKEN_SWITCHPORT_RXBUFSIZE = 32,
  TOKEN_SWITCHPORT_ENCAP = 34,
  TOKEN_SWITCHPORT_MTU = 39,
  TOKEN_SWITCHPORT_PROMISCUOUS = 41,
  TOKEN_SWITCHPORT_ATTRIBUTE_36 = 45,
  TOKEN_SWITCHPORT_DUPLEX = 56,
  TOKEN_SWITCHPORT_IGNORE = 65,
  TOKEN_SWITCHPORT_ATTRIBUTE_44 = 68,
  TOKEN_SWITCHPORT_BB_SCN = 73,
  TOKEN_SWITCHPORT_DOT1Q_ETHERTYPE = 77, /* not implemented */
  TOKEN_SWITCHPORT_HOST = 80,            /* a macro */
  TOKEN_SWITCHPORT_MONITOR = 123,
  TOKEN_SWITCHPORT_ATTRIBUTE_84 = 129,
  TOKEN_SWITCHPORT_ATTRIBUTE_85 = 134
};

/* Words: the tokens of the arguments after a sub-command. */
enum {
  TOKEN_MODE_BY_NUMBER = 109,
  TOKEN_SPEED_AUTO = 17, /* 10, 100 ... are Mbit/s */
  TOKEN_SPEED_10 = 18,
  TOKEN_SPEED_100 = 19,
  TOKEN_SPEED_1000 = 20,
  TOKEN_SPEED_2000 = 21,
  TOKEN_SPEED_4000 = 67,
  TOKEN_SPEED_8000 = 75,
  TOKEN_AUTO_MAX = 71, /* after TOKEN_SPEED_AUTO; one of the next two follows */
  TOKEN_AUTO_MAX_2000 = 72,
  TOKEN_AUTO_MAX_4000 = 76,
  TOKEN_TRUNK_MODE_WORD = 23,            /* alone, or a mode from 1 to 3 follows */
  TOKEN_TRUNK_ENCAPSULATION_DOT1Q = 107, /* not implemented */
  TOKEN_CREDIT_DEFAULT = 30,
  TOKEN_CREDIT_COUNT = 31,   /* its own value is the count */
  TOKEN_CREDIT_MODE_FX = 47, /* the second argument after TOKEN_CREDIT_COUNT, as is the next */
  TOKEN_CREDIT_MODE_E = 48,
  TOKEN_PERFORMANCE_BUFFERS_1 = 49, /* alone, or a count follows; so the next two */
  TOKEN_PERFORMANCE_BUFFERS_2 = 50,
  TOKEN_PERFORMANCE_BUFFERS_3 = 52,
  TOKEN_CREDIT_EXTENDED = 53, /* TOKEN_CREDIT_EXTENDED_COUNT follows, with the count */
  TOKEN_CREDIT_EXTENDED_COUNT = 55,
  TOKEN_CREDIT_MULTIPLIER = 64, /* the multiplier follows */
  TOKEN_RXBUFSIZE_BYTES = 33,   /* its own value is a uint16 */
  TOKEN_ENCAP_NORMAL = 35,
  TOKEN_ENCAP_EISL = 36,
  TOKEN_ENCAP_INTERNAL = 37,
  TOKEN_MTU_BYTES = 40, /* its own value is a uint32 */
  TOKEN_PROMISCUOUS_ON = 42,
  TOKEN_PROMISCUOUS_OFF = 43,
  TOKEN_DUPLEX_AUTO = 57,
  TOKEN_DUPLEX_FULL = 58,
  TOKEN_DUPLEX_HALF = 59,
  TOKEN_BIT_ERRORS = 66,
  TOKEN_ATTRIBUTE_44_1 = 69,
  TOKEN_ATTRIBUTE_44_2 = 70
};

#endif
