#include "transport/transport.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

#include "base/c_edge.h"
#include "transport/cancellation.h"
#include "transport/failures.h"
#include "transport/request_path.h"

// Everything but transport_cancel() belongs to one thread: the one that runs commands.

namespace host {
namespace {

constexpr uint32 kNone = 0xFFFFFFFF;

constexpr std::string_view kUnknownService = "unknown";

// An answer is requested while its path does not have it, then it waits to be received.
enum class stage : uint8 { unused, sent, requested, waiting, received };

// A message, or room for one. `next` joins the unused ones, and the answers that wait on a queue.
struct message {
  stage at = stage::unused;
  bool rejected = false;
  uint32 generation = 1;
  uint32 next = kNone;
  mts_q_handle_t q = 0;
  mts_rr_token_t token = 0;
  uint32 service = 0;  // that was asked
  std::vector<std::byte> payload;
};

struct queue {
  bool open = false;
  int32 generation = 0;
  int32 error = 0;
  uint32 waiting = kNone;  // first answer that was not received yet
  command_account* account = nullptr;
};

struct registered_service {
  service what;
  injected_fault injected;
};

// Calls the service when its request is sent. One that throws has rejected the request.
class path_in_process final : public request_path {
 public:
  int32 begin(const sent_request& request, std::optional<reply>& answer) override {
    try {
      answer = request.asked.serve(request.opcode, request.payload);
    } catch (...) {
      answer = reply{reply::kind::reject, {}};
    }
    return 0;
  }
  int32 finish(mts_rr_token_t, uint32, reply&) override { return EAGAIN; }
  void forget(mts_rr_token_t) override {}
  std::vector<int> descriptors(const service& asked, uint32 cursor) override { return asked.descriptors(cursor); }
};

path_in_process services_of_process;

struct transport {
  request_path* path = &services_of_process;
  std::vector<message> messages;
  uint32 unused = kNone;
  std::vector<queue> queues;
  std::vector<registered_service> services;
  std::array<uint32, 64> places_asked{};  // of services, by the lowest bits of their access point
  mts_rr_token_t last_token = 0;
  uint32 longest_wait_sec = 0;
  transport_account account;
  std::vector<std::byte> spare;  // the memory of a dropped message
};

transport the_transport;

// A queue handle is the queue's place, counted from 1, below its generation: a closed queue's handle finds nothing.
constexpr int32 kQueueBits = 12;
constexpr int32 kMaxQueues = (1 << kQueueBits) - 1;
constexpr int32 kMaxQueueGeneration = 0x7FFFFFFF >> kQueueBits;

queue* find_queue(mts_q_handle_t q) {
  const auto place = static_cast<std::size_t>((q & kMaxQueues) - 1);
  if (q <= 0 || place >= the_transport.queues.size()) return nullptr;
  queue& found = the_transport.queues[place];
  return found.open && found.generation == q >> kQueueBits ? &found : nullptr;
}

int32 fail(queue& on, int32 error) {
  on.error = error;
  return -1;
}

uint32 find_service(uint32 sap, bool is_on_line_cards) {
  const auto& services = the_transport.services;
  const auto is_asked = [&](uint32 i) {
    return services[i].what.sap == sap && services[i].what.is_on_line_cards == is_on_line_cards;
  };
  uint32& last = the_transport.places_asked[sap % the_transport.places_asked.size()];
  if (last < services.size() && is_asked(last)) return last;
  for (uint32 i = 0; i < services.size(); ++i)
    if (is_asked(i)) return last = i;
  return kNone;
}

// Line cards are numbered by slot from 1.
bool is_line_card(uint32 node) { return node >= 1 && node <= 255; }

// The message of a reference; null for an empty reference and for one that was dropped.
message* find_message(const mts_msg_ref_t* reference) {
  if (reference == nullptr || reference->id == 0 || reference->id > the_transport.messages.size()) return nullptr;
  message& found = the_transport.messages[reference->id - 1];
  const bool handed_out = found.at == stage::sent || found.at == stage::received;
  return handed_out && found.generation == reference->generation ? &found : nullptr;
}

const message* find_received(const mts_msg_ref_t* reference) {
  const message* const found = find_message(reference);
  return found != nullptr && found->at == stage::received ? found : nullptr;
}

mts_msg_ref_t reference_of(uint32 index) { return {index + 1, the_transport.messages[index].generation}; }

// Room for a request and its answer: what follows cannot fail.
void make_room() {
  auto& messages = the_transport.messages;
  while (the_transport.unused == kNone || messages[the_transport.unused].next == kNone) {
    messages.emplace_back().next = the_transport.unused;
    the_transport.unused = static_cast<uint32>(messages.size() - 1);
  }
}

uint32 take_message(stage at, mts_q_handle_t q, mts_rr_token_t token) {
  const uint32 index = the_transport.unused;
  message& taken = the_transport.messages[index];
  the_transport.unused = taken.next;
  taken.at = at;
  taken.rejected = false;
  taken.next = kNone;
  taken.q = q;
  taken.token = token;
  return index;
}

void keep_memory(std::vector<std::byte> unused) {
  constexpr std::size_t kMost = 64 * 1024;
  if (unused.capacity() > the_transport.spare.capacity() && unused.capacity() <= kMost)
    the_transport.spare = std::move(unused);
}

void release_message(uint32 index) {
  message& released = the_transport.messages[index];
  if (released.at == stage::requested) the_transport.path->forget(released.token);
  released.at = stage::unused;
  ++released.generation;
  keep_memory(std::exchange(released.payload, {}));
  released.next = the_transport.unused;
  the_transport.unused = index;
}

// Removes the answer to a request from the queue; kNone when there is none.
uint32 unlink_answer(queue& from, mts_rr_token_t token) {
  auto& messages = the_transport.messages;
  for (uint32* link = &from.waiting; *link != kNone; link = &messages[*link].next) {
    const uint32 index = *link;
    if (messages[index].token != token) continue;
    *link = messages[index].next;
    return index;
  }
  return kNone;
}

void link_answer(queue& to, uint32 index) {
  the_transport.messages[index].next = to.waiting;
  to.waiting = index;
}

// The answer of a service that an injected fault keeps from being asked.
std::optional<reply> injected_answer(const registered_service& service) {
  switch (service.injected.what) {
    case injected_fault::kind::reject: return reply{reply::kind::reject, {}};
    case injected_fault::kind::silent: return reply{reply::kind::silence, {}};
    default: return std::nullopt;
  }
}

// Stores an answer in its message, cut if that was injected.
void store_answer(message& to, reply said) {
  const injected_fault& injected = the_transport.services[to.service].injected;
  if (injected.what == injected_fault::kind::cut && said.payload.size() > injected.number)
    said.payload.resize(injected.number);
  to.at = stage::waiting;
  to.rejected = said.what == reply::kind::reject;
  to.payload = std::move(said.payload);
}

mts_rr_token_t next_token() {
  if (++the_transport.last_token == 0) ++the_transport.last_token;
  return the_transport.last_token;
}

// Sends a request and fills `reference`. Returns 0 or an errno.
int32 deliver(mts_q_handle_t q, queue& from, uint32 service, const mts_addr_t& to, mts_opc_t opcode,
              std::span<const std::byte> request, mts_msg_ref_t& reference) {
  make_room();
  const registered_service& asked = the_transport.services[service];
  const mts_rr_token_t token = next_token();
  std::optional<reply> said = injected_answer(asked);
  if (!said) {
    const int32 error = the_transport.path->begin({asked.what, to.node, opcode, token, request}, said);
    if (error != 0) return error;
  }
  const uint32 sent = take_message(stage::sent, q, token);
  the_transport.messages[sent].service = service;
  ++the_transport.account.sent;
  reference = reference_of(sent);
  if (said && said->what == reply::kind::silence) return 0;

  const uint32 answer = take_message(stage::requested, q, token);
  message& expected = the_transport.messages[answer];
  expected.service = service;
  if (said) store_answer(expected, std::move(*said));
  link_answer(from, answer);
  return 0;
}

// True as often as interruptions were injected for this service.
bool is_interrupted(uint32 service) {
  injected_fault& injected = the_transport.services[service].injected;
  if (injected.what != injected_fault::kind::interrupt || injected.number == 0) return false;
  --injected.number;
  return true;
}

// The name of the service that a request was sent to.
std::string_view service_asked(mts_q_handle_t q, mts_rr_token_t token) {
  for (const message& sent : the_transport.messages)
    if (sent.at == stage::sent && sent.q == q && sent.token == token)
      return the_transport.services[sent.service].what.name;
  return kUnknownService;
}

std::string_view name_of_service(uint32 sap) {
  for (const registered_service& it : the_transport.services)
    if (it.what.sap == sap) return it.what.name;
  return kUnknownService;
}

uint32 wait_in_seconds(int32 asked) {
  const uint32 wait = asked < 0 ? 0 : static_cast<uint32>(asked);
  const uint32 limit = the_transport.longest_wait_sec;
  return limit == 0 ? wait : std::min(wait, limit);
}

// Waits for an answer that its path did not have yet. Returns 0 or an errno.
int32 take_requested(message& requested, const mts_recv_options_t& options) {
  return no_throw<int32>(ENOMEM, [&] {
    reply said;
    const uint32 seconds = options.non_blocking != 0 ? 0 : wait_in_seconds(options.timeout);
    const int32 error = the_transport.path->finish(requested.token, seconds, said);
    if (error == 0) store_answer(requested, std::move(said));
    if (error == ETIMEDOUT) note_failure({the_transport.services[requested.service].what.name, fault::unanswered});
    return error;
  });
}

}  // namespace

void transport_use(request_path* path) { the_transport.path = path == nullptr ? &services_of_process : path; }

void transport_renew() { the_transport.path->renew(); }

announced_interfaces::announced_interfaces(std::string_view display, std::span<const uint32> interfaces) {
  the_transport.path->announce(display, interfaces);
}

announced_interfaces::~announced_interfaces() { the_transport.path->announce({}, {}); }

std::vector<std::byte> transport_take_buffer() {
  std::vector<std::byte> taken = std::exchange(the_transport.spare, {});
  taken.clear();
  return taken;
}

void transport_register(std::span<const service> services) {
  for (const service& added : services) {
    const uint32 earlier = find_service(added.sap, added.is_on_line_cards);
    if (earlier == kNone)
      the_transport.services.push_back({added, {}});
    else
      the_transport.services[earlier] = {added, {}};
  }
}

std::vector<int> transport_descriptors(uint32 sap, uint32 cursor) {
  const uint32 asked = find_service(sap, false);
  if (asked == kNone || the_transport.services[asked].what.descriptors == nullptr) return {};
  return the_transport.path->descriptors(the_transport.services[asked].what, cursor);
}

mts_q_handle_t transport_open_queue() {
  auto& queues = the_transport.queues;
  auto place = std::find_if(queues.begin(), queues.end(), [](const queue& q) { return !q.open; });
  if (place == queues.end()) {
    if (queues.size() == kMaxQueues) return -1;
    place = queues.emplace(place);
  }
  const int32 generation = place->generation < kMaxQueueGeneration ? place->generation + 1 : 1;
  *place = {.open = true, .generation = generation};
  return generation << kQueueBits | static_cast<int32>(place - queues.begin() + 1);
}

void transport_close_queue(mts_q_handle_t q) {
  queue* const closed = find_queue(q);
  if (closed == nullptr) return;
  closed->open = false;
  for (uint32 i = 0; i < the_transport.messages.size(); ++i) {
    const message& left = the_transport.messages[i];
    if (left.at == stage::unused || left.q != q) continue;
    if (left.at == stage::sent || left.at == stage::received) ++the_transport.account.never_dropped;
    release_message(i);
  }
}

command_account* attach_account(mts_q_handle_t q, command_account* account) {
  queue* const to = find_queue(q);
  return to == nullptr ? nullptr : std::exchange(to->account, account);
}

command_account* attached_account(mts_q_handle_t q) {
  const queue* const asked = find_queue(q);
  return asked == nullptr ? nullptr : asked->account;
}

bool transport_inject_fault(std::string_view service_name, injected_fault what) {
  bool known = false;
  for (registered_service& service : the_transport.services) {
    if (service.what.name != service_name) continue;
    service.injected = what;
    known = true;
  }
  return known;
}

void transport_limit_waits(uint32 seconds) { the_transport.longest_wait_sec = seconds; }

void transport_note_damaged(uint32 sap) { note_failure({name_of_service(sap), fault::damaged}); }

void transport_note_error(uint32 sap, syserr_t error) { note_failure({name_of_service(sap), fault::error, error}); }

transport_account transport_accounts() { return the_transport.account; }

}  // namespace host

using namespace host;

int32 mts_send(mts_q_handle_t q, const mts_addr_t* to, mts_opc_t opcode, void* payload, uint32 size,
               mts_msg_ref_t* sent, uint32, uint32) {
  if (sent != nullptr) *sent = {};
  queue* const from = find_queue(q);
  if (from == nullptr) return -1;
  if (to == nullptr || sent == nullptr || (payload == nullptr && size != 0)) return fail(*from, EINVAL);
  if (to->node != MTS_NODE_LOCAL && !is_line_card(to->node)) return fail(*from, EHOSTUNREACH);
  const uint32 service = find_service(to->sap, is_line_card(to->node));
  if (service == kNone || the_transport.services[service].injected.what == injected_fault::kind::lost) {
    note_failure({service == kNone ? kUnknownService : the_transport.services[service].what.name, fault::unreachable});
    return fail(*from, ECONNREFUSED);
  }
  const std::span<const std::byte> request(static_cast<const std::byte*>(payload), size);
  from->error = no_throw<int32>(ENOMEM, [&] { return deliver(q, *from, service, *to, opcode, request, *sent); });
  return from->error == 0 ? 0 : -1;
}

mts_rr_token_t mts_rr_token_get(const mts_msg_ref_t* sent) {
  const message* const found = find_message(sent);
  return found == nullptr ? 0 : found->token;
}

int32 mts_recv(mts_q_handle_t q, mts_msg_ref_t* got, mts_recv_options_t* options) {
  if (got != nullptr) *got = {};
  queue* const on = find_queue(q);
  if (on == nullptr) return -1;
  if (got == nullptr || options == nullptr || options->version != 1 || options->rr_token == 0) return fail(*on, EINVAL);

  const uint32 answer = unlink_answer(*on, options->rr_token);
  if (waits_are_cancelled()) {
    if (answer != kNone) release_message(answer);  // it will not be requested again
    return fail(*on, ECANCELED);
  }
  if (answer == kNone) {
    // The service keeps silent, or the answer was received before: it will not come.
    if (options->non_blocking != 0) return fail(*on, EAGAIN);
    const int32 error = sleep_interruptibly(wait_in_seconds(options->timeout));
    if (error != ECANCELED) note_failure({service_asked(q, options->rr_token), fault::unanswered});
    return fail(*on, error);
  }
  message& received = the_transport.messages[answer];
  if (received.at == stage::requested) {
    const int32 error = take_requested(received, *options);
    if (error != 0) {
      if (error == ECANCELED)
        release_message(answer);
      else
        link_answer(*on, answer);
      return fail(*on, error);
    }
  }
  if (is_interrupted(received.service)) {
    link_answer(*on, answer);
    return fail(*on, MTS_ERRNO_INTERRUPTED);
  }
  received.at = stage::received;
  received.next = kNone;
  *got = reference_of(answer);
  ++the_transport.account.received;
  const service& from = the_transport.services[received.service].what;
  if (received.rejected)
    note_failure({from.name, fault::rejected});
  else if (received.payload.empty() || (from.is_whole != nullptr && !from.is_whole(received.payload)))
    note_failure({from.name, fault::damaged});
  on->error = 0;
  return 0;
}

int32 mts_errno_get(mts_q_handle_t q) {
  const queue* const asked = find_queue(q);
  return asked == nullptr ? EBADF : asked->error;
}

void* mts_payload_get(const mts_msg_ref_t* got) {
  const message* const found = find_received(got);
  if (found == nullptr || found->payload.empty()) return nullptr;
  return const_cast<std::byte*>(found->payload.data());
}

uint32 mts_payload_size(const mts_msg_ref_t* got) {
  const message* const found = find_received(got);
  return found == nullptr ? 0 : static_cast<uint32>(found->payload.size());
}

boolean mts_is_reject(const mts_msg_ref_t* got) {
  const message* const found = find_received(got);
  return found != nullptr && found->rejected ? 1 : 0;
}

// The error of an earlier call stays readable after a drop that succeeds.
int32 mts_drop(mts_q_handle_t q, mts_msg_ref_t* reference) {
  queue* const on = find_queue(q);
  if (reference == nullptr || reference->id == 0) return 0;
  const message* const dropped = find_message(reference);
  if (dropped == nullptr) ++the_transport.account.dropped_twice;
  if (on == nullptr) return -1;
  if (dropped == nullptr || dropped->q != q) return fail(*on, EINVAL);
  release_message(reference->id - 1);
  ++the_transport.account.dropped;
  return 0;
}
