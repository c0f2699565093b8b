// The session service, asked as the shell asks it.
#include "messages/calls/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

#include "base/port_status.h"
#include "host/switch/small_machine.h"
#include "host/switch/stopped_clock.h"
#include "messages/fields.h"
#include "platform/port_config.h"
#include "platform/syserr.h"
#include "service/services.h"
#include "settings/session.h"
#include "switch/clock.h"
#include "transport/failures.h"
#include "transport/transport.h"

namespace host {
namespace {

class SessionRequests : public testing::Test {
 protected:
  SessionRequests() {
    transport_register(all_services());
    forget_failures();
  }
  ~SessionRequests() override { forget_failures(); }

  interface& port() {
    return *the_machine().find(names_.third_port);
  }
  if_index_t index() const { return names_.third_port; }

  // A change as a service makes it.
  void describe(const std::string& text) {
    session_begin_changes("description " + text);
    note_change(port());
    port().settings.description = text;
  }

  small_machine names_ = install_small_machine();
  switch_session session_;
  session_scope scope_{session_};
};

TEST_F(SessionRequests, StepsAreListedFromTheOldest) {
  describe("lab");
  describe("hall");

  const auto first = session_step_at(0), second = session_step_at(1);
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->command, "description lab");
  ASSERT_EQ(first->changes.size(), 1U);
  EXPECT_EQ(first->changes[0].first, index());
  EXPECT_EQ(first->changes[0].second.after, (command_list{"description lab"}));
  EXPECT_EQ(second->changes[0].second.before, (command_list{"description lab"}));
  EXPECT_EQ(second->changes[0].second.after, (command_list{"description hall"}));
  EXPECT_FALSE(session_step_at(2));
  EXPECT_TRUE(noted_failures().empty());
}

TEST_F(SessionRequests, TheLastStepIsUndone) {
  const std::string at_first = port().settings.description;
  describe("lab");
  const auto last = session_last_steps(1);
  ASSERT_TRUE(last);
  EXPECT_EQ(last->num_steps, 1U);
  EXPECT_EQ(last->interfaces, (std::vector<if_index_t>{index()}));

  const auto made = session_undo();
  ASSERT_TRUE(made);
  EXPECT_EQ(made->applied, (std::vector<if_index_t>{index()}));
  EXPECT_TRUE(made->refused.empty());
  EXPECT_EQ(port().settings.description, at_first);
  EXPECT_EQ(session_last_steps(1)->num_steps, 0U);
}

TEST_F(SessionRequests, AnotherSessionHasItsOwnSteps) {
  describe("lab");
  switch_session other;
  {
    const session_scope of_other(other);
    EXPECT_EQ(session_last_steps(1)->num_steps, 0U);
    describe("hall");
    EXPECT_EQ(session_step_at(0)->command, "description hall");
  }
  EXPECT_EQ(session_last_steps(1)->num_steps, 1U);
  EXPECT_EQ(session_step_at(0)->command, "description lab");
}

TEST_F(SessionRequests, NotedPortsAreCompared) {
  const if_index_range_t ranges[] = {{index(), index()}, {names_.nobody, names_.nobody}};
  session_note_ports(ranges, true);
  describe("lab");
  const std::vector<noted_port> results = session_port_results();
  ASSERT_EQ(results.size(), 2U);
  const noted_port& changed = results[results[0].if_index == index() ? 0 : 1];
  const noted_port& absent = results[results[0].if_index == index() ? 1 : 0];
  EXPECT_FALSE(changed.is_same);
  EXPECT_EQ(changed.made.after, (command_list{"description lab"}));
  EXPECT_EQ(absent.if_index, names_.nobody);
  EXPECT_TRUE(absent.is_same);
}

TEST_F(SessionRequests, AnAbsentPortIsNotNotedWithoutBeingAskedFor) {
  const if_index_range_t ranges[] = {{names_.nobody, names_.nobody}};
  session_note_ports(ranges, false);
  EXPECT_TRUE(session_port_results().empty());
}

TEST_F(SessionRequests, ADryRunLeavesTheSwitchAsItWas) {
  const std::string at_first = port().settings.description;
  ASSERT_TRUE(session_dry_run(true));
  describe("lab");
  EXPECT_EQ(port().settings.description, "lab");
  ASSERT_TRUE(session_dry_run(false));
  EXPECT_EQ(port().settings.description, at_first);
}

TEST_F(SessionRequests, ADryRunLastsOverTheRequestsOfItsSessionOnly) {
  const std::string at_first = port().settings.description;
  switch_session other;
  {
    const session_scope of_other(other);
    ASSERT_TRUE(session_dry_run(true));
    describe("lab");
  }
  EXPECT_EQ(port().settings.description, at_first);
  {
    const session_scope of_other(other);
    EXPECT_EQ(port().settings.description, "lab");
    ASSERT_TRUE(session_dry_run(false));
  }
}

TEST_F(SessionRequests, ACandidateCollectsWhatACommitApplies) {
  ASSERT_TRUE(session_candidate(candidate_step::begin));
  ASSERT_TRUE(session_candidate(candidate_step::enter));
  describe("lab");
  ASSERT_TRUE(session_candidate(candidate_step::leave));
  EXPECT_NE(port().settings.description, "lab");

  const auto changes = session_candidate_changes(true);
  ASSERT_TRUE(changes);
  ASSERT_EQ(changes->size(), 1U);
  EXPECT_EQ(changes->front().if_index, index());
  EXPECT_EQ(changes->front().settings.after, (command_list{"description lab"}));
  EXPECT_FALSE(changes->front().may_cut);

  const auto answer = session_commit("commit", std::nullopt);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->fault, "");
  EXPECT_EQ(answer->made.applied, (std::vector<if_index_t>{index()}));
  EXPECT_EQ(port().settings.description, "lab");
  EXPECT_TRUE(session_candidate_changes(true)->empty());
}

TEST_F(SessionRequests, ACommitThatIsNotConfirmedInTimeIsRolledBack) {
  const stopped_clock clock(1'000'000'000);
  const std::string at_first = port().settings.description;
  ASSERT_TRUE(session_candidate(candidate_step::begin));
  ASSERT_TRUE(session_candidate(candidate_step::enter));
  describe("lab");
  ASSERT_TRUE(session_candidate(candidate_step::leave));
  ASSERT_TRUE(session_commit("commit confirmed 60", 60U));
  EXPECT_EQ(session_begin_line()->seconds_to_confirm, 60U);
  clock_advance(59);
  EXPECT_EQ(session_begin_line()->seconds_to_confirm, 1U);
  EXPECT_EQ(port().settings.description, "lab");

  clock_advance(1);
  const auto begun = session_begin_line();
  ASSERT_TRUE(begun && begun->rolled_back);
  EXPECT_EQ(begun->rolled_back->interfaces, (std::vector<if_index_t>{index()}));
  EXPECT_EQ(begun->rolled_back->num_refused, 0U);
  EXPECT_FALSE(begun->seconds_to_confirm);
  EXPECT_EQ(port().settings.description, at_first);
  EXPECT_FALSE(session_begin_line()->rolled_back);
}

TEST_F(SessionRequests, AConfirmedCommitStays) {
  ASSERT_TRUE(session_candidate(candidate_step::begin));
  ASSERT_TRUE(session_candidate(candidate_step::enter));
  describe("lab");
  ASSERT_TRUE(session_candidate(candidate_step::leave));
  ASSERT_TRUE(session_commit("commit confirmed 60", 60U));
  const auto answer = session_confirm();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->done.end, commit_end::kept);
  EXPECT_EQ(answer->done.interfaces, (std::vector<if_index_t>{index()}));
  const auto late = session_roll_back();
  ASSERT_TRUE(late);
  EXPECT_FALSE(late->done);
  EXPECT_EQ(port().settings.description, "lab");
}

TEST_F(SessionRequests, TheEndOfASessionRollsBackItsCommit) {
  const std::string at_first = port().settings.description;
  {
    switch_session other;
    const session_scope of_other(other);
    ASSERT_TRUE(session_candidate(candidate_step::begin));
    ASSERT_TRUE(session_candidate(candidate_step::enter));
    describe("lab");
    ASSERT_TRUE(session_candidate(candidate_step::leave));
    ASSERT_TRUE(session_commit("commit confirmed 60", 60U));
    EXPECT_EQ(port().settings.description, "lab");
  }
  EXPECT_EQ(port().settings.description, at_first);
}

// ---- Commits that outlive their shells

class LeftCommits : public SessionRequests {
 protected:
  // A session of another process, whose commit waits for 60 seconds.
  std::unique_ptr<switch_session> commit_for_a_minute() {
    auto made = std::make_unique<switch_session>();
    made->set_owner({"ann", 1001, 4711, "pts/3", 1'000'000'000});
    const session_scope of_other(*made);
    EXPECT_TRUE(session_candidate(candidate_step::begin));
    EXPECT_TRUE(session_candidate(candidate_step::enter));
    describe("lab");
    EXPECT_TRUE(session_candidate(candidate_step::leave));
    EXPECT_TRUE(session_commit("commit confirmed 60", 60U));
    return made;
  }

  const stopped_clock clock_{1'000'000'000};
  const std::string at_first_ = port().settings.description;
  const std::unique_ptr<switch_session> other_ = commit_for_a_minute();
};

TEST_F(LeftCommits, AreRolledBackOutsideOfTheRequestsOfTheirSession) {
  EXPECT_EQ(earliest_deadline(), 1'000'000'060U);
  clock_advance(59);
  EXPECT_FALSE(other_->end_overdue_commit());
  clock_advance(1);
  EXPECT_TRUE(other_->end_overdue_commit());
  EXPECT_EQ(port().settings.description, at_first_);
  EXPECT_TRUE(waiting_sessions().empty());
  EXPECT_EQ(session_last_steps(1)->num_steps, 0U) << "the journal of the running session";

  const session_scope of_other(*other_);
  const auto begun = session_begin_line();
  ASSERT_TRUE(begun && begun->rolled_back);
  EXPECT_EQ(begun->rolled_back->interfaces, (std::vector<if_index_t>{index()}));
  EXPECT_FALSE(session_begin_line()->rolled_back) << "it is reported once";
}

TEST_F(LeftCommits, AreRolledBackOnTheSwitchWhileTheirSessionIsInItsCandidate) {
  {
    const session_scope of_other(*other_);
    ASSERT_TRUE(session_candidate(candidate_step::enter));
  }
  clock_advance(60);
  ASSERT_TRUE(session_dry_run(true));
  EXPECT_TRUE(other_->end_overdue_commit());
  ASSERT_TRUE(session_dry_run(false));
  EXPECT_EQ(port().settings.description, at_first_);
  const session_scope of_other(*other_);
  EXPECT_EQ(port().settings.description, "lab") << "the candidate has its changes again";
  ASSERT_TRUE(session_candidate(candidate_step::leave));
}

TEST_F(LeftCommits, AConfirmationThatComesTooLateReportsTheRollback) {
  clock_advance(60);
  ASSERT_TRUE(other_->end_overdue_commit());
  const session_scope of_other(*other_);
  const auto answer = session_confirm();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->done.end, commit_end::rolled_back);
  EXPECT_EQ(answer->done.interfaces, (std::vector<if_index_t>{index()}));
}

TEST_F(LeftCommits, WaitWhenTheirShellLeaves) {
  {
    const session_scope of_other(*other_);
    const auto left = session_leave();
    ASSERT_TRUE(left);
    EXPECT_EQ(left->kept_seconds, 60U);
    EXPECT_FALSE(left->rolled_back);
  }
  EXPECT_EQ(port().settings.description, "lab");
}

TEST_F(LeftCommits, OfTheOwnProcessEndWithIt) {
  ASSERT_TRUE(session_candidate(candidate_step::begin));
  ASSERT_TRUE(session_candidate(candidate_step::enter));
  the_machine().find(names_.second_port)->settings.description = "hall";
  ASSERT_TRUE(session_candidate(candidate_step::leave));
  ASSERT_TRUE(session_commit("commit confirmed 60", 60U));
  const auto left = session_leave();
  ASSERT_TRUE(left && left->rolled_back);
  EXPECT_FALSE(left->kept_seconds);
  EXPECT_EQ(left->rolled_back->interfaces, (std::vector<if_index_t>{names_.second_port}));
}

TEST_F(LeftCommits, AreListedWithoutTheirProcess) {
  other_->begin_candidate();
  other_->abandon();
  const auto sessions = session_list();
  ASSERT_TRUE(sessions);
  const listed_session& left = sessions->back();
  EXPECT_TRUE(left.has_ended);
  EXPECT_FALSE(left.has_candidate);
  EXPECT_EQ(left.seconds_to_confirm, 60U);
}

TEST_F(LeftCommits, AreEndedByAnotherSession) {
  const auto early = session_confirm(other_->number());
  ASSERT_TRUE(early);
  EXPECT_EQ(early->done.end, commit_end::none_waits) << "its shell has not ended";
  other_->abandon();
  const auto answer = session_confirm(other_->number());
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->done.end, commit_end::kept);
  EXPECT_EQ(answer->done.interfaces, (std::vector<if_index_t>{index()}));
  EXPECT_EQ(port().settings.description, "lab");
  EXPECT_TRUE(waiting_sessions().empty());
}

TEST_F(LeftCommits, AreRolledBackByAnotherSession) {
  EXPECT_FALSE(session_roll_back(other_->number())->done) << "its shell has not ended";
  other_->abandon();
  const auto answer = session_roll_back(other_->number());
  ASSERT_TRUE(answer && answer->done);
  EXPECT_EQ(answer->done->interfaces, (std::vector<if_index_t>{index()}));
  EXPECT_EQ(port().settings.description, at_first_);
}

TEST_F(LeftCommits, OfAUserAreEndedByThatUserWithoutTheRightToChange) {
  other_->abandon();
  session_.set_rights({.may_change = false});
  session_.set_owner({"bob", 1002, 4712, "pts/4", 1'000'000'000});
  const auto of_another = session_confirm(other_->number());
  ASSERT_TRUE(of_another);
  EXPECT_TRUE(of_another->is_refused);
  EXPECT_TRUE(session_roll_back(other_->number())->is_refused);
  EXPECT_EQ(port().settings.description, "lab");
  EXPECT_TRUE(noted_failures().empty());
  session_.set_owner({"ann", 1001, 4713, "pts/4", 1'000'000'000});
  const auto own = session_confirm(other_->number());
  ASSERT_TRUE(own);
  EXPECT_EQ(own->done.end, commit_end::kept);
}

TEST_F(SessionRequests, ACommitDoesNotWaitForEver) {
  ASSERT_TRUE(session_candidate(candidate_step::begin));
  EXPECT_FALSE(session_commit("commit confirmed 86401", 86'401U));
  EXPECT_EQ(noted_failures().size(), 1U);
}

TEST_F(LeftCommits, AreOnePerSession) {
  const session_scope of_other(*other_);
  ASSERT_TRUE(session_candidate(candidate_step::enter));
  port().settings.description = "hall";
  ASSERT_TRUE(session_candidate(candidate_step::leave));
  const auto second = session_commit("commit", std::nullopt);
  ASSERT_TRUE(second);
  EXPECT_TRUE(second->made.applied.empty());
  ASSERT_EQ(second->made.refused.size(), 1U);
  EXPECT_STREQ(syserr2str(static_cast<syserr_t>(uint32{second->made.refused[0].status})),
               "a commit of this session waits for 'confirm'");
  EXPECT_EQ(port().settings.description, "lab");
}

TEST_F(SessionRequests, TheSettingsOfAPortAreCommands) {
  describe("lab");
  const if_index_t asked[] = {index()};
  const auto commands = session_commands(asked);
  ASSERT_TRUE(commands);
  ASSERT_EQ(commands->size(), 1U);
  EXPECT_NE(std::find(commands->front().begin(), commands->front().end(), "description lab"), commands->front().end());
  const auto text = session_running_config(asked, false);
  ASSERT_TRUE(text);
  EXPECT_NE(text->find("\n  description lab\n"), std::string::npos) << *text;
}

TEST_F(SessionRequests, AStatusOfTheSourceHasItsText) {
  const uint32 status = status_of_text("the lab is closed");
  EXPECT_EQ(session_status_text(status), "the lab is closed");
  EXPECT_EQ(session_status_text(status + 1), std::nullopt);
  EXPECT_STREQ(syserr2str(static_cast<syserr_t>(status)), "the lab is closed");
  EXPECT_EQ(syserr2str(static_cast<syserr_t>(status + 1)), nullptr);
  EXPECT_TRUE(noted_failures().empty());
}

// ---- What does not fit

using fields_writer = void (*)(field_writer& to);

struct sent_request {
  const char* name;
  mts_opc_t opcode;
  fields_writer write;
};

constexpr sent_request kSentRequests[] = {
    {"begin line", SESSION_OPC_BEGIN_LINE, [](field_writer&) {}},
    {"begin changes", SESSION_OPC_BEGIN_CHANGES, [](field_writer& to) { to.text("shutdown"); }},
    {"step", SESSION_OPC_STEP, [](field_writer& to) { to.u32(0); }},
    {"changed ports", SESSION_OPC_CHANGED_PORTS, [](field_writer& to) { to.u32(1); }},
    {"undo", SESSION_OPC_UNDO, [](field_writer&) {}},
    {"note ports", SESSION_OPC_NOTE_PORTS,
     [](field_writer& to) {
       to.flag(true);
       to.numbers(std::vector<uint32>{1, 2});
     }},
    {"port results", SESSION_OPC_PORT_RESULTS, [](field_writer&) {}},
    {"dry run", SESSION_OPC_DRY_RUN, [](field_writer& to) { to.flag(false); }},
    {"candidate", SESSION_OPC_CANDIDATE, [](field_writer& to) { to.u8(static_cast<uint8>(candidate_step::end)); }},
    {"candidate changes", SESSION_OPC_CANDIDATE_CHANGES, [](field_writer& to) { to.flag(true); }},
    {"commit", SESSION_OPC_COMMIT,
     [](field_writer& to) {
       to.text("commit");
       to.flag(false);
       to.u32(0);
     }},
    {"confirm", SESSION_OPC_CONFIRM, [](field_writer& to) { to.u32(0); }},
    {"roll back", SESSION_OPC_ROLL_BACK, [](field_writer& to) { to.u32(0); }},
    {"leave", SESSION_OPC_LEAVE, [](field_writer&) {}},
    {"running config", SESSION_OPC_RUNNING_CONFIG,
     [](field_writer& to) {
       to.numbers({});
       to.flag(false);
     }},
    {"commands", SESSION_OPC_COMMANDS, [](field_writer& to) { to.numbers(std::vector<uint32>{1}); }},
    {"save startup", SESSION_OPC_SAVE_STARTUP, [](field_writer&) {}},
    {"status text", SESSION_OPC_STATUS_TEXT, [](field_writer& to) { to.u32(1); }},
    {"sessions", SESSION_OPC_SESSIONS, [](field_writer&) {}},
};

TEST_F(SessionRequests, ThatAreCutOrTooLongAreRejected) {
  for (const sent_request& it : kSentRequests) {
    std::vector<std::byte> request;
    field_writer to(request);
    it.write(to);
    EXPECT_EQ(serve_session(it.opcode, request).what, reply::kind::answer) << it.name;
    for (std::size_t size = 0; size < request.size(); ++size)
      EXPECT_EQ(serve_session(it.opcode, std::span(request).first(size)).what, reply::kind::reject)
          << it.name << " " << size;
    request.push_back({});
    EXPECT_EQ(serve_session(it.opcode, request).what, reply::kind::reject) << it.name;
  }
}

TEST_F(SessionRequests, ThatDoNotExistAreRejected) {
  EXPECT_EQ(serve_session(0, {}).what, reply::kind::reject);
  EXPECT_EQ(serve_session(SESSION_OPC_LEAVE + 1, {}).what, reply::kind::reject);
  std::vector<std::byte> unknown_step = {std::byte{9}};
  EXPECT_EQ(serve_session(SESSION_OPC_CANDIDATE, unknown_step).what, reply::kind::reject);
}

// Every answer, cut at every byte, is a failure of the service and no answer.
TEST_F(SessionRequests, ACutAnswerIsDamaged) {
  describe("lab");
  ASSERT_TRUE(session_candidate(candidate_step::begin));
  const if_index_t asked[] = {index()};
  const std::pair<const char*, std::function<bool()>> calls[] = {
      {"begin line", [] { return session_begin_line().has_value(); }},
      {"step", [] { return session_step_at(0).has_value(); }},
      {"last steps", [] { return session_last_steps(1).has_value(); }},
      {"candidate changes", [] { return session_candidate_changes(true).has_value(); }},
      {"running config", [&] { return session_running_config(asked, false).has_value(); }},
      {"commands", [&] { return session_commands(asked).has_value(); }},
  };
  for (const auto& [name, ask] : calls) {
    bool is_whole = false;
    for (uint32 size = 1; !is_whole; ++size) {
      forget_failures();
      ASSERT_TRUE(transport_inject_fault("session", {injected_fault::kind::cut, size}));
      is_whole = ask();
      EXPECT_EQ(noted_failures().empty(), is_whole) << name << " " << size;
      ASSERT_LT(size, 4096U) << name;
    }
  }
  transport_inject_fault("session", {});
}

TEST_F(SessionRequests, EverySessionIsListed) {
  const stopped_clock clock(1800000000);
  const std::size_t others = living_sessions().size() - 1;
  session_.set_owner({"ann", 1001, 4711, "pts/3", 1799999990});
  switch_session second;
  second.set_owner({"", 1002, 4712, "", 1800000000});
  second.begin_candidate();

  const auto sessions = session_list();
  ASSERT_TRUE(sessions);
  ASSERT_EQ(sessions->size(), others + 2);
  EXPECT_EQ((*sessions)[others],
            (listed_session{session_.number(), true, "ann", 4711, false, "pts/3", 1799999990, false, std::nullopt}));
  EXPECT_EQ((*sessions)[others + 1],
            (listed_session{second.number(), false, "1002", 4712, false, "", 1800000000, true, std::nullopt}));
}

TEST_F(SessionRequests, TheListShowsTheCommitThatWaits) {
  const stopped_clock clock(1800000000);
  switch_session second;
  {
    const session_scope other(second);
    second.begin_candidate();
    second.enter_candidate();
    port().settings.description = "lab";
    second.leave_candidate();
    ASSERT_EQ(second.commit("commit confirmed 30", 30).made.applied, std::vector{index()});
  }
  clock_advance(12);
  const auto sessions = session_list();
  ASSERT_TRUE(sessions);
  EXPECT_EQ(sessions->back().number, second.number());
  EXPECT_EQ(sessions->back().seconds_to_confirm, 18U);
}

}  // namespace
}  // namespace host
