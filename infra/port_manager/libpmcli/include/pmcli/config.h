/*
 * Settings of ports: the handler of the configuration commands, configuration macros, and results by port.
 *
 * Settings are applied by the port manager. Errors in a command are printed on the terminal before anything is
 * sent. Parameter blocks and all they point to stay the shell's.
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
 * Applies the one setting that the command's tokens (TOKEN_... in pmcli/displays.h) name to all interfaces of its
 * range, in one request to the port manager. The range is the first argument of type PARAM_TYPE_CONF_INTERFACES or
 * PARAM_TYPE_INTERFACES, an intf_range_t; the keyword is the token of the argument after it, or its own when that is
 * not TOKEN_CONF_INTERFACES; `no_flag` not zero is the "no" form. Asks the interface manager whether it knows the layer
 * of the interfaces for sub-commands of TOKEN_SWITCHPORT (kinds 22, 26 and 29, not in the "no" form), and the platform
 * for the card of a management port whose speed or duplex is set. TOKEN_SWITCHPORT_HOST runs a macro instead.
 *
 * Ports that refuse are reported together by error: a failed response on the output handle and the failed ranges to the
 * shell. A request that fails is printed.
 *
 * Returns
 * - 0 when a port accepted the setting, and when there was nothing to do: the command only asks for configuration text
 *   (`ascii_gen`), the out-of-service question was answered with no, the macro ran, or the setting is not implemented,
 *   which is printed;
 * - 1 for a null block; when the command was refused, which is printed; when the question about the shutdown of a
 *   management port was answered with no; when the request failed; and when no port accepted;
 * - PM_CLI_NOT_PERMITTED (-12) when a user restricted to some VSANs sets a port mode or a trunk mode, which is printed.
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
 * Decodes a TLV, in wire format and the caller's; its cfg_length bytes of value must be readable, and no more are
 * read. Bytes that are missing are 0. Stores type and length also for a type that is not known, the value only for one
 * that is. Returns 0, or 0x40290004: type not known, or a null pointer, which stores nothing. The types 68, 84 and 85,
 * which pm_cli_set_port_config() sends, are not known.
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
 * Runs the `num_libs` steps in their order and prints for each the ports that it failed on, by print_cfg_status(). A
 * step that fails prints "Command not successful." and does not end the macro; one that cannot be found prints "Command
 * not successful" and does. Libraries that were opened for a step are closed after it, its results freed.
 *
 * Returns 0, also after failures and, running nothing, when the command only asks for configuration text (`ascii_gen`);
 * 1 for a null block (silently) and for one without an argument with TOKEN_CONF_INTERFACES (printed).
 */
int32 pm_cli_run_macro(paraminfo_t* param, struct _lib_api* libapi, uint32 num_libs);

/*
 * A step: puts the ports of the command's range (the argument with TOKEN_CONF_INTERFACES) into access mode at the port
 * manager, with its user and session. `param` must not be null.
 *
 * Returns the port manager's result: 0 with the results as a block of malloc() that the caller frees, or -1 (transport)
 * or a system error with a null block, neither of which is printed. Else it stores nothing and returns, after the
 * reason was printed, 1 when the command has no range or the heap is exhausted, and PM_CLI_NOT_PERMITTED (-12) for a
 * user restricted to some VSANs.
 */
int32 pm_cli_set_eth_switchport_mode_access(paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports);

/*
 * Prints on the terminal the ports that failed, one a line with the text of its error, under a heading when there are
 * any; then an empty line in every case. `api_desc` says what was tried. The results are in wire format and stay the
 * caller's; null is an empty list.
 */
void print_cfg_status(const char* api_desc, pm_port_cfg_status_t* cfg_status, uint32 num_ports);

/*
 * Copies the failures of `from` to the ports that have none in `to`, matched by position; a failure in `to` is kept.
 * Both hold `num_ports` results and stay the caller's. A null array changes nothing.
 */
void merge_cfg_status(pm_port_cfg_status_t* to_cfg_status, pm_port_cfg_status_t* from_cfg_status, uint32 num_ports);

#ifdef __cplusplus
}
#endif
#endif
