// The message transport.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/recording_state.h"

namespace pmcli_test {
namespace {

constexpr int32 kNoAnswer = 110;

mts_msg_ref_t add_message(RecordingPlatform& platform, message added) {
  auto& messages = platform.internals().messages;
  messages.push_back(std::move(added));
  return {static_cast<uint32>(messages.size()), 1};
}

// The message behind a reference; null, and a failure of the test, when it is gone. Null for the empty reference.
message* find_message(const mts_msg_ref_t* reference, const char* function) {
  if (reference->id == 0) return nullptr;
  auto& messages = platform_for(function).internals().messages;
  if (reference->id > messages.size() || reference->generation != 1) {
    ADD_FAILURE() << function << "() on a reference that was never given out";
    return nullptr;
  }
  message& found = messages[reference->id - 1];
  if (!found.is_dropped) return &found;
  ADD_FAILURE() << function << "() on message " << reference->id << ", " << found.what << ", which was dropped before";
  return nullptr;
}

int32 fail_receive(RecordingPlatform& platform, int32 reason) {
  platform.internals().last_mts_errno = reason;
  return -1;
}

}  // namespace

void RecordingPlatform::drop_messages() {
  for (uint32 id = 1; id <= state_->messages.size(); ++id) {
    mts_msg_ref_t reference{id, 1};
    if (!state_->messages[id - 1].is_dropped) mts_drop(q(), &reference);
  }
}

mts_msg_ref_t receive_message(RecordingPlatform& platform, const std::string& what, const mts_reply& reply) {
  return add_message(platform, {what, reply.payload, reply.rejected, false});
}

octets message_payload(const mts_msg_ref_t* reference) {
  const message* const found = find_message(reference, "message_payload");
  return found == nullptr ? octets() : found->payload;
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 mts_send(mts_q_handle_t q, const mts_addr_t* to, mts_opc_t opcode, void* payload, uint32 size,
               mts_msg_ref_t* sent, uint32 flags, uint32 priority) {
  RecordingPlatform& platform = platform_for("mts_send");
  EXPECT_EQ(q, RecordingPlatform::q());
  EXPECT_EQ(flags, 0U);
  EXPECT_EQ(priority, 0U);
  const auto* const bytes = static_cast<const uint8*>(payload);
  platform.requests.push_back({to->node, to->sap, opcode, octets(bytes, bytes + size)});
  if (platform.failure_of("mts_send") != 0) return -1;
  *sent = add_message(platform, {"a request to access point " + std::to_string(to->sap), {}, false, false});
  if (platform.on_request)
    platform.internals().answers.push_back({sent->id, platform.on_request(platform.requests.back())});
  return 0;
}

mts_rr_token_t mts_rr_token_get(const mts_msg_ref_t* sent) {
  return find_message(sent, "mts_rr_token_get") == nullptr ? 0 : sent->id;
}

int32 mts_recv(mts_q_handle_t q, mts_msg_ref_t* got, mts_recv_options_t* options) {
  RecordingPlatform& platform = platform_for("mts_recv");
  EXPECT_EQ(q, RecordingPlatform::q());
  platform.receives.push_back(*options);
  if (platform.failure_of("mts_recv") != 0) return -1;
  auto& answers = platform.internals().answers;
  const auto answer = std::find_if(answers.begin(), answers.end(),
                                   [&](const waiting_answer& waiting) { return waiting.token == options->rr_token; });
  if (answer == answers.end()) return fail_receive(platform, kNoAnswer);
  if (answer->reply.interrupted_receives > 0) {
    --answer->reply.interrupted_receives;
    return fail_receive(platform, MTS_ERRNO_INTERRUPTED);
  }
  const mts_reply reply = answer->reply;
  answers.erase(answer);
  if (reply.receive_error != 0) return fail_receive(platform, reply.receive_error);
  *got = receive_message(platform, "an answer to message " + std::to_string(options->rr_token), reply);
  return 0;
}

int32 mts_errno_get(mts_q_handle_t) { return platform_for("mts_errno_get").internals().last_mts_errno; }

void* mts_payload_get(const mts_msg_ref_t* got) {
  message* const found = find_message(got, "mts_payload_get");
  if (platform_for("mts_payload_get").failure_of("mts_payload_get") != 0) return nullptr;
  return found == nullptr || found->payload.empty() ? nullptr : found->payload.data();
}

uint32 mts_payload_size(const mts_msg_ref_t* got) {
  const message* const found = find_message(got, "mts_payload_size");
  if (platform_for("mts_payload_size").failure_of("mts_payload_size") != 0) return 0;
  return found == nullptr ? 0 : static_cast<uint32>(found->payload.size());
}

boolean mts_is_reject(const mts_msg_ref_t* got) {
  const message* const found = find_message(got, "mts_is_reject");
  if (platform_for("mts_is_reject").failure_of("mts_is_reject") != 0) return 1;
  return found != nullptr && found->is_rejection;
}

int32 mts_drop(mts_q_handle_t, mts_msg_ref_t* dropped) {
  message* const found = find_message(dropped, "mts_drop");
  if (found == nullptr) return 0;
  found->is_dropped = true;
  octets().swap(found->payload);  // a later read of it is an error that the sanitizer sees
  platform_for("mts_drop").drops.push_back(dropped->id);
  return platform_for("mts_drop").failure_of("mts_drop");
}

}  // extern "C"
