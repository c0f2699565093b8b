#include "service/permissions.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "base/port_status.h"
#include "messages/port_manager_messages.h"
#include "messages/session_messages.h"
#include "platform/clear_counters.h"
#include "service/answers.h"
#include "settings/session.h"
#include "settings/trial.h"

namespace host {
namespace {

bool may_send(request_effect effect) {
  switch (effect) {
    case request_effect::none:
    case request_effect::session: return true;
    case request_effect::settings: return the_session().rights().may_change || trial::is_running();
    case request_effect::other: return the_session().rights().may_change;
  }
  return false;
}

// The ports that a request of the session would change.
std::vector<if_index_t> ports_of(mts_opc_t opcode) {
  if (opcode == SESSION_OPC_UNDO) return changed_ports(the_machine(), 1);
  return opcode == SESSION_OPC_COMMIT ? the_session().candidate_changes().ports() : std::vector<if_index_t>();
}

}  // namespace

reply serve_permitted(std::span<const known_request> known, service_function serve, mts_opc_t opcode,
                      std::span<const std::byte> request) {
  const auto found =
      std::find_if(known.begin(), known.end(), [opcode](const known_request& it) { return it.opcode == opcode; });
  if (found == known.end()) return reject_opcode();
  const bool only_reads = found->only_reads != nullptr && found->only_reads(request);
  const request_effect effect = only_reads ? request_effect::none : found->effect;
  if (!may_send(effect)) {
    if (std::optional<reply> refused = found->refuse(opcode, request, kPortStatusLookOnly)) return std::move(*refused);
  }
  if (effect == request_effect::none) {
    const view_scope as_begun(the_session().view());
    return serve(opcode, request);
  }
  if (changes_others(effect) && !trial::is_running()) keep_views(&the_session().view());
  reply said = serve(opcode, request);
  const uint32 status = the_source().store_changes(the_machine());
  return status == 0 ? std::move(said) : found->refuse(opcode, request, status).value_or(reject());
}

bool changes_others(request_effect effect) {
  return effect == request_effect::settings || effect == request_effect::other;
}

bool reads_statistics(std::span<const std::byte> request) {
  const auto read = read_request<eth_statistics_request>(request);
  return !read || read->get != 0;  // what cannot be read is rejected
}

std::optional<reply> refuse_with_error(mts_opc_t, std::span<const std::byte>, uint32 status) {
  return answer_error(static_cast<syserr_t>(status));
}

std::optional<reply> refuse_ranges(mts_opc_t, std::span<const std::byte> request, uint32 status) {
  return answer_statuses(request, [status](const interface&) { return status; });
}

std::optional<reply> refuse_setting(mts_opc_t opcode, std::span<const std::byte> request, uint32 status) {
  setting_request head;
  if (request.size() < sizeof head) return reject();
  std::memcpy(&head, request.data(), sizeof head);
  request = request.subspan(sizeof head);
  if (request.size() < head.cfg_length) return reject();
  return refuse_ranges(opcode, request.subspan(head.cfg_length), status);
}

std::optional<reply> refuse_clear(mts_opc_t, std::span<const std::byte> request, uint32 status) {
  if (request.size() < sizeof(clear_request)) return reject();
  const auto interfaces = request.subspan(sizeof(clear_request));
  const std::size_t count = interfaces.size() / sizeof(be32);
  if (count > kMaxClearedAtOnce || interfaces.size() % sizeof(be32) != 0) return reject();
  reply answer;
  append_bytes(answer, static_cast<uint8>(count));
  for (std::size_t i = 0; i < count; ++i) {
    be32 if_index;
    std::memcpy(&if_index, interfaces.data() + i * sizeof if_index, sizeof if_index);
    append_bytes(answer, pm_clear_status_t{if_index, static_cast<int32>(status)});
  }
  return answer;
}

// A user ends the commits that the own sessions left.
std::optional<reply> refuse_end_of_commit(mts_opc_t opcode, std::span<const std::byte> request, uint32 status) {
  field_reader fields(request);
  switch_session* const of = find_abandoned_session(fields.u32());
  if (of != nullptr && of->owner().user == the_session().owner().user) return std::nullopt;
  return refuse_with_error(opcode, request, status);
}

std::optional<reply> refuse_session_change(mts_opc_t opcode, std::span<const std::byte>, uint32 status) {
  const std::vector<if_index_t> ports = ports_of(opcode);
  return answer_fields([&](field_writer& to) {
    to.numbers({});
    to.u32(static_cast<uint32>(ports.size()));
    for (const if_index_t it : ports) {
      to.u32(it);
      to.u32(status);
    }
    if (opcode != SESSION_OPC_COMMIT) return;
    to.text({});  // no other fault
    to.u32(the_session().number());
  });
}

}  // namespace host
