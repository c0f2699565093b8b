/*
 * Settings of ports: the handler behind the configuration commands, configuration macros, and results by port.
 *
 * Settings are applied by the port manager. What is wrong with a command is printed on the terminal before anything is
 * sent.
 */
#ifndef PMCLI_CONFIG_H
#define PMCLI_CONFIG_H

#include "platform/paraminfo.h"
#include "platform/port_config.h"
#include "platform/port_manager.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Applies the one setting that the command's tokens name to all interfaces of its range, in one request to the port
 * manager. Ports that refuse are reported together by error, as a failed response with the ranges. Returns 0 when a
 * port accepted the setting or there was nothing to do, 1 when the command or every port was refused, and -12 when a
 * user restricted to some VSANs may not change a port mode.
 */
int32 pm_cli_set_port_config(paraminfo_t* param);

/* ---- Settings as they travel ------------------------------------------------------------------------------------ */

/* A decoded value; native. The member is the one of the TLV's type. */
typedef union pm_port_cfg_value_t {
  pm_port_state_t port_state;
  pm_port_mode_t port_mode;
  pm_port_speed_t port_speed;
  pm_port_trunking_mode_t trunking_mode;
  pm_port_beacon_mode_t beacon_mode;
  pm_port_bb_scn_cfg_t bbscn_cfg;
  char port_name[PM_PORT_NAME_BYTES];
  pm_b2b_recv_data_fld_size_t rxbufsize;
  pm_b2b_credit_t rxbbcredit;
  uint32 mtu; /* bytes */
  pm_port_promiscuous_mode_t promiscuous_mode;
  uint8 port_duplex;
  pm_port_ignore_t ignore_param;
  pm_port_encap_t port_encap;
  pm_port_service_state_t service_state;
  pm_port_sticky_down_link_failure_t sticky_down_link_failure_state;
  uint8 byte;
  uint16 half_word;
  uint32 words[2];
  uint8 bytes[84];
} pm_port_cfg_value_t;
static_assert(sizeof(pm_port_cfg_value_t) == 84, "size of a decoded value");

/*
 * Takes a TLV apart; its cfg_length bytes of value must be readable, and no more are read. Bytes that are missing are
 * 0. Stores type and length also for a type that is not known. Returns 0 or 0x40290004: type not known, or a null
 * pointer.
 */
uint32 pm_decode_tlv(pm_cfg_tlv_t* p_payload, uint8* p_cfg_type, uint8* p_cfg_length, pm_port_cfg_value_t* p_cfg_value);

/* ---- Macros ----------------------------------------------------------------------------------------------------- */

/*
 * One step: applies its setting to every port of the command's range. Stores the results by port as a block of
 * malloc() that the runner frees, and their number. 0 is success.
 */
typedef int32 (*pm_macro_step_t)(paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports);

/* Where a step is found; owned by the caller. */
struct _lib_api {
  const char* api_desc; /* what the step does, for its failure lines            */
  const char* lib_name; /* library to open; null: the step is loaded already    */
  union {
    pm_macro_step_t function; /* when lib_name is null        */
    const char* name;         /* function to look up, when not */
  } api_info;
};

/*
 * Runs the steps in their order and prints for each the ports that it failed on. A step that fails does not end the
 * macro; one that cannot be found does. Returns 0, or 1 without a parameter block or an interface range.
 */
int32 pm_cli_run_macro(paraminfo_t* param, struct _lib_api* libapi, uint32 num_libs);

/*
 * A step: puts the ports of the command's range into access mode at the port manager. Returns its result, 1 when the
 * command has no range or the heap is exhausted, -12 for a user restricted to some VSANs.
 */
int32 pm_cli_set_eth_switchport_mode_access(paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports);

/* Prints the ports that failed, one a line, then an empty line. Null is an empty list. */
void print_cfg_status(const char* api_desc, pm_port_cfg_status_t* cfg_status, uint32 num_ports);

/* Takes over failures of `from` for ports that have none in `to`, matched by position. A null array changes nothing. */
void merge_cfg_status(pm_port_cfg_status_t* to_cfg_status, pm_port_cfg_status_t* from_cfg_status, uint32 num_ports);

#ifdef __cplusplus
}
#endif
#endif
