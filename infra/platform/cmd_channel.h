/* The output channel of the running command: text for people and tagged values for programs. */
#ifndef PLATFORM_CMD_CHANNEL_H
#define PLATFORM_CMD_CHANNEL_H

#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The output handle of a command; opaque. */
typedef struct cmd_rx_handle_t cmd_rx_handle_t;

/* A value bound to its tag, as cmd_tuple() makes it; good for the next cmd_prt() only. */
typedef struct cmd_tuple_t cmd_tuple_t;

/*
 * Tuple ids. Bits 31..24 say how the value is read and rendered (below), bits 23..16 are the component (0x2A here),
 * bits 15..0 the tag of the field. Id 0 is a plain text without a tag.
 */
enum {
  CMD_TYPE_ENUM = 0x02,     /* uint32, rendered as a text by its tag  */
  CMD_TYPE_IF_INDEX = 0x0C, /* if_index_t, rendered as a name         */
  CMD_TYPE_MAC = 0x0F,      /* six bytes                              */
  CMD_TYPE_UINT32 = 0x14,   /* uint32, decimal                        */
  CMD_TYPE_UINT64 = 0x15,   /* uint64, decimal                        */
  CMD_TYPE_IPV4 = 0x1E,     /* four address bytes in network order    */
  CMD_TYPE_HEX32 = 0x22,    /* uint32, hexadecimal                    */
  CMD_TYPE_STRING = 0x30,   /* text, terminated                       */
  CMD_TYPE_FLOAT = 0x45     /* cmd_float_t                            */
};

/* Digits of a cmd_float_t before and after the point. */
typedef struct cmd_float_3ints_t {
  int32 whole;       /* the value truncated toward zero               */
  int32 decimal;     /* the fractional digits as a number, never < 0  */
  int32 nb_decimals; /* how many fractional digits                    */
} cmd_float_3ints_t;

/* A float of the structured output. */
typedef struct cmd_float_t {
  float fval;
  int32 encoding; /* always 0 */
  union {
    cmd_float_3ints_t ti;
  } u;
} cmd_float_t;

/* The shell's record of the ranges that failed. Owned by who created it until cmd_mrange_error_set(). */
typedef struct failed_ranges_t {
  int32 tid;  /* token id of the parameter that the ranges refer to */
  void* list; /* the ranges                                         */
  int32 len;  /* number of ranges                                   */
  int32 token_type;
  char* label;
} mrange_handle_t;

/* The output handle of a command; null when there is none. The same handle each time within one command. */
cmd_rx_handle_t* cmd_paraminfo_to_rxhandle(paraminfo_t* param);

/*
 * Binds a value to a tag for the cmd_prt() whose argument it is; at least 16 may be bound for one cmd_prt().
 * `value` has the type of the type code of `tuple_value`, and is read before that cmd_prt() returns.
 */
cmd_tuple_t* cmd_tuple(uint32 tuple_value, const void* value);

/*
 * Prints one piece of a line. Each placeholder (`%`, optional `-`, digits, optional `.digits`, `s`) takes the text of
 * the next tuple, padded and cut to its width; every other character is copied.
 */
void cmd_prt(cmd_rx_handle_t* rx_handle, const char* format, ...);

/* Marks the start of a short-form row: interface names are short until the next newline. */
void cmd_print_short(cmd_rx_handle_t* rx_handle);

/* Flushes what was printed for the command. */
void cmd_prt_send(cmd_rx_handle_t* rx_handle);

/* Ends the command with a failure whose text the user sees. The middle argument is 0. */
void cmd_rsp_send_nok(cmd_rx_handle_t* rx_handle, uint32 flags, const char* text);

/* A new, empty record of failed ranges for the parameter with this token id; null when there is no memory. */
mrange_handle_t* cmd_mrange_create(uint32 token_id);

/* Adds the range first..last. */
void cmd_mrange_range_add(mrange_handle_t* ranges, if_index_t first, if_index_t last);

/* Hands the record to the shell, which marks these ranges as the failed ones and frees the record with the command. */
void cmd_mrange_error_set(mrange_handle_t* ranges);

/* Renders the ranges as text, with the semantics of snprintf. */
int32 cmd_mrange_snprintf(char* buffer, uint32 size, const mrange_handle_t* ranges);

void cmd_mrange_free(mrange_handle_t* ranges);

#ifdef __cplusplus
}
#endif
#endif
