/* Facts about this machine: the chassis, its cards and its run-time parameters. */
#ifndef PLATFORM_PLATFORM_DATA_H
#define PLATFORM_PLATFORM_DATA_H

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Chassis types with special behaviour. 10, 11, 17 and 19 to 24 are the Ethernet-switch family. */
enum {
  CHASSIS_UNKNOWN = 0,
  CHASSIS_10 = 10,
  CHASSIS_11 = 11,
  CHASSIS_17 = 17, /* management port without gigabit speed; kernel devices count from 1 */
  CHASSIS_19 = 19,
  CHASSIS_20 = 20,
  CHASSIS_21 = 21,
  CHASSIS_22 = 22, /* two management devices */
  CHASSIS_23 = 23,
  CHASSIS_24 = 24
};

/* The chassis type. Returns 0, or a system error and leaves `type` as it was. */
int32 pdb_get_chassis_type(uint32* type);

/* Kernel devices of the management ports; at most 15 characters and the end. */
typedef struct platform_runtime_param_t {
  char mgmt_eth_intf_name[16];
  char mgmt_eth_intf_name2[16];
} platform_runtime_param_t;

enum { PLATFORM_RUNTIME_PARAMS = 32 };

/* One entry for each platform; this machine's is number get_platform_runtime_index(). */
extern platform_runtime_param_t platform_runtime_param_array[PLATFORM_RUNTIME_PARAMS];
uint32 get_platform_runtime_index(void);

typedef struct platform_info_t {
  uint32 num_slots;
} platform_info_t;

/* Size of the machine. Returns 0 or a system error. */
int32 get_platform_info(platform_info_t* info);

typedef struct card_module_info_t {
  uint32 card_type;
} card_module_info_t;

/* The card that carries an interface. Returns 0 or a system error. */
int32 get_card_module_info(if_index_t if_index, card_module_info_t* info);

/* Whether a card type belongs to a family of line cards: not zero is yes. */
boolean pm_is_tamber_lindo_linecard(uint32 card_type);
boolean pm_is_corvid_linecard(uint32 card_type);

/* Whether the module in a slot shares out resources. The key is slot * 256 + 2. Not zero is yes. */
boolean pdb_is_module_tamber(uint32 module_key);

/* The virtual device context of the running command. */
uint32 sysmgr_vdc_get(void);

#ifdef __cplusplus
}
#endif
#endif
