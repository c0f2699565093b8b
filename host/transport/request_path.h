// The way of requests to their services, and of the answers back.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/mts.h"
#include "transport/transport.h"

namespace host {

struct sent_request {
  const service& asked;
  uint32 node;
  mts_opc_t opcode;
  mts_rr_token_t token;
  std::span<const std::byte> payload;
};

class request_path {
 public:
  virtual ~request_path() = default;

  // Sends a request. Returns 0 and the answer if it is already there, or an errno: the path notes that failure.
  virtual int32 begin(const sent_request& request, std::optional<reply>& answer) = 0;

  // Waits for an answer that begin() did not have. Returns 0, EAGAIN without it when `seconds` is 0, ETIMEDOUT,
  // ECANCELED, or another errno: the path notes that failure.
  virtual int32 finish(mts_rr_token_t token, uint32 seconds, reply& answer) = 0;

  // The answer is not requested any more; it may still come.
  virtual void forget(mts_rr_token_t token) = 0;

  // Descriptors on which a client waits for more under a cursor of a service.
  virtual std::vector<int> descriptors(const service& asked, uint32 cursor) = 0;

  // The next requests are those of a display, about these interfaces, in about this order: some may be sent ahead. No
  // interfaces: the display has ended.
  virtual void announce(std::string_view, std::span<const uint32>) {}

  // Makes a connection again that was lost.
  virtual void renew() {}
};

// From now on requests take this path. Null: they call the services of this process, as at the start.
void transport_use(request_path* path);

}  // namespace host
