/* A command library with one fault, which FAULT chooses; without a fault it is good. */
#include <stdio.h>

#include "pmsh/commands.h"

#define NONE 0
#define NO_WORDS 1
#define NO_HANDLER 2
#define MISSING_HANDLER 3
#define DUPLICATE_IN_TABLE 4
#define DUPLICATE_OF_SHELL 5
#define UNKNOWN_KIND 6
#define TOO_MANY 7
#define NO_TABLE 8
#define SHORT_TABLE 9
#define NO_HELP_OF_WORD 10
#define UPPER_CASE_WORD 11
#define NO_KINDS 12
#define UNKNOWN_FIELD_TYPE 13
#define WRONG_TYPE_CODE 14
#define TAKEN_TUPLE 15
#define TAKEN_DISPLAY 16
#define ENDLESS_TEXT 17
#define ENDLESS_LINE 18
#define GARBAGE 19
#define NOT_A_SHOW_COMMAND 20
#define TWELVE_WORDS 21
#define NO_FIELDS 22
#define ESCAPE_IN_HELP 23
#define UNKNOWN_FLAG 24
#define ENDLESS_FIELDS 25
#define REPLACES_NOTHING 26
#define MISSING_SYMBOL 27
#define OBJECT_FOR_HANDLER 28
#define DISPLAY_OF_DOCUMENTS 29
#define SAME_LINES 30
#define TWO_RANGES 31
#define HELP_OF_NO_WORD 32
#define KEY_OF_TWO_TYPES 33

#ifndef FAULT
#define FAULT NONE
#endif
#define IF(fault, then, otherwise) (FAULT == (fault) ? (then) : (otherwise))

#if FAULT == MISSING_SYMBOL
extern uint32 nobody_has_this(void);
#endif

int no_function = 1;

uint32 show_mood(paraminfo_t* param) {
  cmd_rx_handle_t* rx = cmd_paraminfo_to_rxhandle(param);
  while (FAULT == ENDLESS_TEXT) cmd_prt(rx, "on and on\n");
  while (FAULT == ENDLESS_LINE) printf("on and on ");
  const char* mood = "calm";
#if FAULT == MISSING_SYMBOL
  if (nobody_has_this() != 0) mood = "lost";
#endif
  cmd_prt(rx, "%s is %s\n", cmd_tuple(0x0C2A0075, param->arg_list[0]->arg), cmd_tuple(0x30800001, mood));
  cmd_prt_send(rx);
  return IF(GARBAGE, 3735928559U, 0);
}

static const pmsh_word_t kWords[] = {
    {IF(HELP_OF_NO_WORD, "good mood", "mood"), IF(NO_HELP_OF_WORD, NULL, "How it feels")}, {NULL, NULL}};

#define INTERFACE \
  { "interface", 0x0C2A0075, PMSH_INTERFACE, NULL, NULL }
#define MOOD                                                                                        \
  {                                                                                                 \
    "mood", IF(WRONG_TYPE_CODE, 0x14800001, IF(TAKEN_TUPLE, 0x302A0271, 0x30800001)),               \
        IF(UNKNOWN_FIELD_TYPE, 77, PMSH_TEXT), NULL, IF(ESCAPE_IN_HELP, "how \033[2J", "a feeling") \
  }
#if FAULT == ENDLESS_FIELDS
static const pmsh_field_t kFields[1000] = {[0 ... 999] = MOOD};
#elif FAULT == NO_FIELDS
static const pmsh_field_t kFields[] = {{0}};
#elif FAULT == KEY_OF_TWO_TYPES
static const pmsh_field_t kFields[] = {INTERFACE, MOOD, {"mood", 0x14800002, PMSH_NUMBER, NULL, NULL}, {0}};
#else
static const pmsh_field_t kFields[] = {INTERFACE, MOOD, {0}};
#endif

#define COMMAND                                                                                                       \
  {                                                                                                                   \
    .words = FAULT == NO_WORDS             ? NULL                                                                     \
             : FAULT == DUPLICATE_OF_SHELL ? "show interface [RANGE] brief"                                           \
             : FAULT == SAME_LINES         ? "show interface RANGE brief"                                             \
             : FAULT == TWO_RANGES         ? "show interface [RANGE] [RANGE] mood"                                    \
             : FAULT == UPPER_CASE_WORD    ? "show interface [RANGE] Mood"                                            \
             : FAULT == NOT_A_SHOW_COMMAND ? "mood [RANGE]"                                                           \
             : FAULT == TWELVE_WORDS       ? "show mood mood mood mood mood mood mood mood mood mood mood"            \
                                           : "show interface [RANGE] mood",                                                 \
    .help = "How they feel",                                                                                          \
    .handler =                                                                                                        \
        IF(NO_HANDLER, NULL, IF(MISSING_HANDLER, "show_temper", IF(OBJECT_FOR_HANDLER, "no_function", "show_mood"))), \
    .kinds = IF(UNKNOWN_KIND, 0x4, IF(NO_KINDS, 0, 0x2)),                                                             \
    .display = IF(TAKEN_DISPLAY, "brief", IF(DISPLAY_OF_DOCUMENTS, "interfaces", "mood")), .fields = kFields,         \
    .word_helps = kWords, .flags = IF(UNKNOWN_FLAG, 64, IF(REPLACES_NOTHING, PMSH_REPLACES, 0))                       \
  }

#if FAULT == SHORT_TABLE
const char pmsh_commands_[4] __asm__("pmsh_commands") = "abc";
#elif FAULT == TOO_MANY
const pmsh_command_t pmsh_commands[10000] = {[0 ... 9999] = COMMAND};
#elif FAULT == DUPLICATE_IN_TABLE
const pmsh_command_t pmsh_commands[] = {COMMAND, COMMAND, {0}};
#elif FAULT != NO_TABLE
const pmsh_command_t pmsh_commands[] = {COMMAND};
#endif
