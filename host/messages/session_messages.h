// Requests about the session: its changes, its dry run, its candidate, its commit that waits for a confirmation.
//
// Requests and answers are fields (messages/fields.h); the fields of an answer follow a reply head whose count is 0.
#pragma once

#include "platform/types.h"

namespace host {

enum { SAP_SESSION = 201 };

// "interfaces": numbers, each an interface index. "commands": texts. "changes made": the interfaces that took a change,
// then for each of a u32 count a u32 index and a u32 status with which it refused.
//
// Opcode                            request                               answer
// SESSION_OPC_BEGIN_LINE            nothing                               flag: a commit was rolled back because its
//                                                                         time was over; its interfaces, u32 number
//                                                                         that refused; flag: a commit waits, u32
//                                                                         seconds left
// SESSION_OPC_BEGIN_CHANGES         text of the command                   nothing
// SESSION_OPC_STEP                  u32, counted from 0                   u32 number of steps; if there is this one:
//                                                                         text of the command, u32 time, u32 count and
//                                                                         for each a u32 interface, commands before and
//                                                                         after
// SESSION_OPC_CHANGED_PORTS         u32 number of last steps              u32 number of steps, interfaces of the last
// ones SESSION_OPC_UNDO                  nothing: the last step                changes made SESSION_OPC_NOTE_PORTS
// flag: absent ones, too; numbers, two  nothing
//                                   for each range
// SESSION_OPC_PORT_RESULTS          nothing                               u32 count and for each noted port a u32
//                                                                         interface, flag: it is as it was, commands
//                                                                         before and after
// SESSION_OPC_DRY_RUN               flag: begin                           nothing
// SESSION_OPC_CANDIDATE             u8 candidate_step                     nothing
// SESSION_OPC_CANDIDATE_CHANGES     flag: with commands                   u32 count and for each a u32 interface,
// flags:
//                                                                         it may cut the link, it is deleted, it is
//                                                                         created; commands before and after
// SESSION_OPC_COMMIT                text of the command, flag: to be      changes made, text: why nothing could be
//                                   confirmed, u32 in these seconds       committed, u32 number of the session
// SESSION_OPC_CONFIRM               u32 session, 0: the own one           u8 commit_end, its interfaces, u32 number
//                                                                         that refused the rollback that came before
// SESSION_OPC_ROLL_BACK             u32 session, 0: the own one           flag: a commit waited, its interfaces, u32
//                                                                         number that refused
// SESSION_OPC_LEAVE                 nothing: the shell ends               flag: the switch keeps the commit that waits,
//                                                                         u32 seconds left; if not: as for the request
//                                                                         before
// SESSION_OPC_RUNNING_CONFIG        interfaces, flag: the whole switch    text
// SESSION_OPC_COMMANDS              interfaces                            for each the commands of its settings
// SESSION_OPC_SAVE_STARTUP          nothing                               nothing
// SESSION_OPC_STATUS_TEXT           u32 status of a port                  flag: it has a text of its own; text
// SESSION_OPC_SESSIONS              nothing                               u32 count and for each session of the switch
//                                                                         u32 number, flag: it asks, text user, u32
//                                                                         process, flag: that has ended, text terminal,
//                                                                         u32 since, flag: it has a candidate, flag: a
//                                                                         commit waits, u32 seconds left
enum {
  SESSION_OPC_BEGIN_LINE = 1,
  SESSION_OPC_BEGIN_CHANGES = 2,
  SESSION_OPC_STEP = 3,
  SESSION_OPC_CHANGED_PORTS = 4,
  SESSION_OPC_UNDO = 5,
  SESSION_OPC_NOTE_PORTS = 6,
  SESSION_OPC_PORT_RESULTS = 7,
  SESSION_OPC_DRY_RUN = 8,
  SESSION_OPC_CANDIDATE = 9,
  SESSION_OPC_CANDIDATE_CHANGES = 10,
  SESSION_OPC_COMMIT = 11,
  SESSION_OPC_CONFIRM = 12,
  SESSION_OPC_ROLL_BACK = 13,
  SESSION_OPC_RUNNING_CONFIG = 14,
  SESSION_OPC_COMMANDS = 15,
  SESSION_OPC_SAVE_STARTUP = 16,
  SESSION_OPC_STATUS_TEXT = 17,
  SESSION_OPC_SESSIONS = 18,
  SESSION_OPC_LEAVE = 19,
};

// The longest time that a commit may wait for its confirmation, and hold its interfaces: others are rejected.
constexpr uint32 kLongestConfirmationSec = 86'400;

// What became of a commit that was to be confirmed. Another session's commit can be ended when its process has ended.
enum class commit_end : uint8 { none_waits, kept, rolled_back };

// What happens to the candidate: it begins and ends; requests are for it from its entering to its leaving; its changes
// are discarded.
enum class candidate_step : uint8 { begin, enter, leave, discard, end };

}  // namespace host
