/* The parameter block with which the shell calls a command handler. Native layout: it never travels. */
#ifndef PLATFORM_PARAMINFO_H
#define PLATFORM_PARAMINFO_H

#include "platform/bitset.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef uint64 interface_mask_t;  /* the kinds of interface that a parameter accepts, one bit each */
typedef uint32 param_type_t;      /* what `arg` points to */
typedef uint32 sysmgr_supstate_t; /* state of this supervisor */
typedef uint32 vsh_user_mode_state_t;

/* Values that the shell passes. The library only tests for the second state, the second mode and the show command. */
enum { SYSMGR_SUPSTATE_ACTIVE = 1, SYSMGR_SUPSTATE_STANDBY = 2 };
enum { VSH_USER_MODE_FULL = 0, VSH_USER_MODE_RESTRICTED = 2 }; /* restricted: the user may not see rates in brief */
enum { PRC_MODE_CONFIGURE = 1, PRC_MODE_SHOW = 3 };

/* Parameter types: the type of the object that `arg` points to. */
enum {
  PARAM_TYPE_UINT32 = 0x40100001,          /* uint32                */
  PARAM_TYPE_INT_RANGES = 0x40100008,      /* vsh_int_multi_range_t */
  PARAM_TYPE_CONF_INTERFACES = 0x40200001, /* intf_range_t        */
  PARAM_TYPE_INTERFACES = 0x40200002       /* intf_range_t          */
};

/* Token ids. */
enum {
  TOKEN_CONF_INTERFACES = 0x0D030001, /* the interface range of a configuration command */
  TOKEN_MOVE_INTERFACES = 0x0E030005  /* an interface-move request */
};

/* One parameter of the command. */
typedef struct param_arg_t {
  uint32 token_id;
  param_type_t type;
  interface_mask_t interface_mask;
  void* arg; /* the value; native, owned by the shell */
  param_type_t match_type;
} param_arg_t;

enum { PARAM_MAX_ARGS = 32, PARAM_MAX_RANGES = 64 };

/* A pair of interface indexes, bounds included. */
typedef struct vsh_intf_mono_range_t {
  if_index_t lower_if_index;
  if_index_t upper_if_index;
} vsh_intf_mono_range_t;

/* Interface ranges as the user named them. */
typedef struct intf_range_t {
  uint32 size; /* bytes of this record */
  uint32 range_count;
  int32 mask;
  vsh_intf_mono_range_t range[PARAM_MAX_RANGES];
} intf_range_t;
typedef intf_range_t vsh_intf_range_t;

typedef struct vsh_int_mono_range_t {
  uint32 lower_int;
  uint32 upper_int;
} vsh_int_mono_range_t;

/* Ranges of numbers, such as a list of VLANs. */
typedef struct vsh_int_multi_range_t {
  uint32 size; /* bytes of this record */
  uint32 range_count;
  vsh_int_mono_range_t range[PARAM_MAX_RANGES];
} vsh_int_multi_range_t;

/* The parameter block. The shell owns it and all it points to. */
typedef struct paraminfo_t {
  uint8 parameter_count;
  uint8 no_flag; /* 1: the "no" form of the command */
  uint8 vsh_debug_flag;
  uint32 ascii_gen; /* not zero: the handler is asked for configuration text only */
  mts_q_handle_t q;
  uint32 command_id;
  const char* vtyname; /* the user's terminal, null when there is none */
  const char* username;
  uint32 session_id;
  param_arg_t* arg_list[PARAM_MAX_ARGS];
  sysmgr_supstate_t sup_state;
  vsh_user_mode_state_t user_mode_state;
  uint32 prc_mode;         /* PRC_MODE_SHOW, or another for a command that may change something */
  vsan_bitset_t vsan_mask; /* VSANs that the user may see */
  uint32 user_perm_mask;
} paraminfo_t;
typedef paraminfo_t paraminfo_type;

#ifdef __cplusplus
}
#endif
#endif
