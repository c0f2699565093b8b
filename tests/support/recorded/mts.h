// The message transport. Each message that is sent or received must be dropped exactly once.
#pragma once

#include <functional>
#include <vector>

#include "platform/mts.h"
#include "support/recorded/octets.h"

namespace pmcli_test {

struct mts_request {
  uint32 node;
  uint32 sap;
  mts_opc_t opcode;
  octets payload;
};

// What a service does with a request.
struct mts_reply {
  octets payload = {};              // empty: a null payload
  bool rejected = false;            // answers with a rejection
  int32 receive_error = 0;          // not 0: mts_recv() fails with this reason
  uint32 interrupted_receives = 0;  // so many times mts_recv() is interrupted first
};

struct recorded_mts {
  std::function<mts_reply(const mts_request&)> on_request;  // without it no answer comes: error 110
  std::vector<mts_request> requests;
  std::vector<mts_recv_options_t> receives;
  std::vector<uint32> drops;  // ids of the messages, in order: each request and each answer counts on from 1
  int32 mts_errno = 110;      // what mts_errno_get() gives after a call that fails with -1
};

}  // namespace pmcli_test
