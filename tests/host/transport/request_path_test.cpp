#include "transport/request_path.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "transport/failures.h"

namespace host {
namespace {

enum : uint32 { kDistantSap = 2001 };

reply never_called(mts_opc_t, std::span<const std::byte>) { throw std::logic_error("the path has the answers"); }

constexpr service kDistantServices[] = {{kDistantSap, "distant", never_called}};

std::vector<std::byte> bytes(std::string_view text) {
  const auto* const begin = reinterpret_cast<const std::byte*>(text.data());
  return {begin, begin + text.size()};
}

// A path whose answers come when the test lets them.
struct slow_path final : request_path {
  int32 begin(const sent_request& request, std::optional<reply>&) override {
    if (error_of_begin != 0) return error_of_begin;
    opcodes.push_back(request.opcode);
    tokens.push_back(request.token);
    return 0;
  }
  int32 finish(mts_rr_token_t token, uint32 seconds, reply& answer) override {
    waited_sec = seconds;
    const auto found = arrived.find(token);
    if (found == arrived.end()) return error_of_finish;
    answer = found->second;
    return 0;
  }
  void forget(mts_rr_token_t token) override { forgotten.push_back(token); }
  std::vector<int> descriptors(const service&, uint32) override { return {}; }

  int32 error_of_begin = 0;
  int32 error_of_finish = ETIMEDOUT;
  uint32 waited_sec = 0;
  std::vector<mts_opc_t> opcodes;
  std::vector<mts_rr_token_t> tokens, forgotten;
  std::map<mts_rr_token_t, reply> arrived;
};

class RequestPath : public testing::Test {
 protected:
  RequestPath() {
    transport_register(kDistantServices);
    transport_use(&path_);
    q_ = transport_open_queue();
    forget_failures();
  }
  ~RequestPath() override {
    transport_inject_fault("distant", {});
    transport_close_queue(q_);
    transport_use(nullptr);
    forget_failures();
  }

  int32 send(mts_opc_t opcode = 7) {
    const mts_addr_t to{MTS_NODE_LOCAL, kDistantSap};
    return mts_send(q_, &to, opcode, nullptr, 0, &sent_, 0, 0);
  }
  int32 receive(int32 timeout_sec = 60) {
    mts_recv_options_t options{};
    options.version = 1;
    options.timeout = timeout_sec;
    options.rr_token = mts_rr_token_get(&sent_);
    return mts_recv(q_, &got_, &options);
  }
  std::string received() const { return {static_cast<const char*>(mts_payload_get(&got_)), mts_payload_size(&got_)}; }

  slow_path path_;
  mts_q_handle_t q_;
  mts_msg_ref_t sent_{}, got_{};
};

TEST_F(RequestPath, AnswerComesWhenItIsReceived) {
  ASSERT_EQ(send(9), 0);
  EXPECT_EQ(path_.opcodes, std::vector<mts_opc_t>{9});
  path_.arrived[path_.tokens.front()] = {reply::kind::answer, bytes("late")};

  ASSERT_EQ(receive(45), 0);

  EXPECT_EQ(path_.waited_sec, 45u);
  EXPECT_EQ(received(), "late");
  EXPECT_TRUE(noted_failures().empty());
}

TEST_F(RequestPath, AnswerThatIsLateIsNotedAndCanStillBeReceived) {
  ASSERT_EQ(send(), 0);

  ASSERT_EQ(receive(), -1);
  EXPECT_EQ(mts_errno_get(q_), ETIMEDOUT);
  ASSERT_EQ(noted_failures().size(), 1u);
  EXPECT_EQ(noted_failures().front(), (failure{"distant", fault::unanswered}));

  path_.arrived[path_.tokens.front()] = {reply::kind::answer, bytes("x")};
  EXPECT_EQ(receive(), 0);
}

TEST_F(RequestPath, RejectionIsNoted) {
  ASSERT_EQ(send(), 0);
  path_.arrived[path_.tokens.front()] = {reply::kind::reject, {}};

  ASSERT_EQ(receive(), 0);

  EXPECT_NE(mts_is_reject(&got_), 0u);
  ASSERT_EQ(noted_failures().size(), 1u);
  EXPECT_EQ(noted_failures().front(), (failure{"distant", fault::rejected}));
}

TEST_F(RequestPath, LostPathFailsTheRequestAndNotesItItself) {
  path_.error_of_begin = ECONNRESET;

  EXPECT_EQ(send(), -1);

  EXPECT_EQ(mts_errno_get(q_), ECONNRESET);
  EXPECT_EQ(sent_.id, 0u);
  EXPECT_TRUE(noted_failures().empty());
}

TEST_F(RequestPath, PathLostWhileWaitingNotesItItself) {
  path_.error_of_finish = ECONNRESET;
  ASSERT_EQ(send(), 0);

  EXPECT_EQ(receive(), -1);

  EXPECT_EQ(mts_errno_get(q_), ECONNRESET);
  EXPECT_TRUE(noted_failures().empty());
}

TEST_F(RequestPath, FaultsAreInjectedOnThisSide) {
  transport_inject_fault("distant", {injected_fault::kind::reject});
  ASSERT_EQ(send(), 0);
  EXPECT_TRUE(path_.opcodes.empty());
  ASSERT_EQ(receive(), 0);
  EXPECT_NE(mts_is_reject(&got_), 0u);

  transport_inject_fault("distant", {injected_fault::kind::cut, 2});
  ASSERT_EQ(send(), 0);
  path_.arrived[path_.tokens.front()] = {reply::kind::answer, bytes("whole")};
  ASSERT_EQ(receive(), 0);
  EXPECT_EQ(received(), "wh");
}

TEST_F(RequestPath, ClosedQueueAndCancelledWaitForgetTheirAnswers) {
  ASSERT_EQ(send(), 0);
  transport_cancel(true);
  EXPECT_EQ(receive(), -1);
  transport_cancel(false);
  EXPECT_EQ(mts_errno_get(q_), ECANCELED);
  EXPECT_EQ(path_.forgotten, path_.tokens);

  ASSERT_EQ(send(), 0);
  transport_close_queue(q_);
  EXPECT_EQ(path_.forgotten, path_.tokens);
}

}  // namespace
}  // namespace host
