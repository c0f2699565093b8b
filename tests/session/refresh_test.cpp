// Commands when the source of the switch cannot be read: they fail, and the session goes on.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "messages/calls/switch_facts.h"
#include "service/services.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/run.h"
#include "source/chassis/switch_file.h"
#include "switch/model.h"
#include "switch/source.h"
#include "transport/transport.h"

namespace host {
namespace {

class source_that_fails final : public switch_source {
 public:
  void refresh(machine&) override {
    ++num_refreshed;
    if (fails) throw std::runtime_error("cannot read the devices of the kernel: Operation not permitted");
  }
  bool may_have_device(std::string_view name) const override { return name == "eth7"; }
  std::optional<std::vector<kernel_device>> devices() const override {
    return std::vector<kernel_device>{{.name = "eth7", .if_index = the_machine().interfaces.front().if_index}};
  }

  bool fails = false;
  int num_refreshed = 0;
};

class FailedRefresh : public testing::Test {
 protected:
  FailedRefresh() : source_(*new source_that_fails) {
    the_machine() = load_switch_file(PMSH_SWITCHES "/campus.yaml");
    set_source(std::unique_ptr<switch_source>(&source_));
    transport_register(all_services());
    settings_.sink = [this](std::string_view text) { shown_ += text; };
    session_.output = &settings_;
    session_.about = *ask_switch_facts();
    set_error_sink([this](std::string_view text) { errors_.append(text).append("\n"); });
  }
  ~FailedRefresh() override {
    set_error_sink({});
    set_source();
  }

  int run(std::string_view line) {
    shown_.clear();
    errors_.clear();
    return run_line(session_, line);
  }

  source_that_fails& source_;
  shell session_;
  output_settings settings_;
  std::string shown_, errors_;
};

constexpr char kSentence[] = "cannot read the devices of the kernel: Operation not permitted.\n";

TEST_F(FailedRefresh, FailsTheCommandAndNotTheSession) {
  source_.fails = true;
  EXPECT_EQ(run("show version"), 2);
  EXPECT_EQ(errors_, kSentence);
  EXPECT_EQ(shown_, "");
  EXPECT_FALSE(session_.is_leaving);

  source_.fails = false;
  EXPECT_EQ(run("show kernel-map"), 0);
  EXPECT_EQ(errors_, "");
  EXPECT_NE(shown_.find("eth7 "), std::string::npos);
}

TEST_F(FailedRefresh, IsAMessageOfTheDocument) {
  source_.fails = true;
  EXPECT_EQ(run("show version | json"), 2);
  EXPECT_NE(shown_.find("\"cannot read the devices of the kernel: Operation not permitted.\""), std::string::npos);
  EXPECT_NE(shown_.find("\"exit_code\":2"), std::string::npos) << shown_;
}

TEST_F(FailedRefresh, IsTheReasonWhyADeviceIsNotFound) {
  source_.fails = true;
  EXPECT_EQ(run("show interface eth7 brief"), 2);
  EXPECT_EQ(errors_, kSentence);
}

TEST_F(FailedRefresh, LeavesLinesThatNeedNoDeviceToTheirOwnMistakes) {
  source_.fails = true;
  EXPECT_EQ(run("show nonsense"), 1);
  EXPECT_EQ(errors_.find("cannot read"), std::string::npos) << errors_;
  EXPECT_EQ(source_.num_refreshed, 0);
}

TEST_F(FailedRefresh, EndsAWatch) {
  source_.fails = true;
  settings_.sink = {};
  session_.output = nullptr;
  EXPECT_EQ(run("watch 1 show version"), 2);
  EXPECT_EQ(errors_, kSentence);
  EXPECT_EQ(run("watch events"), 2);
  EXPECT_EQ(errors_, kSentence);
}

TEST_F(FailedRefresh, DoesNotKeepTheUserFromLeaving) {
  source_.fails = true;
  EXPECT_EQ(run("exit"), 0);
  EXPECT_TRUE(session_.is_leaving);
  EXPECT_EQ(errors_, "");
}

TEST_F(FailedRefresh, OfALostServiceNamesIt) {
  ASSERT_TRUE(transport_inject_fault("switch", {injected_fault::kind::lost}));
  EXPECT_EQ(run("show version"), 2);
  EXPECT_EQ(errors_, "the service 'switch' is not running.\n");
  transport_inject_fault("switch", {});
  EXPECT_EQ(run("show kernel-map"), 0);
}

TEST_F(FailedRefresh, IsTriedOncePerLine) {
  EXPECT_EQ(run("show kernel-map"), 0);
  EXPECT_EQ(source_.num_refreshed, 1);
}

}  // namespace
}  // namespace host
