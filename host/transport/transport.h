// The message transport in one process: the functions of platform/mts.h, and the registration of services.
//
// A service is a function from request bytes to an answer. It runs when its request is sent; the answer waits on the
// sender's queue until it is received. Messages are counted: sent, received, dropped, dropped twice, never
// dropped. Lost services, rejections, short answers, silence and interruptions can be injected as faults.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/mts.h"
#include "platform/syserr.h"
#include "platform/types.h"

namespace host {

// The answer of a service to a request.
struct reply {
  enum class kind { answer, reject, silence };
  kind what = kind::answer;
  std::vector<std::byte> payload;
  bool is_unknown = false;  // a rejection: the service has no such opcode
};

// `request` is the payload as it was sent, unchecked.
using service_function = reply (*)(mts_opc_t opcode, std::span<const std::byte> request);

struct service {
  uint32 sap;
  std::string_view name;  // such as "port-manager", for faults and reports
  service_function serve;
  bool is_on_line_cards = false;  // reachable at the nodes of line cards, not on the local one

  // Whether an answer is complete, for services whose answers the command library reads itself; null: the reader of an
  // answer notes that it is damaged.
  bool (*is_whole)(std::span<const std::byte> answer) = nullptr;

  // The descriptors of what a client follows under a cursor that it got from this service; null: the service has none.
  std::vector<int> (*descriptors)(uint32 cursor) = nullptr;

  // Whether requests that change nothing may be sent before they are needed, and in vain: they begin nothing that
  // others go on with.
  bool may_be_asked_ahead = true;
};

// Empty, for the payload of an answer, with the memory of one that was dropped.
std::vector<std::byte> transport_take_buffer();

// Makes services reachable. Later ones of the same access point and place replace earlier ones.
void transport_register(std::span<const service> services);

// Descriptors on which a client waits for what it follows under a cursor of a service: one of them is readable when a
// request may find something new. In one process they are the service's own. On a socket it is that of the connection:
// the other side watches those of the service and reports when one is readable. To be called before each wait. Empty
// when the service does not know the cursor.
std::vector<int> transport_descriptors(uint32 sap, uint32 cursor);

// A queue for a command or a client, -1 when there are too many; and its end. Closing frees what was not dropped, and
// counts it.
mts_q_handle_t transport_open_queue();
void transport_close_queue(mts_q_handle_t q);

// The results of a command's requests (messages/calls/command_account.h); the transport only stores the pointer with a
// queue.
class command_account;

// Attaches an account to a queue and returns the previous one; null is none. Closing the queue detaches it.
command_account* attach_account(mts_q_handle_t q, command_account* account);

// The account of a queue; null when it has none, and of a queue that is not open.
command_account* attached_account(mts_q_handle_t q);

// A fault that requests of a service meet from now on.
struct injected_fault {
  enum class kind { none, lost, reject, silent, cut, interrupt };
  kind what = kind::none;
  uint32 number = 0;  // cut: bytes that are left of an answer; interrupt: how many waits are interrupted first
};

// Returns false when no service has this name.
bool transport_inject_fault(std::string_view service_name, injected_fault what);

// The longest wait in seconds, even when more was requested; 0 is no limit.
void transport_limit_waits(uint32 seconds);

// Makes a connection to the switch again that was lost.
void transport_renew();

// While it lives, requests that change nothing are those of a display, about these interfaces, in about this order: on
// a socket many are sent at once. One within another ends it.
class announced_interfaces {
 public:
  announced_interfaces(std::string_view display, std::span<const uint32> interfaces);
  ~announced_interfaces();
  announced_interfaces(const announced_interfaces&) = delete;
  announced_interfaces& operator=(const announced_interfaces&) = delete;
};

// Ends every wait, now and from now on, with error ECANCELED, until it is called with false; the answer that was waited
// for is given up. Safe in a signal handler.
void transport_cancel(bool cancelled);

// ---- Requests without a usable answer (transport/failures.h).

// The transport notes requests that are lost, rejected or empty; a cancelled wait is not a failure.
// The reader of an answer notes that it is damaged, or that it is an error.
void transport_note_damaged(uint32 sap);
void transport_note_error(uint32 sap, syserr_t error);

// Messages since the start of the process.
struct transport_account {
  uint64 sent = 0;
  uint64 received = 0;
  uint64 dropped = 0;
  uint64 dropped_twice = 0;
  uint64 never_dropped = 0;  // of queues that were closed
};
transport_account transport_accounts();

}  // namespace host
