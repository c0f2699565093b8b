/*
 * A platform for the command library, inside a program: a simulated switch with its services, the shell's commands over
 * it, and parameter blocks for calling the library's handlers (pmcli/command.h) directly.
 *
 * Link with the library and this one (pkg-config pmhost, or pmcli::host); each finds the other's functions in the
 * process. A program that loads them with dlopen() needs RTLD_GLOBAL for this one.
 *
 * Threads: one host at a time in a process, used by one thread at a time. Nothing here starts a thread or changes a
 * signal. Calls block while a service answers; services of a simulated switch are in the process and answer at once.
 * While a command runs, `stdout` is a stream of the host's; in callbacks it is the program's.
 *
 * Nothing is asked: a question of a command ("Do you want to continue (y/n)?") is answered as in a shell without a
 * terminal, which is yes.
 *
 * Texts are UTF-8. Functions that fail store one line in `*error`, which the caller frees with free(), unless `error`
 * is null. Callbacks must return: no exception, no longjmp(), no call of this library but pmhost_queue().
 */
#ifndef PMHOST_H
#define PMHOST_H

#include <stddef.h>

#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct pmhost_t pmhost_t;
typedef struct pmhost_command_t pmhost_command_t;

/* How a command ended. */
enum {
  PMHOST_DONE = 0,
  PMHOST_USAGE = 1,                  /* the line or an argument is wrong                    */
  PMHOST_SERVICE_FAILED = 2,         /* a service, or the memory                            */
  PMHOST_SOME_INTERFACES_FAILED = 3, /* the others are shown                                */
  PMHOST_NO_SUCH_INTERFACE = 4,      /* nothing was done                                    */
  PMHOST_NOT_PERMITTED = 5           /* the user of the switch must not                       */
};

/* Forms of the output. */
enum { PMHOST_TEXT = 0, PMHOST_JSON = 1 };

/* A value that a display bound to its tag. All of it is valid until the callback returns. */
typedef struct pmhost_value_t {
  if_index_t if_index; /* of the interface that is being shown; 0: of none                           */
  uint32 tuple;        /* its tuple id (platform/cmd_channel.h)                                      */
  const char* key;     /* of the field in the structured form; null: no display has it               */
  const char* text;    /* as it is shown; null: the value is unavailable                             */
  const void* value;   /* of the type in the tuple id's type code; null: the value is unavailable    */
} pmhost_value_t;

/* Where the output of commands goes. Members that are null or 0 mean the default of pmsh. */
typedef struct pmhost_output_t {
  uint32 form; /* PMHOST_TEXT or PMHOST_JSON: one document for each command                              */
  void (*write)(void* context, const char* text, size_t size); /* null: to standard output         */
  void (*error)(void* context, const char* text);              /* one line; null: to standard error */
  void (*value)(void* context, const pmhost_value_t* value);   /* null: none                       */
  void* context;
} pmhost_output_t;

/*
 * Reads a switch file and starts its services. A name without a slash that is not a file is looked up among the
 * installed switches ("campus.yaml"). Null on failure: no such file, a mistake in it (file and line), a
 * command or client library that cannot be loaded (then no further host can be opened either), or a host that is open
 * already.
 * pmhost_close() ends it, after all of its commands; its queue is closed with it. Both libraries stay loaded.
 */
pmhost_t* pmhost_open(const char* switch_file, char** error);
void pmhost_close(pmhost_t* host); /* null: nothing */

/* A queue to the services, for functions of the library that take one. The host's own; open until pmhost_close(). */
mts_q_handle_t pmhost_queue(pmhost_t* host);

/* Where the output goes from now on; null: text to standard output. The structure is copied. */
void pmhost_set_output(pmhost_t* host, const pmhost_output_t* output);

/*
 * Runs a line as pmsh does ("show interface ethernet 1/1-4", "configure", pipes included), with the services that its
 * command needs. Returns one of the codes above. "watch" is refused.
 */
int pmhost_run(pmhost_t* host, const char* line);

/*
 * A parameter block for a display: `command_id` is one of pmcli/displays.h, `interfaces` a range as pmsh takes it
 * ("ethernet 1/1-4, mgmt 0"; null or "": none), which the library's verification has accepted. The user is the first of
 * the switch, the supervisor is active. Null on failure: no such interface, more than PARAM_MAX_RANGES ranges (each
 * sub-interface is one of its own), or no memory. pmhost_end() frees it with all that it points to.
 */
pmhost_command_t* pmhost_command(pmhost_t* host, uint32 command_id, const char* interfaces, char** error);
void pmhost_end(pmhost_command_t* command); /* null: nothing */

/* The interfaces of the command, in the order in which they are shown. The array is the command's. */
size_t pmhost_interfaces(const pmhost_command_t* command, const if_index_t** interfaces);

/*
 * Its block, to be changed as a handler needs it (arguments from the second, prc_mode, no_flag). Argument 0 names all
 * ranges. The next call for this command fills argument 0 again.
 */
paraminfo_t* pmhost_block(pmhost_command_t* command);

/* A handler of the library. Those with another result type are to be wrapped. */
typedef uint32 (*pmhost_handler_t)(paraminfo_t* block);

/*
 * Calls a show handler for each interface, in one output; pmhost_call() calls a handler once, for all ranges, as table
 * headers and configuration handlers are. In the structured form the display is that of pmsh's command with the same
 * command id; PMHOST_USAGE when there is none. Failures are found in the output of the handler, and in its
 * requests to services: a request that fails (lost, rejected, not answered, or answered with damage) names the service
 * as an error, and PMHOST_SERVICE_FAILED replaces PMHOST_DONE. Answers to clears and settings are discarded after the
 * call.
 */
int pmhost_show(pmhost_command_t* command, pmhost_handler_t handler);
int pmhost_call(pmhost_command_t* command, pmhost_handler_t handler);

#ifdef __cplusplus
}
#endif
#endif
