// The tables of a source, piece by piece. Everything travels big-endian and packed.
#pragma once

#include "base/table_id.h"
#include "messages/interface_values.h"
#include "platform/syserr.h"
#include "platform/wire.h"

namespace host {

enum { SAP_TABLES = 200 };

// Opcode              request                                             answer
// TABLES_OPC_BEGIN    begin_table_request, a be32 for each interface,     a reply head, table_answer, then for each row
//                     ascending; without any the whole table              row_head and its values (interface_values.h)
// TABLES_OPC_GO_ON    table_cursor                                        the same
// TABLES_OPC_END      table_cursor: the rest is not needed                a reply head
enum { TABLES_OPC_BEGIN = 1, TABLES_OPC_GO_ON = 2, TABLES_OPC_END = 3 };

// The statuses of an answer besides those of the platform.
enum : syserr_t {
  kNoSuchTable = 0x40F00002,  // the source has none
  kTableGivenUp = 0x40F00003  // the cursor is not open any more: others were begun since it was used
};

struct begin_table_request {
  be16 table;  // table_id
  be16 reserved;
};
static_assert(sizeof(begin_table_request) == 4);

struct table_cursor {
  be32 cursor;
};
static_assert(sizeof(table_cursor) == 4);

struct table_answer {
  be32 next;          // cursor of the rows that follow; 0: these are the last ones
  uint8 has_changed;  // 1: the table changed while it was read
  uint8 reserved[3];
};
static_assert(sizeof(table_answer) == 8);

struct row_head {
  be32 size;  // bytes of its values
};
static_assert(sizeof(row_head) == 4);

// What an answer holds at most. A row is never divided.
enum : uint32 { kMostRowsOfAnswer = 256, kMostBytesOfAnswer = 256 * 1024 };

}  // namespace host
