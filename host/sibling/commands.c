/* The commands of this library. */
#include "pmsh/commands.h"

#include "pmcli/displays.h"
#include "sibling/detailed_block.h"
#include "sibling/port_capabilities.h"
#include "sibling/port_counters.h"
#include "sibling/transceivers.h"
#include "sibling/vlans.h"

/* Kinds of interface. */
#define PORTS IF_MASK_ETHERNET
#define ROUTED_AND_SATELLITE_PORTS (IF_MASK_ETHERNET_L3 | IF_MASK_SATELLITE)
#define ALL_PORTS (PORTS | ROUTED_AND_SATELLITE_PORTS)
#define FIBRE_CHANNEL_PORTS (IF_MASK_FC | IF_MASK_BAY | IF_MASK_EXTERNAL_FC)
#define OTHER_OPTICS (ROUTED_AND_SATELLITE_PORTS | FIBRE_CHANNEL_PORTS)
#define CHANNELS (IF_MASK_PORT_CHANNEL | IF_MASK_ETH_PORT_CHANNEL)
#define VIRTUAL IF_MASK_VETHERNET

static const pmsh_word_t kWords[] = {
    {"errored", "VLANs shut by an error"},
    {NULL, NULL},
};

static const pmsh_field_t kVlans[] = {
    {"vlan_id", SIBLING_VLAN_ID, PMSH_NUMBER, NULL, "Number of the VLAN"},
    {"vlan_name", SIBLING_VLAN_NAME, PMSH_TEXT, NULL, "Name of the VLAN"},
    {"vlan_status", SIBLING_VLAN_STATUS, PMSH_TEXT, NULL, "Whether the VLAN is active or shut"},
    {"vlan_kind", SIBLING_VLAN_KIND, PMSH_TEXT, NULL, "Kind of the VLAN"},
    {NULL, 0, PMSH_TEXT, NULL, NULL},
};

#define REPLACE(written, function, kinds_of_it, more_flags) \
  { .words = written, .handler = function, .kinds = kinds_of_it, .flags = PMSH_REPLACES | more_flags }

#ifdef __GNUC__
__attribute__((visibility("default")))
#endif
const pmsh_command_t pmsh_commands[] = {
    {
        .words = "show vlan",
        .help = "VLANs of the switch",
        .handler = "sibling_show_vlans",
        .display = "vlans",
        .fields = kVlans,
        .flags = PMSH_LIST,
    },
    {
        .words = "show interface [RANGE] trunk errored",
        .help = "VLANs disabled on trunks by an error",
        .handler = "sibling_show_errored_vlans",
        .kinds = ALL_PORTS | CHANNELS,
        .header = "sibling_show_errored_vlans_header",
        .command_id = 97,
        .display = "trunk_errored",
        .fields = sibling_errored_vlans_fields,
        .word_helps = kWords,
        .flags = PMSH_NO_SUB_INTERFACES,
    },
    REPLACE("show interface [RANGE] capabilities", "sibling_show_port_capabilities", ALL_PORTS, 0),
    REPLACE("show interface [RANGE] detailed", "sibling_show_detailed", ALL_PORTS | CHANNELS | VIRTUAL, 0),
    REPLACE("show interface [RANGE] counters detailed all", "sibling_show_all_counters", ALL_PORTS | CHANNELS | VIRTUAL,
            0),
    REPLACE("show interface [RANGE] counters storm-control", "sibling_show_storm_control",
            ALL_PORTS | CHANNELS | VIRTUAL, 0),

    /* The command library shows megabits under MB/s, and only some ports. */
    REPLACE("show interface [RANGE] counters brief", "sibling_show_rates", ALL_PORTS | CHANNELS, 0),

    /* The command library shows the transceivers of layer-2 ports as text, and knows no other ports. */
    REPLACE("show interface [RANGE] transceiver", "sibling_show_transceiver", PORTS, PMSH_STRUCTURED_ONLY),
    REPLACE("show interface [RANGE] transceiver", "sibling_show_transceiver", OTHER_OPTICS, 0),
    REPLACE("show interface [RANGE] transceiver details", "sibling_show_transceiver", PORTS, PMSH_STRUCTURED_ONLY),
    REPLACE("show interface [RANGE] transceiver details", "sibling_show_transceiver", OTHER_OPTICS, 0),
    REPLACE("show interface [RANGE] transceiver calibrations", "sibling_show_transceiver_calibration", PORTS,
            PMSH_STRUCTURED_ONLY),
    REPLACE("show interface [RANGE] transceiver calibrations", "sibling_show_transceiver_calibration", OTHER_OPTICS, 0),
    {0},
};
