/*
 * Commands that a library adds to pmsh.
 *
 * A command library is a shared object that exports one table, pmsh_commands[], and the handlers that the table names.
 * `pmsh --library FILE` loads it; parsing, help, completion, the command reference and the JSON schema follow from the
 * table. The functions of the shell and the services that a handler may call are declared in platform/; the loader
 * finds them in the program. All texts are UTF-8, owned by the library, and used for as long as the shell runs.
 */
#ifndef PMSH_COMMANDS_H
#define PMSH_COMMANDS_H

#include "platform/cmd_channel.h"
#include "platform/if_index.h"
#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Help of a word that the shell does not have. */
typedef struct pmsh_word_t {
  const char* word;
  const char* help; /* what may be typed there, in a few words */
} pmsh_word_t;

/* The type of a field in the structured form. An interface is shown by its full name. */
enum {
  PMSH_TEXT = 1,
  PMSH_NUMBER,
  PMSH_DECIMAL, /* bound as a cmd_float_t */
  PMSH_MAC,
  PMSH_IPV4,
  PMSH_INTERFACE,
  PMSH_VLANS /* a set: a text such as "1-10,20"; "none" is the empty set */
};

/* A field of the structured form: a value that the handler binds with cmd_tuple(). */
typedef struct pmsh_field_t {
  const char* key;  /* lower case, words joined by underscores, the unit last: "temperature_celsius"   */
  uint32 tuple;     /* the tuple id that the handler binds; its type code must be able to hold `type`. Ids of the
                       system have components below 0x80; those of other libraries have 0x80 or more.  */
  uint32 type;      /* PMSH_TEXT and so on */
  const char* unit; /* null: none               */
  const char* help; /* null: none; one sentence */
} pmsh_field_t;

/* Flags of a command. */
enum {
  PMSH_REPLACES = 1,          /* shows the kinds of an existing command of the same words in its place               */
  PMSH_STRUCTURED_ONLY = 2,   /* with PMSH_REPLACES: only with `| json`; the text is still that of the other command */
  PMSH_NO_SUB_INTERFACES = 8, /* a new command with RANGE: it does not apply to sub-interfaces of its kinds */
  PMSH_LIST = 4 /* without RANGE: the document has a list of records, of the display's name. A value that is bound again
                   begins the next one; lines of the channel that bind none are layout and no messages. */
};

/*
 * A handler: shows what argument 0 of the block names, flushes, and returns 0; another value is an error of the
 * command. It has C linkage, no exception leaves it, and it does not end the process.
 */
typedef uint32 (*pmsh_handler_t)(paraminfo_t* param);

/*
 * One command. Omitted members are zero.
 *
 * With RANGE among its words the handler is called once for each interface, as the show handlers of pmcli/command.h
 * are: `arg` of argument 0 points to its if_index_t. Without RANGE it is called once, and argument 0 holds no ranges.
 */
typedef struct pmsh_command_t {
  const char* words;   /* "show interface [RANGE] temperature": lower case; words in brackets may be left out */
  const char* help;    /* what it shows, one line                                                             */
  const char* handler; /* name of an exported pmsh_handler_t                                                  */

  /* With RANGE: the kinds of interface that have the display, bits IF_MASK_... (pmcli/displays.h). */
  interface_mask_t kinds;
  const char* header; /* name of an exported pmsh_handler_t that prints the header of the table; null: none   */
  uint32 command_id;  /* in the block; the library's own                                                      */

  /* The structured form; without `display` the command has none. Lists end with a null word or key. */
  const char* display; /* its name in the JSON schema: lower case, words joined by underscores                */
  const pmsh_field_t* fields;
  const pmsh_word_t* word_helps;
  uint32 flags;
} pmsh_command_t;

/* The table, defined by the library. It ends with an entry of zeros, or where the exported object ends. */
extern const pmsh_command_t pmsh_commands[];

#ifdef __cplusplus
}
#endif
#endif
