// Which requests change something, and who may send those.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "platform/mts.h"
#include "transport/transport.h"

namespace host {

// What a request changes. Without an effect it reads the switch as it was when the command of its session began
// (settings/command_view.h). With `session` it changes that session alone, or reads the switch as it is. The others
// change what other sessions see: settings that are only tried (settings/trial.h) change nothing; counters, the clock
// and files are never only tried.
enum class request_effect : uint8 { none, session, settings, other };

// A request that a service knows.
struct known_request {
  mts_opc_t opcode;
  request_effect effect = request_effect::none;

  // The answer to a request that is refused with a status, in the form that its sender expects. Nothing for one that
  // is permitted after all. Null when the request changes nothing for others.
  std::optional<reply> (*refuse)(mts_opc_t opcode, std::span<const std::byte> request, uint32 status) = nullptr;

  // Whether a request of this opcode has no effect; null: each has the one above.
  bool (*only_reads)(std::span<const std::byte> request) = nullptr;
};

// Those of the service with this name.
std::span<const known_request> requests_of(std::string_view service_name);

// Has the service answer, or refuses with kPortStatusLookOnly what the_session() may not do, and with the status of the
// source what it cannot store. Requests that are not `known` are rejected.
reply serve_permitted(std::span<const known_request> known, service_function serve, mts_opc_t opcode,
                      std::span<const std::byte> request);

bool changes_others(request_effect effect);

// Whether a request for statistics does not clear them.
bool reads_statistics(std::span<const std::byte> request);

// ---- Forms of refusals

std::optional<reply> refuse_with_error(mts_opc_t opcode, std::span<const std::byte> request, uint32 status);
std::optional<reply> refuse_ranges(mts_opc_t opcode, std::span<const std::byte> request, uint32 status);
std::optional<reply> refuse_setting(mts_opc_t opcode, std::span<const std::byte> request, uint32 status);
std::optional<reply> refuse_clear(mts_opc_t opcode, std::span<const std::byte> request, uint32 status);
std::optional<reply> refuse_end_of_commit(mts_opc_t opcode, std::span<const std::byte> request, uint32 status);
std::optional<reply> refuse_session_change(mts_opc_t opcode, std::span<const std::byte> request, uint32 status);

}  // namespace host
