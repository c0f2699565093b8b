// The account of the running command: what it asked for and did not get.
//
// A failure is noted where it happens: the transport notes requests that get no answer, client functions note answers
// that are damaged or report an error, and the loader notes client libraries that are missing. That there is none, such
// as no transceiver or no member, is an answer.
#pragma once

#include <span>
#include <string_view>

#include "platform/syserr.h"
#include "platform/types.h"

namespace host {

enum class fault : uint8 {
  unreachable,      // no service takes the request
  unanswered,       // in time
  rejected,         // by the service
  damaged,          // the answer is shorter than it says, or than it must be
  disconnected,     // from the switch; the failure's source is the reason, one sentence
  error,            // the service answered with an error
  not_opened,       // a client library
  without_function  // a client library
};

struct failure {
  std::string_view source;  // a service, such as "port-manager", or the file of a client library; lives on
  fault what;
  syserr_t error = 0;              // of fault::error
  std::string_view function = {};  // of fault::without_function; lives on

  bool operator==(const failure&) const = default;
};

// What was noted since it was forgotten last, in order.
std::span<const failure> noted_failures();
void note_failure(const failure& failed);
void forget_failures();

}  // namespace host
