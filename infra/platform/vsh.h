/* Functions of the command shell besides the output channel: prompts and its own error texts. */
#ifndef PLATFORM_VSH_H
#define PLATFORM_VSH_H

#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Accepts (1) or refuses (0) what the user typed. */
typedef uint32 (*vsh_verify_fn_t)(const char* answer);

/* A question for the user. Texts are owned by the caller. */
typedef struct vsh_user_input_info_t {
  const char* prompt;
  const char* default_input; /* the answer of an empty line                    */
  const char* notty_input;   /* the answer assumed when there is no terminal   */
  int32 max_len;             /* longest answer in characters                   */
  int32 timeout_secs;        /* 0: wait for ever                               */
  vsh_verify_fn_t verify_fn;
  paraminfo_t* pinfo;
  uint32 debug_flag;
  uint32 single_char;
  uint32 echo_mode;
  uint32 bind_flag;
  boolean display_status;
} vsh_user_input_info_t;

/* Asks the user; the answer, terminated, goes into `answer` (max_len + 1 bytes). Returns 0 when one was read. */
int32 vsh_util_user_input_get(vsh_user_input_info_t* question, char* answer);

/* Exactly 1 when the user of the command is restricted to some VSANs. */
uint32 vsh_is_user_vsan_restricted(const paraminfo_t* param);

enum {
  VSH_MTS_ERROR_REQUEST = 1,    /* a listing or a clear request failed  */
  VSH_MTS_ERROR_PORT_CONFIG = 2 /* a port-configuration query failed */
};

/* Prints the shell's own text for a transport failure; `mts_errno` as mts_errno_get() gives it. */
void vsh_print_mts_error_message(int32 kind, int32 mts_errno);

#ifdef __cplusplus
}
#endif
#endif
