#include "transport/transport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/transport/alarm_soon.h"
#include "transport/failures.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

enum : uint32 { kEchoSap = 1001, kThrowingSap, kReplacedSap, kUnknownSap };

reply echo(mts_opc_t opcode, std::span<const std::byte> request) {
  reply answer;
  answer.payload.assign(request.begin(), request.end());
  answer.payload.push_back(static_cast<std::byte>(opcode));
  return answer;
}

reply throwing(mts_opc_t, std::span<const std::byte>) { throw std::runtime_error("broken service"); }

constexpr service kServices[] = {{kEchoSap, "echo", echo}, {kThrowingSap, "throwing", throwing}};

mts_recv_options_t options_for(const mts_msg_ref_t& sent, int32 timeout_sec = 60) {
  mts_recv_options_t options{};
  options.version = 1;
  options.timeout = timeout_sec;
  options.rr_token = mts_rr_token_get(&sent);
  return options;
}

class Transport : public testing::Test {
 protected:
  Transport() {
    transport_register(kServices);
    q_ = transport_open_queue();
    before_ = transport_accounts();
  }
  ~Transport() override {
    transport_inject_fault("echo", {});
    transport_limit_waits(0);
    transport_cancel(false);
    transport_close_queue(q_);
  }

  int32 send(std::string text, mts_msg_ref_t* sent, uint32 sap = kEchoSap) {
    const mts_addr_t to{MTS_NODE_LOCAL, sap};
    return mts_send(q_, &to, '!', text.data(), static_cast<uint32>(text.size()), sent, 0, 0);
  }

  struct exchanged {
    mts_msg_ref_t sent{}, got{};
  };
  exchanged exchange_with(const std::string& text) {
    exchanged all;
    send(text, &all.sent);
    mts_recv_options_t options = options_for(all.sent);
    mts_recv(q_, &all.got, &options);
    return all;
  }
  void drop_all(exchanged all) {
    mts_drop(q_, &all.sent);
    mts_drop(q_, &all.got);
  }

  mts_msg_ref_t sent(const std::string& text, uint32 sap = kEchoSap) {
    mts_msg_ref_t reference{};
    EXPECT_EQ(send(text, &reference, sap), 0);
    return reference;
  }

  // Receives the answer to `request`; -1 is left to the caller to look at.
  int32 receive(const mts_msg_ref_t& request, mts_msg_ref_t* got, int32 timeout_sec = 60) {
    mts_recv_options_t options = options_for(request, timeout_sec);
    return mts_recv(q_, got, &options);
  }

  void drop(mts_msg_ref_t message) { EXPECT_EQ(mts_drop(q_, &message), 0); }

  int32 error() const { return mts_errno_get(q_); }

  transport_account counted() const {
    const transport_account now = transport_accounts();
    return {now.sent - before_.sent, now.received - before_.received, now.dropped - before_.dropped,
            now.dropped_twice - before_.dropped_twice, now.never_dropped - before_.never_dropped};
  }

  static std::string text_of(const mts_msg_ref_t& message) {
    const auto* const payload = static_cast<const char*>(mts_payload_get(&message));
    return payload == nullptr ? "" : std::string(payload, mts_payload_size(&message));
  }

  mts_q_handle_t q_;
  transport_account before_;
};

TEST_F(Transport, AnswersWithWhatTheServiceSays) {
  const mts_msg_ref_t request = sent("ping");
  mts_msg_ref_t answer{};

  ASSERT_EQ(receive(request, &answer), 0);

  EXPECT_EQ(text_of(answer), "ping!");
  EXPECT_EQ(mts_is_reject(&answer), 0u);
  EXPECT_EQ(error(), 0);
  drop(request);
  drop(answer);
  EXPECT_EQ(counted().sent, 1u);
  EXPECT_EQ(counted().received, 1u);
  EXPECT_EQ(counted().dropped, 2u);
}

TEST_F(Transport, JoinsAnswersToRequestsByTheirTokens) {
  const mts_msg_ref_t first = sent("first"), second = sent("second"), third = sent("third");
  ASSERT_NE(mts_rr_token_get(&first), mts_rr_token_get(&second));
  mts_msg_ref_t first_answer{}, second_answer{}, third_answer{};

  ASSERT_EQ(receive(second, &second_answer), 0);
  ASSERT_EQ(receive(first, &first_answer), 0);
  ASSERT_EQ(receive(third, &third_answer), 0);

  EXPECT_EQ(text_of(first_answer), "first!");
  EXPECT_EQ(text_of(second_answer), "second!");
  EXPECT_EQ(text_of(third_answer), "third!");
}

TEST_F(Transport, KeepsTheAnswerWhenTheRequestIsDroppedFirst) {
  const mts_msg_ref_t request = sent("early");
  mts_recv_options_t options = options_for(request);
  drop(request);
  mts_msg_ref_t answer{};

  ASSERT_EQ(mts_recv(q_, &answer, &options), 0);

  EXPECT_EQ(text_of(answer), "early!");
  drop(answer);
}

TEST_F(Transport, DeliversAnAnswerOnlyOnce) {
  const mts_msg_ref_t request = sent("once");
  mts_msg_ref_t answer{}, again{};
  ASSERT_EQ(receive(request, &answer), 0);

  EXPECT_EQ(receive(request, &again, 0), -1);

  EXPECT_EQ(error(), ETIMEDOUT);
  EXPECT_EQ(again.id, 0u);
  drop(request);
  drop(answer);
}

TEST_F(Transport, KeepsAnswersOnTheSendersQueue) {
  const mts_msg_ref_t request = sent("mine");
  const mts_q_handle_t other = transport_open_queue();
  mts_recv_options_t options = options_for(request, 0);
  mts_msg_ref_t stolen{}, answer{};

  EXPECT_EQ(mts_recv(other, &stolen, &options), -1);
  EXPECT_EQ(mts_errno_get(other), ETIMEDOUT);
  EXPECT_EQ(receive(request, &answer), 0);

  mts_msg_ref_t reference = answer;
  EXPECT_EQ(mts_drop(other, &reference), -1) << "a message is dropped on its own queue";
  drop(answer);
  drop(request);
  transport_close_queue(other);
}

TEST_F(Transport, ReasonOfAFailedReceiveSurvivesTheDropOfTheRequest) {
  const mts_msg_ref_t request = sent("silence");
  mts_msg_ref_t answer{}, second{};
  ASSERT_EQ(receive(request, &answer), 0);
  ASSERT_EQ(receive(request, &second, 0), -1);

  drop(request);
  drop(answer);

  EXPECT_EQ(error(), ETIMEDOUT);
}

TEST_F(Transport, NotesRequestsWithoutAUsableAnswer) {
  forget_failures();
  drop_all(exchange_with("good"));
  EXPECT_TRUE(noted_failures().empty());

  transport_inject_fault("echo", {injected_fault::kind::reject});
  drop_all(exchange_with("refused"));
  transport_inject_fault("echo", {injected_fault::kind::cut, 0});
  drop_all(exchange_with("empty"));
  transport_inject_fault("echo", {injected_fault::kind::lost});
  mts_msg_ref_t none{};
  EXPECT_EQ(send("lost", &none), -1);
  transport_inject_fault("echo", {injected_fault::kind::silent});
  transport_limit_waits(1);
  drop_all(exchange_with("unanswered"));
  transport_note_damaged(kThrowingSap);

  transport_note_error(kThrowingSap, PM_ERR_PORT_LOCKED);

  const std::vector<failure> noted(noted_failures().begin(), noted_failures().end());
  EXPECT_EQ(noted, (std::vector<failure>{{"echo", fault::rejected},
                                         {"echo", fault::damaged},
                                         {"echo", fault::unreachable},
                                         {"echo", fault::unanswered},
                                         {"throwing", fault::damaged},
                                         {"throwing", fault::error, PM_ERR_PORT_LOCKED}}));
  forget_failures();
  EXPECT_TRUE(noted_failures().empty());
}

TEST_F(Transport, ACancelledWaitIsNoFailure) {
  forget_failures();
  transport_inject_fault("echo", {injected_fault::kind::silent});
  transport_cancel(true);
  drop_all(exchange_with("cancelled"));
  EXPECT_TRUE(noted_failures().empty());
}

// The transport does not look into accounts: any address will do.
TEST_F(Transport, QueueKeepsItsAccountUntilItIsClosed) {
  int some = 0, more = 0;
  auto* const first = reinterpret_cast<command_account*>(&some);
  auto* const second = reinterpret_cast<command_account*>(&more);
  const mts_q_handle_t other = transport_open_queue();
  EXPECT_EQ(attached_account(other), nullptr);
  EXPECT_EQ(attach_account(other, first), nullptr);
  EXPECT_EQ(attached_account(q_), nullptr);
  EXPECT_EQ(attach_account(other, second), first);
  EXPECT_EQ(attached_account(other), second);

  transport_close_queue(other);
  EXPECT_EQ(attached_account(other), nullptr);
  EXPECT_EQ(attach_account(other, first), nullptr);
  const mts_q_handle_t next = transport_open_queue();  // in its place
  EXPECT_EQ(attached_account(next), nullptr);
  transport_close_queue(next);
}

TEST_F(Transport, AcceptsAnEmptyReferenceEverywhere) {
  mts_msg_ref_t empty{};

  EXPECT_EQ(mts_payload_get(&empty), nullptr);
  EXPECT_EQ(mts_payload_size(&empty), 0u);
  EXPECT_EQ(mts_is_reject(&empty), 0u);
  EXPECT_EQ(mts_rr_token_get(&empty), 0u);
  EXPECT_EQ(mts_drop(q_, &empty), 0);
  EXPECT_EQ(counted().dropped, 0u);
  EXPECT_EQ(counted().dropped_twice, 0u);
}

TEST_F(Transport, SentMessageHasNoPayloadToRead) {
  const mts_msg_ref_t request = sent("private");

  EXPECT_EQ(mts_payload_get(&request), nullptr);
  EXPECT_EQ(mts_payload_size(&request), 0u);
  drop(request);
}

TEST_F(Transport, CountsASecondDropAndRefusesIt) {
  mts_msg_ref_t request = sent("twice");
  drop(request);

  EXPECT_EQ(mts_drop(q_, &request), -1);

  EXPECT_EQ(error(), EINVAL);
  EXPECT_EQ(counted().dropped, 1u);
  EXPECT_EQ(counted().dropped_twice, 1u);
}

TEST_F(Transport, StaleReferenceDoesNotReachTheMessageThatTookItsPlace) {
  mts_msg_ref_t request = sent("old");
  mts_msg_ref_t old_answer{};
  ASSERT_EQ(receive(request, &old_answer), 0);
  drop(request);
  drop(old_answer);
  const mts_msg_ref_t newer = sent("new");
  mts_msg_ref_t new_answer{};
  ASSERT_EQ(receive(newer, &new_answer), 0);

  EXPECT_EQ(mts_payload_get(&old_answer), nullptr);
  EXPECT_EQ(mts_rr_token_get(&request), 0u);
  EXPECT_EQ(mts_drop(q_, &old_answer), -1);

  EXPECT_EQ(text_of(new_answer), "new!");
  drop(newer);
  drop(new_answer);
}

TEST_F(Transport, ClosingAQueueCountsWhatWasNotDropped) {
  const mts_msg_ref_t request = sent("forgotten");
  mts_msg_ref_t answer{};
  ASSERT_EQ(receive(request, &answer), 0);
  sent("never received");

  transport_close_queue(q_);

  EXPECT_EQ(counted().never_dropped, 3u) << "two requests and one answer; the other answer was never handed out";
  EXPECT_EQ(mts_payload_get(&answer), nullptr);
}

TEST_F(Transport, ClosedQueueIsRefusedEvenWhenItsPlaceIsTakenAgain) {
  transport_close_queue(q_);
  const mts_q_handle_t newer = transport_open_queue();
  mts_msg_ref_t request{};

  EXPECT_NE(newer, q_);
  EXPECT_EQ(send("lost", &request), -1);
  EXPECT_EQ(error(), EBADF);
  EXPECT_EQ(request.id, 0u);
  transport_close_queue(newer);
}

TEST_F(Transport, RejectedRequestIsAnsweredByARejection) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::reject}));
  const mts_msg_ref_t request = sent("please");
  mts_msg_ref_t answer{};

  ASSERT_EQ(receive(request, &answer), 0);

  EXPECT_NE(mts_is_reject(&answer), 0u);
  EXPECT_EQ(mts_payload_size(&answer), 0u);
  drop(request);
  drop(answer);
}

TEST_F(Transport, ServiceThatThrowsHasRejected) {
  const mts_msg_ref_t request = sent("please", kThrowingSap);
  mts_msg_ref_t answer{};

  ASSERT_EQ(receive(request, &answer), 0);

  EXPECT_NE(mts_is_reject(&answer), 0u);
}

TEST_F(Transport, LostServiceRefusesTheRequest) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::lost}));
  mts_msg_ref_t request{};

  EXPECT_EQ(send("anybody", &request), -1);

  EXPECT_EQ(error(), ECONNREFUSED);
  EXPECT_EQ(request.id, 0u);
  EXPECT_EQ(counted().sent, 0u);
}

TEST_F(Transport, NobodyListensAtAnUnknownAccessPointOrNode) {
  mts_msg_ref_t request{};
  EXPECT_EQ(send("anybody", &request, kUnknownSap), -1);
  EXPECT_EQ(error(), ECONNREFUSED);

  const mts_addr_t elsewhere{0x1000, kEchoSap};
  EXPECT_EQ(mts_send(q_, &elsewhere, 1, nullptr, 0, &request, 0, 0), -1);
  EXPECT_EQ(error(), EHOSTUNREACH);
}

TEST_F(Transport, RegisteringAgainReplacesTheServiceAndItsFault) {
  constexpr service earlier[] = {{kReplacedSap, "replaced", throwing}};
  constexpr service later[] = {{kReplacedSap, "replaced", echo}};
  transport_register(earlier);
  ASSERT_TRUE(transport_inject_fault("replaced", {.what = injected_fault::kind::lost}));

  transport_register(later);
  const mts_msg_ref_t request = sent("hello", kReplacedSap);
  mts_msg_ref_t answer{};

  ASSERT_EQ(receive(request, &answer), 0);
  EXPECT_EQ(text_of(answer), "hello!");
}

TEST_F(Transport, OnlyNamedServicesHaveFaults) { EXPECT_FALSE(transport_inject_fault("nobody", {})); }

TEST_F(Transport, CutAnswerKeepsItsFirstBytes) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::cut, .number = 3}));
  const mts_msg_ref_t request = sent("scissors");
  mts_msg_ref_t answer{};

  ASSERT_EQ(receive(request, &answer), 0);

  EXPECT_EQ(text_of(answer), "sci");
}

TEST_F(Transport, AnswerCutToNothingHasNoPayload) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::cut, .number = 0}));
  const mts_msg_ref_t request = sent("scissors");
  mts_msg_ref_t answer{};

  ASSERT_EQ(receive(request, &answer), 0);

  EXPECT_EQ(mts_payload_get(&answer), nullptr);
  EXPECT_EQ(mts_payload_size(&answer), 0u);
}

TEST_F(Transport, ShorterAnswerThanTheCutStaysAsItIs) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::cut, .number = 100}));
  const mts_msg_ref_t request = sent("x");
  mts_msg_ref_t answer{};

  ASSERT_EQ(receive(request, &answer), 0);

  EXPECT_EQ(text_of(answer), "x!");
}

TEST_F(Transport, SilentServiceIsWaitedForUntilTheTimeOut) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::silent}));
  const mts_msg_ref_t request = sent("hello");
  mts_msg_ref_t answer{};
  const auto start = steady_clock::now();

  EXPECT_EQ(receive(request, &answer, 1), -1);

  EXPECT_EQ(error(), ETIMEDOUT);
  EXPECT_GE(steady_clock::now() - start, milliseconds(1000));
  drop(request);
  EXPECT_EQ(error(), ETIMEDOUT) << "dropping the request leaves the reason readable";
}

TEST_F(Transport, WaitsAreLimitedWhateverTheWaiterAskedFor) {
  transport_limit_waits(1);
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::silent}));
  const mts_msg_ref_t request = sent("hello");
  mts_msg_ref_t answer{};

  EXPECT_EQ(receive(request, &answer, 1'000'000), -1) << "a wait without the limit does not end";

  EXPECT_EQ(error(), ETIMEDOUT);
}

TEST_F(Transport, DoesNotWaitWhenToldNotTo) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::silent}));
  const mts_msg_ref_t request = sent("hello");
  mts_recv_options_t options = options_for(request);
  options.non_blocking = 1;
  mts_msg_ref_t answer{};

  EXPECT_EQ(mts_recv(q_, &answer, &options), -1);

  EXPECT_EQ(error(), EAGAIN);
}

TEST_F(Transport, InjectedInterruptionsComeFirstAndTheAnswerWaits) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::interrupt, .number = 2}));
  const mts_msg_ref_t request = sent("patience");
  mts_msg_ref_t answer{};

  EXPECT_EQ(receive(request, &answer), -1);
  EXPECT_EQ(error(), MTS_ERRNO_INTERRUPTED);
  EXPECT_EQ(receive(request, &answer), -1);
  EXPECT_EQ(error(), MTS_ERRNO_INTERRUPTED);
  ASSERT_EQ(receive(request, &answer), 0);

  EXPECT_EQ(text_of(answer), "patience!");
  EXPECT_EQ(counted().received, 1u);
}

TEST_F(Transport, SignalInterruptsAWait) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::silent}));
  const mts_msg_ref_t request = sent("hello");
  mts_msg_ref_t answer{};
  const alarm_soon alarm([](int) {});

  EXPECT_EQ(receive(request, &answer, 20), -1);

  EXPECT_EQ(error(), MTS_ERRNO_INTERRUPTED);
}

TEST_F(Transport, CancellationFromASignalHandlerEndsAWait) {
  ASSERT_TRUE(transport_inject_fault("echo", {.what = injected_fault::kind::silent}));
  const mts_msg_ref_t request = sent("hello");
  mts_msg_ref_t answer{};
  const alarm_soon alarm([](int) { transport_cancel(true); });

  EXPECT_EQ(receive(request, &answer, 20), -1);

  EXPECT_EQ(error(), ECANCELED);
}

TEST_F(Transport, CancellationLastsUntilItIsTakenBack) {
  transport_cancel(true);
  const mts_msg_ref_t request = sent("given up");
  mts_msg_ref_t answer{};
  EXPECT_EQ(receive(request, &answer), -1);
  EXPECT_EQ(error(), ECANCELED);
  EXPECT_EQ(answer.id, 0u);
  drop(request);

  transport_cancel(false);
  const mts_msg_ref_t next = sent("again");
  ASSERT_EQ(receive(next, &answer), 0);

  EXPECT_EQ(text_of(answer), "again!");
  drop(next);
  drop(answer);
  EXPECT_EQ(counted().sent + counted().received, counted().dropped);
}

TEST_F(Transport, RefusesWhatNobodyCanWaitFor) {
  const mts_msg_ref_t request = sent("hello");
  mts_msg_ref_t answer{};

  mts_recv_options_t without_token = options_for({});
  EXPECT_EQ(mts_recv(q_, &answer, &without_token), -1);
  EXPECT_EQ(error(), EINVAL);

  mts_recv_options_t other_version = options_for(request);
  other_version.version = 2;
  EXPECT_EQ(mts_recv(q_, &answer, &other_version), -1);
  EXPECT_EQ(error(), EINVAL);

  EXPECT_EQ(mts_recv(q_, &answer, nullptr), -1);
  EXPECT_EQ(error(), EINVAL);
}

TEST_F(Transport, RefusesAPayloadThatIsNotThere) {
  const mts_addr_t to{MTS_NODE_LOCAL, kEchoSap};
  mts_msg_ref_t request{};

  EXPECT_EQ(mts_send(q_, &to, 1, nullptr, 4, &request, 0, 0), -1);

  EXPECT_EQ(error(), EINVAL);
  EXPECT_EQ(request.id, 0u);
}

TEST_F(Transport, ReusesTheRoomOfDroppedMessages) {
  uint32 highest = 0;
  for (int round = 0; round < 1000; ++round) {
    const mts_msg_ref_t request = sent("again");
    mts_msg_ref_t answer{};
    ASSERT_EQ(receive(request, &answer), 0);
    highest = std::max({highest, request.id, answer.id});
    drop(request);
    drop(answer);
  }
  EXPECT_LT(highest, 100u);
}

TEST_F(Transport, ReusesTheRoomOfAnswersThatWereGivenUp) {
  transport_cancel(true);
  uint32 highest = 0;
  for (int round = 0; round < 1000; ++round) {
    const mts_msg_ref_t request = sent("given up");
    mts_msg_ref_t answer{};
    ASSERT_EQ(receive(request, &answer), -1);
    highest = std::max(highest, request.id);
    drop(request);
  }
  EXPECT_LT(highest, 100u);
}

}  // namespace
}  // namespace host
